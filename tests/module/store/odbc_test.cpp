// The statements of the ODBC route, as a server would receive them.
#include <gtest/gtest.h>

#include "module/settings/current_databases.h"
#include "module/settings/dialog_state.h"
#include "module/settings/settings_file.h"
#include "module/store/database.h"
#include "module/store/gis_link.h"
#include "module/store/output_database.h"
#include "module/store/server_sign_in.h"
#include "module/store/statements.h"
#include "module/store/user_tables.h"
#include "tests/module/host_double.h"
#include "tests/module/store/recording_engine.h"

using namespace norvane;

namespace {

using Strings = std::vector<std::string>;

class Odbc : public ::testing::Test {
  protected:
    void SetUp() override {
        ::setenv("NORVANE_REGISTRY", "/nonexistent/registry.ini", 1);
        dao::registerEngine(server);
    }
    void TearDown() override { dao::unregisterEngine(server.get()); }

    static std::vector<CDaoFieldInfo> columns(const Strings& names) {
        std::vector<CDaoFieldInfo> fields;
        for (const std::string& name : names) fields.push_back(KeyColumn(name));
        return fields;
    }

    const std::string path = "ODBC;DSN=survey";
    const RecordKey key{"tree", "pt_id", "a1", "Oak"};
    std::shared_ptr<RecordingEngine> server = std::make_shared<RecordingEngine>();
    HostDoubleBackend backend;
};

TEST_F(Odbc, StatementsAreTheServersWordForWord) {
    EXPECT_EQ(FindRecordStatement(Route::kOdbc, key, true, FindPurpose::kLoad),
              "SELECT * FROM tree WHERE UCASE(PT_ID) = 'A1' AND UCASE(GIS_KEY) ='OAK'");
    EXPECT_EQ(FindRecordStatement(Route::kOdbc, key, true, FindPurpose::kSave),
              "SELECT * FROM tree WHERE UCASE(PT_ID) = 'A1' AND UCASE(GIS_KEY) = 'OAK'");
    EXPECT_EQ(FindRecordStatement(Route::kOdbc, key, false, FindPurpose::kLoad),
              "SELECT * FROM tree WHERE UCASE(PT_ID) = 'A1'");
    EXPECT_EQ(FindRecordStatement(Route::kAccess, key, true, FindPurpose::kLoad),
              "SELECT * FROM [tree] WHERE [pt_id] = 'a1' AND GIS_KEY = 'Oak'");
    EXPECT_EQ(FindRecordStatement(Route::kAccess, key, false, FindPurpose::kSave),
              "SELECT * FROM [tree] WHERE [pt_id] = 'a1'");
}

TEST_F(Odbc, ARecordIsReplacedAsAWhole) {
    server->tables["TREE"] = columns({"PT_ID", "GIS_KEY", "HEIGHT", "NOTE"});
    server->found = {"A1", "OAK", "1", "x"};
    ASSERT_TRUE(SaveRecord(path, key,
                           {{"HEIGHT", FieldKind::kReal, "12.50"},
                            {"NOTE", FieldKind::kChar, "it's"},
                            {"EMPTY", FieldKind::kChar, ""},
                            {"CLEARED", FieldKind::kChar, "", true}}));
    EXPECT_EQ(
        server->log,
        (Strings{
            "add TREE EMPTY", "add TREE CLEARED",
            "SELECT * FROM tree WHERE UCASE(PT_ID) = 'A1' AND UCASE(GIS_KEY) = 'OAK'",
            "DELETE FROM tree WHERE UCASE(PT_ID) = 'A1' AND UCASE(GIS_KEY) = 'OAK'",
            "INSERT INTO tree (PT_ID,GIS_KEY,HEIGHT,NOTE,CLEARED) VALUES('A1','OAK','12.50','it''s','')"}));
    server->log.clear();
    server->found.clear();
    ASSERT_TRUE(SaveRecord(path, key, {}));
    EXPECT_EQ(server->log, (Strings{"SELECT * FROM tree WHERE UCASE(PT_ID) = 'A1' AND UCASE(GIS_KEY) = 'OAK'",
                                    "INSERT INTO tree (PT_ID,GIS_KEY) VALUES('A1','OAK')"}));
}

TEST_F(Odbc, OldRecordsGetTheNameOfTheTable) {
    server->tables["TREE"] = columns({"PT_ID"});
    ASSERT_TRUE(SaveRecord(path, key, {}));
    EXPECT_EQ(server->log[0], "add TREE GIS_KEY");
    EXPECT_EQ(server->log[1], "UPDATE tree SET GIS_KEY = 'tree'");
    EXPECT_EQ(server->log[2], "SELECT * FROM tree WHERE UCASE(PT_ID) = 'A1' AND UCASE(GIS_KEY) = 'OAK'")
        << "so the old record of a feature with a table of another name is not found";
}

TEST_F(Odbc, TheUserOwnsTheTables) {
    server->actualConnect = "ODBC;DSN=survey;uid=jane;PWD=secret;";
    server->tables["JANE.TREE"] = columns({"PT_ID", "GIS_KEY"});
    server->tables["SYS.TREE"] = columns({"PT_ID"});
    LoadRecord(path, key);
    EXPECT_EQ(server->log,
              Strings{"SELECT * FROM JANE.tree WHERE UCASE(PT_ID) = 'A1' AND UCASE(GIS_KEY) ='OAK'"});
    // What was typed into the driver's box is used at the next opening, and stays in Lisp symbols.
    EXPECT_EQ(host().symbols["~" + server->actualConnect], "JANE");
    EXPECT_EQ(host().symbols["@" + server->actualConnect], "survey");
    LoadRecord(path, key);
    EXPECT_EQ(server->opened, (Strings{path, server->actualConnect}));
    WithDatabase(path, [](CDaoDatabase& db) { EXPECT_EQ(UserTables(db), Strings{"JANE.TREE"}); });
}

TEST_F(Odbc, ASchemaTakesThePlaceOfTheUser) {
    server->actualConnect = "ODBC;DSN=survey;UID=jane;SCHEMA=office";
    server->tables["JANE.TREE"] = columns({"PT_ID"});
    server->tables["OFFICE.TREE"] = columns({"PT_ID", "GIS_KEY"});
    ASSERT_TRUE(SaveRecord(path, key, {}));
    EXPECT_EQ(server->log,
              (Strings{"SELECT * FROM OFFICE.tree WHERE UCASE(PT_ID) = 'A1' AND UCASE(GIS_KEY) = 'OAK'",
                       "INSERT INTO OFFICE.tree (PT_ID,GIS_KEY) VALUES('A1','OAK')"}));
    WithDatabase(path, [](CDaoDatabase& db) { EXPECT_EQ(UserTables(db), Strings{"OFFICE.TREE"}); });
}

// What is written into drawings and settings is a path, and a text that may have a password is none.
template <class Text>
concept IsLinked = requires(Text text) {
    GisLink{.outputPath = text};
};
template <class Text>
concept IsRemembered = requires(Text text) {
    writeState(text, state::kOutputPath);
};
template <class Text>
concept IsSetting = requires(Text text, SettingsFile file) {
    file.placeOutput(text);
};
template <class Text>
concept IsSlot = requires(Text text) {
    SetDialogValue(2, text);
};
template <class Text>
constexpr bool kIsWritten = IsLinked<Text> || IsRemembered<Text> || IsSetting<Text> || IsSlot<Text>;
static_assert(!kIsWritten<std::string> && !kIsWritten<const char*> && !kIsWritten<dao::ConnectString> &&
              !kIsWritten<dao::Secret>);
static_assert(IsLinked<dao::DatabasePath> && IsRemembered<dao::DatabasePath> &&
              IsSetting<dao::DatabasePath> && IsSlot<dao::DatabasePath>);

TEST_F(Odbc, APasswordIsTakenOutOfThePathAndUsedAllTheSame) {
    for (const char* source : {"ODBC;DSN=survey;UID=jane", "ODBC;DRIVER={My Driver};UID=jane"}) {
        std::string with = std::string(source) + ";PWD={se;cret}";
        EXPECT_EQ(TakePassword(with).text(), source);
        EXPECT_EQ(OpenConnectString(source), dao::ConnectString(with));
        LoadRecord(source, key);
        EXPECT_EQ(server->opened.back(), with);
    }
    EXPECT_EQ(TakePassword("/jobs/PWD=x;.mdb").text(), "/jobs/PWD=x;.mdb");
}

TEST_F(Odbc, NamesThatAreNoPlainWordsStandInBrackets) {
    server->actualConnect = "ODBC;DSN=survey;UID=jane-d";
    const RecordKey hydrant{"Fire Hydrant", "NO#", "a1", "Fire Hydrant"};
    server->tables["JANE-D.Fire Hydrant"] = columns({"NO#"});
    ASSERT_TRUE(SaveRecord(path, hydrant,
                           {{"FLOW (GPM)", FieldKind::kReal, "2"}, {"flow (gpm)", FieldKind::kReal, "3"}}));
    EXPECT_EQ(server->log, (Strings{"add JANE-D.Fire Hydrant GIS_KEY", "add JANE-D.Fire Hydrant FLOW (GPM)",
                                    "UPDATE [JANE-D].[Fire Hydrant] SET GIS_KEY = 'Fire Hydrant'",
                                    "SELECT * FROM [JANE-D].[Fire Hydrant] WHERE UCASE([NO#]) = 'A1' AND "
                                    "UCASE(GIS_KEY) = 'FIRE HYDRANT'",
                                    "INSERT INTO [JANE-D].[Fire Hydrant] ([NO#],GIS_KEY,[FLOW (GPM)]) "
                                    "VALUES('A1','FIRE HYDRANT','3')"}));
}

TEST_F(Odbc, WithoutAUserTheTablesOfAllCountButTheEnginesOwn) {
    for (const char* name : {"A.MSYSX", "MSYSX", "~TMP1", "B", "A.TREE"}) server->tables[name] = {};
    WithDatabase(path, [](CDaoDatabase& db) {
        EXPECT_EQ(UserTables(db), (Strings{"A.MSYSX", "A.TREE", "B"}));
        EXPECT_EQ(FindUserTable(db, "tree"), "A.TREE");
    });
}

TEST_F(Odbc, TheServersWordsReachTheUser) {
    server->error = "The server is down.";
    EXPECT_FALSE(SaveRecord(path, key, {}));
    EXPECT_EQ(host().boxes, Strings{"Error: The server is down."});
}

}  // namespace
