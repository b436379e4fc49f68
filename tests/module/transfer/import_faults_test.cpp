// Imports of what is damaged, into what cannot be written, and by a process that is killed.
#include <random>

#include "module/coords/coordinate_file.h"
#include "platform/dao/jet/database.h"
#include "platform/files/random_file.h"
#include "tests/module/transfer/hostile_places.h"
#include "tests/module/transfer/import_fixture.h"
#include "tests/platform/crash.h"
#include "tests/platform/dao/lock_timeout.h"
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
    // What an import would have left behind, told in words; "" for nothing.
    std::string traces(const std::string& folder, const std::string& table) {
        std::string found;
        if (count("POLYLINE") > 0) found += "polylines ";
        if (lisp("(tblsearch \"LAYER\" \"L\")") != "nil") found += "layer ";
        for (const char* file : {".crd", "_.crd"})
            if (fs::exists(path(folder + table + file))) found += table + file + " ";
        found += sqlite(folder + "output.mdb", "select name from MSysObjects where name = '" + table + "'");
        found += sqlite(folder + "template.mdb",
                        "select GIS_NAME from ZGEO_SMART_PROMPTING where GIS_NAME = '" + table + "'");
        return found + faultsOf(path(folder + "output.mdb")) + faultsOf(path(folder + "template.mdb"));
    }
    void useDatabases(const std::string& folder) const {
        write("gps.ini", "is_database=\ngisoutfile=" + path(folder + "output.mdb") +
                             "\ngismdbfile=" + path(folder + "template.mdb") + "\n");
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

TEST_F(ImportFaults, AnOutputThatSomebodyElseHasChangesNothing) {
    const ShortLockTimeout shortTimeout;
    makeLines("LINES", 3);
    {
        const jet::Database holder(path("output.mdb"), {.exclusive = true});
        import("LINES", {layer()});
        EXPECT_TRUE(
            shown("box [Error] \"The database \"" + path("output.mdb") + "\" is locked by another process."));
        EXPECT_NE(printed().find("\nNothing was imported."), std::string::npos);
    }
    EXPECT_EQ(traces("", "LINES"), "");
    // Somebody is writing: it can be read, and the polylines are drawn, but the records have no place.
    {
        jet::Database holder(path("output.mdb"), {});
        holder.begin();
        import("LINES", {layer()});
        EXPECT_NE(printed().find("\nNothing was imported."), std::string::npos);
    }
    EXPECT_EQ(traces("", "LINES"), "");
    import("LINES", {layer()});
    EXPECT_EQ(traces("", "LINES"), "polylines layer LINES\nLINES\n");
}

TEST_F(ImportFaults, WhatBelongsToOthersStaysAsItIs) {
    makeLines("LINES", 3);
    fs::create_directory(path("closed"));
    makeShots("closed/SHOTS", 3);
    fs::permissions(path("closed"), static_cast<fs::perms>(0555));
    const auto all = static_cast<fs::perms>(0666);
    for (const char* name : {"output.mdb", "template.mdb"})
        fs::permissions(path(name), static_cast<fs::perms>(0444));
    fs::permissions(path(""), static_cast<fs::perms>(0777));
    EXPECT_EQ(saidByNobody([&] {
                  import("LINES", {layer()});
                  const std::string said = printed();
                  return traces("", "LINES") + (shown("cannot be changed: it is read-only.") ? "told " : "") +
                         (said.find("\nNothing was imported.") == std::string::npos ? said : "nothing");
              }),
              "told nothing");
    // The databases can be written, but the coordinate file would be made in a folder that takes none.
    for (const char* name : {"output.mdb", "template.mdb"}) fs::permissions(path(name), all);
    EXPECT_EQ(saidByNobody([&] {
                  import("closed/SHOTS");
                  const std::string said = printed();
                  return traces("", "SHOTS") +
                         (said.find("\nNothing was imported.") == std::string::npos ? said : "nothing");
              }),
              "nothing");
    fs::permissions(path("closed"), fs::perms::owner_all);
}

TEST_F(ImportFaults, ADiskThatGetsFullAtAnyMomentLeavesAllOrNothing) {
    fs::create_directory(path("disk"));
    const SmallDisk disk(path("disk"));
    if (!disk.isThere()) GTEST_SKIP() << "this process may mount no disk";
    for (const char* name : {"output.mdb", "template.mdb"})
        fs::copy_file(path(name), path(std::string("disk/") + name));
    useDatabases("disk/");
    makeLines("disk/LINES", 300);
    makeShots("disk/SHOTS", 300);
    for (const std::string set : {"SHOTS", "LINES"}) {
        size_t failed = 0;
        for (size_t blocks = 0;; ++blocks) {
            ASSERT_LT(blocks, 150u);
            disk.leaveFree(blocks);
            printed();
            import("disk/" + set, set == "LINES" ? std::vector<ui::Step>{layer()} : std::vector<ui::Step>{});
            const std::string said = printed();
            if (said.find("\nNothing was imported.") == std::string::npos) break;
            ++failed;
            disk.leaveFree(100);
            ASSERT_EQ(traces("disk/", set), "") << blocks << said;
        }
        EXPECT_GT(failed, 3u) << set;
        disk.leaveFree(100);
        EXPECT_EQ(sqlite("disk/output.mdb", "select count(*) from " + set), "300\n");
        EXPECT_EQ(faultsOf(path("disk/output.mdb")) + faultsOf(path("disk/template.mdb")), "");
        if (set == "LINES") {
            EXPECT_EQ(count("POLYLINE"), 300);
        } else {
            EXPECT_EQ(points("disk/SHOTS.crd").size(), 300u);
        }
    }
}

TEST_F(ImportFaults, AProcessThatIsKilledLeavesTheDrawingAsItWasSaved) {
    makeLines("LINES", 1000);
    lisp("(entmake '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 9.0 9.0 0.0)))");
    ASSERT_EQ(host_->saveDrawing(path("job.dxf")), "");
    const std::string drawing = read("job.dxf");
    std::mt19937 random(20261127);
    for (int round = 0; round < 6; ++round) {
        reportedUntilKilled(random() % 300000, [&](const auto& report) {
            report("begun");
            import("LINES", {layer()});
        });
        EXPECT_EQ(read("job.dxf"), drawing);
        ASSERT_EQ(faultsOf(path("output.mdb")) + faultsOf(path("template.mdb")), "");
        const std::string records = output("select count(*) from LINES");
        EXPECT_TRUE(records == "1000\n" ||
                    output("select name from MSysObjects where name = 'LINES'").empty())
            << records;
    }
}

// The moments of the kills are parts of the time that a whole import takes.
TEST_F(ImportFaults, AProcessThatIsKilledLeavesTheOldOrTheNew) {
    constexpr int kRecords = 2000, kRounds = 12;
    makeShots("shots", kRecords);
    fs::copy_file(path("output.mdb"), path("empty.mdb"));
    double whole = std::numeric_limits<double>::infinity();
    int done = 0, killed = 0;
    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE(round);
        fs::remove(path("shots.crd"));
        fs::remove(path("featlink.ini"));
        fs::copy_file(path("empty.mdb"), path("output.mdb"), fs::copy_options::overwrite_existing);
        const ProcessEnd end = runUntilUsed(round == 0 ? whole : whole * round / kRounds, [&] {
            ui_.answerBox("No");
            import("shots");
        });
        if (round == 0) whole = end.processorSeconds;
        killed += end.killed;
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
    EXPECT_LT(done, kRounds);
    EXPECT_GT(killed, 0);
}
