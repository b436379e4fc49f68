// Symbol tables, their records, and the drawing as an object.
#include <utility>

#include "hostcad/ads/drawing_object.h"
#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/entity_builder.h"

using namespace hostcad;

namespace {

constexpr int64_t kFrozen = 1, kLocked = 4;

AcDbObjectId idOfObject(ObjectId id) {
    return AcDbObjectId(static_cast<long>(id));
}

// The record of a symbol in a table; a block is found by its definition.
ObjectId symbolIn(const std::string& table, const char* name) {
    const Drawing& drawing = currentDrawing();
    if (!name) return kNoObject;
    if (table != "BLOCK") return drawing.record(table, name);
    ObjectId block = drawing.block(name);
    return block ? drawing.recordOfBlock(block) : kNoObject;
}

template <class Record>
Acad::ErrorStatus openSymbol(const std::string& table, const char* name, Record*& record,
                             AcDb::OpenMode mode) {
    record = nullptr;
    ObjectId id = symbolIn(table, name);
    if (!id) return Acad::eKeyNotFound;
    Acad::ErrorStatus status = Acad::eOk;
    record = dynamic_cast<Record*>(openObject(id, mode, status));
    return status;
}

template <class Table>
Acad::ErrorStatus openTable(const char* name, Table*& table, AcDb::OpenMode mode) {
    table = new Table;
    // The table itself may be missing in old drawings; it is opened for what is in it.
    DrawingObject& host = *table->host();
    host.table = name;
    host.id = currentDrawing().table(host.table == "BLOCK" ? "BLOCK_RECORD" : host.table);
    host.drawing = currentDrawing().serial();
    host.forWrite = mode == AcDb::kForWrite;
    return Acad::eOk;
}

class EntityIterator : public AcDbBlockTableRecordIterator {
  public:
    explicit EntityIterator(ObjectId block) : serial_(currentDrawing().serial()), block_(block) {
        EntityIterator::start();
    }

    void start() override { at_ = currentDrawing().firstEntityOf(block_); }
    bool done() const override { return !at_ || currentDrawing().serial() != serial_; }
    void step() override {
        if (!done()) at_ = currentDrawing().nextEntityOf(block_, at_);
    }
    Acad::ErrorStatus getEntity(AcDbEntity*& entity, AcDb::OpenMode mode) const override {
        entity = nullptr;
        if (done()) return Acad::eInvalidInput;
        Acad::ErrorStatus status = Acad::eOk;
        entity = dynamic_cast<AcDbEntity*>(openObject(at_, mode, status));
        return status;
    }
    Acad::ErrorStatus getEntityId(AcDbObjectId& id) const override {
        if (done()) return Acad::eInvalidInput;
        id = idOfObject(at_);
        return Acad::eOk;
    }

  private:
    long serial_;
    ObjectId block_;
    ObjectId at_ = kNoObject;
};

}  // namespace

// --- Records ------------------------------------------------------------------------------------------

std::string AcDbSymbolTableRecord::getName() const {
    return std::string(textOf(host_->groups(), 2));
}

Acad::ErrorStatus AcDbSymbolTableRecord::setName(const char* name) {
    if (!name || !isSymbolName(name, false)) return Acad::eInvalidSymbolTableName;
    // Everything in a drawing refers to symbols by their names.
    if (host_->id != kNoObject) return Acad::eInvalidInput;
    return host_->putText(2, name);
}

AcDbLayerTableRecord::AcDbLayerTableRecord() {
    GroupArena& arena = currentDrawing().arena();
    host_->pending = {arena.text(0, "LAYER"), arena.text(2, ""), integerGroup(70, 0), integerGroup(62, 7),
                      arena.text(6, "Continuous")};
}

int AcDbLayerTableRecord::colorIndex() const {
    return static_cast<int>(std::abs(integerOf(host_->groups(), 62, 7)));
}

Acad::ErrorStatus AcDbLayerTableRecord::setColorIndex(int color) {
    if (color < 1 || color > 255) return Acad::eInvalidInput;
    return host_->put(integerGroup(62, isOff() ? -color : color));
}

// The colour of a layer that is off is negative.
bool AcDbLayerTableRecord::isOff() const {
    return integerOf(host_->groups(), 62, 7) < 0;
}

Acad::ErrorStatus AcDbLayerTableRecord::setIsOff(bool off) {
    return host_->put(integerGroup(62, off ? -colorIndex() : colorIndex()));
}

bool AcDbLayerTableRecord::isFrozen() const {
    return host_->hasFlag(kFrozen);
}

Acad::ErrorStatus AcDbLayerTableRecord::setIsFrozen(bool frozen) {
    return host_->putFlag(kFrozen, frozen);
}

bool AcDbLayerTableRecord::isLocked() const {
    return host_->hasFlag(kLocked);
}

AcDbBlockTableRecord::AcDbBlockTableRecord() {
    GroupArena& arena = currentDrawing().arena();
    host_->pending = {arena.text(0, "BLOCK_RECORD"), arena.text(2, "")};
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity) {
    if (!entity) return Acad::eInvalidInput;
    if (!host_->inDrawing()) return Acad::eNotInDatabase;
    if (Acad::ErrorStatus status = host_->writable()) return status;
    ObjectId block = currentDrawing().blockOfRecord(host_->id);
    if (!block) return Acad::eKeyNotFound;
    Acad::ErrorStatus status = entity->host()->appendTo(block);
    id = entity->objectId();
    return status;
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbEntity* entity) {
    AcDbObjectId id;
    return appendAcDbEntity(id, entity);
}

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& iterator) const {
    iterator = nullptr;
    if (!host_->inDrawing()) return Acad::eNotInDatabase;
    ObjectId block = currentDrawing().blockOfRecord(host_->id);
    if (!block) return Acad::eKeyNotFound;
    iterator = new EntityIterator(block);
    return Acad::eOk;
}

AcGePoint3d AcDbBlockTableRecord::origin() const {
    if (!host_->inDrawing()) return {};
    ObjectId block = currentDrawing().blockOfRecord(host_->id);
    const Group* base = block ? find(currentDrawing().groups(block), 10) : nullptr;
    return base ? AcGePoint3d(base->x(), base->y(), base->z()) : AcGePoint3d();
}

bool AcDbBlockTableRecord::hasAttributeDefinitions() const {
    if (!host_->inDrawing()) return false;
    ObjectId block = currentDrawing().blockOfRecord(host_->id);
    return block && hostcad::hasAttributeDefinitions(currentDrawing(), block);
}

// --- Tables -------------------------------------------------------------------------------------------

bool AcDbSymbolTable::has(const char* name) const {
    return symbolIn(host_->table, name) != kNoObject;
}

Acad::ErrorStatus AcDbSymbolTable::getAt(const char* name, AcDbObjectId& id) const {
    ObjectId found = symbolIn(host_->table, name);
    id = found ? idOfObject(found) : AcDbObjectId();
    return found ? Acad::eOk : Acad::eKeyNotFound;
}

Acad::ErrorStatus AcDbLayerTable::getAt(const char* name, AcDbLayerTableRecord*& record,
                                        AcDb::OpenMode mode) const {
    return openSymbol(host_->table, name, record, mode);
}

Acad::ErrorStatus AcDbLayerTable::add(AcDbLayerTableRecord* record) {
    if (!record) return Acad::eInvalidInput;
    if (!host_->forWrite) return Acad::eNotOpenForWrite;
    Drawing& drawing = currentDrawing();
    DrawingObject& host = *record->host();
    std::string name = record->getName();
    if (host.id != kNoObject) return Acad::eInvalidInput;
    if (!isSymbolName(name, false)) return Acad::eInvalidSymbolTableName;
    if (drawing.record("LAYER", name)) return Acad::eDuplicateRecordName;
    std::vector<Group> given = host.pending;
    Acad::ErrorStatus status = host.open(ensureLayer(drawing, name), AcDb::kForWrite);
    for (size_t i = 1; i < given.size() && status == Acad::eOk; ++i) status = host.put(given[i]);
    return status;
}

Acad::ErrorStatus AcDbBlockTable::getAt(const char* name, AcDbBlockTableRecord*& record,
                                        AcDb::OpenMode mode) const {
    return openSymbol(host_->table, name, record, mode);
}

// --- The drawing --------------------------------------------------------------------------------------

Acad::ErrorStatus AcDbDatabase::getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode) {
    return openTable("BLOCK", table, mode);
}

Acad::ErrorStatus AcDbDatabase::getLayerTable(AcDbLayerTable*& table, AcDb::OpenMode mode) {
    return openTable("LAYER", table, mode);
}

std::string AcDbDatabase::filename() const {
    return currentDrawing().path();
}

long AcDbDatabase::serial() const {
    return currentDrawing().serial();
}

long AcDbDatabase::undoStep() const {
    return currentDrawing().undoStep();
}

std::vector<AcDbObjectId> AcDbDatabase::entities() const {
    const Drawing& drawing = currentDrawing();
    std::vector<AcDbObjectId> ids;
    for (ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id)) ids.push_back(idOfObject(id));
    for (ObjectId block = drawing.firstBlock(); block; block = drawing.nextBlock(block))
        if (isFurtherSheet(drawing, block))
            for (ObjectId id = drawing.firstPart(block); id; id = drawing.nextPart(id))
                ids.push_back(idOfObject(id));
    return ids;
}

bool AcDbDatabase::holdsDictionaries() const {
    return hasSubclasses(currentDrawing().version());
}

int AcDbDatabase::addObserver(std::function<void(AcDbObjectId)> observer) {
    Drawing& drawing = currentDrawing();
    return drawing.addObserver([&drawing, told = std::move(observer)](ObjectId id, Change) {
        const Object& object = drawing.object(id);
        const bool isEntity = object.kind == ObjectKind::Entity;
        if (isEntity && (drawing.isSpace(object.owner) || isFurtherSheet(drawing, object.owner)))
            told(idOfObject(id));
    });
}

void AcDbDatabase::removeObserver(int number) {
    currentDrawing().removeObserver(number);
}

AcDbDatabase* acdbCurDwg() {
    static AcDbDatabase drawing;
    return &drawing;
}
