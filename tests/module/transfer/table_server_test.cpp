// A table on a PostgreSQL server in the table dialog.
#include "tests/module/transfer/table_fixture.h"
#include "tests/platform/dao/odbc/postgres_server.h"

namespace {

class TableServer : public TableTest {
  protected:
    void SetUp() override {
        if (!server().missing().empty()) GTEST_SKIP() << server().missing();
        if (!server().runs()) server().start();
        TableTest::SetUp();
        ASSERT_EQ(
            server().answer(
                "SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE; "
                "CREATE SCHEMA survey; CREATE TABLE survey.poles (height double precision, pt_id varchar(20) "
                "PRIMARY KEY, number integer, gis_key varchar(30), seen timestamp, note text); "
                "INSERT INTO survey.poles SELECT i / 3.0, 'P' || i, i, 'POLES', '2004-05-31 13:45:10.25', "
                "'note ' || i FROM generate_series(1, 5) i"),
            "");
    }
    void TearDown() override {
        if (host_) TableTest::TearDown();
    }
    static PostgresServer& server() { return PostgresServer::instance(); }
    static std::string record(const std::string& id) {
        return server().answer(
            "SET extra_float_digits = 3; SELECT height, number, gis_key, seen, note FROM "
            "survey.poles WHERE pt_id = '" +
            id + "'");
    }
};

TEST_F(TableServer, CellsAreChangedOnAServer) {
    const std::string second = record("P2");
    ui_.answerBox("Yes");
    EXPECT_EQ(edit(server().connect(), "poles",
                   joined({{show(), cellAt(3, 1, "2.5"), cellAt(4, 1, "77"), cellAt(5, 1, "1/2/2003"),
                            cellAt(6, 2, "")},
                           save(),
                           {show(), click("Quit")}})),
              "2")
        << printed();
    EXPECT_NE(pictures()[0].find("6 x 5"), std::string::npos) << pictures()[0];
    EXPECT_EQ(words(lineOf(pictures()[0], "'P1'")),
              "'P1' 'POLES' '0.333333333' '1' '05/31/2004 13:45:10' 'note 1'");
    EXPECT_EQ(record("P1"), "2.5|77|POLES|2003-01-02 00:00:00|note 1\n");
    EXPECT_EQ(record("P2"), second.substr(0, second.rfind("note 2")) + "\n")
        << "all but the emptied cell is as it was";
    for (const std::string& line : ui_.log()) EXPECT_EQ(line.find("7319"), std::string::npos) << line;
}

TEST_F(TableServer, ARecordThatIsGoneIsToldAndTheOthersAreSaved) {
    ui_.answerBox("Yes");
    editWhile(
        server().connect(), "poles", {cellAt(4, 2, "20"), cellAt(4, 4, "40")},
        [] { server().answer("DELETE FROM survey.poles WHERE pt_id = 'P2'"); },
        joined({save(), {show(), click("Quit")}}));
    ASSERT_GE(boxes().size(), 2U);
    EXPECT_TRUE(boxes()[1].starts_with("box [Error] \"The record has been changed or deleted")) << boxes()[1];
    EXPECT_EQ(server().answer("SELECT number FROM survey.poles ORDER BY pt_id"), "1\n3\n40\n5\n");
}

TEST_F(TableServer, WhatWasTypedOutlivesTheServer) {
    for (const char* box : {"Yes", "OK", "OK", "No"}) ui_.answerBox(box);
    editWhile(
        server().connect(), "poles", {cellAt(4, 2, "20")}, [] { server().stop(SIGQUIT); },
        joined({save(), {show(), click("Quit")}}));
    ASSERT_GE(boxes().size(), 2U);
    EXPECT_TRUE(boxes()[1].starts_with("box [Error] \"")) << boxes()[1];
    EXPECT_NE(lineOf(pictures()[0], "'P2'").find("'20'"), std::string::npos);
    EXPECT_EQ(boxes().back(), "box [Alert] \"Would you like to save the changes?\"");
}

}  // namespace
