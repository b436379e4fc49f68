// Databases on servers: what is made, written and read, through the drivers of PostgreSQL and of SQLite.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/dao/dao.h"
#include "tests/platform/dao/description.h"
#include "tests/platform/dao/lock_timeout.h"
#include "tests/platform/dao/odbc/postgres_server.h"
#include "tests/platform/ui/checked_script.h"

namespace {

using dao::ConnectString;
using dao::toText;
using dao::Variant;
using Strings = std::vector<std::string>;

CDaoFieldInfo field(const std::string& name, int type, long size = 0) {
    CDaoFieldInfo info;
    info.name = name;
    info.type = type;
    info.size = size;
    info.allowZeroLength = true;
    return info;
}

class Server : public ::testing::TestWithParam<const char*> {
  protected:
    bool onPostgres() const { return std::string(GetParam()) == "PostgreSQL"; }
    static PostgresServer& postgres() { return PostgresServer::instance(); }

    void SetUp() override {
        if (onPostgres()) {
            if (!postgres().missing().empty()) GTEST_SKIP() << postgres().missing();
            connect = postgres().connect();
            postgres().answer("SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE");
        } else {
            std::string driver = odbcDriver("libsqlite3odbc.so");
            if (driver.empty()) GTEST_SKIP() << "the ODBC driver of SQLite is not installed";
            connect = "ODBC;DRIVER=" + driver + ";Database=" + folder("server.db");
        }
        db.Open("", false, false, ConnectString(connect));
    }

    void makeTable(const std::string& name, const std::vector<CDaoFieldInfo>& fields) {
        CDaoTableDef table(&db);
        table.Create(name);
        for (const CDaoFieldInfo& f : fields) table.CreateField(f);
        table.Append();
    }
    Strings column(const std::string& sql) {
        Strings values;
        CDaoRecordset records(&db);
        for (records.Open(dbOpenDynaset, sql); !records.IsEOF(); records.MoveNext())
            values.push_back(toText(records.GetFieldValue(0)));
        return values;
    }

    ScratchFolder folder;
    std::string connect;
    CDaoDatabase db;
};

INSTANTIATE_TEST_SUITE_P(Drivers, Server, ::testing::Values("PostgreSQL", "SQLite"),
                         [](const auto& name) { return std::string(name.param); });

TEST_P(Server, ValuesOfAllTypesComeBackAsTheyWere) {
    makeTable("ALL_TYPES", {field("ID", dbText, 20), field("YES", dbBoolean), field("TINY", dbByte),
                            field("SMALL", dbInteger), field("WHOLE", dbLong), field("MONEY", dbCurrency),
                            field("SINGLE", dbSingle), field("REAL_", dbDouble), field("SEEN", dbDate),
                            field("NAME", dbText, 40), field("NOTES", dbMemo), field("PICTURE", dbLongBinary),
                            field("GUID", dbGUID)});
    dao::Binary picture(200000);
    for (size_t i = 0; i < picture.size(); ++i) picture[i] = static_cast<unsigned char>(i * 7);
    // A memo with a character of two units at every place where pieces could meet.
    std::string notes;
    for (int i = 0; i < 50000; ++i) notes += i % 3 ? "𝄞" : "ä";
    const std::vector<std::pair<const char*, Variant>> kValues = {
        {"YES", true},
        {"TINY", uint8_t{200}},
        {"SMALL", int16_t{-3}},
        {"WHOLE", -2147483647},
        {"MONEY", "12345.6789"},
        {"SINGLE", 0.1F},
        {"REAL_", -1.25e-300},
        {"SEEN", "1776-07-04 18:30:05"},
        {"NAME", "it's \"größer\" [x] {fn} ? 𝄞"},
        {"NOTES", notes},
        {"PICTURE", picture},
        {"GUID", "a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11"}};
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM ALL_TYPES");
    EXPECT_TRUE(records.IsEOF());
    std::vector<std::string> written;
    records.AddNew();
    records.SetFieldValue("ID", "full");
    for (const auto& [name, value] : kValues) records.SetFieldValue(name, value);
    for (const auto& [name, value] : kValues) written.push_back(toText(records.GetFieldValue(name)));
    records.Update();
    records.AddNew();
    records.SetFieldValue("ID", "empty");
    records.SetFieldValue("NAME", "");
    records.Update();
    records.Close();

    records.Open(dbOpenDynaset, "SELECT * FROM ALL_TYPES WHERE ID = 'full'");
    ASSERT_FALSE(records.IsEOF());
    for (size_t i = 0; i < kValues.size(); ++i) {
        std::string read = toText(records.GetFieldValue(kValues[i].first));
        // Servers write these in their own case.
        if (std::string(kValues[i].first) == "GUID")
            std::transform(read.begin(), read.end(), read.begin(), ::tolower);
        EXPECT_EQ(read, written[i]) << kValues[i].first;
    }
    EXPECT_TRUE(records.GetFieldValue("PICTURE") == Variant(picture));
    records.Close();
    records.Open(dbOpenSnapshot, "SELECT * FROM ALL_TYPES WHERE ID = 'empty'");
    EXPECT_FALSE(records.CanUpdate());
    for (const auto& [name, value] : kValues)
        EXPECT_EQ(records.GetFieldValue(name).isNull(), std::string(name) != "NAME") << name;
    EXPECT_EQ(toText(records.GetFieldValue("NAME")), "");
    // Text that is no number does not leave the house.
    records.Close();
    records.Open(dbOpenDynaset, "ALL_TYPES");
    records.Edit();
    EXPECT_NE(descriptionOf([&] { records.SetFieldValue("WHOLE", "x"); }), "no exception");
    EXPECT_NE(descriptionOf([&] { records.SetFieldValue("NAME", std::string(41, 'x')); }), "no exception");
}

TEST_P(Server, RecordsAreWalkedChangedAndDeleted) {
    CDaoFieldInfo counter = field("NO", dbLong);
    counter.attributes = dbAutoIncrField;
    makeTable("POLES", {counter, field("PT_ID", dbText, 20), field("H", dbDouble)});
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM [poles]");
    for (const char* id : {"a", "b", "c", "d"}) {
        records.AddNew();
        records.SetFieldValue("PT_ID", id);
        records.Update();
    }
    records.Close();
    EXPECT_EQ(column("SELECT NO FROM POLES ORDER BY NO"), (Strings{"1", "2", "3", "4"}));

    records.Open(dbOpenDynaset, "SELECT * FROM POLES ORDER BY PT_ID");
    records.MoveNext();
    records.Edit();
    records.SetFieldValue("PT_ID", "bb");
    records.SetFieldValue("H", 2.5);
    records.Update();
    EXPECT_EQ(toText(records.GetFieldValue("PT_ID")), "bb");
    records.Edit();
    records.SetFieldValueNull("H");
    records.Update();
    records.MoveNext();
    records.Delete();
    EXPECT_EQ(descriptionOf([&] { records.GetFieldValue("PT_ID"); }), "The record has been deleted.");
    records.MoveNext();
    EXPECT_EQ(toText(records.GetFieldValue("PT_ID")), "d");
    records.MoveLast();
    records.MovePrev();
    records.MovePrev();
    EXPECT_EQ(toText(records.GetFieldValue("PT_ID")), "bb");
    // Another user is faster.
    db.Execute("DELETE FROM POLES WHERE UCASE(PT_ID) = 'BB'", dbSQLPassThrough);
    records.Edit();
    records.SetFieldValue("H", 1.0);
    EXPECT_EQ(descriptionOf([&] { records.Update(); }),
              "The record has been changed or deleted by another user.");
    EXPECT_EQ(column("SELECT PT_ID FROM POLES ORDER BY 1"), (Strings{"a", "d"}));

    // What is no plain SELECT of one table is read only.
    records.Open(dbOpenDynaset, "SELECT count(*) AS N, max(PT_ID) FROM POLES");
    EXPECT_FALSE(records.CanUpdate());
    EXPECT_EQ(toText(records.GetFieldValue("n")), "2");
}

TEST_P(Server, ParametersAreValuesAndNothingElse) {
    makeTable("TREES", {field("ID", dbText, 20), field("WHOLE", dbLong), field("PRICE", dbCurrency),
                        field("SEEN", dbDate)});
    db.Execute("INSERT INTO TREES VALUES ('a1', 1, 12.5, #2004-05-31#)");
    db.Execute("INSERT INTO TREES VALUES ('größer', 2, 13.25, #2004-06-01 13:45:10#)");
    db.Execute("INSERT INTO TREES VALUES (''' OR 1=1 --', 3, NULL, NULL)");
    auto found = [&](const std::string& where, const std::vector<Variant>& parameters, int options = 0) {
        std::string ids;
        CDaoRecordset records(&db);
        records.Open(dbOpenDynaset, "SELECT * FROM TREES WHERE " + where + " ORDER BY WHOLE", options,
                     parameters);
        for (; !records.IsEOF(); records.MoveNext()) ids += toText(records.GetFieldValue("ID")) + ";";
        return ids;
    };
    dao::Date june;
    ASSERT_TRUE(dao::dateFromCalendar(2004, 6, 1, 0, 0, 0, june));
    EXPECT_EQ(found("ID = ?", {"größer"}), "größer;");
    EXPECT_EQ(found("ID = ?", {"' OR 1=1 --"}), "' OR 1=1 --;");
    EXPECT_EQ(found("WHOLE >= ? AND WHOLE <= ?", {int32_t{2}, int32_t{3}}), "größer;' OR 1=1 --;");
    EXPECT_EQ(found("PRICE > ? AND ID <> '?'", {12.75}), "größer;");
    EXPECT_EQ(found("SEEN < ?", {june}), "a1;");
    EXPECT_THROW(found("ID = ?", {"a1", "a2"}), CDaoException);
    EXPECT_THROW(found("ID = ?", {}), CDaoException);
    // The lock of a search names what it looks for.
    db.BeginTrans();
    EXPECT_EQ(found("ID = ?", {"a1"}, dbDenyWrite), "a1;");
    db.CommitTrans();
}

TEST_P(Server, WithoutAKeyRecordsAreToldApartByTheirValuesOrNotAtAll) {
    makeTable("NOTES", {field("A", dbText, 20), field("B", dbLong), field("H", dbDouble)});
    for (const char* values :
         {"'x', 1, 0.1", "'x', 2, 0.1", "'twin', 3, 0.1", "'twin', 3, 0.1", "NULL, 4, NULL"})
        db.Execute(std::string("INSERT INTO NOTES (A, B, H) VALUES (") + values + ")", dbSQLPassThrough);
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM NOTES WHERE B = 2");
    records.Edit();
    records.SetFieldValue("A", "changed");
    records.Update();
    records.Open(dbOpenDynaset, "SELECT * FROM NOTES WHERE A IS NULL");
    records.Delete();
    records.Open(dbOpenDynaset, "SELECT * FROM NOTES WHERE A = 'twin'");
    EXPECT_EQ(descriptionOf([&] { records.Delete(); }),
              "The table has no key that tells this record from others of the same values.");
    EXPECT_EQ(column("SELECT A FROM NOTES ORDER BY A"), (Strings{"changed", "twin", "twin", "x"}));
}

TEST_P(Server, ATransactionIsKeptWholeOrNotAtAll) {
    makeTable("T", {field("A", dbText, 20)});
    db.BeginTrans();
    db.Execute("INSERT INTO T (A) VALUES ('undone')", dbSQLPassThrough);
    makeTable("U", {field("A", dbText, 20)});
    db.Rollback();
    EXPECT_EQ(column("SELECT A FROM T"), Strings{});
    db.BeginTrans();
    db.Execute("INSERT INTO T (A) VALUES ('kept')", dbSQLPassThrough);
    db.CommitTrans();
    db.BeginTrans();
    db.Execute("INSERT INTO T (A) VALUES ('closed')", dbSQLPassThrough);
    db.Close();
    db.Open("", false, false, ConnectString(connect));
    EXPECT_EQ(column("SELECT A FROM T"), Strings{"kept"});
    EXPECT_EQ(db.GetTableDefCount(), 1);
}

TEST_P(Server, TablesAndFieldsAreMadeRenamedAndDroppedByAnyName) {
    CDaoFieldInfo current = field("IS_CURRENT", dbText, 9);
    current.validationRule = "\"YES\" Or \"NO\"";
    current.defaultValue = "\"NO\"";
    CDaoFieldInfo needed = field("order", dbText, 9);
    needed.required = true;
    makeTable("Fire Hydrant \"7\"",
              {field("Flow (gpm)", dbDouble), current, needed, field("naïve", dbText, 9)});
    db.Execute("INSERT INTO [FIRE hydrant \"7\"] ([flow (GPM)], order) VALUES (1.5, '3')", dbSQLPassThrough);
    EXPECT_EQ(
        column("SELECT [FLOW (gpm)] FROM [fire hydrant \"7\"] WHERE [Order] = '3' AND IS_CURRENT = \"NO\""),
        Strings{"1.5"});
    for (const char* bad : {"([ORDER]) VALUES (NULL)", "([ORDER], IS_CURRENT) VALUES ('1', 'MAYBE')"})
        EXPECT_NE(descriptionOf([&] {
                      db.Execute(std::string("INSERT INTO [fire hydrant \"7\"] ") + bad, dbSQLPassThrough);
                  }),
                  "no exception");
    CDaoTableDef table(&db);
    std::string owner = onPostgres() ? "survey." : "";
    table.Open(owner + "FIRE HYDRANT \"7\"");
    table.CreateField(field("Added", dbMemo));
    table.DeleteField("NAÏVE");
    EXPECT_EQ(table.GetFieldCount(), 4);
    CDaoFieldInfo info;
    table.GetFieldInfo("ORDER", info);
    EXPECT_TRUE(info.required);
    EXPECT_NE(descriptionOf([&] { table.CreateField(field("added", dbText, 9)); }), "no exception");
    table.SetName("Hydrants");
    EXPECT_EQ(column("SELECT [ADDED] FROM HYDRANTS"), Strings{""});
    table.Close();
    db.DeleteTableDef("hydrants");
    EXPECT_EQ(db.GetTableDefCount(), 0);
    EXPECT_EQ(descriptionOf([&] { table.Open("hydrants"); }), "Cannot find the table hydrants.");
}

TEST_P(Server, ATableOf300ColumnsIsReadAndWritten) {
    std::string columns = "ID varchar(9)", values = "'1'";
    for (int i = 1; i < 300; ++i) {
        columns += ", COLUMN_" + std::to_string(i) + " integer";
        values += "," + std::to_string(i);
    }
    std::string owner = onPostgres() ? "survey." : "";
    if (onPostgres()) db.Execute("CREATE SCHEMA survey", dbSQLPassThrough);
    db.Execute("CREATE TABLE " + owner + "WIDE (" + columns + ")", dbSQLPassThrough);
    db.Execute("INSERT INTO WIDE VALUES (" + values + ")", dbSQLPassThrough);
    CDaoTableDef table(&db);
    db.GetTableDefCount();
    table.Open(owner + "wide");
    EXPECT_EQ(table.GetFieldCount(), 300);
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM WIDE");
    EXPECT_EQ(toText(records.GetFieldValue("column_299")), "299");
    records.Edit();
    records.SetFieldValue("COLUMN_299", 7);
    records.Update();
    EXPECT_EQ(column("SELECT COLUMN_299 FROM WIDE"), Strings{"7"});
}

TEST_P(Server, BadStatementsAreErrorsAndNothingElse) {
    makeTable("T", {field("A", dbText, 20)});
    db.Execute("INSERT INTO T (A) VALUES ('x')", dbSQLPassThrough);
    CDaoRecordset records(&db);
    for (const char* sql :
         {"", ";", "SELEC * FROM T", "SELECT * FROM T WHERE A = 'it's'", "SELECT * FROM", "SELECT [A FROM T",
          "SELECT NOTHING FROM T", "SELECT * FROM NOWHERE", "SELECT {fn UCASE(A FROM T",
          "SELECT * FROM T WHERE UCASE(A", "SELECT 'a FROM T", "SELECT \"a FROM T",
          "INSERT INTO T (A) VALUES ('y')x", "\xff\xfe", "SELECT ((((", "[", "NOWHERE"})
        EXPECT_NE(descriptionOf([&] { records.Open(dbOpenDynaset, sql); }), "no exception") << sql;
    EXPECT_NE(descriptionOf([&] { db.Execute("UPDATE T SET A = 'it's'", dbSQLPassThrough); }),
              "no exception");
    EXPECT_EQ(column("SELECT A FROM T"), Strings{"x"});
}

// --- PostgreSQL alone --------------------------------------------------------------------------------------

class PostgresSource : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!server.missing().empty()) GTEST_SKIP() << server.missing();
        server.answer("SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE");
        ui::setBackend(&backend);
    }
    void TearDown() override { ui::setBackend(nullptr); }

    PostgresServer& server = PostgresServer::instance();
    CheckedScript backend;
    CDaoDatabase db;
};

TEST_F(PostgresSource, TypesThatAreNotKnownAreReadAsText) {
    server.answer(
        "CREATE SCHEMA survey; CREATE TABLE survey.odd(a jsonb, b int[], c point, d interval, e inet, f xml, "
        "g bigint, "
        "h numeric(6,0), i numeric(12,5), j time, k timestamp, l char(3), m text, n \"char\", o tsvector); "
        "INSERT INTO survey.odd VALUES ('{\"a\": 1}', '{1,2}', '(1,2)', '1 day', '1.2.3.4', '<a/>', "
        "12345678901, 42, "
        "1.5, '13:45', 'infinity', 'x', repeat('y', 1000), 'z', 'cat');"
        "CREATE VIEW survey.seen AS SELECT h FROM survey.odd");
    db.Open("", false, false, ConnectString(server.connect()));
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM ODD");
    Strings texts;
    for (int i = 0; i < records.GetFieldCount(); ++i)
        texts.push_back(toText(records.GetFieldValue(i)).substr(0, 12));
    EXPECT_EQ(texts, (Strings{"{\"a\": 1}", "{1,2}", "(1,2)", "1 day", "1.2.3.4", "<a/>", "12345678901", "42",
                              "1.5", "1899-12-30 1", "9999-12-31 2", "x  ", "yyyyyyyyyyyy", "z", "'cat'"}));
    CDaoFieldInfo info;
    for (auto [name, type] : std::initializer_list<std::pair<const char*, int>>{
             {"g", dbDouble}, {"h", dbLong}, {"i", dbDouble}, {"j", dbDate}, {"l", dbText}, {"m", dbMemo}}) {
        records.GetFieldInfo(name, info);
        EXPECT_EQ(info.type, type) << name;
    }
    records.Open(dbOpenDynaset, "SELECT * FROM SEEN");
    EXPECT_FALSE(records.CanUpdate());
}

TEST_F(PostgresSource, TablesAreListedWithTheirOwnersAndTheUsersOwnComeFirst) {
    server.answer(
        "CREATE SCHEMA survey; CREATE SCHEMA other; CREATE TABLE survey.t(a text); "
        "CREATE TABLE other.t(b text, a text); INSERT INTO other.t VALUES ('theirs')");
    db.Open("", false, false, ConnectString(server.connect()));
    Strings names;
    CDaoTableDefInfo table;
    for (int i = 0, count = db.GetTableDefCount(); i < count; ++i) {
        db.GetTableDefInfo(i, table);
        names.push_back(table.name);
    }
    EXPECT_EQ(names, (Strings{"other.t", "survey.t"}));
    CDaoTableDef definition(&db);
    definition.Open("SURVEY.T");
    EXPECT_EQ(definition.GetFieldCount(), 1);
    definition.Open("other.t");
    EXPECT_EQ(definition.GetFieldCount(), 2);
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM [OTHER].[T]");
    EXPECT_EQ(toText(records.GetFieldValue("B")), "theirs");
    EXPECT_EQ(db.GetConnect(), ConnectString(server.connect()));
    server.answer("DROP SCHEMA other CASCADE");
}

// SCHEMA stands for the user's own schema, in the connect string or in the data source; the driver never sees
// it.
TEST_F(PostgresSource, TheSchemaThatIsNamedTakesThePlaceOfTheUsersOwn) {
    server.answer(
        "CREATE SCHEMA survey; CREATE SCHEMA other; CREATE TABLE survey.t(a text, b text); "
        "CREATE TABLE other.t(a text)");
    std::string ini = server.folder() + "/odbc.ini";
    std::ofstream(ini) << "[shared]\nDriver=" << server.driver() << "\nServername=" << server.folder()
                       << "\nDatabase=norvane\nSchema=other\n";
    ::setenv("ODBCINI", ini.c_str(), 1);
    const std::string account = ";UID=survey;PWD={" + std::string(PostgresServer::kPassword) + "}";
    for (const std::string& connect : {server.connect() + ";Schema=Other", "ODBC;DSN=shared" + account}) {
        db.Open("", false, false, ConnectString(connect));
        EXPECT_EQ(db.GetConnect().tableOwner(), connect.ends_with("Other") ? "Other" : "other");
        CDaoRecordset records(&db);
        records.Open(dbOpenDynaset, "SELECT * FROM T");
        EXPECT_EQ(records.GetFieldCount(), 1) << connect;
        records.Close();
        CDaoTableDef table(&db);
        table.Create("NEW");
        table.CreateField("A", dbText, 9);
        table.Append();
        EXPECT_EQ(server.answer("DROP TABLE other.new; SELECT 'dropped'"), "dropped\n") << connect;
        table.Close();
        db.Close();
    }
    // What the connect string says goes before the data source.
    db.Open("", false, false, ConnectString("ODBC;DSN=shared;SCHEMA=survey" + account));
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM T");
    EXPECT_EQ(records.GetFieldCount(), 2);
    ::unsetenv("ODBCINI");
    server.answer("DROP SCHEMA other CASCADE");
}

TEST_F(PostgresSource, WhatTheServerFillsInNeedNotBeSet) {
    server.answer(
        "CREATE SCHEMA survey; CREATE TABLE survey.t(id integer GENERATED ALWAYS AS IDENTITY PRIMARY KEY, "
        "a text NOT NULL DEFAULT 'x', b text, c varchar(9) NOT NULL)");
    db.Open("", false, false, ConnectString(server.connect()));
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM t");
    records.AddNew();
    records.SetFieldValue("b", "y");
    EXPECT_EQ(descriptionOf([&] { records.Update(); }), "The field c must have a value.");
    records.SetFieldValue("c", "z");
    records.Update();
    EXPECT_EQ(server.answer("SELECT * FROM survey.t"), "1|x|y|z\n");
}

TEST_F(PostgresSource, AUserWithoutRightsIsTold) {
    server.answer("CREATE ROLE guest LOGIN PASSWORD 'guest'", "postgres");
    server.answer("CREATE SCHEMA survey; CREATE TABLE survey.t(a text)");
    db.Open("", false, false, ConnectString(server.source() + ";UID=guest;PWD=guest"));
    CDaoTableDef table(&db);
    table.Create("T");
    table.CreateField("A", dbText, 9);
    std::string told = descriptionOf([&] { table.Append(); });
    EXPECT_EQ(told.find("The tables of the user guest belong into a schema of this name"), 0u) << told;
    EXPECT_NE(told.find("permission denied"), std::string::npos) << told;
    CDaoDatabase office;
    office.Open("", false, false, ConnectString(server.source() + ";UID=guest;PWD=guest;SCHEMA=office"));
    CDaoTableDef inOffice(&office);
    inOffice.Create("T");
    inOffice.CreateField("A", dbText, 9);
    told = descriptionOf([&] { inOffice.Append(); });
    EXPECT_EQ(told.find("The tables belong into the schema office, which the server does not have"), 0u)
        << told;
    office.Close();
    EXPECT_NE(descriptionOf([&] {
                  db.Execute("DELETE FROM survey.t", dbSQLPassThrough);
              }).find("permission denied"),
              std::string::npos);
    db.Close();
    server.answer("DROP ROLE guest", "postgres");
}

TEST_F(PostgresSource, ConnectStringsThatLieAreToldWithoutTheirPassword) {
    for (const std::string& connect :
         {std::string("ODBC;"), std::string("ODBC;DSN="), std::string("ODBC;DSN=nowhere;PWD=s3cret"),
          std::string("ODBC;DRIVER=nothing.so;PWD=s3cret"), std::string("ODBC;;;=;x;PWD=s3cret"),
          "ODBC;DRIVER=" + server.driver() + ";SERVER=/nowhere;UID=x;PWD={s3;cret}",
          server.source() + ";DATABASE=nothing;UID=survey;PWD=s3cret",
          "ODBC;DRIVER={" + server.driver() + ";PWD=s3cret", std::string("ODBC;DRIVER={}}}{;PWD=s3cret"),
          "ODBC;DSN=" + std::string(5000, 'x') + ";PWD=s3cret"}) {
        std::string told = descriptionOf([&] { db.Open("", false, false, ConnectString(connect)); });
        EXPECT_NE(told, "no exception") << connect;
        for (const char* part : {"s3cret", "s3;cret"}) EXPECT_EQ(told.find(part), std::string::npos) << told;
        EXPECT_FALSE(db.IsOpen());
    }
}

TEST_F(PostgresSource, TheSignInBoxAsksForWhatIsMissing) {
    std::string ini = server.folder() + "/odbc.ini";
    std::ofstream(ini) << "[office]\nDriver=" << server.driver() << "\nServername=" << server.folder()
                       << "\nDatabase=norvane\n";
    ::setenv("ODBCINI", ini.c_str(), 1);
    using Kind = ui::Step::Kind;
    // The source, the user and the password; a wrong one first.
    backend.answer(1601, {{Kind::Pick, "Data source:", "office"},
                          {Kind::Text, "User:", "survey"},
                          {Kind::Text, "Password:", "wrong"},
                          {Kind::Click, "OK"}});
    backend.answer(1601,
                   {{Kind::Show}, {Kind::Text, "Password:", PostgresServer::kPassword}, {Kind::Click, "OK"}});
    db.Open("", false, false, ConnectString("ODBC;DSN="));
    EXPECT_EQ(db.GetName(), "office");
    EXPECT_EQ(db.GetConnect(), ConnectString("ODBC;DSN=office;UID=survey;PWD={Geheim;7319}"));
    bool reason = false;
    for (const std::string& line : backend.log()) {
        reason = reason || line.find("authentication") != std::string::npos;
        EXPECT_EQ(line.find("wrong\""), std::string::npos) << line;
        EXPECT_EQ(line.find("Geheim"), std::string::npos) << line;
    }
    EXPECT_TRUE(reason);
    // Cancelled, and a source that is only looked at.
    backend.answer(1601, {{Kind::Click, "Cancel"}});
    EXPECT_NE(descriptionOf([&] { db.Open("", false, false, ConnectString("ODBC;DSN=office;UID=survey")); }),
              "no exception");
    EXPECT_EQ(backend.unused(), Strings{});
    EXPECT_NE(descriptionOf([&] { db.Open("", false, true, ConnectString("ODBC;DSN=office;UID=survey")); }),
              "no exception");
    ::unsetenv("ODBCINI");
}

TEST_F(PostgresSource, RecordsThatAnotherHoldsAreWaitedForAndThenToldOf) {
    server.answer("CREATE SCHEMA survey; CREATE TABLE survey.t(a text)");
    CDaoDatabase other;
    db.Open("", false, false, ConnectString(server.connect()));
    other.Open("", false, false, ConnectString(server.connect()));
    CDaoRecordset mine(&db), theirs(&other);
    db.BeginTrans();
    mine.Open(dbOpenDynaset, "SELECT * FROM T", dbDenyWrite);
    other.BeginTrans();
    ShortLockTimeout shortTimeout;
    std::string told = descriptionOf([&] { theirs.Open(dbOpenDynaset, "SELECT * FROM T", dbDenyWrite); });
    EXPECT_NE(told.find("lock timeout"), std::string::npos) << told;
    other.Rollback();
    other.BeginTrans();
    told = descriptionOf([&] { theirs.Open(dbOpenDynaset, "SELECT * FROM t", dbDenyWrite); });
    EXPECT_NE(told, "no exception") << "the same table by another spelling";
    other.Rollback();
    // Who wants other records, or writes another, does not wait.
    other.BeginTrans();
    theirs.Open(dbOpenDynaset, "SELECT * FROM T WHERE A = 'x'", dbDenyWrite);
    other.Execute("INSERT INTO T VALUES('x')");
    other.CommitTrans();
    db.CommitTrans();
    other.BeginTrans();
    theirs.Open(dbOpenDynaset, "SELECT * FROM T", dbDenyWrite);
    other.Rollback();
}

TEST_F(PostgresSource, WhatIsKnownOfTheTablesServesAgainOnlyWhereThatIsSaid) {
    server.answer("CREATE SCHEMA survey; CREATE TABLE survey.t(a text)");
    auto columns = [&] {
        CDaoTableDef table(&db);
        table.Open("survey.t");
        return table.GetFieldCount();
    };
    db.Open("", false, false, ConnectString(server.connect()));
    EXPECT_EQ(columns(), 1);
    EXPECT_FALSE(db.ForgetKnownTables()) << "it was read just now";
    db.Close();
    server.answer("ALTER TABLE survey.t ADD b text; CREATE TABLE survey.u(a text)");
    db.Open("", false, false, ConnectString(server.connect()));
    EXPECT_EQ(columns(), 2);
    EXPECT_EQ(db.GetTableDefCount(), 2);
    db.Close();
    server.answer("ALTER TABLE survey.t ADD c text; DROP TABLE survey.u");
    db.Open("", false, false, ConnectString(server.connect()));
    db.UseKnownTables();
    EXPECT_EQ(db.GetTableDefCount(), 2);
    db.BeginTrans();
    EXPECT_NE(descriptionOf([&] { db.Execute("INSERT INTO U VALUES('x')"); }), "no exception");
    EXPECT_TRUE(db.ForgetKnownTables());
    db.Rollback();
    EXPECT_EQ(db.GetTableDefCount(), 1);
    EXPECT_EQ(columns(), 3);
}

// A table that is undone is not known to the next opening either.
TEST_F(PostgresSource, WhatIsUndoneIsNotKnown) {
    server.answer("CREATE SCHEMA survey");
    db.Open("", false, false, ConnectString(server.connect()));
    db.BeginTrans();
    CDaoTableDef table(&db);
    table.Create("T");
    table.CreateField("A", dbText, 9);
    table.Append();
    EXPECT_EQ(db.GetTableDefCount(), 1);
    table.Close();
    db.Close();
    db.Open("", false, false, ConnectString(server.connect()));
    db.UseKnownTables();
    EXPECT_EQ(db.GetTableDefCount(), 0);
}

TEST_F(PostgresSource, WhatAnotherUserHasMadeMeanwhileIsAConflict) {
    CDaoDatabase other;
    db.Open("", false, false, ConnectString(server.connect()));
    other.Open("", false, false, ConnectString(server.connect()));
    auto make = [](CDaoDatabase& database) {
        CDaoTableDef table(&database);
        table.Create("T");
        table.CreateField("A", dbText, 9);
        table.Append();
    };
    EXPECT_EQ(db.GetTableDefCount(), 0);
    make(other);
    EXPECT_THROW(make(db), CDaoConflict);
    CDaoTableDef mine(&db), theirs(&other);
    mine.Open("survey.t");
    theirs.Open("survey.t");
    theirs.CreateField("B", dbText, 9);
    EXPECT_THROW(mine.CreateField("B", dbLong, 4), CDaoConflict);
    try {
        mine.CreateField("C", dbLong, 4);
        mine.DeleteField("B");
    } catch (const CDaoException& error) {
        ADD_FAILURE() << error.description();
    }
}

}  // namespace
