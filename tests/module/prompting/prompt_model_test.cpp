// Rows, equations and checks of the sheet, without a sheet.
#include "module/prompting/prompt_model.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "module/prompting/special_codes.h"
#include "module/store/name_rules.h"

using namespace norvane;

namespace {

// Two columns of plain text.
class PlainCells : public PromptCells {
  public:
    explicit PlainCells(std::vector<std::string> values = {}) : values_(std::move(values)) {}
    int rowCount() const override { return static_cast<int>(values_.size()); }
    bool isCheckBox(int, int row) const override { return row == checkBoxRow; }
    std::string cellText(int column, int row) const override {
        return column == 2 ? values_[static_cast<size_t>(row) - 1] : prompts[static_cast<size_t>(row) - 1];
    }
    void setCellText(int, int row, const std::string& text) override {
        values_[static_cast<size_t>(row) - 1] = text;
    }
    int checkBoxRow = 0;
    std::vector<std::string> prompts;

  private:
    std::vector<std::string> values_;
};

std::vector<PromptRow> rowsNamed(const std::vector<std::string>& names) {
    std::vector<PromptRow> rows(names.size());
    for (size_t i = 0; i < names.size(); ++i) rows[i].name = names[i];
    return rows;
}

std::string evaluated(const std::string& code, const PointContext& point = {},
                      const std::vector<std::string>& names = {}, const PlainCells& cells = PlainCells()) {
    return EvaluateEquation(code, point, rowsNamed(names), cells);
}

PointContext somePoint() {
    PointContext p;
    p.northing = 1000.5;
    p.easting = 2000;
    p.elevation = 12.25;
    return p;
}

PromptRow promptRow(const std::string& fieldName, const std::string& defaultValue = "",
                    const std::string& list = "") {
    return PromptRowOf({fieldName, "Prompt", defaultValue, list});
}

}  // namespace

TEST(PromptModel, FieldNamesCarryRequiredAndKind) {
    struct {
        const char* raw;
        const char* name;
        bool required;
        FieldKind kind;
    } cases[] = {{"~..DEPTH", "DEPTH", true, FieldKind::kReal},
                 {".COUNT", "COUNT", false, FieldKind::kInt},
                 {"OWNER", "OWNER", false, FieldKind::kChar},
                 {"~", "", true, FieldKind::kChar},
                 {"..", "", false, FieldKind::kReal},
                 {".", "", false, FieldKind::kInt},
                 {"", "", false, FieldKind::kChar},
                 {".~A", "~A", false, FieldKind::kInt},
                 {"~~A", "~A", true, FieldKind::kChar},
                 {"...A", ".A", false, FieldKind::kReal}};
    for (const auto& c : cases) {
        FieldName field = ParseFieldName(c.raw);
        EXPECT_EQ(field.name, c.name) << c.raw;
        EXPECT_EQ(field.required, c.required) << c.raw;
        EXPECT_EQ(field.kind, c.kind) << c.raw;
    }
}

TEST(PromptModel, TheListDecidesTheCell) {
    EXPECT_EQ(DecideCell(promptRow("..D")).cell, PromptCell::kEditNumber);
    // Without a list there is no default, and no special code.
    EXPECT_EQ(DecideCell(promptRow("A", "OAK")).content, "");
    EXPECT_EQ(DecideCell(promptRow("A", "$EQN=$NOR")).cell, PromptCell::kEditText);
    CellDecision list = DecideCell(promptRow(".N", "2", "1,2, 3"));
    EXPECT_EQ(list.cell, PromptCell::kDropDown);
    EXPECT_EQ(list.content, "2");
    EXPECT_EQ(TabbedChoices(promptRow("A", "", "1,2, 3,,")), "1\t2\t 3\t\t");
    EXPECT_EQ(DecideCell(promptRow("A", "$EQN=$DSC", "$EQN=$DSC")).cell, PromptCell::kEditText);
    EXPECT_EQ(DecideCell(promptRow("A", "$EQN=$DAT", "$EQN=$DAT")).cell, PromptCell::kStatic);
    EXPECT_EQ(DecideCell(promptRow("A", "$EQN=A*2", "x")).cell, PromptCell::kStatic);
    EXPECT_TRUE(IsComputed(promptRow("A", "$EQN=A*2", "x")));
    EXPECT_FALSE(IsComputed(promptRow("A", "$EQN=A*2", "")));
}

TEST(PromptModel, NumbersAreClassified) {
    for (const char* integer : {"12", "-7", "+3", "0x1F", "010", "99999999999", " 5", ""})
        EXPECT_EQ(ClassifyNumber(integer), 2) << integer;
    for (const char* real : {"1.0", "1e5", "-.5", "5.", "+2.5"}) EXPECT_EQ(ClassifyNumber(real), 1) << real;
    for (const char* none : {"abc", "inf", "NAN", "-Infinity", "INFLOW", "1,5", "12 ", "1e999", "0x", "--1",
                             "99999999999999999999.5"})
        EXPECT_EQ(ClassifyNumber(none), 0) << none;
}

TEST(PromptModel, FeatureNamesAreChecked) {
    EXPECT_EQ(CheckFeatureName("MAIN ROAD (A-1)"), 1);
    EXPECT_EQ(CheckFeatureName(" tree_1$: "), 1);
    EXPECT_EQ(CheckFeatureName("  "), 0);
    EXPECT_EQ(CheckFeatureName("A#1"), -1);
    EXPECT_EQ(CheckFeatureName("B\xC3\x84UME"), -1);
    EXPECT_EQ(*FeatureNameFault("A.B"), "Invalid character \".\" in feature name!");
    EXPECT_EQ(*FeatureNameFault(""), "Feature name cannot be an empty string!");
    EXPECT_EQ(*FeatureNameFault("A/B"),
              "Invalid characters in feature name!\n\nValid characters:\nA-Z\n0-9\n_");
    EXPECT_FALSE(FeatureNameFault("A"));
}

TEST(PromptModel, TheFirstFaultOfTheFirstKindIsTold) {
    std::vector<PromptRow> rows{promptRow("~A"), promptRow(".N"), promptRow("..R"), promptRow("~B")};
    EXPECT_TRUE(rows[0].mustBeSet && !rows[1].mustBeSet);
    auto fault = [&](std::vector<std::string> values, const std::string& feature = "TREE") {
        return ValidateRows(feature, rows, PlainCells(std::move(values)));
    };
    EXPECT_FALSE(fault({"x", "", "", " "}));  // a blank counts as set
    EXPECT_EQ(fault({"x", "1.0", "", ""})->message, "Attribute B must be set!");
    EXPECT_EQ(fault({"x", "1.0", "zzz", "y"})->message,
              "Attribute N must be an integer value!\n(From -2 147 483 648 through 2 147 483 647)");
    EXPECT_EQ(fault({"x", "1", "zzz", "y"})->message,
              "Attribute R must be a real value!\n(From -1.7E+308 through 1.7E+308)");
    EXPECT_EQ(fault({"x", "1", "zzz", "y"}, "A.B")->row, 3);
    EXPECT_EQ(fault({"x", "1", "1e5", "y"}, "A.B")->row, 0);
}

TEST(Equation, OperatorsHaveTheirOrder) {
    struct {
        const char* code;
        const char* value;
    } cases[] = {{"$EQN=8-2+1", "7"},
                 {"$EQN=1+8-2", "7"},
                 {"$EQN=2*3/4", "1.5"},
                 {"$EQN=10/0", "0"},
                 {"$EQN=0/10", "0"},
                 {"$EQN=5*-3", "-3"},
                 {"$EQN=-3", "-3"},
                 {"$EQN=", "0"},
                 {"$EQN", "0"},
                 {"$EQN=/4", "0.25"},
                 {"$EQN=4/", "4"},
                 {"$EQN=*4", "4"},
                 {"$EQN=4*", "4"},
                 {"$EQN=3+", "3"},
                 {"$EQN=1/3", "0.333333333"},
                 {"$EQN=12ABC", "12"},
                 {"$EQN=(2", "0"},
                 {"$EQN=5 + 3", "8"},
                 {"$EQN=2/3*3", "2.000000001"},
                 {"$EQN=10-2-3", "5"},
                 {"$EQN=1+2-3+4", "4"},
                 {"$EQN=NOTHING*2", "0"}};
    // 2/3 has become 0.666666667 when it is multiplied.
    for (const auto& c : cases) EXPECT_EQ(evaluated(c.code), c.value) << c.code;
}

TEST(Equation, CodesAndRowsAreNumbers) {
    EXPECT_EQ(evaluated("$EQN=$NOR", somePoint()), "1000.5");
    EXPECT_EQ(evaluated("$eqn=$nor-1000", somePoint()), "0.5");
    EXPECT_EQ(evaluated("$EQN=$LAT+0", somePoint()), "0");
    EXPECT_EQ(evaluated("$EQN=INFLOW+INFLOW"), "0") << "a word that begins as infinity does";
    EXPECT_EQ(evaluated("$EQN=OWNER*2", {}, {"OWNER"}, PlainCells({"NANCY"})), "0");
    EXPECT_EQ(evaluated("$EQN=$NOR+$NOR", somePoint()), "2001");
    EXPECT_EQ(evaluated("$EQN=A+A", {}, {"A"}, PlainCells({"3"})), "3");
    EXPECT_EQ(evaluated("$EQN=A*2", {}, {"A"}, PlainCells({""})), "0");
    // AREA is found inside TOTAL_AREA, and what is left reads as 0.
    EXPECT_EQ(evaluated("$EQN=TOTAL_AREA*2", {}, {"AREA", "TOTAL_AREA"}, PlainCells({"7", "9"})), "0");
    EXPECT_EQ(evaluated("$EQN=TOTAL_AREA*2", {}, {"TOTAL_AREA", "AREA"}, PlainCells({"9", "7"})), "18");
    EXPECT_EQ(evaluated("$EQN=depth*2", {}, {"depth"}, PlainCells({"4"})),
              "0");                                                      // the expression is upper case
    EXPECT_EQ(evaluated("$EQN=1+2", {}, {""}, PlainCells({"5"})), "3");  // a row without a name
}

TEST(Equation, RowsBeyondTheNamesGoByTheirPrompt) {
    PlainCells cells({"4", "x", "6"});
    cells.prompts = {"Depth", "IMAGE_ZGEO/1", "Extra"};
    cells.checkBoxRow = 2;
    EXPECT_EQ(evaluated("$EQN=EXTRA*2", {}, {"DEPTH"}, cells), "12");
    // A check box takes the value that was read before it.
    EXPECT_EQ(evaluated("$EQN=DEPTH+IMAGE_ZGEO/1", {}, {"DEPTH"}, cells), "8");
}

TEST(ComputedRows, AreComputedInOneRoundInOrder) {
    PointContext p = somePoint();
    p.rodHeight.value = 6.5;
    PlainCells cells({"stored", "", "", "", "typed", "2"});
    std::vector<PromptRow> rows{
        promptRow("LATITUDE", "$EQN=$LAT", "x"), promptRow("NORTHING", "$EQN=$NOR", "x"),
        promptRow("ROD", "$EQN=$HGT", "x"),      promptRow("LATER", "$EQN=BASE*2", "x"),
        promptRow("TIME", "$EQN=$TIM", "x"),     promptRow("BASE")};
    RefreshComputedRows(rows, p, cells, RefreshReason::kCellChange);
    EXPECT_EQ(cells.cellText(2, 1), "stored");  // not available: what the cell holds stays
    EXPECT_EQ(cells.cellText(2, 2), "1000.5");
    EXPECT_EQ(cells.cellText(2, 3), "6.5");
    EXPECT_EQ(cells.cellText(2, 4), "4");
    EXPECT_EQ(cells.cellText(2, 5), "typed");  // filled at loading only
}

TEST(ComputedRows, ReadWhatALaterRowHeldBefore) {
    PlainCells cells({"", "", "2"});
    std::vector<PromptRow> rows{promptRow("FIRST", "$EQN=SECOND*2", "x"),
                                promptRow("SECOND", "$EQN=BASE*2", "x"), promptRow("BASE")};
    RefreshComputedRows(rows, {}, cells, RefreshReason::kCellChange);
    EXPECT_EQ(cells.cellText(2, 1) + " " + cells.cellText(2, 2), "0 4");
    RefreshComputedRows(rows, {}, cells, RefreshReason::kCellChange);
    EXPECT_EQ(cells.cellText(2, 1) + " " + cells.cellText(2, 2), "8 4");
}

TEST(ComputedRows, TimesHaveNoZerosInFront) {
    // A zone in which it is between three and five o'clock now.
    std::time_t now = std::time(nullptr);
    const std::string zone = "ZONE" + std::to_string(std::gmtime(&now)->tm_hour - 3);
    ::setenv("TZ", zone.c_str(), 1);
    ::tzset();
    std::string value;
    EXPECT_TRUE(TextCodeValue("$EQN=$TIM", "", {}, value));
    EXPECT_TRUE(value.starts_with("3:") || value.starts_with("4:")) << value;
    ::unsetenv("TZ");
    ::tzset();
}

TEST(ComputedRows, TextCodesKeepWhatWasStored) {
    PointContext p;
    p.description = "TREE";
    std::string value;
    EXPECT_TRUE(TextCodeValue("$EQN=$DSC", "", p, value));
    EXPECT_EQ(value, "TREE");
    EXPECT_TRUE(TextCodeValue("$EQN=$DAT", "1/2/2005", p, value));
    EXPECT_EQ(value, "1/2/2005");
    EXPECT_FALSE(TextCodeValue("$EQN=$INS", "", p, value));
    p.instrument = "GPS 5700";
    EXPECT_TRUE(TextCodeValue("$EQN=$INS", "", p, value));
    EXPECT_EQ(value, "GPS 5700");
    EXPECT_FALSE(TextCodeValue("$EQN=$NOR", "5", p, value));
    int month = 0, day = 0, year = 0;
    EXPECT_TRUE(TextCodeValue("$EQN=$DAT", "", p, value));
    EXPECT_EQ(std::sscanf(value.c_str(), "%d/%d/%d", &month, &day, &year), 3);
    EXPECT_TRUE(month >= 1 && month <= 12 && day >= 1 && year >= 2024) << value;
}
