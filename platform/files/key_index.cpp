#include "platform/files/key_index.h"

#include <sqlite3.h>

#include <iterator>

#include "platform/files/files.h"

namespace files {
namespace {

constexpr const char* kSchema =
    "CREATE TABLE keys(key TEXT COLLATE key_order PRIMARY KEY, record INTEGER NOT NULL) WITHOUT ROWID;"
    "CREATE TABLE store(identity INTEGER NOT NULL);";

constexpr const char* kSql[] = {
    "SELECT key, record FROM keys WHERE key = ?1",
    "SELECT key, record FROM keys ORDER BY key LIMIT 1",
    "SELECT key, record FROM keys ORDER BY key DESC LIMIT 1",
    "SELECT key, record FROM keys WHERE key > ?1 ORDER BY key LIMIT 1",
    "SELECT key, record FROM keys WHERE key < ?1 ORDER BY key DESC LIMIT 1",
    "INSERT INTO keys VALUES(?1, ?2)",
    "INSERT OR REPLACE INTO keys VALUES(?1, ?2)",
    "DELETE FROM keys WHERE key = ?1",
    "SELECT count(*) FROM keys",
};

int compareKeys(void* order, int lengthA, const void* a, int lengthB, const void* b) {
    return (*static_cast<KeyIndex::Order*>(order))(
        {static_cast<const char*>(a), static_cast<size_t>(lengthA)},
        {static_cast<const char*>(b), static_cast<size_t>(lengthB)});
}

// Ends the use of a statement whatever way the block is left.
struct Resetting {
    sqlite3_stmt* statement;
    ~Resetting() { sqlite3_reset(statement); }
};

void bindKey(sqlite3_stmt* statement, const std::string& key) {
    sqlite3_bind_text(statement, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
}

}  // namespace

struct KeyIndex::Connection {
    Order order = nullptr;
    sqlite3* database = nullptr;
    sqlite3_stmt* statements[std::size(kSql)] = {};

    ~Connection() {
        for (sqlite3_stmt* statement : statements) sqlite3_finalize(statement);
        sqlite3_close(database);
    }
};

KeyIndex::KeyIndex() : connection_(std::make_unique<Connection>()) {}
KeyIndex::~KeyIndex() = default;

std::unique_ptr<KeyIndex> KeyIndex::openFile(const std::string& path, Order order) {
    std::unique_ptr<KeyIndex> index(new KeyIndex);
    index->connection_->order = order;
    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    bool opened = sqlite3_open_v2(files::onDisk(path).c_str(), &index->connection_->database, flags,
                                  nullptr) == SQLITE_OK &&
                  sqlite3_create_collation(index->connection_->database, "key_order", SQLITE_UTF8,
                                           &index->connection_->order, compareKeys) == SQLITE_OK &&
                  index->run(
                      "PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;"
                      "PRAGMA cache_size=-65536");
    if (!opened) return nullptr;
    return index;
}

std::unique_ptr<KeyIndex> KeyIndex::open(const std::string& path, uint64_t identity, Order order) {
    if (!files::exists(path)) return nullptr;
    std::unique_ptr<KeyIndex> index = openFile(path, order);
    if (!index || !index->belongsTo(identity) || !index->prepare()) return nullptr;
    return index;
}

std::unique_ptr<KeyIndex> KeyIndex::create(const std::string& path, uint64_t identity, Order order) {
    if (!files::remove(path)) return nullptr;
    std::unique_ptr<KeyIndex> index = openFile(path, order);
    std::string own = "INSERT INTO store VALUES(" + std::to_string(static_cast<int64_t>(identity)) + ")";
    bool made = index && index->run(kSchema) && index->run(own.c_str()) && index->prepare();
    if (!made) return nullptr;
    return index;
}

bool KeyIndex::run(const char* sql) {
    return sqlite3_exec(connection_->database, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool KeyIndex::belongsTo(uint64_t identity) {
    sqlite3_stmt* statement = nullptr;
    const char* sql = "SELECT identity FROM store";
    bool same = sqlite3_prepare_v2(connection_->database, sql, -1, &statement, nullptr) == SQLITE_OK &&
                sqlite3_step(statement) == SQLITE_ROW &&
                static_cast<uint64_t>(sqlite3_column_int64(statement, 0)) == identity;
    sqlite3_finalize(statement);
    return same;
}

bool KeyIndex::prepare() {
    for (size_t i = 0; i < std::size(kSql); ++i)
        if (sqlite3_prepare_v3(connection_->database, kSql[i], -1, SQLITE_PREPARE_PERSISTENT,
                               &connection_->statements[i], nullptr) != SQLITE_OK)
            return false;
    return true;
}

KeyIndex::Found KeyIndex::find(Step step, std::string& key, int32_t& record) {
    sqlite3_stmt* statement = connection_->statements[static_cast<int>(step)];
    Resetting resetting{statement};
    if (step != Step::kFirst && step != Step::kLast) bindKey(statement, key);
    int status = sqlite3_step(statement);
    if (status != SQLITE_ROW) return status == SQLITE_DONE ? Found::kNo : Found::kFailed;
    auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    key = std::string(text ? text : "", static_cast<size_t>(sqlite3_column_bytes(statement, 0)));
    record = static_cast<int32_t>(sqlite3_column_int64(statement, 1));
    return Found::kYes;
}

int KeyIndex::change(Statement which, const std::string& key, int32_t record) {
    sqlite3_stmt* statement = connection_->statements[which];
    Resetting resetting{statement};
    bindKey(statement, key);
    if (which != kRemove) sqlite3_bind_int64(statement, 2, record);
    return sqlite3_step(statement);
}

KeyIndex::Found KeyIndex::add(const std::string& key, int32_t record) {
    int status = change(kAdd, key, record);
    if (status == SQLITE_CONSTRAINT) return Found::kNo;
    return status == SQLITE_DONE ? Found::kYes : Found::kFailed;
}

bool KeyIndex::put(const std::string& key, int32_t record) {
    return change(kPut, key, record) == SQLITE_DONE;
}

bool KeyIndex::remove(const std::string& key) {
    return change(kRemove, key, 0) == SQLITE_DONE;
}

long KeyIndex::count() {
    sqlite3_stmt* statement = connection_->statements[kCount];
    Resetting resetting{statement};
    return sqlite3_step(statement) == SQLITE_ROW ? static_cast<long>(sqlite3_column_int64(statement, 0)) : 0;
}

}  // namespace files
