#include "tests/module/conditions/condition_cases.h"

#include <cmath>
#include <functional>

namespace {

using Text = std::optional<std::string>;

// Comparisons of text: in capitals, by code points. An empty field fulfils none.
bool is(const Text& a, const std::string& b) {
    return a && inCapitals(*a) == inCapitals(b);
}
bool isNot(const Text& a, const std::string& b) {
    return a && inCapitals(*a) != inCapitals(b);
}
bool below(const Text& a, const std::string& b) {
    return a && inCapitals(*a) < inCapitals(b);
}
bool above(const Text& a, const std::string& b) {
    return a && inCapitals(*a) > inCapitals(b);
}
bool begins(const Text& a, const std::string& b) {
    return a && inCapitals(*a).rfind(inCapitals(b), 0) == 0;
}
bool ends(const Text& a, const std::string& b) {
    return a && inCapitals(*a).ends_with(inCapitals(b));
}
bool has(const Text& a, const std::string& b) {
    return a && inCapitals(*a).find(inCapitals(b)) != std::string::npos;
}
// Characters of the text.
int length(const Text& a) {
    int count = 0;
    if (!a) return -1;
    for (char c : *a) count += (c & 0xC0) != 0x80;
    return count;
}
// Dates: texts that sort.
bool from(const Text& a, const char* b) {
    return a && *a >= b;
}
bool before(const Text& a, const char* b) {
    return a && *a < b;
}

std::vector<ConditionCase> numbers() {
    return {
        {"WHOLE = 5", [](const Tree& t) { return t.whole && *t.whole == 5; }},
        {"whole = 5.0", [](const Tree& t) { return t.whole && *t.whole == 5; }},
        {"WHOLE = '5'", [](const Tree& t) { return t.whole && *t.whole == 5; }},
        {"WHOLE = ' 5 '", [](const Tree& t) { return t.whole && *t.whole == 5; }},
        {"5 = WHOLE", [](const Tree& t) { return t.whole && *t.whole == 5; }},
        {"5 < WHOLE", [](const Tree& t) { return t.whole && *t.whole > 5; }},
        {"5 >= WHOLE", [](const Tree& t) { return t.whole && *t.whole <= 5; }},
        {"WHOLE <> 5", [](const Tree& t) { return t.whole && *t.whole != 5; }},
        {"NOT WHOLE = 5", [](const Tree& t) { return t.whole && *t.whole != 5; }},
        {"NOT NOT WHOLE = 5", [](const Tree& t) { return t.whole && *t.whole == 5; }},
        {"NOT WHOLE < 5", [](const Tree& t) { return t.whole && *t.whole >= 5; }},
        {"NOT WHOLE >= 5", [](const Tree& t) { return t.whole && *t.whole < 5; }},
        {"NOT WHOLE > 5", [](const Tree& t) { return t.whole && *t.whole <= 5; }},
        {"NOT WHOLE <= 5", [](const Tree& t) { return t.whole && *t.whole > 5; }},
        {"WHOLE = 5.5", [](const Tree&) { return false; }},
        {"WHOLE <> 5.5", [](const Tree& t) { return t.whole.has_value(); }},
        {"WHOLE < 5.5", [](const Tree& t) { return t.whole && *t.whole <= 5; }},
        {"WHOLE = 2147483647", [](const Tree& t) { return t.id == 10; }},
        {"WHOLE < 2147483648", [](const Tree& t) { return t.whole.has_value(); }},
        {"WHOLE > -2147483648", [](const Tree& t) { return t.whole.has_value(); }},
        {"WHOLE > 1e300", [](const Tree&) { return false; }},
        {"WHOLE <= -1", [](const Tree& t) { return t.whole && *t.whole <= -1; }},
        {"WHOLE = - 1", [](const Tree& t) { return t.whole && *t.whole == -1; }},
        {"WHOLE = +1", [](const Tree& t) { return t.whole && *t.whole == 1; }},
        {"WHOLE = 16777217", [](const Tree& t) { return t.id == 13; }},
        {"SMALL = 32767", [](const Tree& t) { return t.small && *t.small == 32767; }},
        {"SMALL = 32768", [](const Tree&) { return false; }},
        {"SMALL < 70000", [](const Tree& t) { return t.small.has_value(); }},
        {"SMALL >= -32768", [](const Tree& t) { return t.small.has_value(); }},
        {"TINY = 255", [](const Tree& t) { return t.tiny && *t.tiny == 255; }},
        {"TINY > 254.5", [](const Tree& t) { return t.tiny && *t.tiny == 255; }},
        {"TINY = -1", [](const Tree&) { return false; }},
        {"TINY <> 300", [](const Tree& t) { return t.tiny.has_value(); }},
        {"HEIGHT = 12.5", [](const Tree& t) { return t.height && *t.height == 12.5; }},
        {"HEIGHT < 12.5", [](const Tree& t) { return t.height && *t.height < 12.5; }},
        {"HEIGHT > 12.5", [](const Tree& t) { return t.height && *t.height > 12.5; }},
        {"HEIGHT = 0.1", [](const Tree& t) { return t.id == 9; }},
        {"HEIGHT = 0.3", [](const Tree& t) { return t.id == 12; }},
        {"HEIGHT = 0.30000000000000004", [](const Tree& t) { return t.id == 11; }},
        {"HEIGHT >= .3", [](const Tree& t) { return t.height && *t.height >= 0.3; }},
        {"HEIGHT = 1e-9", [](const Tree& t) { return t.id == 7; }},
        {"HEIGHT = 1E9", [](const Tree& t) { return t.id == 8; }},
        {"HEIGHT <> 0", [](const Tree& t) { return t.height && *t.height != 0; }},
        {"HEIGHT = -0", [](const Tree& t) { return t.height && *t.height == 0; }},
        {"HEIGHT = 123456789.123456789", [](const Tree& t) { return t.id == 39; }},
        {"HEIGHT = 16777217", [](const Tree& t) { return t.id == 13; }},
        {"HEIGHT BETWEEN 9 AND 12.5",
         [](const Tree& t) { return t.height && *t.height >= 9 && *t.height <= 12.5; }},
        {"HEIGHT NOT BETWEEN 9 AND 12.5",
         [](const Tree& t) { return t.height && (*t.height < 9 || *t.height > 12.5); }},
        {"HEIGHT BETWEEN 12.5 AND 9", [](const Tree&) { return false; }},
        {"HEIGHT IN (12.5, 0.1, 7)",
         [](const Tree& t) { return t.height && (*t.height == 12.5 || *t.height == 0.1); }},
        {"HEIGHT NOT IN (12.5, 0.1, 7)",
         [](const Tree& t) { return t.height && *t.height != 12.5 && *t.height != 0.1; }},
        {"NOT HEIGHT IN (12.5)", [](const Tree& t) { return t.height && *t.height != 12.5; }},
        {"WHOLE IN (5, '6', 9.5, 1e300)",
         [](const Tree& t) { return t.whole && (*t.whole == 5 || *t.whole == 6); }},
        {"RATIO = 0.1", [](const Tree& t) { return t.id == 3; }},
        {"RATIO = 0.3", [](const Tree& t) { return t.id == 6; }},
        {"RATIO <= 0.1", [](const Tree& t) { return t.ratio && *t.ratio <= 0.1F; }},
        {"RATIO < 0.1", [](const Tree& t) { return t.ratio && *t.ratio < 0.1F; }},
        {"RATIO > 0.1", [](const Tree& t) { return t.ratio && *t.ratio > 0.1F; }},
        {"RATIO >= 0.2", [](const Tree& t) { return t.ratio && *t.ratio >= 0.2F; }},
        {"RATIO <> 0.1", [](const Tree& t) { return t.ratio && *t.ratio != 0.1F; }},
        {"RATIO = 16777217", [](const Tree& t) { return t.id == 9 || t.id == 13; }},
        {"RATIO IN (0.1, -0.1)", [](const Tree& t) { return t.id == 3 || t.id == 4; }},
        {"RATIO BETWEEN 0.1 AND 0.3",
         [](const Tree& t) { return t.ratio && *t.ratio >= 0.1F && *t.ratio <= 0.3F; }},
        {"RATIO < 1e300", [](const Tree& t) { return t.ratio.has_value(); }},
        {"PRICE = 12.5", [](const Tree& t) { return t.price && *t.price == 125000; }},
        {"PRICE < 12.5", [](const Tree& t) { return t.price && *t.price < 125000; }},
        {"PRICE > 12.5", [](const Tree& t) { return t.price && *t.price > 125000; }},
        {"PRICE = 12.4999", [](const Tree& t) { return t.price && *t.price == 124999; }},
        {"PRICE = 12.49995", [](const Tree&) { return false; }},
        {"PRICE > 12.49995", [](const Tree& t) { return t.price && *t.price >= 125000; }},
        {"PRICE = 0.0001", [](const Tree& t) { return t.id == 7; }},
        {"PRICE = 1000000000", [](const Tree& t) { return t.id == 8; }},
        {"PRICE = 99999999.9999", [](const Tree& t) { return t.id == 39; }},
        {"PRICE IN (12.5, -12.5)", [](const Tree& t) { return t.id == 3 || t.id == 4; }},
        {"PRICE <> 0", [](const Tree& t) { return t.price && *t.price != 0; }},
        {"HEIGHT IS NULL", [](const Tree& t) { return !t.height; }},
        {"HEIGHT IS NOT NULL", [](const Tree& t) { return t.height.has_value(); }},
        {"NOT HEIGHT IS NULL", [](const Tree& t) { return t.height.has_value(); }},
        {"NOT HEIGHT IS NOT NULL", [](const Tree& t) { return !t.height; }},
        {"WHOLE = SMALL", [](const Tree& t) { return t.whole && t.small && *t.whole == *t.small; }},
        {"WHOLE <> SMALL", [](const Tree& t) { return t.whole && t.small && *t.whole != *t.small; }},
        {"SMALL < WHOLE", [](const Tree& t) { return t.whole && t.small && *t.small < *t.whole; }},
        {"HEIGHT = WHOLE", [](const Tree& t) { return t.whole && t.height && *t.height == *t.whole; }},
        {"HEIGHT > RATIO",
         [](const Tree& t) { return t.height && t.ratio && *t.height > static_cast<double>(*t.ratio); }},
        {"PRICE = HEIGHT",
         [](const Tree& t) {
             return t.price && t.height && static_cast<double>(*t.price) / 10000 == *t.height;
         }},
        {"NOT PRICE >= HEIGHT",
         [](const Tree& t) {
             return t.price && t.height && static_cast<double>(*t.price) / 10000 < *t.height;
         }},
    };
}

std::vector<ConditionCase> texts() {
    return {
        {"NAME = 'oak'", [](const Tree& t) { return t.id == 3 || t.id == 4; }},
        {"NAME = \"OaK\"", [](const Tree& t) { return t.id == 3 || t.id == 4; }},
        {"[name] = 'oak'", [](const Tree& t) { return is(t.name, "oak"); }},
        {"'oak' = NAME", [](const Tree& t) { return is(t.name, "oak"); }},
        {"NAME = 'oak '", [](const Tree& t) { return t.id == 5; }},
        {"NAME = ' oak'", [](const Tree& t) { return t.id == 6; }},
        {"NAME <> 'oak'", [](const Tree& t) { return isNot(t.name, "oak"); }},
        {"NOT NAME = 'oak'", [](const Tree& t) { return isNot(t.name, "oak"); }},
        {"NAME = ''", [](const Tree& t) { return t.id == 2; }},
        {"NAME <> ''", [](const Tree& t) { return t.name && !t.name->empty(); }},
        {"NAME > ''", [](const Tree& t) { return t.name && !t.name->empty(); }},
        {"NAME IS NULL", [](const Tree& t) { return t.id == 1; }},
        {"NAME IS NULL OR NAME = ''", [](const Tree& t) { return t.id <= 2; }},
        {"NAME IS NOT NULL", [](const Tree& t) { return t.name.has_value(); }},
        {"NAME = 10", [](const Tree& t) { return t.id == 35; }},
        {"NAME <> 10", [](const Tree& t) { return isNot(t.name, "10"); }},
        {"NAME IN (9, 10)", [](const Tree& t) { return t.id == 35 || t.id == 36; }},
        {"NAME < '9'", [](const Tree& t) { return below(t.name, "9"); }},
        {"NAME >= '10'", [](const Tree& t) { return t.name && !below(t.name, "10"); }},
        {"NAME < 'P'", [](const Tree& t) { return below(t.name, "P"); }},
        {"NAME < 'p'", [](const Tree& t) { return below(t.name, "P"); }},
        {"NAME > 'oak'", [](const Tree& t) { return above(t.name, "OAK"); }},
        {"NAME <= 'oak'", [](const Tree& t) { return t.name && !above(t.name, "OAK"); }},
        {"NAME > 'z'", [](const Tree& t) { return above(t.name, "Z"); }},
        {"NAME > '^'", [](const Tree& t) { return above(t.name, "^"); }},
        {"NAME BETWEEN 'o' AND 'oz'",
         [](const Tree& t) { return t.name && !below(t.name, "O") && !above(t.name, "OZ"); }},
        {"NAME NOT BETWEEN 'o' AND 'oz'",
         [](const Tree& t) { return below(t.name, "O") || above(t.name, "OZ"); }},
        {"NAME > 'é'", [](const Tree& t) { return above(t.name, "É"); }},
        {"NAME <= 'Ž'", [](const Tree& t) { return t.name && !above(t.name, "Ž"); }},
        {"NAME BETWEEN 'Ža' AND 'Žz'", [](const Tree& t) { return t.id == 24 || t.id == 25; }},
        {"NAME < 'grö'", [](const Tree& t) { return below(t.name, "grö"); }},
        {"NAME >= 'ſ'", [](const Tree& t) { return t.name && !below(t.name, "ſ"); }},
        {"NAME = 'línea'", [](const Tree& t) { return t.id == 17 || t.id == 18; }},
        {"NAME = 'LÍNEA'", [](const Tree& t) { return t.id == 17 || t.id == 18; }},
        {"NAME = 'linea'", [](const Tree&) { return false; }},
        {"NAME <> 'LíNeA'", [](const Tree& t) { return isNot(t.name, "línea"); }},
        {"NAME = 'größer'", [](const Tree& t) { return t.id == 19 || t.id == 20; }},
        {"NAME = 'GRÖSSER'", [](const Tree& t) { return t.id == 21; }},
        {"NAME = 'ÆRØ'", [](const Tree& t) { return t.id == 22 || t.id == 23; }},
        {"NAME IN ('žižka', 'ærø')", [](const Tree& t) { return t.id >= 22 && t.id <= 25; }},
        {"NAME NOT IN ('žižka', 'oak')",
         [](const Tree& t) { return isNot(t.name, "žižka") && isNot(t.name, "oak"); }},
        {"NAME = 'ÿ'", [](const Tree& t) { return t.id == 26 || t.id == 27; }},
        {"NAME = 'ISTANBUL'", [](const Tree&) { return false; }},
        {"NAME = 'ıstanbul'", [](const Tree& t) { return t.id == 28; }},
        {"NAME = 's'", [](const Tree&) { return false; }},
        {"NAME = 'ſ'", [](const Tree& t) { return t.id == 29; }},
        {"NAME = 'αβγ'", [](const Tree& t) { return t.id == 30; }},
        {"NAME = 'ΑΒΓ'", [](const Tree& t) { return t.id == 31; }},
        {"NAME = '𝄞'", [](const Tree& t) { return t.id == 32; }},
        {"NAME = 'it''s'", [](const Tree& t) { return t.id == 15; }},
        {"NAME = \"it's\"", [](const Tree& t) { return t.id == 15; }},
        {"NAME = 'say \"hi\"'", [](const Tree& t) { return t.id == 16; }},
        {"NAME = \"say \"\"hi\"\"\"", [](const Tree& t) { return t.id == 16; }},
        {"NAME = ''' OR 1=1 --'", [](const Tree& t) { return t.id == 37; }},
        {"NAME = 'x; DROP TABLE TREES'", [](const Tree&) { return false; }},
        {"NAME = 'line 1\r\nline 2'", [](const Tree& t) { return t.id == 33; }},
        {"NAME = 'line 1\nline 2'", [](const Tree&) { return false; }},
        {"NAME = 'a\tb'", [](const Tree& t) { return t.id == 34; }},
        {"NAME = 'o\\k'", [](const Tree& t) { return t.id == 13; }},
        {"NAME IN ('OAK', 'o*k', 'none')", [](const Tree& t) { return t.id == 3 || t.id == 4 || t.id == 8; }},
        {"NAME IN ('oak')", [](const Tree& t) { return is(t.name, "oak"); }},
        {"NAME NOT IN ('oak')", [](const Tree& t) { return isNot(t.name, "oak"); }},
        {"NAME = YES", [](const Tree&) { return false; }},
        {"NOTE = 'by the road'", [](const Tree& t) { return t.id == 3 || t.id == 4; }},
        {"NOTE <> 'by the road'", [](const Tree& t) { return isNot(t.note, "by the road"); }},
        {"NOTE > 'l'", [](const Tree& t) { return above(t.note, "L"); }},
        {"NOTE IS NULL", [](const Tree& t) { return !t.note; }},
        {"NOTE = 'café'", [](const Tree& t) { return t.id == 40; }},
        {"NAME = NOTE", [](const Tree& t) { return t.name && is(t.note, *t.name); }},
        {"NAME <> NOTE", [](const Tree& t) { return t.name && isNot(t.note, *t.name); }},
        {"NOTE < NAME", [](const Tree& t) { return t.name && below(t.note, *t.name); }},
        {"[pole no] = 'a17'", [](const Tree& t) { return t.id == 4 || t.id == 5; }},
        {"[POLE NO] = 17", [](const Tree& t) { return t.id == 3; }},
        {"[pole no] < '20'", [](const Tree& t) { return below(t.poleNo, "20"); }},
        {"[pole no] = NAME", [](const Tree& t) { return t.name && is(t.poleNo, *t.name); }},
    };
}

std::vector<ConditionCase> patterns() {
    return {
        {"NAME LIKE 'oak'", [](const Tree& t) { return is(t.name, "oak"); }},
        {"NAME LIKE 'OAK*'", [](const Tree& t) { return begins(t.name, "oak"); }},
        {"NAME NOT LIKE 'oak*'", [](const Tree& t) { return t.name && !begins(t.name, "oak"); }},
        {"NOT NAME LIKE 'oak*'", [](const Tree& t) { return t.name && !begins(t.name, "oak"); }},
        {"NAME LIKE '*oak'", [](const Tree& t) { return ends(t.name, "oak"); }},
        {"NAME LIKE '*A*'", [](const Tree& t) { return has(t.name, "a"); }},
        {"NAME LIKE '*'", [](const Tree& t) { return t.name.has_value(); }},
        {"NAME LIKE '**'", [](const Tree& t) { return t.name.has_value(); }},
        {"NAME LIKE ''", [](const Tree& t) { return t.id == 2; }},
        {"NAME LIKE '?'", [](const Tree& t) { return length(t.name) == 1; }},
        {"NAME LIKE '?"
         "?"
         "?'",
         [](const Tree& t) { return length(t.name) == 3; }},
        {"NAME LIKE '?*'", [](const Tree& t) { return length(t.name) >= 1; }},
        {"NAME LIKE 'o?k'",
         [](const Tree& t) { return length(t.name) == 3 && begins(t.name, "o") && ends(t.name, "k"); }},
        {"NAME LIKE 'o[*]k'", [](const Tree& t) { return t.id == 8; }},
        {"NAME LIKE 'O[?]K'", [](const Tree& t) { return t.id == 9; }},
        {"NAME LIKE 'o[[]k'", [](const Tree& t) { return t.id == 10; }},
        {"NAME LIKE 'o%k'", [](const Tree& t) { return t.id == 11; }},
        {"NAME LIKE 'o_k'", [](const Tree& t) { return t.id == 12; }},
        {"NAME LIKE 'o\\k'", [](const Tree& t) { return t.id == 13; }},
        {"NAME LIKE '*%'", [](const Tree& t) { return t.id == 14; }},
        {"NAME LIKE '*\"*'", [](const Tree& t) { return t.id == 16; }},
        {"NAME LIKE '*''*'", [](const Tree& t) { return has(t.name, "'"); }},
        {"NAME LIKE 'l?nea'", [](const Tree& t) { return t.id == 17 || t.id == 18; }},
        {"NAME LIKE 'LÍ*'", [](const Tree& t) { return t.id == 17 || t.id == 18; }},
        {"NAME LIKE '*žk*'", [](const Tree& t) { return t.id == 24 || t.id == 25; }},
        {"NAME NOT LIKE '*ž*'", [](const Tree& t) { return t.name && !has(t.name, "ž"); }},
        {"NAME LIKE 'g*ß*r'", [](const Tree& t) { return t.id == 19 || t.id == 20; }},
        {"NAME LIKE 'i*'", [](const Tree& t) { return t.id == 15; }},
        {"NAME LIKE 'S'", [](const Tree&) { return false; }},
        {"NAME LIKE 'αβ?'", [](const Tree& t) { return t.id == 30; }},
        {"NAME LIKE 'line*2'", [](const Tree& t) { return t.id == 33; }},
        {"NAME LIKE '* ?'", [](const Tree& t) { return t.id == 33; }},
        {"NAME LIKE 'x*x*x*x*y'", [](const Tree&) { return false; }},
        {"NAME LIKE 'x*x*x*x'", [](const Tree& t) { return t.id == 38; }},
        {"NAME LIKE '*]*'", [](const Tree&) { return false; }},
        {"NAME LIKE '^*'", [](const Tree& t) { return t.id == 39; }},
        {"NOTE LIKE '*end'", [](const Tree& t) { return t.id == 38; }},
        {"NOTE LIKE 'a ? b'", [](const Tree& t) { return t.id == 32; }},
        {"NOTE LIKE '* '", [](const Tree& t) { return t.id == 5; }},
        {"[pole no] LIKE 'æ*'", [](const Tree& t) { return t.id == 22 || t.id == 23; }},
    };
}

std::vector<ConditionCase> dates() {
    return {
        {"SEEN = #2004-05-31#",
         [](const Tree& t) { return from(t.seen, "2004-05-31") && before(t.seen, "2004-06-01"); }},
        {"SEEN = '2004-05-31'",
         [](const Tree& t) { return from(t.seen, "2004-05-31") && before(t.seen, "2004-06-01"); }},
        {"SEEN = #5/31/2004#",
         [](const Tree& t) { return from(t.seen, "2004-05-31") && before(t.seen, "2004-06-01"); }},
        {"SEEN <> #2004-05-31#",
         [](const Tree& t) { return before(t.seen, "2004-05-31") || from(t.seen, "2004-06-01"); }},
        {"NOT SEEN = #2004-05-31#",
         [](const Tree& t) { return before(t.seen, "2004-05-31") || from(t.seen, "2004-06-01"); }},
        {"SEEN < #2004-05-31#", [](const Tree& t) { return before(t.seen, "2004-05-31"); }},
        {"SEEN <= #2004-05-31#", [](const Tree& t) { return before(t.seen, "2004-06-01"); }},
        {"SEEN > #2004-05-31#", [](const Tree& t) { return from(t.seen, "2004-06-01"); }},
        {"SEEN >= #2004-05-31#", [](const Tree& t) { return from(t.seen, "2004-05-31"); }},
        {"#2004-05-31# < SEEN", [](const Tree& t) { return from(t.seen, "2004-06-01"); }},
        {"SEEN = #2004-05-31 13:45:10#", [](const Tree& t) { return t.id == 4; }},
        {"SEEN = #2004-05-31 13:45#", [](const Tree& t) { return t.id == 4 || t.id == 35 || t.id == 36; }},
        {"SEEN > #2004-05-31 13:45:09#", [](const Tree& t) { return from(t.seen, "2004-05-31 13:45:10"); }},
        {"SEEN > #2004-05-31 13:45#", [](const Tree& t) { return from(t.seen, "2004-05-31 13:46"); }},
        {"SEEN <= #2004-05-31 1:45:10 PM#",
         [](const Tree& t) { return before(t.seen, "2004-05-31 13:45:11"); }},
        {"SEEN BETWEEN #2004-05-30# AND #2004-05-31#",
         [](const Tree& t) { return from(t.seen, "2004-05-30") && before(t.seen, "2004-06-01"); }},
        {"SEEN NOT BETWEEN #2004-05-30# AND #2004-05-31#",
         [](const Tree& t) { return before(t.seen, "2004-05-30") || from(t.seen, "2004-06-01"); }},
        {"SEEN IN (#2004-05-30#, #2000-02-29#)", [](const Tree& t) { return t.id == 7 || t.id == 12; }},
        {"SEEN NOT IN (#2004-05-30#, #2000-02-29#)",
         [](const Tree& t) { return t.seen && t.id != 7 && t.id != 12; }},
        {"SEEN < #1899-12-30#", [](const Tree& t) { return before(t.seen, "1899-12-30"); }},
        {"SEEN = #1899-12-29#", [](const Tree& t) { return t.id == 8; }},
        {"SEEN = #1899-12-29 18:00:00#", [](const Tree& t) { return t.id == 8; }},
        {"SEEN >= #1899-12-29 17:59:59#", [](const Tree& t) { return from(t.seen, "1899-12-29 17:59:59"); }},
        {"SEEN > #9999-12-31 23:59#", [](const Tree&) { return false; }},
        {"SEEN >= #9999-12-31#", [](const Tree& t) { return t.id == 10; }},
        {"SEEN < #0100-01-01#", [](const Tree&) { return false; }},
        {"SEEN <= #0100-01-01#", [](const Tree& t) { return t.id == 11; }},
        {"SEEN IS NULL", [](const Tree& t) { return !t.seen; }},
    };
}

std::vector<ConditionCase> others() {
    return {
        {"ALIVE = YES", [](const Tree& t) { return t.alive; }},
        {"ALIVE = true", [](const Tree& t) { return t.alive; }},
        {"ALIVE <> FALSE", [](const Tree& t) { return t.alive; }},
        {"ALIVE = No", [](const Tree& t) { return !t.alive; }},
        {"NOT ALIVE = YES", [](const Tree& t) { return !t.alive; }},
        {"ALIVE = 1", [](const Tree& t) { return t.alive; }},
        {"ALIVE = -1", [](const Tree& t) { return t.alive; }},
        {"ALIVE = 0", [](const Tree& t) { return !t.alive; }},
        {"ALIVE IN (YES, NO)", [](const Tree&) { return true; }},
        {"DATA IS NULL", [](const Tree& t) { return !t.hasData; }},
        {"DATA IS NOT NULL", [](const Tree& t) { return t.hasData; }},
        {"NAME = 'oak' AND HEIGHT > 0", [](const Tree& t) { return t.id == 3; }},
        {"NAME = 'oak' OR HEIGHT > 12.5",
         [](const Tree& t) { return is(t.name, "oak") || (t.height && *t.height > 12.5); }},
        {"WHOLE = 5 OR WHOLE = 6 AND NAME = 'línea'",
         [](const Tree& t) { return t.whole && (*t.whole == 5 || *t.whole == 6); }},
        {"(WHOLE = 5 OR WHOLE = 6) AND ALIVE = YES", [](const Tree& t) { return t.id == 16; }},
        {"NOT (WHOLE = 5 OR NAME = 'oak')",
         [](const Tree& t) { return t.whole && *t.whole != 5 && isNot(t.name, "oak"); }},
        {"NOT (WHOLE = 5 AND NAME = 'oak')",
         [](const Tree& t) { return (t.whole && *t.whole != 5) || isNot(t.name, "oak"); }},
        {"NOT (WHOLE = 5 AND NOT (HEIGHT > 5 OR NAME LIKE 's*'))",
         [](const Tree& t) {
             return (t.whole && *t.whole != 5) || (t.height && *t.height > 5) || begins(t.name, "s");
         }},
        {"HEIGHT > 5 AND HEIGHT IS NULL", [](const Tree&) { return false; }},
        {"HEIGHT > 5 OR HEIGHT <= 5", [](const Tree& t) { return t.height.has_value(); }},
        {"HEIGHT > 5 OR HEIGHT <= 5 OR HEIGHT IS NULL", [](const Tree&) { return true; }},
        {"ID >= 10 and id not between 12 and 38 or ID=1",
         [](const Tree& t) { return t.id == 1 || t.id == 10 || t.id == 11 || t.id > 38; }},
        {"((((ID=3))))", [](const Tree& t) { return t.id == 3; }},
        {"NOT(ID=3)AND NOT(ID=4)AND(ID<6)",
         [](const Tree& t) { return t.id == 1 || t.id == 2 || t.id == 5; }},
        {" \r\n\tID\n=\n3 ", [](const Tree& t) { return t.id == 3; }},
        {"NAME LIKE '*a*' AND (SEEN = #2004-05-31# OR ALIVE = YES) AND NOT HEIGHT = 12.5",
         [](const Tree& t) {
             const bool day = from(t.seen, "2004-05-31") && before(t.seen, "2004-06-01");
             return has(t.name, "a") && (day || t.alive) && t.height && *t.height != 12.5;
         }},
    };
}

}  // namespace

const std::vector<ConditionCase>& conditionCases() {
    static const std::vector<ConditionCase> kCases = [] {
        std::vector<ConditionCase> all;
        for (const auto& part : {numbers(), texts(), patterns(), dates(), others()})
            all.insert(all.end(), part.begin(), part.end());
        return all;
    }();
    return kCases;
}
