#include "module/annotation/shown_annotation.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <set>
#include <system_error>
#include <utility>

#include "module/annotation/feature_texts.h"
#include "module/annotation/feature_values.h"
#include "module/annotation/label_texts.h"
#include "module/cad/drawing_dictionary.h"
#include "module/dialogs/progress_dialog.h"
#include "module/store/server_sign_in.h"
#include "platform/ads/editor.h"
#include "platform/ads/objects.h"
#include "platform/ads/overlay.h"
#include "platform/dao/dao.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kLabels = "labels";
constexpr const char* kColours = "colours";

// When a file was written last, and its size; "" for none, and for a source on a server, which tells of
// nothing.
std::string stampOf(const std::string& path) {
    std::error_code error;
    const std::filesystem::path file(path);
    const auto time = std::filesystem::last_write_time(file, error);
    if (error) return "";
    const auto size = std::filesystem::file_size(file, error);
    return std::to_string(time.time_since_epoch().count()) + "/" + std::to_string(size);
}

uint64_t hashOf(uint64_t sum, const std::string& text) {
    constexpr uint64_t kFactor = 0x9E3779B97F4A7C15;
    return (sum ^ std::hash<std::string>{}(text)) * kFactor + 1;
}

// Reading goes on until the person stops it.
class Reading {
  public:
    Reading(const char* what, const std::string& feature)
        : progress_(std::string("Reading ") + what, 0, acedUsrBrk), feature_(feature) {}
    LinkedRecordTable::GoOn goOn() {
        return [this] { return progress_.step(++steps_, "Records of " + feature_); };
    }

  private:
    ProgressDialog progress_;
    std::string feature_;
    long steps_ = 0;
};

// Texts keep their marks where programs and files of R12 drop dictionaries.
void tellLostLabels() {
    if (HasDrawingDictionaries()) return;
    for (const auto& [feature, count] : FeaturesWithTexts())
        acutPrintf(
            "\nThe drawing has texts made of labels of %s, but not the labels: files of R12 and some "
            "programs do not keep them. GIS-LABELS makes them anew.\n",
            feature.c_str());
}

const char* const kStopped = "Stopped: they are not shown until GIS-REFRESH.";

}  // namespace

// The module may be unloaded while the drawing is open.
ShownAnnotation::~ShownAnnotation() {
    if (drawing_ == acdbCurDwg()->serial()) acdbCurDwg()->removeObserver(observer_);
}

ShownAnnotation& ShownAnnotation::OfDrawing() {
    static ShownAnnotation shown;
    shown.followDrawing();
    return shown;
}

size_t ShownAnnotation::countOf(const Sets& sets, const std::string& feature) {
    const auto known = sets.find(feature);
    return known == sets.end() ? 0 : known->second.entities;
}

void ShownAnnotation::followDrawing() {
    AcDbDatabase& drawing = *acdbCurDwg();
    if (drawing_ == drawing.serial()) return;
    // The observer of another drawing is gone with it, and so is what was shown.
    drawing_ = drawing.serial();
    observer_ = drawing.addObserver([this](AcDbObjectId) { haveEntitiesChanged_ = true; });
    haveEntitiesChanged_ = isNewDrawing_ = true;
    labels_.clear(), colours_.clear(), remarks_.clear();
}

void ShownAnnotation::readLinks() {
    if (!std::exchange(haveEntitiesChanged_, false)) return;
    links_.clear();
    std::map<std::string, std::set<std::string>> files;
    for (const LinkedEntity* entity : LinkIndex::OfDrawing().all()) {
        if (entity->isBrokenOff) continue;
        Links& links = links_[entity->feature];
        AcDbObjectId id;
        acdbGetObjectId(id, entity->entity.name);
        links.sum = links.sum * 31 + static_cast<uint64_t>(id.asLong());
        for (const std::string* part :
             {&entity->keyField, &entity->keyValue, &entity->outputPath, &entity->templatePath})
            links.sum = hashOf(links.sum, *part);
        files[entity->feature].insert({entity->outputPath, entity->templatePath});
    }
    for (auto& [feature, paths] : files)
        for (const std::string& path : paths) links_[feature].databases.push_back(PlaceOfDatabase(path));
}

ShownAnnotation::Basis ShownAnnotation::basisOf(const std::string& feature, std::string definition) const {
    // What this program has changed may be in no file yet.
    Basis basis{std::move(definition), 0, std::to_string(dao::changesMade()) + ";"};
    const auto links = links_.find(feature);
    if (links == links_.end()) return basis;
    basis.links = links->second.sum;
    for (const std::string& path : links->second.databases) basis.databases += stampOf(path) + ";";
    return basis;
}

bool ShownAnnotation::isOnServer(const std::string& feature) const {
    const auto links = links_.find(feature);
    return links != links_.end() &&
           std::any_of(links->second.databases.begin(), links->second.databases.end(), IsOdbcPath);
}

bool ShownAnnotation::isDue(Sets& sets, const std::string& feature, const Basis& basis, const char* what,
                            bool all) const {
    const auto known = sets.find(feature);
    if (all || known == sets.end()) return true;
    Shown& shown = known->second;
    if (shown.basis == basis) return false;
    const bool onlyRecords = shown.basis.definition == basis.definition && shown.basis.links == basis.links;
    if (!onlyRecords) return true;
    // Nobody waits for a server that is away, or is asked to sign in, behind each command.
    if (!shown.problems.empty() && isOnServer(feature)) return false;
    if (shown.records <= kMostRecordsBetweenCommands) return true;
    shown.basis = basis;
    acutPrintf(
        "\nRecords may have changed, and the %s of %s are as they were. GIS-REFRESH brings them up to "
        "date.\n",
        what, feature.c_str());
    return false;
}

ShownAnnotation::Shown ShownAnnotation::showLabels(const std::string& feature, const FeatureLabels& labels) {
    Shown shown;
    overlay::LabelSet set;
    if (labels.isShown) {
        Reading reading(kLabels, feature);
        FeatureTexts read = ReadFeatureTexts(feature, labels.lines, reading.goOn());
        set.style.height = labels.height;
        set.style.isInPixels = labels.isOnScreen;
        for (EntityText& text : read.texts)
            if (!text.text.empty())
                set.labels.push_back({overlay::nameOf(text.entity.name), std::move(text.text)});
        shown.records = read.records;
        shown.problems = std::move(read.problems);
        if (!read.isWhole) set.labels.clear(), shown.problems.emplace_back(kStopped);
    }
    shown.entities = set.labels.size();
    overlay::setLabels(feature, std::move(set));
    return shown;
}

ShownAnnotation::Shown ShownAnnotation::showColours(const std::string& feature,
                                                    const FeatureColours& colours) {
    Shown shown;
    overlay::ColourSet set;
    if (colours.isShown) {
        Reading reading(kColours, feature);
        FeatureValues read = ReadFeatureValues(feature, colours.field, reading.goOn());
        shown.records = read.records;
        shown.problems = std::move(read.problems);
        if (read.isWhole) {
            ColouredValues coloured = ColourValues(colours, read.values);
            for (size_t i = 0; i < read.values.size(); ++i)
                set.colours.push_back({overlay::nameOf(read.values[i].entity.name), coloured.colours[i]});
            if (colours.hasLegend) set.legend = {feature + ": " + colours.field, std::move(coloured.rows)};
        } else {
            shown.problems.emplace_back(kStopped);
        }
    }
    shown.entities = set.colours.size();
    // A legend of nothing says nothing.
    if (set.colours.empty()) set.legend = {};
    overlay::setColours(feature, std::move(set));
    return shown;
}

void ShownAnnotation::tell(const char* what, const std::string& feature, const Shown& now,
                           const Shown& before) {
    if (now.problems == before.problems) return;
    for (const std::string& problem : now.problems)
        acutPrintf("\nThe %s of %s: %s\n", what, feature.c_str(), problem.c_str());
}

void ShownAnnotation::refresh(bool all) {
    if (std::exchange(isNewDrawing_, false)) tellLostLabels();
    const KeptAnnotation kept = ReadKeptAnnotation();
    if (kept.remarks != remarks_)
        for (const std::string& remark : kept.remarks) acutPrintf("\n%s\n", remark.c_str());
    remarks_ = kept.remarks;
    if (!kept.labels.empty() || !kept.colours.empty()) readLinks();

    auto follow = [&](Sets& shown, const auto& sets, const char* what, auto show, auto takeAway) {
        std::erase_if(shown, [&](const auto& one) {
            if (sets.contains(one.first)) return false;
            takeAway(one.first);
            return true;
        });
        for (const auto& [feature, set] : sets) {
            Basis basis = basisOf(feature, TextOf(set));
            if (!isDue(shown, feature, basis, what, all)) continue;
            Shown now = show(feature, set);
            now.basis = std::move(basis);
            Shown& before = shown[feature];
            tell(what, feature, now, before);
            before = std::move(now);
        }
    };
    follow(labels_, kept.labels, kLabels, showLabels,
           [](const std::string& feature) { overlay::setLabels(feature, {}); });
    follow(colours_, kept.colours, kColours, showColours,
           [](const std::string& feature) { overlay::setColours(feature, {}); });
}

}  // namespace norvane
