// One attribute of a feature, as a line of a feature file, a row of the editor's sheet and a record of the
// template have it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "module/store/field_kind.h"

namespace norvane {

// The value list of an attribute. A plain cell has a text and no items. A drop-down shows one text, which is
// the default, and may have no items at all.
struct ValueCell {
    bool dropDown = false;
    std::vector<std::string> items;
    std::string text;

    bool operator==(const ValueCell&) const = default;
};

struct FeatureFileRow {
    bool required = false;
    FieldKind type = FieldKind::kChar;  // always Char when the values are a drop-down
    std::string abbreviation;           // the field
    std::string fullName;               // the prompt
    ValueCell values;

    bool operator==(const FeatureFileRow&) const = default;
};

// Adds the attribute that comma-separated fields describe: abbreviation, full name, default, values. An empty
// default drops the values; a default that does not occur in them goes in front. Without an abbreviation no
// row is added, and a default goes to the last row. True when a row was added.
bool AddRowFromFields(std::vector<FeatureFileRow>& rows, bool required, FieldKind type,
                      std::string_view fields);

// The values of a cell between commas, the default in front where it does not occur in them.
std::string JoinedValues(const ValueCell& values);

}  // namespace norvane
