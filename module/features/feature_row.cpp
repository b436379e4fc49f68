#include "module/features/feature_row.h"

#include "platform/text/text.h"

namespace norvane {

namespace {

// Empty tokens are kept, but nothing behind the last comma is no token.
std::vector<std::string> tokensOf(std::string_view fields) {
    std::vector<std::string> tokens = text::split(fields, ',');
    if (!tokens.empty() && tokens.back().empty()) tokens.pop_back();
    for (std::string& token : tokens) token = std::string(text::trim(token));
    return tokens;
}

ValueCell valuesOf(const std::vector<std::string>& tokens) {
    constexpr size_t kDefault = 2;
    ValueCell values;
    values.dropDown = true;
    values.text = tokens[kDefault];
    for (size_t i = kDefault + 1; i < tokens.size(); ++i)
        if (!tokens[i].empty()) values.items.push_back(tokens[i]);
    bool occurs = text::join(values.items, "\t").find(values.text) != std::string::npos;
    if (!values.items.empty() && !occurs) values.items.insert(values.items.begin(), values.text);
    return values;
}

}  // namespace

bool AddRowFromFields(std::vector<FeatureFileRow>& rows, bool required, FieldKind type,
                      std::string_view fields) {
    const std::vector<std::string> tokens = tokensOf(fields);
    if (tokens.size() < 2) return false;
    const bool named = !tokens[0].empty();
    if (named) rows.push_back({required, type, text::upper(tokens[0]), tokens[1], {}});
    if (tokens.size() > 2 && !tokens[2].empty() && !rows.empty()) {
        rows.back().values = valuesOf(tokens);
        rows.back().type = FieldKind::kChar;
    }
    return named;
}

std::string JoinedValues(const ValueCell& values) {
    if (!values.dropDown) return {};
    std::string joined = text::join(values.items, ",");
    if (!values.text.empty() && !joined.empty() && joined.find(values.text) == std::string::npos)
        joined = values.text + "," + joined;
    return joined;
}

}  // namespace norvane
