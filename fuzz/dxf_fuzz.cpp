// Drawing files: whatever is read can be walked, changed, measured and saved, and the saved file reads as the
// same drawing.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/dxf/dxf.h"
#include "hostcad/geometry/extents.h"
#include "platform/ads/entities.h"

using namespace hostcad;

namespace {

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

std::string formatted(const Drawing& drawing, const DxfFormat& format) {
    std::string content, error;
    require(formatDxf(drawing, format, content, error), "a drawing cannot be saved in its own form");
    return content;
}

std::unique_ptr<Drawing> parsed(const std::string& content) {
    std::string error;
    auto drawing = parseDxf(content, error);
    require(drawing != nullptr, "a file that was saved cannot be read");
    return drawing;
}

void checkSaving(const Drawing& drawing) {
    std::string content = formatted(drawing, drawing.format());
    auto again = parsed(content);
    require(formatted(*again, again->format()) == content, "a saved file changes when it is saved again");
    DxfFormat other = drawing.format();
    other.binary = !other.binary;
    std::string otherContent, error;
    if (formatDxf(drawing, other, otherContent, error)) parsed(otherContent);
    for (auto version : {DrawingVersion::R2000, DrawingVersion::R2018})
        if (formatDxf(drawing, {.version = version}, otherContent, error)) parsed(otherContent);
}

// Every entity goes out as a list and comes back; tables are walked; filters and boxes are tried.
void walk(Drawing& drawing) {
    resbuf* everything = acutBuildList(RTSTR, "*", 0);
    ads_name entity, next;
    constexpr int kMostEntities = 1000;
    int status = acdbEntNext(nullptr, entity);
    for (int i = 0; status == RTNORM && i < kMostEntities; ++i) {
        if (resbuf* list = acdbEntGetX(entity, everything)) {
            acdbEntMod(list);
            acutRelRb(list);
        }
        extentsOf(drawing, idOf(entity));
        enclosedArea(drawing, idOf(entity));
        status = acdbEntNext(entity, next);
        ads_name_set(next, entity);
    }
    acutRelRb(everything);
    for (const char* table : {"LAYER", "BLOCK", "DIMSTYLE", "APPID"})
        for (resbuf* record = acdbTblNext(table, 1); record; record = acdbTblNext(table, 0))
            acutRelRb(record);
    ads_point low = {-1e3, -1e3, 0}, high = {1e3, 1e3, 0};
    ads_name set;
    if (acedSSGet("C", low, high, nullptr, set) == RTNORM) acedSSFree(set);
    while (drawing.undo()) continue;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string error;
    auto drawing = parseDxf({reinterpret_cast<const char*>(data), size}, error);
    if (!drawing) {
        require(!error.empty(), "a file is refused without a message");
        return 0;
    }
    checkSaving(*drawing);
    setCurrentDrawing(std::move(drawing));
    walk(currentDrawing());
    checkSaving(currentDrawing());
    return 0;
}
