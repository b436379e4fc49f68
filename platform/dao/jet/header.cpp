#include "platform/dao/jet/header.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace jet {
namespace {

constexpr size_t kMaskAt = 0x18;
constexpr size_t kCodePageAt = 0x3C;
constexpr size_t kKeyAt = 0x3E;
constexpr size_t kPasswordAt = 0x42;
constexpr size_t kSortOrderAt3 = 0x3A, kPasswordSize3 = 20, kMaskSize3 = 126;
constexpr size_t kSortOrderAt4 = 0x6E, kSortVersionAt4 = 0x71, kCreatedAt4 = 0x72, kPasswordSize4 = 40,
                 kMaskSize4 = 128;

// The mask is the key stream of the RC4 cipher for a key that is always the same.
std::array<uint8_t, kMaskSize4> keyStream() {
    constexpr std::array<uint8_t, 4> kKey = {0xC7, 0xDA, 0x39, 0x6B};
    std::array<uint8_t, 256> state;
    std::iota(state.begin(), state.end(), uint8_t{0});
    uint8_t j = 0;
    for (size_t i = 0; i < 256; ++i) {
        j = static_cast<uint8_t>(j + state[i] + kKey[i % kKey.size()]);
        std::swap(state[i], state[j]);
    }
    std::array<uint8_t, kMaskSize4> stream;
    uint8_t a = 0, b = 0;
    for (uint8_t& byte : stream) {
        b = static_cast<uint8_t>(b + state[++a]);
        std::swap(state[a], state[b]);
        byte = state[static_cast<uint8_t>(state[a] + state[b])];
    }
    return stream;
}

std::string passwordOf(const Format& format, ByteView page, double created) {
    std::string password;
    if (!format.unicode) {
        ByteView bytes = page.part(kPasswordAt, kPasswordSize3);
        std::string_view text = bytes.text();
        return text::decode(text.substr(0, std::min(text.find('\0'), text.size())));
    }
    // In Jet 4 the days of the creation date lie on it once more.
    bool inRange = created > -2e9 && created < 2e9;
    auto days = static_cast<uint32_t>(inRange ? static_cast<int32_t>(created) : 0);
    for (size_t at = 0; at < kPasswordSize4; at += 2) {
        auto mask = static_cast<uint16_t>(at % 4 ? days >> 16 : days);
        auto c = static_cast<uint16_t>(page.u16(kPasswordAt + at) ^ mask);
        if (c == 0) break;
        text::appendUtf8(password, c);
    }
    return password;
}

}  // namespace

void maskHeader(const Format& format, ByteSpan page) {
    static const std::array<uint8_t, kMaskSize4> kStream = keyStream();
    size_t size = format.unicode ? kMaskSize4 : kMaskSize3;
    for (size_t i = 0; i < size; ++i) page.setU8(kMaskAt + i, page.view().u8(kMaskAt + i) ^ kStream[i]);
}

Header readHeader(const Format& format, ByteView page) {
    Bytes clear = page.copy();
    maskHeader(format, ByteSpan(clear));
    ByteView view(clear);
    Header header;
    header.codePage = view.u16(kCodePageAt);
    header.encodingKey = view.u32(kKeyAt);
    header.sortOrder = view.u16(format.unicode ? kSortOrderAt4 : kSortOrderAt3);
    header.sortVersion = format.unicode ? view.u8(kSortVersionAt4) : 0;
    header.created = format.unicode ? view.real(kCreatedAt4) : 0;
    header.password = passwordOf(format, view, header.created);
    return header;
}

Bytes makeHeader(const Format& format, const Header& header) {
    constexpr uint16_t kBuild3 = 3428, kBuild4 = 4518;
    Bytes page(format.pageSize);
    ByteSpan out(page);
    out.setU32(0, 0x100);
    out.set(4, ByteView(std::string_view("Standard Jet DB\0", 16)));
    out.setU32(0x14, format.unicode ? 1 : 0);
    out.setU32(0x18, 0x100);
    out.setU32(0x1C, 0x101);
    for (uint32_t i = 0; i < 4; ++i) out.setU32(0x20 + 4 * i, kObjectsPage + i);
    out.setU16(kCodePageAt, static_cast<uint16_t>(header.codePage));
    size_t commitWords = format.pageSize - 512;
    if (format.unicode) {
        ByteWriter days;
        days.u32(static_cast<uint32_t>(static_cast<int32_t>(header.created)));
        for (size_t at = 0; at < kPasswordSize4; at += 4) out.set(kPasswordAt + at, days.bytes);
        ByteWriter created;
        created.real(header.created);
        out.setU16(0x6A, kBuild4);
        out.setU32(kSortOrderAt4, static_cast<uint32_t>(header.sortOrder));
        out.set(kCreatedAt4, created.bytes);
        out.setU32(0x98, 1620);
        out.set(0x9C, ByteView(std::string_view("4.0\0", 4)));
    } else {
        commitWords = 0x600;
        out.setU16(kSortOrderAt3, static_cast<uint16_t>(header.sortOrder));
        out.setU16(0x56, kBuild3);
    }
    for (size_t i = 0; i < 256; ++i) out.setU16(commitWords + 2 * i, i == 0 ? 0x0101 : 0x0100);
    maskHeader(format, out);
    return page;
}

}  // namespace jet
