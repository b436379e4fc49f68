#include "platform/dao/sqlite/cursor.h"

#include <algorithm>
#include <limits>

#include "platform/dao/names.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/text/text.h"

namespace dao::sqlite {
namespace {

std::vector<CDaoFieldInfo> selectFields(const std::vector<CDaoFieldInfo>& all,
                                        const AccessStatement& statement) {
    if (statement.columns == std::vector<std::string>{"*"}) return all;
    std::vector<CDaoFieldInfo> selected;
    for (const std::string& column : statement.columns) {
        int field = findField(all, column);
        if (field < 0) noSuchField(column);
        selected.push_back(all[static_cast<size_t>(field)]);
    }
    return selected;
}

std::string keyStatement(const AccessStatement& statement, const std::string& rowId) {
    std::string sql = "SELECT " + rowId + " FROM " + quotedName(statement.table) + " WHERE ";
    if (!statement.where.empty()) sql += "(" + statement.where + ")";
    if (!statement.orderBy.empty()) return sql + (statement.where.empty() ? "1 " : " ") + statement.orderBy;
    return sql + (statement.where.empty() ? "" : " AND ") + rowId + " > ?1 ORDER BY " + rowId + " LIMIT ?2";
}

std::string rowStatement(const std::vector<CDaoFieldInfo>& fields, const std::string& table,
                         const std::string& rowId) {
    std::vector<std::string> columns;
    for (const CDaoFieldInfo& field : fields) columns.push_back(quotedName(field.name));
    return "SELECT " + text::join(columns, ", ") + " FROM " + table + " WHERE " + rowId + " = ?1";
}

}  // namespace

KeyCursor::KeyCursor(std::shared_ptr<SqliteConnection> connection, const AccessStatement& statement,
                     const std::string& rowId)
    : connection_(std::move(connection)),
      table_(quotedName(statement.table)),
      rowId_(rowId),
      ordered_(!statement.orderBy.empty()),
      fields_(selectFields(connection_->fields(statement.table), statement)),
      keyQuery_(connection_->handle(), keyStatement(statement, rowId)),
      rowQuery_(connection_->prepared(rowStatement(fields_, table_, rowId))) {}

void KeyCursor::findKeys(size_t wanted) {
    while (!allKeys_ && keys_.size() < wanted) {
        size_t limit = std::max({wanted - keys_.size(), keys_.size() * 4, size_t{8}});
        int64_t asked = static_cast<int64_t>(std::min(limit, size_t{1} << 40));
        Resetting resetting(keyQuery_);
        if (!ordered_) {
            keyQuery_.bind(1, keys_.empty() ? std::numeric_limits<int64_t>::min() : keys_.back());
            keyQuery_.bind(2, asked);
        }
        int64_t found = 0;
        for (; keyQuery_.step(); ++found) keys_.push_back(keyQuery_.integer(0));
        allKeys_ = ordered_ || found < asked;
    }
}

bool KeyCursor::moveTo(long position) {
    loadedAt_ = -1;
    findKeys(static_cast<size_t>(position) + 1);
    position_ = position < static_cast<long>(keys_.size()) ? position : -1;
    return position_ >= 0;
}

long KeyCursor::count() {
    findKeys(std::numeric_limits<size_t>::max());
    return static_cast<long>(keys_.size());
}

int64_t KeyCursor::key() const {
    if (position_ < 0) throw CDaoException("There is no current record.");
    return keys_[static_cast<size_t>(position_)];
}

Variant KeyCursor::value(int field) {
    int64_t changes = sqlite3_total_changes64(connection_->handle());
    if (loadedAt_ != changes) {
        rowQuery_->bind(1, key());
        Resetting resetting(*rowQuery_);
        if (!rowQuery_->step()) throw CDaoException("The record has been deleted.");
        row_.resize(fields_.size());
        for (size_t i = 0; i < fields_.size(); ++i)
            row_[i] = rowQuery_->value(static_cast<int>(i), fields_[i].type);
        loadedAt_ = changes;
    }
    return row_[static_cast<size_t>(field)];
}

Statement& KeyCursor::statementFor(Writing& writing, const std::vector<bool>& touched, bool inserts) {
    if (writing.statement && writing.touched == touched) return *writing.statement;
    std::vector<std::string> columns, parameters;
    for (size_t i = 0; i < fields_.size(); ++i) {
        if (!touched[i]) continue;
        std::string parameter = "?" + std::to_string(columns.size() + 1);
        columns.push_back(quotedName(fields_[i].name) + (inserts ? "" : " = " + parameter));
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
    if (sqlite3_changes(connection_->handle()) == 0) throw CDaoException("The record has been deleted.");
    connection_->wrote();
}

void KeyCursor::remove() {
    connection_->beginWrite();
    auto statement = connection_->prepared("DELETE FROM " + table_ + " WHERE " + rowId_ + " = ?1");
    statement->bind(1, key());
    statement->run();
    if (sqlite3_changes(connection_->handle()) == 0) throw CDaoException("The record has been deleted.");
    connection_->wrote();
}

SnapshotCursor::SnapshotCursor(const std::shared_ptr<SqliteConnection>& connection, const std::string& sql) {
    Statement statement(connection->handle(), sql);
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

Variant SnapshotCursor::value(int field) {
    if (position_ < 0) throw CDaoException("There is no current record.");
    return rows_[static_cast<size_t>(position_)][static_cast<size_t>(field)];
}

}  // namespace dao::sqlite
