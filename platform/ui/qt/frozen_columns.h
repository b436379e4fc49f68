// The first columns of a table that stay in sight while the others are scrolled. They are painted over what
// has been scrolled below them, so that they cost no more than the cells that are seen.
#pragma once

#include <QHeaderView>
#include <QModelIndex>
#include <QTableView>

namespace ui {

class FrozenColumns {
  public:
    explicit FrozenColumns(QTableView& view) : view_(view) {}

    void setCount(int count) { count_ = count; }
    int count() const { return count_; }
    bool has(int column) const { return column >= 0 && column < count_ && isScrolled(); }
    // Their width, 0 where nothing is scrolled below them; they never take all of the view.
    int width() const;
    // The column that is seen at a place from the left; -1 for none of them.
    int columnAt(int x) const;
    int leftOf(int column) const;

  private:
    bool isScrolled() const;

    QTableView& view_;
    int count_ = 0;
};

// Headings whose first ones stay with their columns.
class FrozenHeader : public QHeaderView {
  public:
    FrozenHeader(const FrozenColumns& frozen, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    const FrozenColumns& frozen_;
    int pressed_ = -1;  // a frozen heading
};

}  // namespace ui
