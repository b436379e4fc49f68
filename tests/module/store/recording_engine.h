// A database server that keeps what it is told: the statements of the ODBC route are checked against it.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/dao/engine.h"
#include "platform/text/text.h"

class RecordingEngine : public dao::Engine {
  public:
    // What the server holds: its tables with their fields, and whether a SELECT finds a record.
    std::map<std::string, std::vector<CDaoFieldInfo>> tables;
    std::vector<std::string> found;  // the values of the one record that SELECTs find; empty: they find none
    // The connect string with which the driver says that it was opened.
    std::string actualConnect;
    std::string error;  // raised by the next statement, when it is not empty

    std::vector<std::string> opened;  // connect strings, with their passwords
    std::vector<std::string> log;     // statements and changes of tables, in order

    bool opens(const dao::Source& source) const override { return source.connect.onServer(); }
    std::shared_ptr<dao::Connection> open(const dao::Source& source) override;
};

class RecordingCursor : public dao::Cursor {
  public:
    RecordingCursor(std::vector<CDaoFieldInfo> fields, const std::vector<std::string>& record)
        : fields_(std::move(fields)), record_(record.begin(), record.end()) {
        record_.resize(record.empty() ? 0 : fields_.size());
    }
    const std::vector<CDaoFieldInfo>& fields() const override { return fields_; }
    bool updatable() const override { return false; }
    bool moveTo(long position) override { return position < count(); }
    long count() override { return record_.empty() ? 0 : 1; }
    const dao::Variant& value(int field) override { return record_[static_cast<size_t>(field)]; }
    void insert(const std::vector<dao::Variant>&, const std::vector<bool>&) override {}
    void update(const std::vector<dao::Variant>&, const std::vector<bool>&) override {}
    void remove() override {}

  private:
    std::vector<CDaoFieldInfo> fields_;
    std::vector<dao::Variant> record_;
};

class RecordingConnection : public dao::Connection {
  public:
    RecordingConnection(RecordingEngine& engine, const dao::ConnectString& connect)
        : engine_(engine),
          connect_(engine.actualConnect.empty() ? connect : dao::ConnectString(engine.actualConnect)) {}

    std::string name() const override { return "survey"; }
    dao::ConnectString connect() const override { return connect_; }
    std::vector<CDaoTableDefInfo> tables() override {
        std::vector<CDaoTableDefInfo> list;
        for (const auto& [table, fields] : engine_.tables) list.push_back({table, "", true});
        return list;
    }
    std::vector<CDaoFieldInfo> fields(const std::string& table) override { return engine_.tables.at(table); }
    void createTable(const std::string& table, const std::vector<CDaoFieldInfo>& fields) override {
        engine_.log.push_back("create " + table);
        engine_.tables[table] = fields;
    }
    void deleteTable(const std::string& table) override { engine_.log.push_back("drop " + table); }
    void renameTable(const std::string& table, const std::string&) override {
        engine_.log.push_back("rename " + table);
    }
    void createField(const std::string& table, const CDaoFieldInfo& field) override {
        engine_.log.push_back("add " + table + " " + field.name);
        engine_.tables[table].push_back(field);
    }
    void deleteField(const std::string& table, const std::string& field) override {
        engine_.log.push_back("delete " + table + " " + field);
    }
    void execute(const std::string& sql, int options) override {
        record(sql + (options == dbSQLPassThrough ? "" : " (not passed through)"));
    }
    std::unique_ptr<dao::Cursor> open(int, const std::string& sql, int,
                                      const std::vector<dao::Variant>&) override {
        record(sql);
        std::vector<CDaoFieldInfo> fields =
            engine_.tables.empty() ? std::vector<CDaoFieldInfo>{} : engine_.tables.begin()->second;
        return std::make_unique<RecordingCursor>(fields, engine_.found);
    }
    void commit() override {}
    void beginTransaction() override {}
    void endTransaction(bool) override {}

  private:
    void record(const std::string& sql) {
        engine_.log.push_back(sql);
        if (std::string error = std::exchange(engine_.error, ""); !error.empty()) throw CDaoException(error);
    }

    RecordingEngine& engine_;
    dao::ConnectString connect_;
};

inline std::shared_ptr<dao::Connection> RecordingEngine::open(const dao::Source& source) {
    opened.push_back(source.connect.withPassword().reveal());
    return std::make_shared<RecordingConnection>(*this, source.connect);
}
