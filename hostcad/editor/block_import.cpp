#include "hostcad/editor/block_import.h"

#include <algorithm>

#include "hostcad/drawing/entity_builder.h"

namespace hostcad {

namespace {

constexpr int kControlCode = 102;

class Importer {
  public:
    Importer(Drawing& target, const Drawing& source) : target_(target), source_(source) {}

    int run(const std::string& name) {
        Groups base = source_.headerVariable("$INSBASE");
        double x = base.empty() ? 0 : base[0].x(), y = base.empty() ? 0 : base[0].y(),
               z = base.empty() ? 0 : base[0].z();
        ObjectId block = target_.block(name);
        if (block)
            emptyBlock(block, x, y, z);
        else
            block = addBlock(target_, name, 0, x, y, z);
        copyEntities(source_.modelSpace(), block);
        return skipped_;
    }

  private:
    void emptyBlock(ObjectId block, double x, double y, double z) {
        for (ObjectId part = target_.firstPart(block); part; part = target_.nextPart(part))
            target_.setErased(part, true);
        Groups old = target_.groups(block);
        std::vector<Group> groups(old.begin(), old.end());
        putGroup(groups, target_.arena().point(10, x, y, z));
        target_.setGroups(block, groups);
    }

    void copyEntities(ObjectId from, ObjectId to) {
        for (ObjectId id = source_.firstEntityOf(from); id; id = source_.nextEntityOf(from, id))
            copyEntity(id, to);
        markAttributes(to);
    }

    // The flag of a block that says that it has attribute definitions.
    void markAttributes(ObjectId block) {
        constexpr int64_t kHasAttributes = 2;
        bool has = false;
        for (ObjectId id = target_.firstPart(block); id; id = target_.nextPart(id))
            has = has || target_.type(id) == "ATTDEF";
        Groups old = target_.groups(block);
        if (!has || (integerOf(old, 70) & kHasAttributes)) return;
        std::vector<Group> groups(old.begin(), old.end());
        putGroup(groups, integerGroup(70, integerOf(old, 70) | kHasAttributes));
        target_.setGroups(block, groups);
    }

    void copyEntity(ObjectId id, ObjectId block) {
        std::vector<Group> built;
        if (!prepare(id) || !buildEntity(target_, block, copied(source_.groups(id)), built)) {
            ++skipped_;
            return;
        }
        ObjectId made = target_.appendEntity(block, built);
        for (ObjectId part = source_.firstPart(id); part; part = source_.nextPart(part)) copyPart(part, made);
        if (ObjectId end = source_.object(id).end) copyPart(end, made);
    }

    void copyPart(ObjectId part, ObjectId owner) {
        std::vector<Group> built;
        prepare(part);
        if (buildEntity(target_, owner, copied(source_.groups(part)), built))
            target_.appendSubentity(owner, built);
    }

    // What the entity names. False for a reference to a block that is not to be had.
    bool prepare(ObjectId id) {
        Groups groups = source_.groups(id);
        copyRecord("LAYER", "AcDbLayerTableRecord", textOf(groups, 8));
        copyRecord("LTYPE", "AcDbLinetypeTableRecord", textOf(groups, 6));
        copyRecord("STYLE", "AcDbTextStyleTableRecord", textOf(groups, 7));
        for (const Group& group : xdataOf(groups))
            if (group.code == kApplicationCode) ensureApplication(target_, group.text());
        return source_.type(id) != "INSERT" || copyBlock(textOf(groups, 2));
    }

    void copyRecord(std::string_view table, std::string_view marker, std::string_view name) {
        if (name.empty() || target_.record(table, name)) return;
        ObjectId record = source_.record(table, name);
        if (!record) return;
        Groups groups = source_.groups(record);
        if (table == "LAYER") copyRecord("LTYPE", "AcDbLinetypeTableRecord", textOf(groups, 6));
        std::vector<Group> own;
        for (const Group& group : copied(groups))
            if (group.code != 0 && group.code != 100) own.push_back(group);
        target_.appendRecord(table, recordGroups(target_, table, marker, own));
    }

    bool copyBlock(std::string_view name) {
        if (target_.block(name)) return true;
        ObjectId block = source_.block(name);
        if (!block || source_.isSpace(block)) return false;
        Groups groups = source_.groups(block);
        const Group* base = find(groups, 10);
        ObjectId made = addBlock(target_, name, integerOf(groups, 70), base ? base->x() : 0,
                                 base ? base->y() : 0, base ? base->z() : 0);
        copyEntities(block, made);
        return true;
    }

    // The groups with their values in the target, without what points into the source: handles, owners,
    // reactors, dictionaries. The place in paper space is gone too.
    std::vector<Group> copied(Groups groups) {
        std::vector<Group> copies;
        for (size_t i = 0; i < groups.size(); ++i) {
            const Group& group = groups[i];
            if (group.code == kControlCode) {
                while (i < groups.size() && groups[i].text() != "}") ++i;
                continue;
            }
            bool isXDataHandle = group.code == 1005;
            if ((group.kind == ValueKind::Handle && !isXDataHandle) || group.code == 67 || group.code == 410)
                continue;
            copies.push_back(copied(group));
        }
        return copies;
    }

    Group copied(const Group& group) {
        GroupArena& arena = target_.arena();
        switch (group.kind) {
            case ValueKind::Text:
                return arena.text(group.code, group.text());
            case ValueKind::Binary:
                return arena.binary(group.code, group.chunk());
            case ValueKind::Point:
                return group.size == 2 ? arena.point(group.code, group.x(), group.y())
                                       : arena.point(group.code, group.x(), group.y(), group.z());
            default:
                return group;
        }
    }

    Drawing& target_;
    const Drawing& source_;
    int skipped_ = 0;
};

}  // namespace

int importAsBlock(Drawing& target, const Drawing& source, const std::string& name) {
    return Importer(target, source).run(name);
}

}  // namespace hostcad
