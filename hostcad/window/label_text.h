// Texts of labels as they are shown: in lines, each of them and their number within limits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hostcad {

// The lines of a text, which \n divides, within overlay::kMostLines and kMostCharacters. What is cut ends in
// an ellipsis, control characters are blanks, and empty lines at the end are left out. None for an empty
// text.
std::vector<std::string> labelLines(std::string_view text);

// The size of a text as a label.
struct LabelSize {
    float width = 0;  // of its widest line, in multiples of the height of capitals
    uint8_t lines = 0;

    // In multiples of the height of capitals, from the base of the last line to the top of the first.
    float height() const { return 1 + kLinePitch * static_cast<float>(lines - 1); }
    // From one base line to the next.
    static constexpr float kLinePitch = 1.5f;
    // What a label keeps free round its text.
    static constexpr float kRoom = 0.35f;
};
LabelSize labelSize(std::string_view text);

}  // namespace hostcad
