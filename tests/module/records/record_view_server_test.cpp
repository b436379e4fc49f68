// A table on a PostgreSQL server that others change while it is shown.
#include "module/records/key_index.h"
#include "tests/module/records/trees.h"
#include "tests/platform/dao/odbc/postgres_server.h"

using norvane::RecordView;

namespace {

class RecordViewServer : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!server().missing().empty()) GTEST_SKIP() << server().missing();
        if (!server().runs()) server().start();
        run("DROP SCHEMA IF EXISTS survey CASCADE; CREATE SCHEMA survey;"
            "CREATE TABLE survey.poles (pt_id varchar(20), height double precision, note text);"
            "INSERT INTO survey.poles SELECT 'P' || i, i / 2.0, 'note ' || i FROM generate_series(1, 300) i");
        database_.Open("", false, false, dao::ConnectString(server().connect()));
    }
    static void run(const std::string& sql) {
        ASSERT_EQ(server().answer("SET client_min_messages = warning; " + sql), "");
    }
    static PostgresServer& server() { return PostgresServer::instance(); }

    CDaoDatabase database_;
};

TEST_F(RecordViewServer, WhatOthersChangeIsFollowed) {
    RecordView view(database_, "survey.poles", "PT_ID");
    workAll(view);
    ASSERT_EQ(view.shown(), 300);
    EXPECT_EQ(view.text(4, 2), "note 5");
    run("UPDATE survey.poles SET note = 'first' WHERE pt_id = 'P5'; "
        "UPDATE survey.poles SET note = 'second' WHERE pt_id = 'P5'");
    view.noteChanged(view.id(4));
    EXPECT_EQ(view.text(4, 2), "second") << "although the server keeps it at another place";
    EXPECT_EQ(view.values(4)[2], dao::Variant("second"));
    run("UPDATE survey.poles SET note = 'third' WHERE pt_id = 'P5'");
    view.noteChanged(view.id(4));
    EXPECT_EQ(view.text(4, 2), "third");
    run("BEGIN; DELETE FROM survey.poles WHERE pt_id = 'P5'; INSERT INTO survey.poles VALUES ('P5', 1, "
        "'anew'); "
        "COMMIT");
    view.noteChanged(view.id(4));
    EXPECT_EQ(view.text(4, 2), "anew") << "as a sheet saves a record";
    EXPECT_FALSE(view.isOutdated());
    run("DELETE FROM survey.poles WHERE pt_id = 'P5'");
    view.noteChanged(view.id(4));
    EXPECT_EQ(view.text(4, 2), "#Deleted");
    EXPECT_EQ(view.text(5, 2), "note 6");
    run("UPDATE survey.poles SET pt_id = 'P7' WHERE pt_id = 'P8'");
    view.refresh();
    workAll(view);
    const auto rowOfNote = [&](const std::string& note) {
        long row = 0;
        while (row < view.shown() && view.text(row, 2) != note) ++row;
        return row;
    };
    const long seventh = rowOfNote("note 7");
    EXPECT_EQ(view.key(rowOfNote("note 8")), "P7");
    run("UPDATE survey.poles SET note = 'note 7a' WHERE note = 'note 7'");
    view.noteChanged(view.id(seventh));
    EXPECT_EQ(view.text(seventh, 2), "note 7a") << "of two records of one key, the one that has moved";
    run("DELETE FROM survey.poles WHERE note = 'note 7a'");
    view.noteChanged(view.id(seventh));
    EXPECT_EQ(view.text(seventh, 2), "#Deleted") << "the other one has a row of its own";
    run("INSERT INTO survey.poles VALUES ('P7', 1, 'note 7b')");
    view.noteChanged(view.id(seventh));
    EXPECT_EQ(view.text(seventh, 2), "note 7b");
    EXPECT_EQ(view.rowOf(std::string("P7")), std::min(seventh, rowOfNote("note 8")));
    run("INSERT INTO survey.poles SELECT 'Q' || i, 1, 'more' FROM generate_series(1, 20000) i");
    view.refresh();
    workAll(view);
    EXPECT_EQ(view.shown(), 20299);
    EXPECT_EQ(view.key(20298), "Q20000");
}

TEST_F(RecordViewServer, WithoutAKeyAChangedRecordIsFoundByListingTheTableAnew) {
    run("CREATE TABLE survey.notes (note text); INSERT INTO survey.notes VALUES ('a'), ('b')");
    RecordView view(database_, "survey.notes", "");
    workAll(view);
    ASSERT_EQ(view.shown(), 2);
    run("UPDATE survey.notes SET note = 'c' WHERE note = 'a'");
    view.noteChanged(view.id(0));
    EXPECT_TRUE(view.isWorking());
    workAll(view);
    EXPECT_EQ(view.text(0, 0) + view.text(1, 0), "bc");
}

TEST_F(RecordViewServer, ViewsAndTablesInPartsAreShown) {
    run("CREATE VIEW survey.tall AS SELECT * FROM survey.poles WHERE height > 100;"
        "CREATE TABLE survey.parts (pt_id varchar(20), n integer) PARTITION BY RANGE (n);"
        "CREATE TABLE survey.low PARTITION OF survey.parts FOR VALUES FROM (0) TO (100);"
        "CREATE TABLE survey.high PARTITION OF survey.parts FOR VALUES FROM (100) TO (1000);"
        "INSERT INTO survey.parts SELECT 'P' || i, i FROM generate_series(1, 299) i");
    RecordView tall(database_, "survey.tall", "PT_ID");
    workAll(tall);
    EXPECT_EQ(tall.shown(), 100);
    RecordView parts(database_, "survey.parts", "PT_ID");
    parts.sortBy({1, true});
    workAll(parts);
    ASSERT_EQ(parts.shown(), 299);
    EXPECT_EQ(parts.key(0), "P299");
    EXPECT_EQ(parts.key(298), "P1");
}

TEST_F(RecordViewServer, AnIndexOfTheServersOwnFormIsUsed) {
    run("INSERT INTO survey.poles VALUES ('p0', NULL, NULL), (NULL, 7, NULL)");
    EXPECT_TRUE(norvane::MakeIndex(database_, "survey.poles", "PT_ID"));
    EXPECT_FALSE(norvane::MakeIndex(database_, "survey.poles", "pt_id"));
    EXPECT_EQ(server().answer("SELECT indexdef FROM pg_indexes WHERE tablename = 'poles'"),
              "CREATE INDEX poles_upper_idx ON survey.poles USING btree (upper((pt_id)::text))\n");
    RecordView view(database_, "survey.poles", "PT_ID");
    view.sortBy({0, false});
    workAll(view);
    ASSERT_EQ(view.shown(), 302);
    EXPECT_EQ(view.key(0), "") << "Null comes first";
    EXPECT_EQ(view.key(1), "P0");
    EXPECT_EQ(view.key(2), "P1");
    EXPECT_EQ(view.key(3), "P10");
    view.sortBy({0, true});
    workAll(view);
    EXPECT_EQ(view.key(0), "P99");
    EXPECT_EQ(view.key(301), "");
}

TEST_F(RecordViewServer, AServerThatGoesIsTold) {
    RecordView view(database_, "survey.poles", "PT_ID");
    workAll(view);
    server().stop(SIGQUIT);
    EXPECT_TRUE(view.text(200, 2).starts_with("#Error: ")) << view.text(200, 2);
    norvane::RecordFilter filter;
    filter.words = "note";
    view.setFilter(filter);
    while (view.work(std::chrono::milliseconds(10))) {
    }
    EXPECT_NE(view.fault(), "");
    view.refresh();
    EXPECT_NE(view.fault(), "");
    EXPECT_FALSE(view.isWorking());
    server().start();
}

}  // namespace
