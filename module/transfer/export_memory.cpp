#include "module/transfer/export_memory.h"

#include "module/settings/dialog_state.h"
#include "module/settings/recent_values.h"
#include "platform/ads/objects.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// The marks of what was checked, the deviation, the folder, and a feature a piece with the number of its
// category.
constexpr char kSeparator = '\t';
constexpr std::string_view kMarks = "ZXPH";
constexpr char kNoMark = '-';
constexpr size_t kFirstFeature = 3;
constexpr size_t kLongest = 4000;  // bytes

}  // namespace

std::optional<RememberedExport> LastExport() {
    const std::vector<std::string> pieces = text::split(readState(state::kShapeExport), kSeparator);
    if (pieces.size() < kFirstFeature || pieces[0].size() != kMarks.size()) return std::nullopt;
    RememberedExport last;
    const auto isMarked = [&](size_t mark) { return pieces[0][mark] == kMarks[mark]; };
    last.choice.includeZ = isMarked(0);
    last.choice.options.extraFields = isMarked(1);
    last.choice.options.leavesMissingHeights = isMarked(2);
    last.choice.options.holes = isMarked(3);
    last.choice.options.deviation = text::wholeReal(pieces[1]);
    last.folder = pieces[2];
    for (size_t i = kFirstFeature; i < pieces.size(); ++i) {
        const size_t category =
            pieces[i].empty() ? kExportCategories : static_cast<size_t>(pieces[i][0] - '0');
        if (category < kExportCategories) last.choice.features[category].insert(pieces[i].substr(1));
    }
    return last;
}

void RememberExport(const RememberedExport& last) {
    const ExportOptions& options = last.choice.options;
    const bool marked[] = {last.choice.includeZ, options.extraFields, options.leavesMissingHeights,
                           options.holes};
    std::string value;
    for (size_t i = 0; i < kMarks.size(); ++i) value += marked[i] ? kMarks[i] : kNoMark;
    value += kSeparator + (options.deviation ? text::fromReal(*options.deviation) : "-");
    value += kSeparator + last.folder;
    for (size_t category = 0; category < last.choice.features.size(); ++category)
        for (const std::string& feature : last.choice.features[category])
            if (value.size() + feature.size() < kLongest &&
                feature.find_first_of("\t\r\n") == std::string::npos)
                value += kSeparator + std::to_string(category) + feature;
    writeState(value, state::kShapeExport);
}

std::string ReferenceFileOfDrawing() {
    const std::string path = ReferenceFiles().find(acdbCurDwg()->filename());
    return files::exists(path) ? path : "";
}

void RememberReferenceFile(const std::string& path) {
    ReferenceFiles().remember(acdbCurDwg()->filename(), path);
}

}  // namespace norvane
