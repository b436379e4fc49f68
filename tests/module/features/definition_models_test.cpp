// What goes on paper, to a data collector, and into a feature made from a table: the models behind the
// dialogs.
#include <gtest/gtest.h>

#include <filesystem>

#include "module/features/collector_upload_codes.h"
#include "module/features/collector_upload_files.h"
#include "module/features/feature_from_table_dialog.h"
#include "module/features/print_definitions_rows.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"
#include "tests/platform/dao/scratch.h"
#include "tests/platform/ui/checked_script.h"

using namespace norvane;

namespace {

std::string shownRows(const std::vector<DefinitionRow>& rows) {
    std::string all;
    for (const DefinitionRow& row : rows)
        all += row.heading + "|" + row.text + "|" + row.note + (row.isDefault ? "*\n" : "\n");
    return all;
}

std::string shownAttributes(const std::vector<FeatureFileRow>& rows) {
    std::string all;
    for (const FeatureFileRow& row : rows) {
        const char* type = row.type == FieldKind::kReal  ? "Real"
                           : row.type == FieldKind::kInt ? "Int"
                                                         : "Char";
        all += row.abbreviation + "|" + row.fullName + "|" + type + "|" + row.values.text + "\n";
        EXPECT_EQ(row.values.dropDown, !row.values.text.empty());
        EXPECT_FALSE(row.required);
    }
    return all;
}

}  // namespace

TEST(DefinitionRows, AFeatureTakesARowAndItsAttributesThoseOfTheirValues) {
    const std::vector<FeatureRow> attributes = {
        {"~..DEPTH", "Depth of cover", "", ""},     {".GATES", "Gates", "2", "1,2,,3,2"},
        {"~~~~FOUR", "Marks in front", " ", " "},   {"...A.B", "Dots", "", "X, Y ,X"},
        {"DATE", "Date", "$EQN=$DAT", "$EQN=$DAT"},
    };
    EXPECT_EQ(shownRows(RowsOfFeature({"FENCE", "CADASTRE"}, attributes, {})),
              "GIS NAME:|FENCE|CAT.-CADASTRE\n");
    EXPECT_EQ(shownRows(RowsOfFeature({"FENCE", "CADASTRE"}, attributes, {true, false})),
              "GIS NAME:|FENCE|CAT.-CADASTRE\n"
              "FIELD:|DEPTH|\nPROMPT:|Depth of cover|\n"
              "FIELD:|GATES|\nPROMPT:|Gates|\nVALUES:|2|*\n|1|\n|3|\n"
              "FIELD:|~FOUR|\nPROMPT:|Marks in front|\n"
              "FIELD:|A.B|\nPROMPT:|Dots|\nVALUES:|X|\n|Y|\n"
              "FIELD:|DATE|\nPROMPT:|Date|\nVALUES:|$EQN=$DAT|*\n");
    EXPECT_EQ(shownRows(RowsOfFeature({"FENCE", "CADASTRE"}, {attributes.begin(), attributes.begin() + 2},
                                      {true, true})),
              "GIS NAME:|FENCE|CAT.-CADASTRE\n"
              "FIELD:|DEPTH|Real, required\nPROMPT:|Depth of cover|\n"
              "FIELD:|GATES|Int\nPROMPT:|Gates|\nVALUES:|2|*\n|1|\n|3|\n");
    EXPECT_EQ(AttributeLine(attributes[1]), ".GATES,Gates,2,1,2,,3,2");
}

TEST(DefinitionRows, CategoriesAndFeaturesStandInTheOrderOfTheirNames) {
    const std::vector<DefinedCategory> categories = DefinedCategories({{"roads", "NO_GIS"},
                                                                       {"Plants", "tree"},
                                                                       {"ROADS", "LANE"},
                                                                       {"Plants", "BUSH"},
                                                                       {"EMPTY", "NO_GIS"}});
    std::string all;
    for (const DefinedCategory& category : categories) {
        all += category.name + ":";
        for (const std::string& feature : category.features) all += " " + feature;
        all += "\n";
    }
    EXPECT_EQ(all, "EMPTY:\nPlants: BUSH tree\nroads: LANE\n");
}

TEST(DefinitionRows, PagesHoldThirtyFiveRows) {
    auto pages = [](int rows) {
        std::string all;
        for (const ui::PrintedRows& page : DefinitionPages(rows))
            all += std::to_string(page.first) + "-" + std::to_string(page.last) + " ";
        return all;
    };
    EXPECT_EQ(pages(0), "");
    EXPECT_EQ(pages(1), "1-1 ");
    EXPECT_EQ(pages(35), "1-35 ");
    EXPECT_EQ(pages(36), "1-35 36-36 ");
    EXPECT_EQ(pages(70), "1-35 36-70 ");
}

TEST(DefinitionRows, TheTextHasItsColumnsBelowEachOther) {
    EXPECT_EQ(DefinitionText(RowsOfFeature({"BÄUME", "ÄCKER"}, {{".N", "Anzahl", "2", "1,2"}}, {true, true})),
              "GIS NAME:  BÄUME   CAT.-ÄCKER\n"
              "FIELD:     N       Int\n"
              "PROMPT:    Anzahl\n"
              "VALUES:    2       (default)\n"
              "           1\n");
}

TEST(CodeDefinitions, TheFirstFieldOfALineIsACode) {
    using Codes = std::vector<std::string>;
    EXPECT_EQ(ParseCodeDefinitions("tree,Tree,X\nFENCE|of|bars\nONE|bar,comma\nIP FND , x\n"),
              (Codes{"TREE", "FENCE", "ONE|BAR", "IP FND"}));
    // Comments, short lines and lines without a code; the mark of a comment stands in front.
    EXPECT_EQ(ParseCodeDefinitions("#TREE,a comment\n #POLE,none\nEP,EDG\nEP,EDGE\r\nHY,EDG\r\n"
                                   ",no code\n ,one blank\n|| bars\n,,,,,,,,\n"),
              (Codes{"#POLE", "EP"}));
    // Each once; a line without a separator is a code as a whole, and so is the last one without an end.
    EXPECT_EQ(ParseCodeDefinitions("TREE,one\ntree,two\n LONGCODE\nTREE ,three"),
              (Codes{"TREE", "LONGCODE"}));
    EXPECT_EQ(ParseCodeDefinitions("\xEF\xBB\xBF"
                                   "b\xC3\xA4ume,x,y\n"),
              (Codes{"BÄUME"}));
    EXPECT_EQ(ParseCodeDefinitions("b\xE4ume,x,y\n"), (Codes{"BÄUME"}));
    EXPECT_EQ(ParseCodeDefinitions(""), Codes{});
    EXPECT_EQ(ParseCodeDefinitions(std::string_view("TREE\0,abcdef\nPOLE,ab\0cdefg\nSIGNPOST\0\0\n", 38)),
              (Codes{"POLE", "SIGNPOST"}));
}

TEST(CodeDefinitions, LongLinesComeInPieces) {
    using Codes = std::vector<std::string>;
    auto line = [](const std::string& begin, size_t size) {
        return begin + std::string(size - begin.size(), 'x');
    };
    // A reader with a buffer of 527 bytes gets 526 of them at once, the line end among them.
    EXPECT_EQ(ParseCodeDefinitions(line("A,", 526) + "SECOND,piece"), (Codes{"A", "SECOND"}));
    EXPECT_EQ(ParseCodeDefinitions(line("A,", 525) + "SECOND,piece"), (Codes{"A", "ECOND"}));
    EXPECT_EQ(ParseCodeDefinitions(line("A,", 526) + "\nB,second"), (Codes{"A", "B"}));
    EXPECT_EQ(ParseCodeDefinitions(line("A,", 525) + "\r\nB,second"), (Codes{"A", "B"}));
    EXPECT_EQ(ParseCodeDefinitions(line("A,", 526) + "short\n"), (Codes{"A"}));
}

TEST(CodeDefinitions, OfAFileWithBothSeparators) {
    const std::optional<std::string> content = files::read(NORVANE_SHARED_DATA "/codes_odd.fld");
    if (!content) GTEST_SKIP() << "codes_odd.fld is not there";
    EXPECT_EQ(ParseCodeDefinitions(*content),
              (std::vector<std::string>{"TREE", "POLE", "FENCE", "FENCE2", "#TREE", "HYDR", "MH", "1234567",
                                        "ROAD", std::string(84, 'X'), "MONUMENT", "MONUMENT2", "MONUMENT3",
                                        std::string(526, 'Z'), "ZZZZ", "GUYWIRE", "TANK", "PIPE:8IN",
                                        "SURVEY_NOTES"}));
}

TEST(CollectorFiles, LinesAreAsTheTemplateHasThem) {
    EXPECT_EQ(CollectorFileText({{"~..DEPTH", "Depth", "", ""},
                                 {"N", "P", " ", "A,B"},
                                 {".GATES", "Gates", "1", "2,3"},
                                 {"~KIND", "Kind", "WOOD", "STEEL,WOOD"},
                                 {"E", "Empty default", "", "A,B"},
                                 {"", "no name", "", ""},
                                 {"NOPROMPT", "", "", ""},
                                 {"M", "In a value", "ST", "STEEL"},
                                 {"D", "Alone", "X", ""}}),
              "|12|DEPTH,Depth, ,\n"
              "|00|N,P, , ,A,B\n"
              "|01|GATES,Gates,1,1,2,3\n"
              "|10|KIND,Kind,WOOD,STEEL,WOOD\n"
              "|00|E,Empty default, ,A,B\n"
              "|00|M,In a value,ST,STEEL\n"
              "|00|D,Alone,X,\n");
}

TEST(CollectorFiles, StandInTheirFolderAsLongAsTheyAreWanted) {
    const ScratchFolder scratch;
    const std::vector<CollectorFeature> features = {{"TREE", {{"A", "B", "", ""}}}, {"PIPE:8 IN", {}}};
    const std::string folder = scratch("$TmpFeaDir$");
    // What an earlier upload has left goes with it.
    std::filesystem::create_directory(folder);
    writeFile(folder + "/OLD.gis", "old");
    {
        CollectorFiles files(scratch(""), "codes", features);
        EXPECT_EQ(files.write(), std::nullopt);
        EXPECT_EQ(files::read(scratch("padlink.txt")),
                  "Local=" + folder + "/TREE.gis\nRemote=ZGSIS\\codes\\TREE.gis\nUpload=1\n" +
                      "Local=" + folder + "/PIPE:8 IN.gis\nRemote=ZGSIS\\codes\\PIPE:8 IN.gis\nUpload=1\n");
        EXPECT_EQ(files::read(folder + "/TREE.gis"), "|00|A,B, ,\n");
        EXPECT_EQ(files::read(folder + "/PIPE:8 IN.gis"), "");
        EXPECT_FALSE(files::exists(folder + "/OLD.gis"));
        EXPECT_FALSE(files::exists(folder + "/$$$.gis"));
        writeFile(folder + "/log.txt", "of the transfer program");
    }
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path()));
}

TEST(CollectorFiles, WhatCannotBeMadeIsToldAndLeavesNothing) {
    const ScratchFolder scratch;
    auto faultOf = [&](const std::vector<CollectorFeature>& features) {
        CollectorFiles files(scratch(""), "codes", features);
        return files.write().value_or("none");
    };
    // A folder that leads elsewhere is not emptied.
    std::filesystem::create_directory(scratch("mine"));
    writeFile(scratch("mine/kept.txt"), "kept");
    std::filesystem::create_directory_symlink(scratch("mine"), scratch("$TmpFeaDir$"));
    EXPECT_EQ(faultOf({{"TREE", {}}}), "Cannot create temporary folder.");
    EXPECT_TRUE(files::exists(scratch("mine/kept.txt")));
    std::filesystem::remove(scratch("$TmpFeaDir$"));

    writeFile(scratch("$TmpFeaDir$"), "a file of that name");
    EXPECT_EQ(faultOf({{"TREE", {}}}), "Cannot create temporary folder.");
    std::filesystem::remove(scratch("$TmpFeaDir$"));

    std::filesystem::create_directory(scratch("padlink.txt"));
    EXPECT_EQ(faultOf({{"TREE", {}}}), "Cannot create batch file.");
    EXPECT_TRUE(files::isFolder(scratch("padlink.txt")));
    std::filesystem::remove(scratch("padlink.txt"));

    for (const char* name : {"../mine/TREE", "a\\b", ""})
        EXPECT_EQ(faultOf({{"TREE", {}}, {name, {}}}), "Cannot create temporary folder.") << name;
    EXPECT_EQ(faultOf({{"TREE", {}}, {std::string(300, 'A'), {}}}), "Cannot create temporary folder.");
    std::filesystem::remove_all(scratch("mine"));
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path()));
}

TEST(TableAttributes, ThoseOfThePointComeFirstAndWhatMakesNoneIsLeftOut) {
    const std::vector<TableColumn> columns = {
        {"OWNER", dbText},     {"TIME", dbText},         {"PT_ID", dbText},
        {"COUNT", dbLong},     {"NORTHING", dbDouble},   {"INSTRUMENT", dbText},
        {"GIS_KEY", dbText},   {"IMAGE_ZGEO/1", dbText}, {"IMAGE_ZGE", dbText},
        {"LABEL/1", dbText},   {"LABELS", dbText},       {"NOTES", dbMemo},
        {"FLOORS", dbInteger}, {"RATE", dbSingle},       {"TAX", dbCurrency},
        {"DATE", dbDate},      {"ROD_HEIGHT", dbText},   {"A.B", dbText},
        {"LAST JOB", dbText},  {"COUNT", dbText},        {std::string(64, 'N'), dbText}};
    EXPECT_EQ(
        shownAttributes(AttributesOfTable(columns)),
        "NORTHING|Northing|Char|$EQN=$NOR\nROD_HEIGHT|Rod_height|Char|$EQN=$HGT\nTIME|Time|Char|$EQN=$TIM\n"
        "OWNER|OWNER|Char|\nCOUNT|COUNT|Int|\nINSTRUMENT|INSTRUMENT|Char|$EQN=$INS\nLABELS|LABELS|Char|\n"
        "NOTES|NOTES|Char|\nFLOORS|FLOORS|Int|\nRATE|RATE|Real|\nLAST JOB|LAST JOB|Char|\n");
    // All twelve in their own order, whatever that of the table.
    std::vector<TableColumn> known;
    std::string names;
    for (const char* name : {"TIME", "DATE", "VRMS_SEP", "HRMS_CEP", "ROD_HEIGHT", "RAW_ELEV", "LONGITUDE",
                             "LATITUDE", "DESCRIPTION", "ELEVATION", "EASTING", "NORTHING"})
        known.push_back({name, dbText});
    for (const FeatureFileRow& row : AttributesOfTable(known)) names += row.abbreviation + " ";
    EXPECT_EQ(
        names,
        "NORTHING EASTING ELEVATION DESCRIPTION LATITUDE LONGITUDE RAW_ELEV ROD_HEIGHT HRMS_CEP VRMS_SEP "
        "DATE TIME ");
    EXPECT_EQ(AttributesOfTable({{"IMAGE_ZGEO/1", dbText}}).size(), 0u);
}

// The host has no object data; where it had, the dialog would offer it.
TEST(TableAttributes, ObjectDataIsChosenInPlaceOfADatabase) {
    CheckedScript script;
    ui::setBackend(&script);
    using Kind = ui::Step::Kind;
    script.answer(153, {{Kind::Show},
                        {Kind::Check, "Select From Object Data Tables"},
                        {Kind::Show},
                        {Kind::Text, "Selected Table:", "poles"},
                        {Kind::Show},
                        {Kind::Click, "OK"}});
    const ObjectDataTable table = {"Poles",
                                   {{"height", "Real"},
                                    {"count", "integer"},
                                    {"owner", "character"},
                                    {"where", "point"},
                                    {"Date", "character"}}};
    {
        TableChooser chooser("", true, {table});
        EXPECT_EQ(chooser.runModal(), ui::kOk);
        EXPECT_TRUE(chooser.isObjectData());
        ASSERT_NE(chooser.table(), nullptr);
        EXPECT_EQ(chooser.table()->name, "Poles");
        EXPECT_EQ(shownAttributes(chooser.attributes()),
                  "DATE|Date|Char|$EQN=$DAT\nHEIGHT|HEIGHT|Real|\nCOUNT|COUNT|Int|\nOWNER|OWNER|Char|\n");
    }
    std::vector<std::string> shown;
    for (const std::string& line : script.log())
        if (line.find("[153]") == 0) shown.push_back(line);
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_NE(shown[0].find("Create New Feature Using Output Database Table"), std::string::npos);
    EXPECT_NE(shown[1].find("Create New Feature Using Object Data Table"), std::string::npos);
    EXPECT_NE(shown[1].find("\"Open Another Output Database\" (disabled)"), std::string::npos) << shown[1];
    EXPECT_EQ(shown[2].find("OK adds"), std::string::npos);
    ui::setBackend(nullptr);
}
