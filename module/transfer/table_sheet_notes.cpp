#include "module/transfer/table_sheet_notes.h"

#include <algorithm>
#include <array>

#include "module/store/database.h"
#include "module/store/keyed_records.h"
#include "module/store/output_database.h"
#include "module/store/user_tables.h"
#include "platform/dao/convert.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kPointId = 0, kGisKey = 1;

std::string keyOfValues(const std::string& id, const std::string& feature) {
    const std::array<std::string, 2> values = {id, feature};
    return text::upper(KeyedRecords::KeyOf(values));
}

// The column that a kind of note value gets.
CDaoFieldInfo newField(const SheetColumn& column) {
    if (column.is("PT_ID") || column.is("GIS_KEY")) return KeyColumn(column.name);
    if (column.value == CellValue::kWhole) return AttributeColumn(column.name, FieldKind::kInt);
    if (column.value == CellValue::kReal) return AttributeColumn(column.name, FieldKind::kReal);
    return AttributeColumn(column.name, FieldKind::kChar);
}

SheetColumn columnOfKind(const std::string& name, const std::string& kind) {
    SheetColumn column = ColumnOf(AttributeColumn(name, FieldKind::kChar), -1);
    column.value = CellValueOfKind(kind);
    column.type = kind == "2" ? dbLong : kind == "4" ? dbDouble : dbText;
    // What gets a new column of text is text.
    if (column.type == dbText) column.value = CellValue::kText;
    return column;
}

// A text of a note as its cell shows it: words for yes and no are those of its list.
std::string cellText(const std::string& text, const SheetColumn& column) {
    if (column.value != CellValue::kYesNo) return text;
    return ShownText(*TakeText(text, column).value, column.value);
}

// As much of a text as a column holds.
std::string cutToSize(const std::string& text, long characters) {
    size_t end = 0;
    for (long n = 0; end < text.size() && n < characters; ++n) text::nextCodePoint(text, end);
    return text.substr(0, end);
}

}  // namespace

NoteSheet::NoteSheet(const std::string& output, const std::string& feature,
                     std::span<const NoteRecord> records)
    : TableSheet(output, feature) {
    OpenDatabase(database_, output);
    takeColumns(records);
    openTable();
    takeNotes(records);
}

std::string NoteSheet::title() const {
    return "Preview/Edit Values for Feature  -  " + table();
}

// --- What the notes say -----------------------------------------------------------------------------------

void NoteSheet::takeColumns(std::span<const NoteRecord> records) {
    columns_ = {columnOfKind("PT_ID", "6"), columnOfKind("GIS_KEY", "6")};
    for (const NoteRecord& record : records)
        for (const NoteValue& value : record)
            if (!columnNamed(value.name)) columns_.push_back(columnOfKind(value.name, value.kind));
    columns_ = PointColumnsFirst(std::move(columns_));
}

// Of a field that comes twice the last text that is not empty counts.
void NoteSheet::takeNotes(std::span<const NoteRecord> records) {
    for (const NoteRecord& record : records) {
        std::vector<std::string>& texts = notes_.emplace_back(columns_.size());
        for (const NoteValue& value : record) {
            const std::string trimmed(text::trim(value.value));
            const size_t place = *columnNamed(value.name);
            if (!trimmed.empty()) texts[place] = cellText(trimmed, columns_[place]);
        }
        if (texts[kGisKey].empty()) texts[kGisKey] = table();
    }
}

void NoteSheet::openTable() {
    stored_.reset();
    byKey_.clear();
    storedTable_ = FindUserTable(database_, table());
    for (SheetColumn& column : columns_) column.field = -1;
    if (storedTable_.empty()) return;
    stored_ = std::make_unique<StoredRecords>(database_, storedTable_);
    for (size_t i = 0; i < stored_->fields().size(); ++i)
        if (const std::optional<size_t> place = columnNamed(stored_->fields()[i].name)) {
            const std::string name = columns_[*place].name;
            columns_[*place] = ColumnOf(stored_->fields()[i], static_cast<int>(i));
            columns_[*place].name = name;
        }
    const int id = columns_[kPointId].field, feature = columns_[kGisKey].field;
    if (id < 0 || feature < 0) return;
    // The first of several records of one key is the one that is written.
    for (long record = 0; record < stored_->count(); ++record) {
        CDaoRecordset& records = stored_->at(record);
        if (records.IsEOF()) break;
        byKey_.try_emplace(
            keyOfValues(dao::toText(records.GetFieldValue(id)), dao::toText(records.GetFieldValue(feature))),
            record);
    }
}

std::string NoteSheet::keyOf(long record) const {
    return keyOfValues(shownText(record, kPointId), shownText(record, kGisKey));
}

std::string NoteSheet::readText(long record, size_t column) const {
    return notes_[static_cast<size_t>(record)][column];
}

dao::Variant NoteSheet::readValue(long record, size_t column) const {
    const std::string text = readText(record, column);
    TakenValue taken = TakeText(text, columns_[column]);
    return taken.value ? *taken.value : dao::Variant(text);
}

std::string NoteSheet::otherText(long record, size_t column) const {
    const auto found = byKey_.find(keyOf(record));
    const int field = columns_[column].field;
    return found == byKey_.end() || field < 0 ? "" : stored_->text(found->second, field);
}

const ui::CellType* NoteSheet::type(int column, int row) const {
    static const ui::CellType kFixed = ui::CellType::fixed();
    const bool takesValues = row % 2 == 1 && column >= firstColumn() &&
                             FitsCell(readText(recordOf(row), static_cast<size_t>(column - 1)));
    return takesValues ? nullptr : &kFixed;
}

void NoteSheet::readAnew() {
    openTable();
}

// --- Saving ----------------------------------------------------------------------------------------------

void NoteSheet::makeTable() {
    const bool isNew = storedTable_.empty();
    const bool isComplete = std::all_of(columns_.begin(), columns_.end(),
                                        [](const SheetColumn& column) { return column.field >= 0; });
    if (!isNew && isComplete) return;
    CDaoTableDef definition(&database_);
    if (isNew)
        definition.Create(table());
    else
        definition.Open(storedTable_);
    for (const SheetColumn& column : columns_)
        if (column.field < 0) definition.CreateField(newField(column));
    if (isNew) definition.Append();
    definition.Close();
    openTable();
}

long NoteSheet::sizeOf(const SheetColumn& column) const {
    return stored_->fields()[static_cast<size_t>(column.field)].size;
}

void NoteSheet::saveRecord(long record, Report& report) {
    const std::string id = shownText(record, kPointId);
    if (id.empty()) {
        report.leftOut.push_back("Record " + std::to_string(record + 1) + ": it has no PT_ID");
        return;
    }
    const auto found = byKey_.find(keyOf(record));
    CDaoRecordset& records = stored_->at(found == byKey_.end() ? 0 : found->second);
    if (found == byKey_.end())
        records.AddNew();
    else
        records.Edit();
    size_t values = 0;
    for (size_t i = 0; i < columns_.size(); ++i) {
        const SheetColumn& column = columns_[i];
        const std::string text = shownText(record, i);
        if (text.empty()) continue;
        const std::string kept = column.type == dbText ? cutToSize(text, sizeOf(column)) : text;
        if (kept.size() < text.size())
            report.leftOut.push_back("PT_ID " + id + ", " + column.name + ": cut to the " +
                                     std::to_string(sizeOf(column)) + " characters of its column");
        TakenValue taken = TakeText(kept, column);
        if (!taken.value) {
            report.leftOut.push_back("PT_ID " + id + ", " + column.name + ": " + taken.fault);
            continue;
        }
        records.SetFieldValue(column.field, std::move(*taken.value));
        ++values;
    }
    records.Update();
    if (found == byKey_.end()) {
        byKey_[keyOf(record)] = stored_->count();
        stored_->noteAdded();
    }
    report.values += values;
    ++report.records;
}

// What has been written is what the notes say from now on.
void NoteSheet::keepChanges() {
    const auto written = changes();
    for (const auto& [record, texts] : written)
        for (const auto& [column, text] : texts) {
            if (isLocked(record)) continue;
            notes_[static_cast<size_t>(record)][column] = text;
            forgetChange(record, column);
        }
    forgetHistory();
}

TableSheet::Report NoteSheet::save(OthersChanges, const GoOn& goOn) {
    Report report;
    const bool isFile = !database_.GetConnect().onServer();
    if (isFile) database_.BeginTrans();
    try {
        makeTable();
        for (long record = 0; record < records() && report.isWhole; ++record) {
            if (isLocked(record)) continue;
            report.isWhole = goOn(record + 1);
            if (report.isWhole) saveRecord(record, report);
        }
        if (isFile && report.isWhole)
            database_.CommitTrans();
        else if (isFile)
            database_.Rollback();
    } catch (...) {
        if (isFile) database_.Rollback();
        ShowDatabaseErrors([&] { openTable(); });
        throw;
    }
    openTable();
    if (report.isWhole) keepChanges();
    return report;
}

}  // namespace norvane
