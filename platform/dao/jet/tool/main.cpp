// jet: looks into Access databases and works on them from a command line.
#include <cstdio>
#include <iostream>

#include "platform/dao/jet/tool/print.h"

namespace {

constexpr const char* kUsage =
    "jet tables FILE               the tables, linked ones with where they come from\n"
    "jet schema FILE [TABLE]       columns, properties and indexes\n"
    "jet dump [--json] FILE TABLE  the records: comma-separated, or one JSON object a line\n";

int run(const std::vector<std::string>& arguments) {
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
    jet::Database db(file, {.readOnly = true});
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
