// The grid of a dialog as a spreadsheet: a table view over the model's cells. What is typed, picked and moved
// goes through the model; the view only follows its active cell and its editing.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <QTimer>

#include "platform/ui/qt/control_widgets.h"

class QLineEdit;

namespace ui {

class GridCells : public QAbstractTableModel {
  public:
    explicit GridCells(Grid& grid, QObject* parent) : QAbstractTableModel(parent), grid_(grid) {}
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : columns_; }
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // Takes over the grid's size and content.
    void refresh();

    static CellPosition positionOf(const QModelIndex& index) { return {index.column() + 1, index.row() + 1}; }
    QModelIndex indexOf(CellPosition at) const { return index(at.row - 1, at.column - 1); }
    Grid& grid() const { return grid_; }

  private:
    Grid& grid_;
    int rows_ = 0, columns_ = 0;
};

class GridView : public QTableView {
  public:
    GridView(Grid& grid, Dialog& dialog, DialogWindow& window);
    void refresh();
    // The widget that edits the active cell; null when none does.
    QWidget* editor() const { return editor_; }
    // The greatest height up to this one at which the last row that is seen is a whole one.
    int heightOfWholeRows(int available) const;
    bool isWiderThanShown() const;

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void openEditor();
    void leaveEditor();
    void followTyping(QLineEdit& line);
    // Where the active cell's text is typed; null when nothing is.
    QLineEdit* editedLine() const;
    static bool isListKey(const QKeyEvent& key);
    void showColumns();
    bool isOnArrow(const QModelIndex& index, const QPoint& at) const;

    Grid& grid_;
    Dialog& dialog_;
    DialogWindow& window_;
    GridCells* cells_;
    QWidget* editor_ = nullptr;
    CellPosition edited_;
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
    void takeFocus() override;

  private:
    Grid& grid_;
    GridView* view_;            // the window's
    QWidget* frame_ = nullptr;  // the window's; of a grid of whole rows
};

}  // namespace ui
