// An error of a Lisp program.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace hostcad::lisp {

class Error : public std::runtime_error {
  public:
    enum class Kind {
        Ordinary,
        Quit,    // (quit) and (exit)
        Cancel,  // the user's Escape
        Limit    // steps or memory of a guarded run: no program can catch it
    };
    explicit Error(const std::string& message, Kind ofKind = Kind::Ordinary)
        : std::runtime_error(message), kind(ofKind) {}

    Kind kind;
    // Filled by the interpreter where the error arises, before any function is left.
    bool isReported = false;
    std::string place;                 // "file.lsp:12", "" when it is not known
    std::string expression;            // the call that failed
    std::vector<std::string> callers;  // "FOO, called at file.lsp:30", innermost first

    // Place and call stack, a line each, with a line end in front of each; "" when nothing is known of them.
    std::string trace() const;
    // The message with place and call stack, without a final line end.
    std::string fullText() const { return what() + trace(); }
};

}  // namespace hostcad::lisp
