#include "hostcad/drawing/format.h"

#include <charconv>
#include <utility>

#include "platform/text/text.h"

namespace hostcad {
namespace {

constexpr std::pair<DrawingVersion, const char*> kNames[] = {
    {DrawingVersion::R12, "R12"},     {DrawingVersion::R13, "R13"},     {DrawingVersion::R14, "R14"},
    {DrawingVersion::R2000, "R2000"}, {DrawingVersion::R2004, "R2004"}, {DrawingVersion::R2007, "R2007"},
    {DrawingVersion::R2010, "R2010"}, {DrawingVersion::R2013, "R2013"}, {DrawingVersion::R2018, "R2018"},
};

}  // namespace

std::string versionText(DrawingVersion version) {
    return text::format("AC%04d", static_cast<int>(version));
}

DrawingVersion versionOf(std::string_view text) {
    int number = 0;
    if (text.size() == 6 && text.substr(0, 2) == "AC") {
        auto [end, error] = std::from_chars(text.data() + 2, text.data() + 6, number);
        if (error == std::errc() && end == text.data() + 6 && number > 0)
            return static_cast<DrawingVersion>(number);
    }
    return DrawingVersion::R12;
}

std::string versionName(DrawingVersion version) {
    for (const auto& [known, name] : kNames)
        if (known == version) return name;
    return versionText(version);
}

bool versionOfName(std::string_view name, DrawingVersion& version) {
    for (const auto& [known, text] : kNames)
        if (text::equalNoCase(name, text) || text::equalNoCase(name, std::string_view(text).substr(1))) {
            version = known;
            return true;
        }
    return false;
}

int codePageOf(std::string_view name) {
    constexpr int kWesternEuropean = 1252;
    size_t digits = name.find_first_of("0123456789");
    if (digits == std::string_view::npos) return kWesternEuropean;
    int page = 0;
    auto [end, error] = std::from_chars(name.data() + digits, name.data() + name.size(), page);
    return error == std::errc() ? page : kWesternEuropean;
}

}  // namespace hostcad
