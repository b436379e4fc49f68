// Define Template Database: categories and features in a tree, the attributes of one feature on a sheet.
#pragma once

#include "module/cad/call.h"
#include "module/features/editor_session.h"
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
    void onFocus(ui::Control& control) override;
    void onCellClick(ui::Grid& grid, ui::CellPosition at) override;
    void onUndo(ui::Grid& grid) override;
    bool onKey(const ui::Key& key) override;
    void onOk() override {}  // Enter never closes the editor
    void onCancel() override { exit(); }
    void exit();
    void showState();

    EditorSession session_;
};

}  // namespace norvane
