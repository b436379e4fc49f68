// Labels and colours of entities from their records, as the host is given them.
#include "hostcad/drawing/current_drawing.h"
#include "hostcad/dxf/blank_drawing.h"
#include "tests/module/annotation/annotation_fixture.h"

using Labels = Annotation;
using Colours = Annotation;

TEST_F(Labels, SayWhatTheRecordsSay) {
    EXPECT_EQ(lisp("(gis:set-labels \"tree\" \"SPECIES & ' ' & AGE\nROUND(HEIGHT, 1)\" 3)"), "4");
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(labels(), "1=Oak 40\n12.5;2=oak 7\n3.3;3=OAK 120\n20;4=Fir 40\n9;")
        << "a record that says nothing and one that is not there have no label";
    const overlay::LabelSet* set = overlay::labels("TREE");
    EXPECT_EQ(set->style.height, 3);
    EXPECT_FALSE(set->style.isInPixels);
    EXPECT_EQ(lisp("(gis:set-labels \"TREE\" \"PT_ID\" 14.0 \"pixels\")"), "5");
    set = overlay::labels("TREE");
    EXPECT_EQ(set->style.height, 14);
    EXPECT_TRUE(set->style.isInPixels);
    EXPECT_EQ(lisp("(gis:annotation)"), "((\"TREE\" 5 0 0 2.5))");
    EXPECT_EQ(lisp("(gis:set-labels \"TREE\")"), "0");
    EXPECT_EQ(overlay::labels("TREE"), nullptr);
    EXPECT_EQ(lisp("(gis:set-labels \"TREE\")"), "nil");
    EXPECT_EQ(printed(), "\nTREE has no labels.");
}

TEST_F(Labels, FollowRecordsLinksAndUndo) {
    lisp("(gis:set-labels \"TREE\" \"SPECIES\")");
    sql("update TREE set SPECIES = 'Ash' where PT_ID = '2'");
    EXPECT_EQ(refresh(), "");
    EXPECT_EQ(labels(), "1=Oak;2=Ash;3=OAK;4=Fir;");
    step("(entmod (append (entget (at 1.0)) (list (to \"TREE\" \"99\")))) (tree 7.0 \"4\")");
    refresh();
    EXPECT_EQ(labels(), "1=Elm;2=Ash;3=OAK;4=Fir;7=Fir;");
    undo();
    refresh();
    EXPECT_EQ(labels(), "1=Oak;2=Ash;3=OAK;4=Fir;");
    step("(entdel (at 2.0))");
    refresh();
    EXPECT_EQ(labels(), "1=Oak;3=OAK;4=Fir;");
    step("(gis:set-labels \"TREE\" \"AGE\")");
    EXPECT_EQ(labels(), "1=40;3=120;4=40;");
    undo();
    refresh();
    EXPECT_EQ(labels(), "1=Oak;3=OAK;4=Fir;") << "the definition is part of the drawing";
    undo();
    refresh();
    EXPECT_EQ(labels(), "1=Oak;2=Ash;3=OAK;4=Fir;");
}

// What has not changed is not read: the file may even be gone, with its time and size.
TEST_F(Labels, AreReadOnlyWhenSomethingHasChanged) {
    lisp("(gis:set-labels \"TREE\" \"SPECIES\")");
    const auto time = fs::last_write_time(path("output.mdb"));
    const std::string bytes = read("output.mdb");
    sql("update TREE set SPECIES = 'Ash' where PT_ID = '2'");
    ASSERT_EQ(read("output.mdb").size(), bytes.size());
    fs::last_write_time(path("output.mdb"), time);
    refresh();
    EXPECT_EQ(labels(), "1=Oak;2=oak;3=OAK;4=Fir;");
    lisp("(entmake '((0 . \"POINT\") (10 9.0 0.0 0.0)))");
    refresh();
    EXPECT_EQ(labels(), "1=Oak;2=oak;3=OAK;4=Fir;") << "an entity that is not linked";
    refresh("t");
    EXPECT_EQ(labels(), "1=Oak;2=Ash;3=OAK;4=Fir;");
}

TEST_F(Labels, TellOnceWhyTheyAreNotShown) {
    lisp("(gis:set-labels \"TREE\" \"SPECIES\")");
    sql("drop table TREE");
    makeTrees("KIND TEXT(50)");
    const std::string said = refresh();
    EXPECT_NE(said.find("The labels of TREE: Table TREE: "), std::string::npos) << said;
    EXPECT_NE(said.find("SPECIES"), std::string::npos) << said;
    EXPECT_EQ(overlay::labels("TREE"), nullptr);
    sql("update TREE set AGE = 41 where PT_ID = '1'");
    EXPECT_EQ(refresh(), "") << "it has been said";
    sql("drop table TREE");
    makeTrees("SPECIES TEXT(50)");
    EXPECT_EQ(refresh(), "");
    EXPECT_EQ(labels(), "1=Oak;2=oak;3=OAK;4=Fir;");
    fs::rename(path("output.mdb"), path("away.mdb"));
    EXPECT_EQ(refresh(), "\nThe labels of TREE: " + path("output.mdb") + " is not there.\n");
    EXPECT_EQ(labels(), "");
    fs::rename(path("away.mdb"), path("output.mdb"));
    EXPECT_EQ(refresh(), "");
    EXPECT_EQ(labels(), "1=Oak;2=oak;3=OAK;4=Fir;");
    sql("drop table TREE");
    EXPECT_EQ(refresh(), "\nThe labels of TREE: output.mdb has no table of TREE.\n");
    write("output.mdb", "this is no database");
    EXPECT_NE(refresh().find("cannot be read"), std::string::npos);
}

TEST_F(Labels, TellThatTheFieldOfTheKeysIsGone) {
    lisp("(gis:set-labels \"TREE\" \"SPECIES\") (gis:set-colours \"TREE\" \"AGE\")");
    lisp("(gis:make-texts \"TREE\")");
    sql("drop table TREE; create table TREE (POINT TEXT(255), GIS_KEY TEXT(255), SPECIES TEXT(50), AGE LONG);"
        "insert into TREE values ('1','TREE','Oak',40)");
    const std::string why = "Table TREE has no field PT_ID, by which entities are linked to its records.";
    EXPECT_EQ(refresh(), "\nThe labels of TREE: " + why + "\n\nThe colours of TREE: " + why + "\n");
    EXPECT_EQ(refresh(), "") << "it has been said";
    EXPECT_EQ(lisp("(gis:update-texts)"), "0");
    EXPECT_EQ(printed(), "\n" + why + "\nThe texts of TREE stay as they are.")
        << "nobody is asked whether texts are to be erased that have only lost their field";
}

TEST_F(Labels, AreRefusedWhereTheyMakeNoSense) {
    for (const char* lines : {"\"SPECIE\"", "\"SPECIES &\"", "\"AGE\nUPPER(\""}) {
        EXPECT_EQ(lisp("(gis:set-labels \"TREE\" " + std::string(lines) + ")"), "nil") << lines;
        EXPECT_NE(printed(), "") << lines;
    }
    EXPECT_EQ(lisp("(gis:set-labels \"TREE\" \"AGE\nAGE\nAGE\nAGE\nAGE\")"), "nil");
    EXPECT_EQ(printed(), "\nA label has up to 4 lines.") << "the dialog could not show more";
    EXPECT_EQ(lisp("(gis:set-labels \"WELL\" \"PT_ID\")"), "nil");
    EXPECT_EQ(printed(), "\nNo entity is linked to a record of WELL.");
    EXPECT_EQ(overlay::labelSets(), std::vector<std::string>());
    EXPECT_EQ(lisp("(gis:set-colours \"TREE\" \"GIRTH\")"), "nil");
    EXPECT_EQ(printed(),
              "\nTable TREE has no field GIRTH.\nNo record of TREE has a value for classes in GIRTH.");
    EXPECT_EQ(lisp("(gis:set-colours \"TREE\" \"SPECIES\" \"steps\" 3)"), "nil");
    EXPECT_EQ(lisp("(gis:set-colours \"TREE\" \"AGE\" \"halves\")"), "nil");
}

TEST_F(Labels, TravelWithTheDrawing) {
    makeLots();
    lisp("(gis:set-labels \"TREE\" \"SPECIES\n'tall: ' & HEIGHT\" 2.5) (gis:set-colours \"LOT\" \"OWNER\")");
    const std::string trees = labels(), lots = legend("LOT");
    EXPECT_EQ(lots, "LOT: OWNER|Ford 1|Smith 1");
    saveAndOpen();
    EXPECT_EQ(labels(), "") << "nothing is shown before somebody asks";
    EXPECT_EQ(refresh(), "");
    EXPECT_EQ(labels(), trees);
    EXPECT_EQ(overlay::labels("TREE")->style.height, 2.5);
    EXPECT_EQ(legend("LOT"), lots);
    // The folder of the job has been moved: the databases stand beside the drawing.
    fs::create_directory(path("moved"));
    for (const char* name : {"kept.dxf", "output.mdb", "template.mdb"})
        fs::rename(path(name), path(std::string("moved/") + name));
    openDrawing(path("moved/kept.dxf"));
    printed();
    EXPECT_EQ(refresh(), "");
    EXPECT_EQ(labels(), trees);
    EXPECT_EQ(legend("LOT"), lots);
}

// Another program, or a later version of this one, may have written what is in the dictionaries.
TEST_F(Labels, OfOtherVersionsAreKeptAndNotUsed) {
    lisp("(gis:set-labels \"TREE\" \"SPECIES\") (gis:set-colours \"TREE\" \"AGE\")");
    lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("kept.dxf") + " \"_Y\")");
    std::string drawing = read("kept.dxf");
    const size_t at = drawing.find("line=SPECIES");
    ASSERT_NE(at, std::string::npos);
    drawing.replace(at, 12, "girth=12    ");
    write("kept.dxf", drawing);
    openDrawing(path("kept.dxf"));
    const std::string said = refresh();
    EXPECT_NE(
        said.find("The labels of TREE in the drawing cannot be understood. They are kept and not used."),
        std::string::npos)
        << said;
    EXPECT_EQ(refresh(), "") << "it has been said";
    EXPECT_EQ(labels(), "");
    EXPECT_NE(colours(), "");
    lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("again.dxf") + " \"_Y\")");
    EXPECT_NE(read("again.dxf").find("girth=12"), std::string::npos);
}

TEST_F(Labels, OfALaterVersionAreNotOverwritten) {
    lisp("(gis:set-labels \"TREE\" \"SPECIES\")");
    lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("kept.dxf") + " \"_Y\")");
    std::string drawing = read("kept.dxf");
    const size_t version = drawing.rfind("\n 90\n", drawing.find("line=SPECIES"));
    ASSERT_NE(version, std::string::npos);
    const size_t digit = drawing.find('1', version + 5);
    drawing[digit] = '7';
    write("kept.dxf", drawing);
    openDrawing(path("kept.dxf"));
    EXPECT_EQ(refresh(),
              "\nThe labels of TREE were written by another version (7). They are kept and not used.\n");
    EXPECT_EQ(labels(), "");
    EXPECT_EQ(lisp("(gis:set-labels \"TREE\" \"AGE\")"), "nil");
    EXPECT_NE(printed(), "");
    answer(1811, {type("Line 1:", "AGE"), click("OK")});
    EXPECT_EQ(lisp("(gis:labels)"), "nil");
    EXPECT_EQ(printed(),
              "\nThe labels of TREE are not kept: \"TREE\" was written by another version and is left as it "
              "is.");
    lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("again.dxf") + " \"_Y\")");
    EXPECT_NE(read("again.dxf").find("line=SPECIES"), std::string::npos);
}

TEST_F(Labels, OfFeaturesWithAnyNameAreKept) {
    sqlite("template.mdb", "insert into ZGEO_LINKS values ('A/B 5%41, Ö', 'LOTS')");
    lisp("(entmake (list '(0 . \"POINT\") '(10 7.0 0.0 0.0) (to \"a/b 5%41, ö\" \"A\")))");
    EXPECT_EQ(lisp("(gis:set-labels \"A/b 5%41, ö\" \"OWNER\")"), "1") << printed();
    saveAndOpen();
    EXPECT_EQ(refresh(), "");
    EXPECT_EQ(labels("A/B 5%41, Ö"), "7=Smith;");
    EXPECT_EQ(lisp("(gis:make-texts \"A/B 5%41, Ö\")"), "1");
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((8 . \"A_B 5%41_ Ö-LABELS\"))))"), "1");
    EXPECT_EQ(lisp("(gis:set-labels \"A/B 5%41, Ö\")"), "0");
    EXPECT_EQ(labels("A/B 5%41, Ö"), "");
}

TEST_F(Labels, OfADrawingOfR12AreToldToGoWithIt) {
    hostcad::setCurrentDrawing(hostcad::blankDrawing(hostcad::DrawingVersion::R12));
    lisp("(regapp \"ZGEO_GIS_2000\") (tree 1.0 \"1\")");
    printed();
    answer(1811, {type("Line 1:", "SPECIES"), click("OK")});
    EXPECT_EQ(lisp("(gis:labels)"), "nil");
    EXPECT_EQ(printed(),
              "\nA file of R12 has no place for labels: this drawing has them until it is closed."
              "\nThe labels of TREE: 1 entity has one.");
    EXPECT_EQ(labels(), "1=Oak;");
}

TEST_F(Labels, ComeBackFromAnotherProgram) {
    makeLots();
    lisp(
        "(gis:set-labels \"TREE\" \"SPECIES & ' %^\\\\ ' & AGE\" 2.5) (gis:set-colours \"LOT\" \"OWNER\") "
        "(gis:make-texts "
        "\"TREE\")");
    const std::string trees = labels(), lots = legend("LOT");
    lisp("(command \"_.SAVEAS\" \"_R2004\" \"\" " + quoted("ours.dxf") + " \"_Y\")");
    EXPECT_EQ(outputOf("/usr/bin/python3 -c \"import ezdxf; ezdxf.readfile('" + path("ours.dxf") +
                       "').saveas('" + path("theirs.dxf") + "')\""),
              "");
    openDrawing(path("theirs.dxf"));
    EXPECT_EQ(refresh(), "");
    EXPECT_NE(trees, "");
    EXPECT_EQ(labels(), trees);
    EXPECT_EQ(legend("LOT"), lots);
    EXPECT_EQ(lisp("(gis:update-texts)"), "0") << "the marks of texts name their entities still";
}

TEST_F(Labels, OfTenThousandCharactersAndOddOnesAreTaken) {
    const std::string text(10'000, 'x');
    sql("drop table TREE");
    makeTrees("SPECIES MEMO");
    sql("update TREE set SPECIES = '" + text + "' where PT_ID = '1'");
    sql("update TREE set SPECIES = 'a\r\nb\n\n c ' where PT_ID = "
        "'2'");
    sql("update TREE set SPECIES = '%%d & [x]' where PT_ID = '3'");
    EXPECT_EQ(lisp("(gis:set-labels \"TREE\" \"SPECIES\")"), "4");
    EXPECT_EQ(labels(), "1=" + text + ";2=a\nb\nc;3=%%d & [x];4=Fir;");
}

// A large table of an SQLite file is not read behind each command.
TEST_F(Labels, OfLargeTablesWaitUntilSomebodyAsks) {
    if (!haveSqlite3()) GTEST_SKIP() << "sqlite3 is not installed";
    sqlite3(path("large.sqlite"),
            "create table TREE (PT_ID TEXT, GIS_KEY TEXT, SPECIES TEXT); with recursive n(i) as (select 1 "
            "union all "
            "select i + 1 from n where i <= 200000) insert into TREE select i, 'TREE', 'Oak' || i from n");
    lisp("(setq outp " + quoted("large.sqlite") +
         ") (command \"_.ERASE\" \"_ALL\" \"\") (tree 1.0 \"7\") (tree 2.0 "
         "\"200001\")");
    EXPECT_EQ(lisp("(gis:set-labels \"TREE\" \"SPECIES\")"), "2");
    EXPECT_EQ(labels(), "1=Oak7;2=Oak200001;");
    sqlite3(path("large.sqlite"), "update TREE set SPECIES = 'Ash' where PT_ID = '7'");
    EXPECT_EQ(
        refresh(),
        "\nRecords may have changed, and the labels of TREE are as they were. GIS-REFRESH brings them up "
        "to date.\n");
    EXPECT_EQ(refresh(), "") << "it has been said";
    EXPECT_EQ(labels(), "1=Oak7;2=Oak200001;");
    EXPECT_EQ(refresh("t"), "");
    EXPECT_EQ(labels(), "1=Ash;2=Oak200001;");
    lisp("(tree 3.0 \"8\")");
    refresh();
    EXPECT_EQ(labels(), "1=Ash;2=Oak200001;3=Oak8;") << "links are followed";
}

// Records of one key: that of the feature counts, wherever it stands in the table.
TEST_F(Labels, AreOfTheRecordOfTheFeature) {
    sql("delete from TREE; insert into TREE values ('1','SHRUB','Box',1,1), ('1','TREE','Oak',1,1), "
        "('1','TREE','later',1,1), (' 2','SHRUB','Yew',1,1), ('2','SHRUB','later',1,1), ('3 "
        "','tree','Fir',1,1), ('3','SHRUB','later',1,1)");
    EXPECT_EQ(lisp("(gis:set-labels \"TREE\" \"SPECIES\")"), "3");
    EXPECT_EQ(labels(), "1=Oak;2=Yew;3=Fir;");
}

TEST_F(Colours, FollowTheValues) {
    EXPECT_EQ(lisp("(gis:set-colours \"TREE\" \"SPECIES\")"), "5");
    EXPECT_EQ(legend(), "TREE: SPECIES|Fir 1|Oak 3|others 1");
    EXPECT_EQ(colours(), "1=1;2=1;3=1;4=0;5=2;");
    sql("update TREE set SPECIES = 'Fir' where PT_ID = '1'; update TREE set SPECIES = 'Yew' where PT_ID = "
        "'2'");
    EXPECT_EQ(refresh(), "");
    EXPECT_EQ(legend(), "TREE: SPECIES|Fir 2|Oak 1|others 2") << "classes stay until they are made anew";
    EXPECT_EQ(colours(), "1=0;2=2;3=1;4=0;5=2;");
    EXPECT_EQ(lisp("(gis:set-colours \"TREE\" \"AGE\" \"steps\" 2)"), "5");
    EXPECT_EQ(legend(), "TREE: AGE|up to 63.5 3|63.5 to 120 1|others 1");
    EXPECT_EQ(lisp("(gis:set-colours \"TREE\" \"AGE\" \"breaks\" 3)"), "5");
    EXPECT_EQ(legend(), "TREE: AGE|up to 7 1|7 to 40 2|40 to 120 1|others 1");
    EXPECT_EQ(lisp("(cdr (assoc 62 (entget (at 1.0))))"), "nil") << "entities stay as they are";
    EXPECT_EQ(lisp("(gis:set-colours \"TREE\")"), "0");
    EXPECT_EQ(overlay::colours("TREE"), nullptr);
}

TEST_F(Colours, WithoutRecordsHaveNoLegend) {
    lisp("(gis:set-colours \"TREE\" \"SPECIES\")");
    sql("drop table TREE");
    EXPECT_EQ(refresh(), "\nThe colours of TREE: output.mdb has no table of TREE.\n");
    EXPECT_EQ(overlay::colours("TREE"), nullptr);
    makeTrees("SPECIES TEXT(50)");
    EXPECT_EQ(refresh(), "");
    EXPECT_EQ(legend(), "TREE: SPECIES|Fir 1|Oak 3|others 1");
}

// --- The dialogs -----------------------------------------------------------------------------------------

TEST_F(Labels, AreDefinedInTheDialog) {
    makeLots();
    answer(1811, {pick("Feature:", "TREE"), show(), type("Line 1:", "SPECIE"), show(), click("OK"), show(),
                  type("Line 1:", ""), pick("Fields:", "SPECIES"), click("Insert into the line"),
                  pick("Fields:", "AGE"), click("Insert into the line"), type("Line 2:", "HEIGHT & ' m'"),
                  type("Height:", "1,5"), show(), click("OK")});
    printed();
    EXPECT_EQ(lisp("(gis:labels)"), "nil");
    EXPECT_EQ(printed(),
              "\nThe labels of TREE: 5 entities have one, 1 without. They are too small to be read in this "
              "view: zoom in, or give their height in pixels.");
    EXPECT_EQ(labels(), "1=Oak 40\n12.5 m;2=oak 7\n3.25 m;3=OAK 120\n20 m;4=Fir 40\n9 m;5=m;");
    EXPECT_EQ(overlay::labels("TREE")->style.height, 1.5);
    const std::string seen = picture(1811);
    for (const char* part : {"Oak 40 / 12.5 m", "6 entities", "SPECIES & \" \" & AGE"})
        EXPECT_NE(seen.find(part), std::string::npos) << part << seen;

    // What is typed for one feature stays while another is looked at; no lines take labels away.
    answer(1811,
           {pick("Feature:", "LOT"), type("Line 1:", "OWNER"), check("Show the labels", false),
            pick("Feature:", "TREE"), click("Remove labels"), show(), pick("Feature:", "LOT"), click("OK")});
    EXPECT_EQ(step("(gis:labels \"tree\")"), "nil");
    EXPECT_EQ(printed(), "\nThe labels of LOT are kept and not shown.\nThe labels of TREE are taken away.");
    EXPECT_EQ(overlay::labelSets(), std::vector<std::string>());
    EXPECT_NE(picture(1811).find("Without lines, OK takes the labels of TREE away."), std::string::npos);
    // One undo takes back what one dialog has done.
    undo();
    refresh();
    EXPECT_NE(labels(), "");
}

TEST_F(Labels, ThatAreWrongKeepTheDialogOpen) {
    answer(1811, {type("Line 1:", "NOWHERE"), click("OK"), show(), type("Line 1:", "AGE"),
                  type("Height:", "0"), click("OK"), show(), click("Cancel")});
    EXPECT_EQ(lisp("(gis:labels)"), "nil");
    EXPECT_NE(picture(1811).find("The height is a number above 0."), std::string::npos) << picture(1811);
    bool hasFault = false;
    for (const std::string& one : ui_.log()) hasFault = hasFault || one.find("Line 1: ") != std::string::npos;
    EXPECT_TRUE(hasFault);
    EXPECT_EQ(overlay::labelSets(), std::vector<std::string>());
}

// A mistake in what was typed for a feature that is not looked at any more.
TEST_F(Labels, OfAnotherFeatureKeepTheDialogOpenToo) {
    makeLots();
    answer(1811, {type("Line 1:", "OWNERS"), pick("Feature:", "TREE"), type("Line 1:", "AGE"), click("OK"),
                  show(), type("Line 1:", "OWNER"), click("OK")});
    printed();
    EXPECT_EQ(lisp("(gis:labels \"LOT\")"), "nil");
    EXPECT_NE(picture(1811).find("OWNERS"), std::string::npos) << picture(1811);
    EXPECT_EQ(
        printed(),
        "\nThe labels of LOT: 2 entities have one.\nThe labels of TREE: 4 entities have one, 2 without.");
}

TEST_F(Colours, AreDefinedInTheDialog) {
    answer(1812, {show(),
                  pick("Field:", "SPECIES"),
                  show(),
                  {ui::Step::Kind::Cell, "", "#00f", true, 1, 1},
                  show(),
                  {ui::Step::Kind::Cell, "", "0000ff", true, 1, 1},
                  show(),
                  click("OK")});
    printed();
    EXPECT_EQ(lisp("(gis:colours)"), "nil");
    EXPECT_EQ(printed(), "\nThe colours of TREE: 5 entities have one, 1 without.");
    EXPECT_EQ(colours(), "1=1;2=1;3=1;4=0;5=2;");
    EXPECT_EQ(overlay::colours("TREE")->legend.rows[0].colour, 0x0000FFu);
    bool hasFault = false;
    for (const std::string& one : ui_.log())
        hasFault = hasFault || one.find("\"#00f\" is no colour") != std::string::npos;
    EXPECT_TRUE(hasFault);

    answer(1812, {pick("Field:", "AGE"), pick("Division:", "Equal counts"), type("Number of classes:", "2"),
                  show(), check("Legend in the window", false), click("OK")});
    EXPECT_EQ(lisp("(gis:colours)"), "nil");
    EXPECT_EQ(legend(), "");
    EXPECT_NE(picture(1812).find("up to 40"), std::string::npos) << picture(1812);
    answer(1812, {show(), type("Number of classes:", "99"), click("OK"), show(), click("Remove colours"),
                  show(), click("OK")});
    EXPECT_EQ(lisp("(gis:colours)"), "nil");
    EXPECT_EQ(overlay::colourSets(), std::vector<std::string>());
}

// The cell shows the colour that holds; OK does not close over what was typed without a word.
TEST_F(Colours, ThatAreNoneAreToldOnce) {
    answer(1812, {pick("Field:", "SPECIES"),
                  {ui::Step::Kind::Cell, "", "red", true, 1, 1},
                  click("OK"),
                  show(),
                  click("OK")});
    EXPECT_EQ(lisp("(gis:colours)"), "nil");
    EXPECT_NE(picture(1812).find("\"red\" is no colour"), std::string::npos) << picture(1812);
    EXPECT_EQ(legend(), "TREE: SPECIES|Fir 1|Oak 3|others 1");
}

TEST_F(Labels, NothingLinkedIsTold) {
    lisp("(command \"_.ERASE\" \"_ALL\" \"\")");
    answer(1811, {show(), click("Cancel")});
    answer(1812, {show(), click("Cancel")});
    EXPECT_EQ(lisp("(gis:labels)"), "nil");
    EXPECT_EQ(lisp("(gis:colours)"), "nil");
    for (const int dialog : {1811, 1812})
        EXPECT_NE(picture(dialog).find("No entity of the drawing is linked to a record."), std::string::npos);
}
