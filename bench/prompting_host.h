// The module in a host of its own, with a template of many features: what the benchmarks of the sheet share.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "hostcad/editor/host.h"
#include "module/store/template_database.h"
#include "platform/dao/dao.h"
#include "platform/ui/backend.h"

using namespace norvane;

class PromptingHost : private hostcad::Output, private hostcad::InputSource {
  public:
    // The template gets `features` features of `attributes` rows each, in ten categories. The backend stays
    // the caller's.
    PromptingHost(ui::Backend& backend, int features, int attributes) {
        std::string pattern = (std::filesystem::temp_directory_path() / "norvane-bench-XXXXXX").string();
        folder_ = std::string(mkdtemp(pattern.data())) + "/";
        setenv("NORVANE_USER_DIR", folder_.c_str(), 1);
        ui::setBackend(&backend);
        std::string programs = std::filesystem::read_symlink("/proc/self/exe").parent_path().string() + "/";
        host_.setFolders({programs, programs, folder_});
        if (!host_.modules().load(programs + "norvane_gis.arx")) std::abort();
        run("(setq ent (entmakex '((0 . \"POINT\") (10 1.0 2.0 3.0))))");
        makeTemplate(features, attributes);
    }
    ~PromptingHost() override { std::filesystem::remove_all(folder_); }

    std::string templatePath() const { return folder_ + "template.mdb"; }
    std::string output() const { return output_.empty() ? folder_ + "output.mdb" : output_; }
    // Another output database: a connect string.
    void setOutput(const std::string& output) { output_ = output; }
    void run(const std::string& text) { host_.lisp().runText(text); }
    // Function code 1 for the first feature.
    std::string call(const std::string& key) const {
        return "(cf:gis_smart_prompting 1 \"" + folder_ + "\" \"" + folder_ + "template.mdb\" \"" + output() +
               "\" \"PT_ID\" \"" + key + "\" 1.0 2.0 3.0 ent \"F1X\" 1)";
    }

  private:
    void write(std::string_view) override {}
    hostcad::Input next(const hostcad::Prompt&) override { return hostcad::Input::end(); }

    void makeTemplate(int features, int attributes) {
        CDaoDatabase database;
        database.Create(templatePath());
        EnsureTemplateTables(database);
        CDaoRecordset rows(&database);
        rows.Open(dbOpenDynaset, "SELECT * FROM ZGEO_SMART_PROMPTING");
        for (int feature = 1; feature <= features; ++feature)
            for (int attribute = 1; attribute <= attributes; ++attribute) {
                rows.AddNew();
                rows.SetFieldValue("GIS_NAME", "F" + std::to_string(feature) + "X");
                rows.SetFieldValue("FIELD_NAME", "FIELD" + std::to_string(attribute));
                rows.SetFieldValue("FIELD_PROMPT", "Prompt " + std::to_string(attribute));
                rows.Update();
            }
        rows.Open(dbOpenDynaset, "SELECT * FROM ZGEO_CAT");
        for (int feature = 1; feature <= features; ++feature) {
            rows.AddNew();
            rows.SetFieldValue("INDEX_CAT_GIS", feature);
            rows.SetFieldValue("CAT_GIS_NAME", "CATEGORY" + std::to_string(feature % 10));
            rows.SetFieldValue("GIS_NAME", "F" + std::to_string(feature) + "X");
            rows.Update();
        }
    }

    std::string folder_, output_;
    hostcad::NoView view_;
    hostcad::Host host_{*this, *this, view_};
};
