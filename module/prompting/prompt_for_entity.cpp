#include "module/prompting/prompt_for_entity.h"

#include <utility>

#include "module/prompting/form_engine.h"
#include "module/prompting/moved_files.h"
#include "module/prompting/object_data.h"
#include "module/prompting/old_record.h"
#include "module/prompting/open_prompt_sheet.h"
#include "module/prompting/request_files.h"
#include "module/settings/current_databases.h"
#include "module/settings/dialog_state.h"
#include "module/store/gis_link.h"
#include "module/store/new_records.h"
#include "module/store/server_sign_in.h"
#include "platform/files/files.h"

namespace norvane {

namespace {

struct ParsedRequest {
    PromptRequest request;
    bool pointGiven = false;  // the three coordinates and the entity were all given
};

ParsedRequest readRequest(ArgumentReader& in) {
    ParsedRequest parsed;
    PromptRequest& r = parsed.request;
    std::string output;
    in.text(r.binDirectory), in.text(r.templatePath), in.text(output);
    r.outputPath = TakePassword(output);
    in.text(r.keyField), in.text(r.keyValue);
    bool northing = in.real(r.northing);
    bool easting = in.real(r.easting);
    bool elevation = in.real(r.elevation);
    bool entity = in.entityName(r.entity);
    parsed.pointGiven = northing && easting && elevation && entity;
    in.text(r.featureName);
    in.shortInteger(r.featureLocked);
    for (OptionalReal* value : {&r.latitude, &r.longitude, &r.rawElevation, &r.rodHeight, &r.hrms, &r.vrms})
        in.real(value->value);
    in.text(r.instrument);
    return parsed;
}

void promptForObjectData(PromptRequest request) {
    if (!ObjectDataUsable()) return;
    if (!files::exists(request.templatePath)) request.templatePath.clear();
    GetDialogValue(state::kOutputTable, request.featureName);
    RunObjectDataPrompt(request);
}

bool filesAreReady(const PromptRequest& r) {
    if (r.templatePath.empty() || r.outputPath.empty()) return true;
    bool ready = TemplateIsThere(r.templatePath);
    if (!IsOutputThere(r.outputPath) && !CreateMissingOutput(r.outputPath)) ready = false;
    return ready;
}

bool isComplete(const PromptRequest& r) {
    return !r.binDirectory.empty() && !r.templatePath.empty() && !r.outputPath.empty() &&
           !r.keyField.empty() && !r.keyValue.empty();
}

}  // namespace

bool PromptAndLink(const PromptRequest& request, GisLink link) {
    GisLink old;
    const bool wasLinked = ReadGisLink(request.entity, old) == LinkState::kFound;
    const std::optional<SavedRecord> saved = OpenPromptSheet(request);
    if (!saved) return false;
    link.featureName = saved->featureName;
    link.keyField = request.keyField;
    link.keyValue = saved->keyValue;
    const bool isLinked = WriteGisLink(request.entity, link) == RTNORM;
    if (isLinked && saved->isNew)
        NoteNewRecords({link.outputPath.text(), saved->table, link.keyField, "", link.featureName},
                       {link.keyValue});
    if (isLinked && wasLinked) AskAboutOldRecord(old, saved->featureName);
    ShowForm(saved->form, request.binDirectory);
    return true;
}

void PromptForEntity(Call& call) {
    auto [request, pointGiven] = readRequest(call.arguments);
    if (ObjectDataMode()) return promptForObjectData(request);
    GisLink link = FollowMovedFiles(request);
    if (!filesAreReady(request) || !isComplete(request) || !pointGiven) return;
    if (PromptAndLink(request, std::move(link))) call.result = 1;
}

}  // namespace norvane
