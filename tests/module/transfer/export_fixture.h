// A drawing with linked entities that go out as shapes, and the programs that read what came of them.
#pragma once

#include <algorithm>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "platform/text/text.h"
#include "tests/module/exchange/other_readers.h"
#include "tests/module/module_fixture.h"

using Lines = std::vector<std::string>;

inline Lines linesOf(const std::string& text) {
    Lines lines = text::split(text, '\n');
    if (!lines.empty() && lines.back().empty()) lines.pop_back();
    return lines;
}

class Export : public ModuleTest {
  protected:
    void SetUp() override {
        if (!havePyshp()) GTEST_SKIP() << "pyshp is not installed";
        ModuleTest::SetUp();
        useOutput("output.mdb");
        lisp("(setq tmpl$ " + quoted("template.mdb") +
             ") (load \"" NORVANE_SOURCE_DIR "/tests/module/transfer/shapes.lsp\")");
    }
    void TearDown() override {
        if (host_) ModuleTest::TearDown();
    }

    // Records of linked entities are in this file, which is made here.
    void useOutput(const std::string& file) {
        output_ = path(file);
        lisp("(setq outp$ " + quoted(file) + ")");
        if (fs::exists(output_)) return;
        ASSERT_EQ(lisp("(cf:gis_smart_prompting 20 \"x\" \"none\" outp$)"), "1");
    }
    void sql(const std::string& statements) { EXPECT_EQ(::answer(output_, statements), ""); }

    // Code 10 for all entities of some types; its result and what it printed.
    std::string exported(const std::string& types, int shapeType, const std::string& file = "set") {
        printed();
        const std::string result = lisp("(cf:gis_smart_prompting 10 " + quoted(file) + " (all \"" + types +
                                        "\") " + std::to_string(shapeType) + ")");
        return result + printed();
    }
    // Code 9 for everything, with these steps for its dialog; what it printed.
    std::string chosen(std::vector<ui::Step> steps, const std::string& file = "set.shp") {
        answer(147, std::move(steps));
        printed();
        inputs_ = {"ALL", ""};
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 9 " + quoted(file) + ")"), "0");
        const std::string all = printed();
        const std::string prompt = "\nSelect objects: ";
        return all.substr(all.rfind(prompt) + prompt.size());
    }
    static ui::Step check(const std::string& control, bool on = true) {
        return {ui::Step::Kind::Check, control, "", on};
    }
    static ui::Step type(const std::string& control, const std::string& text) {
        return {ui::Step::Kind::Text, control, text};
    }
    static ui::Step also(const std::string& control, const std::string& item) {
        return {ui::Step::Kind::PickAlso, control, item};
    }

    // The set as pyshp reads it: type and count, a line a shape, the fields, a line a record.
    Lines dump(const std::string& stem) const { return linesOf(pyshp(path(stem))); }
    // "C 32" and "N 12.4" by name.
    std::map<std::string, std::string> fieldsOf(const std::string& stem) const {
        std::map<std::string, std::string> fields;
        const std::string text = pyshp(path(stem));
        const std::regex field(R"(\['([^']*)', '(.)', (\d+), (\d+)\])");
        for (std::sregex_iterator it(text.begin(), text.end(), field), end; it != end; ++it)
            fields[(*it)[1]] =
                (*it)[2].str() + " " + (*it)[3].str() + ((*it)[4] == "0" ? "" : "." + (*it)[4].str());
        return fields;
    }
    // The records alone; the other program has as many, with the same ids and features.
    Lines records(const std::string& stem) const {
        Lines lines = dump(stem);
        const auto first = std::find_if(lines.begin(), lines.end(),
                                        [](const std::string& l) { return l.starts_with("[["); });
        if (first != lines.end()) lines.erase(lines.begin(), first + 1);
        if (haveNodeShapefile()) {
            const Lines others = linesOf(nodeShapefile(path(stem)));
            EXPECT_EQ(others.size(), lines.size()) << stem;
            for (size_t i = 0; i < std::min(others.size(), lines.size()); ++i) {
                const Lines mine = text::split(lines[i], '|');
                if (mine.size() < 2) continue;
                const std::string ids = mine[0] + "|" + mine[1];
                EXPECT_NE(others[i].find("|" + ids), std::string::npos) << others[i];
            }
        }
        return lines;
    }
    Lines files() const {
        Lines names;
        for (const auto& entry : fs::directory_iterator(path("")))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    Lines shapeFiles() const {
        Lines names = files();
        std::erase_if(names, [](const std::string& name) { return !name.ends_with(".shp"); });
        return names;
    }

    std::string output_;
};
