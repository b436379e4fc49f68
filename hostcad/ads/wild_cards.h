// Wild-card patterns, for texts that are no C strings.
#pragma once

#include <string_view>

namespace hostcad {

// As acutWcMatch.
bool matchesWildCards(std::string_view text, std::string_view pattern);
// The same without regard to case, as names of layers, blocks, types and applications are compared.
bool matchesNoCase(std::string_view text, std::string_view pattern);

}  // namespace hostcad
