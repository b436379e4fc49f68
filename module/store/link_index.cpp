#include "module/store/link_index.h"

#include <algorithm>
#include <utility>

#include "module/cad/ads_owners.h"
#include "module/cad/group_list.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/template_database.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

std::string comparable(const std::string& text) {
    return std::string(text::trim(text::upper(text)));
}

std::string recordKey(const std::string& outputPath, const std::string& keyField,
                      const std::string& keyValue) {
    std::string key = text::upper(files::native(outputPath));
    return key.append(1, '\n').append(comparable(keyField)).append(1, '\n').append(comparable(keyValue));
}

std::optional<LinkedEntity> linkOf(const EntityName& name) {
    constexpr size_t kNeeded = 3, kStrings = 5;
    constexpr int kLayer = 8, kHandle = 5;
    const ResultBuffers application(acutBuildList(RTSTR, kGisLinkApplication, 0));
    const ResultBuffers groups(acdbEntGetX(name.name, application.get()));
    std::optional<std::vector<std::string>> strings = ApplicationStrings(groups.get(), kGisLinkApplication);
    if (!strings) return {};
    LinkedEntity link;
    link.entity = name;
    link.isBrokenOff = strings->size() < kNeeded;
    strings->resize(kStrings);
    link.handle = GroupText(groups.get(), kHandle);
    link.layer = GroupText(groups.get(), kLayer);
    link.templatePath = std::move((*strings)[0]);
    link.outputPath = std::move((*strings)[1]);
    link.feature = comparable((*strings)[2]);
    link.keyField = comparable((*strings)[3]);
    link.keyValue = comparable((*strings)[4]);
    return link;
}

}  // namespace

LinkIndex::~LinkIndex() {
    if (drawing_ == acdbCurDwg()->serial()) acdbCurDwg()->removeObserver(observer_);
}

const LinkIndex& LinkIndex::OfDrawing() {
    static LinkIndex index;
    index.update();
    return index;
}

void LinkIndex::update() {
    AcDbDatabase& drawing = *acdbCurDwg();
    if (drawing_ != drawing.serial()) {
        // The observer of another drawing is gone with it.
        drawing_ = drawing.serial();
        observer_ = drawing.addObserver([this](AcDbObjectId id) { changed_.insert(id.asLong()); });
        changed_.clear(), links_.clear(), byRecord_.clear();
        ++revision_;
        for (AcDbObjectId id : drawing.entities()) read(id.asLong());
    }
    if (!changed_.empty()) ++revision_;
    for (long id : changed_) forget(id), read(id);
    changed_.clear();
}

void LinkIndex::forget(long id) {
    const auto known = links_.find(id);
    if (known == links_.end()) return;
    const LinkedEntity& link = known->second;
    auto [entry, end] = byRecord_.equal_range(recordKey(link.outputPath, link.keyField, link.keyValue));
    while (entry->second != id) ++entry;
    byRecord_.erase(entry);
    links_.erase(known);
}

void LinkIndex::read(long id) {
    EntityName entity;
    if (acdbGetAdsName(entity.name, AcDbObjectId(id)) != Acad::eOk) return;
    std::optional<LinkedEntity> link = linkOf(entity);
    if (!link) return;
    byRecord_.emplace(recordKey(link->outputPath, link->keyField, link->keyValue), id);
    links_.emplace(id, std::move(*link));
}

std::vector<const LinkedEntity*> LinkIndex::all() const {
    std::vector<const LinkedEntity*> all;
    all.reserve(links_.size());
    for (const auto& [id, link] : links_) all.push_back(&link);
    return all;
}

const LinkedEntity* LinkIndex::find(const ads_name entity) const {
    AcDbObjectId id;
    if (acdbGetObjectId(id, entity) != Acad::eOk) return nullptr;
    const auto known = links_.find(id.asLong());
    return known == links_.end() ? nullptr : &known->second;
}

std::vector<const LinkedEntity*> LinkIndex::find(const std::string& outputPath, const std::string& keyField,
                                                 const std::string& keyValue) const {
    std::vector<long> ids;
    auto [entry, end] = byRecord_.equal_range(recordKey(outputPath, keyField, keyValue));
    for (; entry != end; ++entry) ids.push_back(entry->second);
    std::sort(ids.begin(), ids.end());
    std::vector<const LinkedEntity*> found;
    for (long id : ids) found.push_back(&links_.at(id));
    return found;
}

// --- The entities of a record ----------------------------------------------------------------------------

std::string ToldTable(const LinkedEntity& link) {
    std::string table;
    if (files::exists(link.templatePath))
        WithDatabase(link.templatePath, [&](CDaoDatabase& database) {
            if (HasLinksTable(database)) table = ReadOutputTable(database, link.feature);
        });
    return table;
}

namespace {

bool hasTable(const std::string& outputPath, const std::string& table) {
    bool isThere = false;
    WithDatabase(outputPath,
                 [&](const CDaoDatabase& output) { isThere = !FindUserTable(output, table).empty(); });
    return isThere;
}

bool leadsTo(const LinkedEntity& link, const std::string& table) {
    const std::string told = ToldTable(link);
    if (SameTable(table, told)) return true;
    return SameTable(table, link.feature) && (told.empty() || !hasTable(link.outputPath, told));
}

}  // namespace

std::vector<EntityName> EntitiesOfRecord(const std::string& outputPath, const std::string& table,
                                         const std::string& keyField, const std::string& keyValue) {
    std::vector<EntityName> entities;
    std::map<std::pair<std::string, std::string>, bool> isFeatureOfTable;  // by template and feature
    for (const LinkedEntity* link : LinkIndex::OfDrawing().find(outputPath, keyField, keyValue)) {
        const auto [leads, isNew] = isFeatureOfTable.try_emplace({link->templatePath, link->feature});
        if (isNew) leads->second = leadsTo(*link, table);
        if (leads->second) entities.push_back(link->entity);
    }
    return entities;
}

}  // namespace norvane
