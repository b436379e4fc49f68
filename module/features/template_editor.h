// Define Template Database: categories and features in a tree, the attributes of one feature on a sheet.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "module/cad/call.h"
#include "module/features/attribute_grid.h"
#include "module/features/category_tree.h"
#include "module/features/feature_checks.h"
#include "module/store/new_database.h"
#include "platform/dao/dao.h"
#include "platform/ui/dialog.h"

namespace norvane {

// Function code 15: shows the editor until the person leaves it. Takes nothing; gives 1.
void EditTemplate(Call& call);

class TemplateEditor : public ui::Dialog {
  public:
    TemplateEditor();

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onDoubleClick(ui::Control& control) override;
    void onCellChange(ui::Grid& grid, ui::CellPosition at) override;
    void onCellLeave(ui::Grid& grid, ui::CellPosition at) override;
    void onCellClick(ui::Grid& grid, ui::CellPosition at) override;
    bool onKey(const ui::Key& key) override;
    void onOk() override {}  // Enter never closes the editor
    void onCancel() override { exit(); }
    void exit();

    // What is shown.
    void showFeature(const std::string& name);
    void showControls();
    void setModified(bool on);
    void clearSheet();
    void goToFault(const RowFault& fault);

    // Saving. False: the operation that asked must not go on.
    bool askSaveChanges();
    bool saveToCategory(const std::string& category);
    void saveNow();

    // Databases.
    std::string templateFolder() const;
    void newDatabase();
    void openDatabaseFromBox();
    enum class MissingTables { kCreated, kCreatedWhenBothMiss };
    void openDatabase(const std::string& path, MissingTables missing);
    void createDatabase(const std::string& path, DatabaseVersion version);
    void useDatabase(const std::string& path, const std::vector<CategoryRow>& rows);
    // One transaction on the open template; done at once when none is open. False: its message was shown.
    bool change(const std::function<void(CDaoDatabase&)>& work);
    void refillTree();

    // Categories and features.
    void newCategoryFromPrompt();
    int newCategory(const std::string& name);
    void deleteCategory();
    void renameCategory();
    void search(CategoryTree::Kind kind);
    void loadFeature(int node);
    void newFeature();
    std::optional<std::string> featureForCommand();
    void saveFeatureAs();
    void deleteFeature();
    void renameFeature();

    // Feature files.
    std::string fileFolder() const;
    void importFile();
    void exportFile();
    void deleteFile();

    void rowCommand(void (AttributeGrid::*command)());
    void editValues();

    ui::Tree* treeControl_ = nullptr;
    ui::Grid* gridControl_ = nullptr;
    std::optional<AttributeGrid> sheet_;
    std::optional<CategoryTree> tree_;

    std::string path_;                                          // of the open template; "" for none
    DatabaseVersion nextVersion_ = DatabaseVersion::kAccess97;  // of the next new database
    std::string feature_;                                       // on the sheet; "" for none
    bool modified_ = false;
    bool saveFailed_ = false;
    bool filling_ = false;  // the dialog itself moves about the sheet
    std::string lastCategorySearch_;
    std::string lastFeatureSearch_;
};

}  // namespace norvane
