// What a PostgreSQL server on this machine costs: function code 1 with a scripted sheet, from the Lisp call
// to the link written, against the number of records in the table, without an index and with the one that
// docs/servers.md recommends; records added and read through a record set; and what many clients do to each
// other that save into one table.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <map>
#include <optional>
#include <set>
#include <sstream>

#include "bench/scripted_prompting.h"
#include "bench/stopwatch.h"
#include "module/store/database.h"
#include "module/store/output_database.h"
#include "module/store/records.h"
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
        double open =
            timeOf([&] { database.Open("", false, false, dao::ConnectString(server_.connect())); }).wall *
            1000;
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

// --- Many clients at once --------------------------------------------------------------------------------

// Which lock a save takes: that of its record or, as it was once, that of its table.
enum class Lock { kRecord, kTable };

struct ClientsResult {
    double savesPerSecond = 0;
    double longest = 0;  // milliseconds
    int lost = 0;        // told to be saved, and not there
    int doubled = 0;
};

// A line of a client's: one save is done, or (number < 0) it is ready to begin.
struct Report {
    int client = 0;
    int number = -1;
    float milliseconds = 0;
};

std::string keyOf(Lock lock, int client, int number) {
    return (lock == Lock::kTable ? "T" : "R") + std::to_string(client) + "-" + std::to_string(number);
}

void saveUnderTableLock(const std::string& path, const RecordKey& key,
                        const std::vector<OutputField>& fields) {
    CDaoDatabase database;
    OpenDatabase(database, path);
    database.BeginTrans();
    RecordKey placed = key;
    placed.table = EnsureOutputTable(database, key, fields).table;
    database.Execute("SET LOCAL lock_timeout = 3000; LOCK TABLE survey.f1x IN SHARE ROW EXCLUSIVE MODE",
                     dbSQLPassThrough);
    if (HasRecords(database, FindRecordStatement(Route::kOdbc, placed, true, FindPurpose::kSave)))
        throw CDaoException("The key " + key.keyValue + " is there.");
    database.Execute("INSERT INTO " + placed.table + " (PT_ID,GIS_KEY,FIELD3) VALUES('" + key.keyValue +
                         "','F1X','" + fields[0].value + "')",
                     dbSQLPassThrough);
    database.CommitTrans();
    database.Close();
}

// Many processes save records of their own into one table, each with a host and a session of its own.
class ClientsBench {
  public:
    static constexpr int kRecords = 100000;
    static constexpr double kSeconds = 10;

    ClientsBench() {
        // What a killed client leaves in its folder goes with the server's.
        ::setenv("TMPDIR", server_.folder().c_str(), 1);
        server_.answer(
            "CREATE SCHEMA survey; CREATE TABLE survey.f1x (pt_id varchar(255), gis_key varchar(255), field3 "
            "varchar(255)); INSERT INTO survey.f1x SELECT n, 'F1X', 'stored' FROM generate_series(1, " +
            std::to_string(kRecords) +
            ") n; CREATE INDEX ON survey.f1x (upper(pt_id), upper(gis_key)); ANALYZE survey.f1x");
    }

    ClientsResult run(int count, Lock lock, int killed = 0) {
        server_.answer("DELETE FROM survey.f1x WHERE field3 = 'saved'");
        if (::pipe(reports_) != 0 || ::pipe(gate_) != 0) std::abort();
        std::vector<pid_t> clients;
        for (int client = 0; client < count; ++client) clients.push_back(start(client, lock));
        ::close(reports_[1]), ::close(gate_[0]);
        for (int ready = 0; ready < count;) ready += next().has_value();
        ::close(gate_[1]);  // they begin
        ClientsResult result;
        std::set<std::string> saved;
        const double begun = now().wall;
        int left = killed;
        while (std::optional<Report> report = next()) {
            saved.insert(keyOf(lock, report->client, report->number));
            result.longest = std::max<double>(result.longest, report->milliseconds);
            if (left > 0 && now().wall - begun > kSeconds / 2)
                ::kill(clients[static_cast<size_t>(--left)], SIGKILL);
        }
        for (pid_t client : clients) ::waitpid(client, nullptr, 0);
        ::close(reports_[0]);
        result.savesPerSecond = static_cast<double>(saved.size()) / kSeconds;
        compare(saved, result);
        return result;
    }

  private:
    std::optional<Report> next() {
        Report report;
        if (::read(reports_[0], &report, sizeof report) != sizeof report) return std::nullopt;
        return report;
    }

    pid_t start(int client, Lock lock) {
        const pid_t child = ::fork();
        if (child != 0) return child;
        ::close(gate_[1]), ::close(reports_[0]);
        save(client, lock);
        ::_exit(0);
    }

    void save(int client, Lock lock) {
        ScriptedPrompting prompting(1, 1);
        const std::string output = server_.connect();
        const auto tell = [&](int number, double milliseconds) {
            const Report report{client, number, static_cast<float>(milliseconds)};
            if (::write(reports_[1], &report, sizeof report) != sizeof report) ::_exit(1);
        };
        WithDatabase(output, [](CDaoDatabase&) {});  // signs in
        tell(-1, 0);
        char byte = 0;
        if (::read(gate_[0], &byte, 1) != 0) ::_exit(1);
        const double end = now().wall + kSeconds;
        for (int number = 0; now().wall < end; ++number) {
            const RecordKey key{"F1X", "PT_ID", keyOf(lock, client, number), "F1X"};
            const std::vector<OutputField> fields = {{"FIELD3", FieldKind::kChar, "saved"}};
            bool done = true;
            const Time time = timeOf([&] {
                if (lock == Lock::kTable)
                    done = ShowDatabaseErrors([&] { saveUnderTableLock(output, key, fields); });
                else
                    done = SaveRecord(output, key, fields).has_value();
            });
            if (done) tell(number, time.wall * 1000);
        }
    }

    void compare(const std::set<std::string>& saved, ClientsResult& result) {
        std::map<std::string, int> stored;
        std::istringstream rows(server_.answer("SELECT pt_id FROM survey.f1x WHERE field3 = 'saved'"));
        for (std::string key; std::getline(rows, key);) ++stored[key];
        for (const std::string& key : saved) result.lost += !stored.contains(key);
        for (const auto& [key, times] : stored) result.doubled += times > 1;
    }

    PostgresServer& server_ = PostgresServer::instance();
    int reports_[2] = {-1, -1}, gate_[2] = {-1, -1};
};

void print(int count, const char* lock, const ClientsResult& result) {
    std::printf("%2d clients, %s: %6.0f saves a second, longest %5.0f ms, %d lost, %d doubled\n", count, lock,
                result.savesPerSecond, result.longest, result.lost, result.doubled);
    std::fflush(stdout);
}

void manyClients() {
    ClientsBench bench;
    for (int count : {1, 16, 64}) {
        print(count, "table locked ", bench.run(count, Lock::kTable));
        print(count, "record locked", bench.run(count, Lock::kRecord));
    }
    print(64, "record locked, ten of them killed", bench.run(64, Lock::kRecord, 10));
}

void oneClient() {
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

}  // namespace

int main() {
    // A server that people rely on waits for its disk.
    PostgresServer::waitsForDisk = true;
    if (!PostgresServer::instance().missing().empty()) {
        std::printf("%s\n", PostgresServer::instance().missing().c_str());
        return 1;
    }
    // The clients come first: a process that has signed in cannot be divided.
    manyClients();
    oneClient();
}
