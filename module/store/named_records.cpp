#include "module/store/named_records.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include "module/store/database.h"
#include "module/store/output_database.h"
#include "module/store/server_sign_in.h"
#include "module/store/statements.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// A name as a text that is the same for the same record.
std::string comparable(const RecordName& record) {
    const std::string parts[] = {files::native(record.output), record.table, record.keyField, record.key,
                                 record.feature};
    std::string all;
    for (const std::string& part : parts) all.append(text::trim(text::upper(part))).append(1, '\n');
    return all;
}

// Finds the tables of links, and reads each template and each output once.
class TablesOfLinks {
  public:
    std::string find(const LinkedEntity& link) {
        const auto [told, isNew] = told_.try_emplace({text::upper(link.templatePath), link.feature});
        if (isNew) told->second = ToldTable(link);
        const std::vector<std::string>& tables = tablesOf(link.outputPath);
        for (const std::string& wanted : {told->second, link.feature})
            for (const std::string& table : tables)
                if (!wanted.empty() && SameTable(table, wanted)) return table;
        return "";
    }

  private:
    const std::vector<std::string>& tablesOf(const std::string& output) {
        const auto [known, isNew] = outputs_.try_emplace(text::upper(files::native(output)));
        std::vector<std::string>& tables = known->second;
        if (isNew && IsOutputThere(output))
            WithDatabase(output, [&](const CDaoDatabase& database) { tables = UserTables(database); });
        return tables;
    }

    std::map<std::pair<std::string, std::string>, std::string> told_;  // by template and feature
    std::map<std::string, std::vector<std::string>> outputs_;
};

std::vector<const LinkedEntity*> linksTo(const RecordName& record, TablesOfLinks& tables) {
    std::vector<const LinkedEntity*> links =
        LinkIndex::OfDrawing().find(record.output, record.keyField, record.key);
    // A table may hold records of several features, which share their keys.
    const std::string feature(text::trim(text::upper(record.feature)));
    std::erase_if(links, [&](const LinkedEntity* link) {
        return (!feature.empty() && link->feature != feature) || !SameTable(tables.find(*link), record.table);
    });
    return links;
}

// A table of an open output, in which records are found as their sheets find them: the first of a name.
class NamedTable {
  public:
    NamedTable(CDaoDatabase& database, const RecordName& record)
        : database_(database),
          table_(FindUserTable(database, record.table)),
          route_(RouteOf(record.output)),
          isThere_(!table_.empty() && FindField(database, table_, record.keyField)) {
        if (!isThere_) return;
        hasGisKey_ = FindField(database, table_, kGisKey).has_value();
        if (route_ == Route::kOdbc) table_ = QualifiedTable(database, table_);
    }

    // False without any.
    bool find(const RecordName& record, CDaoRecordset& records) const {
        if (!isThere_) return false;
        const RecordKey key{table_, record.keyField, record.key, record.feature};
        records.Open(dbOpenDynaset, FindRecordStatement(route_, key, hasGisKey_, FindPurpose::kLoad));
        return !records.IsEOF();
    }

    // All records have the field of the key in common. False: it has been stopped.
    bool erase(const std::vector<const RecordName*>& those, const std::function<bool()>& goOn,
               ErasedRecords& result) const {
        // A file is passed through once rather than searched for each of many.
        constexpr size_t kMostSearched = 20;
        if (isThere_ && route_ == Route::kAccess && those.size() > kMostSearched)
            return passThrough(those, goOn, result);
        for (const RecordName* record : those) {
            if (!goOn()) return false;
            CDaoRecordset records(&database_);
            if (find(*record, records)) {
                records.Delete();
                ++result.erased;
            } else {
                result.missing.push_back(record->key);
            }
        }
        return true;
    }

  private:
    static constexpr const char* kGisKey = "GIS_KEY";

    static std::string keyOf(const std::string& key, const std::string& feature) {
        return text::upper(key) + '\n' + text::upper(feature);
    }

    bool passThrough(const std::vector<const RecordName*>& those, const std::function<bool()>& goOn,
                     ErasedRecords& result) const {
        std::unordered_map<std::string, const RecordName*> left;
        for (const RecordName* record : those)
            left.emplace(keyOf(record->key, hasGisKey_ ? record->feature : ""), record);
        const std::string keyField = BracketedName(those.front()->keyField);
        CDaoRecordset records(&database_);
        records.Open(dbOpenDynaset, "SELECT " + keyField + (hasGisKey_ ? ", GIS_KEY" : "") + " FROM " +
                                        BracketedName(table_));
        for (; !records.IsEOF() && !left.empty(); records.MoveNext()) {
            const auto record = left.find(keyOf(dao::toText(records.GetFieldValue(0)),
                                                hasGisKey_ ? dao::toText(records.GetFieldValue(1)) : ""));
            if (record == left.end()) continue;
            if (!goOn()) return false;
            records.Delete();
            ++result.erased;
            left.erase(record);
        }
        for (const auto& [key, record] : left) result.missing.push_back(record->key);
        return true;
    }

    CDaoDatabase& database_;
    std::string table_;
    Route route_;
    bool isThere_, hasGisKey_ = false;
};

// Within a transaction of the caller's. False: it has been stopped.
bool eraseFrom(CDaoDatabase& database, const std::vector<const RecordName*>& records,
               const std::function<bool()>& goOn, ErasedRecords& result) {
    std::map<std::pair<std::string, std::string>, std::vector<const RecordName*>> byTable;
    for (const RecordName* record : records)
        byTable[{text::upper(record->table), text::upper(record->keyField)}].push_back(record);
    for (const auto& [table, those] : byTable)
        if (!NamedTable(database, *those.front()).erase(those, goOn, result)) return false;
    return true;
}

}  // namespace

bool RecordNames::add(const RecordName& record) {
    return names_.insert(comparable(record)).second;
}

bool RecordNames::contains(const RecordName& record) const {
    return names_.contains(comparable(record));
}

std::vector<RecordName> RecordsOfLinks(const std::vector<const LinkedEntity*>& links,
                                       size_t* leadingNowhere) {
    std::vector<RecordName> records;
    size_t nowhere = 0;
    RecordNames known;
    TablesOfLinks tables;
    for (const LinkedEntity* link : links) {
        const bool isWhole = !link->isBrokenOff && !link->keyField.empty() && !link->keyValue.empty();
        RecordName record{link->outputPath, isWhole ? tables.find(*link) : "", link->keyField, link->keyValue,
                          link->feature};
        if (record.table.empty())
            ++nowhere;
        else if (known.add(record))
            records.push_back(std::move(record));
    }
    if (leadingNowhere) *leadingNowhere = nowhere;
    return records;
}

std::vector<const LinkedEntity*> LinksToRecords(const std::vector<RecordName>& records) {
    std::vector<const LinkedEntity*> links;
    std::unordered_set<const LinkedEntity*> known;
    TablesOfLinks tables;
    for (const RecordName& record : records)
        for (const LinkedEntity* link : linksTo(record, tables))
            if (known.insert(link).second) links.push_back(link);
    return links;
}

bool IsRecordThere(const RecordName& record) {
    bool isThere = false;
    if (IsOutputThere(record.output))
        WithDatabase(record.output, [&](CDaoDatabase& database) {
            CDaoRecordset records(&database);
            isThere = NamedTable(database, record).find(record, records);
        });
    return isThere;
}

std::vector<RecordName> RecordsWithoutEntity(const std::vector<RecordName>& records) {
    std::vector<RecordName> without;
    TablesOfLinks tables;
    for (const RecordName& record : records)
        if (linksTo(record, tables).empty()) without.push_back(record);
    return without;
}

ErasedRecords EraseRecords(const std::vector<RecordName>& records, const std::function<bool()>& goOn) {
    ErasedRecords all;
    std::map<std::string, std::vector<const RecordName*>> byOutput;
    for (const RecordName& record : records)
        byOutput[text::upper(files::native(record.output))].push_back(&record);
    for (const auto& output : byOutput) {
        const std::vector<const RecordName*>& those = output.second;
        ErasedRecords erased;
        const auto erase = [&](CDaoDatabase& database) {
            all.isStopped =
                !InTransaction(database, [&] { return eraseFrom(database, those, goOn, erased); });
        };
        if (WithDatabase(those.front()->output, erase) != DatabaseOutcome::kDone) continue;
        if (all.isStopped) break;
        all.erased += erased.erased;
        all.missing.insert(all.missing.end(), erased.missing.begin(), erased.missing.end());
    }
    return all;
}

}  // namespace norvane
