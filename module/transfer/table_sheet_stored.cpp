#include "module/transfer/table_sheet_stored.h"

#include <algorithm>

#include "module/store/database.h"
#include "module/store/output_database.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

CDaoDatabase& opened(CDaoDatabase& database, const std::string& output) {
    OpenDatabase(database, output);
    return database;
}

}  // namespace

StoredTableSheet::Opened::Opened(const std::string& output, const std::string& table)
    : records(opened(database, output), table) {}

StoredTableSheet::StoredTableSheet(const std::string& output, const std::string& table)
    : TableSheet(output, table) {
    opened_ = std::make_unique<Opened>(output, table);
    std::vector<SheetColumn> columns;
    const std::vector<CDaoFieldInfo>& fields = opened_->records.fields();
    for (size_t i = 0; i < fields.size(); ++i) columns.push_back(ColumnOf(fields[i], static_cast<int>(i)));
    columns_ = PointColumnsFirst(std::move(columns));
}

std::string StoredTableSheet::title() const {
    return "Preview/Edit Values from Table  -  " + table();
}

std::string StoredTableSheet::obstacle() const {
    return opened_->records.isUpdatable() ? "" : "The records of " + table() + " cannot be changed.";
}

std::string StoredTableSheet::readText(long record, size_t column) const {
    return opened_->records.text(record, columns_[column].field);
}

dao::Variant StoredTableSheet::readValue(long record, size_t column) const {
    try {
        return opened_->records.value(record, columns_[column].field);
    } catch (const CDaoRecordDeleted&) {
        return {};  // it stands with the empty ones
    }
}

// What is typed belongs to the records that have been read.
void StoredTableSheet::readAnew() {
    if (hasChanges()) return opened_->records.forgetTexts();
    auto fresh = std::make_unique<Opened>(output(), table());
    if (fresh->records.fields().size() != columns_.size())
        throw CDaoException("The columns of " + table() + " have changed: open it anew.");
    opened_ = std::move(fresh);
    showAll();
}

const ui::CellType* StoredTableSheet::type(int column, int row) const {
    static const ui::CellType kFixed = ui::CellType::fixed();
    const long record = recordOf(row);
    const auto place = static_cast<size_t>(column - 1);
    const bool canChange = opened_->records.isUpdatable() && opened_->records.isThere(record) &&
                           (columns_[place].value != CellValue::kText || FitsCell(readText(record, place)));
    return canChange ? nullptr : &kFixed;
}

void StoredTableSheet::beginChange(long record) {
    try {
        before_[record] = opened_->records.values(record);
    } catch (const CDaoException&) {
        before_.erase(record);  // the save tells what is wrong with it
    }
}

std::string StoredTableSheet::checkChange(long record, size_t column) {
    if (columns_[column].is("GIS_KEY")) {
        const std::string held = readText(record, column);
        change(record, column, held.empty() ? table() : held);
    } else if (columns_[column].is("PT_ID") && text::trim(shownText(record, column)).empty()) {
        change(record, column, GeneratedKey(kAutomaticKey));
        return "PT_ID cannot be an empty string!";
    }
    return {};
}

// --- Saving ----------------------------------------------------------------------------------------------

// What a record is called in a report.
std::string StoredTableSheet::nameOf(long record) const {
    const std::optional<size_t> key = columnNamed("PT_ID");
    const std::string id = key ? readText(record, *key) : "";
    return id.empty() ? "Record " + std::to_string(record + 1) : "PT_ID " + id;
}

void StoredTableSheet::saveRecord(long record, const Texts& texts, OthersChanges others, Report& report) {
    const std::string name = nameOf(record);
    CDaoRecordset& records = opened_->records.at(record);
    records.Edit();
    const auto before = before_.find(record);
    if (others == OthersChanges::kAsk && before != before_.end())
        for (size_t i = 0; i < before->second.size(); ++i)
            if (!(records.GetFieldValue(static_cast<int>(i)) == before->second[i])) {
                report.changedByOthers.push_back(record);
                return records.CancelUpdate();
            }
    std::vector<std::string> leftOut;
    size_t values = 0;
    for (const auto& [column, text] : texts) {
        TakenValue taken = TakeText(text, columns_[column]);
        if (taken.value) {
            records.SetFieldValue(columns_[column].field, std::move(*taken.value));
            ++values;
        } else {
            leftOut.push_back(name + ", " + columns_[column].name + ": " + taken.fault);
        }
    }
    if (values > 0)
        records.Update();
    else
        records.CancelUpdate();
    report.records += values > 0;
    report.values += values;
    report.leftOut.insert(report.leftOut.end(), leftOut.begin(), leftOut.end());
    for (const auto& [column, text] : texts) done_.emplace_back(record, column);
}

TableSheet::Report StoredTableSheet::save(OthersChanges others, const GoOn& goOn) {
    Report report;
    done_.clear();
    // A server refuses all that follows a failure within a transaction.
    const bool isFile = !opened_->database.GetConnect().onServer();
    if (isFile) opened_->database.BeginTrans();
    try {
        for (const auto& [record, texts] : changes()) {
            if (!goOn(record)) {
                report.isWhole = false;
                break;
            }
            try {
                saveRecord(record, texts, others, report);
            } catch (const CDaoException& error) {
                if (report.failed++ == 0) report.failure = error.description();
                // There is no record left for what was typed.
                if (dynamic_cast<const CDaoRecordDeleted*>(&error))
                    for (const auto& [column, text] : texts) done_.emplace_back(record, column);
            }
        }
        if (isFile) opened_->database.CommitTrans();
    } catch (...) {
        if (isFile) opened_->database.Rollback();
        opened_->records.forgetTexts();
        throw;
    }
    for (const auto& [record, column] : done_) forgetChange(record, column);
    forgetHistory();
    opened_->records.forgetTexts();
    return report;
}

}  // namespace norvane
