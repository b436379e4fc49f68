#include "module/titleblocks/value_table.h"

#include <algorithm>
#include <utility>

#include "platform/dao/dao.h"

namespace norvane {

namespace {

// Whether a name was not among the names before.
bool joined(std::vector<std::string>& names, const std::string& name) {
    if (std::find(names.begin(), names.end(), name) != names.end()) return false;
    names.push_back(name);
    return true;
}

}  // namespace

void ValueTable::want(const std::string& key, const std::string& field) {
    joined(columns_, field);
    if (key.empty()) return;
    joined(columns_, key);
    joined(wantedKeys_, key);
}

// A column may have gone since the link was tested, and a value that is not there is none to be written.
void ValueTable::takeColumns(const std::vector<std::string>& there) {
    std::erase_if(columns_, [&](const std::string& column) {
        return std::find(there.begin(), there.end(), column) == there.end();
    });
    keys_.clear();
    for (const std::string& key : wantedKeys_)
        if (const auto column = std::find(columns_.begin(), columns_.end(), key); column != columns_.end())
            keys_.emplace(key, Key{TextHash(static_cast<size_t>(column - columns_.begin())), std::nullopt});
    records_ = TextRows(columns_.size());
}

bool ValueTable::hasOneOf(const TextSet& wanted, std::span<const std::string> record) const {
    return std::any_of(keys_.begin(), keys_.end(),
                       [&](const auto& key) { return wanted.has(record[key.second.texts.column()]); });
}

// A record is settled when the next one has come: until then the places of its keys come from memory.
void ValueTable::keep(std::span<const std::string> record) {
    settleLast();
    records_.append(record);
    isLastOpen_ = true;
    for (auto& [name, key] : keys_)
        if (const std::string& text = record[key.texts.column()]; !text.empty())
            key.last = key.texts.announce(text);
}

// Only the first record of some key is ever looked at.
void ValueTable::settleLast() {
    if (!std::exchange(isLastOpen_, false)) return;
    bool isFirst = false;
    for (auto& [name, key] : keys_)
        if (const std::optional<uint32_t> hash = std::exchange(key.last, std::nullopt))
            isFirst = key.texts.add(records_, records_.count() - 1, *hash) || isFirst;
    if (!isFirst) records_.removeLast();
}

bool ValueTable::read(RecordSource& source, const std::string& table, const GoOnReading& goOn,
                      const TextSet* only) {
    try {
        takeColumns(source.columns(table));
        if (keys_.empty()) return true;
        long count = 0;
        const bool isWhole = source.read(table, columns_, [&](std::span<const std::string> record) {
            if (!only || hasOneOf(*only, record)) keep(record);
            return goOn(++count);
        });
        settleLast();
        return isWhole;
    } catch (const CDaoException&) {
        keys_.clear();
        records_ = TextRows();
        isLastOpen_ = false;
        throw;
    }
}

std::optional<std::string_view> ValueTable::find(const std::string& key, std::string_view keyValue,
                                                 const std::string& field) const {
    const auto known = keys_.find(key);
    const auto column = std::find(columns_.begin(), columns_.end(), field);
    if (known == keys_.end() || column == columns_.end()) return std::nullopt;
    const std::optional<uint32_t> record = known->second.texts.find(records_, keyValue);
    if (!record) return std::nullopt;
    return records_.text(*record, static_cast<size_t>(column - columns_.begin()));
}

std::vector<std::string_view> ValueTable::keyValues(const std::string& key) const {
    std::vector<std::string_view> values;
    const auto known = keys_.find(key);
    if (known == keys_.end()) return values;
    const TextHash& texts = known->second.texts;
    values.reserve(texts.records().size());
    for (uint32_t record : texts.records()) values.push_back(records_.text(record, texts.column()));
    return values;
}

bool ValueTables::read(const std::vector<BlockLink>& links, const std::vector<BlockLink>& refused,
                       const Tell& tell, const GoOnReading& goOn, const TextSet* only) {
    tables_.clear();
    for (const BlockLink& link : links)
        tables_[{link.database.text(), link.table}].want(link.key, link.field);
    for (const BlockLink& link : refused) tables_.try_emplace({link.database.text(), link.table});
    RecordSources sources;
    for (auto& [name, table] : tables_) {
        try {
            RecordSource* source = sources.find(dao::DatabasePath(name.first));
            if (!source || table.read(*source, name.second, goOn, only)) continue;
            tables_.clear();
            return false;
        } catch (const CDaoException& error) {
            tell(error.description());
        }
    }
    return true;
}

const ValueTable* ValueTables::tableOf(const BlockLink& link) const {
    const auto table = tables_.find({link.database.text(), link.table});
    return table == tables_.end() ? nullptr : &table->second;
}

std::optional<std::string_view> ValueTables::find(const BlockLink& link, std::string_view keyValue) const {
    const ValueTable* table = tableOf(link);
    return table ? table->find(link.key, keyValue, link.field) : std::nullopt;
}

std::vector<std::string_view> ValueTables::keyValues(const BlockLink& link) const {
    const ValueTable* table = tableOf(link);
    return table ? table->keyValues(link.key) : std::vector<std::string_view>();
}

}  // namespace norvane
