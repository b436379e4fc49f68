// A grid of records over a source that computes them, in a window on the offscreen platform: how long it
// takes until it is painted, a page down, a changed cell, and how much memory the control takes, at three
// numbers of rows.
#include <malloc.h>

#include <QApplication>
#include <QTableView>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "bench/painted_cells.h"
#include "bench/stopwatch.h"
#include "platform/ui/backend.h"
#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_backend.h"

namespace {

constexpr int kColumns = 20, kGrid = 10;

class Records : public ui::GridSource {
  public:
    explicit Records(int rows) : rows_(rows) {}
    int rows() const override { return rows_; }
    std::string text(int column, int row) const override {
        auto changed = changed_.find({row, column});
        return changed != changed_.end() ? changed->second
                                         : std::to_string(row) + "." + std::to_string(column * row % 977);
    }
    void setText(int column, int row, std::string text) override {
        changed_[{row, column}] = std::move(text);
    }

  private:
    int rows_;
    std::map<std::pair<int, int>, std::string> changed_;
};

class Table : public ui::Dialog {
  public:
    explicit Table(Records& records) : ui::Dialog(900, "Table") {
        auto& grid = add<ui::Grid>(kGrid, kColumns);
        for (int column = 1; column <= kColumns; ++column)
            grid.setColumnHeading(column, "FIELD_" + std::to_string(column));
        grid.setColumnType(3, ui::CellType::dropDown("Yes\tNo"));
        grid.setSource(&records);
        setLayout(ui::column({ui::item(kGrid, 1)}));
        setSize({1000, 700});
    }
};

size_t heap() {
    const struct mallinfo2 now = mallinfo2();
    return now.uordblks + now.hblkhd;
}

// A table in its window, painted.
struct Shown {
    Shown(ui::QtBackend& backend, Records& records) : table(records) {
        table.open();
        cells = backend.window(table)->findChild<QTableView*>(QString::number(kGrid))->viewport();
        paints.emplace(*cells);
        paints->wait();
    }
    ~Shown() { table.close(); }

    Table table;
    QWidget* cells = nullptr;
    std::optional<Paints> paints;
};

// The middle and the worst of some runs, in milliseconds.
void report(const char* what, int times, const std::function<void(int)>& work) {
    std::vector<double> taken;
    for (int i = 0; i < times; ++i) taken.push_back(timeOf([&] { work(i); }).wall * 1e3);
    std::sort(taken.begin(), taken.end());
    std::printf("  %-14s %7.2f ms, at most %7.2f ms\n", what, taken[taken.size() / 2], taken.back());
}

void measure(int rows) {
    std::printf("%d rows of %d columns\n", rows, kColumns);
    ui::QtBackend backend;
    ui::setBackend(&backend);
    Records records(rows);
    report("opening", 7, [&](int) { Shown shown(backend, records); });

    const size_t before = heap();
    Shown shown(backend, records);
    std::printf("  %-14s %7.2f MB\n", "memory", static_cast<double>(heap() - before) / 1e6);

    auto& grid = shown.table.get<ui::Grid>(kGrid);
    const int seen = shown.cells->height() / (grid.rowHeight() + 4);
    std::printf("  %d rows are seen at once\n", seen);
    report("page down", std::min(30, rows / seen - 1), [&](int i) {
        grid.setActive(1, (i + 2) * seen);
        shown.paints->wait();
    });
    report("to the end", 4, [&](int i) {
        grid.setActive(1, i % 2 == 0 ? rows : 1);
        shown.paints->wait();
    });
    report("changed cell", 100, [&](int i) {
        grid.setText(2, 1 + i % 10, "value " + std::to_string(i));
        shown.paints->wait();
    });
    shown.table.setFocus(kGrid);
    report("typed letter", 20, [&](int) {
        shown.table.userKey({"x"});
        shown.paints->wait();
    });
    ui::setBackend(nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");  // else a window waits for more before it paints
    QApplication application(argc, argv);
    for (int rows : {1000, 100'000, 1'000'000}) measure(rows);
}
