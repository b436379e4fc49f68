// Database File Utilities through function code 16, with an output of its own.
#pragma once

#include <string>
#include <vector>

#include "module/coords/coordinate_file.h"
#include "module/coords/coordinate_format.h"
#include "platform/dao/dao.h"
#include "platform/text/text.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/dao/scratch.h"

class UtilitiesTest : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        ui_.allowClash("New Databa&se; Import A&SCII File; ");
        ui_.setClock(kNow);
        makeOutput("output.mdb", dbVersion40);
        use("output.mdb");
    }
    static constexpr std::time_t kNow = 1132000000;  // 14 November 2005

    void makeOutput(const std::string& name, int version) const {
        CDaoDatabase database;
        database.Create(path(name), dbLangGeneral, version);
        database.Close();
    }
    // The database that the dialog opens with.
    void use(const std::string& name) { write("featlink.ini", "#H" + path(name) + "\n"); }
    bool takeShared(const std::string& name) const {
        const fs::path source = fs::path(NORVANE_SHARED_DATA) / name;
        if (!fs::exists(source)) return false;
        fs::copy_file(source, path(fs::path(name).filename().string()));
        fs::permissions(path(fs::path(name).filename().string()), fs::perms::owner_all);
        return true;
    }

    static ui::Step text(std::string control, std::string text) {
        return {ui::Step::Kind::Text, std::move(control), std::move(text)};
    }
    static ui::Step check(std::string control, bool on = true, std::string node = "") {
        return {ui::Step::Kind::Check, std::move(control), std::move(node), on};
    }
    static constexpr const char* kTree = "1024";

    // Runs the dialog; all that was shown.
    std::string run(std::vector<ui::Step> steps) {
        ui_.clearLog();
        steps.push_back(show());
        steps.push_back(click("2"));
        answer(161, std::move(steps));
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 16)"), "0");
        std::string all;
        for (const std::string& line : ui_.log()) all += line + "\n";
        return all;
    }
    // Reads a note file and imports what it has.
    std::string importNotes(const std::string& file, std::vector<ui::Step> before = {}) {
        ui_.answerFile(path(file));
        const bool isCollector = file.ends_with(".vtt");
        std::vector<ui::Step> steps = {click(isCollector ? "1022" : "1021")};
        steps.insert(steps.end(), before.begin(), before.end());
        steps.push_back(click("Import Checked Features"));
        return run(std::move(steps));
    }
    // Imports a text: steps of its dialog behind the choice of the file.
    std::string importText(const std::string& file, std::vector<ui::Step> steps) {
        ui_.answerFile(path(file));
        answer(1612, std::move(steps));
        return run({click("Import ASCII File")});
    }
    // The steps that import points.txt and its like: the first piece of line 1 is the key.
    static std::vector<ui::Step> keyed(const std::string& table, std::vector<ui::Step> more = {}) {
        std::vector<ui::Step> steps = {pick("1004", "1"), click("Set Fields From Selected Line"),
                                       pick("1022", "0"), click("Set Key Field"), text("1046", table)};
        steps.insert(steps.end(), more.begin(), more.end());
        steps.push_back(click("1"));
        return steps;
    }
    static bool has(const std::string& all, const std::string& part) {
        return all.find(part) != std::string::npos;
    }
    // The points of a coordinate file: "name northing easting elevation description; " each.
    std::string points(const std::string& file) const {
        const auto points = norvane::MakeCoordinateFile(norvane::DetectFormat(path(file)));
        std::string all;
        norvane::PointRecord point;
        if (!points || !points->Open(path(file))) return all;
        while (points->Move(nullptr, point, 1))
            all += ::text::format("%s %.4f %.4f %.4f %s; ", point.name.c_str(), point.northing, point.easting,
                                  point.elevation, point.description.c_str());
        return all;
    }
    std::string output(const std::string& sql, const std::string& file = "output.mdb") const {
        return sqlite(file, sql);
    }
};
