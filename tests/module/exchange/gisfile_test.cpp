// The program gisfile, run as a person runs it.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include "module/coords/coordinate_file.h"
#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "platform/files/files.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

struct Outcome {
    int status;
    std::string output;
};

Outcome gisfile(const std::string& arguments) {
    std::string output;
    std::FILE* pipe = ::popen((NORVANE_BIN_DIR "/gisfile " + arguments + " 2>&1").c_str(), "r");
    char buffer[4096];
    while (size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, n);
    return {WEXITSTATUS(::pclose(pipe)), output};
}

bool holds(const Outcome& run, const std::string& text) {
    return run.output.find(text) != std::string::npos;
}

class GisFile : public testing::Test {
  protected:
    GisFile() {
        OpenShapeFile shapes(ShapeCreate(folder_("lots"), shape::kPolygon));
        OpenDbfFile table(DbfCreate(folder_("lots")));
        DbfAddField(table.get(), "LOT", kDbfInteger, 6, 0);
        double x[] = {0, 0, 50, 0}, y[] = {0, 40, 40, 0};
        for (int i = 0; i < 3; ++i) {
            OwnedShape lot(
                ShapeCreateObject(shape::kPolygon, -1, 1, nullptr, nullptr, 4, x, y, nullptr, nullptr, 0));
            ShapeWriteObject(shapes.get(), -1, lot.get());
            DbfWriteIntegerAttribute(table.get(), i, 0, i + 100);
        }
        auto points = MakeCoordinateFile(kAlphanumericCrd);
        points->Create(folder_("site.crd"), 31);
        PointRecord p;
        for (const char* name : {"A9", "A10", "B"}) {
            p.name = name;
            p.northing = 5;
            p.description = "IRON PIN";
            points->Write(p, 0);
        }
    }
    void change(const std::string& name, size_t at, const std::string& bytes) {
        std::string content = *files::read(folder_(name));
        files::replace(folder_(name), content.replace(at, bytes.size(), bytes));
    }
    ScratchFolder folder_;
};

TEST_F(GisFile, TellsWhatIsInFiles) {
    Outcome run = gisfile("--check --records 1 " + folder_("lots.shp") + " " + folder_("lots.dbf") + " " +
                          folder_("site.crd"));
    EXPECT_EQ(run.status, 0) << run.output;
    for (const char* line :
         {"shape file, polygons (5), 3 records\n  bounds: x 0 to 50, y 0 to 40\n",
          "  record 0: 1 part, 4 vertices, x 0 to 50, y 0 to 40\n  no faults\n",
          "dBASE table, 1 fields, 3 records of 7 bytes\n", "(whole number)\n  record 0: 100\n",
          "alphanumeric coordinate file, 3 points\n  lowest A9, highest B\n",
          "  A9         5, 0, 0  IRON PIN\n  no faults\n"})
        EXPECT_TRUE(holds(run, line)) << line << "\nin\n" << run.output;
    EXPECT_FALSE(holds(run, "record 1"));
}

TEST_F(GisFile, FindsFaultsAndChangesNothing) {
    change("lots.shp", 100 + 8 + 44, "\x7F");                   // vertices that are not there
    change("lots.dbf", 65 + 1, "12x");                          // no number
    change("lots.dbf", 4, "\x09");                              // records that are not there
    change("site.crd", 104 + 66 + 56, std::string("A1\0", 3));  // out of order
    std::string points = *files::read(folder_("site.crd"));
    Outcome run =
        gisfile("--check " + folder_("lots.shp") + " " + folder_("lots.dbf") + " " + folder_("site.crd"));
    EXPECT_EQ(run.status, 1);
    for (const char* line :
         {"fault: record 0 holds no shape", "fault: record 0: LOT holds \"12x",
          "fault: the header tells of 9 records, 3 are there", "fault: the point A1 stands behind A9"})
        EXPECT_TRUE(holds(run, line)) << line << "\nin\n" << run.output;
    EXPECT_EQ(*files::read(folder_("site.crd")), points);
}

// Records of 136 bytes with their headers: the type behind 8 bytes, the vertices behind 56.
TEST_F(GisFile, KnowsNullShapesDeletedRowsAndWhatIsNoNumber) {
    constexpr size_t kRecord = 100, kSize = 120, kType = 8, kVertices = 56;
    ASSERT_EQ(files::read(folder_("lots.shp"))->size(), kRecord + 3 * kSize);
    change("lots.shp", kRecord + kType, std::string(4, '\0'));
    // A null shape may have no more than its type.
    change("lots.shp", kRecord + 4, std::string("\0\0\0\2", 4));
    change("lots.dbf", 65 + 7, "*");
    Outcome run = gisfile("--check --records 2 " + folder_("lots.shp") + " " + folder_("lots.dbf"));
    EXPECT_EQ(run.status, 0) << run.output;
    for (const char* line : {"  record 0: a null shape\n  record 1: 1 part", "  record 0: 100\n",
                             "  record 1 (deleted): 101\n", "  1 of the records are marked as deleted\n"})
        EXPECT_TRUE(holds(run, line)) << line << "\nin\n" << run.output;
    EXPECT_TRUE(holds(gisfile(folder_("lots.shp")), "  record 0: a null shape\n"));

    const std::string nan("\0\0\0\0\0\0\xF8\x7F", 8), infinity("\0\0\0\0\0\0\xF0\x7F", 8);
    change("lots.shp", kRecord + kSize + kVertices, nan);
    change("lots.shp", kRecord + 2 * kSize + kVertices + 24, infinity);
    change("lots.shx", 36, nan);
    run = gisfile("--check " + folder_("lots.shp"));
    EXPECT_EQ(run.status, 1);
    for (const char* line : {"fault: record 1 has a coordinate that is no number at vertex 0\n",
                             "fault: record 2 has a coordinate that is no number at vertex 1\n",
                             "fault: the bounds of the file hold something that is no number\n"})
        EXPECT_TRUE(holds(run, line)) << line << "\nin\n" << run.output;
    EXPECT_FALSE(holds(run, "fault: record 0"));
}

TEST_F(GisFile, KnowsNumbersAndDates) {
    // Text fields that become a number and a date, as there is no call that makes a field of dates.
    {
        OpenDbfFile table(DbfCreate(folder_("days")));
        DbfAddField(table.get(), "AREA", kDbfString, 8, 0);
        DbfAddField(table.get(), "DAY", kDbfString, 8, 0);
        const char* rows[][2] = {{"1.5e3", "20240229"}, {"********", "00000000"}, {"", ""},
                                 {"nan", "20230229"},   {"-inf", "20241301"},     {"INFLOW", "2024-1-1"},
                                 {"1", "20240100"},     {".5", "19000229"},       {"+2", "20000229"}};
        int record = 0;
        for (auto& row : rows) {
            DbfWriteStringAttribute(table.get(), record, 0, row[0]);
            DbfWriteStringAttribute(table.get(), record++, 1, row[1]);
        }
    }
    change("days.dbf", 32 + 11, "N");
    change("days.dbf", 64 + 11, "D");
    Outcome run = gisfile("--check " + folder_("days.dbf"));
    EXPECT_EQ(run.status, 1);
    for (const char* fault :
         {"record 3: AREA holds \"nan\", which is no number",
          "record 3: DAY holds \"20230229\", which is no date", "record 4: AREA holds \"-inf\"",
          "record 4: DAY holds \"20241301\"", "record 5: AREA holds \"INFLOW\"",
          "record 5: DAY holds \"2024-1-1\"", "record 6: DAY holds \"20240100\"",
          "record 7: DAY holds \"19000229\"", "  8 faults"})
        EXPECT_TRUE(holds(run, fault)) << fault << "\nin\n" << run.output;
}

TEST_F(GisFile, MakesAMissingIndexAnew) {
    const std::string index = *files::read(folder_("lots.shx"));
    files::remove(folder_("lots.shx"));
    Outcome run = gisfile("--check " + folder_("lots.shp"));
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(holds(run, "lots.shp: its index (.shx) is missing; --reindex makes it anew\n")) << run.output;
    EXPECT_FALSE(files::exists(folder_("lots.shx")));
    run = gisfile("--check --reindex " + folder_("lots.shp"));
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_TRUE(holds(run, "lots.shp: the index is made anew, 3 records\n")) << run.output;
    EXPECT_EQ(*files::read(folder_("lots.shx")), index);
    // A record that was moved, and dead bytes behind one that shrank.
    {
        OpenShapeFile shapes(ShapeOpen(folder_("lots"), "r+b"));
        double x[] = {0, 1, 1, 0, 0, 0, 0}, y[] = {0, 0, 1, 1, 2, 3, 0};
        auto lot = [&](int vertices) {
            return OwnedShape(ShapeCreateObject(shape::kPolygon, -1, 1, nullptr, nullptr, vertices, x, y,
                                                nullptr, nullptr, 0));
        };
        ShapeWriteObject(shapes.get(), 1, lot(7).get());
        ShapeWriteObject(shapes.get(), 0, lot(3).get());
    }
    run = gisfile("--reindex --records 3 " + folder_("lots.shp"));
    EXPECT_EQ(run.status, 0);
    for (const char* line : {"anew, 3 records\n  1 records are older ones that a later one replaces\n",
                             "  16 bytes of the shapes are no whole record\n", "record 0: 1 part, 3 vertices",
                             "record 1: 1 part, 7 vertices", "record 2: 1 part, 4 vertices"})
        EXPECT_TRUE(holds(run, line)) << line << "\nin\n" << run.output;
    // Of shapes that are cut off in the middle the whole ones are found.
    std::string shapes = *files::read(folder_("lots.shp"));
    files::replace(folder_("lots.shp"), shapes.substr(0, shapes.size() - 10));
    EXPECT_TRUE(holds(gisfile("--reindex " + folder_("lots.shp")), "anew, 3 records\n"));
    files::replace(folder_("lots.shp"), "no shapes");
    run = gisfile("--reindex " + folder_("lots.shp") + " " + folder_("none.shp"));
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(holds(run, "lots.shp: no index can be made of it\n")) << run.output;
    EXPECT_TRUE(holds(run, "none.shp: there is no such file\n")) << run.output;
}

TEST_F(GisFile, TextsOfFilesDoNotReachTheTerminalRaw) {
    change("site.crd", 104 + 24,
           "\x1B[2J\n\x9B"
           "1A\xC4");
    Outcome run = gisfile(folder_("site.crd"));
    EXPECT_EQ(run.status, 0);
    EXPECT_FALSE(holds(run, "\x1B"));
    EXPECT_TRUE(holds(run, "\uFFFD[2J\uFFFD\u203A1AÄ")) << run.output;
}

TEST_F(GisFile, SaysWhyItCannot) {
    files::replace(folder_("broken.dbf"), "no table");
    Outcome run = gisfile(folder_("none.shp") + " " + folder_("broken.dbf") + " " + folder_("lots.prj"));
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(holds(run, "none.shp: there is no such file")) << run.output;
    EXPECT_TRUE(holds(run, "broken.dbf: it cannot be read as what its name says"));
    EXPECT_TRUE(holds(run, "lots.prj: no kind of file"));
    EXPECT_EQ(gisfile("").status, 2);
    EXPECT_EQ(gisfile("--help").status, 0);
}

}  // namespace
