// Texts and legends that are made of labels and colours, from the Lisp function to a drawing that another
// program reads.
#include <algorithm>

#include "tests/module/annotation/annotation_fixture.h"

namespace {

class Texts : public Annotation {
  protected:
    void SetUp() override {
        Annotation::SetUp();
        makeLots();
        lisp("(gis:set-labels \"TREE\" \"SPECIES\nAGE\" 2) (gis:set-labels \"LOT\" \"OWNER\")");
        printed();
    }
    std::string make(const std::string& arguments) {
        printed();
        step("(gis:make-texts " + arguments + ")");
        return printed();
    }
    std::string update(const std::string& arguments = "") {
        printed();
        step("(gis:update-texts " + arguments + ")");
        return printed();
    }
    // What another program reads in the drawing: a line for each text, and one for each solid.
    std::string drawn(const std::string& layer) {
        lisp("(command \"_.SAVEAS\" \"_R2004\" \"\" " + quoted("texts.dxf") + " \"_Y\")");
        printed();
        return outputOf("/usr/bin/python3 '" NORVANE_SOURCE_DIR "/tests/module/annotation/read_texts.py' '" +
                        path("texts.dxf") + "' " + layer + " 2>&1");
    }
    // The strings of all texts on a layer, sorted.
    std::string strings(const std::string& layer = "TREE-LABELS") {
        lisp("(setq found nil number 0 set (ssget \"X\" '((0 . \"TEXT\") (8 . \"" + layer +
             "\")))) (repeat (if set (sslength set) 0) (setq found (cons (cdr (assoc 1 (entget (ssname set "
             "number)))) found) number (1+ number)))");
        return lisp("(vl-sort found '<)");
    }
};

}  // namespace

TEST_F(Texts, AreMadeAtTheirEntities) {
    EXPECT_EQ(make("\"TREE\""),
              "\nTexts of TREE: 8 made, 0 changed; 1 entity without a record; 1 record says nothing.");
    EXPECT_EQ(make("\"LOT\" \"Owners\" 1.5"), "\nTexts of LOT: 2 made, 0 changed.");
    const std::string trees = drawn("TREE-LABELS");
    EXPECT_EQ(std::count(trees.begin(), trees.end(), '\n'), 9) << trees;
    // Beside the point, two lines of height 2 about its height, the first above the second.
    EXPECT_NE(trees.find("Oak at 2,1.6 height 2 turned 0 aligned 0/2 mark TREE 0 of POINT 1,0\n"),
              std::string::npos)
        << trees;
    EXPECT_NE(trees.find("40 at 2,-1.6 height 2 turned 0 aligned 0/2 mark TREE 1 of POINT 1,0\n"),
              std::string::npos)
        << trees;
    EXPECT_TRUE(trees.ends_with("faults 0\n")) << trees;
    const std::string lots = drawn("OWNERS");
    EXPECT_NE(lots.find("Smith at 20,20 height 1.5 turned 0 aligned 1/2 mark LOT 0 of LWPOLYLINE"),
              std::string::npos)
        << lots;
    // Along the line, over it by half the height: 5,55 and 0.75 across.
    EXPECT_NE(lots.find("Ford at 4.46967,55.53033 height 1.5 turned 45 aligned 1/1 mark LOT 0 of LINE"),
              std::string::npos)
        << lots;
    EXPECT_EQ(make("\"TREE\""),
              "\nTexts of TREE: 0 made, 0 changed; 4 entities have their texts already; 1 entity "
              "without a record; 1 record says nothing.");
    undo();
    undo();
    EXPECT_EQ(lisp("(ssget \"X\" '((8 . \"Owners\")))"), "nil") << "one undo takes back a run";
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((8 . \"TREE-LABELS\"))))"), "8");
}

// An entity of a sheet gets its text there.
TEST_F(Texts, StandInTheSpaceOfTheirEntities) {
    lisp("(entmake (list '(0 . \"POINT\") '(67 . 1) '(10 7.0 0.0 0.0) (to \"TREE\" \"99\")))");
    make("\"TREE\"");
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((8 . \"TREE-LABELS\") (67 . 1))))"), "2");
    EXPECT_EQ(drawn("TREE-LABELS").find("Elm"), std::string::npos) << "not in the model";
}

TEST_F(Texts, FollowTheRecordsInTheirPlace) {
    make("\"TREE\"");
    // A person has moved one, and turned another.
    lisp(
        "(setq set (ssget \"X\" '((1 . \"Fir\"))) fir (ssname set 0)) (entmod (subst '(11 100.0 50.0 0.0) "
        "(assoc 11 "
        "(entget fir)) (subst '(50 . 0.5) (assoc 50 (entget fir)) (entget fir))))");
    sql("update TREE set SPECIES = 'Larch', AGE = NULL where PT_ID = '4'");
    sql("update TREE set SPECIES = 'Ash\nmountain' where PT_ID = '1'");
    sql("update TREE set SPECIES = NULL, AGE = NULL where PT_ID = '2'");
    sql("update TREE set SPECIES = 'Yew' where PT_ID = '5'");
    EXPECT_EQ(update("\"TREE\""),
              "\nTexts of TREE: 2 made, 3 changed, 3 removed, 2 as they were; 1 entity without "
              "a record; 1 record says nothing.");
    EXPECT_EQ(strings(), "(\"120\" \"40\" \"Ash\" \"Larch\" \"OAK\" \"Yew\" \"mountain\")");
    const std::string texts = drawn("TREE-LABELS");
    EXPECT_NE(texts.find("Larch at 100,50 height 2 turned 28.6479 aligned 0/2"), std::string::npos) << texts;
    EXPECT_NE(texts.find("40 at 2,-4.8 height 2 turned 0 aligned 0/2 mark TREE 2 of POINT 1,0"),
              std::string::npos)
        << "the new line is below the others: " << texts;
    EXPECT_EQ(update(),
              "\nTexts of TREE: 0 made, 0 changed, 7 as they were; 1 entity without a record; 1 record "
              "says nothing.");
    undo();
    undo();
    EXPECT_EQ(strings(), "(\"120\" \"40\" \"40\" \"7\" \"Fir\" \"OAK\" \"Oak\" \"oak\")");
}

TEST_F(Texts, OfEntitiesThatAreGoneAreRemovedWhenAsked) {
    make("\"TREE\"");
    lisp("(entdel (at 1.0)) (entmod (append (entget (at 2.0)) (list (list -3 (list \"ZGEO_GIS_2000\")))))");
    sql("delete from TREE where PT_ID = '3'");
    EXPECT_EQ(update(),
              "\nTexts of TREE: 0 made, 0 changed, 2 as they were; 2 entities without a record; 1 record "
              "says nothing; 6 texts have lost their entities or records and stay.");
    EXPECT_TRUE(shown("6 texts of TREE have lost their entities, links or records."));
    ui_.answerQuestion("Update texts", "Yes");
    EXPECT_EQ(update(),
              "\nTexts of TREE: 0 made, 0 changed, 6 removed, 2 as they were; 2 entities without a "
              "record; 1 record says nothing.");
    EXPECT_EQ(strings(), "(\"40\" \"Fir\")");
}

TEST_F(Texts, StayWhenNobodyKnowsWhatIsRight) {
    make("\"TREE\"");
    fs::rename(path("output.mdb"), path("away.mdb"));
    EXPECT_EQ(update(), "\n" + path("output.mdb") + " is not there.\nThe texts of TREE stay as they are.");
    fs::rename(path("away.mdb"), path("output.mdb"));
    lisp("(gis:set-labels \"TREE\")");
    EXPECT_EQ(update(), "\nTREE has no labels any more: its texts stay as they are.");
    EXPECT_EQ(update("\"LOT\""), "\nThere are no texts that were made of labels.");
    EXPECT_EQ(make("\"TREE\""), "\nTREE has no labels to make texts of.");
    EXPECT_EQ(make("\"LOT\" \"a*b\""), "\n\"a*b\" cannot be the name of a layer.");
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((8 . \"TREE-LABELS\"))))"), "8");
}

// A program that keeps extended data and drops dictionaries has saved the drawing.
TEST_F(Texts, WhoseLabelsWereDroppedAreTold) {
    make("\"LOT\"");
    saveAndOpen();
    EXPECT_EQ(refresh(), "") << "the labels are there";
    lisp("(dictremove (namedobjdict) \"NORVANE_GIS\")");
    saveAndOpen();
    EXPECT_EQ(refresh(),
              "\nThe drawing has texts made of labels of LOT, but not the labels: files of R12 and some "
              "programs do not keep them. GIS-LABELS makes them anew.\n");
    EXPECT_EQ(refresh(), "") << "once";
    lisp("(gis:set-labels \"LOT\" \"OWNER\") (gis:set-labels \"LOT\")");
    saveAndOpen();
    EXPECT_EQ(refresh(), "") << "the user has taken them away";
}

TEST_F(Texts, AreCutToWhatADrawingTakes) {
    sql("drop table TREE");
    makeTrees("SPECIES MEMO");
    sql("update TREE set SPECIES = '" + std::string(9'999, 'x') + "', AGE = NULL where PT_ID = '1'");
    sql("update TREE set SPECIES = 'a\tb\r\nc', AGE = NULL where PT_ID = "
        "'2'");
    sql("delete from TREE where PT_ID in ('3', '4', '5')");
    EXPECT_EQ(make("\"TREE\""),
              "\nTexts of TREE: 3 made, 0 changed; 4 entities without a record; 1 line was cut to "
              "255 bytes.");
    EXPECT_EQ(strings(), "(\"a b\" \"c\" \"" + std::string(252, 'x') + "...\")");
    EXPECT_TRUE(update().starts_with("\nTexts of TREE: 0 made, 0 changed, 3 as they were;"));
}

TEST_F(Texts, AnswerTheCommandLine) {
    lisp("(load \"gis.lsp\")");
    lisp("(gis:set-labels \"TREE\" \"SPECIES\" 12 \"PIXELS\")");
    printed();
    inputs_ = {"shrub", "", "Trees", "0.5"};
    lisp("(c:gis-maketexts)");
    const std::string said = printed();
    EXPECT_NE(said.find("Feature (LOT, TREE) <LOT>"), std::string::npos) << said;
    EXPECT_NE(said.find("SHRUB is none of them."), std::string::npos) << said;
    EXPECT_TRUE(said.ends_with("\nTexts of LOT: 2 made, 0 changed.")) << said;
    inputs_ = {"tree", "", ""};
    lisp("(c:gis-maketexts)");
    EXPECT_NE(printed().find("Height of texts <2.50>"), std::string::npos) << "that of new texts";
    EXPECT_EQ(strings(), "(\"Fir\" \"OAK\" \"Oak\" \"oak\")");
    answer(1811, {pick("Feature:", "LOT"), type("Line 2:", "PT_ID"), click("Make texts...")});
    inputs_ = {"Other", "3"};
    lisp("(c:gis-labels)");
    EXPECT_TRUE(printed().ends_with("Texts of LOT: 0 made, 0 changed; 2 entities have their texts already."));
    lisp("(c:gis-updatetexts)");
    EXPECT_EQ(strings("Trees"), "(\"A\" \"B\" \"Ford\" \"Smith\")");
    lisp("(gis:set-colours \"LOT\" \"OWNER\")");
    inputs_ = {"100,100", "2"};
    lisp("(c:gis-legend)");
    EXPECT_TRUE(printed().ends_with("\nLegend of LOT: 5 entities on layer LOT-LEGEND."));
    sql("update TREE set SPECIES = 'Ash'");
    lisp("(c:gis-refresh)");
    EXPECT_TRUE(printed().ends_with("\nLOT: 2 labels, 2 colours.\nTREE: 5 labels, 0 colours."));
    lisp("(gis:set-labels \"LOT\") (gis:set-labels \"TREE\") (gis:set-colours \"LOT\") (c:gis-refresh)");
    EXPECT_TRUE(printed().ends_with("\nNothing is labelled or coloured."));
}

TEST_F(Texts, LegendsAreDrawn) {
    lisp("(gis:set-colours \"TREE\" \"AGE\" \"counts\" 2)");
    printed();
    EXPECT_EQ(step("(gis:draw-legend \"tree\" '(100.0 200.0) 2.0 \"Key\")"), "7");
    EXPECT_EQ(printed(), "\nLegend of TREE: 7 entities on layer Key.");
    undo();
    EXPECT_EQ(lisp("(ssget \"X\" '((8 . \"Key\")))"), "nil");
    step("(gis:draw-legend \"tree\" '(100.0 200.0) 2.0 \"Key\")");
    const std::string key = drawn("KEY");
    for (const char* part :
         {"TREE: AGE at 100,197.4 height 2.6", "up to 40 (3) at 106.6,194", "40 to 120 (1)", "others (1)",
          "SOLID 100,193.8 105,193.8 100,196.2 105,196.2 #3564E3 152", "#808080 8"})
        EXPECT_NE(key.find(part), std::string::npos) << part << "\n" << key;
    EXPECT_EQ(lisp("(gis:draw-legend \"LOT\" '(0.0 0.0))"), "nil");
    EXPECT_TRUE(printed().ends_with("\nLOT has no colours."));
    EXPECT_EQ(lisp("(gis:draw-legend \"TREE\")"), "nil");
    EXPECT_EQ(printed(), "\nA legend needs a point.");
}
