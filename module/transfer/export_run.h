// An export as a person or a routine asks for it: of which features, to which sets.
#pragma once

#include <array>
#include <set>
#include <string>
#include <vector>

#include "module/transfer/export_shapes.h"

namespace norvane {

struct ExportChoice {
    bool includeZ = false;
    ExportOptions options;
    // Of each category.
    std::array<std::set<std::string>, kExportCategories> features;
};

// The distinct features of a category in the order of the entities.
std::vector<std::string> FeaturesOf(const std::vector<ExportEntity>& entities, ExportCategory category);

// Exports those that are chosen. One feature goes to the set that the path names, several to a set each,
// which have the category and the feature behind its name. Ends with a line for each set and, of several, one
// for all.
void RunExport(const std::string& path, std::vector<ExportEntity>& entities, const ExportChoice& choice);

// Exports all entities to one set of a type. Whether it was written.
bool RunExportOfSet(const std::string& path, int32_t shapeType, const ExportOptions& options,
                    std::vector<ExportEntity>& entities);

}  // namespace norvane
