#include "module/records/table_links.h"

#include <algorithm>
#include <map>
#include <utility>

#include "module/store/linked_tables.h"
#include "platform/text/text.h"

namespace norvane {

TableLinks::TableLinks(std::string output, std::string table, std::string keyField)
    : output_(std::move(output)),
      table_(std::move(table)),
      keyField_(text::upper(keyField)),
      keys_(std::make_shared<const std::unordered_set<std::string>>()) {}

std::string TableLinks::KeyFieldOf(const std::string& output, const std::string& table,
                                   const std::vector<CDaoFieldInfo>& fields) {
    std::map<std::string, int> links;  // by key field, of those that the table has
    for (const CDaoFieldInfo& field : fields) {
        if (text::equalNoCase(field.name, "PT_ID")) return field.name;
        links[text::upper(field.name)] = 0;
    }
    for (const LinkedEntity* link : LinkedTables().linksTo(output, table))
        if (auto known = links.find(link->keyField); known != links.end()) ++known->second;
    const auto most = std::max_element(links.begin(), links.end(), [](const auto& one, const auto& other) {
        return one.second < other.second;
    });
    return most == links.end() || most->second == 0 ? std::string() : most->first;
}

bool TableLinks::update() {
    const LinkIndex& index = LinkIndex::OfDrawing();
    if (revision_ == index.revision()) return false;
    revision_ = index.revision();
    entities_.clear();
    keyOf_.clear();
    auto keys = std::make_shared<std::unordered_set<std::string>>();
    for (const LinkedEntity* link : LinkedTables().linksTo(output_, table_)) {
        // A link without a value leads to no record, and not to those without a key.
        if (link->keyField != keyField_ || link->keyValue.empty()) continue;
        entities_[link->keyValue].push_back(link->entity);
        keyOf_.emplace(link->entity.name[0], link->keyValue);
        keys->insert(link->keyValue);
    }
    keys_ = std::move(keys);
    return true;
}

const std::vector<EntityName>* TableLinks::entitiesOf(const std::string& key) const {
    const auto known = entities_.find(key);
    return known == entities_.end() ? nullptr : &known->second;
}

std::optional<std::string> TableLinks::keyOf(const EntityName& entity) const {
    const auto known = keyOf_.find(entity.name[0]);
    if (known == keyOf_.end()) return {};
    return known->second;
}

std::shared_ptr<const std::unordered_set<std::string>> TableLinks::keysOf(
    const std::vector<EntityName>& entities) const {
    auto keys = std::make_shared<std::unordered_set<std::string>>();
    for (const EntityName& entity : entities)
        if (std::optional<std::string> key = keyOf(entity)) keys->insert(*std::move(key));
    return keys;
}

}  // namespace norvane
