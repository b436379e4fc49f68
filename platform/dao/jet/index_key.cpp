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
    // The keys of GUIDs have been seen in Access 97 only, those of the others never.
    bool known = column.type != Type::kBinary && column.type != Type::kOle && column.type != Type::kDecimal &&
                 (column.type != Type::kGuid || !store.format.unicode);
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

constexpr size_t kGuidHalf = 8;
constexpr uint8_t kAfterFirstHalf = 9, kAfterSecondHalf = 8;

void putGuid(ByteWriter& out, ByteView guid) {
    putBigEndian(out, guid.part(0, 4));
    putBigEndian(out, guid.part(4, 2));
    putBigEndian(out, guid.part(6, 2));
    out.u8(kAfterFirstHalf);
    out.put(guid.part(kGuidHalf, 8));
    out.u8(kAfterSecondHalf);
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
    // The mark between the halves of a GUID stays as it is.
    if (definition.type == Type::kGuid) out.bytes[begin + kGuidHalf] = kAfterFirstHalf;
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
