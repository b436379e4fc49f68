// The reader: from text to values.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "hostcad/lisp/value.h"

namespace hostcad::lisp {

class Interpreter;

// Reads one expression after another. Malformed text throws Error. The text must outlive the reader.
//
// A word between backquotes, `TREE12`, is read as the string "TREE12": routines that were copied from a
// formatted page have them where quotation marks belong, and no symbol of the dialect begins so.
class Reader {
  public:
    // source: number of the file among the interpreter's sources, 0 for text from nowhere.
    Reader(Interpreter& interpreter, std::string_view text, std::uint32_t source = 0);

    // The next expression. False at the end of the text.
    bool read(Value& expression);
    // Line of the reader's place, from 1.
    int line() const { return line_; }

  private:
    struct Level;
    void skipBlanks();
    void skipBlockComment();
    Value readString();
    Value readAtom();
    std::string_view nextWord();
    char peek(size_t ahead = 0) const;
    bool place(std::vector<Level>& levels, Value& value);
    std::uint32_t placeHere() const;

    Interpreter& interpreter_;
    std::string_view text_;
    size_t at_ = 0;
    int line_ = 1;
    std::uint32_t source_;
};

// The number that the whole word is written as: an integer, or a real when it has a point or an exponent or
// does not fit 32 bits. False when it is no number.
bool parseNumber(std::string_view word, Value& number);

}  // namespace hostcad::lisp
