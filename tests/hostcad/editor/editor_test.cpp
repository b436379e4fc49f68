// Prompts, keywords, variables and the built-in commands.
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "hostcad/dxf/dxf.h"
#include "hostcad/editor/prompt.h"
#include "platform/ads/editor.h"
#include "platform/ads/entities.h"
#include "platform/files/files.h"
#include "tests/hostcad/host_fixture.h"

namespace hostcad {
namespace {

// --- Keywords and points -----------------------------------------------------------------------------

TEST(Keywords, AreTypedWholeOrShortened) {
    Keywords plain("Select Pick LType,LT ON OFF eXit lower");
    EXPECT_EQ(plain.match("s"), "Select");
    EXPECT_EQ(plain.match("SEL"), "Select");
    EXPECT_EQ(plain.match("selection"), std::nullopt);
    EXPECT_EQ(plain.match("lt"), "LType");
    EXPECT_EQ(plain.match("l"), std::nullopt);
    EXPECT_EQ(plain.match("o"), std::nullopt);
    EXPECT_EQ(plain.match("off"), "OFF");
    EXPECT_EQ(plain.match("x"), "eXit");
    EXPECT_EQ(plain.match("low"), std::nullopt);
    EXPECT_EQ(plain.match("lower"), "lower");
    EXPECT_EQ(plain.match("_p"), "Pick");
    EXPECT_EQ(plain.match(""), std::nullopt);
    Keywords local("Ja Nein _Yes No");
    EXPECT_EQ(local.match("j"), "Yes");
    EXPECT_EQ(local.match("_n"), "No");
    EXPECT_EQ(local.match("yes"), std::nullopt);
}

TEST(Points, AreTypedInManyWays) {
    Conventions conventions;
    conventions.lastPoint = {10, 20, 5};
    conventions.elevation = 7;
    struct Case {
        const char* typed;
        Point point;
    };
    for (const Case& c :
         {Case{"1,2", {1, 2, 7}}, Case{" 1.5 , -2 , 3", {1.5, -2, 3}}, Case{"@1,2", {11, 22, 5}},
          Case{"@1,2,3", {11, 22, 8}}, Case{"@5<90", {10, 25, 5}}, Case{"2<180", {-2, 0, 7}},
          Case{"@", {10, 20, 5}}, Case{"*3,4", {3, 4, 7}}, Case{"1'6\",0", {18, 0, 7}}}) {
        auto point = parsePoint(c.typed, conventions);
        ASSERT_TRUE(point) << c.typed;
        EXPECT_NEAR(length(*point - c.point), 0, 1e-12) << c.typed;
    }
    for (const char* bad : {"", "1", "1,2,3,4", "a,b", "1,", "<", "5<x", "@1", "1;2", "nan,1", "1,inf"})
        EXPECT_FALSE(parsePoint(bad, conventions)) << bad;
    conventions.angleBase = std::acos(0.0);
    conventions.isClockwise = true;
    auto east = parsePoint("2<90", conventions);
    ASSERT_TRUE(east);
    EXPECT_NEAR(east->x, 2, 1e-12);
}

// --- Prompts -----------------------------------------------------------------------------------------

class PromptTest : public HostTest {};

TEST_F(PromptTest, AskAgainUntilTheAnswerFits) {
    for (const char* typed : {"abc", "", "-3", "0", "2.5", "5"}) answer(typed);
    EXPECT_EQ(run("(initget 7) (getint \"\\nHow many? \")"), "5");
    std::string text = said();
    EXPECT_NE(text.find("\nHow many? "), std::string::npos);
    EXPECT_NE(text.find("must not be negative"), std::string::npos);
    EXPECT_NE(text.find("must not be zero"), std::string::npos);
    EXPECT_NE(text.find("whole number"), std::string::npos);
    // The rules were for that prompt only.
    answer("");
    EXPECT_EQ(run("(getint \"again\")"), "nil");
}

TEST_F(PromptTest, GiveValuesOfEachKind) {
    for (const char* typed : {"1,2", "@1,1", "3<0", "2.5", "0,0", "3,4", "45", "two words", "n", "1e2"})
        answer(typed);
    EXPECT_EQ(run("(getpoint)"), "(1.0 2.0 0.0)");
    EXPECT_EQ(run("(getpoint '(0 0) \"next\")"), "(2.0 3.0 0.0)");
    EXPECT_EQ(run("(getcorner '(0 0) \"corner\")"), "(3.0 0.0 0.0)");
    EXPECT_EQ(run("(getdist \"length\")"), "2.5");
    EXPECT_EQ(run("(getdist \"by two points\")"), "5.0");
    EXPECT_EQ(run("(getangle)"), "0.785398");
    EXPECT_EQ(run("(getstring t \"text\")"), "\"two words\"");
    EXPECT_EQ(run("(initget \"Yes No\") (getkword)"), "\"No\"");
    EXPECT_EQ(run("(getreal)"), "100.0");
    EXPECT_EQ(run("(getreal \"\\nFactor: \")"), "error: no input for the prompt \"Factor:\"");
}

TEST_F(PromptTest, TakeKeywordsInPlaceOfValues) {
    answer("c");
    EXPECT_EQ(run("(initget \"Close Undo\") (getpoint)"), "\"Close\"");
    answer("17 oaks");
    EXPECT_EQ(run("(initget 128 \"Close\") (getpoint)"), "\"17 oaks\"");
    answer("17");
    EXPECT_EQ(run("(initget 128 \"Select Pick\") (getkword)"), "\"17\"");
    answer("maybe");
    answer("");
    EXPECT_EQ(run("(initget \"Select Pick\") (getkword)"), "nil");
    answer("");
    EXPECT_EQ(run("(getstring \"name\")"), "\"\"");
}

TEST_F(PromptTest, EndByEscape) {
    answer(Input::cancel());
    EXPECT_EQ(run("(getpoint)"), "error: Function cancelled");
}

TEST_F(PromptTest, SelectEntities) {
    run("(entmake '((0 . \"LINE\") (10 0 0 0) (11 10 0 0)))"
        "(setq line (entlast)) (entmake '((0 . \"CIRCLE\") (10 100 100 0) (40 . 5)))"
        "(setq circle (entlast)) (command \"_.ZOOM\" \"_W\" \"0,0\" \"120,120\")");
    answer("5,0");
    EXPECT_EQ(run("(setq s (entsel)) (list (eq (car s) line) (cadr s))"), "(T (5.0 0.0 0.0))");
    answer("50,50");
    EXPECT_EQ(run("(list (entsel) (getvar \"ERRNO\"))"), "(nil 7)");
    answer("");
    EXPECT_EQ(run("(list (entsel) (getvar \"ERRNO\"))"), "(nil 52)");
    EXPECT_EQ(run("(entsel \"Which? \")"), "error: no input for the prompt \"Which?\"");

    auto selected = [&](std::initializer_list<const char*> typed) {
        for (const char* one : typed) answer(one);
        return run(
            "(if (setq s (ssget)) (list (sslength s) (if (ssmemb line s) t) (if (ssmemb circle s) t)))");
    };
    EXPECT_EQ(selected({"all", ""}), "(2 T T)");
    EXPECT_EQ(selected({"_L", ""}), "(1 nil T)");
    EXPECT_EQ(selected({"w", "-1,-1", "11,1", ""}), "(1 T nil)");
    EXPECT_EQ(selected({"c", "94,94", "96.6,96.6", ""}), "(1 nil T)");
    EXPECT_EQ(selected({"all", "r", "5,0", ""}), "(1 nil T)");
    EXPECT_EQ(selected({"50,50", "-5,-5", ""}), "(1 T nil)");  // a box to the left of where it began crosses
    EXPECT_EQ(selected({"f", "5,5", "5,-5", "", ""}), "(1 T nil)");
    EXPECT_EQ(selected({"cp", "90,90", "110,90", "110,110", "", ""}), "(1 nil T)");
    EXPECT_EQ(selected({""}), "nil");
    answer("all");
    answer("");
    EXPECT_EQ(run("(sslength (ssget '((0 . \"CIRCLE\"))))"), "1");
    answer(Input::cancel());
    EXPECT_EQ(run("(ssget)"), "nil");
}

// --- Variables ---------------------------------------------------------------------------------------

class VariablesTest : public HostTest {};

TEST_F(VariablesTest, KeepTheirTypes) {
    EXPECT_EQ(run("(getvar \"CLAYER\")"), "\"0\"");
    EXPECT_EQ(run("(getvar \"aperture\")"), "10");
    EXPECT_EQ(run("(getvar \"NO-SUCH\")"), "nil");
    EXPECT_EQ(run("(setvar \"TEXTSIZE\" 3) (getvar \"TEXTSIZE\")"), "3.0");
    EXPECT_EQ(run("(setvar \"USERI1\" 7) (setvar \"USERR2\" 1.5) (setvar \"USERS3\" \"x\")"
                  "(mapcar 'getvar '(\"USERI1\" \"USERR2\" \"USERS3\"))"),
              "(7 1.5 \"x\")");
    EXPECT_EQ(run("(setvar \"CMDECHO\" \"on\")"), "error: cannot set the variable CMDECHO");
    EXPECT_EQ(run("(setvar \"DATE\" 1.0)"), "error: cannot set the variable DATE");
    EXPECT_EQ(run("(setvar \"USERI2\" 32768)"), "error: cannot set the variable USERI2");
    EXPECT_EQ(run("(setvar \"USERI2\" -32768) (getvar \"USERI2\")"), "-32768");
    EXPECT_EQ(run("(setvar \"CLAYER\" \"NO-SUCH\")"), "error: cannot set the variable CLAYER");
    EXPECT_EQ(run("(setvar \"LASTPOINT\" '(1 2 3)) (getvar \"LASTPOINT\")"), "(1.0 2.0 3.0)");
    EXPECT_EQ(run("(getvar \"SCREENSIZE\")"), "(1024.0 768.0)");
    EXPECT_EQ(run("(setvar \"ANGBASE\" (/ pi 2)) (rtos (getvar \"ANGBASE\") 2 6)"), "\"1.570796\"");
    // 2 460 000 and more since 2023.
    EXPECT_EQ(run("(< 2460000 (getvar \"DATE\") 2500000)"), "T");
    EXPECT_EQ(run("(< 20230000 (getvar \"CDATE\") 21000000)"), "T");
}

TEST_F(VariablesTest, OfTheDrawingGoWithIt) {
    run("(setvar \"USERI1\" 9) (setvar \"USERS1\" \"of the process\") (setvar \"LTSCALE\" 48)");
    EXPECT_EQ(currentDrawing().headerReal("$LTSCALE"), 48);
    host_.newDrawing();
    EXPECT_EQ(run("(mapcar 'getvar '(\"USERI1\" \"USERS1\" \"LTSCALE\"))"), "(0 \"of the process\" 1.0)");
}

TEST_F(VariablesTest, SayHowBigAPixelIs) {
    run("(command \"_.ZOOM\" \"_C\" \"100,200\" 76.8)");
    const int origin[2] = {0, 0}, right[2] = {10, 0};
    ads_point a, b;
    ASSERT_EQ(acedCoordFromPixelToWorld(0, origin, a), RTNORM);
    ASSERT_EQ(acedCoordFromPixelToWorld(0, right, b), RTNORM);
    EXPECT_NEAR(acutDistance(a, b), 1.0, 1e-9);
    EXPECT_NEAR(a[0], 100 - 51.2, 1e-9);
    EXPECT_NEAR(a[1], 200 - 38.4, 1e-9);
}

// --- Commands ----------------------------------------------------------------------------------------

class CommandTest : public HostTest {
  protected:
    CommandTest() { run("(setvar \"CMDECHO\" 0)"); }
    std::string count(const std::string& filter) {
        return run("(if (setq s (ssget \"X\" '(" + filter + "))) (sslength s) 0)");
    }
};

TEST_F(CommandTest, Draw) {
    run("(command \"_.LINE\" \"0,0\" \"10,0\" \"@5<90\" \"_C\")");
    EXPECT_EQ(count("(0 . \"LINE\")"), "3");
    EXPECT_EQ(last(10), "(10.0 5.0 0.0)");
    EXPECT_EQ(last(11), "(0.0 0.0 0.0)");
    run("(command \"_.LINE\" \"0,0\" \"1,0\" \"2,0\" \"_U\" \"3,0\" \"\")");
    EXPECT_EQ(last(11), "(3.0 0.0 0.0)");
    EXPECT_EQ(last(10), "(1.0 0.0 0.0)");
    run("(command \"_.POINT\" '(1 2 3))");
    EXPECT_EQ(last(10), "(1.0 2.0 3.0)");
    run("(command \"_.CIRCLE\" \"1,1\" 2)");
    EXPECT_EQ(last(40), "2.0");
    run("(command \"circle\" \"1,1\" \"_D\" \"5\")");
    EXPECT_EQ(last(40), "2.5");
    run("(command \"_.TEXT\" \"_J\" \"_R\" \"5,6\" 2.5 90 \"LOT 12\")");
    EXPECT_EQ(run("(mapcar '(lambda (c) (cdr (assoc c (entget (entlast))))) '(0 1 40 72 11))"),
              "(\"TEXT\" \"LOT 12\" 2.5 2 (5.0 6.0 0.0))");
    EXPECT_EQ(run("(equal (/ pi 2) (cdr (assoc 50 (entget (entlast)))) 1e-9)"), "T");
    EXPECT_EQ(said(), "");  // CMDECHO is off
}

TEST_F(CommandTest, DrawPolylines) {
    run("(command \"_.PLINE\" \"0,0\" \"_W\" 0.5 1 \"10,0\" \"_A\" \"10,10\" \"_L\" \"0,10\" \"_C\")");
    EXPECT_EQ(last(70), "1");
    EXPECT_EQ(
        run("(mapcar 'cdr (vl-remove-if-not '(lambda (g) (member (car g) '(10 40 41 42))) (entget "
            "(entlast))))"),
        "((0.0 0.0) 0.5 1.0 0.0 (10.0 0.0) 1.0 1.0 1.0 (10.0 10.0) 1.0 1.0 0.0 (0.0 10.0) 1.0 1.0 0.0)");
    // Through a second point, by an angle, about a centre: each time a half circle of bulge 1.
    for (const char* arc : {"\"_S\" \"5,-5\" \"10,0\"", "\"_A\" 180 \"10,0\"", "\"_CE\" \"5,0\" \"10,0\"",
                            "\"_D\" 270 \"10,0\""}) {
        run(std::string("(command \"_.PLINE\" \"0,0\" \"_W\" 0 0 \"_A\" ") + arc + " \"\")");
        EXPECT_EQ(run("(equal 1.0 (cdr (assoc 42 (entget (entlast)))) 1e-9)"), "T") << arc;
    }
    run("(setvar \"PLINETYPE\" 0) (command \"_.PLINE\" \"0,0\" \"1,1\" \"\")");
    EXPECT_EQ(last(0), "\"POLYLINE\"");
    EXPECT_EQ(run("(cdr (assoc 10 (entget (entnext (entnext (entlast))))))"), "(1.0 1.0 0.0)");
}

TEST_F(CommandTest, WaitForWhatALaterCallGives) {
    run("(command \"_.PLINE\" \"0,0\") (foreach p '((1 0) (1 1) (0 1)) (command p)) (command \"_C\")");
    EXPECT_EQ(last(90), "4");
    EXPECT_EQ(run("(getvar \"CMDACTIVE\")"), "0");
    run("(command \"_.LINE\" \"0,0\" \"9,9\")");
    EXPECT_EQ(run("(getvar \"CMDNAMES\")"), "\"LINE\"");
    EXPECT_EQ(last(11), "(9.0 9.0 0.0)");
    run("(command)");
    EXPECT_EQ(run("(getvar \"CMDNAMES\")"), "\"\"");
    answer("nothing");
    answer("7,7");
    run("(command \"_.POINT\" pause)");
    EXPECT_EQ(last(10), "(7.0 7.0 0.0)");
    EXPECT_EQ(run("(command \"_.POINT\" pause)"), "error: the command failed");
    answer(Input::cancel());
    EXPECT_EQ(run("(command \"_.POINT\" pause)"), "error: Function cancelled");
}

TEST_F(CommandTest, AreFoundByName) {
    EXPECT_EQ(run("(command \"NO-SUCH\")"), "nil");
    EXPECT_NE(said().find("Unknown command \"NO-SUCH\""), std::string::npos);
    EXPECT_TRUE(host_.runLine("(defun c:mine () (setq ran t) (princ))"));
    EXPECT_TRUE(host_.runLine("mine"));
    EXPECT_EQ(run("ran"), "T");
    said();
    EXPECT_TRUE(host_.runLine("!ran"));
    EXPECT_EQ(said(), "\nT\n");
    EXPECT_FALSE(host_.runLine("(car 5)"));
    EXPECT_NE(said().find("; error: bad argument type: listp 5"), std::string::npos);
    answer("3,3");
    host_.cancel();  // nothing runs that could be cancelled, and what comes later is not
    EXPECT_TRUE(host_.runLine("(setq later t)"));
    EXPECT_TRUE(host_.runLine("'_.Point"));
    EXPECT_EQ(last(10), "(3.0 3.0 0.0)");
}

TEST_F(CommandTest, ChangeLayers) {
    auto layer = [&](const char* name) {
        return run(std::string("(mapcar '(lambda (c) (cdr (assoc c (tblsearch \"LAYER\" \"") + name +
                   "\")))) '(70 62 6))");
    };
    run("(command \"_.LAYER\" \"_M\" \"GIS\" \"_C\" \"1\" \"\" \"\")");
    EXPECT_EQ(run("(getvar \"CLAYER\")"), "\"GIS\"");
    EXPECT_EQ(layer("GIS"), "(0 1 \"Continuous\")");
    run("(command \"_.LAYER\" \"_N\" \"A1,A2,B\" \"_C\" \"green\" \"A*\" \"_OFF\" \"A2\" \"_F\" \"B\" "
        "\"_LO\" \"A1\" \"\")");
    EXPECT_EQ(layer("A1"), "(4 3 \"Continuous\")");
    EXPECT_EQ(layer("A2"), "(0 -3 \"Continuous\")");
    EXPECT_EQ(layer("B"), "(1 7 \"Continuous\")");
    run("(command \"_.LAYER\" \"_S\" \"B\" \"\")");
    EXPECT_NE(said().find("frozen"), std::string::npos);
    EXPECT_EQ(run("(getvar \"CLAYER\")"), "\"GIS\"");
    run("(command \"_.LAYER\" \"_T\" \"B\" \"_S\" \"B\" \"_U\" \"A1\" \"_ON\" \"*\" \"\")");
    EXPECT_EQ(run("(getvar \"CLAYER\")"), "\"B\"");
    EXPECT_EQ(layer("A1"), "(0 3 \"Continuous\")");
    EXPECT_EQ(layer("A2"), "(0 3 \"Continuous\")");
    said();
    run("(command \"_.LAYER\" \"_F\" \"B\" \"_N\" \"bad|name\" \"_LT\" \"NO-SUCH\" \"_S\" \"NO-SUCH\" \"\")");
    std::string text = said();
    for (const char* part : {"Cannot freeze", "\"bad|name\" is not valid", "\"NO-SUCH\" is not loaded",
                             "Cannot find layer \"NO-SUCH\""})
        EXPECT_NE(text.find(part), std::string::npos) << text;
    EXPECT_EQ(run("(getvar \"CMDACTIVE\")"), "0");
}

TEST_F(CommandTest, Zoom) {
    auto view = [&] { return run("(list (getvar \"VIEWCTR\") (getvar \"VIEWSIZE\"))"); };
    run("(command \"_.ZOOM\" \"_W\" \"0,0\" \"10,30\")");
    EXPECT_EQ(view(), "((5.0 15.0 0.0) 30.0)");
    run("(command \"_.ZOOM\" \"0,0\" \"40,3\")");  // wide: the width rules, at 4 to 3
    EXPECT_EQ(view(), "((20.0 1.5 0.0) 30.0)");
    run("(command \"_.ZOOM\" \"2x\")");
    EXPECT_EQ(view(), "((20.0 1.5 0.0) 15.0)");
    run("(command \"_.ZOOM\" \"_C\" \"1,1\" 8)");
    EXPECT_EQ(view(), "((1.0 1.0 0.0) 8.0)");
    run("(command \"_.ZOOM\" \"_P\")");
    EXPECT_EQ(view(), "((20.0 1.5 0.0) 15.0)");
    run("(command \"_.CIRCLE\" \"100,100\" 50) (command \"_.ZOOM\" \"_E\")");
    EXPECT_EQ(view(), "((100.0 100.0 0.0) 100.0)");
    run("(command \"_.ZOOM\" \"-1x\")");
    EXPECT_EQ(view(), "((100.0 100.0 0.0) 100.0)");
    // What is seen is no content: undo takes back the circle, and there is nothing to save.
    run("(command \"_.U\")");
    EXPECT_EQ(count(""), "0");
    currentDrawing().setModified(false);
    run("(command \"_.ZOOM\" \"_W\" \"0,0\" \"10,30\")");
    EXPECT_FALSE(currentDrawing().modified());
    run("(command \"_.REDO\")");
    EXPECT_EQ(count(""), "1");
}

TEST_F(CommandTest, EraseAndUndo) {
    run("(command \"_.POINT\" \"1,1\") (command \"_.LINE\" \"0,0\" \"1,0\" \"1,1\" \"\")");
    run("(command \"_.ERASE\" \"_ALL\" \"\")");
    EXPECT_EQ(count(""), "0");
    run("(command \"_.U\")");
    EXPECT_EQ(count(""), "3");
    run("(command \"_.U\")");  // the line command with both its segments
    EXPECT_EQ(count(""), "1");
    run("(command \"_.REDO\")");
    EXPECT_EQ(count(""), "3");
    run("(command \"_.UNDO\" 2)");
    EXPECT_EQ(count(""), "0");
    run("(command \"_.U\")");
    run("(command \"_.UNDO\" \"_BE\") (command \"_.POINT\" \"1,1\") (command \"_.POINT\" \"2,2\") (command "
        "\"_.UNDO\" \"_E\")");
    EXPECT_EQ(count(""), "2");
    run("(command \"_.U\")");
    EXPECT_EQ(count(""), "0");
    // A change that is made in between is the end of what could be done again.
    run("(command \"_.POINT\" \"1,1\") (command \"_.POINT\" \"2,2\") (command \"_.U\")");
    run("(entmod (subst '(10 5.0 5.0 0.0) (assoc 10 (entget (entlast))) (entget (entlast))))");
    run("(command \"_.REDO\")");
    EXPECT_EQ(count(""), "1");
    EXPECT_NE(said().find("nothing to redo"), std::string::npos);
    run("(command \"_.ERASE\" \"_ALL\" \"\")");
    run("(command \"_.POINT\" \"1,1\" \"_.LAYER\" \"_LO\" \"0\" \"\" \"_.ERASE\" \"_L\" \"\")");
    EXPECT_EQ(count(""), "1");
    EXPECT_NE(said().find("locked layer"), std::string::npos);
}

TEST_F(CommandTest, List) {
    run("(regapp \"MINE\") (entmake '((0 . \"CIRCLE\") (8 . \"0\") (10 1 2 0) (40 . 2.5) (-3 (\"MINE\" (1000 "
        ". \"datum\")))))");
    said();
    run("(command \"_.LIST\" \"_L\" \"\")");
    std::string text = said();
    for (const char* part : {"CIRCLE  Layer: \"0\"", "Handle =", "X=1  Y=2", "radius  2.5", "area  19.6350",
                             "application  MINE", "1000  datum"})
        EXPECT_NE(text.find(part), std::string::npos) << text;
}

// --- Blocks and files --------------------------------------------------------------------------------

class FileCommandTest : public CommandTest {
  protected:
    FileCommandTest() {
        folder_ = testing::TempDir() + "editor_" + std::to_string(getpid()) + "_" +
                  testing::UnitTest::GetInstance()->current_test_info()->name() + "/";
        std::filesystem::create_directories(folder_);
        run("(setq dir \"" + folder_ + "\")");
    }
    ~FileCommandTest() override { std::filesystem::remove_all(folder_); }

    void makeTreeBlock() {
        run("(entmake '((0 . \"BLOCK\") (2 . \"TREE\") (70 . 2) (10 1.0 0.0 0.0)))"
            "(entmake '((0 . \"CIRCLE\") (8 . \"CROWN\") (10 1.0 0.0 0.0) (40 . 0.5)))"
            "(entmake '((0 . \"ATTDEF\") (10 2.0 0.0 0.0) (40 . 0.2) (1 . \"OAK\") (3 . \"Species?\") (2 . "
            "\"SPECIES\") (70 . 0)))"
            "(entmake '((0 . \"ATTDEF\") (10 2.0 1.0 0.0) (40 . 0.2) (1 . \"C\") (3 . \"\") (2 . \"FIXED\") "
            "(70 . 2)))"
            "(entmake '((0 . \"ATTDEF\") (10 3.0 0.0 0.0) (40 . 0.2) (1 . \"\") (3 . \"\") (2 . \"DBH\") (70 "
            ". 0)))"
            "(entmake '((0 . \"ENDBLK\")))");
    }
    std::string attributes() {
        return run(
            "(setq r nil e (entnext (entlast)))"
            "(while (and e (= (cdr (assoc 0 (entget e))) \"ATTRIB\"))"
            "  (setq r (cons (list (cdr (assoc 2 (entget e))) (cdr (assoc 1 (entget e)))) r) e (entnext e)))"
            "(reverse r)");
    }
    std::string folder_;
};

TEST_F(FileCommandTest, InsertBlocksWithTheirAttributes) {
    makeTreeBlock();
    run("(command \"_.INSERT\" \"tree\" \"100,200\" 2 \"\" 90 \"MAPLE\" \"\")");
    EXPECT_EQ(run("(mapcar '(lambda (c) (cdr (assoc c (entget (entlast))))) '(2 10 41 42 66))"),
              "(\"TREE\" (100.0 200.0 0.0) 2.0 2.0 1)");
    EXPECT_EQ(attributes(), "((\"SPECIES\" \"MAPLE\") (\"DBH\" \"\"))");
    // One to the right of the base, twice as large, turned upwards.
    EXPECT_EQ(run("(mapcar '(lambda (x) (rtos x 2 6)) (cdr (assoc 10 (entget (entnext (entlast))))))"),
              "(\"100.000000\" \"202.000000\" \"0.000000\")");
    EXPECT_EQ(run("(cdr (assoc 40 (entget (entnext (entlast)))))"), "0.4");
    run("(setvar \"ATTREQ\" 0) (command \"_.INSERT\" \"\" \"_S\" 3 \"0,0\" 0)");  // the last name again
    EXPECT_EQ(attributes(), "((\"SPECIES\" \"OAK\") (\"DBH\" \"\"))");
    EXPECT_EQ(last(43), "3.0");
    run("(command \"_.INSERT\" \"NO-SUCH\")");
    EXPECT_NE(said().find("no block or drawing \"NO-SUCH\""), std::string::npos);
    EXPECT_EQ(run("(getvar \"CMDACTIVE\")"), "0");
}

TEST_F(FileCommandTest, InsertWithTwoScalesAndAttributesThatAreNotAskedFor) {
    run("(entmake '((0 . \"BLOCK\") (2 . \"POLE\") (70 . 2) (10 0.0 0.0 0.0)))"
        "(entmake '((0 . \"ATTDEF\") (10 0.0 0.0 0.0) (40 . 0.2) (1 . \"CITY\") (3 . \"\") (2 . \"OWNER\") "
        "(70 "
        ". 8)))"
        "(entmake '((0 . \"ATTDEF\") (10 0.0 1.0 0.0) (40 . 0.2) (1 . \"\") (3 . \"\") (2 . \"NUMBER\") (70 "
        ". "
        "0)))"
        "(entmake '((0 . \"ENDBLK\")))"
        "(command \"_.INSERT\" \"POLE\" \"0,0\" 2 3 0 \"17\")");
    EXPECT_EQ(attributes(), "((\"OWNER\" \"CITY\") (\"NUMBER\" \"17\"))");
    EXPECT_EQ(run("(mapcar '(lambda (c) (cdr (assoc c (entget (entlast))))) '(41 42 43))"), "(2.0 3.0 2.0)");
}

TEST_F(FileCommandTest, InsertOtherDrawings) {
    makeTreeBlock();
    run("(command \"_.LAYER\" \"_M\" \"PLANTS\" \"_C\" 3 \"\" \"\") (command \"_.INSERT\" \"TREE\" \"5,5\" 1 "
        "1 0 \"ELM\" \"9\")"
        "(command \"_.SAVE\" (strcat dir \"garden.dxf\")) (setvar \"ATTREQ\" 0)");
    host_.newDrawing();
    // As the tool does that wants only the definition.
    run("(setq before (entlast)) (command \"_.INSERT\" (strcat dir \"garden.dwg\") '(0.0 0.0 0.0) 1.0 1.0 "
        "0.0)"
        "(entdel (entlast))");
    EXPECT_EQ(run("(entlast)"), "nil");
    EXPECT_EQ(run("(cdr (assoc 2 (tblsearch \"BLOCK\" \"GARDEN\")))"), "\"garden\"");
    EXPECT_EQ(run("(cdr (assoc 2 (tblsearch \"BLOCK\" \"TREE\")))"), "\"TREE\"");
    EXPECT_EQ(run("(cdr (assoc 62 (tblsearch \"LAYER\" \"PLANTS\")))"), "3");
    run("(command \"_.INSERT\" \"garden\" \"0,0\" 1 1 0)");
    EXPECT_EQ(
        run("(setq e (cdr (assoc -2 (tblsearch \"BLOCK\" \"GARDEN\")))) (list (cdr (assoc 2 (entget e)))"
            " (cdr (assoc 1 (entget (entnext e)))))"),
        "(\"TREE\" \"ELM\")");
    // The same file again, under a name, in place of what the block was.
    run("(command \"_.INSERT\" (strcat \"TREE=\" dir \"garden.dxf\") \"0,0\" 1 1 0)");
    EXPECT_EQ(run("(cdr (assoc 0 (entget (cdr (assoc -2 (tblsearch \"BLOCK\" \"TREE\"))))))"), "\"INSERT\"");
}

TEST_F(FileCommandTest, SaveAndOpen) {
    run("(command \"_.POINT\" \"1,2\") (command \"_.SAVEAS\" \"_R12\" \"\" (strcat dir \"one\"))");
    EXPECT_EQ(run("(list (getvar \"DWGNAME\") (= (getvar \"DWGPREFIX\") dir) (getvar \"DBMOD\"))"),
              "(\"one.dxf\" T 0)");
    std::string error;
    auto saved = readDxf(folder_ + "one.dxf", error);
    ASSERT_TRUE(saved) << error;
    EXPECT_EQ(saved->version(), DrawingVersion::R12);
    run("(command \"_.POINT\" \"3,4\") (command \"_.SAVE\" (strcat dir \"copy.dxf\"))");
    EXPECT_EQ(run("(list (getvar \"DWGNAME\") (getvar \"DBMOD\"))"), "(\"one.dxf\" 1)");
    // Changes are not thrown away without a question.
    run("(command \"_.OPEN\" \"_N\")");
    EXPECT_EQ(count(""), "2");
    run("(command \"_.OPEN\" \"_Y\" (strcat dir \"one\"))");
    EXPECT_EQ(count(""), "1");
    run("(command \"_.POINT\" \"3,4\") (command \"_.QSAVE\") (command \"_.NEW\" \".\")");
    EXPECT_EQ(count(""), "0");
    run("(command \"_.OPEN\" (strcat dir \"one.dxf\"))");
    EXPECT_EQ(count(""), "2");
    said();
    run("(command \"_.OPEN\" (strcat dir \"none.dxf\"))");
    EXPECT_NE(said().find("There is no file"), std::string::npos);
    std::ofstream(folder_ + "bad.dxf") << "no drawing\n";
    run("(command \"_.OPEN\" (strcat dir \"bad.dxf\"))");
    EXPECT_NE(said().find("Cannot open"), std::string::npos);
    EXPECT_EQ(count(""), "2");
    // What was mended is told.
    std::ofstream(folder_ + "mended.dxf") << "0\nSECTION\n2\nENTITIES\n0\nEOF\n";
    run("(command \"_.OPEN\" (strcat dir \"mended.dxf\"))");
    EXPECT_NE(said().find("mended.dxf: Line 6: section ENTITIES has no end.\n"), std::string::npos);
    run("(command \"_.OPEN\" (strcat dir \"one.dxf\"))");
    run("(command \"_.SAVEAS\" \"\" (strcat dir \"x.dwg\"))");
    EXPECT_NE(said().find("DXF only"), std::string::npos);
    run("(command \"_.SAVEAS\" \"\" (strcat dir \"copy.dxf\") \"_N\")");
    EXPECT_EQ(run("(getvar \"DWGNAME\")"), "\"one.dxf\"");
    run("(command \"_.POINT\" \"5,6\")");
    answer("n");
    said();
    host_.runLine("open");  // typed, as by a person
    EXPECT_NE(said().find("Discard them?"), std::string::npos);
    EXPECT_EQ(count(""), "3");
    run("(command \"_.SAVEAS\" \"\" \"/nowhere/at/all.dxf\")");
    EXPECT_NE(said().find("Cannot save"), std::string::npos);
    run("(command \"_.QUIT\" \"_Y\")");
    EXPECT_TRUE(host_.wantsQuit());
}

TEST_F(FileCommandTest, CopiesThatACrashHasLeftComeNewestFirst) {
    namespace fs = std::filesystem;
    const auto now = fs::file_time_type::clock::now();
    for (int age : {2, 1, 3}) {
        const std::string copy = folder_ + std::to_string(age) + "-1-a.dxf";
        std::ofstream(copy) << "x";
        fs::last_write_time(copy, now - std::chrono::hours(age));
    }
    KeptCopies copies;
    copies.setFolder(folder_);
    std::string names;
    for (const KeptCopies::LeftBehind& left : copies.leftBehind()) names += files::nameOf(left.copy)[0];
    EXPECT_EQ(names, "123");
}

}  // namespace
}  // namespace hostcad
