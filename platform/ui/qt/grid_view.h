// The grid of a dialog as a spreadsheet: a table view over the model's cells. What is typed, picked and moved
// goes through the model; the view only follows its active cell and its editing.
#pragma once

#include <QAbstractTableModel>
#include <QFont>
#include <QFontMetrics>
#include <QPointer>
#include <QTableView>

#include "platform/ui/qt/control_widgets.h"
#include "platform/ui/qt/frozen_columns.h"
#include "platform/ui/qt/row_heights.h"
#include "platform/ui/qt/seen_columns.h"

class QComboBox;
class QLineEdit;

namespace ui {

class FrameOverlay;

class GridCells : public QAbstractTableModel {
  public:
    GridCells(Grid& grid, const QWidget& view, QObject* parent);
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : columns_; }
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // Takes over the grid's size and content, or a cell's.
    void refresh();
    void refreshCell(CellPosition at);
    void refreshHeadings();
    QColor selectionColour() const;
    QColor selectedTextColour() const;
    QColor takenColour() const;
    const QFont& font() const { return font_; }
    const QFontMetrics& metrics() const { return metrics_; }

    static CellPosition positionOf(const QModelIndex& index) { return {index.column() + 1, index.row() + 1}; }
    QModelIndex indexOf(CellPosition at) const { return index(at.row - 1, at.column - 1); }
    Grid& grid() const { return grid_; }

  private:
    bool isMarked(CellPosition at) const { return grid_.marksRows() && grid_.active().row == at.row; }

    Grid& grid_;
    const QWidget& view_;
    QFont font_;
    QFontMetrics metrics_{font_};
    int rows_ = 0, columns_ = 0;
};

class GridView : public QTableView {
  public:
    GridView(Grid& grid, Dialog& dialog, DialogWindow& window);
    void refresh();
    void refreshCell(CellPosition at);
    // The widget that edits the active cell; null when none does.
    QWidget* editor() const { return editor_; }
    // The greatest height up to this one at which the last row that is seen is a whole one.
    int heightOfWholeRows(int available) const;
    bool isWiderThanShown() const;

    // Of a frozen column where it is seen, not where it has been scrolled to.
    QModelIndex indexAt(const QPoint& at) const override;
    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int right, int down) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showHeadings();
    // Takes in the rows that have come into sight: widths of columns, heights of rows.
    void seeRows();
    int neededLines(CellPosition at) const;
    // Makes the cell that is active in the model the current one, and edits it when the model does.
    void followActive();
    int neededWidth(CellPosition at) const;
    void openEditor();
    void openList();
    QWidget* newList(const CellType& type);
    QWidget* newLine();
    void leaveEditor();
    void showList(QComboBox& list);
    void showItem(QComboBox& list);
    void followTyping(QLineEdit& line);
    // The sign that the active cell has not taken what was typed, with the reason.
    void showRefusal();
    void placeRefusal();
    bool listKey(const QKeyEvent& key);
    // Where the active cell's text is typed; null when nothing is.
    QLineEdit* editedLine() const;
    static bool isListKey(const QKeyEvent& key);
    bool isOnArrow(const QModelIndex& index, const QPoint& at) const;

    Grid& grid_;
    Dialog& dialog_;
    DialogWindow& window_;
    GridCells* cells_;
    SeenColumns columns_;
    FrozenColumns frozen_;
    RowHeights heights_;
    int filling_ = 0;  // the model's, of which the columns are
    int headings_ = 0;
    CellPosition shownActive_{0, 0};
    QPointer<QWidget> editor_;
    CellPosition edited_;
    // The list of the cell stands open because the cell is edited, so that Enter goes on from the cell.
    bool listOpensWithCell_ = true;
    FrameOverlay* refusal_;  // the viewport's
    bool refreshing_ = false;
};

// The room that a layout gives to a grid of whole rows: the grid stands at its top and may be a little lower.
class WholeRowsFrame : public QWidget {
  public:
    WholeRowsFrame(GridView& view, QWidget* parent);
    QSize sizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void placeView();

    GridView& view_;
};

class GridWidget : public ControlWidget {
  public:
    GridWidget(Grid& grid, Dialog& dialog, DialogWindow& window);
    QWidget* widget() override { return view_; }
    QWidget* placed() override { return frame_ ? frame_ : static_cast<QWidget*>(view_); }
    void update() override;
    void updateCell(CellPosition at) override { view_->refreshCell(at); }
    void takeFocus() override;

  private:
    Grid& grid_;
    GridView* view_;            // the window's
    QWidget* frame_ = nullptr;  // the window's; of a grid of whole rows
};

}  // namespace ui
