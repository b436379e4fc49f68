// Labels from records on a PostgreSQL server.
#include "tests/module/annotation/annotation_fixture.h"
#include "tests/platform/dao/odbc/postgres_server.h"

namespace {

class LabelsOnServer : public Annotation {
  protected:
    void SetUp() override {
        if (!server().missing().empty()) GTEST_SKIP() << server().missing();
        if (!server().runs()) server().start();
        Annotation::SetUp();
        ASSERT_EQ(server().answer(
                      "SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE; CREATE "
                      "SCHEMA survey; CREATE TABLE survey.tree (pt_id varchar(20), gis_key varchar(30), "
                      "species varchar(30), age integer); INSERT INTO survey.tree VALUES ('1', 'TREE', "
                      "'Oak', 40), ('2', 'tree', 'Fir', 7), ('3', 'TREE', 'Ash', 9)"),
                  "");
        lisp("(cf:gis_smart_prompting 2 2 \"" + server().connect() +
             "\") (setq ret_string nil) "
             "(cf:gis_smart_prompting 3 2) (setq outp ret_string) (command \"_.ERASE\" \"_ALL\" \"\") "
             "(tree 1.0 \"1\") (tree 2.0 \"2\")");
        printed();
    }
    void TearDown() override {
        if (host_) Annotation::TearDown();
    }
    static PostgresServer& server() { return PostgresServer::instance(); }
};

}  // namespace

TEST_F(LabelsOnServer, FollowTheChangesOfThisProgram) {
    ASSERT_EQ(lisp("(gis:set-labels \"TREE\" \"SPECIES & ' ' & AGE\" 2)"), "2") << printed();
    EXPECT_EQ(labels(), "1=Oak 40;2=Fir 7;");
    EXPECT_EQ(lisp("(gis:set-colours \"TREE\" \"AGE\" \"counts\" 2)"), "2");
    EXPECT_EQ(legend(), "TREE: AGE|up to 7 1|7 to 40 1");
    server().answer("UPDATE survey.tree SET species = 'Elm' WHERE pt_id = '1'");
    refresh();
    EXPECT_EQ(labels(), "1=Oak 40;2=Fir 7;") << "a server does not tell of what others do";
    refresh("t");
    EXPECT_EQ(labels(), "1=Elm 40;2=Fir 7;");
    server().answer("UPDATE survey.tree SET species = 'Yew' WHERE pt_id = '1'");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 19 outp 0 \"tree\" \"PT_ID\" \"9\" \"SPECIES\" \"Box\")"), "1.0");
    refresh();
    EXPECT_EQ(labels(), "1=Yew 40;2=Fir 7;") << "what this program does is followed";
}

TEST_F(LabelsOnServer, AServerThatIsGoneIsTold) {
    lisp("(gis:set-labels \"TREE\" \"SPECIES\")");
    server().stop(SIGQUIT);
    const std::string said = refresh("t");
    EXPECT_NE(said.find("The labels of TREE: The output on the server cannot be read: "), std::string::npos)
        << said;
    EXPECT_EQ(said.find("7319"), std::string::npos) << "no password is told";
    EXPECT_EQ(labels(), "");
    server().start();
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 19 outp 0 \"tree\" \"PT_ID\" \"9\" \"SPECIES\" \"Box\")"), "1.0");
    EXPECT_EQ(refresh(), "");
    EXPECT_EQ(labels(), "") << "it is not tried again behind each command";
    EXPECT_EQ(refresh("t"), "");
    EXPECT_EQ(labels(), "1=Oak;2=Fir;");
}
