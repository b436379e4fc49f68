// Entities, tables and selections through the C interface of the host.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>

#include "hostcad/ads/entity_maker.h"
#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/dxf/blank_drawing.h"
#include "hostcad/dxf/dxf.h"
#include "hostcad/editor/host.h"
#include "tests/hostcad/independent_reader.h"
#include "tests/hostcad/lists.h"

using namespace hostcad;

namespace {

const char* const kSurvey = NORVANE_SHARED_DATA "/survey.dxf";

// Tests run on a blank drawing of either form, or on the survey.
class Entities : public testing::TestWithParam<DrawingVersion> {
  protected:
    void SetUp() override { setCurrentDrawing(blankDrawing(GetParam())); }

    static bool openSurvey() {
        std::string error;
        auto drawing = readDxf(kSurvey, error);
        if (!drawing) return false;
        setCurrentDrawing(std::move(drawing));
        return true;
    }

    // Saves the drawing and gives what an independent program finds wrong with it.
    std::string audit() {
        if (!ezdxfIsInstalled()) return "";
        std::string error, path = folder_ / "saved.dxf";
        if (!writeDxf(currentDrawing(), path, currentDrawing().format(), error)) return error;
        return auditOf(folder_, path);
    }

    TemporaryFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Versions, Entities, testing::Values(DrawingVersion::R12, DrawingVersion::R2000),
                         [](const auto& version) { return versionName(version.param); });

// Somebody at the command line, who gives the answers in turn.
class User : public Output, public InputSource {
  public:
    void write(std::string_view) override {}
    Input next(const Prompt&) override {
        if (answers.empty()) return Input::end();
        Input answer = std::move(answers.front());
        answers.pop_front();
        return answer;
    }
    std::deque<Input> answers;
};

const ads_point kOrigin = {0, 0, 0};
const ads_point kCorner = {10, 5, 0};

bool makeLine(const ads_point from = kOrigin, const ads_point to = kCorner, const char* layer = "0") {
    return make(acutBuildList(RTDXF0, "LINE", 8, layer, 10, from, 11, to, 0));
}

List last(const resbuf* applications = nullptr) {
    ads_name entity;
    return List(acdbEntLast(entity) == RTNORM ? acdbEntGetX(entity, applications) : nullptr);
}

long lengthOf(const ads_name set) {
    long length = -1;
    acedSSLength(set, &length);
    return length;
}

// The number of entities that a selection finds.
long selected(const char* mode, const resbuf* filter, const void* first = nullptr,
              const void* second = nullptr) {
    ads_name set;
    if (acedSSGet(mode, first, second, filter, set) != RTNORM) return 0;
    long length = lengthOf(set);
    acedSSFree(set);
    return length;
}

}  // namespace

// --- Making -------------------------------------------------------------------------------------------

TEST_P(Entities, ListsBeginWithNameTypeOwnerAndHandle) {
    ASSERT_TRUE(makeLine());
    List line = last();
    if (GetParam() == DrawingVersion::R12) {
        EXPECT_EQ(line.codes(), (std::vector{-1, 0, 5, 8, 10, 11}));
    } else {
        EXPECT_EQ(line.codes(), (std::vector{-1, 0, 330, 5, 100, 8, 100, 10, 11}));
        ads_name modelSpace;
        ASSERT_EQ(acdbTblObjName("BLOCK", "*Model_Space", modelSpace), RTNORM);
        EXPECT_TRUE(ads_name_equal(line.find(330)->resval.rlname, modelSpace));
    }
    ads_name byHandle;
    ASSERT_EQ(acdbHandEnt(line.text(5).c_str(), byHandle), RTNORM);
    EXPECT_TRUE(ads_name_equal(byHandle, line.find(-1)->resval.rlname));
}

TEST_P(Entities, EntitiesOfAllKindsAreMadeWithoutMarkersAndPassTheAudit) {
    bool later = GetParam() != DrawingVersion::R12;
    const ads_point axis = {3, 0, 0};
    ASSERT_TRUE(makeLine(kOrigin, kCorner, "NEW-LAYER"));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "POINT", 10, kCorner, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "CIRCLE", 10, kCorner, 40, 2.5, 62, 1, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "ARC", 10, kCorner, 40, 2.5, 50, 10.0, 51, 80.0, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "TEXT", 10, kCorner, 40, 2.5, 1, "left", 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "TEXT", 10, kCorner, 40, 2.5, 1, "middle", 72, 1, 73, 2, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "SOLID", 10, kOrigin, 11, kCorner, 12, axis, 13, axis, 0)));
    for (int flags : {1, 8, 9}) {
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "POLYLINE", 70, flags, 0)));
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "VERTEX", 10, kOrigin, 0)));
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "VERTEX", 10, kCorner, 0)));
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "SEQEND", 0)));
    }
    EXPECT_EQ(make(acutBuildList(RTDXF0, "LWPOLYLINE", 10, kOrigin, 10, kCorner, 42, 0.5, 70, 1, 0)), later);
    EXPECT_EQ(make(acutBuildList(RTDXF0, "MTEXT", 10, kOrigin, 40, 2.0, 1, "a\\Pb", 0)), later);
    EXPECT_EQ(make(acutBuildList(RTDXF0, "ELLIPSE", 10, kOrigin, 11, axis, 40, 0.5, 0)), later);
    EXPECT_EQ(selected("X", nullptr), later ? 13 : 10);
    EXPECT_TRUE(List(acdbTblSearch("LAYER", "new-layer", 0)));
    EXPECT_EQ(audit(), "");
}

TEST_P(Entities, WhatCannotBeMadeIsRefused) {
    EXPECT_FALSE(make(acutBuildList(RTDXF0, "LINE", 10, kOrigin, 0))) << "no end";
    EXPECT_FALSE(make(acutBuildList(RTDXF0, "INSERT", 2, "MISSING", 10, kOrigin, 0)));
    EXPECT_FALSE(make(acutBuildList(RTDXF0, "LINE", 6, "NO-SUCH-TYPE", 10, kOrigin, 11, kCorner, 0)));
    EXPECT_FALSE(make(acutBuildList(RTDXF0, "LINE", 8, "bad*name", 10, kOrigin, 11, kCorner, 0)));
    EXPECT_FALSE(make(acutBuildList(RTDXF0, "VERTEX", 10, kOrigin, 0))) << "no polyline begun";
    EXPECT_FALSE(make(acutBuildList(RTDXF0, "WIDGET", 10, kOrigin, 0)));
    EXPECT_EQ(acdbEntMake(nullptr), RTERROR);
    EXPECT_EQ(selected("X", nullptr), 0);
}

TEST_P(Entities, APolylineThatIsNeverFinishedNeverShows) {
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "POLYLINE", 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "VERTEX", 10, kOrigin, 0)));
    ads_name entity;
    EXPECT_EQ(acdbEntLast(entity), RTERROR);
    ASSERT_TRUE(makeLine());
    EXPECT_FALSE(make(acutBuildList(RTDXF0, "SEQEND", 0)));
    EXPECT_EQ(selected("X", nullptr), 1);
    EXPECT_EQ(audit(), "");
}

TEST_P(Entities, BlocksAreDefinedAndInsertedWithAttributes) {
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "BLOCK", 2, "POLE", 70, 2, 10, kOrigin, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "CIRCLE", 10, kOrigin, 40, 1.0, 0)));
    ASSERT_TRUE(
        make(acutBuildList(RTDXF0, "ATTDEF", 10, kOrigin, 40, 1.0, 1, "", 3, "Number?", 2, "PT#", 70, 0, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "ENDBLK", 0)));
    EXPECT_EQ(lastBlockMade(), "POLE");

    ASSERT_TRUE(make(acutBuildList(RTDXF0, "INSERT", 2, "POLE", 66, 1, 10, kCorner, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "ATTRIB", 10, kCorner, 40, 1.0, 1, "17", 2, "PT#", 70, 0, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "SEQEND", 0)));
    ASSERT_TRUE(makeLine());

    // The walk passes through the subentities, and the block is not part of it.
    std::vector<std::string> types;
    ads_name entity, next;
    for (int status = acdbEntNext(nullptr, entity); status == RTNORM;
         status = acdbEntNext(entity, next), ads_name_set(next, entity))
        types.push_back(List(acdbEntGet(entity)).text(0));
    EXPECT_EQ(types, (std::vector<std::string>{"INSERT", "ATTRIB", "SEQEND", "LINE"}));

    List block(acdbTblSearch("BLOCK", "pole", 0));
    EXPECT_EQ(block.codes(), (std::vector{0, 2, 70, 10, -2}));
    ads_name_set(block.find(-2)->resval.rlname, entity);
    EXPECT_EQ(List(acdbEntGet(entity)).text(0), "CIRCLE");
    ASSERT_EQ(acdbEntNext(entity, next), RTNORM);
    EXPECT_EQ(List(acdbEntGet(next)).text(2), "PT#");
    EXPECT_EQ(acdbEntNext(next, entity), RTERROR);
    EXPECT_EQ(audit(), "");
}

TEST_P(Entities, AnonymousBlocksAreNumberedAndRedefinedBlocksChange) {
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "BLOCK", 2, "*U", 70, 1, 10, kOrigin, 0)));
        ASSERT_TRUE(makeLine());
        ASSERT_TRUE(make(acutBuildList(RTDXF0, "ENDBLK", 0)));
    }
    EXPECT_EQ(lastBlockMade(), "*U2");
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "BLOCK", 2, "*U1", 70, 1, 10, kCorner, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "POINT", 10, kOrigin, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "ENDBLK", 0)));
    List block(acdbTblSearch("BLOCK", "*U1", 0));
    EXPECT_EQ(block.find(10)->resval.rpoint[0], kCorner[0]);
    EXPECT_EQ(List(acdbEntGet(block.find(-2)->resval.rlname)).text(0), "POINT");
    EXPECT_EQ(audit(), "");
}

// --- Changing -----------------------------------------------------------------------------------------

TEST_P(Entities, ChangedListsAreTakenBackWholeOrInPart) {
    ASSERT_TRUE(makeLine());
    List line = last();
    std::vector<int> codes = line.codes();
    std::string handle = line.text(5);
    line.find(11)->resval.rpoint[0] = 77.25;
    ASSERT_EQ(acdbEntMod(line.get()), RTNORM);
    EXPECT_EQ(last().find(11)->resval.rpoint[0], 77.25);
    EXPECT_EQ(last().codes(), codes);

    // Only the name and a colour: the colour is new, all else stays.
    long name[2];
    ads_name_set(line.find(-1)->resval.rlname, name);
    ASSERT_EQ(acdbEntMod(List(acutBuildList(-1, name, 62, 3, 0)).get()), RTNORM);
    List colored = last();
    EXPECT_EQ(colored.find(62)->resval.rint, 3);
    EXPECT_EQ(colored.find(11)->resval.rpoint[0], 77.25);

    // A colour at the end of the list counts, and goes where it belongs.
    List appended = last();
    appended.add(acutBuildList(62, 5, 0));
    ASSERT_EQ(acdbEntMod(appended.get()), RTNORM);
    EXPECT_EQ(last().count(62), 1);
    EXPECT_EQ(last().find(62)->resval.rint, 5);
    EXPECT_EQ(last().text(5), handle);
    EXPECT_EQ(audit(), "");
}

TEST_P(Entities, WrongListsChangeNothing) {
    ASSERT_TRUE(makeLine());
    List line = last();
    line.setText(0, "CIRCLE");
    EXPECT_EQ(acdbEntMod(line.get()), RTERROR);
    List nameless(acutBuildList(RTDXF0, "LINE", 62, 1, 0));
    EXPECT_EQ(acdbEntMod(nameless.get()), RTERROR);
    EXPECT_EQ(acdbEntMod(nullptr), RTERROR);
    EXPECT_EQ(last().text(0), "LINE");
    EXPECT_EQ(last().count(62), 0);
}

TEST_P(Entities, VerticesOfLightPolylinesComeAndGo) {
    if (GetParam() == DrawingVersion::R12) GTEST_SKIP() << "R12 has no light polylines";
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "LWPOLYLINE", 10, kOrigin, 42, 1.0, 10, kCorner, 0)));
    List polyline = last();
    EXPECT_EQ(polyline.find(90)->resval.rlong, 2);
    polyline.add(acutBuildList(10, kOrigin, 10, kCorner, 0));
    ASSERT_EQ(acdbEntMod(polyline.get()), RTNORM);
    EXPECT_EQ(last().find(90)->resval.rlong, 4);
    EXPECT_EQ(last().count(10), 4);
    EXPECT_EQ(audit(), "");
}

TEST_P(Entities, ErasedEntitiesComeBackWithAllTheyHad) {
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "POLYLINE", 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "VERTEX", 10, kOrigin, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "SEQEND", 0)));
    ads_name polyline, vertex, nothing;
    ASSERT_EQ(acdbEntLast(polyline), RTNORM);
    ASSERT_EQ(acdbEntNext(polyline, vertex), RTNORM);
    ASSERT_EQ(acdbEntDel(polyline), RTNORM);
    EXPECT_EQ(acdbEntGet(polyline), nullptr);
    EXPECT_EQ(acdbEntGet(vertex), nullptr);
    EXPECT_EQ(acdbEntNext(nullptr, nothing), RTERROR);
    ASSERT_EQ(acdbEntDel(polyline), RTNORM);
    EXPECT_EQ(List(acdbEntGet(vertex)).text(0), "VERTEX");
    EXPECT_EQ(acdbEntDel(vertex), RTERROR) << "a part is not erased alone";
}

TEST_P(Entities, NamesOfAClosedDrawingNameNothing) {
    ASSERT_TRUE(makeLine());
    ads_name line, set;
    ASSERT_EQ(acdbEntLast(line), RTNORM);
    ASSERT_EQ(acedSSAdd(line, nullptr, set), RTNORM);
    setCurrentDrawing(blankDrawing(GetParam()));
    ASSERT_TRUE(makeLine());
    EXPECT_EQ(acdbEntGet(line), nullptr);
    EXPECT_EQ(acdbEntDel(line), RTERROR);
    EXPECT_EQ(lengthOf(set), -1);
}

// --- Extended data ------------------------------------------------------------------------------------

TEST_P(Entities, ExtendedDataIsKeptByApplication) {
    ASSERT_TRUE(makeLine());
    ads_name line;
    acdbEntLast(line);
    auto put = [&](resbuf* xdata) {
        return acdbEntMod(List(acutBuildList(-1, line, -3, 0)).add(xdata).get());
    };
    EXPECT_EQ(put(acutBuildList(1001, "FIRST", 1000, "a", 0)), RTERROR) << "not registered";
    ASSERT_EQ(acdbRegApp("FIRST"), RTNORM);
    ASSERT_EQ(acdbRegApp("SECOND"), RTNORM);
    ASSERT_EQ(acdbRegApp("second"), RTNORM) << "registered already";
    ASSERT_EQ(put(acutBuildList(1001, "FIRST", 1002, "{", 1000, "a", 1070, 7, 1002, "}", 0)), RTNORM);
    ASSERT_EQ(put(acutBuildList(1001, "SECOND", 1000, "b", 1040, 1.5, 0)), RTNORM);

    EXPECT_EQ(last().count(-3), 0);
    EXPECT_EQ(last(applications("THIRD").get()).count(-3), 0);
    List first = last(applications("first").get());
    EXPECT_EQ(first.count(-3), 1);
    EXPECT_EQ(first.count(1001), 1);
    EXPECT_EQ(first.text(1000), "a");
    EXPECT_EQ(last(applications("*").get()).count(1001), 2);

    // One application's data changes, then goes; the other's stays.
    first.setText(1000, "longer than before");
    ASSERT_EQ(acdbEntMod(first.get()), RTNORM);
    EXPECT_EQ(last(applications("FIRST").get()).text(1000), "longer than before");
    ASSERT_EQ(put(acutBuildList(1001, "FIRST", 0)), RTNORM);
    List rest = last(applications("*").get());
    EXPECT_EQ(rest.count(1001), 1);
    EXPECT_EQ(rest.text(1000), "b");
    EXPECT_EQ(audit(), "");
}

TEST_P(Entities, ExtendedDataHasLimits) {
    ASSERT_TRUE(makeLine());
    ads_name line;
    acdbEntLast(line);
    ASSERT_EQ(acdbRegApp("APP"), RTNORM);
    auto put = [&](const std::string& text, int times) {
        List list(acutBuildList(-1, line, -3, 1001, "APP", 0));
        for (int i = 0; i < times; ++i) list.add(acutBuildList(1000, text.c_str(), 0));
        return acdbEntMod(list.get());
    };
    EXPECT_EQ(put(std::string(255, 'x'), 1), RTNORM);
    EXPECT_EQ(put(std::string(256, 'x'), 1), RTERROR);
    // The limit is one of bytes in the file: an accented letter is one byte in the code page.
    std::string accented;
    for (int i = 0; i < 255; ++i) accented += "\xC3\xA9";
    EXPECT_EQ(put(accented, 1), RTNORM);
    EXPECT_EQ(put(std::string(250, 'x'), 64), RTNORM);
    EXPECT_EQ(put(std::string(250, 'x'), 65), RTERROR);
    EXPECT_EQ(last(applications("APP").get()).count(1000), 64) << "what was there stays";
    auto shape = [&](resbuf* xdata) {
        return acdbEntMod(List(acutBuildList(-1, line, -3, 0)).add(xdata).get());
    };
    EXPECT_EQ(shape(acutBuildList(1001, "APP", 1002, "{", 1000, "open", 0)), RTERROR);
    EXPECT_EQ(shape(acutBuildList(1000, "before the name", 1001, "APP", 0)), RTERROR);
}

// --- Tables -------------------------------------------------------------------------------------------

TEST_P(Entities, TablesAreWalkedAndSearched) {
    ASSERT_TRUE(makeLine(kOrigin, kCorner, "B"));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "LAYER", 2, "A", 70, 1, 62, -3, 0)));
    std::vector<std::string> names;
    for (List layer(acdbTblNext("LAYER", 1)); layer; layer = List(acdbTblNext("layer", 0))) {
        EXPECT_EQ(layer.text(0), "LAYER");
        EXPECT_EQ(layer.count(100) + layer.count(5) + layer.count(330), 0);
        names.push_back(layer.text(2));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"0", "B", "A"}));
    List a(acdbTblSearch("LAYER", "a", 0));
    EXPECT_EQ(a.find(70)->resval.rint, 1);
    EXPECT_EQ(a.find(62)->resval.rint, -3);
    List b(acdbTblSearch("LAYER", "B", 1));
    EXPECT_EQ(List(acdbTblNext("LAYER", 0)).text(2), "A");
    EXPECT_EQ(acdbTblSearch("LAYER", "missing", 0), nullptr);
    EXPECT_EQ(acdbTblNext("BLOCK", 1), nullptr) << "the spaces are no blocks";
    EXPECT_EQ(acdbTblNext("NO-SUCH-TABLE", 1), nullptr);
    EXPECT_EQ(audit(), "");
}

TEST(SymbolNames, FollowTheHostsRule) {
    for (const char* good : {"0", "LAYER 1", "A-B_C$",
                             "\xC3\x9C"
                             "BER"})
        EXPECT_EQ(acdbSNValid(good, 0), RTNORM) << good;
    for (const char* bad : {"", "a<b", "a>b", "a/b", "a\\b", "a\"b", "a:b", "a;b", "a?b", "a*b", "a|b", "a,b",
                            "a=b", "a`b", "a\nb"})
        EXPECT_EQ(acdbSNValid(bad, 0), RTERROR) << bad;
    EXPECT_EQ(acdbSNValid("xref|layer", 1), RTNORM);
    EXPECT_EQ(acdbSNValid(std::string(255, 'x').c_str(), 0), RTNORM);
    EXPECT_EQ(acdbSNValid(std::string(256, 'x').c_str(), 0), RTERROR);
}

// --- Selections ---------------------------------------------------------------------------------------

TEST_P(Entities, FiltersCombine) {
    ASSERT_TRUE(makeLine(kOrigin, kCorner, "ROAD-EDGE"));
    ASSERT_TRUE(makeLine(kOrigin, kCorner, "road-center"));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "CIRCLE", 8, "ROAD-EDGE", 10, kCorner, 40, 2.0, 62, 1, 0)));
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "TEXT", 8, "0", 10, kCorner, 40, 4.0, 1, "Lot", 70, 5, 0)));
    auto count = [](resbuf* filter) { return selected("X", List(filter).get()); };
    EXPECT_EQ(count(nullptr), 4);
    EXPECT_EQ(count(acutBuildList(RTDXF0, "line", 0)), 2);
    EXPECT_EQ(count(acutBuildList(RTDXF0, "LINE,CIRCLE", 8, "ROAD-E*", 0)), 2);
    EXPECT_EQ(count(acutBuildList(RTDXF0, "~LINE", 0)), 2);
    EXPECT_EQ(count(acutBuildList(1, "lot", 0)), 0) << "case counts in what a text says";
    EXPECT_EQ(count(acutBuildList(-4, "<OR", RTDXF0, "CIRCLE", RTDXF0, "TEXT", -4, "OR>", 0)), 2);
    EXPECT_EQ(count(acutBuildList(-4, "<not", RTDXF0, "CIRCLE", -4, "not>", 8, "ROAD*", 0)), 2);
    EXPECT_EQ(count(acutBuildList(-4, "<xor", RTDXF0, "LINE", 8, "*EDGE", -4, "xor>", 0)), 2);
    EXPECT_EQ(count(acutBuildList(-4, ">=", 40, 2.0, 0)), 2);
    EXPECT_EQ(count(acutBuildList(-4, ">", 40, 2.0, 0)), 1);
    EXPECT_EQ(count(acutBuildList(-4, "&", 70, 4, 0)), 1);
    const ads_point bound = {5, 99, 0};
    EXPECT_EQ(count(acutBuildList(-4, ">,<,*", 10, bound, 0)), 2);
    EXPECT_EQ(count(acutBuildList(62, 256, 0)), 3) << "by layer when nothing is said";
    EXPECT_EQ(count(acutBuildList(6, "BYLAYER", 410, "Model", 67, 0, 0)), 4);

    ads_name set;
    for (resbuf* bad : {acutBuildList(-4, "<and", RTDXF0, "LINE", 0), acutBuildList(-4, "and>", 0),
                        acutBuildList(-4, "<not", -4, "not>", 0), acutBuildList(-4, "=~", 40, 1.0, 0)})
        EXPECT_EQ(acedSSGet("X", nullptr, nullptr, List(bad).get(), set), RTERROR);
}

TEST_P(Entities, FiltersFindExtendedData) {
    ASSERT_EQ(acdbRegApp("MY_APP"), RTNORM);
    ASSERT_TRUE(makeLine());
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "POINT", 10, kOrigin, -3, 1001, "MY_APP", 1000, "x", 0)));
    EXPECT_EQ(selected("X", List(acutBuildList(-3, 1001, "my_*", 0)).get()), 1);
    EXPECT_EQ(selected("X", List(acutBuildList(RTDXF0, "LINE", -3, 1001, "MY_APP", 0)).get()), 0);
}

TEST_P(Entities, SetsHoldEachEntityOnceAndInOrder) {
    for (int i = 0; i < 5; ++i) ASSERT_TRUE(makeLine());
    ads_name set, entity, sameSet;
    EXPECT_EQ(acedSSGet("X", nullptr, nullptr, List(acutBuildList(RTDXF0, "ARC", 0)).get(), set), RTERROR);
    ASSERT_EQ(acedSSGet("X", nullptr, nullptr, nullptr, set), RTNORM);
    ASSERT_EQ(acedSSName(set, 2, entity), RTNORM);
    ASSERT_EQ(acedSSAdd(entity, set, sameSet), RTNORM);
    EXPECT_EQ(lengthOf(set), 5);
    // Every other member goes while the set is walked.
    std::vector<long> left;
    for (long i = 0, n = 0; acedSSName(set, i, entity) == RTNORM; ++i, ++n)
        if (n % 2 == 0) {
            EXPECT_EQ(acedSSDel(entity, set), RTNORM);
            EXPECT_EQ(acedSSMemb(entity, set), RTERROR);
            --i;
        } else {
            left.push_back(entity[0]);
        }
    EXPECT_EQ(lengthOf(set), 2);
    for (long i = 1; i >= 0; --i) {
        ASSERT_EQ(acedSSName(set, i, entity), RTNORM);
        EXPECT_EQ(entity[0], left[static_cast<size_t>(i)]);
    }
    EXPECT_EQ(acedSSName(set, 2, entity), RTERROR);
    EXPECT_EQ(acedSSName(set, -1, entity), RTERROR);
    EXPECT_EQ(acedSSFree(set), RTNORM);
    EXPECT_EQ(acedSSFree(set), RTERROR);
}

TEST_P(Entities, LastPreviousAndTheUsersSelection) {
    ASSERT_TRUE(makeLine());
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "POINT", 10, kOrigin, 0)));
    EXPECT_EQ(selected("L", List(acutBuildList(RTDXF0, "POINT", 0)).get()), 1);
    EXPECT_EQ(selected("X", nullptr), 2);
    EXPECT_EQ(selected("P", nullptr), 2);
    ads_name set;
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTERROR);  // there is nobody to select
    User user;
    NoView view;
    Host host(user, user, view);
    setCurrentDrawing(blankDrawing(GetParam()));
    ASSERT_TRUE(makeLine());
    ASSERT_TRUE(make(acutBuildList(RTDXF0, "POINT", 10, kOrigin, 0)));
    user.answers = {Input::ofText("ALL"), Input::enter()};
    EXPECT_EQ(selected(nullptr, List(acutBuildList(RTDXF0, "LINE", 0)).get()), 1);
    user.answers = {Input::cancel()};
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTCAN);
}

// --- A real drawing -----------------------------------------------------------------------------------

class SurveyEntities : public Entities {
  protected:
    void SetUp() override {
        if (!openSurvey()) GTEST_SKIP() << "no survey drawing here";
    }
};

INSTANTIATE_TEST_SUITE_P(Survey, SurveyEntities, testing::Values(DrawingVersion::R2000));

TEST_P(SurveyEntities, IsReadAsItsMakerCountsIt) {
    EXPECT_EQ(
        selected("X", List(acutBuildList(-4, "<and", RTDXF0, "INSERT", 2, "SRVPNO1", -4, "and>", 0)).get()),
        246);
    EXPECT_EQ(
        selected(
            "X",
            List(acutBuildList(-4, "<or", RTDXF0, "POLYLINE", RTDXF0, "LWPOLYLINE", -4, "or>", 0)).get()),
        97);
    EXPECT_EQ(selected("X", List(acutBuildList(-3, 1001, "OTHER_APP", 0)).get()), 30);
    EXPECT_EQ(selected("X", List(acutBuildList(67, 1, 0)).get()), 8 + 3) << "of both sheets";
    int layers = 0;
    for (List layer(acdbTblNext("LAYER", 1)); layer; layer = List(acdbTblNext("LAYER", 0))) ++layers;
    EXPECT_EQ(layers, 25);
    List frozen(acdbTblSearch("LAYER", "OLD-WORK", 0)), off(acdbTblSearch("LAYER", "HIDDEN-OFF", 0));
    EXPECT_EQ(frozen.find(70)->resval.rint, 1);
    EXPECT_LT(off.find(62)->resval.rint, 0);
    List block(acdbTblSearch("BLOCK", "POLE_SYM", 0));
    EXPECT_EQ(block.find(70)->resval.rint & 2, 2);
}

TEST_P(SurveyEntities, AFenceAcrossTheSheetFindsTheLotItRunsThrough) {
    ads_name lot;
    ASSERT_EQ(acdbHandEnt("82", lot), RTNORM);
    resbuf* fence = acutBuildList(RT3DPOINT, kOrigin, RT3DPOINT, kOrigin, 0);
    List owner(fence);
    const ads_point west = {-98765432.1, 480460, 0}, east = {98765432.1, 480460, 0};
    ads_point_set(west, fence->resval.rpoint);
    ads_point_set(east, fence->rbnext->resval.rpoint);
    List filter(acutBuildList(RTDXF0, "LWPOLYLINE", 8, "LOTS", 0));
    ads_name set;
    ASSERT_EQ(acedSSGet("F", fence, nullptr, filter.get(), set), RTNORM);
    EXPECT_EQ(acedSSMemb(lot, set), RTNORM);
    EXPECT_LT(lengthOf(set), 60);
    acedSSFree(set);
    // A box round a corner of the lot crosses it, and holds nothing whole.
    ads_point low = {1630784.0, 480412.0, 0}, high = {1630784.3, 480412.4, 0};
    ASSERT_EQ(acedSSGet("C", low, high, filter.get(), set), RTNORM);
    EXPECT_EQ(acedSSMemb(lot, set), RTNORM);
    acedSSFree(set);
    EXPECT_EQ(acedSSGet("W", low, high, filter.get(), set), RTERROR);
}

TEST_P(SurveyEntities, LinksOnManyEntitiesPassTheAuditAndReadBack) {
    ASSERT_EQ(acdbRegApp("LINK_APP"), RTNORM);
    ads_name set, entity;
    ASSERT_EQ(acedSSGet("X", nullptr, nullptr, nullptr, set), RTNORM);
    long length = lengthOf(set);
    for (long i = 0; i < length; ++i) {
        acedSSName(set, i, entity);
        List list(acdbEntGet(entity));
        list.add(acutBuildList(-3, 1001, "LINK_APP", 1002, "{", 1000, list.text(5).c_str(), 1000,
                               "\xC3\x89toile", 1002, "}", 0));
        ASSERT_EQ(acdbEntMod(list.get()), RTNORM) << list.text(0);
    }
    EXPECT_EQ(audit(), "");
    if (!ezdxfIsInstalled()) return;
    std::string script =
        "doc = ezdxf.readfile(path)\n"
        "good = [e for layout in doc.layouts for e in layout\n"
        "        if [t.value for t in e.get_xdata('LINK_APP')] == ['{', e.dxf.handle, "
        "'\xC3\x89toile', '}']]\n"
        "print(len(good), sum(e.has_xdata('OTHER_APP') for e in good))\n";
    EXPECT_EQ(python(folder_, script, folder_ / "saved.dxf"), std::to_string(length) + " 30\n");
}
