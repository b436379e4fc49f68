// The attributes of a feature as rows of a sheet: what a row's cell is, and what may be saved.
//
// Nothing here knows a grid control: cells are read and written through PromptCells.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "module/store/field_name.h"
#include "module/store/template_database.h"

namespace norvane {

// A row of the sheet.
struct PromptRow {
    std::string name;  // the column of the output table
    bool required = false;
    FieldKind kind = FieldKind::kChar;
    std::string prompt;
    std::string defaultValue;  // a plain default, or a special code
    std::string listValues;    // choices between commas
    bool mustBeSet = false;    // what the check goes by: the flag that stands at the row's place
};

// The row of a record of the template.
PromptRow PromptRowOf(const FeatureRow& record);

// What stands in column 2 of a row.
enum class PromptCell { kEditNumber, kEditText, kDropDown, kStatic };
struct CellDecision {
    PromptCell cell = PromptCell::kEditText;
    std::string content;  // after loading; computed rows are filled later
};
// A row without a list has no default: it starts empty whatever DEFAULT_VALUE holds.
CellDecision DecideCell(const PromptRow& row);
// Whether the row's value is computed: its default is a special code or an equation.
bool IsComputed(const PromptRow& row);
// The choices of a drop-down with tabs between them, as the grid takes them.
std::string TabbedChoices(const PromptRow& row);

// The cells of a sheet. Columns are 1 (prompt) and 2 (value), rows count from 1.
class PromptCells {
  public:
    virtual ~PromptCells() = default;
    virtual int rowCount() const = 0;
    virtual bool isCheckBox(int column, int row) const = 0;
    virtual std::string cellText(int column, int row) const = 0;
    virtual void setCellText(int column, int row, const std::string& text) = 0;
};

// 2: all of the text reads as an integer (0x and octal included, of any size); 1: as a real within range;
// 0: neither.
int ClassifyNumber(const std::string& text);

// Why a value that is not empty cannot stand in a row, by the row's kind; nothing when it can.
std::optional<std::string> KindFault(const PromptRow& row, const std::string& value);

// Why a sheet cannot be saved.
struct PromptFault {
    std::string message;
    int row = 0;  // from 1; 0 when it is the feature's name that is wrong
};
// Tells the fault of a feature name in a box titled "Error". True when the name is good.
bool ValidateFeatureName(const std::string& text);
// The first fault of a sheet: a required row that is empty, else a value that is not of its row's kind, else
// the name.
std::optional<PromptFault> ValidateRows(const std::string& feature, const std::vector<PromptRow>& rows,
                                        const PromptCells& cells);

}  // namespace norvane
