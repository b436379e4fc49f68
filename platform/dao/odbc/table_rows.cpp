#include "platform/dao/odbc/table_rows.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/dao/access_sql.h"
#include "platform/dao/convert.h"
#include "platform/dao/sql_tokens.h"
#include "platform/text/text.h"

namespace dao::odbc {
namespace {

// A place is a block and a number in it, from 1 on.
constexpr int kBitsInBlock = 16;

RowNumber rowAt(int64_t block, int64_t place) {
    return block << kBitsInBlock | place;
}

int64_t blockOf(RowNumber row) {
    return std::max<RowNumber>(row, 0) >> kBitsInBlock;
}

std::string placeText(RowNumber row) {
    return "(" + std::to_string(blockOf(row)) + "," +
           std::to_string(std::max<RowNumber>(row, 0) & ((1 << kBitsInBlock) - 1)) + ")";
}

std::string place(RowNumber row) {
    return "'" + placeText(row) + "'::tid";
}

// "(12,3)"
RowNumber rowOf(const std::string& text) {
    int64_t block = 0, number = 0;
    const char* end = text.data() + text.size();
    const auto [comma, fault] = std::from_chars(text.data() + 1, end, block);
    if (fault != std::errc() || comma == end || std::from_chars(comma + 1, end, number).ec != std::errc())
        throw CDaoException("The server has given \"" + text + "\" for the place of a record.");
    return rowAt(block, number);
}

// The one value of the first row; "" for no row.
std::string answer(OdbcConnection& connection, const std::string& sql) {
    Statement statement(connection.handle());
    statement.execute(sql);
    return statement.fetch() ? statement.text(1) : "";
}

std::string classOf(const std::string& table) {
    return quotedText(table) + "::regclass";
}

// Goes along an index by the value that it stood on last. All records of one value come at once, since an
// index cannot be entered between them.
class IndexOrder : public TableRows::Order {
  public:
    IndexOrder(std::shared_ptr<OdbcConnection> connection, std::string table, std::string value,
               bool descending)
        : connection_(std::move(connection)),
          table_(std::move(table)),
          value_(std::move(value)),
          descending_(descending),
          isAtNulls_(!descending) {}

    bool next(size_t count, std::vector<RowNumber>& rows) override {
        const size_t wanted = rows.size() + count;
        while (!isAtEnd_ && rows.size() < wanted) {
            if (isAtNulls_) {
                nulls(rows);
                isAtEnd_ = descending_;
                isAtNulls_ = false;
            } else if (!values(wanted - rows.size(), rows)) {
                isAtEnd_ = !descending_;
                isAtNulls_ = descending_;
            }
        }
        return !isAtEnd_;
    }

  private:
    void nulls(std::vector<RowNumber>& rows) {
        Statement statement(connection_->handle());
        statement.execute("SELECT ctid FROM " + table_ + " WHERE " + value_ + " IS NULL");
        const size_t begin = rows.size();
        while (statement.fetch()) rows.push_back(rowOf(statement.text(1)));
        sortGroup(rows, begin);
    }

    bool values(size_t count, std::vector<RowNumber>& rows) {
        const std::string direction = descending_ ? " DESC" : "";
        // Without a name of its own the text would be what is ordered by.
        std::string sql =
            "SELECT ctid, " + value_ + "::text AS \"value as text\" FROM " + table_ + " WHERE " + value_;
        sql += last_ ? (descending_ ? " < " : " > ") + quotedText(*last_) : " IS NOT NULL";
        sql +=
            " ORDER BY " + value_ + direction + " FETCH FIRST " + std::to_string(count) + " ROWS WITH TIES";
        Statement statement(connection_->handle());
        statement.execute(sql);
        const size_t before = rows.size();
        size_t group = before;
        while (statement.fetch()) {
            const RowNumber row = rowOf(statement.text(1));
            std::string value = statement.text(2);
            if (!last_ || value != *last_) {
                sortGroup(rows, group);
                group = rows.size();
                last_ = std::move(value);
            }
            rows.push_back(row);
        }
        sortGroup(rows, group);
        return rows.size() - before >= count;
    }

    void sortGroup(std::vector<RowNumber>& rows, size_t begin) const {
        const auto first = rows.begin() + static_cast<long>(begin);
        if (descending_)
            std::sort(first, rows.end(), std::greater<>());
        else
            std::sort(first, rows.end());
    }

    std::shared_ptr<OdbcConnection> connection_;
    std::string table_, value_;
    bool descending_, isAtNulls_, isAtEnd_ = false;
    std::optional<std::string> last_;
};

}  // namespace

bool PostgresRows::serves(OdbcConnection& connection, const Catalogue::Table& table) {
    constexpr double kFirstVersion = 14;
    if (!connection.dialect().postgres || table.isView) return false;
    if (text::toReal(informationOf(connection.handle(), SQL_DBMS_VER)) < kFirstVersion) return false;
    // A table of several parts has several records at one place.
    return answer(connection, "SELECT relkind = 'r' AND NOT relhassubclass FROM pg_class WHERE oid = " +
                                  classOf(connection.written(table))) == "1";
}

std::string PostgresRows::indexed(const std::string& column, int type) {
    return isTextType(type) ? "upper(" + column + ")" : column;
}

PostgresRows::PostgresRows(std::shared_ptr<OdbcConnection> connection, const Catalogue::Table& table)
    : connection_(std::move(connection)),
      table_(connection_->written(table)),
      fields_(connection_->fieldsOf(table)) {}

int64_t PostgresRows::blocks() {
    return text::toLong(answer(*connection_,
                               "SELECT pg_relation_size(oid) / current_setting('block_size')::int FROM "
                               "pg_class WHERE oid = " +
                                   classOf(table_)));
}

void PostgresRows::run(const std::string& condition, const std::vector<Variant>& parameters,
                       std::span<const size_t> fields, const Visit& visit) {
    std::string sql = "SELECT ctid";
    for (size_t field : fields) sql += ", " + connection_->dialect().written(fields_[field].name);
    Statement statement(connection_->handle());
    sql += " FROM " + table_ + " WHERE " + condition;
    statement.execute(sql, parameters);
    std::vector<Column> columns;
    for (size_t i = 0; i < fields.size(); ++i) columns.push_back(statement.describe(static_cast<int>(i) + 2));
    std::vector<Variant> values;
    while (statement.fetch()) {
        const RowNumber row = rowOf(statement.text(1));
        values.clear();
        for (size_t i = 0; i < fields.size(); ++i)
            values.push_back(statement.value(static_cast<int>(i) + 2, columns[i], fields_[fields[i]].type));
        visit(row, values);
    }
}

bool PostgresRows::list(RowNumber& last, size_t count, std::vector<RowNumber>& rows) {
    return walk(last, count, {}, [&](RowNumber row, std::span<const Variant>) { rows.push_back(row); });
}

// A range of whole blocks costs the server no more than these blocks, whatever is wanted of the records in
// them.
bool PostgresRows::walk(RowNumber& last, size_t count, std::span<const size_t> fields, const Visit& visit) {
    const int64_t first = last == kBeforeAllRows ? 0 : blockOf(last);
    if (last == kBeforeAllRows) blocks_ = blocks();
    if (first >= blocks_) return false;
    // Of records that the server passes over itself more can be looked at in one go.
    constexpr int64_t kFirstBlocks = 8, kBlocksOfCondition = 400;
    int64_t wanted = where_.empty() ? kFirstBlocks : kBlocksOfCondition;
    if (recordsInBlock_ > 0)
        wanted = static_cast<int64_t>(std::ceil(static_cast<double>(count) / recordsInBlock_));
    const int64_t end = std::min(blocks_, first + wanted);
    std::string condition = "ctid >= " + place(rowAt(first, 0)) + " AND ctid < " + place(rowAt(end, 0));
    if (!where_.empty()) condition += " AND (" + where_ + ")";
    size_t found = 0;
    run(condition, parameters_, fields, [&](RowNumber row, std::span<const Variant> values) {
        ++found;
        visit(row, values);
    });
    if (where_.empty())
        recordsInBlock_ = std::max(static_cast<double>(found) / static_cast<double>(end - first), 1.0);
    last = rowAt(end, 0);
    return end < blocks_;
}

void PostgresRows::read(std::span<const RowNumber> rows, std::span<const size_t> fields, const Visit& visit) {
    std::unordered_map<RowNumber, RowNumber> numbers;  // by the present places
    std::vector<std::string> places;
    for (RowNumber row : rows) {
        const auto moved = moved_.find(row);
        const RowNumber now = moved == moved_.end() ? row : moved->second;
        numbers[now] = row;
        places.push_back(quotedText(placeText(now)));
    }
    if (places.empty()) return;
    run("ctid = ANY(ARRAY[" + text::join(places, ",") + "]::tid[])", {}, fields,
        [&](RowNumber now, std::span<const Variant> values) { visit(numbers.at(now), values); });
}

bool PostgresRows::hasIndex(size_t field) {
    // The server writes what an index holds with the types of its columns.
    const CDaoFieldInfo& info = fields_[field];
    const std::string held = indexed(connection_->dialect().written(info.name), info.type);
    return answer(*connection_,
                  "SELECT count(*) FROM pg_index i JOIN pg_class c ON c.oid = i.indexrelid JOIN pg_am a ON "
                  "a.oid = c.relam WHERE a.amname = 'btree' AND i.indisvalid AND i.indpred IS NULL AND "
                  "i.indrelid = " +
                      classOf(table_) +
                      " AND replace(replace(replace(pg_get_indexdef(i.indexrelid, 1, true), '::text', ''), "
                      "'((', '('), '))', ')') = " +
                      quotedText(held)) != "0";
}

std::unique_ptr<TableRows::Order> PostgresRows::order(size_t field, bool descending) {
    if (!hasIndex(field)) return nullptr;
    const CDaoFieldInfo& info = fields_[field];
    return std::make_unique<IndexOrder>(
        connection_, table_, indexed(connection_->dialect().written(info.name), info.type), descending);
}

std::optional<std::vector<RowNumber>> PostgresRows::find(size_t field, const std::string& text) {
    const CDaoFieldInfo& info = fields_[field];
    if (!isTextType(info.type)) return std::nullopt;
    std::vector<RowNumber> rows;
    run(indexed(connection_->dialect().written(info.name), info.type) + " = upper(" + quotedText(text) + ")",
        {}, {}, [&](RowNumber row, std::span<const Variant>) { rows.push_back(row); });
    for (const auto& [row, now] : moved_) std::replace(rows.begin(), rows.end(), now, row);
    std::sort(rows.begin(), rows.end());
    return rows;
}

bool PostgresRows::restrictTo(const std::string& where, const std::vector<Variant>& parameters) {
    // The whole of a statement tells which table the names of the condition belong to.
    const auto translated = [&](const std::string& sql) {
        return translateForServer(sql, connection_->dialect(), *connection_, false).sql;
    };
    const std::string select = "SELECT * FROM " + table_ + " WHERE ";
    where_ = translated(select + where).substr(translated(select).size());
    parameters_ = parameters;
    return true;
}

}  // namespace dao::odbc
