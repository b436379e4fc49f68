// A drawing whose entities are linked in bulk, with a template and an output of its own.
#pragma once

#include <string>
#include <vector>

#include "platform/text/text.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/dao/scratch.h"

class LinkTools : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        makeTemplate();
        makeOutput("output.mdb");
        lisp("(cf:gis_smart_prompting 2 2 " + quoted("output.mdb") + ")");
        printed();
    }

    // An empty database of Access.
    void makeOutput(const std::string& name) {
        ASSERT_EQ(lisp("(cf:gis_smart_prompting 20 \"x\" \"none\" " + quoted(name) + ")"), "1");
        ASSERT_TRUE(fs::exists(path(name)));
    }
    // Statements on the output; what they give.
    std::string sql(const std::string& statements) const { return sqlite("output.mdb", statements); }

    void openDrawing(const std::string& file) { ASSERT_EQ(host_->openDrawing(file), ""); }
    void openSample() {
        fs::copy_file(NORVANE_SOURCE_DIR "/samples/survey.dxf", path("survey.dxf"));
        openDrawing(path("survey.dxf"));
    }
    // The shared file of links in every state, copied here with its databases under "linked/"; their links
    // lead to the copies. False when it is not there.
    bool openLinked() {
        const fs::path source = fs::path(NORVANE_SHARED_DATA) / "linked";
        if (!fs::exists(source)) return false;
        fs::create_directory(path("linked"));
        for (const char* name : {"template.mdb", "output.mdb"})
            fs::copy_file(source / name, path("linked/") + name);
        std::ifstream in(source / "survey_linked.dxf", std::ios::binary);
        std::string drawing{std::istreambuf_iterator<char>(in), {}};
        drawing = ::text::replaceAll(drawing, "LINKDIR", path("linked"));
        drawing = ::text::replaceAll(drawing, "linkdir", ::text::lower(path("linked")));
        write("linked.dxf", drawing);
        openDrawing(path("linked.dxf"));
        return true;
    }

    // A function code for a selection of everything; what it printed behind the selection.
    std::string runOnAll(int code, std::vector<std::string> inputs = {}) {
        printed();
        inputs_ = {"ALL", ""};
        inputs_.insert(inputs_.end(), inputs.begin(), inputs.end());
        ui_.clearLog();
        EXPECT_EQ(lisp("(cf:gis_smart_prompting " + std::to_string(code) + ")"), "0");
        const std::string prompt = "\nSelect objects: ", all = printed();
        const size_t last = all.rfind(prompt);
        return last == std::string::npos ? all : all.substr(last + prompt.size());
    }

    // How many links of the drawing lead to a record of the key, and how many not, by programs that know
    // nothing of ours: "followed 40, without a record 0\n".
    std::string followed() {
        lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("followed.dxf") + " \"_Y\")");
        return outputOf("/usr/bin/python3 '" NORVANE_SOURCE_DIR "/tests/module/linktools/follow_links.py' '" +
                        path("followed.dxf") + "' 2>&1");
    }
};
