// The drawing itself: order, undo, header variables, observers.
#include "hostcad/drawing/drawing.h"

#include <gtest/gtest.h>

#include "hostcad/drawing/entity_builder.h"
#include "hostcad/drawing/selection_set.h"
#include "hostcad/dxf/blank_drawing.h"
#include "hostcad/dxf/dxf.h"

using namespace hostcad;

namespace {

std::string contentOf(const Drawing& drawing) {
    std::string content, error;
    EXPECT_TRUE(formatDxf(drawing, drawing.format(), content, error)) << error;
    return content;
}

ObjectId addPoint(Drawing& drawing, double x, std::string_view layer = "0") {
    GroupArena& arena = drawing.arena();
    std::vector<Group> given{arena.text(0, "POINT"), arena.text(8, layer), arena.point(10, x, 0, 0)}, built;
    EXPECT_TRUE(buildEntity(drawing, drawing.modelSpace(), given, built));
    return drawing.appendEntity(drawing.modelSpace(), built);
}

}  // namespace

TEST(Drawing, WholeGroupsOfChangesAreTakenBackAndDoneAgain) {
    auto drawing = blankDrawing();
    EXPECT_FALSE(drawing->modified());
    EXPECT_FALSE(drawing->undo());
    drawing->beginUndoGroup();
    ObjectId first = addPoint(*drawing, 1);
    drawing->endUndoGroup();
    // Handles are not given twice, so the seed tells states apart that are otherwise the same.
    auto withoutSeed = [&] {
        std::string content = contentOf(*drawing);
        size_t seed = content.find("$HANDSEED");
        return content.erase(seed, content.find("ENDSEC", seed) - seed);
    };
    std::string one = withoutSeed();

    drawing->beginUndoGroup();
    drawing->beginUndoGroup();  // a command within a command
    ObjectId second = addPoint(*drawing, 2, "NEW-LAYER");
    drawing->endUndoGroup();
    std::vector<Group> changed(drawing->groups(first).begin(), drawing->groups(first).end());
    putGroup(changed, integerGroup(62, 1));
    drawing->setGroups(first, changed);
    drawing->setErased(first, true);
    drawing->setHeaderText("$CLAYER", 8, "NEW-LAYER");
    drawing->setHeaderReal("$USERR1", 40, 1.5);
    addBlock(*drawing, "B", 0, 0, 0, 0);
    EXPECT_FALSE(drawing->undo()) << "within a group";
    drawing->endUndoGroup();
    std::string two = withoutSeed();

    ASSERT_TRUE(drawing->undo());
    EXPECT_EQ(withoutSeed(), one);
    EXPECT_FALSE(drawing->exists(second));
    EXPECT_EQ(drawing->record("LAYER", "NEW-LAYER"), kNoObject);
    EXPECT_EQ(drawing->block("B"), kNoObject);
    EXPECT_TRUE(drawing->headerVariable("$USERR1").empty());
    ASSERT_TRUE(drawing->redo());
    EXPECT_EQ(withoutSeed(), two);
    EXPECT_FALSE(drawing->redo());
    ASSERT_TRUE(drawing->undo());
    ASSERT_TRUE(drawing->undo());
    EXPECT_EQ(drawing->firstEntity(), kNoObject);
    EXPECT_FALSE(drawing->undo());

    // A new change ends what could be done again.
    addPoint(*drawing, 3);
    EXPECT_FALSE(drawing->redo());
    EXPECT_TRUE(drawing->undo()) << "changes outside of a group can be undone too";
    EXPECT_EQ(drawing->firstEntity(), kNoObject);
}

TEST(Drawing, EntitiesStayInOrderWhenSomeAreErased) {
    auto drawing = blankDrawing(DrawingVersion::R12);
    std::vector<ObjectId> ids;
    for (int i = 0; i < 5; ++i) ids.push_back(addPoint(*drawing, i));
    for (size_t i : {0u, 2u, 4u}) drawing->setErased(ids[i], true);
    EXPECT_EQ(drawing->firstEntity(), ids[1]);
    EXPECT_EQ(drawing->nextEntity(ids[1]), ids[3]);
    EXPECT_EQ(drawing->nextEntity(ids[2]), ids[3]);
    EXPECT_EQ(drawing->nextEntity(ids[3]), kNoObject);
    EXPECT_EQ(drawing->lastEntity(), ids[3]);
    drawing->setErased(ids[2], false);
    EXPECT_EQ(drawing->nextEntity(ids[1]), ids[2]);
}

TEST(Drawing, ObserversHearOfChangesUntilTheyAreRemoved) {
    auto drawing = blankDrawing();
    std::vector<Change> heard;
    int number = drawing->addObserver([&](ObjectId id, Change change) {
        if (drawing->object(id).kind == ObjectKind::Entity) heard.push_back(change);
    });
    ObjectId id = addPoint(*drawing, 1);
    std::vector<Group> groups(drawing->groups(id).begin(), drawing->groups(id).end());
    drawing->setGroups(id, groups);
    drawing->setErased(id, true);
    drawing->undo();
    EXPECT_EQ(heard, (std::vector{Change::Added, Change::Modified, Change::Erased, Change::Added,
                                  Change::Modified, Change::Erased}));
    drawing->removeObserver(number);
    addPoint(*drawing, 2);
    EXPECT_EQ(heard.size(), 6u);
}

TEST(Drawing, HeaderVariablesAreReadAndSetByName) {
    auto drawing = blankDrawing();
    EXPECT_EQ(drawing->headerText("$CLAYER"), "0");
    EXPECT_EQ(drawing->headerInteger("$TILEMODE"), 1);
    EXPECT_EQ(drawing->headerReal("$NOSUCH", 7), 7);
    drawing->setHeaderPoint("$EXTMIN", 10, 1, 2, 3);
    ASSERT_EQ(drawing->headerVariable("$EXTMIN").size(), 1u);
    EXPECT_EQ(drawing->headerVariable("$EXTMIN")[0].y(), 2);
    drawing->setHeaderInteger("$TILEMODE", 70, 0);
    EXPECT_EQ(drawing->currentSpace(), drawing->paperSpace());
}

TEST(Groups, CommonGroupsGoToTheirSubclass) {
    GroupArena arena;
    std::vector<Group> groups{arena.text(0, "ARC"),       handleGroup(5, 0x10),
                              handleGroup(330, 0x1F),     arena.text(100, "AcDbEntity"),
                              arena.text(8, "0"),         arena.text(100, "AcDbCircle"),
                              arena.point(10, 0, 0, 0),   realGroup(40, 1),
                              arena.text(100, "AcDbArc"), realGroup(50, 0),
                              realGroup(51, 90),          arena.text(1001, "APP"),
                              arena.text(1000, "x")};
    putGroup(groups, integerGroup(62, 1));
    putGroup(groups, realGroup(39, 2.5));
    putGroup(groups, realGroup(51, 45));
    std::vector<int> codes;
    for (const Group& group : groups) codes.push_back(group.code);
    EXPECT_EQ(codes, (std::vector{0, 5, 330, 100, 8, 62, 100, 10, 40, 39, 100, 50, 51, 1001, 1000}));
    EXPECT_EQ(realOf(groups, 51), 45);
    dropGroups(groups, 62);
    EXPECT_EQ(find(groups, 62), nullptr);
}

TEST(SelectionSet, WalksFastWhileMembersGo) {
    SelectionSet set;
    for (ObjectId id = 1; id <= 1000; ++id) EXPECT_TRUE(set.add(id));
    EXPECT_FALSE(set.add(7));
    for (size_t i = 0; i < set.size();)
        if (set.at(i) % 10 != 0)
            set.remove(set.at(i));
        else
            ++i;
    ASSERT_EQ(set.size(), 100u);
    for (size_t i = 0; i < 100; ++i) EXPECT_EQ(set.at(i), (i + 1) * 10);
    EXPECT_EQ(set.at(3), 40u);
    EXPECT_FALSE(set.remove(41));
}

TEST(Handles, AreReadAsTheyAreWritten) {
    EXPECT_EQ(handleText(0), "0");
    EXPECT_EQ(handleText(0x31A), "31A");
    EXPECT_EQ(handleText(~uint64_t{0}), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(readHandle("31a"), 0x31Au);
    EXPECT_EQ(readHandle("FFFFFFFFFFFFFFFF"), ~uint64_t{0});
    for (const char* none : {"", "x", "31A ", "-1", "10000000000000000"})
        EXPECT_FALSE(readHandle(none)) << none;
}
