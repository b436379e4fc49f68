#include "platform/dao/sqlite/functions.h"

#include <chrono>
#include <cmath>
#include <ctime>
#include <string>
#include <string_view>

#include "platform/dao/sqlite/statement.h"
#include "platform/text/text.h"

namespace dao::sqlite {
namespace {

// The arguments of a call. One that is Null makes the result Null.
struct Call {
    sqlite3_context* context;
    int count;
    sqlite3_value** arguments;

    std::string_view text(int i) const {
        auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(arguments[i]));
        return {bytes ? bytes : "", static_cast<size_t>(sqlite3_value_bytes(arguments[i]))};
    }
    double real(int i) const { return sqlite3_value_double(arguments[i]); }
    long whole(int i) const { return static_cast<long>(sqlite3_value_int64(arguments[i])); }
    void give(std::string_view s) const {
        sqlite3_result_text64(context, s.data(), s.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    void give(double v) const { sqlite3_result_double(context, v); }
    void give(long v) const { sqlite3_result_int64(context, v); }
    void give(const std::string& s) const { give(std::string_view(s)); }
    void fail(const char* what) const { sqlite3_result_error(context, what, -1); }
};

template <void (*Work)(const Call&)>
void run(sqlite3_context* context, int count, sqlite3_value** arguments) {
    for (int i = 0; i < count; ++i)
        if (sqlite3_value_type(arguments[i]) == SQLITE_NULL) return sqlite3_result_null(context);
    Work({context, count, arguments});
}

bool begins(char c) {
    return (c & 0xC0) != 0x80;  // a character, and does not go on with one
}

size_t length(std::string_view s) {
    size_t characters = 0;
    for (char c : s) characters += begins(c);
    return characters;
}

// Characters of a text from one on, counted from 0.
std::string_view part(std::string_view s, size_t from, size_t count) {
    size_t begin = 0, end = 0;
    auto skip = [&](size_t& at, size_t characters) {
        for (; at < s.size() && characters > 0; --characters)
            for (++at; at < s.size() && !begins(s[at]);) ++at;
    };
    skip(begin, from);
    end = begin;
    skip(end, count);
    return s.substr(begin, end - begin);
}

template <std::string (*Change)(std::string_view)>
void changeCase(const Call& call) {
    call.give(Change(call.text(0)));
}

void len(const Call& call) {
    call.give(static_cast<long>(length(call.text(0))));
}
void left(const Call& call) {
    if (call.whole(1) < 0) return call.fail("LEFT cannot give less than no characters");
    call.give(part(call.text(0), 0, static_cast<size_t>(call.whole(1))));
}
void right(const Call& call) {
    if (call.whole(1) < 0) return call.fail("RIGHT cannot give less than no characters");
    size_t all = length(call.text(0)), wanted = static_cast<size_t>(call.whole(1));
    call.give(part(call.text(0), all > wanted ? all - wanted : 0, all));
}
void mid(const Call& call) {
    bool open = call.count == 2;
    if (call.whole(1) < 1 || (!open && call.whole(2) < 0)) return call.fail("MID counts from 1");
    call.give(part(call.text(0), static_cast<size_t>(call.whole(1)) - 1,
                   open ? std::string_view::npos : static_cast<size_t>(call.whole(2))));
}

void intDown(const Call& call) {
    call.give(std::floor(call.real(0)));
}
void fix(const Call& call) {
    call.give(std::trunc(call.real(0)));
}
void val(const Call& call) {
    call.give(text::toReal(text::trimLeft(call.text(0))));
}
void toText(const Call& call) {
    call.give(call.text(0));
}
void toLong(const Call& call) {
    call.give(static_cast<long>(std::nearbyint(call.real(0))));
}
void toDouble(const Call& call) {
    call.give(call.real(0));
}
void toSingle(const Call& call) {
    call.give(static_cast<double>(static_cast<float>(call.real(0))));
}
// A date as tables keep it, so that it sorts; Null for what is none.
void toDate(const Call& call) {
    Date date;
    if (!dateFromText(call.text(0), date)) return sqlite3_result_null(call.context);
    call.give(dateAndTime(date));
}

void nz(sqlite3_context* context, int count, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[0]) != SQLITE_NULL) return sqlite3_result_value(context, arguments[0]);
    if (count > 1) return sqlite3_result_value(context, arguments[1]);
    sqlite3_result_text(context, "", 0, SQLITE_STATIC);
}

template <int Calendar::*Part>
void datePart(const Call& call) {
    Date date;
    if (!dateFromText(call.text(0), date)) return sqlite3_result_null(call.context);
    call.give(static_cast<long>(calendarOf(date).*Part));
}

// The moment on the clock on the wall, or the day alone.
template <bool WithTime>
void moment(const Call& call) {
    std::time_t time = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    localtime_r(&time, &local);
    char text[32];
    std::strftime(text, sizeof text, WithTime ? "%Y-%m-%d %H:%M:%S" : "%Y-%m-%d 00:00:00", &local);
    call.give(std::string_view(text));
}

struct Function {
    const char* name;
    int arguments;
    void (*work)(sqlite3_context*, int, sqlite3_value**);
    bool changes = false;  // with the time
};

constexpr Function kFunctions[] = {
    {"UCASE", 1, run<changeCase<text::upper>>},
    {"LCASE", 1, run<changeCase<text::lower>>},
    {"LEN", 1, run<len>},
    {"LEFT", 2, run<left>},
    {"RIGHT", 2, run<right>},
    {"MID", 2, run<mid>},
    {"MID", 3, run<mid>},
    {"INT", 1, run<intDown>},
    {"FIX", 1, run<fix>},
    {"VAL", 1, run<val>},
    {"CSTR", 1, run<toText>},
    {"CLNG", 1, run<toLong>},
    {"CDBL", 1, run<toDouble>},
    {"CSNG", 1, run<toSingle>},
    {"CDATE", 1, run<toDate>},
    {"NZ", 1, nz},
    {"NZ", 2, nz},
    {"YEAR", 1, run<datePart<&Calendar::year>>},
    {"MONTH", 1, run<datePart<&Calendar::month>>},
    {"DAY", 1, run<datePart<&Calendar::day>>},
    {"NOW", 0, run<moment<true>>, true},
    {"TODAY", 0, run<moment<false>>, true},
};

}  // namespace

void addFunctions(sqlite3* db) {
    for (const Function& function : kFunctions)
        sqlite3_create_function_v2(db, function.name, function.arguments,
                                   SQLITE_UTF8 | (function.changes ? 0 : SQLITE_DETERMINISTIC), nullptr,
                                   function.work, nullptr, nullptr, nullptr);
}

}  // namespace dao::sqlite
