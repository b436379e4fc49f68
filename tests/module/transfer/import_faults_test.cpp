// Imports of what is damaged, into what cannot be written, and by a process that is killed.
#include <random>

#include "module/coords/coordinate_file.h"
#include "platform/files/random_file.h"
#include "tests/module/transfer/import_fixture.h"
#include "tests/platform/crash.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

class ImportFaults : public ImportTest {
  protected:
    static ui::Step layer() { return text("1015", "L"); }
    void makeLines(const std::string& name, int records) const {
        std::vector<Record> all;
        for (int i = 0; i < records; ++i)
            all.push_back({{{1.0 * i, 0, 0}, {1.0 * i, 10, 0}, {5, 5, 0}}, {std::to_string(i + 1), "NOTE"}});
        makeSet(name, shape::kArc, {{"PT_ID"}, {"NOTE"}}, all);
    }
    void makeShots(const std::string& name, int records) const {
        std::vector<Record> all;
        for (int i = 0; i < records; ++i) all.push_back({{{1.0 * i, 2, 3}}, {"A" + std::to_string(i + 1)}});
        makeSet(name, shape::kPoint, {{"PT_ID"}}, all);
    }
    void cut(const std::string& name, size_t bytes) const { fs::resize_file(path(name), bytes); }
};

}  // namespace

TEST_F(ImportFaults, CoordinatesThatAreNoneAreLeftOut) {
    const double nowhere = std::numeric_limits<double>::quiet_NaN(), far = 1e38;
    makeSet("lines", shape::kArc, {{"PT_ID"}},
            {{{{0, 0, 0}, {nowhere, 1, 0}}, {"A"}}, {{{0, 0, 0}, {far, -far, 0}}, {"B"}}});
    import("lines", {layer()});
    EXPECT_EQ(count("POLYLINE"), 1);
    EXPECT_EQ(output("select PT_ID from LINES"), "A\nB\n");
    EXPECT_NE(printed().find("\nLeft out: 1 shape without a place."), std::string::npos);
    makeSet("shots", shape::kPoint, {{"PT_ID"}},
            {{{{1, std::numeric_limits<double>::infinity(), 0}}, {"A"}}, {{{far, far, 0}}, {"B"}}});
    ui_.answerBox("Yes");
    EXPECT_EQ(import("shots"), "(\"B\")");
    EXPECT_EQ(points("shots.crd").size(), 1u);
}

TEST_F(ImportFaults, ASetThatIsCutShortGivesWhatIsWhole) {
    makeLines("lines", 10);
    cut("lines.shp", fs::file_size(path("lines.shp")) - 30);
    import("lines", {layer()});
    EXPECT_EQ(count("POLYLINE"), 9);
    EXPECT_NE(printed().find("\nLeft out: 1 record that cannot be read."), std::string::npos);
    // Of a table that is cut short fewer rows are there than shapes.
    cut("lines.dbf", fs::file_size(path("lines.dbf")) - 30);
    ui_.answerFile(path("lines.shp"));
    answer(148, {click("Select SHP File"), click("Cancel")});
    lisp("(cf:gis_smart_prompting 11)");
    EXPECT_TRUE(shown("Invalid SHP file!"));
    for (size_t bytes : {size_t{0}, size_t{50}, size_t{99}}) {
        makeLines("lines", 3);
        cut("lines.shx", bytes);
        ui_.answerFile(path("lines.shp"));
        answer(148, {click("Select SHP File"), click("Cancel")});
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 11)"), "nil");
    }
}

TEST_F(ImportFaults, NamesThatAreTooLongForALinkAreTold) {
    makeSet("lines", shape::kArc, {{"PT_ID", kDbfString, 254}},
            {{{{0, 0, 0}, {1, 1, 0}}, {std::string(254, 'I')}}});
    import("lines", {layer()});
    EXPECT_EQ(output("select length(PT_ID) from LINES"), "254\n");
    EXPECT_EQ(count("POLYLINE"), 1);
    // An id with quotes is a value like any other.
    makeSet("quoted", shape::kArc, {{"PT_ID"}, {"NOTE"}},
            {{{{0, 0, 0}, {1, 1, 0}}, {"O'NEIL \"1\"", "a'b||c$$d"}}});
    import("quoted", {layer()});
    EXPECT_EQ(output("select PT_ID, NOTE from QUOTED"), "O'NEIL \"1\"|a'b||c$$d\n");
}

TEST_F(ImportFaults, ACoordinateFileThatSomebodyElseHasIsLeftAlone) {
    makeShots("shots", 3);
    ui_.answerBox("No");
    import("shots");
    const std::string before = read("shots.crd");
    for (const char* replace : {"Yes", "No"}) {
        printed();
        ui_.answerBox("Yes");    // at the opening, for the last set
        ui_.answerBox(replace);  // for the set that is chosen
        const auto other = files::RandomFile::open(path("shots.crd"), files::RandomFile::Mode::kUpdate,
                                                   files::RandomFile::Sharing::kDenyWriters);
        EXPECT_EQ(import("shots"), "nil");
        EXPECT_NE(printed().find("Could not open file: " + path("shots.crd")), std::string::npos);
    }
    EXPECT_EQ(read("shots.crd"), before);
    EXPECT_EQ(output("select count(*) from SHOTS"), "3\n");
}

TEST_F(ImportFaults, PointsThatCannotBeWrittenLeaveNoRecord) {
    makeShots("shots", 3);
    fs::create_directory(path("shots_.crd"));  // where the new file is made
    EXPECT_EQ(import("shots"), "nil");
    EXPECT_FALSE(fs::exists(path("shots.crd")));
    EXPECT_EQ(output("select name from MSysObjects where name = 'SHOTS'"), "");
    EXPECT_NE(printed().find("\nNothing was imported."), std::string::npos);
}

TEST_F(ImportFaults, AProcessThatIsKilledLeavesTheOldOrTheNew) {
    constexpr int kRecords = 2000;
    makeShots("shots", kRecords);
    fs::copy_file(path("output.mdb"), path("empty.mdb"));
    std::mt19937 random(20261125);
    int done = 0;
    for (int round = 0; round < 12; ++round) {
        fs::remove(path("shots.crd"));
        fs::remove(path("featlink.ini"));
        fs::copy_file(path("empty.mdb"), path("output.mdb"), fs::copy_options::overwrite_existing);
        reportedUntilKilled(random() % 300000, [&](const auto& report) {
            report("begun");
            ui_.answerBox("No");
            import("shots");
            ::_exit(0);
        });
        ASSERT_EQ(faultsOf(path("output.mdb")), "");
        ASSERT_EQ(faultsOf(path("template.mdb")), "");
        const std::string table = output("select name from MSysObjects where name = 'SHOTS'");
        if (table.empty()) {
            ASSERT_FALSE(fs::exists(path("shots.crd")));
            continue;
        }
        ASSERT_EQ(output("select count(*) from SHOTS"), std::to_string(kRecords) + "\n");
        if (!fs::exists(path("shots.crd"))) continue;  // killed between the two
        ASSERT_EQ(points("shots.crd").size(), static_cast<size_t>(kRecords));
        ++done;
    }
    EXPECT_GT(done, 0);
    EXPECT_LT(done, 12);
}
