#include "platform/dao/connect_string.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <type_traits>

#include "platform/dao/database_path.h"
#include "platform/ui/backend.h"

namespace {

using dao::ConnectString;

TEST(ConnectStrings, SettingsAreFoundInBracesAndOutside) {
    ConnectString connect("ODBC;dsn= office ;Uid=survey;PWD={a;b}}c};Empty=;flag;DATABASE=x=y;");
    EXPECT_EQ(connect.value("DSN"), "office");
    EXPECT_EQ(connect.value("UID"), "survey");
    EXPECT_EQ(connect.password().reveal(), "a;b}c");
    EXPECT_EQ(connect.value("DATABASE"), "x=y");
    EXPECT_TRUE(connect.has("EMPTY"));
    EXPECT_FALSE(connect.has("flag") || connect.has("b}}c}") || connect.has("PORT"));
    EXPECT_EQ(ConnectString("PASSWORD=x").password().reveal(), "x");
    EXPECT_EQ(ConnectString("a=}};PWD=x").password().reveal(), "x");
    EXPECT_EQ(ConnectString("a={}};PWD=x").password().reveal(), "x") << "one brace is closed, or none is";
}

TEST(ConnectStrings, ThePasswordIsTakenOutAndTheRestStays) {
    EXPECT_EQ(ConnectString("ODBC;DSN=a;PWD=x;UID=b;").text(), "ODBC;DSN=a;UID=b;");
    EXPECT_EQ(ConnectString("ODBC;DSN=a;UID=b;pwd={x;y}").text(), "ODBC;DSN=a;UID=b");
    EXPECT_EQ(ConnectString("Password=q;dsn = a").text(), "dsn = a");
    EXPECT_EQ(ConnectString("ODBC;PWD=x").text(), "ODBC;");
    EXPECT_EQ(ConnectString("ODBC;DRIVER={a;PWD={x").text(), "ODBC;DRIVER={a")
        << "braces that are not closed";
    EXPECT_EQ(ConnectString("ODBC;DSN=a;PWD={x}};PWD=y}").text(), "ODBC;DSN=a");
    EXPECT_EQ(ConnectString("/jobs/PWD=x.mdb").text(), "/jobs/PWD=x.mdb");
}

TEST(ConnectStrings, ThePasswordIsNoSettingThatOneReads) {
    ConnectString connect("ODBC;DSN=a;Schema={of fice};UID=b;PWD=x");
    for (const char* name : {"PWD", "pwd", "PASSWORD"}) EXPECT_EQ(connect.value(name), "");
    EXPECT_TRUE(connect.has("PWD"));
    EXPECT_EQ(connect.withPassword().reveal(), "ODBC;DSN=a;Schema={of fice};UID=b;PWD=x");
    EXPECT_EQ(connect.forDriver().reveal(), "DSN=a;UID=b;PWD=x") << "the schema is no affair of the driver's";
    EXPECT_EQ(connect.tableOwner(), "of fice");
    EXPECT_EQ(ConnectString("ODBC;DSN=a;UID=b;SCHEMA=").tableOwner(), "b");
    EXPECT_TRUE(ConnectString().empty() && ConnectString("").empty() && !ConnectString("ODBC;").empty());
    EXPECT_EQ(dao::DatabasePath(connect),
              dao::DatabasePath(std::string("ODBC;DSN=a;Schema={of fice};UID=b")));
    EXPECT_EQ(dao::DatabasePath(std::string("/jobs;PWD=x;.mdb")).text(), "/jobs;PWD=x;.mdb");
}

// What a password could leave by without a word that says so.
template <class Text>
concept IsTold = requires(Text text) {
    ui::messageBox("Error", text);
};
template <class Text>
concept IsPrinted = requires(Text text, std::ostream& out) {
    out << text;
};
template <class Text>
constexpr bool kBecomesText =
    std::is_convertible_v<Text, std::string> || std::is_convertible_v<Text, std::string_view> ||
    IsTold<Text> || IsPrinted<Text>;

TEST(ConnectStrings, BecomeNoTextWithTheirPasswordUnasked) {
    static_assert(!kBecomesText<ConnectString> && !kBecomesText<dao::Secret>);
    static_assert(kBecomesText<std::string> && kBecomesText<dao::DatabasePath>);
    static_assert(!std::is_convertible_v<std::string, dao::DatabasePath>);
    static_assert(!std::is_convertible_v<ConnectString, dao::DatabasePath>);
    // Those who ask: the drivers' sign-in, the engine of files with a password, and the symbols of Lisp.
    const std::filesystem::path source = NORVANE_SOURCE_DIR;
    std::set<std::string> who;
    for (const char* folder : {"platform", "module", "hostcad", "product"})
        for (const auto& entry : std::filesystem::recursive_directory_iterator(source / folder)) {
            if (!entry.is_regular_file()) continue;
            std::ifstream in(entry.path());
            std::string content{std::istreambuf_iterator<char>(in), {}};
            if (content.find("reveal()") != std::string::npos)
                who.insert(std::filesystem::relative(entry.path(), source).string());
        }
    EXPECT_EQ(who,
              (std::set<std::string>{"module/store/server_sign_in.cpp", "platform/dao/access/connection.cpp",
                                     "platform/dao/connect_string.h", "platform/dao/odbc/sign_in.cpp"}));
}

TEST(ConnectStrings, SettingsAreReplacedAndAdded) {
    ConnectString connect("DSN=a;UID=b;");
    connect.set("uid", "c");
    connect.set("PWD", "x;{y}");
    EXPECT_EQ(connect.withPassword().reveal(), "DSN=a;uid=c;PWD={x;{y}}}");
    EXPECT_EQ(connect.password().reveal(), "x;{y}");
    connect.set("PWD", " x ");
    EXPECT_EQ(connect.withPassword().reveal(), "DSN=a;uid=c;PWD={ x }");
    EXPECT_EQ(connect.password().reveal(), " x ");
    ConnectString empty("ODBC;");
    empty.set("DSN", "office");
    EXPECT_EQ(empty.text(), "ODBC;DSN=office");
}

}  // namespace
