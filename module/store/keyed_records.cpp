#include "module/store/keyed_records.h"

#include <algorithm>

#include <unordered_set>

#include "platform/text/text.h"

namespace norvane {

namespace {

// Text compares without regard to case in a database.
std::string comparable(std::string_view key) {
    return text::upper(key);
}

}  // namespace

std::string KeyedRecords::KeyOf(std::span<const std::string> values) {
    std::string key;
    for (size_t i = 0; i < values.size(); ++i) {
        if (i > 0) key += '\0';
        key += values[i];
    }
    return key;
}

KeyedRecords::KeyedRecords(CDaoDatabase& database, const std::string& statement,
                           std::span<const char* const> keyFields, std::span<const std::string> keys,
                           Change change)
    : records_(&database), count_(keys.size()) {
    sortByKey(keys);
    records_.Open(dbOpenDynaset, statement);
    readKeys(keyFields, change);
    std::unordered_set<const Entries*> isThere;
    for (const Found& record : changed_) isThere.insert(record.entries);
    for (size_t i = 0; i < keys.size(); ++i) {
        const Entries& entries = byKey_.find(comparable(keys[i]))->second;
        if (entries.front() == i && !isThere.contains(&entries)) added_.push_back(&entries);
    }
}

void KeyedRecords::sortByKey(std::span<const std::string> keys) {
    byKey_.reserve(keys.size());
    for (size_t i = 0; i < keys.size(); ++i) byKey_[comparable(keys[i])].push_back(i);
}

void KeyedRecords::readKeys(std::span<const char* const> keyFields, Change change) {
    std::unordered_set<const Entries*> seen;
    std::vector<std::string> values(keyFields.size());
    for (long position = 0; !records_.IsEOF(); records_.MoveNext(), ++position) {
        for (size_t i = 0; i < keyFields.size(); ++i)
            values[i] = dao::toText(records_.GetFieldValue(keyFields[i]));
        auto wanted = byKey_.find(comparable(KeyOf(values)));
        if (wanted == byKey_.end()) continue;
        const bool isFirst = seen.insert(&wanted->second).second;
        if (isFirst || change == Change::kAll) changed_.push_back({position, &wanted->second});
    }
}

bool KeyedRecords::write(const Write& write, const GoOn& goOn) {
    return writeRecords(
        [&](CDaoRecordset& record, const Entries& entries, bool) {
            for (size_t entry : entries) write(record, entry);
        },
        goOn);
}

bool KeyedRecords::writeRecords(const WriteRecord& write, const GoOn& goOn) {
    size_t left = count_;
    auto writeOne = [&](const Entries& entries, bool isNew) {
        write(records_, entries, isNew);
        records_.Update();
        left -= std::min(left, entries.size());
    };
    if (!changed_.empty()) records_.MoveFirst();
    long position = 0;
    for (const Found& record : changed_) {
        if (!goOn(left)) return false;
        for (; position < record.position; ++position) records_.MoveNext();
        records_.Edit();
        writeOne(*record.entries, false);
    }
    for (const Entries* entries : added_) {
        if (!goOn(left)) return false;
        records_.AddNew();
        writeOne(*entries, true);
    }
    return true;
}

}  // namespace norvane
