#include "module/features/template_editor_controls.h"

namespace norvane {

namespace editor {
namespace {

void addMenu(ui::Dialog& dialog) {
    auto& entries = dialog.add<ui::Menu>(kMenu).entries();
    auto heading = [&](const char* caption) { entries.push_back({0, caption, 0, true, false, ""}); };
    auto entry = [&](int command, const char* caption, const char* shortcut = "") {
        entries.push_back({command, caption, 1, true, false, shortcut});
    };
    heading("&Template Database");
    entry(kDatabaseNew, "&New", "Ctrl+N");
    entry(kDatabaseOpen, "&Open...", "Ctrl+O");
    entry(kDatabasePrint, "&Print...", "Ctrl+P");
    entry(kExit, "E&xit");
    heading("&Category");
    entry(kCategoryNew, "&New");
    entry(kCategoryDelete, "&Delete");
    entry(kCategoryRename, "&Rename");
    entry(kCategorySearch, "&Search");
    heading("&Feature");
    entry(kFeatureNew, "&New");
    entry(kFeatureSaveAs, "&Save As");
    entry(kFeatureDelete, "&Delete");
    entry(kFeatureRename, "&Rename");
    entry(kFeatureImport, "&Import");
    entry(kFeatureSearch, "&Search");
    heading("&GIS File");
    entry(kFileUpload, "&Upload Features to Fieldline/Geoline/Rapidline");
    entry(kFileImport, "&Import");
    entry(kFileExport, "&Export");
    entry(kFileDelete, "&Delete");
}

}  // namespace

void AddEditorControls(ui::Dialog& dialog) {
    addMenu(dialog);
    dialog.add<ui::Label>(kPathCaption, "Template Database File:");
    dialog.add<ui::Edit>(kPath, true);
    dialog.add<ui::Label>(kFormatCaption, "New databases:");
    dialog.add<ui::RadioButton>(kFormat97, "Access '97", 1);
    dialog.add<ui::RadioButton>(kFormat2000, "Access 2000", 1);
    dialog.add<ui::Tree>(kTree, true);
    dialog.add<ui::Button>(kNewFeature, "&New Feature");
    dialog.add<ui::Button>(kEditFeature, "&Edit Feature");
    dialog.add<ui::Label>(kFeatureCaption, "Current Feature:");
    dialog.add<ui::Edit>(kFeature, true);
    dialog.add<ui::Grid>(kSheet);
    dialog.add<ui::Button>(kUp, "&Up");
    dialog.add<ui::Button>(kDown, "&Down");
    dialog.add<ui::Button>(kRemove, "&Remove");
    dialog.add<ui::Button>(kInsert, "&Insert");
    dialog.add<ui::Button>(kEditValues, "Edit List &Values");
    using namespace ui;
    Layout left = column({item(kTree, 1), row({item(kNewFeature), item(kEditFeature)})});
    Layout right =
        column({row({item(kFeatureCaption), item(kFeature, 1)}), item(kSheet, 1),
                row({item(kUp), item(kDown), item(kRemove), item(kInsert), spring(), item(kEditValues)})},
               1);
    dialog.setLayout(column(
        {row({item(kPathCaption), item(kPath, 1), item(kFormatCaption), item(kFormat97), item(kFormat2000)}),
         row({left, right}, 1)}));
    dialog.setSize({1040, 600});
}

}  // namespace editor

}  // namespace norvane
