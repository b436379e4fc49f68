#include "platform/dao/jet/text_order.h"

#include <string_view>

#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace jet {
namespace {

// How a character sorts: by a code of one or two bytes (0: it does not count), then by its accent. A
// character that is hidden sorts only where all others are equal.
struct Letter {
    uint16_t code;
    uint8_t accent;
    uint8_t hidden;
};

// By the character's byte in code page 1252.
// clang-format off
constexpr Letter kLetters3[256] = {
    {0x00, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0},
    {0x10, 0, 0}, {0x11, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0},
    {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0},
    {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0},
    {0x11, 0, 0}, {0x12, 0, 0}, {0x13, 0, 0}, {0x14, 0, 0}, {0x15, 0, 0}, {0x16, 0, 0}, {0x17, 0, 0}, {0x18, 0, 0},
    {0x19, 0, 0}, {0x1A, 0, 0}, {0x1B, 0, 0}, {0x1C, 0, 0}, {0x1D, 0, 0}, {0x1E, 0, 0}, {0x1F, 0, 0}, {0x20, 0, 0},
    {0x56, 0, 0}, {0x57, 0, 0}, {0x58, 0, 0}, {0x59, 0, 0}, {0x5A, 0, 0}, {0x5B, 0, 0}, {0x5C, 0, 0}, {0x5D, 0, 0},
    {0x5E, 0, 0}, {0x5F, 0, 0}, {0x21, 0, 0}, {0x22, 0, 0}, {0x23, 0, 0}, {0x24, 0, 0}, {0x25, 0, 0}, {0x26, 0, 0},
    {0x27, 0, 0}, {0x60, 0, 0}, {0x61, 0, 0}, {0x62, 0, 0}, {0x64, 0, 0}, {0x66, 0, 0}, {0x67, 0, 0}, {0x68, 0, 0},
    {0x69, 0, 0}, {0x6A, 0, 0}, {0x6B, 0, 0}, {0x6C, 0, 0}, {0x6D, 0, 0}, {0x6F, 0, 0}, {0x70, 0, 0}, {0x72, 0, 0},
    {0x73, 0, 0}, {0x74, 0, 0}, {0x75, 0, 0}, {0x76, 0, 0}, {0x77, 0, 0}, {0x78, 0, 0}, {0x7A, 0, 0}, {0x7B, 0, 0},
    {0x7C, 0, 0}, {0x7D, 0, 0}, {0x7E, 0, 0}, {0x28, 0, 0}, {0x29, 0, 0}, {0x2A, 0, 0}, {0x2B, 0, 0}, {0x2C, 0, 0},
    {0x2D, 0, 0}, {0x60, 0, 0}, {0x61, 0, 0}, {0x62, 0, 0}, {0x64, 0, 0}, {0x66, 0, 0}, {0x67, 0, 0}, {0x68, 0, 0},
    {0x69, 0, 0}, {0x6A, 0, 0}, {0x6B, 0, 0}, {0x6C, 0, 0}, {0x6D, 0, 0}, {0x6F, 0, 0}, {0x70, 0, 0}, {0x72, 0, 0},
    {0x73, 0, 0}, {0x74, 0, 0}, {0x75, 0, 0}, {0x76, 0, 0}, {0x77, 0, 0}, {0x78, 0, 0}, {0x7A, 0, 0}, {0x7B, 0, 0},
    {0x7C, 0, 0}, {0x7D, 0, 0}, {0x7E, 0, 0}, {0x2E, 0, 0}, {0x2F, 0, 0}, {0x30, 0, 0}, {0x31, 0, 0}, {0x10, 0, 0},
    {0x10, 0, 0}, {0x10, 0, 0}, {0x18, 0, 0}, {0x32, 0, 0}, {0x13, 0, 0}, {0x33, 0, 0}, {0x34, 0, 0}, {0x35, 0, 0},
    {0x36, 0, 0}, {0x37, 0, 0}, {0x76, 10, 0}, {0x18, 0, 0}, {0x7266, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0},
    {0x10, 0, 0}, {0x18, 0, 0}, {0x18, 0, 0}, {0x13, 0, 0}, {0x13, 0, 0}, {0x38, 0, 0}, {0x1E, 0, 0}, {0x1E, 0, 0},
    {0x39, 0, 0}, {0x3A, 0, 0}, {0x76, 10, 0}, {0x18, 0, 0}, {0x7266, 0, 0}, {0x10, 0, 0}, {0x10, 0, 0}, {0x7D, 6, 0},
    {0x11, 0, 0}, {0x3B, 0, 0}, {0x3C, 0, 0}, {0x3D, 0, 0}, {0x3E, 0, 0}, {0x3F, 0, 0}, {0x40, 0, 0}, {0x41, 0, 0},
    {0x42, 0, 0}, {0x43, 0, 0}, {0x44, 0, 0}, {0x13, 0, 0}, {0x45, 0, 0}, {0x1E, 0, 0}, {0x46, 0, 0}, {0x47, 0, 0},
    {0x48, 0, 0}, {0x49, 0, 0}, {0x58, 0, 0}, {0x59, 0, 0}, {0x4A, 0, 0}, {0x4B, 0, 0}, {0x4C, 0, 0}, {0x4D, 0, 0},
    {0x4E, 0, 0}, {0x57, 0, 0}, {0x4F, 0, 0}, {0x13, 0, 0}, {0x50, 0, 0}, {0x51, 0, 0}, {0x52, 0, 0}, {0x53, 0, 0},
    {0x60, 3, 0}, {0x60, 4, 0}, {0x60, 5, 0}, {0x60, 7, 0}, {0x60, 6, 0}, {0x60, 8, 0}, {0x6066, 0, 0}, {0x62, 9, 0},
    {0x66, 3, 0}, {0x66, 4, 0}, {0x66, 5, 0}, {0x66, 6, 0}, {0x6A, 3, 0}, {0x6A, 4, 0}, {0x6A, 5, 0}, {0x6A, 6, 0},
    {0x65, 0, 0}, {0x70, 7, 0}, {0x72, 3, 0}, {0x72, 4, 0}, {0x72, 5, 0}, {0x72, 7, 0}, {0x72, 6, 0}, {0x54, 0, 0},
    {0x81, 0, 0}, {0x78, 3, 0}, {0x78, 4, 0}, {0x78, 5, 0}, {0x78, 6, 0}, {0x7D, 4, 0}, {0x7F, 0, 0}, {0x7676, 0, 0},
    {0x60, 3, 0}, {0x60, 4, 0}, {0x60, 5, 0}, {0x60, 7, 0}, {0x60, 6, 0}, {0x60, 8, 0}, {0x6066, 0, 0}, {0x62, 9, 0},
    {0x66, 3, 0}, {0x66, 4, 0}, {0x66, 5, 0}, {0x66, 6, 0}, {0x6A, 3, 0}, {0x6A, 4, 0}, {0x6A, 5, 0}, {0x6A, 6, 0},
    {0x65, 0, 0}, {0x70, 7, 0}, {0x72, 3, 0}, {0x72, 4, 0}, {0x72, 5, 0}, {0x72, 7, 0}, {0x72, 6, 0}, {0x55, 0, 0},
    {0x81, 0, 0}, {0x78, 3, 0}, {0x78, 4, 0}, {0x78, 5, 0}, {0x78, 6, 0}, {0x7D, 4, 0}, {0x7F, 0, 0}, {0x7D, 6, 0},
};

constexpr Letter kLetters4[256] = {
    {0x00, 0, 0}, {0x00, 0, 3}, {0x00, 0, 4}, {0x00, 0, 5}, {0x00, 0, 6}, {0x00, 0, 7}, {0x00, 0, 8}, {0x00, 0, 9},
    {0x00, 0, 10}, {0x0803, 0, 0}, {0x0804, 0, 0}, {0x0805, 0, 0}, {0x0806, 0, 0}, {0x0807, 0, 0}, {0x00, 0, 11}, {0x00, 0, 12},
    {0x00, 0, 13}, {0x00, 0, 14}, {0x00, 0, 15}, {0x00, 0, 16}, {0x00, 0, 17}, {0x00, 0, 18}, {0x00, 0, 19}, {0x00, 0, 20},
    {0x00, 0, 21}, {0x00, 0, 22}, {0x00, 0, 23}, {0x00, 0, 24}, {0x00, 0, 25}, {0x00, 0, 26}, {0x00, 0, 27}, {0x00, 0, 28},
    {0x07, 0, 0}, {0x09, 0, 0}, {0x0A, 0, 0}, {0x0C, 0, 0}, {0x0E, 0, 0}, {0x10, 0, 0}, {0x12, 0, 0}, {0x00, 0, 128},
    {0x14, 0, 0}, {0x16, 0, 0}, {0x18, 0, 0}, {0x2C, 0, 0}, {0x1A, 0, 0}, {0x00, 0, 130}, {0x1C, 0, 0}, {0x1E, 0, 0},
    {0x36, 0, 0}, {0x38, 0, 0}, {0x3A, 0, 0}, {0x3C, 0, 0}, {0x3E, 0, 0}, {0x40, 0, 0}, {0x42, 0, 0}, {0x44, 0, 0},
    {0x46, 0, 0}, {0x48, 0, 0}, {0x20, 0, 0}, {0x22, 0, 0}, {0x2E, 0, 0}, {0x30, 0, 0}, {0x32, 0, 0}, {0x24, 0, 0},
    {0x26, 0, 0}, {0x4A, 0, 0}, {0x4C, 0, 0}, {0x4D, 0, 0}, {0x4F, 0, 0}, {0x51, 0, 0}, {0x53, 0, 0}, {0x55, 0, 0},
    {0x57, 0, 0}, {0x59, 0, 0}, {0x5B, 0, 0}, {0x5C, 0, 0}, {0x5E, 0, 0}, {0x60, 0, 0}, {0x62, 0, 0}, {0x64, 0, 0},
    {0x66, 0, 0}, {0x68, 0, 0}, {0x69, 0, 0}, {0x6B, 0, 0}, {0x6D, 0, 0}, {0x6F, 0, 0}, {0x71, 0, 0}, {0x73, 0, 0},
    {0x75, 0, 0}, {0x76, 0, 0}, {0x78, 0, 0}, {0x27, 0, 0}, {0x29, 0, 0}, {0x2A, 0, 0}, {0x2B02, 0, 0}, {0x2B03, 0, 0},
    {0x2B07, 0, 0}, {0x4A, 0, 0}, {0x4C, 0, 0}, {0x4D, 0, 0}, {0x4F, 0, 0}, {0x51, 0, 0}, {0x53, 0, 0}, {0x55, 0, 0},
    {0x57, 0, 0}, {0x59, 0, 0}, {0x5B, 0, 0}, {0x5C, 0, 0}, {0x5E, 0, 0}, {0x60, 0, 0}, {0x62, 0, 0}, {0x64, 0, 0},
    {0x66, 0, 0}, {0x68, 0, 0}, {0x69, 0, 0}, {0x6B, 0, 0}, {0x6D, 0, 0}, {0x6F, 0, 0}, {0x71, 0, 0}, {0x73, 0, 0},
    {0x75, 0, 0}, {0x76, 0, 0}, {0x78, 0, 0}, {0x2B09, 0, 0}, {0x2B0B, 0, 0}, {0x2B0D, 0, 0}, {0x2B0F, 0, 0}, {0x00, 0, 29},
    {0x35A1, 0, 0}, {0x00, 0, 0}, {0x2B39, 0, 0}, {0x53, 123, 0}, {0x2B3D, 0, 0}, {0x34B9, 0, 0}, {0x34B3, 0, 0}, {0x34B4, 0, 0},
    {0x2B02, 3, 0}, {0x34BA, 0, 0}, {0x6B, 20, 0}, {0x2B46, 0, 0}, {0x6451, 0, 0}, {0x00, 0, 0}, {0x78, 20, 0}, {0x00, 0, 0},
    {0x00, 0, 0}, {0x2B37, 0, 0}, {0x2B38, 0, 0}, {0x2B3B, 0, 0}, {0x2B3C, 0, 0}, {0x34B5, 0, 0}, {0x00, 0, 137}, {0x00, 0, 139},
    {0x2B1C, 0, 0}, {0x6E04, 0, 0}, {0x6B, 20, 0}, {0x2B47, 0, 0}, {0x6451, 0, 0}, {0x00, 0, 0}, {0x78, 20, 0}, {0x76, 19, 0},
    {0x0802, 0, 0}, {0x2B10, 0, 0}, {0x34A6, 0, 0}, {0x34A7, 0, 0}, {0x34A8, 0, 0}, {0x34A9, 0, 0}, {0x2B11, 0, 0}, {0x34AA, 0, 0},
    {0x2B12, 0, 0}, {0x34AB, 0, 0}, {0x4A, 3, 0}, {0x3305, 0, 0}, {0x34AC, 0, 0}, {0x00, 0, 131}, {0x34AD, 0, 0}, {0x2B13, 0, 0},
    {0x34AE, 0, 0}, {0x3304, 0, 0}, {0x3A, 0, 0}, {0x3C, 0, 0}, {0x2B14, 0, 0}, {0x34AF, 0, 0}, {0x34B0, 0, 0}, {0x34B1, 0, 0},
    {0x2B15, 0, 0}, {0x38, 0, 0}, {0x64, 3, 0}, {0x3307, 0, 0}, {0x3712, 0, 0}, {0x3716, 0, 0}, {0x371A, 0, 0}, {0x2B16, 0, 0},
    {0x4A, 15, 0}, {0x4A, 14, 0}, {0x4A, 18, 0}, {0x4A, 25, 0}, {0x4A, 19, 0}, {0x4A, 26, 0}, {0x4A51, 0, 0}, {0x4D, 28, 0},
    {0x51, 15, 0}, {0x51, 14, 0}, {0x51, 18, 0}, {0x51, 19, 0}, {0x59, 15, 0}, {0x59, 14, 0}, {0x59, 18, 0}, {0x59, 19, 0},
    {0x4F, 104, 0}, {0x62, 25, 0}, {0x64, 15, 0}, {0x64, 14, 0}, {0x64, 18, 0}, {0x64, 25, 0}, {0x64, 19, 0}, {0x3309, 0, 0},
    {0x64, 33, 0}, {0x6F, 15, 0}, {0x6F, 14, 0}, {0x6F, 18, 0}, {0x6F, 19, 0}, {0x76, 14, 0}, {0x6D57, 0, 0}, {0x6B6B, 0, 0},
    {0x4A, 15, 0}, {0x4A, 14, 0}, {0x4A, 18, 0}, {0x4A, 25, 0}, {0x4A, 19, 0}, {0x4A, 26, 0}, {0x4A51, 0, 0}, {0x4D, 28, 0},
    {0x51, 15, 0}, {0x51, 14, 0}, {0x51, 18, 0}, {0x51, 19, 0}, {0x59, 15, 0}, {0x59, 14, 0}, {0x59, 18, 0}, {0x59, 19, 0},
    {0x4F, 104, 0}, {0x62, 25, 0}, {0x64, 15, 0}, {0x64, 14, 0}, {0x64, 18, 0}, {0x64, 25, 0}, {0x64, 19, 0}, {0x330A, 0, 0},
    {0x64, 33, 0}, {0x6F, 15, 0}, {0x6F, 14, 0}, {0x6F, 18, 0}, {0x6F, 19, 0}, {0x76, 14, 0}, {0x6D57, 0, 0}, {0x76, 19, 0},
};
// clang-format on

constexpr size_t kMostCharacters = 255;

const Letter& letterOf(const Letter (&letters)[256], char32_t c) {
    int byte = text::byteOf(c, 1252);
    if (byte < 0) {
        std::string character;
        text::appendUtf8(character, c);
        throw Error("The character " + character +
                    " cannot be stored in an indexed column: its place in the sort order is not known.");
    }
    return letters[byte];
}

std::u32string charactersOf(std::string_view s) {
    std::u32string characters;
    for (size_t at = 0; at < s.size() && characters.size() < kMostCharacters;)
        characters += text::nextCodePoint(s, at);
    while (!characters.empty() && characters.back() == U' ') characters.pop_back();
    return characters;
}

void putCode(ByteWriter& out, uint16_t code) {
    if (code > 0xFF) out.u8(static_cast<uint8_t>(code >> 8));
    if (code != 0) out.u8(static_cast<uint8_t>(code));
}

// Whether an unaccented letter holds a place among the accents: those that exist with one.
bool holdsPlace(char32_t c) {
    return c < 0x80 &&
           std::string_view("ACEINOSUYaceinosuy").find(static_cast<char>(c)) != std::string_view::npos;
}

bool isLigature(char32_t c) {
    constexpr std::u32string_view kLigatures = U"\u00C6\u00E6\u0152\u0153\u00DF";
    return kLigatures.find(c) != std::u32string_view::npos;
}

}  // namespace

Bytes textKey3(std::string_view s) {
    constexpr uint8_t kNoAccent = 2;
    ByteWriter out;
    std::vector<uint8_t> accents;  // half bytes
    size_t lastAccent = 0;
    bool ligature = false;
    for (char32_t c : charactersOf(s)) {
        const Letter& letter = letterOf(kLetters3, c);
        putCode(out, letter.code);
        if (letter.accent) {
            if (ligature)
                throw Error("The text \"" + std::string(s) +
                            "\" cannot be indexed: the order of an accent behind a ligature is not known.");
            accents.push_back(letter.accent);
            lastAccent = accents.size();
        } else if (holdsPlace(c)) {
            accents.push_back(kNoAccent);
        }
        ligature = ligature || isLigature(c);
    }
    if (lastAccent == 0) {
        out.u8(0);
        return std::move(out.bytes);
    }
    accents.resize(lastAccent);
    accents.insert(accents.begin(), 0);
    accents.push_back(0);
    if (accents.size() % 2) accents.push_back(0);
    for (size_t i = 0; i < accents.size(); i += 2)
        out.u8(static_cast<uint8_t>(accents[i] << 4 | accents[i + 1]));
    return std::move(out.bytes);
}

Bytes textKey4(std::string_view s) {
    constexpr uint8_t kNoAccent = 2;
    ByteWriter out, hidden;
    Bytes accents;
    size_t lastAccent = 0;
    for (char32_t c : charactersOf(s)) {
        const Letter& letter = letterOf(kLetters4, c);
        if (letter.hidden) {
            constexpr size_t kFirst = 7, kStep = 4;
            auto place = static_cast<uint16_t>(0x8000 + kFirst + kStep * accents.size());
            hidden.u8(static_cast<uint8_t>(place >> 8));
            hidden.u8(static_cast<uint8_t>(place));
            hidden.u8(6);
            hidden.u8(letter.hidden);
        }
        if (letter.code == 0) continue;
        putCode(out, letter.code);
        accents.push_back(letter.accent ? letter.accent : kNoAccent);
        if (letter.accent) lastAccent = accents.size();
    }
    out.u8(1);
    out.put(ByteView(accents).part(0, lastAccent));
    if (!hidden.bytes.empty()) {
        out.fill(3, 1);
        out.put(hidden.bytes);
    }
    out.u8(0);
    return std::move(out.bytes);
}

}  // namespace jet
