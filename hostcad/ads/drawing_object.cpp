#include "hostcad/ads/drawing_object.h"

#include <unordered_map>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/entity_builder.h"

using namespace hostcad;

namespace {

// Which objects of the current drawing are open for write: one opener at a time may change an object.
std::unordered_map<ObjectId, const DrawingObject*>& writers() {
    static std::unordered_map<ObjectId, const DrawingObject*> open;
    static long serial = 0;
    if (serial != currentDrawing().serial()) {
        serial = currentDrawing().serial();
        open.clear();
    }
    return open;
}

}  // namespace

bool DrawingObject::inDrawing() const {
    return id != kNoObject && drawing == currentDrawing().serial();
}

Groups DrawingObject::groups() const {
    if (id == kNoObject) return pending;
    return inDrawing() ? currentDrawing().groups(id) : Groups();
}

Acad::ErrorStatus DrawingObject::writable() const {
    if (id != kNoObject && !inDrawing()) return Acad::eNoDatabase;
    return forWrite ? Acad::eOk : Acad::eNotOpenForWrite;
}

Acad::ErrorStatus DrawingObject::store(const std::vector<Group>& groups) {
    if (Acad::ErrorStatus status = writable()) return status;
    if (id == kNoObject)
        pending = groups;
    else
        currentDrawing().setGroups(id, groups);
    return Acad::eOk;
}

Acad::ErrorStatus DrawingObject::put(const Group& group) {
    if (Acad::ErrorStatus status = writable()) return status;
    Groups old = groups();
    std::vector<Group> changed(old.begin(), old.end());
    putGroup(changed, group);
    return store(changed);
}

Acad::ErrorStatus DrawingObject::putText(int code, const char* text) {
    if (!text) return Acad::eInvalidInput;
    return put(currentDrawing().arena().text(code, text));
}

bool DrawingObject::hasFlag(int64_t flag) const {
    return integerOf(groups(), 70) & flag;
}

Acad::ErrorStatus DrawingObject::putFlag(int64_t flag, bool on) {
    int64_t others = integerOf(groups(), 70) & ~flag;
    return put(integerGroup(70, others | (on ? flag : 0)));
}

Frame DrawingObject::frame() const {
    const Group* normal = find(groups(), 210);
    return normal ? extrusionFrame(normal->point()) : Frame{};
}

AcGePoint3d DrawingObject::worldPoint(int code) const {
    const Group* group = find(groups(), code);
    if (!group) return {};
    Point p = frame()(group->point());
    return {p.x, p.y, p.z};
}

Acad::ErrorStatus DrawingObject::putWorldPoint(int code, const AcGePoint3d& p) {
    // The axes are at right angles, so that the way back is by their products with the point.
    Frame own = frame();
    auto along = [&](Point axis) { return axis.x * p.x + axis.y * p.y + axis.z * p.z; };
    return put(currentDrawing().arena().point(code, along(own.x), along(own.y), along(own.z)));
}

Acad::ErrorStatus DrawingObject::open(ObjectId object, AcDb::OpenMode mode) {
    bool write = mode == AcDb::kForWrite;
    if (write && !writers().emplace(object, this).second) return Acad::eWasOpenForWrite;
    id = object;
    drawing = currentDrawing().serial();
    forWrite = write;
    pending.clear();
    return Acad::eOk;
}

void DrawingObject::close() {
    auto found = writers().find(id);
    if (found != writers().end() && found->second == this) writers().erase(found);
}

Acad::ErrorStatus DrawingObject::appendTo(ObjectId owner) {
    if (id != kNoObject) return Acad::eInvalidInput;
    Drawing& into = currentDrawing();
    std::vector<Group> built;
    if (!buildEntity(into, owner, pending, built)) return Acad::eInvalidInput;
    bool block = into.object(owner).kind == ObjectKind::Block;
    return open(block ? into.appendEntity(owner, built) : into.appendSubentity(owner, built),
                AcDb::kForWrite);
}
