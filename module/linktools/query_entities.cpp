#include "module/linktools/query_entities.h"

#include <optional>
#include <utility>

#include "module/cad/group_list.h"
#include "module/cad/layers.h"
#include "module/cad/lisp_symbols.h"
#include "module/cad/polyline_vertices.h"
#include "module/cad/variable_scope.h"
#include "module/linktools/link_targets.h"
#include "module/linktools/polygon_at.h"
#include "module/prompting/moved_files.h"
#include "module/prompting/object_data.h"
#include "module/prompting/open_prompt_sheet.h"
#include "module/prompting/prompt_for_entity.h"
#include "module/prompting/request_files.h"
#include "module/settings/current_databases.h"
#include "module/settings/dialog_state.h"
#include "module/setup/gis_settings_dialog.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/output_database.h"
#include "module/store/server_sign_in.h"
#include "module/store/template_database.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

// --- The sheet of one entity -----------------------------------------------------------------------------

namespace {

constexpr const char* kPointBlock = "SRVPNO1";

PromptRequest requestFor(const ads_name entity) {
    PromptRequest request;
    request.binDirectory = LispDirectory();
    ads_name_set(entity, request.entity);
    const ResultBuffers groups(acdbEntGet(entity));
    const std::string type = GroupText(groups.get(), 0);
    if (type == "CIRCLE" || type == "INSERT" || type == "TEXT") {
        const plane::Point at = PointOfGroup(groups.get(), 10);
        request.easting = at.x, request.northing = at.y, request.elevation = at.z;
    }
    return request;
}

std::string currentPath(int slot) {
    std::string path;
    GetDialogValue(slot, path);
    return path;
}

void showObjectData(PromptRequest request) {
    auto existing = [] {
        const std::string path = currentPath(state::kTemplatePath);
        return files::exists(path) ? path : "";
    };
    request.templatePath = existing();
    if (request.templatePath.empty()) {
        RunGisSettings();
        request.templatePath = existing();
    }
    request.featureName = readState(state::kOutputTable);
    RunObjectDataPrompt(request);
}

// The current databases for an entity that has no record yet. False without them.
bool takeCurrentDatabases(PromptRequest& request) {
    auto read = [&] {
        request.templatePath = currentPath(state::kTemplatePath);
        request.outputPath = dao::DatabasePath(currentPath(state::kOutputPath));
    };
    read();
    if (!files::exists(request.templatePath) || !IsOutputThere(request.outputPath)) {
        RunGisSettings();
        read();
    }
    if (!files::exists(request.templatePath) || request.outputPath.empty()) return false;
    return IsOutputThere(request.outputPath) || CreateMissingOutput(request.outputPath);
}

// What the sheet was last used for is remembered by its table, which mostly is called as its feature.
std::string rememberedFeature(const std::string& templatePath) {
    const std::string name = readState(state::kOutputTable);
    return !name.empty() && IsFeatureDefined(templatePath, name) ? name : "";
}

// Whether the databases of a link are there; a line tells which is not.
bool linkedFilesAreThere(const PromptRequest& request) {
    if (!TemplateIsThere(request.templatePath)) return false;
    if (IsOutputThere(request.outputPath)) return true;
    acutPrintf("\nError: unable to read file %s", request.outputPath.text().c_str());
    return false;
}

void showNewRecord(PromptRequest request, const std::string& key) {
    if (!takeCurrentDatabases(request)) return;
    request.keyField = "PT_ID";
    request.keyValue = key;
    request.featureName = rememberedFeature(request.templatePath);
    GisLink link;
    link.templatePath = dao::DatabasePath(request.templatePath);
    link.outputPath = request.outputPath;
    PromptAndLink(request, std::move(link));
}

void showLinkedRecord(PromptRequest request, const GisLink& link) {
    request.templatePath = link.templatePath;
    request.outputPath = link.outputPath;
    request.featureName = link.featureName;
    request.keyField = link.keyField;
    request.keyValue = link.keyValue;
    request.featureLocked = 1;
    const GisLink saved = FollowMovedFiles(request);
    if (!linkedFilesAreThere(request)) return;
    if (IsDaoAvailable("3.6") && !IsFeatureDefined(request.templatePath, request.featureName)) {
        acutPrintf("\nCannot find the GIS definitions in Template MDB!");
        return;
    }
    PromptAndLink(request, saved);
}

}  // namespace

void ShowEntityData(const ads_name entity, const std::string& key) {
    const PromptRequest request = requestFor(entity);
    if (ObjectDataMode()) return showObjectData(request);
    GisLink link;
    switch (ReadGisLink(entity, link)) {
        case LinkState::kNone:
            return showNewRecord(request, key);
        case LinkState::kCorrupted:
            return;
        case LinkState::kFound:
            return showLinkedRecord(request, link);
    }
}

// --- The loop --------------------------------------------------------------------------------------------

namespace {

// The window then has the properties of what was picked, the record among them.
void showPicked(const ads_name entity, const std::string& key) {
    ShowEntityData(entity, key);
    SelectionSet picked;
    if (acedSSAdd(entity, nullptr, picked.out()) == RTNORM) acedSSShow(picked.name());
}

// What the first attribute of a survey point says.
struct PointNumber {
    std::string text;       // in capitals; "" for none
    double textHeight = 0;  // drawing units
};

bool isPointBlock(const resbuf* groups) {
    constexpr int kAttributesFollow = 66;
    const resbuf* follow = FindResultBuffer(groups, kAttributesFollow);
    return GroupText(groups, 0) == "INSERT" && text::equalNoCase(GroupText(groups, 2), kPointBlock) &&
           follow && (follow->resval.rint & 1) != 0;
}

PointNumber numberOf(const ads_name point) {
    constexpr int kHeight = 40;
    ads_name attribute;
    if (acdbEntNext(point, attribute) != RTNORM) return {};
    const ResultBuffers groups(acdbEntGet(attribute));
    const std::string value = GroupText(groups.get(), 1);
    if (GroupText(groups.get(), 0) != "ATTRIB" || text::trim(value).empty()) return {};
    const resbuf* height = FindResultBuffer(groups.get(), kHeight);
    return {text::upper(value), height ? height->resval.rreal : 0};
}

// The key of a new record: the number of a survey point, else one that is generated.
std::string keyOf(const ads_name entity) {
    const ResultBuffers groups(acdbEntGet(entity));
    const std::string number = isPointBlock(groups.get()) ? numberOf(entity).text : "";
    return number.empty() ? kAutomaticKey : number;
}

void showPoint(const ads_name point, const PointNumber& number) {
    constexpr double kViewHeight = 10;  // of its text
    const ResultBuffers groups(acdbEntGet(point));
    const plane::Point at = ReadInsertionPoint(groups.get());
    ads_point centre = {at.x, at.y, at.z};
    {
        const VariableScope quiet("CMDECHO", 0);
        acedCommand(RTSTR, "_.ZOOM", RTSTR, "_Center", RT3DPOINT, centre, RTREAL,
                    number.textHeight * kViewHeight, 0);
    }
    showPicked(point, number.text);
}

// Shows the survey point of a number, the first of several.
void findPoint(const std::string& typed) {
    const ResultBuffers filter(acutBuildList(-4, "<and", RTDXF0, "INSERT", 2, kPointBlock, -4, "and>", 0));
    SelectionSet points;
    acedSSGet("X", nullptr, nullptr, filter.get(), points.out());
    const long count = points.length();
    ads_name point;
    for (long i = 0; i < count && points.at(i, point); ++i) {
        const ResultBuffers groups(acdbEntGet(point));
        if (IsOnHiddenLayer(groups.get()) || !isPointBlock(groups.get())) continue;
        const PointNumber number = numberOf(point);
        if (!number.text.empty() && text::equalNoCase(number.text, typed)) return showPoint(point, number);
    }
    acutPrintf("\nInvalid point number!");
}

void showPolygonAt(const ads_point point) {
    if (const std::optional<EntityName> polygon = FindPolygonAt({point[0], point[1], point[2]}))
        showPicked(polygon->name, kAutomaticKey);
    else
        acutPrintf("\nUsing this point cannot find any polygon!");
}

// A pick beside everything ends the query, unless the host's routines have said otherwise.
bool goesOnAfterMiss() {
    constexpr int kNothingThere = 7;
    resbuf error{};
    std::string wish;
    return acedGetVar("ERRNO", &error) == RTNORM && error.resval.rint == kNothingThere &&
           GetLispValue(wish, "query-goes-on$") && wish == "1";
}

class Query {
  public:
    void run() {
        while (prompt()) {
        }
    }

  private:
    enum class Mode { kSelect, kPick, kNumber };

    // One answer; false when it was the last.
    bool prompt() {
        acedInitGet(128, "Select Pick Number");
        switch (mode_) {
            case Mode::kSelect:
                return select();
            case Mode::kPick:
                return pick();
            case Mode::kNumber:
                return typeNumber();
        }
        return false;
    }

    bool select() {
        ads_name entity;
        ads_point picked;
        const int status = acedEntSel("\nSelect object (Number/Pick/<Select>): ", entity, picked);
        if (status == RTKWORD) return takeWord();
        if (status != RTNORM) return status == RTERROR && goesOnAfterMiss();
        showPicked(entity, keyOf(entity));
        return true;
    }

    bool pick() {
        ads_point point;
        const int status =
            acedGetPoint(nullptr, "\nPick a point inside polygon (Select/Number/<Pick>): ", point);
        if (status == RTKWORD) return takeWord();
        if (status != RTNORM) return false;
        showPolygonAt(point);
        return true;
    }

    bool typeNumber() {
        char typed[512] = "";
        const int status = acedGetKword("\nType point number (Pick/Select/<Number>): ", typed);
        if (status == RTKWORD) return takeWord();
        if (status != RTNORM) return false;
        if (!takeMode(typed)) findPoint(typed);
        return true;
    }

    bool takeWord() {
        char word[512] = "";
        acedGetInput(word);
        takeMode(word);
        return true;
    }

    bool takeMode(const std::string& word) {
        if (word == "Select")
            mode_ = Mode::kSelect;
        else if (word == "Pick")
            mode_ = Mode::kPick;
        else if (word == "Number")
            mode_ = Mode::kNumber;
        else
            return false;
        return true;
    }

    Mode mode_ = Mode::kSelect;
};

}  // namespace

void QueryEntities(Call&) {
    if (ObjectDataMode() && !ObjectDataUsable()) return;
    Query().run();
}

}  // namespace norvane
