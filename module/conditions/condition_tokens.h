// The pieces of a condition or an expression, one after the other, and what would go on where the text ends.
#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "module/conditions/condition.h"
#include "platform/dao/sql_tokens.h"

namespace norvane {

// Thrown and caught within this folder.
class FaultFound : public std::exception {
  public:
    explicit FaultFound(ConditionFault found) : fault(std::move(found)) {}
    const char* what() const noexcept override { return fault.sentence.c_str(); }
    ConditionFault fault;
};

struct ConditionToken : dao::SqlToken {
    size_t place = 0;
    bool isEnd = false;

    bool isName() const { return kind == kName || kind == kWord; }
    // For sentences: as it is written, cut where it is long; "the end" for the end.
    std::string shown() const;
};

class ConditionTokens {
  public:
    // Throws a FaultFound for a text that is too long or has a piece that is not closed or known.
    explicit ConditionTokens(std::string_view text);
    static bool isTooLong(std::string_view text);

    const ConditionToken& peek(size_t ahead = 0) const;
    ConditionToken take();

    // Take the word or sign if it comes next. At the end of the text it is noted as what may follow.
    bool takeWord(std::string_view word);
    bool takeSign(std::string_view sign);
    bool atEnd() const { return peek().isEnd; }

    // A fault at a token; of several tokens, from the first to the one taken last.
    [[noreturn]] void fail(const ConditionToken& at, const std::string& sentence) const;

    // What takeWord and takeSign have asked for at the end of the text.
    const std::vector<std::string>& followers() const { return followers_; }

    // Counts a parenthesis or another thing that holds a whole text in itself, as long as it lives. Throws
    // where there are too many in each other.
    class Nesting {
      public:
        Nesting(ConditionTokens& tokens, const ConditionToken& at);
        ~Nesting() { --tokens_.depth_; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

      private:
        ConditionTokens& tokens_;
    };

  private:
    std::vector<ConditionToken> tokens_;  // the last one is the end
    size_t next_ = 0;
    int depth_ = 0;
    std::vector<std::string> followers_;
};

}  // namespace norvane
