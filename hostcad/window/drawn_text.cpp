#include "hostcad/window/drawn_text.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <algorithm>
#include <array>
#include <cctype>

namespace hostcad {

// --- The font ----------------------------------------------------------------------------------------------

const QFont& drawingFont() {
    static const QFont font = [] {
        QFont sans("sans-serif");
        sans.setPixelSize(100);
        return sans;
    }();
    return font;
}

std::string drawingFontName() {
    return QFontInfo(drawingFont()).family().toStdString();
}

double drawingFontCapital() {
    // A machine without any font has no capitals to measure.
    static const double capital = std::max(QFontMetricsF(drawingFont()).capHeight(), 50.0);
    return capital;
}

double textWidth(std::string_view utf8) {
    static const std::array<float, 128> widths = [] {
        std::array<float, 128> all{};
        QFontMetricsF metrics(drawingFont());
        for (size_t c = 0; c < all.size(); ++c)
            all[c] = static_cast<float>(metrics.horizontalAdvance(QChar(static_cast<ushort>(c))) /
                                        drawingFontCapital());
        return all;
    }();
    double width = 0;
    for (unsigned char c : utf8) {
        if (c < 0x80)
            width += widths[c];
        else if (c >= 0xC0)
            width += widths['m'];  // any other character, by its first byte
    }
    return width;
}

// --- Codes -------------------------------------------------------------------------------------------------

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Reads "U+00B0" at a place; 0 when it is not there.
uint32_t unicodeAt(std::string_view s, size_t at) {
    constexpr size_t kLength = 6;
    if (s.size() < at + kLength || s[at] != 'U' || s[at + 1] != '+') return 0;
    uint32_t code = 0;
    for (size_t i = at + 2; i < at + kLength; ++i) {
        if (!std::isxdigit(static_cast<unsigned char>(s[i]))) return 0;
        code = code * 16 + static_cast<uint32_t>(isDigit(s[i]) ? s[i] - '0' : (s[i] | 0x20) - 'a' + 10);
    }
    return code;
}

void append(std::string& to, uint32_t code) {
    to += QString(QChar(static_cast<ushort>(code))).toStdString();
}

// The code behind "%%" at a place: what it shows is added, and the place behind it given.
size_t takePercentCode(std::string_view s, size_t at, std::string& to) {
    char code = static_cast<char>(std::tolower(static_cast<unsigned char>(s[at])));
    constexpr size_t kDigits = 3;
    if (code == 'd')
        to += "\u00B0";
    else if (code == 'p')
        to += "\u00B1";
    else if (code == 'c')
        to += "\u2300";
    else if (code == '%')
        to += '%';
    else if (s.size() >= at + kDigits && isDigit(s[at]) && isDigit(s[at + 1]) && isDigit(s[at + 2]))
        append(to, static_cast<uint32_t>((s[at] - '0') * 100 + (s[at + 1] - '0') * 10 + s[at + 2] - '0'));
    else if (code != 'u' && code != 'o' && code != 'k')  // lines under, over and through
        return to += "%%", at;
    return isDigit(s[at]) ? at + kDigits : at + 1;
}

// Paragraphs as lines of words, before they are broken by width.
class Paragraph {
  public:
    explicit Paragraph(std::string_view s) : s_(s) {}

    std::vector<std::string> lines() {
        while (at_ < s_.size()) step();
        return std::move(lines_);
    }

  private:
    std::string& line() { return lines_.back(); }

    void step() {
        char c = s_[at_++];
        char next = at_ < s_.size() ? s_[at_] : '\0';
        if (c == '{' || c == '}') return;
        if (c == '\\' && next) return takeCode();
        if (c == '%' && next == '%' && at_ + 1 < s_.size()) {
            at_ = takePercentCode(s_, at_ + 1, line());
        } else if (c == '^' && (next == 'J' || next == 'I')) {
            ++at_;
            next == 'J' ? (void)lines_.emplace_back() : (void)(line() += ' ');
        } else {
            line() += c;
        }
    }

    void takeCode() {
        char code = s_[at_++];
        if (code == 'P' || code == 'X') {
            lines_.emplace_back();
        } else if (code == '~') {
            line() += ' ';
        } else if (code == '\\' || code == '{' || code == '}') {
            line() += code;
        } else if (uint32_t character = unicodeAt(s_, at_ - 1)) {
            append(line(), character);
            at_ += 5;
        } else if (std::string_view("LlOoKk").find(code) == std::string_view::npos) {
            // \f, \H, \C and others with an argument that ends at a semicolon; stacked numbers are shown.
            size_t end = std::min(s_.find(';', at_), s_.size());
            if (code == 'S')
                for (char c : s_.substr(at_, end - at_)) line() += c == '^' || c == '#' ? '/' : c;
            at_ = std::min(end + 1, s_.size());
        }
    }

    std::string_view s_;
    size_t at_ = 0;
    std::vector<std::string> lines_{std::string()};
};

void breakLine(std::string line, double width, std::vector<std::string>& into) {
    while (textWidth(line) > width) {
        // The last blank in front of the limit; a word that is too long stays whole.
        size_t cut = std::string::npos;
        for (size_t blank = line.find(' '); blank != std::string::npos; blank = line.find(' ', blank + 1)) {
            if (cut != std::string::npos && textWidth(std::string_view(line).substr(0, blank)) > width) break;
            cut = blank;
        }
        if (cut == std::string::npos) break;
        into.push_back(line.substr(0, cut));
        line.erase(0, cut + 1);
    }
    into.push_back(std::move(line));
}

}  // namespace

bool hasTextCodes(std::string_view text) {
    return text.find("%%") != std::string_view::npos || text.find("\\U+") != std::string_view::npos;
}

std::string withoutTextCodes(std::string_view s) {
    std::string shown;
    for (size_t i = 0; i < s.size();) {
        if (s[i] == '%' && i + 2 < s.size() && s[i + 1] == '%') {
            i = takePercentCode(s, i + 2, shown);
        } else if (uint32_t character = s[i] == '\\' ? unicodeAt(s, i + 1) : 0) {
            append(shown, character);
            i += 7;
        } else {
            shown += s[i++];
        }
    }
    return shown;
}

std::vector<std::string> paragraphLines(std::string_view text, double width) {
    std::vector<std::string> lines;
    for (std::string& line : Paragraph(text).lines()) {
        if (width > 0)
            breakLine(std::move(line), width, lines);
        else
            lines.push_back(std::move(line));
    }
    return lines;
}

}  // namespace hostcad
