#include "module/store/name_rules.h"

#include <cctype>

#include "platform/text/text.h"

namespace norvane {

int CheckFeatureName(const std::string& text) {
    std::string name = text::upper(text::trim(text));
    if (name.empty()) return 0;
    constexpr std::string_view kOthers = "_-$)(: ";
    for (unsigned char c : name)
        if (!(c >= 'A' && c <= 'Z') && !std::isdigit(c) &&
            kOthers.find(static_cast<char>(c)) == std::string_view::npos)
            return -1;
    return 1;
}

std::optional<std::string> FeatureNameFault(const std::string& text) {
    // A dot is told by its own message, whatever else is wrong.
    if (text.find('.') != std::string::npos) return "Invalid character \".\" in feature name!";
    switch (CheckFeatureName(text)) {
        case 0:
            return "Feature name cannot be an empty string!";
        case -1:
            return "Invalid characters in feature name!\n\nValid characters:\nA-Z\n0-9\n_";
        default:
            return std::nullopt;
    }
}

const char* const kBadNameMessage =
    "Invalid characters in Feature Name or string length more than 64 characters!\n\nValid "
    "characters:\nA-Z\n0-9\n_\n$\n#\n-\n:\n(\n)\n'space'";

bool IsGoodName(std::string_view name) {
    constexpr std::string_view kOthers = "_#-$)(: ";
    constexpr size_t kLongest = 63;
    const std::string_view checked = text::trim(name);
    if (checked.empty() || checked.size() > kLongest) return false;
    for (char c : checked)
        if (!(c >= 'A' && c <= 'Z') && !(c >= 'a' && c <= 'z') && !(c >= '0' && c <= '9') &&
            kOthers.find(c) == std::string_view::npos)
            return false;
    return true;
}

}  // namespace norvane
