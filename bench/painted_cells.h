// How often a grid in a window is painted, for benchmarks that wait until something is seen.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QWidget>

// Counts how often the cells of the grid have been painted.
class Paints : public QObject {
  public:
    explicit Paints(QWidget& cells) : cells_(cells) { cells.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++count_;
        return false;
    }
    // Lets the window go on until they have been painted once more.
    void wait() {
        const int before = count_;
        cells_.update(0, 0, 1, 1);
        while (count_ == before) QCoreApplication::processEvents(QEventLoop::AllEvents);
    }

  private:
    QWidget& cells_;
    int count_ = 0;
};
