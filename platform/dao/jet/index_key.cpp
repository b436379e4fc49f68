#include "platform/dao/jet/index_key.h"

#include <algorithm>

#include "platform/dao/jet/text_order.h"

namespace jet {
namespace {

constexpr uint8_t kNullUp = 0x00, kNullDown = 0xFF, kValueUp = 0x7F, kValueDown = 0x80;

bool isText(Type type) {
    return type == Type::kText || type == Type::kMemo;
}

std::string obstacleOf(const Store& store, const ColumnDefinition& column) {
    if (isText(column.type)) {
        bool general = column.sortOrder == kGeneralOrder && column.sortVersion == 0;
        if (general && (store.format.unicode || store.text.codePage() == 1252)) return "";
        return "the sort order of the column " + column.name + " is not known";
    }
    // The keys of these have never been seen.
    bool known =
        column.type != Type::kOle && column.type != Type::kDecimal && column.type != Type::kLargeBinary;
    return known ? "" : "the column " + column.name + " is of a type whose order is not known";
}

// The bytes of a number, highest first.
void putBigEndian(ByteWriter& out, ByteView bytes) {
    for (size_t i = bytes.size(); i-- > 0;) out.u8(bytes.u8(i));
}

// So that negative numbers come before positive ones.
void putSigned(ByteWriter& out, ByteView bytes) {
    size_t begin = out.bytes.size();
    putBigEndian(out, bytes);
    out.bytes[begin] ^= 0x80;
}

void putReal(ByteWriter& out, ByteView bytes) {
    size_t begin = out.bytes.size();
    putBigEndian(out, bytes);
    if (out.bytes[begin] & 0x80)
        for (size_t i = begin; i < out.bytes.size(); ++i) out.bytes[i] = static_cast<uint8_t>(~out.bytes[i]);
    else
        out.bytes[begin] |= 0x80;
}

// Binary data goes in pieces of eight bytes, the last one filled up with zeros. Behind each piece stands how
// many bytes of it count, or a nine where another piece follows.
constexpr size_t kPiece = 8;
constexpr uint8_t kMore = 9;

void putBinary(ByteWriter& out, ByteView bytes) {
    for (; bytes.size() > kPiece; bytes = bytes.from(kPiece)) {
        out.put(bytes.part(0, kPiece));
        out.u8(kMore);
    }
    out.put(bytes);
    out.fill(kPiece - bytes.size(), 0);
    out.u8(static_cast<uint8_t>(bytes.size()));
}

// A GUID is binary data in the order in which it is written.
void putGuid(ByteWriter& out, ByteView guid) {
    ByteWriter written;
    putBigEndian(written, guid.part(0, 4));
    putBigEndian(written, guid.part(4, 2));
    putBigEndian(written, guid.part(6, 2));
    written.put(guid.part(8, 8));
    putBinary(out, written.bytes);
}

void putValue(const Store& store, const ColumnDefinition& column, const Value& value, ByteWriter& out) {
    if (column.type == Type::kBoolean) return out.u8(isYes(value) ? 0x00 : 0xFF);
    if (isText(column.type)) {
        if (!value.is<std::string>())
            throw Error("The value does not fit into the column " + column.name + ".");
        const std::string& s = value.get<std::string>();
        return out.put(store.format.unicode ? textKey4(s) : textKey3(s));
    }
    ByteWriter bytes;
    encodeValue(store.text, column, value, bytes);
    switch (column.type) {
        case Type::kByte:
            return out.put(bytes.bytes);
        case Type::kSingle:
        case Type::kDouble:
        case Type::kDate:
            return putReal(out, bytes.bytes);
        case Type::kGuid:
            return putGuid(out, bytes.bytes);
        case Type::kBinary:
            return putBinary(out, bytes.bytes);
        default:
            return putSigned(out, bytes.bytes);
    }
}

}  // namespace

KeyMaker::KeyMaker(const Store& store, const TableDefinition& table, const IndexDefinition& index)
    : store_(store), table_(table), index_(index) {
    for (const IndexColumn& column : index.columns) {
        int position = table.columnOf(column.number);
        if (position < 0) damaged("an index has a column that does not exist");
        columns_.push_back(static_cast<size_t>(position));
        if (obstacle_.empty()) obstacle_ = obstacleOf(store, table.columns[columns_.back()]);
    }
}

void KeyMaker::append(ByteWriter& out, size_t column, const Value& value) const {
    const ColumnDefinition& definition = table_.columns[columns_[column]];
    bool ascending = index_.columns[column].ascending;
    if (value.isNull() && definition.type != Type::kBoolean) return out.u8(ascending ? kNullUp : kNullDown);
    out.u8(ascending ? kValueUp : kValueDown);
    size_t begin = out.bytes.size();
    putValue(store_, definition, value, out);
    if (ascending) return;
    for (size_t i = begin; i < out.bytes.size(); ++i) out.bytes[i] = static_cast<uint8_t>(~out.bytes[i]);
    if (store_.format.unicode && isText(definition.type)) out.u8(0);
    // The marks between pieces stay as they are.
    if (definition.type == Type::kGuid || definition.type == Type::kBinary)
        for (size_t mark = begin + kPiece; mark + 1 < out.bytes.size(); mark += kPiece + 1)
            out.bytes[mark] = kMore;
}

std::optional<KeyMaker::Key> KeyMaker::key(const std::vector<Value>& values) const {
    size_t nulls =
        static_cast<size_t>(std::count_if(values.begin(), values.end(), [](auto& v) { return v.isNull(); }));
    if (nulls == values.size() && (index_.flags & IndexDefinition::kIgnoreNulls)) return std::nullopt;
    ByteWriter out;
    for (size_t i = 0; i < columns_.size(); ++i) append(out, i, values[i]);
    return Key{std::move(out.bytes), nulls > 0};
}

}  // namespace jet
