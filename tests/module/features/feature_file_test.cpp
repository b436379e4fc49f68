// Feature files, and the checks in front of them.
#include "module/features/feature_file.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <random>

#include "module/features/feature_checks.h"
#include "module/features/feature_store.h"
#include "module/store/name_rules.h"

using namespace norvane;

namespace {

std::string readShared(const std::string& name) {
    std::ifstream in(std::string(NORVANE_SHARED_DATA) + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string rewritten(std::string_view content) {
    return FeatureFileText(ParseFeatureFile(content).rows);
}

FeatureFileRow attribute(const std::string& name, const std::string& fullName = "Prompt") {
    return {false, FieldKind::kChar, name, fullName, {}};
}

std::string messageOf(const std::optional<RowFault>& fault) {
    if (!fault) return "";
    return std::to_string(fault->row) + "," + std::to_string(fault->column) + ": " + fault->message;
}

}  // namespace

TEST(FeatureFile, LinesBecomeAttributes) {
    FeatureFileContent file = ParseFeatureFile(
        "|10|POLE_ID,Pole number, ,\r\n|12|depth,Depth of cover, ,\n|11|MATERIAL,Material,STEEL,STEEL,WOOD\n"
        "|02|FINISH,Finish,ST,STEEL, STAINED ,,\n|00|GUYS,Guys,NONE,ONE,TWO\n|00|LAMP,Lamp, ,YES,NO\n");
    ASSERT_EQ(file.rows.size(), 6u);
    EXPECT_EQ(file.rows[0], (FeatureFileRow{true, FieldKind::kChar, "POLE_ID", "Pole number", {}}));
    EXPECT_EQ(file.rows[1], (FeatureFileRow{true, FieldKind::kReal, "DEPTH", "Depth of cover", {}}));
    // A default makes text of every type.
    EXPECT_EQ(
        file.rows[2],
        (FeatureFileRow{true, FieldKind::kChar, "MATERIAL", "Material", {true, {"STEEL", "WOOD"}, "STEEL"}}));
    // A default inside an item counts as there; one that is nowhere goes in front; without one the list is
    // lost.
    EXPECT_EQ(file.rows[3].values, (ValueCell{true, {"STEEL", "STAINED"}, "ST"}));
    EXPECT_EQ(file.rows[4].values, (ValueCell{true, {"NONE", "ONE", "TWO"}, "NONE"}));
    EXPECT_EQ(file.rows[5].values, ValueCell{});
}

TEST(FeatureFile, LinesOfAnyFormAreReadAsFarAsTheyGo) {
    FeatureFileContent file = ParseFeatureFile(
        "|00|\n\nRIM,Rim elevation\n|x9|COVER,Cover,BOLTED,LOOSE\nONE TOKEN\n,No name,TIGHT,TIGHT\n,,X\n");
    EXPECT_EQ(file.lines, 7);
    EXPECT_EQ(file.validRows, 2);
    EXPECT_EQ(file.rows[0].abbreviation, "RIM");
    // The default of a line without a name has gone to the row before it.
    EXPECT_EQ(file.rows[1], (FeatureFileRow{false, FieldKind::kChar, "COVER", "Cover", {true, {}, "X"}}));
    EXPECT_TRUE(ParseFeatureFile(",no row yet,X,Y\n").rows.empty());
    EXPECT_EQ(ParseFeatureFile("").lines, 0);
}

TEST(FeatureFile, OddBytesAreNoLines) {
    EXPECT_EQ(ParseFeatureFile("\xEF\xBB\xBF|10|MH,Manhole, ,\n").rows[0].abbreviation, "MH");
    EXPECT_EQ(ParseFeatureFile("|10|MH,H\xF6he, ,\n").rows[0].fullName, "H\xC3\xB6he");
    std::string nul("|10|MH,Manhole\0,X,X\n|00|B,b, ,\n", 29);
    FeatureFileContent file = ParseFeatureFile(nul);
    EXPECT_EQ(file.rows.size(), 2u);
    EXPECT_FALSE(file.rows[0].values.dropDown);
    // A line of 4095 bytes leaves its end behind as a line of its own, one of 4094 does not.
    EXPECT_EQ(ParseFeatureFile(std::string(4095, 'x') + "\n").lines, 2);
    EXPECT_EQ(ParseFeatureFile(std::string(4094, 'x') + "\n").lines, 1);
    // Pieces follow each other whatever is in them, and one may end with the last byte of the file.
    const std::string named = "|10|A,a, ,\n", filler(4095 - named.size() + 1, 'x');
    EXPECT_EQ(ParseFeatureFile(filler + named).lines, 2);
    EXPECT_EQ(ParseFeatureFile(filler.substr(1) + named).lines, 1);
    EXPECT_EQ(ParseFeatureFile(std::string(4095, ' ') + named + named).validRows, 2);
    EXPECT_EQ(ParseFeatureFile(std::string(3 * 4095, 'x')).lines, 3);
    EXPECT_EQ(ParseFeatureFile(std::string(3 * 4095 + 1, 'x')).lines, 4);
    EXPECT_EQ(ParseFeatureFile(std::string(10'000'000, ',')).rows.size(), 0u);
}

TEST(FeatureFile, TheLastFourCharactersOfItsNameAreNoName) {
    EXPECT_EQ(FeatureNameOfFile("/jobs/main road.gis"), "MAIN ROAD");
    EXPECT_EQ(FeatureNameOfFile("/jobs/pole.text"), "POLE.");
    EXPECT_EQ(FeatureNameOfFile("/jobs/pit"), "");
}

TEST(FeatureFile, TheSampleFilesComeBackByTheRules) {
    const std::string tree = readShared("tree.gis"), pole = readShared("pole.gis"),
                      manhole = readShared("manhole.gis");
    if (tree.empty()) GTEST_SKIP() << "the sample files are not there";
    EXPECT_EQ(rewritten(tree), tree);
    EXPECT_EQ(
        rewritten(pole),
        "|10|POLE_ID,Pole number, ,\n"
        "|10|OWNER,Owner,COUNTY POWER COOP,CITY OF MONROE,COUNTY POWER COOP,VALLEY LIGHT CO.,BELL CREEK "
        "TELEPHONE\n"
        "|10|MATERIAL,Material,STEEL,STEEL,WOOD,CONCRETE\n"
        "|00|FINISH,Finish,ST,STEEL,STAINED,PAINTED\n"
        "|00|GUYS,Guy wires,NONE,NONE,ONE,TWO,THREE\n"
        "|01|CLASS,Class, ,\n"
        "|12|HEIGHT,Height above ground (feet), ,\n"
        "|00|LAMP,Street lamp, ,\n"
        "|00|LAMP_WATTS,Lamp wattage,100,70,100,150,250\n"
        "|00|SAG,Mid-span sag,2.5,1.5,2.5,4.0\n"
        "|00|SPAN_END,Elevation at span end,$EQN=$ELV+HEIGHT-SAG,$EQN=$ELV+HEIGHT-SAG\n"
        "|00|ROD HEIGHT,Rod_height,$EQN=$HGT,$EQN=$HGT\n"
        "|00|TIME,Time,$EQN=$TIM,$EQN=$TIM\n"
        "|00|LATITUDE,Latitude,$EQN=$LAT,$EQN=$LAT\n"
        "|00|LONGITUDE,Longitude,$EQN=$LON,$EQN=$LON\n"
        "|00|NOTE:1,First note, ,\n"
        "|00|ATTACH,Attachments,POWER,POWER,TELEPHONE,CABLE TV\n");
    FeatureFileContent file = ParseFeatureFile(manhole);
    EXPECT_EQ(file.lines, 21);
    EXPECT_EQ(file.validRows, 17);
    EXPECT_EQ(messageOf(CheckForFile(file.rows)), "");
    EXPECT_EQ(FeatureFileText({file.rows.begin(), file.rows.begin() + 9}),
              "|10|MH_NO,Manhole number, ,\n"
              "|12|DEPTH,Depth to invert (feet), ,\n"
              "|00|TYPE,Type,SANITARY,SANITARY,STORM,TELEPHONE,POWER\n"
              "|00|RIM,Rim elevation, ,\n"
              "|00|LID,Lid type,ROUND,ROUND,SQUARE\n"
              "|00|COVER,Cover,LOOSE,LOOSE,TIGHT\n"
              "|11|PIPES,Number of pipes, ,\n"
              "|01|PIPE_SIZE,Largest pipe (inches), ,\n"
              "|02|INV_IN,Invert in, ,\n");
}

// What a sheet that passes the checks becomes by writing and reading.
FeatureFileRow byTheRules(FeatureFileRow row) {
    ValueCell& v = row.values;
    if (v.text.empty()) {
        v = {};
    } else {
        bool occurs = false;
        for (const std::string& item : v.items) occurs |= item.find(v.text) != std::string::npos;
        if (!v.items.empty() && !occurs) v.items.insert(v.items.begin(), v.text);
        v.dropDown = true;
        row.type = FieldKind::kChar;
    }
    return row;
}

TEST(FeatureFile, AnySheetThatPassesComesBackByTheRules) {
    std::mt19937 random(20061);
    auto upTo = [&](unsigned n) { return random() % n; };
    auto word = [&](const char* letters, unsigned longest) {
        std::string w;
        for (unsigned n = 1 + upTo(longest); n > 0; --n)
            w += letters[upTo(static_cast<unsigned>(strlen(letters)))];
        return w;
    };
    int passed = 0;
    for (int round = 0; round < 3000; ++round) {
        std::vector<FeatureFileRow> rows, expected;
        for (unsigned n = 1 + upTo(6); n > 0; --n) {
            FeatureFileRow row = attribute(word("ABZ09_#-$)(:", 20), word("abcXYZ 09|.'\"", 20));
            row.fullName = "P" + row.fullName + "p";  // no blanks at the ends
            row.required = upTo(2);
            if (upTo(2)) {
                row.values.dropDown = true;
                for (unsigned items = upTo(5); items > 0; --items)
                    row.values.items.push_back(word("ABC|$.", 6));
                if (row.values.items.empty() || upTo(4)) row.values.text = word("ABC|$.", 3);
            } else {
                row.type = static_cast<FieldKind>(upTo(3));
            }
            rows.push_back(row);
            expected.push_back(byTheRules(row));
        }
        if (CheckForFile(rows)) continue;
        ++passed;
        EXPECT_EQ(ParseFeatureFile(FeatureFileText(rows)).rows, expected) << FeatureFileText(rows);
    }
    EXPECT_GT(passed, 300);
}

TEST(FeatureChecks, NamesPassByTheirCharactersAndLength) {
    for (const char* good : {"A", "main road (a-1)", "NOTE:1", " $#_-)( 9 "})
        EXPECT_TRUE(IsGoodName(good)) << good;
    EXPECT_TRUE(IsGoodName(std::string(63, 'A')));
    EXPECT_FALSE(IsGoodName(std::string(64, 'A')));
    for (const char* bad : {"", "   ", "A.B", "A,B", "A|B", "O'NEIL", "\xC3\x84"})
        EXPECT_FALSE(IsGoodName(bad)) << bad;
}

TEST(FeatureChecks, LaterFaultsTakeThePlaceOfEarlierOnes) {
    std::vector<FeatureFileRow> rows = {attribute("A"), attribute("B"), attribute("A")};
    EXPECT_EQ(messageOf(CheckForFile(rows)), "3,2: There are duplicates in column <ATTRIBUTE (Abbr.)>!");
    rows[1].fullName = "";
    EXPECT_EQ(messageOf(CheckForFile(rows)),
              "2,2: There are empty strings in column <ATTRIBUTE (Full Name)>!");
    rows = {attribute("A.B", "x,y"), attribute("C")};
    EXPECT_EQ(messageOf(CheckForFile(rows)),
              "1,2: Invalid characters <<,(comma)>> in <ATTRIBUTE (Full Name)>!");
    rows[0].fullName = "x";
    EXPECT_EQ(messageOf(CheckForFile(rows)),
              "1,1: Invalid characters in <ATTRIBUTE (Abbr.)>!\n\nValid characters:\nA-Z\n0-9\n$ # _ -");
    // In front of a file the default comes before the characters, in front of a category behind them.
    rows[1].values = {true, {"X"}, ""};
    EXPECT_EQ(messageOf(CheckForFile(rows)), "2,3: Default value cannot be an empty string!");
    EXPECT_EQ(messageOf(CheckForCategory("F", rows)).substr(0, 60),
              "1,1: Invalid characters in <ATTRIBUTE (Abbr.)> or string len");
    EXPECT_EQ(messageOf(CheckForFile({})), "1,1: Cannot create an empty *.gis file!");
}

TEST(FeatureChecks, TheFeatureNameIsToldUnlessTheSheetIsAtFault) {
    EXPECT_EQ(messageOf(CheckForCategory("A.B", {attribute("A")})), std::string("0,1: ") + kBadNameMessage);
    EXPECT_EQ(messageOf(CheckForCategory("", {attribute("A.B")})), std::string("0,1: ") + kBadNameMessage);
    EXPECT_EQ(messageOf(CheckForCategory("A.B", {attribute("")})),
              "1,1: There are empty strings in column <ATTRIBUTE (Abbr.)>!");
    EXPECT_EQ(messageOf(CheckForCategory("A.B", {})), "1,1: Cannot create an empty *.gis file!");
    EXPECT_EQ(messageOf(CheckForCategory("TREE", {attribute("A")})), "");
    EXPECT_EQ(messageOf(CheckForCategory("TREE", {attribute("A", "x,y")})),
              "1,2: Invalid characters <<,(comma)>> in <ATTRIBUTE (Full Name)>!");
}
