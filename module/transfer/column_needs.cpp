#include "module/transfer/column_needs.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kIntegerWidth = 8, kWidestInteger = 11;
constexpr int kRealWidth = 12, kWidestReal = 24, kRealDecimals = 4;

// Each character is one byte there.
int widthOf(std::string_view utf8) {
    return static_cast<int>(std::count_if(
        utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

bool hasNeedlessZero(std::string_view number) {
    number = text::trimLeft(number);
    if (!number.empty() && (number.front() == '+' || number.front() == '-')) number.remove_prefix(1);
    return number.size() > 1 && number[0] == '0' && number[1] >= '0' && number[1] <= '9';
}

}  // namespace

void ColumnNeeds::add(std::string_view value, bool isTextField) {
    textWidth_ = std::max(textWidth_, widthOf(value));
    if (valueClass_ == ValueClass::kText) return;
    const ValueClass found = isTextField && hasNeedlessZero(value) ? ValueClass::kText : ClassifyValue(value);
    valueClass_ = std::min(valueClass_.value_or(found), found);
    if (found != ValueClass::kText) addNumber(value);
}

void ColumnNeeds::addNumber(std::string_view value) {
    const double number = text::toReal(value);
    // Most are far from the limits, and need not be written to be measured.
    constexpr double kFits = 999999;
    if (std::abs(number) < kFits) {
        integerWidth_ = std::max(integerWidth_, 1);
        return;
    }
    realWidth_ = std::max(realWidth_, static_cast<int>(text::format("%.*f", kRealDecimals, number).size()));
    integerWidth_ = std::max(integerWidth_, static_cast<int>(text::format("%.0f", number).size()));
    isBeyondInteger_ = isBeyondInteger_ || number < INT32_MIN || number > INT32_MAX;
}

void ColumnNeeds::add(const ColumnNeeds& other) {
    if (other.valueClass_)
        valueClass_ = std::min(valueClass_.value_or(*other.valueClass_), *other.valueClass_);
    textWidth_ = std::max(textWidth_, other.textWidth_);
    integerWidth_ = std::max(integerWidth_, other.integerWidth_);
    realWidth_ = std::max(realWidth_, other.realWidth_);
    isBeyondInteger_ = isBeyondInteger_ || other.isBeyondInteger_;
}

ColumnShape ColumnNeeds::shape() const {
    if (valueClass_ == ValueClass::kInteger && !isBeyondInteger_ && integerWidth_ <= kWidestInteger)
        return {kDbfInteger, std::max(integerWidth_, kIntegerWidth), 0};
    if (valueClass_ == ValueClass::kReal && realWidth_ <= kWidestReal)
        return {kDbfDouble, std::max(realWidth_, kRealWidth), kRealDecimals};
    return {kDbfString, std::clamp(textWidth_, kNarrowestText, kWidestText), 0};
}

}  // namespace norvane
