#include "platform/ui/qt/record_list.h"

#include <QAbstractTableModel>
#include <QFontMetrics>
#include <QHeaderView>
#include <QMouseEvent>
#include <QTableView>
#include <algorithm>

#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_text.h"
#include "platform/ui/qt/seen_columns.h"

namespace ui {
namespace {

class Items : public QAbstractTableModel {
  public:
    Items(const List& list, const QWidget& view, QObject* parent)
        : QAbstractTableModel(parent), list_(list), view_(view) {}
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : count_; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : columns_; }
    QVariant data(const QModelIndex& index, int role) const override {
        const bool chosen = list_.isSelected(index.row());
        if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
            const QString text = toQt(list_.text(index.row(), index.column()));
            return role == Qt::ToolTipRole ? tipOf(text) : text;
        }
        if (role == Qt::BackgroundRole && chosen) return view_.palette().highlight();
        if (role == Qt::ForegroundRole && chosen) return view_.palette().highlightedText();
        return {};
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (role != Qt::DisplayRole || orientation == Qt::Vertical || list_.headings().empty()) return {};
        return toQt(list_.headings()[static_cast<size_t>(section)]);
    }
    // Takes over the number of items and of columns.
    void refresh() {
        if (count_ == list_.count() && columns_ == list_.columns()) return;
        beginResetModel();
        count_ = list_.count();
        columns_ = list_.columns();
        endResetModel();
    }

  private:
    const List& list_;
    const QWidget& view_;
    int count_ = 0;
    int columns_ = 0;
};

class RecordView : public QTableView {
  public:
    RecordView(List& list, Dialog& dialog, DialogWindow& window)
        : QTableView(&window),
          list_(list),
          dialog_(dialog),
          items_(new Items(list, *this, this)),
          columns_(
              *this,
              [this, &window](int column) {
                  const std::string heading =
                      list_.headings().empty() ? "" : list_.headings()[static_cast<size_t>(column)];
                  return std::max(window.scaled(kNarrowest),
                                  fontMetrics().horizontalAdvance(toQt(heading)) + window.scaled(kPadding));
              },
              [this, &window](int column, int row) {
                  return fontMetrics().horizontalAdvance(toQt(list_.text(row, column))) +
                         window.scaled(kPadding);
              }) {
        setModel(items_);
        setEditTriggers(QAbstractItemView::NoEditTriggers);
        setSelectionMode(QAbstractItemView::NoSelection);
        setTabKeyNavigation(false);
        setShowGrid(false);
        setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
        verticalHeader()->hide();
        verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        verticalHeader()->setDefaultSectionSize(fontMetrics().height() + window.scaled(4));
        horizontalHeader()->setVisible(!list.headings().empty());
    }

    void refresh() {
        items_->refresh();
        columns_.see();
        viewport()->update();
        if (list_.selected() >= 0) scrollTo(items_->index(list_.selected(), 0));
    }

  protected:
    void mousePressEvent(QMouseEvent* event) override {
        const QModelIndex index = indexAt(event->pos());
        setFocus();
        if (index.isValid())
            dialog_.userPick(list_, index.row(), list_.multiple());
        else
            dialog_.userFocus(list_);
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override {
        const QModelIndex index = indexAt(event->pos());
        if (index.isValid()) dialog_.userDoubleClick(list_, index.row());
    }
    void resizeEvent(QResizeEvent* event) override {
        QTableView::resizeEvent(event);
        columns_.see();
    }
    void scrollContentsBy(int right, int down) override {
        QTableView::scrollContentsBy(right, down);
        if (down) columns_.see();
    }
    QSize sizeHint() const override {
        return {QTableView::sizeHint().width(), verticalHeader()->defaultSectionSize() * list_.rows()};
    }

  private:
    static constexpr int kNarrowest = 48, kPadding = 12;  // of a column, at 96 dpi

    List& list_;
    Dialog& dialog_;
    Items* items_;
    SeenColumns columns_;
};

class RecordListWidget : public ControlWidget {
  public:
    RecordListWidget(List& list, Dialog& dialog, DialogWindow& window)
        : list_(list), view_(new RecordView(list, dialog, window)) {}
    QWidget* widget() override { return view_; }
    void update() override {
        view_->setEnabled(list_.enabled());
        view_->setVisible(list_.visible());
        view_->refresh();
    }

  private:
    List& list_;
    RecordView* view_;  // the window's
};

}  // namespace

std::unique_ptr<ControlWidget> makeRecordList(List& list, Dialog& dialog, DialogWindow& window) {
    return std::make_unique<RecordListWidget>(list, dialog, window);
}

}  // namespace ui
