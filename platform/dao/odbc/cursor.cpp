#include "platform/dao/odbc/cursor.h"

#include <algorithm>

#include "platform/dao/errors.h"
#include "platform/text/text.h"

namespace dao::odbc {
namespace {

// Reals and long values do not compare well; PostgreSQL compares texts of any length.
bool tellsApart(const CDaoFieldInfo& field, const Dialect& dialect) {
    switch (field.type) {
        case dbMemo:
            return dialect.postgres;
        case dbSingle:
        case dbDouble:
        case dbLongBinary:
        case dbBinary:
        case dbDate:
            return false;
        default:
            return true;
    }
}

bool any(const std::vector<bool>& flags) {
    return std::find(flags.begin(), flags.end(), true) != flags.end();
}

}  // namespace

OdbcCursor::OdbcCursor(std::shared_ptr<OdbcConnection> connection, const ServerStatement& statement, int type,
                       const std::vector<Variant>& parameters)
    : connection_(std::move(connection)), rows_(connection_->handle()) {
    rows_.execute(statement.sql, parameters);
    int columns = rows_.columns();
    if (columns == 0) throw CDaoException("A record set needs a statement that gives records.");
    for (int i = 1; i <= columns; ++i) columns_.push_back(rows_.describe(i));
    if (statement.table) table_ = *statement.table;
    for (int i = 1; i <= columns; ++i) {
        Column& column = columns_[static_cast<size_t>(i) - 1];
        const CDaoFieldInfo* known = statement.table ? fieldNamed(column.name) : nullptr;
        if (!known) rows_.describeFully(i, column);
        fields_.push_back(known ? *known : fieldOf(column));
        fields_.back().ordinalPosition = i - 1;
    }
    if (connection_->dialect().oneStatement) OdbcCursor::count();
    if (!statement.table) return;
    updatable_ = type != dbOpenSnapshot && !table_.isView;
}

// The field of the table by exactly this name.
const CDaoFieldInfo* OdbcCursor::fieldNamed(const std::string& name) const {
    for (const CDaoFieldInfo& field : connection_->fieldsOf(table_))
        if (field.name == name) return &field;
    return nullptr;
}

bool OdbcCursor::readOne() {
    if (allRead_) return false;
    if (!rows_.fetch()) {
        allRead_ = true;
        return false;
    }
    Record& record = records_.emplace_back();
    record.values.reserve(fields_.size());
    for (size_t i = 0; i < fields_.size(); ++i)
        record.values.push_back(rows_.value(static_cast<int>(i) + 1, columns_[i], fields_[i].type));
    return true;
}

bool OdbcCursor::moveTo(long position) {
    while (position >= static_cast<long>(records_.size()) && readOne()) {
    }
    position_ = position < static_cast<long>(records_.size()) ? position : -1;
    return position_ >= 0;
}

long OdbcCursor::count() {
    while (readOne()) {
    }
    return static_cast<long>(records_.size());
}

OdbcCursor::Record& OdbcCursor::record() {
    if (position_ < 0) noCurrentRecord();
    Record& record = records_[static_cast<size_t>(position_)];
    if (record.deleted) recordDeleted();
    return record;
}

const Variant& OdbcCursor::value(int field) {
    return record().values[static_cast<size_t>(field)];
}

const std::vector<size_t>& OdbcCursor::keyFields() {
    if (keyFields_) return *keyFields_;
    keyFields_.emplace();
    std::vector<std::string> key = connection_->keyOf(table_);
    for (const std::string& column : key)
        for (size_t i = 0; i < fields_.size(); ++i)
            if (fields_[i].name == column) keyFields_->push_back(i);
    // A key that the statement has not read in full is none.
    if (!key.empty() && keyFields_->size() == key.size()) return *keyFields_;
    keyFields_->clear();
    for (size_t i = 0; i < fields_.size(); ++i)
        if (tellsApart(fields_[i], connection_->dialect())) keyFields_->push_back(i);
    if (keyFields_->empty())
        throw CDaoException("The table " + table_.name + " has no key: its records cannot be changed.");
    return *keyFields_;
}

std::string OdbcCursor::condition(const Record& record) {
    std::string out;
    for (size_t i : keyFields()) {
        out += out.empty() ? " WHERE " : " AND ";
        out += connection_->dialect().written(fields_[i].name);
        out += record.values[i].isNull() ? " IS NULL" : " = ?";
    }
    return out;
}

void OdbcCursor::bindCondition(Statement& statement, int parameter, const Record& record) {
    for (size_t i : keyFields())
        if (!record.values[i].isNull()) statement.bind(parameter++, record.values[i]);
}

void OdbcCursor::insert(const std::vector<Variant>& values, const std::vector<bool>& touched) {
    if (!inserting_ || inserted_ != touched) {
        std::vector<std::string> columns, parameters;
        for (size_t i = 0; i < fields_.size(); ++i) {
            if (!touched[i]) continue;
            columns.push_back(connection_->dialect().written(fields_[i].name));
            parameters.emplace_back("?");
        }
        std::string sql = "INSERT INTO " + connection_->written(table_);
        sql += columns.empty()
                   ? " DEFAULT VALUES"
                   : " (" + text::join(columns, ", ") + ") VALUES (" + text::join(parameters, ", ") + ")";
        inserting_ = std::make_unique<Statement>(connection_->handle());
        inserting_->prepare(sql);
        inserted_ = touched;
    }
    int parameter = 1;
    for (size_t i = 0; i < values.size(); ++i)
        if (touched[i]) inserting_->bind(parameter++, values[i]);
    inserting_->executePrepared();
    if (!allRead_) return;
    Record& record = records_.emplace_back();
    record.values.resize(fields_.size());
    for (size_t i = 0; i < values.size(); ++i)
        if (touched[i]) record.values[i] = values[i];
}

void OdbcCursor::update(const std::vector<Variant>& values, const std::vector<bool>& touched) {
    if (!any(touched)) return;
    Record& present = record();
    std::vector<std::string> columns;
    for (size_t i = 0; i < fields_.size(); ++i)
        if (touched[i]) columns.push_back(connection_->dialect().written(fields_[i].name) + " = ?");
    Statement statement(connection_->handle());
    statement.prepare("UPDATE " + connection_->written(table_) + " SET " + text::join(columns, ", ") +
                      condition(present));
    int parameter = 1;
    for (size_t i = 0; i < values.size(); ++i)
        if (touched[i]) statement.bind(parameter++, values[i]);
    bindCondition(statement, parameter, present);
    connection_->changeOne(statement);
    for (size_t i = 0; i < values.size(); ++i)
        if (touched[i]) present.values[i] = values[i];
}

void OdbcCursor::remove() {
    Record& present = record();
    Statement statement(connection_->handle());
    statement.prepare("DELETE FROM " + connection_->written(table_) + condition(present));
    bindCondition(statement, 1, present);
    connection_->changeOne(statement);
    present.deleted = true;
}

}  // namespace dao::odbc
