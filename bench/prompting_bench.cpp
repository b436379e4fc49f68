// Function code 1 with a scripted sheet, from the Lisp call to the link written, with 1 000 features in the
// template, against the number of records in the table.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "hostcad/editor/host.h"
#include "module/host/gis_request.h"
#include "module/store/database.h"
#include "module/store/output_database.h"
#include "module/store/template_database.h"
#include "platform/ui/scripted/scripted_backend.h"

namespace {

constexpr int kFeatures = 1000;
constexpr int kAttributes = 15;

class Quiet : public hostcad::Output, public hostcad::InputSource {
  public:
    void write(std::string_view) override {}
    hostcad::Input next(const hostcad::Prompt&) override { return hostcad::Input::end(); }
};

class PromptingBench {
  public:
    PromptingBench() {
        std::string pattern = (std::filesystem::temp_directory_path() / "norvane-bench-XXXXXX").string();
        folder_ = std::string(mkdtemp(pattern.data())) + "/";
        setenv("NORVANE_USER_DIR", folder_.c_str(), 1);
        ui::setBackend(&ui_);
        std::string programs = std::filesystem::read_symlink("/proc/self/exe").parent_path().string() + "/";
        host_.setFolders(programs, programs);
        host_.newDrawing();
        if (!host_.modules().load(programs + "norvane_gis.arx")) std::abort();
        run("(setq usrdir$ \"" + folder_ + "\" ent (entmakex '((0 . \"POINT\") (10 1.0 2.0 3.0))))");
        makeTemplate();
    }
    ~PromptingBench() { std::filesystem::remove_all(folder_); }

    void fillTable(int records) {
        std::filesystem::remove(folder_ + "output.mdb");
        prompt("first");  // makes the database and the table
        CDaoDatabase database;
        database.Open(folder_ + "output.mdb");
        CDaoRecordset rows(&database);
        rows.Open(dbOpenDynaset, "SELECT * FROM [F1X]");
        for (int i = 1; i < records; ++i) {
            rows.AddNew();
            rows.SetFieldValue("PT_ID", std::to_string(i));
            rows.SetFieldValue("GIS_KEY", std::string("F1X"));
            rows.SetFieldValue("FIELD3", std::string("stored"));
            rows.Update();
        }
    }

    void prompt(const std::string& key) {
        ui_.answer(134, {{ui::Step::Kind::Cell, "", "value", true, 2, 1},
                         {ui::Step::Kind::Cell, "", key, true, 2, 2},
                         {ui::Step::Kind::Click, "1"}});
        run("(if (/= 1 (cf:gis_smart_prompting 1 \"" + folder_ + "\" \"" + folder_ + "template.mdb\" \"" + folder_ +
            "output.mdb\" \"PT_ID\" \"" + key + "\" 1.0 2.0 3.0 ent \"F1X\" 1)) (exit))");
        ui_.clearLog();
    }

  private:
    void run(const std::string& text) { host_.lisp().runText(text); }

    void makeTemplate() {
        CDaoDatabase database;
        database.Create(folder_ + "template.mdb");
        EnsureTemplateTables(database);
        CDaoRecordset rows(&database);
        rows.Open(dbOpenDynaset, "SELECT * FROM ZGEO_SMART_PROMPTING");
        for (int feature = 1; feature <= kFeatures; ++feature)
            for (int attribute = 1; attribute <= kAttributes; ++attribute) {
                rows.AddNew();
                rows.SetFieldValue("GIS_NAME", "F" + std::to_string(feature) + "X");
                rows.SetFieldValue("FIELD_NAME", "FIELD" + std::to_string(attribute));
                rows.SetFieldValue("FIELD_PROMPT", "Prompt " + std::to_string(attribute));
                rows.Update();
            }
    }

    std::string folder_;
    Quiet quiet_;
    hostcad::NoView view_;
    ui::ScriptedBackend ui_;
    hostcad::Host host_{quiet_, quiet_, view_};
};

PromptingBench& bench() {
    static PromptingBench instance;
    return instance;
}

void NewRecord(benchmark::State& state) {
    int records = static_cast<int>(state.range(0));
    bench().fillTable(records);
    int next = 10000000;
    for (auto _ : state) bench().prompt(std::to_string(next++));
}
BENCHMARK(NewRecord)->Arg(100)->Arg(10000)->Arg(100000)->Iterations(100)->Unit(benchmark::kMillisecond);

void EditedRecord(benchmark::State& state) {
    int records = static_cast<int>(state.range(0));
    bench().fillTable(records);
    int next = 1;
    for (auto _ : state) bench().prompt(std::to_string(1 + next++ % (records - 1)));
}
BENCHMARK(EditedRecord)->Arg(100)->Arg(10000)->Arg(100000)->Iterations(100)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
