#include "module/host/operations.h"

#include <iterator>

#include "module/cad/automation_call.h"
#include "module/features/template_editor.h"
#include "module/linktools/audit_links.h"
#include "module/linktools/insert_blocks.h"
#include "module/linktools/link_areas.h"
#include "module/linktools/link_blocks.h"
#include "module/linktools/polygon_at.h"
#include "module/linktools/query_entities.h"
#include "module/prompting/prompt_for_entity.h"
#include "module/setup/database_chooser.h"
#include "module/setup/dialog_slots.h"
#include "module/setup/gis_settings_dialog.h"
#include "module/store/bulk_add.h"
#include "module/store/template_database.h"
#include "module/titleblocks/title_operations.h"
#include "module/transfer/database_utilities_dialog.h"
#include "module/transfer/export_operations.h"
#include "module/transfer/import_dialog.h"

namespace norvane {

namespace {

constexpr Operation kOperations[] = {
    PromptForEntity,       // 1
    StoreSlot,             // 2
    FetchSlot,             // 3
    LinkFromBlocks,        // 4
    EditBlockLinks,        // 5
    UpdateTitleBlocks,     // 6
    ShowGisSettings,       // 7
    AuditLinks,            // 8
    ExportSelection,       // 9
    ExportGivenSet,        // 10
    ImportShpDialogRun,    // 11
    CallAutomation,        // 12
    FindPolygon,           // 13
    ChooseFile,            // 14
    EditTemplate,          // 15
    RunDatabaseUtilities,  // 16
    InsertBlocks,          // 17
    QueryEntities,         // 18
    AddRecords,            // 19
    LinkAreas,             // 20
    TestFeature,           // 21
};

}  // namespace

Operation OperationOf(int code) {
    return code >= 1 && code <= static_cast<int>(std::size(kOperations)) ? kOperations[code - 1] : nullptr;
}

}  // namespace norvane
