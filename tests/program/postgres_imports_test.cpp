// Notes and texts that are imported into a PostgreSQL server, read back by psql.
#include "tests/module/transfer/utilities_fixture.h"
#include "tests/platform/dao/odbc/postgres_server.h"

namespace {

class PostgresImports : public UtilitiesTest {
  protected:
    void SetUp() override {
        if (!server().missing().empty()) GTEST_SKIP() << server().missing();
        if (!server().runs()) server().start();
        UtilitiesTest::SetUp();
        ASSERT_EQ(server().answer("SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE"),
                  "");
        write("featlink.ini", "#H" + server().connect() + "\n");
    }
    void TearDown() override {
        if (host_) UtilitiesTest::TearDown();
    }
    static PostgresServer& server() { return PostgresServer::instance(); }
    static std::string record(const std::string& columns, const std::string& table) {
        return server().answer("SELECT " + columns + " FROM survey." + table + " ORDER BY 1");
    }
};

constexpr const char* kNotes =
    "PT_ID:4  GIS_FILE:POLE.GIS\nPt Data,1.5,2.5,3.5,POLE\nClass,1\nPT_ID:O'NEIL  "
    "GIS_FILE:pole.gis\nClass,2\n"
    "free text\n";

}  // namespace

TEST_F(PostgresImports, RecordsComeInTwiceWithoutDoubledRowsAndAreTakenBack) {
    write("a.not", kNotes);
    std::string shown = importNotes("a.not");
    EXPECT_TRUE(has(shown, "POLE: 2 rows added, 0 changed")) << shown;
    const std::string columns = "pt_id, gis_key, northing, description, class, notes";
    const std::string rows = "4|POLE|1.5|POLE|1|\nO'NEIL|POLE|||2|free text\n";
    EXPECT_EQ(record(columns, "pole"), rows);
    EXPECT_FALSE(has(shown, PostgresServer::kPassword));
    EXPECT_TRUE(has(importNotes("a.not"), "POLE: 0 rows added, 2 changed"));
    EXPECT_EQ(record(columns, "pole"), rows);
    write("b.not", "PT_ID:4  GIS_FILE:POLE.GIS\nClass,9\nHeight,30\nPT_ID:5  GIS_FILE:POLE.GIS\nClass,5\n");
    ui_.answerFile(path("b.not"));
    shown = run({click("1021"), click("Import Checked Features"), click("Take Last Import Back")});
    EXPECT_TRUE(has(shown, "1 row as before the import, 1 deleted")) << shown;
    EXPECT_EQ(record(columns, "pole"), rows);
    EXPECT_NE(record("height", "pole").find("does not exist"), std::string::npos);
}

TEST_F(PostgresImports, TextsComeInAndTablesAreRenamed) {
    write("p.txt", "1,1.5,OAK\n2,2.5,O'BRIEN\n1,3.5,LAST\n");
    EXPECT_TRUE(has(importText("p.txt", keyed("shots")), "SHOTS: 2 rows added, 0 changed"));
    EXPECT_TRUE(has(importText("p.txt", keyed("SHOTS")), "0 rows added, 2 changed"));
    EXPECT_EQ(record("pt_id, field2, field3", "shots"), "1|3.5|LAST\n2|2.5|O'BRIEN\n");
    answer(1611, {text("1001", "marks"), click("OK")});
    const std::string shown = run({pick("1012", "0"), click("Rename Table")});
    EXPECT_FALSE(has(shown, "box [Error]")) << shown;
    EXPECT_EQ(record("pt_id, gis_key", "marks"), "1|MARKS\n2|MARKS\n");
    ui_.answerBox("Yes");
    run({pick("1012", "0"), click("Delete Table")});
    EXPECT_NE(record("pt_id", "marks").find("does not exist"), std::string::npos);
}

TEST_F(PostgresImports, AServerThatGoesAwayIsTold) {
    write("a.not", kNotes);
    ui_.answerFile(path("a.not"));
    class Killer : public ui::Asker {
      public:
        std::optional<ui::Step> step(const std::string& model) override {
            if (model.find("[161]") != 0) return std::nullopt;
            if (asked_++ > 0) return click("2");
            server().stop(SIGQUIT);
            return click("Import Checked Features");
        }
        std::optional<std::string> answer(const std::string&) override { return std::nullopt; }

      private:
        int asked_ = 0;
    } killer;
    ui_.setAsker(&killer);
    answer(161, {click("1021")});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 16)"), "0");
    ui_.setAsker(nullptr);
    EXPECT_TRUE(shown("box [Error]"));
    EXPECT_TRUE(shown("The database could not be written"));
    server().start();
    EXPECT_NE(record("pt_id", "pole").find("does not exist"), std::string::npos);
}
