// What a PostgreSQL server on this machine costs: function code 1 with a scripted sheet, from the Lisp call
// to the link written, against the number of records in the table, without an index and with the one that
// docs/servers.md recommends; and records added and read through a record set.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "bench/scripted_prompting.h"
#include "bench/stopwatch.h"
#include "module/store/database.h"
#include "module/store/output_database.h"
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

// What many clients do to each other: each saves records of its own into one table for some seconds.
struct Clients {
    int saves = 0;
    double longest = 0;  // milliseconds
};

// The whole table is locked for each save, as it was before records were.
void saveUnderTableLock(const std::string& path, const RecordKey& key,
                        const std::vector<OutputField>& fields) {
    CDaoDatabase database;
    OpenDatabase(database, path);
    database.BeginTrans();
    database.Execute("LOCK TABLE survey.f1x IN SHARE ROW EXCLUSIVE MODE", dbSQLPassThrough);
    TableState state = EnsureOutputTable(database, key, fields);
    WriteRecord(database, Route::kOdbc, key, state, fields);
    database.CommitTrans();
    database.Close();
}

Clients clientsSave(int count, bool tableLock, const std::string& source) {
    constexpr double kSeconds = 6;
    int results[2];
    if (::pipe(results) != 0) return {};
    std::vector<pid_t> children;
    for (int client = 0; client < count; ++client) {
        pid_t child = ::fork();
        if (child == 0) {
            Clients mine;
            const double end = now().wall + kSeconds;
            while (now().wall < end) {
                const RecordKey key{"F1X", "PT_ID",
                                    std::to_string(client * 1000000 + mine.saves + (tableLock ? 500000 : 0)),
                                    "F1X"};
                const std::vector<OutputField> fields = {{"FIELD3", FieldKind::kChar, "saved"}};
                const Time save = timeOf([&] {
                    if (tableLock)
                        saveUnderTableLock(source, key, fields);
                    else
                        SaveRecord(source, key, fields);
                });
                mine.longest = std::max(mine.longest, save.wall * 1000);
                ++mine.saves;
            }
            ssize_t written = ::write(results[1], &mine, sizeof mine);
            ::_exit(written == sizeof mine ? 0 : 1);
        }
        children.push_back(child);
    }
    Clients all;
    for (pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        Clients one;
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0 &&
            ::read(results[0], &one, sizeof one) == sizeof one) {
            all.saves += one.saves;
            all.longest = std::max(all.longest, one.longest);
        }
    }
    ::close(results[0]), ::close(results[1]);
    all.saves = static_cast<int>(all.saves / kSeconds);
    return all;
}

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
    // The table of 100 000 records with its index stands from above.
    for (int count : {1, 16, 64}) {
        Clients table = clientsSave(count, true, PostgresServer::instance().connect());
        Clients record = clientsSave(count, false, PostgresServer::instance().connect());
        std::printf("%2d clients: %d saves a second, longest %.0f ms; with the table locked %d, %.0f ms\n",
                    count, record.saves, record.longest, table.saves, table.longest);
    }
    for (int records : {1000, 30000, 300000}) bench.recordSets(records);
}
