// Labels as TEXT entities of the drawing, made from records and brought back in step with them.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "module/annotation/annotation_sets.h"

namespace norvane {

// Where new texts go.
struct TextLook {
    std::string layer;
    double height = 0;  // drawing units
};

// What a run did and left out. One undo takes it back.
struct TextRun {
    size_t made = 0, changed = 0, unchanged = 0, removed = 0;  // texts
    size_t alreadyThere = 0;   // entities that have texts, which making leaves alone
    size_t withoutRecord = 0;  // entities that are linked
    size_t silent = 0;         // entities whose records say nothing
    size_t withoutPlace = 0;   // entities that no text can stand at
    size_t cut = 0;            // lines that are longer than a TEXT may be
    size_t refused = 0;        // texts that the drawing does not take or change
    size_t orphans = 0;        // texts whose entity, link or record is gone, and that stay
    std::vector<std::string> problems;
    bool isWhole = true;  // false: stopped while records were read; nothing was changed
};

// Makes texts, one for each line of a label, at the entities of a feature that have none.
TextRun MakeTexts(const std::string& feature, const FeatureLabels& labels, const TextLook& look);
// Changes texts of a feature that say something else than the records, in their place; lines that come to a
// label are set below it, those that go are erased. Entities without texts get theirs, looking like those
// that are there. Texts whose entity, link or record is gone are erased where `takesOrphans`, which is asked
// once with their count, says so. Nothing is changed when there is a problem: then nobody knows which texts
// are right.
TextRun UpdateTexts(const std::string& feature, const FeatureLabels& labels,
                    const std::function<bool(size_t orphans)>& takesOrphans);
// The features whose texts the drawing has, with their count.
std::map<std::string, size_t> FeaturesWithTexts();

// The line that tells of a run.
std::string SentenceOf(const std::string& feature, const TextRun& run);

}  // namespace norvane
