#include "platform/dao/access/virtual_table.h"

#include <algorithm>
#include <optional>

#include "platform/dao/access_sql.h"
#include "platform/dao/convert.h"
#include "platform/dao/sql_tokens.h"
#include "platform/dao/sqlite/schema.h"
#include "platform/text/text.h"

namespace dao::access {
namespace {

constexpr const char* kCollation = "ACCESS";

// How a cursor gets at its rows.
enum Way { kAllRows = 0, kRowId = 1, kIndex = 2, kLookup = 3 };

struct VirtualTable : sqlite3_vtab {
    AccessConnection* connection;
    std::shared_ptr<Table> table;
};

struct VirtualCursor : sqlite3_vtab_cursor {
    VirtualTable& owner() const { return *static_cast<VirtualTable*>(pVtab); }
    // All rows of the table, or those of a list.
    std::optional<jet::Walk> walk;
    std::vector<jet::RowId> rows;
    size_t position = 0;
    jet::RowId row;
    jet::Records::Place place;
    bool atEnd = true;
};

// Calls work and turns what it throws into an error of SQLite.
template <typename Work>
int guarded(sqlite3_vtab* table, AccessConnection& connection, Work work) {
    try {
        work();
        return SQLITE_OK;
    } catch (const std::exception& error) {
        connection.noteFailure(error.what());
        if (table) {
            sqlite3_free(table->zErrMsg);
            table->zErrMsg = sqlite3_mprintf("%s", error.what());
        }
        return SQLITE_ERROR;
    }
}

int connectTable(sqlite3* db, void* context, int, const char* const* arguments, sqlite3_vtab** out,
                 char** message) {
    auto& connection = *static_cast<AccessConnection*>(context);
    int declared = SQLITE_OK;
    int result = guarded(nullptr, connection, [&] {
        auto made = std::make_unique<VirtualTable>();
        static_cast<sqlite3_vtab&>(*made) = {};
        made->connection = &connection;
        made->table = connection.table(arguments[2]);
        std::vector<std::string> columns;
        for (const CDaoFieldInfo& field : made->table->fields()) {
            std::string column = quotedName(field.name) + " " + sqlite::declaredType(field);
            if (isTextType(field.type)) column += std::string(" COLLATE ") + kCollation;
            columns.push_back(column);
        }
        declared = sqlite3_declare_vtab(db, ("CREATE TABLE x(" + text::join(columns, ", ") + ")").c_str());
        if (declared == SQLITE_OK) *out = made.release();
    });
    if (result != SQLITE_OK) *message = sqlite3_mprintf("the table cannot be read");
    return result != SQLITE_OK ? result : declared;
}

int disconnectTable(sqlite3_vtab* table) {
    delete static_cast<VirtualTable*>(table);
    return SQLITE_OK;
}

bool isNumber(int type) {
    return type == dbByte || type == dbInteger || type == dbLong || type == dbSingle || type == dbDouble ||
           type == dbCurrency;
}

// Whether an equality on a field can be looked up by the value itself.
bool canBeFound(const Table& table, int column) {
    if (column < 0 || static_cast<size_t>(column) >= table.fields().size()) return false;
    const CDaoFieldInfo& field = table.fields()[static_cast<size_t>(column)];
    jet::Type stored = table.records->definition().columns[table.columns[static_cast<size_t>(column)]].type;
    return (field.type == dbText || field.type == dbMemo || isNumber(field.type)) &&
           stored != jet::Type::kDecimal;
}

// The index that has the most of its first columns among those that are compared; its columns in order.
struct IndexChoice {
    size_t index = 0;
    std::vector<int> constraints;  // of the first columns of the index
};

IndexChoice chooseIndex(const VirtualTable& table, const sqlite3_index_info& info) {
    const jet::TableDefinition& definition = table.table->records->definition();
    IndexChoice best;
    for (size_t i = 0; i < definition.indexes.size(); ++i) {
        const jet::KeyMaker& keys = table.table->records->keys(i);
        // An index that leaves rows out does not find them all.
        if (!keys.obstacle().empty()) continue;
        IndexChoice choice{i, {}};
        for (size_t column : keys.columns()) {
            int found = -1;
            for (int c = 0; c < info.nConstraint && found < 0; ++c) {
                const auto& constraint = info.aConstraint[c];
                bool equality = constraint.usable && constraint.op == SQLITE_INDEX_CONSTRAINT_EQ;
                if (equality && canBeFound(*table.table, constraint.iColumn) &&
                    table.table->columns[static_cast<size_t>(constraint.iColumn)] == column)
                    found = c;
            }
            if (found < 0) break;
            choice.constraints.push_back(found);
        }
        if (choice.constraints.size() > best.constraints.size()) best = choice;
    }
    return best;
}

int planQuery(sqlite3_vtab* vtab, sqlite3_index_info* info) {
    auto& table = *static_cast<VirtualTable*>(vtab);
    double rows = std::max<double>(table.table->records->definition().rows, 1);
    auto use = [&](Way way, const std::vector<int>& constraints, const std::string& detail, double found) {
        info->idxNum = way;
        info->idxStr = sqlite3_mprintf("%s", detail.c_str());
        info->needToFreeIdxStr = 1;
        for (size_t i = 0; i < constraints.size(); ++i)
            info->aConstraintUsage[constraints[i]].argvIndex = static_cast<int>(i) + 1;
        info->estimatedCost = found + 5;
        info->estimatedRows = static_cast<sqlite3_int64>(found);
    };
    std::vector<int> equalities;
    std::string columns;
    for (int i = 0; i < info->nConstraint; ++i) {
        const auto& constraint = info->aConstraint[i];
        if (!constraint.usable || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ) continue;
        if (constraint.iColumn < 0) {
            use(kRowId, {i}, "", 1);
            return SQLITE_OK;
        }
        if (!canBeFound(*table.table, constraint.iColumn)) continue;
        equalities.push_back(i);
        columns += std::to_string(constraint.iColumn) + " ";
    }
    IndexChoice index = chooseIndex(table, *info);
    if (!index.constraints.empty())
        use(kIndex, index.constraints, std::to_string(index.index), std::max(1.0, rows / 100));
    else if (!equalities.empty())
        use(kLookup, equalities, columns, std::max(2.0, rows / 50));
    else
        info->estimatedCost = rows * 2 + 10;
    return SQLITE_OK;
}

int openCursor(sqlite3_vtab*, sqlite3_vtab_cursor** out) {
    *out = new VirtualCursor();
    return SQLITE_OK;
}

int closeCursor(sqlite3_vtab_cursor* cursor) {
    delete static_cast<VirtualCursor*>(cursor);
    return SQLITE_OK;
}

// A compared value, if it is of the kind of its field: SQLite would convert others in ways of its own.
bool comparedValue(const CDaoFieldInfo& field, sqlite3_value* from, Variant& value) {
    int type = sqlite3_value_type(from);
    if (isTextType(field.type)) {
        if (type != SQLITE_TEXT) return false;
        auto* text = reinterpret_cast<const char*>(sqlite3_value_text(from));
        value = Variant(std::string(text, static_cast<size_t>(sqlite3_value_bytes(from))));
        return true;
    }
    if (type != SQLITE_INTEGER && type != SQLITE_FLOAT) return false;
    value = Variant(sqlite3_value_double(from));
    return true;
}

bool findByIndex(const Table& table, size_t index, const std::vector<Variant>& values,
                 std::vector<jet::RowId>& rows) {
    jet::ByteWriter key;
    try {
        for (size_t i = 0; i < values.size(); ++i) table.records->keys(index).append(key, i, values[i]);
    } catch (const jet::DamagedError&) {
        throw;
    } catch (const jet::Error&) {
        return false;  // a value that has no place in the index
    }
    rows = table.records->tree(index).find(key.bytes);
    std::sort(rows.begin(), rows.end());
    return true;
}

// Fills the cursor's list of rows, where there is a quick way to them.
bool findRows(VirtualCursor& cursor, int way, const char* detail, int count, sqlite3_value** arguments) {
    VirtualTable& owner = cursor.owner();
    Table& table = *owner.table;
    if (way == kAllRows) return false;
    for (int i = 0; i < count; ++i)
        if (sqlite3_value_type(arguments[i]) == SQLITE_NULL) return true;  // nothing equals Null
    if (way == kRowId) {
        sqlite3_int64 row = sqlite3_value_int64(arguments[0]);
        if (row > 0 && row <= 0xFFFFFFFF)
            cursor.rows.push_back(jet::RowId::fromNumber(static_cast<uint32_t>(row)));
        return true;
    }
    std::vector<size_t> columns;
    if (way == kIndex) {
        columns = table.records->keys(static_cast<size_t>(text::toLong(detail))).columns();
    } else {
        for (const std::string& field : text::split(text::trim(detail), ' '))
            columns.push_back(table.columns[static_cast<size_t>(text::toLong(field))]);
    }
    std::vector<Variant> values(static_cast<size_t>(count));
    for (size_t i = 0; i < values.size(); ++i) {
        auto field =
            std::find(table.columns.begin(), table.columns.end(), columns[i]) - table.columns.begin();
        if (!comparedValue(table.fields()[static_cast<size_t>(field)], arguments[i], values[i])) return false;
    }
    if (way == kIndex)
        return findByIndex(table, static_cast<size_t>(text::toLong(detail)), values, cursor.rows);
    return owner.connection->find(table, columns, values, cursor.rows);
}

void step(VirtualCursor& cursor) {
    jet::Records& records = *cursor.owner().table->records;
    if (cursor.walk) {
        cursor.atEnd = !cursor.walk->next();
        if (cursor.atEnd) return;
        cursor.row = cursor.walk->row();
        return;
    }
    while (cursor.position < cursor.rows.size()) {
        cursor.row = cursor.rows[cursor.position++];
        if (records.find(cursor.row, cursor.place)) return;
    }
    cursor.atEnd = true;
}

int filter(sqlite3_vtab_cursor* base, int way, const char* detail, int count, sqlite3_value** arguments) {
    auto& cursor = *static_cast<VirtualCursor*>(base);
    return guarded(base->pVtab, *cursor.owner().connection, [&] {
        cursor.walk.reset();
        cursor.rows.clear();
        cursor.position = 0;
        cursor.atEnd = false;
        if (!findRows(cursor, way, detail, count, arguments))
            cursor.walk.emplace(cursor.owner().table->records);
        step(cursor);
    });
}

int nextRow(sqlite3_vtab_cursor* base) {
    auto& cursor = *static_cast<VirtualCursor*>(base);
    return guarded(base->pVtab, *cursor.owner().connection, [&] { step(cursor); });
}

int atEnd(sqlite3_vtab_cursor* cursor) {
    return static_cast<VirtualCursor*>(cursor)->atEnd;
}

// Gives a value to SQLite, in the form in which the engine for SQLite files keeps it.
struct Giver {
    sqlite3_context* c;
    void operator()(std::monostate) const { sqlite3_result_null(c); }
    void operator()(bool v) const { sqlite3_result_int(c, v ? -1 : 0); }
    void operator()(uint8_t v) const { sqlite3_result_int(c, v); }
    void operator()(int16_t v) const { sqlite3_result_int(c, v); }
    void operator()(int32_t v) const { sqlite3_result_int(c, v); }
    void operator()(float v) const { sqlite3_result_double(c, static_cast<double>(v)); }
    void operator()(double v) const { sqlite3_result_double(c, v); }
    void operator()(Currency v) const {
        sqlite3_result_double(c, static_cast<double>(v.tenThousandths) / 10000);
    }
    void operator()(Date v) const { (*this)(dateAndTime(v)); }
    void operator()(const std::string& v) const {
        sqlite3_result_text64(c, v.data(), v.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    void operator()(const Binary& v) const { sqlite3_result_blob64(c, v.data(), v.size(), SQLITE_TRANSIENT); }
};

int giveColumn(sqlite3_vtab_cursor* base, sqlite3_context* context, int column) {
    auto& cursor = *static_cast<VirtualCursor*>(base);
    VirtualTable& owner = cursor.owner();
    // A column that an UPDATE does not change.
    if (sqlite3_vtab_nochange(context)) return SQLITE_OK;
    return guarded(base->pVtab, *owner.connection, [&] {
        const Table& table = *owner.table;
        jet::RowView view = cursor.walk ? cursor.walk->view() : table.records->view(cursor.place);
        std::visit(Giver{context}, table.value(view, table.columns[static_cast<size_t>(column)]).content());
    });
}

int giveRowId(sqlite3_vtab_cursor* base, sqlite3_int64* row) {
    *row = static_cast<VirtualCursor*>(base)->row.number();
    return SQLITE_OK;
}

Variant givenValue(sqlite3_value* from) {
    switch (sqlite3_value_type(from)) {
        case SQLITE_NULL:
            return {};
        case SQLITE_INTEGER:
        case SQLITE_FLOAT:
            return Variant(sqlite3_value_double(from));
        case SQLITE_BLOB: {
            auto* bytes = static_cast<const unsigned char*>(sqlite3_value_blob(from));
            return Variant(Binary(bytes, bytes + sqlite3_value_bytes(from)));
        }
        default: {
            auto* text = reinterpret_cast<const char*>(sqlite3_value_text(from));
            return Variant(std::string(text, static_cast<size_t>(sqlite3_value_bytes(from))));
        }
    }
}

// DELETE has one argument: the row. INSERT and UPDATE have the old row, the new one, and the values.
int changeRow(sqlite3_vtab* base, int count, sqlite3_value** arguments, sqlite3_int64* newRow) {
    auto& owner = *static_cast<VirtualTable*>(base);
    return guarded(base, *owner.connection, [&] {
        Table& table = *owner.table;
        bool inserts = sqlite3_value_type(arguments[0]) == SQLITE_NULL;
        auto row = jet::RowId::fromNumber(static_cast<uint32_t>(sqlite3_value_int64(arguments[0])));
        if (count == 1) return owner.connection->erase(table, row);
        std::vector<Variant> values;
        std::vector<bool> touched;
        for (int i = 2; i < count; ++i) {
            // A column that an INSERT leaves out comes as Null.
            const std::string& field = table.fields()[static_cast<size_t>(i) - 2].name;
            touched.push_back(inserts ? owner.connection->insertNames(field)
                                      : !sqlite3_value_nochange(arguments[i]));
            values.push_back(touched.back() ? givenValue(arguments[i]) : Variant());
        }
        if (!inserts) return owner.connection->update(table, row, values, touched);
        *newRow = owner.connection->insert(table, values, touched).number();
    });
}

// SQLite wants to know of transactions to let several tables change at once; they are the connection's own.
int transactionStep(sqlite3_vtab*) {
    return SQLITE_OK;
}

int compareText(void*, int aSize, const void* a, int bSize, const void* b) {
    auto folded = [](const void* bytes, int size) {
        std::string_view s(static_cast<const char*>(bytes), static_cast<size_t>(size));
        size_t end = s.find_last_not_of(' ');
        return s.substr(0, end == std::string_view::npos ? 0 : end + 1);
    };
    std::string_view left = folded(a, aSize), right = folded(b, bSize);
    size_t common = std::min(left.size(), right.size());
    for (size_t i = 0; i < common; ++i) {
        auto l = static_cast<unsigned char>(left[i]), r = static_cast<unsigned char>(right[i]);
        if ((l | r) & 0x80) return text::upper(left).compare(text::upper(right));
        if (l >= 'a' && l <= 'z') l = static_cast<unsigned char>(l - 32);
        if (r >= 'a' && r <= 'z') r = static_cast<unsigned char>(r - 32);
        if (l != r) return l < r ? -1 : 1;
    }
    return left.size() < right.size() ? -1 : left.size() > right.size();
}

const sqlite3_module kModule = [] {
    sqlite3_module module = {};
    module.iVersion = 1;
    module.xCreate = connectTable;
    module.xConnect = connectTable;
    module.xBestIndex = planQuery;
    module.xDisconnect = disconnectTable;
    module.xDestroy = disconnectTable;
    module.xOpen = openCursor;
    module.xClose = closeCursor;
    module.xFilter = filter;
    module.xNext = nextRow;
    module.xEof = atEnd;
    module.xColumn = giveColumn;
    module.xRowid = giveRowId;
    module.xUpdate = changeRow;
    module.xBegin = transactionStep;
    module.xSync = transactionStep;
    module.xCommit = transactionStep;
    module.xRollback = transactionStep;
    return module;
}();

}  // namespace

void addVirtualTables(sqlite3* db, AccessConnection& connection) {
    sqlite3_create_module_v2(db, "access", &kModule, &connection, nullptr);
    sqlite3_create_collation_v2(db, kCollation, SQLITE_UTF8, nullptr, compareText, nullptr);
}

}  // namespace dao::access
