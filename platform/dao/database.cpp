#include "platform/dao/dao.h"

#include <algorithm>
#include <utility>

#include "platform/dao/engines.h"
#include "platform/dao/errors.h"
#include "platform/text/text.h"

namespace {

unsigned long& changes() {
    static unsigned long made = 0;
    return made;
}

}  // namespace

unsigned long dao::changesMade() {
    return changes();
}

void dao::noteChange() {
    ++changes();
}

CDaoDatabase::CDaoDatabase() = default;

CDaoDatabase::~CDaoDatabase() {
    try {
        Close();
    } catch (const CDaoException&) {
        // Whoever wants to hear of a failing commit calls Close.
    }
}

void CDaoDatabase::Create(const std::string& path, const char* locale, int options) {
    Close();
    connection_ = dao::createSource(path, locale, options);
}

void CDaoDatabase::Open(const std::string& path, bool exclusive, bool readOnly,
                        const dao::ConnectString& connect) {
    Close();
    connection_ = dao::openSource(path, exclusive, readOnly, connect);
}

void CDaoDatabase::Close() {
    // The connection is let go even when the commit fails.
    std::shared_ptr<dao::Connection> closing = std::move(connection_);
    connection_ = nullptr;
    tables_.clear();
    listIsFresh_ = false;
    if (!closing) return;
    if (std::exchange(transaction_, false)) closing->endTransaction(false);
    closing->commit();
}

dao::Connection& CDaoDatabase::connection() const {
    if (!connection_) throw CDaoException("The database is not open.");
    return *connection_;
}

std::string CDaoDatabase::GetName() const {
    return connection().name();
}
dao::ConnectString CDaoDatabase::GetConnect() const {
    return connection().connect();
}
std::string CDaoDatabase::GetVersion() const {
    return connection().version();
}
dao::EngineKind CDaoDatabase::GetEngineKind() const {
    return connection().kind();
}

int CDaoDatabase::GetTableDefCount() const {
    tables_ = connection().tables();
    listIsFresh_ = true;
    return static_cast<int>(tables_.size());
}

void CDaoDatabase::GetTableDefInfo(int index, CDaoTableDefInfo& info) const {
    if (tables_.empty()) tables_ = connection().tables();
    if (index < 0 || index >= static_cast<int>(tables_.size()))
        throw CDaoException("There is no table of the number " + std::to_string(index) + ".");
    info = tables_[static_cast<size_t>(index)];
}

void CDaoDatabase::GetTableDefInfo(const std::string& name, CDaoTableDefInfo& info) const {
    auto isIn = [&](const std::vector<CDaoTableDefInfo>& tables) {
        auto found = std::find_if(tables.begin(), tables.end(), [&](const CDaoTableDefInfo& table) {
            return text::equalNoCase(table.name, name);
        });
        if (found != tables.end()) info = *found;
        return found != tables.end();
    };
    if (listIsFresh_ && isIn(tables_)) return;
    if (!isIn(connection().tables())) dao::noSuchTable(name);
}

void CDaoDatabase::DeleteTableDef(const std::string& name) {
    listIsFresh_ = false;
    connection().deleteTable(name);
}

void CDaoDatabase::UseKnownTables() {
    connection().useKnownTables();
}

bool CDaoDatabase::ForgetKnownTables() {
    listIsFresh_ = false;
    return connection().forgetKnownTables();
}

void CDaoDatabase::IndexForSearch(const std::string& table, const std::vector<std::string>& fields) {
    connection().indexForSearch(table, fields);
}

void CDaoDatabase::CreateIndex(const std::string& table, const std::vector<std::string>& fields) {
    connection().createIndex(table, fields);
    connection().commit();
}

void CDaoDatabase::Execute(const std::string& sql, int options) {
    listIsFresh_ = false;
    dao::noteChange();
    connection().execute(sql, options);
}

void CDaoDatabase::BeginTrans() {
    if (transaction_) throw CDaoException("A transaction is under way already.");
    connection().beginTransaction();
    transaction_ = true;
}

void CDaoDatabase::CommitTrans() {
    if (!std::exchange(transaction_, false)) throw CDaoException("No transaction is under way.");
    connection().endTransaction(true);
}

void CDaoDatabase::Rollback() {
    if (!std::exchange(transaction_, false)) throw CDaoException("No transaction is under way.");
    listIsFresh_ = false;
    dao::noteChange();
    connection().endTransaction(false);
}
