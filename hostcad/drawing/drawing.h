// The drawing: everything that stands in a file, as objects that are lists of groups.
//
// Every run of groups that begins with a group 0 (in the header, with a group 9) is an object: header
// variables, classes, tables and their records, blocks with their entities, entities with their subentities,
// dictionaries. What is not understood is an object like any other, so it is carried along unchanged.
//
// Objects are known by their id, a number from 1 that is never used again while the drawing lives. They are
// changed by replacing their list of groups or by marking them erased; both are recorded, so that whole
// commands can be undone. References into a drawing (Groups, texts) stay valid as long as the drawing.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hostcad/drawing/arena.h"
#include "hostcad/drawing/format.h"
#include "hostcad/drawing/group.h"
#include "hostcad/drawing/handle_index.h"

namespace hostcad {

using ObjectId = uint32_t;
constexpr ObjectId kNoObject = 0;

enum class ObjectKind : uint8_t {
    HeaderVariable,  // group 9 and the value
    Class,
    Table,     // the groups behind TABLE; its records are its parts
    Record,    // of a table, BLOCK_RECORD included
    Block,     // BLOCK; the entities of the definition are its parts
    BlockEnd,  // ENDBLK
    Entity,
    Subentity,  // VERTEX, ATTRIB and SEQEND behind their entity
    Object,     // of the OBJECTS section
    Other,      // of a section that is not understood
};

struct Object {
    const Group* groups = nullptr;
    uint32_t count = 0;
    ObjectKind kind = ObjectKind::Other;
    bool erased = false;
    bool hidden = false;       // stands for something that the file does not have; never written
    bool isOfProgram = false;  // of the OBJECTS section, and not from a file
    uint64_t handle = 0;       // 0: none
    ObjectId next = 0;         // behind it in its section, table, block or entity
    ObjectId previous = 0;
    // What it is a part of: the table, block (the space for an entity of the drawing), or main entity.
    ObjectId owner = 0;
    ObjectId firstPart = 0;
    ObjectId lastPart = 0;
    ObjectId end = 0;  // the ENDBLK or SEQEND behind its parts
};

// A part of the file, in file order: its name (HEADER, TABLES, ...) and the chain of its objects.
struct Section {
    std::string name;
    ObjectId first = 0;
    ObjectId last = 0;
};

enum class Change { Added, Modified, Erased };

class Drawing {
  public:
    explicit Drawing(DxfFormat format);
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    // The form in which it was opened; saving keeps it.
    const DxfFormat& format() const { return format_; }
    void setFormat(const DxfFormat& format);
    DrawingVersion version() const { return format_.version; }
    // The full path of the file; "" for a drawing that was never saved.
    const std::string& path() const { return path_; }
    void setPath(std::string path) { path_ = std::move(path); }
    // Changed since it was opened or last saved.
    bool modified() const { return modified_; }
    void setModified(bool modified) { modified_ = modified; }
    // Grows with every change: two equal numbers mean that nothing has changed between them.
    uint64_t changes() const { return changes_; }
    // The code page of texts in files before R2007, by $DWGCODEPAGE.
    int codePage() const;
    // A number that no other drawing of this process has had.
    long serial() const { return serial_; }

    // --- Objects --------------------------------------------------------------------------------------

    // One more than the highest id.
    ObjectId idLimit() const { return static_cast<ObjectId>(objects_.size()); }
    // There is such an object, and neither it nor what it is a part of is erased.
    bool exists(ObjectId id) const;
    const Object& object(ObjectId id) const { return objects_[id]; }
    Groups groups(ObjectId id) const { return {objects_[id].groups, objects_[id].count}; }
    // The text of group 0.
    std::string_view type(ObjectId id) const { return textOf(groups(id), 0); }
    // The object of a handle, or 0. An erased object is found too.
    ObjectId byHandle(uint64_t handle) const { return handles_.find(handle); }

    // Replaces the groups. Values must be in arena(). The handle stays as it was.
    void setGroups(ObjectId id, Groups groups);
    // The same for what is no content, as the view: it is not undone, and no reason to save.
    void setGroupsUnnoted(ObjectId id, Groups groups);
    // Erases an object with its parts, or brings it back.
    void setErased(ObjectId id, bool erased);
    GroupArena& arena() { return arena_; }
    const GroupArena& arena() const { return arena_; }
    uint64_t newHandle() { return nextHandle_++; }
    // The handle that newHandle gives next.
    uint64_t handleSeed() const { return nextHandle_; }

    // --- Order ----------------------------------------------------------------------------------------
    // Each gives 0 at the end and passes over what is erased.

    const std::vector<Section>& sections() const { return sections_; }
    // Main entities of model and paper space together, in drawing order.
    ObjectId firstEntity() const;
    ObjectId nextEntity(ObjectId entity) const;  // also within a block
    ObjectId lastEntity() const;
    // The parts of a table, block or entity, without the ENDBLK or SEQEND.
    ObjectId firstPart(ObjectId owner) const;
    ObjectId nextPart(ObjectId part) const;
    // The first main entity of a block or space, and the one behind it there.
    ObjectId firstEntityOf(ObjectId block) const;
    ObjectId nextEntityOf(ObjectId block, ObjectId entity) const;

    // --- Adding ---------------------------------------------------------------------------------------
    // Groups are taken as they are; entity_builder.h makes them fit the drawing.

    // At the end of a block, or of the drawing where the block is one of its spaces (group 67 must agree).
    ObjectId appendEntity(ObjectId block, Groups groups);
    // Behind the last subentity of an entity. A SEQEND becomes its end.
    ObjectId appendSubentity(ObjectId entity, Groups groups);
    // Adds the record of a table, which is made when it is missing.
    ObjectId appendRecord(std::string_view table, Groups groups);
    // A block definition from its BLOCK and ENDBLK; its record is added apart.
    ObjectId appendBlock(Groups begin, Groups end);
    // At the end of the OBJECTS section. It is written as soon as it has an owner (group 330), which a file
    // of R12 has no place for.
    ObjectId appendObject(Groups groups);
    // The dictionary that all named objects hang below, or 0; and the same made where it is missing, which is
    // no change of the drawing: it is written when it holds something.
    ObjectId namedObjects() const { return namedObjects_; }
    ObjectId makeNamedObjects();

    // --- Blocks and tables ----------------------------------------------------------------------------

    // The BLOCK of model space and of the active paper space.
    ObjectId modelSpace() const { return modelSpace_; }
    ObjectId paperSpace() const { return paperSpace_; }
    // The space that new entities go to and that selection by place looks at: $TILEMODE.
    ObjectId currentSpace() const;
    bool isSpace(ObjectId block) const { return block == modelSpace_ || block == paperSpace_; }
    // The BLOCK of a name; names compare without case. 0 when there is none.
    ObjectId block(std::string_view name) const;
    // The record of a block in BLOCK_RECORD, or the BLOCK itself where the drawing has no records; and back.
    ObjectId recordOfBlock(ObjectId block) const;
    ObjectId blockOfRecord(ObjectId record) const;
    // The first block, and the one behind it.
    ObjectId firstBlock() const;
    ObjectId nextBlock(ObjectId block) const;

    // The TABLE of a name such as LAYER, or 0.
    ObjectId table(std::string_view name) const;
    ObjectId record(std::string_view table, std::string_view name) const;
    // The symbol of a record or block: group 2.
    std::string_view symbol(ObjectId id) const { return textOf(groups(id), 2); }

    // --- Header variables -----------------------------------------------------------------------------
    // Names as in the file: "$CLAYER".

    // The groups of the value; none when there is no such variable.
    Groups headerVariable(std::string_view name) const;
    void setHeaderVariable(std::string_view name, Groups value);
    std::string headerText(std::string_view name, std::string_view absent = {}) const;
    double headerReal(std::string_view name, double absent = 0) const;
    int64_t headerInteger(std::string_view name, int64_t absent = 0) const;
    void setHeaderText(std::string_view name, int code, std::string_view value);
    void setHeaderReal(std::string_view name, int code, double value);
    void setHeaderInteger(std::string_view name, int code, int64_t value);
    void setHeaderPoint(std::string_view name, int code, double x, double y, double z);

    // --- Undo -----------------------------------------------------------------------------------------
    // Changes between begin and end are one step. Groups may be nested: the outermost counts. Changes
    // outside of any group form a step of their own up to the next group.

    void beginUndoGroup();
    void endUndoGroup();
    // Another number for each step: it grows where an outermost group begins or ends.
    long undoStep() const { return undoStep_; }
    // Groups that begin between these two end no step: all is part of the step that was open before.
    void holdUndoStep() { ++groupDepth_; }
    void releaseUndoStep() { --groupDepth_; }
    // Takes the last step back, or does it again. False when there is none, or within a group.
    bool undo();
    bool redo();
    bool canUndo() const { return !undo_.empty() || !step_.empty(); }
    bool canRedo() const { return !redo_.empty(); }
    // Forgets all steps: what is done so far cannot be undone.
    void clearUndo();

    // --- Observers ------------------------------------------------------------------------------------

    using Observer = std::function<void(ObjectId, Change)>;
    // Calls the observer after each change, until it is removed by the number that this gives.
    int addObserver(Observer observer);
    void removeObserver(int number);
    // Is called before each change, while the object is as it was; there is one at a time.
    void setBeforeChange(std::function<void(ObjectId)> beforeChange) {
        beforeChange_ = std::move(beforeChange);
    }
    // Tells the observers of a change: for an entity whose subentities were changed.
    void announce(ObjectId id, Change change);

  private:
    friend class DrawingLoader;

    struct State {
        ObjectId id;
        const Group* groups;
        uint32_t count;
        bool erased;
    };
    using Step = std::vector<State>;
    // Symbols of a table in upper case; rebuilt when a record changed.
    struct SymbolIndex {
        bool valid = false;
        std::unordered_map<std::string, ObjectId> ids;
    };

    ObjectId add(ObjectKind kind, Groups groups);
    void enterHandle(ObjectId id);
    void linkInto(Section& section, ObjectId id);
    void linkPart(ObjectId owner, ObjectId part);
    Section& section(std::string_view name);
    ObjectId spaceNamed(std::string_view name);
    void remember(ObjectId id);
    void added(ObjectId id);
    void forgetSymbols(ObjectId id);
    ObjectId firstLiving(ObjectId id) const;
    ObjectId firstLivingIn(ObjectId block, ObjectId id) const;
    const SymbolIndex& symbols(ObjectId table) const;
    const SymbolIndex& blockSymbols() const;
    void endStep();
    bool exchange(std::vector<Step>& from, std::vector<Step>& to);

    DxfFormat format_;
    std::string path_;
    bool modified_ = false;
    uint64_t changes_ = 0;
    long serial_;
    GroupArena arena_;
    std::vector<Object> objects_;  // the first stands for none
    std::vector<Section> sections_;
    HandleIndex handles_;
    uint64_t nextHandle_ = 1;
    ObjectId modelSpace_ = 0;
    ObjectId paperSpace_ = 0;
    ObjectId namedObjects_ = 0;
    std::unordered_map<std::string, ObjectId> headerVariables_;
    std::unordered_map<std::string, ObjectId> tables_;
    mutable std::unordered_map<ObjectId, SymbolIndex> symbolIndexes_;
    mutable SymbolIndex blockIndex_;

    std::vector<Step> undo_;
    std::vector<Step> redo_;
    Step step_;  // changes since the last finished step
    int groupDepth_ = 0;
    long undoStep_ = 0;
    std::vector<std::pair<int, Observer>> observers_;
    int lastObserver_ = 0;
    std::function<void(ObjectId)> beforeChange_;
};

// A block that asks for attributes when it is inserted: it has definitions that are not constant.
bool hasAttributeDefinitions(const Drawing& drawing, ObjectId block);
// A sheet other than the active one: it stands among the blocks of the file, but is part of the drawing.
bool isFurtherSheet(const Drawing& drawing, ObjectId block);

}  // namespace hostcad
