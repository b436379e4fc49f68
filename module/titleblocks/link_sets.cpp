#include "module/titleblocks/link_sets.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "module/titleblocks/record_source.h"
#include "module/titleblocks/title_blocks.h"
#include "platform/dao/dao.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// The columns of tables, each looked up once.
class KnownColumns {
  public:
    // None for a table that is not there; nothing when its source refuses.
    const std::optional<std::vector<std::string>>& find(const BlockLink& link) {
        const auto [known, isNew] = columns_.try_emplace({link.database.text(), link.table});
        if (isNew) known->second = read(link);
        return known->second;
    }

  private:
    std::optional<std::vector<std::string>> read(const BlockLink& link) {
        try {
            RecordSource* source = sources_.find(link.database);
            return source ? source->columns(link.table) : std::vector<std::string>();
        } catch (const CDaoException&) {
            return std::nullopt;
        }
    }

    RecordSources sources_;
    std::map<std::pair<std::string, std::string>, std::optional<std::vector<std::string>>> columns_;
};

BlockLinkSet testLinks(const std::string& block, const std::vector<BlockLink>& links, KnownColumns& known) {
    BlockLinkSet set{block, TagsOfBlock(block), {}, {}};
    for (BlockLink link : LinksOf(links, block)) {
        const std::optional<std::vector<std::string>>& columns = known.find(link);
        if (!columns) {
            set.refused.push_back(std::move(link));
            continue;
        }
        if (!contains(*columns, link.field)) continue;
        if (!contains(*columns, link.key)) link.key.clear();
        set.links.push_back(std::move(link));
    }
    return set;
}

}  // namespace

const BlockLink* BlockLinkSet::find(const std::string& attribute) const {
    for (const BlockLink& link : links)
        if (text::equalNoCase(link.attribute, attribute)) return &link;
    return nullptr;
}

std::vector<BlockLink> LinksOf(const std::vector<BlockLink>& links, const std::string& block) {
    std::vector<BlockLink> own;
    for (const BlockLink& link : links)
        if (text::equalNoCase(link.block, block)) own.push_back(link);
    return own;
}

std::vector<std::string> BlocksWithLinks(const std::vector<std::string>& blocks,
                                         const std::vector<BlockLink>& links) {
    std::vector<std::string> good;
    for (const std::string& block : blocks) {
        const std::vector<BlockLink> own = LinksOf(links, block);
        if (own.empty()) continue;
        const std::vector<std::string> tags = TagsOfBlock(block);
        if (std::all_of(own.begin(), own.end(),
                        [&](const BlockLink& link) { return contains(tags, link.attribute); }))
            good.push_back(block);
    }
    return good;
}

BlockLinkSet TestLinks(const std::string& block, const std::vector<BlockLink>& links) {
    KnownColumns known;
    return testLinks(block, links, known);
}

std::vector<FillableBlock> FindFillableBlocks(const std::vector<BlockLink>& links) {
    const std::map<std::string, long> counts = CountVisibleInserts();
    KnownColumns known;
    std::vector<FillableBlock> found;
    for (const std::string& block : BlocksWithLinks(BlocksWithAttributes(), links)) {
        const auto count = counts.find(block);
        if (count == counts.end()) continue;
        BlockLinkSet set = testLinks(block, links, known);
        if (!set.links.empty()) found.push_back({std::move(set), count->second});
    }
    return found;
}

}  // namespace norvane
