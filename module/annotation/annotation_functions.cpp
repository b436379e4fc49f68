#include "module/annotation/annotation_functions.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "module/annotation/feature_texts.h"
#include "module/annotation/feature_values.h"
#include "module/annotation/kept_annotation.h"
#include "module/annotation/label_texts.h"
#include "module/annotation/legend_drawing.h"
#include "module/annotation/shown_annotation.h"
#include "module/cad/drawing_dictionary.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_chain.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr size_t kClassesUnlessTold = 5;

void refuse(Call& call, const std::string& sentence) {
    acutPrintf("\n%s", sentence.c_str());
    call.result = Nil{};
}

// A text of the call without blanks round it; "" for none.
std::string textIn(Call& call) {
    std::string text;
    call.arguments.text(text);
    return std::string(text::trim(text));
}

std::string featureIn(Call& call) {
    return text::upper(textIn(call));
}

// A real or a whole number; 0 for none.
double numberIn(Call& call) {
    double number = 0;
    int whole = 0;
    if (!call.arguments.real(number) && call.arguments.shortInteger(whole)) number = whole;
    return number;
}

double standardHeight() {
    resbuf value{};
    return acedGetVar("TEXTSIZE", &value) == RTNORM && value.restype == RTREAL && value.resval.rreal > 0
               ? value.resval.rreal
               : 1;
}

// Of texts that are made of labels, in drawing units.
double heightOfTexts(const FeatureLabels& labels) {
    return labels.isOnScreen ? standardHeight() : labels.height;
}

// A layer for what is made of a feature: its name with what a layer's name cannot have as underlines.
std::string layerOf(const std::string& feature, const char* what) {
    std::string layer = feature + what;
    for (char& c : layer)
        if (!IsNameByte(c)) c = '_';
    return layer;
}

void tellProblems(const std::vector<std::string>& problems) {
    for (const std::string& problem : problems) acutPrintf("\n%s", problem.c_str());
}

}  // namespace

void RefreshAnnotation(Call& call) {
    const resbuf* all = call.arguments.rest();
    ShownAnnotation::OfDrawing().refresh(all && all->restype != RTNIL);
    call.result = Nil{};
}

void ListAnnotation(Call& call) {
    const KeptAnnotation kept = ReadKeptAnnotation();
    const std::map<std::string, size_t> texts = FeaturesWithTexts();
    std::set<std::string> features;
    for (const auto& [feature, count] : LinkedFeatures()) features.insert(feature);
    for (const auto& [feature, labels] : kept.labels) features.insert(feature);
    for (const auto& [feature, colours] : kept.colours) features.insert(feature);
    for (const auto& [feature, count] : texts) features.insert(feature);
    const ShownAnnotation& shown = ShownAnnotation::OfDrawing();
    ResultChain list;
    for (const std::string& feature : features) {
        const auto count = texts.find(feature);
        list.add(RTLB);
        list.addText(RTSTR, feature);
        list.addInteger(RTLONG, static_cast<long>(shown.labelled(feature)));
        list.addInteger(RTLONG, static_cast<long>(shown.coloured(feature)));
        list.addInteger(RTLONG, count == texts.end() ? 0 : static_cast<long>(count->second));
        const auto labels = kept.labels.find(feature);
        list.add(RTREAL).resval.rreal =
            labels == kept.labels.end() ? standardHeight() : heightOfTexts(labels->second);
        list.add(RTLE);
    }
    if (list.get())
        call.result = ResultBuffers(list.take());
    else
        call.result = Nil{};
}

// --- Labels ----------------------------------------------------------------------------------------------

void SetLabels(Call& call) {
    const std::string feature = featureIn(call);
    std::string lines;
    call.arguments.text(lines);
    ShownAnnotation& shown = ShownAnnotation::OfDrawing();
    if (text::trim(lines).empty()) {
        if (!ForgetLabels(feature)) return refuse(call, feature + " has no labels.");
        shown.refresh(false);
        return;
    }
    FeatureLabels labels;
    for (const std::string& line : text::split(lines, '\n'))
        if (!text::trim(line).empty()) labels.lines.emplace_back(text::trim(line));
    if (labels.lines.size() > kMostLabelLines)
        return refuse(call, "A label has up to " + std::to_string(kMostLabelLines) + " lines.");
    if (const double height = numberIn(call); height > 0) labels.height = height;
    labels.isOnScreen = text::equalNoCase(textIn(call), "PIXELS");
    std::string problem = LabelProblem(feature, labels.lines);
    if (problem.empty()) problem = KeepLabels(feature, labels);
    if (!problem.empty()) return refuse(call, problem);
    shown.refresh(false);
    call.result = static_cast<int>(shown.labelled(feature));
}

// --- Colours ---------------------------------------------------------------------------------------------

void SetColours(Call& call) {
    const std::string feature = featureIn(call);
    FeatureColours colours;
    colours.field = textIn(call);
    ShownAnnotation& shown = ShownAnnotation::OfDrawing();
    if (colours.field.empty()) {
        if (!ForgetColours(feature)) return refuse(call, feature + " has no colours.");
        shown.refresh(false);
        return;
    }
    const std::string name = textIn(call);
    const std::optional<Division> division = name.empty() ? Division::kByValue : DivisionOf(name);
    if (!division) return refuse(call, "\"" + name + "\" is none of values, steps, counts and breaks.");
    colours.division = *division;
    const double count = std::clamp(numberIn(call), 0.0, static_cast<double>(kMostClasses));
    const FeatureValues read = ReadFeatureValues(feature, colours.field, [] { return acedUsrBrk() == 0; });
    tellProblems(read.problems);
    if (!read.isWhole) return refuse(call, "Stopped: the colours are as they were.");
    colours.classes =
        ClassesOf(read.values, colours.division, count > 0 ? static_cast<size_t>(count) : kClassesUnlessTold);
    if (colours.classes.empty())
        return refuse(call, "No record of " + feature + " has a value for classes in " + colours.field + ".");
    if (const std::string problem = KeepColours(feature, colours); !problem.empty())
        return refuse(call, problem);
    shown.refresh(false);
    call.result = static_cast<int>(shown.coloured(feature));
}

// --- In the drawing --------------------------------------------------------------------------------------

void MakeTextsOfLabels(Call& call) {
    const std::string feature = featureIn(call);
    const KeptAnnotation kept = ReadKeptAnnotation();
    const auto labels = kept.labels.find(feature);
    if (labels == kept.labels.end()) return refuse(call, feature + " has no labels to make texts of.");
    TextLook look;
    look.layer = textIn(call);
    if (look.layer.empty()) look.layer = layerOf(feature, "-LABELS");
    if (acdbSNValid(look.layer.c_str(), 0) != RTNORM)
        return refuse(call, "\"" + look.layer + "\" cannot be the name of a layer.");
    look.height = numberIn(call);
    if (look.height <= 0) look.height = heightOfTexts(labels->second);
    const TextRun run = MakeTexts(feature, labels->second, look);
    tellProblems(run.problems);
    if (!run.isWhole) return refuse(call, "Stopped: no texts were made.");
    acutPrintf("\n%s", SentenceOf(feature, run).c_str());
    call.result = static_cast<int>(run.made);
}

namespace {

bool asksToRemove(const std::string& feature, size_t orphans) {
    ui::OwnQuestion question;
    question.title = "Update texts";
    question.text =
        text::counted(static_cast<long>(orphans), "text of ", "texts of ") + feature +
        (orphans == 1 ? " has lost its entity, link or record.\n\nDo you want to erase it?"
                      : " have lost their entities, links or records.\n\nDo you want to erase them?");
    return ui::ask(question) == ui::kYes;
}

}  // namespace

void UpdateTextsOfLabels(Call& call) {
    const std::string wanted = featureIn(call);
    const KeptAnnotation kept = ReadKeptAnnotation();
    size_t done = 0;
    bool hasTexts = false;
    for (const auto& [feature, count] : FeaturesWithTexts()) {
        if (!wanted.empty() && feature != wanted) continue;
        hasTexts = true;
        const auto labels = kept.labels.find(feature);
        if (labels == kept.labels.end()) {
            acutPrintf("\n%s has no labels any more: its texts stay as they are.", feature.c_str());
            continue;
        }
        const TextRun run = UpdateTexts(feature, labels->second, [&name = feature](size_t orphans) {
            return asksToRemove(name, orphans);
        });
        tellProblems(run.problems);
        if (!run.isWhole || !run.problems.empty()) {
            acutPrintf("\nThe texts of %s stay as they are.", feature.c_str());
            continue;
        }
        acutPrintf("\n%s", SentenceOf(feature, run).c_str());
        done += run.made + run.changed + run.removed;
    }
    if (!hasTexts) return refuse(call, "There are no texts that were made of labels.");
    call.result = static_cast<int>(done);
}

void DrawLegendOfColours(Call& call) {
    const std::string feature = featureIn(call);
    ads_point at = {0, 0, 0};
    if (!call.arguments.point(at)) return refuse(call, "A legend needs a point.");
    LegendLook look{{at[0], at[1], 0}, "", numberIn(call)};
    look.layer = textIn(call);
    if (look.layer.empty()) look.layer = layerOf(feature, "-LEGEND");
    if (look.height <= 0) look.height = standardHeight();
    if (acdbSNValid(look.layer.c_str(), 0) != RTNORM)
        return refuse(call, "\"" + look.layer + "\" cannot be the name of a layer.");
    const KeptAnnotation kept = ReadKeptAnnotation();
    const auto colours = kept.colours.find(feature);
    if (colours == kept.colours.end()) return refuse(call, feature + " has no colours.");
    const FeatureValues read =
        ReadFeatureValues(feature, colours->second.field, [] { return acedUsrBrk() == 0; });
    tellProblems(read.problems);
    if (!read.isWhole || !read.problems.empty()) return refuse(call, "No legend was drawn.");
    overlay::Legend legend{feature + ": " + colours->second.field,
                           ColourValues(colours->second, read.values).rows};
    const size_t made = DrawLegend(legend, look);
    acutPrintf("\nLegend of %s: %s on layer %s.", feature.c_str(),
               text::counted(static_cast<long>(made), "entity", "entities").c_str(), look.layer.c_str());
    call.result = static_cast<int>(made);
}

}  // namespace norvane
