#include "module/titleblocks/loaded_links.h"

#include <algorithm>
#include <map>
#include <set>

#include "module/titleblocks/record_source.h"
#include "platform/dao/dao.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

class Loader {
  public:
    explicit Loader(const FindMissing& findMissing) : findMissing_(findMissing) {}

    BlockLink load(BlockLink link) {
        link.database = placeOf(link.database);
        const std::vector<std::string> columns = columnsOf(link);
        if (columns.empty()) {
            link.key = link.table = link.field = "";
            link.database = dao::DatabasePath();
        }
        for (std::string* field : {&link.key, &link.field})
            if (std::find(columns.begin(), columns.end(), *field) == columns.end()) field->clear();
        return link;
    }

  private:
    dao::DatabasePath placeOf(const dao::DatabasePath& database) {
        if (database.empty() || IsSourceThere(database)) return database;
        const auto [known, isNew] = moved_.try_emplace(database.text(), database);
        if (isNew) known->second = findMissing_(database).value_or(database);
        return known->second;
    }

    // None where the database or the table is missing, or cannot be read.
    std::vector<std::string> columnsOf(const BlockLink& link) {
        try {
            RecordSource* source = sources_.find(link.database);
            return source ? source->columns(link.table) : std::vector<std::string>();
        } catch (const CDaoException& error) {
            if (told_.insert(link.database.text()).second) ui::messageBox("Error", error.description());
            return {};
        }
    }

    const FindMissing& findMissing_;
    RecordSources sources_;
    std::map<std::string, dao::DatabasePath> moved_;
    std::set<std::string> told_;  // databases whose refusal was shown
};

}  // namespace

std::vector<BlockLink> LoadLinks(std::vector<BlockLink> saved, const FindMissing& findMissing) {
    Loader loader(findMissing);
    for (BlockLink& link : saved) link = loader.load(std::move(link));
    return saved;
}

}  // namespace norvane
