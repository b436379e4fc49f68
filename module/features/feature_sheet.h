// The feature that the editor shows: its name, its attributes on the grid, and whether they were changed.
#pragma once

#include <string>
#include <vector>

#include "module/features/attribute_grid.h"
#include "platform/ui/dialog.h"

namespace norvane {

class FeatureSheet {
  public:
    // Both controls stay the dialog's.
    FeatureSheet(ui::Grid& grid, ui::Edit& nameField);

    const std::string& name() const { return name_; }  // "" for none
    void setName(const std::string& name);
    // Whether there is something to be edited: a feature, or attributes that have none yet.
    bool isOpen() const { return !name_.empty() || isUnnamed_; }
    bool modified() const { return modified_; }
    void setModified(bool on) { modified_ = on; }

    // No feature, and no attributes.
    void close();
    // No attributes.
    void clear();
    void setRows(const std::vector<FeatureFileRow>& rows);
    // Attributes that were taken from a table; they have no feature yet. table: what is proposed as its name.
    // linked: a save makes the feature write to the table.
    void setRowsOfTable(const std::vector<FeatureFileRow>& rows, const std::string& table, bool linked);
    // As they were given; "" once the attributes are saved.
    const std::string& proposedName() const { return proposedName_; }
    const std::string& linkedTable() const { return linkedTable_; }
    void forgetTable();
    std::vector<FeatureFileRow> rows() const { return attributes_.rows(); }
    // Whether any attribute has a name.
    bool hasNames() const;
    // What can be done on the active row.
    const AttributeGrid& attributes() const { return attributes_; }

    // Takes what is being typed into its cell.
    void endEditing() { grid_.setEditing(false); }
    void goTo(int column, int row);
    // A command on the active row.
    void change(void (AttributeGrid::*command)());
    // The values of the active row.
    ValueCell values() const { return attributes_.values(grid_.active().row); }
    void setValues(const ValueCell& values);

    // What a person does to the grid; false when a key means nothing to it.
    void cellEdited(ui::CellPosition at);
    void cellLeft(ui::CellPosition at);
    // The focus has gone to another control.
    void left() { cellLeft(grid_.active()); }
    bool enterPressed() { return attributes_.enterPressed(); }
    bool deletePressed();
    // A change of the grid was taken back, which is a change too.
    void undone();

  private:
    ui::Grid& grid_;
    ui::Edit& nameField_;
    AttributeGrid attributes_;
    std::string name_;
    std::string proposedName_, linkedTable_;
    bool isUnnamed_ = false;  // it has attributes, and no feature yet
    bool modified_ = false;
    bool filling_ = false;  // the editor itself moves about the grid
};

}  // namespace norvane
