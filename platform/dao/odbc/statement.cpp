#include "platform/dao/odbc/statement.h"

#include <algorithm>
#include <charconv>

#include "platform/dao/errors.h"
#include "platform/dao/odbc/wide_text.h"
#include "platform/text/text.h"

namespace dao::odbc {
namespace {

// Units of a name or a value that are read at once.
constexpr size_t kPiece = 2048;
constexpr size_t kLongestName = 512;
// Longer text and data go by the types without a limit.
constexpr size_t kLongValue = 4000;

// Reads digits with a point; false for anything else, and for what does not fit.
bool moneyFromText(std::string_view s, Currency& amount) {
    bool negative = !s.empty() && s.front() == '-';
    if (negative) s.remove_prefix(1);
    int64_t value = 0;
    int decimals = -1;
    for (char c : s) {
        if (c == '.' && decimals < 0) {
            decimals = 0;
            continue;
        }
        if (c < '0' || c > '9' || decimals == 4) return false;
        if (__builtin_mul_overflow(value, int64_t{10}, &value) ||
            __builtin_add_overflow(value, c - '0', &value))
            return false;
        if (decimals >= 0) ++decimals;
    }
    for (decimals = std::max(decimals, 0); decimals < 4; ++decimals)
        if (__builtin_mul_overflow(value, int64_t{10}, &value)) return false;
    amount.tenThousandths = negative ? -value : value;
    return true;
}

SQL_TIMESTAMP_STRUCT timestampOf(Date date) {
    Calendar c = calendarOf(date);
    SQL_TIMESTAMP_STRUCT stamp{};
    stamp.year = static_cast<SQLSMALLINT>(c.year);
    stamp.month = static_cast<SQLUSMALLINT>(c.month);
    stamp.day = static_cast<SQLUSMALLINT>(c.day);
    stamp.hour = static_cast<SQLUSMALLINT>(c.hour);
    stamp.minute = static_cast<SQLUSMALLINT>(c.minute);
    stamp.second = static_cast<SQLUSMALLINT>(c.second);
    return stamp;
}

// What a value is bound with.
struct Binding {
    SQLSMALLINT targetType = SQL_C_CHAR;
    SQLSMALLINT sqlType = SQL_VARCHAR;
    SQLULEN size = 1;
    SQLSMALLINT decimals = 0;
    SQLPOINTER data = nullptr;
};

SQLPOINTER address(const void* p) {
    return const_cast<void*>(p);
}

}  // namespace

Statement::Statement(SQLHDBC connection) : handle_(SQL_HANDLE_STMT, connection) {}

void Statement::execute(const std::string& sql, const std::vector<Variant>& parameters) {
    if (!parameters.empty()) {
        prepare(sql);
        SQLSMALLINT wanted = 0;
        if (SQL_SUCCEEDED(SQLNumParams(handle(), &wanted)))
            requireParameters(static_cast<size_t>(wanted), parameters.size());
        int number = 1;
        for (const Variant& value : parameters) bind(number++, value);
        return executePrepared();
    }
    std::vector<SQLWCHAR> wide = toWide(sql);
    check(SQLExecDirectW(handle(), wide.data(), static_cast<SQLINTEGER>(wide.size())), handle_);
}

void Statement::prepare(const std::string& sql) {
    std::vector<SQLWCHAR> wide = toWide(sql);
    check(SQLPrepareW(handle(), wide.data(), static_cast<SQLINTEGER>(wide.size())), handle_);
}

void Statement::bind(int number, const Variant& value) {
    Parameter& p = parameters_.emplace_back();
    Binding b;
    auto asNumber = [&](std::string digits, SQLSMALLINT sqlType, SQLULEN size, SQLSMALLINT decimals) {
        p.narrow = std::move(digits);
        p.length = static_cast<SQLLEN>(p.narrow.size());
        b = {SQL_C_CHAR, sqlType, size, decimals, p.narrow.data()};
    };
    auto asWhole = [&](int whole) {
        p.number = whole;
        b = {SQL_C_SLONG, SQL_INTEGER, 10, 0, &p.number};
    };
    struct Visitor {
        Parameter& p;
        Binding& b;
        decltype(asNumber)& number;
        decltype(asWhole)& whole;
        void operator()(std::monostate) const { p.length = SQL_NULL_DATA; }
        void operator()(bool v) const { number(v ? "1" : "0", SQL_BIT, 1, 0); }
        void operator()(uint8_t v) const { whole(v); }
        void operator()(int16_t v) const { whole(v); }
        void operator()(int32_t v) const { whole(v); }
        // Drivers turn reals into text with too few digits; this is done better here.
        void operator()(float v) const { number(exactText(v), SQL_REAL, 7, 0); }
        void operator()(double v) const { number(exactText(v), SQL_DOUBLE, 15, 0); }
        void operator()(Currency v) const { number(exactText(v), SQL_DECIMAL, 19, 4); }
        void operator()(Date v) const {
            p.date = timestampOf(v);
            b = {SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 19, 0, &p.date};
        }
        void operator()(const std::string& v) const {
            p.wide = toWide(v);
            p.length = static_cast<SQLLEN>(p.wide.size() * sizeof(SQLWCHAR));
            bool isLong = p.wide.size() > kLongValue;
            b = {SQL_C_WCHAR, static_cast<SQLSMALLINT>(isLong ? SQL_WLONGVARCHAR : SQL_WVARCHAR),
                 p.wide.empty() ? 1 : p.wide.size(), 0, p.wide.data()};
            p.wide.push_back(0);
            b.data = p.wide.data();
        }
        void operator()(const Binary& v) const {
            p.bytes = v;
            p.length = static_cast<SQLLEN>(v.size());
            if (p.bytes.empty()) p.bytes.push_back(0);
            bool isLong = v.size() > kLongValue;
            b = {SQL_C_BINARY, static_cast<SQLSMALLINT>(isLong ? SQL_LONGVARBINARY : SQL_VARBINARY),
                 v.empty() ? 1 : v.size(), 0, p.bytes.data()};
        }
    };
    std::visit(Visitor{p, b, asNumber, asWhole}, value.content());
    check(SQLBindParameter(handle(), static_cast<SQLUSMALLINT>(number), SQL_PARAM_INPUT, b.targetType,
                           b.sqlType, b.size, b.decimals, address(b.data), std::max<SQLLEN>(p.length, 0),
                           &p.length),
          handle_);
}

void Statement::executePrepared() {
    SQLRETURN result = SQLExecute(handle());
    std::string error;
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA)
        error = sentenceOf(diagnosticsOf(SQL_HANDLE_STMT, handle()));
    SQLFreeStmt(handle(), SQL_RESET_PARAMS);
    parameters_.clear();
    if (!error.empty()) throw CDaoException("The server cannot do that: " + error);
}

bool Statement::fetch() {
    SQLRETURN result = SQLFetch(handle());
    if (SQL_SUCCEEDED(result)) return true;
    check(result, handle_);
    SQLFreeStmt(handle(), SQL_CLOSE);
    return false;
}

int Statement::columns() {
    SQLSMALLINT count = 0;
    check(SQLNumResultCols(handle(), &count), handle_);
    return count;
}

Column Statement::describe(int number) {
    Column column;
    auto n = static_cast<SQLUSMALLINT>(number);
    SQLWCHAR name[kLongestName] = {};
    SQLSMALLINT units = 0, decimals = 0, nullable = SQL_NULLABLE_UNKNOWN;
    SQLULEN size = 0;
    check(SQLDescribeColW(handle(), n, name, kLongestName, &units, &column.sqlType, &size, &decimals,
                          &nullable),
          handle_);
    column.name = fromWide(
        name, std::min<size_t>(static_cast<size_t>(std::max<SQLSMALLINT>(units, 0)), kLongestName - 1));
    column.size = static_cast<long>(size);
    column.decimals = decimals;
    column.nullable = nullable != SQL_NO_NULLS;
    return column;
}

void Statement::describeFully(int number, Column& column) {
    SQLWCHAR name[kLongestName] = {};
    SQLSMALLINT bytes = 0;
    SQLLEN counts = SQL_FALSE;
    if (SQL_SUCCEEDED(SQLColAttributeW(handle(), static_cast<SQLUSMALLINT>(number), SQL_DESC_TYPE_NAME, name,
                                       sizeof name, &bytes, nullptr)))
        column.typeName = fromWide(
            name,
            std::min<size_t>(static_cast<size_t>(std::max<SQLSMALLINT>(bytes, 0)) / 2, kLongestName - 1));
    if (SQL_SUCCEEDED(SQLColAttributeW(handle(), static_cast<SQLUSMALLINT>(number),
                                       SQL_DESC_AUTO_UNIQUE_VALUE, nullptr, 0, nullptr, &counts)))
        column.counts = counts == SQL_TRUE;
}

// False: Null, or not to be had in this form.
template <typename Target>
bool Statement::get(int column, SQLSMALLINT targetType, Target& target) {
    SQLLEN length = 0;
    SQLRETURN result =
        SQLGetData(handle(), static_cast<SQLUSMALLINT>(column), targetType, &target, sizeof target, &length);
    return SQL_SUCCEEDED(result) && length != SQL_NULL_DATA;
}

Variant Statement::textValue(int column) {
    std::string out;
    // Pieces are joined before they are decoded: a character may be cut in two.
    std::vector<SQLWCHAR> all;
    for (SQLWCHAR piece[kPiece];;) {
        SQLLEN bytes = 0;
        SQLRETURN result =
            SQLGetData(handle(), static_cast<SQLUSMALLINT>(column), SQL_C_WCHAR, piece, sizeof piece, &bytes);
        if (result == SQL_NO_DATA) break;
        check(result, handle_);
        if (bytes == SQL_NULL_DATA) return {};
        bool more = bytes == SQL_NO_TOTAL || bytes >= static_cast<SQLLEN>(sizeof piece);
        size_t units = more ? kPiece - 1 : static_cast<size_t>(bytes) / sizeof(SQLWCHAR);
        if (!more && all.empty()) return Variant(fromWide(piece, units));
        all.insert(all.end(), piece, piece + units);
        if (!more) break;
    }
    return Variant(fromWide(all.data(), all.size()));
}

Variant Statement::binaryValue(int column) {
    Binary all;
    for (unsigned char piece[kPiece];;) {
        SQLLEN bytes = 0;
        SQLRETURN result = SQLGetData(handle(), static_cast<SQLUSMALLINT>(column), SQL_C_BINARY, piece,
                                      sizeof piece, &bytes);
        if (result == SQL_NO_DATA) break;
        check(result, handle_);
        if (bytes == SQL_NULL_DATA) return {};
        bool more = bytes == SQL_NO_TOTAL || bytes > static_cast<SQLLEN>(sizeof piece);
        all.insert(all.end(), piece, piece + (more ? sizeof piece : static_cast<size_t>(bytes)));
        if (!more) break;
    }
    return Variant(std::move(all));
}

Variant Statement::dateValue(int column, SQLSMALLINT sqlType) {
    Date date;
    if (sqlType == SQL_TYPE_TIME || sqlType == SQL_TIME) {
        SQL_TIME_STRUCT time{};
        // A time alone is one of the day from which dates count.
        if (get(column, SQL_C_TYPE_TIME, time) &&
            dateFromCalendar(1899, 12, 30, time.hour, time.minute, time.second, date))
            return Variant(date);
        return {};
    }
    SQL_TIMESTAMP_STRUCT stamp{};
    if (get(column, SQL_C_TYPE_TIMESTAMP, stamp) &&
        dateFromCalendar(stamp.year, stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second, date))
        return Variant(date);
    return {};
}

Variant Statement::value(int column, const Column& description, int fieldType) {
    SQLINTEGER whole = 0;
    double real = 0;
    switch (fieldType) {
        case dbBoolean: {
            unsigned char bit = 0;
            return get(column, SQL_C_BIT, bit) ? Variant(bit != 0) : Variant();
        }
        case dbByte:
            return get(column, SQL_C_SLONG, whole) ? Variant(static_cast<uint8_t>(whole)) : Variant();
        case dbInteger:
            return get(column, SQL_C_SLONG, whole) ? Variant(static_cast<int16_t>(whole)) : Variant();
        case dbLong:
            return get(column, SQL_C_SLONG, whole) ? Variant(static_cast<int32_t>(whole)) : Variant();
        case dbSingle:
            return get(column, SQL_C_DOUBLE, real) ? Variant(static_cast<float>(real)) : Variant();
        case dbDouble:
            return get(column, SQL_C_DOUBLE, real) ? Variant(real) : Variant();
        case dbCurrency: {
            Variant digits = textValue(column);
            Currency amount;
            if (digits.isNull() || !moneyFromText(digits.get<std::string>(), amount)) return digits;
            return Variant(amount);
        }
        case dbDate:
            return dateValue(column, description.sqlType);
        case dbBinary:
        case dbLongBinary:
            return binaryValue(column);
        default:
            return textValue(column);
    }
}

std::string Statement::text(int column) {
    Variant value = textValue(column);
    return value.isNull() ? "" : value.get<std::string>();
}

long Statement::changed() {
    SQLLEN rows = -1;
    return SQL_SUCCEEDED(SQLRowCount(handle(), &rows)) ? static_cast<long>(rows) : -1;
}

}  // namespace dao::odbc
