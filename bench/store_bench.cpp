// The store at three sizes: records added in bulk against a bare loop of SQLite, finding a record, reading a
// template and a feature file.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/dxf/blank_drawing.h"
#include "module/cad/ads_owners.h"
#include "module/features/feature_file.h"
#include "module/store/bulk_add.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/output_database.h"
#include "module/store/template_database.h"

using namespace norvane;

namespace {

class Folder {
  public:
    Folder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "norvane-bench-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    std::string operator()(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

const std::vector<OutputField> kFields = {{"OWNER", FieldKind::kChar, ""},  {"SPECIES", FieldKind::kChar, ""},
                                          {"NOTES", FieldKind::kChar, ""},  {"COUNT", FieldKind::kInt, ""},
                                          {"HEIGHT", FieldKind::kReal, ""}, {"GIRTH", FieldKind::kReal, ""}};

std::string textOf(int i, int column) {
    return column < 3 ? "value " + std::to_string(i % 1000) + " of a text column"
                      : std::to_string(i % 5000) + (column > 3 ? ".25" : "");
}

// A database with the table TREE and no records.
void makeTable(const std::string& path) {
    std::filesystem::remove(path);
    CDaoDatabase database;
    database.Create(path);
    EnsureOutputTable(database, {"TREE", "PT_ID", "", "TREE"}, kFields);
}

ResultBuffers listOfRecords(const std::string& path, int count) {
    resbuf* head = acutBuildList(RTSTR, path.c_str(), 0);
    resbuf* last = head;
    auto append = [&](resbuf* more) {
        last->rbnext = more;
        while (last->rbnext) last = last->rbnext;
    };
    for (int i = 0; i < count; ++i) {
        append(acutBuildList(RTSHORT, 1, RTSTR, "TREE", RTSTR, "PT_ID", RTSTR, std::to_string(i).c_str(),
                             RTSTR, "GIS_KEY", RTSTR, "TREE", 0));
        for (int column = 0; column < 6; ++column)
            append(acutBuildList(RTSTR, kFields[static_cast<size_t>(column)].name.c_str(), RTSTR,
                                 textOf(i, column).c_str(), 0));
    }
    return ResultBuffers(head);
}

void BulkAdd(benchmark::State& state) {
    Folder folder;
    ResultBuffers list = listOfRecords(folder("out.mdb"), static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        makeTable(folder("out.mdb"));
        state.ResumeTiming();
        if (BulkAddRecords(list.get()) != 1.0) state.SkipWithError("not added");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BulkAdd)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();

void BareSqlite(benchmark::State& state) {
    Folder folder;
    for (auto _ : state) {
        state.PauseTiming();
        makeTable(folder("out.mdb"));
        std::vector<std::string> values;
        for (int i = 0; i < state.range(0); ++i)
            for (int column = 0; column < 6; ++column) values.push_back(textOf(i, column));
        state.ResumeTiming();
        sqlite3* db = nullptr;
        sqlite3_open(folder("out.mdb").c_str(), &db);
        sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
        sqlite3_stmt* insert = nullptr;
        sqlite3_prepare_v2(db, "INSERT INTO TREE VALUES(?,?,?,?,?,?,?,?)", -1, &insert, nullptr);
        const std::string* value = values.data();
        for (int i = 0; i < state.range(0); ++i) {
            std::string id = std::to_string(i);
            sqlite3_bind_text(insert, 1, id.c_str(), -1, SQLITE_STATIC);
            sqlite3_bind_text(insert, 2, "TREE", -1, SQLITE_STATIC);
            for (int column = 0; column < 3; ++column)
                sqlite3_bind_text(insert, column + 3, (value++)->c_str(), -1, SQLITE_STATIC);
            sqlite3_bind_int(insert, 6, std::atoi((value++)->c_str()));
            sqlite3_bind_double(insert, 7, std::atof((value++)->c_str()));
            sqlite3_bind_double(insert, 8, std::atof((value++)->c_str()));
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
        sqlite3_close(db);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BareSqlite)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();

void FindRecord(benchmark::State& state) {
    Folder folder;
    int count = static_cast<int>(state.range(0));
    makeTable(folder("out.mdb"));
    BulkAddRecords(listOfRecords(folder("out.mdb"), count).get());
    int i = 0;
    for (auto _ : state) {
        std::string id = std::to_string((i += 7919) % count);
        if (!LoadRecord(folder("out.mdb"), {"TREE", "PT_ID", id, "TREE"}).found)
            state.SkipWithError("not found");
    }
}
BENCHMARK(FindRecord)->Arg(100)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

void SaveOneRecord(benchmark::State& state) {
    Folder folder;
    int count = static_cast<int>(state.range(0));
    makeTable(folder("out.mdb"));
    BulkAddRecords(listOfRecords(folder("out.mdb"), count).get());
    std::vector<OutputField> fields = kFields;
    fields[0].value = "new owner";
    int i = 0;
    for (auto _ : state) {
        std::string id = std::to_string((i += 7919) % count);
        if (!SaveRecord(folder("out.mdb"), {"TREE", "PT_ID", id, "TREE"}, fields))
            state.SkipWithError("not saved");
    }
}
BENCHMARK(SaveOneRecord)->Arg(100)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond)->UseRealTime();

// The names of all features, of 15 rows each, and the rows of one.
void ReadTemplate(benchmark::State& state) {
    Folder folder;
    {
        CDaoDatabase database;
        database.Create(folder("template.mdb"));
        EnsureTemplateTables(database);
        CDaoRecordset rows(&database);
        rows.Open(dbOpenDynaset, "ZGEO_SMART_PROMPTING");
        for (int i = 0; i < state.range(0) * 15; ++i) {
            rows.AddNew();
            rows.SetFieldValue("GIS_NAME", "FEATURE " + std::to_string(i / 15));
            rows.SetFieldValue("FIELD_NAME", "FIELD" + std::to_string(i % 15));
            rows.SetFieldValue("FIELD_PROMPT", "Prompt " + std::to_string(i % 15));
            rows.Update();
        }
    }
    for (auto _ : state) {
        CDaoDatabase database;
        database.Open(folder("template.mdb"));
        benchmark::DoNotOptimize(ReadFeatureNames(database));
        benchmark::DoNotOptimize(ReadFeatureRows(database, "FEATURE 7"));
    }
}
BENCHMARK(ReadTemplate)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

// A feature file without a line end, by its megabytes.
void ReadFileWithoutLineEnds(benchmark::State& state) {
    const std::string content(static_cast<size_t>(state.range(0)) << 20, ',');
    for (auto _ : state) benchmark::DoNotOptimize(ParseFeatureFile(content));
}
BENCHMARK(ReadFileWithoutLineEnds)->Arg(10)->Arg(40)->Arg(160)->Unit(benchmark::kMillisecond);

// Points of which every other one is linked.
void HasLink(benchmark::State& state) {
    std::vector<AcDbObjectId> entities;
    const ads_point at = {1, 2, 3};
    hostcad::setCurrentDrawing(hostcad::blankDrawing());
    ResultBuffers point(acutBuildList(RTDXF0, "POINT", 8, "0", 10, at, 0));
    for (int i = 0; i < state.range(0); ++i) {
        ads_name entity;
        acdbEntMake(point.get());
        acdbEntLast(entity);
        if (i % 2)
            WriteGisLink(entity, {dao::DatabasePath("template.mdb"), dao::DatabasePath("output.mdb"), "TREE",
                                  "PT_ID", std::to_string(i)});
        acdbGetObjectId(entities.emplace_back(), entity);
    }
    for (auto _ : state) {
        long linked = 0;
        for (AcDbObjectId id : entities) {
            ads_name entity;
            acdbGetAdsName(entity, id);
            linked += HasGisLink(entity) == RTNORM;
        }
        if (linked != state.range(0) / 2) state.SkipWithError("wrong count");
    }
}
BENCHMARK(HasLink)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
