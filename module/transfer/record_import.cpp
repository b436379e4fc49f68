#include "module/transfer/record_import.h"

#include <optional>

#include "module/store/keyed_records.h"
#include "module/store/output_database.h"
#include "module/store/statements.h"
#include "module/store/text_table.h"
#include "module/store/user_tables.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kId = "PT_ID";
constexpr const char* kFeature = "GIS_KEY";

CDaoFieldInfo newColumn(const ImportColumn& column) {
    return AttributeColumn(column.name, column.type == ColumnClass::kLong     ? FieldKind::kInt
                                        : column.type == ColumnClass::kDouble ? FieldKind::kReal
                                                                              : FieldKind::kChar);
}

// Where the values of a column go.
struct Target {
    std::string field;
    ColumnClass type = ColumnClass::kOther;
    size_t mostCharacters = 0;  // of text; 0 for any number
    int index = -1;             // in the record set
};

Target targetOf(const CDaoFieldInfo& field) {
    const bool isLimited = field.type == dbText && field.size > 0;
    // One that counts by itself takes no value.
    const bool counts = (field.attributes & dbAutoIncrField) != 0;
    return {field.name, counts ? ColumnClass::kOther : ClassOfType(field.type),
            isLimited ? static_cast<size_t>(field.size) : 0, -1};
}

class Table {
  public:
    Table(CDaoDatabase& database, const TableImport& import, TableOutcome& outcome, TableJournal& journal)
        : database_(database), import_(import), outcome_(outcome), journal_(journal) {}

    void ensure();
    std::string statement() const { return "SELECT * FROM " + name_; }
    void write(CDaoRecordset& records, const ImportRecord& record);

  private:
    void make();
    void extend();
    void noteMade(const ImportColumn& column);
    void findFields(const CDaoRecordset& records);
    std::optional<dao::Variant> converted(const Target& target, const std::string& value);
    std::string fitted(const Target& target, const std::string& value);
    double number(const std::string& value, bool isWhole);

    CDaoDatabase& database_;
    const TableImport& import_;
    TableOutcome& outcome_;
    TableJournal& journal_;
    std::string name_;  // in statements
    std::vector<Target> targets_;
    int id_ = -1, feature_ = -1;  // in the record set
};

void Table::ensure() {
    const std::string present = FindUserTable(database_, import_.table);
    outcome_.table = present.empty() ? import_.table : present;
    if (present.empty())
        make();
    else
        extend();
    const bool isFile = database_.GetConnect().empty();
    name_ = isFile ? BracketedName(outcome_.table) : QualifiedTable(database_, outcome_.table);
    // A server lists a table with its owner, and in letters of its own.
    if (!isFile) outcome_.table = import_.table;
    for (size_t i = 0; i < targets_.size(); ++i)
        if (targets_[i].type == ColumnClass::kOther) outcome_.unwritten.push_back(import_.columns[i].name);
    journal_.table = outcome_.table;
}

void Table::make() {
    CDaoTableDef table(&database_);
    table.Create(import_.table);
    for (const char* key : {kId, kFeature}) table.CreateField(KeyColumn(key));
    for (const ImportColumn& column : import_.columns) {
        const CDaoFieldInfo field = newColumn(column);
        table.CreateField(field);
        targets_.push_back(targetOf(field));
        noteMade(column);
    }
    table.Append();
    if (!database_.GetConnect().empty()) database_.IndexForSearch(import_.table, {kId, kFeature});
    journal_.madeTable = true;
}

void Table::extend() {
    CDaoTableDef table(&database_);
    table.Open(outcome_.table);
    auto find = [&](const std::string& name) -> std::optional<CDaoFieldInfo> {
        CDaoFieldInfo field;
        for (int i = 0; i < table.GetFieldCount(); ++i) {
            table.GetFieldInfo(i, field);
            if (text::equalNoCase(field.name, name)) return field;
        }
        return std::nullopt;
    };
    for (const char* key : {kId, kFeature}) {
        if (find(key)) continue;
        table.CreateField(KeyColumn(key));
        journal_.madeColumns.emplace_back(key);
    }
    for (const ImportColumn& column : import_.columns) {
        std::optional<CDaoFieldInfo> field = find(column.name);
        if (!field) {
            field = newColumn(column);
            table.CreateField(*field);
            journal_.madeColumns.push_back(column.name);
            noteMade(column);
        }
        targets_.push_back(targetOf(*field));
    }
}

void Table::noteMade(const ImportColumn& column) {
    if (column.isEmpty && column.type == ColumnClass::kLong) outcome_.emptyColumns.push_back(column.name);
}

void Table::findFields(const CDaoRecordset& records) {
    CDaoFieldInfo field;
    for (int i = 0; i < records.GetFieldCount(); ++i) {
        records.GetFieldInfo(i, field);
        if (text::equalNoCase(field.name, kId)) id_ = i;
        if (text::equalNoCase(field.name, kFeature)) feature_ = i;
        for (Target& target : targets_)
            if (text::equalNoCase(field.name, target.field)) target.index = i;
    }
}

void Table::write(CDaoRecordset& records, const ImportRecord& record) {
    if (id_ < 0) findFields(records);
    records.SetFieldValue(id_, record.id);
    records.SetFieldValue(feature_, outcome_.table);
    for (const auto& [column, value] : record.values) {
        const Target& target = targets_[column];
        if (value.empty() || target.type == ColumnClass::kOther) continue;
        if (std::optional<dao::Variant> stored = converted(target, value))
            records.SetFieldValue(target.index, std::move(*stored));
    }
}

bool isYes(const std::string& value) {
    for (const char* word : {"YES", "Y", "TRUE", "T", "ON"})
        if (text::equalNoCase(value, word)) return true;
    return text::wholeReal(value).value_or(0) != 0;
}

std::optional<dao::Variant> Table::converted(const Target& target, const std::string& value) {
    switch (target.type) {
        case ColumnClass::kYesNo:
            return dao::Variant(isYes(value));
        case ColumnClass::kInteger:
        case ColumnClass::kLong:
            return dao::Variant(number(value, true));
        case ColumnClass::kSingle:
        case ColumnClass::kDouble:
            return dao::Variant(number(value, false));
        case ColumnClass::kDate: {
            dao::Date date;
            if (dao::dateFromText(value, date)) return dao::Variant(date);
            ++outcome_.datesLeftOut;
            return std::nullopt;
        }
        default:
            return dao::Variant(fitted(target, value));
    }
}

// The number that a text begins with; 0 where there is none.
double Table::number(const std::string& value, bool isWhole) {
    double read = 0;
    const std::string_view digits = text::trim(value);
    const bool hasSign = !digits.empty() && digits.front() == '+';
    const std::string_view unsignedDigits = digits.substr(hasSign ? 1 : 0);
    size_t length = text::readReal(unsignedDigits, read);
    if (isWhole && length > 0) {
        const size_t whole = unsignedDigits.find_first_not_of("0123456789", unsignedDigits[0] == '-' ? 1 : 0);
        length = std::min(whole, unsignedDigits.size());
        text::readReal(unsignedDigits.substr(0, length), read);
    }
    if (length == 0)
        ++outcome_.valuesZero;
    else if (length < unsignedDigits.size())
        ++outcome_.valuesBegun;
    return length == 0 ? 0 : read;
}

std::string Table::fitted(const Target& target, const std::string& value) {
    if (target.mostCharacters == 0 || value.size() <= target.mostCharacters) return value;
    size_t end = 0;
    for (size_t n = 0; end < value.size() && n < target.mostCharacters; ++n) text::nextCodePoint(value, end);
    if (end < value.size()) ++outcome_.valuesCut;
    return value.substr(0, end);
}

}  // namespace

ColumnClass ClassOfType(int fieldType) {
    switch (fieldType) {
        case dbBoolean:
            return ColumnClass::kYesNo;
        case dbInteger:
            return ColumnClass::kInteger;
        case dbLong:
            return ColumnClass::kLong;
        case dbSingle:
            return ColumnClass::kSingle;
        case dbDouble:
            return ColumnClass::kDouble;
        case dbDate:
            return ColumnClass::kDate;
        case dbText:
        case dbMemo:
            return ColumnClass::kText;
        default:
            return ColumnClass::kOther;
    }
}

bool WriteImport(CDaoDatabase& database, const TableImport& import, const GoOn& goOn, TableOutcome& outcome,
                 TableJournal& journal) {
    Table table(database, import, outcome, journal);
    table.ensure();
    constexpr const char* kKeys[] = {kId, kFeature};
    std::vector<std::string> keys;
    keys.reserve(import.records.size());
    for (const ImportRecord& record : import.records)
        keys.push_back(KeyedRecords::KeyOf(std::vector{record.id, outcome.table}));
    KeyedRecords records(database, table.statement(), kKeys, keys, KeyedRecords::Change::kAll);
    JournalWriter writer(journal);
    const bool done = records.writeRecords(
        [&](CDaoRecordset& record, const std::vector<size_t>& entries, bool isNew) {
            writer.begin(record, keys[entries.front()], isNew);
            for (size_t entry : entries) table.write(record, import.records[entry]);
            writer.end(record);
        },
        goOn);
    outcome.changed = records.found();
    outcome.added = records.added();
    return done;
}

}  // namespace norvane
