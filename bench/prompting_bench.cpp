// Function code 1 with a scripted sheet, from the Lisp call to the link written, with 1 000 features in the
// template, against the number of records in the table.
#include <benchmark/benchmark.h>

#include "bench/scripted_prompting.h"

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

    void prompt(const std::string& key) { prompting_.prompt(key); }

  private:
    ScriptedPrompting prompting_{kFeatures, kAttributes};
    PromptingHost& host_{prompting_.host()};
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
