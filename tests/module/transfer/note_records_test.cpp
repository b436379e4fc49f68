// What lines of note files say, and what becomes of them in a table.
#include "module/transfer/note_records.h"

#include <gtest/gtest.h>

#include "tests/platform/dao/scratch.h"

using namespace norvane;
using Fields = std::vector<FieldValue>;

namespace norvane {
void PrintTo(const FieldValue& field, std::ostream* out) {
    *out << field.name << "=" << field.value;
}
}  // namespace norvane

namespace {

Fields read(std::string_view line, std::string_view id = "11") {
    Fields fields;
    ClassifyNoteLine(line, id, fields);
    return fields;
}

NoteRecordList listOf(const ScratchFolder& folder, const std::string& content) {
    writeFile(folder("a.not"), content);
    return ReadNoteRecords(folder("a.not")).value_or(NoteRecordList());
}

std::string caption(const std::vector<std::string>& ids) {
    std::vector<PointNote> records;
    for (const std::string& id : ids) records.push_back({"POLE", id, {}});
    NoteFeature feature{"POLE", {}};
    for (const PointNote& record : records) feature.records.push_back(&record);
    return FeatureCaption(feature);
}

const ImportColumn& column(const TableImport& import, const std::string& name) {
    for (const ImportColumn& column : import.columns)
        if (column.name == name) return column;
    ADD_FAILURE() << name;
    return import.columns.front();
}

}  // namespace

TEST(NoteLine, TheFirstRuleThatFitsCounts) {
    const struct {
        const char* line;
        Fields fields;
    } cases[] = {
        {"CEP: 0.01 SEP: 0.02 FIXED",
         {{"HRMS_CEP", "0.01"}, {"VRMS_SEP", "0.02"}, {"RTK_CONDITION", "FIXED"}}},
        {"CEP:0.01 SEP:0.02", {{"HRMS_CEP", "0.01"}, {"VRMS_SEP", "0.02"}}},
        {"CEP: 0.01", {{"NOTES", "CEP: 0.01"}}},
        {"CEP,0.01", {{"HRMS_CEP", "0.01"}}},
        {"CEP,0.01 SEP,0.02", {{"NOTES", "CEP,0.01 SEP,0.02"}}},
        {"SEP,0.03", {{"VRMS_SEP", "0.03"}}},
        {"HRMS:0.014 VRMS:0.046 FLOAT DGPS",
         {{"HRMS_CEP", "0.014"}, {"VRMS_SEP", "0.046"}, {"RTK_CONDITION", "FLOAT DGPS"}}},
        {"HRMS,1", {{"HRMS_CEP", "1"}}},
        {"VRMS, 2", {{"VRMS_SEP", "2"}}},
        {"Status,FIXED", {{"RTK_CONDITION", "FIXED"}}},
        // Case counts, so this is a field of its own.
        {"status,fixed", {{"STATUS", "fixed"}}},
        {"STATE PLANE:1630696.4,480424.7",
         {{"STATE_PLANE_EAST", "1630696.4"}, {"STATE_PLANE_NORTH", "480424.7"}}},
        {"STATE PLANE: 1.5   2.5", {{"STATE_PLANE_EAST", "1.5"}, {"STATE_PLANE_NORTH", "2.5"}}},
        {"LAT:35.06 LON:-80.23", {{"LATITUDE", "35.06"}, {"LONGITUDE", "-80.23"}}},
        {"ROD HT: 6.56", {{"ROD_HEIGHT", "6.56"}}},
        {"ROD HT,6.5", {{"ROD_HEIGHT", "6.5"}}},
        {"ROD HT 2.0 m", {{"ROD_HEIGHT", "2.0 m"}}},
        {"DOP:2.2 SAT:10", {{"PDOP", "2.2"}, {"SATELLITE", "10"}}},
        {"DOP,1.9", {{"PDOP", "1.9"}}},
        {"SAT,9", {{"SATELLITE", "9"}}},
        {"Date,06/21/2005", {{"DATE", "06/21/2005"}}},
        {"Time,13:45:10", {{"TIME", "13:45:10"}}},
        {"Pt Data,1,2,3,IRON, FOUND",
         {{"NORTHING", "1"}, {"EASTING", "2"}, {"ELEVATION", "3"}, {"DESCRIPTION", "IRON, FOUND"}}},
        {"PT_DATA,1,2,3,", {{"NORTHING", "1"}, {"EASTING", "2"}, {"ELEVATION", "3"}}},
        {"Pt Data,1,2", {{"NORTHING", "1"}, {"EASTING", "2"}, {"ELEVATION", ""}}},
        {"LAT,35", {{"LATITUDE", "35"}}},
        {"LON,-80", {{"LONGITUDE", "-80"}}},
        {"Latitude,N35-03", {{"LATITUDE", "N35-03"}}},
        {"Longitude,W80-14", {{"LONGITUDE", "W80-14"}}},
        {"06/21/2005 13:45:10", {{"DATE", "06/21/2005"}, {"TIME", "13:45:10"}}},
        {"06/21/2005 1:45:10 PM", {{"DATE", "06/21/2005"}, {"TIME", "1:45:10 PM"}}},
        {"1:2:3:4:5", {{"DATE", "1:2:3:4:5"}}},
        {"13:45:10", {{"NOTES", "13:45:10"}}},
        {"06/21/2005 13:45:10:5", {{"NOTES", "06/21/2005 13:45:10:5"}}},
        // Of four marks a line with the point's id is a date, too, and one with a comma.
        {"11 a/b/c/d:e", {{"DATE", "11"}, {"TIME", "a/b/c/d:e"}}},
        {"WHEN,06/21/2005 1:45:10", {{"DATE", "WHEN,06/21/2005"}, {"TIME", "1:45:10"}}},
        {"11 1.5,2.5,3.5,IP",
         {{"NORTHING", "1.5"}, {"EASTING", "2.5"}, {"ELEVATION", "3.5"}, {"DESCRIPTION", "IP"}}},
        {"11,1.5,2.5", {{"NORTHING", "1.5"}, {"EASTING", "2.5"}, {"ELEVATION", ""}}},
        {"11\t1,2,3", {{"NORTHING", "1"}, {"EASTING", "2"}, {"ELEVATION", "3"}}},
        {"11.5 feet behind the walk", {{"NOTES", "11.5 feet behind the walk"}}},
        {"1100,4,5,6", {{"NOTES", "1100,4,5,6"}}},
        {"11", {{"NOTES", "11"}}},
        {"Color,RED", {{"COLOR", "RED"}}},
        {"last seen , 8 ", {{"LAST SEEN", "8"}}},
        {"REMARK,", {{"REMARK", ""}}},
        {"leans 2.5', call owner", {{"NOTES", "leans 2.5', call owner"}}},
        {",VALUE", {{"NOTES", ",VALUE"}}},
        {"A.B,1", {{"NOTES", "A.B,1"}}},
        {"SPECIES,WHITE OAK,SICK", {{"NOTES", "SPECIES,WHITE OAK,SICK"}}},
        {"PT_ID,99", {{"PT_ID", "99"}}},
    };
    for (const auto& c : cases) EXPECT_EQ(read(c.line), c.fields) << c.line;
    // A short id is no beginning of a word.
    EXPECT_EQ(read("Color,RED", "C"), (Fields{{"COLOR", "RED"}}));
}

TEST(NoteFeature, CaptionsTellIdsAsRanges) {
    EXPECT_EQ(caption({"19", "4", "5"}), "POLE: 3 points >> 4-5,19");
    EXPECT_EQ(caption({"007", "7", "0"}), "POLE: 3 points >> 0,7");
    EXPECT_EQ(caption({"5", "4", "5"}), "POLE: 2 points >> 4-5");
    EXPECT_EQ(caption({"1", "A1"}), "POLE: 2 points >>...");
    EXPECT_EQ(caption({"999999999"}), "POLE: 1 points >> 999999999");
    EXPECT_EQ(caption({"1000000000", "1"}), "POLE: 2 lines >> 1,1000000000");
    EXPECT_EQ(caption({"99999999999999999999"}), "POLE: 1 lines >> 9223372036854775807");
    // The text ends with the part by which it is longer than 1024 characters.
    std::vector<std::string> many;
    for (int i = 0; i < 400; ++i) many.push_back(std::to_string(1001 + 2 * i));
    const std::string text = caption(many).substr(std::string("POLE: 400 points >> ").size());
    EXPECT_EQ(text.size(), 1029u);
    EXPECT_EQ(text.substr(text.size() - 5), ",1411");
}

TEST(NoteFeature, TheLastValueThatIsNoWholeNumberDecidesTheColumn) {
    ScratchFolder folder;
    const NoteRecordList list =
        listOf(folder,
               "PT_ID:1  GIS_FILE:POLE.GIS\nA,1\nB,1\nC,2.5\nD,\nE,7045551234\nF,-2147483648\n"
               "PT_ID:2  GIS_FILE:pole.gis\nA,A\nB,2\nC,X\nD,\nE,1\nF,+2147483647\n"
               "PT_ID:1  GIS_FILE:POLE.GIS\nA,2.5\nC,7\nGIS_KEY,X\nG,0x10\n");
    const std::vector<NoteFeature> features = FeaturesOf(list);
    ASSERT_EQ(features.size(), 1u);
    const TableImport import = ImportOf(features.front());
    EXPECT_EQ(import.table, "POLE");
    std::string names;
    for (const ImportColumn& each : import.columns) names += each.name;
    EXPECT_EQ(names, "ABCDEFG");
    EXPECT_EQ(column(import, "A").type, ColumnClass::kDouble);
    EXPECT_EQ(column(import, "B").type, ColumnClass::kLong);
    EXPECT_EQ(column(import, "C").type, ColumnClass::kText);
    EXPECT_EQ(column(import, "D").type, ColumnClass::kLong);
    EXPECT_TRUE(column(import, "D").isEmpty);
    EXPECT_EQ(column(import, "E").type, ColumnClass::kText);
    EXPECT_EQ(column(import, "F").type, ColumnClass::kLong);
    EXPECT_FALSE(column(import, "F").isEmpty);
    EXPECT_EQ(column(import, "G").type, ColumnClass::kText);
    EXPECT_EQ(import.records.size(), 3u);
}

TEST(NoteFeature, OfAFieldTheLastValueCountsAndNotesAreJoined) {
    ScratchFolder folder;
    const NoteRecordList list = listOf(folder,
                                       "PT_ID:1  GIS_FILE:POLE.GIS\nA,1\nfirst note\nA,2\nA,\nsecond note\n"
                                       "PT_ID:2\nA,3\nPT_ID:\nA,4\n");
    EXPECT_EQ(list.blocks, 3u);
    EXPECT_EQ(list.withoutId, 1u);
    EXPECT_EQ(list.withoutFeature, std::vector<std::string>{"2"});
    const std::vector<NoteFeature> features = FeaturesOf(list);
    ASSERT_EQ(features.size(), 1u);
    // The tree shows each of them.
    EXPECT_EQ(features.front().records.front()->fields.size(), 5u);
    const TableImport import = ImportOf(features.front());
    ASSERT_EQ(import.records.size(), 1u);
    using Values = std::vector<std::pair<size_t, std::string>>;
    EXPECT_EQ(import.records[0].values, (Values{{0, "2"}, {1, "first note second note"}}));
}
