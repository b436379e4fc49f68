#include "module/transfer/drawing_extents.h"

#include <memory>

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "platform/ads/entities.h"
#include "platform/ads/objects.h"

namespace norvane {

namespace {

constexpr int kPoint = 10, kNormal = 210;

// Seen from below, X runs the other way.
bool isMirrored(const resbuf* groups) {
    const resbuf* normal = FindResultBuffer(groups, kNormal);
    return normal && normal->resval.rpoint[2] < 0;
}

void addPoints(plane::Box& box, const resbuf* groups, bool mirrored) {
    for (const resbuf* item = groups; item; item = item->rbnext)
        if (item->restype == kPoint)
            box.add(mirrored ? -item->resval.rpoint[0] : item->resval.rpoint[0], item->resval.rpoint[1]);
}

// The first vertex of an old polyline stands for all of them. The point of a hatch is but its height.
void addEntity(plane::Box& box, const ads_name entity) {
    const ResultBuffers groups(acdbEntGet(entity));
    const std::string type = GroupText(groups.get(), 0);
    const bool mirrored = isMirrored(groups.get());
    ads_name vertex;
    if (type == "POLYLINE" && acdbEntNext(entity, vertex) == RTNORM)
        addPoints(box, ResultBuffers(acdbEntGet(vertex)).get(), mirrored);
    else if (type != "HATCH")
        addPoints(box, groups.get(), mirrored);
}

}  // namespace

plane::Box DrawingExtents() {
    plane::Box box;
    AcDbBlockTable* blocks = nullptr;
    acdbCurDwg()->getBlockTable(blocks, AcDb::kForRead);
    const OpenObject<AcDbBlockTable> table(blocks);
    AcDbBlockTableRecord* record = nullptr;
    if (!table || table->getAt("*Model_Space", record, AcDb::kForRead) != Acad::eOk) return box;
    const OpenObject<AcDbBlockTableRecord> space(record);
    AcDbBlockTableRecordIterator* walk = nullptr;
    if (space->newIterator(walk) != Acad::eOk) return box;
    const std::unique_ptr<AcDbBlockTableRecordIterator> entities(walk);
    AcDbObjectId id;
    ads_name name;
    for (entities->start(); !entities->done(); entities->step())
        if (entities->getEntityId(id) == Acad::eOk && acdbGetAdsName(name, id) == Acad::eOk)
            addEntity(box, name);
    return box;
}

}  // namespace norvane
