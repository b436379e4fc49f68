// The controls of the template editor: their numbers, and how they are arranged.
#pragma once

#include "platform/ui/dialog.h"

namespace norvane {

namespace editor {

constexpr const char* kTitle = "Define Template Database";

enum Id {
    kMenu = 1000,
    kPathCaption,
    kPath,
    kTree,
    kNewFeature,
    kEditFeature,
    kFeatureCaption,
    kFeature,
    kSheet,
    kUp,
    kDown,
    kRemove,
    kInsert,
    kEditValues,
    kFormatCaption,
    kFormat97,
    kFormat2000,
    // Menu entries.
    kDatabaseNew = 2000,
    kDatabaseOpen,
    kDatabasePrint,
    kExit,
    kCategoryNew,
    kCategoryDelete,
    kCategoryRename,
    kCategorySearch,
    kFeatureNew,
    kFeatureSaveAs,
    kFeatureDelete,
    kFeatureRename,
    kFeatureImport,
    kFeatureSearch,
    kFileUpload,
    kFileImport,
    kFileExport,
    kFileDelete,
};

void AddEditorControls(ui::Dialog& dialog);

}  // namespace editor

}  // namespace norvane
