// The dialog of links from areas.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace norvane {

enum class AreaKey {
    kText,    // the text inside of an area
    kHandle,  // the handle of a polyline
};

// A table and the fields of it that can hold the key.
struct KeyTable {
    std::string name;
    std::vector<std::string> fields;
};

struct AreaChoice {
    std::string table, field;
    bool makesNew = false;  // links go to new polylines on the layer
    std::string layer;      // "" by handles
};

// Nothing when it was cancelled. There is a table at least, and each has a field.
std::optional<AreaChoice> AskAreaChoice(AreaKey key, const std::vector<KeyTable>& tables);

}  // namespace norvane
