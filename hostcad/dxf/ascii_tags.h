// The groups of a text file: a line with the code, a line with the value.
#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "hostcad/drawing/group.h"
#include "hostcad/dxf/dxf_error.h"
#include "platform/text/text.h"

namespace hostcad {

class AsciiTags {
  public:
    explicit AsciiTags(std::string_view content)
        : next_(content.data()), end_(content.data() + content.size()) {
        if (content.substr(0, 3) == "\xEF\xBB\xBF") next_ += 3;
        size_t odd = oddReturn(content);
        if (odd == std::string_view::npos) return;
        ends_ = content.find('\n') == std::string_view::npos ? LineEnds::OnlyReturns : LineEnds::Mixed;
        oddLine_ = 1 + static_cast<size_t>(std::count(content.begin(), content.begin() + odd, '\n'));
    }

    // The first line with a carriage return that is no part of a usual line end; 0 when there is none.
    size_t oddLine() const { return oddLine_; }

    // Steps to the next group. False at the end of the file.
    bool next() {
        if (next_ == end_) return false;
        ++line_;
        if (!readCode()) {
            if (isBlank(value_) && !hasMore()) return false;
            fail("a group code is expected, but the line is \"" + excerpt() + "\"");
        }
        if (code_ < 0 || code_ > kLastGroupCode)
            fail("group code " + std::to_string(code_) + " is out of range");
        if (next_ == end_) fail("the file ends behind a group code");
        ++line_;
        value_ = takeLine();
        return true;
    }

    // Something but blanks and end marks follows.
    bool hasMore() const { return !isBlank({next_, static_cast<size_t>(end_ - next_)}); }

    int code() const { return code_; }
    std::string_view text() const { return value_; }

    // "nan" and "inf" are taken: one broken coordinate must not cost the user the drawing.
    double real() const {
        double exact = 0;
        if (readShortDecimal(exact)) return exact;
        std::string_view s = number();
        double value = 0;
        auto [stop, error] = std::from_chars(s.data(), s.data() + s.size(), value);
        const bool isWhole = stop == s.data() + s.size();
        if (error == std::errc::result_out_of_range && isWhole) {
            value = std::strtod(std::string(s).c_str(), nullptr);  // 0 for one that is too small
            if (!std::isfinite(value)) failNumber("number");
            return value;
        }
        if (error == std::errc() && isWhole) return value;
        // "1.#QNAN", "-1.#IND", "1.#INF": what is no number, as some programs spell it.
        if (s.starts_with("1.#") || s.starts_with("-1.#")) return std::numeric_limits<double>::quiet_NaN();
        failNumber("number");
    }

    int64_t integer() const {
        std::string_view s = number();
        int64_t value = 0;
        auto [stop, error] = std::from_chars(s.data(), s.data() + s.size(), value);
        if (error == std::errc() && stop == s.data() + s.size()) return value;
        // Some programs write whole numbers as reals.
        double whole = 0;
        auto [realStop, realError] = std::from_chars(s.data(), s.data() + s.size(), whole);
        if (realError != std::errc() || realStop != s.data() + s.size() || std::floor(whole) != whole ||
            std::abs(whole) > 9e18)
            failNumber("whole number");
        return static_cast<int64_t>(whole);
    }

    // The bytes of a chunk in hexadecimal digits. False when the value is none: it is a text then.
    bool chunk(std::string& bytes) const {
        std::string_view digits = text::trim(value_);
        if (digits.size() % 2 != 0) return false;
        bytes.clear();
        for (size_t i = 0; i < digits.size(); i += 2) {
            unsigned byte = 0;
            auto [stop, error] = std::from_chars(digits.data() + i, digits.data() + i + 2, byte, 16);
            if (error != std::errc() || stop != digits.data() + i + 2) return false;
            bytes += static_cast<char>(byte);
        }
        return true;
    }

    // Where the present group stands, as messages name it.
    std::string place() const { return "Line " + std::to_string(line_); }

    [[noreturn]] void fail(const std::string& what) const { throw DxfError(place() + ": " + what + "."); }

  private:
    enum class LineEnds { Usual, Mixed, OnlyReturns };

    static size_t oddReturn(std::string_view content) {
        size_t at = content.find('\r');
        while (at != std::string_view::npos && at + 1 < content.size() && content[at + 1] == '\n')
            at = content.find('\r', at + 1);
        return at;
    }

    static bool isBlank(std::string_view s) {
        constexpr std::string_view kBlanks(" \t\r\n\x1A\0", 6);
        return s.find_first_not_of(kBlanks) == std::string_view::npos;
    }

    // A group code stands on the line that begins here.
    static bool isCodeLine(const char* p, const char* end) {
        while (p != end && (*p == ' ' || *p == '\t')) ++p;
        const char* digits = p;
        while (p != end && *p >= '0' && *p <= '9') ++p;
        return p != digits && p - digits <= 4 && (p == end || *p == '\r' || *p == '\n');
    }

    // The line that begins here ends with a carriage return alone, or with several in front of its line feed.
    // Within a value such a return ends it only where a group code follows, as it may be one of the text's.
    std::string_view takeOddLine() {
        const char* start = next_;
        for (const char* p = start; p != end_; ++p) {
            if (*p != '\r' && *p != '\n') continue;
            const char* behind = p;
            while (behind != end_ && *behind == '\r') ++behind;
            bool isFeed = behind != end_ && *behind == '\n';
            if (!isFeed && ends_ == LineEnds::Mixed && !isCodeLine(behind, end_)) {
                p = behind - 1;
                continue;
            }
            next_ = isFeed ? behind + 1 : p + 1;
            return {start, static_cast<size_t>(p - start)};
        }
        next_ = end_;
        return {start, static_cast<size_t>(end_ - start)};
    }

    std::string_view takeLine() {
        if (ends_ != LineEnds::Usual) return takeOddLine();
        const char* start = next_;
        const char* feed =
            static_cast<const char*>(std::memchr(start, '\n', static_cast<size_t>(end_ - start)));
        const char* stop = feed ? feed : end_;
        next_ = feed ? feed + 1 : end_;
        if (stop != start && stop[-1] == '\r') --stop;
        return {start, static_cast<size_t>(stop - start)};
    }

    // Reads the line of a code. False, with the line in value_, when it is no number.
    bool readCode() {
        const char* start = next_;
        const char* p = start;
        while (p != end_ && (*p == ' ' || *p == '\t')) ++p;
        bool negative = p != end_ && *p == '-';
        if (negative) ++p;
        int code = 0;
        const char* digits = p;
        for (; p != end_ && *p >= '0' && *p <= '9'; ++p)
            if (code < 100000) code = code * 10 + (*p - '0');
        bool anyDigits = p != digits;
        const char* codeEnd = p;
        while (p != end_ && (*p == ' ' || *p == '\t' || *p == '\r')) ++p;
        if (anyDigits && ends_ != LineEnds::Usual && (p == end_ || *p != '\n')) {
            while (codeEnd != p && *codeEnd != '\r') ++codeEnd;
            p = codeEnd;
        }
        if (!anyDigits || (p != end_ && *p != '\n' && (*p != '\r' || ends_ == LineEnds::Usual))) {
            value_ = takeLine();
            return false;
        }
        code_ = negative ? -code : code;
        next_ = p == end_ ? end_ : p + 1;
        return true;
    }

    // Most numbers have few enough digits that the digits and the power of ten are both exact as doubles, and
    // so is their quotient. False for any other number, and for what is none.
    bool readShortDecimal(double& value) const {
        static constexpr double kPowers[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
        const char* p = value_.data();
        const char* end = p + value_.size();
        bool negative = p != end && *p == '-';
        if (negative) ++p;
        if (end - p > 16 || p == end) return false;
        int64_t digits = 0;
        const char* start = p;
        for (; p != end && *p >= '0' && *p <= '9'; ++p) digits = digits * 10 + (*p - '0');
        int count = static_cast<int>(p - start), places = 0;
        if (p != end && *p == '.') {
            for (++p; p != end && *p >= '0' && *p <= '9'; ++p, ++places) digits = digits * 10 + (*p - '0');
        }
        if (p != end || count == 0 || count + places > 15) return false;
        value = static_cast<double>(digits) / kPowers[places];
        if (negative) value = -value;
        return true;
    }

    std::string_view number() const {
        std::string_view s = text::trim(value_);
        if (s.size() > 1 && s[0] == '+' && s[1] != '-') s.remove_prefix(1);
        return s;
    }

    [[noreturn]] void failNumber(const char* wanted) const {
        fail("group " + std::to_string(code_) + " needs a " + wanted + ", but the line is \"" + excerpt() +
             "\"");
    }

    // The value as it can stand in a message.
    std::string excerpt() const {
        std::string out;
        for (char c : value_.substr(0, 40)) out += c >= ' ' && c < 0x7F ? c : '?';
        return value_.size() > 40 ? out + "..." : out;
    }

    const char* next_;
    const char* end_;
    LineEnds ends_ = LineEnds::Usual;
    size_t oddLine_ = 0;
    size_t line_ = 0;
    int code_ = 0;
    std::string_view value_;
};

}  // namespace hostcad
