// What the commands of the editor work on. Each command is a function of it, and stands in the file of its
// subject; the dialog only says which command belongs to which control.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "module/features/category_tree.h"
#include "module/features/feature_checks.h"
#include "module/features/feature_sheet.h"
#include "module/features/template_file.h"

namespace norvane {

struct EditorSession {
    EditorSession(ui::Dialog& editor, std::function<void()> showState);

    ui::Dialog& dialog;
    std::function<void()> showState;  // brings title, path and controls in step with the rest
    TemplateFile file;
    FeatureSheet sheet;
    CategoryTree tree;
    std::string category;  // from which the feature on the sheet was taken; "" for none
    std::string lastCategorySearch;
    std::string lastFeatureSearch;

    // The title has a star while the sheet is modified.
    void showTitle();
    // The node of the feature on the sheet; CategoryTree::kNone when the tree has none.
    int sheetNode() const { return tree.findFeature(sheet.name(), category); }
    // Reads the tree anew from the template, if one is open.
    void refillTree();
    // Tells a fault of the sheet and goes to its cell.
    void goToFault(const RowFault& fault);
};

// How long a word about a process that is done is shown, in milliseconds.
constexpr int kInformationTime = 300;

// --- save_commands ----------------------------------------------------------------------------------------

// The question that comes before anything that would replace the sheet. False: the command must not go on.
bool AskSaveChanges(EditorSession& session);
// Saves at once what the question would save.
void SaveNow(EditorSession& session);

// --- database_commands ------------------------------------------------------------------------------------

void NewDatabase(EditorSession& session);
void OpenTemplate(EditorSession& session);
// Shows a template in place of the present one; tells when the file is none.
void ShowTemplate(EditorSession& session, const std::string& path, TemplateFile::MissingTables missing);

// --- category_commands ------------------------------------------------------------------------------------

void NewCategory(EditorSession& session);
// The node of a category, which is made when there is none of the name; CategoryTree::kNone when that failed.
int NodeOfCategory(EditorSession& session, const std::string& name);
void DeleteCategory(EditorSession& session);
void RenameCategory(EditorSession& session);
void SearchCategory(EditorSession& session);
void SearchFeature(EditorSession& session);

// --- feature_commands -------------------------------------------------------------------------------------

void NewFeature(EditorSession& session);
// Shows the selected feature of the tree.
void EditFeature(EditorSession& session);
void SaveFeatureAs(EditorSession& session);
void DeleteFeature(EditorSession& session);
void RenameFeature(EditorSession& session);
void EditListValues(EditorSession& session);

// --- file_commands ----------------------------------------------------------------------------------------

void ImportFile(EditorSession& session);
void ExportFile(EditorSession& session);
void DeleteFile(EditorSession& session);

// --- print_definitions, collector_upload, feature_from_table ----------------------------------------------

// Shows the features of the template on a sheet that can be printed.
void PrintDefinitions(EditorSession& session);
// Sends features to a data collector.
void UploadFeatures(EditorSession& session);
// Fills the sheet with the fields of a table.
void ImportTable(EditorSession& session);

}  // namespace norvane
