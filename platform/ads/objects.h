// The object classes of the drawing: entities and table records that are opened, changed and closed.
//
// An object that was opened is closed by its close(), after which the pointer is dead. An object made with
// new belongs to its maker until it is appended or added; from then on it is open, and is closed likewise.
// Every call answers with an error status, Acad::eOk when all is well.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ads/geometry.h"
#include "platform/ads/result_buffer.h"

namespace Acad {
enum ErrorStatus {
    eOk = 0,
    eInvalidInput,
    eKeyNotFound,
    eDuplicateRecordName,
    eNullObjectId,
    eUnknownHandle,
    eNotOpenForWrite,
    eWasOpenForWrite,
    eWasErased,
    eWrongObjectType,
    eNoDatabase,
    eNotInDatabase,
    eRegappIdNotFound,
    eXdataSizeExceeded,
    eInvalidSymbolTableName,
};
}

class AcDbObjectId {
  public:
    AcDbObjectId() = default;
    explicit AcDbObjectId(long id) : id_(id) {}
    bool isNull() const { return id_ == 0; }
    long asLong() const { return id_; }
    bool operator==(const AcDbObjectId& other) const { return id_ == other.id_; }
    bool operator!=(const AcDbObjectId& other) const { return id_ != other.id_; }

  private:
    long id_ = 0;
};

class AcDb {
  public:
    enum OpenMode { kForRead, kForWrite };
    enum TextHorzMode { kTextLeft, kTextCenter, kTextRight, kTextAlign, kTextMid, kTextFit };
    enum TextVertMode { kTextBase, kTextBottom, kTextVertMid, kTextTop };
    enum Poly2dType { k2dSimplePoly };
    enum Poly3dType { k3dSimplePoly };
};

struct DrawingObject;  // the host's side of an open object

class AcDbObject {
  public:
    AcDbObject();
    virtual ~AcDbObject();
    AcDbObject(const AcDbObject&) = delete;
    AcDbObject& operator=(const AcDbObject&) = delete;

    AcDbObjectId objectId() const;
    // The handle as hexadecimal text; "" for an object in no drawing yet.
    std::string handle() const;
    // The DXF name of the object's type, "INSERT" for instance.
    std::string dxfName() const;
    Acad::ErrorStatus upgradeOpen();
    Acad::ErrorStatus downgradeOpen();
    Acad::ErrorStatus erase(bool erasing = true);
    // Closes the object and ends the life of this pointer.
    Acad::ErrorStatus close();

    // Extended data of one application, or of all with null: a new list from the 1001 on, the caller's;
    // null when there is none.
    resbuf* xData(const char* application = nullptr) const;
    // Takes a list that begins with 1001; a list of only that item drops the application's data. The limits
    // are those of acdbEntMod. The list stays the caller's.
    Acad::ErrorStatus setXData(const resbuf* data);

    DrawingObject* host() const { return host_.get(); }

  protected:
    std::unique_ptr<DrawingObject> host_;
};

class AcDbEntity : public AcDbObject {
  public:
    std::string layer() const;
    // The layer must exist: eKeyNotFound otherwise.
    Acad::ErrorStatus setLayer(const char* name);
    int colorIndex() const;  // 0 by block, 1 to 255, 256 by layer
    Acad::ErrorStatus setColorIndex(int color);
    // Layer, colour, line type, line weight, scale of line types and visibility of another entity.
    Acad::ErrorStatus setPropertiesFrom(const AcDbEntity* other);
};

// --- Text and attributes ------------------------------------------------------------------------------

class AcDbText : public AcDbEntity {
  public:
    AcDbText();
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& p);
    AcGePoint3d alignmentPoint() const;
    Acad::ErrorStatus setAlignmentPoint(const AcGePoint3d& p);
    double height() const;
    Acad::ErrorStatus setHeight(double height);
    double rotation() const;
    Acad::ErrorStatus setRotation(double radians);
    double oblique() const;
    Acad::ErrorStatus setOblique(double radians);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    double widthFactor() const;
    Acad::ErrorStatus setWidthFactor(double factor);
    std::string textStyleName() const;
    Acad::ErrorStatus setTextStyleName(const char* name);
    std::string textString() const;
    Acad::ErrorStatus setTextString(const char* text);
    AcDb::TextHorzMode horizontalMode() const;
    Acad::ErrorStatus setHorizontalMode(AcDb::TextHorzMode mode);
    AcDb::TextVertMode verticalMode() const;
    Acad::ErrorStatus setVerticalMode(AcDb::TextVertMode mode);
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& transform);

  protected:
    explicit AcDbText(const char* dxfName);
};

class AcDbAttributeDefinition : public AcDbText {
  public:
    AcDbAttributeDefinition();
    std::string tag() const;
    std::string prompt() const;
    bool isConstant() const;
    bool isInvisible() const;
    int fieldLength() const;
};

class AcDbAttribute : public AcDbText {
  public:
    AcDbAttribute();
    std::string tag() const;
    Acad::ErrorStatus setTag(const char* tag);
    bool isInvisible() const;
    Acad::ErrorStatus setInvisible(bool invisible);
    int fieldLength() const;
    Acad::ErrorStatus setFieldLength(int length);
};

// --- Block references ---------------------------------------------------------------------------------

class AcDbBlockReference : public AcDbEntity {
  public:
    AcDbBlockReference();
    AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId blockRecord);
    AcDbObjectId blockTableRecord() const;
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& p);
    double rotation() const;
    Acad::ErrorStatus setRotation(double radians);
    AcGeScale3d scaleFactors() const;
    Acad::ErrorStatus setScaleFactors(const AcGeScale3d& scale);
    // From the block's own coordinates to those of the space that the reference stands in.
    AcGeMatrix3d blockTransform() const;
    // The reference must be in the drawing and open for write. The attribute is then open.
    Acad::ErrorStatus appendAttribute(AcDbObjectId& id, AcDbAttribute* attribute);
};

// --- Polylines of vertices ----------------------------------------------------------------------------

class AcDb2dVertex : public AcDbEntity {
  public:
    AcDb2dVertex();
    explicit AcDb2dVertex(const AcGePoint3d& position, double bulge = 0, double startWidth = 0,
                          double endWidth = 0);
};

class AcDb3dPolylineVertex : public AcDbEntity {
  public:
    AcDb3dPolylineVertex();
    explicit AcDb3dPolylineVertex(const AcGePoint3d& position);
};

class AcDb2dPolyline : public AcDbEntity {
  public:
    AcDb2dPolyline();
    bool isClosed() const;
    Acad::ErrorStatus makeClosed();
    Acad::ErrorStatus setElevation(double elevation);
    // The polyline must be in the drawing and open for write. The vertex is then open.
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDb2dVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDb2dVertex* vertex);
};

class AcDb3dPolyline : public AcDbEntity {
  public:
    AcDb3dPolyline();
    bool isClosed() const;
    Acad::ErrorStatus makeClosed();
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDb3dPolylineVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDb3dPolylineVertex* vertex);
};

// --- Symbol tables ------------------------------------------------------------------------------------

class AcDbSymbolTableRecord : public AcDbObject {
  public:
    std::string getName() const;
    Acad::ErrorStatus setName(const char* name);
};

class AcDbLayerTableRecord : public AcDbSymbolTableRecord {
  public:
    AcDbLayerTableRecord();
    int colorIndex() const;
    Acad::ErrorStatus setColorIndex(int color);
    bool isOff() const;
    Acad::ErrorStatus setIsOff(bool off);
    bool isFrozen() const;
    Acad::ErrorStatus setIsFrozen(bool frozen);
    bool isLocked() const;
};

class AcDbBlockTableRecordIterator {
  public:
    virtual ~AcDbBlockTableRecordIterator() = default;
    virtual void start() = 0;
    virtual bool done() const = 0;
    virtual void step() = 0;
    virtual Acad::ErrorStatus getEntity(AcDbEntity*& entity, AcDb::OpenMode mode) const = 0;
    virtual Acad::ErrorStatus getEntityId(AcDbObjectId& id) const = 0;
};

class AcDbBlockTableRecord : public AcDbSymbolTableRecord {
  public:
    AcDbBlockTableRecord();
    // Open for write. The entity is then in the drawing, and still open.
    Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity);
    Acad::ErrorStatus appendAcDbEntity(AcDbEntity* entity);
    // A new iterator over the main entities that are not erased; the caller deletes it.
    Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& iterator) const;
    AcGePoint3d origin() const;
    bool hasAttributeDefinitions() const;
};

class AcDbSymbolTable : public AcDbObject {
  public:
    bool has(const char* name) const;
    Acad::ErrorStatus getAt(const char* name, AcDbObjectId& id) const;
};

class AcDbLayerTable : public AcDbSymbolTable {
  public:
    using AcDbSymbolTable::getAt;
    Acad::ErrorStatus getAt(const char* name, AcDbLayerTableRecord*& record, AcDb::OpenMode mode) const;
    // Open for write. The record is then in the drawing, and still open.
    Acad::ErrorStatus add(AcDbLayerTableRecord* record);
};

class AcDbBlockTable : public AcDbSymbolTable {
  public:
    using AcDbSymbolTable::getAt;
    Acad::ErrorStatus getAt(const char* name, AcDbBlockTableRecord*& record, AcDb::OpenMode mode) const;
};

// The drawing of the present call.
class AcDbDatabase {
  public:
    Acad::ErrorStatus getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode);
    Acad::ErrorStatus getLayerTable(AcDbLayerTable*& table, AcDb::OpenMode mode);
    // The full path of the drawing; "" for one that was never saved.
    std::string filename() const;
    // A number that no other drawing of this process has had.
    long serial() const;
    // Whether its file has a place for dictionaries: those of R12 have none.
    bool holdsDictionaries() const;
    // A number that grows from one step of undo to the next: what changes while it stays the same is taken
    // back together.
    long undoStep() const;
    // The entities of all spaces and sheets.
    std::vector<AcDbObjectId> entities() const;
    // Calls the observer after each change of such an entity: it came, was changed or went, be it by undo.
    // Ids grow in the order in which entities came. The observer changes nothing. It lasts until it is
    // removed by the number that this gives, or the drawing is closed.
    int addObserver(std::function<void(AcDbObjectId)> observer);
    void removeObserver(int number);
};

AcDbDatabase* acdbCurDwg();
Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name entity);
Acad::ErrorStatus acdbGetAdsName(ads_name entity, AcDbObjectId id);
// Opens any object of the drawing; the pointer's class is that of the object's type, AcDbEntity for an
// entity without a class of its own. An erased object opens only with openErased.
Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased = false);
