// Function code 1 with a scripted sheet, from the Lisp call to the link written, with 1 000 features in the
// template, against the number of records in the table.
#include <benchmark/benchmark.h>

#include "bench/prompting_host.h"
#include "platform/ui/scripted/scripted_backend.h"

namespace {

constexpr int kFeatures = 1000;
constexpr int kAttributes = 15;

class PromptingBench {
  public:
    void fillTable(int records) {
        std::filesystem::remove(host_.output());
        prompt("first");  // makes the database and the table
        CDaoDatabase database;
        database.Open(host_.output());
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
        host_.run("(if (/= 1 " + host_.call(key) + ") (exit))");
        ui_.clearLog();
    }

  private:
    ui::ScriptedBackend ui_;
    PromptingHost host_{ui_, kFeatures, kAttributes};
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
