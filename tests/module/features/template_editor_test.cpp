// The editor of the template, from nothing to features that the sheet uses.
#include <sys/stat.h>

#include <algorithm>

#include "platform/dao/dao.h"
#include "tests/module/features/editor_fixture.h"

TEST_F(Editor, CtrlZTakesBackChangesOfCellsAndRows) {
    treeTemplate();
    box("No"), box("Yes");
    edit({open("TREE"),
          {Step::Kind::ClickCell, "", "", true, 1, 1},
          click("Down"),
          show(),
          key("Ctrl+z"),
          show(),
          click("Remove"),
          key("Ctrl+z"),
          at(1, 2, "northing"),
          show(),
          key("Ctrl+z"),
          show()});
    const std::vector<std::string>& log = ui_.log();
    std::vector<std::string> shownGrids;
    for (const std::string& line : log)
        if (line.find("[151]") == 0) shownGrids.push_back(line.substr(line.find("grid 5 x")));
    ASSERT_EQ(shownGrids.size(), 4u);
    auto rowsOf = [](std::string grid) { return grid.substr(grid.find('\n')); };
    auto place = [&](int i, const char* name) {
        return rowsOf(shownGrids[static_cast<size_t>(i)]).find(name);
    };
    EXPECT_LT(place(0, "'DBH'"), place(0, "'SPECIES'"));
    EXPECT_LT(place(1, "'SPECIES'"), place(1, "'DBH'"));
    EXPECT_NE(place(2, "$EQN=$NOR {$EQN=$NOR}"), std::string::npos);
    EXPECT_EQ(place(3, "$EQN"), std::string::npos);  // with all that the name had filled in
    EXPECT_NE(place(3, "'DBH'"), std::string::npos);
    EXPECT_NE(place(3, "{Char|Int|Real}"), std::string::npos);
}

TEST_F(Editor, TheFormatOfNewDatabasesIsChosenInTheEditor) {
    answer(kNewFile, {click("New Access '97 Format")});
    ui_.answerFile(path("t.mdb"));
    box("Yes");
    edit({show(), click("Access 2000"), menu("Template Database/New"), show()});
    EXPECT_TRUE(shown("radio (o) \"Access '97\"\n  1016 radio ( ) \"Access 2000\""));
    // Made as it was chosen; the button that was pressed holds from the next one on.
    EXPECT_EQ(read("t.mdb")[0x14], 1);
    box("Yes");
    ui_.clearLog();
    edit({show(), click("Access 2000")});
    EXPECT_TRUE(shown("* 1003 tree")) << "the first key chooses no format";
    EXPECT_TRUE(shown("radio (o) \"Access '97\""));
    box("Yes");
    edit({show()});
    EXPECT_TRUE(shown("radio (o) \"Access 2000\""));
}

TEST_F(Editor, NewOpensAnExistingFileOrReplacesTheOneThatIsChosen) {
    treeTemplate();
    const std::string before = categories() + features();
    answer(kNewFile, {click("Existing")});
    ui_.answerFile(path("t.mdb"));
    box("Yes");
    edit({menu("Template Database/New"), show()});
    EXPECT_TRUE(shown("      PLANTS")) << "the tree";
    EXPECT_EQ(categories() + features(), before);

    fs::create_directory(path("folder.mdb"));
    for (const char* name : {"t.mdb", "folder.mdb"}) {
        answer(kNewFile, {click("New Access '97 Format")});
        ui_.answerFile(path(name));
    }
    box("OK"), box("Yes");
    edit({menu("Template Database/New"), show(), menu("Template Database/New"), show()});
    EXPECT_EQ(categories() + features(), "");
    EXPECT_TRUE(shown("box [Error] \"Cannot delete *.mdb file!\""));
    EXPECT_TRUE(fs::is_directory(path("folder.mdb")));
    EXPECT_TRUE(shown("1002 edit \"" + path("t.mdb") + "\" (read-only)"));
}

TEST_F(Editor, DefinesAFeatureFromNothing) {
    treeTemplate();
    EXPECT_EQ(features(), "TREE|SPECIES|Species||\nTREE|~.DBH|Diameter||\n");
    EXPECT_EQ(categories(), "1|PLANTS|NO_GIS\n1|UTILITIES|NO_GIS\n2|PLANTS|TREE\n");
    // The sheet uses it at once.
    makeEntity();
    answer(134, {cell(1, "OAK"), cell(2, "14"), click("OK")});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 " + quoted("") + " " + quoted("t.mdb") + " " +
                   quoted("out.mdb") + " \"PT_ID\" \"7\" 1.0 2.0 3.0 ent \"TREE\" 1)"),
              "1");
    EXPECT_EQ(sqlite("out.mdb", "select PT_ID, SPECIES, DBH from TREE"), "7|OAK|14\n");
}

TEST_F(Editor, SaysThatThereAreUnsavedChangesAndAsks) {
    treeTemplate();
    box("No"), box("Yes");
    edit({open("TREE"), at(2, 1, "Kind of tree"), show()});
    EXPECT_TRUE(shown("Define Template Database *"));
    EXPECT_TRUE(shown("box [Alert] \"Current Feature: TREE\nSave Changes?\" flags 0x40033 -> No"));
    EXPECT_EQ(features().substr(0, 20), "TREE|SPECIES|Species");
    // Saved at once; the feature takes the last place of its category again.
    box("Yes"), box("Yes");
    edit({open("TREE"), at(2, 1, "Kind of tree"), key("Ctrl+S")});
    EXPECT_TRUE(shown("Feature already exist! Do you want to replace it?"));
    EXPECT_TRUE(shown("information \"Process done...\""));
    EXPECT_EQ(features(), "TREE|SPECIES|Kind of tree||\nTREE|~.DBH|Diameter||\n");
    EXPECT_EQ(categories(), "1|PLANTS|NO_GIS\n1|UTILITIES|NO_GIS\n2|PLANTS|TREE\n");
    // The exit question, too, can be answered with No.
    box("No"), box("Yes");
    edit({menu("Exit")});
    EXPECT_TRUE(shown("\"               Exit...Please confirm...\" flags 0x40034 -> No"));
}

TEST_F(Editor, ListsOfValuesAndSpecialCodes) {
    treeTemplate();
    name("RED"), name("GREEN");
    answer(kName, {text("1001", "GREEN"), click("OK"), text("1001", "BLUE"), click("OK")});
    answer(kValues, {click("Add Value"), click("Add Value"), click("Add Value"), show(), click("MoveUp"),
                     click("Set Default Value"), click("OK")});
    answer(kValues, {click("Set Special Code"), show(), click("OK")});
    answer(kCodes, {pick("1001", "ROD HEIGHT"), show(), click("OK")});
    box("OK"), box("Yes"), box("Yes");
    edit({open("TREE"), at(3, 1, ""), click("Edit List Values"), at(1, 3, "x"), at(3, 3, ""),
          click("Edit List Values"), at(1, 4, "EASTING"), show(), key("Ctrl+S")});
    EXPECT_TRUE(shown("box [Error] \"Value already exist!\""));
    EXPECT_TRUE(shown("    > ROD HEIGHT"));
    EXPECT_EQ(features(),
              "TREE|SPECIES|Species|BLUE|RED,BLUE,GREEN\nTREE|~.DBH|Diameter||\n"
              "TREE|ROD_HEIGHT|Rod_height|$EQN=$HGT|$EQN=$HGT\nTREE|EASTING|Easting|$EQN=$EAS|$EQN=$EAS\n");
}

TEST_F(Editor, CtrlZTakesBackAListOfValues) {
    treeTemplate();
    name("RED"), name("GREEN");
    answer(kValues, {click("Add Value"), click("Add Value"), click("OK")});
    box("No"), box("Yes");
    edit({open("TREE"), at(3, 1, ""), click("Edit List Values"), show(), key("Ctrl+z"), show()});
    EXPECT_TRUE(shown("{RED|GREEN}"));
    std::string last;
    for (const std::string& line : ui_.log())
        if (line.find("[151]") == 0) last = line;
    EXPECT_EQ(last.find("GREEN"), std::string::npos) << last;
    EXPECT_NE(last.find("'SPECIES'"), std::string::npos) << last;
}

TEST_F(Editor, ValuesComeAndGo) {
    treeTemplate();
    name("A"), name("B"), name("C"), name("D");
    // The neighbour of a deleted default becomes the default; a code gives way to a new value among the old
    // ones.
    answer(kValues, {click("Add Value"), click("Add Value"), pick("1001", "A"), click("Delete Value"),
                     click("Set Special Code"), click("Add Value"), show(), click("OK")});
    answer(kCodes, {pick("1001", "DATE"), click("OK")});
    // With the last value the default goes, and the next one is it.
    answer(kValues,
           {click("Delete Value"), click("Delete Value"), click("Add Value"), show(), click("Cancel")});
    answer(kValues, {click("Delete Value"), click("Delete Value"), click("OK")});
    answer(kValues, {click("Add Value"), click("Cancel")});
    name("Z");
    box("No"), box("Yes");
    edit({open("TREE"), at(3, 1, ""), click("Edit List Values"), show(), click("Edit List Values"),
          click("Edit List Values"), show(), click("Edit List Values"), show()});
    EXPECT_TRUE(shown("1003 edit \"D\" (read-only)"));
    EXPECT_TRUE(shown("C {B|C} No"));
    EXPECT_TRUE(shown("edit \"C\" (read-only)"));
}

TEST_F(Editor, TheSheetFillsItself) {
    treeTemplate();
    box("No"), box("Yes");
    edit({open("TREE"), at(1, 3, "northing"), at(1, 3, "other"), show(),  // the code goes with the name
          at(3, 1, "OAK"), key("Enter"), focus("1008"), at(3, 2, "$eqn=$dat"), show()});
    EXPECT_TRUE(shown("'OTHER'   'Northing' ''"));
    EXPECT_TRUE(shown("'DATE'    'Date'     $EQN=$DAT {$EQN=$DAT} Yes {No|Yes} Char\n"));
    box("No"), box("Yes");
    ui_.clearLog();
    // Enter walks from the name to the values, and adds what was typed to the list.
    edit({open("TREE"), at(1, 1, "SPECIES"), key("Enter"), key("Enter"), key("O"), key("A"), key("K"),
          key("Enter"), key("A"), key("S"), key("H"), key("Enter"), show(), key("Delete"), show(),
          key("Delete"), show()});
    EXPECT_TRUE(shown("'SPECIES' 'Species'  ASH {OAK|ASH}"));
    EXPECT_TRUE(shown("OAK {OAK}"));
}

TEST_F(Editor, ValuesWithCommasComeBackAsTwo) {
    treeTemplate();
    name("A,B"), name("a,b");
    answer(kValues, {click("Add Value"), click("Add Value"), click("OK")});
    box("Yes"), box("Yes");
    edit({open("TREE"), at(3, 1, ""), click("Edit List Values"), key("Ctrl+S"), open("TREE"), show()});
    EXPECT_EQ(features("FIELD_NAME='SPECIES'"), "TREE|SPECIES|Species|A,B|A,B,a,b\n");
    // The default falls apart as well: what is behind its comma leads the list.
    EXPECT_TRUE(shown("A {B|A|B|a|b}"));
}

TEST_F(Editor, TheRodHeightIsSpelledInTwoWays) {
    treeTemplate();
    write("rod.gis", "|00|ROD_HEIGHT,Rod, ,\n");
    ui_.answerFile(path("rod.gis"));
    answer(kValues, {click("Set Special Code"), click("Cancel")});
    answer(kCodes, {show(), click("Cancel")});
    box("OK"), box("No"), box("Yes");
    edit({menu("GIS File/Import"), focus("1008"), key("Right"), key("Right"), key("Left"), show(),  // left
          at(1, 2, "rod_height"), show(), at(3, 2, "$EQN=$HGT"), click("Edit List Values")});
    EXPECT_TRUE(shown("'ROD_HEIGHT' 'Rod_Height'"));
    EXPECT_TRUE(shown("'ROD_HEIGHT' 'Rod_height'"));
    EXPECT_TRUE(shown("RAW_ELEV\n    > ROD HEIGHT\n      HRMS\n      VRMS\n"));
}

TEST_F(Editor, RowsMove) {
    treeTemplate();
    box("Yes"), box("Yes");
    edit({open("TREE"), at(1, 1, "SPECIES"), click("Down"), show(), click("Up"), click("Insert"),
          at(1, 1, "new"), at(2, 1, "New"), at(1, 3, "DBH"), click("Remove"), key("Ctrl+S"), show()});
    EXPECT_EQ(features(), "TREE|NEW|New||\nTREE|SPECIES|Species||\n");
}

TEST_F(Editor, FaultsAreShownAndLeadToTheirCell) {
    treeTemplate();
    box("OK"), box("No"), box("Yes");
    edit({open("TREE"), at(1, 2, "SPECIES"), key("Ctrl+S"), show()});
    EXPECT_TRUE(shown("box [Error] \"There are duplicates in column <ATTRIBUTE (Abbr.)>!\" flags 0x40030"));
    EXPECT_TRUE(shown("grid 5 x 3, at (2, 2)"));
    EXPECT_EQ(features().size(), std::string("TREE|SPECIES|Species||\nTREE|~.DBH|Diameter||\n").size());
    // A name that is refused is asked for again.
    answer(kName, {text("1001", "a.b"), click("OK"), text("1001", "c"), click("Cancel")});
    box("OK"), box("Yes");
    edit({menu("Category/New")});
    EXPECT_TRUE(shown("Invalid characters in Feature Name or string length more than 64 characters!"));
}

TEST_F(Editor, CategoriesAreRenamedMergedAndDeleted) {
    treeTemplate();
    category("PLANTS"), name("utilities"), box("Yes");
    edit({menu("Category/Rename"), show()});
    EXPECT_EQ(categories(), "1|UTILITIES|NO_GIS\n1|UTILITIES|NO_GIS\n2|UTILITIES|TREE\n");
    EXPECT_TRUE(shown("\n    > UTILITIES\n        TREE\n")) << "one category with the features of both";
    EXPECT_FALSE(shown("\n      UTILITIES"));
    category("UTILITIES"), box("No"), box("Yes");
    edit({menu("Category/Delete")});
    EXPECT_NE(features(), "");
    category("UTILITIES"), box("Yes"), box("OK"), box("Yes");
    edit({menu("Category/Delete"), menu("Category/Delete")});
    EXPECT_TRUE(shown("No Categories found in the Template Database!"));
    EXPECT_EQ(categories() + features(), "");
}

TEST_F(Editor, FeaturesAreCopiedRenamedAndDeleted) {
    treeTemplate();
    sqlite("t.mdb",
           "create table ZGEO_LINKS(GIS_NAME text, TABLE_NAME text, LPN_NAME text, IS_CURRENT text); "
           "insert into ZGEO_LINKS values('TREE','TREES',null,'YES')");
    name("bush"), category("UTILITIES"), name("oak"), name("bush"), box("OK"), name("TREE"), box("Yes");
    edit({tree("TREE"), menu("Feature/Save As"), tree("TREE"), menu("Feature/Rename"), tree("OAK"),
          menu("Feature/Rename"), tree("OAK"), menu("Feature/Save As")});
    EXPECT_TRUE(shown("Cannot rename Feature.\nFeature already exist!"));
    EXPECT_EQ(stored("select distinct GIS_NAME from ZGEO_SMART_PROMPTING order by 1"), "BUSH\nOAK\n");
    EXPECT_EQ(stored("select GIS_NAME, TABLE_NAME from ZGEO_LINKS"), "OAK|TREES\n");
}

TEST_F(Editor, TheSheetOutlivesAnotherFeatureAndTakesItsOwnNewName) {
    treeTemplate();
    name("bush"), category("UTILITIES"), box("Yes"), name("tree"), name("oak"), box("Yes");
    edit({tree("TREE"), menu("Feature/Save As"), open("TREE"), tree("BUSH"), menu("Feature/Delete"), show(),
          tree("TREE"), menu("Feature/Rename"), tree("TREE"), menu("Feature/Rename"), show()});
    // Its own name is no name in use.
    EXPECT_FALSE(shown("Cannot rename Feature."));
    EXPECT_TRUE(shown("'DBH'"));
    EXPECT_TRUE(shown("\"OAK\""));
    EXPECT_EQ(stored("select distinct GIS_NAME from ZGEO_SMART_PROMPTING order by 1"), "OAK\n");
}

TEST_F(Editor, AFeatureThatIsSavedAgainGoesToTheEndOfItsCategory) {
    treeTemplate();
    name("bush"), category("PLANTS"), box("Yes"), box("Yes");
    edit({tree("TREE"), menu("Feature/Save As"), open("TREE"), at(2, 1, "Kind"), key("Ctrl+S")});
    EXPECT_EQ(categories(), "1|PLANTS|NO_GIS\n1|UTILITIES|NO_GIS\n2|PLANTS|BUSH\n3|PLANTS|TREE\n");
}

TEST_F(Editor, LinksOutliveTheirCategory) {
    treeTemplate();
    sqlite("t.mdb",
           "create table ZGEO_LINKS(GIS_NAME text, TABLE_NAME text, LPN_NAME text, IS_CURRENT text); "
           "insert into ZGEO_LINKS values('TREE','TREES',null,'YES')");
    category("PLANTS"), box("Yes"), box("Yes");
    edit({menu("Category/Delete")});
    EXPECT_EQ(features(), "");
    EXPECT_EQ(stored("select GIS_NAME, TABLE_NAME from ZGEO_LINKS"), "TREE|TREES\n");
}

TEST_F(Editor, NamesInUseAreToldInTheirOldWords) {
    treeTemplate();
    name("tree"), box("No"), name("tree"), box("OK"), box("Yes");
    edit({click("New Feature"), show(), tree("TREE"), menu("Feature/Save As")});
    EXPECT_FALSE(shown("'SPECIES'")) << "answered No, the other is not opened";
    EXPECT_TRUE(shown("box [Alert] \"Feature TREE already exist.\nOpen existing Feature?\""));
    EXPECT_TRUE(shown("box [Error] \"Cannot save Feature.\nFeature name already exist!\""));
    name("tree"), box("Yes"), box("Yes");
    edit({click("New Feature"), show()});
    EXPECT_TRUE(shown("edit \"TREE\" (read-only)"));
    EXPECT_TRUE(shown("'SPECIES' 'Species'"));
    EXPECT_EQ(categories(), "1|PLANTS|NO_GIS\n1|UTILITIES|NO_GIS\n2|PLANTS|TREE\n");
}

TEST_F(Editor, ADeletedFeatureTakesItsLinksWithIt) {
    treeTemplate();
    sqlite("t.mdb",
           "create table ZGEO_LINKS(GIS_NAME text, TABLE_NAME text, LPN_NAME text, IS_CURRENT text); "
           "insert into ZGEO_LINKS values('TREE','TREES',null,'YES'), ('POLE','POLES',null,'NO')");
    box("Yes"), box("Yes");
    edit({tree("TREE"), menu("Feature/Delete"), show()});
    EXPECT_EQ(stored("select GIS_NAME from ZGEO_LINKS"), "POLE\n");
    EXPECT_TRUE(shown("\n    > PLANTS\n")) << "the selection goes to what stood above it";
}

TEST_F(Editor, TheLastFeatureOfACategoryLeavesItsPlace) {
    treeTemplate();
    sqlite("t.mdb", "delete from ZGEO_CAT where GIS_NAME='NO_GIS' and CAT_GIS_NAME='PLANTS'");
    box("OK"), box("Yes"), box("Yes");
    edit({tree("PLANTS"), menu("Feature/Delete"), tree("TREE"), menu("Feature/Delete"), show()});
    EXPECT_TRUE(shown("No Selected Feature found!\nPlease select a feature from the list!"));
    EXPECT_EQ(features(), "");
    EXPECT_EQ(categories(), "1|UTILITIES|NO_GIS\n1|PLANTS|NO_GIS\n");
}

TEST_F(Editor, SearchesWalkTheTree) {
    treeTemplate();
    name("bush"), category("UTILITIES");
    name("*e"), name("*"), name("x*"), box("Yes"), box("OK"), name("q*"), box("No"), box("Yes"), box("Yes");
    answer(kName, {show(), text("1001", "p*"), click("OK")});
    edit({tree("TREE"), menu("Feature/Save As"), tree("PLANTS"),
          menu("Feature/Search"),                                  // TREE, the first of PLANTS
          menu("Feature/Search"), show(), menu("Feature/Search"),  // the next one; then none
          menu("Category/Search"), show(), menu("Category/Search"),
          show()});  // none; then from the beginning
    EXPECT_TRUE(shown("      UTILITIES\n      > BUSH"));
    EXPECT_TRUE(shown("The routine has finished searching the Feature List.\nStart from the beginning?"));
    EXPECT_TRUE(shown("box [Alert] \"No Feature found!\""));
    EXPECT_TRUE(shown("The routine has finished searching the Category List.\nStart from the beginning?"));
    EXPECT_FALSE(shown("No Category found!"));
    EXPECT_TRUE(shown("    > PLANTS"));
    EXPECT_TRUE(shown("1001 edit \"Q*\"")) << "the last pattern is offered again";
}

TEST_F(Editor, FeatureFilesGoOutAndComeBack) {
    treeTemplate();
    ui_.answerFile(path("tree.gis")), ui_.answerFile(path("tree.gis")), ui_.answerFile(path("tree.gis"));
    box("OK"), box("Yes"), box("Yes");
    edit({open("TREE"), menu("GIS File/Export"), menu("GIS File/Import"), show(), menu("GIS File/Delete")});
    EXPECT_TRUE(shown("save file box \"Norvane GIS Files (*.gis)|*.gis||\""));
    EXPECT_TRUE(
        shown("box [Details] \"Process done!\nNumber rows stored in    GIS file : 1\nNumber valid rows  from "
              "GIS file : 2\""));
    EXPECT_TRUE(shown("edit \"TREE\" (read-only)"));
    EXPECT_FALSE(fs::exists(path("tree.gis")));
    // An empty sheet, a file that is none, one that cannot be opened.
    write("empty.gis", "");
    fs::create_directory(path("folder.gis"));
    ui_.answerFile(path("empty.gis")), ui_.answerFile(path("folder.gis"));
    box("OK"), box("OK"), box("OK"), box("Yes");
    edit({menu("GIS File/Export"), menu("GIS File/Import"), menu("GIS File/Import")});
    EXPECT_TRUE(shown("Cannot create an empty *.gis file!"));
    EXPECT_TRUE(shown("GIS file : -1\nNumber valid rows  from GIS file : 0"));
    EXPECT_TRUE(shown("Cannot open *.gis file!"));
}

TEST_F(Editor, BoxesBeginAtTheTemplateOrTheDrawingAndAtTheLastFeatureFile) {
    for (const char* folder : {"drawing", "in", "out"}) fs::create_directory(path(folder));
    ASSERT_EQ(host_->saveDrawing(path("drawing/d.dxf")), "");
    ui_.answerFile("");
    box("Yes");
    edit({menu("Template Database/Open...")});
    EXPECT_EQ(boxFolders(), std::vector{path("drawing/")}) << "no template is open";
    treeTemplate();
    write("in/pole.gis", "|00|POLE_ID,Pole number, ,\n");
    for (const char* name : {"", "in/pole.gis", "out/pole.gis", ""}) ui_.answerFile(*name ? path(name) : "");
    box("OK"), box("Yes");
    edit({menu("Template Database/Open..."), menu("GIS File/Import"), menu("GIS File/Export"),
          menu("GIS File/Delete")});
    EXPECT_EQ(boxFolders(), (std::vector{path(""), path("drawing/"), path("in/"), path("out/")}));
}

TEST_F(Editor, AnExportIsDoneInAnyCaseAndKeepsTheName) {
    treeTemplate();
    ui_.answerFile(path("no/folder.gis")), ui_.answerFile(path("other.gis"));
    box("OK"), box("Yes");
    edit({open("TREE"), menu("GIS File/Export"), menu("GIS File/Export"), show()});
    EXPECT_TRUE(shown("box [Error] \"Cannot save *.gis file!\""));
    EXPECT_EQ(std::count(ui_.log().begin(), ui_.log().end(), "information \"Process done...\""), 2);
    EXPECT_TRUE(shown("edit \"TREE\" (read-only)"));
    EXPECT_EQ(read("other.gis"), "|00|SPECIES,Species, ,\n|11|DBH,Diameter, ,\n");
}

TEST_F(Editor, AFileThatIsReadIsNoChange) {
    treeTemplate();
    write("pole.gis", "|00|POLE_ID,Pole number, ,\n");
    ui_.answerFile(path("pole.gis"));
    box("OK"), box("Yes");
    edit({menu("GIS File/Import"), show()});
    EXPECT_TRUE(shown("edit \"POLE\" (read-only)"));
    EXPECT_FALSE(shown("Save Changes?"));
    EXPECT_EQ(features("GIS_NAME='POLE'"), "");
}

TEST_F(Editor, ASaveThatSavesNothingKeepsTheSheetAndItsStar) {
    // No template is open: neither without categories nor with one can the sheet be saved, and it is not let
    // go.
    write("pole.gis", "|00|POLE_ID,Pole number, ,\n");
    ui_.answerFile(path("pole.gis"));
    name("plants"), category("PLANTS");
    box("OK"), box("Yes"), box("OK"), box("Yes"), box("OK"), box("No"), box("Yes");
    edit({menu("GIS File/Import"), at(2, 1, "Number"), menu("Exit"), menu("Category/New"), menu("Exit"),
          show()});
    EXPECT_TRUE(
        shown("No Categories found in the Template Database.\nPlease add at least one category in order "
              "to be able to store Features!"));
    EXPECT_TRUE(shown("box [Error] \"Template Database not set!\""));
    EXPECT_TRUE(shown("Define Template Database *"));
    EXPECT_FALSE(shown("has no steps left"));
    // The feature is there and is not to be replaced: by Ctrl+S, by the question, and by Cancel.
    treeTemplate();
    box("No"), box("Yes"), category("PLANTS"), box("No"), box("Cancel"), box("No"), box("Yes");
    edit({open("TREE"), at(2, 1, "Kind"), key("Ctrl+S"), show(), menu("Exit"), menu("Exit"), show()});
    EXPECT_TRUE(shown("Feature already exist! Do you want to replace it?"));
    EXPECT_TRUE(shown("Define Template Database *"));
    EXPECT_TRUE(shown("'Kind'"));
    EXPECT_EQ(features("FIELD_NAME='SPECIES'"), "TREE|SPECIES|Species||\n");
    EXPECT_FALSE(shown("has no steps left"));
}

TEST_F(Editor, AFeatureOfTwoCategoriesIsHandledWhereItWasSelected) {
    treeTemplate();
    stored("insert into ZGEO_CAT (INDEX_CAT_GIS, CAT_GIS_NAME, GIS_NAME) values (2, 'UTILITIES', 'TREE')");
    // Saved at once, it stays in the category from which it was taken.
    box("Yes"), box("Yes");
    edit({open("UTILITIES/TREE"), at(2, 1, "Kind"), key("Ctrl+S")});
    EXPECT_EQ(features("FIELD_NAME='SPECIES'"), "TREE|SPECIES|Kind||\n");
    EXPECT_EQ(stored("select CAT_GIS_NAME from ZGEO_CAT where GIS_NAME='TREE'"), "UTILITIES\n");
}

TEST_F(Editor, WithoutCategoriesTheSheetSaysThatItCannotBeSaved) {
    newTemplate();
    write("pole.gis", "|00|POLE_ID,Pole number, ,\n");
    ui_.answerFile(path("pole.gis"));
    box("OK"), box("OK"), box("No"), box("Yes");
    edit({menu("GIS File/Import"), at(2, 1, "Number"), key("Ctrl+S")});
    EXPECT_TRUE(shown("box [Alert] \"No Categories found in the Template Database!\""));
}

TEST_F(Editor, ARowThatFillsItselfWhenTheFocusGoesIsAChange) {
    for (const char* where : {"1004", "1003"}) {  // a button, the tree
        treeTemplate();
        fs::remove(path("rod.gis"));
        write("rod.gis", "|00|ROD_HEIGHT,Rod, ,\n");
        ui_.answerFile(path("rod.gis"));
        box("OK"), box("No"), box("Yes");
        Step activate{Step::Kind::ClickCell, "", "", true, 3, 1}, other = activate;
        other.column = 2;
        edit({menu("GIS File/Import"), other, focus(where), show(), activate, focus(where), show()});
        EXPECT_TRUE(shown("'ROD_HEIGHT' 'Rod' ")) << "left by another column, the row is as it was";
        EXPECT_TRUE(shown("'ROD_HEIGHT' 'Rod_Height'")) << where;
        EXPECT_TRUE(shown("Define Template Database *")) << where;
        fs::remove(path("t.mdb"));
    }
}

TEST_F(Editor, TheFormatAskedForHoldsFromTheNextDatabaseOn) {
    answer(kNewFile, {click("New Access 2000 Format")});
    answer(kNewFile, {click("New Access '97 Format")});
    answer(kNewFile, {click("Existing")});
    ui_.answerFile(path("a.mdb")), ui_.answerFile(path("b.mdb")), ui_.answerFile(path("a.mdb"));
    box("Yes");
    edit({menu("Template Database/New"), menu("Template Database/New"), menu("Template Database/New"),
          show()});
    EXPECT_TRUE(shown("edit \"" + path("a.mdb") + "\" (read-only)"));
    auto versionOf = [&](const char* file) {
        CDaoDatabase database;
        database.Open(path(file));
        return database.GetVersion();
    };
    EXPECT_EQ(versionOf("a.mdb"), "3.0");
    EXPECT_EQ(versionOf("b.mdb"), "4.0");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 3 25)"), "0");
    EXPECT_EQ(lisp("ret_string"), "\"97\"");
}

TEST_F(Editor, NewDatabasesTakeAnyNameAndTheirButtonsStandTheOtherWayRound) {
    fs::create_directory(path("v1.2"));
    answer(kNewFile, {show(), click("New Access 2000 Format")});
    ui_.answerFile(path("v1.2/t.mdb"));
    box("Yes");
    edit({menu("Template Database/New")});
    EXPECT_TRUE(fs::exists(path("v1.2/t.mdb")));
    EXPECT_TRUE(
        shown("button \"Existing\"\n  1004 button \"New Access 2000 Format\"\n  1005 button \"New Access "
              "'97 Format\""));
}

TEST_F(Editor, MissingTablesAreMadeForTheRememberedTemplateOrWhereBothMiss) {
    treeTemplate();
    write("gps.ini", "is_database=\ngismdbfile=" + path("other.mdb") + "\n");
    sqlite("t.mdb", "drop table ZGEO_CAT");
    write("half.mdb", read("t.mdb"));
    box("Yes");
    edit({show()});
    EXPECT_TRUE(shown("1002 edit \"" + path("t.mdb") + "\"")) << "remembered, whatever gps.ini says";
    EXPECT_EQ(categories(), "");
    EXPECT_EQ(read("gps.ini"), "is_database=\ngismdbfile=" + path("other.mdb") + "\n");

    {
        CDaoDatabase database;
        database.Create(path("out.mdb"));
    }
    ui_.clearLog();
    ui_.answerFile(path("half.mdb")), ui_.answerFile(path("out.mdb"));
    box("OK"), box("Yes");
    edit({menu("Template Database/Open..."), menu("Template Database/Open..."), show()});
    EXPECT_TRUE(shown(path("half.mdb") + " is not a template database!"));
    EXPECT_TRUE(shown("1002 edit \"" + path("out.mdb") + "\""));
    EXPECT_EQ(sqlite("out.mdb", "select count(*) from ZGEO_CAT"), "0\n");
}

TEST_F(Editor, WhatIsNoTemplateStaysClosed) {
    {
        CDaoDatabase database;
        database.Create(path("half.mdb"));
        CDaoTableDef table(&database);
        table.Create("ZGEO_CAT");
        table.CreateField("INDEX_CAT_GIS", dbLong, 4);
        table.Append();
    }
    write("text.mdb", "no database");
    ui_.answerFile(path("half.mdb")), ui_.answerFile(path("text.mdb"));
    box("OK"), box("OK"), box("Yes");
    edit({menu("Template Database/Open..."), menu("Template Database/Open..."), show()});
    EXPECT_TRUE(shown("box [Error] \"" + path("half.mdb") + " is not a template database!\" flags 0x40030"));
    EXPECT_TRUE(shown("1002 edit \"\" (read-only)"));
}

TEST_F(Editor, TheEditorLooksAtTheTypesOfColumnsAndTheChooserDoesNot) {
    {
        CDaoDatabase database;
        database.Create(path("typed.mdb"));
        CDaoTableDef prompting(&database), categories(&database);
        prompting.Create("ZGEO_SMART_PROMPTING");
        prompting.CreateField("NO_GIS", dbLong, 4);
        for (const char* name : {"GIS_NAME", "FIELD_NAME", "FIELD_PROMPT", "DEFAULT_VALUE", "LIST_VALUES"})
            prompting.CreateField(name, dbText, 255);
        prompting.Append();
        categories.Create("ZGEO_CAT");
        for (const char* name : {"INDEX_CAT_GIS", "CAT_GIS_NAME", "GIS_NAME"})
            categories.CreateField(name, dbText, 255);
        categories.Append();
    }
    ui_.answerFile(path("typed.mdb"));
    box("OK"), box("Yes");
    edit({menu("Template Database/Open...")});
    EXPECT_TRUE(shown(path("typed.mdb") + " is not a template database!"));
    answer(146, {click("1004"), click("Exit")});
    answer(149, {click("Existing")});
    ui_.answerFile(path("typed.mdb"));
    lisp("(cf:gis_smart_prompting 7)");
    EXPECT_NE(read("gps.ini").find("gismdbfile=" + path("typed.mdb")), std::string::npos);
}

TEST_F(Editor, ColumnsInAnotherOrderAndCaseMakeATemplateForEveryReader) {
    for (const char* file : {"t.mdb", "t.sqlite"}) {
        SCOPED_TRACE(file);
        {
            CDaoDatabase database;
            database.Create(path(file));
            auto table = [&](const char* name, const char* number, std::vector<const char*> texts) {
                CDaoTableDef made(&database);
                made.Create(name);
                for (const char* text : texts) {
                    CDaoFieldInfo info;
                    info.name = text;
                    info.type = dbText;
                    info.size = 255;
                    info.allowZeroLength = true;
                    made.CreateField(info);
                }
                made.CreateField(number, dbLong, 4);
                made.Append();
            };
            table("zgeo_smart_prompting", "no_gis",
                  {"list_values", "Field_Prompt", "gis_name", "default_value", "FIELD_name"});
            table("Zgeo_Cat", "index_cat_gis", {"gis_name", "cat_gis_name"});
            table("zgeo_links", "more", {"is_current", "lpn_name", "table_name", "gis_name"});
        }
        sqlite(file,
               "INSERT INTO ZGEO_SMART_PROMPTING(GIS_NAME, FIELD_NAME, FIELD_PROMPT) "
               "VALUES('TREE','KIND','Kind')");
        sqlite(file, "INSERT INTO ZGEO_CAT(INDEX_CAT_GIS, CAT_GIS_NAME, GIS_NAME) VALUES(1,'PLANTS','TREE')");
        sqlite(file, "INSERT INTO ZGEO_LINKS(GIS_NAME, TABLE_NAME, IS_CURRENT) VALUES('TREE','TREES','NO')");
        // The editor reads it, and writes a feature beside the one that is there.
        ui_.answerFile(path(file));
        name("pole");
        box("Yes"), category("PLANTS"), box("Yes");
        edit({menu("Template Database/Open..."), open("TREE"), show(), tree("PLANTS"), click("New Feature"),
              at(1, 1, "height"), at(2, 1, "Height"), at(3, 1, "9"), at(4, 1, "Yes")});
        EXPECT_TRUE(shown("'KIND'"));
        EXPECT_EQ(sqlite(file,
                         "SELECT GIS_NAME, FIELD_NAME, FIELD_PROMPT, DEFAULT_VALUE, LIST_VALUES "
                         "FROM ZGEO_SMART_PROMPTING"),
                  "TREE|KIND|Kind||\nPOLE|~HEIGHT|Height|9|\n");
        EXPECT_EQ(sqlite(file, "SELECT INDEX_CAT_GIS, CAT_GIS_NAME, GIS_NAME FROM ZGEO_CAT"),
                  "1|PLANTS|TREE\n2|PLANTS|POLE\n");
        // The chooser takes it, and the sheet writes to the table that it names.
        answer(146, {click("1004"), click("Exit")});
        answer(149, {click("Existing")});
        ui_.answerFile(path(file));
        lisp("(cf:gis_smart_prompting 7)");
        EXPECT_NE(read("gps.ini").find("gismdbfile=" + path(file)), std::string::npos);
        makeEntity();
        answer(134, {cell(1, "OAK"), click("OK")});
        const std::string output = std::string("of-") + file;
        lisp("(cf:gis_smart_prompting 1 " + quoted("") + " " + quoted(file) + " " + quoted(output) +
             " \"PT_ID\" \"7\" 0.0 0.0 0.0 ent \"TREE\" 1 0.0 0.0 0.0 0.0 0.0 0.0 \"\")");
        EXPECT_EQ(sqlite(output, "SELECT PT_ID, KIND FROM TREES"), "7|OAK\n");
        EXPECT_EQ(sqlite(file, "SELECT GIS_NAME, TABLE_NAME, IS_CURRENT FROM ZGEO_LINKS"),
                  "TREE|TREES|YES\n");
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 21 " + quoted(file) + " \"pole\")"), "1");
        ui_.clearLog();
    }
}

TEST_F(Editor, ATemplateThatCannotBeWrittenLosesNothing) {
    treeTemplate();
    const std::string before = features() + categories();
    // A field that the editor does not know of fails in the middle of the save.
    sqlite("t.mdb", "alter table ZGEO_CAT add column MUST text(9) not null");
    box("Yes"), box("OK"), box("No"), box("Yes");
    edit({open("TREE"), at(2, 1, "Kind"), key("Ctrl+S"), show()});
    EXPECT_TRUE(shown("The field MUST must have a value."));
    EXPECT_TRUE(shown("Define Template Database *"));
    sqlite("t.mdb", "alter table ZGEO_CAT drop column MUST");
    EXPECT_EQ(features() + categories(), before);
}

TEST_F(Editor, AListThatDoesNotFitIsRefusedWhole) {
    treeTemplate();
    const std::string before = features() + categories();
    std::string line = "|00|STREET,Street,A ST,A ST";
    for (int i = 0; i < 100; ++i) line += ",STREET " + std::to_string(i);
    write("road.gis", "|00|LANES,Lanes, ,\n" + line + "\n");
    ui_.answerFile(path("road.gis"));
    category("PLANTS"), box("OK"), box("OK"), box("No"), box("Yes");
    edit({menu("GIS File/Import"), at(2, 1, "Number of lanes"), key("Ctrl+S"), show()});
    EXPECT_TRUE(shown("box [Error]"));
    EXPECT_TRUE(shown("Define Template Database *"));
    EXPECT_EQ(features() + categories(), before);
}
