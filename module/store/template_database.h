// The template database: the attributes of each feature, its category, and the table that it writes to.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "module/cad/call.h"
#include "module/store/new_database.h"
#include "module/store/template_schema.h"
#include "platform/dao/dao.h"

namespace norvane {

// Makes a template with its two tables and no rows. The path and the result are those of CreateDatabaseFile.
bool CreateTemplateDatabase(const std::string& path, DatabaseVersion version);
// 1 when a file holds both tables with their columns, 0 otherwise.
int IsTemplateDatabase(const std::string& path);
// Whether a feature is defined: 1, 0, or -2 when the file is no template.
int FeatureExists(const std::string& path, const std::string& name);
// Function code 21: takes a template path and the name of a feature. Gives the same, or -1 when there is no
// such file; 0 for an absent argument.
void TestFeature(Call& call);

// --- Work on an open template. Exceptions pass through to the caller. -----------------------------------

// Whether a feature of exactly this name has rows.
bool HasFeature(CDaoDatabase& database, const std::string& feature);
// The names of all features in upper case, each once, in the order of the rows.
std::vector<std::string> ReadFeatureNames(CDaoDatabase& database);

// One attribute of a feature, as it stands in the table.
struct FeatureRow {
    std::string fieldName;  // with its prefixes
    std::string fieldPrompt;
    std::string defaultValue;
    std::string listValues;
};
std::vector<FeatureRow> ReadFeatureRows(CDaoDatabase& database, const std::string& feature);
// The same of all features by their names in upper case, the table being walked once.
std::map<std::string, std::vector<FeatureRow>> ReadRowsOfFeatures(CDaoDatabase& database);

// A feature and the output table that it writes to.
struct FeatureTable {
    std::string feature;
    std::string table;
};
// The feature that was used last, if any.
std::optional<FeatureTable> ReadCurrentFeature(CDaoDatabase& database);
// The table of a feature: that of its row in ZGEO_LINKS, else the feature's own name.
std::string ReadOutputTable(CDaoDatabase& database, const std::string& feature);
// Makes a feature and its table the current ones, and adds their row where it is missing.
void MarkFeatureCurrent(CDaoDatabase& database, const FeatureTable& current);

// --- Statements ---------------------------------------------------------------------------------------
// A quote in a value is doubled: no value ends or extends a statement.

std::string SelectFeatureNames();
std::string SelectFeatureName(const std::string& feature);
std::string SelectFeaturePrompts(const std::string& feature);
std::string SelectFeatureRows(const std::string& feature);
std::string SelectCurrentLinks();
std::string SelectLinks(const std::string& feature);
std::string SelectLink(const std::string& feature, const std::string& table);
std::string SelectCategories();
std::string SelectFeatureCategories(const std::string& feature);
std::string SelectCategory(const std::string& category);

}  // namespace norvane
