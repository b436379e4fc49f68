// The choice of a table of an output database.
#pragma once

#include <optional>
#include <string>

namespace norvane {

struct ChosenTable {
    std::string output;  // the path of the database, or a connect string
    std::string table;
};

// Offers the tables of a database, or of the current output where none is given; another database can be
// chosen. Nothing when the person cancelled.
std::optional<ChosenTable> ChooseTable(const std::string& output);

}  // namespace norvane
