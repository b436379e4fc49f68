#include "module/annotation/feature_values.h"

#include <optional>
#include <unordered_map>

namespace norvane {

FeatureValues ReadFeatureValues(std::string_view feature, std::string_view field,
                                const LinkedRecordTable::GoOn& goOn) {
    FeatureValues read;
    std::vector<std::string> faults;
    read.problems = ForEachTableOf(feature, [&](LinkedRecordTable& table) {
        if (!read.isWhole) return;
        const std::optional<size_t> place = table.find(field);
        if (!place)
            return faults.push_back("Table " + table.name() + " has no field " + std::string(field) + ".");
        std::unordered_map<const LinkedEntity*, size_t> places;
        read.isWhole = table.read(
            {&*place, 1},
            [&](const LinkedRecordTable::Entities& entities, const std::vector<dao::Variant>& values) {
                const auto [first, isNew] = places.try_emplace(entities.front(), read.values.size());
                if (isNew)
                    for (const LinkedEntity* entity : entities)
                        read.values.push_back({entity->entity, values[*place]});
                else
                    for (size_t i = 0; i < entities.size(); ++i)
                        read.values[first->second + i].value = values[*place];
                return true;
            },
            goOn);
        read.records += table.recordsRead();
    });
    read.problems.insert(read.problems.end(), faults.begin(), faults.end());
    return read;
}

}  // namespace norvane
