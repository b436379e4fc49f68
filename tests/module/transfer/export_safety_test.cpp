// Exports that are stopped, that fail, and that are killed: the old set stays.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

#include "platform/dao/engine.h"
#include "platform/dao/jet/database.h"
#include "platform/files/random_file.h"
#include "tests/module/transfer/export_fixture.h"
#include "tests/module/transfer/hostile_places.h"
#include "tests/platform/dao/lock_timeout.h"
#include "tests/platform/dao/scratch.h"

namespace {

class ExportSafety : public Export {
  protected:
    static constexpr int kPoints = 400;

    void SetUp() override {
        Export::SetUp();
        if (IsSkipped()) return;
        sql("create table OAK (PT_ID TEXT(255), GIS_KEY TEXT(255), SPECIES TEXT(50))");
        std::string rows;
        for (int i = 0; i < kPoints; ++i) rows += (i ? ",('" : "('") + std::to_string(i) + "','OAK','RED')";
        sql("insert into OAK values " + rows);
        lisp("(setq i 0) (repeat " + std::to_string(kPoints) +
             " (point (list (float i) 0.0 0.0) nil (linked \"OAK\" (itoa i))) (setq i (1+ i)))");
        for (const char* part : {".shp", ".shx", ".dbf", ".prj", ".cpg"})
            write(std::string("set") + part, "old");
    }
    bool isOldSet(const std::string& stem = "set") const {
        for (const char* part : {".shp", ".shx", ".dbf", ".prj", ".cpg"})
            if (read(stem + part) != "old") return false;
        return true;
    }
    // What an unfinished set has left.
    Lines leftBehind() const {
        Lines names = files();
        std::erase_if(names, [](const std::string& name) { return !name.starts_with("."); });
        return names;
    }
    // The program for scripts, over a drawing with the points. what: Lisp to be run.
    std::string batch(const std::string& what) {
        if (!fs::exists(path("points.dxf"))) {
            EXPECT_EQ(host_->saveDrawing(path("points.dxf"), true), "");
        }
        write("run.lsp", "(setq set (ssget \"X\" '((0 . \"INSERT\"))))" + what);
        return NORVANE_BIN_DIR "/hostcad-batch --drawing '" + path("points.dxf") + "' '" + path("run.lsp") +
               "'";
    }
    // A hidden folder of an export that is broken off: with the files of a set that is there, by their
    // endings.
    void makeBroken(const std::string& folder, const std::string& set, const Lines& endings) const {
        fs::create_directories(path(folder + "/1"));
        write(folder + "/lock", "");
        for (const std::string& ending : endings)
            fs::rename(path("made." + ending), path(folder + "/1/" + set + "." + ending));
    }
    // Whether a hidden folder has all its sets on the disk.
    bool isCommitted() const {
        const Lines hidden = leftBehind();
        return !hidden.empty() && fs::exists(path(hidden[0] + "/committed"));
    }
    // Runs what batch() has prepared, and kills it so long after its next set has come so far.
    // largest: bytes that it may write into a file.
    void killOnce(const std::function<bool()>& hasComeSoFar, useconds_t microseconds,
                  rlim_t largest = RLIM_INFINITY) {
        const std::string drawing = path("points.dxf"), script = path("run.lsp");
        const char* program = NORVANE_BIN_DIR "/hostcad-batch";
        const pid_t child = ::fork();
        if (child == 0) {
            ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
            const rlimit limit{largest, largest};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            ::signal(SIGXFSZ, SIG_IGN);
            ::execl(program, program, "--drawing", drawing.c_str(), script.c_str(), nullptr);
            ::_exit(1);
        }
        constexpr int kPatience = 100000;
        for (int i = 0; i < kPatience && !hasComeSoFar(); ++i) ::usleep(100);
        ::usleep(microseconds);
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "it was still at work";
    }
    std::string exportCall() { return "(princ (cf:gis_smart_prompting 10 " + quoted("set") + " set 1))"; }
};

}  // namespace

TEST_F(ExportSafety, AStoppedExportLeavesTheOldSet) {
    // While it reads the records, at the first entity, in the middle, and in the second of several sets.
    lisp("(setq i 0) (repeat 60 (polyline t 0.0 '((0.0 0.0) (1.0 0.0) (1.0 1.0)) nil))");
    const size_t readings = kPoints / 50, writings = kPoints / 50;
    for (size_t looks : {size_t{0}, readings, readings + 3, readings + writings + 1}) {
        std::vector<ui::Step> steps(looks, show());
        steps.push_back(click("Cancel"));
        answer(1000, steps);
        ui_.clearLog();
        EXPECT_EQ(chosen({check("Export All"), click("OK")}),
                  "\nThe export was stopped; nothing was written.\n");
        const std::string last = ui_.log()[ui_.log().size() - 3];
        const char* doing = looks == 0 ? "" : looks <= readings ? "Reading" : "Writing set_";
        EXPECT_NE(last.find(doing), std::string::npos) << last;
        EXPECT_TRUE(isOldSet());
        EXPECT_EQ(shapeFiles(), (Lines{"set.shp"}));
        EXPECT_TRUE(leftBehind().empty());
    }
}

TEST_F(ExportSafety, WhatCannotBeReplacedIsToldBeforeAnyWork) {
    for (const char* part : {"shp", "shx", "dbf"}) {
        const std::string stem = std::string("no_") + part;
        fs::create_directories(path(stem + "." + part));
        EXPECT_EQ(exported("INSERT", 1, stem), "0\nCannot create " + std::string(part) + " file!\n");
    }
    EXPECT_EQ(exported("INSERT", 1, "nowhere/set"), "0\nCannot create shp file!\n");
    EXPECT_TRUE(shapeFiles() == (Lines{"no_shp.shp", "set.shp"}));
    EXPECT_TRUE(leftBehind().empty());
    // The other sets of a run are written.
    fs::create_directory(path("many_1_OAK.dbf"));
    lisp("(line '(0.0 0.0 0.0) '(1.0 0.0 0.0) nil)");
    EXPECT_EQ(chosen({check("Export All"), click("OK")}, "many"),
              "\nCannot create dbf file!\n1 line written to many_3_UNKNOWN.shp; 1 without a record"
              "\n1 set written, 1 failed: 1 entity; 1 without a record\n");
}

TEST_F(ExportSafety, ANewSetTakesThePlaceOfAllOfTheOldOne) {
    for (const char* part : {"SHP", "SHX", "DBF", "sbn", "qix"}) write(std::string("Upper.") + part, "old");
    EXPECT_TRUE(exported("INSERT", 1, "Upper").starts_with("1\n400 points"));
    Lines names = files();
    std::erase_if(names, [](const std::string& name) { return !name.starts_with("Upper"); });
    EXPECT_EQ(names, (Lines{"Upper.cpg", "Upper.dbf", "Upper.shp", "Upper.shx"}));
    EXPECT_EQ(records("Upper").size(), size_t{kPoints});
    EXPECT_TRUE(exported("INSERT", 1).starts_with("1\n400 points"));
    EXPECT_FALSE(fs::exists(path("set.prj")));
    EXPECT_EQ(read("set.cpg"), "1252");
}

TEST_F(ExportSafety, AFullDiskLeavesTheOldSet) {
    // A process that may write no more than some kilobytes into a file.
    const std::string told = outputOf("sh -c 'ulimit -f 16; trap \"\" XFSZ; exec " +
                                      std::regex_replace(batch(exportCall()), std::regex("'"), "\"") + "'");
    EXPECT_NE(told.find("set.shp could not be written whole, and what was there before is as it was"),
              std::string::npos)
        << told;
    EXPECT_TRUE(isOldSet());
    EXPECT_TRUE(leftBehind().empty());
}

TEST_F(ExportSafety, ADiskThatGetsFullAtAnyMomentLeavesTheOldOrTheNew) {
    fs::create_directory(path("disk"));
    const SmallDisk disk(path("disk"));
    if (!disk.isThere()) GTEST_SKIP() << "this process may mount no disk";
    for (const char* part : {".shp", ".shx", ".dbf", ".prj", ".cpg"})
        write(std::string("disk/set") + part, "old");
    std::string told;
    size_t failed = 0;
    for (size_t blocks = 0; !told.starts_with("1"); ++blocks) {
        ASSERT_LT(blocks, 100u);
        disk.leaveFree(blocks);
        told = exported("INSERT", 1, "disk/set");
        EXPECT_FALSE(
            std::any_of(fs::directory_iterator(path("disk")), {}, [](const fs::directory_entry& entry) {
                return entry.path().filename().string().starts_with(".");
            }));
        if (told.starts_with("1")) break;
        ++failed;
        ASSERT_TRUE(isOldSet("disk/set")) << blocks << told;
        ASSERT_TRUE(told.find("as it was: is the disk full?") != std::string::npos ||
                    told.find("Cannot create shp file!") != std::string::npos)
            << told;
    }
    EXPECT_GT(failed, 10u);
    EXPECT_EQ(records("disk/set").size(), size_t{kPoints});
}

TEST_F(ExportSafety, FoldersAndFilesOfOthersStayAsTheyAre) {
    fs::create_directories(path("closed"));
    fs::create_directories(path("open"));
    for (const char* part : {".shp", ".shx", ".dbf"}) {
        write(std::string("closed/set") + part, "old");
        write(std::string("open/set") + part, "old");
        fs::permissions(path(std::string("open/set") + part), fs::perms::owner_read);
    }
    fs::permissions(path("open"), fs::perms::all);
    fs::permissions(path("closed"), static_cast<fs::perms>(0555));
    fs::permissions(path(""), static_cast<fs::perms>(0755));
    EXPECT_EQ(saidByNobody([&] {
                  return exported("INSERT", 1, "closed/set") + exported("INSERT", 1, "closed/new") +
                         exported("INSERT", 1, "open/set") + exported("INSERT", 1, "open/new");
              }),
              "0\nCannot create shp file!\n0\nCannot create shp file!\n0\nCannot create shp file!\n"
              "1\n400 points written to new.shp\n");
    for (const char* set : {"closed/set", "open/set"})
        for (const char* part : {".shp", ".shx", ".dbf"}) EXPECT_EQ(read(std::string(set) + part), "old");
    EXPECT_EQ(records("open/new").size(), size_t{kPoints});
    fs::permissions(path("closed"), fs::perms::owner_all);
}

TEST_F(ExportSafety, WhoReadsTheOldSetReadsItToTheEnd) {
    std::vector<std::ifstream> readers;
    for (const char* part : {"set.shp", "set.shx", "set.dbf"}) readers.emplace_back(path(part));
    EXPECT_TRUE(exported("INSERT", 1).starts_with("1\n400 points"));
    for (std::ifstream& reader : readers)
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
    EXPECT_EQ(records("set").size(), size_t{kPoints});
}

TEST_F(ExportSafety, AnOutputThatSomebodyElseHasIsToldAndItsRecordsAreBlank) {
    const ShortLockTimeout shortTimeout;
    const jet::Database holder(output_, {.exclusive = true});
    EXPECT_EQ(exported("INSERT", 1), "1\n400 points written to set.shp; 400 without a record\n");
    EXPECT_TRUE(shown("\" is locked by another process. Please try again when it is free."));
    EXPECT_EQ(records("set").front(), "0||||");
}

// --- Killed --------------------------------------------------------------------------------------------

TEST_F(ExportSafety, WhatAKilledExportHasLeftIsFinishedOrForgotten) {
    const auto make = [&] { EXPECT_TRUE(exported("INSERT", 1, "made").starts_with("1")); };
    const auto isNew = [&](const std::string& set) { return records(set).size() == size_t{kPoints}; };
    // Killed while it wrote.
    make();
    makeBroken(".export-writing", "set", {"shp", "shx", "dbf", "cpg"});
    EXPECT_EQ(exported("INSERT", 1, "next"), "1\n400 points written to next.shp\n");
    EXPECT_TRUE(isOldSet());
    EXPECT_TRUE(leftBehind().empty());
    // Killed before it had moved anything: what belonged to the old set goes.
    make();
    makeBroken(".export-whole", "set", {"shp", "shx", "dbf", "cpg"});
    write(".export-whole/committed", "");
    EXPECT_EQ(exported("INSERT", 1, "next"),
              "1\n1 set of an export that was broken off put in place.\n400 points written to next.shp\n");
    EXPECT_TRUE(isNew("set"));
    EXPECT_FALSE(fs::exists(path("set.prj")));
    EXPECT_TRUE(leftBehind().empty());
    // Killed between the moves: the new .prj is there already.
    make();
    makeBroken(".export-half", "half", {"shp"});
    write(".export-half/committed", "");
    for (const char* ending : {"shx", "dbf", "cpg"})
        fs::rename(path(std::string("made.") + ending), path(std::string("half.") + ending));
    write("half.prj", "NEW");
    write("half.shp", "old");
    exported("INSERT", 1, "next");
    EXPECT_TRUE(isNew("half"));
    EXPECT_EQ(read("half.prj"), "NEW");
    // What an export at work is writing is its own; one that was killed at its very beginning is empty.
    make();
    makeBroken(".export-working", "set", {"shp", "shx", "dbf"});
    write(".export-working/committed", "");
    fs::create_directory(path(".export-empty"));
    const auto lock = files::RandomFile::open(path(".export-working/lock"), files::RandomFile::Mode::kUpdate,
                                              files::RandomFile::Sharing::kDenyWriters);
    ASSERT_NE(lock, nullptr);
    EXPECT_EQ(exported("INSERT", 1, "next"), "1\n400 points written to next.shp\n");
    EXPECT_EQ(leftBehind(), (Lines{".export-working"}));
    EXPECT_TRUE(fs::exists(path(".export-working/1/set.shp")));
}

TEST_F(ExportSafety, AKilledExportLeavesAWholeSet) {
    EXPECT_NE(outputOf(batch(exportCall())).find("400 points written"), std::string::npos);
    const std::string shapes = read("set.shp"), index = read("set.shx"), table = read("set.dbf");
    ASSERT_EQ(records("set").size(), size_t{kPoints});
    batch("(while t " + exportCall() + ")");
    std::mt19937 random(20040531);
    for (int round = 0; round < 12; ++round) {
        for (const std::string& name : leftBehind()) fs::remove_all(path(name));
        killOnce([&] { return !leftBehind().empty(); }, random() % 20000);
        EXPECT_TRUE(read("set.shp") == shapes && read("set.shx") == index && read("set.dbf") == table)
            << round;
    }
}

TEST_F(ExportSafety, AnExportThatIsKilledWhileItPutsItsSetsInPlaceIsFinishedByTheNext) {
    constexpr int kSets = 40;
    constexpr int kLines = kPoints / kSets;
    constexpr rlim_t kLargest = 32768;  // which the table of the points is not
    lisp("(setq i 0) (repeat " + std::to_string(kPoints) + " (setq feature (strcat \"F\" (itoa (rem i " +
         std::to_string(kSets) +
         "))) i (1+ i)) (line (list (float i) 0.0 0.0) (list (float i) 1.0 0.0) (linked feature \"1\")))");
    batch(
        "(setq sets (ssget \"X\"))"
        "(ui:answer 147 '(check \"Export All\") '(click \"OK\"))"
        "(host:input sets nil) (cf:gis_smart_prompting 9 " +
        quoted("set.shp") + ") (while t)");
    std::mt19937 random(20261126);
    int seen = 0;
    for (int round = 0; round < 6; ++round) {
        for (int i = 0; i < kSets; ++i)
            for (const char* part : {".shp", ".shx", ".dbf", ".prj"})
                writeFile(path("set_3_F" + std::to_string(i) + part), "old");
        for (const char* part : {".shp", ".shx", ".dbf", ".prj", ".cpg"})
            writeFile(path(std::string("set_1_OAK") + part), "old");
        bool wasCommitted = false;
        const auto isLate = [&] {
            return fs::file_size(path("set_3_F" + std::to_string(kSets - 1) + ".shp")) > 3;
        };
        killOnce([&] { return (wasCommitted = isCommitted()) || isLate(); }, random() % 2000, kLargest);
        seen += wasCommitted;
        exported("INSERT", 1, "next");
        EXPECT_TRUE(leftBehind().empty());
        EXPECT_TRUE(isOldSet("set_1_OAK")) << "it could not be written whole";
        for (int i = 0; i < kSets; ++i) {
            const std::string stem = "set_3_F" + std::to_string(i);
            // Lines of two vertices.
            ASSERT_EQ(read(stem + ".shp").size(), 100u + kLines * 88) << round << " " << stem;
            ASSERT_EQ(read(stem + ".shx").size(), 100u + kLines * 8);
            ASSERT_EQ(read(stem + ".dbf")[4], kLines);
            ASSERT_FALSE(fs::exists(path(stem + ".prj")));
        }
    }
    EXPECT_GT(seen, 0);
}
