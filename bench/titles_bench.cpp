// Title blocks: a run over 1 000 inserts beside reading its table once, the list of key values, and many
// drawings.
//
//     titles_bench [RECORDS]
//
// A routine keeps the records that its inserts lead to; the dialog, which lists all key values, keeps them
// all.
//
// Times are of the processor, in seconds, the best of three.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/silent_host.h"
#include "bench/stopwatch.h"
#include "module/cad/ads_owners.h"
#include "module/exchange/dbf_file.h"
#include "module/titleblocks/fill_blocks.h"
#include "module/titleblocks/link_file.h"
#include "module/titleblocks/link_sets.h"
#include "module/titleblocks/record_source.h"
#include "platform/dao/dao.h"

using namespace norvane;
namespace fs = std::filesystem;

namespace {

constexpr int kInserts = 1000, kDrawings = 200;
const std::vector<std::string> kFields = {"JOBNO", "PROJECT", "CLIENT", "SHEET"};

std::string valueOf(const std::string& field, int record) {
    return field + " " + std::to_string(record);
}

class Bench {
  public:
    void run(int records) {
        makeDatabase(records);
        makeTable(records);
        makeText(records);
        for (const char* file : {"jobs.mdb", "jobs.dbf", "jobs.csv"}) runOn(file, records);
        runOnDrawings();
    }

  private:
    void makeDatabase(int records) const {
        fs::remove(folder_("jobs.mdb"));
        CDaoDatabase database;
        database.Create(folder_("jobs.mdb"));
        CDaoTableDef table(&database);
        table.Create("JOBS");
        for (const std::string& field : kFields) table.CreateField(field, dbText, 50);
        table.Append();
        database.BeginTrans();
        CDaoRecordset set(&database);
        set.Open(dbOpenDynaset, "SELECT * FROM [JOBS]");
        for (int i = 0; i < records; ++i) {
            set.AddNew();
            for (const std::string& field : kFields) set.SetFieldValue(field, valueOf(field, i));
            set.Update();
        }
        database.CommitTrans();
    }
    void makeTable(int records) const {
        const OpenDbfFile table(DbfCreate(folder_("jobs.dbf")));
        for (const std::string& field : kFields) DbfAddField(table.get(), field, kDbfString, 50, 0);
        for (int i = 0; i < records; ++i)
            for (int f = 0; f < static_cast<int>(kFields.size()); ++f)
                DbfWriteStringAttribute(table.get(), i, f, valueOf(kFields[static_cast<size_t>(f)], i));
    }
    void makeText(int records) const {
        std::ofstream out(folder_("jobs.csv"));
        for (const std::string& field : kFields) out << field << (field == kFields.back() ? "\n" : ",");
        for (int i = 0; i < records; ++i)
            for (const std::string& field : kFields)
                out << valueOf(field, i) << (field == kFields.back() ? "\n" : ",");
    }

    std::vector<BlockLink> links(const std::string& file) const {
        std::vector<BlockLink> links;
        for (const std::string& field : kFields)
            links.push_back({"TITLE", field, "JOBNO", "JOBS", field, dao::DatabasePath(folder_(file)), {}});
        return links;
    }

    static void make(resbuf* list) {
        acdbEntMake(list);
        acutRelRb(list);
    }
    // The keys are spread over the table.
    static void makeBlocks(int count, int records) {
        ads_point origin = {0, 0, 0};
        make(acutBuildList(RTDXF0, "BLOCK", 2, "TITLE", 70, 2, 10, origin, 0));
        for (const std::string& field : kFields)
            make(acutBuildList(RTDXF0, "ATTDEF", 10, origin, 40, 1.0, 1, "", 3, "", 2, field.c_str(), 70, 0,
                               0));
        make(acutBuildList(RTDXF0, "ENDBLK", 0));
        for (int i = 0; i < count; ++i) {
            ads_point at = {0, static_cast<double>(i), 0};
            make(acutBuildList(RTDXF0, "INSERT", 2, "TITLE", 66, 1, 10, at, 0));
            for (const std::string& field : kFields)
                make(acutBuildList(RTDXF0, "ATTRIB", 10, at, 40, 1.0, 1,
                                   field == "JOBNO" ? valueOf(field, i * (records / count)).c_str() : "old",
                                   2, field.c_str(), 70, 0, 0));
            make(acutBuildList(RTDXF0, "SEQEND", 0));
        }
    }

    // Seconds of a run from the links of a file on, in a drawing that has been made.
    static double fill(const FillChoice& choice, const std::vector<BlockLink>& all, ValueTables& tables,
                       bool keepsAll) {
        FillReport report;
        const double seconds = timeOf([&] {
                                   const BlockLinkSet set = TestLinks("TITLE", all);
                                   std::optional<TextSet> keys;
                                   if (!keepsAll) keys = KeysOf(choice);
                                   tables.read(
                                       set.links, {}, [](const std::string&) { std::abort(); },
                                       [](long) { return true; }, keys ? &*keys : nullptr);
                                   report = FillBlocks(choice, set.links, tables, {});
                               }).processor;
        if (report.updated != kInserts) std::abort();
        return seconds;
    }

    void runOn(const std::string& file, int records) const {
        double reading = 1e9, filling = 1e9, fillingWithAll = 1e9, listing = 1e9;
        const std::vector<BlockLink> all = links(file);
        FillChoice choice;
        choice.block = "TITLE", choice.keyAttribute = "JOBNO";
        for (int round = 0; round < 3; ++round) {
            reading =
                std::min(reading, timeOf([&] {
                                      size_t bytes = 0;
                                      OpenRecordSource(dao::DatabasePath(folder_(file)))
                                          ->read("JOBS", kFields, [&](std::span<const std::string> values) {
                                              bytes += values[0].size();
                                              return true;
                                          });
                                      if (bytes == 0) std::abort();
                                  }).processor);
            SilentHost host;
            makeBlocks(kInserts, records);
            ValueTables some, tables;
            filling = std::min(filling, fill(choice, all, some, false));
            fillingWithAll = std::min(fillingWithAll, fill(choice, all, tables, true));
            listing =
                std::min(listing, timeOf([&] {
                                      if (tables.keyValues(all[0]).size() != static_cast<size_t>(records))
                                          std::abort();
                                  }).processor);
        }
        std::printf(
            "%-9s %7d records: read %.3f s; %d inserts filled, with the reading, %.3f s: %.2f times; in the "
            "dialog %.3f s: %.2f times; values %.4f s\n",
            file.c_str(), records, reading, kInserts, filling, filling / reading, fillingWithAll,
            fillingWithAll / reading, listing);
        std::fflush(stdout);
    }

    void runOnDrawings() const {
        SilentHost host;
        makeBlocks(10, 10);
        for (int i = 0; i < kDrawings; ++i)
            host.host().saveDrawing(folder_("sheet") + std::to_string(i) + ".dxf", true);
        const std::vector<BlockLink> all = links("jobs.dbf");
        FillChoice choice;
        choice.block = "TITLE", choice.keyAttribute = "JOBNO";
        const double seconds =
            timeOf([&] {
                for (int i = 0; i < kDrawings; ++i) {
                    const std::string path = folder_("sheet") + std::to_string(i) + ".dxf";
                    if (!host.host().openDrawing(path).empty()) std::abort();
                    const BlockLinkSet set = TestLinks("TITLE", all);
                    ValueTables tables;
                    tables.read(
                        set.links, {}, [](const std::string&) { std::abort(); }, [](long) { return true; });
                    if (FillBlocks(choice, set.links, tables, {}).updated != 10) std::abort();
                    if (!host.host().saveDrawing(path, false).empty()) std::abort();
                }
            }).processor;
        std::printf("%d drawings opened, filled from jobs.dbf and saved: %.2f s\n", kDrawings, seconds);
    }

    BenchFolder folder_;
};

}  // namespace

int main(int argc, char** argv) {
    Bench().run(argc > 1 ? std::atoi(argv[1]) : 100000);
}
