#include "platform/dao/connect_string.h"

#include <gtest/gtest.h>

namespace {

using dao::ConnectString;

TEST(ConnectStrings, SettingsAreFoundInBracesAndOutside) {
    ConnectString connect("ODBC;dsn= office ;Uid=survey;PWD={a;b}}c};Empty=;flag;DATABASE=x=y;");
    EXPECT_EQ(connect.value("DSN"), "office");
    EXPECT_EQ(connect.value("UID"), "survey");
    EXPECT_EQ(connect.password(), "a;b}c");
    EXPECT_EQ(connect.value("DATABASE"), "x=y");
    EXPECT_TRUE(connect.has("EMPTY"));
    EXPECT_FALSE(connect.has("flag") || connect.has("b}}c}") || connect.has("PORT"));
    EXPECT_EQ(ConnectString("PASSWORD=x").password(), "x");
    EXPECT_EQ(ConnectString("a=}};PWD=x").password(), "x");
    EXPECT_EQ(ConnectString("a={}};PWD=x").password(), "x") << "one brace is closed, or none is";
}

TEST(ConnectStrings, ThePasswordIsTakenOutAndTheRestStays) {
    EXPECT_EQ(dao::withoutPassword("ODBC;DSN=a;PWD=x;UID=b;"), "ODBC;DSN=a;UID=b;");
    EXPECT_EQ(dao::withoutPassword("ODBC;DSN=a;UID=b;pwd={x;y}"), "ODBC;DSN=a;UID=b");
    EXPECT_EQ(dao::withoutPassword("Password=q;dsn = a"), "dsn = a");
    EXPECT_EQ(dao::withoutPassword("ODBC;PWD=x"), "ODBC;");
    EXPECT_EQ(dao::withoutPassword("ODBC;DRIVER={a;PWD={x"), "ODBC;DRIVER={a")
        << "braces that are not closed";
    EXPECT_EQ(dao::withoutPassword("ODBC;DSN=a;PWD={x}};PWD=y}"), "ODBC;DSN=a");
    EXPECT_EQ(dao::withoutPassword("/jobs/PWD=x.mdb"), "/jobs/PWD=x.mdb");
}

TEST(ConnectStrings, SettingsAreReplacedAndAdded) {
    ConnectString connect("DSN=a;UID=b;");
    connect.set("uid", "c");
    connect.set("PWD", "x;{y}");
    EXPECT_EQ(connect.text(), "DSN=a;uid=c;PWD={x;{y}}}");
    EXPECT_EQ(connect.password(), "x;{y}");
    connect.set("PWD", " x ");
    EXPECT_EQ(connect.text(), "DSN=a;uid=c;PWD={ x }");
    EXPECT_EQ(connect.password(), " x ");
    ConnectString empty("ODBC;");
    empty.set("DSN", "office");
    EXPECT_EQ(empty.text(), "DSN=office");
}

}  // namespace
