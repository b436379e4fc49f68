#include "module/points/point_functions.h"

#include <string>

#include "module/coords/coordinate_format.h"
#include "module/coords/point_names.h"
#include "module/points/open_points.h"
#include "module/points/point_store.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_chain.h"

namespace norvane {

namespace {

bool isThere(const std::string& path) {
    return DetectFormat(path) != kNoFile;
}

void addPoint(ResultChain& list, const PointRecord& point) {
    list.add(RTLB);
    list.addText(RTSTR, point.name);
    list.add(RTREAL).resval.rreal = point.northing;
    list.add(RTREAL).resval.rreal = point.easting;
    if (point.elevation == kNoElevation)
        list.add(RTNIL);
    else
        list.add(RTREAL).resval.rreal = point.elevation;
    list.addText(RTSTR,
                 point.attribute.empty() ? point.description : point.attribute + "/" + point.description);
    list.add(RTLE);
}

}  // namespace

void ListPoints(Call& call) {
    std::string path, range;
    call.arguments.text(path);
    call.result = Nil{};
    if (!isThere(path)) return;
    const OpenPoints file(path);
    if (!file) return;
    ResultChain list;
    PointRecord point;
    if (call.arguments.text(range)) {
        if (PointStoreSetRange(range))
            while (PointStoreNext(point)) addPoint(list, point);
    } else {
        for (const resbuf* name = call.arguments.rest(); name; name = name->rbnext)
            if (name->restype == RTSTR && PointStoreFind(name->resval.rstring, point, 1))
                addPoint(list, point);
    }
    if (list.get()) call.result = ResultBuffers(list.take());
}

void WritePoint(Call& call) {
    std::string path;
    PointRecord point;
    point.elevation = kNoElevation;
    call.result = Nil{};
    const bool isWhole = call.arguments.text(path) && call.arguments.text(point.name) &&
                         call.arguments.real(point.northing) && call.arguments.real(point.easting) &&
                         call.arguments.text(point.description);
    call.arguments.real(point.elevation);
    if (!isWhole) return;
    const OpenPoints file(path);
    if (!file) return;
    point.name = WithoutRangeSyntax(NormalizedName(point.name));
    if (PointStoreWrite(point, 0)) call.result = point.name;
}

void DeletePoints(Call& call) {
    std::string path, range;
    call.arguments.text(path), call.arguments.text(range);
    call.result = Nil{};
    if (range.empty() || !isThere(path)) return;
    const OpenPoints file(path);
    if (!file) return;
    const int deleted = PointStore.currentFile->RemoveRange(range.c_str(), nullptr, 0);
    if (deleted >= 0) call.result = deleted;
}

void NextPoint(Call& call) {
    std::string path;
    call.arguments.text(path);
    call.result = std::string("1");
    if (!isThere(path)) return;
    const OpenPoints file(path);
    if (file && !PointStoreHighest().empty()) call.result = NextPointName(PointStoreHighest(), 1);
}

}  // namespace norvane
