#include "module/transfer/import_journal.h"

#include <algorithm>
#include <unordered_map>

#include "module/store/keyed_records.h"
#include "module/store/statements.h"
#include "module/store/user_tables.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

std::vector<std::string> fieldsOf(const CDaoRecordset& records) {
    std::vector<std::string> names;
    CDaoFieldInfo field;
    for (int i = 0; i < records.GetFieldCount(); ++i) {
        records.GetFieldInfo(i, field);
        names.push_back(field.name);
    }
    return names;
}

int indexOf(const std::vector<std::string>& names, std::string_view name) {
    for (size_t i = 0; i < names.size(); ++i)
        if (text::equalNoCase(names[i], name)) return static_cast<int>(i);
    return -1;
}

TableJournal::Values valuesOf(const CDaoRecordset& row) {
    TableJournal::Values values;
    values.reserve(static_cast<size_t>(row.GetFieldCount()));
    for (int i = 0; i < row.GetFieldCount(); ++i) values.push_back(row.GetFieldValue(i));
    return values;
}

bool isEmpty(const dao::Variant& value) {
    return value.isNull() || (value.is<std::string>() && value.get<std::string>().empty()) ||
           value == dao::Variant(false);
}

// Whether a stored value is the one that was written. Engines give numbers in the type of their column, and
// files of Access 97 hold characters of their code page alone.
bool isSame(const dao::Variant& stored, const dao::Variant& written, bool isOneCodePage) {
    if (stored == written || (isEmpty(stored) && isEmpty(written))) return true;
    double a = 0, b = 0;
    if (dao::numberOf(stored, a) && dao::numberOf(written, b)) return a == b;
    const std::string first = dao::toText(stored), second = dao::toText(written);
    return isOneCodePage ? text::encode(first) == text::encode(second) : first == second;
}

// The rows of a table by their two keys.
class Keys {
  public:
    explicit Keys(const std::vector<std::string>& fields)
        : id_(indexOf(fields, "PT_ID")), feature_(indexOf(fields, "GIS_KEY")) {}
    bool complete() const { return id_ >= 0 && feature_ >= 0; }
    std::string of(const CDaoRecordset& row) const {
        return text::upper(KeyedRecords::KeyOf(
            std::vector{dao::toText(row.GetFieldValue(id_)), dao::toText(row.GetFieldValue(feature_))}));
    }

  private:
    int id_, feature_;
};

class Undoing {
  public:
    Undoing(CDaoDatabase& database, const TableJournal& journal, std::string table, TakenBack& result)
        : database_(database), journal_(journal), table_(std::move(table)), result_(result) {
        for (const TableJournal::Row& row : journal.rows) left_[row.key].push_back(&row);
    }
    void rows();
    void columns();
    void table();

  private:
    const TableJournal::Row* take(const CDaoRecordset& row, const std::string& key);
    bool isAsWritten(const CDaoRecordset& row, const TableJournal::Row& written) const;
    void restore(CDaoRecordset& row, const TableJournal::Values& before) const;
    std::string statement(const std::string& what) const;

    CDaoDatabase& database_;
    const TableJournal& journal_;
    std::string table_;
    TakenBack& result_;
    std::unordered_map<std::string, std::vector<const TableJournal::Row*>> left_;
    std::vector<std::string> present_;  // fields of the table
    std::vector<int> place_;            // of each field of the journal among them; -1: it is gone
    const bool isOneCodePage_ = database_.GetVersion() == "3.0";
};

std::string Undoing::statement(const std::string& what) const {
    return "SELECT " + what + " FROM " +
           (database_.GetConnect().empty() ? BracketedName(table_) : QualifiedTable(database_, table_));
}

bool Undoing::isAsWritten(const CDaoRecordset& row, const TableJournal::Row& written) const {
    for (size_t i = 0; i < place_.size(); ++i) {
        if (!written.before && journal_.hasDefault[i] && written.after[i].isNull()) continue;
        const dao::Variant stored = place_[i] < 0 ? dao::Variant() : row.GetFieldValue(place_[i]);
        if (!isSame(stored, written.after[i], isOneCodePage_)) return false;
    }
    // A column that has come since holds what somebody has put there.
    for (size_t i = 0; i < present_.size(); ++i)
        if (indexOf(journal_.fields, present_[i]) < 0 && !isEmpty(row.GetFieldValue(static_cast<int>(i))))
            return false;
    return true;
}

const TableJournal::Row* Undoing::take(const CDaoRecordset& row, const std::string& key) {
    auto known = left_.find(key);
    if (known == left_.end()) return nullptr;
    auto& rows = known->second;
    auto same = std::find_if(rows.begin(), rows.end(),
                             [&](const TableJournal::Row* written) { return isAsWritten(row, *written); });
    if (same == rows.end()) return nullptr;
    const TableJournal::Row* found = *same;
    rows.erase(same);
    return found;
}

void Undoing::restore(CDaoRecordset& row, const TableJournal::Values& before) const {
    row.Edit();
    for (size_t i = 0; i < before.size(); ++i) {
        const int at = indexOf(present_, journal_.fields[i]);
        if (at >= 0 && row.GetFieldValue(at) != before[i]) row.SetFieldValue(at, before[i]);
    }
    row.Update();
}

void Undoing::rows() {
    CDaoRecordset records(&database_);
    records.Open(dbOpenDynaset, statement("*"));
    present_ = fieldsOf(records);
    for (const std::string& field : journal_.fields) place_.push_back(indexOf(present_, field));
    const Keys keys(present_);
    for (; keys.complete() && !records.IsEOF(); records.MoveNext()) {
        const TableJournal::Row* written = take(records, keys.of(records));
        if (!written) continue;
        if (written->before) {
            restore(records, *written->before);
            ++result_.restored;
        } else {
            records.Delete();
            ++result_.deleted;
        }
    }
    for (const auto& [key, rows] : left_) result_.changedSince += rows.size();
}

// Those in which no row has a value any more.
void Undoing::columns() {
    std::vector<std::string> unused;
    for (const std::string& column : journal_.madeColumns) {
        if (indexOf(present_, column) < 0) continue;
        bool isUsed = false;
        {
            CDaoRecordset records(&database_);
            records.Open(dbOpenDynaset, statement(StatementName(column)));
            for (; !isUsed && !records.IsEOF(); records.MoveNext())
                isUsed = !isEmpty(records.GetFieldValue(0));
        }
        if (isUsed)
            result_.kept.push_back("the column " + column + " of " + journal_.table);
        else
            unused.push_back(column);
    }
    CDaoTableDef definition(&database_);
    definition.Open(table_);
    for (const std::string& column : unused) definition.DeleteField(column);
}

void Undoing::table() {
    bool isEmptyTable = false;
    {
        CDaoRecordset records(&database_);
        records.Open(dbOpenDynaset, statement("*"));
        isEmptyTable = records.IsEOF();
    }
    if (isEmptyTable)
        database_.DeleteTableDef(table_);
    else
        result_.kept.push_back("the table " + journal_.table);
}

}  // namespace

void JournalWriter::begin(const CDaoRecordset& row, const std::string& key, bool isNew) {
    if (journal_.fields.empty()) {
        CDaoFieldInfo field;
        for (int i = 0; i < row.GetFieldCount(); ++i) {
            row.GetFieldInfo(i, field);
            journal_.fields.push_back(field.name);
            journal_.hasDefault.push_back(!field.defaultValue.empty() ||
                                          (field.attributes & dbAutoIncrField));
        }
    }
    TableJournal::Row kept;
    kept.key = text::upper(key);
    if (!isNew) kept.before = valuesOf(row);
    journal_.rows.push_back(std::move(kept));
}

void JournalWriter::end(const CDaoRecordset& row) {
    journal_.rows.back().after = valuesOf(row);
}

void TakeBack(CDaoDatabase& database, const TableJournal& journal, TakenBack& result) {
    const std::string table = FindUserTable(database, journal.table);
    if (table.empty()) {
        result.gone.push_back(journal.table);
        return;
    }
    Undoing undoing(database, journal, table, result);
    undoing.rows();
    if (journal.madeTable)
        undoing.table();
    else
        undoing.columns();
}

}  // namespace norvane
