#include "module/host/own_functions.h"

#include "module/annotation/annotation_functions.h"
#include "module/annotation/annotation_operations.h"
#include "module/linktools/area_faults.h"
#include "module/linktools/link_report.h"
#include "module/linktools/linked_entities.h"
#include "module/points/point_functions.h"
#include "module/records/erase_records.h"
#include "module/records/key_index.h"
#include "module/records/records_panel.h"
#include "module/records/unlink.h"
#include "module/selection/selection_functions.h"
#include "module/titleblocks/title_operations.h"
#include "module/transfer/export_operations.h"
#include "module/transfer/import_dialog.h"
#include "module/transfer/point_file_chooser.h"
#include "module/transfer/table_dialog.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

// (gis:version) gives the version of the module as text.
void giveVersion(Call& call) {
    call.result = std::string(NORVANE_VERSION);
}

// (gis:ask title question default) asks with Yes and No and gives the answer. Scripts that do not know the
// question get the default, "Yes" or "No", and none of their answers is used up.
void askQuestion(Call& call) {
    ui::OwnQuestion question;
    std::string standard;
    call.arguments.text(question.title), call.arguments.text(question.text), call.arguments.text(standard);
    question.defaultAnswer = text::equalNoCase(standard, "Yes") ? ui::kYes : ui::kNo;
    call.result = std::string(ui::ask(question) == ui::kYes ? "Yes" : "No");
}

constexpr OwnFunction kFunctions[] = {
    {"gis:version", 1000, giveVersion},
    {"gis:ask", 1001, askQuestion},
    {"gis:points", 1010, ListPoints},
    {"gis:write-point", 1011, WritePoint},
    {"gis:delete-points", 1012, DeletePoints},
    {"gis:next-point", 1013, NextPoint},
    {"gis:choose-points", 1014, ChoosePointFile},
    {"gis:export-folder", 1020, GiveExportFolder},
    {"gis:import", 1021, ImportLinkedPoints},
    {"gis:link-report", 1030, GiveLinkReport},
    {"gis:update-records", 1031, UpdateLinkedRecords},
    {"gis:linked-entities", 1032, GiveLinkedEntities},
    {"gis:area-faults", 1033, GiveAreaFaults},
    {"gis:edit-table", 1040, EditChosenTable},
    {"gis:fill-titles", 1060, FillTitles},
    {"gis:compare-titles", 1061, CompareTitles},
    {"gis:drawings", 1062, ListDrawings},
    {"gis:select", 1100, SelectByCondition},
    {"gis:records", 1101, GiveRecords},
    {"gis:conditions", 1102, GiveConditions},
    {"gis:keep-condition", 1103, KeepNamedCondition},
    {"gis:remove-condition", 1104, RemoveNamedCondition},
    {"gis:select-by-condition", 1105, AskAndSelect},
    {"gis:choose-condition", 1106, ShowConditions},
    {"gis:index", 1110, IndexTables},
    {"gis:records-panel", 1115, ShowRecordsPanel},
    {"gis:unlink", 1120, UnlinkEntities},
    {"gis:erase-new-records", 1121, EraseNewRecordsOfRun},
    {"gis:labels", 1130, ChooseLabels},
    {"gis:colours", 1131, ChooseColours},
    {"gis:annotation", 1132, ListAnnotation},
    {"gis:refresh-annotation", 1133, RefreshAnnotation},
    {"gis:set-labels", 1134, SetLabels},
    {"gis:set-colours", 1135, SetColours},
    {"gis:make-texts", 1136, MakeTextsOfLabels},
    {"gis:update-texts", 1137, UpdateTextsOfLabels},
    {"gis:draw-legend", 1138, DrawLegendOfColours},
};

}  // namespace

std::span<const OwnFunction> OwnFunctions() {
    return kFunctions;
}

}  // namespace norvane
