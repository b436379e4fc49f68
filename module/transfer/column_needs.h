// What the column of a dBASE table must be to hold the values of a field.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "module/exchange/dbf_file.h"
#include "module/transfer/value_classifier.h"

namespace norvane {

struct ColumnShape {
    DbfFieldClass type = kDbfString;
    int width = 0;
    int decimals = 0;

    bool operator==(const ColumnShape&) const = default;
};

constexpr int kNarrowestText = 50;
constexpr int kWidestText = 254;

class ColumnNeeds {
  public:
    // A value that is not empty. Of a field of texts a number with a needless zero in front, as postal codes
    // have, is a text.
    void add(std::string_view value, bool isTextField);
    // The values of another field.
    void add(const ColumnNeeds& other);

    // Numbers keep to 8 digits, or to 12 with 4 decimals, unless a value needs more: whole numbers up to 11,
    // and others up to 24. What needs more still, or is above 32 bits, is a text; so is a field without
    // values.
    ColumnShape shape() const;

  private:
    void addNumber(std::string_view value);

    std::optional<ValueClass> valueClass_;
    int textWidth_ = 0;  // of the longest value, in bytes of code page 1252
    int integerWidth_ = 0, realWidth_ = 0;
    bool isBeyondInteger_ = false;
};

}  // namespace norvane
