// The commands of gis.lsp as a person types them: what they propose, ask and say.
#include "tests/module/module_fixture.h"

namespace {

// Entities are picked by the symbol `ent`; answers of prompts come from a queue.
class Commands : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        ASSERT_EQ(lisp("(load \"" NORVANE_SOURCE_DIR "/product/gis.lsp\")").rfind("error", 0),
                  std::string::npos);
        makeTemplate();
        lisp("(cf:gis_smart_prompting 2 1 " + quoted("template.mdb") + ")");
        lisp("(cf:gis_smart_prompting 2 2 " + quoted("output.mdb") + ")");
        lisp("(defun entsel (text) (setq asked text) (list ent '(0.0 0.0)))");
        printed();
    }
    // An entity of a type on a layer, with more groups of its own; in `ent`.
    void makeOn(const std::string& layer, const std::string& groups = "(0 . \"POINT\") (10 1.0 2.0 3.0)") {
        lisp("(setq ent (entmakex '(" + groups + " (8 . \"" + layer + "\"))))");
        ASSERT_NE(lisp("ent"), "nil");
    }
    std::string handle() { return lisp("(cdr (assoc 5 (entget ent)))"); }
    std::string bareHandle() {
        std::string text = handle();
        return text.substr(1, text.size() - 2);
    }
};

}  // namespace

TEST_F(Commands, TheFeatureIsProposedByTheLayerWithOrWithoutAnS) {
    struct {
        const char* layer;
        const char* feature;
    } cases[] = {{"tree", "TREE"},
                 {"TREES", "TREE"},
                 {"Manhole", "MANHOLE"},
                 {"ROADS", "(no feature)"},
                 {"0", "(no feature)"}};
    for (const auto& c : cases) {
        makeOn(c.layer);
        ui_.clearLog();
        answer(134, {show(), click("Cancel")});
        lisp("(c:gis-prompt)");
        EXPECT_TRUE(shown(std::string("drop-down \"") + c.feature + "\" of")) << c.layer;
        EXPECT_NE(printed().find("Nothing was saved."), std::string::npos);
    }
}

// A survey point is what it is described as, in any case and with digits behind; another block what its name
// says, before its layer.
TEST_F(Commands, TheFeatureOfABlockIsItsDescriptionOrItsName) {
    const auto block = [&](const std::string& name) {
        lisp("(progn (entmake '((0 . \"BLOCK\") (2 . \"" + name +
             "\") (70 . 2) (10 0.0 0.0 0.0)))"
             "(entmake '((0 . \"POINT\") (10 0.0 0.0 0.0))) (entmake '((0 . \"ENDBLK\"))))");
    };
    const auto point = [&](const std::string& description) {
        lisp(
            "(progn (entmake '((0 . \"INSERT\") (2 . \"SRVPNO1\") (66 . 1) (8 . \"MANHOLES\") (10 1.0 2.0 "
            "3.0)))"
            "(entmake '((0 . \"ATTRIB\") (2 . \"PT#\") (1 . \"17\") (70 . 0) (10 1.0 2.0 3.0) (40 . 1.0)))"
            "(entmake '((0 . \"ATTRIB\") (2 . \"DESC2\") (1 . \"" +
            description +
            "\") (70 . 0) (10 1.0 2.0 3.0) (40 . 1.0)))"
            "(entmake '((0 . \"SEQEND\"))) (setq ent (entlast)))");
        ASSERT_EQ(lisp("(cdr (assoc 0 (entget ent)))"), "\"INSERT\"");
    };
    const auto proposed = [&](const std::string& feature) {
        ui_.clearLog();
        answer(134, {show(), click("Cancel")});
        lisp("(c:gis-prompt)");
        return shown("drop-down \"" + feature + "\" of");
    };
    block("SRVPNO1"), block("Poles"), block("X");
    for (const char* description : {"TREE", "tree", "Tree", "tree12"}) {
        point(description);
        EXPECT_TRUE(proposed("TREE")) << description;
    }
    point("oak");
    EXPECT_TRUE(proposed("(no feature)")) << "and never the first of the template";
    EXPECT_NE(printed().find("The feature oak is not defined"), std::string::npos);
    makeOn("MANHOLE", "(0 . \"INSERT\") (2 . \"Poles\") (10 1.0 2.0 3.0)");
    EXPECT_TRUE(proposed("POLE"));
    makeOn("MANHOLE", "(0 . \"INSERT\") (2 . \"X\") (10 1.0 2.0 3.0)");
    EXPECT_TRUE(proposed("MANHOLE"));
}

TEST_F(Commands, ASurveyPointHasItsNumberAsKeyAndItsDescriptionAsFeature) {
    lisp(
        "(entmake '((0 . \"BLOCK\") (2 . \"SRVPNO1\") (70 . 2) (10 0.0 0.0 0.0))) (entmake '((0 . "
        "\"ENDBLK\")))"
        "(entmake '((0 . \"INSERT\") (2 . \"SRVPNO1\") (66 . 1) (10 7.0 8.0 9.0)))"
        "(entmake '((0 . \"ATTRIB\") (10 0.0 0.0 0.0) (40 . 1.0) (1 . \"1042\") (2 . \"PT#\") (70 . 0)))"
        "(entmake '((0 . \"ATTRIB\") (10 0.0 0.0 0.0) (40 . 1.0) (1 . \"tree\") (2 . \"DESC2\") (70 . 0)))"
        "(entmake '((0 . \"SEQEND\"))) (setq ent (entlast))");
    answer(134, {cell(2, "14"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_EQ(sqlite("output.mdb", "select PT_ID, GIS_KEY, NORTHING, EASTING, ELEVATION from TREE"),
              "1042|TREE|8|7|9\n");
    EXPECT_NE(link().find("\"1042\""), std::string::npos) << link();
}

TEST_F(Commands, ASaveIsCalledLinkedOnlyWhenItIs) {
    makeOn("TREE");
    answer(134, {cell(2, "14"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_NE(printed().find("The record is saved and linked."), std::string::npos);
    EXPECT_EQ(sqlite("output.mdb", "select PT_ID, GIS_KEY from TREE"), bareHandle() + "|TREE\n");

    // The host refuses the link: its application cannot be registered on an entity that goes before it is
    // written.
    makeOn("TREE");
    lisp("(defun gis:link (entity) nil)");
    answer(134, {cell(2, "14"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_NE(printed().find("could not be linked"), std::string::npos);
}

TEST_F(Commands, AnEntityThatLosesItsLinkSaysThatItsRecordStays) {
    const std::string one = "\nThe link of 1 entity is gone; its record stays in the database.\n";
    const auto said = [&](const std::string& line) {
        printed();
        host_->runLine(line);
        const std::string all = printed();
        const size_t at = all.find("\nThe link");
        return at == std::string::npos ? std::string() : all.substr(at);
    };
    makeOn("TREE");
    answer(134, {cell(2, "14"), click("OK")});
    EXPECT_EQ(said("GIS-PROMPT"), "");
    ASSERT_NE(link(), "nil");
    EXPECT_EQ(said("U"), one);
    EXPECT_EQ(said("REDO"), "") << "it has its link again";
    EXPECT_EQ(said("(command \"_.ERASE\" ent \"\")"), one);
    EXPECT_EQ(said("U"), "");
    EXPECT_EQ(said("(entmod (list (cons -1 ent) (list -3 (list \"ZGEO_GIS_2000\"))))"), one);
    EXPECT_EQ(said("U"), "");
    lisp("(setq data (entget ent '(\"ZGEO_GIS_2000\"))) (entmake data)");
    EXPECT_EQ(said("(command \"_.ERASE\" (entlast) ent \"\")"),
              "\nThe links of 2 entities are gone; their records stay in the database.\n");
    EXPECT_EQ(said("(command \"_.POINT\" '(1.0 2.0 3.0))"), "");
    // Another drawing takes nothing with it that has not been lost.
    EXPECT_EQ(said("U"), "");
    EXPECT_EQ(said("U"), "");
    host_->newDrawing();
    EXPECT_EQ(said("(princ)"), "");
    EXPECT_EQ(sqlite("output.mdb", "select count(*) from TREE"), "1\n");
}

TEST_F(Commands, ALinkedEntityComesBackToItsFeature) {
    makeOn("LINES");
    answer(134, {pick("1106", "POLE"), cell(1, "P-100"), cell(5, "35"), click("OK")});
    lisp("(c:gis-prompt)");
    ASSERT_NE(link().find("POLE"), std::string::npos) << link() << printed();
    ui_.clearLog();
    answer(134, {show(), click("Cancel")});
    lisp("(c:gis-prompt)");
    EXPECT_TRUE(shown("drop-down \"POLE\" of"));
    EXPECT_TRUE(shown("P-100"));
}

TEST_F(Commands, AMissingOutputOfALinkedEntityIsAskedFor) {
    makeOn("TREE");
    answer(134, {cell(2, "14"), click("OK")});
    lisp("(c:gis-prompt)");
    fs::remove(path("output.mdb"));
    ui_.answerQuestion("Output database is missing", "No");
    lisp("(c:gis-prompt)");
    EXPECT_FALSE(fs::exists(path("output.mdb"))) << "the sheet was not opened";
    // Who does not know the question gets what has always been done.
    answer(134, {cell(2, "15"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_EQ(sqlite("output.mdb", "select DBH from TREE"), "15\n");
    // An entity without a link makes its output with the first save, unasked.
    fs::remove(path("output.mdb"));
    makeOn("TREE");
    ui_.clearLog();
    answer(134, {cell(2, "16"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_FALSE(shown("is missing"));
}

TEST_F(Commands, ARecordUnderTheHandleOfAnotherEntityIsAskedFor) {
    makeOn("TREE");
    answer(134, {cell(2, "14"), click("OK")});
    lisp("(c:gis-prompt)");
    const std::string key = bareHandle();
    const std::string table = "select PT_ID, DBH from TREE order by PT_ID";

    // Another drawing: the same handle, and no link.
    ASSERT_EQ(host_->newDrawing(), "");
    makeOn("TREE");
    ASSERT_EQ(bareHandle(), key);
    ui_.answerQuestion("A record is there", "No");
    answer(134, {cell(2, "20"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_EQ(sqlite("output.mdb", table), key + "|14\n" + key + "-2|20\n");
    EXPECT_NE(link().find("\"" + key + "-2\""), std::string::npos) << link();

    // The sheet comes back to the record of the link.
    answer(134, {cell(2, "21"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_EQ(sqlite("output.mdb", table), key + "|14\n" + key + "-2|21\n");
    answer(134, {cell(2, "20"), click("OK")});
    lisp("(c:gis-prompt)");

    ASSERT_EQ(host_->newDrawing(), "");
    makeOn("TREE");
    ui_.answerQuestion("A record is there", "No");
    answer(134, {cell(2, "30"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_EQ(sqlite("output.mdb", table), key + "|14\n" + key + "-2|20\n" + key + "-3|30\n");

    // Without an answer it is that record, as it has always been.
    ASSERT_EQ(host_->newDrawing(), "");
    makeOn("TREE");
    answer(134, {cell(2, "40"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_EQ(sqlite("output.mdb", table), key + "|40\n" + key + "-2|20\n" + key + "-3|30\n");
}

TEST_F(Commands, APointThatWasDrawnForNothingGoes) {
    lisp("(setq picks '(\"Point\"))");
    lisp("(defun entsel (text / pick) (setq pick (car picks) picks (cdr picks)) pick)");
    lisp("(defun gis:draw-point () (entmakex '((0 . \"POINT\") (10 1.0 2.0 3.0))))");
    const std::string before = lisp("(sslength (cond ((ssget \"_X\" '((0 . \"POINT\")))) ((ssadd))))");
    answer(134, {click("Cancel")});
    lisp("(c:gis-prompt)");
    EXPECT_EQ(lisp("(sslength (cond ((ssget \"_X\" '((0 . \"POINT\")))) ((ssadd))))"), before);
    lisp("(setq picks '(\"Point\"))");
    answer(134, {pick("1106", "TREE"), cell(2, "14"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_EQ(lisp("(sslength (ssget \"_X\" '((0 . \"POINT\"))))"), "1");
}

TEST_F(Commands, BlocksAreDrawnFromRecords) {
    answer(164, {click("Exit")});
    lisp("(c:gis-blocks)");
    EXPECT_TRUE(shown("dialog 164: Insert Blocks Using GIS Data"));
}

TEST_F(Commands, ShapesGoOutToASetThatIsAskedFor) {
    lisp("(entmake '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 3.0 4.0 0.0)))");
    ui_.answerFile(path("lines.shp"));
    inputs_ = {"ALL", ""};
    answer(147, {{ui::Step::Kind::Check, "Export All"}, click("OK")});
    EXPECT_EQ(lisp("(c:gis-export)"), "");
    EXPECT_TRUE(fs::exists(path("lines.shp")));
    // Kind and heights are asked for where there is no dialog.
    ui_.answerFile(path("spatial.shp"));
    inputs_ = {"ALL", "", "Lines", "Yes"};
    printed();
    lisp("(c:gis-exportset)");
    EXPECT_NE(printed().find("\n1 line written to spatial.shp"), std::string::npos);
    EXPECT_EQ(read("spatial.shp")[32], 13);
    ui_.answerFile("");
    lisp("(c:gis-export)");
}

TEST_F(Commands, ALinkIsFollowedThoughItsFolderHasMoved) {
    makeOn("TREE");
    answer(134, {cell(2, "14"), click("OK")});
    lisp("(c:gis-prompt)");
    const std::string key = bareHandle();
    ASSERT_EQ(host_->saveDrawing(path("job.dxf")), "");
    auto found = [&](const std::string& output, const std::string& more = "") {
        return lisp("(assoc \"DBH\" (link-record (list \"C:\\\\jobs\\\\template.mdb\" \"" + output +
                    "\" \" TREE \" \"PT_ID\" \"" + key + " \"" + more + ")))");
    };
    EXPECT_EQ(found("C:\\\\jobs\\\\output.mdb"), "(\"DBH\" . \"14\")");
    EXPECT_EQ(found(path("output.mdb"), " \"six\""), "(\"DBH\" . \"14\")") << "more strings than five";
    EXPECT_EQ(
        lisp("(caar (link-record (list \"t.mdb\" \"/old/output.mdb\" \"TREE\" \"PT_ID\" \"" + key + "\")))"),
        "\"(read beside the drawing)\"");
}

TEST_F(Commands, TheSheetFindsTheFilesOfAJobThatHasMoved) {
    fs::create_directory(path("job"));
    fs::rename(path("template.mdb"), path("job/template.mdb"));
    lisp("(cf:gis_smart_prompting 2 1 " + quoted("job/template.mdb") + ")");
    lisp("(cf:gis_smart_prompting 2 2 " + quoted("job/output.mdb") + ")");
    makeOn("TREE");
    answer(134, {cell(2, "14"), click("OK")});
    lisp("(c:gis-prompt)");
    const std::string linked = link(), entity = handle();
    ASSERT_NE(linked.find(path("job/output.mdb")), std::string::npos) << linked;
    ASSERT_EQ(host_->saveDrawing(path("job/job.dxf")), "");
    fs::rename(path("job"), path("moved"));
    ASSERT_EQ(host_->openDrawing(path("moved/job.dxf")), "");
    lisp("(setq ent (handent " + entity + "))");
    ASSERT_EQ(link(), linked);

    printed();
    ui_.clearLog();
    answer(134, {show(), cell(2, "15"), click("OK")});
    lisp("(c:gis-prompt)");
    EXPECT_TRUE(shown("14")) << "the record is not looked up beside the drawing";
    EXPECT_TRUE(shown(path("moved/output.mdb")));
    const std::string said = printed();
    EXPECT_NE(said.find("from beside the drawing: " + path("moved/output.mdb")), std::string::npos) << said;
    EXPECT_NE(said.find("saved and linked"), std::string::npos) << said;
    EXPECT_EQ(sqlite("moved/output.mdb", "select DBH from TREE"), "15\n");
    EXPECT_EQ(link(), linked) << "nothing in the link changes";
    EXPECT_FALSE(fs::exists(path("job")));
    // A file of another name is another file.
    fs::rename(path("moved/output.mdb"), path("moved/records.mdb"));
    ui_.answerQuestion("Output database is missing", "No");
    lisp("(c:gis-prompt)");
    EXPECT_EQ(link(), linked);
}
