#include "module/annotation/colour_dialog.h"

#include <algorithm>
#include <array>
#include <utility>

#include "module/annotation/colour_classes.h"
#include "module/dialogs/progress_dialog.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kFeature = 1001, kField = 1002, kDivision = 1003, kNumber = 1004, kAnew = 1005, kClasses = 1006;
constexpr int kShown = 1007, kLegend = 1008, kClear = 1030;
constexpr int kFeatureCaption = 1101, kFieldCaption = 1102, kDivisionCaption = 1103, kNumberCaption = 1104,
              kClassesCaption = 1105, kNotice = 1106;
constexpr int kColourColumn = 1, kClassColumn = 2, kCountColumn = 3;
constexpr long kNumberUnlessTold = 5;

constexpr std::array<std::pair<Division, const char*>, 4> kDivisions = {
    {{Division::kByValue, "A class for each value"},
     {Division::kEqualSteps, "Equal steps"},
     {Division::kEqualCounts, "Equal counts"},
     {Division::kNaturalBreaks, "Natural breaks"}}};

// Black or white, whichever can be read on a colour.
int inkOn(Colour colour) {
    const Colour light = 2 * (colour >> 16 & 0xFF) + 5 * (colour >> 8 & 0xFF) + (colour & 0xFF);
    return light > 8 * 110 ? 0x000000 : 0xFFFFFF;
}

bool canDivide(const CDaoFieldInfo& field) {
    return field.type != dbBinary && field.type != dbLongBinary && field.type != dbGUID;
}

}  // namespace

// --- Its controls ----------------------------------------------------------------------------------------

ColourDialog::ColourDialog(std::map<std::string, size_t> features, std::map<std::string, FeatureColours> kept,
                           const std::string& chosen)
    : ui::Dialog(kResource, "Colours from Records"),
      features_(std::move(features)),
      kept_(std::move(kept)),
      feature_(chosen) {
    for (const auto& [feature, colours] : kept_) features_.try_emplace(feature, 0);
    if (!features_.contains(feature_)) feature_ = features_.empty() ? "" : features_.begin()->first;
    addControls();
    using namespace ui;
    Layout choices =
        table({row({item(kFeatureCaption), item(kFeature, 1), item(kFieldCaption), item(kField, 1)}),
               row({item(kDivisionCaption), item(kDivision), item(kNumberCaption), item(kNumber)})});
    setLayout(column({std::move(choices), item(kClassesCaption), item(kClasses, 1),
                      row({item(kAnew), spring(), item(kShown), item(kLegend)}), item(kNotice),
                      row({item(kClear), item(kDrawLegend), spring(), item(kOk), item(kCancel)})}));
    setSize({640, 520});
}

void ColourDialog::addControls() {
    constexpr double kColourWidth = 12, kClassWidth = 34, kCountWidth = 12;  // characters
    add<ui::Label>(kFeatureCaption, "&Feature:");
    add<ui::DropDown>(kFeature);
    add<ui::Label>(kFieldCaption, "Fi&eld:");
    add<ui::DropDown>(kField);
    add<ui::Label>(kDivisionCaption, "&Division:");
    auto& division = add<ui::DropDown>(kDivision);
    for (const auto& [value, name] : kDivisions) division.addItem(name);
    add<ui::Label>(kNumberCaption, "&Number of classes:");
    add<ui::Edit>(kNumber).setMaxLength(2);
    add<ui::Label>(kClassesCaption, "C&lasses (a colour may be typed over, as #1F77B4):");
    auto& grid = add<ui::Grid>(kClasses, 3);
    grid.setColumnHeading(kColourColumn, "Colour");
    grid.setColumnHeading(kClassColumn, "Class");
    grid.setColumnHeading(kCountColumn, "Entities");
    grid.setColumnWidthInCharacters(kColourColumn, kColourWidth);
    grid.setColumnWidthInCharacters(kClassColumn, kClassWidth);
    grid.setColumnWidthInCharacters(kCountColumn, kCountWidth);
    grid.setColumnType(kClassColumn, ui::CellType::fixed());
    grid.setColumnType(kCountColumn, ui::CellType::fixed());
    add<ui::Button>(kAnew, "Classes &anew")
        .setExplanation("Divides the values that the records have now, and gives the classes new colours.");
    add<ui::CheckBox>(kShown, "&Show the colours");
    add<ui::CheckBox>(kLegend, "Le&gend in the window");
    add<ui::Button>(kClear, "&Remove colours");
    add<ui::Button>(kDrawLegend, "Legend &into the drawing...")
        .setExplanation("Keeps the colours, and draws the legend of this feature.");
    add<ui::Button>(ui::kOk, "OK", true);
    add<ui::Button>(ui::kCancel, "Cancel");
    // Behind all the others: a label names the control that follows it.
    add<ui::Label>(kNotice);
}

// --- What it shows ---------------------------------------------------------------------------------------

void ColourDialog::onOpen() {
    auto& features = get<ui::DropDown>(kFeature);
    for (const auto& [feature, count] : features_) features.addItem(feature);
    features.select(features.findExact(feature_));
    showFeature();
    setFocus(features_.empty() ? static_cast<int>(ui::kCancel) : kFeature);
}

void ColourDialog::showFeature() {
    const auto [known, isNew] = drafts_.try_emplace(feature_);
    if (isNew)
        if (const auto kept = kept_.find(feature_); kept != kept_.end()) known->second = kept->second;
    const FeatureColours& colours = known->second;

    auto& fields = get<ui::DropDown>(kField);
    fields.clearItems();
    const RecordSample sample = feature_.empty() ? RecordSample() : ReadRecordSample(feature_, 1);
    for (const RecordSample::Table& table : sample.tables)
        for (const CDaoFieldInfo& field : table.fields)
            if (canDivide(field) && fields.findExact(field.name) < 0) fields.addItem(field.name);
    // A field that is there no more is shown all the same: the colours stand on it.
    if (!colours.field.empty() && fields.findExact(colours.field) < 0) fields.addItem(colours.field);
    fields.select(fields.findExact(colours.field));
    for (size_t i = 0; i < kDivisions.size(); ++i)
        if (kDivisions[i].first == colours.division) get<ui::DropDown>(kDivision).select(static_cast<int>(i));
    find(kNumber)->setText(std::to_string(colours.division == Division::kByValue || colours.classes.empty()
                                              ? kNumberUnlessTold
                                              : static_cast<long>(colours.classes.size())));
    get<ui::CheckBox>(kShown).check(colours.isShown);
    get<ui::CheckBox>(kLegend).check(colours.hasLegend);
    readValues();
    showClasses();
}

void ColourDialog::readValues() {
    values_ = {};
    problem_.clear();
    if (draft().field.empty()) return;
    ProgressDialog progress("Reading colours", 0, acedUsrBrk);
    long steps = 0;
    values_ = ReadFeatureValues(feature_, draft().field,
                                [&] { return progress.step(++steps, "Records of " + feature_); });
    if (!values_.isWhole) problem_ = "Stopped while records were read: counts are not whole.";
}

void ColourDialog::showClasses() {
    refused_.clear();
    const FeatureColours& colours = draft();
    const bool isByValue = colours.division == Division::kByValue, isChosen = !colours.field.empty();
    auto& grid = get<ui::Grid>(kClasses);
    const ColouredValues coloured = ColourValues(colours, values_.values);
    const int rows = isChosen ? static_cast<int>(coloured.rows.size()) : 0;
    grid.setRedraw(false);
    grid.setRows(0);
    grid.setRows(rows);
    for (int row = 1; row <= rows; ++row) {
        const overlay::LegendRow& one = coloured.rows[static_cast<size_t>(row - 1)];
        grid.setText(kColourColumn, row, ColourText(one.colour));
        grid.setColours(kColourColumn, row, static_cast<int>(one.colour), inkOn(one.colour));
        grid.setText(kClassColumn, row, one.text);
        grid.setText(kCountColumn, row, std::to_string(one.count));
    }
    grid.setActive(kColourColumn, 1);
    grid.setRedraw(true);
    for (int id : {kNumberCaption, kNumber}) find(id)->enable(isChosen && !isByValue);
    for (int id : {kAnew, kClear, static_cast<int>(kDrawLegend)}) find(id)->enable(isChosen);
    find(ui::kOk)->enable(!feature_.empty());
    find(kNotice)->setText(noticeNow());
}

std::string ColourDialog::noticeNow() const {
    if (feature_.empty()) return "No entity of the drawing is linked to a record.";
    if (!problem_.empty()) return problem_;
    if (!refused_.empty()) return refused_;
    const FeatureColours& colours = drafts_.at(feature_);
    if (colours.field.empty())
        return kept_.contains(feature_) ? "Without a field, OK takes the colours of " + feature_ + " away."
                                        : "Choose a field.";
    if (!values_.problems.empty()) return values_.problems.front();
    if (colours.classes.empty())
        return colours.division == Division::kByValue
                   ? "No record has a value in " + colours.field + "."
                   : "No record has a number in " + colours.field + ": choose a class for each value.";
    const size_t without = features_.at(feature_) - std::min(features_.at(feature_), values_.values.size());
    return text::counted(static_cast<long>(values_.values.size()), "entity has a record",
                         "entities have a record") +
           (without == 1  ? ", 1 has none and keeps its colour."
            : without > 1 ? ", " + std::to_string(without) + " have none and keep their colours."
                          : ".");
}

// --- What is done in it ----------------------------------------------------------------------------------

void ColourDialog::makeClasses() {
    FeatureColours& colours = draft();
    if (colours.field.empty()) return;
    const long number = text::toLong(find(kNumber)->text());
    const bool isNumber = number >= 1 && number <= static_cast<long>(kMostClasses);
    problem_.clear();
    if (colours.division != Division::kByValue && !isNumber)
        problem_ = "There are 1 to " + std::to_string(kMostClasses) + " classes.";
    else
        colours.classes = ClassesOf(values_.values, colours.division, static_cast<size_t>(number));
}

void ColourDialog::onSelection(ui::Control& control) {
    switch (control.id()) {
        case kFeature:
            feature_ = get<ui::DropDown>(kFeature).selectedText();
            return showFeature();
        case kField:
            draft().field = get<ui::DropDown>(kField).selectedText();
            readValues();
            break;
        case kDivision:
            draft().division = kDivisions[static_cast<size_t>(get<ui::DropDown>(kDivision).selected())].first;
            break;
        default:
            return;
    }
    makeClasses();
    showClasses();
}

void ColourDialog::onTextChange(ui::Control& control) {
    if (control.id() != kNumber) return;
    makeClasses();
    showClasses();
}

void ColourDialog::onCommand(int id) {
    switch (id) {
        case kAnew:
            readValues();
            makeClasses();
            return showClasses();
        case kShown:
            draft().isShown = get<ui::CheckBox>(kShown).checked();
            return;
        case kLegend:
            draft().hasLegend = get<ui::CheckBox>(kLegend).checked();
            return;
        case kClear:
            draft() = {};
            showFeature();
            return setFocus(kField);
        case kDrawLegend:
            if (isReady()) end(kDrawLegend);
            return;
        default:
            Dialog::onCommand(id);
    }
}

void ColourDialog::takeColour(int row) {
    auto& grid = get<ui::Grid>(kClasses);
    FeatureColours& colours = draft();
    const size_t place = static_cast<size_t>(row - 1);
    Colour& colour = place < colours.classes.size() ? colours.classes[place].colour : colours.other;
    const std::string typed = grid.text(kColourColumn, row);
    const std::optional<Colour> read = ColourIn(typed);
    if (read) colour = *read;
    refused_ =
        read ? "" : "\"" + typed + "\" is no colour: #RRGGBB has two digits each of red, green and blue.";
    grid.setText(kColourColumn, row, ColourText(colour));
    grid.setColours(kColourColumn, row, static_cast<int>(colour), inkOn(colour));
    find(kNotice)->setText(noticeNow());
}

void ColourDialog::onCellChange(ui::Grid&, ui::CellPosition at) {
    if (at.column == kColourColumn) takeColour(at.row);
}

void ColourDialog::onUndo(ui::Grid& grid) {
    for (int row = 1; row <= grid.rows(); ++row) takeColour(row);
}

// Enter ends the typing of a colour; only then it is OK.
bool ColourDialog::onKey(const ui::Key& key) {
    auto& grid = get<ui::Grid>(kClasses);
    if (focus() != kClasses || !key.is("Enter") || !grid.editing()) return false;
    grid.setEditing(false);
    grid.setActive(kColourColumn, std::min(grid.active().row + 1, grid.rows()));
    return true;
}

bool ColourDialog::isReady() {
    std::string problem = problem_.empty() ? std::exchange(refused_, "") : problem_;
    for (const auto& [feature, colours] : changes())
        if (problem.empty() && colours && colours->classes.empty())
            problem = "The colours of " + feature + " have no classes.";
    find(kNotice)->setText(problem.empty() ? noticeNow() : problem);
    return problem.empty();
}

void ColourDialog::onOk() {
    if (isReady()) end(ui::kOk);
}

std::map<std::string, std::optional<FeatureColours>> ColourDialog::changes() const {
    std::map<std::string, std::optional<FeatureColours>> changes;
    for (const auto& [feature, colours] : drafts_) {
        const auto kept = kept_.find(feature);
        if (colours.field.empty()) {
            if (kept != kept_.end()) changes.emplace(feature, std::nullopt);
        } else if (kept == kept_.end() || kept->second != colours) {
            changes.emplace(feature, colours);
        }
    }
    return changes;
}

}  // namespace norvane
