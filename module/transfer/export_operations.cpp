#include "module/transfer/export_operations.h"

#include "module/dialogs/run_dialog.h"
#include "module/exchange/shape_object.h"
#include "module/transfer/export_dialog.h"
#include "module/transfer/export_memory.h"
#include "module/transfer/export_run.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kProduct = "Norvane Software";

bool isExported(int shapeType) {
    switch (shapeType) {
        case shape::kPoint:
        case shape::kArc:
        case shape::kPolygon:
        case shape::kPointZ:
        case shape::kArcZ:
        case shape::kPolygonZ:
            return true;
        default:
            return false;
    }
}

}  // namespace

void ExportSelection(Call& call) {
    std::string path;
    if (!call.arguments.text(path) || path.empty()) return;
    SelectionSet selection;
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, selection.out()) != RTNORM) {
        acutPrintf("\nInvalid selection! Please try again!");
        return;
    }
    long linkedOthers = 0;
    std::vector<ExportEntity> entities = ReadSurveyEntities(selection.name(), linkedOthers);
    if (entities.empty()) {
        acutPrintf("\nCannot find any %s entities in this selection! Please try again", kProduct);
        return;
    }
    ExportDialog dialog(entities);
    if (RunDialog(dialog) != ui::kOk) return;
    if (!dialog.referenceFile().empty()) RememberReferenceFile(dialog.referenceFile());
    RememberExport({files::folderOf(path), dialog.choice()});
    RunExport(path, entities, dialog.choice());
    if (linkedOthers > 0)
        acutPrintf(
            "%s left out: no survey points, lines or polylines. GIS-EXPORTSET takes blocks as points.\n",
            text::counted(linkedOthers, "linked entity", "linked entities").c_str());
}

void ExportGivenSet(Call& call) {
    std::string path;
    ads_name set = {0, 0};
    int shapeType = 0;
    if (!call.arguments.text(path) || !call.arguments.selectionSet(set) ||
        !call.arguments.shortInteger(shapeType) || path.empty() || !isExported(shapeType))
        return;
    std::vector<ExportEntity> entities = ReadExportEntities(set);
    ExportOptions options;
    options.reference = files::read(ReferenceFileOfDrawing()).value_or("");
    call.result = RunExportOfSet(path, shapeType, options, entities) ? 1 : 0;
}

void GiveExportFolder(Call& call) {
    const std::optional<RememberedExport> last = LastExport();
    call.result = last ? last->folder : std::string();
}

}  // namespace norvane
