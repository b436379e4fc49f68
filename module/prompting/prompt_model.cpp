#include "module/prompting/prompt_model.h"

#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdlib>

#include "module/prompting/special_codes.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

FieldName parseFieldName(std::string_view raw) {
    FieldName field;
    if (text::startsWith(raw, "~")) {
        field.required = true;
        raw.remove_prefix(1);
    }
    if (text::startsWith(raw, "..")) {
        field.kind = FieldKind::kReal;
        raw.remove_prefix(2);
    } else if (text::startsWith(raw, ".")) {
        field.kind = FieldKind::kInt;
        raw.remove_prefix(1);
    }
    field.name = raw;
    return field;
}

PromptRow promptRowOf(const FeatureRow& record) {
    FieldName field = parseFieldName(record.fieldName);
    return {field.name,          field.required,    field.kind, record.fieldPrompt,
            record.defaultValue, record.listValues, {}};
}

CellDecision decideCell(const PromptRow& row) {
    if (row.listValues.empty())
        return {row.kind == FieldKind::kChar ? PromptCell::kEditText : PromptCell::kEditNumber, {}, false};
    if (!text::startsWith(row.defaultValue, kEquationMark))
        return {PromptCell::kDropDown, row.defaultValue, false};
    return {row.defaultValue == kDescriptionCode ? PromptCell::kEditText : PromptCell::kStatic, {}, true};
}

std::string tabbedChoices(const PromptRow& row) {
    return text::replaceAll(row.listValues, ",", "\t");
}

int classifyNumber(const std::string& text) {
    errno = 0;
    char* end = nullptr;
    std::strtol(text.c_str(), &end, 0);
    if (*end == '\0') return 2;

    // The error indicator is not cleared in between: an integer part that is too large spoils the real.
    std::string_view rest = text::trimLeft(text);
    if (text::startsWith(rest, "+") && !text::startsWith(rest, "+-")) rest.remove_prefix(1);
    double value = 0;
    auto [stop, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
    return error == std::errc() && stop == rest.data() + rest.size() && errno != ERANGE ? 1 : 0;
}

int checkFeatureName(const std::string& text) {
    std::string name = text::upper(text::trim(text));
    if (name.empty()) return 0;
    constexpr std::string_view kOthers = "_-$)(: ";
    for (unsigned char c : name)
        if (!(c >= 'A' && c <= 'Z') && !std::isdigit(c) &&
            kOthers.find(static_cast<char>(c)) == std::string_view::npos)
            return -1;
    return 1;
}

std::optional<PromptFault> featureNameFault(const std::string& text) {
    // A dot is told by its own message, whatever else is wrong.
    if (text.find('.') != std::string::npos) return PromptFault{"Invalid character \".\" in feature name!"};
    switch (checkFeatureName(text)) {
        case 0:
            return PromptFault{"Feature name cannot be an empty string!"};
        case -1:
            return PromptFault{"Invalid characters in feature name!\n\nValid characters:\nA-Z\n0-9\n_"};
        default:
            return std::nullopt;
    }
}

bool validateFeatureName(const std::string& text) {
    std::optional<PromptFault> fault = featureNameFault(text);
    if (fault) ui::messageBox("Error", fault->message);
    return !fault;
}

namespace {

bool isOfKind(const std::string& value, FieldKind kind) {
    switch (kind) {
        case FieldKind::kInt:
            return classifyNumber(value) == 2;
        case FieldKind::kReal:
            return classifyNumber(value) != 0;
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

std::optional<PromptFault> validateRows(const std::string& feature, const std::vector<PromptRow>& rows,
                                        const std::vector<bool>& requiredFlags, const PromptCells& cells) {
    for (size_t i = 0; i < rows.size(); ++i) {
        int row = static_cast<int>(i) + 1;
        bool required = i < requiredFlags.size() && requiredFlags[i];
        if (!rows[i].name.empty() && required && cells.cellText(2, row).empty())
            return PromptFault{"Attribute " + rows[i].name + " must be set!", row};
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        int row = static_cast<int>(i) + 1;
        std::string value = cells.cellText(2, row);
        if (!rows[i].name.empty() && !value.empty() && !isOfKind(value, rows[i].kind))
            return PromptFault{kindMessage(rows[i]), row};
    }
    return featureNameFault(feature);
}
