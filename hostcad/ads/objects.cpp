// Opening and closing of objects, and what all objects and entities have in common.
#include "platform/ads/objects.h"

#include "hostcad/ads/drawing_object.h"
#include "hostcad/ads/group_lists.h"
#include "hostcad/drawing/entity_builder.h"
#include "hostcad/drawing/host_names.h"

using namespace hostcad;

namespace {

template <class T>
AcDbObject* opened(ObjectId id, AcDb::OpenMode mode, Acad::ErrorStatus& status) {
    auto object = std::make_unique<T>();
    status = object->host()->open(id, mode);
    return status == Acad::eOk ? object.release() : nullptr;
}

using Opener = AcDbObject* (*)(ObjectId, AcDb::OpenMode, Acad::ErrorStatus&);

Opener openerOf(const Drawing& drawing, ObjectId id) {
    constexpr int64_t k3d = 8, kVertex3d = 32;
    const Object& object = drawing.object(id);
    std::string_view type = drawing.type(id);
    int64_t flags = integerOf(drawing.groups(id), 70);
    if (type == "LAYER") return opened<AcDbLayerTableRecord>;
    if (type == "BLOCK_RECORD" || object.kind == ObjectKind::Block) return opened<AcDbBlockTableRecord>;
    if (object.kind == ObjectKind::Record) return opened<AcDbSymbolTableRecord>;
    if (type == "TEXT") return opened<AcDbText>;
    if (type == "ATTDEF") return opened<AcDbAttributeDefinition>;
    if (type == "ATTRIB") return opened<AcDbAttribute>;
    if (type == "INSERT") return opened<AcDbBlockReference>;
    if (type == "POLYLINE")
        return flags & k3d ? Opener(opened<AcDb3dPolyline>) : Opener(opened<AcDb2dPolyline>);
    if (type == "VERTEX")
        return flags & kVertex3d ? Opener(opened<AcDb3dPolylineVertex>) : Opener(opened<AcDb2dVertex>);
    if (object.kind == ObjectKind::Entity || object.kind == ObjectKind::Subentity) return opened<AcDbEntity>;
    return opened<AcDbObject>;
}

}  // namespace

AcDbObject* openObject(ObjectId id, AcDb::OpenMode mode, Acad::ErrorStatus& status) {
    return openerOf(currentDrawing(), id)(id, mode, status);
}

// --- AcDbObject ---------------------------------------------------------------------------------------

AcDbObject::AcDbObject() : host_(std::make_unique<DrawingObject>()) {}

AcDbObject::~AcDbObject() {
    host_->close();
}

AcDbObjectId AcDbObject::objectId() const {
    return AcDbObjectId(static_cast<long>(host_->id));
}

std::string AcDbObject::handle() const {
    if (!host_->inDrawing()) return "";
    uint64_t handle = currentDrawing().object(host_->id).handle;
    return handle ? handleText(handle) : "";
}

std::string AcDbObject::dxfName() const {
    return std::string(textOf(host_->groups(), 0));
}

Acad::ErrorStatus AcDbObject::upgradeOpen() {
    if (!host_->inDrawing()) return Acad::eNotInDatabase;
    return host_->forWrite ? Acad::eWasOpenForWrite : host_->open(host_->id, AcDb::kForWrite);
}

Acad::ErrorStatus AcDbObject::downgradeOpen() {
    if (!host_->inDrawing()) return Acad::eNotInDatabase;
    if (!host_->forWrite) return Acad::eNotOpenForWrite;
    host_->close();
    host_->forWrite = false;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::erase(bool erasing) {
    if (!host_->inDrawing()) return Acad::eNotInDatabase;
    if (Acad::ErrorStatus status = host_->writable()) return status;
    currentDrawing().setErased(host_->id, erasing);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::close() {
    delete this;
    return Acad::eOk;
}

resbuf* AcDbObject::xData(const char* application) const {
    ResultChain list;
    Groups groups = host_->groups();
    for (const Group& group : application ? xdataOf(groups, application) : xdataOf(groups))
        addGroup(list, currentDrawing(), group);
    return list.take();
}

Acad::ErrorStatus AcDbObject::setXData(const resbuf* data) {
    if (Acad::ErrorStatus status = host_->writable()) return status;
    Drawing& drawing = currentDrawing();
    for (const resbuf* item = data; item; item = item->rbnext)
        if (item->restype == kApplicationCode &&
            !drawing.record("APPID", item->resval.rstring ? item->resval.rstring : ""))
            return Acad::eRegappIdNotFound;
    std::vector<Group> changes;
    if (!data || !xdataFromList(drawing, data, changes)) return Acad::eInvalidInput;
    Groups old = host_->groups();
    std::vector<Group> groups(old.begin(), old.end());
    mergeXData(groups, changes);
    if (xdataSize(xdataOf(groups)) > kMostXDataBytes) return Acad::eXdataSizeExceeded;
    return host_->store(groups);
}

// --- AcDbEntity ---------------------------------------------------------------------------------------

std::string AcDbEntity::layer() const {
    return std::string(textOf(host_->groups(), 8, "0"));
}

Acad::ErrorStatus AcDbEntity::setLayer(const char* name) {
    if (!name || !currentDrawing().record("LAYER", name)) return Acad::eKeyNotFound;
    return host_->putText(8, name);
}

int AcDbEntity::colorIndex() const {
    return static_cast<int>(integerOf(host_->groups(), 62, 256));
}

Acad::ErrorStatus AcDbEntity::setColorIndex(int color) {
    return color < 0 || color > 256 ? Acad::eInvalidInput : host_->put(integerGroup(62, color));
}

Acad::ErrorStatus AcDbEntity::setPropertiesFrom(const AcDbEntity* other) {
    if (!other) return Acad::eInvalidInput;
    if (Acad::ErrorStatus status = host_->writable()) return status;
    Groups old = host_->groups(), from = other->host()->groups();
    std::vector<Group> groups(old.begin(), old.end());
    for (int code : {8, 62, 420, 430, 440, 6, 48, 370, 60}) {
        if (const Group* group = find(from, code))
            putGroup(groups, *group);
        else
            dropGroups(groups, code);
    }
    return host_->store(groups);
}

// --- Opening ------------------------------------------------------------------------------------------

Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name entity) {
    ObjectId object = idOf(entity);
    if (!object) return Acad::eInvalidInput;
    id = AcDbObjectId(static_cast<long>(object));
    return Acad::eOk;
}

Acad::ErrorStatus acdbGetAdsName(ads_name entity, AcDbObjectId id) {
    if (id.isNull()) return Acad::eNullObjectId;
    if (id.asLong() < 0 || id.asLong() >= static_cast<long>(currentDrawing().idLimit()))
        return Acad::eInvalidInput;
    nameOf(static_cast<ObjectId>(id.asLong()), entity);
    return Acad::eOk;
}

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased) {
    object = nullptr;
    ads_name name;
    if (Acad::ErrorStatus status = acdbGetAdsName(name, id)) return status;
    auto wanted = static_cast<ObjectId>(id.asLong());
    const Drawing& drawing = currentDrawing();
    ObjectKind kind = drawing.object(wanted).kind;
    if (kind == ObjectKind::HeaderVariable || kind == ObjectKind::Class || kind == ObjectKind::Other)
        return Acad::eInvalidInput;
    if (!openErased && !drawing.exists(wanted)) return Acad::eWasErased;
    Acad::ErrorStatus status = Acad::eOk;
    object = openObject(wanted, mode, status);
    return status;
}
