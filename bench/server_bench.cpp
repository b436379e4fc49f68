// What a PostgreSQL server on this machine costs: function code 1 with a scripted sheet, from the Lisp call
// to the link written, against the number of records in the table, without an index and with the one that
// docs/servers.md recommends; and records added and read through a record set.
#include <cstdio>

#include "bench/scripted_prompting.h"
#include "bench/stopwatch.h"
#include "tests/platform/dao/odbc/postgres_server.h"

namespace {

constexpr int kFeatures = 10;
constexpr int kAttributes = 15;
constexpr int kSaves = 50;

class ServerBench {
  public:
    ServerBench() { prompting_.host().setOutput(server_.connect()); }

    void fillTable(int records) {
        server_.answer("SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE");
        prompting_.prompt("first");  // makes the table
        server_.answer(
            "INSERT INTO survey.f1x (pt_id, gis_key, field3) SELECT n, 'F1X', 'stored' FROM "
            "generate_series(1, " +
            std::to_string(records) + ") n; ANALYZE survey.f1x");
    }
    void addIndex() { server_.answer("CREATE INDEX ON survey.f1x (upper(pt_id), upper(gis_key))"); }

    // Milliseconds for one save.
    double saves(int firstKey, int step) {
        Time time = timeOf([&] {
            for (int i = 0; i < kSaves; ++i) prompting_.prompt(std::to_string(firstKey + i * step));
        });
        return time.wall * 1000 / kSaves;
    }

    void recordSets(int records) {
        CDaoDatabase database;
        double open = timeOf([&] { database.Open("", false, false, server_.connect()); }).wall * 1000;
        CDaoTableDef table(&database);
        table.Create("ROWS");
        table.CreateField("PT_ID", dbText, 255);
        table.CreateField("NOTE", dbText, 255);
        table.CreateField("HEIGHT", dbDouble, 8);
        table.CreateField("COUNT", dbLong, 4);
        table.Append();
        table.Close();
        CDaoRecordset rows(&database);
        rows.Open(dbOpenDynaset, "SELECT * FROM [ROWS]");
        double add = timeOf([&] {
                         database.BeginTrans();
                         for (int i = 0; i < records; ++i) {
                             rows.AddNew();
                             rows.SetFieldValue(0, std::to_string(i));
                             rows.SetFieldValue(1, "a note of some length");
                             rows.SetFieldValue(2, i * 0.1);
                             rows.SetFieldValue(3, i);
                             rows.Update();
                         }
                         database.CommitTrans();
                     }).wall;
        rows.Close();
        double read = timeOf([&] {
                          rows.Open(dbOpenDynaset, "SELECT * FROM [ROWS]");
                          for (; !rows.IsEOF(); rows.MoveNext()) rows.GetFieldValue(2);
                      }).wall;
        rows.Close();
        database.DeleteTableDef("ROWS");
        std::printf("%7d records: open %.1f ms, add %.3f s, read %.3f s\n", records, open, add, read);
    }

  private:
    PostgresServer& server_ = PostgresServer::instance();
    ScriptedPrompting prompting_{kFeatures, kAttributes};
};

}  // namespace

int main() {
    if (!PostgresServer::instance().missing().empty()) {
        std::printf("%s\n", PostgresServer::instance().missing().c_str());
        return 1;
    }
    ServerBench bench;
    for (int records : {100, 10000, 100000}) {
        bench.fillTable(records);
        double added = bench.saves(10000000, 1), edited = bench.saves(1, records / 100);
        bench.addIndex();
        double addedBy = bench.saves(20000000, 1), editedBy = bench.saves(1, records / 100);
        std::printf("%7d records: new %.1f ms, edited %.1f ms; with an index %.1f, %.1f\n", records, added,
                    edited, addedBy, editedBy);
    }
    for (int records : {1000, 30000, 300000}) bench.recordSets(records);
}
