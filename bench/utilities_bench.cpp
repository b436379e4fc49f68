// The imports of note blocks and of delimited lines into an Access file, beside a bare loop that finds and
// writes the same rows through the same engine.
//
//     utilities_bench [LARGEST]
//
// Blocks have eight lines, lines eight fields. Each import is run into an empty file and again over the rows
// that it has made. Times are of the processor, in seconds, the best of three.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/silent_host.h"
#include "bench/stopwatch.h"
#include "module/transfer/import_notes.h"
#include "module/transfer/import_text.h"
#include "platform/dao/dao.h"

using namespace norvane;
namespace fs = std::filesystem;

namespace {

constexpr const char* kColumns[] = {"NORTHING", "EASTING",  "ELEVATION", "DESCRIPTION",
                                    "OWNER",    "MATERIAL", "HEIGHT",    "CLASS"};
constexpr int kTypes[] = {dbDouble, dbDouble, dbDouble, dbText, dbText, dbText, dbDouble, dbLong};
constexpr size_t kCount = std::size(kColumns);

std::vector<std::string> valuesOf(int i) {
    return {std::to_string(480000 + i % 977) + ".1234", std::to_string(1630000 + i % 1013) + ".5678",
            std::to_string(500 + i % 90) + ".25",       "POLE",
            "OWNER NUMBER " + std::to_string(i % 977),  i % 3 ? "WOOD" : "STEEL",
            std::to_string(20 + i % 30) + ".5",         std::to_string(i % 5)};
}

class Bench {
  public:
    void run(int count) {
        makeInputs(count);
        const auto [bareAdd, bareChange] = twice([&] { bare(count); });
        const auto [notesAdd, notesChange] = twice([&] { notes(count); });
        const auto [textAdd, textChange] = twice([&] { text(count); });
        std::printf(
            "%7d rows added:   bare %6.3f s; notes %6.3f s, %.2f times; text %6.3f s, %.2f times\n"
            "        rows changed: bare %6.3f s; notes %6.3f s, %.2f times; text %6.3f s, %.2f times\n",
            count, bareAdd, notesAdd, notesAdd / bareAdd, textAdd, textAdd / bareAdd, bareChange, notesChange,
            notesChange / bareChange, textChange, textChange / bareChange);
        std::fflush(stdout);
    }

  private:
    std::string output() const { return folder_("out.mdb"); }

    // Into an empty file, and again.
    std::pair<double, double> twice(const std::function<void()>& work) const {
        double adding = 1e9, changing = 1e9;
        for (int round = 0; round < 3; ++round) {
            fs::remove(output());
            CDaoDatabase database;
            database.Create(output());
            database.Close();
            adding = std::min(adding, timeOf(work).processor);
            changing = std::min(changing, timeOf(work).processor);
        }
        return {adding, changing};
    }

    void makeInputs(int count) const {
        std::ofstream notes(folder_("in.not")), text(folder_("in.txt"));
        for (int i = 1; i <= count; ++i) {
            const std::vector<std::string> values = valuesOf(i);
            notes << "PT_ID:" << i << "  GIS_FILE:POLE.GIS\n";
            text << i;
            for (size_t k = 0; k < kCount; ++k) {
                notes << kColumns[k] << ',' << values[k] << '\n';
                if (k + 1 < kCount) text << ',' << values[k];
            }
            text << '\n';
        }
    }

    void notes(int count) const {
        const std::optional<NoteRecordList> list = ReadNoteRecords(folder_("in.not"));
        check(ImportFeatures(output(), FeaturesOf(*list), "bench"), count);
    }

    void text(int count) const {
        TextImport import;
        import.path = folder_("in.txt");
        import.table = "POLE";
        import.fields.push_back({"PT_ID", "", kCharType, true, "FIELD1"});
        for (size_t k = 0; k + 1 < kCount; ++k)
            import.fields.push_back({kColumns[k], "", kTypes[k] == dbDouble ? kRealType : kCharType});
        std::optional<TextRecords> records = ReadTextRecords(import, [](size_t, size_t) { return true; });
        check(ImportTables(output(), {std::move(records->import)}, "bench"), count);
    }

    static void check(const ImportRun& run, int count) {
        const bool whole = run.tables.size() == 1 &&
                           run.tables[0].added + run.tables[0].changed == static_cast<size_t>(count);
        if (!whole) std::abort();
    }

    // One pass over the table for the rows that are there, then each row written.
    void bare(int count) const {
        CDaoDatabase database;
        database.Open(output());
        database.BeginTrans();
        if (database.GetTableDefCount() == 0 || !hasTable(database)) makeTable(database);
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset, "SELECT * FROM [POLE]");
        std::unordered_map<std::string, int> wanted;
        for (int i = 1; i <= count; ++i) wanted.emplace(std::to_string(i), i);
        for (; !records.IsEOF(); records.MoveNext()) {
            const auto row = wanted.find(dao::toText(records.GetFieldValue(0)));
            if (row == wanted.end() || dao::toText(records.GetFieldValue(1)) != "POLE") continue;
            records.Edit();
            fill(records, row->second);
            records.Update();
            wanted.erase(row);
        }
        for (int i = 1; i <= count; ++i) {
            if (!wanted.contains(std::to_string(i))) continue;
            records.AddNew();
            fill(records, i);
            records.Update();
        }
        records.Close();
        database.CommitTrans();
        database.Close();
    }

    static bool hasTable(const CDaoDatabase& database) {
        CDaoTableDefInfo info;
        for (int i = 0; i < database.GetTableDefCount(); ++i) {
            database.GetTableDefInfo(i, info);
            if (info.name == "POLE") return true;
        }
        return false;
    }

    static void makeTable(CDaoDatabase& database) {
        CDaoTableDef table(&database);
        table.Create("POLE");
        for (const char* key : {"PT_ID", "GIS_KEY"}) table.CreateField(key, dbText, 255, dbVariableField);
        for (size_t k = 0; k < kCount; ++k)
            table.CreateField(kColumns[k], kTypes[k], kTypes[k] == dbText ? 255 : 8);
        table.Append();
    }

    static void fill(CDaoRecordset& records, int i) {
        const std::vector<std::string> values = valuesOf(i);
        records.SetFieldValue(0, std::to_string(i));
        records.SetFieldValue(1, "POLE");
        for (size_t k = 0; k < kCount; ++k) records.SetFieldValue(static_cast<int>(k) + 2, values[k]);
    }

    BenchFolder folder_;
};

}  // namespace

int main(int argc, char** argv) {
    const int largest = argc > 1 ? std::atoi(argv[1]) : 100000;
    SilentHost host;
    Bench bench;
    for (int count = 1000; count <= largest; count *= 10) bench.run(count);
    return 0;
}
