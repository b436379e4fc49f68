#include "module/prompting/old_record.h"

#include <optional>
#include <utility>
#include <vector>

#include "module/store/named_records.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

std::optional<RecordName> recordOf(const GisLink& link) {
    LinkedEntity entity;
    entity.templatePath = link.templatePath.text();
    entity.outputPath = link.outputPath.text();
    entity.feature = link.featureName;
    entity.keyField = link.keyField;
    entity.keyValue = link.keyValue;
    std::vector<RecordName> records = RecordsOfLinks({&entity});
    if (records.empty() || !IsRecordThere(records.front())) return std::nullopt;
    return std::move(records.front());
}

}  // namespace

void AskAboutOldRecord(const GisLink& link, const std::string& newFeature) {
    const std::string feature(text::trim(newFeature));
    if (text::equalNoCase(link.featureName, feature)) return;
    const std::optional<RecordName> old = recordOf(link);
    if (!old) return;
    const std::string name = old->keyField + " " + old->key + " of " + old->feature;
    if (const size_t others = LinksToRecords({*old}).size(); others > 0) {
        acutPrintf(
            "\nThe old record, %s, stays: %s to it.", name.c_str(),
            text::counted(static_cast<long>(others), "other entity leads", "other entities lead").c_str());
        return;
    }
    ui::OwnQuestion question;
    question.title = "Old record";
    question.text = "The entity is linked to a record of " + feature +
                    " now. No entity leads to its old record, " + name +
                    ".\nDo you want to erase the old record? Undo does not bring it back.";
    question.loses = true;
    if (ui::ask(question) != ui::kYes) {
        acutPrintf("\nThe old record, %s, stays in the database.", name.c_str());
        return;
    }
    const bool isErased = EraseRecords({*old}, [] { return true; }).erased == 1;
    acutPrintf("\nThe old record, %s, %s.", name.c_str(), isErased ? "is erased" : "could not be erased");
}

}  // namespace norvane
