#include "module/features/feature_checks.h"

#include <unordered_set>

#include "module/store/name_rules.h"

namespace norvane {

namespace {

using Rows = std::vector<FeatureFileRow>;
using Fault = std::optional<RowFault>;

// The first row that a test finds fault with.
template <class Test>
Fault firstFault(const Rows& rows, const char* message, int column, Test isWrong) {
    for (size_t i = 0; i < rows.size(); ++i)
        if (isWrong(rows[i])) return RowFault{message, static_cast<int>(i) + 1, column};
    return std::nullopt;
}

Fault abbreviationsFault(const Rows& rows) {
    std::unordered_set<std::string_view> seen;
    for (size_t i = 0; i < rows.size(); ++i) {
        const std::string& name = rows[i].abbreviation;
        int row = static_cast<int>(i) + 1;
        if (name.empty()) return RowFault{"There are empty strings in column <ATTRIBUTE (Abbr.)>!", row, 1};
        // The cell beside the doubled name is the one that is gone to.
        if (!seen.insert(name).second)
            return RowFault{"There are duplicates in column <ATTRIBUTE (Abbr.)>!", row, 2};
    }
    return std::nullopt;
}

Fault fullNamesFault(const Rows& rows) {
    return firstFault(rows, "There are empty strings in column <ATTRIBUTE (Full Name)>!", 2,
                      [](const FeatureFileRow& row) { return row.fullName.empty(); });
}

Fault defaultsFault(const Rows& rows) {
    return firstFault(rows, "Default value cannot be an empty string!", 3, [](const FeatureFileRow& row) {
        return row.values.dropDown && !row.values.items.empty() && row.values.text.empty();
    });
}

Fault charactersFault(const Rows& rows, const char* message) {
    return firstFault(rows, message, 1,
                      [](const FeatureFileRow& row) { return !IsGoodName(row.abbreviation); });
}

Fault commasFault(const Rows& rows) {
    return firstFault(rows, "Invalid characters <<,(comma)>> in <ATTRIBUTE (Full Name)>!", 2,
                      [](const FeatureFileRow& row) { return row.fullName.find(',') != std::string::npos; });
}

// A later fault takes the place of an earlier one; a check without a fault leaves it.
void replace(Fault& fault, Fault later) {
    if (later) fault = std::move(later);
}

Fault emptySheetFault(const Rows& rows) {
    if (!rows.empty()) return std::nullopt;
    return RowFault{"Cannot create an empty *.gis file!", 1, 1};
}

}  // namespace

std::optional<RowFault> CheckForFile(const Rows& rows) {
    Fault fault = abbreviationsFault(rows);
    replace(fault, fullNamesFault(rows));
    if (!fault) fault = defaultsFault(rows);
    if (!fault) {
        fault = charactersFault(
            rows, "Invalid characters in <ATTRIBUTE (Abbr.)>!\n\nValid characters:\nA-Z\n0-9\n$ # _ -");
        replace(fault, commasFault(rows));
    }
    replace(fault, emptySheetFault(rows));
    return fault;
}

std::optional<RowFault> CheckForCategory(const std::string& feature, const Rows& rows) {
    Fault fault;
    if (!IsGoodName(feature)) fault = RowFault{kBadNameMessage, 0, 1};
    const bool named = !fault;
    replace(fault, abbreviationsFault(rows));
    replace(fault, fullNamesFault(rows));
    if (named && !fault) {
        fault = charactersFault(rows,
                                "Invalid characters in <ATTRIBUTE (Abbr.)> or string length more than 64 "
                                "characters!\n\nValid characters:\nA-Z\n0-9\n_\n$\n#\n-\n:\n(\n)\n'space'");
        replace(fault, commasFault(rows));
        if (!fault) fault = defaultsFault(rows);
    }
    replace(fault, emptySheetFault(rows));
    return fault;
}

}  // namespace norvane
