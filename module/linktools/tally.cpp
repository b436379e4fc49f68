#include "module/linktools/tally.h"

#include <algorithm>

#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kMostNames = 10;

}  // namespace

std::string FirstNames(std::vector<std::string> names) {
    const bool areMore = names.size() > kMostNames;
    if (areMore) names.resize(kMostNames + 1), names.back() = "...";
    return text::join(names, ", ");
}

void Tally::add(const std::string& reason, const std::string& name) {
    auto known = std::find_if(reasons_.begin(), reasons_.end(),
                              [&](const Reason& other) { return other.text == reason; });
    if (known == reasons_.end()) known = reasons_.insert(known, {reason, 0, {}});
    ++known->count;
    std::vector<std::string>& names = known->names;
    if (!name.empty() && names.size() <= kMostNames &&
        std::find(names.begin(), names.end(), name) == names.end())
        names.push_back(name);
}

size_t Tally::count() const {
    size_t count = 0;
    for (const Reason& reason : reasons_) count += reason.count;
    return count;
}

std::string Tally::text() const {
    std::vector<std::string> parts;
    for (const Reason& reason : reasons_) {
        std::string part = std::to_string(reason.count) + " " + reason.text;
        if (!reason.names.empty()) part += " (" + FirstNames(reason.names) + ")";
        parts.push_back(std::move(part));
    }
    return text::join(parts, ", ");
}

}  // namespace norvane
