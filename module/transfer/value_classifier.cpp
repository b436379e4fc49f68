#include "module/transfer/value_classifier.h"

#include <algorithm>

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

}  // namespace norvane
