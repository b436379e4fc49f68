// The lots of the sample linked by their labels and by their handles, and followed to their records by other
// programs; and the same while things go wrong.
#include <unistd.h>

#include <random>

#include "hostcad/drawing/current_drawing.h"
#include "tests/module/linktools/link_fixture.h"
#include "tests/platform/crash.h"

namespace {

class Lots : public LinkTools {
  protected:
    void SetUp() override {
        LinkTools::SetUp();
        openSample();
        sql("create table LOT (PT_ID TEXT(255), GIS_KEY TEXT(255), NUM TEXT(255))");
        // Of the two labels of lot 12 one goes.
        lisp(
            "(entdel (ssname (ssget \"X\" '((0 . \"TEXT\") (1 . \"LOT 12A\"))) 0))"
            "(command \"_.UNDO\" \"_BE\") (command \"_.UNDO\" \"_E\")");
    }
    // Function code 20 for the lots and their labels.
    std::string link(const std::string& mode, std::vector<ui::Step> steps) {
        steps.push_back(click("OK"));
        answer(1390, std::move(steps));
        lisp("(ssget \"X\" '((-4 . \"<or\") (8 . \"LOTS\") (8 . \"LOT-TEXT\") (-4 . \"or>\")))");
        inputs_ = {mode, "P", ""};
        printed();
        lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") + " " +
             quoted("output.mdb") + ")");
        return printed();
    }
    std::string followedLots() {
        lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("lots.dxf") + " \"_Y\")");
        return outputOf("/usr/bin/python3 '" NORVANE_SOURCE_DIR
                        "/tests/module/linktools/follow_labels.py' '" +
                        path("lots.dxf") + "' LOT-TEXT 2>&1");
    }
    std::string linkedCount() {
        return lisp("(if (setq s (ssget \"X\" '((-3 (\"ZGEO_GIS_2000\"))))) (sslength s) 0)");
    }
    // Escape is pressed when so many entities have been changed.
    void escapeAfter(int changes) {
        observer_ = hostcad::currentDrawing().addObserver(
            [this, left = changes](hostcad::ObjectId, hostcad::Change) mutable {
                if (--left == 0) host_->cancel();
            });
    }
    void noEscape() { hostcad::currentDrawing().removeObserver(observer_); }

    int observer_ = 0;
};

const ui::Step kCreateNew{ui::Step::Kind::Check, "Create New Entities"};

}  // namespace

TEST_F(Lots, EachIsLinkedToTheRecordOfItsLabelOrHandle) {
    link("Text", {});
    EXPECT_EQ(followedLots(), "by label 59, by handle 0, wrong 0, on LOTS\n");
    EXPECT_EQ(sql("select count(*), count(distinct PT_ID) from LOT"), "58|58\n")
        << "lots 36 and 37 have one label";
    lisp("(command \"_.U\")");
    EXPECT_EQ(linkedCount(), "0");
    link("Text", {kCreateNew, {ui::Step::Kind::Text, "2028", "AREAS"}});
    EXPECT_EQ(followedLots(), "by label 59, by handle 0, wrong 0, on AREAS\n");
    EXPECT_EQ(sql("select count(*) from LOT"), "58\n") << "the records of the first run";
    link("Handle", {});
    EXPECT_EQ(followedLots(), "by label 59, by handle 60, wrong 0, on AREAS LOTS\n");
    EXPECT_EQ(sql("select count(*), count(distinct PT_ID) from LOT"), "118|118\n");
}

TEST_F(Lots, EscapeBetweenTwoRecordsLinksThoseThatAreWritten) {
    const std::string polylines = "(sslength (ssget \"X\" '((0 . \"LWPOLYLINE\"))))";
    const std::string before = lisp(polylines);
    // While areas are made and labels searched for, nothing is kept.
    escapeAfter(20);
    EXPECT_EQ(link("Text", {}).find("\nLinked"), std::string::npos);
    noEscape();
    EXPECT_EQ(linkedCount(), "0");
    EXPECT_EQ(sql("select count(*) from LOT"), "0\n");
    EXPECT_EQ(lisp(polylines), before);

    onPrinted_ = [this](std::string_view text) {
        if (text.starts_with("\rChecking selected entities > 50")) host_->cancel();
    };
    const std::string said = link("Text", {});
    onPrinted_ = {};
    EXPECT_NE(said.find("\nStopped before all areas had a record; another run goes on from there."),
              std::string::npos)
        << said;
    const std::string written = sql("select count(*) from LOT");
    EXPECT_EQ(written, "8\n") << "the number left is told every fifty";
    const std::string followed = followedLots();
    EXPECT_TRUE(followed.ends_with("by handle 0, wrong 0, on LOTS\n")) << followed;
    EXPECT_TRUE(followed == "by label 8, by handle 0, wrong 0, on LOTS\n" ||
                followed.starts_with("by label 9,"))
        << followed;
    link("Text", {});
    EXPECT_EQ(followedLots(), "by label 59, by handle 0, wrong 0, on LOTS\n");
    EXPECT_EQ(sql("select count(*) from LOT"), "58\n");
}

TEST_F(Lots, ARunThatIsKilledLeavesDatabasesAndDrawingWhole) {
    std::mt19937 random(18);
    lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("job.dxf") + " \"_Y\")");
    for (int round = 0; round < 8; ++round) {
        SCOPED_TRACE(round);
        reportedUntilKilled(random() % 300000, [&](const auto& report) {
            report("begins");
            link("Text", {});
            lisp("(command \"_.QSAVE\")");
        });
        for (const char* file : {"template.mdb", "output.mdb"}) EXPECT_EQ(faultsOf(path(file)), "") << file;
        EXPECT_EQ(sql("select count(*) from LOT where PT_ID is null or GIS_KEY <> 'LOT' or NUM is null"),
                  "0\n");
        EXPECT_EQ(sql("select count(*) - count(distinct PT_ID) from LOT"), "0\n");
        EXPECT_EQ(outputOf("/usr/bin/python3 -c \"import ezdxf, sys; d = ezdxf.readfile(sys.argv[1]); "
                           "print(len(d.modelspace().query('LWPOLYLINE[layer==\\\"LOTS\\\"]')))\" '" +
                           path("job.dxf") + "'"),
                  "60\n");
    }
    link("Text", {});
    EXPECT_EQ(followedLots(), "by label 59, by handle 0, wrong 0, on LOTS\n");
    EXPECT_EQ(sql("select count(*) from LOT"), "58\n") << "no label has a record twice";
}

TEST_F(Lots, AnOutputThatCannotBeWrittenLeavesTheDrawingAsItIs) {
    const std::string before = lisp("(sslength (ssget \"X\" '((0 . \"LWPOLYLINE\"))))");
    fs::permissions(path(""), fs::perms::all);
    fs::permissions(path("template.mdb"), fs::perms::all);
    fs::permissions(path("output.mdb"),
                    fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    // Root may write everything.
    constexpr uid_t kNobody = 65534;
    const bool isRoot = ::geteuid() == 0;
    ASSERT_TRUE(!isRoot || ::seteuid(kNobody) == 0);
    ui_.answerBox("OK");
    const std::string said = link("Text", {});
    ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
    EXPECT_TRUE(shown("box [Error]"));
    EXPECT_NE(said.find("\nThe database failed when 0 records were changed and 0 added. No link is written"),
              std::string::npos)
        << said;
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((0 . \"LWPOLYLINE\"))))"), before);
    EXPECT_EQ(linkedCount(), "0");
    EXPECT_EQ(sql("select count(*) from LOT"), "0\n");
}

TEST_F(Lots, LockedAndFrozenLayersAreLinkedToo) {
    lisp(
        "(foreach flag '((\"LOTS\" . 4) (\"LOT-TEXT\" . 1)) (entmod (subst (cons 70 (cdr flag)) (assoc 70 "
        "(setq d (entget (tblobjname \"LAYER\" (car flag))))) d)))");
    link("Text", {});
    EXPECT_EQ(followedLots(), "by label 59, by handle 0, wrong 0, on LOTS\n");
}

TEST_F(Lots, LineworkWithoutAPlaceIsLeftOut) {
    lisp(
        "(defun line (x y u v) (entmake (list '(0 . \"LINE\") '(8 . \"LOTS\") (list 10 x y 0.0) (list 11 u v "
        "0.0))))"
        "(line 1630000.0 480000.0 1e12 480000.0) (line -1e12 0.0 1e12 1e12) (line 5.0 5.0 5.0 5.0)"
        "(entmake '((0 . \"TEXT\") (8 . \"LOT-TEXT\") (10 1e12 1e12 0.0) (40 . 1.0) (1 . \"OUT\")))"
        // A lot once more, the other way round: the links are the same.
        "(setq d (entget (ssname (ssget \"X\" '((8 . \"LOTS\") (0 . \"LWPOLYLINE\"))) 0)))"
        "(foreach e '((3.0 4.0) (6.0 8.0)) (line (car e) (cadr e) (car e) (cadr e)))");
    const std::string said = link("Text", {});
    EXPECT_NE(said.find("2 pieces of linework without a place in the plane are left out."), std::string::npos)
        << said;
    EXPECT_NE(said.find("\nLabels in no area 1: OUT."), std::string::npos) << said;
    EXPECT_EQ(followedLots(), "by label 59, by handle 0, wrong 0, on LOTS\n");
}
