#include "module/prompting/prompt_model.h"

#include <cerrno>
#include <cstdlib>

#include "module/prompting/known_attributes.h"
#include "module/store/name_rules.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

PromptRow PromptRowOf(const FeatureRow& record) {
    FieldName field = ParseFieldName(record.fieldName);
    return {field.name,          field.required,    field.kind,    record.fieldPrompt,
            record.defaultValue, record.listValues, field.required};
}

bool IsComputed(const PromptRow& row) {
    return !row.listValues.empty() && text::startsWith(row.defaultValue, kEquationMark);
}

CellDecision DecideCell(const PromptRow& row) {
    if (row.listValues.empty())
        return {row.kind == FieldKind::kChar ? PromptCell::kEditText : PromptCell::kEditNumber, {}};
    if (!IsComputed(row)) return {PromptCell::kDropDown, row.defaultValue};
    return {row.defaultValue == kDescriptionCode ? PromptCell::kEditText : PromptCell::kStatic, {}};
}

std::string TabbedChoices(const PromptRow& row) {
    return text::replaceAll(row.listValues, ",", "\t");
}

int ClassifyNumber(const std::string& text) {
    errno = 0;
    char* end = nullptr;
    std::strtol(text.c_str(), &end, 0);
    if (*end == '\0') return 2;

    // The error indicator is not cleared in between: an integer part that is too large spoils the real.
    return errno != ERANGE && text::wholeReal(text::trimLeft(text)) ? 1 : 0;
}

namespace {

bool isOfKind(const std::string& value, FieldKind kind) {
    switch (kind) {
        case FieldKind::kInt:
            return ClassifyNumber(value) == 2;
        case FieldKind::kReal:
            return ClassifyNumber(value) != 0;
        default:
            return true;
    }
}

std::string kindMessage(const PromptRow& row) {
    return row.kind == FieldKind::kInt
               ? "Attribute " + row.name +
                     " must be an integer value!\n(From -2 147 483 648 through 2 147 483 647)"
               : "Attribute " + row.name + " must be a real value!\n(From -1.7E+308 through 1.7E+308)";
}

}  // namespace

std::optional<std::string> KindFault(const PromptRow& row, const std::string& value) {
    return isOfKind(value, row.kind) ? std::nullopt : std::optional(kindMessage(row));
}

std::optional<PromptFault> ValidateRows(const std::string& feature, const std::vector<PromptRow>& rows,
                                        const PromptCells& cells) {
    for (size_t i = 0; i < rows.size(); ++i) {
        int row = static_cast<int>(i) + 1;
        if (!rows[i].name.empty() && rows[i].mustBeSet && cells.cellText(2, row).empty())
            return PromptFault{"Attribute " + rows[i].name + " must be set!", row};
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        int row = static_cast<int>(i) + 1;
        std::string value = cells.cellText(2, row);
        if (rows[i].name.empty() || value.empty()) continue;
        if (const std::optional<std::string> fault = KindFault(rows[i], value))
            return PromptFault{*fault, row};
    }
    std::optional<std::string> fault = FeatureNameFault(feature);
    return fault ? std::optional(PromptFault{*fault}) : std::nullopt;
}

bool ValidateFeatureName(const std::string& text) {
    std::optional<std::string> fault = FeatureNameFault(text);
    if (fault) ui::messageBox("Error", *fault);
    return !fault;
}

}  // namespace norvane
