// Points of coordinate files as Lisp and the commands reach them, and as they are drawn.
#include "tests/hostcad/independent_reader.h"
#include "tests/module/transfer/import_fixture.h"

namespace {

class Points : public ImportTest {
  protected:
    void SetUp() override {
        ImportTest::SetUp();
        ASSERT_EQ(lisp("(load \"" NORVANE_SOURCE_DIR "/product/gis.lsp\")").rfind("error", 0),
                  std::string::npos);
        file_ = quoted("job.crd");
    }
    std::string put(const std::string& arguments) {
        return lisp("(gis:write-point " + file_ + " " + arguments + ")");
    }
    // Runs GIS-POINTS on the file with these answers, each for one prompt; what it says.
    std::string run(const std::string& answers) {
        answer(1481, {click("Existing")});
        ui_.answerFile(path("job.crd"));
        printed();
        lisp("(setq typed '(" + answers +
             "))"
             "(defun gis:typed (/ one) (setq one (car typed) typed (cdr typed)) one)"
             "(defun getkword (q) (gis:typed)) (defun getreal (q) (gis:typed))"
             "(defun getstring (f q) (gis:typed))");
        EXPECT_EQ(lisp("(c:gis-points)"), "");
        EXPECT_EQ(lisp("typed"), "nil");
        return printed();
    }
    // The text of an attribute of each survey point in the drawing, in the order of the points.
    std::string drawn(const std::string& tag) {
        return lisp(
            "(progn (setq e (entnext) all nil) (while e (if (= (cdr (assoc 2 (entget e))) \"" + tag +
            "\") (setq all (append all (list (cdr (assoc 1 (entget e))))))) (setq e (entnext e))) all)");
    }
    std::string file_;
};

}  // namespace

TEST_F(Points, LispReadsWritesAndDeletesThem) {
    EXPECT_EQ(lisp("(gis:points " + file_ + " \"ALL\")"), "nil");
    EXPECT_FALSE(fs::exists(path("job.crd")));
    EXPECT_EQ(lisp("(gis:next-point " + file_ + ")"), "\"1\"");
    EXPECT_EQ(put("\"1\" 100.0 200.0 \"IP FND\" 12.345"), "\"1\"");
    EXPECT_EQ(put("\"a-2\" 101.0 201.0 \"EP\""), "\"A_2\"");
    EXPECT_EQ(put("\"b3\" 102.0 202.0 \"EP\" 0.0"), "\"B3\"");
    EXPECT_EQ(
        lisp("(gis:points " + file_ + " \"ALL\")"),
        "((\"1\" 100.0 200.0 12.345 \"IP FND\") (\"A_2\" 101.0 201.0 nil \"EP\") (\"B3\" 102.0 202.0 0.0 "
        "\"EP\"))");
    EXPECT_EQ(lisp("(mapcar 'car (gis:points " + file_ + " '(\"b3\" \"zz\" \"1\")))"), "(\"B3\" \"1\")");
    EXPECT_EQ(lisp("(gis:next-point " + file_ + ")"), "\"B4\"");
    EXPECT_EQ(put("\"ALONGNAME10\" 1.0 2.0 \"\""), "nil");
    EXPECT_EQ(lisp("(gis:delete-points " + file_ + " \"1,B3\")"), "2");
    EXPECT_EQ(lisp("(gis:delete-points " + file_ + " \"1\")"), "0");
    EXPECT_EQ(lisp("(mapcar 'car (gis:points " + file_ + " \"ALL\"))"), "(\"A_2\")");
    // A file that is no point file of ours, and calls without their arguments.
    EXPECT_EQ(lisp("(gis:points " + quoted("") + " \"ALL\")"), "nil");
    for (const char* call : {"(gis:points)", "(gis:write-point)", "(gis:delete-points)"})
        EXPECT_EQ(lisp(call), "nil") << call;
}

TEST_F(Points, AreDrawnWithTheirTexts) {
    put("\"1\" 100.0 200.0 \"IP FND\" 12.345");
    put("\"2\" 101.0 201.0 \"EP\"");
    EXPECT_EQ(lisp("(gis:draw-points (gis:points " + file_ + " \"ALL\"))"), "2");
    EXPECT_EQ(drawn("PT#"), "(\"1\" \"2\")");
    EXPECT_EQ(drawn("ELEV2"), "(\"12.35\" \"\")");
    EXPECT_EQ(drawn("DESC2"), "(\"IP FND\" \"EP\")");
    EXPECT_EQ(
        lisp("(progn (setq e (entnext)) (list (cdr (assoc 8 (entget e))) (cdr (assoc 10 (entget e)))))"),
        "(\"POINTS\" (200.0 100.0 12.345))");
    if (!ezdxfIsInstalled()) return;
    const TemporaryFolder folder;
    lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" \"" + (folder / "points.dxf") + "\")");
    EXPECT_EQ(auditOf(folder, folder / "points.dxf"), "");
}

TEST_F(Points, ADrawingKeepsItsOwnBlockOfPoints) {
    ASSERT_NE(lisp("(command \"_.OPEN\" \"" NORVANE_SOURCE_DIR "/samples/survey.dxf\")"), "");
    put("\"901\" 100.0 200.0 \"IP FND\" 12.345");
    const int before = count("INSERT");
    EXPECT_EQ(lisp("(gis:draw-points (gis:points " + file_ + " \"ALL\"))"), "1");
    EXPECT_EQ(count("INSERT"), before + 1);
    // Where its definition puts them, on the layers of its own.
    EXPECT_EQ(
        lisp("(progn (setq e (entlast) d (entget (entnext e))) (list (cdr (assoc 8 d)) (cdr (assoc 10 d)) "
             "(cdr (assoc 40 d)) (cdr (assoc 7 d))))"),
        "(\"PT-NUM\" (202.0 102.5 12.345) 3.0 \"ROMANS\")");
}

TEST_F(Points, TheCommandListsAddsCorrectsAndDraws) {
    put("\"1\" 100.0 200.0 \"IP FND\" 12.345");
    std::string said =
        run("\"Add\" \"7\" 5.0 6.0 nil \"NAIL\" \"Correct\" \"1\" nil 201.0 \"None\" \"\" "
            "\"List\" \"\" \"dRaw\" \"1\"");
    EXPECT_NE(said.find("Point 7 is written."), std::string::npos) << said;
    EXPECT_NE(
        said.find("\n1  N 100.000  E 201.000  Z none  IP FND\n7  N 5.000  E 6.000  Z none  NAIL\n2 points."),
        std::string::npos)
        << said;
    EXPECT_NE(said.find("\n1 point drawn on POINTS."), std::string::npos) << said;
    said = run("\"Add\" \"7\" \"Correct\" \"8\"");
    EXPECT_NE(said.find("Point 7 is there already"), std::string::npos) << said;
    EXPECT_NE(said.find("There is no point 8."), std::string::npos) << said;
}

TEST_F(Points, NothingIsDeletedUnasked) {
    for (const char* name : {"1", "2", "3"}) put(std::string("\"") + name + "\" 1.0 2.0 \"\"");
    EXPECT_NE(run("\"Delete\" \"1-2\"").find("Nothing was deleted."), std::string::npos);
    EXPECT_TRUE(shown("Do you want to delete 2 points of"));
    ui_.answerQuestion("Delete points", "Yes");
    EXPECT_NE(run("\"Delete\" \"1-2\"").find("2 points deleted."), std::string::npos);
    EXPECT_EQ(points("job.crd").size(), 1u);
    EXPECT_NE(run("\"Delete\" \"9\"").find("There are no such points."), std::string::npos);
}

TEST_F(Points, ANewFileHasTheFormThatIsAskedFor) {
    lisp("(setq new_crdform 4)");
    run("\"Numbers\" \"Add\" \"\" 5.0 6.0 7.0 \"NAIL\" \"Add\" \"X1\" 5.0 6.0 7.0 \"\"");
    EXPECT_EQ(read("job.crd").size(), 112u);  // a header and a slot
    EXPECT_EQ(lisp("new_crdform"), "4");
}

TEST_F(Points, AnImportDrawsThem) {
    makeSet("shots", norvane::shape::kPointZ, {{"PT_ID"}},
            {{{{200, 100, 12.345}}, {"A1"}}, {{{1, 2, 3}}, {"B1"}}});
    lisp("(cf:gis_smart_prompting 2 1 " + quoted("template.mdb") + ")");
    printed();
    ui_.answerFile(path("shots.shp"));
    ui_.answerBox("Yes");
    answer(148, {click("Select SHP File"), import()});
    lisp("(c:gis-import)");
    EXPECT_EQ(drawn("PT#"), "(\"A1\" \"B1\")");
    EXPECT_EQ(drawn("DESC2"), "(\"SHOTS\" \"SHOTS\")");
    EXPECT_NE(printed().find("\n2 points drawn on POINTS."), std::string::npos);
    // Each is linked to its record.
    EXPECT_EQ(output("select PT_ID from SHOTS"), "A1\nB1\n");
    const std::string drawnBlock = "(setq ent (ssname (ssget \"X\" '((0 . \"INSERT\"))) ";
    for (const char* id : {"A1", "B1"}) {
        lisp(drawnBlock + (id[0] == 'A' ? "0))" : "1))"));
        EXPECT_EQ(link(), "((\"ZGEO_GIS_2000\" (1002 . \"{\") (1000 . " + quoted("template.mdb") +
                              ") (1000 . " + quoted("output.mdb") +
                              ") (1000 . \"SHOTS\") (1000 . \"PT_ID\") (1000 . \"" + id +
                              "\") (1002 . \"}\")))");
    }
}

TEST_F(Points, AnIndexedFileGetsThemToo) {
    lisp("(setq new_crdform 4)");
    put("\"A1\" 100.0 200.0 \"IP FND\" 12.345");
    ASSERT_TRUE(fs::exists(path("job.idx")));
    makeSet("job", norvane::shape::kPointZ, {{"PT_ID"}}, {{{{1, 2, 3}}, {"A1"}}, {{{4, 5, 6}}, {"B1"}}});
    ui_.answerFile(path("job.shp"));
    ui_.answerBox("No");  // the file stays
    ui_.answerBox("Yes");
    answer(148, {click("Select SHP File"), import()});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 11)"), "(\"A2\" \"B1\")");
    EXPECT_EQ(
        lisp("(gis:points " + file_ + " \"ALL\")"),
        "((\"A1\" 100.0 200.0 12.345 \"IP FND\") (\"A2\" 2.0 1.0 3.0 \"JOB\") (\"B1\" 5.0 4.0 6.0 \"JOB\"))");
    EXPECT_FALSE(fs::exists(path("job_.crd")));
    EXPECT_FALSE(fs::exists(path("job_.idx")));
}
