#include "module/features/print_definitions.h"

#include <algorithm>

#include "module/dialogs/file_boxes.h"
#include "module/dialogs/run_dialog.h"
#include "module/features/editor_session.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

// --- The sheet --------------------------------------------------------------------------------------------

void DefinitionSheet::setForm(const DefinitionForm& form) {
    form_ = form;
    rows_.clear();
    for (const DefinedFeature& feature : features_) addRows(feature);
}

void DefinitionSheet::clear() {
    features_.clear();
    rows_.clear();
}

void DefinitionSheet::add(const DefinedFeature& feature) {
    features_.push_back(feature);
    addRows(feature);
}

void DefinitionSheet::addRows(const DefinedFeature& feature) {
    const std::vector<DefinitionRow> added =
        RowsOfFeature(feature, definitions_.attributes(feature.name), form_);
    rows_.insert(rows_.end(), added.begin(), added.end());
}

bool DefinitionSheet::has(const std::string& name) const {
    return std::ranges::any_of(
        features_, [&](const DefinedFeature& feature) { return text::equalNoCase(feature.name, name); });
}

bool DefinitionSheet::beginsFeature(int row) const {
    return row >= 1 && row <= rows() && rows_[static_cast<size_t>(row - 1)].heading == kFeatureHeading;
}

void DefinitionSheet::removeFeature(int row) {
    if (!beginsFeature(row)) return;
    const auto begins = [](const DefinitionRow& each) { return each.heading == kFeatureHeading; };
    const auto first = rows_.begin() + (row - 1);
    features_.erase(features_.begin() + std::count_if(rows_.begin(), first, begins));
    rows_.erase(first, std::find_if(first + 1, rows_.end(), begins));
}

std::string DefinitionSheet::text(int column, int row) const {
    const DefinitionRow& shown = rows_[static_cast<size_t>(row - 1)];
    return column == 1 ? shown.heading : column == 2 ? shown.text : shown.note;
}

// --- The pages --------------------------------------------------------------------------------------------

namespace {

constexpr int kResource = 152;
constexpr const char* kJobName = "Print GIS Definitions from Template MDB...";
constexpr int kNoteColumn = 3;

// What stands on the screen while the pages go out.
class PrintNotice : public ui::Dialog {
  public:
    explicit PrintNotice(size_t pages) : ui::Dialog(kNoticeResource, kJobName) {
        add<ui::Label>(kText, "Printing...");
        add<ui::Progress>(kBar).setRange(0, static_cast<int>(pages));
        add<ui::Button>(ui::kCancel, "&Cancel", true);
        using namespace ui;
        setLayout(column({item(kText), item(kBar), spring(), row({spring(), item(ui::kCancel)})}));
        setSize({420, 120});
    }
    // Before a page. False when the person does not want it any more.
    bool show(size_t page) {
        if (page == 0 && !open()) return true;
        get<ui::Progress>(kBar).setPosition(static_cast<int>(page));
        takeEvents();
        return running();
    }

  private:
    static constexpr int kNoticeResource = 1521, kText = 1001, kBar = 1002;
};

// Prints a sheet with a line about it when that has ended.
void printSheet(const ui::Grid& table, const std::string& foot, size_t features) {
    size_t printed = 0;
    bool cancelled = false;
    PrintNotice notice(DefinitionPages(table.rows()).size());
    const auto onPage = [&](size_t page) {
        cancelled = !notice.show(page);
        if (!cancelled) printed = page + 1;
        return !cancelled;
    };
    const ui::PrintJob job{kJobName, table, DefinitionPages(table.rows()), {}, onPage, foot};
    const bool done = ui::print(job);
    notice.close();
    const std::string pages = text::counted(static_cast<long>(printed), "page", "pages");
    if (cancelled)
        acutPrintf("\nPrinting was cancelled after %s of %zu.", pages.c_str(), job.pages.size());
    else if (done)
        acutPrintf("\n%s of %s printed.", pages.c_str(),
                   text::counted(static_cast<long>(features), "feature", "features").c_str());
}

}  // namespace

// --- The dialog -------------------------------------------------------------------------------------------

PrintDefinitionsDialog::PrintDefinitionsDialog(const TemplateDefinitions& definitions,
                                               std::string templatePath)
    : ui::Dialog(kResource, "Print/Preview GIS from MDB"),
      definitions_(definitions),
      templatePath_(std::move(templatePath)),
      categories_(DefinedCategories(definitions.categories)),
      sheet_(definitions) {
    add<ui::Tree>(kTree);
    add<ui::Button>(kAppend, "&Append GIS to Preview");
    add<ui::Button>(kAppendAll, "Appe&nd All GIS to Preview");
    add<ui::Grid>(kSheet, kNoteColumn);
    add<ui::Button>(kRemove, "&Remove GIS from Preview");
    add<ui::Button>(kRemoveAll, "Remov&e All GIS from Preview");
    add<ui::CheckBox>(kDetails, "Include detail&s");
    add<ui::CheckBox>(kTypes, "&Type and required mark");
    add<ui::CheckBox>(kFoot, "Page number and template at the &foot");
    add<ui::Button>(kSave, "Save as te&xt...");
    add<ui::Button>(kPrint, "&Print");
    add<ui::Button>(kQuit, "&Quit");
    using namespace ui;
    // All of it is to be seen on a small screen too.
    auto below = [](int button) { return row({item(button), spring()}); };
    Layout left = column({item(kTree, 1), below(kAppend), below(kAppendAll)});
    Layout right = column({item(kSheet, 1), below(kRemove), below(kRemoveAll)}, 1);
    setLayout(column({row({left, right}, 1), row({item(kDetails), item(kTypes), spring()}), item(kFoot),
                      row({spring(), item(kSave), item(kPrint), item(kQuit)})}));
    setSize({1040, 600});
}

void PrintDefinitionsDialog::onOpen() {
    auto& grid = get<ui::Grid>(kSheet);
    grid.setFont({"Courier New", 16, 8, 400});
    for (int column = 1; column <= kNoteColumn; ++column) grid.setColumnType(column, ui::CellType::fixed());
    fillTree();
    showSheet();
    setFocus(kTree);
}

void PrintDefinitionsDialog::fillTree() {
    auto& tree = get<ui::Tree>(kTree);
    constexpr int kFolder = 0, kLeaf = 1;
    // What was open and selected, by its place: nodes come and go with the details only below features.
    const std::vector<ui::Tree::Node> before = tree.nodes();
    const int selected = tree.selected();
    auto find = [&](const std::vector<Place>& places, size_t category, int feature) {
        for (size_t i = 0; i < places.size(); ++i)
            if (places[i].category == category && places[i].feature == feature) return static_cast<int>(i);
        return -1;
    };
    const std::vector<Place> placesBefore = std::exchange(places_, {});
    tree.clearNodes();
    auto addNode = [&](int parent, const std::string& text, int image, size_t category, int feature) {
        places_.push_back({category, feature});
        return tree.addNode(parent, text, image);
    };
    for (size_t c = 0; c < categories_.size(); ++c) {
        const int category = addNode(-1, categories_[c].name, kFolder, c, -1);
        if (int old = find(placesBefore, c, -1); old >= 0)
            tree.expand(category, before[static_cast<size_t>(old)].expanded);
        for (size_t f = 0; f < categories_[c].features.size(); ++f) {
            const std::string& name = categories_[c].features[f];
            const int feature = addNode(category, name, kLeaf, c, static_cast<int>(f));
            if (!sheet_.form().details) continue;
            for (const FeatureRow& attribute : definitions_.attributes(name))
                addNode(feature, AttributeLine(attribute), kLeaf, c, static_cast<int>(f));
        }
    }
    if (selected < 0) return;
    const Place& place = placesBefore[static_cast<size_t>(selected)];
    tree.select(find(places_, place.category, place.feature));
}

std::vector<DefinedFeature> PrintDefinitionsDialog::selectedFeatures() const {
    const int node = get<ui::Tree>(kTree).selected();
    if (node < 0) return {};
    const Place& place = places_[static_cast<size_t>(node)];
    const DefinedCategory& category = categories_[place.category];
    if (place.feature >= 0) return {{category.features[static_cast<size_t>(place.feature)], category.name}};
    std::vector<DefinedFeature> features;
    for (const std::string& name : category.features) features.push_back({name, category.name});
    return features;
}

void PrintDefinitionsDialog::append() {
    for (const DefinedFeature& feature : selectedFeatures())
        if (!sheet_.has(feature.name)) sheet_.add(feature);
    showSheet();
}

void PrintDefinitionsDialog::appendAll() {
    sheet_.clear();
    for (const DefinedCategory& category : categories_)
        for (const std::string& name : category.features) sheet_.add({name, category.name});
    showSheet();
}

void PrintDefinitionsDialog::remove() {
    sheet_.removeFeature(get<ui::Grid>(kSheet).active().row);
    showSheet();
}

void PrintDefinitionsDialog::setForm() {
    const bool details = get<ui::CheckBox>(kDetails).checked();
    const bool changesTree = details != sheet_.form().details;
    sheet_.setForm({details, get<ui::CheckBox>(kTypes).checked()});
    if (changesTree) fillTree();
    showSheet();
}

void PrintDefinitionsDialog::showSheet() {
    constexpr int kWhite = 0xFFFFFF, kBlack = 0x000000;
    auto& grid = get<ui::Grid>(kSheet);
    const ui::CellPosition active = grid.active();
    grid.setRedraw(false);
    grid.setSource(&sheet_);
    for (size_t i = 0; i < sheet_.shown().size(); ++i)
        if (sheet_.shown()[i].isDefault) grid.setColours(2, static_cast<int>(i) + 1, kBlack, kWhite);
    fitColumns();
    if (sheet_.rows() > 0)
        grid.setActive(std::max(1, active.column), std::clamp(active.row, 1, sheet_.rows()));
    grid.setRedraw(true);
    enableButtons();
}

// The longest text of a column stands for all of it: the font has one width.
void PrintDefinitionsDialog::fitColumns() {
    constexpr double kNarrowest[] = {12, 30, 20}, kMargin = 2;  // characters
    auto& grid = get<ui::Grid>(kSheet);
    for (int column = 1; column <= kNoteColumn; ++column) {
        int longest = 1;
        size_t length = 0;
        for (int row = 1; row <= sheet_.rows(); ++row)
            if (const size_t size = sheet_.text(column, row).size(); size > length)
                length = size, longest = row;
        const double needed = sheet_.rows() > 0 ? grid.neededWidth(column, longest) + kMargin : 0;
        grid.setColumnWidthInCharacters(column, std::max(kNarrowest[column - 1], needed));
    }
}

void PrintDefinitionsDialog::enableButtons() {
    const bool filled = sheet_.rows() > 0;
    find(kAppend)->enable(!selectedFeatures().empty());
    find(kAppendAll)->enable(std::ranges::any_of(categories_, [](const DefinedCategory& category) {
        return !category.features.empty();
    }));
    find(kRemove)->enable(sheet_.beginsFeature(get<ui::Grid>(kSheet).active().row));
    find(kTypes)->enable(sheet_.form().details);
    for (int id : {kRemoveAll, kSave, kPrint}) find(id)->enable(filled);
}

void PrintDefinitionsDialog::onDoubleClick(ui::Control& control) {
    if (control.id() == kTree) append();
}

void PrintDefinitionsDialog::onCommand(int id) {
    switch (id) {
        case kAppend:
            return append();
        case kAppendAll:
            return appendAll();
        case kRemove:
            return remove();
        case kRemoveAll:
            sheet_.clear();
            return showSheet();
        case kDetails:
        case kTypes:
            return setForm();
        case kPrint:
            return print();
        case kSave:
            return save();
        case kQuit:
            return end(ui::kOk);
        default:
            Dialog::onCommand(id);
    }
}

void PrintDefinitionsDialog::print() {
    constexpr double kWider = 10;  // characters
    auto& grid = get<ui::Grid>(kSheet);
    const int width = grid.columnWidth(kNoteColumn);
    grid.setColumnWidthInCharacters(kNoteColumn, grid.columnWidthInCharacters(kNoteColumn) + kWider);
    printSheet(grid, get<ui::CheckBox>(kFoot).checked() ? templatePath_ : "", sheet_.features().size());
    grid.setColumnWidth(kNoteColumn, width);
}

void PrintDefinitionsDialog::save() {
    const std::optional<std::string> path = AskTextFileToSave(files::folderOf(templatePath_));
    if (!path) return;
    if (!files::replace(*path, DefinitionText(sheet_.shown()))) {
        ui::messageBox("Error", "\"" + *path + "\" cannot be written.");
        return;
    }
    acutPrintf("\n%s saved to %s.",
               text::counted(static_cast<long>(sheet_.features().size()), "feature", "features").c_str(),
               path->c_str());
}

void PrintDefinitions(EditorSession& s) {
    const std::optional<TemplateDefinitions> definitions = s.file.definitions();
    if (!definitions) return;
    PrintDefinitionsDialog dialog(*definitions, s.file.path());
    RunDialog(dialog);
}

}  // namespace norvane
