#include "module/annotation/annotation_operations.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "module/annotation/colour_dialog.h"
#include "module/annotation/feature_records.h"
#include "module/annotation/kept_annotation.h"
#include "module/annotation/label_dialog.h"
#include "module/annotation/shown_annotation.h"
#include "module/cad/drawing_dictionary.h"
#include "module/dialogs/run_dialog.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// The feature that a dialog is to show first.
std::string chosenFeature(Call& call) {
    std::string feature;
    call.arguments.text(feature);
    return text::upper(text::trim(feature));
}

void tellShown(const char* what, const std::string& feature, size_t shown) {
    const std::map<std::string, size_t> linked = LinkedFeatures();
    const auto count = linked.find(feature);
    const size_t all = count == linked.end() ? 0 : count->second;
    acutPrintf("\nThe %s of %s: %s", what, feature.c_str(),
               text::counted(static_cast<long>(shown), "entity has one", "entities have one").c_str());
    if (all > shown) acutPrintf(", %zu without", all - shown);
    acutPrintf(".");
}

// Who labels a whole plan sees nothing of letters that grow with the drawing before zooming in.
void tellTooSmall(const FeatureLabels& labels) {
    constexpr double kLinesInView = 150;  // of letters that can be read
    resbuf view{};
    if (!labels.isOnScreen && acedGetVar("VIEWSIZE", &view) == RTNORM && view.restype == RTREAL &&
        labels.height * kLinesInView < view.resval.rreal)
        acutPrintf(" They are too small to be read in this view: zoom in, or give their height in pixels.");
}
void tellTooSmall(const FeatureColours&) {}

// Keeps what a dialog has changed, shows it, and tells of it. False where something could not be kept.
template <class Set>
bool keepChanges(const char* what, const std::map<std::string, std::optional<Set>>& changes,
                 std::string (*keep)(std::string_view, const Set&), bool (*forget)(std::string_view),
                 size_t (ShownAnnotation::*shownOf)(const std::string&) const) {
    std::set<std::string> refused;
    for (const auto& [feature, set] : changes) {
        const std::string problem = set ? keep(feature, *set) : "";
        if (!set) forget(feature);
        if (problem.empty()) continue;
        acutPrintf("\nThe %s of %s are not kept: %s", what, feature.c_str(), problem.c_str());
        refused.insert(feature);
    }
    if (!changes.empty() && !DrawingHoldsDictionaries())
        acutPrintf("\nA file of R12 has no place for %s: this drawing has them until it is closed.", what);
    ShownAnnotation& shown = ShownAnnotation::OfDrawing();
    shown.refresh(false);
    for (const auto& [feature, set] : changes) {
        if (refused.contains(feature)) continue;
        if (!set) {
            acutPrintf("\nThe %s of %s are taken away.", what, feature.c_str());
        } else if (!set->isShown) {
            acutPrintf("\nThe %s of %s are kept and not shown.", what, feature.c_str());
        } else {
            tellShown(what, feature, (shown.*shownOf)(feature));
            tellTooSmall(*set);
        }
    }
    return refused.empty();
}

}  // namespace

void ChooseLabels(Call& call) {
    const std::string wanted = chosenFeature(call);
    call.result = Nil{};
    LabelDialog dialog(LinkedFeatures(), ReadKeptAnnotation().labels, wanted);
    const int result = RunDialog(dialog);
    if (result != ui::kOk && result != LabelDialog::kMakeTexts) return;
    const bool isKept =
        keepChanges("labels", dialog.changes(), KeepLabels, ForgetLabels, &ShownAnnotation::labelled);
    if (isKept && result == LabelDialog::kMakeTexts) call.result = dialog.feature();
}

void ChooseColours(Call& call) {
    const std::string wanted = chosenFeature(call);
    call.result = Nil{};
    ColourDialog dialog(LinkedFeatures(), ReadKeptAnnotation().colours, wanted);
    const int result = RunDialog(dialog);
    if (result != ui::kOk && result != ColourDialog::kDrawLegend) return;
    const bool isKept =
        keepChanges("colours", dialog.changes(), KeepColours, ForgetColours, &ShownAnnotation::coloured);
    if (isKept && result == ColourDialog::kDrawLegend) call.result = dialog.feature();
}

}  // namespace norvane
