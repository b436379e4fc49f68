#include "module/transfer/export_counts.h"

#include <vector>

#include "module/exchange/shape_object.h"
#include "platform/text/text.h"

namespace norvane {

void ExportCounts::add(const ExportCounts& other) {
    for (int ExportCounts::*count :
         {&ExportCounts::written, &ExportCounts::holes, &ExportCounts::withoutRecord, &ExportCounts::cutTexts,
          &ExportCounts::tooLarge, &ExportCounts::leftOutColumns, &ExportCounts::meshes,
          &ExportCounts::tooShort, &ExportCounts::farOut, &ExportCounts::otherKinds})
        this->*count += other.*count;
}

std::string LeftOutText(const ExportCounts& counts) {
    std::vector<std::string> reasons;
    if (counts.tooShort) reasons.push_back(std::to_string(counts.tooShort) + " with fewer than two vertices");
    if (counts.meshes) reasons.push_back(text::counted(counts.meshes, "mesh", "meshes"));
    if (counts.farOut) reasons.push_back(std::to_string(counts.farOut) + " with coordinates out of range");
    if (counts.otherKinds) reasons.push_back(std::to_string(counts.otherKinds) + " of another kind");
    std::string told;
    if (!reasons.empty())
        told += "; " + text::counted(counts.leftOut(), "entity", "entities") +
                " left out: " + text::join(reasons, ", ");
    if (counts.holes)
        told += "; " + text::counted(counts.holes, "entity is a hole", "entities are holes") + " of others";
    if (counts.withoutRecord) told += "; " + std::to_string(counts.withoutRecord) + " without a record";
    if (counts.cutTexts)
        told += "; " + text::counted(counts.cutTexts, "text", "texts") + " cut to 254 characters";
    if (counts.tooLarge)
        told += "; " + text::counted(counts.tooLarge, "number", "numbers") + " too large for the table";
    if (counts.leftOutColumns)
        told += "; " + text::counted(counts.leftOutColumns, "field", "fields") + " without room in the table";
    return told;
}

std::string ExportSummary(int32_t shapeType, const std::string& name, const ExportCounts& counts) {
    const std::string kind = shape::IsPolygon(shapeType)
                                 ? text::counted(counts.written, "polygon", "polygons")
                             : shape::IsArc(shapeType) ? text::counted(counts.written, "line", "lines")
                                                       : text::counted(counts.written, "point", "points");
    return kind + " written to " + name + ".shp" + LeftOutText(counts);
}

}  // namespace norvane
