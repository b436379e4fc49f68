#include "module/features/feature_sheet.h"

#include <algorithm>

#include "platform/scope/temporary_value.h"

namespace norvane {

FeatureSheet::FeatureSheet(ui::Grid& grid, ui::Edit& nameField)
    : grid_(grid), nameField_(nameField), attributes_(grid) {}

void FeatureSheet::setName(const std::string& name) {
    name_ = name;
    isUnnamed_ = false;
    nameField_.setText(name.empty() ? "None" : name);
}

void FeatureSheet::close() {
    clear();
    setName("");
}

void FeatureSheet::clear() {
    scope::TemporaryValue filling(filling_, true);
    attributes_.clear();
    forgetTable();
}

void FeatureSheet::setRows(const std::vector<FeatureFileRow>& rows) {
    scope::TemporaryValue filling(filling_, true);
    attributes_.setRows(rows);
    forgetTable();
}

void FeatureSheet::setRowsOfTable(const std::vector<FeatureFileRow>& rows, const std::string& table,
                                  bool linked) {
    setRows(rows);
    setName("");
    proposedName_ = table;
    linkedTable_ = linked ? table : "";
    isUnnamed_ = modified_ = true;
}

void FeatureSheet::forgetTable() {
    proposedName_.clear();
    linkedTable_.clear();
}

bool FeatureSheet::hasNames() const {
    const std::vector<FeatureFileRow> all = rows();
    return std::any_of(all.begin(), all.end(), [](const FeatureFileRow& row) {
        return !row.abbreviation.empty() || !row.fullName.empty();
    });
}

void FeatureSheet::goTo(int column, int row) {
    scope::TemporaryValue filling(filling_, true);
    grid_.setActive(column, row);
}

void FeatureSheet::change(void (AttributeGrid::*command)()) {
    scope::TemporaryValue filling(filling_, true);
    endEditing();
    grid_.rememberForUndo();
    (attributes_.*command)();
    modified_ = true;
    if (attributes_.count() == 0) setName("");
}

void FeatureSheet::setValues(const ValueCell& values) {
    scope::TemporaryValue filling(filling_, true);
    grid_.rememberForUndo();
    attributes_.applyValues(grid_.active().row, values);
    modified_ = true;
}

void FeatureSheet::cellEdited(ui::CellPosition at) {
    scope::TemporaryValue filling(filling_, true);
    modified_ = true;
    attributes_.cellEdited(at);
}

void FeatureSheet::cellLeft(ui::CellPosition at) {
    if (filling_) return;
    scope::TemporaryValue filling(filling_, true);
    if (attributes_.cellLeft(at)) modified_ = true;
}

void FeatureSheet::undone() {
    scope::TemporaryValue filling(filling_, true);
    modified_ = true;
    attributes_.fitColumns();
}

bool FeatureSheet::deletePressed() {
    if (!attributes_.deletePressed()) return false;
    modified_ = true;
    return true;
}

}  // namespace norvane
