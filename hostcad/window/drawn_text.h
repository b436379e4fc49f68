// Texts of the drawing as they are drawn: in which font, how wide, and without the codes of their format.
#pragma once

#include <QFont>
#include <string>
#include <string_view>
#include <vector>

namespace hostcad {

// The font of all texts, 100 pixels to the em: the painter scales it.
const QFont& drawingFont();
// What the desktop calls it; "" where there is no font at all.
std::string drawingFontName();
// Height of its capitals in those pixels.
double drawingFontCapital();
// Width of a line of text in multiples of the height of capitals, from the widths of its characters.
double textWidth(std::string_view utf8);

// A text may hold codes: %%d is a degree sign. False when it has none and shows as it stands.
bool hasTextCodes(std::string_view text);
std::string withoutTextCodes(std::string_view text);

// The lines of a paragraph: broken where it says so, and where they would be wider than `width` (multiples of
// the height of capitals; 0 for no limit). Codes of its format are left out.
std::vector<std::string> paragraphLines(std::string_view text, double width);

}  // namespace hostcad
