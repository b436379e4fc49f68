// Smart prompting with its output on a PostgreSQL server, from the Lisp call to the record.
#include <sys/wait.h>

#include <functional>
#include <map>
#include <set>
#include <sstream>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "platform/text/text.h"
#include "tests/module/exchange/other_readers.h"
#include "tests/module/module_fixture.h"
#include "tests/module/store/hostile_texts.h"
#include "tests/platform/dao/odbc/postgres_server.h"

namespace {

// Answers dialogs while a test goes on: what is done before a step is taken may do anything.
class Person : public ui::Asker {
  public:
    using Doing = std::function<std::optional<ui::Step>(const std::string& model)>;
    explicit Person(Doing doing) : doing_(std::move(doing)) {}
    std::optional<ui::Step> step(const std::string& model) override { return doing_(model); }
    std::optional<std::string> answer(const std::string&) override { return std::nullopt; }

  private:
    Doing doing_;
};

class Postgres : public ModuleTest {
  protected:
    void SetUp() override {
        if (!server().missing().empty()) GTEST_SKIP() << server().missing();
        if (!server().runs()) server().start();
        ModuleTest::SetUp();
        ASSERT_EQ(server().answer("SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE"),
                  "");
        makeTemplate();
        makeEntity();
    }
    void TearDown() override {
        if (!host_) return;
        EXPECT_EQ(ui_.unused(), std::vector<std::string>{});
        ModuleTest::TearDown();
    }
    static PostgresServer& server() { return PostgresServer::instance(); }
    // A connect string without the password.
    static std::string withoutPassword() { return server().source() + ";UID=" + PostgresServer::kUser; }

    // Code 1 with its output on the server.
    std::string save(const std::string& key, const std::string& feature, const std::string& output) {
        return lisp("(cf:gis_smart_prompting 1 " + quoted("") + " " + quoted("template.mdb") + " \"" +
                    output + "\" \"PT_ID\" \"" + key + "\" 480100.25 1630200.5 512.75 ent \"" + feature +
                    "\" 1 0.0 0.0 0.0 0.0 0.0 0.0 \"\")");
    }
    std::string save(const std::string& key, const std::string& feature) {
        return save(key, feature, server().connect());
    }
    std::string record(const std::string& columns, const std::string& table = "survey.tree") const {
        return server().answer("SELECT " + columns + " FROM " + table + " ORDER BY 1");
    }
    std::string addPrompt(const std::string& feature, const std::string& field) {
        return lisp("(cf:gis_smart_prompting 19 " + quoted("template.mdb") +
                    " 0 \"ZGEO_SMART_PROMPTING\" \"GIS_NAME\" \"" + feature + "\" \"FIELD_NAME\" \"" + field +
                    "\" \"FIELD_PROMPT\" \"" + field + "\")");
    }
    // The message boxes, a line each.
    std::string boxes() const {
        std::string all;
        for (const std::string& line : ui_.log())
            if (size_t at = line.find("box ["); at != std::string::npos) all += line.substr(at) + "\n";
        return all;
    }
    std::string loggedText() const {
        std::string all;
        for (const std::string& line : ui_.log()) all += line + "\n";
        return all;
    }
};

TEST_F(Postgres, TheFirstSaveMakesTheTableAndTheSecondReplacesTheRecord) {
    answer(134, {cell(2, "14"), cell(3, "40.125"), cell(12, "größer als 𝄞"), click("OK")});
    EXPECT_EQ(save("a17", "TREE"), "1");
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(record("pt_id, gis_key, dbh, height, twice, remarks"),
              "A17|TREE|14|40.125|80.25|größer als 𝄞\n");
    EXPECT_EQ(record("data_type",
                     "information_schema.columns WHERE table_name = 'tree' AND column_name IN "
                     "('pt_id', 'dbh', 'height')"),
              "character varying\ndouble precision\ninteger\n");
    EXPECT_NE(record("indexdef", "pg_indexes WHERE tablename = 'tree'")
                  .find("(upper((pt_id)::text), upper((gis_key)::text))"),
              std::string::npos);
    // The record comes back, whatever the case of its key. It is replaced as a whole: what is emptied is
    // gone.
    answer(134, {show(), cell(2, "15"), cell(12, ""), click("OK")});
    EXPECT_EQ(save("A17", "TREE"), "1");
    EXPECT_TRUE(shown("'größer als 𝄞'"));
    EXPECT_EQ(record("pt_id, dbh, height, remarks IS NULL"), "A17|15|40.125|t\n");
    EXPECT_EQ(sqlite("template.mdb", "select GIS_NAME from ZGEO_LINKS where IS_CURRENT='YES'"), "TREE\n");
    EXPECT_NE(link().find("\"" + withoutPassword() + "\""), std::string::npos) << link();
}

TEST_F(Postgres, RecordsGoOutWithTheirShapes) {
    if (!havePyshp()) GTEST_SKIP() << "pyshp is not installed";
    lisp("(setq ent (entmakex '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 3.0 4.0 0.0))))");
    answer(134, {cell(2, "14"), cell(3, "40.125"), cell(12, "größer"), click("OK")});
    ASSERT_EQ(save("a17", "TREE"), "1");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 10 " + quoted("trees") + " (ssadd ent) 3)"), "1");
    const std::string set = pyshp(path("trees"));
    EXPECT_NE(set.find("0 [0] [] 0 3 | 0 4 | 0 0 | 0 0\n"), std::string::npos) << set;
    EXPECT_NE(set.find("\na17|TREE|"), std::string::npos) << set;
    for (const char* part : {"|14|", "|40.125|", "größer", "['DBH', 'N', 8, 0]", "['HEIGHT', 'N', 12, 4]"})
        EXPECT_NE(set.find(part), std::string::npos) << part << "\n" << set;
    EXPECT_EQ(boxes(), "");
}

TEST_F(Postgres, NoTextEndsOrExtendsAStatement) {
    server().answer(
        "CREATE SCHEMA survey; CREATE TABLE survey.victim(a text); INSERT INTO survey.victim "
        "VALUES('stays')");
    const std::string tables = "count(*) FROM information_schema.tables WHERE table_schema = 'survey'";
    for (const std::string& text : hostileTexts()) {
        std::string typed = text;  // a cell takes no control characters
        std::erase_if(typed, [](unsigned char c) { return c < ' '; });
        std::string key = text::replaceAll(text::replaceAll(text, "\\", "\\\\"), "\"", "\\\"");
        answer(134, {cell(2, "14"), cell(12, typed), click("OK")});
        EXPECT_EQ(save(key, "TREE"), "1") << text;
        EXPECT_EQ(server().answer("SELECT count(*) > 0 FROM survey.tree WHERE remarks = $h$" + typed + "$h$"),
                  "t\n")
            << text;
    }
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(server().answer("SELECT " + tables), "2\n");
    EXPECT_EQ(record("a", "survey.victim"), "stays\n");
    // Keys are upper case on a server: two that differ in case alone are one.
    std::set<std::string> keys;
    for (const std::string& text : hostileTexts()) keys.insert(text::upper(text));
    EXPECT_EQ(server().answer("SELECT count(*) FROM survey.tree"), std::to_string(keys.size()) + "\n");
}

TEST_F(Postgres, FeaturesMayShareATable) {
    answer(134, {click("Cancel")});
    save("1", "TREE");
    sqlite("template.mdb",
           "insert into ZGEO_LINKS (GIS_NAME, TABLE_NAME, IS_CURRENT) values ('TREE','PLANTS','NO'), "
           "('MANHOLE','PLANTS','NO')");
    answer(134, {cell(2, "14"), click("OK")});
    EXPECT_EQ(save("1", "TREE"), "1");
    answer(134, {cell(1, "M1"), cell(3, "3"), click("OK")});
    EXPECT_EQ(save("1", "MANHOLE"), "1");
    EXPECT_EQ(record("gis_key, pt_id, dbh, depth", "survey.plants"), "MANHOLE|1||3\nTREE|1|14|\n");
}

TEST_F(Postgres, RecordsAreAddedByCodeNineteen) {
    server().answer(
        "CREATE SCHEMA survey; CREATE TABLE survey.tree (pt_id text, dbh integer, height double precision);"
        "CREATE TABLE survey.\"FIRE HYDRANT\" (pt_id text)");
    const auto add = [&](const std::string& records) {
        return lisp("(cf:gis_smart_prompting 19 \"" + server().connect() + "\" " + records + ")");
    };
    EXPECT_EQ(add("0 \"TREE\" \"PT_ID\" \"o'1\" \"DBH\" \"14\" \"HEIGHT\" \"3.5\" \"NONE\" \"x\" "
                  "0 \"Fire Hydrant\" \"Pt_Id\" \"2\" 0 \"NO_TABLE\" \"PT_ID\" \"3\""),
              "1.0");
    EXPECT_EQ(record("*"), "o'1|14|3.5\n");
    EXPECT_EQ(record("*", "survey.\"FIRE HYDRANT\""), "2\n");
    EXPECT_EQ(boxes(), "");
    server().answer("ALTER TABLE survey.tree ADD CHECK (dbh < 100)");
    EXPECT_EQ(add("0 \"TREE\" \"PT_ID\" \"4\" \"DBH\" \"140\""), "-4.0");
    EXPECT_NE(boxes().find("violates check constraint"), std::string::npos) << boxes();
    EXPECT_EQ(record("count(*)"), "1\n");
}

TEST_F(Postgres, AFeatureIsMadeFromATableAndWritesToIt) {
    server().answer(
        "CREATE SCHEMA survey; CREATE TABLE survey.poles (owner text, height double precision, circuits "
        "integer, "
        "\"LAST SEEN\" varchar(30), since date); INSERT INTO survey.poles (owner) VALUES ('CITY');"
        "CREATE TABLE survey.dates (since date)");
    // The password is given once, by a save.
    answer(134, {click("Cancel")});
    save("1", "TREE");
    write("featlink.ini", "#1" + path("template.mdb") + "\n#2" + withoutPassword() + "\n");
    using Kind = ui::Step::Kind;
    answer(151, {{Kind::Menu, "", "Feature/Import"}, key("Ctrl+S"), {Kind::Menu, "", "Exit"}});
    answer(153, {show(), pick("Available Tables from Output Database:", "POLES"), show(), click("OK")});
    answer(1511, {click("OK")});
    answer(1512, {pick("1002", "0"), click("OK")});
    ui_.answerBox("OK"), ui_.answerBox("Yes");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
    EXPECT_NE(boxes().find("Number fields from    TABLE : 4\nNumber fields  used in the new Feature : 4"),
              std::string::npos)
        << boxes();
    EXPECT_EQ(loggedText().find("DATES"), std::string::npos) << "a table without usable fields";
    EXPECT_EQ(loggedText().find(PostgresServer::kPassword), std::string::npos);
    EXPECT_EQ(sqlite("template.mdb",
                     "select FIELD_NAME from ZGEO_SMART_PROMPTING where GIS_NAME = 'POLES' order by NO_GIS"),
              "OWNER\n..HEIGHT\n.CIRCUITS\nLAST SEEN\n");
    answer(134, {cell(1, "SMITH"), cell(2, "12.5"), cell(4, "today"), click("OK")});
    EXPECT_EQ(save("7", "POLES", withoutPassword()), "1");
    EXPECT_EQ(record("pt_id, gis_key, owner, height, \"LAST SEEN\"", "survey.poles"),
              "7|POLES|SMITH|12.5|today\n||CITY||\n");
}

TEST_F(Postgres, AnOldTableGetsItsMissingColumnsAndKeepsItsRecords) {
    server().answer(
        "CREATE SCHEMA survey CREATE TABLE tree (pt_id text, dbh integer); "
        "INSERT INTO survey.tree VALUES ('17', 9), ('18', 8)");
    answer(134, {show(), cell(2, "10"), click("OK")});
    EXPECT_EQ(save("17", "TREE"), "1");
    EXPECT_EQ(boxes(), "");
    EXPECT_TRUE(shown("'9'"));
    EXPECT_EQ(record("pt_id, gis_key, dbh"), "17|TREE|10\n18|TREE|8\n");
}

TEST_F(Postgres, AKeyColumnOfAnotherTypeBecomesTextEvenOnCancel) {
    server().answer(
        "CREATE SCHEMA survey CREATE TABLE tree (pt_id integer, gis_key varchar(9)); "
        "INSERT INTO survey.tree VALUES (17, 'TREE')");
    answer(134, {click("Cancel")});
    save("17", "TREE");
    EXPECT_EQ(record("pt_id IS NULL, gis_key"), "t|TREE\n");
    // Text without a limit is text.
    server().answer("CREATE TABLE survey.pole (pt_id text); INSERT INTO survey.pole VALUES ('17')");
    answer(134, {click("Cancel")});
    save("17", "POLE");
    EXPECT_EQ(record("*", "survey.pole"), "17\n");
}

TEST_F(Postgres, NamesThatTheServerWouldNotTakeAreQuoted) {
    for (const char* field : {"FLOW (GPM)", "NO#", "ORDER", "Mixed", "IMAGE_ZGEO/1"})
        addPrompt("FIRE HYDRANT", field);
    answer(134, {cell(1, "500"), cell(2, "7"), cell(3, "first"), cell(4, "m"), cell(5, "i"), click("OK")});
    EXPECT_EQ(save("1", "FIRE HYDRANT"), "1");
    answer(134, {show(), cell(2, "8"), click("OK")});
    EXPECT_EQ(save("1", "FIRE HYDRANT"), "1");
    EXPECT_EQ(boxes(), "");
    EXPECT_TRUE(shown("'first'"));
    EXPECT_EQ(
        record("\"FLOW (GPM)\", \"NO#\", \"order\", mixed, \"IMAGE_ZGEO/1\"", "survey.\"FIRE HYDRANT\""),
        "500|8|first|m|i\n");

    // A table that other programs have made with names in capitals.
    server().answer(
        "CREATE TABLE survey.\"TREE\" (\"PT_ID\" varchar(20), \"GIS_KEY\" varchar(20), \"DBH\" integer); "
        "INSERT INTO survey.\"TREE\" VALUES ('5', 'TREE', 3)");
    answer(134, {show(), cell(12, "now"), click("OK")});
    EXPECT_EQ(save("5", "TREE"), "1");
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(record("\"PT_ID\", \"DBH\", remarks", "survey.\"TREE\""), "5|3|now\n");
}

TEST_F(Postgres, ASetOfShapesComesIntoATableOfTheServer) {
    using namespace norvane;
    auto makeSet = [&](const std::string& note) {
        const OpenShapeFile shapes(ShapeCreate(path("tree"), shape::kArc));
        const OpenDbfFile table(DbfCreate(path("tree")));
        DbfAddField(table.get(), "PT_ID", kDbfString, 10, 0);
        DbfAddField(table.get(), "NOTE", kDbfString, 40, 0);
        DbfAddField(table.get(), "DBH", kDbfInteger, 6, 0);
        const double x[] = {1, 2}, y[] = {3, 4};
        for (int32_t i = 0; i < 3; ++i) {
            const OwnedShape shape(
                ShapeCreateObject(shape::kArc, -1, 1, nullptr, nullptr, 2, x, y, nullptr, nullptr, 0));
            ShapeWriteObject(shapes.get(), -1, shape.get());
            DbfWriteStringAttribute(table.get(), i, 0, std::to_string(16 + i));
            DbfWriteStringAttribute(table.get(), i, 1, note);
            DbfWriteIntegerAttribute(table.get(), i, 2, i);
        }
    };
    auto import = [&] {
        ui_.answerFile(path("tree.shp"));
        answer(148, {click("Select SHP File"), {ui::Step::Kind::Text, "1015", "TREES"}, show(), click("1")});
        return lisp("(cf:gis_smart_prompting 11)");
    };
    ui_.allowClash("Create Ne&w Points in CRD File; Over&write Points in CRD File; ");
    lisp("(cf:gis_smart_prompting 2 2 \"" + server().connect() + "\")");
    // A table of numbers for keys, made by others: they become texts and keep their values.
    server().answer(
        "CREATE SCHEMA survey CREATE TABLE tree (pt_id integer, note varchar(9), dbh integer); "
        "INSERT INTO survey.tree VALUES (17, 'old', 9)");
    makeSet("O'Neil's größte");
    EXPECT_EQ(import(), "nil");
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(record("pt_id, gis_key, note, dbh"),
              "16|TREE|O'Neil's |\n17|TREE|O'Neil's |9\n18|TREE|O'Neil's |\n");
    EXPECT_TRUE(shown("Records of the table TREE that came from elsewhere have ids of this set: 1."));
    EXPECT_NE(lisp("(cdr (assoc -3 (entget (entlast) '(\"ZGEO_GIS_2000\"))))").find(withoutPassword()),
              std::string::npos);
    // A table that is not there, twice.
    server().answer("DROP TABLE survey.tree");
    for (const char* note : {"first", "second"}) {
        makeSet(note);
        EXPECT_EQ(import(), "nil");
        EXPECT_EQ(boxes(), "");
        EXPECT_EQ(record("pt_id, gis_key, note, dbh"),
                  std::string("16|TREE|") + note + "|0\n17|TREE|" + note + "|1\n18|TREE|" + note + "|2\n");
    }
    // What the server refuses takes the drawing back too.
    server().answer("ALTER TABLE survey.tree ADD CHECK (note <> 'third')");
    makeSet("third");
    const std::string last = lisp("(entlast)");
    EXPECT_EQ(import(), "nil");
    EXPECT_EQ(lisp("(entlast)"), last);
    EXPECT_EQ(record("note"), "second\nsecond\nsecond\n");
    EXPECT_EQ(loggedText().find(PostgresServer::kPassword), std::string::npos);
}

TEST_F(Postgres, AStatementThatBreaksLeavesTheRecordAsItWas) {
    answer(134, {cell(2, "14"), cell(12, "first"), click("OK")});
    EXPECT_EQ(save("17", "TREE"), "1");
    answer(134,
           {cell(2, "99999999999"), cell(12, "the owner's tree"), click("OK"), cell(2, "15"), click("OK")});
    EXPECT_EQ(save("17", "TREE"), "1");
    EXPECT_EQ(boxes().substr(0, 26), "box [Error] \"The server ca");
    EXPECT_EQ(record("dbh, remarks"), "15|the owner's tree\n");
    answer(134, {cell(2, "99999999999"), click("OK"), click("Cancel")});
    EXPECT_EQ(save("17", "TREE"), "0");
    EXPECT_EQ(record("dbh, remarks"), "15|the owner's tree\n");
    // What breaks the first save leaves no empty table behind.
    answer(134, {cell(1, "P1"), cell(4, "99999999999"), cell(5, "35"), click("OK"), click("Cancel")});
    EXPECT_EQ(save("17", "POLE"), "0");
    EXPECT_EQ(record("count(*)", "information_schema.tables WHERE table_name = 'pole'"), "0\n");
}

TEST_F(Postgres, AServerThatGoesAwayKeepsTheSheetOpenAndWritesNothingByHalves) {
    answer(134, {cell(2, "14"), click("OK")});
    EXPECT_EQ(save("17", "TREE"), "1");
    int asked = 0;
    Person person([&](const std::string&) -> std::optional<ui::Step> {
        switch (++asked) {
            case 1:
                return cell(2, "15");
            case 2:
                server().stop(SIGQUIT);
                return click("OK");
            case 3:
                EXPECT_NE(boxes().find("cannot be opened"), std::string::npos) << boxes();
                server().start();
                return click("OK");
            default:
                return std::nullopt;
        }
    });
    ui_.setAsker(&person);
    EXPECT_EQ(save("17", "TREE"), "1");
    ui_.setAsker(nullptr);
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(record("pt_id, dbh"), "17|15\n");
    // One that has been away between two saves is not even noticed.
    server().stop(SIGQUIT);
    server().start();
    ui_.clearLog();
    answer(134, {cell(2, "16"), click("OK")});
    EXPECT_EQ(save("17", "TREE"), "1");
    EXPECT_EQ(boxes(), "");
}

TEST_F(Postgres, AServerThatGoesAwayWhileAreasAreLinkedIsToldAndTheNextRunGoesOn) {
    ASSERT_EQ(host_->openDrawing(NORVANE_SOURCE_DIR "/samples/survey.dxf"), "");
    ASSERT_EQ(server().answer(
                  "CREATE SCHEMA survey AUTHORIZATION survey; CREATE TABLE survey.lot (pt_id varchar(255), "
                  "gis_key varchar(255), num varchar(255))"),
              "");
    lisp("(entdel (ssname (ssget \"X\" '((0 . \"TEXT\") (1 . \"LOT 12A\"))) 0))");
    auto link = [&] {
        answer(1390, {click("OK")});
        lisp("(ssget \"X\" '((-4 . \"<or\") (8 . \"LOTS\") (8 . \"LOT-TEXT\") (-4 . \"or>\")))");
        inputs_ = {"Text", "P", ""};
        printed();
        lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") + " \"" +
             server().connect() + "\")");
        return printed();
    };
    auto linked = [&] {
        return lisp("(if (setq s (ssget \"X\" '((-3 (\"ZGEO_GIS_2000\"))))) (sslength s) 0)");
    };
    onPrinted_ = [&](std::string_view text) {
        if (text.starts_with("\rChecking selected entities > 50")) server().stop(SIGQUIT);
    };
    ui_.answerBox("OK");
    const std::string said = link();
    onPrinted_ = {};
    EXPECT_NE(said.find("\nThe database failed when 0 records were changed and 8 added. No link is written"),
              std::string::npos)
        << said;
    EXPECT_NE(boxes().find("box [Error]"), std::string::npos) << boxes();
    EXPECT_EQ(linked(), "0");
    server().start();
    EXPECT_EQ(record("count(*)", "survey.lot WHERE pt_id IS NULL OR gis_key IS NULL OR num IS NULL"), "0\n");
    EXPECT_NE(link().find("\nLinked 59, "), std::string::npos);
    EXPECT_EQ(linked(), "59");
    EXPECT_EQ(record("count(*), count(DISTINCT pt_id), count(DISTINCT num)", "survey.lot"), "58|58|58\n");
}

// A save begins with what the sheet has read of the tables when it was opened.
TEST_F(Postgres, TablesThatHaveChangedUnderAnOpenSheetAreReadAnew) {
    answer(134, {cell(2, "14"), click("OK")});
    EXPECT_EQ(save("17", "TREE"), "1");
    for (const char* change :
         {"ALTER TABLE survey.tree DROP COLUMN dbh", "ALTER TABLE survey.tree RENAME COLUMN dbh TO girth",
          "ALTER TABLE survey.tree DROP COLUMN gis_key", "DROP TABLE survey.tree",
          "DROP TABLE survey.tree; CREATE TABLE survey.tree (pt_id varchar(9))"}) {
        int asked = 0;
        Person person([&](const std::string&) -> std::optional<ui::Step> {
            if (++asked == 1) return cell(2, "15");
            if (asked > 2) return std::nullopt;
            EXPECT_EQ(server().answer(change), "");
            return click("OK");
        });
        ui_.setAsker(&person);
        EXPECT_EQ(save("17", "TREE"), "1") << change;
        ui_.setAsker(nullptr);
        EXPECT_EQ(boxes(), "") << change;
        EXPECT_EQ(record("pt_id, gis_key, dbh", "survey.tree WHERE pt_id = '17' AND gis_key = 'TREE'"),
                  "17|TREE|15\n")
            << change;
    }
}

TEST_F(Postgres, AServerThatIsNotThereIsSaid) {
    server().stop(SIGINT);
    answer(134, {cell(2, "14"), click("OK"), click("Cancel")});
    EXPECT_EQ(save("17", "TREE"), "0");
    EXPECT_NE(boxes().find("No such file or directory"), std::string::npos) << boxes();
    EXPECT_EQ(boxes().find(PostgresServer::kPassword), std::string::npos);
    EXPECT_EQ(link(), "nil");
    server().start();
    answer(134, {cell(2, "14"), click("OK"), click("Cancel")});
    EXPECT_EQ(save("17", "TREE", "ODBC;DSN=nowhere"), "0");
    EXPECT_NE(boxes().find("The data source \"nowhere\" cannot be opened"), std::string::npos) << boxes();
}

TEST_F(Postgres, AWrongPasswordIsAskedForAndTheRightOneStaysInMemoryOnly) {
    std::string wrong = withoutPassword() + ";PWD=falsch-4411";
    // Nobody answers: the sheet stays open, and nothing is written.
    answer(134, {cell(2, "14"), click("OK"), click("Cancel")});
    EXPECT_EQ(save("17", "TREE", wrong), "0");
    EXPECT_NE(boxes().find("password authentication failed"), std::string::npos) << boxes();
    EXPECT_EQ(record("count(*)", "information_schema.tables WHERE table_schema = 'survey'"), "0\n");

    answer(1601,
           {show(), {ui::Step::Kind::Text, "Password:", PostgresServer::kPassword}, show(), click("OK")});
    answer(134, {cell(2, "14"), click("OK")});
    EXPECT_EQ(save("17", "TREE", wrong), "1");
    // From now on it is known.
    answer(134, {cell(2, "15"), click("OK")});
    EXPECT_EQ(save("17", "TREE", withoutPassword()), "1");
    EXPECT_EQ(record("pt_id, dbh"), "17|15\n");
    EXPECT_NE(lisp("(db:record \"" + withoutPassword() + "\" \"Tree\" '((\"pt_id\" . \"17\")))")
                  .find("(\"dbh\" . \"15\")"),
              std::string::npos);

    // It stands in no file, in no drawing, and nowhere that a person looks.
    host_->saveDrawing(path("saved.dxf"));
    lisp("(cf:gis_smart_prompting 2 2 \"" + server().connect() + "\")");
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(path(""))) {
        if (!entry.is_regular_file()) continue;
        std::ifstream in(entry.path(), std::ios::binary);
        std::string content{std::istreambuf_iterator<char>(in), {}};
        ++files;
        for (const char* secret : {PostgresServer::kPassword, "falsch-4411"})
            EXPECT_EQ(content.find(secret), std::string::npos) << entry.path();
    }
    EXPECT_GE(files, 4);
    for (const std::string& text : {loggedText(), printed(), link(), lisp("(cf:gis_smart_prompting 3 2)")})
        for (const char* secret : {PostgresServer::kPassword, "falsch-4411"})
            EXPECT_EQ(text.find(secret), std::string::npos) << text;
    EXPECT_NE(loggedText().find("\"****\""), std::string::npos);
    EXPECT_NE(read("saved.dxf").find(withoutPassword()), std::string::npos);
}

// --- Accounts of their own ---------------------------------------------------------------------------------

// The schema "office" belongs to a role; jane and john are its members and work as it. clerk may read and
// write and change no table, guest may do nothing. As docs/servers.md tells the administrator.
void makeOffice(const PostgresServer& server) {
    std::string said = server.answer(
        "CREATE ROLE office; GRANT office TO survey;"
        "CREATE ROLE jane LOGIN PASSWORD 'jane' IN ROLE office; ALTER ROLE jane SET role = 'office';"
        "CREATE ROLE john LOGIN PASSWORD 'john' IN ROLE office; ALTER ROLE john SET role = 'office';"
        "CREATE ROLE clerk LOGIN PASSWORD 'clerk'; CREATE ROLE guest LOGIN PASSWORD 'guest';",
        "postgres");
    said += server.answer(
        "CREATE SCHEMA office AUTHORIZATION office; GRANT USAGE ON SCHEMA office TO clerk;"
        "ALTER DEFAULT PRIVILEGES FOR ROLE office IN SCHEMA office "
        "GRANT SELECT, INSERT, UPDATE, DELETE ON TABLES TO clerk");
    EXPECT_EQ(said, "");
}
void removeOffice(const PostgresServer& server) {
    server.answer("SET client_min_messages = warning; DROP SCHEMA office CASCADE; DROP OWNED BY office");
    server.answer("DROP ROLE jane, john, clerk, guest, office", "postgres");
}
std::string accountOf(const PostgresServer& server, const std::string& name) {
    return server.source() + ";UID=" + name + ";SCHEMA=office";
}
std::string withPassword(const PostgresServer& server, const std::string& name) {
    return accountOf(server, name) + ";PWD=" + name;
}

TEST_F(Postgres, ColleaguesWithAccountsOfTheirOwnWorkInOneSchema) {
    makeOffice(server());
    // Jane makes the table, John finds her record and adds a column, she finds his.
    answer(134, {cell(2, "14"), click("OK")});
    EXPECT_EQ(save("17", "TREE", withPassword(server(), "jane")), "1");
    EXPECT_NE(link().find("\"" + accountOf(server(), "jane") + "\""), std::string::npos) << link();
    addPrompt("TREE", "CROWN");
    answer(134, {show(), cell(2, "15"), cell(13, "wide"), click("OK")});
    EXPECT_EQ(save("17", "TREE", withPassword(server(), "john")), "1");
    EXPECT_TRUE(shown("'14'"));
    answer(134, {show(), click("OK")});
    EXPECT_EQ(save("17", "TREE", accountOf(server(), "jane")), "1");
    EXPECT_TRUE(shown("'15'") && shown("'wide'"));
    // A table with all of its columns is all that the clerk needs.
    answer(134, {cell(2, "16"), click("OK")});
    EXPECT_EQ(save("18", "TREE", withPassword(server(), "clerk")), "1");
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(record("pt_id, dbh, crown", "office.tree"), "17|15|wide\n18|16|\n");
    EXPECT_EQ(record("tableowner", "pg_tables WHERE tablename = 'tree'"), "office\n");
    EXPECT_NE(lisp("(db:record \"" + accountOf(server(), "john") + "\" \"TREE\" '((\"pt_id\" . \"18\")))")
                  .find("(\"dbh\" . \"16\")"),
              std::string::npos);

    // Who may not is told, and nothing is written.
    answer(134, {cell(1, "P1"), cell(4, "9"), cell(5, "35"), click("OK"), click("Cancel")});
    EXPECT_EQ(save("1", "POLE", withPassword(server(), "clerk")), "0");
    EXPECT_NE(boxes().find("permission denied for schema office"), std::string::npos) << boxes();
    ui_.clearLog();
    answer(134, {cell(2, "99"), click("OK"), click("Cancel")});
    EXPECT_EQ(save("17", "TREE", withPassword(server(), "guest")), "0");
    EXPECT_NE(boxes().find("permission denied"), std::string::npos) << boxes();
    EXPECT_EQ(record("pt_id, dbh", "office.tree"), "17|15\n18|16\n");
    removeOffice(server());
}

// --- Many at once ----------------------------------------------------------------------------------------

// A client is a program of its own that saves until its time is over: records of its own, and some that all
// clients save.
constexpr const char* kClient = R"((defun save (key)
  (ui:answer 134 '(cell 2 2 "14") '(click "OK"))
  (princ (strcat (if (= 1 (cf:gis_smart_prompting 1 folder (strcat folder "template.mdb") output "PT_ID" key 1.0 2.0 3.0
                            ent "TREE" 1 0.0 0.0 0.0 0.0 0.0 0.0 ""))
                   "\nsaved " "\nfailed ") key "\n")))
(setq ent (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))) n 0 started (getvar "DATE"))
(while (< (* 86400 (- (getvar "DATE") started)) duration)
  (save (if (= (rem n 4) 3) (strcat "SHARED-" (itoa (rem n 5))) (strcat client "-" (itoa n))))
  (setq n (1+ n)))
(foreach line (ui:log) (if (wcmatch line "*box*") (princ (strcat line "\n"))))
)";

class PostgresClients : public Postgres {
  protected:
    // How the clients sign in, by turns, and the table that they save into.
    std::vector<std::string> outputs_ = {server().connect()};
    std::string table_ = "survey.tree";

    // Lets the clients work, and compares what they say with what the server then holds. Those that are
    // killed on the way may have saved a record that they could not tell of.
    void work(std::set<std::string> keys, int killed = 0) {
        const char* wanted = std::getenv("NORVANE_CLIENTS_SECONDS");
        double seconds = wanted ? std::atof(wanted) : 2;
        std::vector<pid_t> children;
        for (int i = 0; i < kClients; ++i)
            children.push_back(
                start("C" + std::to_string(i), seconds, outputs_[static_cast<size_t>(i) % outputs_.size()]));
        if (killed > 0) ::usleep(static_cast<useconds_t>(seconds * 500000));
        for (int i = 0; i < killed; ++i) {
            ::kill(children[static_cast<size_t>(i)], SIGKILL);
            ::usleep(7000);
        }
        for (size_t i = 0; i < children.size(); ++i) {
            int status = -1;
            ::waitpid(children[i], &status, 0);
            EXPECT_TRUE(status == 0 || (i < static_cast<size_t>(killed) && WTERMSIG(status) == SIGKILL));
        }
        int saves = 0;
        for (int i = 0; i < kClients; ++i) saves += readSaved("C" + std::to_string(i), keys);
        EXPECT_GT(saves, kClients);
        std::map<std::string, int> stored;
        std::istringstream rows(record("pt_id", table_));
        for (std::string line; std::getline(rows, line);) ++stored[line];
        for (const auto& [key, count] : stored) EXPECT_EQ(count, 1) << key;
        for (const std::string& key : keys) EXPECT_TRUE(stored.contains(key)) << key;
        int untold = 0;
        for (const auto& [key, count] : stored) {
            if (keys.contains(key)) continue;
            ++untold;
            int client = key.starts_with("C") ? std::atoi(key.c_str() + 1) : 0;
            EXPECT_LT(client, killed) << key;
        }
        EXPECT_LE(untold, killed);
        EXPECT_EQ(record("gis_key, count(*)", table_ + " GROUP BY gis_key"),
                  "TREE|" + std::to_string(stored.size()) + "\n");
        EXPECT_EQ(record("count(*)", table_ + " WHERE dbh IS NULL AND pt_id <> 'old'"), "0\n");
        std::printf("%d saves by %d clients in %.1f s\n", saves, kClients, seconds);
    }

  private:
    static constexpr int kClients = 16;

    pid_t start(const std::string& client, double seconds, const std::string& output) {
        std::string folder = path(client) + "/";
        fs::create_directory(folder);
        fs::copy_file(path("template.mdb"), folder + "template.mdb");
        std::ofstream(folder + "client.lsp")
            << "(setq folder \"" << folder << "\" client \"" << client << "\" output \"" << output
            << "\" duration " << text::format("%.1f", seconds) << ")\n"
            << kClient;
        std::string command = "NORVANE_USER_DIR='" + folder + "' exec '" NORVANE_BIN_DIR "/hostcad-batch' '" +
                              folder + "client.lsp' >'" + folder + "out' 2>&1 </dev/null";
        pid_t child = ::fork();
        if (child == 0) {
            ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
            ::_exit(127);
        }
        return child;
    }

    // Adds the keys that a client has saved; their number. None of its saves may have failed.
    int readSaved(const std::string& client, std::set<std::string>& keys) const {
        int saves = 0;
        std::istringstream out(read(client + "/out"));
        for (std::string line; std::getline(out, line);) {
            EXPECT_FALSE(line.starts_with("failed") || line.find("box [") != std::string::npos) << line;
            if (!line.starts_with("saved ")) continue;
            keys.insert(line.substr(6));
            ++saves;
        }
        return saves;
    }
};

TEST_F(PostgresClients, LoseNothingAndDoubleNothingInANewDatabase) {
    work({});
}

// One of them adds GIS_KEY and fills it; the others must not do so again over what has been saved by then.
TEST_F(PostgresClients, LoseNothingAndDoubleNothingWhenSomeAreKilled) {
    work({}, 6);
}

TEST_F(PostgresClients, LoseNothingAndDoubleNothingWithTwoAccountsInOneSchema) {
    makeOffice(server());
    outputs_ = {withPassword(server(), "jane"), withPassword(server(), "john")};
    table_ = "office.tree";
    work({});
    removeOffice(server());
}

TEST_F(PostgresClients, LoseNothingAndDoubleNothingInAnOldTable) {
    server().answer(
        "CREATE SCHEMA survey CREATE TABLE tree (pt_id varchar(255)); "
        "INSERT INTO survey.tree VALUES ('old')");
    work({"old"});
}

TEST_F(Postgres, BlocksAreLinkedAuditedAndReported) {
    ui_.allowClash(
        "Selected First &Key Value from Attributes List; Selected Second &Key Value from Attributes or "
        "Tables List; ");
    server().answer(
        "CREATE SCHEMA survey; CREATE TABLE survey.poles(pt_id varchar(255), gis_key text, northing double "
        "precision); "
        "INSERT INTO survey.poles VALUES('P1', 'POLES', 1), ('P2', 'POLES', 2)");
    addPrompt("POLES", "NOTE");
    lisp("(cf:gis_smart_prompting 2 2 \"" + server().connect() + "\")");
    lisp(
        "(entmake '((0 . \"BLOCK\") (2 . \"SIGN\") (70 . 2) (10 0.0 0.0 0.0))) (entmake '((0 . \"ATTDEF\") "
        "(10 0.0 0.0 0.0) "
        "(40 . 1.0) (1 . \"\") (3 . \"\") (2 . \"ID\") (70 . 0))) (entmake '((0 . \"ATTDEF\") (10 0.0 0.0 "
        "0.0) (40 . 1.0) (1 . "
        "\"\") (3 . \"\") (2 . \"KIND\") (70 . 0))) (entmake '((0 . \"ENDBLK\")))"
        "(foreach id '(\"P1\" \"P2\" \"P3\") (entmake '((0 . \"INSERT\") (2 . \"SIGN\") (66 . 1) (10 0.0 7.0 "
        "0.0))) (foreach pair "
        "(list (cons \"ID\" id) '(\"KIND\" . \"POLES\")) (entmake (list '(0 . \"ATTRIB\") '(10 0.0 0.0 0.0) "
        "'(40 . 1.0) (cons 1 "
        "(cdr pair)) (cons 2 (car pair)) '(70 . 0)))) (entmake '((0 . \"SEQEND\"))))");
    auto runOnAll = [&](int code) {
        printed();
        inputs_ = {"ALL", ""};
        lisp("(cf:gis_smart_prompting " + std::to_string(code) + ")");
        const std::string said = printed();
        return said.substr(said.rfind("\nDone.") == std::string::npos ? said.rfind('\n')
                                                                      : said.rfind("\nDone.") + 6);
    };
    answer(139, {pick("1001", "SIGN"), pick("1002", "ID"), click("1004"), pick("1002", "KIND"), click("1005"),
                 focus("OK"), click("OK")});
    EXPECT_EQ(runOnAll(4), "\n3 blocks: 2 linked, 0 already linked, 1 passed over: 1 without a record (P3).");
    EXPECT_EQ(runOnAll(8), "\n2 links to 1 table checked: 0 tables broken, 0 links mended, 0 erased.");
    ui_.answerQuestion("Bring up to date", "Yes");
    EXPECT_EQ(lisp("(gis:update-records 0.01)"), "2");
    EXPECT_EQ(record("pt_id, northing", "survey.poles"), "P1|7\nP2|7\n");

    EXPECT_EQ(lisp("(gis:link-report 0.01)"), "nil");
}

}  // namespace
