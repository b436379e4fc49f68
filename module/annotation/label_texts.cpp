#include "module/annotation/label_texts.h"

#include <cmath>
#include <map>
#include <numbers>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "module/annotation/feature_texts.h"
#include "module/annotation/label_marks.h"
#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "module/dialogs/progress_dialog.h"
#include "platform/ads/editor.h"
#include "platform/ads/overlay.h"
#include "platform/ads/result_chain.h"
#include "platform/plane/point.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr double kLineSpacing = 1.6;  // of the height, from one line to the next
constexpr double kGap = 0.5;          // of the height, from what is labelled
constexpr size_t kLongestText = 255;  // bytes, that all programs take

// The text of a label as a TEXT can have it: control characters are blanks.
std::string drawable(std::string_view line, TextRun& run) {
    std::string text(line);
    for (char& c : text)
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    if (text.size() <= kLongestText) return text;
    ++run.cut;
    constexpr std::string_view kEllipsis = "...";
    return std::string(text::cutToBytes(text, kLongestText - kEllipsis.size())).append(kEllipsis);
}

std::vector<std::string> linesOf(const std::string& label, TextRun& run) {
    std::vector<std::string> lines;
    if (label.empty()) return lines;
    for (const std::string& line : text::split(label, '\n')) lines.push_back(drawable(line, run));
    return lines;
}

// How a text stands: what of it is at its point.
enum class Horizontal : short { kLeft = 0, kCentre = 1 };
enum class Vertical : short { kBase = 0, kBottom = 1, kMiddle = 2 };

struct TextPlace {
    plane::Point at;
    double angle = 0;  // radians
    Horizontal horizontal = Horizontal::kLeft;
    Vertical vertical = Vertical::kMiddle;
};

// Where each line of a label stands.
std::vector<TextPlace> placesOf(const overlay::LabelSpot& spot, size_t lines, double height) {
    const double across = spot.angle + std::numbers::pi / 2, step = height * kLineSpacing;
    const double down = static_cast<double>(lines - 1) * step;  // from the first line to the last
    TextPlace place{{spot.x, spot.y, 0}, spot.angle, Horizontal::kCentre, Vertical::kMiddle};
    double first = down / 2;  // of the first line, upwards from the spot
    if (spot.placement == overlay::Placement::Along) {
        place.vertical = Vertical::kBottom;
        first = down + height * kGap;
    } else if (spot.placement == overlay::Placement::Beside) {
        place.horizontal = Horizontal::kLeft;
        place.at = plane::polar(place.at, spot.angle, height * kGap);
    }
    std::vector<TextPlace> places;
    for (size_t i = 0; i < lines; ++i) {
        places.push_back(place);
        places.back().at = plane::polar(place.at, across, first - static_cast<double>(i) * step);
    }
    return places;
}

// The groups by which a text looks and stands.
struct TextGroups {
    std::string layer;
    double height = 0;
    TextPlace place;
    std::string sheet;  // of an entity that stands on one
    bool isOnPaper = false;
};

bool makeText(const TextGroups& look, const std::string& text, const LabelMark& mark) {
    ResultChain groups;
    auto addPoint = [&](int code) {
        resbuf& item = groups.add(code);
        item.resval.rpoint[0] = look.place.at.x, item.resval.rpoint[1] = look.place.at.y;
    };
    groups.addText(0, "TEXT");
    if (look.isOnPaper) groups.addInteger(67, 1);
    if (!look.sheet.empty()) groups.addText(410, look.sheet);
    groups.addText(8, look.layer);
    addPoint(10);
    groups.add(40).resval.rreal = look.height;
    groups.addText(1, text);
    groups.add(50).resval.rreal = look.place.angle;
    groups.addInteger(72, static_cast<long>(look.place.horizontal));
    addPoint(11);
    groups.addInteger(73, static_cast<long>(look.place.vertical));
    AddLabelMark(groups, mark);
    return acdbEntMake(groups.get()) == RTNORM;
}

double realOf(const resbuf* groups, int code) {
    const resbuf* item = FindResultBuffer(groups, code);
    return item ? item->resval.rreal : 0;
}

short integerOf(const resbuf* groups, int code) {
    const resbuf* item = FindResultBuffer(groups, code);
    return item ? item->resval.rint : static_cast<short>(0);
}

// How a text that is there looks, and where another one of its kind `lines` below it stands.
TextGroups below(const ads_name text, int lines) {
    const ResultBuffers groups(acdbEntGet(text));
    TextGroups look;
    look.layer = GroupText(groups.get(), 8);
    look.height = realOf(groups.get(), 40);
    look.sheet = GroupText(groups.get(), 410);
    look.isOnPaper = integerOf(groups.get(), 67) == 1;
    look.place.angle = realOf(groups.get(), 50);
    look.place.horizontal = static_cast<Horizontal>(integerOf(groups.get(), 72));
    look.place.vertical = static_cast<Vertical>(integerOf(groups.get(), 73));
    const bool isAligned =
        look.place.horizontal != Horizontal::kLeft || look.place.vertical != Vertical::kBase;
    const resbuf* at = FindResultBuffer(groups.get(), isAligned ? 11 : 10);
    if (at) look.place.at = {at->resval.rpoint[0], at->resval.rpoint[1], 0};
    look.place.at = plane::polar(look.place.at, look.place.angle - std::numbers::pi / 2,
                                 look.height * kLineSpacing * lines);
    return look;
}

// Texts that are there, by entity and line. A line may have several where a person has copied one.
using Lines = std::map<int, std::vector<EntityName>>;
using TextsByEntity = std::unordered_map<std::string, Lines>;  // by handle

TextsByEntity textsOf(const std::string& feature) {
    TextsByEntity texts;
    for (const MarkedText& text : ReadMarkedTexts())
        if (text.mark.feature == feature) texts[text.mark.handle][text.mark.line].push_back(text.text);
    return texts;
}

class Texts {
  public:
    Texts(const std::string& feature, const FeatureLabels& labels) : feature_(feature) {
        ProgressDialog progress("Reading records", 0, acedUsrBrk);
        long steps = 0;
        FeatureTexts read = ReadFeatureTexts(
            feature, labels.lines, [&] { return progress.step(++steps, "Records of " + feature_); });
        texts_ = std::move(read.texts);
        run_.problems = std::move(read.problems);
        run_.isWhole = read.isWhole;
        const std::map<std::string, size_t> linked = LinkedFeatures();
        const auto count = linked.find(feature);
        run_.withoutRecord = (count == linked.end() ? 0 : count->second) - texts_.size();
        there_ = textsOf(feature);
    }

    TextRun make(const TextLook& look) {
        if (!run_.isWhole) return run_;
        for (const EntityText& one : texts_)
            if (there_.contains(one.handle))
                ++run_.alreadyThere;
            else
                makeLabel(one, look);
        return run_;
    }

    TextRun update(const std::function<bool(size_t)>& takesOrphans) {
        if (!run_.isWhole || !run_.problems.empty()) return run_;
        const std::vector<EntityName> orphans = findOrphans();
        const TextLook look = lookOfOthers();
        for (const EntityText& one : texts_) {
            const auto there = there_.find(one.handle);
            if (there == there_.end())
                makeLabel(one, look);
            else
                changeLabel(one, there->second);
        }
        if (!orphans.empty() && takesOrphans(orphans.size()))
            remove(orphans);
        else
            run_.orphans = orphans.size();
        return run_;
    }

  private:
    std::vector<EntityName> findOrphans() const {
        std::unordered_set<std::string> known;
        for (const EntityText& one : texts_) known.insert(one.handle);
        std::vector<EntityName> orphans;
        for (const auto& [handle, lines] : there_)
            if (!known.contains(handle))
                for (const auto& [line, texts] : lines)
                    orphans.insert(orphans.end(), texts.begin(), texts.end());
        return orphans;
    }

    // Of new texts beside those that there are.
    TextLook lookOfOthers() const {
        for (const auto& [handle, lines] : there_) {
            const TextGroups first = below(lines.begin()->second.front().name, 0);
            return {first.layer, first.height};
        }
        return {};
    }

    void makeLabel(const EntityText& one, const TextLook& look) {
        const std::vector<std::string> lines = linesOf(one.text, run_);
        if (lines.empty()) {
            ++run_.silent;
            return;
        }
        overlay::LabelSpot spot;
        if (!overlay::spotOf(overlay::nameOf(one.entity.name), spot)) {
            ++run_.withoutPlace;
            return;
        }
        const ResultBuffers entity(acdbEntGet(one.entity.name));
        TextGroups groups;
        groups.layer = look.layer, groups.height = look.height;
        groups.sheet = GroupText(entity.get(), 410);
        groups.isOnPaper = integerOf(entity.get(), 67) == 1;
        const std::vector<TextPlace> places = placesOf(spot, lines.size(), look.height);
        for (size_t i = 0; i < lines.size(); ++i) {
            groups.place = places[i];
            ++(makeText(groups, lines[i], {feature_, one.handle, static_cast<int>(i)}) ? run_.made
                                                                                       : run_.refused);
        }
    }

    void changeLabel(const EntityText& one, const Lines& there) {
        const std::vector<std::string> lines = linesOf(one.text, run_);
        if (lines.empty()) ++run_.silent;
        const auto [firstLine, firstTexts] = *there.begin();
        for (size_t i = 0; i < lines.size(); ++i) {
            const int line = static_cast<int>(i);
            const auto texts = there.find(line);
            if (texts != there.end())
                for (const EntityName& text : texts->second) change(text, lines[i]);
            else
                ++(makeText(below(firstTexts.front().name, line - firstLine), lines[i],
                            {feature_, one.handle, line})
                       ? run_.made
                       : run_.refused);
        }
        for (const auto& [line, texts] : there)
            if (static_cast<size_t>(line) >= lines.size()) remove(texts);
    }

    void change(const EntityName& text, const std::string& wanted) {
        const ResultBuffers groups(acdbEntGet(text.name));
        resbuf* string = FindResultBuffer(groups.get(), 1);
        if (!string || string->resval.rstring == wanted) {
            ++run_.unchanged;
            return;
        }
        acad_free(string->resval.rstring);
        string->resval.rstring = acad_strdup(wanted.c_str());
        ++(acdbEntMod(groups.get()) == RTNORM ? run_.changed : run_.refused);
    }

    void remove(const std::vector<EntityName>& texts) {
        for (const EntityName& text : texts)
            ++(acdbEntDel(text.name) == RTNORM ? run_.removed : run_.refused);
    }

    std::string feature_;
    std::vector<EntityText> texts_;
    TextsByEntity there_;
    TextRun run_;
};

}  // namespace

TextRun MakeTexts(const std::string& feature, const FeatureLabels& labels, const TextLook& look) {
    return Texts(feature, labels).make(look);
}

TextRun UpdateTexts(const std::string& feature, const FeatureLabels& labels,
                    const std::function<bool(size_t orphans)>& takesOrphans) {
    return Texts(feature, labels).update(takesOrphans);
}

std::map<std::string, size_t> FeaturesWithTexts() {
    std::map<std::string, size_t> features;
    for (const MarkedText& text : ReadMarkedTexts()) ++features[text.mark.feature];
    return features;
}

std::string SentenceOf(const std::string& feature, const TextRun& run) {
    std::string sentence = "Texts of " + feature + ": " + std::to_string(run.made) + " made, " +
                           std::to_string(run.changed) + " changed";
    if (run.removed > 0) sentence += ", " + std::to_string(run.removed) + " removed";
    if (run.unchanged > 0) sentence += ", " + std::to_string(run.unchanged) + " as they were";
    auto add = [&](size_t count, const char* one, const char* many) {
        if (count > 0) sentence += "; " + text::counted(static_cast<long>(count), one, many);
    };
    add(run.alreadyThere, "entity has its texts already", "entities have their texts already");
    add(run.withoutRecord, "entity without a record", "entities without a record");
    add(run.silent, "record says nothing", "records say nothing");
    add(run.withoutPlace, "entity without a place for text", "entities without a place for text");
    add(run.cut, "line was cut to 255 bytes", "lines were cut to 255 bytes");
    add(run.refused, "text that the drawing refused", "texts that the drawing refused");
    add(run.orphans, "text has lost its entity or record and stays",
        "texts have lost their entities or records and stay");
    return sentence + ".";
}

}  // namespace norvane
