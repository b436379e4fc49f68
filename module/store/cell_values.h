// Values of a database as the cells of a table show and take them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/dao.h"
#include "platform/ui/grid.h"

namespace norvane {

// What a column holds. A column of another kind is shown, and takes nothing.
enum class CellValue { kOther, kYesNo, kWhole, kReal, kDate, kText };

struct SheetColumn {
    std::string name;
    CellValue value = CellValue::kText;
    int field = -1;  // the place among the fields of the table; -1: it has none of this name
    int type = dbText;
    long size = 0;  // most characters of a text
    bool takesNull = true;

    bool is(std::string_view upperName) const;
};

// What a field of a table holds, by its type. One that counts by itself is never written.
CellValue CellValueOf(const CDaoFieldInfo& field);
// The same by the word for a kind, "0" to "6".
CellValue CellValueOfKind(std::string_view kind);
SheetColumn ColumnOf(const CDaoFieldInfo& field, int place);
// The columns with those of points in front: PT_ID, GIS_KEY, NORTHING, EASTING, ELEVATION, DESCRIPTION,
// NOTES.
std::vector<SheetColumn> PointColumnsFirst(std::vector<SheetColumn> columns);

// Numbers in digits, dates as 05/31/2004 with the time behind it unless it is midnight, Yes or No, texts
// without blanks at both ends.
std::string ShownText(const dao::Variant& value, CellValue kind);

// A text as a value of a column.
struct TakenValue {
    std::optional<dao::Variant> value;
    std::string fault;  // why there is none
};
TakenValue TakeText(const std::string& text, const SheetColumn& column);

// The cells of a column.
ui::CellType CellTypeOf(const SheetColumn& column);
// Whether a cell can hold a text to be changed: one line of no more than 255 characters.
bool FitsCell(const std::string& text);

}  // namespace norvane
