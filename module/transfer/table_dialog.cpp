#include "module/transfer/table_dialog.h"

#include <algorithm>
#include <memory>

#include "module/cad/shown_entities.h"
#include "module/dialogs/progress_dialog.h"
#include "module/dialogs/run_dialog.h"
#include "module/store/database.h"
#include "module/store/link_index.h"
#include "module/store/server_sign_in.h"
#include "module/transfer/table_chooser.h"
#include "module/transfer/table_sheet_keys.h"
#include "module/transfer/table_sheet_notes.h"
#include "module/transfer/table_sheet_stored.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 162;
constexpr int kSave = ui::kOk;
constexpr int kQuit = ui::kCancel;
constexpr int kGrid = 1001;
constexpr int kLockHint = 1002;
constexpr int kProgress = 1003;
constexpr int kFindCaption = 1901;
constexpr int kFindText = 1902;
constexpr int kFindNext = 1903;
constexpr int kWordsCaption = 1904;
constexpr int kWords = 1905;
constexpr int kShowWords = 1906;
constexpr int kSort = 1907;
constexpr int kLock = 1908;
constexpr int kShowEntity = 1909;
constexpr int kState = 1910;

constexpr const char* kAlert = "Alert";
constexpr int kWidestColumn = 60;  // characters
constexpr int kNarrowestColumn = 8;

std::string counted(size_t count, const char* one, const char* many) {
    return text::counted(static_cast<long>(count), one, many);
}

// What a save did and what it left out, in one line.
std::string summaryOf(const TableSheet::Report& report) {
    std::string line = counted(report.values, "value of ", "values of ") +
                       counted(report.records, "record saved", "records saved");
    if (!report.leftOut.empty())
        line += ", " + counted(report.leftOut.size(), "left out or cut: ", "left out or cut, the first: ") +
                report.leftOut.front();
    if (report.failed > 0) line += ", " + counted(report.failed, "record refused", "records refused");
    if (!report.changedByOthers.empty())
        line += ", " + counted(report.changedByOthers.size(), "record left as others have changed it",
                               "records left as others have changed them");
    if (!report.isWhole) line += ", ended before all was written";
    return line + ".";
}

void printLeftOut(const std::vector<std::string>& lines) {
    constexpr size_t kMostLines = 50;
    for (size_t i = 0; i < std::min(lines.size(), kMostLines); ++i) acutPrintf("\n  %s", lines[i].c_str());
    if (lines.size() > kMostLines) acutPrintf("\n  ... and %zu more.", lines.size() - kMostLines);
}

class TableDialog : public ui::Dialog {
  public:
    explicit TableDialog(TableSheet& sheet);

    size_t written() const { return written_; }

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onOk() override;
    void onCancel() override;
    bool onKey(const ui::Key& key) override;
    void onKeyUp(const ui::Key& key, int presses) override;
    void onCellChange(ui::Grid& grid, ui::CellPosition at) override;
    void onCellClick(ui::Grid& grid, ui::CellPosition at) override;
    void onHeadingClick(ui::Grid& grid, int column) override;
    void onFocus(ui::Control&) override { sheet_.beginStep(); }

    bool isPreview() const { return sheet_.rowsPerRecord() == 2; }
    void addControls();
    void placeControls();
    void prepareGrid();
    bool follow(TableSheetKeys::Outcome outcome);
    bool onGridKey(const ui::Key& key);
    void noteChange();
    void undo();

    // Work that goes through records: false when the person ended it, or the engine's words have been shown.
    bool work(const char* title, long steps, const std::function<bool(const TableSheet::GoOn&)>& what);
    void showRecord(long record, int column);
    void findNext();
    void showWords();
    void sort(int column);
    void toggleLock(int row);
    void showEntity();
    void readAnew();
    bool save();
    TableSheet::Report saveAsking();
    void say(const std::string& text) { find(kState)->setText(text); }

    TableSheet& sheet_;
    ui::Grid& grid_;
    TableSheetKeys keys_;
    ShownEntities shownEntities_;
    bool changed_ = false;
    size_t written_ = 0;
};

TableDialog::TableDialog(TableSheet& sheet)
    : ui::Dialog(kResource, sheet.title()),
      sheet_(sheet),
      grid_(add<ui::Grid>(kGrid, static_cast<int>(sheet.columns().size()))),
      keys_(sheet.firstColumn(), sheet.rowsPerRecord()) {
    addControls();
    placeControls();
    prepareGrid();
}

// --- How it looks ----------------------------------------------------------------------------------------

void TableDialog::addControls() {
    add<ui::Label>(kLockHint, "Click in first cell if you want to lock a row!").show(isPreview());
    add<ui::Label>(kFindCaption, "&Find:");
    add<ui::Edit>(kFindText);
    add<ui::Button>(kFindNext, "Find &Next");
    add<ui::Label>(kWordsCaption, "&Words:");
    add<ui::Edit>(kWords);
    add<ui::Button>(kShowWords, "Show &Records");
    add<ui::Button>(kSort, "S&ort");
    add<ui::Button>(kLock, "&Lock Row").show(isPreview());
    add<ui::Button>(kShowEntity, "Show &Entity")
        .show(sheet_.columnNamed("PT_ID").has_value() && !isPreview());
    add<ui::Progress>(kProgress);
    add<ui::Label>(kState);
    add<ui::Button>(kSave, "&Save", true).enable(false);
    add<ui::Button>(kQuit, "&Quit");
    find(kFindText)->setExplanation("The next cell that holds this text. F3 goes on from there.");
    find(kWords)->setExplanation("Only records in which all of these words stand; all without words.");
    find(kSort)->setExplanation(
        "By the column of the active cell, as a click on its heading does: upwards, downwards, as in the "
        "table. "
        "The table itself stays as it is.");
}

void TableDialog::placeControls() {
    using namespace ui;
    setLayout(
        column({item(kGrid, 1), item(kLockHint),
                row({item(kFindCaption), item(kFindText, 1), item(kFindNext), item(kWordsCaption),
                     item(kWords, 1), item(kShowWords)}),
                row({item(kState, 1), item(kProgress)}),
                row({item(kSort), item(kLock), item(kShowEntity), spring(), item(kSave), item(kQuit)})}));
    setSize({900, 560});
}

void TableDialog::prepareGrid() {
    grid_.setFont({"Courier New", 16, 8, 400});
    grid_.setWholeRows(true);
    grid_.setSelectsCells(true);
    grid_.setWidestColumn(kWidestColumn);
    const std::vector<SheetColumn>& columns = sheet_.columns();
    int keys = 0;
    for (size_t i = 0; i < columns.size(); ++i) {
        const int column = static_cast<int>(i) + 1;
        grid_.setColumnHeading(column, columns[i].name);
        grid_.setColumnType(column, CellTypeOf(columns[i]));
        grid_.setColumnWidthInCharacters(column,
                                         std::max(kNarrowestColumn, ui::characterCount(columns[i].name) + 2));
        if (columns[i].is("PT_ID") || columns[i].is("GIS_KEY")) keys = column;
    }
    grid_.setFrozenColumns(std::min(keys, 2));
    grid_.setSource(&sheet_);
    grid_.setActive(std::min(sheet_.firstColumn(), grid_.columns()), 1);
}

void TableDialog::onOpen() {
    find(kProgress)->show(false);
    say(sheet_.obstacle().empty() ? counted(static_cast<size_t>(sheet_.records()), "record", "records")
                                  : sheet_.obstacle());
    setFocus(kGrid);
}

// --- Keys and clicks ---------------------------------------------------------------------------------------

bool TableDialog::onKey(const ui::Key& key) {
    sheet_.beginStep();
    if (key.is("F3")) {
        findNext();
    } else if (key.is("F5")) {
        readAnew();
    } else if (key.control && !key.alt && text::equalNoCase(key.name, "F")) {
        setFocus(kFindText);
    } else if (focus() == kFindText && key.is("Enter")) {
        findNext();
    } else if (focus() == kWords && key.is("Enter")) {
        showWords();
    } else {
        return focus() == kGrid && onGridKey(key);
    }
    return true;
}

bool TableDialog::onGridKey(const ui::Key& key) {
    const bool isUndo = key.control && !key.alt && text::equalNoCase(key.name, "Z");
    if (isUndo && !grid_.editing()) {
        undo();
    } else if (key.is("F2")) {
        grid_.setEditing(true);
    } else if (key.is("F4")) {
        grid_.setEditing(false);
        focusNext(key.shift);
    } else {
        return follow(keys_.press(grid_, key));
    }
    return true;
}

void TableDialog::onKeyUp(const ui::Key& key, int presses) {
    if (focus() == kGrid) follow(keys_.letGo(grid_, key, presses));
}

// Whether a key was the grid's.
bool TableDialog::follow(TableSheetKeys::Outcome outcome) {
    if (outcome == TableSheetKeys::Outcome::kNotOurs) return false;
    if (outcome != TableSheetKeys::Outcome::kDone)
        focusNext(outcome == TableSheetKeys::Outcome::kLeaveBackwards);
    return true;
}

// In a preview a click into the first cell of a note locks its row and leads to its values, as one into the
// second cell of any row does. Any other into a row that stands in the database leads to the row above it.
void TableDialog::onCellClick(ui::Grid& grid, ui::CellPosition at) {
    sheet_.beginStep();
    if (!isPreview()) return;
    const bool isNote = at.row % 2 == 1;
    if (at.column == 1 && isNote && grid.columns() > 2) toggleLock(at.row);
    if (at.column == 2 || (at.column == 1 && isNote))
        grid.setActive(sheet_.firstColumn(), at.row);
    else if (!isNote)
        grid.setActive(at.column, at.row - 1);
}

void TableDialog::onHeadingClick(ui::Grid&, int column) {
    sort(column);
}

void TableDialog::onCommand(int id) {
    switch (id) {
        case kFindNext:
            return findNext();
        case kShowWords:
            return showWords();
        case kSort:
            return sort(grid_.active().column);
        case kLock:
            return toggleLock(grid_.active().row);
        case kShowEntity:
            return showEntity();
        default:
            Dialog::onCommand(id);
    }
}

// --- Changes -----------------------------------------------------------------------------------------------

void TableDialog::noteChange() {
    changed_ = true;
    find(kSave)->enable(sheet_.obstacle().empty());
}

void TableDialog::onCellChange(ui::Grid& grid, ui::CellPosition at) {
    const long record = sheet_.recordOf(at.row);
    const auto column = static_cast<size_t>(at.column - 1);
    const std::string message = sheet_.checkChange(record, column);
    const TakenValue taken = TakeText(sheet_.shownText(record, column), sheet_.columns()[column]);
    say(taken.value ? "" : "Left out when it is saved: " + taken.fault + ".");
    noteChange();
    grid.cellChanged(at.column, at.row);
    if (!message.empty()) ui::messageBox("Error", message);
}

void TableDialog::undo() {
    const auto changed = sheet_.undo();
    if (!changed) return say("There is nothing to take back.");
    showRecord(changed->first, static_cast<int>(changed->second) + 1);
    grid_.sourceChanged();
    say("Taken back.");
}

void TableDialog::toggleLock(int row) {
    if (row < 1 || row > grid_.rows()) return;
    const long record = sheet_.recordOf(row);
    sheet_.toggleLock(record);
    find(kSave)->enable();
    // What was typed into a row that is not locked any more is still to be saved.
    if (sheet_.hasChangesToSave()) changed_ = true;
    const int first = sheet_.rowOf(record);
    for (int column = 1; column <= grid_.columns(); ++column) grid_.cellChanged(column, first);
    say(sheet_.isLocked(record) ? "The row is locked: it is not saved." : "The row is not locked any more.");
}

// --- Looking through the records ---------------------------------------------------------------------------

bool TableDialog::work(const char* title, long steps,
                       const std::function<bool(const TableSheet::GoOn&)>& what) {
    ProgressDialog progress(title, steps, acedUsrBrk);
    bool isDone = false;
    const bool isSound = ShowDatabaseErrors([&] {
        isDone = what([&](long done) { return progress.step(done, "Record " + std::to_string(done + 1)); });
    });
    return isSound && isDone;
}

void TableDialog::showRecord(long record, int column) {
    const int row = sheet_.rowOf(record);
    if (row > 0) grid_.setActive(column, row);
}

void TableDialog::findNext() {
    grid_.setEditing(false);
    const std::string wanted = find(kFindText)->text();
    if (wanted.empty()) {
        setFocus(kFindText);
        return say("Type what is to be found.");
    }
    std::optional<ui::CellPosition> found;
    bool isWhole = true;
    work("Find", grid_.rows(), [&](const TableSheet::GoOn& goOn) {
        found = sheet_.find(wanted, grid_.active(), [&](long done) { return isWhole = goOn(done); });
        return true;
    });
    if (found) {
        setFocus(kGrid);
        grid_.setActive(found->column, found->row);
    }
    say(found     ? "Found in row " + std::to_string(found->row) + "."
        : isWhole ? "\"" + wanted + "\" stands in no cell that is shown."
                  : "The search was ended.");
}

void TableDialog::showWords() {
    grid_.setEditing(false);
    std::vector<std::string> words;
    for (const std::string& word : text::split(find(kWords)->text(), ' '))
        if (!word.empty()) words.push_back(word);
    const bool isDone = work("Show records", sheet_.records(),
                             [&](const TableSheet::GoOn& goOn) { return sheet_.showWithWords(words, goOn); });
    if (!isDone) return say("Ended: the same records are shown as before.");
    grid_.sourceChanged();
    grid_.setActive(sheet_.firstColumn(), 1);
    say(std::to_string(sheet_.shownRecords()) + " of " +
        counted(static_cast<size_t>(sheet_.records()), "record", "records") + " shown.");
}

// Upwards, downwards, and as the records stand in the table.
void TableDialog::sort(int column) {
    grid_.setEditing(false);
    TableSheet::Order order{column - 1, false};
    if (sheet_.order() == order)
        order.descending = true;
    else if (sheet_.order().column == order.column)
        order = {};
    const long record = grid_.rows() > 0 ? sheet_.recordOf(grid_.active().row) : -1;
    const bool isDone = work("Sort", sheet_.shownRecords(),
                             [&](const TableSheet::GoOn& goOn) { return sheet_.sortBy(order, goOn); });
    if (!isDone) return say("Ended: the order is the same as before.");
    grid_.setOrderMark(order.column + 1, order.descending);
    grid_.sourceChanged();
    if (record >= 0) showRecord(record, grid_.active().column);
    say(order.column < 0 ? "In the order of the table."
                         : "In the order of " + sheet_.columns()[static_cast<size_t>(order.column)].name +
                               (order.descending ? ", from the last." : "."));
}

// The view goes to the entities that are linked to the record of the active cell.
void TableDialog::showEntity() {
    if (grid_.rows() == 0) return say("There is no record.");
    const long record = sheet_.recordOf(grid_.active().row);
    const std::string id = sheet_.readText(record, *sheet_.columnNamed("PT_ID"));
    const std::vector<EntityName> entities =
        EntitiesOfRecord(sheet_.output(), sheet_.table(), "PT_ID", text::upper(text::trim(id)));
    if (entities.empty()) return say("No entity of the drawing is linked to PT_ID " + id + ".");
    shownEntities_.show(entities);
    say(counted(entities.size(), "entity is", "entities are") + " linked to PT_ID " + id + ".");
}

void TableDialog::readAnew() {
    grid_.setEditing(false);
    if (!ShowDatabaseErrors([&] { sheet_.readAnew(); })) return;
    if (!sheet_.hasChanges()) find(kWords)->setText("");
    grid_.setOrderMark(sheet_.order().column + 1, sheet_.order().descending);
    grid_.sourceChanged();
    say(sheet_.hasChanges()
            ? "Read anew. Records of others are read once the changes are saved."
            : "Read anew: " + counted(static_cast<size_t>(sheet_.records()), "record.", "records."));
}

// --- Saving and leaving ------------------------------------------------------------------------------------

TableSheet::Report TableDialog::saveAsking() {
    TableSheet::Report report;
    auto pass = [&](TableSheet::OthersChanges others) {
        const bool isDone = work("Save", sheet_.saveSteps(), [&](const TableSheet::GoOn& goOn) {
            auto& bar = get<ui::Progress>(kProgress);
            TableSheet::Report done = sheet_.save(others, [&](long step) {
                bar.setPosition(static_cast<int>(step));
                return goOn(step);
            });
            done.records += report.records;
            done.values += report.values;
            done.leftOut.insert(done.leftOut.begin(), report.leftOut.begin(), report.leftOut.end());
            report = std::move(done);
            return true;
        });
        if (!isDone) report.isWhole = false;
        return isDone;
    };
    if (!pass(TableSheet::OthersChanges::kAsk) || report.changedByOthers.empty()) return report;
    ui::OwnQuestion question;
    question.title = "Changed by others";
    question.text =
        counted(report.changedByOthers.size(),
                "record has been changed by somebody else since it was read.\nDo you want to write "
                "your values into it?",
                "records have been changed by somebody else since they were read.\nDo you want to "
                "write your values into them?");
    if (ui::ask(question) == ui::kYes) pass(TableSheet::OthersChanges::kOverwrite);
    return report;
}

// Whether all is written that was to be.
bool TableDialog::save() {
    grid_.setEditing(false);
    find(kProgress)->show();
    get<ui::Progress>(kProgress).setRange(0, static_cast<int>(sheet_.saveSteps()));
    const TableSheet::Report report = saveAsking();
    find(kProgress)->show(false);
    written_ += report.records;
    grid_.sourceChanged();
    if (report.failed > 0)
        ui::messageBox(
            "Error",
            report.failure + (report.failed > 1 ? "\n\n" + std::to_string(report.failed) +
                                                      " records were refused; this was said of the first."
                                                : ""));
    changed_ = sheet_.hasChangesToSave();
    find(kSave)->enable(changed_);
    say(summaryOf(report));
    if (!report.isWhole) return false;
    acutPrintf("\n%s: %s", sheet_.table().c_str(), summaryOf(report).c_str());
    printLeftOut(report.leftOut);
    ui::reportSuccess(kAlert, "Process done...");
    return !changed_;
}

void TableDialog::onOk() {
    if (focus() != kSave || !find(kSave)->enabled()) return;
    if (ui::askYesNo(kAlert, "Are you sure you want to update this table?")) save();
    if (!find(kSave)->enabled()) setFocus(kGrid);
}

void TableDialog::onCancel() {
    grid_.setEditing(false);
    // What could not be saved keeps the dialog open.
    if (changed_ && ui::askYesNo(kAlert, "Would you like to save the changes?") && !save()) return;
    end(ui::kCancel);
}

template <class Sheet, class... Arguments>
size_t show(const std::string& output, const Arguments&... arguments) {
    if (!CheckDao()) return 0;
    std::unique_ptr<TableSheet> sheet;
    if (!ShowDatabaseErrors([&] { sheet = std::make_unique<Sheet>(output, arguments...); })) return 0;
    TableDialog dialog(*sheet);
    RunDialog(dialog);
    return dialog.written();
}

}  // namespace

size_t EditTable(const std::string& output, const std::string& table) {
    return show<StoredTableSheet>(output, table);
}

size_t PreviewRecords(const std::string& output, const std::string& feature,
                      std::span<const NoteRecord> records) {
    return show<NoteSheet>(output, feature, records);
}

void EditChosenTable(Call& call) {
    std::string output, table;
    call.arguments.text(output), call.arguments.text(table);
    call.result = Nil{};
    if (output.empty() || table.empty()) {
        const std::optional<ChosenTable> chosen = ChooseTable(output);
        if (!chosen) return;
        output = chosen->output, table = chosen->table;
    }
    // A password that the text has goes no further.
    output = TakePassword(output);
    call.result = static_cast<int>(EditTable(output, table));
}

}  // namespace norvane
