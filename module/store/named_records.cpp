#include "module/store/named_records.h"

#include <algorithm>
#include <map>
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
        if (isNew && IsOutputThere(output))
            WithDatabase(output, [&](const CDaoDatabase& database) { known->second = UserTables(database); });
        return known->second;
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

// Stands on the first record of a name, which is the one that its sheet shows. False without any.
bool find(CDaoDatabase& database, const RecordName& record, CDaoRecordset& records) {
    const std::string table = FindUserTable(database, record.table);
    if (table.empty() || !FindField(database, table, record.keyField)) return false;
    const bool hasGisKey = FindField(database, table, "GIS_KEY").has_value();
    const Route route = RouteOf(record.output);
    RecordKey key{table, record.keyField, record.key, record.feature};
    if (route == Route::kOdbc) key.table = QualifiedTable(database, table);
    records.Open(dbOpenDynaset, FindRecordStatement(route, key, hasGisKey, FindPurpose::kLoad));
    return !records.IsEOF();
}

bool eraseOne(CDaoDatabase& database, const RecordName& record) {
    CDaoRecordset records(&database);
    if (!find(database, record, records)) return false;
    records.Delete();
    return true;
}

}  // namespace

bool RecordNames::add(const RecordName& record) {
    return names_.insert(comparable(record)).second;
}

bool RecordNames::contains(const RecordName& record) const {
    return names_.contains(comparable(record));
}

std::vector<RecordName> RecordsOfLinks(const std::vector<const LinkedEntity*>& links) {
    std::vector<RecordName> records;
    RecordNames known;
    TablesOfLinks tables;
    for (const LinkedEntity* link : links) {
        if (link->isBrokenOff || link->keyField.empty() || link->keyValue.empty()) continue;
        RecordName record{link->outputPath, tables.find(*link), link->keyField, link->keyValue,
                          link->feature};
        if (!record.table.empty() && known.add(record)) records.push_back(std::move(record));
    }
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
            isThere = find(database, record, records);
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

ErasedRecords EraseRecords(const std::vector<RecordName>& records) {
    ErasedRecords all;
    std::map<std::string, std::vector<const RecordName*>> byOutput;
    for (const RecordName& record : records)
        byOutput[text::upper(files::native(record.output))].push_back(&record);
    for (const auto& [output, those] : byOutput) {
        ErasedRecords erased;
        const auto eraseAll = [&](CDaoDatabase& database) {
            database.BeginTrans();
            for (const RecordName* record : those)
                if (eraseOne(database, *record))
                    ++erased.erased;
                else
                    erased.missing.push_back(record->key);
            database.CommitTrans();
        };
        if (WithDatabase(those.front()->output, eraseAll) != DatabaseOutcome::kDone) continue;
        all.erased += erased.erased;
        all.missing.insert(all.missing.end(), erased.missing.begin(), erased.missing.end());
    }
    return all;
}

}  // namespace norvane
