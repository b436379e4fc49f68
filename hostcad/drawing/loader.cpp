#include "hostcad/drawing/loader.h"

#include <algorithm>

#include "platform/text/text.h"

namespace hostcad {

DrawingLoader::DrawingLoader(DxfFormat format, size_t bytes) : drawing_(std::make_unique<Drawing>(format)) {
    // More than most files have. Memory that stays unused is only reserved.
    constexpr size_t kBytesOfObject = 128;
    drawing_->objects_.reserve(bytes / kBytesOfObject);
}

DrawingLoader::~DrawingLoader() = default;

GroupArena& DrawingLoader::arena() {
    return drawing_->arena_;
}

void DrawingLoader::beginSection(std::string_view name) {
    drawing_->sections_.push_back({std::string(name)});
    constexpr std::string_view kNames[] = {"HEADER", "CLASSES", "TABLES", "BLOCKS", "ENTITIES", "OBJECTS"};
    auto found = std::find(std::begin(kNames), std::end(kNames), name);
    place_ = static_cast<Place>(found - std::begin(kNames));
    table_ = block_ = complex_ = 0;
}

void DrawingLoader::add(Groups groups) {
    Drawing& d = *drawing_;
    std::string_view type = !groups.empty() && groups[0].code == 0 ? groups[0].text() : std::string_view();
    switch (place_) {
        case Place::Tables:
            return addToTables(groups, type);
        case Place::Blocks:
            return addToBlocks(groups, type);
        case Place::Entities:
            return addEntity(0, groups, type);
        default:
            break;
    }
    ObjectKind kind = place_ == Place::Header    ? ObjectKind::HeaderVariable
                      : place_ == Place::Classes ? ObjectKind::Class
                      : place_ == Place::Objects ? ObjectKind::Object
                                                 : ObjectKind::Other;
    ObjectId id = d.add(kind, groups);
    d.linkInto(d.sections_.back(), id);
    if (kind == ObjectKind::HeaderVariable) d.headerVariables_.emplace(groups[0].text(), id);
    if (kind == ObjectKind::Object && type == "DICTIONARY" && !d.namedObjects_) d.namedObjects_ = id;
}

void DrawingLoader::addToTables(Groups groups, std::string_view type) {
    Drawing& d = *drawing_;
    if (type == "TABLE") {
        table_ = d.add(ObjectKind::Table, groups);
        d.linkInto(d.sections_.back(), table_);
        d.tables_.emplace(text::upper(textOf(groups, 2)), table_);
    } else if (type == "ENDTAB" && table_) {
        if (groups.size() > 1) {
            d.objects_[table_].end = d.add(ObjectKind::Other, groups);
            d.objects_[d.objects_[table_].end].owner = table_;
        }
        table_ = 0;
    } else if (table_) {
        d.linkPart(table_, d.add(ObjectKind::Record, groups));
    } else {
        d.linkInto(d.sections_.back(), d.add(ObjectKind::Other, groups));
    }
}

void DrawingLoader::addToBlocks(Groups groups, std::string_view type) {
    Drawing& d = *drawing_;
    if (type == "BLOCK") {
        block_ = d.add(ObjectKind::Block, groups);
        complex_ = 0;
        d.linkInto(d.sections_.back(), block_);
    } else if (type == "ENDBLK" && block_) {
        ObjectId end = d.add(ObjectKind::BlockEnd, groups);
        d.objects_[end].owner = block_;
        d.objects_[block_].end = end;
        block_ = complex_ = 0;
    } else if (block_) {
        addEntity(block_, groups, type);
    } else {
        d.linkInto(d.sections_.back(), d.add(ObjectKind::Other, groups));
    }
}

void DrawingLoader::addEntity(ObjectId block, Groups groups, std::string_view type) {
    Drawing& d = *drawing_;
    if (complex_ && type == "SEQEND") {
        ObjectId end = d.add(ObjectKind::Subentity, groups);
        d.objects_[end].owner = complex_;
        d.objects_[complex_].end = end;
        complex_ = 0;
        return;
    }
    if (complex_ && (type == "VERTEX" || type == "ATTRIB")) {
        d.linkPart(complex_, d.add(ObjectKind::Subentity, groups));
        return;
    }
    ObjectId id = d.add(ObjectKind::Entity, groups);
    complex_ = type == "INSERT" || type == "POLYLINE" ? id : 0;
    if (block)
        d.linkPart(block, id);
    else
        d.linkInto(d.sections_.back(), id);
}

std::unique_ptr<Drawing> DrawingLoader::finish(DxfFormat format) {
    drawing_->format_ = format;
    // What old files have in such a section is carried along, and is not understood.
    if (!hasSubclasses(format.version)) drawing_->namedObjects_ = kNoObject;
    assignSpaces();
    assignHandles();
    return std::move(drawing_);
}

// Finds the blocks of model and paper space, or puts up hidden ones, and gives the drawing's entities to
// them.
void DrawingLoader::assignSpaces() {
    Drawing& d = *drawing_;
    d.modelSpace_ = d.spaceNamed("*Model_Space");
    d.paperSpace_ = d.spaceNamed("*Paper_Space");
    for (const Section& section : d.sections_) {
        if (section.name != "ENTITIES") continue;
        for (ObjectId id = section.first; id; id = d.objects_[id].next)
            d.objects_[id].owner = integerOf(d.groups(id), 67) == 1 ? d.paperSpace_ : d.modelSpace_;
    }
}

// Old drawings may have entities without handles, but the host finds everything by handle.
void DrawingLoader::assignHandles() {
    Drawing& d = *drawing_;
    Groups seed = d.headerVariable("$HANDSEED");
    if (!seed.empty() && seed[0].kind == ValueKind::Handle)
        d.nextHandle_ = std::max(d.nextHandle_, seed[0].handle);
    bool assigned = false;
    std::vector<Group> groups;
    for (ObjectId id = 1; id < d.objects_.size(); ++id) {
        Object& object = d.objects_[id];
        bool wantsHandle = object.kind == ObjectKind::Entity || object.kind == ObjectKind::Subentity;
        if (!wantsHandle || object.handle || object.hidden) continue;
        groups.assign(object.groups, object.groups + object.count);
        groups.insert(groups.begin() + 1, handleGroup(5, d.newHandle()));
        Groups stored = d.arena_.store(groups);
        object.groups = stored.data();
        object.count = static_cast<uint32_t>(stored.size());
        d.enterHandle(id);
        assigned = true;
    }
    if (assigned && d.headerInteger("$HANDLING", 1) == 0) d.setHeaderInteger("$HANDLING", 70, 1);
    d.clearUndo();
    d.modified_ = false;
}

}  // namespace hostcad
