#include <algorithm>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "module/gisfile/report.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// Measures below this say that there is none.
constexpr double kNoData = -1e38;

const char* nameOf(int32_t type) {
    switch (type) {
        case shape::kPoint:
            return "points";
        case shape::kArc:
            return "lines";
        case shape::kPolygon:
            return "polygons";
        case shape::kMultipoint:
            return "multipoints";
        case shape::kPointZ:
            return "points with Z";
        case shape::kArcZ:
            return "lines with Z";
        case shape::kPolygonZ:
            return "polygons with Z";
        case shape::kMultipointZ:
            return "multipoints with Z";
        case shape::kPointM:
            return "points with M";
        case shape::kArcM:
            return "lines with M";
        case shape::kPolygonM:
            return "polygons with M";
        case shape::kMultipointM:
            return "multipoints with M";
        case shape::kMultipatch:
            return "multipatches";
        default:
            return "an unknown type";
    }
}

std::string rangeText(const char* axis, double low, double high) {
    return text::format("%s %.10g to %.10g", axis, low, high);
}

std::string describe(const ShapeObject& object) {
    std::string out = text::format("  record %d: ", object.shapeId);
    if (shape::IsPoint(object.shapeType)) {
        out += text::format("%.10g, %.10g", *object.x, *object.y);
        return shape::HasZ(object.shapeType) ? out + text::format(", %.10g", *object.z) : out;
    }
    if (shape::HasParts(object.shapeType))
        out += text::format("%d part%s, ", object.partCount, object.partCount == 1 ? "" : "s");
    return out + text::format("%d vertices, ", object.vertexCount) +
           rangeText("x", object.xMin, object.xMax) + ", " + rangeText("y", object.yMin, object.yMax);
}

void checkObject(Report& report, const ShapeHandle& file, const ShapeObject& object) {
    for (int32_t i = 0; i < object.vertexCount; ++i) {
        bool inside = object.x[i] >= file.boundsMin[0] && object.x[i] <= file.boundsMax[0] &&
                      object.y[i] >= file.boundsMin[1] && object.y[i] <= file.boundsMax[1];
        if (inside) continue;
        report.fault(text::format("record %d leaves the bounds of the file at vertex %d", object.shapeId, i));
        break;
    }
}

void checkSizes(Report& report, const ShapeHandle& file) {
    if (file.fileSize != file.shpFile->size())
        report.fault(text::format("the header tells a size of %d bytes, the file has %lld", file.fileSize,
                                  static_cast<long long>(file.shpFile->size())));
    long long index = 100 + 8LL * file.recordCount;
    if (file.shxFile->size() != index)
        report.fault(text::format("the index has %lld bytes for %d records, %lld are needed",
                                  static_cast<long long>(file.shxFile->size()), file.recordCount, index));
    if (!shape::IsKnown(file.shapeType)) report.fault("the type of the shapes is not known");
    OpenDbfFile table(DbfOpen(report.path(), "rb"));
    if (table && DbfGetRecordCount(table.get()) != file.recordCount)
        report.fault(text::format("%d shapes, but %d rows in the table", file.recordCount,
                                  DbfGetRecordCount(table.get())));
    if (!table) report.say("  without a table of attributes");
}

}  // namespace

bool ReportShapes(Report& report, const ReportOptions& options) {
    OpenShapeFile file(ShapeOpen(report.path(), "rb"));
    if (!file) return false;
    report.say(text::format("%s: shape file, %s (%d), %d records", report.path().c_str(),
                            nameOf(file->shapeType), file->shapeType, file->recordCount));
    bool z = shape::HasZ(file->shapeType),
         m = (z || shape::HasM(file->shapeType)) && file->boundsMin[3] > kNoData;
    std::string bounds = "  bounds: " + rangeText("x", file->boundsMin[0], file->boundsMax[0]) + ", " +
                         rangeText("y", file->boundsMin[1], file->boundsMax[1]);
    if (z) bounds += ", " + rangeText("z", file->boundsMin[2], file->boundsMax[2]);
    if (m) bounds += ", " + rangeText("m", file->boundsMin[3], file->boundsMax[3]);
    report.say(bounds);
    if (options.check) checkSizes(report, *file);
    long count = options.check ? file->recordCount : std::min<long>(options.records, file->recordCount);
    for (int32_t i = 0; i < count; ++i) {
        OwnedShape object(ShapeReadObject(file.get(), i, 0));
        if (object && i < options.records) report.say(describe(*object));
        if (!object && i < options.records && !options.check)
            report.say(text::format("  record %d: none", i));
        if (!object && options.check) report.fault(text::format("record %d holds no shape", i));
        if (object && options.check) checkObject(report, *file, *object);
    }
    return true;
}

}  // namespace norvane
