#include "module/settings/recent_values.h"

#include <vector>

#include "module/settings/dialog_state.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// Neither in paths nor in names of tables.
constexpr char kSeparator = '\t';
// A line of the file has 4095 bytes at most.
constexpr size_t kMostBytes = 4000;

}  // namespace

std::string RecentValues::find(const std::string& key) const {
    const std::vector<std::string> pieces = text::split(readState(index_), kSeparator);
    for (size_t i = 0; i + 1 < pieces.size(); i += 2)
        if (pieces[i] == key) return pieces[i + 1];
    return "";
}

void RecentValues::remember(const std::string& key, const std::string& value) const {
    const std::vector<std::string> pieces = text::split(readState(index_), kSeparator);
    std::string all = key + kSeparator + value;
    for (size_t i = 0; i + 1 < pieces.size(); i += 2) {
        const std::string pair = kSeparator + pieces[i] + kSeparator + pieces[i + 1];
        if (pieces[i] != key && all.size() + pair.size() <= kMostBytes) all += pair;
    }
    writeState(all, index_);
}

RecentValues ImportedSets() {
    return RecentValues(state::kImportedSets);
}

RecentValues ReferenceFiles() {
    return RecentValues(state::kReferenceFiles);
}

}  // namespace norvane
