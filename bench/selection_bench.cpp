// Entities selected by a condition on their records: as many entities as records, in an Access file and in an
// SQLite file, a condition that holds for all, for half and for one in a thousand.
//
//     selection_bench [LARGEST]
//
// Times are seconds, the best of three, by the clock and by the processor.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/silent_host.h"
#include "bench/stopwatch.h"
#include "module/selection/linked_values.h"
#include "module/selection/select_records.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/link_index.h"
#include "module/store/new_database.h"

using namespace norvane;

namespace {

template <class Work>
Time bestOf(Work work) {
    Time best{1e9, 1e9};
    for (int round = 0; round < 3; ++round) {
        const Time time = timeOf(work);
        best = {std::min(best.wall, time.wall), std::min(best.processor, time.processor)};
    }
    return best;
}

class Bench {
  public:
    explicit Bench(std::string output) : output_(std::move(output)) {}

    void run(int count) {
        makeTable(count);
        SilentHost host;
        drawLinked(count);
        const Time index = timeOf([] { LinkIndex::OfDrawing(); });
        std::printf("%s, %d entities: index of links %.3f s\n", output_.c_str(), count, index.wall);
        for (const char* condition : {"", "DBH < 50", "PT_ID = '77'"}) {
            RecordSelection found;
            const Time search = bestOf([&] { found = SelectRecords(output_, "TREE", condition); });
            size_t selected = 0;
            const Time selecting =
                bestOf([&] { selected = ChangeSelection(SelectionMode::kNew, found.entities); });
            if (!found.problem.empty() || selected != found.records) {
                std::printf("%s\n", found.problem.c_str());
                std::abort();
            }
            std::printf("  %-14s %7zu found %.3f s (processor %.3f), selected %.3f s (%.3f)\n", condition,
                        selected, search.wall, search.processor, selecting.wall, selecting.processor);
        }
        SelectRecords(output_, "TREE", "");
        std::vector<std::string> problems;
        ChangeSelection(SelectionMode::kNew, SelectRecords(output_, "TREE", "").entities);
        const std::vector<EntityName> entities = SelectedEntities();
        size_t values = 0;
        const Time records = timeOf([&] { values = ValuesOf(entities, problems).size(); });
        std::printf("  records of %zu entities %.3f s (%.3f)\n", values, records.wall, records.processor);
        std::fflush(stdout);
    }

  private:
    void makeTable(int count) {
        std::remove(output_.c_str());
        CDaoDatabase database;
        database.Create(output_);
        CDaoTableDef table(&database);
        table.Create("TREE");
        for (const char* name : {"PT_ID", "GIS_KEY", "SPECIES", "NOTE"}) table.CreateField(name, dbText, 255);
        table.CreateField("DBH", dbLong, 4);
        table.Append();
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset, "TREE");
        for (int i = 0; i < count; ++i) {
            records.AddNew();
            records.SetFieldValue("PT_ID", std::to_string(i));
            records.SetFieldValue("GIS_KEY", "TREE");
            records.SetFieldValue("SPECIES", i % 3 ? "Oak" : "Elm");
            records.SetFieldValue("NOTE", "stands at the road number " + std::to_string(i));
            records.SetFieldValue("DBH", i % 100);
            records.Update();
        }
        records.Close();
        database.Close();
    }

    void drawLinked(int count) const {
        acdbRegApp(kGisLinkApplication);
        for (int i = 0; i < count; ++i) {
            const double at[3] = {static_cast<double>(i), 0, 0};
            const std::string key = std::to_string(i);
            resbuf* list = acutBuildList(RTDXF0, "POINT", 10, at, 0);
            resbuf* link = acutBuildList(1001, kGisLinkApplication, 1000, "/none.mdb", 1000, output_.c_str(),
                                         1000, "TREE", 1000, "PT_ID", 1000, key.c_str(), 0);
            resbuf* last = list;
            while (last->rbnext) last = last->rbnext;
            last->rbnext = acutNewRb(-3);
            last->rbnext->rbnext = link;
            if (acdbEntMake(list) != RTNORM) std::abort();
            acutRelRb(list);
        }
    }

    std::string output_;
};

}  // namespace

int main(int count, char** arguments) {
    const int largest = count > 1 ? std::atoi(arguments[1]) : 100'000;
    const BenchFolder folder;
    for (int entities = 1000; entities <= largest; entities *= 10)
        for (const char* name : {"out.mdb", "out.sqlite"}) Bench(folder(name)).run(entities);
}
