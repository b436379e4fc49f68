// jet: looks into Access databases and works on them from a command line.
#include <cstdio>
#include <iostream>

#include "platform/dao/connect_string.h"
#include "platform/dao/jet/check.h"
#include "platform/dao/jet/repair.h"
#include "platform/dao/jet/tool/print.h"
#include "platform/dao/jet/tool/statements.h"

namespace {

constexpr const char* kUsage =
    "jet tables FILE               the tables, linked ones with where they come from\n"
    "jet schema FILE [TABLE]       columns, properties and indexes\n"
    "jet dump [--json] FILE TABLE  the records: comma-separated, or one JSON object a line\n"
    "jet create FILE [97|2000]     a new database without tables\n"
    "jet sql FILE STATEMENTS       runs statements; prints the records of a SELECT with | between their "
    "values\n"
    "jet compact FILE              writes the file anew, without the room that deleted things have left; of "
    "a damaged\n"
    "                              one saves what can be read, and tells what is lost\n"
    "jet check FILE                faults of the structure; nothing for a sound file\n"
    "jet --password WORD ...       the same for a database that is protected by a password\n";

int create(const std::string& file, const std::string& version) {
    bool old = version == "97";
    if (!old && !version.empty() && version != "2000") throw jet::Error("The versions are 97 and 2000.");
    jet::Database::create(file, old ? jet::Version::kAccess97 : jet::Version::kAccess2000);
    return 0;
}

int runSql(const std::string& file, const std::string& password, const std::string& sql) {
    dao::ConnectString connect(";");
    if (!password.empty()) connect.set("PWD", password);
    CDaoDatabase db;
    db.Open(file, false, false, connect);
    jet::runStatements(db, sql, std::cout);
    db.Close();
    return 0;
}

int printFaults(jet::Database& db) {
    std::vector<std::string> faults = jet::check(db);
    for (const std::string& fault : faults) std::cout << fault << "\n";
    return faults.empty() ? 0 : 1;
}

int compact(const std::string& file, const jet::Database::Options& options) {
    jet::CompactReport report = jet::compactAndRepair(file, options);
    for (const std::string& loss : report.losses) std::cout << loss << "\n";
    std::cout << report.bytesBefore << " bytes before, " << report.bytesAfter << " bytes now\n";
    if (!report.kept.empty()) std::cout << "The damaged file is kept as " << report.kept << "\n";
    return report.losses.empty() ? 0 : 1;
}

int run(std::vector<std::string> arguments) {
    jet::Database::Options options;
    if (arguments.size() >= 2 && arguments[0] == "--password") {
        options.password = arguments[1];
        arguments.erase(arguments.begin(), arguments.begin() + 2);
    }
    auto argument = [&](size_t i) { return i < arguments.size() ? arguments[i] : std::string(); };
    std::string command = argument(0), file = argument(1), rest = argument(2);
    bool json = command == "dump" && file == "--json";
    if (json) {
        file = argument(2);
        rest = argument(3);
    }
    if (file.empty()) {
        std::cerr << kUsage;
        return 2;
    }
    if (command == "create") return create(file, rest);
    if (command == "sql") return runSql(file, options.password, rest);
    if (command == "compact" || command == "repair") return compact(file, options);
    jet::Database db(file, options);
    if (command == "check") return printFaults(db);
    if (command == "tables")
        jet::printTables(db, std::cout);
    else if (command == "schema")
        jet::printSchema(db, rest, std::cout);
    else if (command == "dump" && json)
        jet::printJson(db, rest, std::cout);
    else if (command == "dump")
        jet::printText(db, rest, std::cout);
    else {
        std::cerr << kUsage;
        return 2;
    }
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    try {
        std::ios::sync_with_stdio(false);
        return run({arguments + 1, arguments + count});
    } catch (const std::exception& error) {
        std::cout.flush();
        std::cerr << error.what() << "\n";
        return 1;
    }
}
