#include "module/transfer/value_classifier.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "platform/text/text.h"

namespace norvane {

ValueClass ClassifyValue(std::string_view value) {
    const std::string_view number = text::trimLeft(value);
    std::string_view digits = number;
    if (!digits.empty() && (digits.front() == '+' || digits.front() == '-')) digits.remove_prefix(1);
    const bool isWhole = !digits.empty() && std::all_of(digits.begin(), digits.end(),
                                                        [](char c) { return c >= '0' && c <= '9'; });
    if (isWhole) return ValueClass::kInteger;
    return text::wholeReal(number) ? ValueClass::kReal : ValueClass::kText;
}

bool FitsLong(std::string_view integer) {
    const std::string_view number = text::trimLeft(integer);
    const bool hasPlus = !number.empty() && number.front() == '+';
    int32_t value = 0;
    const char* end = number.data() + number.size();
    const auto read = std::from_chars(number.data() + (hasPlus ? 1 : 0), end, value);
    return read.ec == std::errc() && read.ptr == end;
}

}  // namespace norvane
