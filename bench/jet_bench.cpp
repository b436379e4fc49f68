// Access databases against SQLite and mdbtools: adding, reading, finding and opening at three sizes.
//
// usage: jet_bench [ROWS ...]        (1000, 30000 and 300000 rows unless told)
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/dao/dao.h"
#include "platform/dao/jet/database.h"

namespace {

using Clock = std::chrono::steady_clock;

template <typename Work>
double secondsOf(const Work& work) {
    Clock::time_point begin = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

// The row of a number: a point, its feature, a text, a real and a whole number.
struct Row {
    std::string point, key, text;
    double real;
    int32_t number;
};
Row rowOf(int i) {
    return {"P" + std::to_string(i), i % 3 ? "TREE" : "POLE", "remark " + std::to_string(i % 1000), i * 0.25,
            i};
}

double insertIntoJet(const std::string& path, int rows) {
    jet::Database::create(path, jet::Version::kAccess2000);
    jet::Database db(path, {});
    return secondsOf([&] {
        db.begin();
        db.createTable(
            "POINTS",
            {jet::Column{"PT_ID", jet::Type::kText, 255}, jet::Column{"GIS_KEY", jet::Type::kText, 255},
             jet::Column{"REMARK", jet::Type::kText, 255}, jet::Column{"HEIGHT", jet::Type::kDouble},
             jet::Column{"N", jet::Type::kLong}});
        std::shared_ptr<jet::Records> records = db.records("POINTS");
        std::vector<jet::Value> values(5);
        for (int i = 0; i < rows; ++i) {
            Row row = rowOf(i);
            values[0] = jet::Value(std::move(row.point));
            values[1] = jet::Value(std::move(row.key));
            values[2] = jet::Value(std::move(row.text));
            values[3] = jet::Value(row.real);
            values[4] = jet::Value(row.number);
            records->insert(values);
        }
        db.commit();
    });
}

double insertIntoSqlite(const std::string& path, int rows) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    double seconds = secondsOf([&] {
        sqlite3_exec(
            db, "CREATE TABLE POINTS(PT_ID TEXT, GIS_KEY TEXT, REMARK TEXT, HEIGHT REAL, N INTEGER); BEGIN",
            nullptr, nullptr, nullptr);
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(db, "INSERT INTO POINTS VALUES(?,?,?,?,?)", -1, &s, nullptr);
        for (int i = 0; i < rows; ++i) {
            Row row = rowOf(i);
            sqlite3_bind_text(s, 1, row.point.data(), static_cast<int>(row.point.size()), SQLITE_STATIC);
            sqlite3_bind_text(s, 2, row.key.data(), static_cast<int>(row.key.size()), SQLITE_STATIC);
            sqlite3_bind_text(s, 3, row.text.data(), static_cast<int>(row.text.size()), SQLITE_STATIC);
            sqlite3_bind_double(s, 4, row.real);
            sqlite3_bind_int(s, 5, row.number);
            sqlite3_step(s);
            sqlite3_reset(s);
        }
        sqlite3_finalize(s);
        sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    });
    sqlite3_close(db);
    return seconds;
}

// Adds through the interface of the module, a record set over the table.
double insertByRecordset(const std::string& path, int rows) {
    CDaoDatabase db;
    db.Create(path);
    CDaoTableDef table(&db);
    table.Create("POINTS");
    for (const char* name : {"PT_ID", "GIS_KEY", "REMARK"}) table.CreateField(name, dbText, 255);
    table.CreateField("HEIGHT", dbDouble, 8);
    table.CreateField("N", dbLong, 4);
    table.Append();
    table.Close();
    double seconds = secondsOf([&] {
        CDaoRecordset records(&db);
        records.Open(dbOpenDynaset, "SELECT * FROM POINTS");
        for (int i = 0; i < rows; ++i) {
            Row row = rowOf(i);
            records.AddNew();
            records.SetFieldValue(0, std::move(row.point));
            records.SetFieldValue(1, std::move(row.key));
            records.SetFieldValue(2, std::move(row.text));
            records.SetFieldValue(3, row.real);
            records.SetFieldValue(4, row.number);
            records.Update();
        }
        records.Close();
        db.Close();
    });
    return seconds;
}

double readAll(const std::string& path, int rows) {
    return secondsOf([&] {
        jet::Database db(path, {});
        jet::Database::Reading reading(db);
        std::shared_ptr<jet::Records> records = db.records("POINTS");
        int count = 0;
        size_t bytes = 0;
        for (jet::Walk walk(records); walk.next(); ++count) {
            jet::RowView view = walk.view();
            for (size_t i = 0; i < 5; ++i) {
                jet::Value value = records->value(view, i);
                if (value.is<std::string>()) bytes += value.get<std::string>().size();
            }
        }
        if (count != rows || bytes == 0) std::printf("  only %d rows were read\n", count);
    });
}

// The median time of finding a record by its PT_ID, after the first.
void findRecords(const std::string& path, int rows) {
    CDaoDatabase db;
    db.Open(path);
    auto find = [&](int i) {
        return secondsOf([&] {
            CDaoRecordset records(&db);
            records.Open(dbOpenDynaset,
                         "SELECT * FROM [POINTS] WHERE [PT_ID] = 'P" + std::to_string(i) + "'");
            if (records.IsEOF() || records.GetFieldValue(4) != dao::Variant(i))
                std::printf("  not found: %d\n", i);
        });
    };
    double first = find(rows / 2);
    std::vector<double> later;
    for (int i = 0; i < 200; ++i) later.push_back(find(i * 7919 % rows));
    std::sort(later.begin(), later.end());
    std::printf("  find by PT_ID        first %8.3f ms   then %8.3f ms (median), %.3f ms (worst)\n",
                first * 1e3, later[100] * 1e3, later.back() * 1e3);
}

// What one record costs that is saved as the sheet does it: the database is opened, the record looked for by
// its key and feature, added, and the database closed. The first save walks through the table.
void saveRecords(const std::string& path) {
    int number = 0;
    auto save = [&] {
        return secondsOf([&] {
            CDaoDatabase db;
            db.Open(path);
            CDaoRecordset records(&db);
            std::string point = "N" + std::to_string(++number);
            records.Open(dbOpenDynaset,
                         "SELECT * FROM [POINTS] WHERE [PT_ID] = '" + point + "' AND GIS_KEY = 'TREE'");
            if (!records.IsEOF()) std::printf("  found: %s\n", point.c_str());
            records.AddNew();
            records.SetFieldValue(0, point);
            records.SetFieldValue(1, "TREE");
            records.Update();
            records.Close();
            db.Close();
        });
    };
    double first = save();
    std::vector<double> later;
    for (int i = 0; i < 21; ++i) later.push_back(save());
    std::sort(later.begin(), later.end());
    std::printf("  save one record      first %8.3f ms   then %8.3f ms (median), %.3f ms (worst)\n",
                first * 1e3, later[10] * 1e3, later.back() * 1e3);
}

void measure(const std::string& folder, int rows) {
    std::string path = folder + "/" + std::to_string(rows), out = " > " + folder + "/out";
    std::printf("%d rows\n", rows);
    double jet = insertIntoJet(path + ".mdb", rows), sqlite = insertIntoSqlite(path + ".sqlite", rows);
    std::printf("  insert               jet %8.3f s   SQLite %8.3f s   %.1f times\n", jet, sqlite,
                jet / sqlite);
    double dao = insertByRecordset(path + "r.mdb", rows), dao2 = insertByRecordset(path + "r.sqlite", rows);
    std::printf("  insert by record set jet %8.3f s   SQLite %8.3f s   %.1f times\n", dao, dao2, dao / dao2);
    double read = readAll(path + ".mdb", rows);
    double mdb = secondsOf([&] {
        if (std::system(("mdb-export " + path + ".mdb POINTS" + out).c_str()) != 0)
            std::printf("  no mdb-export\n");
    });
    std::printf("  read                 jet %8.3f s   mdb-export %8.3f s   %.1f times as fast\n", read, mdb,
                mdb / read);
    findRecords(path + ".mdb", rows);
    double open = secondsOf([&] { jet::Database(path + ".mdb", {}).tables(); });
    std::printf("  open and list        %8.3f ms\n", open * 1e3);
    std::printf("  size                 %8.1f MB, %ld bytes a row\n",
                static_cast<double>(std::filesystem::file_size(path + ".mdb")) / 1e6,
                static_cast<long>(std::filesystem::file_size(path + ".mdb")) / rows);
    saveRecords(path + ".mdb");
}

}  // namespace

int main(int count, char** arguments) {
    std::string pattern = (std::filesystem::temp_directory_path() / "jet-bench-XXXXXX").string();
    std::string folder = ::mkdtemp(pattern.data());
    std::vector<int> sizes;
    for (int i = 1; i < count; ++i) sizes.push_back(std::atoi(arguments[i]));
    if (sizes.empty()) sizes = {1000, 30000, 300000};
    for (int rows : sizes) measure(folder, std::max(rows, 201));
    std::filesystem::remove_all(folder);
}
