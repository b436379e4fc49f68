#include "platform/dao/jet/text_codec.h"

#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace jet {
namespace {

// Longer text is stored as it is.
constexpr size_t kMostCompressed = 1024;
constexpr size_t kLeastCompressed = 3;

bool isCompressed(ByteView stored) {
    return stored.size() >= 2 && stored.u8(0) == 0xFF && stored.u8(1) == 0xFE;
}

// Appends one or two units of UTF-16, the second of which is at the next place.
void appendUnit(std::string& out, ByteView units, size_t& at) {
    constexpr char32_t kReplacement = 0xFFFD;
    char32_t c = units.u16(at);
    at += 2;
    if (c >= 0xD800 && c < 0xDC00 && at + 2 <= units.size()) {
        char32_t low = units.u16(at);
        if (low >= 0xDC00 && low < 0xE000) {
            at += 2;
            c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        }
    }
    text::appendUtf8(out, c >= 0xD800 && c < 0xE000 ? kReplacement : c);
}

// One byte a character; a zero byte changes to two bytes a character, and back.
std::string decompress(ByteView stored) {
    std::string out;
    out.reserve(stored.size());
    bool single = true;
    for (size_t at = 0; at < stored.size();) {
        uint8_t byte = stored.u8(at);
        if (byte == 0) {
            single = !single;
            ++at;
        } else if (single) {
            if (byte < 0x80)
                out += static_cast<char>(byte);
            else
                text::appendUtf8(out, byte);
            ++at;
        } else {
            if (at + 2 > stored.size()) break;
            appendUnit(out, stored, at);
        }
    }
    return out;
}

}  // namespace

std::string TextCodec::decode(ByteView stored) const {
    if (!unicode_) return text::decode(stored.text(), text::isKnownCodePage(codePage_) ? codePage_ : 1252);
    if (isCompressed(stored)) return decompress(stored.from(2));
    std::string out;
    out.reserve(stored.size() / 2);
    for (size_t at = 0; at + 2 <= stored.size();) appendUnit(out, stored, at);
    return out;
}

void TextCodec::encodeInCodePage(ByteWriter& out, std::string_view text) const {
    if (!text::isKnownCodePage(codePage_))
        throw Error("Text cannot be written in the code page " + std::to_string(codePage_) + ".");
    for (size_t at = 0; at < text.size();) {
        size_t begin = at;
        int byte = text::byteOf(text::nextCodePoint(text, at), codePage_);
        if (byte < 0)
            throw Error("The character " + std::string(text.substr(begin, at - begin)) +
                        " cannot be stored in a database of Access 97: its code page " +
                        std::to_string(codePage_) + " lacks it.");
        out.u8(static_cast<uint8_t>(byte));
    }
}

namespace {

// The compressed form, if the text has one.
bool compressInto(ByteWriter& out, std::string_view text) {
    size_t begin = out.bytes.size();
    out.u16(0xFEFF);
    size_t characters = 0;
    for (size_t at = 0; at < text.size(); ++characters) {
        char32_t c = text::nextCodePoint(text, at);
        if (c == 0 || c > 0xFF || characters == kMostCompressed) {
            out.bytes.resize(begin);
            return false;
        }
        out.u8(static_cast<uint8_t>(c));
    }
    if (characters < kLeastCompressed) out.bytes.resize(begin);
    return characters >= kLeastCompressed;
}

}  // namespace

void TextCodec::encode(ByteWriter& out, std::string_view text, bool compress) const {
    if (!unicode_) return encodeInCodePage(out, text);
    if (compress && text.size() >= kLeastCompressed && compressInto(out, text)) return;
    for (size_t at = 0; at < text.size();) {
        char32_t c = text::nextCodePoint(text, at);
        if (c >= 0x10000) {
            c -= 0x10000;
            out.u16(static_cast<uint16_t>(0xD800 + (c >> 10)));
            c = 0xDC00 + (c & 0x3FF);
        }
        out.u16(static_cast<uint16_t>(c));
    }
}

Bytes TextCodec::encode(std::string_view text, bool compress) const {
    ByteWriter out;
    encode(out, text, compress);
    return std::move(out.bytes);
}

size_t TextCodec::length(std::string_view text) const {
    size_t count = 0;
    for (size_t at = 0; at < text.size(); ++count)
        if (text::nextCodePoint(text, at) >= 0x10000 && unicode_) ++count;
    return count;
}

}  // namespace jet
