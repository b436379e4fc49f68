// Numbers in the bytes of files, of either byte order and at any address.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace files {

template <typename Number>
Number getLittle(const void* bytes) {
    Number value;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&value, bytes, sizeof value);
    } else {
        auto* from = static_cast<const unsigned char*>(bytes);
        unsigned char turned[sizeof value];
        for (size_t i = 0; i < sizeof value; ++i) turned[i] = from[sizeof value - 1 - i];
        std::memcpy(&value, turned, sizeof value);
    }
    return value;
}

template <typename Number>
void putLittle(void* bytes, Number value) {
    Number stored = getLittle<Number>(&value);
    std::memcpy(bytes, &stored, sizeof stored);
}

inline uint32_t getBig32(const void* bytes) {
    auto* b = static_cast<const unsigned char*>(bytes);
    return uint32_t{b[0]} << 24 | uint32_t{b[1]} << 16 | uint32_t{b[2]} << 8 | b[3];
}

inline void putBig32(void* bytes, uint32_t value) {
    auto* b = static_cast<unsigned char*>(bytes);
    b[0] = static_cast<unsigned char>(value >> 24);
    b[1] = static_cast<unsigned char>(value >> 16);
    b[2] = static_cast<unsigned char>(value >> 8);
    b[3] = static_cast<unsigned char>(value);
}

}  // namespace files
