// The fields of delimited lines, and the files that keep them.
#include <gtest/gtest.h>

#include "module/transfer/field_settings_file.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

std::string shown(const std::vector<AsciiField>& fields) {
    std::string all;
    for (const AsciiField& field : fields)
        all += field.name + "|" + field.type + "|" + (field.isKey ? "Yes" : "No") +
               (field.isKey ? "(" + field.formerName + ")" : "") + " ";
    return all;
}

std::string values(const std::vector<AsciiField>& fields) {
    std::string all;
    for (const AsciiField& field : fields) all += field.name + "=" + field.value + ";";
    return all;
}

std::vector<AsciiField> three() {
    return {{"A", "", "Real"}, {"B", "", "Int"}, {"C", "", "Char"}};
}

std::string loaded(const std::string& content, std::vector<AsciiField> fields,
                   const std::vector<NamedType>& table = {}) {
    ScratchFolder folder;
    writeFile(folder("a.fds"), content);
    const auto settings = ReadFieldSettings(folder("a.fds"));
    EXPECT_TRUE(settings);
    ApplyFieldSettings(*settings, table, fields);
    return shown(fields);
}

}  // namespace

TEST(TextFields, PiecesGetTypesByTheirValuesAndNamesByNumber) {
    EXPECT_EQ(shown(ParseLine("1,2.5,OAK,,7045551234,0x10,1e3, 4 ", {})),
              "FIELD1|Int|No FIELD2|Real|No FIELD3|Char|No FIELD4|Char|No FIELD5|Char|No FIELD6|Char|No "
              "FIELD7|Real|No FIELD8|Int|No ");
    EXPECT_EQ(values(ParseLine("a,  , b ", {})), "FIELD1=a;FIELD2=;FIELD3=b;");
    EXPECT_TRUE(ParseLine("", {}).empty());
}

TEST(TextFields, NamesStandInFrontOfAnEmbeddedDelimiter) {
    const TextFormat format{',', ':', false};
    EXPECT_EQ(values(ParseLine("1,North:5,O'BRIEN", format)), "FIELD1=1;NORTH=5;FIELD2=O'BRIEN;");
    EXPECT_EQ(values(ParseLine(" last seen : 8:00 ,A.B:1,GIS_KEY:X,pt_id:7,:9", format)),
              "LAST SEEN=8:00;FIELD1=A.B:1;FIELD2=GIS_KEY:X;FIELD3=pt_id:7;FIELD4=:9;");
    // Without one no piece is cut again.
    EXPECT_EQ(values(ParseLine("North:5", {})), "FIELD1=North:5;");
}

TEST(TextFields, ThereIsOneKeyWhichGivesItsNameBack) {
    std::vector<AsciiField> fields = three();
    SetKey(fields, 0);
    EXPECT_EQ(shown(fields), "PT_ID|Char|Yes(A) B|Int|No C|Char|No ");
    SetKey(fields, 1);
    EXPECT_EQ(shown(fields), "A|Char|No PT_ID|Char|Yes(B) C|Char|No ");
    EXPECT_EQ(KeyOf(fields), 1u);
    ResetKey(fields);
    EXPECT_EQ(shown(fields), "A|Char|No B|Char|No C|Char|No ");
    EXPECT_EQ(KeyOf(fields), std::nullopt);
}

TEST(TextFields, OrdersNameTheFirstFields) {
    std::vector<AsciiField> fields = three();
    ApplyOrder(fields, PointOrders()[1]);
    EXPECT_EQ(shown(fields), "PT_ID|Char|Yes(A) EASTING|Real|No NORTHING|Real|No ");
    ApplyOrder(fields, PointOrders()[2]);
    EXPECT_EQ(shown(fields), "NORTHING|Real|No EASTING|Real|No ELEVATION|Real|No ");
}

TEST(TextFields, HeadingsBecomeNamesWhereTheyCan) {
    EXPECT_EQ(NamesOfHeadings({" Point no ", "Höhe", "A,B", "", "pt_id", "point NO", std::string(70, 'x')}),
              (std::vector<std::string>{"POINT NO", "H_HE", "A_B", "", "", "", std::string(63, 'X')}));
}

TEST(FieldSettings, AFileThatIsSavedAndLoadedGivesTheSameList) {
    ScratchFolder folder;
    std::vector<AsciiField> fields = three();
    SetKey(fields, 1);
    ASSERT_TRUE(WriteFieldSettings(folder("a.fds"), fields));
    std::ifstream in(folder("a.fds"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "A|Real|No\nPT_ID|Char|Yes\nC|Char|No\n");
    std::vector<AsciiField> same = fields;
    ApplyFieldSettings(*ReadFieldSettings(folder("a.fds")), {}, same);
    EXPECT_EQ(shown(same), shown(fields));
    EXPECT_FALSE(WriteFieldSettings(folder("none/a.fds"), fields));
    EXPECT_FALSE(ReadFieldSettings(folder("none.fds")));
}

TEST(FieldSettings, LinesGoByPlaceAndBadOnesDoNotCount) {
    EXPECT_EQ(
        loaded("  x|Int|No  \r\n\r\n|Real|No\ny||No\nz|Real|\nq|Real\nA.B|Char|No\ny|Float|Maybe", three()),
        "X|Int|No Y|Char|No C|Char|No ");
    // More lines than rows add nothing, and a key there is none.
    EXPECT_EQ(loaded("x|Real|No\ny|Real|No\nz|Real|No\nw|Char|Yes\n", three()),
              "X|Real|No Y|Real|No Z|Real|No ");
    EXPECT_EQ(loaded("A|Int|No|more\n", three()), "A|Int|No B|Int|No C|Char|No ");
    EXPECT_EQ(loaded(std::string(70, 'L') + "|Int|No\nA|Int|no\n", three()), "A|Int|No B|Int|No C|Char|No ");
    // What is behind 4095 characters is a line of its own.
    EXPECT_EQ(loaded("A|Int|" + std::string(4089, 'N') + "B|Real|No\n", three()),
              "A|Int|No B|Real|No C|Char|No ");
}

TEST(FieldSettings, TheFirstKeyOfTheFileTakesThePlaceOfThePresentOne) {
    std::vector<AsciiField> keyed = three();
    SetKey(keyed, 2);
    EXPECT_EQ(loaded("POINT|Int|Yes\nOWNER|Char|Yes\n", keyed),
              "PT_ID|Char|Yes(POINT) OWNER|Char|No C|Char|No ");
    EXPECT_EQ(loaded("PT_ID|Char|Yes\n", keyed), "PT_ID|Char|Yes(A) B|Int|No C|Char|No ");
    // One that marks none and does not reach the key leaves it; one that reaches it takes it away.
    EXPECT_EQ(loaded("X|Int|No\n", keyed), "X|Int|No B|Int|No PT_ID|Char|Yes(C) ");
    EXPECT_EQ(loaded("X|Int|No\nY|Int|No\nZ|Int|No\n", keyed), "X|Int|No Y|Int|No Z|Int|No ");
    // "yes" is no mark, and one behind the last row neither.
    EXPECT_EQ(loaded("X|Int|yes\nY|Int|No\n", keyed), "X|Int|No Y|Int|No PT_ID|Char|Yes(C) ");
}

TEST(FieldSettings, FieldsOfTheTableAreOfItsTypes) {
    EXPECT_EQ(loaded("height|Char|No\nOWNER|Real|No\n", three(), {{"Height", "Real"}, {"Owner", "Char"}}),
              "HEIGHT|Real|No OWNER|Char|No C|Char|No ");
}
