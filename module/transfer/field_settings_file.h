// Fields Settings Files (.fds): the names, types and key of the fields of a text, a line each.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "module/transfer/import_text.h"

namespace norvane {

// A line "name|type|Yes".
struct FieldSetting {
    std::string name;  // upper case
    std::string type;
    bool isKey = false;
};

// The lines that name a field; others are passed over. Nothing when the file cannot be read.
std::optional<std::vector<FieldSetting>> ReadFieldSettings(const std::string& path);
// False when the file cannot be written.
bool WriteFieldSettings(const std::string& path, const std::vector<AsciiField>& fields);

// A field of a table that is there, and the type that it has.
struct NamedType {
    std::string name;
    std::string type;
};
// Puts settings into a list of fields, by place. Fields that the table has are of its type. The first key
// counts; what is behind the last field counts for nothing.
void ApplyFieldSettings(const std::vector<FieldSetting>& settings, const std::vector<NamedType>& tableFields,
                        std::vector<AsciiField>& fields);

}  // namespace norvane
