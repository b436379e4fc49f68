// Lines and areas of a set of shape files as polylines of the drawing, each linked to its record.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "module/transfer/import_progress.h"
#include "module/transfer/import_report.h"
#include "platform/ads/objects.h"

namespace norvane {

class PolylineImport {
  public:
    // All of them belong to the caller and outlive the import.
    PolylineImport(const ImportShpSettings& settings, ShapeHandle& shapes, DbfHandle& table)
        : settings_(settings), shapes_(shapes), table_(table) {}

    // Draws all records that can be read; their ids, in order, go behind `ids`. False when the user has
    // stopped it, or the drawing has refused the layer or a polyline, which has been told.
    bool draw(ImportProgress& progress, ImportReport& report, std::vector<std::string>& ids);
    // Takes back what was drawn, and what was made for it.
    void takeBack();

  private:
    // A part of a shape: so many of its vertices, from the first on.
    struct Part {
        const ShapeObject& shape;
        int32_t first, count;
    };

    bool makeLayer();
    void registerApplication();
    bool drawRecords(ImportProgress& progress, ImportReport& report, std::vector<std::string>& ids);
    bool drawParts(const ShapeObject& shape, const std::string& id, ImportReport& report);
    bool drawPart(const Part& part, const std::string& id, ImportReport& report);

    bool isArea() const;
    bool hasOwnHeights() const;
    double heightOf(const Part& part, int32_t vertex) const;
    std::optional<double> commonHeight(const Part& part) const;
    // Each gives the polyline, open for write and in the drawing; null when the drawing refuses it.
    AcDbEntity* makePolyline(AcDbBlockTableRecord& space, const Part& part);
    template <class Polyline, class Vertex>
    AcDbEntity* makeWithVertices(AcDbBlockTableRecord& space, const Part& part);
    AcDbEntity* makeLight(const Part& part, double height);

    const ImportShpSettings& settings_;
    ShapeHandle& shapes_;
    DbfHandle& table_;
    double elevation_ = 0;  // of the last record that had one
    std::vector<AcDbObjectId> made_;
};

}  // namespace norvane
