#include "platform/dao/jet/row.h"

#include <algorithm>

namespace jet {

RowView::RowView(const Format& format, const TableDefinition& definition, ByteView row)
    : format_(format), row_(row), columns_(format.unicode ? row.u16(0) : row.u8(0)) {
    maskSize_ = (columns_ + 7) / 8;
    if (maskSize_ > row.size()) damaged("a row is too short");
    mask_ = row.data() + row.size() - maskSize_;
    if (hasVariablePart(definition)) findVariablePart();
}

// A row that is older than the first variable column of its table has no places at all.
bool RowView::hasVariablePart(const TableDefinition& definition) const {
    if (definition.variableEver == 0) return false;
    if (columns_ >= definition.columnsEver) return true;
    const ColumnDefinition* next = nullptr;  // the first column made after the row
    for (const ColumnDefinition& column : definition.columns) {
        if (column.number < columns_) {
            if (!column.fixed()) return true;
        } else if (!next || column.number < next->number) {
            next = &column;
        }
    }
    return !next || next->variableIndex > 0;
}

void RowView::findVariablePart() {
    size_t countSize = format_.unicode ? 2 : 1;
    size_t tail = maskSize_ + countSize;
    if (tail > row_.size()) damaged("a row is too short");
    size_t countAt = row_.size() - tail;
    variables_ = format_.unicode ? row_.u16(countAt) : row_.u8(countAt);
    jumps_ = format_.unicode ? 0 : (row_.size() - 1) / 256;
    size_t places = (variables_ + 1) * countSize + jumps_;
    if (places > countAt) damaged("a row has more values than bytes");
    firstOffset_ = countAt - jumps_ - countSize;
    // Where the row passes 256 bytes only by its places, the last jump means nothing.
    if (jumps_ > 0 && (firstOffset_ - variables_) / 256 < jumps_) --jumps_;
}

size_t RowView::variableOffset(size_t index) const {
    if (format_.unicode) return row_.u16(firstOffset_ - 2 * index);
    size_t offset = row_.u8(firstOffset_ - index);
    size_t countAt = row_.size() - maskSize_ - 1;
    for (size_t jump = 1; jump <= jumps_; ++jump)
        if (row_.u8(countAt - jump) <= index) offset += 256;
    return offset;
}

ByteView RowView::bytes(const ColumnDefinition& column) const {
    if (column.fixed()) {
        size_t size = fixedSize(column.type) ? fixedSize(column.type) : column.length;
        return row_.part((format_.unicode ? 2 : 1) + column.fixedOffset, size);
    }
    if (column.variableIndex >= variables_) return {};
    size_t begin = variableOffset(column.variableIndex),
           end = variableOffset(column.variableIndex + size_t{1});
    if (begin > end) damaged("a value ends before it begins");
    return row_.part(begin, end - begin);
}

RowBuilder::RowBuilder(const Format& format, const TableDefinition& definition)
    : format_(format),
      definition_(definition),
      fixedArea_(definition.fixedArea()),
      columnOfVariable_(definition.variableEver, -1),
      parts_(definition.columns.size()) {
    for (size_t i = 0; i < definition.columns.size(); ++i) {
        const ColumnDefinition& column = definition.columns[i];
        if (column.fixed() || column.type == Type::kBoolean) continue;
        if (column.variableIndex >= columnOfVariable_.size()) damaged("a column has no place in the rows");
        columnOfVariable_[column.variableIndex] = static_cast<int>(i);
    }
}

void RowBuilder::clear() {
    values_.bytes.clear();
    std::fill(parts_.begin(), parts_.end(), Part());
}

void RowBuilder::mark(size_t column, size_t begin) {
    parts_[column] = {true, begin, values_.bytes.size()};
}

void RowBuilder::markYes(size_t column) {
    parts_[column].present = true;
}

ByteView RowBuilder::build() {
    Bytes& row = row_.bytes;
    row.clear();
    if (format_.unicode)
        row_.u16(definition_.columnsEver);
    else
        row_.u8(static_cast<uint8_t>(definition_.columnsEver));
    size_t fixedBegin = row.size();
    row_.fill(fixedArea_, 0);
    ByteView values(values_.bytes);
    for (size_t i = 0; i < parts_.size(); ++i) {
        const ColumnDefinition& column = definition_.columns[i];
        if (!column.fixed() || parts_[i].begin == parts_[i].end) continue;
        ByteSpan(row).set(fixedBegin + column.fixedOffset,
                          values.part(parts_[i].begin, parts_[i].end - parts_[i].begin));
    }
    if (definition_.variableEver > 0) {
        offsets_.clear();
        for (int column : columnOfVariable_) {
            offsets_.push_back(row.size());
            if (column < 0) continue;
            const Part& part = parts_[static_cast<size_t>(column)];
            row_.put(values.part(part.begin, part.end - part.begin));
        }
        offsets_.push_back(row.size());
        buildOffsets(offsets_);
    }
    size_t mask = row.size();
    row_.fill((definition_.columnsEver + size_t{7}) / 8, 0);
    for (size_t i = 0; i < parts_.size(); ++i) {
        uint16_t number = definition_.columns[i].number;
        if (parts_[i].present) row[mask + number / 8] |= static_cast<uint8_t>(1u << (number % 8));
    }
    return row;
}

// The places, from the last to the first, with their number behind them.
void RowBuilder::buildOffsets(const std::vector<size_t>& offsets) {
    if (format_.unicode) {
        for (size_t i = offsets.size(); i-- > 0;) row_.u16(static_cast<uint16_t>(offsets[i]));
        row_.u16(definition_.variableEver);
        return;
    }
    for (size_t i = offsets.size(); i-- > 0;) row_.u8(static_cast<uint8_t>(offsets[i]));
    // Behind them the jumps, of which there are as many as the length of the whole row tells.
    size_t rest = row_.bytes.size() + 1 + (definition_.columnsEver + size_t{7}) / 8;
    size_t jumps = 0;
    while ((rest + jumps - 1) / 256 > jumps) jumps = (rest + jumps - 1) / 256;
    for (size_t jump = jumps; jump > 0; --jump) {
        auto it = std::find_if(offsets.begin(), offsets.end(), [&](size_t o) { return o >= 256 * jump; });
        row_.u8(it == offsets.end() ? 0xFF : static_cast<uint8_t>(it - offsets.begin()));
    }
    row_.u8(static_cast<uint8_t>(definition_.variableEver));
}

}  // namespace jet
