// The editor's sheet: one attribute a row, and an empty entry row at the end that is not part of the feature.
#pragma once

#include <string>
#include <vector>

#include "module/features/feature_row.h"
#include "platform/ui/grid.h"

namespace norvane {

class AttributeGrid {
  public:
    // Columns of the sheet.
    static constexpr int kAbbreviation = 1;
    static constexpr int kFullName = 2;
    static constexpr int kValues = 3;
    static constexpr int kRequired = 4;
    static constexpr int kType = 5;

    // The grid stays the dialog's.
    explicit AttributeGrid(ui::Grid& grid);

    // Leaves the entry row alone.
    void clear();
    void setRows(const std::vector<FeatureFileRow>& rows);
    // The attributes, without the entry row.
    std::vector<FeatureFileRow> rows() const;
    int count() const { return grid_.rows() - 1; }
    FeatureFileRow row(int number) const;
    void setRow(int number, const FeatureFileRow& row);
    ValueCell values(int number) const;
    void setValues(int number, const ValueCell& values);
    // The same, and a special code brings the names of its row with it.
    void applyValues(int number, const ValueCell& values);
    // Widens the columns to their texts.
    void fitColumns();

    // Commands on the active row; whether they can be done now.
    bool canInsert() const;
    bool canMoveUp() const;
    bool canMoveDown() const;
    bool canRemove() const;
    bool canEditValues() const;
    void insert();
    void moveUp();
    void moveDown();
    void remove();

    // Automatic filling, as the dialog tells of it.
    void cellEdited(ui::CellPosition at);
    // True when leaving the cell has filled its row.
    bool cellLeft(ui::CellPosition at);
    // False when the key means nothing to the sheet.
    bool enterPressed();
    bool deletePressed();

  private:
    int activeRow() const { return grid_.active().row; }
    bool isEntryRow(int row) const { return row == grid_.rows(); }
    void addEntryRow();
    void setPlainValues(int row);
    void setType(int row, FieldKind type);
    void fillKnown(int row, const struct KnownAttribute& known, const char* fullName);
    void abbreviationEdited(int row);
    void valuesEdited(int row);
    void endValues(int row);

    ui::Grid& grid_;
    bool enterEnds_ = false;  // the editing is being ended by Enter
};

}  // namespace norvane
