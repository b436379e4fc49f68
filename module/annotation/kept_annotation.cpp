#include "module/annotation/kept_annotation.h"

#include <optional>
#include <utility>

#include "module/cad/drawing_dictionary.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

DrawingDictionary keptLabels() {
    return {"LABELS", kAnnotationVersion};
}

DrawingDictionary keptColours() {
    return {"COLOURS", kAnnotationVersion};
}

// Takes the entries of a kind that are whole; the others are remarks.
template <class Set>
void readEntries(const DrawingDictionary& kept, const char* kind,
                 std::optional<Set> (*setOf)(std::string_view), std::map<std::string, Set>& sets,
                 std::vector<std::string>& remarks) {
    for (DictionaryEntry& entry : kept.entries()) {
        if (entry.state != DictionaryEntry::State::kReadable) continue;
        if (std::optional<Set> set = setOf(entry.text))
            sets.emplace(text::upper(entry.name), std::move(*set));
        else
            remarks.push_back(std::string(kind) + " of " + entry.name +
                              " in the drawing cannot be understood. They are kept and not used.");
    }
    for (std::string& remark : kept.remarks()) remarks.push_back(std::move(remark));
}

}  // namespace

KeptAnnotation ReadKeptAnnotation() {
    KeptAnnotation kept;
    readEntries(keptLabels(), "The labels", FeatureLabelsOf, kept.labels, kept.remarks);
    readEntries(keptColours(), "The colours", FeatureColoursOf, kept.colours, kept.remarks);
    return kept;
}

std::string KeepLabels(std::string_view feature, const FeatureLabels& labels) {
    return keptLabels().write(text::upper(text::trim(feature)), TextOf(labels));
}

std::string KeepColours(std::string_view feature, const FeatureColours& colours) {
    return keptColours().write(text::upper(text::trim(feature)), TextOf(colours));
}

bool ForgetLabels(std::string_view feature) {
    return keptLabels().remove(text::upper(text::trim(feature)));
}

bool ForgetColours(std::string_view feature) {
    return keptColours().remove(text::upper(text::trim(feature)));
}

}  // namespace norvane
