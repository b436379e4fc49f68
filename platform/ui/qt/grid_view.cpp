#include "platform/ui/qt/grid_view.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>

#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/frame_overlay.h"
#include "platform/ui/qt/qt_text.h"

namespace ui {
namespace {

constexpr int kArrowWidth = 18;  // of a drop-down's button, at 96 dpi

// Draws the arrow of a drop-down and the face of a button, which a table has no notion of.
class CellPainter : public QStyledItemDelegate {
  public:
    CellPainter(const GridCells& cells, DialogWindow& window, QObject* parent)
        : QStyledItemDelegate(parent), cells_(cells), window_(window) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        CellPosition at = GridCells::positionOf(index);
        const CellType& type = cells_.grid().type(at.column, at.row);
        if (type.kind == CellKind::Button) {
            QStyleOptionButton button;
            button.rect = option.rect;
            button.text = toQt(type.label);
            button.state = QStyle::State_Enabled | QStyle::State_Raised;
            option.widget->style()->drawControl(QStyle::CE_PushButton, &button, painter, option.widget);
            return;
        }
        QStyledItemDelegate::paint(painter, option, index);
        if (type.kind == CellKind::DropDown) {
            QStyleOption arrow;
            arrow.initFrom(option.widget);
            int width = window_.scaled(kArrowWidth);
            arrow.rect = QRect(option.rect.right() - width, option.rect.top(), width, option.rect.height())
                             .adjusted(3, 3, -3, -3);
            option.widget->style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrow, painter,
                                                  option.widget);
        }
        if (!(cells_.grid().active() == at) || cells_.grid().marksRows()) return;
        painter->save();
        // The active cell stands out where the keyboard is in the grid.
        const bool focused = option.widget->hasFocus();
        painter->setPen(QPen(focused ? cells_.selectionColour() : option.palette.color(QPalette::Mid),
                             window_.scaled(focused ? 2 : 1)));
        painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
        painter->restore();
    }

  private:
    const GridCells& cells_;
    DialogWindow& window_;
};

}  // namespace

// --- The cells ---------------------------------------------------------------------------------------------

GridCells::GridCells(Grid& grid, const QWidget& view, QObject* parent)
    : QAbstractTableModel(parent), grid_(grid), view_(view), font_(qtFont(grid.font())) {}

QVariant GridCells::data(const QModelIndex& index, int role) const {
    const CellPosition at = positionOf(index);
    const CellType& type = grid_.type(at.column, at.row);
    const CellColours colours = grid_.colours(at.column, at.row);
    // What cannot be typed into is told apart by its ground.
    const bool fixed = type.kind == CellKind::Static && !grid_.marksRows();
    switch (role) {
        case Qt::DisplayRole:
            return toQt(type.kind == CellKind::CheckBox ? type.label : grid_.text(at.column, at.row));
        case Qt::ToolTipRole:
            return tipOf(data(index, Qt::DisplayRole).toString());
        case Qt::CheckStateRole:
            if (type.kind != CellKind::CheckBox) return {};
            return static_cast<int>(grid_.checked(at.column, at.row) ? Qt::Checked : Qt::Unchecked);
        case Qt::FontRole:
            return font_;
        case Qt::BackgroundRole:
            if (isMarked(at)) return selectionColour();
            if (grid_.isSelected(at)) return takenColour();
            if (colours.background != kOwnColour) return QColor(QRgb(colours.background));
            return fixed ? QVariant(view_.palette().window()) : QVariant();
        case Qt::ForegroundRole:
            if (isMarked(at)) return selectedTextColour();
            if (grid_.isSelected(at)) return view_.palette().text();
            if (colours.foreground != kOwnColour) return QColor(QRgb(colours.foreground));
            return fixed ? QVariant(view_.palette().windowText()) : QVariant();
        default:
            return {};
    }
}

QVariant GridCells::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Horizontal) return toQt(grid_.columnHeading(section + 1));
    const std::string heading = grid_.rowHeading(section + 1);
    return heading.empty() ? QVariant(section + 1) : QVariant(toQt(heading));
}

QColor GridCells::selectionColour() const {
    const int own = grid_.selectionColours().background;
    return own == kOwnColour ? view_.palette().color(QPalette::Highlight) : QColor(QRgb(own));
}

// Between the ground and the selection, so that the text can be read.
QColor GridCells::takenColour() const {
    const QColor ground = view_.palette().color(QPalette::Base), mark = selectionColour();
    auto between = [](int a, int b) { return (2 * a + b) / 3; };
    return QColor(between(ground.red(), mark.red()), between(ground.green(), mark.green()),
                  between(ground.blue(), mark.blue()));
}

QColor GridCells::selectedTextColour() const {
    const int own = grid_.selectionColours().foreground;
    return own == kOwnColour ? view_.palette().color(QPalette::HighlightedText) : QColor(QRgb(own));
}

void GridCells::refreshHeadings() {
    if (columns_ > 0) emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
    if (rows_ > 0) emit headerDataChanged(Qt::Vertical, 0, rows_ - 1);
}

Qt::ItemFlags GridCells::flags(const QModelIndex&) const {
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

void GridCells::refresh() {
    font_ = qtFont(grid_.font());
    metrics_ = QFontMetrics(font_);
    const int rows = grid_.rows(), columns = grid_.columns();
    if (columns != columns_ || (rows != rows_ && (rows == 0 || rows_ == 0))) {
        beginResetModel();
        rows_ = rows;
        columns_ = columns;
        endResetModel();
        return;
    }
    // Which rows have come or gone makes no difference to what is seen: all of it is taken over.
    if (rows > rows_) {
        beginInsertRows({}, rows_, rows - 1);
        rows_ = rows;
        endInsertRows();
    } else if (rows < rows_) {
        beginRemoveRows({}, rows, rows_ - 1);
        rows_ = rows;
        endRemoveRows();
    }
    if (rows_ > 0 && columns_ > 0) emit dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
}

void GridCells::refreshCell(CellPosition at) {
    QModelIndex first = indexOf(at), last = first;
    if (!first.isValid()) return;
    if (grid_.marksRows()) first = index(first.row(), 0), last = index(last.row(), columns_ - 1);
    emit dataChanged(first, last);
}

// --- The view ----------------------------------------------------------------------------------------------

GridView::GridView(Grid& grid, Dialog& dialog, DialogWindow& window)
    : QTableView(&window),
      grid_(grid),
      dialog_(dialog),
      window_(window),
      cells_(new GridCells(grid, *this, this)),
      // Widths of the model are pixels at 96 dpi in a font of known width; here the font may be another.
      columns_(
          *this, [this](int column) { return window_.scaled(grid_.columnWidth(column + 1)); },
          [this](int column, int row) {
              return neededWidth({column + 1, row + 1});
          }),
      frozen_(*this),
      heights_(*this,
               [this](int column, int row) {
                   return neededLines({column + 1, row + 1});
               }),
      refusal_(new FrameOverlay(viewport(), QColor(kRefusalColour), window.scaled(2))) {
    refusal_->setObjectName("refusal");
    auto* header = new FrozenHeader(frozen_, this);
    setHorizontalHeader(header);
    connect(header, &QHeaderView::sectionClicked, this,
            [this](int section) { dialog_.userClickHeading(grid_, section + 1); });
    setModel(cells_);
    setItemDelegate(new CellPainter(*cells_, window, this));
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::NoSelection);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(cells_->metrics().height() + window.scaled(8));
    showHeadings();
    setMinimumSize(window.scaled(260), window.scaled(120));
}

void GridView::refresh() {
    if (refreshing_) return;
    refreshing_ = true;
    // Whoever has scrolled away from the active cell to look around stays there.
    const QModelIndex before = cells_->indexOf(shownActive_);
    const bool isSeen = before.isValid() && viewport()->rect().intersects(visualRect(before));
    const bool follows =
        isSeen || !(shownActive_ == grid_.active()) || filling_ != grid_.filling() || editor_;
    shownActive_ = grid_.active();
    if (filling_ != grid_.filling()) columns_.forget();
    filling_ = grid_.filling();
    heights_.forget();
    cells_->refresh();
    frozen_.setCount(std::min(grid_.frozenColumns(), grid_.columns()));
    if (headings_ != grid_.headingChanges()) showHeadings();
    seeRows();
    if (const QModelIndex active = cells_->indexOf(grid_.active()); active.isValid() && follows)
        scrollTo(active);
    followActive();
    refreshing_ = false;
}

void GridView::showHeadings() {
    headings_ = grid_.headingChanges();
    bool headed = false;
    for (int column = 1; column <= grid_.columns(); ++column) headed |= !grid_.columnHeading(column).empty();
    horizontalHeader()->setVisible(headed);
    horizontalHeader()->setSortIndicatorShown(grid_.orderColumn() > 0);
    horizontalHeader()->setSortIndicator(grid_.orderColumn() - 1,
                                         grid_.orderDescends() ? Qt::DescendingOrder : Qt::AscendingOrder);
    cells_->refreshHeadings();
    updateGeometries();
}

void GridView::refreshCell(CellPosition at) {
    cells_->refreshCell(at);
    columns_.seeCell(at.column - 1, at.row - 1);
    if (grid_.widestColumn() > 0) heights_.seeRow(at.row - 1);
    if (refreshing_) return;
    refreshing_ = true;
    if (const QModelIndex active = cells_->indexOf(grid_.active()); active.isValid() && at == grid_.active())
        scrollTo(active);
    followActive();
    refreshing_ = false;
}

void GridView::followActive() {
    const QModelIndex active = cells_->indexOf(grid_.active());
    if (currentIndex() != active) setCurrentIndex(active);
    if (grid_.editing() && active.isValid())
        openEditor();
    else
        leaveEditor();
    showRefusal();
}

void GridView::showRefusal() {
    if (grid_.refusal().empty()) {
        if (refusal_->isVisible()) QToolTip::hideText();
        refusal_->hide();
        return;
    }
    placeRefusal();
    const QRect cell = visualRect(cells_->indexOf(grid_.active()));
    QString reason = toQt(grid_.refusal());
    reason[0] = reason[0].toUpper();
    QToolTip::showText(viewport()->mapToGlobal(cell.bottomLeft()), reason + ".", viewport(), cell);
}

void GridView::placeRefusal() {
    refusal_->showAt(visualRect(cells_->indexOf(grid_.active())));
}

void GridView::seeRows() {
    columns_.see();
    if (grid_.widestColumn() > 0) heights_.see();
    const int row = verticalHeader()->defaultSectionSize();
    grid_.setPageRows(std::max(1, viewport()->height() / row));
}

// What is longer than a column may be wide is broken into lines.
int GridView::neededLines(CellPosition at) const {
    constexpr int kMostLines = 8;  // the rest is in the tip
    const QString text = toQt(grid_.text(at.column, at.row));
    const int width = columnWidth(at.column - 1) - window_.scaled(8);
    const QFontMetrics& metrics = cells_->metrics();
    if (!text.contains('\n') && metrics.horizontalAdvance(text) <= width) return 1;
    const QRect needed = metrics.boundingRect(QRect(0, 0, width, QWIDGETSIZE_MAX), Qt::TextWordWrap, text);
    return std::clamp(needed.height() / metrics.lineSpacing(), 1, kMostLines);
}

int GridView::neededWidth(CellPosition at) const {
    const CellType& type = grid_.type(at.column, at.row);
    const bool marked = type.kind == CellKind::CheckBox || type.kind == CellKind::DropDown;
    const std::string text = type.kind == CellKind::CheckBox ? type.label : grid_.text(at.column, at.row);
    const int room = window_.scaled(marked ? kArrowWidth + 14 : 14);
    const int width = cells_->metrics().horizontalAdvance(toQt(text)) + room;
    const int widest = grid_.widestColumn() * cells_->metrics().averageCharWidth() + room;
    return grid_.widestColumn() > 0 ? std::min(width, widest) : width;
}

void GridView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    grid_.setClientWidth(static_cast<int>(viewport()->width() / std::max(0.5, window_.scaled(96) / 96.0)));
    if (!refreshing_) seeRows();
}

void GridView::scrollContentsBy(int right, int down) {
    QTableView::scrollContentsBy(right, down);
    if (down) seeRows();
    // What has been moved with the rest stands at another place again.
    if (right && grid_.frozenColumns() > 0) {
        viewport()->update();
        horizontalHeader()->viewport()->update();
        updateEditorGeometries();
    }
    if (refusal_->isVisible()) placeRefusal();
}

// --- Frozen columns ---------------------------------------------------------------------------------------

QModelIndex GridView::indexAt(const QPoint& at) const {
    const int column = frozen_.columnAt(at.x());
    return column < 0 ? QTableView::indexAt(at) : cells_->index(rowAt(at.y()), column);
}

QRect GridView::visualRect(const QModelIndex& index) const {
    QRect place = QTableView::visualRect(index);
    if (frozen_.has(index.column())) place.moveLeft(frozen_.leftOf(index.column()));
    return place;
}

// A cell that would stand below the frozen columns comes out at their right.
void GridView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    QScrollBar& bar = *horizontalScrollBar();
    const int before = bar.value();
    QTableView::scrollTo(index, hint);
    if (index.column() < frozen_.count()) return bar.setValue(before);
    const int hidden = frozen_.width() - QTableView::visualRect(index).left();
    if (hidden > 0) bar.setValue(bar.value() - hidden);
}

void GridView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (!frozen_.has(0) || rowAt(0) < 0) return;
    QPainter painter(viewport());
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QPen lines(
        QColor(static_cast<QRgb>(style()->styleHint(QStyle::SH_Table_GridLineColor, &option, this))));
    for (int row = rowAt(0); row < cells_->rowCount() && rowViewportPosition(row) < viewport()->height();
         ++row)
        for (int column = 0; frozen_.has(column); ++column) {
            const QModelIndex index = cells_->index(row, column);
            option.rect = visualRect(index);
            painter.fillRect(option.rect.adjusted(0, 0, 1, 1), palette().base());
            itemDelegate()->paint(&painter, option, index);
            painter.setPen(lines);
            painter.drawLine(option.rect.bottomLeft() + QPoint(0, 1),
                             option.rect.bottomRight() + QPoint(1, 1));
            painter.drawLine(option.rect.topRight() + QPoint(1, 0), option.rect.bottomRight() + QPoint(1, 1));
        }
    painter.setPen(palette().color(QPalette::Dark));
    painter.drawLine(frozen_.width() - 1, 0, frozen_.width() - 1, viewport()->height());
}

bool GridView::isWiderThanShown() const {
    return horizontalScrollBar()->maximum() > horizontalScrollBar()->minimum();
}

int GridView::heightOfWholeRows(int available) const {
    constexpr int kMargin = 4;  // at 96 dpi
    int row = verticalHeader()->defaultSectionSize();
    int others = 2 * frameWidth() + (isWiderThanShown() ? horizontalScrollBar()->sizeHint().height() : 0) +
                 (horizontalHeader()->isVisible() ? horizontalHeader()->sizeHint().height() : 0);
    int rows = std::max(0, available - window_.scaled(kMargin) - others - 1) / row;
    return rows * row + others;
}

void GridView::openEditor() {
    CellPosition at = grid_.active();
    if (editor_ && !(edited_ == at)) leaveEditor();
    const CellType& type = grid_.type(at.column, at.row);
    if (!editor_) {
        edited_ = at;
        editor_ = type.kind == CellKind::DropDown ? newList(type) : newLine();
        editor_->setFont(cells_->font());
        editor_->installEventFilter(this);
        setIndexWidget(cells_->indexOf(at), editor_);
        editor_->setFocus();
        if (auto* list = qobject_cast<QComboBox*>(editor_); list && !list->isEditable()) showList(*list);
    }
    QString text = toQt(grid_.editText());
    if (auto* list = qobject_cast<QComboBox*>(editor_)) showItem(*list);
    if (QLineEdit* line = editedLine(); line && line->text() != text) line->setText(text);
}

QWidget* GridView::newList(const CellType& type) {
    auto* list = new QComboBox;
    list->setEditable(type.editable);
    for (const std::string& item : type.items) list->addItem(toQt(item));
    connect(list, QOverload<int>::of(&QComboBox::activated), this, [this, list](int index) {
        dialog_.userEdit(grid_, fromQt(list->itemText(index)));
        grid_.setEditing(false);
    });
    if (type.editable) {
        list->setCompleter(nullptr);  // what is typed is what counts
        list->setInsertPolicy(QComboBox::NoInsert);
        followTyping(*list->lineEdit());
    }
    return list;
}

// The keys of a list that takes no other text come here before the list sees them.
void GridView::showList(QComboBox& list) {
    list.showPopup();
    if (!list.isEditable()) list.view()->installEventFilter(this);
}

// The item of the model's text, also in the list that stands open.
void GridView::showItem(QComboBox& list) {
    list.setCurrentIndex(list.findText(toQt(grid_.editText())));
    if (list.view()->isVisible()) list.view()->setCurrentIndex(list.model()->index(list.currentIndex(), 0));
}

QWidget* GridView::newLine() {
    auto* line = new QLineEdit;
    line->setFrame(false);
    followTyping(*line);
    return line;
}

// What is typed goes to the model, which may take less of it.
void GridView::followTyping(QLineEdit& line) {
    line.installEventFilter(this);
    connect(&line, &QLineEdit::textEdited, this, [this, &line](const QString& text) {
        const int cursor = line.cursorPosition();
        dialog_.userEdit(grid_, fromQt(text));
        QLineEdit* edited = editedLine();
        if (!edited || text == toQt(grid_.editText())) return;
        edited->setText(toQt(grid_.editText()));
        // Where it was before the characters that are not taken.
        edited->setCursorPosition(cursor - static_cast<int>(text.size() - edited->text().size()));
    });
    connect(&line, &QLineEdit::cursorPositionChanged, this, [this, &line](int, int position) {
        dialog_.userCaret(grid_, characterCount(fromQt(line.text().left(position))));
    });
}

QLineEdit* GridView::editedLine() const {
    auto* list = qobject_cast<QComboBox*>(editor_);
    return list ? list->lineEdit() : qobject_cast<QLineEdit*>(editor_);
}

void GridView::leaveEditor() {
    if (!editor_) return;
    QWidget* editor = editor_;
    editor_ = nullptr;
    listOpensWithCell_ = true;
    editor->removeEventFilter(this);
    if (auto* list = qobject_cast<QComboBox*>(editor)) list->hidePopup();
    setIndexWidget(cells_->indexOf(edited_), nullptr);
    // Also the list of a drop-down may have had it.
    if (dialog_.focus() == grid_.id()) setFocus();
}

// --- What a person does -----------------------------------------------------------------------------------

bool GridView::isOnArrow(const QModelIndex& index, const QPoint& at) const {
    return at.x() >= visualRect(index).right() - window_.scaled(kArrowWidth);
}

void GridView::mousePressEvent(QMouseEvent* event) {
    QModelIndex index = indexAt(event->pos());
    if (!index.isValid()) {
        dialog_.userFocus(grid_);
        return;
    }
    CellPosition at = GridCells::positionOf(index);
    const CellKind kind = grid_.type(at.column, at.row).kind;
    setFocus();
    if (grid_.selectsCells() && (event->modifiers() & Qt::ShiftModifier)) {
        dialog_.userSelectTo(grid_, at);
        return;
    }
    if (kind == CellKind::CheckBox) {
        dialog_.userCell(grid_, at, grid_.checked(at.column, at.row) ? "0" : "1");
    } else if (kind == CellKind::Button) {
        dialog_.userCell(grid_, at, "");
    } else {
        dialog_.userActivate(grid_, at);
        if (kind != CellKind::DropDown || !isOnArrow(index, event->pos())) return;
        openList();
    }
}

// Cells over which the pointer is drawn are taken together.
void GridView::mouseMoveEvent(QMouseEvent* event) {
    if (!grid_.selectsCells() || !(event->buttons() & Qt::LeftButton)) return;
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid() && !grid_.editing()) dialog_.userSelectTo(grid_, GridCells::positionOf(index));
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid()) dialog_.userDoubleClickCell(grid_, GridCells::positionOf(index));
}

bool GridView::isListKey(const QKeyEvent& key) {
    return key.key() == Qt::Key_Down && (key.modifiers() & Qt::AltModifier);
}

// Alt and the arrow open the list of the active cell.
void GridView::keyPressEvent(QKeyEvent* event) {
    CellPosition at = grid_.active();
    if (!isListKey(*event) || grid_.type(at.column, at.row).kind != CellKind::DropDown)
        return QTableView::keyPressEvent(event);
    openList();
}

// Opens the list of the active cell to choose from it and stay there.
void GridView::openList() {
    listOpensWithCell_ = false;
    grid_.setEditing(true);
    if (auto* list = qobject_cast<QComboBox*>(editor_); list && !list->view()->isVisible()) showList(*list);
}

// Keys in a list that stands open: the model picks, and the list shows it. Enter in a list that was opened to
// choose from, by its arrow, takes what is marked; else it goes on from the cell.
bool GridView::listKey(const QKeyEvent& key) {
    const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (enter && !listOpensWithCell_) {
        grid_.setEditing(false);
        return true;
    }
    window_.offerKey(key, false);
    return true;
}

// Keys in the editor of a cell: the dialog sees them first, then the grid's own rules, and text stays with
// the line.
bool GridView::eventFilter(QObject* watched, QEvent* event) {
    auto* cellList = qobject_cast<QComboBox*>(editor_);
    if (cellList && watched == cellList->view()) {
        if (event->type() == QEvent::KeyPress) return listKey(static_cast<QKeyEvent&>(*event));
        if (event->type() == QEvent::KeyRelease) window_.tellKeyUp(static_cast<QKeyEvent&>(*event));
        if (event->type() == QEvent::ShortcutOverride) {
            event->accept();  // else Enter and Escape are the list's own
            return true;
        }
    }
    const bool isEditor = editor_ && (watched == editor_ || watched == editedLine());
    if (isEditor && event->type() == QEvent::KeyPress) {
        auto& key = static_cast<QKeyEvent&>(*event);
        auto* list = qobject_cast<QComboBox*>(editor_);
        if (list && isListKey(key)) {
            showList(*list);
            return true;
        }
        if (key.matches(QKeySequence::Undo)) {
            dialog_.userUndo();
            return true;
        }
        bool isLine = editedLine() != nullptr;
        if (window_.offerKey(key, isLine)) return true;
        return !isLine;
    }
    if (isEditor && event->type() == QEvent::KeyRelease) window_.tellKeyUp(static_cast<QKeyEvent&>(*event));
    if (isEditor && event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return QTableView::eventFilter(watched, event);
}

// --- The control ------------------------------------------------------------------------------------------

WholeRowsFrame::WholeRowsFrame(GridView& view, QWidget* parent) : QWidget(parent), view_(view) {
    view.setParent(this);
    setMinimumSize(view.minimumSize());
    setSizePolicy(view.sizePolicy());
    view.setMinimumSize(0, 0);
    // Where the scroll bar comes or goes there is room for other rows.
    connect(view.horizontalScrollBar(), &QScrollBar::rangeChanged, this, [this] { placeView(); });
}

// As much of a record as a small screen leaves room for is seen at once.
QSize WholeRowsFrame::sizeHint() const {
    constexpr int kWishedRows = 11;
    return {minimumWidth(), view_.verticalHeader()->defaultSectionSize() * (kWishedRows + 1)};
}

void WholeRowsFrame::resizeEvent(QResizeEvent*) {
    placeView();
}

void WholeRowsFrame::placeView() {
    view_.setGeometry(0, 0, width(), view_.heightOfWholeRows(height()));
}

GridWidget::GridWidget(Grid& grid, Dialog& dialog, DialogWindow& window)
    : grid_(grid), view_(new GridView(grid, dialog, window)) {
    if (grid.wholeRows()) frame_ = new WholeRowsFrame(*view_, &window);
}

void GridWidget::update() {
    view_->setEnabled(grid_.enabled());
    placed()->setVisible(grid_.visible());
    view_->refresh();
}

void GridWidget::takeFocus() {
    if (view_->editor())
        view_->editor()->setFocus();
    else
        view_->setFocus();
}

}  // namespace ui
