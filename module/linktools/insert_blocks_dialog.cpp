#include "module/linktools/insert_blocks_dialog.h"

#include <algorithm>
#include <numbers>

#include "module/cad/ads_owners.h"
#include "module/cad/block_attributes.h"
#include "module/cad/drawing_folder.h"
#include "module/cad/group_list.h"
#include "module/cad/layers.h"
#include "module/dialogs/file_boxes.h"
#include "module/settings/dialog_state.h"
#include "module/store/database.h"
#include "module/store/server_sign_in.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 164;
constexpr int kBlocks = 1001, kTables = 1002, kLayers = 1003;
constexpr int kSelectOutput = 1004, kSelectPoints = 1005;
constexpr int kGrid = 1010, kBar = 1020;
constexpr int kOutput = 1101, kPoints = 1102, kBlock = 1103, kTable = 1104, kLayer = 1105;
constexpr int kSymbolScale = 1106, kAttributeScale = 1107, kRotation = 1108;
constexpr int kOutputCaption = 1201, kPointsCaption = 1202, kBlocksCaption = 1203, kBlockCaption = 1204,
              kTablesCaption = 1205, kTableCaption = 1206, kLayersCaption = 1207, kLayerCaption = 1208,
              kGridCaption = 1209, kSymbolCaption = 1210, kAttributeCaption = 1211, kRotationCaption = 1212,
              kDegreesCaption = 1213, kScaleGroup = 1301;
// Ours.
constexpr int kPlacesInRecords = 1901, kNotice = 1902;

constexpr int kTagColumn = 1, kFieldColumn = 2;
constexpr int kListRows = 6;

// The place of a text in a list, without regard to case; -1 for none.
int placeOf(const std::vector<std::string>& texts, const std::string& wanted) {
    for (size_t i = 0; i < texts.size(); ++i)
        if (text::equalNoCase(texts[i], wanted)) return static_cast<int>(i);
    return -1;
}

void fill(ui::List& list, const std::vector<std::string>& items, const std::string& selected) {
    list.clearItems();
    for (const std::string& item : items) list.addItem(item);
    list.select(placeOf(items, selected));
}

// The blocks of the drawing that have attributes.
std::vector<std::string> blocksWithAttributes() {
    std::vector<std::string> names;
    AcDbBlockTable* opened = nullptr;
    acdbCurDwg()->getBlockTable(opened, AcDb::kForRead);
    const OpenObject<AcDbBlockTable> table(opened);
    for (ResultBuffers block(acdbTblNext("BLOCK", 1)); block; block.reset(acdbTblNext("BLOCK", 0))) {
        const std::string name = GroupText(block.get(), 2);
        AcDbBlockTableRecord* record = nullptr;
        if (name.starts_with("*") || !table ||
            table->getAt(name.c_str(), record, AcDb::kForRead) != Acad::eOk)
            continue;
        const OpenObject<AcDbBlockTableRecord> definition(record);
        if (definition->hasAttributeDefinitions()) names.push_back(name);
    }
    return names;
}

// The number of a text; a comma is its point, too.
std::optional<double> numberIn(const std::string& typed) {
    return text::wholeReal(text::trim(text::replaceAll(typed, ",", ".")));
}

}  // namespace

// --- Its controls ----------------------------------------------------------------------------------------

InsertBlocksDialog::InsertBlocksDialog(InsertBlocksInput input)
    : ui::Dialog(kResource, "Insert Blocks Using GIS Data"),
      input_(std::move(input)),
      blocks_(blocksWithAttributes()),
      layers_(LayerNames()) {
    for (const std::string& block : input_.fileBlocks)
        if (placeOf(blocks_, block) < 0) blocks_.push_back(block);
    addSources();
    addLists();
    addAttributes();
    addButtons();
    using namespace ui;
    Layout sources = table({row({item(kOutputCaption), item(kOutput, 1), item(kSelectOutput)}),
                            row({item(kPointsCaption), item(kPoints), item(kSelectPoints)})});
    Layout lists = row(
        {column({item(kBlocksCaption), item(kBlocks, 1), item(kMakeBlock), item(kBlockCaption), item(kBlock)},
                1),
         column({item(kTablesCaption), item(kTables, 1), item(kTableCaption), item(kTable)}, 1),
         column({item(kLayersCaption), item(kLayers, 1), item(kLayerCaption), item(kLayer)}, 1)},
        1);
    Layout look =
        column({group(kScaleGroup, {table({row({item(kSymbolCaption), item(kSymbolScale, 1)}),
                                           row({item(kAttributeCaption), item(kAttributeScale)})})}),
                row({item(kRotationCaption), item(kRotation, 1), item(kDegreesCaption)}), spring()});
    Layout attributes = row({column({item(kGridCaption), item(kGrid, 1)}, 1), std::move(look)}, 1);
    setLayout(column({std::move(sources), item(kPlacesInRecords), std::move(lists), std::move(attributes),
                      item(kNotice), item(kBar), row({spring(), item(kOk), item(kCancel)})}));
    setSize({780, 570});
}

void InsertBlocksDialog::addSources() {
    add<ui::Label>(kOutputCaption, "Output MDB File:");
    add<ui::Edit>(kOutput, true);
    add<ui::Button>(kSelectOutput, "Select &MDB File");
    add<ui::Label>(kPointsCaption, "Input CRD File   :");
    add<ui::Edit>(kPoints, true);
    add<ui::Button>(kSelectPoints, "Select &CRD File");
    add<ui::CheckBox>(kPlacesInRecords, "Places from NO&RTHING, EASTING and ELEVATION of the records");
}

void InsertBlocksDialog::addLists() {
    add<ui::Label>(kBlocksCaption, "Select Block to Process:");
    add<ui::List>(kBlocks, false, kListRows);
    add<ui::Button>(kMakeBlock, "Select Block &File");
    add<ui::Label>(kBlockCaption, "Current Block:");
    add<ui::Edit>(kBlock, true);
    add<ui::Label>(kTablesCaption, "Tables in Output MDB:");
    add<ui::List>(kTables, false, kListRows);
    add<ui::Label>(kTableCaption, "Table Used to Import GIS data:");
    add<ui::Edit>(kTable, true);
    add<ui::Label>(kLayersCaption, "Layers in Current DWG:");
    add<ui::List>(kLayers, false, kListRows);
    add<ui::Label>(kLayerCaption, "Layer Used to Create Blocks:");
    add<ui::Edit>(kLayer);
}

void InsertBlocksDialog::addAttributes() {
    constexpr double kTagWidth = 16, kFieldWidth = 20;  // characters
    add<ui::Label>(kGridCaption, "Block Attributes:");
    auto& grid = add<ui::Grid>(kGrid, 2);
    grid.setColumnHeading(kTagColumn, "Attribute Name:");
    grid.setColumnHeading(kFieldColumn, "Field Name:");
    grid.setColumnWidthInCharacters(kTagColumn, kTagWidth);
    grid.setColumnWidthInCharacters(kFieldColumn, kFieldWidth);
    grid.setColumnType(kTagColumn, ui::CellType::fixed());
    add<ui::GroupBox>(kScaleGroup, "Scale Factor for Block:");
    add<ui::Label>(kSymbolCaption, "Symbol:");
    add<ui::Edit>(kSymbolScale);
    add<ui::Label>(kAttributeCaption, "Attribute:");
    add<ui::Edit>(kAttributeScale);
    add<ui::Label>(kRotationCaption, "Rotation angle:");
    add<ui::Edit>(kRotation);
}

void InsertBlocksDialog::addButtons() {
    add<ui::Progress>(kBar);
    add<ui::Button>(ui::kOk, "&Draw", true);
    add<ui::Button>(ui::kCancel, "E&xit");
    // Behind all the others: a label names the control that follows it.
    add<ui::Label>(kDegreesCaption, "(Degrees)");
    add<ui::Label>(kNotice);
}

// --- What it shows ---------------------------------------------------------------------------------------

void InsertBlocksDialog::onOpen() {
    find(kOutput)->setText(input_.output);
    find(kPoints)->setText(input_.pointFile);
    find(kLayer)->setText(input_.layer);
    find(kSymbolScale)->setText(input_.symbolScale);
    find(kAttributeScale)->setText(input_.attributeScale);
    find(kRotation)->setText(input_.rotation);
    get<ui::CheckBox>(kPlacesInRecords).check(input_.isInRecords);
    fill(get<ui::List>(kLayers), layers_, input_.layer);
    showBlocks();
    if (CheckDao()) readTables();
    showAttributes();
    showPlaces();
    notify(std::exchange(input_.notice, {}));
    setFocus(input_.output.empty() ? kSelectOutput : blocks_.empty() ? kMakeBlock : kBlocks);
}

void InsertBlocksDialog::readTables() {
    tables_.clear();
    if (IsOutputThere(input_.output))
        WithDatabase(input_.output, [&](CDaoDatabase& database) { tables_ = ReadPlacementTables(database); });
    std::vector<std::string> names;
    for (const PlacementTable& one : tables_) names.push_back(one.name);
    if (placeOf(names, input_.table) < 0) input_.table.clear();
    fill(get<ui::List>(kTables), names, input_.table);
    find(kTable)->setText(input_.table);
}

void InsertBlocksDialog::showBlocks() {
    if (placeOf(blocks_, input_.block) < 0) input_.block.clear();
    fill(get<ui::List>(kBlocks), blocks_, input_.block);
    find(kBlock)->setText(input_.block);
}

// The attributes of the block, each with the field that was chosen for it last where the table has it.
void InsertBlocksDialog::showAttributes() {
    auto& grid = get<ui::Grid>(kGrid);
    const std::vector<std::string> tags =
        input_.block.empty() ? std::vector<std::string>() : BlockTags(input_.block);
    const std::vector<std::string> fields =
        chosenTable() ? chosenTable()->textFields : std::vector<std::string>();
    grid.setRedraw(false);
    grid.setRows(0);
    grid.setColumnType(kFieldColumn, ui::CellType::dropDown("\t" + text::join(fields, "\t")));
    grid.setRows(static_cast<int>(tags.size()));
    for (size_t i = 0; i < tags.size(); ++i) {
        const int row = static_cast<int>(i) + 1;
        const auto chosen = input_.fields.find(tags[i]);
        const int field = chosen == input_.fields.end() ? -1 : placeOf(fields, chosen->second);
        grid.setText(kTagColumn, row, tags[i]);
        if (field >= 0) grid.setText(kFieldColumn, row, fields[static_cast<size_t>(field)]);
    }
    grid.setActive(kFieldColumn, 1);
    grid.setRedraw(true);
}

void InsertBlocksDialog::showPlaces() {
    const bool canBe = chosenTable() && chosenTable()->hasCoordinates;
    auto& inRecords = get<ui::CheckBox>(kPlacesInRecords);
    inRecords.enable(canBe);
    inRecords.setExplanation(canBe ? "" : "The table has no fields NORTHING and EASTING.");
    input_.isInRecords = inRecords.checked();
    const bool used = canBe && input_.isInRecords;
    for (const int id : {kPointsCaption, kPoints, kSelectPoints}) find(id)->enable(!used);
}

const PlacementTable* InsertBlocksDialog::chosenTable() const {
    const auto chosen = std::find_if(tables_.begin(), tables_.end(),
                                     [&](const PlacementTable& one) { return one.name == input_.table; });
    return chosen == tables_.end() ? nullptr : &*chosen;
}

void InsertBlocksDialog::notify(const std::string& text) {
    find(kNotice)->setText(text.empty() ? concern() : text);
}

std::string InsertBlocksDialog::concern() const {
    const std::string layer(text::trim(find(kLayer)->text()));
    if (placeOf(layers_, layer) < 0) return "The drawing has no layer \"" + layer + "\".";
    if (IsLayerHidden(layer)) return "The layer \"" + layer + "\" is hidden: its blocks will not be seen.";
    for (const auto& [edit, otherwise] :
         {std::pair(kSymbolScale, "1"), {kAttributeScale, "1"}, {kRotation, "0"}}) {
        const std::optional<double> number = numberIn(find(edit)->text());
        const std::string typed = "\"" + find(edit)->text() + "\"";
        if (!number) return typed + " is no number; " + otherwise + " is used in its place.";
        if (*number == 0 && edit != kRotation) return typed + " is no factor; 1 is used in its place.";
    }
    if (chosenTable() && input_.pointFile.empty() && find(kSelectPoints)->enabled())
        return "Without a CRD file there is no point for any record.";
    return "";
}

// --- What is done in it ----------------------------------------------------------------------------------

void InsertBlocksDialog::onCommand(int id) {
    if (isReading_ && id != ui::kCancel) return;
    switch (id) {
        case kSelectOutput:
            return selectOutput();
        case kSelectPoints:
            return selectPoints();
        case kMakeBlock:
            return selectBlockFile();
        case kPlacesInRecords:
            showPlaces();
            return notify();
        default:
            Dialog::onCommand(id);
    }
}

void InsertBlocksDialog::selectOutput() {
    const std::string old = input_.output;
    const std::string folder = IsOdbcPath(old) || old.empty() ? DrawingFolder() : files::folderOf(old);
    const std::optional<std::string> path = AskExistingOutput(folder);
    if (!path || *path == old) return;
    input_.output = dao::DatabasePath(*path);
    writeState(input_.output, state::kOutputPath);
    find(kOutput)->setText(input_.output);
    readTables();
    showAttributes();
    showPlaces();
    notify();
}

void InsertBlocksDialog::selectPoints() {
    std::string folder = readState(state::kCoordinateFolder);
    if (folder.empty()) folder = DrawingFolder();
    const std::optional<std::string> path = AskPointsOfRecords(folder);
    if (!path) return;
    if (!text::equalNoCase(files::extensionOf(*path), "CRD"))
        return notify("\"" + files::nameOf(*path) +
                      "\" is no coordinate file: its name does not end in .crd.");
    input_.pointFile = *path;
    writeState(files::folderOf(*path), state::kCoordinateFolder);
    find(kPoints)->setText(*path);
    notify();
}

void InsertBlocksDialog::selectBlockFile() {
    const std::string folder = input_.blockFile.empty() ? DrawingFolder() : files::folderOf(input_.blockFile);
    const std::optional<std::string> path = AskBlockFile(folder);
    if (!path) return;
    const std::string name = BlockNameOf(*path);
    if (placeOf(blocks_, name) >= 0) {
        ui::messageBox("Error", "This block already exist!");
        return;
    }
    if (acdbSNValid(name.c_str(), 0) != RTNORM)
        return notify("\"" + name + "\" cannot be the name of a block.");
    if (const ResultBuffers known(acdbTblSearch("BLOCK", name.c_str(), 0)); known) {
        ui::OwnQuestion question;
        question.title = "Select Block File";
        question.text =
            "The drawing has a block \"" + name +
            "\" without attributes. It becomes what the file is, wherever it stands in the drawing.\n"
            "Do you want to take the file?";
        question.defaultAnswer = ui::kYes;
        if (ui::ask(question) != ui::kYes) return;
    }
    input_.blockFile = *path;
    readInput();
    end(kMakeBlock);
}

void InsertBlocksDialog::onSelection(ui::Control& control) {
    if (isReading_ || get<ui::List>(control.id()).selected() < 0) return;
    const std::string chosen = get<ui::List>(control.id()).selectedText();
    switch (control.id()) {
        case kBlocks:
            input_.block = chosen;
            find(kBlock)->setText(chosen);
            showAttributes();
            break;
        case kTables:
            input_.table = chosen;
            find(kTable)->setText(chosen);
            showAttributes();
            showPlaces();
            break;
        case kLayers:
            find(kLayer)->setText(chosen);
            break;
        default:
            return;
    }
    notify();
}

void InsertBlocksDialog::onTextChange(ui::Control& control) {
    if (control.id() == kLayer)
        get<ui::List>(kLayers).select(placeOf(layers_, std::string(text::trim(control.text()))));
    notify();
}

void InsertBlocksDialog::onCellChange(ui::Grid&, ui::CellPosition at) {
    keepField(at.row);
}

void InsertBlocksDialog::onUndo(ui::Grid& grid) {
    for (int row = 1; row <= grid.rows(); ++row) keepField(row);
}

// A field that another table had stays chosen for the time when that table is.
void InsertBlocksDialog::keepField(int row) {
    const auto& grid = get<ui::Grid>(kGrid);
    const std::string tag = grid.text(kTagColumn, row), field = grid.text(kFieldColumn, row);
    if (!field.empty())
        input_.fields[tag] = field;
    else if (chosenTable() && placeOf(chosenTable()->textFields, input_.fields[tag]) >= 0)
        input_.fields.erase(tag);
}

std::vector<AttributeField> InsertBlocksDialog::chosenFields() const {
    const auto& grid = get<ui::Grid>(kGrid);
    std::vector<AttributeField> chosen;
    for (int row = 1; row <= grid.rows(); ++row)
        if (const std::string field = grid.text(kFieldColumn, row); !field.empty())
            chosen.push_back({grid.text(kTagColumn, row), field});
    return chosen;
}

void InsertBlocksDialog::readInput() {
    input_.layer = std::string(text::trim(find(kLayer)->text()));
    input_.symbolScale = find(kSymbolScale)->text();
    input_.attributeScale = find(kAttributeScale)->text();
    input_.rotation = find(kRotation)->text();
}

// --- Drawing ---------------------------------------------------------------------------------------------

// What is used is told in the edit.
double InsertBlocksDialog::readNumber(int edit, double otherwise) {
    double number = numberIn(find(edit)->text()).value_or(otherwise);
    if (number == 0) number = otherwise;
    find(edit)->setText(text::format("%.3lf", number));
    return number;
}

std::string InsertBlocksDialog::whyNotDrawn() const {
    if (placeOf(blocks_, input_.block) < 0) return "Please choose a block first.";
    return chosenTable() ? "" : "Please choose a table first.";
}

void InsertBlocksDialog::onOk() {
    // Enter in a list must not start the work.
    if (focus() != ui::kOk || isReading_) return;
    look_.symbolScale = readNumber(kSymbolScale, 1);
    look_.attributeScale = readNumber(kAttributeScale, 1);
    look_.rotation = readNumber(kRotation, 0) * std::numbers::pi / 180.0;
    readInput();
    if (const std::string reason = whyNotDrawn(); !reason.empty()) return notify(reason);
    look_.block = input_.block;
    look_.layer = input_.layer;
    source_.output = input_.output;
    source_.table = input_.table;
    source_.attributes = chosenFields();
    source_.isInRecords = find(kPlacesInRecords)->enabled() && input_.isInRecords;
    source_.pointFile = source_.isInRecords ? "" : input_.pointFile;
    RememberFields(source_.attributes);
    // Links are made to the output that is remembered.
    if (readState(state::kOutputPath) != input_.output.text()) writeState(input_.output, state::kOutputPath);
    if (readRecords()) end(ui::kOk);
}

bool InsertBlocksDialog::readRecords() {
    isReading_ = true;
    isStopped_ = false;
    nextPicture_ = {};
    std::optional<BlockPlacements> read =
        ReadPlacements(source_, [&](long done, long total) { return goOn(done, total); });
    isReading_ = false;
    endWaiting();
    get<ui::Progress>(kBar).setPosition(0);
    if (isStopped_) notify("Stopped while records were read; nothing is drawn.");
    if (read) placements_ = std::move(*read);
    return read.has_value();
}

bool InsertBlocksDialog::goOn(long done, long total) {
    auto& bar = get<ui::Progress>(kBar);
    if (done == 0) bar.setRange(0, static_cast<int>(total));
    bar.setPosition(static_cast<int>(done + 1));
    const auto interval = ui::backend()->pictureInterval(kResource);
    if (!interval) return true;
    const auto now = std::chrono::steady_clock::now();
    if (done == 0) nextPicture_ = now + *interval;
    if (now < nextPicture_) return true;
    nextPicture_ = now + *interval;
    beginWaiting();
    takeEvents();
    return !isStopped_ && running();
}

void InsertBlocksDialog::beginWaiting() {
    if (!waiting_.empty()) return;
    setFocus(ui::kCancel);
    for (const auto& control : controls())
        if (control->enabled() && control->id() != ui::kCancel && control->id() != kBar) {
            waiting_.push_back(control->id());
            control->enable(false);
        }
    find(ui::kCancel)->setText("&Stop");
}

void InsertBlocksDialog::endWaiting() {
    for (const int id : waiting_) find(id)->enable();
    if (!waiting_.empty()) setFocus(ui::kOk);
    waiting_.clear();
    find(ui::kCancel)->setText("E&xit");
}

void InsertBlocksDialog::onCancel() {
    if (isReading_)
        isStopped_ = true;
    else
        end(ui::kCancel);
}

}  // namespace norvane
