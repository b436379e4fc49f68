#include "module/records/records_panel.h"

#include <algorithm>
#include <set>
#include <utility>

#include "module/cad/shown_entities.h"
#include "module/dialogs/progress_dialog.h"
#include "module/records/drawing_selection.h"
#include "module/records/erase_records.h"
#include "module/records/key_index.h"
#include "module/records/records_output.h"
#include "module/selection/select_records.h"
#include "module/settings/current_databases.h"
#include "module/settings/dialog_state.h"
#include "module/setup/database_chooser.h"
#include "module/store/database.h"
#include "module/store/new_records.h"
#include "module/store/server_sign_in.h"
#include "module/store/user_tables.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_chain.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr const char* kTitle = "Records";
constexpr const char* kOtherDatabase = "Another database...";
constexpr const char* kCurrentDatabase = "The current output database";
constexpr int kWidestColumn = 40;  // characters
constexpr int kNarrowestColumn = 8;
constexpr std::chrono::milliseconds kBetweenPictures{150};  // while rows are found

constexpr const char* kChoices[] = {"All", "Of the selected entities", "Seen in the window", "Linked",
                                    "Not linked"};
constexpr const char* kModes[] = {"New selection", "Add to it", "Take out of it", "Of it only"};

// 4567 as "4 567".
std::string grouped(long count) {
    std::string digits = std::to_string(count);
    for (auto at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3)
        digits.insert(static_cast<size_t>(at), " ");
    return digits;
}

bool isThere(const std::string& output) {
    return !output.empty() && IsOutputThere(output);
}

}  // namespace

RecordsPanel::RecordsPanel(std::string output, std::string table)
    : Panel(kResource, kTitle),
      output_(std::move(output)),
      followsCurrent_(output_.empty()),
      wantedTable_(std::move(table)) {
    addControls();
    placeControls();
    explainControls();
}

RecordsPanel::~RecordsPanel() {
    grid().setSource(nullptr);
}

// --- How it looks ----------------------------------------------------------------------------------------

void RecordsPanel::addControls() {
    add<ui::Label>(kTable - 1, "&Table:");
    add<ui::DropDown>(kTable);
    add<ui::Label>(kFilter - 1, "Fi&lter:");
    add<ui::DropDown>(kFilter, true).setOffersItems();
    add<ui::Label>(kChoice - 1, "Sho&w:");
    auto& choices = add<ui::DropDown>(kChoice);
    for (const char* choice : kChoices) choices.addItem(choice);
    choices.select(0);
    add<ui::Label>(kFault).show(false);
    add<ui::Grid>(kGrid);
    add<ui::Label>(kCount);
    add<ui::Label>(kState);
    add<ui::Button>(kZoom, "&Zoom To");
    auto& modes = add<ui::DropDown>(kMode);
    for (const char* mode : kModes) modes.addItem(mode);
    modes.select(0);
    add<ui::Button>(kSelectShown, "Sele&ct Shown");
    add<ui::Button>(kNew, "&New Record...");
    add<ui::Button>(kErase, "E&rase...");
    add<ui::Button>(kEraseNew, "Erase &Unlinked...");
    add<ui::Button>(kCopy, "Cop&y");
    add<ui::Button>(kSave, "&Save as CSV...");
}

void RecordsPanel::placeControls() {
    using namespace ui;
    setLayout(column({row({item(kTable - 1), item(kTable), item(kFilter - 1), item(kFilter, 1),
                           item(kChoice - 1), item(kChoice)}),
                      row({item(kFault, 1)}), item(kGrid, 1), row({item(kCount), item(kState, 1)}),
                      row({item(kZoom), item(kMode), item(kSelectShown), spring(), item(kNew), item(kErase),
                           item(kEraseNew), item(kCopy), item(kSave)})}));
    setSize({900, 300});
}

void RecordsPanel::explainControls() {
    find(kTable)->setExplanation("F5 reads the table anew.");
    find(kFilter)->setExplanation(
        "Words that all occur in a record, or a condition on its fields: DBH > 30 AND SPECIES LIKE 'oak*'.");
    find(kChoice)->setExplanation("Which records are shown, by the entities that lead to them.");
    find(kZoom)->setExplanation("Shows the entities of the rows that are taken.");
    find(kMode)->setExplanation("How the entities join those that are selected.");
    find(kSelectShown)->setExplanation("Selects the entities of all records that are shown.");
    find(kNew)->setExplanation("Opens the sheet for the entity that is selected.");
    find(kErase)->setExplanation("Erases the rows that are taken, after a question.");
    find(kEraseNew)->setExplanation("Erases records that were made new and whose links undo has taken back.");
    find(kCopy)->setExplanation("Puts the rows that are taken into the clipboard. Ctrl+C takes cells alone.");
    find(kSave)->setExplanation("Writes all records that are shown.");
    grid().setSelectsCells(true);
    grid().setWidestColumn(kWidestColumn);
    grid().setFrozenColumns(1);
}

void RecordsPanel::say(const std::string& text) {
    find(kState)->setText(text::replaceAll(text, "\n", " "));  // a line
}

// --- The table -------------------------------------------------------------------------------------------

void RecordsPanel::onOpen() {
    openOutput();
    setFocus(kFilter);
}

void RecordsPanel::openOutput() {
    if (followsCurrent_) output_ = CurrentOutputPath();
    if (records_ && wantedTable_.empty()) wantedTable_ = records_->table();
    closeTable("");
    std::vector<std::string> tables;
    std::string problem;
    if (output_.empty())
        problem = "No output database is chosen.";
    else if (!isThere(output_))
        problem = "There is no database " + dao::DatabasePath(output_).text() + ".";
    try {
        if (problem.empty()) {
            CDaoDatabase database;
            OpenDatabase(database, output_);
            tables = UserTables(database);
            if (tables.empty()) problem = "The database has no tables yet.";
        }
    } catch (const CDaoException& error) {
        problem = error.description();
    }
    const std::string shown = tableToShow(tables);
    fillTables(tables, shown);
    if (shown.empty())
        closeTable(problem);
    else
        openTable(shown);
}

// The one that is wanted, or was shown last, else the first.
std::string RecordsPanel::tableToShow(const std::vector<std::string>& tables) {
    for (const std::string& wanted : {std::exchange(wantedTable_, {}), readState(state::kRecordsTable)})
        for (const std::string& table : tables)
            if (text::equalNoCase(table, wanted)) return table;
    return tables.empty() ? std::string() : tables.front();
}

void RecordsPanel::fillTables(const std::vector<std::string>& tables, const std::string& shown) {
    auto& list = get<ui::DropDown>(kTable);
    list.clearItems();
    for (const std::string& table : tables) list.addItem(table);
    list.addItem(kOtherDatabase);
    if (!followsCurrent_) list.addItem(kCurrentDatabase);
    list.select(shown.empty() ? -1 : list.findExact(shown));
}

void RecordsPanel::openTable(const std::string& table) {
    closeTable("");
    try {
        records_ = std::make_unique<RecordsTable>(output_, table, CurrentTemplatePath());
    } catch (const CDaoException& error) {
        return closeTable(error.description());
    }
    if (followsCurrent_) writeState(table, state::kRecordsTable);
    isIndexSettled_ = false;
    prepareGrid();
    find(kFilter)->setText("");
    records_->choose(static_cast<RecordChoice>(get<ui::DropDown>(kChoice).selected()));
    offer();
    say(records_->obstacle());
    own_.clear();
    followSelection(true);
    followSeen();
    show();
    wake();
}

void RecordsPanel::closeTable(const std::string& why) {
    grid().setSource(nullptr);
    grid().setColumns(0);
    records_.reset();
    fault_.reset();
    say(why);
    show();
}

void RecordsPanel::prepareGrid() {
    constexpr int kCountWidth = 5;
    grid().setRedraw(false);
    grid().setColumns(records_->columns());
    grid().setColumnHeading(1, "Links");
    grid().setColumnType(1, ui::CellType::fixed());
    grid().setColumnWidthInCharacters(1, kCountWidth);
    for (int column = RecordsTable::kFirstField; column <= records_->columns(); ++column) {
        const CDaoFieldInfo& field =
            records_->fields()[static_cast<size_t>(column - RecordsTable::kFirstField)];
        grid().setColumnHeading(column, field.name);
        grid().setColumnType(column,
                             records_->obstacle().empty() ? ui::CellType::edit() : ui::CellType::fixed());
        grid().setColumnWidthInCharacters(column,
                                          std::max(kNarrowestColumn, ui::characterCount(field.name) + 2));
    }
    grid().setSource(records_.get());
    grid().setActive(std::min(RecordsTable::kFirstField, grid().columns()), 1);
    grid().setOrderMark(0, false);
    grid().setRedraw(true);
}

void RecordsPanel::chooseDatabase() {
    const std::string folder = IsOdbcPath(output_) ? "" : files::folderOf(output_);
    const std::optional<std::string> chosen = ChooseDatabase(DatabaseChooser::kOutput, folder);
    if (!running()) return;
    if (chosen) {
        output_ = *chosen;
        followsCurrent_ = text::equalNoCase(output_, CurrentOutputPath());
    }
    openOutput();
}

void RecordsPanel::showTable(const std::string& output, const std::string& table) {
    if (!writeRow()) return;
    followsCurrent_ = output.empty();
    if (!output.empty()) output_ = output;
    wantedTable_ = table;
    openOutput();
}

void RecordsPanel::refresh() {
    if (!records_) return openOutput();
    if (!writeRow()) return;
    if (!records_->refresh() || !records_->view().fault().empty()) return openOutput();
    records_->followLinks();
    showRows();
    wake();
}

// --- Following -------------------------------------------------------------------------------------------

void RecordsPanel::onWindowChange(const ui::WindowChange& change) {
    // A small table is read anew after each command, a large one where links have changed: whoever saves a
    // sheet writes the link too.
    constexpr long kQuicklyRead = 20'000;
    if (change.drawing) {
        if (followsCurrent_ && !text::equalNoCase(CurrentOutputPath(), output_)) openOutput();
        const bool haveLinksChanged = records_ && records_->followLinks();
        if (records_ && (haveLinksChanged || records_->view().total() <= kQuicklyRead))
            if (!records_->refresh()) openOutput();
    }
    if (!records_) return;
    if (change.drawing || change.selection) followSelection(change.drawing);
    if (change.drawing || change.view) followSeen();
    showRows();
    wake();
}

void RecordsPanel::followSelection(bool isForced) {
    std::vector<EntityName> selected = SelectedEntities();
    const bool isOther = !SameEntities(selected, selected_);
    selected_ = std::move(selected);
    if (!records_ || !(isOther || isForced)) return;
    const bool isOwn = !own_.empty() && SameEntities(selected_, own_);
    if (!isOwn) own_.clear();
    records_->followSelection(selected_, isOwn);
    if (isOwn || !isOther) return;
    if (const std::optional<int> row = records_->markedRow(); row && writeRow())
        grid().setActive(std::max(1, grid().active().column), *row);
}

void RecordsPanel::followSeen() {
    if (records_ && records_->choice() == RecordChoice::kSeen) records_->followSeen(SeenEntities());
}

// A row that is half typed is written before something else begins.
void RecordsPanel::onRest() {
    grid().setEditing(false);
    if (!writeRow()) acutPrintf("\nRecords: %s", find(kState)->text().c_str());
}

bool RecordsPanel::work(std::chrono::milliseconds most) {
    if (!records_) return false;
    const bool goesOn = records_->view().work(most);
    const auto now = std::chrono::steady_clock::now();
    if (!goesOn || now - rowsShown_ > kBetweenPictures) showRows();
    if (!goesOn) askForIndex();
    return goesOn;
}

void RecordsPanel::askForIndex() {
    if (isIndexSettled_ || !records_ || records_->keyField().empty()) return;
    isIndexSettled_ = true;
    static std::set<std::string> asked;  // since the program was started
    const std::string name = text::upper(output_ + "\n" + records_->table());
    try {
        if (!NeedsIndex(records_->database(), records_->table(), records_->keyField()) ||
            !asked.insert(name).second)
            return;
        const std::string question =
            records_->table() + " has " + grouped(records_->view().total()) + " records and no index of " +
            records_->keyField() +
            ".\nWith one, records are found at once by the entities that lead to them.\n\nMake it now?";
        if (ui::ask({"Index", question}) != ui::kYes || !records_) return;
        MakeIndex(records_->database(), records_->table(), records_->keyField());
        say("The index is made.");
        refresh();
    } catch (const CDaoException& error) {
        say(error.description());
    }
}

void RecordsPanel::showRows() {
    rowsShown_ = std::chrono::steady_clock::now();
    grid().sourceChanged();
    show();
}

void RecordsPanel::show() {
    const bool isShown = records_ != nullptr;
    for (int id : {kFilter, kChoice, kGrid, kMode}) find(id)->enable(isShown);
    const bool hasRows = isShown && records_->rows() > 0;
    find(kCopy)->enable(hasRows);
    find(kSave)->enable(hasRows);
    find(kSelectShown)->enable(hasRows && !records_->keyField().empty());
    find(kErase)->enable(hasRows && records_->obstacle().empty());
    find(kEraseNew)->enable(!UnlinkedNewRecords().empty());
    find(kZoom)->enable(hasRows && !records_->entitiesOfRows(taken().first.row, taken().first.row).empty());
    find(kNew)->enable(followsCurrent_ && selected_.size() == 1);
    std::string count;
    if (isShown) {
        const RecordView& view = records_->view();
        count = grouped(view.shown()) + " of " + grouped(view.total()) + (view.isWorking() ? " ..." : "");
        if (!view.fault().empty()) say(view.fault());
        grid().setOrderMark(records_->orderColumn(), view.order().descending);
    }
    find(kCount)->setText(count);
}

// --- The filter ------------------------------------------------------------------------------------------

void RecordsPanel::filter() {
    if (!records_ || !writeRow()) return;
    const FilterText filter = ReadFilterText(find(kFilter)->text(), records_->fields());
    fault_ = filter.fault;
    showFault();
    if (filter.fault) return;
    records_->setFilter(filter);
    grid().setActive(std::max(RecordsTable::kFirstField, grid().active().column), 1);
    say("");
    showRows();
    wake();
}

void RecordsPanel::showFault() {
    ui::Control& label = *find(kFault);
    label.setText(fault_ ? FaultSentence(find(kFilter)->text(), *fault_) : "");
    label.show(fault_.has_value());
}

void RecordsPanel::offer() {
    auto& list = get<ui::DropDown>(kFilter);
    const std::string typed = list.text();
    list.clearItems();
    if (!records_) return;
    auto values = [this](size_t field, const std::string& beginning) {
        return records_->someValues(field, beginning);
    };
    for (std::string& offered : FilterOffers(typed, records_->fields(), values))
        list.addItem(std::move(offered));
}

void RecordsPanel::onTextChange(ui::Control& control) {
    if (control.id() != kFilter) return;
    offer();
    filter();
}

// --- What a person does -----------------------------------------------------------------------------------

void RecordsPanel::onSelection(ui::Control& control) {
    if (control.id() == kFilter) {
        offer();
        return filter();
    }
    if (control.id() == kTable) {
        if (!writeRow()) return;
        const std::string chosen = get<ui::DropDown>(kTable).selectedText();
        if (chosen == kOtherDatabase) return chooseDatabase();
        if (chosen == kCurrentDatabase) return showTable("", "");
        return openTable(chosen);
    }
    if (control.id() == kChoice && records_ && writeRow()) {
        const auto choice = static_cast<RecordChoice>(get<ui::DropDown>(kChoice).selected());
        if (choice == RecordChoice::kSeen) records_->followSeen(SeenEntities());
        own_.clear();
        if (choice == RecordChoice::kSelected) records_->followSelection(selected_, false);
        records_->choose(choice);
        grid().setActive(std::max(RecordsTable::kFirstField, grid().active().column), 1);
        showRows();
        wake();
    }
}

void RecordsPanel::onCommand(int id) {
    if (!records_) return;
    switch (id) {
        case kZoom:
            return zoom();
        case kSelectShown:
            return selectShown();
        case kNew:
            return newRecord();
        case kErase:
            return erase();
        case kEraseNew:
            return eraseNew();
        case kCopy:
            return copy();
        case kSave:
            return save();
        default:
            return;
    }
}

void RecordsPanel::onFocus(ui::Control& control) {
    if (control.id() != kGrid)
        writeRow();
    else if (records_)
        records_->enter(grid().active().row);
}

void RecordsPanel::onCellsTaken(ui::Grid&) {
    if (!records_) return;
    records_->enter(grid().active().row);
    if (const std::string message = records_->takeMessage(); !message.empty()) {
        say(message);
        grid().sourceChanged();
    }
    selectRows();
    show();
}

void RecordsPanel::onCellChange(ui::Grid& grid, ui::CellPosition at) {
    say(records_->takeMessage());
    grid.cellChanged(at.column, at.row);
}

void RecordsPanel::onCellRefused(ui::Grid&, ui::CellPosition, const std::string& typed) {
    say("\"" + typed + "\" is not taken. " + records_->takeMessage());
}

bool RecordsPanel::onCellDoubleClick(ui::Grid&, ui::CellPosition at) {
    if (at.column >= RecordsTable::kFirstField) return false;
    zoom();
    return true;
}

void RecordsPanel::onHeadingClick(ui::Grid&, int column) {
    if (!records_ || !writeRow()) return;
    if (!records_->sortBy(column)) say("Records have no order by their links.");
    showRows();
    wake();
}

bool RecordsPanel::onKey(const ui::Key& key) {
    if (key.is("F5")) {
        refresh();
    } else if (key.is("Escape") && !grid().editing() && records_ && records_->view().isWorking()) {
        records_->view().stop();
        say("Stopped. What has been found until now is shown.");
        showRows();
    } else if (key.is("Enter") && focus() == kFilter) {
        if (!fault_) {
            setFocus(kGrid);
            return true;
        }
        say("Mend the condition, or empty the filter.");
    } else {
        return focus() == kGrid && onGridKey(key);
    }
    return true;
}

bool RecordsPanel::onGridKey(const ui::Key& key) {
    const bool isUndo = key.control && !key.alt && text::equalNoCase(key.name, "Z");
    if (isUndo && !grid().editing()) {
        undo();
    } else if (key.is("F2")) {
        grid().setEditing(true);
    } else if (key.is("Enter")) {
        // As in any table, on to the row below.
        grid().setEditing(false);
        const ui::CellPosition at = grid().active();
        if (at.row < grid().rows())
            userActivate(grid(), {at.column, at.row + 1});
        else
            writeRow();
    } else {
        return false;
    }
    return true;
}

void RecordsPanel::onClose() {
    grid().setEditing(false);
    if (!writeRow()) {
        const std::string question =
            find(kState)->text() + "\n\nClose the panel all the same? What was typed into the row is lost.";
        if (ui::ask({kTitle, question}) != ui::kYes) return;
    }
    Panel::onClose();
}

// --- Changes ----------------------------------------------------------------------------------------------

bool RecordsPanel::writeRow() {
    if (!records_) return true;
    const bool isWritten = records_->leave();
    if (const std::string message = records_->takeMessage(); !message.empty()) {
        say(message);
        grid().sourceChanged();
    }
    return isWritten;
}

void RecordsPanel::undo() {
    if (!records_) return;
    if (records_->isChanged()) {
        records_->drop();
        say("What was typed into the row is taken back.");
    } else if (records_->undo()) {
        say(records_->takeMessage());
    } else {
        say("There is nothing to take back.");
    }
    records_->enter(grid().active().row);
    showRows();
}

void RecordsPanel::newRecord() {
    if (selected_.size() != 1 || !writeRow()) return;
    perform([this, entity = selected_.front()] {
        ResultChain call;
        call.addText(RTSTR, "gis:new-record");
        ads_name_set(entity.name, call.add(RTENAME).resval.rlname);
        call.addText(RTSTR, records_ ? records_->table() : "");
        ResultBuffers result;
        if (acedInvoke(call.get(), result.out()) != RTNORM)
            say("The commands of the product are not loaded.");
        refresh();
    });
}

void RecordsPanel::erase() {
    if (!writeRow()) return;
    perform([this] {
        if (!records_) return;
        RowsToErase rows;
        rows.output = output_;
        rows.table = records_->table();
        if (!records_->keyField().empty()) rows.keyField = records_->keyField();
        rows.rows = records_->valuesOfRows(taken().first.row, taken().last.row);
        records_->drop();
        std::string message;
        try {
            message = EraseRows(records_->database(), rows).message;
        } catch (const CDaoException& error) {
            message = error.description();
        }
        if (!message.empty()) acutPrintf("\n%s", message.c_str());
        refresh();
        say(message);
    });
}

// Those of all tables that the last run has left.
void RecordsPanel::eraseNew() {
    if (!writeRow()) return;
    perform([this] {
        const std::string message = EraseNewRecords().message;
        if (!message.empty()) acutPrintf("\n%s", message.c_str());
        refresh();
        say(message);
    });
}

// --- Entities and output ----------------------------------------------------------------------------------

void RecordsPanel::selectRows() {
    if (records_->keyField().empty()) return;
    own_ = records_->entitiesOfRows(taken().first.row, taken().last.row);
    ChangeSelection(SelectionMode::kNew, own_);
    followSelection(false);
}

void RecordsPanel::selectShown() {
    if (!writeRow()) return;
    const std::vector<EntityName> entities = records_->entitiesShown([] { return acedUsrBrk() == 1; });
    const auto mode = static_cast<SelectionMode>(get<ui::DropDown>(kMode).selected());
    const size_t selected = ChangeSelection(mode, entities);
    own_ = SelectedEntities();
    followSelection(true);
    showRows();
    say(text::counted(static_cast<long>(selected), "entity is selected.", "entities are selected."));
}

void RecordsPanel::zoom() {
    if (!records_) return;
    perform([this] {
        const std::vector<EntityName> entities =
            records_->entitiesOfRows(taken().first.row, taken().last.row);
        if (entities.empty()) return say("No entity leads to these records.");
        ShownEntities().show(entities);
    });
}

void RecordsPanel::copy() {
    const ui::CellRange range = taken();
    ui::backend()->setClipboard(RecordsAsText(*records_, range.first.row, range.last.row));
    say(text::counted(range.rows(), "row is in the clipboard.", "rows are in the clipboard."));
}

void RecordsPanel::save() {
    if (!writeRow()) return;
    ui::FileBox box;
    box.save = true;
    box.title = "Save Records";
    box.filter = "Comma Separated Values (*.csv)|*.csv||";
    box.pattern = records_->table() + ".csv";
    box.folder = IsOdbcPath(output_) ? "" : files::folderOf(output_);
    box.defaultExtension = "csv";
    box.askOverwrite = true;
    const std::optional<std::string> path = ui::fileBox(box);
    if (!path || !records_) return;
    const int count = records_->rows();
    ProgressDialog progress("Save Records", count);
    const CsvOutcome outcome = SaveRecordsAsCsv(*records_, *path, [&](int rows) {
        return progress.step(rows, "Record " + grouped(rows) + " of " + grouped(count));
    });
    say(outcome == CsvOutcome::kWritten
            ? text::counted(count, "record is", "records are") + " in " + *path + "."
        : outcome == CsvOutcome::kStopped ? "Stopped. Nothing was written."
                                          : "Cannot write " + *path + ".");
}

// --- The function -----------------------------------------------------------------------------------------

void ShowRecordsPanel(Call& call) {
    std::string output, table;
    const bool isNamed = call.arguments.text(output);
    call.arguments.text(table);
    call.result = Nil{};
    if (!CheckDao()) return;
    if (auto* open = dynamic_cast<RecordsPanel*>(ui::openPanel(RecordsPanel::kResource))) {
        if (isNamed) open->showTable(output, table);
        open->enter();
        return;
    }
    if (!ui::showPanel(std::make_unique<RecordsPanel>(std::move(output), std::move(table))))
        acutPrintf("\nThe panel of records cannot be shown.");
}

}  // namespace norvane
