// Bytes of a file as numbers.
//
// Every offset and count that comes from a file passes through a ByteView or a ByteSpan. They are the one
// place where it is checked, so that a damaged file gives an error and never a reading or writing outside its
// page.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/jet/error.h"

namespace jet {

using Bytes = std::vector<uint8_t>;

// Bytes that are read. It owns nothing.
class ByteView {
  public:
    ByteView() = default;
    ByteView(const uint8_t* data, size_t size) : data_(data), size_(size) {}
    ByteView(const Bytes& bytes) : ByteView(bytes.data(), bytes.size()) {}
    explicit ByteView(std::string_view bytes)
        : ByteView(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()) {}

    const uint8_t* data() const { return data_; }
    size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    std::string_view text() const { return {reinterpret_cast<const char*>(data_), size_}; }
    Bytes copy() const { return size_ ? Bytes(data_, data_ + size_) : Bytes(); }

    ByteView part(size_t at, size_t size) const {
        require(at, size);
        return {data_ + at, size};
    }
    ByteView from(size_t at) const {
        require(at, 0);
        return {data_ + at, size_ - at};
    }

    uint8_t u8(size_t at) const {
        require(at, 1);
        return data_[at];
    }
    uint16_t u16(size_t at) const { return number<uint16_t>(at); }
    uint32_t u24(size_t at) const {
        require(at, 3);
        return data_[at] | uint32_t{data_[at + 1]} << 8 | uint32_t{data_[at + 2]} << 16;
    }
    uint32_t u32(size_t at) const { return number<uint32_t>(at); }
    uint64_t u64(size_t at) const { return number<uint64_t>(at); }
    double real(size_t at) const { return number<double>(at); }
    float single(size_t at) const { return number<float>(at); }
    uint32_t bigEndian24(size_t at) const {
        require(at, 3);
        return uint32_t{data_[at]} << 16 | uint32_t{data_[at + 1]} << 8 | data_[at + 2];
    }
    uint32_t bigEndian32(size_t at) const {
        require(at, 4);
        return uint32_t{data_[at]} << 24 | bigEndian24(at + 1);
    }

  private:
    // The machine's order of bytes is that of the files.
    template <typename T>
    T number(size_t at) const {
        require(at, sizeof(T));
        T value;
        std::memcpy(&value, data_ + at, sizeof value);
        return value;
    }
    void require(size_t at, size_t size) const {
        if (at > size_ || size > size_ - at) damaged("a value lies outside its page");
    }

    const uint8_t* data_ = nullptr;
    size_t size_ = 0;
};

// Bytes that are written as well. It owns nothing.
class ByteSpan {
  public:
    ByteSpan(uint8_t* data, size_t size) : data_(data), size_(size) {}
    explicit ByteSpan(Bytes& bytes) : ByteSpan(bytes.data(), bytes.size()) {}

    operator ByteView() const { return {data_, size_}; }
    ByteView view() const { return *this; }
    size_t size() const { return size_; }

    void setU8(size_t at, uint8_t value) { set(at, &value, 1); }
    void setU16(size_t at, uint16_t value) { set(at, &value, 2); }
    void setU24(size_t at, uint32_t value) { set(at, &value, 3); }
    void setU32(size_t at, uint32_t value) { set(at, &value, 4); }
    void set(size_t at, ByteView bytes) { set(at, bytes.data(), bytes.size()); }
    void fill(size_t at, size_t size, uint8_t value) {
        require(at, size);
        std::memset(data_ + at, value, size);
    }
    // Moves bytes within the page; the two places may overlap.
    void move(size_t to, size_t from, size_t size) {
        require(from, size);
        require(to, size);
        std::memmove(data_ + to, data_ + from, size);
    }

  private:
    void set(size_t at, const void* from, size_t size) {
        require(at, size);
        if (size) std::memcpy(data_ + at, from, size);
    }
    void require(size_t at, size_t size) const {
        if (at > size_ || size > size_ - at) damaged("a value lies outside its page");
    }

    uint8_t* data_;
    size_t size_;
};

// Builds a run of bytes.
class ByteWriter {
  public:
    Bytes bytes;

    void u8(uint8_t value) { bytes.push_back(value); }
    void u16(uint16_t value) { raw(&value, 2); }
    void u24(uint32_t value) { raw(&value, 3); }
    void u32(uint32_t value) { raw(&value, 4); }
    void real(double value) { raw(&value, 8); }
    void put(ByteView view) { raw(view.data(), view.size()); }
    void fill(size_t size, uint8_t value) { bytes.insert(bytes.end(), size, value); }
    void bigEndian24(uint32_t value) {
        for (int shift : {16, 8, 0}) u8(static_cast<uint8_t>(value >> shift));
    }
    void bigEndian32(uint32_t value) {
        u8(static_cast<uint8_t>(value >> 24));
        bigEndian24(value & 0xFFFFFF);
    }

  private:
    void raw(const void* from, size_t size) {
        const auto* begin = static_cast<const uint8_t*>(from);
        bytes.insert(bytes.end(), begin, begin + size);
    }
};

}  // namespace jet
