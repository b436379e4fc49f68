#include "module/transfer/import_dialog.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_set>

#include "module/cad/drawing_folder.h"
#include "module/cad/layers.h"
#include "module/cad/lisp_symbols.h"
#include "module/coords/coordinate_format.h"
#include "module/dialogs/file_boxes.h"
#include "module/dialogs/run_dialog.h"
#include "module/exchange/shape_index.h"
#include "module/points/point_store.h"
#include "module/settings/dialog_state.h"
#include "module/settings/settings_file.h"
#include "module/setup/database_chooser.h"
#include "module/store/database.h"
#include "module/store/name_rules.h"
#include "module/store/server_sign_in.h"
#include "module/store/template_schema.h"
#include "module/store/user_tables.h"
#include "module/transfer/drawing_extents.h"
#include "module/transfer/import_shapes.h"
#include "module/transfer/point_file_chooser.h"
#include "module/transfer/set_folder.h"
#include "module/transfer/shape_set.h"
#include "platform/ads/entities.h"
#include "platform/ads/result_chain.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 148;
constexpr int kSelectShapes = 1001, kSelectOutput = 1002, kSelectPoints = 1003;
constexpr int kShapeEdit = 1011, kOutputEdit = 1012, kPointEdit = 1013, kTableEdit = 1014, kLayerEdit = 1015;
constexpr int kShapeCaption = 1021, kOutputCaption = 1022, kPointCaption = 1023, kTableCaption = 1024,
              kLayerCaption = 1025, kTablesCaption = 1026, kLayersCaption = 1027, kFieldsCaption = 1028;
constexpr int kShapeType = 1031, kPointType = 1032;
constexpr int kTables = 1041, kLayers = 1042, kFields = 1043, kHeightFields = 1044;
constexpr int kNewPoints = 1051, kOverwritePoints = 1052, kUseHeights = 1053;
// Ours.
constexpr int kSetSummary = 1901, kDrawingSummary = 1902, kReference = 1903, kNotice = 1904,
              kLightPolylines = 1905;

constexpr size_t kLongestLayer = 31;

std::string boxText(const plane::Box& box) {
    return text::format("X %.3f to %.3f, Y %.3f to %.3f", box.minX, box.maxX, box.minY, box.maxY);
}

// Whether two boxes are so far from each other that one of them is in another reference system: the way
// between them is many times what the greater of them measures.
bool lieApart(const plane::Box& a, const plane::Box& b) {
    constexpr double kFar = 10;
    const double wayX = std::max({a.minX - b.maxX, b.minX - a.maxX, 0.0});
    const double wayY = std::max({a.minY - b.maxY, b.minY - a.maxY, 0.0});
    const double size = std::max(std::hypot(a.width(), a.height()), std::hypot(b.width(), b.height()));
    return std::hypot(wayX, wayY) > kFar * size;
}

// The path of the coordinate file that belongs to a set: its ending is in the letters of that of the set.
std::string pointPathOf(const std::string& shapePath) {
    const std::string ending = files::extensionOf(shapePath);
    return shapePath.substr(0, shapePath.size() - ending.size()) + (ending == "SHP" ? "CRD" : "crd");
}

// What a table is called without its owner on a server.
std::string plainTable(const std::string& name) {
    return name.substr(name.find('.') + 1);
}

std::vector<std::string> tablesOf(const std::string& outputPath) {
    std::vector<std::string> names;
    if (outputPath.empty()) return names;
    WithDatabase(outputPath, [&](CDaoDatabase& database) {
        for (const std::string& table : UserTables(database)) {
            const std::string name = plainTable(table);
            const bool isDefinition = text::equalNoCase(name, kPromptingTable) ||
                                      text::equalNoCase(name, kCategoryTable) ||
                                      text::equalNoCase(name, kLinkTable);
            if (!isDefinition) names.push_back(name);
        }
    });
    return names;
}

void fill(ui::List& list, const std::vector<std::string>& items) {
    list.clearItems();
    for (const std::string& item : items) list.addItem(item);
}

// Marks the item of a text, without regard to case; none when there is no such item.
void markItem(ui::List& list, const std::string& text) {
    int found = -1;
    for (int i = 0; i < list.count() && found < 0; ++i)
        if (text::equalNoCase(list.item(i), text)) found = i;
    list.select(found);
}

class ImportDialog : public ui::Dialog {
  public:
    ImportDialog();
    const ImportShpSettings& settings() const { return settings_; }

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onTextChange(ui::Control& control) override;
    void onFocus(ui::Control& control) override;
    void onOk() override;

    void selectShapes();
    void selectOutput();
    void selectPoints();
    void takeShapes(const std::string& path, bool silent);
    void forgetShapes();
    void showSet();
    void showExtents();
    void proposeTable();
    void takePoints(const std::string& path, bool isNew);
    void proposePoints();
    void showPointForm();
    void showTables();
    void enableControls();
    void checkName(int edit);
    std::string textOf(int id) const { return std::string(text::trim(find(id)->text())); }
    bool isPoint() const { return set_ && IsImported(set_->shapeType) && shape::IsPoint(set_->shapeType); }
    bool isComplete() const;

    ImportShpSettings settings_;
    std::optional<ShapeSet> set_;
    bool replacePoints_ = false;  // the coordinate file of the box is to be a new one
    std::string pointFolder_;
    int lastFocus_ = 0;
};

ImportDialog::ImportDialog() : ui::Dialog(kResource, "Import SHP File") {
    add<ui::Label>(kShapeCaption, "Input SHP File   :");
    add<ui::Edit>(kShapeEdit, true);
    add<ui::Button>(kSelectShapes, "Select &SHP File");
    add<ui::Label>(kShapeType, "Type SHP File: ");
    add<ui::Label>(kSetSummary);
    add<ui::Label>(kReference);
    add<ui::Label>(kDrawingSummary);
    add<ui::Label>(kOutputCaption, "Output MDB File:");
    add<ui::Edit>(kOutputEdit, true);
    add<ui::Button>(kSelectOutput, "Select &MDB File");
    add<ui::Label>(kPointCaption, "Output CRD File:");
    add<ui::Edit>(kPointEdit, true);
    add<ui::Button>(kSelectPoints, "Select C&RD File");
    add<ui::Label>(kPointType, "File type> Alphanumerical .CRD");
    add<ui::CheckBox>(kNewPoints, "Create Ne&w Points in CRD File", true);
    add<ui::CheckBox>(kOverwritePoints, "Over&write Points in CRD File");
    add<ui::Label>(kTableCaption, "Create/Select &Table for Database Input:");
    add<ui::Edit>(kTableEdit);
    add<ui::Label>(kTablesCaption, "Select Table for &Database Input:");
    add<ui::List>(kTables, false, 4);
    add<ui::Label>(kLayerCaption, "La&yer Used to Create Entities:");
    add<ui::Edit>(kLayerEdit);
    add<ui::Label>(kLayersCaption, "Layers in Curre&nt DWG:");
    add<ui::List>(kLayers, false, 4);
    add<ui::Label>(kFieldsCaption, "&Fields of the SHP File:");
    add<ui::List>(kFields, false, 4);
    add<ui::CheckBox>(kUseHeights, "&Use attribute to assign elevation");
    add<ui::List>(kHeightFields, false, 4);
    add<ui::CheckBox>(kLightPolylines, "&Light polylines, without the first vertex again at the end");
    add<ui::Label>(kNotice);
    add<ui::Button>(ui::kOk, "...", true);
    add<ui::Button>(ui::kCancel, "&Cancel");
    using namespace ui;
    Layout paths = table({row({item(kShapeCaption), item(kShapeEdit, 1), item(kSelectShapes)}),
                          row({item(kOutputCaption), item(kOutputEdit), item(kSelectOutput)}),
                          row({item(kPointCaption), item(kPointEdit), item(kSelectPoints)})});
    Layout points = row({item(kPointType), spring(), item(kNewPoints), item(kOverwritePoints)});
    Layout names =
        row({column({item(kTableCaption), item(kTableEdit), item(kTablesCaption), item(kTables, 1)}, 1),
             column({item(kLayerCaption), item(kLayerEdit), item(kLayersCaption), item(kLayers, 1)}, 1),
             column({item(kFieldsCaption), item(kFields, 1), item(kUseHeights), item(kHeightFields, 1)}, 1)},
            1);
    setLayout(
        column({paths, item(kShapeType), item(kSetSummary), item(kReference), item(kDrawingSummary), points,
                names, item(kLightPolylines), item(kNotice), row({spring(), item(kOk), item(kCancel)})}));
    setSize({780, 560});
}

void ImportDialog::onOpen() {
    const std::optional<SettingsFile> settings = SettingsFile::read();
    settings_.templatePath =
        dao::DatabasePath(settings ? settings->value(settings::kTemplate).value_or("") : "");
    std::string output = settings ? settings->value(settings::kOutput).value_or("") : "";
    if (!IsOutputThere(output)) output = readState(state::kOutputPath);
    if (!IsOutputThere(output)) output.clear();
    find(kOutputEdit)->setText(TakePassword(output));
    fill(get<ui::List>(kLayers), LayerNames());
    showTables();
    pointFolder_ = readState(state::kCoordinateFolder);
    const bool overwrite = readState(state::kShapeImportOption) == "1";
    get<ui::CheckBox>(kOverwritePoints).check(overwrite);
    get<ui::CheckBox>(kNewPoints).check(!overwrite);
    if (const std::string last = readState(state::kShapeFile); !last.empty()) takeShapes(last, true);
    enableControls();
}

void ImportDialog::onCommand(int id) {
    switch (id) {
        case kSelectShapes:
            selectShapes();
            break;
        case kSelectOutput:
            selectOutput();
            break;
        case kSelectPoints:
            selectPoints();
            break;
        // They exclude each other.
        case kNewPoints:
            get<ui::CheckBox>(kOverwritePoints).check(!get<ui::CheckBox>(kNewPoints).checked());
            break;
        case kOverwritePoints:
            get<ui::CheckBox>(kNewPoints).check(!get<ui::CheckBox>(kOverwritePoints).checked());
            break;
        case kUseHeights:
            enableControls();
            break;
        default:
            Dialog::onCommand(id);
    }
}

void ImportDialog::onSelection(ui::Control& control) {
    const int edit = control.id() == kTables ? kTableEdit : control.id() == kLayers ? kLayerEdit : 0;
    if (!edit) return;
    find(edit)->setText(get<ui::List>(control.id()).selectedText());
    checkName(edit);
    enableControls();
}

void ImportDialog::onTextChange(ui::Control&) {
    find(kNotice)->setText("");
    enableControls();
}

void ImportDialog::onFocus(ui::Control& control) {
    const int left = std::exchange(lastFocus_, control.id());
    if (left != control.id() && (left == kTableEdit || left == kLayerEdit)) {
        checkName(left);
        enableControls();
    }
}

// --- The set ----------------------------------------------------------------------------------------------

void ImportDialog::selectShapes() {
    std::string folder = files::folderOf(textOf(kShapeEdit));
    if (folder.empty()) folder = DrawingFolder();
    if (const std::optional<std::string> path = AskShapeSet(folder)) takeShapes(*path, false);
    enableControls();
}

// Makes the index that alone is missing, where the user wants that.
void offerIndex(const std::string& path) {
    if (!LacksOnlyIndex(path)) return;
    ui::OwnQuestion question;
    question.title = "Import SHP File";
    question.text = "The index of the set (" + files::nameOf(SetMember(path, "shx")) +
                    ") is missing. It can be made from the shapes.\nDo you want to make it?";
    if (ui::ask(question) == ui::kYes) ShapeMakeIndex(path);
}

void ImportDialog::takeShapes(const std::string& path, bool silent) {
    FinishBrokenExports(files::folderOf(path));
    if (!silent) offerIndex(path);
    set_ = ReadShapeSet(path);
    forgetShapes();
    if (set_) return showSet();
    if (!silent)
        ui::messageBox("Alert",
                       "SHP file is corrupted or SHX(DBF) files associated with it are missing!\n"
                       "Invalid SHP file!");
}

// Clears what depends on the set.
void ImportDialog::forgetShapes() {
    for (int edit : {kShapeEdit, kTableEdit, kPointEdit}) find(edit)->setText("");
    for (int label : {kSetSummary, kReference, kDrawingSummary, kNotice}) find(label)->setText("");
    for (int list : {kFields, kHeightFields}) get<ui::List>(list).clearItems();
    find(kShapeType)->setText("Type SHP File: ");
    get<ui::CheckBox>(kUseHeights).check(false);
    get<ui::List>(kTables).select(-1);
    replacePoints_ = false;
}

void ImportDialog::showSet() {
    find(kShapeEdit)->setText(set_->path);
    find(kShapeType)->setText(std::string("Type SHP File: ") + ShapeTypeName(set_->shapeType));
    for (int list : {kFields, kHeightFields}) fill(get<ui::List>(list), set_->fields);
    showExtents();
    proposeTable();
    if (isPoint()) proposePoints();
    showPointForm();
}

void ImportDialog::showExtents() {
    const std::string size =
        text::format("Records: %ld, fields: %zu", static_cast<long>(set_->recordCount), set_->fields.size());
    find(kSetSummary)->setText(set_->extents.empty() ? size : size + ", " + boxText(set_->extents));
    find(kReference)
        ->setText(set_->reference.empty() ? "The set does not say in which reference system it is."
                                          : "Coordinates are taken as they are, in " + set_->reference + ".");
    const plane::Box drawing = DrawingExtents();
    if (drawing.empty() || set_->extents.empty()) return;
    const bool apart = lieApart(drawing, set_->extents);
    find(kDrawingSummary)
        ->setText("Drawing: " + boxText(drawing) + (apart ? ". The set lies far from it!" : ""));
}

void ImportDialog::proposeTable() {
    std::string name = set_->feature;
    if (name.empty()) {
        const std::string file = files::nameOf(set_->path);
        name = text::upper(file.substr(0, file.rfind('.')));
        if (!IsGoodName(name)) name.clear();
    }
    find(kTableEdit)->setText(std::string(text::trim(name)));
    markItem(get<ui::List>(kTables), textOf(kTableEdit));
}

// --- The coordinate file ----------------------------------------------------------------------------------

void ImportDialog::proposePoints() {
    const std::string path = pointPathOf(set_->path);
    const bool isThere = files::exists(path);
    const bool replaced =
        isThere && ui::askYesNo("Alert", files::nameOf(path) + " already exist!\nDo you want to replace it?");
    takePoints(path, !isThere || replaced);
}

void ImportDialog::selectPoints() {
    std::string folder = pointFolder_;
    if (folder.empty()) folder = files::folderOf(textOf(kPointEdit));
    if (const std::optional<PointFileChoice> choice = ChoosePointFile(folder)) {
        takePoints(choice->path, choice->isNew);
        pointFolder_ = files::folderOf(choice->path);
    }
    showPointForm();
    enableControls();
}

// A file of numbers has no place for names.
void ImportDialog::takePoints(const std::string& path, bool isNew) {
    find(kPointEdit)->setText(path);
    replacePoints_ = isNew;
    if (isNew || !PointStoreOpen(path, 0, -1)) return;
    const bool numeric = PointStoreFormat() == kNumericCrd;
    PointStoreClose();
    if (numeric && set_->alphanumeric)
        ui::messageBox(
            "Alert",
            "Type of CRD file is not properly for process! Using this CRD some points could be lost!");
}

void ImportDialog::showPointForm() {
    const std::string path = textOf(kPointEdit);
    const int format = replacePoints_ || path.empty() ? kNoFile : DetectFormat(path);
    const bool numeric = format == kNoFile ? !(set_ && set_->alphanumeric) : format == kNumericCrd;
    find(kPointType)->setText(numeric ? "File type> Numerical .CRD" : "File type> Alphanumerical .CRD");
}

// --- Names ------------------------------------------------------------------------------------------------

void ImportDialog::selectOutput() {
    const std::string old = textOf(kOutputEdit);
    const std::string folder = IsOdbcPath(old) ? "" : files::folderOf(old);
    if (const std::optional<std::string> path = ChooseDatabase(DatabaseChooser::kOutput, folder)) {
        find(kOutputEdit)->setText(*path);
        showTables();
    }
    enableControls();
}

void ImportDialog::showTables() {
    auto& tables = get<ui::List>(kTables);
    fill(tables, tablesOf(textOf(kOutputEdit)));
    markItem(tables, textOf(kTableEdit));
}

// A name that cannot be one is emptied, with a word about it.
void ImportDialog::checkName(int edit) {
    const bool isLayer = edit == kLayerEdit;
    const std::string typed = textOf(edit);
    std::string name = text::upper(typed);
    if (isLayer) name = std::string(text::trimRight(text::cutToBytes(name, kLongestLayer)));
    const bool isGood = IsGoodName(name) && (!isLayer || acdbSNValid(name.c_str(), 0) == RTNORM);
    if (!isGood && !name.empty())
        find(kNotice)->setText("\"" + typed + "\" cannot be the name of a " +
                               (isLayer ? "layer." : "table."));
    if (isGood && isLayer && name.size() < typed.size())
        find(kNotice)->setText("The name of the layer was cut to 31 characters.");
    find(edit)->setText(isGood ? name : "");
    auto& list = get<ui::List>(isLayer ? kLayers : kTables);
    markItem(list, name);
}

bool ImportDialog::isComplete() const {
    if (!set_ || !IsImported(set_->shapeType) || textOf(kOutputEdit).empty() || textOf(kTableEdit).empty())
        return false;
    return !textOf(isPoint() ? kPointEdit : kLayerEdit).empty();
}

void ImportDialog::enableControls() {
    const bool points = isPoint(), lines = set_ && !points;
    for (int id : {kPointCaption, kPointEdit, kSelectPoints, kPointType, kNewPoints, kOverwritePoints})
        find(id)->enable(points);
    for (int id : {kLayerCaption, kLayerEdit, kLayersCaption, kLayers, kLightPolylines})
        find(id)->enable(lines);
    const bool locked = set_ && !set_->feature.empty();
    get<ui::Edit>(kTableEdit).setReadOnly(locked);
    for (int id : {kTablesCaption, kTables}) find(id)->enable(!locked);
    const bool mayUseHeights =
        set_ && IsImported(set_->shapeType) && !shape::HasZ(set_->shapeType) && !set_->fields.empty();
    find(kUseHeights)->enable(mayUseHeights);
    find(kHeightFields)->enable(mayUseHeights && get<ui::CheckBox>(kUseHeights).checked());
    const bool complete = isComplete();
    find(ui::kOk)->setText(!complete ? "..."
                           : points  ? "&Import SHP into a CRD File"
                                     : "Import &Polylin&es from SHP");
    find(ui::kOk)->enable(complete);
}

void ImportDialog::onOk() {
    checkName(kTableEdit);
    if (!isPoint()) checkName(kLayerEdit);
    enableControls();
    if (!isComplete()) return;
    settings_.shpPath = set_->path;
    settings_.outputPath = dao::DatabasePath(textOf(kOutputEdit));
    settings_.tableName = textOf(kTableEdit);
    settings_.alphanumericCrd = set_->alphanumeric;
    if (isPoint()) {
        settings_.crdPath = textOf(kPointEdit);
        settings_.replacePoints = replacePoints_;
        settings_.overwritePoints = get<ui::CheckBox>(kOverwritePoints).checked();
        pointFolder_ = files::folderOf(settings_.crdPath);
    } else {
        const auto& layers = get<ui::List>(kLayers);
        settings_.layerName = layers.selected() < 0 ? textOf(kLayerEdit) : layers.selectedText();
        settings_.lightPolylines = get<ui::CheckBox>(kLightPolylines).checked();
    }
    if (find(kHeightFields)->enabled()) settings_.elevationField = get<ui::List>(kHeightFields).selected();
    writeState(settings_.outputPath, state::kOutputPath);
    writeState(settings_.shpPath, state::kShapeFile);
    writeState(pointFolder_, state::kCoordinateFolder);
    writeState(settings_.overwritePoints ? "1" : "0", state::kShapeImportOption);
    end(ui::kOk);
}

// Points that were imported and are to be drawn.
struct PointsToDraw {
    ImportShpSettings settings;
    ImportResultList names;
};

// The import from the dialog to its last line. Nothing where no points are to be drawn.
std::optional<PointsToDraw> importByDialog() {
    ImportDialog dialog;
    if (RunDialog(dialog) != ui::kOk) return std::nullopt;
    const ImportShpSettings& settings = dialog.settings();
    if (settings.templatePath.empty()) {
        ui::messageBox("Error", "Please run GIS Settings!");
        return std::nullopt;
    }
    const std::optional<ImportReport> report = ImportShp(settings);
    if (!report) return std::nullopt;
    const bool draws =
        !report->points.empty() && ui::askYesNo("Alert", "Draw Points from " + settings.crdPath + "?");
    TellImport(settings, *report);
    return draws ? std::optional(PointsToDraw{settings, report->points}) : std::nullopt;
}

void addTexts(ResultChain& list, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) list.addText(RTSTR, text);
}

}  // namespace

void ImportShpDialogRun(Call& call) {
    call.result = Nil{};
    const std::optional<PointsToDraw> points = importByDialog();
    if (!points) return;
    SetLispString("ret_string", points->settings.crdPath);
    ResultChain names;
    addTexts(names, points->names);
    call.result = ResultBuffers(names.take());
}

void ImportLinkedPoints(Call& call) {
    call.result = Nil{};
    const std::optional<PointsToDraw> points = importByDialog();
    if (!points) return;
    const ImportShpSettings& settings = points->settings;
    ResultChain list;
    addTexts(list, {settings.crdPath});
    list.add(RTLB);
    addTexts(list, {settings.templatePath, settings.outputPath, settings.tableName});
    list.add(RTLE);
    list.add(RTLB);
    std::unordered_set<std::string> drawn;
    for (const std::string& name : points->names)
        if (drawn.insert(name).second) list.addText(RTSTR, name);
    list.add(RTLE);
    call.result = ResultBuffers(list.take());
}

}  // namespace norvane
