// Numbers and dates as labels write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/dao/variant.h"

namespace norvane {

// A number in digits with so many decimals (0 to 15), halves away from zero as on paper: 2.345 becomes 2.35,
// though the real that stands for it is a little less.
std::string RoundedText(double value, int decimals);

// The pattern of FORMAT: 0 and # are digits, the first always written and the second where there is one; a
// comma among them parts thousands. YYYY, YY, MM, M, DD, D, HH, H, NN, N (minutes), SS and S are parts of a
// date. What else stands in it is written as it stands.
class ValueFormat {
  public:
    // Nothing for a pattern that has neither digits nor parts of a date, or more than 15 decimals or 200
    // bytes.
    static std::optional<ValueFormat> read(std::string_view pattern);

    std::string numberText(double number) const;
    std::string dateText(dao::Date date) const;

  private:
    std::string pattern_;
    // Of the digits: where they stand in the pattern.
    size_t begin_ = 0, end_ = 0;
    size_t leastDigits_ = 0;
    size_t leastDecimals_ = 0;
    int mostDecimals_ = 0;
    bool partsThousands_ = false;
};

}  // namespace norvane
