#include "module/records/table_links.h"

#include <algorithm>
#include <map>
#include <utility>

#include "module/store/database.h"
#include "module/store/template_database.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

std::string comparablePath(const std::string& path) {
    return text::upper(files::native(path));
}

// The table that a template tells for a feature; "" for none, and for a template that cannot be read: a panel
// does not stop at it, as the sheet does.
std::string toldTable(const std::string& templatePath, const std::string& feature) {
    if (!files::exists(templatePath)) return {};
    try {
        CDaoDatabase database;
        database.Open(templatePath, false, true);
        return HasLinksTable(database) ? ReadOutputTable(database, feature) : std::string();
    } catch (const CDaoException&) {
        return {};
    }
}

}  // namespace

TableLinks::TableLinks(std::string output, const CDaoDatabase& database, std::string table,
                       std::string keyField)
    : output_(comparablePath(output)),
      table_(std::move(table)),
      keyField_(text::upper(keyField)),
      database_(database),
      keys_(std::make_shared<const std::unordered_set<std::string>>()) {}

std::string TableLinks::KeyFieldOf(const std::string& output, const std::vector<CDaoFieldInfo>& fields) {
    std::map<std::string, int> links;  // by key field, of those that the table has
    for (const CDaoFieldInfo& field : fields) {
        if (text::equalNoCase(field.name, "PT_ID")) return field.name;
        links[text::upper(field.name)] = 0;
    }
    const std::string path = comparablePath(output);
    for (const LinkedEntity* link : LinkIndex::OfDrawing().all())
        if (auto known = links.find(link->keyField); known != links.end())
            if (comparablePath(link->outputPath) == path) ++known->second;
    const auto most = std::max_element(links.begin(), links.end(), [](const auto& one, const auto& other) {
        return one.second < other.second;
    });
    return most == links.end() || most->second == 0 ? std::string() : most->first;
}

bool TableLinks::leadsHere(const std::string& templatePath, const std::string& feature) const {
    const auto [known, isNew] = leadsHere_.try_emplace(templatePath + '\n' + feature);
    if (isNew) {
        const std::string told = toldTable(templatePath, feature);
        known->second = SameTable(table_, told) || (SameTable(table_, feature) &&
                                                    (told.empty() || FindUserTable(database_, told).empty()));
    }
    return known->second;
}

bool TableLinks::isLinkHere(const LinkedEntity& link) const {
    return !link.isBrokenOff && link.keyField == keyField_ && comparablePath(link.outputPath) == output_ &&
           leadsHere(link.templatePath, link.feature);
}

bool TableLinks::update() {
    const LinkIndex& index = LinkIndex::OfDrawing();
    if (revision_ == index.revision()) return false;
    revision_ = index.revision();
    leadsHere_.clear();
    entities_.clear();
    auto keys = std::make_shared<std::unordered_set<std::string>>();
    for (const LinkedEntity* link : index.all()) {
        if (!isLinkHere(*link)) continue;
        entities_[link->keyValue].push_back(link->entity);
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
    const LinkedEntity* link = LinkIndex::OfDrawing().find(entity.name);
    if (!link || !isLinkHere(*link)) return {};
    return link->keyValue;
}

std::shared_ptr<const std::unordered_set<std::string>> TableLinks::keysOf(
    const std::vector<EntityName>& entities) const {
    auto keys = std::make_shared<std::unordered_set<std::string>>();
    for (const EntityName& entity : entities)
        if (std::optional<std::string> key = keyOf(entity)) keys->insert(*std::move(key));
    return keys;
}

}  // namespace norvane
