// Wild-card patterns of the CAD host.
#pragma once

#include <string>
#include <string_view>

namespace text {

// Whether text matches a pattern: # digit, @ letter, . other, * any run, ? any character, [..] one of,
// [~..] none of, ~ at the front not, ` next character as it stands, comma between patterns. Case counts.
bool matchesWildCards(std::string_view text, std::string_view pattern);
// The same without regard to case, as names of layers, blocks, types and applications are compared.
bool matchesNoCase(std::string_view text, std::string_view pattern);
// The pattern that a text alone matches: a name may hold characters that stand for others in a pattern.
std::string literalPattern(std::string_view text);

}  // namespace text
