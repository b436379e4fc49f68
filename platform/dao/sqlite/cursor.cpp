#include "platform/dao/sqlite/cursor.h"

#include <algorithm>
#include <limits>

#include "platform/dao/errors.h"
#include "platform/dao/names.h"
#include "platform/dao/sql_tokens.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/text/text.h"

namespace dao::sqlite {
namespace {

using Fields = std::shared_ptr<const std::vector<CDaoFieldInfo>>;

constexpr int64_t kMostReadAhead = 512;

Fields selectFields(Fields all, const AccessStatement& statement) {
    if (isAllColumns(statement.columns)) return all;
    auto selected = std::make_shared<std::vector<CDaoFieldInfo>>();
    for (size_t field : selectedFields(*all, statement.columns)) selected->push_back((*all)[field]);
    return selected;
}

// A parameter of ours behind those of the caller's, counted from 1.
std::string ownParameter(size_t callers, int number) {
    return "?" + std::to_string(callers + static_cast<size_t>(number));
}

// Without an order of its own, the records behind a row id, so many at most.
std::string queryStatement(const AccessStatement& statement, const std::vector<CDaoFieldInfo>& fields,
                           const std::string& rowId, size_t parameters) {
    std::string columns = "SELECT " + rowId + ", " + columnList(fields);
    if (!statement.orderBy.empty()) return columns + statement.fromClause();
    return columns + statement.fromClause(rowId + " > " + ownParameter(parameters, 1)) + " ORDER BY " +
           rowId + " LIMIT " + ownParameter(parameters, 2);
}

// The row ids alone, which cost no reading of the fields. Without an order of its own, those behind a row id.
std::string rowIdsStatement(const AccessStatement& statement, const std::string& rowId, size_t parameters) {
    const std::string select = "SELECT " + rowId;
    if (!statement.orderBy.empty()) return select + statement.fromClause();
    return select + statement.fromClause(rowId + " > " + ownParameter(parameters, 1)) + " ORDER BY " + rowId;
}

}  // namespace

KeyCursor::KeyCursor(std::shared_ptr<SqliteConnection> connection, const AccessStatement& statement,
                     const std::string& rowId, const std::vector<Variant>& parameters)
    : connection_(std::move(connection)),
      fields_(selectFields(connection_->sharedFields(statement.table), statement)),
      table_(quotedName(statement.table)),
      rowId_(rowId),
      parameters_(parameters),
      ordered_(!statement.orderBy.empty()),
      rowIdsSql_(rowIdsStatement(statement, rowId, parameters.size())),
      query_(connection_->handle(), queryStatement(statement, *fields_, rowId, parameters.size())),
      byKey_(connection_->prepared("SELECT " + columnList(*fields_) + " FROM " + table_ + " WHERE " + rowId +
                                   " = ?1")) {
    query_.bindAll(parameters_);
}

int64_t KeyCursor::key() const {
    if (position_ < 0) noCurrentRecord();
    return keys_[static_cast<size_t>(position_)];
}

void KeyCursor::takeRecord(Statement& statement, int firstColumn, int64_t key) {
    readKeys_.push_back(key);
    int column = firstColumn;
    for (const CDaoFieldInfo& field : *fields_) readValues_.push_back(statement.value(column++, field.type));
}

void KeyCursor::readAhead(int64_t behind, int64_t limit, bool newKeys) {
    readKeys_.clear();
    readValues_.clear();
    readIndex_ = 0;
    readAt_ = changes();
    Resetting resetting(query_);
    const int own = static_cast<int>(parameters_.size()) + 1;
    query_.bind(own, behind);
    query_.bind(own + 1, limit);
    int64_t found = 0;
    for (; query_.step(); ++found) {
        takeRecord(query_, 1, query_.integer(0));
        if (newKeys) keys_.push_back(readKeys_.back());
    }
    if (newKeys) allKeys_ = found < limit;
}

void KeyCursor::findKeys(size_t position, bool withRecords) {
    if (allKeys_ || position < keys_.size()) return;
    int64_t last = keys_.empty() ? std::numeric_limits<int64_t>::min() : keys_.back();
    if (!ordered_ && withRecords && position == keys_.size()) {
        readAhead(last, readNext_, true);
        readNext_ = std::min(readNext_ * 4, kMostReadAhead);
        return;
    }
    Statement rowIds(connection_->handle(), rowIdsSql_);
    rowIds.bindAll(parameters_);
    if (!ordered_) rowIds.bind(static_cast<int>(parameters_.size()) + 1, last);
    while (rowIds.step()) keys_.push_back(rowIds.integer(0));
    allKeys_ = true;
}

bool KeyCursor::moveTo(long position) {
    findKeys(static_cast<size_t>(position), true);
    position_ = position < static_cast<long>(keys_.size()) ? position : -1;
    return position_ >= 0;
}

long KeyCursor::count() {
    findKeys(std::numeric_limits<size_t>::max(), false);
    return static_cast<long>(keys_.size());
}

size_t KeyCursor::recordIndex() {
    int64_t wanted = key();
    bool fresh = readAt_ == changes();
    if (fresh) {
        // Nearly always it is the record found last, or the next one.
        for (size_t i : {readIndex_, readIndex_ + 1})
            if (i < readKeys_.size() && readKeys_[i] == wanted) return readIndex_ = i;
        auto it = std::lower_bound(readKeys_.begin(), readKeys_.end(), wanted);
        if (it != readKeys_.end() && *it == wanted)
            return readIndex_ = static_cast<size_t>(it - readKeys_.begin());
    }
    bool goesOn = fresh && !readKeys_.empty() && wanted > readKeys_.back();
    if (!ordered_ && goesOn) {
        readAhead(wanted - 1, readNext_, false);
        readNext_ = std::min(readNext_ * 4, kMostReadAhead);
        if (!readKeys_.empty() && readKeys_.front() == wanted) return readIndex_;
    } else if (!fresh) {
        readNext_ = 1;
    }
    // It has been changed, or no longer fits the statement: still it is a record of this set.
    readKeys_.clear();
    readValues_.clear();
    readIndex_ = 0;
    Resetting resetting(*byKey_);
    byKey_->bind(1, wanted);
    if (!byKey_->step()) recordDeleted();
    takeRecord(*byKey_, 0, wanted);
    readAt_ = changes();
    return 0;
}

const Variant& KeyCursor::value(int field) {
    return readValues_[recordIndex() * fields_->size() + static_cast<size_t>(field)];
}

Statement& KeyCursor::statementFor(Writing& writing, const std::vector<bool>& touched, bool inserts) {
    if (writing.statement && writing.touched == touched) return *writing.statement;
    std::vector<std::string> columns, parameters;
    for (size_t i = 0; i < fields_->size(); ++i) {
        if (!touched[i]) continue;
        std::string parameter = "?" + std::to_string(columns.size() + 1);
        columns.push_back(quotedName((*fields_)[i].name) + (inserts ? "" : " = " + parameter));
        parameters.push_back(parameter);
    }
    std::string sql;
    if (!inserts)
        sql = "UPDATE " + table_ + " SET " + text::join(columns, ", ") + " WHERE " + rowId_ + " = ?" +
              std::to_string(columns.size() + 1);
    else if (columns.empty())
        sql = "INSERT INTO " + table_ + " DEFAULT VALUES";
    else
        sql = "INSERT INTO " + table_ + " (" + text::join(columns, ", ") + ") VALUES (" +
              text::join(parameters, ", ") + ")";
    writing.touched = touched;
    writing.statement = connection_->prepared(sql);
    return *writing.statement;
}

namespace {

// Binds the marked values, and gives the number of the next parameter.
int bindTouched(Statement& statement, const std::vector<Variant>& values, const std::vector<bool>& touched) {
    int parameter = 1;
    for (size_t i = 0; i < values.size(); ++i)
        if (touched[i]) statement.bind(parameter++, values[i]);
    return parameter;
}

}  // namespace

void KeyCursor::insert(const std::vector<Variant>& values, const std::vector<bool>& touched) {
    connection_->beginWrite();
    Statement& statement = statementFor(inserting_, touched, true);
    bindTouched(statement, values, touched);
    statement.run();
    // Keys still to be found will include the new one where it fits the statement.
    if (allKeys_) keys_.push_back(sqlite3_last_insert_rowid(connection_->handle()));
    connection_->wrote();
}

void KeyCursor::update(const std::vector<Variant>& values, const std::vector<bool>& touched) {
    if (std::find(touched.begin(), touched.end(), true) == touched.end()) return;
    connection_->beginWrite();
    Statement& statement = statementFor(updating_, touched, false);
    int parameter = bindTouched(statement, values, touched);
    statement.bind(parameter, key());
    statement.run();
    if (sqlite3_changes(connection_->handle()) == 0) recordDeleted();
    connection_->wrote();
}

void KeyCursor::remove() {
    connection_->beginWrite();
    auto statement = connection_->prepared("DELETE FROM " + table_ + " WHERE " + rowId_ + " = ?1");
    statement->bind(1, key());
    statement->run();
    if (sqlite3_changes(connection_->handle()) == 0) recordDeleted();
    connection_->wrote();
}

SnapshotCursor::SnapshotCursor(sqlite3* db, const std::string& sql, const std::vector<Variant>& parameters) {
    Statement statement(db, sql);
    statement.bindAll(parameters);
    for (int i = 0; i < statement.columns(); ++i) {
        CDaoFieldInfo field;
        field.name = sqlite3_column_name(statement.handle(), i);
        const char* declared = sqlite3_column_decltype(statement.handle(), i);
        if (declared)
            typeOfColumn(declared, field);
        else
            field.type = dbMemo;
        field.ordinalPosition = i;
        fields_.push_back(std::move(field));
    }
    while (statement.step()) {
        std::vector<Variant>& row = rows_.emplace_back();
        for (size_t i = 0; i < fields_.size(); ++i) {
            int type = sqlite3_column_decltype(statement.handle(), static_cast<int>(i)) ? fields_[i].type : 0;
            row.push_back(statement.value(static_cast<int>(i), type));
        }
    }
}

bool SnapshotCursor::moveTo(long position) {
    position_ = position < count() ? position : -1;
    return position_ >= 0;
}

const Variant& SnapshotCursor::value(int field) {
    if (position_ < 0) noCurrentRecord();
    return rows_[static_cast<size_t>(position_)][static_cast<size_t>(field)];
}

}  // namespace dao::sqlite
