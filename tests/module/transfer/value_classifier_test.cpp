// What a text is read as where numbers are wanted.
#include <gtest/gtest.h>

#include "module/transfer/value_classifier.h"

using namespace norvane;

TEST(ValueClassifier, ReadsAllOfAText) {
    for (const char* value : {"0", "7", "-12", "+5", " \t42", "00123", "99999999999999999999"})
        EXPECT_EQ(ClassifyValue(value), ValueClass::kInteger) << value;
    for (const char* value : {"0.5", ".5", "-.5", "5.", "1e5", "1E-3", " 2.50", "+0.1", "-1.5e+300"})
        EXPECT_EQ(ClassifyValue(value), ValueClass::kReal) << value;
    for (const char* value :
         {"",    " ",  "-",     "+",      ".",   "0x1F", "inf",  "nan",   "-Infinity", "5 ",
          "1,5", "1e", "1e400", "1e-400", "--5", "+-5",  "12ft", "1.2.3", "e5",        "½"})
        EXPECT_EQ(ClassifyValue(value), ValueClass::kText) << value;
}
