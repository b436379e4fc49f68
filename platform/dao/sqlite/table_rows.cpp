#include "platform/dao/sqlite/table_rows.h"

#include <algorithm>

#include "platform/dao/convert.h"
#include "platform/dao/sql_tokens.h"
#include "platform/text/text.h"

namespace dao::sqlite {
namespace {

// Walks along an index by what it stood on last: a statement that stays open would keep others from writing.
// Records of one value follow each other by their row ids, Null comes first; descending is the reverse.
class IndexOrder : public TableRows::Order {
  public:
    // field: as comparisons write it.
    IndexOrder(std::shared_ptr<SqliteConnection> connection, const std::string& table,
               const std::string& rowId, const std::string& field, bool descending)
        : connection_(std::move(connection)), descending_(descending) {
        const std::string less = descending ? " < " : " > ", direction = descending ? " DESC" : "";
        const std::string select = "SELECT " + rowId + ", " + field + " FROM " + table + " WHERE " + field;
        const std::string byRow = " AND " + rowId + less + "?2 ORDER BY " + rowId + direction + " LIMIT ?3";
        nulls_ = select + " IS NULL" + byRow;
        same_ = select + " = ?1" + byRow;
        // Every value is greater than a Null that is no value: the first ones have no bound.
        first_ =
            select + " IS NOT NULL ORDER BY " + field + direction + ", " + rowId + direction + " LIMIT ?3";
        further_ =
            select + less + "?1 ORDER BY " + field + direction + ", " + rowId + direction + " LIMIT ?3";
        part_ = descending ? Part::kFirst : Part::kNulls;
        startNulls();
    }

    bool next(size_t count, std::vector<RowNumber>& rows) override {
        const size_t wanted = rows.size() + count;
        while (part_ != Part::kEnd) {
            const size_t left = wanted - rows.size();
            if (left == 0) return true;
            if (run(statementOf(part_), left, rows) < left) part_ = behind(part_);
        }
        return false;
    }

  private:
    enum class Part { kNulls, kFirst, kSame, kFurther, kEnd };

    struct FreeValue {
        void operator()(sqlite3_value* value) const { sqlite3_value_free(value); }
    };

    void startNulls() { row_ = descending_ ? INT64_MAX : INT64_MIN; }

    const std::string& statementOf(Part part) const {
        switch (part) {
            case Part::kNulls:
                return nulls_;
            case Part::kFirst:
                return first_;
            case Part::kSame:
                return same_;
            default:
                return further_;
        }
    }

    // What comes when a part has no more.
    Part behind(Part part) {
        switch (part) {
            case Part::kNulls:
                return descending_ ? Part::kEnd : Part::kFirst;
            case Part::kSame:
                return Part::kFurther;
            default:
                startNulls();
                return descending_ ? Part::kNulls : Part::kEnd;
        }
    }

    size_t run(const std::string& sql, size_t count, std::vector<RowNumber>& rows) {
        std::shared_ptr<Statement> statement = connection_->prepared(sql);
        Resetting resetting(*statement);
        if (value_) sqlite3_bind_value(statement->handle(), 1, value_.get());
        statement->bind(2, row_);
        statement->bind(3, static_cast<int64_t>(count));
        size_t found = 0;
        std::unique_ptr<sqlite3_value, FreeValue> last;
        while (statement->step()) {
            row_ = statement->integer(0);
            rows.push_back(row_);
            if (++found == count && part_ != Part::kNulls)
                last.reset(sqlite3_value_dup(sqlite3_column_value(statement->handle(), 1)));
        }
        if (last) {
            value_ = std::move(last);
            part_ = Part::kSame;
        }
        return found;
    }

    std::shared_ptr<SqliteConnection> connection_;
    bool descending_;
    std::string nulls_, first_, same_, further_;
    Part part_;
    std::unique_ptr<sqlite3_value, FreeValue> value_;  // that was stood on last
    int64_t row_ = 0;
};

}  // namespace

SqliteRows::SqliteRows(std::shared_ptr<SqliteConnection> connection, const std::string& table,
                       const std::string& rowId)
    : connection_(std::move(connection)),
      name_(table),
      table_(quotedName(table)),
      rowId_(rowId),
      fields_(connection_->sharedFields(table)) {}

std::string SqliteRows::columns(std::span<const size_t> fields) const {
    std::string list;
    for (size_t field : fields) list += ", " + quotedName((*fields_)[field].name);
    return list;
}

void SqliteRows::take(Statement& statement, std::span<const size_t> fields,
                      std::vector<Variant>& values) const {
    values.clear();
    for (size_t i = 0; i < fields.size(); ++i)
        values.push_back(statement.value(static_cast<int>(i) + 1, (*fields_)[fields[i]].type));
}

std::string SqliteRows::compared(size_t field) const {
    const CDaoFieldInfo& info = (*fields_)[field];
    return quotedName(info.name) + (isTextType(info.type) ? " COLLATE NOCASE" : "");
}

bool SqliteRows::list(RowNumber& last, size_t count, std::vector<RowNumber>& rows) {
    return walk(last, count, {}, [&](RowNumber row, std::span<const Variant>) { rows.push_back(row); });
}

bool SqliteRows::walk(RowNumber& last, size_t count, std::span<const size_t> fields, const Visit& visit) {
    std::shared_ptr<Statement> statement =
        connection_->prepared("SELECT " + rowId_ + columns(fields) + " FROM " + table_ + " WHERE " + rowId_ +
                              " > ?1 ORDER BY " + rowId_ + " LIMIT ?2");
    Resetting resetting(*statement);
    statement->bind(1, last);
    statement->bind(2, static_cast<int64_t>(count));
    std::vector<Variant> values;
    size_t found = 0;
    for (; statement->step(); ++found) {
        last = statement->integer(0);
        take(*statement, fields, values);
        visit(last, values);
    }
    return found == count;
}

void SqliteRows::read(std::span<const RowNumber> rows, std::span<const size_t> fields, const Visit& visit) {
    std::shared_ptr<Statement> statement = connection_->prepared(
        "SELECT " + rowId_ + columns(fields) + " FROM " + table_ + " WHERE " + rowId_ + " = ?1");
    std::vector<Variant> values;
    for (RowNumber row : rows) {
        Resetting resetting(*statement);
        statement->bind(1, row);
        if (!statement->step()) continue;
        take(*statement, fields, values);
        visit(row, values);
    }
}

bool SqliteRows::hasIndex(size_t field) {
    const CDaoFieldInfo& info = (*fields_)[field];
    Statement list(connection_->handle(), "PRAGMA index_list(" + table_ + ")");
    while (list.step()) {
        if (list.integer(4) != 0) continue;  // of some of the records
        Statement columns(connection_->handle(), "PRAGMA index_xinfo(" + quotedName(list.text(1)) + ")");
        const bool isFirst = columns.step() && text::equalNoCase(columns.text(2), info.name);
        if (isFirst && (!isTextType(info.type) || text::equalNoCase(columns.text(4), "NOCASE"))) return true;
    }
    return false;
}

std::unique_ptr<TableRows::Order> SqliteRows::order(size_t field, bool descending) {
    if (!hasIndex(field)) return nullptr;
    return std::make_unique<IndexOrder>(connection_, table_, rowId_, compared(field), descending);
}

std::optional<std::vector<RowNumber>> SqliteRows::find(size_t field, const std::string& text) {
    // Indexes know the case of English letters alone.
    const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) { return !(c & 0x80); });
    if (!isPlain || !hasIndex(field)) return std::nullopt;
    std::shared_ptr<Statement> statement = connection_->prepared(
        "SELECT " + rowId_ + " FROM " + table_ + " WHERE " + compared(field) + " = ?1 ORDER BY " + rowId_);
    Resetting resetting(*statement);
    const Variant wanted(text);
    statement->bind(1, wanted);
    std::vector<RowNumber> rows;
    while (statement->step()) rows.push_back(statement->integer(0));
    return rows;
}

}  // namespace dao::sqlite
