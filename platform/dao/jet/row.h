// A row as a string of bytes: a fixed part, values of variable length with their places, and a mask that
// tells what is Null.
#pragma once

#include "platform/dao/jet/table_definition.h"

namespace jet {

// Reads the bytes of a row. Neither the bytes nor the definition are copied.
class RowView {
  public:
    RowView(const Format& format, const TableDefinition& definition, ByteView row);

    // Whether a column has a value. For Yes/No it is the value.
    bool has(const ColumnDefinition& column) const {
        return column.number < columns_ && (mask_[column.number / 8] >> (column.number % 8) & 1);
    }
    // The bytes of a column that has a value and is not Yes/No; of a long value its head.
    ByteView bytes(const ColumnDefinition& column) const;

  private:
    bool hasVariablePart(const TableDefinition& definition) const;
    void findVariablePart();
    size_t variableOffset(size_t index) const;

    const Format& format_;
    ByteView row_;
    size_t columns_;
    const uint8_t* mask_;
    size_t maskSize_;
    size_t variables_ = 0;    // how many of them this row has places for
    size_t firstOffset_ = 0;  // where the place of the first one stands
    size_t jumps_ = 0;        // of Access 97: bytes that tell where places pass 256, 512 ...
};

// Puts a row together. It is used for one row after the other.
class RowBuilder {
  public:
    RowBuilder(const Format& format, const TableDefinition& definition);

    void clear();
    // To be called for each column that has a value: appends its bytes to values(), then marks them.
    ByteWriter& values() { return values_; }
    void mark(size_t column, size_t begin);
    void markYes(size_t column);
    // The whole row; good until the next one.
    ByteView build();

  private:
    void buildOffsets(const std::vector<size_t>& offsets);

    struct Part {
        bool present = false;
        size_t begin = 0, end = 0;
    };
    const Format& format_;
    const TableDefinition& definition_;
    size_t fixedArea_;
    std::vector<int> columnOfVariable_;
    std::vector<Part> parts_;
    ByteWriter values_;
    ByteWriter row_;
    std::vector<size_t> offsets_;
};

}  // namespace jet
