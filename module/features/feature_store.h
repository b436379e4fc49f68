// The editor's work on a template database. Exceptions of the engine pass through; what changes more than one
// record is whole or absent when it is done inside a transaction (ChangeTemplate).
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "module/features/feature_row.h"
#include "module/store/template_database.h"
#include "platform/dao/dao.h"

namespace norvane {

// A row of ZGEO_CAT. The feature is "NO_GIS" in the row that stands for the category itself.
struct CategoryRow {
    std::string category;
    std::string feature;
};
extern const char* const kCategoryPlaceholder;

// All that a template defines.
struct TemplateDefinitions {
    std::vector<CategoryRow> categories;
    std::map<std::string, std::vector<FeatureRow>>
        features;  // their attributes, by their names in upper case

    // None for a feature that has no records.
    const std::vector<FeatureRow>& attributes(const std::string& feature) const;
};

// Opens a template, does the work as one transaction, closes it. False when that failed; the engine's words
// have then been shown, and the template is as it was before.
bool ChangeTemplate(const std::string& path, const std::function<void(CDaoDatabase&)>& work);

std::vector<CategoryRow> ReadCategoryRows(CDaoDatabase& database);
std::vector<FeatureFileRow> ReadFeature(CDaoDatabase& database, const std::string& feature);
// Whether one of the two tables has a record of the feature.
bool IsFeatureStored(CDaoDatabase& database, const std::string& feature);

// Adds the records of a feature and its row in the category, whose rows are numbered anew.
void StoreFeature(CDaoDatabase& database, const std::string& feature, const std::string& category,
                  const std::vector<FeatureFileRow>& rows);
// Makes a feature write to a table.
void LinkFeature(CDaoDatabase& database, const std::string& feature, const std::string& table);
// Copies the records of a feature under another name, into a category.
void CopyFeature(CDaoDatabase& database, const std::string& feature, const std::string& name,
                 const std::string& category);
// Deletes the records of a feature from the two tables.
void RemoveFeatureRecords(CDaoDatabase& database, const std::string& feature);
// The same, and from ZGEO_LINKS; the category is numbered anew, or gets its placeholder when nothing is left.
void DeleteFeature(CDaoDatabase& database, const std::string& feature, const std::string& category);
void RenameFeature(CDaoDatabase& database, const std::string& feature, const std::string& name);

void AddCategory(CDaoDatabase& database, const std::string& category);
// With the records of its features in ZGEO_SMART_PROMPTING; ZGEO_LINKS stays.
void DeleteCategory(CDaoDatabase& database, const std::string& category);
void RenameCategory(CDaoDatabase& database, const std::string& category, const std::string& name);

}  // namespace norvane
