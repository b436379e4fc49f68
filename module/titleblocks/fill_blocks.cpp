#include "module/titleblocks/fill_blocks.h"

#include "module/dialogs/progress_dialog.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kMostNames = 10;  // of keys that are told

std::string keyOf(const std::vector<InsertAttribute>& attributes, const std::string& tag) {
    for (const InsertAttribute& attribute : attributes)
        if (text::equalNoCase(attribute.tag, tag)) return attribute.text;
    return "";
}

}  // namespace

TextSet KeysOf(const FillChoice& choice) {
    TextSet keys;
    if (choice.keyValue) {
        keys.add(*choice.keyValue);
        return keys;
    }
    for (const EntityName& insert : VisibleInserts(choice.block))
        keys.add(AttributeText(insert, choice.keyAttribute));
    return keys;
}

FilledInsert FillInsert(const EntityName& insert, const FillChoice& choice,
                        const std::vector<BlockLink>& links, const ValueTables& tables) {
    FilledInsert filled;
    filled.entity = insert;
    filled.handle = HandleOf(insert);
    filled.attributes = AttributesOfInsert(insert);
    for (const InsertAttribute& attribute : filled.attributes) filled.before.push_back(attribute.text);
    filled.isLinked.resize(filled.attributes.size());
    filled.key = choice.keyValue ? *choice.keyValue : keyOf(filled.attributes, choice.keyAttribute);
    for (const BlockLink& link : links) {
        const std::optional<std::string_view> value = tables.find(link, filled.key);
        if (!value) continue;
        filled.isFound = true;
        for (size_t i = 0; i < filled.attributes.size(); ++i)
            if (text::equalNoCase(filled.attributes[i].tag, link.attribute)) {
                filled.attributes[i].text = link.format.apply(std::string(*value));
                filled.isLinked[i] = true;
            }
    }
    return filled;
}

void FillReport::add(const FilledInsert& insert) {
    if (insert.attributes.empty()) {
        ++withoutAttributes;
    } else if (insert.key.empty()) {
        ++withoutKey;
    } else if (insert.isFound) {
        ++updated;
    } else {
        ++notFound;
        if (known_.insert(insert.key).second) missingKeys.push_back(insert.key);
    }
}

std::string FillReport::text(const std::string& block) const {
    std::vector<std::string> names = missingKeys;
    if (names.size() > kMostNames) {
        names.resize(kMostNames);
        names.emplace_back("...");
    }
    std::string told = block + ": " + text::counted(static_cast<long>(blocks), "block", "blocks") + ", " +
                       std::to_string(updated) + " updated";
    auto tell = [&](size_t count, const std::string& what) {
        if (count > 0) told += ", " + std::to_string(count) + " " + what;
    };
    tell(skipped, "skipped");
    tell(notFound, "without a record (" + text::join(names, ", ") + ")");
    tell(withoutKey, "without a key");
    tell(withoutAttributes, "without attributes");
    tell(refused, "with texts that the drawing does not take");
    tell(notLookedAt, "not looked at, since the work ended before its end");
    return told + ".";
}

FillReport FillBlocks(const FillChoice& choice, const std::vector<BlockLink>& links,
                      const ValueTables& tables, const Preview& preview) {
    const std::vector<EntityName> inserts = VisibleInserts(choice.block);
    FillReport report;
    report.blocks = inserts.size();
    ProgressDialog progress("Title Blocks", static_cast<long>(inserts.size()), acedUsrBrk);
    bool isShown = choice.preview;
    for (size_t i = 0; i < inserts.size(); ++i) {
        report.notLookedAt = inserts.size() - i;
        // A person who looks at each has a button for the end.
        if (!isShown && !progress.step(static_cast<long>(i), "Block " + std::to_string(i + 1))) return report;
        FilledInsert insert = FillInsert(inserts[i], choice, links, tables);
        const PreviewAnswer answer = isShown ? preview.show(insert, isShown) : PreviewAnswer::kTake;
        if (answer == PreviewAnswer::kEnd) {
            report.endedByPreview = true;
            return report;
        }
        if (answer == PreviewAnswer::kSkip) {
            ++report.skipped;
            continue;
        }
        report.add(insert);
        if (!WriteAttributes(insert.entity, insert.attributes)) ++report.refused;
    }
    report.notLookedAt = 0;
    return report;
}

}  // namespace norvane
