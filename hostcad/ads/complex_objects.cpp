// Entities that have subentities: block references with attributes, polylines with vertices.
#include "hostcad/ads/drawing_object.h"
#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/entity_builder.h"
#include "platform/plane/angle.h"

using namespace hostcad;

namespace {

constexpr int64_t kClosed = 1, k3d = 8, kVertex3d = 32;

// Adds a new object as a subentity. The entity gets its SEQEND with the first one.
Acad::ErrorStatus appendPart(DrawingObject& entity, DrawingObject& part, AcDbObjectId& id) {
    if (!entity.inDrawing()) return Acad::eNotInDatabase;
    if (Acad::ErrorStatus status = entity.writable()) return status;
    Drawing& drawing = currentDrawing();
    Group layer = drawing.arena().text(8, textOf(entity.groups(), 8, "0"));
    if (!find(part.groups(), 8)) part.put(layer);
    if (Acad::ErrorStatus status = part.appendTo(entity.id)) return status;
    if (integerOf(entity.groups(), 66) != 1) entity.put(integerGroup(66, 1));
    if (!drawing.object(entity.id).end) {
        std::vector<Group> given{drawing.arena().text(0, "SEQEND"), layer}, built;
        buildEntity(drawing, entity.id, given, built);
        drawing.appendSubentity(entity.id, built);
    }
    id = AcDbObjectId(static_cast<long>(part.id));
    return Acad::eOk;
}

template <class Part>
Acad::ErrorStatus append(DrawingObject& entity, Part* part, AcDbObjectId& id) {
    return part ? appendPart(entity, *part->host(), id) : Acad::eInvalidInput;
}

std::vector<Group> newVertex(const AcGePoint3d& p, int64_t flags) {
    GroupArena& arena = currentDrawing().arena();
    return {arena.text(0, "VERTEX"), arena.point(10, p.x, p.y, p.z), integerGroup(70, flags)};
}

std::vector<Group> newPolyline(int64_t flags) {
    GroupArena& arena = currentDrawing().arena();
    return {arena.text(0, "POLYLINE"), integerGroup(66, 1), arena.point(10, 0, 0, 0),
            integerGroup(70, flags)};
}

bool closed(const DrawingObject& polyline) {
    return integerOf(polyline.groups(), 70) & kClosed;
}

Acad::ErrorStatus makePolylineClosed(DrawingObject& polyline) {
    return polyline.put(integerGroup(70, integerOf(polyline.groups(), 70) | kClosed));
}

}  // namespace

// --- Block references ---------------------------------------------------------------------------------

AcDbBlockReference::AcDbBlockReference() {
    GroupArena& arena = currentDrawing().arena();
    host_->pending = {arena.text(0, "INSERT"), arena.text(2, ""), arena.point(10, 0, 0, 0)};
}

AcDbBlockReference::AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId blockRecord)
    : AcDbBlockReference() {
    auto record = static_cast<ObjectId>(blockRecord.asLong());
    if (currentDrawing().exists(record))
        host_->put(currentDrawing().arena().text(2, currentDrawing().symbol(record)));
    setPosition(position);
}

AcDbObjectId AcDbBlockReference::blockTableRecord() const {
    const Drawing& drawing = currentDrawing();
    ObjectId block = drawing.block(textOf(host_->groups(), 2));
    return block ? AcDbObjectId(static_cast<long>(drawing.recordOfBlock(block))) : AcDbObjectId();
}

AcGePoint3d AcDbBlockReference::position() const {
    return host_->worldPoint(10);
}
Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& p) {
    return host_->putWorldPoint(10, p);
}

double AcDbBlockReference::rotation() const {
    return realOf(host_->groups(), 50) * plane::kDegree;
}
Acad::ErrorStatus AcDbBlockReference::setRotation(double radians) {
    return host_->put(realGroup(50, radians / plane::kDegree));
}

AcGeScale3d AcDbBlockReference::scaleFactors() const {
    Groups groups = host_->groups();
    return {realOf(groups, 41, 1), realOf(groups, 42, 1), realOf(groups, 43, 1)};
}

Acad::ErrorStatus AcDbBlockReference::setScaleFactors(const AcGeScale3d& scale) {
    if (scale.sx == 0 || scale.sy == 0 || scale.sz == 0) return Acad::eInvalidInput;
    host_->put(realGroup(41, scale.sx));
    host_->put(realGroup(42, scale.sy));
    return host_->put(realGroup(43, scale.sz));
}

AcGeMatrix3d AcDbBlockReference::blockTransform() const {
    const Drawing& drawing = currentDrawing();
    Groups groups = host_->groups();
    ObjectId block = drawing.block(textOf(groups, 2));
    Point base = block ? pointOf(drawing.groups(block), 10) : Point{};
    AcGeScale3d scale = scaleFactors();
    Frame frame = host_->frame() * translation(pointOf(groups, 10)) *
                  turned(rotation(), scale.sx, scale.sy, scale.sz) * translation(base * -1);
    AcGeMatrix3d matrix;
    const Point columns[] = {frame.x, frame.y, frame.z, frame.origin};
    for (int column = 0; column < 4; ++column) {
        matrix.entry[0][column] = columns[column].x;
        matrix.entry[1][column] = columns[column].y;
        matrix.entry[2][column] = columns[column].z;
    }
    return matrix;
}

Acad::ErrorStatus AcDbBlockReference::appendAttribute(AcDbObjectId& id, AcDbAttribute* attribute) {
    return append(*host_, attribute, id);
}

// --- Polylines ----------------------------------------------------------------------------------------

AcDb2dVertex::AcDb2dVertex() {
    host_->pending = newVertex({}, 0);
}

AcDb2dVertex::AcDb2dVertex(const AcGePoint3d& position, double bulge, double startWidth, double endWidth) {
    host_->pending = newVertex(position, 0);
    if (startWidth != 0) host_->pending.push_back(realGroup(40, startWidth));
    if (endWidth != 0) host_->pending.push_back(realGroup(41, endWidth));
    if (bulge != 0) host_->pending.push_back(realGroup(42, bulge));
}

AcDb3dPolylineVertex::AcDb3dPolylineVertex() {
    host_->pending = newVertex({}, kVertex3d);
}

AcDb3dPolylineVertex::AcDb3dPolylineVertex(const AcGePoint3d& position) {
    host_->pending = newVertex(position, kVertex3d);
}

AcDb2dPolyline::AcDb2dPolyline() {
    host_->pending = newPolyline(0);
}

bool AcDb2dPolyline::isClosed() const {
    return closed(*host_);
}
Acad::ErrorStatus AcDb2dPolyline::makeClosed() {
    return makePolylineClosed(*host_);
}

Acad::ErrorStatus AcDb2dPolyline::setElevation(double elevation) {
    return host_->put(currentDrawing().arena().point(10, 0, 0, elevation));
}

Acad::ErrorStatus AcDb2dPolyline::appendVertex(AcDbObjectId& id, AcDb2dVertex* vertex) {
    return append(*host_, vertex, id);
}

Acad::ErrorStatus AcDb2dPolyline::appendVertex(AcDb2dVertex* vertex) {
    AcDbObjectId id;
    return appendVertex(id, vertex);
}

AcDb3dPolyline::AcDb3dPolyline() {
    host_->pending = newPolyline(k3d);
}

bool AcDb3dPolyline::isClosed() const {
    return closed(*host_);
}
Acad::ErrorStatus AcDb3dPolyline::makeClosed() {
    return makePolylineClosed(*host_);
}

Acad::ErrorStatus AcDb3dPolyline::appendVertex(AcDbObjectId& id, AcDb3dPolylineVertex* vertex) {
    return append(*host_, vertex, id);
}

Acad::ErrorStatus AcDb3dPolyline::appendVertex(AcDb3dPolylineVertex* vertex) {
    AcDbObjectId id;
    return appendVertex(id, vertex);
}
