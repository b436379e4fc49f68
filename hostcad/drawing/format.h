// In which form a drawing stands in its file.
#pragma once

#include <string>
#include <string_view>

namespace hostcad {

// Values are the numbers of $ACADVER, so that versions compare by age. Other numbers may occur: a file of a
// version that is not listed keeps its own.
enum class DrawingVersion : int {
    R12 = 1009,
    R13 = 1012,
    R14 = 1014,
    R2000 = 1015,
    R2004 = 1018,
    R2007 = 1021,
    R2010 = 1024,
    R2013 = 1027,
    R2018 = 1032,
};

struct DxfFormat {
    DrawingVersion version = DrawingVersion::R2000;
    bool binary = false;
    bool carriageReturns = false;   // lines of a text file end with CR LF
    bool lowerCaseEscapes = false;  // \U+ and small digits stand for characters outside the code page
};

// Entities have owners and subclass markers, tables and blocks have records.
inline bool hasSubclasses(DrawingVersion version) {
    return version > DrawingVersion::R12;
}
// Text is UTF-8 in the file; before that it is in the code page of $DWGCODEPAGE.
inline bool hasUnicodeText(DrawingVersion version) {
    return version >= DrawingVersion::R2007;
}

// "AC1015" for R2000. The version of such a text; R12 for text that is none.
std::string versionText(DrawingVersion version);
DrawingVersion versionOf(std::string_view text);
// "R2000", or the text of $ACADVER for a version without such a name; and back ("2000" or "R2000").
std::string versionName(DrawingVersion version);
bool versionOfName(std::string_view name, DrawingVersion& version);

// The number of the code page that $DWGCODEPAGE names ("ANSI_1252", "DOS437"); 1252 for one without a number.
int codePageOf(std::string_view name);

}  // namespace hostcad
