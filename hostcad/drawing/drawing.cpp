#include "hostcad/drawing/drawing.h"

#include <algorithm>

namespace hostcad {
namespace {

long lastSerial = 0;

}  // namespace

Drawing::Drawing(DxfFormat format) : format_(format), serial_(++lastSerial), objects_(1) {}

// --- Objects ------------------------------------------------------------------------------------------

bool Drawing::exists(ObjectId id) const {
    while (id && id < objects_.size()) {
        const Object& object = objects_[id];
        if (object.erased) return false;
        if (!object.owner) return true;
        id = object.owner;
    }
    return false;
}

ObjectId Drawing::add(ObjectKind kind, Groups groups) {
    auto id = static_cast<ObjectId>(objects_.size());
    Object object;
    Groups stored = arena_.store(groups);
    object.groups = stored.data();
    object.count = static_cast<uint32_t>(stored.size());
    object.kind = kind;
    objects_.push_back(object);
    enterHandle(id);
    return id;
}

void Drawing::enterHandle(ObjectId id) {
    Object& object = objects_[id];
    if (object.kind == ObjectKind::HeaderVariable || object.kind == ObjectKind::Class) return;
    // In a DIMSTYLE group 5 is a block's name.
    int code = object.kind == ObjectKind::Record && type(id) == "DIMSTYLE" ? 105 : 5;
    for (uint32_t i = 0; i < object.count && object.groups[i].code != 100; ++i) {
        const Group& group = object.groups[i];
        if (group.code != code || group.kind != ValueKind::Handle) continue;
        object.handle = group.handle;
        handles_.insert(group.handle, id);
        nextHandle_ = std::max(nextHandle_, group.handle + 1);
        return;
    }
}

void Drawing::setGroups(ObjectId id, Groups groups) {
    remember(id);
    setGroupsUnnoted(id, groups);
}

void Drawing::setGroupsUnnoted(ObjectId id, Groups groups) {
    Groups stored = arena_.store(groups);
    objects_[id].groups = stored.data();
    objects_[id].count = static_cast<uint32_t>(stored.size());
    forgetSymbols(id);
    announce(id, Change::Modified);
}

void Drawing::setErased(ObjectId id, bool erased) {
    if (objects_[id].erased == erased) return;
    remember(id);
    objects_[id].erased = erased;
    forgetSymbols(id);
    announce(id, erased ? Change::Erased : Change::Added);
}

// --- Order --------------------------------------------------------------------------------------------

Section& Drawing::section(std::string_view name) {
    auto found =
        std::find_if(sections_.begin(), sections_.end(), [&](const Section& s) { return s.name == name; });
    if (found != sections_.end()) return *found;
    // A section that is missing goes where it stands by custom.
    constexpr std::string_view kOrder[] = {"HEADER", "CLASSES", "TABLES", "BLOCKS", "ENTITIES", "OBJECTS"};
    auto rank = [&](std::string_view s) {
        return std::find(std::begin(kOrder), std::end(kOrder), s) - kOrder;
    };
    auto behind = std::find_if(sections_.begin(), sections_.end(),
                               [&](const Section& s) { return rank(s.name) > rank(name); });
    return *sections_.insert(behind, Section{std::string(name)});
}

void Drawing::linkInto(Section& section, ObjectId id) {
    objects_[id].previous = section.last;
    if (section.last)
        objects_[section.last].next = id;
    else
        section.first = id;
    section.last = id;
}

void Drawing::linkPart(ObjectId owner, ObjectId part) {
    Object& whole = objects_[owner];
    objects_[part].owner = owner;
    objects_[part].previous = whole.lastPart;
    if (whole.lastPart)
        objects_[whole.lastPart].next = part;
    else
        whole.firstPart = part;
    whole.lastPart = part;
}

ObjectId Drawing::firstLiving(ObjectId id) const {
    while (id && objects_[id].erased) id = objects_[id].next;
    return id;
}

ObjectId Drawing::firstLivingIn(ObjectId block, ObjectId id) const {
    while (id && (objects_[id].erased || objects_[id].owner != block)) id = objects_[id].next;
    return id;
}

ObjectId Drawing::firstEntity() const {
    for (const Section& s : sections_)
        if (s.name == "ENTITIES") return firstLiving(s.first);
    return 0;
}

ObjectId Drawing::nextEntity(ObjectId entity) const {
    return firstLiving(objects_[entity].next);
}

ObjectId Drawing::lastEntity() const {
    for (const Section& s : sections_) {
        if (s.name != "ENTITIES") continue;
        ObjectId id = s.last;
        while (id && objects_[id].erased) id = objects_[id].previous;
        return id;
    }
    return 0;
}

ObjectId Drawing::firstPart(ObjectId owner) const {
    return firstLiving(objects_[owner].firstPart);
}

ObjectId Drawing::nextPart(ObjectId part) const {
    return firstLiving(objects_[part].next);
}

ObjectId Drawing::firstEntityOf(ObjectId block) const {
    return isSpace(block) ? firstLivingIn(block, firstEntity()) : firstPart(block);
}

ObjectId Drawing::nextEntityOf(ObjectId block, ObjectId entity) const {
    return isSpace(block) ? firstLivingIn(block, objects_[entity].next) : nextPart(entity);
}

// --- Adding -------------------------------------------------------------------------------------------

void Drawing::added(ObjectId id) {
    step_.push_back({id, objects_[id].groups, objects_[id].count, true});
    redo_.clear();
    modified_ = true;
    ++changes_;
    forgetSymbols(id);
    announce(id, Change::Added);
}

ObjectId Drawing::appendEntity(ObjectId block, Groups groups) {
    ObjectId id = add(ObjectKind::Entity, groups);
    if (isSpace(block)) {
        objects_[id].owner = block;
        linkInto(section("ENTITIES"), id);
    } else {
        linkPart(block, id);
    }
    added(id);
    return id;
}

ObjectId Drawing::appendSubentity(ObjectId entity, Groups groups) {
    ObjectId id = add(ObjectKind::Subentity, groups);
    if (type(id) == "SEQEND") {
        objects_[id].owner = entity;
        objects_[entity].end = id;
    } else {
        linkPart(entity, id);
    }
    added(id);
    return id;
}

ObjectId Drawing::appendBlock(Groups begin, Groups end) {
    ObjectId id = add(ObjectKind::Block, begin);
    linkInto(section("BLOCKS"), id);
    ObjectId endId = add(ObjectKind::BlockEnd, end);
    objects_[endId].owner = id;
    objects_[id].end = endId;
    added(id);
    return id;
}

ObjectId Drawing::appendObject(Groups groups) {
    ObjectId id = add(ObjectKind::Object, groups);
    objects_[id].isOfProgram = true;
    linkInto(section("OBJECTS"), id);
    added(id);
    return id;
}

ObjectId Drawing::makeNamedObjects() {
    if (namedObjects_) return namedObjects_;
    std::vector<Group> groups{arena_.text(0, "DICTIONARY"), handleGroup(5, newHandle()), handleGroup(330, 0),
                              arena_.text(100, "AcDbDictionary"), integerGroup(281, 1)};
    namedObjects_ = add(ObjectKind::Object, groups);
    objects_[namedObjects_].isOfProgram = true;
    // Readers take the first dictionary for it.
    Section& objects = section("OBJECTS");
    objects_[namedObjects_].next = objects.first;
    if (objects.first)
        objects_[objects.first].previous = namedObjects_;
    else
        objects.last = namedObjects_;
    objects.first = namedObjects_;
    return namedObjects_;
}

// --- Observers ----------------------------------------------------------------------------------------

int Drawing::addObserver(Observer observer) {
    observers_.emplace_back(++lastObserver_, std::move(observer));
    return lastObserver_;
}

void Drawing::removeObserver(int number) {
    std::erase_if(observers_, [&](const auto& entry) { return entry.first == number; });
}

void Drawing::announce(ObjectId id, Change change) {
    for (const auto& [number, observer] : observers_) observer(id, change);
}

}  // namespace hostcad
