#include "module/transfer/database_utilities_dialog.h"

#include <algorithm>
#include <functional>
#include <optional>

#include "module/cad/drawing_folder.h"
#include "module/dialogs/file_boxes.h"
#include "module/dialogs/name_prompt.h"
#include "module/dialogs/run_dialog.h"
#include "module/settings/dialog_state.h"
#include "module/store/database.h"
#include "module/store/name_rules.h"
#include "module/store/server_sign_in.h"
#include "module/transfer/database_utilities.h"
#include "module/transfer/import_text_dialog.h"
#include "module/transfer/note_check.h"
#include "module/transfer/report_box.h"
#include "module/transfer/run_report.h"
#include "module/transfer/table_dialog.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 161, kNewTableName = 1611;
constexpr const char* kTitle = "Database File Utilities";
constexpr int kDatabaseCaption = 1001, kDatabase = 1002, kNew = 1003, k97 = 1004, k2000 = 1005, kOpen = 1006;
constexpr int kTablesCaption = 1011, kTables = 1012, kDelete = 1013, kRename = 1014, kEditTable = 1015;
constexpr int kImportNotes = 1021, kImportCollector = 1022, kImportText = 1023, kTree = 1024,
              kPreviewFeature = 1025;
constexpr int kProcessCaption = 1031, kProcess = 1032;
// Ours.
constexpr int kServer = 1901, kImportChecked = 1902, kPoints = 1903, kDraw = 1904, kCompare = 1905,
              kTakeBack = 1906, kTreeCaption = 1907;

void error(const std::string& message) {
    ui::messageBox("Error", message);
}

std::string timeText(std::time_t time) {
    char text[64] = "";
    std::tm local{};
    localtime_r(&time, &local);
    std::strftime(text, sizeof text, "%m/%d/%Y %H:%M:%S", &local);
    return text;
}

// While an action runs, its button says so and no other can be pressed.
class Busy {
  public:
    Busy(ui::Dialog& dialog, int button) : button_(*dialog.find(button)), caption_(button_.text()) {
        for (const auto& control : dialog.controls())
            if (control.get() != &button_ && control->kind() == ui::ControlKind::Button &&
                control->enabled()) {
                control->enable(false);
                disabled_.push_back(control.get());
            }
        button_.setText("Please wait...");
        ui::refresh();
    }
    ~Busy() {
        button_.setText(caption_);
        for (ui::Control* control : disabled_) control->enable();
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

  private:
    ui::Control& button_;
    std::string caption_;
    std::vector<ui::Control*> disabled_;
};

// The tree of what a note file has: features with a box, their points, and what is known of each.
std::vector<ui::Tree::Node> treeOf(const std::vector<NoteFeature>& features) {
    constexpr int kFolderImage = 0, kLeafImage = 1;
    std::vector<ui::Tree::Node> nodes;
    auto add = [&](int parent, std::string text, int image) {
        ui::Tree::Node node;
        node.text = std::move(text);
        node.parent = parent;
        node.image = image;
        nodes.push_back(std::move(node));
        return static_cast<int>(nodes.size()) - 1;
    };
    for (const NoteFeature& feature : features) {
        const int top = add(-1, FeatureCaption(feature), kFolderImage);
        nodes.back().hasBox = nodes.back().checked = true;
        for (const NotePoint& point : PointsOf(feature)) {
            const int id = add(top, point.id, kFolderImage);
            for (const PointNote* block : point.blocks)
                for (const FieldValue& field : block->fields)
                    add(id, field.name + ": " + field.value, kLeafImage);
        }
    }
    return nodes;
}

class DatabaseUtilities : public ui::Dialog {
  public:
    DatabaseUtilities();

    std::vector<PointOutput> toDraw;

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control&) override { enableControls(); }

    void addControls();
    void arrange();

    void newDatabase();
    void openDatabase();
    void signIn();
    void use(const std::string& path, bool remember);
    void showTables(const std::string& selected = "");
    bool hasDatabase();
    std::string table() const { return get<ui::List>(kTables).selectedText(); }

    void deleteTable();
    void renameTable();
    void editTable();
    void previewFeature();

    void readFieldFile(const std::string& path, bool isNoteFile);
    void chooseNotes(int button);
    void importFeatures();
    void importText();
    void compare();
    void takeBack();
    void finish(const ImportRun& run, std::vector<std::string> lines, const std::string& path);
    std::vector<NoteFeature> checkedFeatures() const;
    std::vector<std::string> uncheckedFeatures() const;
    std::optional<size_t> selectedFeature() const;
    std::string noteFolder() const;
    void enableControls();

    struct LastImport {
        std::string database;
        std::vector<TableJournal> journal;
        std::string points;  // the coordinate file that was written with it
    };

    std::string database_;  // "" for none
    std::string notePath_;
    NoteRecordList notes_;
    std::vector<NoteFeature> features_;  // of the notes
    std::vector<int> nodes_;             // of each feature
    std::optional<LastImport> last_;
};

DatabaseUtilities::DatabaseUtilities() : ui::Dialog(kResource, kTitle) {
    addControls();
    arrange();
    setSize({820, 560});
}

void DatabaseUtilities::addControls() {
    add<ui::Label>(kDatabaseCaption, "Output Database:");
    add<ui::Edit>(kDatabase, true);
    add<ui::Button>(kNew, "New Databa&se");
    add<ui::RadioButton>(k97, "'97", 1);
    add<ui::RadioButton>(k2000, "2000", 1);
    add<ui::Button>(kOpen, "Open Data&base");
    add<ui::Button>(kServer, "Ser&ver...");
    add<ui::Label>(kTablesCaption, "Available Table from Output Database:");
    add<ui::List>(kTables, false, 10);
    add<ui::Button>(kDelete, "&Delete Table");
    add<ui::Button>(kRename, "&Rename Table");
    add<ui::Button>(kEditTable, "Preview/Edit &Table");
    add<ui::Button>(kImportNotes, "Import &Note File");
    add<ui::Button>(kImportCollector, "Import Fieldline/&Geoline/Rapidline GIS File");
    add<ui::Button>(kImportText, "Import A&SCII File");
    add<ui::Label>(kTreeCaption, "Features of the file that was read:");
    add<ui::Tree>(kTree);
    add<ui::CheckBox>(kPoints, "&Points into a coordinate file");
    add<ui::CheckBox>(kDraw, "Dra&w them");
    add<ui::Button>(kImportChecked, "&Import Checked Features");
    add<ui::Button>(kPreviewFeature, "Preview/Edit &Feature");
    add<ui::Button>(kCompare, "&Compare with Points");
    add<ui::Label>(kProcessCaption, "The last process:");
    add<ui::Label>(kProcess);
    add<ui::Button>(kTakeBack, "Take &Last Import Back");
    add<ui::Button>(ui::kCancel, "Cl&ose");
}

void DatabaseUtilities::arrange() {
    using namespace ui;
    const Layout tables = column(
        {item(kTablesCaption), item(kTables, 1), row({item(kDelete), item(kRename)}), item(kEditTable)}, 2);
    const Layout notes =
        column({row({item(kImportNotes), item(kImportCollector), item(kImportText)}), item(kTreeCaption),
                item(kTree, 1), row({item(kPoints), item(kDraw), spring()}),
                row({item(kImportChecked), item(kPreviewFeature), item(kCompare), spring()})},
               3);
    setLayout(
        column({row({item(kDatabaseCaption), item(kDatabase, 1)}),
                row({item(kNew), item(k97), item(k2000), item(kOpen), item(kServer), spring()}),
                row({tables, notes}, 1), row({item(kProcessCaption), item(kProcess, 1), item(kTakeBack)}),
                row({spring(), item(kCancel)})}));
}

void DatabaseUtilities::onOpen() {
    get<ui::RadioButton>(readState(state::kAccessFormat) == "2000" ? k2000 : k97).check();
    std::string path = readState(state::kUtilityDatabase);
    if (!IsOutputThere(path)) path = readState(state::kOutputPath);
    if (IsOutputThere(path)) use(TakePassword(path), false);
    enableControls();
}

void DatabaseUtilities::onCommand(int id) {
    switch (id) {
        case kNew:
            return newDatabase();
        case kOpen:
            return openDatabase();
        case kServer:
            return signIn();
        case kDelete:
            return deleteTable();
        case kRename:
            return renameTable();
        case kEditTable:
            return editTable();
        case kPreviewFeature:
            return previewFeature();
        case kImportNotes:
        case kImportCollector:
            return chooseNotes(id);
        case kImportText:
            return importText();
        case kImportChecked:
            return importFeatures();
        case kCompare:
            return compare();
        case kTakeBack:
            return takeBack();
        case k97:
        case k2000:
            return writeState(id == k2000 ? "2000" : "97", state::kAccessFormat);
        case kTree:
        case kPoints:
            return enableControls();
        default:
            Dialog::onCommand(id);
    }
}

// --- The database ------------------------------------------------------------------------------------------

void DatabaseUtilities::newDatabase() {
    const std::string folder = IsOdbcPath(database_) ? "" : files::folderOf(database_);
    const std::optional<std::string> path = AskNewOutput(folder.empty() ? DrawingFolder() : folder);
    if (!path) return;
    const bool is2000 = get<ui::RadioButton>(k2000).checked();
    if (!MakeUtilityDatabase(*path, is2000 ? DatabaseVersion::kAccess2000 : DatabaseVersion::kAccess97))
        return;
    writeState(is2000 ? "2000" : "97", state::kAccessFormat);
    use(*path, true);
}

void DatabaseUtilities::openDatabase() {
    const std::string folder = IsOdbcPath(database_) ? "" : files::folderOf(database_);
    if (const std::optional<std::string> path = AskExistingOutput(folder.empty() ? DrawingFolder() : folder))
        use(*path, true);
}

// A source on a server, by the sign-in box of its engine. The path is without the password.
void DatabaseUtilities::signIn() {
    std::string path;
    WithDatabase("ODBC;DSN=", [&](CDaoDatabase& database) { path = database.GetConnect().text(); });
    if (!path.empty()) use(path, true);
}

// One that cannot be opened leaves the one that is there.
void DatabaseUtilities::use(const std::string& path, bool remember) {
    if (WithDatabase(path, [](CDaoDatabase&) {}) != DatabaseOutcome::kDone) return;
    database_ = path;
    find(kDatabase)->setText(path);
    if (remember) writeState(dao::DatabasePath(path), state::kUtilityDatabase);
    showTables();
}

void DatabaseUtilities::showTables(const std::string& selected) {
    auto& list = get<ui::List>(kTables);
    list.clearItems();
    int at = -1;
    for (const std::string& name : TablesOf(database_)) {
        const int index = list.addItem(name);
        if (text::equalNoCase(name, selected)) at = index;
    }
    list.select(at);
    enableControls();
}

bool DatabaseUtilities::hasDatabase() {
    if (database_.empty()) error("Please select an Output Database!");
    return !database_.empty();
}

// --- Tables ------------------------------------------------------------------------------------------------

void DatabaseUtilities::deleteTable() {
    if (!hasDatabase()) return;
    if (!ui::askYesNo("Alert", "Are you sure you want to delete this table?")) return;
    if (!DeleteTable(database_, table())) return;
    showTables();
    // The button has nothing to delete any more.
    setFocus(kTables);
}

void DatabaseUtilities::renameTable() {
    if (!hasDatabase()) return;
    const std::string old = table();
    const std::string name = text::upper(AskName(
        "New Table Name", old,
        [](const std::string& typed) -> std::string { return IsGoodName(typed) ? "" : kBadNameMessage; },
        kNewTableName));
    if (name.empty() || name == old) return;
    const Busy busy(*this, kRename);
    if (RenameTable(database_, old, name)) showTables(name);
}

void DatabaseUtilities::editTable() {
    if (!hasDatabase()) return;
    EditTable(database_, table());
}

void DatabaseUtilities::previewFeature() {
    if (!hasDatabase()) return;
    const std::optional<size_t> at = selectedFeature();
    if (!at) return;
    const TableImport import = ImportOf(features_[*at]);
    std::vector<NoteRecord> records;
    for (const ImportRecord& record : import.records) {
        std::vector<std::string> values(import.columns.size());
        for (const auto& [column, value] : record.values) values[column] = value;
        NoteRecord shown = {{"PT_ID", "6", record.id}, {"GIS_KEY", "6", import.table}};
        for (size_t i = 0; i < values.size(); ++i)
            shown.push_back({import.columns[i].name, std::to_string(static_cast<int>(import.columns[i].type)),
                             values[i]});
        records.push_back(std::move(shown));
    }
    PreviewRecords(database_, import.table, records);
    showTables(table());
}

// --- Notes -------------------------------------------------------------------------------------------------

std::string DatabaseUtilities::noteFolder() const {
    const std::string folder = files::folderOf(readState(state::kNoteFile));
    return folder.empty() ? DrawingFolder() : folder;
}

void DatabaseUtilities::chooseNotes(int button) {
    if (!hasDatabase()) return;
    const bool isNoteFile = button == kImportNotes;
    const std::optional<std::string> path =
        isNoteFile ? AskNoteFile(noteFolder()) : AskCollectorNotes(noteFolder());
    if (!path) return;
    {
        const Busy busy(*this, button);
        readFieldFile(*path, isNoteFile);
    }
    enableControls();
}

void DatabaseUtilities::readFieldFile(const std::string& path, bool isNoteFile) {
    std::optional<NoteRecordList> notes = ReadNoteRecords(path);
    if (!notes) return error("Cannot open the *.not file!");
    writeState(path, state::kNoteFile);
    notePath_ = path;
    notes_ = std::move(*notes);
    features_ = FeaturesOf(notes_);
    auto& tree = get<ui::Tree>(kTree);
    tree.setNodes(treeOf(features_));
    nodes_.clear();
    for (size_t i = 0; i < tree.nodes().size(); ++i)
        if (tree.nodes()[i].parent < 0) nodes_.push_back(static_cast<int>(i));
    find(kTreeCaption)
        ->setText(files::nameOf(path) + ": " +
                  text::counted(static_cast<long>(notes_.blocks), "block", "blocks") + ", " +
                  text::counted(static_cast<long>(features_.size()), "feature", "features"));
    setTitle(isNoteFile ? "Import Note Data" : "Import Fieldline/Geoline/Rapidline GIS Data");
    find(ui::kCancel)->setText("E&xit");
}

// The one whose node is selected, or a node below it.
std::optional<size_t> DatabaseUtilities::selectedFeature() const {
    const auto& tree = get<ui::Tree>(kTree);
    int node = tree.selected();
    if (node < 0) return std::nullopt;
    while (tree.nodes()[static_cast<size_t>(node)].parent >= 0)
        node = tree.nodes()[static_cast<size_t>(node)].parent;
    return static_cast<size_t>(std::find(nodes_.begin(), nodes_.end(), node) - nodes_.begin());
}

std::vector<NoteFeature> DatabaseUtilities::checkedFeatures() const {
    std::vector<NoteFeature> checked;
    const auto& nodes = get<ui::Tree>(kTree).nodes();
    for (size_t i = 0; i < features_.size(); ++i)
        if (nodes[static_cast<size_t>(nodes_[i])].checked) checked.push_back(features_[i]);
    return checked;
}

std::vector<std::string> DatabaseUtilities::uncheckedFeatures() const {
    std::vector<std::string> names;
    const auto& nodes = get<ui::Tree>(kTree).nodes();
    for (size_t i = 0; i < features_.size(); ++i)
        if (!nodes[static_cast<size_t>(nodes_[i])].checked) names.push_back(features_[i].name);
    return names;
}

void DatabaseUtilities::importFeatures() {
    if (!hasDatabase()) return;
    const std::vector<NoteFeature> features = checkedFeatures();
    std::optional<PointFileChoice> pointFile;
    if (get<ui::CheckBox>(kPoints).checked()) {
        pointFile = ChoosePointFile(files::folderOf(notePath_));
        if (!pointFile) return;
    }
    std::vector<std::string> lines = NoteLines(notePath_, notes_);
    if (const std::vector<std::string> left = uncheckedFeatures(); !left.empty())
        lines.push_back("  not checked: " + text::join(left, ", "));
    ImportRun run;
    std::optional<PointOutput> points;
    {
        const Busy busy(*this, kImportChecked);
        run = ImportFeatures(database_, features, title());
        if (pointFile && run.end == ImportRun::End::kDone)
            points = WritePoints(*pointFile, PointsOfNotes(features), notePath_);
    }
    if (points && get<ui::CheckBox>(kDraw).checked()) toDraw.push_back(*points);
    for (const std::string& line : RunLines(run)) lines.push_back(line);
    if (points)
        for (const std::string& line : PointLines(*points)) lines.push_back(line);
    finish(run, std::move(lines), notePath_);
    if (last_ && points) last_->points = points->path;
}

void DatabaseUtilities::importText() {
    if (!hasDatabase()) return;
    const std::optional<std::string> path = AskAsciiFile(DrawingFolder());
    if (!path) return;
    std::optional<TextImportResult> result;
    {
        const Busy busy(*this, kImportText);
        result = ImportAsciiDialogRun(*path, database_);
    }
    enableControls();
    if (!result) return;
    std::vector<std::string> lines = TextRecordLines(result->path, result->records);
    for (const std::string& line : RunLines(result->run)) lines.push_back(line);
    if (result->points)
        for (const std::string& line : PointLines(*result->points)) lines.push_back(line);
    if (result->draw) toDraw.push_back(*result->points);
    finish(result->run, std::move(lines), *path);
    if (last_ && result->points) last_->points = result->points->path;
}

// The result line, the tables anew, and the report.
void DatabaseUtilities::finish(const ImportRun& run, std::vector<std::string> lines,
                               const std::string& path) {
    if (!run.tables.empty()) {
        last_ = LastImport{database_, run.journal, ""};
        find(kProcess)->setText("DATE TIME - " + timeText(ui::now()));
    }
    showTables(run.tables.empty() ? "" : run.tables.back().table);
    ShowReport("Report of the Import", std::move(lines), files::folderOf(path));
}

void DatabaseUtilities::compare() {
    std::string file = CoordinateFileOf(notePath_);
    if (file.empty()) {
        const std::optional<std::string> chosen = AskExistingPoints(files::folderOf(notePath_));
        if (!chosen) return;
        file = *chosen;
    }
    std::optional<NoteCheck> check;
    {
        const Busy busy(*this, kCompare);
        check = CheckNotes(notes_, file);
    }
    if (!check) return error(file + " cannot be opened.");
    ShowReport("Notes and Points", CheckLines(*check, notePath_, file), files::folderOf(notePath_));
}

void DatabaseUtilities::takeBack() {
    ui::OwnQuestion question;
    question.title = "Take Last Import Back";
    question.text =
        "Rows that the last import has changed become what they were, and those that it has made go.\n"
        "Do you want that?";
    question.defaultAnswer = ui::kYes;
    if (!last_ || ui::ask(question) != ui::kYes) return;
    TakenBack result;
    bool done = false;
    {
        const Busy busy(*this, kTakeBack);
        done = WithDatabase(last_->database, [&](CDaoDatabase& database) {
                   database.BeginTrans();
                   for (auto table = last_->journal.rbegin(); table != last_->journal.rend(); ++table)
                       TakeBack(database, *table, result);
                   database.CommitTrans();
               }) == DatabaseOutcome::kDone;
    }
    if (!done) return enableControls();
    std::vector<std::string> lines = TakenBackLines(result);
    if (!last_->points.empty()) lines.push_back("  the points in " + last_->points + " stay");
    last_.reset();
    find(kProcess)->setText("DATE TIME - " + timeText(ui::now()));
    showTables();
    setFocus(kTables);
    ShowReport("Import Taken Back", std::move(lines), files::folderOf(notePath_));
}

void DatabaseUtilities::enableControls() {
    const bool isOpen = !database_.empty();
    const bool hasTable = !isOpen || get<ui::List>(kTables).selected() >= 0;
    for (int id : {kDelete, kRename, kEditTable}) find(id)->enable(hasTable);
    find(kPreviewFeature)->enable(!isOpen || selectedFeature().has_value());
    find(kImportChecked)->enable(!checkedFeatures().empty());
    find(kPoints)->enable(!features_.empty());
    find(kDraw)->enable(!features_.empty() && get<ui::CheckBox>(kPoints).checked());
    find(kCompare)->enable(!notePath_.empty());
    find(kTakeBack)->enable(last_.has_value());
}

}  // namespace

void RunDatabaseUtilities(Call&) {
    if (!CheckDao()) return;
    DatabaseUtilities dialog;
    RunDialog(dialog);
    LeaveForDrawing(dialog.toDraw);
}

}  // namespace norvane
