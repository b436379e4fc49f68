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
#include "module/store/link_index.h"
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

constexpr const char* kOtherDatabase = "Another database...";
constexpr const char* kCurrentDatabase = "The current output database";
constexpr int kNarrowestColumn = 8;
constexpr std::chrono::milliseconds kBetweenPictures{150};  // while rows are found

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
    : output_(std::move(output)), followsCurrent_(output_.empty()), wantedTable_(std::move(table)) {}

RecordsPanel::~RecordsPanel() {
    grid().setSource(nullptr);
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
    awaitsTable_ = false;
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
            awaitsTable_ = tables.empty();
        }
    } catch (const CDaoException& error) {
        problem = error.description();
    }
    const std::string shown = tableToShow(tables);
    listTables(tables, shown);
    if (shown.empty())
        closeTable(problem);
    else
        openTable(shown);
}

// The one that is wanted, or was shown last, else the first.
std::string RecordsPanel::tableToShow(const std::vector<std::string>& tables) {
    if (tables.empty()) return {};
    for (const std::string& wanted : {std::exchange(wantedTable_, {}), readState(state::kRecordsTable)})
        for (const std::string& table : tables)
            if (text::equalNoCase(table, wanted)) return table;
    return tables.front();
}

void RecordsPanel::listTables(const std::vector<std::string>& tables, const std::string& shown) {
    auto& list = get<ui::DropDown>(kTable);
    list.clearItems();
    for (const std::string& table : tables) list.addItem(table);
    list.addItem(kOtherDatabase);
    if (!followsCurrent_) list.addItem(kCurrentDatabase);
    list.select(shown.empty() ? -1 : list.findExact(shown));
    tables_ = tables;
}

// A sheet makes the table of a feature when the first record is saved.
void RecordsPanel::followTables() {
    try {
        const std::vector<std::string> tables = UserTables(records_->database());
        if (tables != tables_) listTables(tables, records_->table());
    } catch (const CDaoException& error) {
        say(error.description());
    }
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
    showFault();
    offer();
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
    if (!chosen) return listTables(tables_, records_ ? records_->table() : "");
    output_ = *chosen;
    followsCurrent_ = text::equalNoCase(output_, CurrentOutputPath());
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
    followTables();
    showRows();
    wake();
}

// --- Following -------------------------------------------------------------------------------------------

void RecordsPanel::onWindowChange(const ui::WindowChange& change) {
    // The values that are seen are read anew after each command, and which records there are: of a small
    // table always, of a large one where links have changed, since whoever saves a sheet writes the link too.
    constexpr long kQuicklyRead = 20'000;
    if (change.drawing) {
        const bool isOther = followsCurrent_ && !text::equalNoCase(CurrentOutputPath(), output_);
        if (isOther || (awaitsTable_ && !IsOdbcPath(output_))) openOutput();
        followNewRecords();
        const bool haveLinksChanged = records_ && records_->followLinks();
        if (haveLinksChanged) followTables();
        if (records_ && !haveLinksChanged && records_->view().total() > kQuicklyRead)
            records_->view().noteAllChanged();
        else if (records_ && !records_->refresh())
            openOutput();
    }
    if (change.drawing || change.selection) followSelection(change.drawing);
    if (!records_) return show();
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
    seeksMarkedRow_ = true;
    goToMarkedRow();
}

// Once all rows are listed.
void RecordsPanel::goToMarkedRow() {
    if (!seeksMarkedRow_ || records_->view().isWorking()) return;
    seeksMarkedRow_ = false;
    if (const std::optional<int> row = records_->markedRow(); row && writeRow())
        grid().setActive(std::max(1, grid().active().column), *row);
}

// To find out costs a look at each record that was made, and its tables.
void RecordsPanel::followNewRecords() {
    const unsigned long revision = LinkIndex::OfDrawing().revision();
    if (linksRevision_ == revision) return;
    linksRevision_ = revision;
    hasUnlinkedNew_ = !UnlinkedNewRecords().empty();
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
    if (!goesOn) goToMarkedRow();
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
    find(kEraseNew)->show(hasUnlinkedNew_);  // seldom, and wide
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
        if (!writeRow()) return listTables(tables_, records_->table());
        const std::string chosen = get<ui::DropDown>(kTable).selectedText();
        if (chosen == kOtherDatabase) return chooseDatabase();
        if (chosen == kCurrentDatabase) return showTable("", "");
        return openTable(chosen);
    }
    if (control.id() == kChoice && records_) {
        auto& choices = get<ui::DropDown>(kChoice);
        if (!writeRow()) return choices.select(static_cast<int>(records_->choice()));
        const auto choice = static_cast<RecordChoice>(choices.selected());
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
    if (id == kNew) return newRecord();
    if (id == kEraseNew) return eraseNew();
    if (!records_) return;
    switch (id) {
        case kZoom:
            return zoom();
        case kSelectShown:
            return selectShown();
        case kErase:
            return erase();
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
    seeksMarkedRow_ = false;
    records_->enter(grid().active().row);
    if (records_->view().isWorking()) wake();
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

bool RecordsPanel::mayEnd() {
    grid().setEditing(false);
    if (writeRow()) return true;
    const std::string question =
        find(kState)->text() + "\n\nClose the panel all the same? What was typed into the row is lost.";
    return ui::ask({title(), question}) == ui::kYes;
}

// --- Changes ----------------------------------------------------------------------------------------------

bool RecordsPanel::writeRow() {
    if (!records_) return true;
    const bool isWritten = records_->leave();
    if (records_->view().isWorking()) wake();
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
    wake();
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
        std::string message;
        try {
            rows.rows = records_->valuesOfRows(taken().first.row, taken().last.row);
            records_->drop();
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
        linksRevision_.reset();
        refresh();
        say(message);
    });
}

// --- Entities and output ----------------------------------------------------------------------------------

// Rows are read for it; nothing where they are so many that a person would wait.
std::optional<std::vector<EntityName>> RecordsPanel::takenEntities() {
    constexpr int kMost = 10'000;
    if (taken().rows() <= kMost) return records_->entitiesOfRows(taken().first.row, taken().last.row);
    say("The entities of more than " + grouped(kMost) + " rows are selected by a filter and Select Shown.");
    return {};
}

void RecordsPanel::selectRows() {
    if (records_->keyField().empty()) return;
    std::optional<std::vector<EntityName>> entities = takenEntities();
    if (!entities) return;
    own_ = *std::move(entities);
    ChangeSelection(SelectionMode::kNew, own_);
    followSelection(false);
}

// Goes on to the end with what is still looked for. False: the person does not wait for it, or it cannot be
// read.
bool RecordsPanel::findAll() {
    constexpr std::chrono::milliseconds kSlice{20};
    ProgressDialog progress(title(), 0, [] { return acedUsrBrk() == 1; });
    while (records_ && records_->view().work(kSlice))
        if (!progress.step(0, grouped(records_->view().lookedAt()) + " records looked at")) {
            say("Stopped.");
            return false;
        }
    if (!records_) return false;
    showRows();
    return records_->view().fault().empty();
}

void RecordsPanel::selectShown() {
    if (!writeRow() || !findAll()) return;
    std::vector<EntityName> entities;
    try {
        entities = records_->entitiesShown([] { return acedUsrBrk() == 1; });
    } catch (const CDaoException& error) {
        return say(error.description());
    }
    const auto mode = static_cast<SelectionMode>(get<ui::DropDown>(kMode).selected());
    const size_t selected = ChangeSelection(mode, entities);
    own_ = SelectedEntities();
    followSelection(true);
    showRows();
    say(text::counted(static_cast<long>(selected), "entity is selected.", "entities are selected."));
}

void RecordsPanel::zoom() {
    perform([this] {
        if (!records_) return;
        const std::optional<std::vector<EntityName>> entities = takenEntities();
        if (!entities) return;
        if (entities->empty()) return say("No entity leads to these records.");
        ShownEntities().show(*entities);
    });
}

void RecordsPanel::copy() {
    const ui::CellRange range = taken();
    try {
        ui::backend()->setClipboard(RecordsAsText(*records_, range.first.row, range.last.row));
    } catch (const CDaoException& error) {
        return say(error.description());
    }
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
    if (!path || !records_ || !findAll()) return;
    const int count = records_->rows();
    ProgressDialog progress("Save Records", count);
    int written = 0;
    const auto goOn = [&](int records) {
        written = records;
        return progress.step(records, "Record " + grouped(records) + " of " + grouped(count));
    };
    try {
        const CsvOutcome outcome = SaveRecordsAsCsv(*records_, *path, goOn);
        say(outcome == CsvOutcome::kWritten
                ? text::counted(written, "record is", "records are") + " in " + *path + "."
            : outcome == CsvOutcome::kStopped ? "Stopped. Nothing was written."
                                              : "Cannot write " + *path + ".");
    } catch (const CDaoException& error) {
        say("Nothing was written. " + error.description());
    }
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
