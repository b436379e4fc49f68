#include "module/annotation/label_dialog.h"

#include <algorithm>
#include <utility>

#include "module/annotation/feature_texts.h"
#include "module/annotation/label_lines.h"
#include "module/conditions/offers.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kFeature = 1001, kLine = 1002, kFields = 1006, kInsert = 1007,
              kHeight = 1008;  // kLine: the first
constexpr int kInUnits = 1009, kInPixels = 1010, kShown = 1011, kPreview = 1012, kClear = 1030;
constexpr int kFeatureCaption = 1101, kCount = 1102, kLineCaption = 1103, kFieldsCaption = 1107,
              kHeightCaption = 1108, kPreviewCaption = 1109, kNotice = 1110;
constexpr int kLines = static_cast<int>(kMostLabelLines);
constexpr int kUnitGroup = 1;
constexpr size_t kShownRecords = 6;
constexpr double kGreatestHeight = 1e6;

// The number of a text; a comma is its point, too.
std::optional<double> heightIn(const std::string& typed) {
    const std::optional<double> height = text::wholeReal(text::trim(text::replaceAll(typed, ",", ".")));
    return height && *height > 0 && *height <= kGreatestHeight ? height : std::nullopt;
}

}  // namespace

// --- Its controls ----------------------------------------------------------------------------------------

LabelDialog::LabelDialog(std::map<std::string, size_t> features, std::map<std::string, FeatureLabels> kept,
                         const std::string& chosen)
    : ui::Dialog(kResource, "Labels from Records"),
      features_(std::move(features)),
      kept_(std::move(kept)),
      feature_(chosen),
      line_(kLine) {
    for (const auto& [feature, labels] : kept_) features_.try_emplace(feature, 0);
    if (!features_.contains(feature_)) feature_ = features_.empty() ? "" : features_.begin()->first;
    addControls();
    using namespace ui;
    std::vector<Layout> lines;
    for (int i = 0; i < kLines; ++i) lines.push_back(row({item(kLineCaption + i), item(kLine + i, 1)}));
    Layout height = row({item(kHeightCaption), item(kHeight, 1), item(kInUnits), item(kInPixels)});
    Layout expressions = row({column({table(std::move(lines)), std::move(height), item(kShown), spring()}, 2),
                              column({item(kFieldsCaption), item(kFields, 1), item(kInsert)}, 1)},
                             1);
    setLayout(column({row({item(kFeatureCaption), item(kFeature, 1), item(kCount, 1)}),
                      std::move(expressions), item(kPreviewCaption), item(kPreview, 1), item(kNotice),
                      row({item(kClear), item(kMakeTexts), spring(), item(kOk), item(kCancel)})}));
    setSize({680, 480});
}

void LabelDialog::addControls() {
    add<ui::Label>(kFeatureCaption, "&Feature:");
    add<ui::DropDown>(kFeature);
    for (int i = 0; i < kLines; ++i) {
        add<ui::Label>(kLineCaption + i, "Line &" + std::to_string(i + 1) + ":");
        add<ui::Edit>(kLine + i);
    }
    add<ui::Label>(kFieldsCaption, "Fi&elds:");
    add<ui::List>(kFields, false, 5);
    add<ui::Button>(kInsert, "&Insert into the line")
        .setExplanation("Adds the field to the line that was typed into last. A double click does the same.");
    add<ui::Label>(kHeightCaption, "&Height:");
    add<ui::Edit>(kHeight);
    add<ui::RadioButton>(kInUnits, "drawing &units", kUnitGroup);
    add<ui::RadioButton>(kInPixels, "&pixels on the screen", kUnitGroup);
    add<ui::CheckBox>(kShown, "&Show the labels");
    add<ui::Label>(kPreviewCaption, "La&bels of the first records, with / between their lines:");
    add<ui::List>(kPreview, false, static_cast<int>(kShownRecords));
    add<ui::Button>(kClear, "&Remove labels");
    add<ui::Button>(kMakeTexts, "Make &texts...")
        .setExplanation("Keeps the labels, and makes texts of those of this feature.");
    add<ui::Button>(ui::kOk, "OK", true);
    add<ui::Button>(ui::kCancel, "Cancel");
    // Behind all the others: a label names the control that follows it.
    add<ui::Label>(kCount);
    add<ui::Label>(kNotice);
}

// --- What it shows ---------------------------------------------------------------------------------------

void LabelDialog::onOpen() {
    auto& features = get<ui::DropDown>(kFeature);
    for (const auto& [feature, count] : features_) features.addItem(feature);
    features.select(features.findExact(feature_));
    showFeature();
    setFocus(features_.empty() ? static_cast<int>(ui::kCancel) : kLine);
}

void LabelDialog::showFeature() {
    sample_ = feature_.empty() ? RecordSample() : ReadRecordSample(feature_, kShownRecords);
    const auto [draft, isNew] = drafts_.try_emplace(feature_);
    if (isNew)
        if (const auto kept = kept_.find(feature_); kept != kept_.end()) draft->second = kept->second;
    const FeatureLabels labels = draft->second;

    const auto count = features_.find(feature_);
    find(kCount)->setText(count == features_.end()
                              ? ""
                              : text::counted(static_cast<long>(count->second), "entity", "entities"));
    auto& fields = get<ui::List>(kFields);
    fields.clearItems();
    for (const RecordSample::Table& table : sample_.tables)
        for (const CDaoFieldInfo& field : table.fields)
            if (fields.findExact(field.name) < 0) fields.addItem(field.name);
    if (fields.count() > 0) fields.select(0);
    for (int i = 0; i < kLines; ++i)
        find(kLine + i)->setText(
            static_cast<size_t>(i) < labels.lines.size() ? labels.lines[static_cast<size_t>(i)] : "");
    find(kHeight)->setText(text::fromReal(labels.height));
    get<ui::RadioButton>(labels.isOnScreen ? kInPixels : kInUnits).check();
    get<ui::CheckBox>(kShown).check(labels.isShown);
    for (int id : {kInsert, kClear, static_cast<int>(kMakeTexts), static_cast<int>(ui::kOk)})
        find(id)->enable(!feature_.empty());
    showPreview();
}

FeatureLabels LabelDialog::readControls() const {
    FeatureLabels labels;
    for (int i = 0; i < kLines; ++i)
        if (const std::string line(text::trim(find(kLine + i)->text())); !line.empty())
            labels.lines.push_back(line);
    labels.height = heightIn(find(kHeight)->text()).value_or(0);
    labels.isOnScreen = get<ui::RadioButton>(kInPixels).checked();
    labels.isShown = get<ui::CheckBox>(kShown).checked();
    return labels;
}

std::string LabelDialog::problemOf(const std::string& feature, const FeatureLabels& labels,
                                   int& control) const {
    control = kHeight;
    if (labels.height <= 0) return "The height is a number above 0.";
    control = kLine;
    if (feature != feature_) return LabelProblem(feature, labels.lines);
    std::string problem;
    // Lines that are empty are not among those of the labels.
    for (int i = 0; i < kLines; ++i) {
        const std::string line(text::trim(find(kLine + i)->text()));
        control = kLine + i;
        if (line.empty()) continue;
        for (const RecordSample::Table& table : sample_.tables)
            if (!LabelLines::read({&line, 1}, table.fields, problem))
                return "Line " + std::to_string(i + 1) + ": " + problem;
    }
    return "";
}

void LabelDialog::showPreview() {
    if (feature_.empty()) {
        find(kNotice)->setText("No entity of the drawing is linked to a record.");
        return;
    }
    const FeatureLabels labels = readControls();
    drafts_[feature_] = labels;
    auto& preview = get<ui::List>(kPreview);
    preview.clearItems();
    int control = 0;
    std::string notice = labels.lines.empty() ? "" : problemOf(feature_, labels, control);
    if (notice.empty() && !labels.lines.empty())
        for (const RecordSample::Table& table : sample_.tables) {
            std::string problem;
            const std::optional<LabelLines> lines = LabelLines::read(labels.lines, table.fields, problem);
            for (const std::vector<dao::Variant>& values : table.records)
                if (lines) preview.addItem(text::replaceAll(lines->textOf(values), "\n", " / "));
        }
    if (notice.empty() && labels.lines.empty())
        notice = kept_.contains(feature_) ? "Without lines, OK takes the labels of " + feature_ + " away."
                                          : "Type an expression, or insert a field.";
    if (notice.empty() && !sample_.problems.empty()) notice = sample_.problems.front();
    find(kNotice)->setText(notice);
    find(kMakeTexts)->enable(!labels.lines.empty());
}

// --- What is done in it ----------------------------------------------------------------------------------

void LabelDialog::onCommand(int id) {
    switch (id) {
        case kInsert:
            return insertField();
        case kClear:
            return clearLines();
        case kInUnits:
        case kInPixels:
        case kShown:
            return showPreview();
        case kMakeTexts:
            if (isReady()) end(kMakeTexts);
            return;
        default:
            Dialog::onCommand(id);
    }
}

void LabelDialog::onSelection(ui::Control& control) {
    if (control.id() != kFeature) return;
    feature_ = get<ui::DropDown>(kFeature).selectedText();
    showFeature();
}

void LabelDialog::onDoubleClick(ui::Control& control) {
    if (control.id() == kFields) insertField();
}

void LabelDialog::onTextChange(ui::Control&) {
    showPreview();
}

void LabelDialog::onFocus(ui::Control& control) {
    if (control.id() >= kLine && control.id() < kLine + kLines) line_ = control.id();
}

void LabelDialog::insertField() {
    const std::string field = get<ui::List>(kFields).selectedText();
    if (field.empty()) return;
    const std::string before(text::trim(find(line_)->text()));
    find(line_)->setText((before.empty() ? "" : before + " & \" \" & ") + FieldInCondition(field));
    showPreview();
    setFocus(line_);
}

void LabelDialog::clearLines() {
    for (int i = 0; i < kLines; ++i) find(kLine + i)->setText("");
    showPreview();
    setFocus(kLine);
}

bool LabelDialog::isReady() {
    for (const auto& [feature, labels] : changes()) {
        int control = 0;
        const std::string problem = labels ? problemOf(feature, *labels, control) : "";
        if (problem.empty()) continue;
        if (feature != feature_) {
            feature_ = feature;
            auto& features = get<ui::DropDown>(kFeature);
            features.select(features.findExact(feature_));
            showFeature();
        }
        find(kNotice)->setText(problem);
        setFocus(control);
        return false;
    }
    return true;
}

void LabelDialog::onOk() {
    if (isReady()) end(ui::kOk);
}

std::map<std::string, std::optional<FeatureLabels>> LabelDialog::changes() const {
    std::map<std::string, std::optional<FeatureLabels>> changes;
    for (const auto& [feature, labels] : drafts_) {
        const auto kept = kept_.find(feature);
        if (labels.lines.empty()) {
            if (kept != kept_.end()) changes.emplace(feature, std::nullopt);
        } else if (kept == kept_.end() || kept->second != labels) {
            changes.emplace(feature, labels);
        }
    }
    return changes;
}

}  // namespace norvane
