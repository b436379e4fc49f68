#include "module/annotation/feature_texts.h"

#include <optional>
#include <unordered_map>
#include <utility>

#include "module/annotation/label_lines.h"

namespace norvane {

FeatureTexts ReadFeatureTexts(std::string_view feature, std::span<const std::string> expressions,
                              const LinkedRecordTable::GoOn& goOn) {
    FeatureTexts read;
    std::vector<std::string> faults;
    read.problems = ForEachTableOf(feature, [&](LinkedRecordTable& table) {
        if (!read.isWhole) return;
        std::string problem;
        const std::optional<LabelLines> lines = LabelLines::read(expressions, table.fields(), problem);
        if (!lines) return faults.push_back("Table " + table.name() + ": " + problem);
        // By the first of the entities that share a record: what comes again takes the place of what came.
        std::unordered_map<const LinkedEntity*, size_t> places;
        const bool isWhole = table.read(
            lines->usedFields(),
            [&](const LinkedRecordTable::Entities& entities, const std::vector<dao::Variant>& values) {
                const std::string text = lines->textOf(values);
                const auto [place, isNew] = places.try_emplace(entities.front(), read.texts.size());
                if (isNew)
                    for (const LinkedEntity* entity : entities)
                        read.texts.push_back({entity->entity, entity->handle, text});
                else
                    for (size_t i = 0; i < entities.size(); ++i) read.texts[place->second + i].text = text;
                return true;
            },
            goOn);
        read.records += table.recordsRead();
        read.isWhole = isWhole;
    });
    read.problems.insert(read.problems.end(), faults.begin(), faults.end());
    return read;
}

std::string LabelProblem(std::string_view feature, std::span<const std::string> expressions) {
    std::string problem;
    size_t tables = 0;
    const std::vector<std::string> unread = ForEachTableOf(feature, [&](LinkedRecordTable& table) {
        ++tables;
        if (problem.empty()) LabelLines::read(expressions, table.fields(), problem);
    });
    if (!problem.empty() || tables > 0) return problem;
    return unread.empty() ? "No entity is linked to a record of " + std::string(feature) + "."
                          : unread.front();
}

}  // namespace norvane
