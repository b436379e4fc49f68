// Conditions on a table of 1 000 000 records (or as many as the argument says) in an Access file and an
// SQLite file: reading a condition, asking it of records, and finding records by the engine. The measure is
// one pass of the engine over the table.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench/stopwatch.h"
#include "module/conditions/condition.h"

using namespace norvane;

namespace {

const char* const kConditions[] = {
    "PT_ID = 'A777'",
    "PT_ID IN ('A777', 'A778', 'a999')",
    "DBH > 49.5",
    "SPECIES = 'OAK'",
    "SPECIES LIKE '*k*'",
    "SPECIES = 'línea'",
    "SEEN >= #2004-05-31# AND NOT (DBH < 10 OR SPECIES LIKE 'e*')",
};

void makeTable(CDaoDatabase& db, const std::string& path, int count) {
    db.Create(path);
    CDaoTableDef table(&db);
    table.Create("TREE");
    table.CreateField("PT_ID", dbText, 50);
    table.CreateField("SPECIES", dbText, 50);
    table.CreateField("DBH", dbDouble, 8);
    table.CreateField("SEEN", dbDate, 8);
    table.Append();
    static const char* const kSpecies[] = {"oak", "elm", "ash", "línea", "beech"};
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "TREE");
    db.BeginTrans();
    for (int i = 0; i < count; ++i) {
        set.AddNew();
        set.SetFieldValue(0, "A" + std::to_string(i));
        set.SetFieldValue(1, kSpecies[i % 5]);
        set.SetFieldValue(2, (i * 37 % 1000) / 20.0);
        set.SetFieldValue(3, dao::Date{36000.0 + i % 4000});
        set.Update();
    }
    db.CommitTrans();
}

long found(CDaoDatabase& db, const std::string& where, const std::vector<dao::Variant>& parameters) {
    CDaoRecordset set(&db);
    set.Open(dbOpenSnapshot, "SELECT COUNT(*) FROM TREE WHERE " + where, 0, parameters);
    double count = 0;
    dao::numberOf(set.GetFieldValue(0), count);
    return static_cast<long>(count);
}

void measure(CDaoDatabase& db, const char* engine, int count) {
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "TREE");
    std::vector<CDaoFieldInfo> fields(static_cast<size_t>(set.GetFieldCount()));
    for (size_t i = 0; i < fields.size(); ++i) set.GetFieldInfo(static_cast<int>(i), fields[i]);
    std::vector<dao::Variant> values;
    for (size_t i = 0; i < fields.size(); ++i) values.push_back(set.GetFieldValue(static_cast<int>(i)));
    const Time pass = timeOf([&] { found(db, "DBH IS NOT NULL", {}); });
    std::printf("%s, %d records: one pass %.3f s\n", engine, count, pass.processor);
    for (const char* text : kConditions) {
        ConditionFault fault;
        std::optional<Condition> condition;
        const Time reading = timeOf([&] { condition = Condition::read(text, fields, fault); });
        const ConditionSearch search = condition->where(db);
        long records = 0, held = 0;
        const Time first = timeOf([&] { records = found(db, search.where, search.parameters); });
        const Time search2 = timeOf([&] { records = found(db, search.where, search.parameters); });
        const Time asking = timeOf([&] {
            for (int i = 0; i < count; ++i) held += condition->holds(values);
        });
        std::printf("  %-62s read %4.0f us, asked %5.0f ns, found %7ld in %.3f s, then %.3f s: %.1f passes\n",
                    text, reading.processor * 1e6, asking.processor * 1e9 / count, records, first.processor,
                    search2.processor, search2.processor / pass.processor);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const int count = argc > 1 ? std::atoi(argv[1]) : 1000000;
    std::string folder = (std::filesystem::temp_directory_path() / "norvane-bench-XXXXXX").string();
    folder = ::mkdtemp(folder.data());
    for (const auto& [engine, file] : {std::pair("Access", "/t.mdb"), std::pair("SQLite", "/t.sqlite")}) {
        CDaoDatabase db;
        makeTable(db, folder + file, count);
        measure(db, engine, count);
    }
    std::filesystem::remove_all(folder);
    return 0;
}
