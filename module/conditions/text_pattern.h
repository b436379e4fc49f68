// Patterns of LIKE: * is any run of characters, ? any one, [*] the character in the brackets. Case does not
// count, and the whole text must match.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

class TextPattern {
  public:
    // Nothing for a bracket that does not hold one character and close, or for a pattern of more than 1000
    // bytes.
    static std::optional<TextPattern> read(std::string_view pattern);

    bool matches(std::string_view text) const;
    // The same pattern for engines that match texts of the same case: with * and ?, and with % and _ and a
    // backslash in front of each character that would stand for others.
    std::string forGlob() const;
    std::string forLike() const;
    // One for engines of which little is known: it matches all that this one matches, and more.
    std::string forAnyLike() const;
    // Its characters in upper case, without those that stand for others.
    std::string letters() const;

  private:
    struct Element {
        enum Kind { kRun, kAny, kCharacter } kind;
        char32_t character = 0;  // in upper case
    };
    template <typename Character>
    std::string written(char run, char any, Character character) const;

    std::vector<Element> elements_;
};

}  // namespace norvane
