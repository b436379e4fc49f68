#include "module/features/feature_from_table_dialog.h"

#include <algorithm>

#include "module/cad/drawing_folder.h"
#include "module/dialogs/file_boxes.h"
#include "module/dialogs/ok_cancel.h"
#include "module/setup/database_chooser.h"
#include "module/store/database.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kResource = 153;
constexpr const char* kOutputTitle = "Create New Feature Using Output Database Table";
constexpr const char* kObjectTitle = "Create New Feature Using Object Data Table";
constexpr int kUseColumn = 1, kFieldColumn = 2, kTypeColumn = 3;

std::string typeText(const FeatureFileRow& attribute) {
    if (attribute.values.dropDown) return attribute.values.text;
    return attribute.type == FieldKind::kReal ? "Real" : attribute.type == FieldKind::kInt ? "Int" : "Char";
}

}  // namespace

TableChooser::TableChooser(std::string outputPath, bool offersObjectData,
                           const std::vector<ObjectDataTable>& objectTables)
    : ui::Dialog(kResource, kOutputTitle), path_(std::move(outputPath)) {
    for (const ObjectDataTable& table : objectTables) objectTables_.push_back(SourceTableOf(table));
    add<ui::Label>(kPathCaption, "Output Database File:");
    add<ui::Edit>(kPath, true);
    add<ui::Button>(kOpenOther, "Open Another Output &Database");
    add<ui::Button>(kServer, "Ser&ver...");
    add<ui::CheckBox>(kObjectData, "Select From Object Data Tables").show(offersObjectData);
    add<ui::Label>(kTablesCaption, "Available Tables from Output Database:");
    add<ui::List>(kTables, false, 12);
    add<ui::Label>(kFieldsCaption, "Fields that become attributes:");
    add<ui::Grid>(kFields, kTypeColumn);
    add<ui::Label>(kSelectedCaption, "Selected Table:");
    add<ui::Edit>(kSelected);
    add<ui::Label>(kNotice);
    AddOkCancel(*this);
    using namespace ui;
    setLayout(
        column({item(kPathCaption), row({item(kPath, 1), item(kOpenOther), item(kServer)}), item(kObjectData),
                row({column({item(kTablesCaption), item(kTables, 1)}),
                     column({item(kFieldsCaption), item(kFields, 1)}, 1)},
                    1),
                row({item(kSelectedCaption), item(kSelected, 1)}), item(kNotice), OkCancelRow()}));
    setSize({760, 520});
}

void TableChooser::onOpen() {
    auto& fields = get<ui::Grid>(kFields);
    constexpr double kWidths[] = {5, 30, 12};
    constexpr const char* kHeadings[] = {"USE", "FIELD", "TYPE"};
    for (int column = kUseColumn; column <= kTypeColumn; ++column) {
        fields.setColumnHeading(column, kHeadings[column - 1]);
        fields.setColumnWidthInCharacters(column, kWidths[column - 1]);
        fields.setColumnType(column,
                             column == kUseColumn ? ui::CellType::checkBox("") : ui::CellType::fixed());
    }
    if (path_.empty())
        CheckDao();
    else
        readTables(path_);
    showTables();
    setFocus(kTables);
}

bool TableChooser::readTables(const std::string& path) {
    std::vector<SourceTable> tables;
    const DatabaseOutcome outcome =
        WithDatabase(path, [&](CDaoDatabase& database) { tables = ReadSourceTables(database); });
    if (outcome != DatabaseOutcome::kDone) return false;
    outputTables_ = std::move(tables);
    return true;
}

void TableChooser::showTables() {
    const bool objects = isObjectData();
    setTitle(objects ? kObjectTitle : kOutputTitle);
    find(kOpenOther)->enable(!objects);
    find(kServer)->enable(!objects);
    find(kPath)->setText(path_);
    auto& list = get<ui::List>(kTables);
    list.clearItems();
    for (const SourceTable& table : objects ? objectTables_ : outputTables_) list.addItem(table.name);
    find(kSelected)->setText("");
    showFields();
}

void TableChooser::showFields() {
    auto& fields = get<ui::Grid>(kFields);
    const SourceTable* selected = table();
    attributes_ = selected ? AttributesOfTable(selected->columns) : std::vector<FeatureFileRow>{};
    fields.setRedraw(false);
    fields.setRows(0);
    fields.setRows(static_cast<int>(attributes_.size()));
    for (size_t i = 0; i < attributes_.size(); ++i) {
        const int row = static_cast<int>(i) + 1;
        fields.setChecked(kUseColumn, row, true);
        fields.setText(kFieldColumn, row, attributes_[i].abbreviation);
        fields.setText(kTypeColumn, row, typeText(attributes_[i]));
    }
    fields.setRedraw(true);
    std::vector<std::string> missing;
    if (selected && !isObjectData())
        for (const char* key : {"PT_ID", "GIS_KEY"})
            if (!selected->hasColumn(key)) missing.push_back(key);
    find(kNotice)->setText(missing.empty() ? ""
                                           : "OK adds to the table what records are found by: " +
                                                 text::join(missing, ", "));
}

const SourceTable* TableChooser::table() const {
    const std::vector<SourceTable>& tables = isObjectData() ? objectTables_ : outputTables_;
    const std::string typed(text::trim(find(kSelected)->text()));
    const auto found = std::ranges::find_if(
        tables, [&](const SourceTable& table) { return text::equalNoCase(table.name, typed); });
    return isGiven() && found != tables.end() ? &*found : nullptr;
}

std::vector<FeatureFileRow> TableChooser::attributes() const {
    const auto& fields = get<ui::Grid>(kFields);
    std::vector<FeatureFileRow> ticked;
    for (size_t i = 0; i < attributes_.size(); ++i)
        if (fields.checked(kUseColumn, static_cast<int>(i) + 1)) ticked.push_back(attributes_[i]);
    return ticked;
}

void TableChooser::openOther(const std::string& path) {
    if (path.empty() || !readTables(path)) return;
    path_ = path;
    showTables();
}

void TableChooser::onCommand(int id) {
    switch (id) {
        case kOpenOther: {
            std::string folder = files::folderOf(path_);
            if (folder.empty()) folder = DrawingFolder();
            return openOther(AskExistingOutput(folder).value_or(""));
        }
        case kServer:
            return openOther(AskServer());
        case kObjectData:
            return showTables();
        default:
            Dialog::onCommand(id);
    }
}

void TableChooser::onSelection(ui::Control& control) {
    if (control.id() != kTables) return;
    find(kSelected)->setText(get<ui::List>(kTables).selectedText());
    showFields();
}

void TableChooser::onTextChange(ui::Control& control) {
    if (control.id() == kSelected) showFields();
}

void TableChooser::onDoubleClick(ui::Control& control) {
    if (control.id() == kTables) onOk();
}

// Space ticks a field off whatever cell of its row is the active one.
bool TableChooser::onKey(const ui::Key& key) {
    auto& fields = get<ui::Grid>(kFields);
    const ui::CellPosition at = fields.active();
    if (focus() != kFields || !key.is("Space") || !fields.has(at.column, at.row)) return false;
    fields.setChecked(kUseColumn, at.row, !fields.checked(kUseColumn, at.row));
    return true;
}

}  // namespace norvane
