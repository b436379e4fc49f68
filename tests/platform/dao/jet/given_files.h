// The Access files that are kept beside a checkout, and ways to read all of a file.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/dao/jet/database.h"

namespace jet {

inline std::string givenFile(const std::string& name) {
    return std::string(NORVANE_SHARED_DATA) + "/mdb/" + name;
}

inline std::vector<std::string> givenFiles() {
    std::vector<std::string> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(givenFile(""), error))
        if (entry.path().extension() == ".mdb") files.push_back(entry.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

// Reads every value of every table, and the definitions. The number of records.
inline size_t readAll(const std::string& path) {
    Database db(path, {.readOnly = true});
    Database::Reading reading(db);
    size_t count = 0;
    for (const TableInfo& table : db.tables()) {
        if (table.linked) continue;
        db.columns(table.name);
        db.indexes(table.name);
        std::shared_ptr<Records> records = db.records(table.name);
        for (Walk walk(records); walk.next(); ++count)
            for (size_t i = 0; i < records->definition().columns.size(); ++i) walk.value(i);
    }
    return count;
}

}  // namespace jet
