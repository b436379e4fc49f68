// Code definition files (.fld): the codes that a data collector knows, one a line.
//
//     TREE,Tree,VEGETATION,SPT12,0
//     FENCE|Fence, wooden|FENCE||1        a line with two "|" and more is divided by them
//     # a comment
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norvane {

// The codes in upper case, each once, in the order of their lines. No line is wrong: one that has no code is
// passed over, and so is one of six bytes or less. A line comes in pieces of 526 bytes. Bytes that are no
// UTF-8 are taken as code page 1252; a byte order mark is passed over.
std::vector<std::string> ParseCodeDefinitions(std::string_view content);

}  // namespace norvane
