#include "module/titleblocks/value_table.h"

#include <algorithm>

#include "platform/dao/dao.h"

namespace norvane {

namespace {

const std::vector<const std::string*> kNone;

}  // namespace

size_t ValueTable::columnOf(const std::string& name) {
    const auto known = std::find(columns_.begin(), columns_.end(), name);
    if (known != columns_.end()) return static_cast<size_t>(known - columns_.begin());
    columns_.push_back(name);
    return columns_.size() - 1;
}

void ValueTable::want(const std::string& key, const std::string& field) {
    if (!key.empty()) keys_[key].column = columnOf(key);
    columnOf(field);
}

void ValueTable::clear() {
    columns_.clear();
    keys_.clear();
    values_.clear();
}

// Only the first record of some key is ever looked at.
void ValueTable::keep(std::span<const std::string> record) {
    const auto place = static_cast<uint32_t>(values_.size() / columns_.size());
    bool isFirst = false;
    for (auto& [name, key] : keys_) {
        const std::string& value = record[key.column];
        if (value.empty()) continue;
        const auto [entry, isNew] = key.records.try_emplace(value, place);
        if (isNew) key.values.push_back(&entry->first);
        isFirst = isFirst || isNew;
    }
    if (isFirst) values_.insert(values_.end(), record.begin(), record.end());
}

bool ValueTable::read(RecordSource& source, const std::string& table, const GoOnReading& goOn) {
    try {
        // A column may have gone since the link was tested, and a value that is not there is none to be
        // written.
        const std::vector<std::string> there = source.columns(table);
        for (const std::string& column : columns_)
            if (std::find(there.begin(), there.end(), column) == there.end()) {
                keys_.erase(column);
                missing_.push_back(column);
            }
        if (there.empty()) return true;
        long count = 0;
        return source.read(table, columns_, [&](std::span<const std::string> record) {
            keep(record);
            return goOn(++count);
        });
    } catch (const CDaoException&) {
        clear();
        throw;
    }
}

const std::string* ValueTable::find(const std::string& key, const std::string& keyValue,
                                    const std::string& field) const {
    const auto known = keys_.find(key);
    const auto column = std::find(columns_.begin(), columns_.end(), field);
    if (known == keys_.end() || column == columns_.end()) return nullptr;
    if (std::find(missing_.begin(), missing_.end(), field) != missing_.end()) return nullptr;
    const auto record = known->second.records.find(keyValue);
    if (record == known->second.records.end()) return nullptr;
    return &values_[record->second * columns_.size() + static_cast<size_t>(column - columns_.begin())];
}

const std::vector<const std::string*>& ValueTable::keyValues(const std::string& key) const {
    const auto known = keys_.find(key);
    return known == keys_.end() ? kNone : known->second.values;
}

bool ValueTables::read(const std::vector<BlockLink>& links, const std::vector<BlockLink>& refused,
                       const Tell& tell, const GoOnReading& goOn) {
    tables_.clear();
    for (const BlockLink& link : links) tables_[nameOf(link)].want(link.key, link.field);
    for (const BlockLink& link : refused) tables_.try_emplace(nameOf(link));
    RecordSources sources;
    for (auto& [name, table] : tables_) {
        try {
            RecordSource* source = sources.find(dao::DatabasePath(name.first));
            if (!source || table.read(*source, name.second, goOn)) continue;
            tables_.clear();
            return false;
        } catch (const CDaoException& error) {
            tell(error.description());
        }
    }
    return true;
}

const std::string* ValueTables::find(const BlockLink& link, const std::string& keyValue) const {
    const auto table = tables_.find(nameOf(link));
    return table == tables_.end() ? nullptr : table->second.find(link.key, keyValue, link.field);
}

const std::vector<const std::string*>& ValueTables::keyValues(const BlockLink& link) const {
    const auto table = tables_.find(nameOf(link));
    return table == tables_.end() ? kNone : table->second.keyValues(link.key);
}

}  // namespace norvane
