#include "platform/dao/jet/value_codec.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/text/text.h"

namespace jet {
namespace {

[[noreturn]] void doesNotFit(const ColumnDefinition& column) {
    throw Error("The value does not fit into the column " + column.name + ".");
}

double numberOf(const ColumnDefinition& column, const Value& value) {
    double number;
    if (!dao::numberOf(value, number)) doesNotFit(column);
    return number;
}

template <typename T>
void encodeWhole(const ColumnDefinition& column, const Value& value, ByteWriter& out) {
    double number = std::nearbyint(numberOf(column, value));
    if (!(number >= std::numeric_limits<T>::min() && number <= std::numeric_limits<T>::max()))
        doesNotFit(column);
    auto whole = static_cast<T>(number);
    out.put({reinterpret_cast<const uint8_t*>(&whole), sizeof whole});
}

void encodeCurrency(const ColumnDefinition& column, const Value& value, ByteWriter& out) {
    int64_t amount;
    if (value.is<dao::Currency>()) {
        amount = value.get<dao::Currency>().tenThousandths;
    } else {
        double number = std::nearbyint(numberOf(column, value) * 10000);
        if (!(std::fabs(number) < 9.2e18)) doesNotFit(column);
        amount = static_cast<int64_t>(number);
    }
    out.put({reinterpret_cast<const uint8_t*>(&amount), sizeof amount});
}

void encodeSingle(const ColumnDefinition& column, const Value& value, ByteWriter& out) {
    double number = numberOf(column, value);
    if (std::isfinite(number) && std::fabs(number) > static_cast<double>(std::numeric_limits<float>::max()))
        doesNotFit(column);
    auto single = static_cast<float>(number);
    out.put({reinterpret_cast<const uint8_t*>(&single), sizeof single});
}

// Decimal numbers: a sign, then four words of 32 bits, the highest first.
constexpr size_t kDecimalWords = 4;
using DecimalWords = std::array<uint32_t, kDecimalWords>;

std::string decimalText(ByteView bytes, int scale) {
    DecimalWords words;
    for (size_t i = 0; i < kDecimalWords; ++i) words[i] = bytes.u32(1 + 4 * i);
    std::string digits;
    while (words != DecimalWords{}) {
        uint64_t rest = 0;
        for (uint32_t& word : words) {
            uint64_t part = rest << 32 | word;
            word = static_cast<uint32_t>(part / 10);
            rest = part % 10;
        }
        digits.insert(digits.begin(), static_cast<char>('0' + rest));
    }
    auto places = static_cast<size_t>(scale);
    if (digits.size() <= places) digits.insert(0, places + 1 - digits.size(), '0');
    if (places > 0) digits.insert(digits.size() - places, ".");
    return (bytes.u8(0) && digits.find_first_not_of("0.") != std::string::npos ? "-" : "") + digits;
}

std::string decimalDigits(const ColumnDefinition& column, const Value& value) {
    if (value.is<std::string>()) return std::string(text::trim(value.get<std::string>()));
    return text::format("%.*f", column.scale, numberOf(column, value));
}

void encodeDecimal(const ColumnDefinition& column, const Value& value, ByteWriter& out) {
    std::string digits = decimalDigits(column, value);
    bool negative = digits.starts_with('-');
    if (negative || digits.starts_with('+')) digits.erase(0, 1);
    size_t point = digits.find('.');
    std::string fraction = point == std::string::npos ? "" : digits.substr(point + 1);
    digits = digits.substr(0, point);
    if (fraction.size() > column.scale && fraction.find_first_not_of('0', column.scale) != std::string::npos)
        doesNotFit(column);
    fraction.resize(column.scale, '0');
    digits += fraction;
    size_t leading = std::min(digits.find_first_not_of('0'), digits.size());
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos ||
        digits.size() - leading > std::min<size_t>(column.precision, 28))
        doesNotFit(column);
    DecimalWords words = {};
    for (char c : digits) {
        auto carry = static_cast<uint64_t>(c - '0');
        for (size_t i = kDecimalWords; i-- > 0;) {
            carry += uint64_t{words[i]} * 10;
            words[i] = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
    }
    out.u8(negative ? 0x80 : 0);
    for (uint32_t word : words) out.u32(word);
}

void encodeText(const TextCodec& text, const ColumnDefinition& column, const Value& value, ByteWriter& out) {
    if (!value.is<std::string>()) doesNotFit(column);
    const std::string& s = value.get<std::string>();
    // The size of a column is told in bytes of uncompressed text.
    size_t most = column.length / text.unitSize();
    if (s.size() > most && text.length(s) > most)
        throw Error("The text for the column " + column.name + " is too long: it holds " +
                    std::to_string(most) + " characters.");
    size_t begin = out.bytes.size();
    text.encode(out, s, column.compressed && !column.fixed());
    // Text of a fixed size is filled up with blanks.
    while (column.fixed() && out.bytes.size() - begin < column.length) {
        out.u8(' ');
        if (text.unitSize() == 2) out.u8(0);
    }
}

void encodeBinary(const ColumnDefinition& column, const Value& value, ByteWriter& out) {
    if (!value.is<dao::Binary>() || value.get<dao::Binary>().size() > column.length) doesNotFit(column);
    out.put(ByteView(value.get<dao::Binary>()));
    if (column.fixed()) out.fill(column.length - value.get<dao::Binary>().size(), 0);
}

}  // namespace

Value decodeValue(const TextCodec& text, const ColumnDefinition& column, ByteView bytes) {
    switch (column.type) {
        case Type::kByte:
            return Value(bytes.u8(0));
        case Type::kInteger:
            return Value(static_cast<int16_t>(bytes.u16(0)));
        case Type::kLong:
            return Value(static_cast<int32_t>(bytes.u32(0)));
        case Type::kCurrency:
            return Value(dao::Currency{static_cast<int64_t>(bytes.u64(0))});
        case Type::kSingle:
            return Value(bytes.single(0));
        case Type::kDouble:
            return Value(bytes.real(0));
        case Type::kDate:
            return Value(dao::Date{bytes.real(0)});
        case Type::kText:
            return Value(text.decode(bytes));
        case Type::kGuid:
            return Value(guidText(bytes));
        case Type::kDecimal:
            return Value(decimalText(bytes, column.scale));
        default:
            return Value(bytes.copy());
    }
}

void encodeValue(const TextCodec& text, const ColumnDefinition& column, const Value& value, ByteWriter& out) {
    switch (column.type) {
        case Type::kByte:
            return encodeWhole<uint8_t>(column, value, out);
        case Type::kInteger:
            return encodeWhole<int16_t>(column, value, out);
        case Type::kLong:
            return encodeWhole<int32_t>(column, value, out);
        case Type::kCurrency:
            return encodeCurrency(column, value, out);
        case Type::kSingle:
            return encodeSingle(column, value, out);
        case Type::kDouble:
        case Type::kDate:
            return out.real(numberOf(column, value));
        case Type::kText:
            return encodeText(text, column, value, out);
        case Type::kGuid:
            if (!value.is<std::string>() || !guidBytes(value.get<std::string>(), out)) doesNotFit(column);
            return;
        case Type::kDecimal:
            return encodeDecimal(column, value, out);
        default:
            return encodeBinary(column, value, out);
    }
}

bool isYes(const Value& value) {
    if (value.is<bool>()) return value.get<bool>();
    static const ColumnDefinition kYesNo = [] {
        ColumnDefinition column;
        column.name = "Yes/No";
        return column;
    }();
    return numberOf(kYesNo, value) != 0;
}

std::string guidText(ByteView bytes) {
    return text::format("{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", bytes.u32(0), bytes.u16(4),
                        bytes.u16(6), bytes.u8(8), bytes.u8(9), bytes.u8(10), bytes.u8(11), bytes.u8(12),
                        bytes.u8(13), bytes.u8(14), bytes.u8(15));
}

bool guidBytes(std::string_view text, ByteWriter& out) {
    if (text.starts_with('{') && text.ends_with('}')) text = text.substr(1, text.size() - 2);
    constexpr std::array<size_t, 5> kGroups = {8, 4, 4, 4, 12};
    std::array<uint64_t, 5> numbers;
    for (size_t i = 0; i < kGroups.size(); ++i) {
        size_t size = kGroups[i];
        if (text.size() < size + (i < 4 ? 1 : 0) || (i < 4 && text[size] != '-')) return false;
        auto [end, error] = std::from_chars(text.data(), text.data() + size, numbers[i], 16);
        if (error != std::errc() || end != text.data() + size) return false;
        text.remove_prefix(size + (i < 4 ? 1 : 0));
    }
    if (!text.empty()) return false;
    out.u32(static_cast<uint32_t>(numbers[0]));
    out.u16(static_cast<uint16_t>(numbers[1]));
    out.u16(static_cast<uint16_t>(numbers[2]));
    for (int shift : {8, 0}) out.u8(static_cast<uint8_t>(numbers[3] >> shift));
    for (int shift : {40, 32, 24, 16, 8, 0}) out.u8(static_cast<uint8_t>(numbers[4] >> shift));
    return true;
}

}  // namespace jet
