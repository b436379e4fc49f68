// The entities of the drawing that lead to the records of one table, by the keys of the records.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "module/cad/call.h"
#include "module/store/link_index.h"
#include "platform/dao/dao.h"

namespace norvane {

class TableLinks {
  public:
    // output: a path or a connect string. table: as it stands there.
    TableLinks(std::string output, std::string table, std::string keyField);

    // The key field of a table: PT_ID, or else the one of its fields that most links to the table name; ""
    // where there is none.
    static std::string KeyFieldOf(const std::string& output, const std::string& table,
                                  const std::vector<CDaoFieldInfo>& fields);

    // Takes over what has changed in the drawing. False: nothing has.
    bool update();

    // The entities of a record, in the order of the drawing; null when it has none. Keys are in capitals and
    // trimmed.
    const std::vector<EntityName>* entitiesOf(const std::string& key) const;
    // The key of the record that an entity leads to; nothing when it leads to no record of this table.
    std::optional<std::string> keyOf(const EntityName& entity) const;
    // All that entities lead to.
    std::shared_ptr<const std::unordered_set<std::string>> keys() const { return keys_; }
    // Of some entities those that lead to a record here.
    std::shared_ptr<const std::unordered_set<std::string>> keysOf(
        const std::vector<EntityName>& entities) const;

  private:
    std::string output_, table_, keyField_;
    std::optional<unsigned long> revision_;  // of the index
    std::unordered_map<std::string, std::vector<EntityName>> entities_;
    std::unordered_map<long, std::string> keyOf_;  // by entity
    std::shared_ptr<const std::unordered_set<std::string>> keys_;
};

}  // namespace norvane
