#include <algorithm>
#include <cmath>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "module/exchange/shape_index.h"
#include "module/gisfile/report.h"
#include "platform/files/byte_order.h"
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

// A record of a null shape, which any file may have: its own type is 0.
bool isNullShape(const ShapeHandle& file, int32_t record) {
    constexpr int64_t kTypeAt = 8;
    size_t i = static_cast<size_t>(record);
    const char* type = file.shpFile->view(file.recordOffsets[i] + kTypeAt, sizeof(int32_t));
    return type && file.recordSizes[i] >= static_cast<int32_t>(sizeof(int32_t)) &&
           files::getLittle<int32_t>(type) == 0;
}

void checkObject(Report& report, const ShapeHandle& file, const ShapeObject& object) {
    for (int32_t i = 0; i < object.vertexCount; ++i) {
        bool isNumber = std::isfinite(object.x[i]) && std::isfinite(object.y[i]) &&
                        std::isfinite(object.z[i]) && std::isfinite(object.m[i]);
        // Bounds that are no numbers are told once, and not for each record.
        bool outside = object.x[i] < file.boundsMin[0] || object.x[i] > file.boundsMax[0] ||
                       object.y[i] < file.boundsMin[1] || object.y[i] > file.boundsMax[1];
        if (isNumber && !outside) continue;
        const char* fault = isNumber ? "leaves the bounds of the file" : "has a coordinate that is no number";
        report.fault(text::format("record %d %s at vertex %d", object.shapeId, fault, i));
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
    auto isNumber = [](double bound) { return std::isfinite(bound); };
    if (file.recordCount > 0 && !(std::all_of(file.boundsMin.begin(), file.boundsMin.end(), isNumber) &&
                                  std::all_of(file.boundsMax.begin(), file.boundsMax.end(), isNumber)))
        report.fault("the bounds of the file hold something that is no number");
    OpenDbfFile table(DbfOpen(report.path(), "rb"));
    if (table && DbfGetRecordCount(table.get()) != file.recordCount)
        report.fault(text::format("%d shapes, but %d rows in the table", file.recordCount,
                                  DbfGetRecordCount(table.get())));
    if (!table) report.say("  without a table of attributes");
}

bool reindex(Report& report) {
    std::optional<ShapeIndexMade> made = ShapeMakeIndex(report.path());
    if (!made) return false;
    report.say(
        text::format("%s: the index is made anew, %d records", report.path().c_str(), made->recordCount));
    if (made->olderCount > 0)
        report.say(text::format("  %d records are older ones that a later one replaces", made->olderCount));
    if (made->strayBytes > 0)
        report.say(text::format("  %lld bytes of the shapes are no whole record",
                                static_cast<long long>(made->strayBytes)));
    return true;
}

}  // namespace

bool ReportShapes(Report& report, const ReportOptions& options) {
    if (options.reindex && !reindex(report)) return false;
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
        bool isNull = !object && isNullShape(*file, i), isShown = i < options.records;
        if (object && isShown) report.say(describe(*object));
        if (!object && isShown && (isNull || !options.check))
            report.say(text::format("  record %d: %s", i, isNull ? "a null shape" : "none"));
        if (!object && !isNull && options.check) report.fault(text::format("record %d holds no shape", i));
        if (object && options.check) checkObject(report, *file, *object);
    }
    return true;
}

}  // namespace norvane
