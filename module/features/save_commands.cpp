// Saving the feature on the sheet.
#include "module/features/editor_session.h"
#include "module/features/name_questions.h"
#include "module/features/template_editor_controls.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

// False when nothing was saved, whatever the reason: the sheet stays as it is, and so does its star.
bool saveToCategory(EditorSession& s, const std::string& category) {
    const std::string& feature = s.sheet.name();
    const std::vector<FeatureFileRow> rows = s.sheet.rows();
    if (std::optional<RowFault> fault = CheckForCategory(feature, rows)) {
        s.goToFault(*fault);
        return false;
    }
    if (!s.file.isOpen()) {
        ui::messageBox("Error", "Template Database not set!");
        s.dialog.setFocus(editor::kTree);
        return false;
    }
    const std::optional<bool> stored = s.file.hasFeature(feature);
    if (!stored) return false;
    if (*stored && !ui::askYesNo("Alert", "Feature already exist! Do you want to replace it?")) return false;
    // A template that did not take the changes is as it was, and so is the sheet.
    if (!s.file.change([&](CDaoDatabase& database) {
            if (*stored) RemoveFeatureRecords(database, feature);
            StoreFeature(database, feature, category, rows);
            if (!s.sheet.linkedTable().empty()) LinkFeature(database, feature, s.sheet.linkedTable());
        }))
        return false;
    s.category = category;
    s.sheet.forgetTable();
    s.refillTree();
    s.tree.select(s.sheetNode());
    ui::information("Process done...", kInformationTime);
    return true;
}

// Asks for the name of attributes that have no feature yet. False when the person gave none.
bool nameSheet(EditorSession& s) {
    const std::string name = AskGoodName("Feature Name", s.sheet.proposedName());
    if (!name.empty()) s.sheet.setName(name);
    return !name.empty();
}

void setModified(EditorSession& s, bool on) {
    s.sheet.setModified(on);
    s.showTitle();
}

}  // namespace

bool AskSaveChanges(EditorSession& s) {
    s.sheet.endEditing();
    if (!s.sheet.modified()) return true;
    if (!s.sheet.hasNames()) {
        setModified(s, false);
        return true;
    }
    const std::string about = s.sheet.name().empty() ? "" : "Current Feature: " + s.sheet.name() + "\n";
    const int answer = ui::messageBox("Alert", about + "Save Changes?", ui::kBoxAlert | ui::kBoxYesNoCancel);
    if (answer == ui::kNo) setModified(s, false);
    if (answer != ui::kYes) return answer == ui::kNo;
    if (s.sheet.name().empty() && !nameSheet(s)) return false;
    const std::vector<std::string> categories = s.tree.categories();
    if (categories.empty()) {
        ui::messageBox(
            "Alert",
            "No Categories found in the Template Database.\nPlease add at least one category in order "
            "to be able to store Features!");
        return false;
    }
    std::string category = AskCategory("Select Category", categories, s.tree.categoryOf(s.sheetNode()));
    // Who does not choose a category has not said that the changes may be lost.
    if (category.empty() || !saveToCategory(s, category)) return false;
    setModified(s, false);
    return true;
}

void SaveNow(EditorSession& s) {
    s.sheet.endEditing();
    if (!s.sheet.isOpen() || (s.sheet.name().empty() && !nameSheet(s))) return;
    std::string category = s.tree.categoryOf(s.sheetNode());
    if (category.empty() && s.tree.categories().empty())
        ui::messageBox("Alert", "No Categories found in the Template Database!");
    else if (category.empty())
        category = AskCategory("Select Category", s.tree.categories(), s.tree.selectedCategory());
    if (!category.empty() && saveToCategory(s, category)) setModified(s, false);
}

}  // namespace norvane
