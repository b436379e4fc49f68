#include "platform/ui/cell_entry.h"

#include <algorithm>

#include "platform/text/text.h"

namespace ui {
namespace {

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

std::string_view withoutLineEnd(std::string_view text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
    return text;
}

bool isPartOfNumber(char32_t c) {
    return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.' || c == 'e' || c == 'E';
}

CellEntry entryOfLine(const CellType& type, std::string_view typed) {
    typed = withoutLineEnd(typed);
    CellEntry entry;
    for (size_t i = 0; i < typed.size();) {
        const size_t begin = i;
        char32_t c = text::nextCodePoint(typed, i);
        if (c < 0x20) return {"", "a cell holds one line of text, without tabs"};
        const bool number = type.characters == CharacterSet::Numeric;
        if (number && c == ',') c = '.';
        if (number && !isPartOfNumber(c))
            return {"", "a number is made of digits, signs, point and exponent, without " +
                            quoted(typed.substr(begin, i - begin))};
        text::appendUtf8(entry.text, c);
    }
    if (type.upperCase) entry.text = text::upper(entry.text);
    const int length = characterCount(entry.text);
    if (length > type.maxLength)
        return {"",
                text::format("the cell holds %d characters, and this text has %d", type.maxLength, length)};
    return entry;
}

CellEntry entryOfList(const CellType& type, std::string_view typed) {
    if (std::find(type.items.begin(), type.items.end(), typed) != type.items.end())
        return {std::string(typed), ""};
    return {"", quoted(typed) + " is not in the list of this cell"};
}

}  // namespace

CellEntry entryOf(const CellType& type, std::string_view typed) {
    switch (type.kind) {
        case CellKind::Edit:
            return entryOfLine(type, typed);
        case CellKind::DropDown:
            return type.editable ? entryOfLine(type, typed) : entryOfList(type, typed);
        default:
            return {"", "this cell is not edited"};
    }
}

}  // namespace ui
