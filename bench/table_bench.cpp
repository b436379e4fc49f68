// The table dialog over tables of three sizes, in an Access file and an SQLite file, in a window on the
// offscreen platform: until it is painted, a page of sixty rows, a look at the end, ten changed cells saved,
// finding and sorting, and how much memory it takes.
#include <malloc.h>

#include <QApplication>
#include <QTableView>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/painted_cells.h"
#include "bench/stopwatch.h"
#include "module/transfer/table_sheet_stored.h"
#include "platform/ui/dialog.h"
#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_backend.h"

namespace {

constexpr int kGrid = 1001, kColumns = 20, kPageRows = 60;

std::string makeTable(const std::string& folder, const char* ending, int rows) {
    const std::string path = folder + "/bench" + std::to_string(rows) + ending;
    CDaoDatabase database;
    database.Create(path);
    CDaoTableDef table(&database);
    table.Create("POLES");
    table.CreateField("PT_ID", dbText, 255);
    table.CreateField("GIS_KEY", dbText, 255);
    for (int i = 3; i <= kColumns; ++i)
        table.CreateField("FIELD_" + std::to_string(i), i % 3 ? dbText : dbDouble, i % 3 ? 255 : 8);
    table.Append();
    database.BeginTrans();
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, "SELECT * FROM POLES");
    for (int row = 1; row <= rows; ++row) {
        records.AddNew();
        records.SetFieldValue(0, std::to_string(row));
        records.SetFieldValue(1, "POLES");
        for (int i = 3; i <= kColumns; ++i)
            if (i % 3)
                records.SetFieldValue(i - 1, row == rows ? "the last" : "v" + std::to_string(row % 1000 * i));
            else
                records.SetFieldValue(i - 1, row / 7.0);
        records.Update();
    }
    records.Close();
    database.CommitTrans();
    database.Close();
    return path;
}

// What the dialog has: the grid over the records of the table.
class Table : public ui::Dialog {
  public:
    explicit Table(norvane::StoredTableSheet& sheet) : ui::Dialog(900, "Table") {
        auto& grid = add<ui::Grid>(kGrid, static_cast<int>(sheet.columns().size()));
        grid.setFrozenColumns(2);
        grid.setWidestColumn(60);
        grid.setSource(&sheet);
        setLayout(ui::column({ui::item(kGrid, 1)}));
        setSize({1200, 1700});
    }
};

struct Shown {
    Shown(ui::QtBackend& backend, const std::string& path) : sheet(path, "POLES"), table(sheet) {
        table.open();
        cells = backend.window(table)->findChild<QTableView*>(QString::number(kGrid))->viewport();
        paints = std::make_unique<Paints>(*cells);
        paints->wait();
    }
    ~Shown() { table.close(); }

    norvane::StoredTableSheet sheet;
    Table table;
    QWidget* cells = nullptr;
    std::unique_ptr<Paints> paints;
};

void report(const char* what, int times, const std::function<void(int)>& work) {
    std::vector<double> taken, used;
    for (int i = 0; i < times; ++i) {
        const Time time = timeOf([&] { work(i); });
        taken.push_back(time.wall * 1e3);
        used.push_back(time.processor * 1e3);
    }
    for (auto* values : {&taken, &used}) std::sort(values->begin(), values->end());
    std::printf("  %-20s %8.2f ms, at most %8.2f ms; processor %8.2f ms\n", what, taken[taken.size() / 2],
                taken.back(), used[used.size() / 2]);
}

size_t heap() {
    const struct mallinfo2 now = mallinfo2();
    return now.uordblks + now.hblkhd;
}

void measure(const std::string& path, int rows) {
    std::printf("%s\n", std::filesystem::path(path).filename().c_str());
    ui::QtBackend backend;
    ui::setBackend(&backend);
    report("opening", 5, [&](int) { Shown shown(backend, path); });
    const size_t before = heap();
    Shown shown(backend, path);
    std::printf("  %-20s %8.2f MB\n", "memory", static_cast<double>(heap() - before) / 1e6);
    auto& grid = shown.table.get<ui::Grid>(kGrid);
    norvane::StoredTableSheet& sheet = shown.sheet;
    const auto goOn = [](long) { return true; };
    report("page of sixty rows", std::min(30, rows / kPageRows - 2), [&](int i) {
        grid.setActive(1, (i + 2) * kPageRows);
        shown.paints->wait();
    });
    report("to the end and back", 6, [&](int i) {
        grid.setActive(1, i % 2 == 0 ? rows : 1);
        shown.paints->wait();
    });
    report("ten cells saved", 5, [&](int i) {
        for (int cell = 0; cell < 10; ++cell)
            sheet.change((cell * 97 + i) * (rows / 1000), 3, "changed " + std::to_string(i));
        if (sheet.save(norvane::TableSheet::OthersChanges::kAsk, goOn).records != 10) std::abort();
        grid.sourceChanged();
        shown.paints->wait();
    });
    report("found near the end", 1, [&](int) {
        if (!sheet.find("the last", {1, 1}, goOn)) std::abort();
    });
    report("sorted by a text", 1, [&](int) { sheet.sortBy({0, true}, goOn); });
    report("sorted by a number", 1, [&](int) { sheet.sortBy({2, true}, goOn); });
    std::printf("  %-20s %8.2f MB\n", "memory now", static_cast<double>(heap() - before) / 1e6);
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");  // else a window waits for more before it paints
    QApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::string folder = (std::filesystem::temp_directory_path() / "table-bench-XXXXXX").string();
    if (!mkdtemp(folder.data())) return 1;
    for (const char* ending : {".mdb", ".sqlite"})
        for (int rows : {1000, 100'000, 1'000'000}) {
            const std::string path = makeTable(folder, ending, rows);
            measure(path, rows);
            std::filesystem::remove(path);
        }
    ui::setBackend(nullptr);
    std::filesystem::remove_all(folder);
}
