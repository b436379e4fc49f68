// A database of a server, through the ODBC driver manager.
//
// Every change lasts as soon as it is made, unless a transaction of the caller's is under way. A transaction
// waits for others as long as a locked file does (lockTimeout), then it is an error.
//
// Tables are listed as OWNER.TABLE where the server has owners. New tables go to the owner that the connect
// string means, its schema or its user, as statements name them; the owner is made where it is missing.
#pragma once

#include <map>
#include <optional>

#include "platform/dao/engine.h"
#include "platform/dao/odbc/dialect.h"
#include "platform/dao/odbc/session.h"
#include "platform/dao/odbc/statement.h"
#include "platform/dao/odbc/statement_text.h"

namespace dao::odbc {

class OdbcConnection : public Connection,
                       public Catalogue,
                       public std::enable_shared_from_this<OdbcConnection> {
  public:
    OdbcConnection(std::shared_ptr<IdleSessions> idle, const Source& source);
    ~OdbcConnection() override;

    std::string name() const override { return session_->name(); }
    ConnectString connect() const override { return session_->connect(); }
    std::string version() const override { return session_->version(); }
    EngineKind kind() const override;
    std::vector<CDaoTableDefInfo> tables() override;
    std::vector<CDaoFieldInfo> fields(const std::string& table) override;
    void createTable(const std::string& table, const std::vector<CDaoFieldInfo>& fields) override;
    void deleteTable(const std::string& table) override;
    void renameTable(const std::string& table, const std::string& newName) override;
    void createField(const std::string& table, const CDaoFieldInfo& field) override;
    void deleteField(const std::string& table, const std::string& field) override;
    void indexForSearch(const std::string& table, const std::vector<std::string>& fields) override;
    void execute(const std::string& sql, int options) override;
    void useKnownTables() override { usesKnown_ = true; }
    bool forgetKnownTables() override;
    std::unique_ptr<Cursor> open(int type, const std::string& sql, int options,
                                 const std::vector<Variant>& parameters) override;
    std::unique_ptr<TableRows> rows(const std::string& table) override;
    void createIndex(const std::string& table, const std::vector<std::string>& fields) override;
    // There is nothing that waits to be made to last.
    void commit() override {}
    void beginTransaction() override;
    void endTransaction(bool keep) override;

    const Table* find(std::string_view owner, std::string_view name) override;
    const std::vector<std::string>& columnsOf(const Table& table) override;

    SQLHDBC handle() const { return session_->handle().get(); }
    const Dialect& dialect() const { return session_->dialect(); }
    const std::vector<CDaoFieldInfo>& fieldsOf(const Table& table);
    // A table as statements name it.
    std::string written(const Table& table) const;
    // The columns by which the records of a table are told from each other; empty when there are none.
    std::vector<std::string> keyOf(const Table& table);
    // Runs a change that must touch exactly one record, and is undone otherwise.
    void changeOne(Statement& statement);

  private:
    void readTables();
    // What is known of the tables: what this opening has read or, where that may be used, an earlier one.
    KnownTables& known();
    void forget();
    const Table& required(const std::string& name);
    std::vector<Column> readColumns(const Table& table);
    std::string columnDefinition(const CDaoFieldInfo& field);
    std::string ownerNamed(const std::string& name);
    std::string ownerOfNewTables();
    void run(const std::string& sql);
    // Runs a change of the schema. Where it fails because another client has made the same thing in the
    // meantime, as `isThere` then says, the exception is a CDaoConflict.
    template <typename IsThere>
    void changeSchema(const std::string& sql, IsThere isThere);
    void denyWriting(const Table& table, const std::string& statement,
                     const std::vector<Variant>& parameters);
    bool setAutoCommit(bool on);

    std::shared_ptr<IdleSessions> idle_;
    Source source_;
    std::unique_ptr<Session> session_;
    bool transaction_ = false;
    bool reusable_ = true;  // the session, by others

    bool fromBefore_ = true;  // what the session knows was read by an earlier opening
    bool usesKnown_ = false;
};

}  // namespace dao::odbc
