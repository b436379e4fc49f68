// The definitions of features as the sheet of the print dialog has them: a model without a dialog.
#pragma once

#include <string>
#include <vector>

#include "module/features/feature_store.h"
#include "platform/ui/print_job.h"

namespace norvane {

// A category with its features; both stand in the order of their names, as in the editor's tree.
struct DefinedCategory {
    std::string name;
    std::vector<std::string> features;
};
std::vector<DefinedCategory> DefinedCategories(const std::vector<CategoryRow>& rows);

// A feature in one of its categories.
struct DefinedFeature {
    std::string name;
    std::string category;

    bool operator==(const DefinedFeature&) const = default;
};

// What the sheet shows of a feature.
struct DefinitionForm {
    bool details = false;  // its attributes
    bool types = false;    // the type of each, and whether it must be filled in
};

struct DefinitionRow {
    std::string heading;  // "GIS NAME:", "FIELD:", "PROMPT:", "VALUES:" or ""
    std::string text;
    std::string note;
    bool isDefault = false;  // of the values
};
extern const char* const kFeatureHeading;

std::vector<DefinitionRow> RowsOfFeature(const DefinedFeature& feature,
                                         const std::vector<FeatureRow>& attributes,
                                         const DefinitionForm& form);

// An attribute as the tree of the dialog has it: as it stands in the template.
std::string AttributeLine(const FeatureRow& attribute);

// The values of an attribute, each once: the default first, then those of its list in their order.
struct AttributeValues {
    std::vector<std::string> values;
    bool hasDefault = false;
};
AttributeValues ValuesOfAttribute(const FeatureRow& attribute);

// As many rows on each page as it holds, and the rest on a last one.
std::vector<ui::PrintedRows> DefinitionPages(int rows);

// The rows as a file of text, its columns below each other, the default being told by a word.
std::string DefinitionText(const std::vector<DefinitionRow>& rows);

}  // namespace norvane
