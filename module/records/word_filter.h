// Whether words occur in the values of a record as cells show them, in any case of letters.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "module/store/cell_values.h"

namespace norvane {

class WordFilter {
  public:
    // words: with blanks between them.
    explicit WordFilter(std::string_view words);

    bool isEmpty() const { return words_.empty(); }
    // Whether each word occurs in some value. kinds: one for each of the first values.
    bool lets(std::span<const dao::Variant> values, std::span<const CellValue> kinds);

  private:
    struct Word {
        std::string letters;     // in capitals
        bool canBeOther = true;  // in the text of a number, a date, Yes or No
        bool isMissing = true;   // in the record that is looked at
    };

    void look(std::string_view text);
    bool anyMissing() const;

    std::vector<Word> words_;
};

}  // namespace norvane
