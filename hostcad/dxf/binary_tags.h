// The groups of a binary file: the code in one byte (R12) or two, then the value in the form of its code.
#pragma once

#include <bit>
#include <cstring>
#include <string>
#include <string_view>

#include "hostcad/drawing/group.h"
#include "hostcad/dxf/binary_codes.h"
#include "hostcad/dxf/dxf_error.h"

namespace hostcad {

static_assert(std::endian::native == std::endian::little, "values are copied as they lie in the file");

class BinaryTags {
  public:
    // The content of a file that begins with kBinarySentinel.
    explicit BinaryTags(std::string_view content) : content_(content), position_(kBinarySentinel.size()) {
        // The first group is 0, SECTION: its name begins behind one zero byte or two.
        shortCodes_ = content.size() > position_ + 1 && content[position_ + 1] != 0;
    }

    bool hasShortCodes() const { return shortCodes_; }
    // It has no lines.
    size_t oddLine() const { return 0; }
    // Something but zeros and end marks follows.
    bool hasMore() const {
        return content_.find_first_not_of(std::string_view("\0\x1A", 2), position_) != std::string_view::npos;
    }

    bool next() {
        start_ = position_;
        if (position_ == content_.size()) return false;
        code_ = shortCodes_ ? take<uint8_t>() : take<int16_t>();
        if (shortCodes_ && code_ == 255) code_ = take<int16_t>();
        if (code_ < 0 || code_ > kLastGroupCode)
            fail("group code " + std::to_string(code_) + " is out of range");
        switch (binaryValueOf(code_)) {
            case BinaryValue::Text:
                takeText();
                break;
            case BinaryValue::Real:
                real_ = take<double>();
                break;
            case BinaryValue::Int8:
                integer_ = take<uint8_t>();
                break;
            case BinaryValue::Int16:
                integer_ = take<int16_t>();
                break;
            case BinaryValue::Int32:
                integer_ = take<int32_t>();
                break;
            case BinaryValue::Int64:
                integer_ = take<int64_t>();
                break;
            case BinaryValue::Chunk:
                takeBytes(take<uint8_t>());
                break;
        }
        return true;
    }

    int code() const { return code_; }
    std::string_view text() const { return bytes_; }
    double real() const { return real_; }
    int64_t integer() const { return integer_; }
    bool chunk(std::string& bytes) const {
        bytes = bytes_;
        return true;
    }

    // Where the present group stands, as messages name it.
    std::string place() const { return "Byte " + std::to_string(start_); }

    [[noreturn]] void fail(const std::string& what) const { throw DxfError(place() + ": " + what + "."); }

  private:
    template <class T>
    T take() {
        T value;
        if (content_.size() - position_ < sizeof value) fail("the file ends within a group");
        std::memcpy(&value, content_.data() + position_, sizeof value);
        position_ += sizeof value;
        return value;
    }

    void takeBytes(size_t count) {
        if (content_.size() - position_ < count) fail("the file ends within a group");
        bytes_ = content_.substr(position_, count);
        position_ += count;
    }

    void takeText() {
        size_t end = content_.find('\0', position_);
        if (end == std::string_view::npos) fail("the file ends within a text");
        takeBytes(end - position_);
        ++position_;
    }

    std::string_view content_;
    size_t position_;
    size_t start_ = 0;
    bool shortCodes_ = false;
    int code_ = 0;
    double real_ = 0;
    int64_t integer_ = 0;
    std::string_view bytes_;
};

}  // namespace hostcad
