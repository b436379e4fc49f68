#include "module/annotation/label_marks.h"

#include <optional>
#include <utility>

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "platform/ads/entities.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kApplication = "NORVANE_LABEL";
constexpr int kExtendedData = -3, kApplicationName = 1001;
constexpr int kFeature = 1000, kHandle = 1005, kLine = 1070;

std::optional<LabelMark> markOf(const resbuf* groups) {
    const resbuf* data = FindResultBuffer(groups, kExtendedData);
    const resbuf* line = FindResultBuffer(data, kLine);
    LabelMark mark{text::upper(GroupText(data, kFeature)), text::upper(GroupText(data, kHandle)),
                   line ? line->resval.rint : -1};
    if (mark.feature.empty() || mark.handle.empty() || mark.line < 0) return std::nullopt;
    return mark;
}

}  // namespace

void AddLabelMark(ResultChain& groups, const LabelMark& mark) {
    acdbRegApp(kApplication);
    groups.add(kExtendedData);
    groups.addText(kApplicationName, kApplication);
    groups.addText(kFeature, mark.feature);
    groups.addText(kHandle, mark.handle);
    groups.addInteger(kLine, mark.line);
}

std::vector<MarkedText> ReadMarkedTexts() {
    std::vector<MarkedText> texts;
    const ResultBuffers filter(
        acutBuildList(RTDXF0, "TEXT", kExtendedData, kApplicationName, kApplication, 0));
    SelectionSet marked;
    if (acedSSGet("X", nullptr, nullptr, filter.get(), marked.out()) != RTNORM) return texts;
    const ResultBuffers application(acutBuildList(RTSTR, kApplication, 0));
    const long count = marked.length();
    EntityName text;
    for (long i = 0; i < count && marked.at(i, text.name); ++i) {
        const ResultBuffers groups(acdbEntGetX(text.name, application.get()));
        if (std::optional<LabelMark> mark = markOf(groups.get())) texts.push_back({text, std::move(*mark)});
    }
    return texts;
}

}  // namespace norvane
