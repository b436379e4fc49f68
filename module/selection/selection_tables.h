// What a person may choose from: the tables of the output database and their fields.
#pragma once

#include <string>
#include <vector>

namespace norvane {

struct SelectionTables {
    std::string problem;  // why there are none, a sentence; "" where there are
    std::vector<std::string> names;
    std::string proposed;  // that of the feature that was used last, else the first

    // As the database has it; "" when it has none of that name.
    std::string find(const std::string& name) const;
};

// Nothing is shown of what goes wrong, but for the sign-in to a server.
SelectionTables SelectableTables(const std::string& outputPath);
std::vector<std::string> SelectableFields(const std::string& outputPath, const std::string& table);

}  // namespace norvane
