#include "module/host/dispatcher.h"

#include <iterator>

#include "module/features/template_editor.h"
#include "module/host/ads_owners.h"
#include "module/host/arguments.h"
#include "module/host/automation_call.h"
#include "module/host/database_chooser.h"
#include "module/host/gis_request.h"
#include "module/host/gis_settings.h"
#include "module/host/gis_settings_dialog.h"
#include "module/host/host_helpers.h"
#include "module/host/open_prompt_sheet.h"
#include "module/prompting/form_engine.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/object_data.h"
#include "module/store/output_database.h"
#include "module/store/template_database.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"

namespace {

constexpr int kFirstSlot = 0;
constexpr int kLastSlot = 29;
constexpr size_t kLongestDirectory = 1023;  // bytes

bool isSlot(int slot) {
    return slot >= kFirstSlot && slot <= kLastSlot;
}

// Makes a database that the prompting needs: such a file always has the Access 97 format.
bool createMissingOutput() {
    std::string path = PromptRequest.outputPath;
    PromptRequest.outputPath = "0" + path;
    bool created = CreateOutputDatabase();
    PromptRequest.outputPath = path;
    if (!created) acutPrintf("\nError: unable to write file %s", path.c_str());
    return created;
}

bool templateIsThere() {
    if (files::exists(PromptRequest.templatePath)) return true;
    acutPrintf("\nError: unable to read file %s", PromptRequest.templatePath.c_str());
    return false;
}

// --- Code 1: smart prompting on one entity ----------------------------------------------------------------

// True when the three coordinates and the entity were all given.
bool readPromptRequest(ArgumentReader& in) {
    PromptRequestRecord& r = PromptRequest;
    in.text(r.binDirectory), in.text(r.templatePath), in.text(r.outputPath);
    // It goes into the link, the title and the remembered values from here.
    r.outputPath = TakePassword(r.outputPath);
    in.text(r.keyField), in.text(r.keyValue);
    bool northing = in.real(r.northing);
    bool easting = in.real(r.easting);
    bool elevation = in.real(r.elevation);
    bool entity = in.entityName(r.entity);
    in.text(r.featureName);
    in.shortInteger(r.featureLocked);
    for (OptionalReal* value : {&r.latitude, &r.longitude, &r.rawElevation, &r.rodHeight, &r.hrms, &r.vrms})
        in.real(value->value);
    in.text(r.instrument);
    return northing && easting && elevation && entity;
}

void writeLink() {
    WriteGisLink(PromptRequest.entity,
                 {PromptRequest.templatePath, PromptRequest.outputPath, PromptRequest.featureName,
                  PromptRequest.keyField, PromptRequest.keyValue});
}

void promptForObjectData() {
    if (!ObjectDataUsable()) return;
    if (!files::exists(PromptRequest.templatePath)) PromptRequest.templatePath.clear();
    std::string feature;
    GetDialogValue(3, feature);
    if (!feature.empty()) PromptRequest.featureName = feature;
    RunObjectDataPrompt();
}

void promptForEntity(ArgumentReader& in) {
    bool pointGiven = readPromptRequest(in);
    if (ObjectDataMode == 1) return promptForObjectData();

    const PromptRequestRecord& r = PromptRequest;
    bool ready = true;
    if (!r.templatePath.empty() && !r.outputPath.empty()) {
        ready = templateIsThere();
        if (!IsOdbcPath(r.outputPath) && !files::exists(r.outputPath) && !createMissingOutput())
            ready = false;
    }
    bool complete = !r.binDirectory.empty() && !r.templatePath.empty() && !r.outputPath.empty() &&
                    !r.keyField.empty() && !r.keyValue.empty();
    if (!ready || !complete) return;

    if (pointGiven) OpenPromptSheet();
    if (GisReturnStatus == 1)
        writeLink();
    else if (GisReturnStatus != 0)
        acutPrintf("\nError3: unable to write GIS MDB data");
    if (!r.formsArgument.empty())
        ShowForm(static_cast<FormEngine>(r.accessVersionCode), r.binDirectory, r.formsArgument);
}

// --- Codes 2, 3, 7, 14: settings --------------------------------------------------------------------------

void storeSlot(ArgumentReader& in) {
    int slot = -1;
    std::string value;
    if (in.shortInteger(slot) && in.text(value) && !value.empty() && isSlot(slot))
        SetDialogValue(slot, TakePassword(value));
}

// A slot without a value leaves ret_string as it was.
void fetchSlot(ArgumentReader& in) {
    int slot = -1;
    if (!in.shortInteger(slot) || !isSlot(slot)) return;
    std::string value;
    GetDialogValue(slot, value);
    if (!value.empty()) SetLispString("ret_string", value);
}

void runSettings(ArgumentReader&) {
    RunGisSettings();
}

void chooseFile(ArgumentReader& in) {
    in.text(FileChooserFolder);
    FileChooserResult = ChooseDatabase(DatabaseChooser::kOutput).value_or("");
    GisReturnStatus = kReturnedString;
    if (FileChooserResult.empty())
        acedRetNil();
    else
        acedRetStr(FileChooserResult.c_str());
}

// --- Code 12: automation ----------------------------------------------------------------------------------

void callAutomation(ArgumentReader& in) {
    std::string library, program, className, method, argument, result;
    for (std::string* value : {&library, &program, &className, &method, &argument}) in.text(*value);
    GisReturnStatus = kReturnedOwnString;
    bool complete =
        !library.empty() && !program.empty() && !className.empty() && !method.empty() && !argument.empty();
    if (complete) CallAutomation(library, program, className, method, argument, result);
    acedRetStr(result.c_str());
}

// --- Code 15: the editor of the template ------------------------------------------------------------------

void editTemplate(ArgumentReader&) {
    GisReturnStatus = 1;
    RunTemplateEditor();
}

// --- Code 18: query ---------------------------------------------------------------------------------------

void queryEntities(ArgumentReader&) {
    if (ObjectDataMode == 1) ObjectDataUsable();
}

// --- Codes 19, 20, 21: databases --------------------------------------------------------------------------

void bulkAdd(ArgumentReader& in) {
    GisReturnStatus = kReturnReal;
    GisReturnReal = BulkAddRecords(in.rest());
}

void linkPolylines(ArgumentReader& in) {
    GisReturnStatus = 1;
    in.text(PromptRequest.binDirectory), in.text(PromptRequest.templatePath),
        in.text(PromptRequest.outputPath);
    if (PromptRequest.templatePath.empty() || PromptRequest.outputPath.empty()) return;
    templateIsThere();
    if (!files::exists(PromptRequest.outputPath)) createMissingOutput();
}

void featureExists(ArgumentReader& in) {
    GisReturnStatus = kReturnInteger;
    in.text(PromptRequest.templatePath);
    in.text(PromptRequest.featureName);
    if (PromptRequest.templatePath.empty()) return;
    if (!files::exists(PromptRequest.templatePath))
        GisReturnInt = -1;
    else if (!PromptRequest.featureName.empty())
        GisReturnInt = FeatureExists(PromptRequest.templatePath, PromptRequest.featureName);
}

// All codes in their order. One whose tool is not built does nothing and gives 0, as without its arguments.
using Operation = void (*)(ArgumentReader&);
constexpr Operation kNotBuilt = nullptr;
constexpr Operation kOperations[] = {
    promptForEntity,  // 1
    storeSlot,        // 2
    fetchSlot,        // 3
    kNotBuilt,        // 4 links from blocks
    kNotBuilt,        // 5 block link settings
    kNotBuilt,        // 6 title blocks
    runSettings,      // 7
    kNotBuilt,        // 8 audit of links
    kNotBuilt,        // 9 export to shape files
    kNotBuilt,        // 10 export of a given set
    kNotBuilt,        // 11 import of shape files
    callAutomation,   // 12
    kNotBuilt,        // 13 polygon around a point
    chooseFile,       // 14
    editTemplate,     // 15
    kNotBuilt,        // 16 database utilities
    kNotBuilt,        // 17 blocks from data
    queryEntities,    // 18
    bulkAdd,          // 19
    linkPolylines,    // 20
    featureExists,    // 21
};

Operation operationOf(int code) {
    return code >= 1 && code <= static_cast<int>(std::size(kOperations)) ? kOperations[code - 1] : kNotBuilt;
}

void readEnvironment() {
    GetLispValue(LispDirectory, "lspdir$");
    if (LispDirectory.size() > kLongestDirectory) LispDirectory.resize(kLongestDirectory);
    SettingsFile::ensure();
    std::optional<SettingsFile> file = SettingsFile::read();
    bool wanted = file && file->value(settings::kObjectData).value_or("") == "1";
    ObjectDataMode = wanted && ProbeObjectData() != 0 ? 1 : 0;
}

}  // namespace

void DispatchGisRequest() {
    ClearRequest();
    readEnvironment();
    ResultBuffers arguments(acedGetArgs());
    ArgumentReader in(arguments.get());
    int code = 0;
    if (in.shortInteger(code))
        if (Operation operation = operationOf(code)) operation(in);

    GisFileArgument.clear();
    FileChooserResult.clear();
    PromptRequest = {};
}
