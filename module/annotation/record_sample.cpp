#include "module/annotation/record_sample.h"

#include <numeric>
#include <utility>

#include "module/annotation/feature_records.h"

namespace norvane {

RecordSample ReadRecordSample(std::string_view feature, size_t most) {
    constexpr size_t kMostLookedAt = 20'000;
    RecordSample sample;
    sample.problems = ForEachTableOf(feature, [&](LinkedRecordTable& table) {
        RecordSample::Table& taken = sample.tables.emplace_back();
        taken.name = table.name();
        taken.fields = table.fields();
        std::vector<size_t> all(taken.fields.size());
        std::iota(all.begin(), all.end(), size_t{0});
        table.read(
            all,
            [&](const LinkedRecordTable::Entities&, const std::vector<dao::Variant>& values) {
                taken.records.push_back(values);
                return taken.records.size() < most;
            },
            [&] { return table.recordsRead() < kMostLookedAt; });
    });
    return sample;
}

}  // namespace norvane
