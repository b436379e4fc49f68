// Filling the attributes of title blocks with the values of records.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "module/titleblocks/link_sets.h"
#include "module/titleblocks/title_blocks.h"
#include "module/titleblocks/value_table.h"

namespace norvane {

struct FillChoice {
    std::string block;
    std::string keyAttribute;             // the tag whose text is the key of an insert
    std::optional<std::string> keyValue;  // the key of all inserts, in place of that
    bool preview = false;                 // each insert is shown before it is written
};

// The keys that a choice leads to.
TextSet KeysOf(const FillChoice& choice);

// An insert as it will be: all of its attributes in their order.
struct FilledInsert {
    EntityName entity;
    std::string handle;
    std::string key;
    bool isFound = false;  // some link has found a record
    std::vector<InsertAttribute> attributes;
    std::vector<std::string> before;  // the texts that the attributes have
    std::vector<bool> isLinked;       // whether a link has found something for the attribute
};
FilledInsert FillInsert(const EntityName& insert, const FillChoice& choice,
                        const std::vector<BlockLink>& links, const ValueTables& tables);

// What a run came to.
struct FillReport {
    size_t blocks = 0, updated = 0, skipped = 0, withoutAttributes = 0, withoutKey = 0, notFound = 0,
           refused = 0;
    std::vector<std::string> missingKeys;  // each once, in the order of the inserts
    size_t notLookedAt = 0;                // when it was ended before its end
    bool endedByPreview = false;

    void add(const FilledInsert& insert);
    // "TITLE: 11 blocks, 8 updated, 2 without a record (99-9999), 1 without a key." with ten keys at most.
    std::string text(const std::string& block) const;

  private:
    std::set<std::string> known_;  // the missing keys
};

// What the person says to an insert that is shown, whose texts may have been changed.
enum class PreviewAnswer { kTake, kSkip, kEnd };
struct Preview {
    // Shows an insert. goesOn: whether the following ones are shown too.
    std::function<PreviewAnswer(FilledInsert& insert, bool& goesOn)> show;
};

// Fills all inserts of the block that can be seen. Escape ends it between two of them; what was written
// stays.
FillReport FillBlocks(const FillChoice& choice, const std::vector<BlockLink>& links,
                      const ValueTables& tables, const Preview& preview);

}  // namespace norvane
