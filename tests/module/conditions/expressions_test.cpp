// What labels say of records.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "module/conditions/expression.h"
#include "tests/module/conditions/tree_records.h"

using namespace norvane;
using dao::Variant;

namespace {

std::vector<Variant> oak() {
    dao::Date seen;
    dao::dateFromCalendar(2004, 5, 31, 13, 5, 9, seen);
    //      ID          NAME   NOTE       WHOLE         SMALL      TINY        HEIGHT  RATIO
    return {int32_t{3}, "oak", Variant(), int32_t{-12}, Variant(), uint8_t{7}, 12.345, 0.1F,
            // PRICE               ALIVE SEEN  pole no DATA
            dao::Currency{1234567}, true, seen, "A17", Variant()};
}

// The label of the oak, or the fault as place and sentence.
std::string label(const std::string& text, const std::vector<Variant>& values = oak()) {
    ConditionFault fault;
    auto expression = Expression::read(text, treeFields(), fault);
    if (expression) return expression->textOf(values);
    EXPECT_LE(fault.place + fault.length, text.size());
    return "{" + text.substr(fault.place, fault.length) + "} " + fault.sentence;
}

TEST(Expressions, JoinAndAdd) {
    EXPECT_EQ(label("NAME"), "oak");
    EXPECT_EQ(label("[pole no] & ' ' & name"), "A17 oak");
    EXPECT_EQ(label("NAME + ' ' + HEIGHT"), "oak 12.345");
    EXPECT_EQ(label("WHOLE + TINY"), "-5");
    EXPECT_EQ(label("WHOLE & TINY"), "-127");
    EXPECT_EQ(label("WHOLE + TINY & ' m'"), "-5 m");
    EXPECT_EQ(label("'No ' & WHOLE + TINY"), "No -127") << "from left to right";
    EXPECT_EQ(label("'No ' & (WHOLE + TINY)"), "No -5");
    EXPECT_EQ(label("1 + 2.5 + -0.5"), "3");
    EXPECT_EQ(label("0.1 + 0.2"), "0.3");
    EXPECT_EQ(label("'1' + 2"), "12") << "a text is no number";
    EXPECT_EQ(label("RATIO + 1"), "1.1");
    EXPECT_EQ(label("RATIO"), "0.1");
    EXPECT_EQ(label("PRICE"), "123.4567");
    EXPECT_EQ(label("PRICE + 1"), "124.4567");
    EXPECT_EQ(label("ALIVE"), "Yes");
    EXPECT_EQ(label("ALIVE + 1"), "Yes1");
    EXPECT_EQ(label("SEEN"), "2004-05-31 13:05:09");
    EXPECT_EQ(label("#2004-05-31#"), "2004-05-31");
    EXPECT_EQ(label("\"a\nb\""), "a\nb");
    // An empty field is an empty text.
    EXPECT_EQ(label("NOTE"), "");
    EXPECT_EQ(label("NOTE & NAME & SMALL"), "oak");
    EXPECT_EQ(label("SMALL + 5"), "5");
    EXPECT_EQ(label("ROUND(SMALL, 2) & FORMAT(SMALL, '0.0') & UPPER(NOTE)"), "");
}

TEST(Expressions, Functions) {
    EXPECT_EQ(label("UPPER('größe ' & NAME)"), "GRÖßE OAK");
    EXPECT_EQ(label("lower('GRÖßE')"), "größe");
    EXPECT_EQ(label("ROUND(HEIGHT, 1)"), "12.3");
    EXPECT_EQ(label("ROUND(HEIGHT, 2)"), "12.35") << "though the real is a little less";
    EXPECT_EQ(label("ROUND(-2.5, 0)"), "-3");
    EXPECT_EQ(label("ROUND(-0.4, 0)"), "0");
    EXPECT_EQ(label("ROUND(9.995, 2)"), "10");
    EXPECT_EQ(label("ROUND(999.9, 0)"), "1000");
    EXPECT_EQ(label("ROUND(1e15, 2)"), "1000000000000000");
    EXPECT_EQ(label("ROUND('12.345', 1)"), "12.3");
    EXPECT_EQ(label("ROUND([pole no], 1)"), "A17");
    EXPECT_EQ(label("ROUND(HEIGHT, 0) + 1"), "13");
    EXPECT_EQ(label("FORMAT(HEIGHT, '0.00')"), "12.35");
    EXPECT_EQ(label("FORMAT(HEIGHT, '000.0 m')"), "012.3 m");
    EXPECT_EQ(label("FORMAT(12.5, '0.00')"), "12.50");
    EXPECT_EQ(label("FORMAT(12.5, '0.##')"), "12.5");
    EXPECT_EQ(label("FORMAT(12, '0.##')"), "12");
    EXPECT_EQ(label("FORMAT(0.5, '#.0#')"), ".5");
    EXPECT_EQ(label("FORMAT(0.5, '.00')"), ".50");
    EXPECT_EQ(label("FORMAT(1234567.891, '#,##0.0')"), "1,234,567.9");
    EXPECT_EQ(label("FORMAT(999999.96, '#,##0.0')"), "1,000,000.0");
    EXPECT_EQ(label("FORMAT(123, '#,##0')"), "123");
    EXPECT_EQ(label("FORMAT(-0.04, '0.0')"), "0.0");
    EXPECT_EQ(label("FORMAT(-12.34, 'H=0.0, rounded')"), "H=-12.3, rounded");
    EXPECT_EQ(label("FORMAT(0, '#')"), "");
    EXPECT_EQ(label("FORMAT(1e300, '0').").substr(0, 2), "{.");
    EXPECT_EQ(label("FORMAT(SEEN, 'YYYY-MM-DD')"), "2004-05-31");
    EXPECT_EQ(label("FORMAT(SEEN, 'd.m.yy, h:nn:s')"), "31.5.04, 13:05:9");
    EXPECT_EQ(label("FORMAT(NAME & 1, '0.0')"), "oak1");
    EXPECT_EQ(label("IIF(ALIVE = YES, 'alive', 'dead')"), "alive");
    EXPECT_EQ(label("IIF(NOTE = 'x' OR HEIGHT > 100, 1, NAME & '?')"), "oak?");
    EXPECT_EQ(label("IIF(NOTE = 'x', 'yes', 'no')"), "no") << "of an empty field nothing is true";
    EXPECT_EQ(label("NAME & IIF(HEIGHT > 10, ' tall' & IIF(HEIGHT > 20, '!', '.'), '')"), "oak tall.");
}

TEST(Expressions, FaultsAreTold) {
    EXPECT_EQ(label(""), "{} A field, a text or a function is missing.");
    EXPECT_EQ(label("NAME &"), "{} A field, a text or a function is missing.");
    EXPECT_EQ(label("NAME NOTE"), "{NOTE} + or & is expected in front of NOTE.");
    EXPECT_EQ(label("NAMES"), "{NAMES} There is no field NAMES.");
    EXPECT_EQ(label("LEFT(NAME, 2)"),
              "{LEFT} There is no function LEFT; there are UPPER, LOWER, ROUND, FORMAT and IIF.");
    EXPECT_EQ(label("DATA"), "{DATA} The field DATA holds data, which cannot be written.");
    EXPECT_EQ(label("ROUND(SEEN, 1)"), "{SEEN} ROUND rounds numbers; the field SEEN holds dates.");
    EXPECT_EQ(label("FORMAT(NAME, '0')"),
              "{NAME} FORMAT writes numbers and dates; the field NAME holds text.");
    EXPECT_EQ(label("ROUND(HEIGHT)"), "{)} A comma is expected in front of ).");
    for (const char* decimals : {"-1", "16", "1.5", "'1'", "TINY"})
        EXPECT_NE(label(std::string("ROUND(HEIGHT, ") + decimals + ")")
                      .find("the number of decimals, from 0 to 15."),
                  std::string::npos);
    for (const char* pattern : {"5", "''", "'x'", "'0.0000000000000000'", "NAME"})
        EXPECT_NE(label(std::string("FORMAT(HEIGHT, ") + pattern + ")").find("FORMAT needs a pattern"),
                  std::string::npos)
            << pattern;
    EXPECT_EQ(label("(HEIGHT - 1)"), "{-} Labels add (+) and join (&); they do not subtract.");
    EXPECT_EQ(label("(NAME"), "{} A closing parenthesis is missing.");
    EXPECT_EQ(label("IIF(HEIGHT, 1, 2)"), "{HEIGHT} A comparison is expected behind HEIGHT.");
    EXPECT_EQ(label("IIF(HEIGHT > 1, 1)"), "{)} A comma is expected in front of ).");
    EXPECT_NE(label(std::string(100000, '(')).find("longer"), std::string::npos);
    EXPECT_NE(label(std::string(201, '(') + "NAME" + std::string(201, ')')).find("More than 200"),
              std::string::npos);
    std::string calls;
    for (int i = 0; i < 5000; ++i) calls += "UPPER(";
    EXPECT_NE(label(calls).find("More than 200"), std::string::npos);
    std::string sum = "NAME";
    for (int i = 0; i < 10000; ++i) sum += "&NAME";
    EXPECT_EQ(label(sum).size(), 30003U);
}

TEST(Expressions, ValuesThatAreNoNumbersAreWrittenAsNothing) {
    std::vector<Variant> values = oak();
    values[6] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(label("HEIGHT & '/' & ROUND(HEIGHT, 1) & '/' & FORMAT(HEIGHT, '0.0')", values), "//");
    values[6] = std::numeric_limits<double>::infinity();
    EXPECT_EQ(label("HEIGHT & '/' & FORMAT(HEIGHT, '0.0')", values), "/");
    values[6] = 1e300;
    EXPECT_EQ(label("FORMAT(HEIGHT, '#,##0')", values).size(), 401U);
    ConditionFault fault;
    auto expression = Expression::read("NAME & IIF(HEIGHT > TINY, ID, SEEN)", treeFields(), fault);
    ASSERT_TRUE(expression);
    EXPECT_EQ(expression->usedFields(), (std::vector<size_t>{0, 1, 5, 6, 10}));
}

}  // namespace
