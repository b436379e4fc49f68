#include "module/selection/linked_values.h"

#include <map>
#include <unordered_map>

#include "module/store/database.h"
#include "module/store/linked_tables.h"
#include "module/store/statements.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

std::string comparable(const dao::Variant& value) {
    return std::string(text::trim(text::upper(dao::toText(value))));
}

// The entities that lead to one table, by their place in the result.
struct Wanted {
    std::string output, table;
    std::vector<std::pair<size_t, const LinkedEntity*>> links;
};

class TableReading {
  public:
    TableReading(const Wanted& wanted, std::vector<LinkedValues>& results)
        : wanted_(wanted), results_(results) {}

    void run() {
        CDaoDatabase database;
        OpenDatabase(database, wanted_.output);
        const bool onServer = database.GetConnect().onServer();
        const std::string name =
            onServer ? QualifiedTable(database, wanted_.table) : BracketedName(wanted_.table);
        CDaoRecordset records(&database);
        records.Open(dbOpenSnapshot, "SELECT * FROM " + name);
        readFields(records);
        for (; !records.IsEOF(); records.MoveNext())
            for (const auto& [field, byKey] : byKey_) give(records, field, byKey);
    }

  private:
    using ByKey = std::unordered_multimap<std::string, std::pair<size_t, const LinkedEntity*>>;

    void readFields(const CDaoRecordset& records) {
        names_.resize(static_cast<size_t>(records.GetFieldCount()));
        for (size_t i = 0; i < names_.size(); ++i) {
            CDaoFieldInfo info;
            records.GetFieldInfo(static_cast<int>(i), info);
            names_[i] = info.name;
            if (text::equalNoCase(info.name, "GIS_KEY")) feature_ = static_cast<int>(i);
        }
        for (const auto& [place, link] : wanted_.links)
            for (size_t i = 0; i < names_.size(); ++i)
                if (text::equalNoCase(names_[i], link->keyField) && !link->keyValue.empty())
                    byKey_[static_cast<int>(i)].emplace(link->keyValue, std::pair(place, link));
    }

    // Of several records of a key the first counts.
    void give(const CDaoRecordset& records, int field, const ByKey& byKey) {
        auto [item, end] = byKey.equal_range(comparable(records.GetFieldValue(field)));
        for (; item != end; ++item) {
            const auto& [place, link] = item->second;
            if (!results_[place].values.empty()) continue;
            const std::string feature = feature_ < 0 ? "" : comparable(records.GetFieldValue(feature_));
            if (!feature.empty() && feature != link->feature) continue;
            for (size_t i = 0; i < names_.size(); ++i)
                results_[place].values.emplace_back(names_[i],
                                                    dao::toText(records.GetFieldValue(static_cast<int>(i))));
        }
    }

    const Wanted& wanted_;
    std::vector<LinkedValues>& results_;
    std::vector<std::string> names_;
    int feature_ = -1;
    std::map<int, ByKey> byKey_;  // by the place of the field
};

}  // namespace

std::vector<LinkedValues> ValuesOf(const std::vector<EntityName>& entities,
                                   std::vector<std::string>& problems) {
    const LinkIndex& index = LinkIndex::OfDrawing();
    LinkedTables places;
    std::vector<LinkedValues> results(entities.size());
    std::map<std::pair<std::string, std::string>, Wanted> byTable;
    for (size_t i = 0; i < entities.size(); ++i) {
        const LinkedEntity* link = index.find(entities[i].name);
        if (!link || link->isBrokenOff || places.tableOf(*link).empty()) continue;
        results[i].entity = entities[i];
        results[i].table = places.tableOf(*link);
        Wanted& wanted = byTable[{text::upper(places.outputOf(*link)), results[i].table}];
        wanted.output = places.outputOf(*link), wanted.table = results[i].table;
        wanted.links.emplace_back(i, link);
    }
    for (const auto& [key, wanted] : byTable) {
        try {
            TableReading(wanted, results).run();
        } catch (const CDaoException& error) {
            problems.push_back(error.description());
        }
    }
    std::erase_if(results, [](const LinkedValues& result) { return result.values.empty(); });
    return results;
}

}  // namespace norvane
