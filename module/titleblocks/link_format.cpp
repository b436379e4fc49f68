#include "module/titleblocks/link_format.h"

#include <array>

#include "platform/dao/variant.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kMostDecimals = 9;
constexpr std::array<const char*, 12> kMonths = {"January",   "February", "March",    "April",
                                                 "May",       "June",     "July",     "August",
                                                 "September", "October",  "November", "December"};

// A part of a form, which stands for part of the date.
std::string datePart(std::string_view part, const dao::Calendar& day) {
    if (part == "YYYY") return text::format("%04d", day.year);
    if (part == "YY") return text::format("%02d", day.year % 100);
    std::string month = kMonths[static_cast<size_t>(day.month - 1)];
    if (part == "MMMM") return month;
    if (part == "MMM") return month.substr(0, 3);
    if (part == "MM") return text::format("%02d", day.month);
    if (part == "M") return std::to_string(day.month);
    if (part == "DD") return text::format("%02d", day.day);
    return std::to_string(day.day);
}

std::string dateText(std::string_view form, const dao::Calendar& day) {
    constexpr std::array<std::string_view, 8> kParts = {"YYYY", "YY", "MMMM", "MMM", "MM", "M", "DD", "D"};
    std::string out;
    while (!form.empty()) {
        std::string_view found;
        for (std::string_view part : kParts)
            if (found.empty() && text::startsWith(form, part)) found = part;
        out += found.empty() ? std::string(1, form.front()) : datePart(found, day);
        form.remove_prefix(found.empty() ? 1 : found.size());
    }
    return out;
}

std::string withDecimals(const std::string& text, int decimals) {
    const std::optional<double> number = text::wholeReal(text::trim(text));
    return number ? text::format("%.*f", decimals, *number) : text;
}

std::string asDate(const std::string& text, const std::string& form) {
    const std::string_view shown = text::trim(text);
    dao::Date date;
    // A time of day alone is no date.
    if (shown.find_first_of("-/") == std::string_view::npos || !dao::dateFromText(shown, date)) return text;
    return dateText(form, dao::calendarOf(date));
}

}  // namespace

LinkFormat LinkFormat::Decimals(int count) {
    return {Kind::kDecimals, count, ""};
}

LinkFormat LinkFormat::DateForm(std::string form) {
    return {Kind::kDate, 0, std::move(form)};
}

LinkFormat LinkFormat::UpperCase() {
    return {Kind::kUpperCase, 0, ""};
}

std::optional<LinkFormat> LinkFormat::FromCode(std::string_view code) {
    if (code.empty()) return LinkFormat();
    if (code == "U") return UpperCase();
    if (code.size() == 2 && code[0] == 'N' && code[1] >= '0' && code[1] <= '0' + kMostDecimals)
        return Decimals(code[1] - '0');
    if (text::startsWith(code, "D:") && code.size() > 2) return DateForm(std::string(code.substr(2)));
    return std::nullopt;
}

std::string LinkFormat::code() const {
    switch (kind_) {
        case Kind::kDecimals:
            return "N" + std::to_string(decimals_);
        case Kind::kDate:
            return "D:" + form_;
        case Kind::kUpperCase:
            return "U";
        case Kind::kAsItStands:
            break;
    }
    return "";
}

std::string LinkFormat::caption() const {
    switch (kind_) {
        case Kind::kDecimals:
            return decimals_ == 0 ? "No decimals" : text::counted(decimals_, "decimal", "decimals");
        case Kind::kDate:
            return "Date " + form_;
        case Kind::kUpperCase:
            return "UPPER CASE";
        case Kind::kAsItStands:
            break;
    }
    return "As in the database";
}

const std::vector<LinkFormat>& LinkFormat::Choices() {
    static const std::vector<LinkFormat> choices = {
        LinkFormat(),
        UpperCase(),
        Decimals(0),
        Decimals(1),
        Decimals(2),
        Decimals(3),
        Decimals(4),
        DateForm("MM/DD/YYYY"),
        DateForm("M/D/YYYY"),
        DateForm("DD.MM.YYYY"),
        DateForm("DD/MM/YYYY"),
        DateForm("MMMM D, YYYY"),
    };
    return choices;
}

std::string LinkFormat::apply(const std::string& text) const {
    switch (kind_) {
        case Kind::kDecimals:
            return withDecimals(text, decimals_);
        case Kind::kDate:
            return asDate(text, form_);
        case Kind::kUpperCase:
            return text::upper(text);
        case Kind::kAsItStands:
            break;
    }
    return text;
}

}  // namespace norvane
