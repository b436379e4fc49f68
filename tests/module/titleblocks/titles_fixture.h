// A drawing with title blocks, the tables that they are filled from, and settings that tie the two.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/text/text.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/dao/scratch.h"

class Titles : public ModuleTest {
  protected:
    static fs::path shared(const std::string& name) { return fs::path(NORVANE_SHARED_DATA) / name; }

    // The shared drawing and its tables, copied into the test's folder. False when they are not there.
    bool openTitles() {
        if (!fs::exists(shared("titles/titles.dxf"))) return false;
        for (const char* name : {"titles.dxf", "jobs.mdb", "owners.dbf"})
            fs::copy_file(shared("titles") / name, path(name));
        fs::copy_file(shared("owners.xls"), path("owners.xls"));
        EXPECT_EQ(host_->openDrawing(path("titles.dxf")), "");
        return true;
    }
    // The shared settings, which lead to the copies.
    std::string sharedSettings() const {
        std::ifstream in(shared("titles/zgeoblk.ini"), std::ios::binary);
        return ::text::replaceAll(std::string{std::istreambuf_iterator<char>(in), {}}, "LINKDIR/", path(""));
    }

    void writeSettings(const std::string& lines) { write("zgeoblk.ini", lines); }
    std::string settings() const { return read("zgeoblk.ini"); }
    // A line of the settings for a file of the test's folder.
    std::string link(const std::string& block, const std::string& attribute, const std::string& key,
                     const std::string& table, const std::string& field, const std::string& file) const {
        return block + "|" + attribute + "|" + key + "|" + table + "|" + field + "|" + path(file) + "\n";
    }
    // Links of some attributes to the fields of the same names.
    std::string links(const std::string& block, const std::string& key, const std::string& table,
                      const std::string& file, const std::vector<std::string>& names) const {
        std::string lines;
        for (const std::string& name : names) lines += link(block, name, key, table, name, file);
        return lines;
    }
    std::string titleLinks(const std::string& table, const std::string& file) const {
        return links("TITLE", "JOBNO", table, file,
                     {"PROJECT", "CLIENT", "SHEET", "DATE", "DRAWN", "CHECKED", "SCALE", "JOBNO"});
    }

    // Code 6 for a selection of everything; what it printed behind the selection.
    std::string fill(std::vector<ui::Step> steps) {
        answer(141, std::move(steps));
        return run();
    }
    std::string run() {
        printed();
        inputs_ = {"ALL", ""};
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 6)"), "0");
        const std::string prompt = "\nSelect objects: ", all = printed();
        const size_t last = all.rfind(prompt);
        return last == std::string::npos ? all : all.substr(last + prompt.size());
    }
    // Code 5.
    void edit(std::vector<ui::Step> steps) {
        answer(140, std::move(steps));
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 5)"), "0");
    }

    // The text of an attribute in the drawing as it is saved, by a program that knows nothing of ours:
    // "79 PROJECT" to text.
    std::map<std::string, std::string> savedTexts() {
        lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("saved.dxf") + " \"_Y\")");
        std::map<std::string, std::string> texts;
        for (const std::string& line : ::text::split(outputOf("/usr/bin/python3 '" NORVANE_SOURCE_DIR
                                                              "/tests/module/titleblocks/dump_titles.py' '" +
                                                              path("saved.dxf") + "'"),
                                                     '\n'))
            if (const size_t tab = line.find('\t'); tab != std::string::npos) {
                std::string& text = texts[line.substr(0, tab)];
                text += (text.empty() ? "" : " / ") + line.substr(tab + 1);
            }
        return texts;
    }

    // What a dialog shows in a control, from the log: the lines of its last picture under the control's id.
    std::vector<std::string> shownIn(int resource, int id) const {
        std::vector<std::string> lines;
        const std::string head = "[" + std::to_string(resource) + "]", wanted = std::to_string(id);
        for (const std::string& picture : ui_.log()) {
            if (!picture.starts_with(head)) continue;
            lines.clear();
            bool inside = false;
            for (const std::string& line : ::text::split(picture, '\n')) {
                const bool isItem = line.starts_with("      ") || line.starts_with("    >");
                if (!isItem) inside = line.size() > 2 && line.substr(2, line.find(' ', 2) - 2) == wanted;
                if (inside) lines.push_back(isItem ? line.substr(4) : line);
            }
        }
        return lines;
    }

    static ui::Step text(std::string control, std::string content) {
        return {ui::Step::Kind::Text, std::move(control), std::move(content)};
    }
    static ui::Step check(std::string control, bool on) {
        return {ui::Step::Kind::Check, std::move(control), "", on};
    }
    static ui::Step doubleClick(std::string control, std::string item) {
        return {ui::Step::Kind::DoubleClick, std::move(control), std::move(item)};
    }
};
