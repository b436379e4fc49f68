#include "platform/ui/qt/dialog_window.h"

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QTableView>
#include <QTimer>
#include <QUrl>
#include <algorithm>

#include "platform/ui/panel.h"
#include "platform/ui/qt/control_widgets.h"
#include "platform/ui/qt/frame_overlay.h"
#include "platform/ui/qt/qt_text.h"

namespace ui {
namespace {

// The part of a layout that holds a button which ends the dialog.
bool endsDialog(const Layout& part) {
    if (part.kind == Layout::Kind::Item) return part.control == kOk || part.control == kCancel;
    return std::any_of(part.children.begin(), part.children.end(), endsDialog);
}

// Told from a message, in which "&" is a character like any other.
bool isCaption(const std::string& text) {
    return !text.empty() && (text.find('&') != std::string::npos || text.back() == ':');
}

// The dialog as a panel that stands in the program's window; null where it does not.
Panel* placedPanel(Dialog& dialog) {
    auto* panel = dynamic_cast<Panel*>(&dialog);
    return panel && panel->place() ? panel : nullptr;
}

// What a person does to texts, cells and rows wherever the keyboard is.
bool isEditing(const QKeyEvent& key) {
    if (key.modifiers() & (Qt::AltModifier | Qt::MetaModifier)) return false;
    if (!(key.modifiers() & Qt::ControlModifier)) return key.key() < Qt::Key_F1 || key.key() > Qt::Key_F35;
    constexpr int kWithControl[] = {Qt::Key_A,    Qt::Key_C,      Qt::Key_V,    Qt::Key_X,   Qt::Key_Z,
                                    Qt::Key_Y,    Qt::Key_Insert, Qt::Key_Home, Qt::Key_End, Qt::Key_Up,
                                    Qt::Key_Down, Qt::Key_Left,   Qt::Key_Right};
    return !(key.modifiers() & Qt::ShiftModifier) &&
           std::find(std::begin(kWithControl), std::end(kWithControl), key.key()) != std::end(kWithControl);
}

// A message does not make a panel wider than its place is, and a grid makes do with a few rows.
void makeYielding(QWidget& widget) {
    if (qobject_cast<QLabel*>(&widget)) widget.setMinimumWidth(1);
    if (qobject_cast<QTableView*>(&widget)) widget.setMinimumHeight(widget.minimumHeight() / 2);
}

// As large as what stands on it, where there is room.
class Ground : public QScrollArea {
  public:
    using QScrollArea::QScrollArea;
    QSize sizeHint() const override { return widget()->sizeHint(); }
    QSize minimumSizeHint() const override { return {160, 60}; }
};

}  // namespace

DialogWindow::DialogWindow(Dialog& dialog, QWidget* parent)
    : QDialog(parent),
      dialog_(dialog),
      panel_(placedPanel(dialog)),
      focusMark_(new FrameOverlay(this, palette().color(QPalette::Highlight), 2)) {
    focusMark_->setObjectName("focus");
    setWindowTitle(toQt(dialog.title()));
    if (panel_) setWindowFlags(Qt::Widget);
    setModal(!panel_);
    setSizeGripEnabled(!panel_);
    if (dialog.font()) setFont(qtFont(*dialog.font()));
    setAcceptDrops(dialog.takesFiles());
    makeWidgets();
    arrange();
    installEventFilter(this);
    dialog_.setView(this);
}

DialogWindow::~DialogWindow() {
    dialog_.setView(nullptr);
}

int DialogWindow::scaled(int pixels) const {
    return qRound(pixels * (screen() ? screen()->logicalDotsPerInch() / 96.0 : 1.0));
}

ControlWidget* DialogWindow::find(int id) const {
    auto it = widgets_.find(id);
    return it == widgets_.end() ? nullptr : it->second.get();
}

QWidget* DialogWindow::widgetOf(int id) const {
    ControlWidget* control = find(id);
    return control ? control->widget() : nullptr;
}

QWidget* DialogWindow::placedOf(int id) const {
    ControlWidget* control = find(id);
    return control ? control->placed() : nullptr;
}

// --- Making -----------------------------------------------------------------------------------------------

void DialogWindow::makeWidgets() {
    for (const auto& control : dialog_.controls()) {
        std::unique_ptr<ControlWidget> made = makeControlWidget(*control, dialog_, *this);
        made->widget()->setObjectName(QString::number(control->id()));
        made->widget()->installEventFilter(this);
        if (control->ownFont()) made->widget()->setFont(qtFont(*control->ownFont()));
        widgets_[control->id()] = std::move(made);
    }
    // Captions lend their mnemonic and their name to the control behind them.
    for (size_t i = 0; i + 1 < dialog_.controls().size(); ++i)
        if (const Control& control = *dialog_.controls()[i];
            control.kind() == ControlKind::Label && isCaption(control.text()))
            find(dialog_.controls()[i]->id())->setBuddy(widgetOf(dialog_.controls()[i + 1]->id()));
}

void DialogWindow::arrange() {
    auto* column = new QVBoxLayout(this);
    for (const auto& control : dialog_.controls())
        if (control->kind() == ControlKind::Menu) column->setMenuBar(widgetOf(control->id()));
    if (!dialog_.rectangles().empty()) return placeRectangles(*column);
    std::vector<Layout> parts = {dialog_.layout()}, foot;
    if (parts.front().kind == Layout::Kind::Column) {
        parts = dialog_.layout().children;
        if (parts.size() > 1 && endsDialog(parts.back())) {
            foot.push_back(parts.back());
            parts.pop_back();
        }
    }
    auto* inside = new QWidget(this);
    auto* above = new QVBoxLayout(inside);
    above->setContentsMargins(0, 0, 0, 0);
    for (const Layout& part : parts) place(*above, part);
    for (const Layout& part : foot) place(*column, part);
    // Once they have their places, since a widget that gets another parent is hidden by that.
    showControls();
    column->insertWidget(0, ground_ = newGround(*inside), 1);
    Size size = dialog_.size();
    QSize wished = size.width > 0 ? QSize(scaled(size.width), scaled(size.height)) : sizeHint();
    // A small screen still shows all of it.
    resize(screen() ? wished.boundedTo(screen()->availableSize()) : wished);
}

void DialogWindow::showControls() {
    for (const auto& [id, control] : widgets_) control->update();
}

QScrollArea* DialogWindow::newGround(QWidget& inside) {
    auto* ground = new Ground(this);
    ground->setFrameShape(QFrame::NoFrame);
    ground->setFocusPolicy(Qt::NoFocus);
    ground->setWidgetResizable(true);
    // Large enough from the beginning, so that it does not lay itself out with scroll bars at first.
    ground->resize(inside.sizeHint());
    ground->setWidget(&inside);
    // The window has filled it all already.
    ground->viewport()->setAutoFillBackground(false);
    inside.setAutoFillBackground(false);
    return ground;
}

void DialogWindow::placeTable(QGridLayout& into, const Layout& table) {
    for (size_t row = 0; row < table.children.size(); ++row)
        for (size_t column = 0; column < table.children[row].children.size(); ++column) {
            const Layout& cell = table.children[row].children[column];
            QWidget* widget = cell.kind == Layout::Kind::Item ? placedOf(cell.control) : nullptr;
            if (row == 0) into.setColumnStretch(static_cast<int>(column), cell.stretch);
            if (widget) into.addWidget(widget, static_cast<int>(row), static_cast<int>(column));
        }
}

void DialogWindow::place(QBoxLayout& into, const Layout& part) {
    auto nest = [&](QBoxLayout* inner) {
        into.addLayout(inner, part.stretch);
        for (const Layout& child : part.children) place(*inner, child);
    };
    switch (part.kind) {
        case Layout::Kind::Column:
            nest(new QVBoxLayout);
            break;
        case Layout::Kind::Row:
            nest(new QHBoxLayout);
            break;
        case Layout::Kind::Table: {
            auto* inner = new QGridLayout;
            into.addLayout(inner, part.stretch);
            placeTable(*inner, part);
            break;
        }
        case Layout::Kind::Spring:
            into.addStretch(part.stretch);
            break;
        case Layout::Kind::Item:
            if (QWidget* widget = placedOf(part.control)) {
                into.addWidget(widget, part.stretch);
                if (panel_ && part.stretch > 0) makeYielding(*widget);
            }
            break;
        case Layout::Kind::Group: {
            QWidget* box = widgetOf(part.control);
            if (!box) break;
            auto* inner = new QVBoxLayout;
            box->setLayout(inner);
            for (const Layout& child : part.children) place(*inner, child);
            into.addWidget(box, part.stretch);
            break;  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the box owns the layout.
        }
    }
}

int DialogWindow::menuHeight() const {
    const QWidget* menu = layout()->menuBar();
    return menu ? menu->sizeHint().height() : 0;
}

void DialogWindow::placeRectangles(QBoxLayout& column) {
    auto* inside = new QWidget(this);
    column.setContentsMargins(0, 0, 0, 0);
    column.addWidget(inside);
    for (const auto& [id, rectangle] : dialog_.rectangles())
        if (QWidget* widget = placedOf(id)) {
            widget->setParent(inside);
            // It has the room that the dialog has computed, not what it would wish for itself.
            widget->setMinimumSize(0, 0);
            widget->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
            widget->setGeometry(rectangle.left, rectangle.top, rectangle.width, rectangle.height);
            if (dialog_.find(id)->kind() == ControlKind::GroupBox) widget->lower();
        }
    showControls();
    Size size = dialog_.size();
    if (size.width > 0) resize(size.width, size.height + menuHeight());
    const Size smallest = dialog_.minimumSize();
    if (smallest.width > 0) setMinimumSize(smallest.width, smallest.height + menuHeight());
}

// --- From the model ---------------------------------------------------------------------------------------

void DialogWindow::controlChanged(Control& control) {
    ControlWidget* shown = find(control.id());
    if (!shown) return;
    auto rectangle = dialog_.rectangles().find(control.id());
    if (rectangle != dialog_.rectangles().end()) {
        const Rect& r = rectangle->second;
        shown->placed()->setGeometry(r.left, r.top, r.width, r.height);
    }
    shown->update();
}

void DialogWindow::cellChanged(Grid& grid, CellPosition at) {
    if (ControlWidget* shown = find(grid.id())) shown->updateCell(at);
}

// A panel takes the keyboard from nobody.
void DialogWindow::focusChanged(int) {
    if (!panel_ || hasKeyboard()) showFocus();
}

bool DialogWindow::hasKeyboard() const {
    const QWidget* owner = QApplication::focusWidget();
    return owner && (owner == this || isAncestorOf(owner));
}

void DialogWindow::setResting(bool on) {
    isResting_ = on;
    setUpdatesEnabled(!on);
}

void DialogWindow::showFocus() {
    ControlWidget* shown = find(dialog_.focus());
    if (!shown) return;
    shown->takeFocus();
    if (ground_ && ground_->isAncestorOf(shown->widget())) ground_->ensureWidgetVisible(shown->widget());
}

void DialogWindow::markFocus(QWidget* widget) {
    if (panel_ && !hasKeyboard()) return;
    marked_ = widget;
    focusMark_->setParent(widget->parentWidget());
    focusMark_->showAt(widget->geometry());
}

void DialogWindow::titleChanged() {
    setWindowTitle(toQt(dialog_.title()));
}

void DialogWindow::ended() {
    hide();
    if (onEnded) onEnded();
}

// --- To the model -----------------------------------------------------------------------------------------

bool DialogWindow::offerKey(const QKeyEvent& event, bool isText) {
    std::optional<Key> key = keyOf(event);
    if (!key) return false;
    pressed_ = event.key();
    if (dialog_.onKey(*key)) return true;
    bool dialogKey = key->is("Enter") || key->is("Escape") || key->is("Tab") || key->alt || key->control;
    // What a person types into an edit is the edit's own business; the rest is the model's.
    if (isText && !(dialogKey && !key->control)) return false;
    return dialog_.userUnclaimedKey(*key).empty();
}

// A key that was pressed in another window, such as the one that has opened this one, is not let go here.
void DialogWindow::tellKeyUp(const QKeyEvent& event) {
    if (event.isAutoRepeat() || event.key() != pressed_ || !dialog_.running()) return;
    pressed_ = 0;
    if (std::optional<Key> key = keyOf(event)) dialog_.userKeyUp(*key);
}

// Alt and the letter of a menu's heading, which no control has claimed.
bool DialogWindow::openMenu(const QKeyEvent& key) {
    if (!(key.modifiers() & Qt::AltModifier)) return false;
    for (auto* bar : findChildren<QMenuBar*>())
        for (QAction* heading : bar->actions())
            if (QKeySequence::mnemonic(heading->text()) == QKeySequence(Qt::ALT | key.key())) {
                bar->setActiveAction(heading);
                return true;
            }
    return false;
}

// In a panel the keys of the program's menus are theirs, but for those that edit, and the letters that the
// panel's own captions have.
bool DialogWindow::leavesToProgram(const QKeyEvent& key) const {
    if (!panel_ || isEditing(key)) return false;
    if (key.modifiers() & Qt::AltModifier) {
        const auto& controls = dialog_.controls();
        return std::none_of(controls.begin(), controls.end(), [&](const auto& control) {
            return control->visible() && control->kind() != ControlKind::Edit &&
                   mnemonicOf(control->text()) == key.key();
        });
    }
    const QWidget* program = parentWidget();
    while (program && !qobject_cast<const QMainWindow*>(program)) program = program->parentWidget();
    if (!program) return false;
    const QKeySequence pressed(key.keyCombination());
    for (const auto* action : program->findChildren<QAction*>())
        if (action->shortcut() == pressed) return true;
    return false;
}

bool DialogWindow::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::ShortcutOverride) {
        if (leavesToProgram(*static_cast<QKeyEvent*>(event))) return true;
        event->accept();
        return true;
    }
    if (isResting_ && (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)) return true;
    if (event->type() == QEvent::KeyPress && dialog_.running()) {
        ControlWidget* control = widget ? find(widget->objectName().toInt()) : nullptr;
        if (control || watched == this) {
            bool isText = control && control->takesText();
            auto& key = *static_cast<QKeyEvent*>(event);
            if (offerKey(key, isText) || openMenu(key)) return true;
            // Keys that mean nothing to a dialog must not reach the frame, where Escape and Enter would end
            // it.
            return watched == this;
        }
    }
    if (event->type() == QEvent::KeyRelease && widget && widget != this && find(widget->objectName().toInt()))
        tellKeyUp(*static_cast<QKeyEvent*>(event));
    if (event->type() == QEvent::FocusIn && widget && watched != this) {
        int id = widget->objectName().toInt();
        if (find(id) && dialog_.running()) dialog_.setFocus(id);
        markFocus(find(id) ? widgetOf(id) : widget);
    }
    if (panel_ && event->type() == QEvent::FocusOut) focusMark_->hide();
    if ((event->type() == QEvent::Move || event->type() == QEvent::Resize) && watched == marked_)
        markFocus(marked_);
    return QDialog::eventFilter(watched, event);
}

void DialogWindow::closeEvent(QCloseEvent* event) {
    if (dialog_.running()) dialog_.userClose();
    event->setAccepted(!dialog_.running());
}

void DialogWindow::reject() {
    if (dialog_.running()) dialog_.onCancel();
}

void DialogWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

// The program that the files come from must not wait for what the dialog asks about them.
void DialogWindow::dropEvent(QDropEvent* event) {
    std::vector<std::string> paths;
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile()) paths.push_back(fromQt(url.toLocalFile()));
    event->acceptProposedAction();
    QTimer::singleShot(0, this, [this, paths] {
        if (dialog_.running() && !paths.empty()) dialog_.userDrop(paths);
    });
}

void DialogWindow::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (!dialog_.rectangles().empty() && dialog_.running())
        dialog_.userResize({width(), height() - menuHeight()});
}

}  // namespace ui
