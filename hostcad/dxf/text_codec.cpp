#include "hostcad/dxf/text_codec.h"

#include <array>
#include <charconv>

#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

constexpr size_t kEscapeLength = 7;  // \U+20AC

bool isHighSurrogate(int unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
bool isLowSurrogate(int unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

// Characters at which a text may need a change: those beyond ASCII, control characters, \ and ^.
constexpr auto kSpecial = [] {
    std::array<bool, 256> special{};
    for (int c = 0x80; c < 0x100; ++c) special[static_cast<size_t>(c)] = true;
    for (char c : {'\n', '\r', '\0', '\\', '^'}) special[static_cast<size_t>(c)] = true;
    return special;
}();

}  // namespace

TextCodec::TextCodec(const DxfFormat& format, int codePage)
    : unicode_(hasUnicodeText(format.version)),
      page_(codePage),
      digits_(format.lowerCaseEscapes ? Digits::Small : Digits::Unknown) {}

bool TextCodec::isPlain(std::string_view s) {
    for (char c : s)
        if (kSpecial[static_cast<unsigned char>(c)]) return false;
    return true;
}

// The 16 bits behind \U+ at a position, or -1. The digits must be of the kind that encode will write.
int TextCodec::escapedUnit(std::string_view s, size_t position) const {
    if (s.size() - position < kEscapeLength || s.compare(position, 3, "\\U+") != 0) return -1;
    int value = 0;
    for (char c : s.substr(position + 3, 4)) {
        bool capital = c >= 'A' && c <= 'F' && digits_ != Digits::Small;
        bool small = c >= 'a' && c <= 'f' && digits_ != Digits::Capital;
        int digit = c >= '0' && c <= '9' ? c - '0' : capital ? c - 'A' + 10 : small ? c - 'a' + 10 : -1;
        if (digit < 0) return -1;
        value = value * 16 + digit;
    }
    return value;
}

bool TextCodec::decodeEscape(std::string_view bytes, size_t& position) {
    int unit = escapedUnit(bytes, position);
    if (unit < 0x80 || isLowSurrogate(unit)) return false;
    char32_t codePoint = static_cast<char32_t>(unit);
    size_t length = kEscapeLength;
    if (isHighSurrogate(unit)) {
        int low = escapedUnit(bytes, position + kEscapeLength);
        if (!isLowSurrogate(low)) return false;
        codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + static_cast<char32_t>(low - 0xDC00);
        length *= 2;
    } else if (text::byteOf(codePoint, page_) >= 0) {
        return false;
    }
    // Letters of both kinds in one text would not come back as they were.
    std::string_view escape = bytes.substr(position, length);
    bool capital = escape.find_first_of("ABCDEF", 3) != std::string_view::npos;
    bool small = escape.find_first_of("abcdef", 3) != std::string_view::npos;
    if (capital && small) return false;
    if (capital || small) digits_ = small ? Digits::Small : Digits::Capital;
    text::appendUtf8(buffer_, codePoint);
    position += length;
    return true;
}

std::string_view TextCodec::decodeSlowly(std::string_view bytes) {
    buffer_.clear();
    for (size_t i = 0; i < bytes.size();) {
        char c = bytes[i];
        if (c == '^' && i + 1 < bytes.size() && (bytes[i + 1] == 'J' || bytes[i + 1] == 'M')) {
            buffer_ += bytes[i + 1] == 'J' ? '\n' : '\r';
            i += 2;
        } else if (unicode_ || static_cast<unsigned char>(c) < 0x80) {
            if (unicode_ || c != '\\' || !decodeEscape(bytes, i)) {
                buffer_ += c;
                ++i;
            }
        } else {
            text::appendUtf8(buffer_, text::codePointOf(static_cast<unsigned char>(c), page_));
            ++i;
        }
    }
    return buffer_;
}

void TextCodec::appendEscape(char32_t codePoint) {
    const char* pattern = digits_ == Digits::Small ? "\\U+%04x" : "\\U+%04X";
    if (codePoint > 0xFFFF) {
        codePoint -= 0x10000;
        buffer_ += text::format(pattern, 0xD800 + static_cast<unsigned>(codePoint >> 10));
        codePoint = 0xDC00 + (codePoint & 0x3FF);
    }
    buffer_ += text::format(pattern, static_cast<unsigned>(codePoint));
}

std::string_view TextCodec::encodeSlowly(std::string_view utf8) {
    buffer_.clear();
    for (size_t i = 0; i < utf8.size();) {
        char c = utf8[i];
        if (c == '\n' || c == '\r' || c == '\0') {
            buffer_ += c == '\n' ? "^J" : c == '\r' ? "^M" : "^@";
            ++i;
        } else if (unicode_ || static_cast<unsigned char>(c) < 0x80) {
            buffer_ += c;
            ++i;
        } else {
            char32_t codePoint = text::nextCodePoint(utf8, i);
            int byte = text::byteOf(codePoint, page_);
            if (byte >= 0)
                buffer_ += static_cast<char>(byte);
            else
                appendEscape(codePoint);
        }
    }
    return buffer_;
}

}  // namespace hostcad
