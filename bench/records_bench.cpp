// The view of a table of 20 fields at three sizes, in an Access file, an SQLite file and on a PostgreSQL
// server of its own: the first rows, jumps, orders, filters, the keys that a condition finds, and the memory
// that all of it takes.
//
//     records_bench [LARGEST]
//
// Times are those of the wall, in milliseconds; the longest of several where there are several.
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include "bench/stopwatch.h"
#include "module/conditions/condition.h"
#include "module/records/key_index.h"
#include "module/records/record_view.h"
#include "module/store/matching_records.h"
#ifdef NORVANE_ODBC
#include "tests/platform/dao/odbc/postgres_server.h"
#endif

using namespace norvane;

namespace {

constexpr int kColumns = 20, kPageRows = 60;
// A text of many values, one of few, a number.
constexpr int kName = 3, kKind = 4, kHeight = 5;

std::string nameOf(int column) {
    return "FIELD_" + std::to_string(column);
}

void makeTable(CDaoDatabase& database, int rows) {
    CDaoTableDef table(&database);
    table.Create("POLES");
    table.CreateField("PT_ID", dbText, 255);
    table.CreateField("GIS_KEY", dbText, 255);
    for (int i = 2; i < kColumns; ++i)
        table.CreateField(nameOf(i), i % 3 == 2 ? dbDouble : dbText, i % 3 == 2 ? 8 : 255);
    table.Append();
    database.BeginTrans();
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, "SELECT * FROM POLES");
    std::mt19937 random(7);
    for (int row = 1; row <= rows; ++row) {
        records.AddNew();
        records.SetFieldValue(0, "P" + std::to_string(row));
        records.SetFieldValue(1, "POLES");
        for (int i = 2; i < kColumns; ++i)
            if (i % 3 == 2)
                records.SetFieldValue(i, static_cast<double>(random() % 100'000) / 7);
            else if (i == kKind)
                records.SetFieldValue(i, "kind " + std::to_string(random() % 10));
            else
                records.SetFieldValue(i, "name " + std::to_string(random() % 1'000'000));
        records.Update();
    }
    records.Close();
    database.CommitTrans();
}

#ifdef NORVANE_ODBC
// The server makes its rows itself.
void makeServerTable(int rows) {
    std::string columns = "pt_id varchar(255), gis_key varchar(255)", values = "'P' || i, 'POLES'";
    for (int i = 2; i < kColumns; ++i) {
        columns += ", " + nameOf(i) + (i % 3 == 2 ? " double precision" : " varchar(255)");
        values += i % 3 == 2   ? ", random() * 14000"
                  : i == kKind ? ", 'kind ' || floor(random() * 10)"
                               : ", 'name ' || floor(random() * 1000000)";
    }
    const std::string said = PostgresServer::instance().answer(
        "SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE; CREATE SCHEMA survey; "
        "CREATE TABLE survey.poles (" +
        columns + "); INSERT INTO survey.poles SELECT " + values + " FROM generate_series(1, " +
        std::to_string(rows) + ") i; VACUUM ANALYZE survey.poles");
    if (!said.empty()) std::printf("%s\n", said.c_str());
}
#endif

double milliseconds(const std::function<void()>& work) {
    return timeOf(work).wall * 1e3;
}

void tell(const char* what, double time, const std::string& more = "") {
    std::printf("  %-34s %9.1f ms  %s\n", what, time, more.c_str());
}

size_t heap() {
    const struct mallinfo2 now = mallinfo2();
    return now.uordblks + now.hblkhd;
}

size_t mostHeap = 0;  // while a view was at work

// What a window shows of rows from one on.
void showPage(const RecordView& view, long first) {
    for (long row = first; row < std::min(first + kPageRows, view.shown()); ++row)
        for (int field = 0; field < kColumns; ++field)
            if (view.text(row, field).starts_with('#')) std::abort();
}

// Goes on until all is done, in slices as a window has them. The longest of them.
double workAll(RecordView& view) {
    double longest = 0;
    for (bool goesOn = true; goesOn;) {
        longest = std::max(longest, milliseconds([&] { goesOn = view.work(std::chrono::milliseconds(10)); }));
        mostHeap = std::max(mostHeap, heap());
    }
    if (!view.fault().empty()) std::printf("  %s\n", view.fault().c_str());
    return longest;
}

class Bench {
  public:
    Bench(std::function<void(CDaoDatabase&)> open, std::string table, int rows)
        : open_(std::move(open)), table_(std::move(table)), rows_(rows) {}

    void run() {
        openings();
        open_(database_);
        pass();  // what the engine keeps of its file is there from here on
        const size_t before = heap();
        view_ = std::make_unique<RecordView>(database_, table_, "PT_ID");
        double longest = 0;
        const double counted = milliseconds([&] { longest = workAll(*view_); });
        tell("all counted", counted, slices(longest));
        if (view_->total() != rows_) std::abort();
        jumps();
        mostHeap = 0;
        orders();
        const auto ofARecord = [&](size_t bytes) {
            return (static_cast<double>(bytes) - static_cast<double>(before)) / rows_;
        };
        std::printf("  %-34s %9.1f bytes a record; %.1f while rows are sorted\n", "memory", ofARecord(heap()),
                    ofARecord(mostHeap));
        filters();
        tell("index of the key made", milliseconds([&] { MakeIndex(database_, table_, "PT_ID"); }));
        byIndex();
        database_.Close();
    }

  private:
    static std::string slices(double longest) {
        return "longest slice " + std::to_string(static_cast<int>(longest)) + " ms";
    }

    void openings() {
        double longest = 0;
        for (int i = 0; i < 5; ++i) {
            CDaoDatabase database;
            longest = std::max(longest, milliseconds([&] {
                                   open_(database);
                                   const RecordView view(database, table_, "PT_ID");
                                   showPage(view, 0);
                               }));
        }
        tell("opened, first rows", longest);
    }

    void jumps() {
        std::mt19937 random(3);
        double longest = 0;
        for (int i = 0; i < 50; ++i) {
            const long row = i == 0 ? view_->shown() - kPageRows
                                    : static_cast<long>(random() % static_cast<unsigned>(view_->shown()));
            longest = std::max(longest, milliseconds([&] { showPage(*view_, row); }));
        }
        tell("jump anywhere", longest);
    }

    void pass() {
        std::vector<std::string> fields = {"PT_ID", "GIS_KEY"};
        for (int i = 2; i < kColumns; ++i) fields.push_back(nameOf(i));
        pass_ = milliseconds([&] {
            ForEachMatching(database_, table_, nullptr, fields, [](std::span<const dao::Variant>) {});
        });
        tell("one pass", pass_);
    }

    void orders() {
        for (int field : {kName, kKind, kHeight}) {
            double longest = 0;
            const double time = milliseconds([&] {
                view_->sortBy({field, false});
                longest = workAll(*view_);
            });
            char more[100];
            std::snprintf(more, sizeof more, "%.2f passes; %s", time / pass_, slices(longest).c_str());
            tell(field == kHeight ? "sorted by a number" : "sorted by a text", time, more);
            showPage(*view_, view_->shown() / 2);
        }
        view_->sortBy({});
        workAll(*view_);
    }

    void filter(const char* what, const RecordFilter& filter) {
        double longest = 0;
        const double time = milliseconds([&] {
            view_->setFilter(filter);
            longest = workAll(*view_);
        });
        tell(what, time, std::to_string(view_->shown()) + " records; " + slices(longest));
    }

    void filters() {
        RecordFilter words;
        words.words = "kind 3";
        filter("filter: words of texts", words);
        words.words = "1234";
        filter("filter: digits", words);
        ConditionFault fault;
        const std::optional<Condition> condition = Condition::read(
            "FIELD_5 > 7000 AND FIELD_4 IN ('kind 1', 'kind 2', 'KIND 3')", view_->fields(), fault);
        if (!condition) std::abort();
        RecordFilter ofCondition;
        ofCondition.condition = std::make_shared<const Condition>(*condition);
        filter("filter: condition", ofCondition);
        auto keys = std::make_shared<RecordKeys>();
        for (int i = 0; i < rows_; i += 2) keys->insert("P" + std::to_string(i));
        RecordFilter ofKeys;
        ofKeys.keys = keys;
        filter("filter: half of all keys", ofKeys);
        ofKeys.keys.reset();
        keys.reset();
        size_t found = 0;
        const double time = milliseconds([&] {
            ForEachMatching(
                database_, table_, &*condition, {"PT_ID"},
                [&](std::span<const dao::Variant> values) { found += !RecordKeyOf(values[0]).empty(); });
        });
        tell("keys of a condition", time, std::to_string(found) + " keys");
        const std::string last = "P" + std::to_string(rows_);
        view_->setFilter({});
        tell("row of a key, without an index", milliseconds([&] {
                 if (!view_->rowOf(last)) std::abort();
             }));
        view_->noteChanged(view_->id(0));
    }

    void byIndex() {
        std::mt19937 random(5);
        double longest = 0;
        for (int i = 0; i < 50; ++i) {
            const std::string key = "P" + std::to_string(1 + random() % static_cast<unsigned>(rows_));
            longest = std::max(longest, milliseconds([&] { showPage(*view_, view_->rowOf(key).value()); }));
        }
        tell("jump to a key", longest);
        for (const bool descending : {false, true}) {
            double rest = 0, slice = 0;
            const double time = milliseconds([&] {
                view_->sortBy({0, descending});
                showPage(*view_, 0);
            });
            rest = milliseconds([&] { slice = workAll(*view_); });
            tell(descending ? "sorted by the index, downwards" : "sorted by the index", time,
                 "all of them " + std::to_string(static_cast<int>(rest)) + " ms; " + slices(slice));
        }
        auto keys = std::make_shared<RecordKeys>();
        for (int i = 1; i <= 1000; ++i) keys->insert("P" + std::to_string(i * (rows_ / 1000)));
        view_->sortBy({});
        RecordFilter few;
        few.keys = keys;
        filter("filter: 1000 keys", few);
    }

    std::function<void(CDaoDatabase&)> open_;
    std::string table_;
    int rows_;
    CDaoDatabase database_;
    std::unique_ptr<RecordView> view_;
    double pass_ = 0;
};

void benchFile(const std::string& folder, const char* ending, int rows) {
    const std::string path = folder + "/bench" + ending;
    {
        CDaoDatabase database;
        database.Create(path);
        makeTable(database, rows);
    }
    Bench([&](CDaoDatabase& database) { database.Open(path); }, "POLES", rows).run();
    std::filesystem::remove(path);
}

}  // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const int largest = argc > 1 ? std::atoi(argv[1]) : 1'000'000;
    std::string folder = (std::filesystem::temp_directory_path() / "records-bench-XXXXXX").string();
    if (!::mkdtemp(folder.data())) return 1;
    for (int rows : {10'000, 100'000, 1'000'000}) {
        if (rows > largest) break;
        for (const char* ending : {".mdb", ".sqlite"}) {
            std::printf("%d records, %s\n", rows, ending);
            benchFile(folder, ending, rows);
        }
#ifdef NORVANE_ODBC
        const PostgresServer& server = PostgresServer::instance();
        std::printf("%d records, PostgreSQL %s\n", rows, server.missing().c_str());
        if (!server.missing().empty()) continue;
        makeServerTable(rows);
        Bench(
            [&](CDaoDatabase& database) {
                database.Open("", false, false, dao::ConnectString(server.connect()));
            },
            "survey.poles", rows)
            .run();
#endif
    }
    std::filesystem::remove_all(folder);
}
