#include "hostcad/dxf/blank_drawing.h"

#include <string>
#include <string_view>

#include "hostcad/dxf/dxf.h"

namespace hostcad {
namespace {

// The templates list groups as the code, a blank and the value, with "|" or a line end behind each.

constexpr std::string_view kHeader = R"(
9 $DWGCODEPAGE|3 ANSI_1252|9 $INSBASE|10 0.0|20 0.0|30 0.0|9 $EXTMIN|10 1e+20|20 1e+20|30 1e+20
9 $EXTMAX|10 -1e+20|20 -1e+20|30 -1e+20|9 $LIMMIN|10 0.0|20 0.0|9 $LIMMAX|10 420.0|20 297.0
9 $ORTHOMODE|70 0|9 $REGENMODE|70 1|9 $FILLMODE|70 1|9 $LTSCALE|40 1.0|9 $ATTMODE|70 1|9 $TEXTSIZE|40 2.5
9 $TEXTSTYLE|7 Standard|9 $CLAYER|8 0|9 $CELTYPE|6 ByLayer|9 $CECOLOR|62 256|9 $LUNITS|70 2|9 $LUPREC|70 4
9 $AUNITS|70 0|9 $AUPREC|70 4|9 $ELEVATION|40 0.0|9 $THICKNESS|40 0.0|9 $ANGBASE|50 0.0|9 $ANGDIR|70 0
9 $PDMODE|70 0|9 $PDSIZE|40 0.0|9 $TILEMODE|70 1|9 $DIMSTYLE|2 Standard
)";

constexpr std::string_view kR2000Rest = R"(
9 $MEASUREMENT|70 1|9 $INSUNITS|70 0|9 $CELTSCALE|40 1.0|9 $CELWEIGHT|370 -1|9 $PSTYLEMODE|290 0
9 $HANDSEED|5 100
0 ENDSEC
0 SECTION|2 CLASSES
0 CLASS|1 ACDBDICTIONARYWDFLT|2 AcDbDictionaryWithDefault|3 ObjectDBX Classes|90 0|280 0|281 0
0 ENDSEC
0 SECTION|2 TABLES
0 TABLE|2 VPORT|5 8|330 0|100 AcDbSymbolTable|70 1
0 VPORT|5 20|330 8|100 AcDbSymbolTableRecord|100 AcDbViewportTableRecord|2 *Active|70 0|10 0.0|20 0.0|11 1.0
21 1.0|12 210.0|22 148.5|13 0.0|23 0.0|14 10.0|24 10.0|15 10.0|25 10.0|16 0.0|26 0.0|36 1.0|17 0.0|27 0.0
37 0.0|40 297.0|41 1.5|42 50.0|43 0.0|44 0.0|50 0.0|51 0.0|71 0|72 1000|73 1|74 3|75 0|76 0|77 0|78 0
0 ENDTAB
0 TABLE|2 LTYPE|5 5|330 0|100 AcDbSymbolTable|70 3
0 LTYPE|5 14|330 5|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 ByBlock|70 0|3 |72 65|73 0|40 0.0
0 LTYPE|5 15|330 5|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 ByLayer|70 0|3 |72 65|73 0|40 0.0
0 LTYPE|5 16|330 5|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 Continuous|70 0|3 Solid line
72 65|73 0|40 0.0
0 ENDTAB
0 TABLE|2 LAYER|5 2|330 0|100 AcDbSymbolTable|70 1
0 LAYER|5 10|330 2|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 0|70 0|62 7|6 Continuous|370 -3
390 F
0 ENDTAB
0 TABLE|2 STYLE|5 3|330 0|100 AcDbSymbolTable|70 1
0 STYLE|5 11|330 3|100 AcDbSymbolTableRecord|100 AcDbTextStyleTableRecord|2 Standard|70 0|40 0.0|41 1.0
50 0.0|71 0|42 2.5|3 txt|4
0 ENDTAB
0 TABLE|2 VIEW|5 6|330 0|100 AcDbSymbolTable|70 0
0 ENDTAB
0 TABLE|2 UCS|5 7|330 0|100 AcDbSymbolTable|70 0
0 ENDTAB
0 TABLE|2 APPID|5 9|330 0|100 AcDbSymbolTable|70 1
0 APPID|5 12|330 9|100 AcDbSymbolTableRecord|100 AcDbRegAppTableRecord|2 ACAD|70 0
0 ENDTAB
0 TABLE|2 DIMSTYLE|5 A|330 0|100 AcDbSymbolTable|70 1|100 AcDbDimStyleTable|71 1
0 DIMSTYLE|105 27|330 A|100 AcDbSymbolTableRecord|100 AcDbDimStyleTableRecord|2 Standard|70 0|340 11
0 ENDTAB
0 TABLE|2 BLOCK_RECORD|5 1|330 0|100 AcDbSymbolTable|70 2
0 BLOCK_RECORD|5 1F|330 1|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 *Model_Space|340 22
0 BLOCK_RECORD|5 1B|330 1|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 *Paper_Space|340 1E
0 ENDTAB
0 ENDSEC
0 SECTION|2 BLOCKS
0 BLOCK|5 23|330 1F|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 *Model_Space|70 0|10 0.0|20 0.0|30 0.0
3 *Model_Space|1
0 ENDBLK|5 21|330 1F|100 AcDbEntity|8 0|100 AcDbBlockEnd
0 BLOCK|5 1C|330 1B|100 AcDbEntity|67 1|8 0|100 AcDbBlockBegin|2 *Paper_Space|70 0|10 0.0|20 0.0|30 0.0
3 *Paper_Space|1
0 ENDBLK|5 1D|330 1B|100 AcDbEntity|67 1|8 0|100 AcDbBlockEnd
0 ENDSEC
0 SECTION|2 ENTITIES
0 ENDSEC
0 SECTION|2 OBJECTS
0 DICTIONARY|5 C|330 0|100 AcDbDictionary|281 1|3 ACAD_GROUP|350 D|3 ACAD_LAYOUT|350 1A|3 ACAD_MLINESTYLE
350 17|3 ACAD_PLOTSETTINGS|350 19|3 ACAD_PLOTSTYLENAME|350 E
0 DICTIONARY|5 D|330 C|100 AcDbDictionary|281 1
0 DICTIONARY|5 1A|330 C|100 AcDbDictionary|281 1|3 Layout1|350 1E|3 Model|350 22
0 DICTIONARY|5 17|330 C|100 AcDbDictionary|281 1|3 Standard|350 18
0 DICTIONARY|5 19|330 C|100 AcDbDictionary|281 1
0 ACDBDICTIONARYWDFLT|5 E|330 C|100 AcDbDictionary|281 1|3 Normal|350 F|100 AcDbDictionaryWithDefault|340 F
0 ACDBPLACEHOLDER|5 F|330 E
0 LAYOUT|5 1E|330 1A|100 AcDbPlotSettings|1 |2 none_device|4 |6 |40 0.0|41 0.0|42 0.0|43 0.0|44 0.0|45 0.0
46 0.0|47 0.0|48 0.0|49 0.0|140 0.0|141 0.0|142 1.0|143 1.0|70 688|72 0|73 0|74 5|7 |75 16|147 1.0|148 0.0
149 0.0|100 AcDbLayout|1 Layout1|70 1|71 1|10 0.0|20 0.0|11 420.0|21 297.0|12 0.0|22 0.0|32 0.0|14 1e+20
24 1e+20|34 1e+20|15 -1e+20|25 -1e+20|35 -1e+20|146 0.0|13 0.0|23 0.0|33 0.0|16 1.0|26 0.0|36 0.0|17 0.0
27 1.0|37 0.0|76 0|330 1B
0 LAYOUT|5 22|330 1A|100 AcDbPlotSettings|1 |2 none_device|4 |6 |40 0.0|41 0.0|42 0.0|43 0.0|44 0.0|45 0.0
46 0.0|47 0.0|48 0.0|49 0.0|140 0.0|141 0.0|142 1.0|143 1.0|70 1712|72 0|73 0|74 0|7 |75 0|147 1.0|148 0.0
149 0.0|100 AcDbLayout|1 Model|70 1|71 0|10 0.0|20 0.0|11 420.0|21 297.0|12 0.0|22 0.0|32 0.0|14 1e+20
24 1e+20|34 1e+20|15 -1e+20|25 -1e+20|35 -1e+20|146 0.0|13 0.0|23 0.0|33 0.0|16 1.0|26 0.0|36 0.0|17 0.0
27 1.0|37 0.0|76 0|330 1F
0 MLINESTYLE|5 18|330 17|100 AcDbMlineStyle|2 Standard|70 0|3 |62 256|51 90.0|52 90.0|71 2|49 0.5|62 256
6 BYLAYER|49 -0.5|62 256|6 BYLAYER
0 ENDSEC
)";

constexpr std::string_view kR12Rest = R"(
9 $HANDLING|70 1|9 $HANDSEED|5 10
0 ENDSEC
0 SECTION|2 TABLES
0 TABLE|2 VPORT|70 1
0 VPORT|2 *ACTIVE|70 0|10 0.0|20 0.0|11 1.0|21 1.0|12 210.0|22 148.5|13 0.0|23 0.0|14 10.0|24 10.0|15 10.0
25 10.0|16 0.0|26 0.0|36 1.0|17 0.0|27 0.0|37 0.0|40 297.0|41 1.5|42 50.0|43 0.0|44 0.0|50 0.0|51 0.0|71 0
72 1000|73 1|74 3|75 0|76 0|77 0|78 0
0 ENDTAB
0 TABLE|2 LTYPE|70 1
0 LTYPE|2 CONTINUOUS|70 0|3 Solid line|72 65|73 0|40 0.0
0 ENDTAB
0 TABLE|2 LAYER|70 1
0 LAYER|2 0|70 0|62 7|6 CONTINUOUS
0 ENDTAB
0 TABLE|2 STYLE|70 1
0 STYLE|2 STANDARD|70 0|40 0.0|41 1.0|50 0.0|71 0|42 2.5|3 txt|4
0 ENDTAB
0 TABLE|2 VIEW|70 0
0 ENDTAB
0 TABLE|2 UCS|70 0
0 ENDTAB
0 TABLE|2 APPID|70 1
0 APPID|2 ACAD|70 0
0 ENDTAB
0 TABLE|2 DIMSTYLE|70 1
0 DIMSTYLE|2 STANDARD|70 0|3 |4 |5 |6 |7 |40 1.0|41 2.5|42 0.625|43 3.75|44 1.25|45 0.0|46 0.0|47 0.0|48 0.0
140 2.5|141 2.5|142 0.0|143 25.4|144 1.0|145 0.0|146 1.0|147 0.625|71 0|72 0|73 0|74 0|75 0|76 0|77 1|78 0
170 0|171 2|172 0|173 0|174 0|175 0|176 0|177 0|178 0
0 ENDTAB
0 ENDSEC
0 SECTION|2 BLOCKS
0 ENDSEC
0 SECTION|2 ENTITIES
0 ENDSEC
)";

// Puts codes and values on lines of their own.
void appendLines(std::string& out, std::string_view groups) {
    groups.remove_prefix(1);  // the line end behind the opening parenthesis
    bool inCode = true;
    for (char c : groups) {
        bool ends = c == '|' || c == '\n';
        if (ends && inCode) out += '\n';  // an empty value
        out += ends || (inCode && c == ' ') ? '\n' : c;
        inCode = ends || (inCode && c != ' ');
    }
}

}  // namespace

std::unique_ptr<Drawing> blankDrawing(DrawingVersion version) {
    bool r12 = !hasSubclasses(version);
    std::string content = "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\n" + versionText(version) + "\n";
    appendLines(content, kHeader);
    appendLines(content, r12 ? kR12Rest : kR2000Rest);
    content += "0\nEOF\n";
    std::string error;
    return parseDxf(content, error);
}

}  // namespace hostcad
