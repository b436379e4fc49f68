// What is no condition, and how that is told; what is offered while one is typed.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "module/conditions/condition.h"
#include "module/conditions/offers.h"
#include "platform/text/text.h"
#include "tests/module/conditions/tree_records.h"

using namespace norvane;
using dao::Variant;

namespace {

// The fault with the place where it is: "NAME >< [5]: sentence". "" for a good condition.
std::string faultOf(const std::string& text, const std::vector<CDaoFieldInfo>& fields = treeFields()) {
    ConditionFault fault;
    if (Condition::read(text, fields, fault)) return "";
    if (fault.place > text.size() || fault.length > text.size() - fault.place) return "outside of the text";
    return text.substr(0, fault.place) + "{" + text.substr(fault.place, fault.length) + "}" +
           text.substr(fault.place + fault.length) + " " + fault.sentence;
}

TEST(Conditions, AFaultHasItsPlaceAndASentence) {
    const std::pair<const char*, const char*> kFaults[] = {
        {"", "{} A field is missing."},
        {"  ", "  {} A field is missing."},
        {"NAME", "{NAME} A comparison is expected behind NAME."},
        {"NAME =", "NAME ={} A value is missing."},
        {"NAME = 'oak' AND", "NAME = 'oak' AND{} A field is missing."},
        {"NAME = 'oak' HEIGHT > 5", "NAME = 'oak' {HEIGHT} > 5 AND or OR is expected in front of HEIGHT."},
        {"NAM = 'oak'", "{NAM} = 'oak' There is no field NAM."},
        {"[no field] = 1", "{[no field]} = 1 There is no field no field."},
        {"NAME = 'oak", "NAME = {'oak} The text has no closing quote."},
        {"[NAME = 'oak'", "{[}NAME = 'oak' The name has no closing bracket."},
        {"SEEN = #2004-05-31", "SEEN = {#}2004-05-31 The date has no closing #."},
        {"SEEN = #2004-02-30#",
         "SEEN = {#2004-02-30#} #2004-02-30# is no date; one is written #2004-05-31#."},
        {"NAME != 'oak'", "NAME {!}= 'oak' Unequal is written <>."},
        {"NAME == 'oak'", "NAME ={=} 'oak' A field or a value is expected in front of =."},
        {"NAME = 'oak'; DELETE FROM TREES",
         "NAME = 'oak'{;} DELETE FROM TREES A condition ends without a semicolon."},
        {"HEIGHT > 12,5", "HEIGHT > 12{,}5 AND or OR is expected in front of ,."},
        {"12,5 < HEIGHT", "{12},5 < HEIGHT A number is written with a point: 12.5."},
        {"HEIGHT > 1.2.3", "HEIGHT > {1.2.3} 1.2.3 is no number."},
        {"HEIGHT > 1e999", "HEIGHT > {1e999} 1e999 is no number."},
        {"HEIGHT > 'tall'", "HEIGHT > {'tall'} The field HEIGHT holds numbers: 'tall' is none."},
        {"HEIGHT = YES", "HEIGHT = {YES} The field HEIGHT holds numbers: YES is none."},
        {"HEIGHT = #2004-05-31#",
         "HEIGHT = {#2004-05-31#} The field HEIGHT holds numbers: #2004-05-31# is none."},
        {"HEIGHT LIKE '1*'", "HEIGHT LIKE {'1*'} LIKE compares text; the field HEIGHT holds numbers."},
        {"NAME > 100",
         "NAME > {100} The field NAME holds text: write '100' to compare as text does, digit by digit ('20' "
         "comes behind "
         "'100')."},
        {"NAME BETWEEN 1 AND 2",
         "NAME BETWEEN {1} AND 2 The field NAME holds text: write '1' to compare as text does, digit by "
         "digit ('20' comes "
         "behind '100')."},
        {"NAME = #2004-05-31#", "NAME = {#2004-05-31#} The field NAME holds text: write '2004-05-31'."},
        {"NAME LIKE oak", "NAME LIKE {oak} There is no field oak; a text stands in quotes: 'oak'."},
        {"NAME = oak", "NAME = {oak} There is no field oak; a text stands in quotes: 'oak'."},
        {"NAME IN (oak)", "NAME IN ({oak}) There is no field oak; a text stands in quotes: 'oak'."},
        {"NAME LIKE NOTE", "NAME LIKE {NOTE} A value is expected in front of NOTE."},
        {"NAME LIKE 5", "NAME LIKE {5} The pattern of LIKE stands in quotes: 'oak*'."},
        {"SEEN > 5",
         "SEEN > {5} The field SEEN holds dates: write one as #2004-05-31# or #2004-05-31 13:45#."},
        {"SEEN > 'May'",
         "SEEN > {'May'} The field SEEN holds dates: write one as #2004-05-31# or #2004-05-31 13:45#."},
        {"ALIVE > NO", "ALIVE > {NO} The field ALIVE holds Yes or No: it can be = or <>, not more or less."},
        {"ALIVE = 2", "ALIVE = {2} The field ALIVE holds Yes or No: 2 is neither."},
        {"ALIVE = 'yes'", "ALIVE = {'yes'} The field ALIVE holds Yes or No: 'yes' is neither."},
        {"DATA = 'x'",
         "DATA = {'x'} The field DATA holds data: it can only be asked for with IS NULL or IS NOT NULL."},
        {"NAME = NULL", "NAME = {NULL} Nothing equals NULL; write IS NULL."},
        {"NAME IN ('a', NULL)", "NAME IN ('a', {NULL}) Nothing equals NULL; write IS NULL."},
        {"NAME IN ()", "NAME IN ({)} A value is expected in front of )."},
        {"NAME IN 'a'", "NAME IN {'a'} A list in parentheses is expected behind IN."},
        {"NAME IN ('a' 'b')", "NAME IN ('a' {'b'}) A comma or a closing parenthesis is missing."},
        {"NAME IS EMPTY", "NAME IS {EMPTY} NULL is expected behind IS."},
        {"NAME NOT 'a'", "NAME NOT {'a'} IN, BETWEEN or LIKE is expected behind NOT."},
        {"HEIGHT BETWEEN 1", "HEIGHT BETWEEN 1{} BETWEEN needs two values with AND between them."},
        {"(HEIGHT = 1", "(HEIGHT = 1{} A closing parenthesis is missing."},
        {"HEIGHT = 1)", "HEIGHT = 1{)} AND or OR is expected in front of )."},
        {"(HEIGHT) > 1", "({HEIGHT}) > 1 A comparison is expected behind HEIGHT."},
        {"HEIGHT + 1 > 2", "HEIGHT {+} 1 > 2 Conditions do not calculate."},
        {"AND", "{AND} A field or a value is expected in front of AND."},
        {"5 = 5", "{5 = 5} A comparison needs a field."},
        {"NAME = HEIGHT", "{NAME = HEIGHT} NAME holds text and HEIGHT numbers: they cannot be compared."},
        {"ALIVE = ALIVE", "{ALIVE = ALIVE} Fields of Yes or No are not compared with each other."},
        {"NAME LIKE 'a[bc]'",
         "NAME LIKE {'a[bc]'} The pattern is longer than 1000 characters, or has a bracket that does not "
         "hold one "
         "character: [*] stands for a star and [[] for a bracket."},
        {"SELECT * FROM TREES", "SELECT {*} FROM TREES This sign has no meaning here."},
    };
    for (const auto& [condition, told] : kFaults) {
        EXPECT_EQ(faultOf(condition), told) << condition;
    }
}

TEST(Conditions, HostileTextIsRefusedOrHarmless) {
    const std::string many(100000, '(');
    for (const std::string& text : std::initializer_list<std::string>{
             many, std::string(10 << 20, '('), std::string(10 << 20, '\''), std::string(60000, '('),
             text::replaceAll(std::string(15000, 'N'), "N", "NOT "), std::string("NAME = 'a\0b'", 12),
             std::string("NAME = '\xFF'"), "NAME LIKE '" + std::string(2000, '*') + "'", "NAME LIKE '['",
             "NAME LIKE '[a'", "NAME LIKE '[]'"}) {
        const std::string fault = faultOf(text);
        EXPECT_NE(fault, "") << text.substr(0, 40);
        EXPECT_NE(fault, "outside of the text") << text.substr(0, 40);
    }
    // As deep and as wide as may be.
    EXPECT_EQ(faultOf(std::string(200, '(') + "ID = 1" + std::string(200, ')')), "");
    EXPECT_NE(faultOf(std::string(201, '(') + "ID = 1" + std::string(201, ')')), "");
    std::string list = "ID IN (0", chain = "ID = 0";
    for (int i = 1; i < 5000; ++i) {
        list += "," + std::to_string(i);
        chain += i % 2 ? " OR ID=1" : " OR ID=2";
    }
    EXPECT_EQ(faultOf(list + ")"), "");
    EXPECT_NE(faultOf(list + ", 1)").find("more than 5000 values"), std::string::npos);
    EXPECT_EQ(faultOf(chain), "");
    // A pattern that a simple search would try in more ways than there is time for.
    ConditionFault fault;
    std::string stars = "*";
    for (int i = 0; i < 300; ++i) stars += "a*";
    auto condition = Condition::read("NAME LIKE '" + stars + "b'", treeFields(), fault);
    ASSERT_TRUE(condition);
    std::vector<Variant> values(treeFields().size());
    values[1] = Variant(std::string(100000, 'a'));
    EXPECT_FALSE(condition->holds(values));
}

TEST(Conditions, WordsOfTheLanguageCanBeFields) {
    std::vector<CDaoFieldInfo> fields(4);
    fields[0].name = "NO";
    fields[0].type = dbLong;
    fields[1].name = "Like";
    fields[1].type = dbText;
    fields[2].name = "Größe";
    fields[2].type = dbDouble;
    fields[3].name = "FLAG";
    fields[3].type = dbBoolean;
    for (const char* good : {"NO = 5", "[NO] = 5", "LIKE LIKE 'a*'", "[like] = 'x' AND NO > 5", "größe > 1.5",
                             "GRÖßE IS NULL", "FLAG = NO", "FLAG IN (YES, NO)"})
        EXPECT_EQ(faultOf(good, fields), "");
    ConditionFault fault;
    auto condition = Condition::read("GRÖßE > 1 AND (no = 1 OR NO = 2)", fields, fault);
    ASSERT_TRUE(condition);
    EXPECT_EQ(condition->usedFields(), (std::vector<size_t>{0, 2}));
    EXPECT_EQ(condition->text(), "GRÖßE > 1 AND (no = 1 OR NO = 2)");
}

// --- What is offered --------------------------------------------------------------------------------------

// "begin+length: texts; values of FIELD 'typed'", the caret at the bar.
std::string offered(std::string text, OffersFor what = OffersFor::kCondition) {
    const size_t caret = text.find('|');
    text.erase(caret, 1);
    const std::vector<CDaoFieldInfo> fields = treeFields();
    const Offers offers = OffersAt(text, caret, fields, what);
    std::string out = std::to_string(offers.begin) + "+" + std::to_string(offers.length) + ": " +
                      text::join(offers.texts, " ");
    if (offers.valuesOf)
        out += "; values of " + fields[*offers.valuesOf].name + " '" + offers.typedValue + "'";
    return out;
}

TEST(Offers, FollowTheTextUpToTheCaret) {
    EXPECT_EQ(offered("|"),
              "0+0: ID NAME NOTE WHOLE SMALL TINY HEIGHT RATIO PRICE ALIVE SEEN [pole no] DATA NOT (");
    EXPECT_EQ(offered("n|"), "0+1: NAME NOTE NOT");
    EXPECT_EQ(offered("[PO|"), "0+3: [pole no]");
    EXPECT_EQ(offered("pol| = 5"), "0+3: [pole no]");
    EXPECT_EQ(offered("NAME |"), "5+0: = <> < <= > >= IS NOT IN BETWEEN LIKE");
    EXPECT_EQ(offered("NAME l|"), "5+1: LIKE");
    EXPECT_EQ(offered("HEIGHT |"), "7+0: = <> < <= > >= IS NOT IN BETWEEN");
    EXPECT_EQ(offered("ALIVE |"), "6+0: = <> IS NOT IN");
    EXPECT_EQ(offered("DATA |"), "5+0: IS");
    EXPECT_EQ(offered("DATA IS |"), "8+0: NOT NULL");
    EXPECT_EQ(offered("ALIVE = |"), "8+0: YES NO; values of ALIVE ''");
    EXPECT_EQ(offered("NAME = |"), "7+0: NOTE [pole no]; values of NAME ''");
    EXPECT_EQ(offered("NAME = 'oa|k'"), "7+3: ; values of NAME 'oa'");
    EXPECT_EQ(offered("HEIGHT > 1|"), "9+1: ; values of HEIGHT '1'");
    EXPECT_EQ(offered("SEEN > #2004|"), "7+5: ; values of SEEN '2004'");
    EXPECT_EQ(offered("NAME IN ('a', |"), "14+0: ; values of NAME ''");
    EXPECT_EQ(offered("NAME LIKE |"), "10+0: ; values of NAME ''");
    EXPECT_EQ(offered("HEIGHT BETWEEN 1 |"), "17+0: AND");
    EXPECT_EQ(offered("HEIGHT BETWEEN 1 AND |"), "21+0: ; values of HEIGHT ''");
    EXPECT_EQ(offered("NAME = 'x' |"), "11+0: AND OR");
    EXPECT_EQ(offered("(NAME = 'x' |"), "12+0: AND OR )");
    EXPECT_EQ(offered("NAME = 'x' AND h|"), "15+1: HEIGHT");
    EXPECT_EQ(offered("NAME ! |"), "7+0: ");
    EXPECT_EQ(offered("WRONG = |"), "8+0: ");
    EXPECT_EQ(offered("R|", OffersFor::kExpression), "0+1: RATIO ROUND(");
    EXPECT_EQ(offered("NAME |", OffersFor::kExpression), "5+0: + &");
    EXPECT_EQ(offered("NAME & UPPER(N|", OffersFor::kExpression), "13+1: NAME NOTE");
    EXPECT_EQ(offered("IIF(|", OffersFor::kExpression),
              "4+0: ID NAME NOTE WHOLE SMALL TINY HEIGHT RATIO PRICE ALIVE SEEN [pole no] DATA NOT (");
    EXPECT_EQ(offered("IIF(NAME = '|", OffersFor::kExpression), "11+1: ; values of NAME ''");
    EXPECT_EQ(offered("IIF(NAME = 'x', 'a', H|", OffersFor::kExpression), "21+1: HEIGHT");
    for (const std::string& hostile :
         {std::string(200000, '('), std::string(60000, '('), std::string(49999, '\'')})
        EXPECT_TRUE(OffersAt(hostile, hostile.size(), treeFields(), OffersFor::kCondition).texts.empty());
    EXPECT_EQ(OffersAt("N", 99, treeFields(), OffersFor::kCondition).texts.size(), 3U);
}

TEST(Offers, AValueWrittenAsALiteralFindsItself) {
    dao::Date date, day;
    ASSERT_TRUE(dao::dateFromCalendar(2004, 5, 31, 13, 45, 10, date));
    ASSERT_TRUE(dao::dateFromCalendar(1850, 1, 2, 0, 0, 0, day));
    const std::pair<size_t, Variant> kValues[] = {{1, "oak"},        {1, "it's \"so\""},
                                                  {1, ""},           {1, "größer 𝄞"},
                                                  {3, int32_t{-5}},  {4, int16_t{7}},
                                                  {5, uint8_t{255}}, {6, 0.1},
                                                  {6, -1e300},       {6, 1.0 / 3},
                                                  {6, 5e-324},       {7, 0.1F},
                                                  {7, 1e-10F},       {8, dao::Currency{-125001}},
                                                  {9, true},         {9, false},
                                                  {10, date},        {10, day}};
    for (const auto& [field, value] : kValues) {
        const std::string text = FieldInCondition(treeFields()[field].name) + " = " + LiteralOf(value);
        ConditionFault fault;
        auto condition = Condition::read(text, treeFields(), fault);
        ASSERT_TRUE(condition) << text << " " << fault.sentence;
        std::vector<Variant> values(treeFields().size());
        values[field] = value;
        EXPECT_TRUE(condition->holds(values)) << text;
        values[field] = Variant();
        EXPECT_FALSE(condition->holds(values)) << text;
    }
    EXPECT_EQ(LiteralOf(Variant()), "");
    EXPECT_EQ(LiteralOf(dao::Binary{1}), "");
    EXPECT_EQ(LiteralOf(std::numeric_limits<double>::infinity()), "");
    EXPECT_EQ(LiteralOf(dao::Currency{125000}), "12.5");
    EXPECT_EQ(LiteralOf(day), "#1850-01-02#");
    for (const auto& [name, written] :
         {std::pair("PT_ID", "PT_ID"), std::pair("pole no", "[pole no]"), std::pair("no", "[no]"),
          std::pair("Round", "[Round]"), std::pair("NO#", "[NO#]"), std::pair("1st", "[1st]"),
          std::pair("Größe", "Größe"), std::pair("-- x", "[-- x]"), std::pair("", "[]")})
        EXPECT_EQ(FieldInCondition(name), written);
}

}  // namespace
