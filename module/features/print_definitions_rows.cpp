#include "module/features/print_definitions_rows.h"

#include <algorithm>
#include <unordered_map>

#include "module/store/field_name.h"
#include "platform/text/text.h"
#include "platform/ui/font.h"

namespace norvane {

const char* const kFeatureHeading = "GIS NAME:";

namespace {

bool standsBefore(const std::string& one, const std::string& other) {
    return text::upper(one) < text::upper(other);
}

// Only the first three characters can be marks of what may be filled in.
std::string withoutMarks(const std::string& fieldName) {
    constexpr size_t kMost = 3;
    const size_t marks = std::min(fieldName.find_first_not_of("~."), fieldName.size());
    return fieldName.substr(std::min(marks, kMost));
}

std::string typeNote(const std::string& fieldName) {
    const FieldName field = ParseFieldName(fieldName);
    const char* type = field.kind == FieldKind::kReal  ? "Real"
                       : field.kind == FieldKind::kInt ? "Int"
                                                       : "Char";
    return type + std::string(field.required ? ", required" : "");
}

}  // namespace

std::vector<DefinedCategory> DefinedCategories(const std::vector<CategoryRow>& rows) {
    std::vector<DefinedCategory> categories;
    std::unordered_map<std::string, size_t> places;
    for (const CategoryRow& row : rows) {
        const auto [place, isNew] = places.try_emplace(text::upper(row.category), categories.size());
        if (isNew) categories.push_back({row.category, {}});
        if (row.feature != kCategoryPlaceholder) categories[place->second].features.push_back(row.feature);
    }
    std::ranges::stable_sort(categories, standsBefore, &DefinedCategory::name);
    for (DefinedCategory& category : categories) std::ranges::stable_sort(category.features, standsBefore);
    return categories;
}

AttributeValues ValuesOfAttribute(const FeatureRow& attribute) {
    AttributeValues found;
    auto add = [&](std::string_view item) {
        const std::string value(text::trim(item));
        const bool isNew = std::ranges::find(found.values, value) == found.values.end();
        if (!value.empty() && isNew) found.values.push_back(value);
    };
    add(attribute.defaultValue);
    found.hasDefault = !found.values.empty();
    for (const std::string& item : text::split(attribute.listValues, ',')) add(item);
    return found;
}

std::vector<DefinitionRow> RowsOfFeature(const DefinedFeature& feature,
                                         const std::vector<FeatureRow>& attributes,
                                         const DefinitionForm& form) {
    std::vector<DefinitionRow> rows = {{kFeatureHeading, feature.name, "CAT.-" + feature.category}};
    if (!form.details) return rows;
    for (const FeatureRow& attribute : attributes) {
        rows.push_back({"FIELD:", withoutMarks(attribute.fieldName),
                        form.types ? typeNote(attribute.fieldName) : std::string()});
        rows.push_back({"PROMPT:", attribute.fieldPrompt, ""});
        const AttributeValues values = ValuesOfAttribute(attribute);
        for (size_t i = 0; i < values.values.size(); ++i)
            rows.push_back({i == 0 ? "VALUES:" : "", values.values[i], "", i == 0 && values.hasDefault});
    }
    return rows;
}

std::string AttributeLine(const FeatureRow& attribute) {
    return text::join(
        {attribute.fieldName, attribute.fieldPrompt, attribute.defaultValue, attribute.listValues}, ",");
}

std::vector<ui::PrintedRows> DefinitionPages(int rows) {
    constexpr int kRowsOfPage = 35;
    std::vector<ui::PrintedRows> pages;
    for (int first = 1; first <= rows; first += kRowsOfPage)
        pages.push_back({first, std::min(first + kRowsOfPage - 1, rows)});
    return pages;
}

std::string DefinitionText(const std::vector<DefinitionRow>& rows) {
    constexpr size_t kGap = 2;
    size_t widths[2] = {};
    for (const DefinitionRow& row : rows) {
        widths[0] = std::max(widths[0], static_cast<size_t>(ui::characterCount(row.heading)));
        widths[1] = std::max(widths[1], static_cast<size_t>(ui::characterCount(row.text)));
    }
    auto padded = [](const std::string& cell, size_t width) {
        return cell + std::string(width + kGap - static_cast<size_t>(ui::characterCount(cell)), ' ');
    };
    std::string content;
    for (const DefinitionRow& row : rows) {
        const std::string line = padded(row.heading, widths[0]) + padded(row.text, widths[1]) +
                                 (row.isDefault ? "(default)" : row.note);
        content += std::string(text::trimRight(line)) + "\n";
    }
    return content;
}

}  // namespace norvane
