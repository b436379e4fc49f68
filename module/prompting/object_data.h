// The second place that attribute values were designed for: object data on the entity itself, in place of an
// output database. The switch stands; the back end is not built, so that it stays off.
#pragma once

#include <string>
#include <vector>

#include "module/prompting/prompt_request.h"

namespace norvane {

// 0: no map engine; 1: a wrong version of it; any other value: usable.
int ProbeObjectData();
// Whether object data is chosen in the settings and the probe finds an engine.
bool ObjectDataMode();
// Whether the probe finds a usable engine; prints why not.
bool ObjectDataUsable();
// Whether there is a usable engine, without a word.
bool OffersObjectData();

struct ObjectDataColumn {
    std::string name;
    std::string type;  // "character", "integer", "real"
};
struct ObjectDataTable {
    std::string name;
    std::vector<ObjectDataColumn> columns;
};
// The tables of object data that the host has. None as long as the probe finds no engine.
std::vector<ObjectDataTable> ObjectDataTables();

// Prompts for the request's entity. Does nothing as long as the probe finds no engine.
void RunObjectDataPrompt(const PromptRequest& request);

}  // namespace norvane
