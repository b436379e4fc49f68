#include "platform/workbooks/number_formats.h"

#include <cmath>

#include "platform/dao/variant.h"
#include "platform/text/text.h"

namespace workbooks {

namespace {

std::string timeText(double days) {
    const long seconds = std::lround(days * 86400.0);
    return text::format("%02ld:%02ld:%02ld", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

}  // namespace

NumberFormats::Kind NumberFormats::kindOfCode(std::string_view code) {
    bool hasDay = false, hasTime = false;
    for (size_t i = 0; i < code.size(); ++i) {
        switch (code[i]) {
            case '"':
            case '[': {
                // Texts in quotes, and what stands in brackets, are no parts of a date but for hours that go
                // on.
                const char end = code[i] == '"' ? '"' : ']';
                const size_t close = code.find(end, i + 1);
                if (end == ']' && i + 1 < code.size() && (code[i + 1] == 'h' || code[i + 1] == 'H'))
                    hasTime = true;
                i = close == std::string_view::npos ? code.size() : close;
                break;
            }
            case '\\':
            case '_':
            case '*':
                ++i;
                break;
            case ';':
                i = code.size();  // what follows is for other values
                break;
            case 'y':
            case 'Y':
            case 'd':
            case 'D':
                hasDay = true;
                break;
            case 'h':
            case 'H':
            case 's':
            case 'S':
                hasTime = true;
                break;
            default:
                break;
        }
    }
    return hasDay ? Kind::kDate : hasTime ? Kind::kTime : Kind::kNumber;
}

NumberFormats::Kind NumberFormats::kindOf(size_t style) const {
    if (style >= styles_.size()) return Kind::kNumber;
    const size_t format = styles_[style];
    if (const auto own = kinds_.find(format); own != kinds_.end()) return own->second;
    // The formats that every workbook has.
    if ((format >= 14 && format <= 17) || format == 22 || (format >= 27 && format <= 31) || format == 36 ||
        (format >= 50 && format <= 58))
        return Kind::kDate;
    if ((format >= 18 && format <= 21) || (format >= 32 && format <= 35) || (format >= 45 && format <= 47))
        return Kind::kTime;
    return Kind::kNumber;
}

std::string NumberFormats::textOf(double number, size_t style) const {
    constexpr double kLastDay = 2958466;  // behind the year 9999
    const Kind kind = kindOf(style);
    if (kind == Kind::kNumber || number < 0 || !(number < kLastDay)) return dao::exactText(number);
    if (kind == Kind::kTime && number < 1) return timeText(number);
    return dao::toText(dao::Date{number + daysBefore_});
}

}  // namespace workbooks
