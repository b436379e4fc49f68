#include "module/transfer/import_polylines.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "module/cad/ads_owners.h"
#include "module/store/gis_link.h"
#include "module/transfer/id_counter.h"
#include "module/transfer/import_records.h"
#include "module/transfer/shape_set.h"
#include "platform/ads/editor.h"
#include "platform/ads/entities.h"
#include "platform/ads/result_chain.h"
#include "platform/plane/point.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// Areas of so many vertices are not flagged as closed: their first vertex comes again at the end instead,
// unless it is there already.
constexpr int32_t kTooManyToClose = 32000;
constexpr double kSamePoint = 1e-06;

AcDbObjectId idOfSymbol(const char* table, const std::string& name) {
    ads_name symbol;
    AcDbObjectId id;
    if (acdbTblObjName(table, name.c_str(), symbol) == RTNORM) acdbGetObjectId(id, symbol);
    return id;
}

OpenObject<AcDbBlockTableRecord> modelSpace() {
    AcDbBlockTable* blocks = nullptr;
    acdbCurDwg()->getBlockTable(blocks, AcDb::kForRead);
    const OpenObject<AcDbBlockTable> table(blocks);
    AcDbBlockTableRecord* space = nullptr;
    if (table) table->getAt("*Model_Space", space, AcDb::kForWrite);
    return OpenObject<AcDbBlockTableRecord>(space);
}

bool isSomewhere(const ShapeObject& shape, int32_t vertex) {
    return std::isfinite(shape.x[vertex]) && std::isfinite(shape.y[vertex]) && std::isfinite(shape.z[vertex]);
}

}  // namespace

bool PolylineImport::draw(ImportProgress& progress, ImportReport& report, std::vector<std::string>& ids) {
    if (!makeLayer()) return false;
    registerApplication();
    progress.begin("Creating polyline : ");
    const bool done = drawRecords(progress, report, ids);
    progress.end();
    return done;
}

bool PolylineImport::drawRecords(ImportProgress& progress, ImportReport& report,
                                 std::vector<std::string>& ids) {
    IdCounter counter(table_, FindKeyFields(table_).id);
    return ForEachImported(shapes_, table_, settings_.elevationField, progress,
                           [&](const ImportedRecord& record) {
                               const std::string id = record.id.empty() ? counter.next() : record.id;
                               if (!record.height.empty()) elevation_ = text::toReal(record.height);
                               ids.push_back(id);
                               return drawParts(record.shape, id, report);
                           });
}

bool PolylineImport::makeLayer() {
    AcDbLayerTable* layers = nullptr;
    acdbCurDwg()->getLayerTable(layers, AcDb::kForWrite);
    const OpenObject<AcDbLayerTable> table(layers);
    if (table->has(settings_.layerName.c_str())) return true;
    auto made = std::make_unique<AcDbLayerTableRecord>();
    if (made->setName(settings_.layerName.c_str()) == Acad::eOk && table->add(made.get()) == Acad::eOk) {
        const OpenObject<AcDbLayerTableRecord> layer(made.release());
        made_.push_back(layer->objectId());
        return true;
    }
    acutPrintf("\nThe layer \"%s\" cannot be made.", settings_.layerName.c_str());
    return false;
}

void PolylineImport::registerApplication() {
    if (!idOfSymbol("APPID", kGisLinkApplication).isNull()) return;
    acdbRegApp(kGisLinkApplication);
    made_.push_back(idOfSymbol("APPID", kGisLinkApplication));
}

void PolylineImport::takeBack() {
    for (auto id = made_.rbegin(); id != made_.rend(); ++id)
        if (const OpenObject<AcDbObject> object(*id, AcDb::kForWrite); object) object->erase();
    made_.clear();
}

// --- Parts ------------------------------------------------------------------------------------------------

bool PolylineImport::drawParts(const ShapeObject& shape, const std::string& id, ImportReport& report) {
    for (int32_t i = 0; i < shape.partCount; ++i) {
        const int32_t first = std::clamp(shape.partStarts[static_cast<size_t>(i)], 0, shape.vertexCount);
        const int32_t next =
            i + 1 < shape.partCount ? shape.partStarts[static_cast<size_t>(i) + 1] : shape.vertexCount;
        const Part part{shape, first, std::clamp(next, first, shape.vertexCount) - first};
        bool everywhere = true;
        for (int32_t v = 0; v < part.count; ++v) everywhere = everywhere && isSomewhere(shape, first + v);
        if (part.count < 2)
            ++report.shortParts;
        else if (!everywhere)
            ++report.badCoordinates;
        else if (!drawPart(part, id, report))
            return false;
    }
    return true;
}

bool PolylineImport::drawPart(const Part& part, const std::string& id, ImportReport& report) {
    const OpenObject<AcDbBlockTableRecord> space = modelSpace();
    const OpenObject<AcDbEntity> polyline(space ? makePolyline(*space.get(), part) : nullptr);
    if (!polyline || polyline->setLayer(settings_.layerName.c_str()) != Acad::eOk) {
        acutPrintf("\nThe drawing takes no more polylines.");
        return false;
    }
    ++report.polylines;
    const GisLink link{settings_.templatePath, settings_.outputPath, settings_.tableName, "PT_ID", id};
    if (LinkNewEntity(*polyline.get(), link))
        report.linkedIds.insert(id);
    else
        ++report.linksRefused;
    return true;
}

bool PolylineImport::isArea() const {
    return shapes_.shapeType == shape::kPolygon || shapes_.shapeType == shape::kPolygonZ;
}

bool PolylineImport::hasOwnHeights() const {
    return shape::HasZ(shapes_.shapeType);
}

double PolylineImport::heightOf(const Part& part, int32_t vertex) const {
    return hasOwnHeights() ? part.shape.z[part.first + vertex] : elevation_;
}

std::optional<double> PolylineImport::commonHeight(const Part& part) const {
    const double height = heightOf(part, 0);
    for (int32_t i = 1; i < part.count; ++i)
        if (heightOf(part, i) != height) return std::nullopt;
    return height;
}

AcDbEntity* PolylineImport::makePolyline(AcDbBlockTableRecord& space, const Part& part) {
    if (settings_.lightPolylines)
        if (const std::optional<double> height = commonHeight(part))
            if (AcDbEntity* light = makeLight(part, *height)) return light;
    if (hasOwnHeights() || settings_.elevationField >= 0)
        return makeWithVertices<AcDb3dPolyline, AcDb3dPolylineVertex>(space, part);
    return makeWithVertices<AcDb2dPolyline, AcDb2dVertex>(space, part);
}

template <class Polyline, class Vertex>
AcDbEntity* PolylineImport::makeWithVertices(AcDbBlockTableRecord& space, const Part& part) {
    auto vertexAt = [&](int32_t i) {
        return AcGePoint3d(part.shape.x[part.first + i], part.shape.y[part.first + i], heightOf(part, i));
    };
    const AcGePoint3d first = vertexAt(0), last = vertexAt(part.count - 1);
    const double gap = plane::length(plane::Point{last.x - first.x, last.y - first.y, last.z - first.z});
    const bool isRepeated = part.count > 2 && gap < kSamePoint;
    const bool isClosed = isArea() && (part.count < kTooManyToClose || settings_.lightPolylines);
    const int32_t count = isClosed && isRepeated && settings_.lightPolylines ? part.count - 1 : part.count;

    auto made = std::make_unique<Polyline>();
    if (isClosed) made->makeClosed();
    AcDbObjectId id;
    if (space.appendAcDbEntity(id, made.get()) != Acad::eOk) return nullptr;
    made_.push_back(id);
    OpenObject<Polyline> polyline(made.release());
    auto append = [&](const AcGePoint3d& at) {
        auto vertex = std::make_unique<Vertex>(at);
        if (polyline->appendVertex(vertex.get()) != Acad::eOk) return false;
        vertex.release()->close();
        return true;
    };
    for (int32_t i = 0; i < count; ++i)
        if (!append(vertexAt(i))) return nullptr;
    if (isArea() && !isClosed && gap >= kSamePoint && !append(first)) return nullptr;
    return polyline.release();
}

// Drawings of the oldest version have no light polylines, and refuse them.
AcDbEntity* PolylineImport::makeLight(const Part& part, double height) {
    const int32_t last = part.first + part.count - 1;
    const bool isRepeated =
        part.count > 2 && std::hypot(part.shape.x[last] - part.shape.x[part.first],
                                     part.shape.y[last] - part.shape.y[part.first]) < kSamePoint;
    const int32_t count = isArea() && isRepeated ? part.count - 1 : part.count;
    ResultChain list;
    list.addText(0, "LWPOLYLINE");
    list.addText(8, settings_.layerName);
    list.addInteger(67, 0);
    list.addInteger(90, count);
    list.addInteger(70, isArea() ? 1 : 0);
    list.add(38).resval.rreal = height;
    for (int32_t i = 0; i < count; ++i) {
        resbuf& point = list.add(10);
        point.resval.rpoint[0] = part.shape.x[part.first + i];
        point.resval.rpoint[1] = part.shape.y[part.first + i];
    }
    ads_name name;
    if (acdbEntMake(list.get()) != RTNORM || acdbEntLast(name) != RTNORM) return nullptr;
    OpenObject<AcDbEntity> entity(name, AcDb::kForWrite);
    if (entity) made_.push_back(entity->objectId());
    return entity.release();
}

}  // namespace norvane
