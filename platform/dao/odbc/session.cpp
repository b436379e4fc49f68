#include "platform/dao/odbc/session.h"

#include <utility>

#include "platform/dao/odbc/sign_in.h"
#include "platform/dao/odbc/statement.h"

namespace dao::odbc {
namespace {

// The source's own name or, where a driver is named instead, that of the database.
std::string nameOf(SQLHDBC connection) {
    for (SQLUSMALLINT what : {SQL_DATA_SOURCE_NAME, SQL_DATABASE_NAME, SQL_SERVER_NAME})
        if (std::string name = informationOf(connection, what); !name.empty()) return name;
    return "";
}

}  // namespace

Session::Session(const Source& source) : handle_(SQL_HANDLE_DBC, environment()) {
    if (source.readOnly)
        SQLSetConnectAttr(handle_.get(), SQL_ATTR_ACCESS_MODE,
                          reinterpret_cast<SQLPOINTER>(SQL_MODE_READ_ONLY), 0);
    connect_ = signIn(handle_, source.connect, !source.readOnly);
    connected_ = true;
    owner_ = connect_.tableOwner();
    name_ = nameOf(handle_.get());
    version_ = informationOf(handle_.get(), SQL_DBMS_VER);
    dialect_ = Dialect(handle_.get());
    // What a transaction has not found, nobody else adds before it ends. On PostgreSQL, where such
    // transactions fail by chance, a lock on the table does this better.
    if (!dialect_.postgres)
        SQLSetConnectAttr(handle_.get(), SQL_ATTR_TXN_ISOLATION,
                          reinterpret_cast<SQLPOINTER>(static_cast<SQLULEN>(SQL_TXN_SERIALIZABLE)), 0);
}

Session::~Session() {
    if (connected_) SQLDisconnect(handle_.get());
}

const ServerTypes& Session::types() {
    if (!types_) types_.emplace(handle_.get(), dialect_);
    return *types_;
}

bool Session::answers() const {
    try {
        Statement question(handle_.get());
        question.execute("SELECT 1");
        return question.fetch();
    } catch (const CDaoException&) {
        return false;
    }
}

std::unique_ptr<Session> IdleSessions::take(const Source& source) {
    closeOld();
    auto kept = idle_.find({source.connect, source.readOnly});
    if (kept != idle_.end()) {
        std::unique_ptr<Session> session = std::move(kept->second.session);
        idle_.erase(kept);
        if (session->answers()) return session;
    }
    return std::make_unique<Session>(source);
}

void IdleSessions::giveBack(const Source& source, std::unique_ptr<Session> session) {
    closeOld();
    // What was asked for in the box is known to the caller from now on by the whole string.
    Key key(session->connect(), source.readOnly);
    idle_.insert_or_assign(std::move(key), Idle{std::move(session), std::chrono::steady_clock::now()});
}

void IdleSessions::closeOld() {
    auto now = std::chrono::steady_clock::now();
    std::erase_if(idle_, [now](const auto& entry) { return now - entry.second.since > kKept; });
}

}  // namespace dao::odbc
