#include "module/linktools/link_blocks.h"

#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "module/cad/block_attributes.h"
#include "module/cad/group_list.h"
#include "module/dialogs/progress_dialog.h"
#include "module/dialogs/run_dialog.h"
#include "module/linktools/link_blocks_dialog.h"
#include "module/linktools/tally.h"
#include "module/settings/current_databases.h"
#include "module/settings/dialog_state.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/output_database.h"
#include "module/store/user_tables.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kKeyField = "PT_ID";

// A table of the output with the keys of its records.
struct KeyedTable {
    std::string name;  // as the database has it, on a server without its owner; "" for none
    std::unordered_set<std::string> keys;
};

// Each table is read once in a run.
class KeyedTables {
  public:
    explicit KeyedTables(CDaoDatabase& database) : database_(database) {}
    const KeyedTable& find(const std::string& name) {
        auto [known, isNew] = tables_.try_emplace(name);
        KeyedTable& table = known->second;
        if (isNew && !(table.name = FindUserTable(database_, name)).empty()) {
            std::vector<std::string> keys = ListKeys(database_, table.name);
            table.keys.insert(std::make_move_iterator(keys.begin()), std::make_move_iterator(keys.end()));
            // Links name features, and no feature is called after its owner.
            if (database_.GetConnect().onServer()) table.name.erase(0, table.name.find('.') + 1);
        }
        return table;
    }

  private:
    CDaoDatabase& database_;
    std::unordered_map<std::string, KeyedTable> tables_;
};

// What the attributes of one block say.
struct BlockKey {
    std::string id;
    std::string table;
};

// Of several attributes of one tag the last that is not empty counts.
BlockKey keyOf(const BlockReference& reference, const BlockLinkChoice& choice) {
    BlockKey key;
    if (choice.table == BlockLinkChoice::Table::kGiven) key.table = choice.secondKey;
    for (const BlockAttribute& attribute : ReadBlockAttributes(reference.entity.name)) {
        if (attribute.text.empty()) continue;
        if (text::equalNoCase(attribute.tag, choice.firstKey)) key.id = attribute.text;
        if (choice.table == BlockLinkChoice::Table::kFromAttribute &&
            text::equalNoCase(attribute.tag, choice.secondKey))
            key.table = attribute.text;
    }
    return key;
}

std::string handleOf(const BlockReference& reference) {
    const ResultBuffers groups(acdbEntGet(reference.entity.name));
    return GroupText(groups.get(), 5);
}

class LinkRun {
  public:
    LinkRun(const std::vector<BlockReference>& references, const BlockLinkChoice& choice) : choice_(choice) {
        for (const BlockReference& reference : references)
            if (text::equalNoCase(reference.block, choice.block)) references_.push_back(&reference);
    }

    void run() {
        acutPrintf("\nPlease wait...");
        WithDatabase(choice_.outputPath, [&](CDaoDatabase& database) { linkAll(database); });
        acutPrintf("\rLinks created     : %ld", static_cast<long>(linked_ + unchanged_));
        acutPrintf("\nDone.");
        tell();
    }

  private:
    void linkAll(CDaoDatabase& database) {
        KeyedTables tables(database);
        ProgressDialog progress("Create GIS Links", static_cast<long>(references_.size()), acedUsrBrk);
        for (const BlockReference* reference : references_) {
            const long number = static_cast<long>(done_ + 1);
            acutPrintf("\rProcess entity : %ld", number);
            if (!progress.step(number, "Block " + std::to_string(number))) return;
            link(*reference, tables);
            ++done_;
        }
    }

    void link(const BlockReference& reference, KeyedTables& tables) {
        const BlockKey key = keyOf(reference, choice_);
        if (key.id.empty()) return passedOver_.add("without a key", handleOf(reference));
        if (key.table.empty()) return passedOver_.add("without the name of a table", key.id);
        const KeyedTable& table = tables.find(key.table);
        if (table.name.empty()) return passedOver_.add("whose table is not there", key.table);
        if (!table.keys.contains(key.id)) return passedOver_.add("without a record", key.id);
        const GisLink link{choice_.templatePath, choice_.outputPath, table.name, kKeyField, key.id};
        if (IsLinkedBy(reference.entity.name, link)) {
            ++unchanged_;
        } else if (WriteGisLink(reference.entity.name, link) == RTNORM) {
            ++linked_;
        } else {
            passedOver_.add("whose link the drawing does not take", key.id);
        }
    }

    void tell() const {
        acutPrintf("\n%s: %zu linked, %zu already linked, %zu passed over",
                   text::counted(references_.size(), "block", "blocks").c_str(), linked_, unchanged_,
                   passedOver_.count());
        if (passedOver_.count() > 0) acutPrintf(": %s", passedOver_.text().c_str());
        acutPrintf(".");
        if (done_ < references_.size())
            acutPrintf("\nThe work ended before its end: %s not looked at.",
                       text::counted(references_.size() - done_, "block was", "blocks were").c_str());
    }

    const BlockLinkChoice& choice_;
    std::vector<const BlockReference*> references_;
    size_t done_ = 0, linked_ = 0, unchanged_ = 0;
    Tally passedOver_;
};

}  // namespace

std::vector<BlockReference> CollectBlocks(const ads_name set) {
    constexpr int kAttributesFollow = 66;
    std::vector<BlockReference> references;
    long length = 0;
    acedSSLength(set, &length);
    for (long i = 0; i < length; ++i) {
        BlockReference reference;
        if (acedSSName(set, i, reference.entity.name) != RTNORM) continue;
        const ResultBuffers groups(acdbEntGet(reference.entity.name));
        if (GroupText(groups.get(), 0) != "INSERT") continue;
        const resbuf* follow = FindResultBuffer(groups.get(), kAttributesFollow);
        if (!follow || (follow->resval.rint & 1) == 0) continue;
        reference.block = GroupText(groups.get(), 2);
        references.push_back(std::move(reference));
    }
    return references;
}

void LinkBlocks(const std::vector<BlockReference>& references, const BlockLinkChoice& choice) {
    LinkRun(references, choice).run();
}

void LinkBlocksOfSelection(const ads_name set) {
    const std::vector<BlockReference> references = CollectBlocks(set);
    if (references.empty()) {
        acutPrintf("\nCannot find any blocks with attributes in this selection set!");
        return;
    }
    LinkBlocksDialog dialog(references);
    if (RunDialog(dialog) == ui::kOk) LinkBlocks(references, dialog.choice());
}

void LinkFromBlocks(Call&) {
    SelectionSet selection;
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, selection.out()) != RTNORM) {
        acutPrintf("\nInvalid selection! Please try again!");
        return;
    }
    // Fetching the current databases lets the dialogs remember them.
    std::string path;
    GetDialogValue(state::kTemplatePath, path);
    GetDialogValue(state::kOutputPath, path);
    LinkBlocksOfSelection(selection.name());
}

}  // namespace norvane
