// The three tables of a template database, and how a template is known.
#pragma once

#include "platform/dao/dao.h"

namespace norvane {

constexpr const char* kPromptingTable = "ZGEO_SMART_PROMPTING";  // the attributes of the features
constexpr const char* kCategoryTable = "ZGEO_CAT";               // the categories and their features
constexpr const char* kLinkTable = "ZGEO_LINKS";                 // the output table of each feature

// Creates the first two, each where it is missing.
void EnsureTemplateTables(CDaoDatabase& database);
// Creates the third where it is missing. True when it and the first are then both there.
bool EnsureLinksTable(CDaoDatabase& database);

bool HasPromptingTable(const CDaoDatabase& database);
bool HasLinksTable(const CDaoDatabase& database);
// Whether at least one of the first two is there.
bool HasAnyTemplateTable(const CDaoDatabase& database);

// Whether the first two are there with the names of their columns, in any order and case. A table with fewer
// columns passes where it has no other.
bool HasTemplateColumnNames(CDaoDatabase& database);
// Whether they are there with all of their columns, types included.
bool HasTemplateColumns(CDaoDatabase& database);

}  // namespace norvane
