#include "module/annotation/kept_annotation.h"

#include <charconv>
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

// Names of entries have fewer characters than those of features; the others are written as %XX there.
std::string entryOf(std::string_view feature) {
    std::string name;
    for (char c : text::upper(text::trim(feature)))
        if (IsNameByte(c) && c != '%')
            name += c;
        else
            name += text::format("%%%02X", static_cast<unsigned char>(c));
    return name;
}

std::string featureOf(std::string_view entry) {
    constexpr size_t kDigits = 2;
    std::string feature;
    for (size_t i = 0; i < entry.size(); ++i) {
        unsigned byte = 0;
        const std::string_view digits = entry.substr(i + 1, kDigits);
        const char* end = digits.data() + digits.size();
        if (entry[i] == '%' && digits.size() == kDigits &&
            std::from_chars(digits.data(), end, byte, 16).ptr == end) {
            feature += static_cast<char>(byte);
            i += kDigits;
        } else {
            feature += entry[i];
        }
    }
    return text::upper(feature);
}

std::string why(const DictionaryEntry& entry) {
    return entry.state == DictionaryEntry::State::kOtherVersion
               ? " were written by another version (" + std::to_string(entry.version) + ")."
               : " in the drawing cannot be understood.";
}

// Takes the entries of a kind that are whole; the others are remarks.
template <class Set>
void readEntries(const DrawingDictionary& kept, const char* kind,
                 std::optional<Set> (*setOf)(std::string_view), std::map<std::string, Set>& sets,
                 std::vector<std::string>& remarks) {
    for (const DictionaryEntry& entry : kept.entries()) {
        std::string feature = featureOf(entry.name);
        std::optional<Set> set;
        if (entry.state == DictionaryEntry::State::kReadable) set = setOf(entry.text);
        if (set)
            sets.emplace(std::move(feature), std::move(*set));
        else
            remarks.push_back(std::string(kind) + " of " + feature + why(entry) +
                              " They are kept and not used.");
    }
}

}  // namespace

KeptAnnotation ReadKeptAnnotation() {
    KeptAnnotation kept;
    readEntries(keptLabels(), "The labels", FeatureLabelsOf, kept.labels, kept.remarks);
    readEntries(keptColours(), "The colours", FeatureColoursOf, kept.colours, kept.remarks);
    return kept;
}

std::string KeepLabels(std::string_view feature, const FeatureLabels& labels) {
    return keptLabels().write(entryOf(feature), TextOf(labels));
}

std::string KeepColours(std::string_view feature, const FeatureColours& colours) {
    return keptColours().write(entryOf(feature), TextOf(colours));
}

bool ForgetLabels(std::string_view feature) {
    return keptLabels().remove(entryOf(feature));
}

bool ForgetColours(std::string_view feature) {
    return keptColours().remove(entryOf(feature));
}

}  // namespace norvane
