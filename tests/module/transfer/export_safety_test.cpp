// Exports that are stopped, that fail, and that are killed: the old set stays.
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

#include "tests/module/transfer/export_fixture.h"

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
    // Runs what batch() has prepared, and kills it so long after it has begun to write its next set.
    void killWhileItWrites(useconds_t microseconds) {
        for (const std::string& name : leftBehind()) fs::remove_all(path(name));
        const std::string drawing = path("points.dxf"), script = path("run.lsp");
        const char* program = NORVANE_BIN_DIR "/hostcad-batch";
        const pid_t child = ::fork();
        if (child == 0) {
            ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
            ::execl(program, program, "--drawing", drawing.c_str(), script.c_str(), nullptr);
            ::_exit(1);
        }
        constexpr int kPatience = 20000;
        for (int i = 0; i < kPatience && leftBehind().empty(); ++i) ::usleep(500);
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

TEST_F(ExportSafety, AKilledExportLeavesAWholeSet) {
    EXPECT_NE(outputOf(batch(exportCall())).find("400 points written"), std::string::npos);
    const std::string shapes = read("set.shp"), index = read("set.shx"), table = read("set.dbf");
    ASSERT_EQ(records("set").size(), size_t{kPoints});
    batch("(while t " + exportCall() + ")");
    std::mt19937 random(20040531);
    for (int round = 0; round < 12; ++round) {
        killWhileItWrites(random() % 20000);
        EXPECT_TRUE(read("set.shp") == shapes && read("set.shx") == index && read("set.dbf") == table)
            << round;
    }
}
