#include "module/transfer/export_dialog.h"

#include <algorithm>

#include "module/cad/drawing_folder.h"
#include "module/dialogs/file_boxes.h"
#include "module/dialogs/ok_cancel.h"
#include "module/transfer/export_memory.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 147;
constexpr const char* kProduct = "Norvane Software";
constexpr const char* kFirstCutoff = "0.1";
constexpr const char* kCategoryNames[kExportCategories] = {
    " Points:", " Open Polylines:", " Closed Polylines:"};
constexpr const char* kCountTexts[kExportCategories] = {
    " Points: ", " Open Polylines:", " Closed Polylines:"};
constexpr const char* kCutoffExplanation =
    "Vertices are left out within this square of a distance, about 0.316 drawing units. It is always this "
    "one; "
    "\"Use another deviation\" sets the distance itself.";
constexpr int kRows = 10;

}  // namespace

ExportDialog::ExportDialog(const std::vector<ExportEntity>& entities)
    : ui::Dialog(kResource, std::string("Export ") + kProduct + " Entities to SHP File"),
      entities_(entities) {
    add<ui::CheckBox>(kExportAll, "Export &All");
    for (int i = 0; i < kExportCategories; ++i) {
        add<ui::Label>(kHeadings[i], std::string(kProduct) + kCategoryNames[i]);
        add<ui::List>(kLists[i], true, kRows);
        add<ui::Label>(kCounts[i]);
    }
    add<ui::CheckBox>(kIncludeZ, "Include &Z Coordinates");
    add<ui::CheckBox>(kExtraFields, "Add E&xtra Fields into DBF file, for known GIS tables:");
    add<ui::CheckBox>(kNoHeights, "&Points without a height have none instead of 0");
    add<ui::CheckBox>(kHoles, "Closed polylines inside others become their &holes");
    add<ui::Label>(kOffsetCutoffLabel, "Remove arcs from polyline(offset cutoff):");
    auto& cutoff = add<ui::Edit>(kOffsetCutoff, true);
    cutoff.setText(kFirstCutoff);
    cutoff.setExplanation(kCutoffExplanation);
    add<ui::CheckBox>(kUseDeviation, "Use another &deviation");
    add<ui::Edit>(kDeviation).enable(false);
    add<ui::Label>(kReferenceLabel, "P&rojection file (.prj):");
    add<ui::Edit>(kReference);
    add<ui::Button>(kBrowse, "&Browse...");
    add<ui::Button>(kAsLastTime, "As &last time");
    AddOkCancel(*this);

    using namespace ui;
    setLayout(column({item(kExportAll), row({categoryColumn(0), categoryColumn(1), categoryColumn(2)}, 1),
                      item(kIncludeZ), item(kExtraFields), item(kNoHeights), item(kHoles),
                      table({row({item(kOffsetCutoffLabel), item(kOffsetCutoff, 1)}),
                             row({item(kUseDeviation), item(kDeviation)})}),
                      row({item(kReferenceLabel), item(kReference, 1), item(kBrowse)}),
                      row({item(kAsLastTime), spring(), item(ui::kOk), item(ui::kCancel)})}));
}

ui::Layout ExportDialog::categoryColumn(int category) const {
    return ui::column(
        {ui::item(kHeadings[category]), ui::item(kLists[category], 1), ui::item(kCounts[category])}, 1);
}

void ExportDialog::onOpen() {
    for (int i = 0; i < kExportCategories; ++i) {
        const auto category = static_cast<ExportCategory>(i);
        for (std::string& feature : FeaturesOf(entities_, category))
            get<ui::List>(kLists[i]).addItem(std::move(feature));
        const auto count =
            std::count_if(entities_.begin(), entities_.end(),
                          [category](const ExportEntity& entity) { return entity.category == category; });
        find(kCounts[i])->setText(std::string(kProduct) + kCountTexts[i] + std::to_string(count));
    }
    find(kReference)->setText(ReferenceFileOfDrawing());
    find(kAsLastTime)->enable(LastExport().has_value());
    setFocus(kExportAll);
}

void ExportDialog::selectAll(bool on) {
    for (int id : kLists) {
        auto& list = get<ui::List>(id);
        for (int i = 0; i < list.count(); ++i) list.selectItem(i, on);
    }
}

void ExportDialog::onCommand(int id) {
    switch (id) {
        case kExportAll:
            return selectAll(get<ui::CheckBox>(kExportAll).checked());
        case kUseDeviation:
            return find(kDeviation)->enable(get<ui::CheckBox>(kUseDeviation).checked());
        case kBrowse:
            if (std::optional<std::string> path = AskProjectionFile(DrawingFolder()))
                find(kReference)->setText(*path);
            return;
        case kAsLastTime:
            return takeLastTime();
        default:
            Dialog::onCommand(id);
    }
}

void ExportDialog::onDoubleClick(ui::Control& control) {
    if (auto* list = dynamic_cast<ui::List*>(&control))
        for (int i = 0; i < list->count(); ++i) list->selectItem(i, false);
}

// The mark alone goes; what is selected stays.
void ExportDialog::onFocus(ui::Control& control) {
    const auto* list = dynamic_cast<ui::List*>(&control);
    if (list && list->count() > 0) get<ui::CheckBox>(kExportAll).check(false);
}

void ExportDialog::takeLastTime() {
    const std::optional<RememberedExport> last = LastExport();
    if (!last) return;
    get<ui::CheckBox>(kIncludeZ).check(last->choice.includeZ);
    get<ui::CheckBox>(kExtraFields).check(last->choice.options.extraFields);
    get<ui::CheckBox>(kNoHeights).check(last->choice.options.leavesMissingHeights);
    get<ui::CheckBox>(kHoles).check(last->choice.options.holes);
    const std::optional<double>& deviation = last->choice.options.deviation;
    get<ui::CheckBox>(kUseDeviation).check(deviation.has_value());
    find(kDeviation)->enable(deviation.has_value());
    if (deviation) find(kDeviation)->setText(text::fromReal(*deviation));
    for (int i = 0; i < kExportCategories; ++i) {
        auto& list = get<ui::List>(kLists[i]);
        const std::set<std::string>& features = last->choice.features[static_cast<size_t>(i)];
        for (int row = 0; row < list.count(); ++row) list.selectItem(row, features.contains(list.item(row)));
    }
}

// False where a person must mend it first.
bool ExportDialog::readDeviation() {
    choice_.options.deviation.reset();
    if (!get<ui::CheckBox>(kUseDeviation).checked()) return true;
    const std::optional<double> deviation = text::wholeReal(text::trim(find(kDeviation)->text()));
    if (deviation && *deviation > 0) {
        choice_.options.deviation = deviation;
        return true;
    }
    ui::messageBox("Error", "The deviation must be a number of drawing units above 0.");
    setFocus(kDeviation);
    return false;
}

std::string ExportDialog::referenceFile() const {
    return std::string(text::trim(find(kReference)->text()));
}

bool ExportDialog::readReference() {
    const std::string path = referenceFile();
    std::optional<std::string> reference = path.empty() ? "" : files::read(path);
    if (reference) {
        choice_.options.reference = std::move(*reference);
        return true;
    }
    ui::messageBox("Error", "The projection file \"" + path + "\" cannot be read.");
    setFocus(kReference);
    return false;
}

void ExportDialog::onOk() {
    if (!readDeviation() || !readReference()) return;
    choice_.includeZ = get<ui::CheckBox>(kIncludeZ).checked();
    choice_.options.extraFields = get<ui::CheckBox>(kExtraFields).checked();
    choice_.options.leavesMissingHeights = get<ui::CheckBox>(kNoHeights).checked();
    choice_.options.holes = get<ui::CheckBox>(kHoles).checked();
    for (int i = 0; i < kExportCategories; ++i) {
        const auto& list = get<ui::List>(kLists[i]);
        for (int row : list.selection()) choice_.features[static_cast<size_t>(i)].insert(list.item(row));
    }
    end(ui::kOk);
}

}  // namespace norvane
