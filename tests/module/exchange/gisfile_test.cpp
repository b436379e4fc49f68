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
