#include "platform/dao/engine.h"
#include "platform/dao/errors.h"
#include "platform/dao/names.h"
#include "platform/text/text.h"

CDaoTableDef::~CDaoTableDef() {
    try {
        Close();
    } catch (const CDaoException&) {
        // Whoever wants to hear of a failing commit calls Close.
    }
}

void CDaoTableDef::Create(const std::string& name) {
    Close();
    dao::checkName(name, "table");
    name_ = name;
    open_ = true;
}

void CDaoTableDef::Append() {
    requireOpen();
    if (appended_) throw CDaoException("The table " + name_ + " is in the database already.");
    if (fields_.empty()) throw CDaoException("The table " + name_ + " has no fields.");
    database_->connection().createTable(name_, fields_);
    appended_ = changed_ = true;
    reload();
}

void CDaoTableDef::CreatePrimaryKey(const std::vector<std::string>& fields) {
    requireOpen();
    database_->connection().createPrimaryKey(name_, fields);
    changed_ = true;
}

void CDaoTableDef::Open(const std::string& name) {
    Close();
    CDaoTableDefInfo info;
    database_->GetTableDefInfo(name, info);
    name_ = info.name;
    reload();
    open_ = appended_ = true;
}

void CDaoTableDef::Close() {
    bool commit = changed_ && database_->IsOpen();
    name_.clear();
    fields_.clear();
    open_ = appended_ = changed_ = false;
    if (commit) database_->connection().commit();
}

void CDaoTableDef::SetName(const std::string& name) {
    requireOpen();
    dao::checkName(name, "table");
    if (appended_) {
        database_->listIsFresh_ = false;
        database_->connection().renameTable(name_, name);
        changed_ = true;
    }
    name_ = name;
}

void CDaoTableDef::CreateField(const std::string& name, int type, long size, int attributes) {
    CDaoFieldInfo info;
    info.name = name;
    info.type = type;
    info.size = size;
    info.attributes = attributes;
    CreateField(info);
}

void CDaoTableDef::CreateField(const CDaoFieldInfo& info) {
    requireOpen();
    CDaoFieldInfo field = dao::completed(info);
    field.ordinalPosition = GetFieldCount();
    if (find(field.name) >= 0) throw CDaoException("A field named " + field.name + " exists already.");
    if (fields_.size() >= 255) throw CDaoException("A table holds at most 255 fields.");
    if (appended_) {
        database_->connection().createField(name_, field);
        changed_ = true;
        reload();
    } else {
        fields_.push_back(field);
    }
}

void CDaoTableDef::DeleteField(const std::string& name) {
    requireOpen();
    int index = find(name);
    if (index < 0) dao::noSuchField(name);
    DeleteField(index);
}

void CDaoTableDef::DeleteField(int index) {
    CDaoFieldInfo field;
    GetFieldInfo(index, field);
    if (appended_) {
        database_->connection().deleteField(name_, field.name);
        changed_ = true;
        reload();
    } else {
        fields_.erase(fields_.begin() + index);
    }
}

int CDaoTableDef::GetFieldCount() const {
    requireOpen();
    return static_cast<int>(fields_.size());
}

void CDaoTableDef::GetFieldInfo(int index, CDaoFieldInfo& info) const {
    requireOpen();
    if (index < 0 || index >= static_cast<int>(fields_.size()))
        throw CDaoException("There is no field of the number " + std::to_string(index) + ".");
    info = fields_[static_cast<size_t>(index)];
}

void CDaoTableDef::GetFieldInfo(const std::string& name, CDaoFieldInfo& info) const {
    int index = find(name);
    if (index < 0) dao::noSuchField(name);
    GetFieldInfo(index, info);
}

int CDaoTableDef::find(const std::string& name) const {
    return dao::findField(fields_, name);
}

void CDaoTableDef::requireOpen() const {
    if (!open_) throw CDaoException("The table definition is not open.");
}

void CDaoTableDef::reload() {
    fields_ = database_->connection().fields(name_);
}
