#include "module/transfer/export_run.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "module/dialogs/progress_dialog.h"
#include "module/exchange/shape_object.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

struct PlannedSet {
    int32_t shapeType;
    std::string name;
    std::vector<ExportEntity*> entities;
};

int32_t shapeTypeOf(ExportCategory category, bool includeZ) {
    static constexpr std::array<int32_t, kExportCategories> kTypes = {shape::kPoint, shape::kArc,
                                                                      shape::kPolygon};
    constexpr int32_t kWithZ = 10;
    return kTypes[static_cast<size_t>(category)] + (includeZ ? kWithZ : 0);
}

// A feature as part of a file's name: what file systems do not take becomes "_".
std::string inFileName(const std::string& feature) {
    constexpr size_t kLongest = 150;  // bytes
    std::string name(text::cutToBytes(feature, kLongest));
    for (char& c : name)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f' ||
            std::string_view("/\\:*?\"<>|.").find(c) != std::string_view::npos)
            c = '_';
    return name;
}

bool isChosen(const ExportEntity& entity, const ExportChoice& choice) {
    return entity.category != ExportCategory::kNone &&
           choice.features[static_cast<size_t>(entity.category)].contains(entity.feature);
}

// A set for each category and feature, in the order in which they come.
std::vector<PlannedSet> planSets(const std::string& setName, std::vector<ExportEntity>& entities,
                                 const ExportChoice& choice) {
    std::vector<PlannedSet> sets;
    std::map<std::pair<ExportCategory, std::string>, size_t> places;
    std::unordered_set<std::string> names;
    for (ExportEntity& entity : entities) {
        if (!isChosen(entity, choice)) continue;
        const auto [place, isNew] = places.try_emplace({entity.category, entity.feature}, sets.size());
        if (isNew) {
            const int32_t type = shapeTypeOf(entity.category, choice.includeZ);
            const std::string wanted =
                setName + "_" + std::to_string(type) + "_" + inFileName(entity.feature);
            std::string name = wanted;
            for (int n = 2; !names.insert(text::upper(name)).second; ++n)
                name = wanted + "_" + std::to_string(n);
            sets.push_back({type, name, {}});
        }
        sets[place->second].entities.push_back(&entity);
    }
    size_t chosen = 0;
    for (const std::set<std::string>& features : choice.features) chosen += features.size();
    if (chosen == 1 && sets.size() == 1) sets.front().name = setName;
    return sets;
}

// Exports set after set and tells what became of them.
class Run {
  public:
    Run(const std::string& path, std::vector<PlannedSet> sets, const ExportOptions& options)
        : folder_(files::folderOf(path)),
          sets_(std::move(sets)),
          options_(options),
          progress_("Export to SHP", entityCount(), acedUsrBrk) {}

    // Whether all sets were written. They are put in place together at the end: a run that is stopped changes
    // nothing.
    bool perform() {
        if (!readRecords() || !writeSets()) {
            acutPrintf("\nThe export was stopped; nothing was written.\n");
            return false;
        }
        putInPlace();
        tell();
        return written_.size() == sets_.size();
    }

  private:
    long entityCount() const {
        size_t count = 0;
        for (const PlannedSet& set : sets_) count += set.entities.size();
        return static_cast<long>(count);
    }

    bool readRecords() {
        std::vector<ExportEntity*> entities;
        for (const PlannedSet& set : sets_)
            entities.insert(entities.end(), set.entities.begin(), set.entities.end());
        return records_.read(entities, [&] { return progress_.step(0, "Reading the records"); });
    }

    // False when it was stopped.
    bool writeSets() {
        for (const PlannedSet& set : sets_) {
            ExportResult result = exportSet(set);
            if (result.outcome == ExportOutcome::kStopped) return false;
            if (result.outcome == ExportOutcome::kWritten) written_.push_back({&set, std::move(result)});
        }
        return true;
    }

    ExportResult exportSet(const PlannedSet& set) {
        const std::string text = "Writing " + set.name + ".shp";
        long done = done_;
        done_ += static_cast<long>(set.entities.size());
        return ExportToShp(set.shapeType, folder_, set.name, set.entities, options_, [&] {
            done += kEntitiesBetweenQuestions;
            return progress_.step(done - kEntitiesBetweenQuestions, text);
        });
    }

    void putInPlace() {
        const bool isCommitted = !written_.empty() && folder_.commit();
        std::erase_if(written_, [&](Written& written) {
            if (!isCommitted) return TellNotWhole(written.planned->name), true;
            if (written.result.set->putInPlace()) return false;
            acutPrintf("\n%s.shp could not be put in place.", written.planned->name.c_str());
            return true;
        });
    }

    void tell() const {
        ExportCounts all;
        for (const Written& written : written_) {
            const ExportCounts& counts = written.result.counts;
            all.add(counts);
            acutPrintf("\n%s",
                       ExportSummary(written.planned->shapeType, written.planned->name, counts).c_str());
        }
        if (sets_.size() > 1) {
            std::string line = text::counted(written_.size(), "set", "sets") + " written";
            if (const size_t failed = sets_.size() - written_.size())
                line += ", " + std::to_string(failed) + " failed";
            line += ": " + text::counted(all.written, "entity", "entities") + LeftOutText(all);
            acutPrintf("\n%s", line.c_str());
        }
        acutPrintf("\n");
    }

    struct Written {
        const PlannedSet* planned;
        ExportResult result;
    };

    SetFolder folder_;
    std::vector<PlannedSet> sets_;
    const ExportOptions& options_;
    ProgressDialog progress_;
    LinkedRecords records_;
    long done_ = 0;
    std::vector<Written> written_;
};

}  // namespace

std::vector<std::string> FeaturesOf(const std::vector<ExportEntity>& entities, ExportCategory category) {
    std::vector<std::string> features;
    std::unordered_set<std::string> known;
    for (const ExportEntity& entity : entities)
        if (entity.category == category && known.insert(entity.feature).second)
            features.push_back(entity.feature);
    return features;
}

void RunExport(const std::string& path, std::vector<ExportEntity>& entities, const ExportChoice& choice) {
    std::vector<PlannedSet> sets = planSets(SetName(path), entities, choice);
    if (sets.empty())
        acutPrintf("\nNo feature was selected; nothing was written.\n");
    else
        Run(path, std::move(sets), choice.options).perform();
}

bool RunExportOfSet(const std::string& path, int32_t shapeType, const ExportOptions& options,
                    std::vector<ExportEntity>& entities) {
    PlannedSet set{shapeType, SetName(path), {}};
    for (ExportEntity& entity : entities) set.entities.push_back(&entity);
    return Run(path, {set}, options).perform();
}

}  // namespace norvane
