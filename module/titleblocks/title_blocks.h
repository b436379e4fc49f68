// Title blocks and note blocks of the drawing: blocks with attributes, and the inserts of them that can be
// seen.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "module/cad/call.h"

namespace norvane {

// The blocks that have attributes, in capitals, in the order of the drawing. Those of other drawings that are
// only referred to are not among them.
std::vector<std::string> BlocksWithAttributes();
// The tags that a block defines, in capitals, each once.
std::vector<std::string> TagsOfBlock(const std::string& block);

// The inserts of a block in all spaces, without those on layers that are off or frozen.
std::vector<EntityName> VisibleInserts(const std::string& block);
// How many of them each block has, by its name in capitals.
std::map<std::string, long> CountVisibleInserts();

// An attribute of an insert.
struct InsertAttribute {
    std::string tag;
    std::string text;
    ResultBuffers groups;  // the entity as it was read
};
std::vector<InsertAttribute> AttributesOfInsert(const EntityName& insert);
// The text of the first attribute with a tag; "" without one.
std::string AttributeText(const EntityName& insert, const std::string& tag);
std::string HandleOf(const EntityName& entity);
// Gives attributes their texts, and then brings the insert up to date. False when the drawing has not taken
// one of the texts.
bool WriteAttributes(const EntityName& insert, std::vector<InsertAttribute>& attributes);

}  // namespace norvane
