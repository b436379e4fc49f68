#include "module/transfer/import_text_dialog.h"

#include <algorithm>
#include <set>

#include "module/cad/lisp_symbols.h"
#include "module/dialogs/file_boxes.h"
#include "module/dialogs/ok_cancel.h"
#include "module/dialogs/progress_dialog.h"
#include "module/dialogs/run_dialog.h"
#include "module/exchange/text_lines.h"
#include "module/settings/dialog_state.h"
#include "module/store/name_rules.h"
#include "module/transfer/database_utilities.h"
#include "module/transfer/field_settings_file.h"
#include "module/transfer/text_preview.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 1612;
constexpr const char* kTitle = "Import ASCII Data";
constexpr int kPathCaption = 1001, kOutputCaption = 1002, kPreviewCaption = 1003, kPreview = 1004;
constexpr int kDelimiterCaption = 1011, kDelimiter = 1012, kUseEmbedded = 1013, kEmbedded = 1014,
              kSetFields = 1015;
constexpr int kFieldsCaption = 1021, kFields = 1022, kNameCaption = 1023, kName = 1024, kTypeCaption = 1025,
              kType = 1026, kAccept = 1027, kSetKey = 1028, kKeyCaption = 1029, kKey = 1030, kExists = 1031,
              kSave = 1032, kLoad = 1033;
constexpr int kTablesCaption = 1041, kTables = 1042, kTableFieldsCaption = 1043, kTableFields = 1044,
              kTableCaption = 1045, kTable = 1046, kProgress = 1047;
// Ours.
constexpr int kQuoted = 1901, kHeadings = 1902, kOrderCaption = 1903, kOrder = 1904, kPoints = 1905,
              kDraw = 1906;

constexpr const char* kNoKey = "None";
constexpr size_t kPreviewLines = 200;

const char* textTypeOf(int fieldType) {
    switch (fieldType) {
        case dbSingle:
        case dbDouble:
            return kRealType;
        case dbInteger:
        case dbLong:
            return kIntType;
        default:
            return kCharType;
    }
}

void error(const char* message) {
    ui::messageBox("Error", message);
}

class ImportTextDialog : public ui::Dialog {
  public:
    ImportTextDialog(std::string path, std::string output, std::vector<std::string> lines);
    std::optional<TextImportResult> result;

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onTextChange(ui::Control& control) override;
    // Enter in the box of the name ends the name.
    void onOk() override { focus() == kName ? acceptField() : importAscii(); }

    void addLinesAndFields();
    void addTables();
    void arrange();

    void setFieldsFromSelectedLine();
    void acceptField();
    void setKeyField();
    void saveFieldsSettings();
    void loadFieldsSettings();
    void importAscii();
    std::optional<TextRecords> readRecords(const TextImport& import);
    void write(const TextImport& import, TextRecords records);
    std::optional<PointFileChoice> choosePoints() const;
    PointList pointsOf(const TextRecords& records) const;

    TextFormat format() const;
    bool hasHeadings() const;
    void formatChanged();
    void fieldsChanged(int selected);
    void fieldSelected();
    void tableChanged();
    void applyOrder();
    void showPreview();
    void enableControls();
    std::string settingsFolder() const;
    std::vector<NamedType> tableFields() const;
    bool hasPlaces() const;

    std::string path_, output_;
    TextPreview preview_;
    std::vector<AsciiField> fields_;
    std::vector<CDaoFieldInfo> tableFields_;  // of the table whose name stands in the box
    std::string shownTable_;                  // whose they are
};

ImportTextDialog::ImportTextDialog(std::string path, std::string output, std::vector<std::string> lines)
    : ui::Dialog(kResource, kTitle),
      path_(std::move(path)),
      output_(std::move(output)),
      preview_(std::move(lines)) {
    add<ui::Label>(kPathCaption, "ASCII File: " + path_);
    add<ui::Label>(kOutputCaption, "Output Database: " + output_);
    addLinesAndFields();
    addTables();
    add<ui::Progress>(kProgress);
    AddOkCancel(*this);
    arrange();
    setSize({860, 640});
}

void ImportTextDialog::addLinesAndFields() {
    add<ui::Label>(kPreviewCaption, "Data Preview:");
    preview_.setFormat(TextFormat(), false, 0);
    auto& preview = add<ui::List>(kPreview, false, 8);
    preview.setColumns(preview_.headings());
    preview.setSource(&preview_);
    add<ui::Label>(kDelimiterCaption, "Delimiter:");
    auto& delimiter = add<ui::DropDown>(kDelimiter);
    add<ui::CheckBox>(kUseEmbedded, "&Embedded Field Name (delimiter):");
    auto& embedded = add<ui::DropDown>(kEmbedded);
    for (const std::string& name : DelimiterNames()) {
        delimiter.addItem(name);
        embedded.addItem(name);
    }
    delimiter.select(0);
    embedded.select(1);
    add<ui::CheckBox>(kQuoted, "Fields in &quotes");
    add<ui::CheckBox>(kHeadings, "First line has the na&mes");
    add<ui::Button>(kSetFields, "Se&t Fields From Selected Line");
    add<ui::Label>(kOrderCaption, "Or&der:");
    auto& order = add<ui::DropDown>(kOrder);
    for (const PointOrder& known : PointOrders()) order.addItem(known.name);
    add<ui::Label>(kFieldsCaption, "Fields:");
    add<ui::List>(kFields, false, 8).setColumns({"Name", "Type", "Is Key"});
    add<ui::Label>(kNameCaption, "Name:");
    add<ui::Edit>(kName);
    add<ui::Label>(kTypeCaption, "Type:");
    auto& type = add<ui::DropDown>(kType);
    for (const char* name : {kRealType, kIntType, kCharType}) type.addItem(name);
    type.select(2);
    add<ui::Button>(kAccept, "&Accept");
    add<ui::Label>(kExists, "Already Exist in Database Table.").show(false);
    add<ui::Button>(kSetKey, "Set &Key Field");
    add<ui::Label>(kKeyCaption, "Key Field:");
    add<ui::Edit>(kKey, true).setText(kNoKey);
    add<ui::Button>(kSave, "&Save Fields Settings...");
    add<ui::Button>(kLoad, "&Load Fields Settings...");
}

void ImportTextDialog::addTables() {
    add<ui::Label>(kTablesCaption, "Available Table from Output Database:");
    add<ui::List>(kTables, false, 5);
    add<ui::Label>(kTableFieldsCaption, "Fields from Table:");
    add<ui::List>(kTableFields, false, 5);
    add<ui::Label>(kTableCaption, "Table Name Used to Import ASCII Data:");
    add<ui::Edit>(kTable);
    add<ui::CheckBox>(kPoints, "&Points into a coordinate file");
    add<ui::CheckBox>(kDraw, "Dra&w them");
}

void ImportTextDialog::arrange() {
    using namespace ui;
    const Layout cutting =
        row({item(kDelimiterCaption), item(kDelimiter), item(kUseEmbedded), item(kEmbedded), spring()});
    const Layout kinds =
        row({item(kSetFields), item(kOrderCaption), item(kOrder), item(kQuoted), item(kHeadings), spring()});
    const Layout list = column({item(kFieldsCaption), item(kFields, 1)}, 3);
    const Layout field =
        column({table({row({item(kNameCaption), item(kName, 1)}), row({item(kTypeCaption), item(kType)}),
                       row({item(kKeyCaption), item(kKey)})}),
                item(kExists), item(kAccept), item(kSetKey), spring(), item(kSave), item(kLoad)},
               2);
    const Layout target = column({item(kTablesCaption), item(kTables, 1), item(kTableFieldsCaption),
                                  item(kTableFields, 1), item(kTableCaption), item(kTable)},
                                 3);
    setLayout(
        column({item(kPathCaption), item(kOutputCaption), item(kPreviewCaption), item(kPreview, 2), cutting,
                kinds, row({list, field, target}, 3), row({item(kPoints), item(kDraw), spring()}),
                row({item(kProgress, 1), item(kOk), item(kCancel)})}));
}

void ImportTextDialog::onOpen() {
    auto& tables = get<ui::List>(kTables);
    for (const std::string& name : TablesOf(output_)) tables.addItem(name);
    formatChanged();
    enableControls();
}

void ImportTextDialog::onCommand(int id) {
    switch (id) {
        case kSetFields:
            return setFieldsFromSelectedLine();
        case kAccept:
            return acceptField();
        case kSetKey:
            return setKeyField();
        case kSave:
            return saveFieldsSettings();
        case kLoad:
            return loadFieldsSettings();
        case kUseEmbedded:
        case kQuoted:
        case kHeadings:
            return formatChanged();
        case kPoints:
            return enableControls();
        default:
            Dialog::onCommand(id);
    }
}

void ImportTextDialog::onSelection(ui::Control& control) {
    switch (control.id()) {
        case kDelimiter:
        case kEmbedded:
            return formatChanged();
        case kOrder:
            return applyOrder();
        case kFields:
            return fieldSelected();
        case kTables:
            find(kTable)->setText(get<ui::List>(kTables).selectedText());
            return tableChanged();
        default:
            break;
    }
}

void ImportTextDialog::onTextChange(ui::Control& control) {
    if (control.id() == kTable) tableChanged();
    if (control.id() == kName) enableControls();
}

// --- Lines -------------------------------------------------------------------------------------------------

TextFormat ImportTextDialog::format() const {
    TextFormat format;
    format.delimiter = DelimiterOf(get<ui::DropDown>(kDelimiter).selectedText());
    if (get<ui::CheckBox>(kUseEmbedded).checked())
        format.embedded = DelimiterOf(get<ui::DropDown>(kEmbedded).selectedText());
    format.quoted = get<ui::CheckBox>(kQuoted).checked();
    return format;
}

bool ImportTextDialog::hasHeadings() const {
    return find(kHeadings)->enabled() && get<ui::CheckBox>(kHeadings).checked();
}

void ImportTextDialog::formatChanged() {
    preview_.setFormat(format(), false, 0);
    const bool looksSo = preview_.count() > 1 && LooksLikeHeadings(preview_.pieces(0), preview_.pieces(1));
    find(kHeadings)->enable(looksSo);
    if (!looksSo) get<ui::CheckBox>(kHeadings).check(false);
    find(kEmbedded)->enable(get<ui::CheckBox>(kUseEmbedded).checked());
    showPreview();
}

void ImportTextDialog::showPreview() {
    preview_.setFormat(format(), hasHeadings(), fields_.size());
    auto& list = get<ui::List>(kPreview);
    list.setColumns(preview_.headings());
    list.sourceChanged();
}

// --- Fields ------------------------------------------------------------------------------------------------

void ImportTextDialog::setFieldsFromSelectedLine() {
    const int line = get<ui::List>(kPreview).selected();
    if (line < 0) return error("Please select a sample text line from the list!");
    const TextFormat chosen = format();
    const std::string& text = preview_.lines()[static_cast<size_t>(line)];
    std::vector<AsciiField> fields = ParseLine(TrimmedLine(text, chosen.delimiter), chosen);
    if (fields.empty()) return error("Cannot parse the sample text line!");
    fields_ = std::move(fields);
    if (hasHeadings()) {
        const std::vector<std::string> names = NamesOfHeadings(preview_.pieces(0));
        for (size_t i = 0; i < std::min(names.size(), fields_.size()); ++i)
            if (!names[i].empty()) fields_[i].name = names[i];
    }
    fieldsChanged(0);
}

// Shows the list anew.
void ImportTextDialog::fieldsChanged(int selected) {
    auto& list = get<ui::List>(kFields);
    list.clearItems();
    for (const AsciiField& field : fields_)
        list.addItem(field.name + "\t" + field.type + "\t" + (field.isKey ? "Yes" : "No"));
    list.select(selected);
    const std::optional<size_t> key = KeyOf(fields_);
    find(kKey)->setText(key ? fields_[*key].formerName : kNoKey);
    showPreview();
    fieldSelected();
}

void ImportTextDialog::fieldSelected() {
    const int at = get<ui::List>(kFields).selected();
    const bool isKey = at >= 0 && fields_[static_cast<size_t>(at)].isKey;
    find(kSetKey)->setText(isKey ? "Reset &Key Field" : "Set &Key Field");
    if (at >= 0) {
        const AsciiField& field = fields_[static_cast<size_t>(at)];
        find(kName)->setText(field.name);
        auto& type = get<ui::DropDown>(kType);
        type.select(type.findExact(field.type));
    }
    enableControls();
}

void ImportTextDialog::acceptField() {
    const std::string name = text::upper(text::trim(find(kName)->text()));
    if (!IsGoodName(name)) return error("Invalid Field Name!");
    const int at = get<ui::List>(kFields).selected();
    if (at < 0) return error("Please select a field from the Fields list!");
    AsciiField& field = fields_[static_cast<size_t>(at)];
    if (field.isKey) return error("Cannot change properties of a Key Field!");
    field.name = name;
    field.type = get<ui::DropDown>(kType).selectedText();
    fieldsChanged(at);
}

void ImportTextDialog::setKeyField() {
    const int at = get<ui::List>(kFields).selected();
    if (at < 0) return error("Please select a field from the Fields list!");
    if (fields_[static_cast<size_t>(at)].isKey)
        ResetKey(fields_);
    else
        SetKey(fields_, static_cast<size_t>(at));
    fieldsChanged(at);
}

void ImportTextDialog::applyOrder() {
    const int order = get<ui::DropDown>(kOrder).selected();
    if (order < 0) return;
    auto& preview = get<ui::List>(kPreview);
    if (fields_.empty() && preview_.count() > 0) {
        if (preview.selected() < 0) preview.select(hasHeadings() ? 1 : 0);
        setFieldsFromSelectedLine();
    }
    if (fields_.empty()) return;
    ApplyOrder(fields_, PointOrders()[static_cast<size_t>(order)]);
    fieldsChanged(0);
}

std::string ImportTextDialog::settingsFolder() const {
    std::string folder = files::folderOf(readState(state::kAsciiSettings));
    if (!folder.empty() && files::isFolder(folder)) return folder;
    std::string temporary;
    GetLispValue(temporary, "tmpdir$");
    return temporary;
}

void ImportTextDialog::saveFieldsSettings() {
    const std::optional<std::string> path = AskNewFieldSettings(settingsFolder());
    if (!path) return;
    if (!WriteFieldSettings(*path, fields_)) return error("Cannot write Fields Settings File!");
    writeState(*path, state::kAsciiSettings);
}

void ImportTextDialog::loadFieldsSettings() {
    const std::optional<std::string> path = AskFieldSettings(settingsFolder());
    if (!path) return;
    const std::optional<std::vector<FieldSetting>> settings = ReadFieldSettings(*path);
    if (!settings) return error("Cannot read Fields Settings File!");
    writeState(*path, state::kAsciiSettings);
    ApplyFieldSettings(*settings, tableFields(), fields_);
    fieldsChanged(get<ui::List>(kFields).selected());
}

std::vector<NamedType> ImportTextDialog::tableFields() const {
    std::vector<NamedType> named;
    for (const CDaoFieldInfo& field : tableFields_) named.push_back({field.name, textTypeOf(field.type)});
    return named;
}

// --- The table ---------------------------------------------------------------------------------------------

// The fields follow the name in the box.
void ImportTextDialog::tableChanged() {
    const std::string typed(text::trim(find(kTable)->text()));
    auto& tables = get<ui::List>(kTables);
    int found = -1;
    for (int i = 0; i < tables.count(); ++i)
        if (text::equalNoCase(tables.item(i), typed)) found = i;
    tables.select(found);
    const std::string table = tables.selectedText();
    if (table != shownTable_) {
        shownTable_ = table;
        tableFields_ = FieldsOf(output_, table);
        auto& fields = get<ui::List>(kTableFields);
        fields.clearItems();
        for (const CDaoFieldInfo& field : tableFields_) fields.addItem(field.name);
    }
    enableControls();
}

bool ImportTextDialog::hasPlaces() const {
    int places = 0;
    for (const AsciiField& field : fields_) places += field.name == "NORTHING" || field.name == "EASTING";
    return places == 2;
}

void ImportTextDialog::enableControls() {
    const std::string name(text::trim(find(kName)->text()));
    const bool exists = !name.empty() && std::any_of(tableFields_.begin(), tableFields_.end(),
                                                     [&](const CDaoFieldInfo& field) {
                                                         return text::equalNoCase(field.name, name);
                                                     });
    find(kExists)->show(exists);
    find(kSave)->enable(!fields_.empty());
    find(kLoad)->enable(!fields_.empty());
    find(kPoints)->enable(hasPlaces());
    find(kDraw)->enable(hasPlaces() && get<ui::CheckBox>(kPoints).checked());
}

// --- Import ------------------------------------------------------------------------------------------------

void ImportTextDialog::importAscii() {
    TextImport import;
    import.path = path_;
    import.table = text::upper(text::trim(find(kTable)->text()));
    if (!IsGoodName(import.table)) {
        error("Invalid Table Name!");
        return setFocus(kTable);
    }
    if (!KeyOf(fields_)) return error("Key Field is missing!");
    std::set<std::string> names;
    for (const AsciiField& field : fields_)
        if (!names.insert(text::upper(field.name)).second)
            return error("Cannot allow duplicate Name in the Fields List!");
    import.format = format();
    import.hasHeadings = hasHeadings();
    import.fields = fields_;
    std::optional<TextRecords> records = readRecords(import);
    if (!records) return;
    if (records->import.records.empty())
        return error(
            "No records found in the ASCII file!\nPlease select new sample line or new delimiters and try "
            "again.");
    write(import, std::move(*records));
}

std::optional<TextRecords> ImportTextDialog::readRecords(const TextImport& import) {
    constexpr int kParts = 1000;
    auto& bar = get<ui::Progress>(kProgress);
    bar.setRange(0, kParts);
    ProgressDialog progress(kTitle, kParts);
    bool stopped = false;
    std::optional<TextRecords> records = ReadTextRecords(import, [&](size_t done, size_t total) {
        const auto part = static_cast<int>(static_cast<double>(done) / static_cast<double>(total) * kParts);
        if (part == bar.position()) return true;
        bar.setPosition(part);
        stopped = !progress.step(part, "Reading " + files::nameOf(path_));
        return !stopped;
    });
    bar.setPosition(0);
    if (!records && !stopped) error("Cannot open the *.txt file!");
    return records;
}

std::optional<PointFileChoice> ImportTextDialog::choosePoints() const {
    if (!find(kPoints)->enabled() || !get<ui::CheckBox>(kPoints).checked()) return std::nullopt;
    return ChoosePointFile(files::folderOf(path_));
}

PointList ImportTextDialog::pointsOf(const TextRecords& records) const {
    auto columnOf = [&](const char* name) {
        for (size_t i = 0; i < fields_.size(); ++i)
            if (fields_[i].name == name) return records.columnOf[i];
        return TextRecords::kNoColumn;
    };
    const size_t columns[] = {columnOf("NORTHING"), columnOf("EASTING"), columnOf("ELEVATION"),
                              columnOf("DESCRIPTION")};
    PointList points;
    for (const ImportRecord& record : records.import.records) {
        std::string found[4];
        for (const auto& [column, value] : record.values)
            for (size_t i = 0; i < 4; ++i)
                if (columns[i] == column) found[i] = value;
        points.push_back(PointOf(record.id, found[0], found[1], found[2], found[3]));
    }
    return points;
}

void ImportTextDialog::write(const TextImport& import, TextRecords records) {
    const bool wantsPoints = find(kPoints)->enabled() && get<ui::CheckBox>(kPoints).checked();
    const std::optional<PointFileChoice> pointFile = choosePoints();
    if (wantsPoints && !pointFile) return;
    NumberRecords(output_, records);
    const std::vector<TableImport> tables = {std::move(records.import)};
    ImportRun run = ImportTables(output_, tables, kTitle);
    if (run.end != ImportRun::End::kDone) return;
    records.import = tables.front();
    TextImportResult done;
    if (pointFile) done.points = WritePoints(*pointFile, pointsOf(records), "");
    done.draw = done.points && get<ui::CheckBox>(kDraw).checked();
    records.import = {};
    done.run = std::move(run);
    done.path = import.path;
    done.records = std::move(records);
    result = std::move(done);
    end(ui::kOk);
}

}  // namespace

std::optional<TextImportResult> ImportAsciiDialogRun(const std::string& path, const std::string& output) {
    std::optional<std::vector<std::string>> lines = ReadFirstLines(path, kPreviewLines);
    if (!lines) {
        error("Cannot open the *.txt file!");
        return std::nullopt;
    }
    ImportTextDialog dialog(path, output, std::move(*lines));
    if (RunDialog(dialog) != ui::kOk) return std::nullopt;
    return std::move(dialog.result);
}

}  // namespace norvane
