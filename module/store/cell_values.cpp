#include "module/store/cell_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kYes = "Yes";
constexpr const char* kNo = "No";
constexpr int kMostCharacters = 255;

std::string dateText(dao::Date date) {
    const dao::Calendar c = dao::calendarOf(date);
    std::string text = text::format("%02d/%02d/%04d", c.month, c.day, c.year);
    if (c.hour || c.minute || c.second) text += text::format(" %02d:%02d:%02d", c.hour, c.minute, c.second);
    return text;
}

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

// A comma is the point of a number, as in all cells.
std::optional<double> numberIn(std::string_view text) {
    return text::wholeReal(text::replaceAll(text, ",", "."));
}

struct Range {
    int64_t least, most;
};

Range rangeOf(int type) {
    if (type == dbInteger) return {std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max()};
    return {std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()};
}

TakenValue takeWhole(std::string_view text, int type) {
    if (text.starts_with('+')) text.remove_prefix(1);
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end != text.data() + text.size()) return {{}, quoted(text) + " is no whole number"};
    const Range range = rangeOf(type);
    if (error != std::errc() || number < range.least || number > range.most)
        return {{}, quoted(text) + " is too large a number"};
    return {dao::Variant(static_cast<int32_t>(number)), ""};
}

TakenValue takeReal(std::string_view text, int type) {
    const std::optional<double> number = numberIn(text);
    if (!number) return {{}, quoted(text) + " is no number"};
    if (type == dbSingle && std::fabs(*number) > static_cast<double>(std::numeric_limits<float>::max()))
        return {{}, quoted(text) + " is too large a number"};
    return {dao::Variant(*number), ""};
}

bool saysYes(std::string_view text) {
    for (const char* word : {"YES", "Y", "TRUE", "T", "ON"})
        if (text::equalNoCase(text, word)) return true;
    const std::optional<double> number = numberIn(text);
    return number && *number != 0;
}

}  // namespace

bool SheetColumn::is(std::string_view upperName) const {
    return text::equalNoCase(name, upperName);
}

CellValue CellValueOf(const CDaoFieldInfo& field) {
    if (field.attributes & dbAutoIncrField) return CellValue::kOther;
    switch (field.type) {
        case dbBoolean:
            return CellValue::kYesNo;
        case dbInteger:
        case dbLong:
            return CellValue::kWhole;
        case dbSingle:
        case dbDouble:
            return CellValue::kReal;
        case dbDate:
            return CellValue::kDate;
        case dbText:
        case dbMemo:
            return CellValue::kText;
        default:
            return CellValue::kOther;
    }
}

CellValue CellValueOfKind(std::string_view kind) {
    if (kind == "0") return CellValue::kYesNo;
    if (kind == "1" || kind == "2") return CellValue::kWhole;
    if (kind == "3" || kind == "4") return CellValue::kReal;
    return kind == "5" ? CellValue::kDate : CellValue::kText;
}

SheetColumn ColumnOf(const CDaoFieldInfo& field, int place) {
    SheetColumn column;
    column.name = field.name;
    column.value = CellValueOf(field);
    column.field = place;
    column.type = field.type;
    column.size = field.type == dbText && field.size > 0 ? std::min<long>(field.size, kMostCharacters)
                                                         : kMostCharacters;
    column.takesNull = !field.required;
    return column;
}

std::vector<SheetColumn> PointColumnsFirst(std::vector<SheetColumn> columns) {
    auto next = columns.begin();
    for (const char* name :
         {"PT_ID", "GIS_KEY", "NORTHING", "EASTING", "ELEVATION", "DESCRIPTION", "NOTES"}) {
        const auto found =
            std::find_if(next, columns.end(), [&](const SheetColumn& column) { return column.is(name); });
        if (found == columns.end()) continue;
        std::rotate(next, found, found + 1);
        ++next;
    }
    return columns;
}

std::string ShownText(const dao::Variant& value, CellValue kind) {
    double number = 0;
    if (kind == CellValue::kYesNo) return dao::numberOf(value, number) && number != 0 ? kYes : kNo;
    if (value.isNull()) return "";
    if (value.is<dao::Date>()) return dateText(value.get<dao::Date>());
    if (value.is<float>()) return text::fromReal(static_cast<double>(value.get<float>()));
    return std::string(text::trim(dao::toText(value)));
}

TakenValue TakeText(const std::string& text, const SheetColumn& column) {
    const std::string_view trimmed = text::trim(text);
    if (column.value == CellValue::kText) {
        const bool isNull = text.empty() && column.takesNull;
        return {isNull ? dao::Variant() : dao::Variant(text), ""};
    }
    if (column.value == CellValue::kYesNo) return {dao::Variant(saysYes(trimmed)), ""};
    if (trimmed.empty()) return {dao::Variant(), ""};
    switch (column.value) {
        case CellValue::kWhole:
            return takeWhole(trimmed, column.type);
        case CellValue::kReal:
            return takeReal(trimmed, column.type);
        case CellValue::kDate:
            if (dao::Date date; dao::dateFromText(trimmed, date)) return {dao::Variant(date), ""};
            return {{}, quoted(trimmed) + " is no date"};
        default:
            return {{}, column.name + " is not written"};
    }
}

ui::CellType CellTypeOf(const SheetColumn& column) {
    switch (column.value) {
        case CellValue::kOther:
            return ui::CellType::fixed();
        case CellValue::kYesNo:
            return ui::CellType::dropDown(std::string(kYes) + "\t" + kNo);
        case CellValue::kText:
            return ui::CellType::edit(ui::CharacterSet::Any, static_cast<int>(column.size));
        default:
            return ui::CellType::edit(ui::CharacterSet::Any, kMostCharacters);
    }
}

bool FitsCell(const std::string& text) {
    const bool isOneLine =
        std::none_of(text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; });
    return isOneLine && ui::characterCount(text) <= kMostCharacters;
}

}  // namespace norvane
