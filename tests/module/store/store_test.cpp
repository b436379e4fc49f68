// The store on Access files: what it makes and writes is read back by the program jet. Tables of other
// programs are in SQLite files.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>

#include "module/cad/ads_owners.h"
#include "module/store/bulk_add.h"
#include "module/store/database.h"
#include "module/store/output_copy.h"
#include "module/store/output_database.h"
#include "module/store/server_sign_in.h"
#include "module/store/statements.h"
#include "module/store/template_database.h"
#include "module/store/user_tables.h"
#include "platform/files/files.h"
#include "tests/module/host_double.h"
#include "tests/module/store/hostile_texts.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

using Strings = std::vector<std::string>;

std::string versionOf(const std::string& path) {
    CDaoDatabase db;
    db.Open(path);
    return db.GetVersion();
}

// The fields of a table with their sizes.
std::string columnsOf(const std::string& path, const std::string& name) {
    CDaoDatabase db;
    db.Open(path);
    CDaoTableDef table(&db);
    table.Open(name);
    std::string columns;
    for (int i = 0; i < table.GetFieldCount(); ++i) {
        CDaoFieldInfo field;
        table.GetFieldInfo(i, field);
        columns += (i ? ", " : "") + field.name + " " + std::to_string(field.size) +
                   (field.attributes & dbAutoIncrField ? " counts" : "");
    }
    return columns;
}

class Store : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!haveSqlite3()) GTEST_SKIP() << "the sqlite3 program is not installed";
        ::setenv("NORVANE_REGISTRY", folder("registry.ini").c_str(), 1);
    }

    void removeDao() { std::ofstream(folder("registry.ini")) << "[-HKEY_CLASSES_ROOT\\DAO.DBEngine.36]\n"; }

    std::string makeTemplate() {
        EXPECT_TRUE(CreateTemplateDatabase(folder("template.mdb"), DatabaseVersion::kAccess97));
        return folder("template.mdb");
    }

    void addFeature(const std::string& name, const Strings& fields) {
        for (const std::string& field : fields)
            answer(folder("template.mdb"),
                   "INSERT INTO ZGEO_SMART_PROMPTING(GIS_NAME,FIELD_NAME,FIELD_PROMPT) VALUES('" + name +
                       "','" + field + "','Prompt of " + field + "')");
    }

    ScratchFolder folder;
    HostDoubleBackend backend;
};

TEST_F(Store, NewDatabasesTakeTheirNameByTheRule) {
    struct {
        const char* given;
        const char* made;
    } names[] = {{"C:\\data\\out", "C:\\data\\out.mdb"},
                 {"C:\\data\\out.xyz", "C:\\data\\out.mdb"},
                 {"C:\\data\\my.files\\out.mdb", "C:\\data\\my.files\\out.mdb"},
                 {"/jobs/v1.2/out", "/jobs/v1.2/out.mdb"},
                 {"/jobs/a.b.MDB", "/jobs/a.b.mdb"},
                 {"out.db", "out.db"},
                 {"out.SQLite", "out.SQLite"},
                 {"/jobs/out.gpkg", "/jobs/out.gpkg"},
                 {"out.docx", ""},
                 {"out.", ""},
                 {"", ".mdb"}};
    for (const auto& name : names) EXPECT_EQ(NewDatabasePath(name.given), name.made) << name.given;
    for (const char* kind : {"a.sqlite", "b.db", "c.gpkg"})
        EXPECT_TRUE(CreateOutputDatabase(folder(kind), DatabaseVersion::kAccess97)) << kind;
    EXPECT_EQ(files::read(folder("b.db")).value_or("").substr(0, 15), "SQLite format 3");
    EXPECT_EQ(files::read(folder("c.gpkg")).value_or("").substr(68, 4), "GPKG") << "the application id";

    EXPECT_TRUE(CreateOutputDatabase(folder("out.xyz"), DatabaseVersion::kAccess2000));
    EXPECT_EQ(versionOf(folder("out.mdb")), "4.0");
    EXPECT_TRUE(CreateOutputDatabase(folder("older"), DatabaseVersion::kAccess97));
    EXPECT_EQ(versionOf(folder("older.mdb")), "3.0");
    EXPECT_FALSE(CreateOutputDatabase(folder("out.xyz"), DatabaseVersion::kAccess2000)) << "the file exists";
    EXPECT_EQ(host().boxes.size(), 1u);
    EXPECT_FALSE(CreateOutputDatabase(folder("nowhere/out"), DatabaseVersion::kAccess97));
    EXPECT_EQ(host().boxes.size(), 1u) << "a folder that cannot be written to is no error of the engine";
    EXPECT_EQ(host().printed, "");
}

TEST_F(Store, WithoutDaoNothingIsDone) {
    std::string path = makeTemplate();
    EXPECT_EQ(IsDaoAvailable("3.6"), 1);
    EXPECT_EQ(IsDaoAvailable("3.2"), 0);
    std::ofstream(folder("registry.ini"))
        << "[HKEY_CLASSES_ROOT\\CLSID\\{6C1E7A52-0B7D-4D1B-9A53-8E2F4B7C1D36}\\InprocServer32]\n@=/nowhere\n";
    EXPECT_EQ(IsDaoAvailable("3.6"), 1) << "a class is enough, whether its file is there or not";
    removeDao();
    EXPECT_EQ(IsDaoAvailable("3.6"), 0);
    EXPECT_EQ(IsTemplateDatabase(path), 0);
    EXPECT_EQ(host().printed, "\nPlease install DAO 3.6...");
    EXPECT_EQ(FeatureExists(path, "TREE"), 0);
    EXPECT_FALSE(SaveRecord(folder("out.mdb"), {"T", "PT_ID", "1", "T"}, {}));
    EXPECT_FALSE(std::filesystem::exists(folder("out.mdb")));
}

TEST_F(Store, ATemplateIsMadeAndKnownByItsColumns) {
    std::string path = makeTemplate();
    EXPECT_EQ(columnsOf(path, "ZGEO_SMART_PROMPTING"),
              "NO_GIS 4 counts, GIS_NAME 255, FIELD_NAME 255, FIELD_PROMPT 255, DEFAULT_VALUE 255, "
              "LIST_VALUES 255");
    EXPECT_EQ(columnsOf(path, "ZGEO_CAT"), "INDEX_CAT_GIS 4, CAT_GIS_NAME 255, GIS_NAME 255");
    EXPECT_NE(answer(path, "INSERT INTO ZGEO_CAT VALUES(1,'','X')"), "") << "no zero length";
    for (const char* name : {"GIS_NAME", "FIELD_NAME", "FIELD_PROMPT", "DEFAULT_VALUE", "LIST_VALUES"}) {
        const bool isAllowed = std::string(name) == "DEFAULT_VALUE" || std::string(name) == "LIST_VALUES";
        const std::string insert = "INSERT INTO ZGEO_SMART_PROMPTING(" + std::string(name) + ") VALUES('')";
        EXPECT_EQ(answer(path, insert) == "", isAllowed) << name << " of zero length";
    }
    EXPECT_EQ(IsTemplateDatabase(path), 1);
    // A seventh column does no harm, nor do the order and the case of names; another column in the place of
    // one does.
    answer(path, "ALTER TABLE ZGEO_SMART_PROMPTING ADD COLUMN MORE TEXT(9)");
    EXPECT_EQ(IsTemplateDatabase(path), 1);
    answer(folder("swapped.mdb"),
           "CREATE TABLE ZGEO_SMART_PROMPTING(NO_GIS INTEGER, FIELD_NAME TEXT, GIS_NAME TEXT); "
           "CREATE TABLE ZGEO_CAT(INDEX_CAT_GIS INTEGER)");
    EXPECT_EQ(IsTemplateDatabase(folder("swapped.mdb")), 1);
    answer(folder("cased.mdb"),
           "CREATE TABLE zgeo_smart_prompting(NO_GIS INTEGER); CREATE TABLE zgeo_cat(INDEX_CAT_GIS)");
    EXPECT_EQ(IsTemplateDatabase(folder("cased.mdb")), 1);
    answer(folder("case.mdb"),
           "CREATE TABLE ZGEO_SMART_PROMPTING(no_gis INTEGER); CREATE TABLE ZGEO_CAT(INDEX_CAT_GIS)");
    EXPECT_EQ(IsTemplateDatabase(folder("case.mdb")), 1);
    answer(folder("other.mdb"),
           "CREATE TABLE ZGEO_SMART_PROMPTING(NO_GIS INTEGER, FEATURE TEXT); "
           "CREATE TABLE ZGEO_CAT(INDEX_CAT_GIS INTEGER)");
    EXPECT_EQ(IsTemplateDatabase(folder("other.mdb")), 0);
    answer(folder("without.mdb"),
           "CREATE TABLE ZGEO_SMART_PROMPTING(NO_GIS INTEGER, GIS_NAME TEXT, FIELD_NAME TEXT, FIELD_PROMPT "
           "TEXT, "
           "DEFAULT_VALUE TEXT, A TEXT, B TEXT); CREATE TABLE ZGEO_CAT(INDEX_CAT_GIS INTEGER)");
    EXPECT_EQ(IsTemplateDatabase(folder("without.mdb")), 0)
        << "others do not make up for one that is missing";
    answer(folder("one.mdb"), "CREATE TABLE ZGEO_SMART_PROMPTING(NO_GIS INTEGER)");
    EXPECT_EQ(IsTemplateDatabase(folder("one.mdb")), 0) << "both tables are needed";
    EXPECT_TRUE(host().boxes.empty());
    std::ofstream(folder("text.mdb")) << "no database";
    EXPECT_EQ(IsTemplateDatabase(folder("text.mdb")), 0);
    EXPECT_EQ(host().boxes, Strings{"Error: The file \"" + folder("text.mdb") +
                                    "\" is no database, or one of an unknown format."});
}

TEST_F(Store, TablesOfTheEngineAndAttachedOnesAreNotTheUsers) {
    CDaoDatabase database;
    database.Open(makeTemplate());
    auto isUsers = [&](const char* name, const char* connect) {
        CDaoTableDefInfo table;
        table.name = name;
        table.connect = connect;
        return IsUserTable(table, database);
    };
    EXPECT_EQ(isUsers("TREE", ""), 1);
    EXPECT_EQ(isUsers("TREE", ";DATABASE=/jobs/other.mdb"), 0);
    EXPECT_EQ(isUsers("MSysObjects", ""), 0);
    EXPECT_EQ(isUsers("~TmpClp1", ""), 0);
    EXPECT_EQ(isUsers("~TREE", ""), 1);
}

TEST_F(Store, LinksAreMadeOnFirstNeedAndOneFeatureIsCurrent) {
    std::string path = makeTemplate();
    EXPECT_EQ(WithDatabase(path,
                           [](CDaoDatabase& db) {
                               EXPECT_TRUE(EnsureLinksTable(db));
                               EXPECT_FALSE(ReadCurrentFeature(db));
                               MarkFeatureCurrent(db, {"TREE", "PLANTS"});
                               MarkFeatureCurrent(db, {"POLE", "POLES"});
                               MarkFeatureCurrent(db, {"tree", "plants"});
                               EXPECT_EQ(ReadOutputTable(db, "TREE"), "PLANTS");
                               EXPECT_EQ(ReadOutputTable(db, "PARCEL"), "PARCEL");
                               EXPECT_EQ(ReadCurrentFeature(db)->feature, "TREE");
                           }),
              DatabaseOutcome::kDone);
    EXPECT_EQ(answer(path, "SELECT * FROM ZGEO_LINKS"), "TREE|PLANTS||YES\nPOLE|POLES||NO\n");
    answer(path, "INSERT INTO ZGEO_LINKS(GIS_NAME,LPN_NAME) VALUES('A','')");
    EXPECT_EQ(answer(path, "SELECT IS_CURRENT FROM ZGEO_LINKS WHERE GIS_NAME='A'"), "NO\n");
    EXPECT_NE(answer(path, "UPDATE ZGEO_LINKS SET IS_CURRENT='MAYBE'"), "");

    answer(folder("other.mdb"), "CREATE TABLE OTHER(A)");
    WithDatabase(folder("other.mdb"), [](CDaoDatabase& db) { EXPECT_FALSE(EnsureLinksTable(db)); });
    EXPECT_EQ(answer(folder("other.mdb"), "SELECT count(*) FROM ZGEO_LINKS"), "0\n")
        << "made even where there are no features";
}

TEST_F(Store, FeaturesAreReadAsTheTableHasThem) {
    std::string path = makeTemplate();
    addFeature("TREE", {"~..HEIGHT", "SPECIES"});
    addFeature("tree", {".COUNT"});
    addFeature("POLE", {"OWNER"});
    WithDatabase(path, [](CDaoDatabase& db) {
        EXPECT_EQ(ReadFeatureNames(db), (Strings{"TREE", "POLE"}));
        Strings fields;
        for (const FeatureRow& row : ReadFeatureRows(db, "Tree"))
            fields.push_back(row.fieldName + "/" + row.fieldPrompt);
        EXPECT_EQ(fields, (Strings{"~..HEIGHT/Prompt of ~..HEIGHT", "SPECIES/Prompt of SPECIES",
                                   ".COUNT/Prompt of .COUNT"}));
    });
    EXPECT_EQ(FeatureExists(path, "tree"), 1);
    EXPECT_EQ(FeatureExists(path, "TREE12"), 0);
    EXPECT_EQ(FeatureExists(path, "O'BRIEN"), 0);
    EXPECT_TRUE(host().boxes.empty()) << "a quote is a part of the name";
    answer(folder("other.mdb"), "CREATE TABLE OTHER(A)");
    EXPECT_EQ(FeatureExists(folder("other.mdb"), "TREE"), -2);
    EXPECT_EQ(FeatureExists(folder("missing.mdb"), "TREE"), -2);
    EXPECT_EQ(host().boxes.size(), 1u);
}

const std::vector<OutputField> kTree = {{"HEIGHT", FieldKind::kReal, "12.5"},
                                        {"COUNT", FieldKind::kInt, "3"},
                                        {"SPECIES", FieldKind::kChar, "O'Brien's oak"},
                                        {"EMPTY", FieldKind::kChar, ""},
                                        {"IMAGE_ZGEO/1", FieldKind::kChar, "No image!"},
                                        {"LABEL/1", FieldKind::kChar, "crown"}};

TEST_F(Store, ARecordIsWrittenAndLoaded) {
    std::string path = folder("out.mdb");
    RecordKey key{"TREE", "PT_ID", "1042", "TREE"};
    ASSERT_TRUE(SaveRecord(path, key, kTree));
    EXPECT_EQ(versionOf(path), "3.0") << "Access 97";
    EXPECT_EQ(
        columnsOf(path, "TREE"),
        "PT_ID 255, GIS_KEY 255, HEIGHT 8, COUNT 4, SPECIES 255, EMPTY 255, IMAGE_ZGEO/1 255, LABEL/1 255");
    EXPECT_EQ(answer(path, "SELECT * FROM TREE"), "1042|TREE|12.5|3|O'Brien's oak||No image!|crown\n");
    for (const char* name : {"PT_ID", "GIS_KEY", "EMPTY", "[LABEL/1]"}) {
        const bool isKey = std::string(name) == "PT_ID" || std::string(name) == "GIS_KEY";
        EXPECT_EQ(answer(path, "UPDATE TREE SET " + std::string(name) + "=''") == "", !isKey)
            << name << " of zero length";
    }

    // A second save edits the record, keeps what is empty now, and adds the columns that are new.
    ASSERT_TRUE(SaveRecord(path, key,
                           {{"HEIGHT", FieldKind::kReal, ""},
                            {"COUNT", FieldKind::kInt, "4"},
                            {"NOTE", FieldKind::kChar, "new"}}));
    EXPECT_EQ(answer(path, "SELECT HEIGHT,COUNT,NOTE FROM TREE"), "12.5|4|new\n");
    // Another feature in the same table keeps its own record under the same key.
    ASSERT_TRUE(SaveRecord(path, {"tree", "pt_id", "1042", "BUSH"}, {{"COUNT", FieldKind::kInt, "9"}}));
    EXPECT_EQ(answer(path, "SELECT GIS_KEY,COUNT FROM TREE"), "TREE|4\nBUSH|9\n");

    LoadedRecord loaded = LoadRecord(path, key);
    EXPECT_TRUE(loaded.found);
    EXPECT_EQ(loaded.columns, (Strings{"PT_ID", "GIS_KEY", "HEIGHT", "COUNT", "SPECIES", "EMPTY",
                                       "IMAGE_ZGEO/1", "LABEL/1", "NOTE"}));
    EXPECT_EQ(loaded.value("height") + " " + loaded.value("COUNT") + " " + loaded.value("SPECIES"),
              "12.5 4 O'Brien's oak");
    EXPECT_EQ(loaded.value("EMPTY") + loaded.value("NONE"), "");
    EXPECT_FALSE(LoadRecord(path, {"TREE", "PT_ID", "9", "TREE"}).found);
    EXPECT_TRUE(LoadRecord(path, {"POLE", "PT_ID", "9", "POLE"}).columns.empty());
    EXPECT_TRUE(host().boxes.empty());
}

TEST_F(Store, ADatabaseThatASaveMakesTakesAnyName) {
    std::filesystem::create_directory(folder("v1.2"));
    for (const char* name : {"v1.2/out.mdb", "out.a.mdb", "out.docx"}) {
        ASSERT_TRUE(SaveRecord(folder(name), {"TREE", "PT_ID", "1", "TREE"}, kTree));
        EXPECT_EQ(answer(folder(name), "SELECT PT_ID FROM TREE"), "1\n") << name;
    }
    EXPECT_EQ(NewDatabasePath(folder("out.docx")), "") << "others are not made under this name";
}

TEST_F(Store, ATableOfOldRecordsGetsItsFeatureOnTheFirstSave) {
    std::string path = folder("out.mdb");
    answer(
        path,
        "CREATE TABLE POLES(PT_ID TEXT(255), OWNER TEXT(255)); INSERT INTO POLES VALUES('1','a'),('2','b')");
    RecordKey key{"POLES", "PT_ID", "2", "POLE"};
    EXPECT_TRUE(LoadRecord(path, key).found);
    ASSERT_TRUE(SaveRecord(path, key, {{"OWNER", FieldKind::kChar, "c"}}));
    EXPECT_EQ(answer(path, "SELECT * FROM POLES"), "1|a|POLE\n2|c|POLE\n");
}

TEST_F(Store, AKeyColumnThatIsNoTextIsReplacedWhenARecordIsLoaded) {
    std::string path = folder("out.mdb");
    answer(path, "CREATE TABLE POLES(PT_ID INTEGER, OWNER TEXT(255)); INSERT INTO POLES VALUES(1,'a')");
    LoadedRecord loaded = LoadRecord(path, {"POLES", "PT_ID", "1", "POLE"});
    EXPECT_FALSE(loaded.found);
    EXPECT_EQ(loaded.columns, (Strings{"OWNER", "PT_ID"}));
    EXPECT_EQ(answer(path, "SELECT * FROM POLES"), "a|\n");
}

TEST_F(Store, WhatCannotBeWrittenIsSaidAndChangesNothing) {
    std::string path = folder("out.mdb");
    RecordKey key{"TREE", "PT_ID", "1", "TREE"};
    ASSERT_TRUE(SaveRecord(path, key, kTree));
    auto refusal = [&](const RecordKey& k, const std::vector<OutputField>& fields) {
        host().boxes.clear();
        EXPECT_FALSE(SaveRecord(path, k, fields));
        EXPECT_EQ(host().boxes.size(), 1u);
        return host().boxes.empty() ? "" : host().boxes[0];
    };
    EXPECT_EQ(refusal({"TREE", "PT]ID", "1", "TREE"}, {}),
              "Error: \"PT]ID\" is not a valid name of a field.");
    EXPECT_THROW(
        FindRecordStatement(Route::kAccess, {"TREE", "A] OR 1=1", "1", "TREE"}, true, FindPurpose::kLoad),
        CDaoException);
    EXPECT_THROW(SelectTable("TREE];DELETE FROM [TREE"), CDaoException);
    // Neither a new table nor a new column, nor the values of GIS_KEY, stay behind.
    EXPECT_NE(refusal({"NEW", "PT_ID", "1", "NEW"}, {{"NOTE", FieldKind::kChar, std::string(256, 'x')}}), "");
    EXPECT_NE(refusal(key, {{"MORE", FieldKind::kChar, "x"}, {"COUNT", FieldKind::kInt, "many"}}), "");
    WithDatabase(path, [](CDaoDatabase& db) { EXPECT_EQ(UserTables(db), (Strings{"TREE"})); });
    EXPECT_EQ(refusal(key, {{"COUNT", FieldKind::kInt, "99999999999"}}).substr(0, 15), "Error: Overflow");
    EXPECT_EQ(refusal(key, {{"COUNT", FieldKind::kInt, "0x1F"}}).substr(0, 33),
              "Error: Data type conversion error");
    EXPECT_NE(refusal(key, {{"SPECIES", FieldKind::kChar, std::string(256, 'x')}}), "");
    EXPECT_NE(refusal({"TREE", "PT_ID", "", "TREE"}, {}), "");
    EXPECT_NE(refusal(key, {{"A.B", FieldKind::kChar, "x"}}), "");
    EXPECT_EQ(answer(path, "SELECT * FROM TREE"), "1|TREE|12.5|3|O'Brien's oak||No image!|crown\n");
    ::chmod(path.c_str(), 0444);
    EXPECT_EQ(refusal(key, kTree),
              "Error: The database \"" + path + "\" cannot be changed: it is read-only.");
    EXPECT_TRUE(LoadRecord(path, key).found);
    EXPECT_EQ(faultsOf(path), "");
}

TEST_F(Store, KeysOfATableAreListedWithoutTheEmptyOnes) {
    std::string path = folder("out.mdb");
    answer(path,
           "CREATE TABLE A(PT_ID TEXT); INSERT INTO A VALUES('1'),(NULL),(''),('2'); CREATE TABLE B(PT_ID "
           "TEXT); CREATE TABLE C(NAME TEXT); CREATE TABLE OLD(pt_id LONG); INSERT INTO OLD VALUES(7)");
    auto keys = [&](const std::string& table) {
        Strings found;
        WithDatabase(path, [&](CDaoDatabase& db) { found = ListKeys(db, table); });
        return found;
    };
    EXPECT_EQ(keys("a"), (Strings{"1", "2"}));
    answer(path, "INSERT INTO A VALUES('3')");
    EXPECT_EQ(keys("A"), (Strings{"1", "2", "3"})) << "each run sees what has been added";
    EXPECT_EQ(keys("OLD"), Strings{"7"});
    for (const char* table : {"B", "C", "NONE"}) EXPECT_TRUE(keys(table).empty()) << table;
    EXPECT_EQ(host().boxes, Strings{});
}

TEST_F(Store, RecordsInBulk) {
    std::string path = folder("out.mdb");
    answer(path,
           "CREATE TABLE TREE(PT_ID TEXT(255), N INTEGER, S SMALLINT, R DOUBLE, F FLOAT4, M TEXT, L BOOLEAN);"
           "CREATE TABLE POLE(PT_ID TEXT(255))");
    auto bulk = [](resbuf* list) { return BulkAddRecords(ResultBuffers(list).get()); };
    const char* p = path.c_str();
    EXPECT_EQ(bulk(nullptr), -1.0);
    EXPECT_EQ(bulk(acutBuildList(RTSHORT, 1, RTSTR, p, 0)), -2.0);
    EXPECT_EQ(bulk(acutBuildList(RTSTR, "", 0)), -2.0);
    EXPECT_EQ(bulk(acutBuildList(RTSTR, std::string(1024, 'x').c_str(), 0)), -2.0);
    EXPECT_EQ(bulk(acutBuildList(RTSTR, folder("missing.mdb").c_str(), 0)), -2.0);
    EXPECT_EQ(bulk(acutBuildList(RTSTR, p, 0)), 0.0);
    EXPECT_EQ(bulk(acutBuildList(RTSTR, p, RTSTR, "PT_ID", RTSTR, "1", RTSHORT, 1, RTSTR, "TREE", 0)), 0.0)
        << "what stands before the first table ends the walk";
    EXPECT_EQ(answer(path, "SELECT count(*) FROM TREE"), "0\n");

    EXPECT_EQ(
        bulk(acutBuildList(RTSTR, p,                                                                      //
                           RTSHORT, 1, RTSTR, " tree ", RTSTR, "pt_id", RTSTR, " 1 ",                     //
                           RTSTR, "N", RTSTR, "7x", RTSTR, "S", RTSTR, "8", RTSTR, "R", RTSTR, "1.5e3",   //
                           RTSTR, "F", RTSTR, "0.5", RTSTR, "M", RTSTR, "it's", RTSTR, "L", RTSTR, "1",   //
                           RTSHORT, 1, RTSTR, "NOWHERE", RTSTR, "PT_ID", RTSTR, "x",                      //
                           RTSHORT, 1, RTSTR, "POLE", RTSTR, "NONE", RTSTR, "x",                          //
                           RTSHORT, 1, RTSTR, "TREE", RTSTR, "PT_ID", RTSTR, "2", RTSTR, "M", RTSTR, "",  //
                           RTSHORT, 1, RTSTR, "", RTSTR, "N", RTSTR, "5", RTSTR, "M", 0)),
        1.0);
    EXPECT_EQ(answer(path, "SELECT * FROM TREE"), " 1 |7|8|1500.0|0.5|it's|\n2|5|||||\n")
        << "yes/no fields are left out; an empty table name leaves its pairs to the record before";
    EXPECT_EQ(answer(path, "SELECT count(*) FROM POLE WHERE PT_ID IS NULL"), "1\n");
    EXPECT_EQ(bulk(acutBuildList(RTSTR, p,  //
                                 RTSHORT, 1, RTSTR, "TREE", RTSTR, "PT_ID", RTSTR, "3", RTSTR, "N", RTSTR,
                                 "99999999999",  //
                                 RTSHORT, 1, RTSTR, "TREE", RTSTR, "PT_ID", RTSTR, "4", RTSTR, "N", RTSTR,
                                 "-99999999999", 0)),
              1.0);
    EXPECT_EQ(answer(path, "SELECT N FROM TREE WHERE PT_ID IN ('3', '4')"), "2147483647\n-2147483648\n");
    EXPECT_TRUE(host().boxes.empty());

    EXPECT_EQ(bulk(acutBuildList(RTSTR, p, RTSHORT, 1, RTSTR, "POLE", RTSTR, "PT_ID", RTSTR, "kept",  //
                                 RTSHORT, 1, RTSTR, "TREE", RTSTR, "S", RTSTR, "99999", 0)),
              -4.0);
    EXPECT_EQ(host().boxes.size(), 1u);
    EXPECT_EQ(answer(path, "SELECT count(*) FROM POLE WHERE PT_ID = 'kept'"), "1\n")
        << "what came before stays";
    removeDao();
    EXPECT_EQ(bulk(acutBuildList(RTSTR, p, RTSHORT, 1, RTSTR, "POLE", RTSTR, "PT_ID", RTSTR, "x", 0)), 0.0);
}

TEST_F(Store, AGeneratedKeyIsTheTime) {
    long before = static_cast<long>(std::time(nullptr));
    long key = std::stol(GeneratedKey("#AUTO#"));
    EXPECT_GE(key, before);
    EXPECT_LE(key, static_cast<long>(std::time(nullptr)));
    EXPECT_EQ(GeneratedKey("#AUTO#"), std::to_string(key + 1)) << "the next free one within the same second";
    EXPECT_EQ(GeneratedKey("1042") + GeneratedKey("#auto#"), "1042#auto#");
}

TEST_F(Store, NoTextEndsOrExtendsAStatement) {
    for (const char* name : {"out.mdb", "out.sqlite", "out.gpkg"}) {
        const std::string path = folder(name);
        ASSERT_TRUE(
            SaveRecord(path, {"VICTIM", "PT_ID", "1", "VICTIM"}, {{"NOTE", FieldKind::kChar, "stays"}}));
        for (const std::string& text : hostileTexts()) {
            const RecordKey key{"TREE", "PT_ID", text, text};
            ASSERT_TRUE(SaveRecord(path, key, {{"NOTE", FieldKind::kChar, text}})) << name << ": " << text;
            ASSERT_TRUE(SaveRecord(path, key, {{"NOTE", FieldKind::kChar, text}})) << "again: " << text;
            LoadedRecord loaded = LoadRecord(path, key);
            EXPECT_TRUE(loaded.found) << name << ": " << text;
            EXPECT_EQ(loaded.value("PT_ID"), text);
            EXPECT_EQ(loaded.value("GIS_KEY"), text);
            EXPECT_EQ(loaded.value("NOTE"), text);
            LoadRecord(path, {text, "PT_ID", "1", "VICTIM"});
        }
        WithDatabase(path, [](CDaoDatabase& db) {
            EXPECT_EQ(ListKeys(db, "TREE").size(), hostileTexts().size()) << "each has its own record";
            EXPECT_EQ(UserTables(db), (Strings{"VICTIM", "TREE"}));
        });
        LoadedRecord victim = LoadRecord(path, {"VICTIM", "PT_ID", "1", "VICTIM"});
        EXPECT_EQ(victim.value("NOTE"), "stays");
        EXPECT_EQ(host().boxes, Strings{});
    }
}

TEST_F(Store, NoNameOfAFeatureEndsOrExtendsAStatement) {
    std::string path = makeTemplate();
    addFeature("VICTIM", {"NOTE"});
    WithDatabase(path, [](CDaoDatabase& db) {
        ASSERT_TRUE(EnsureLinksTable(db));
        for (const std::string& text : hostileTexts()) {
            EXPECT_FALSE(HasFeature(db, text)) << text;
            EXPECT_TRUE(ReadFeatureRows(db, text).empty()) << text;
            EXPECT_EQ(ReadOutputTable(db, text), text);
            MarkFeatureCurrent(db, {text, text});
            std::optional<FeatureTable> current = ReadCurrentFeature(db);
            ASSERT_TRUE(current) << text;
            EXPECT_EQ(current->feature, text);
            EXPECT_EQ(ReadOutputTable(db, text), text);
        }
        EXPECT_TRUE(HasFeature(db, "VICTIM"));
        EXPECT_EQ(UserTables(db).size(), 3u);
    });
    EXPECT_EQ(host().boxes, Strings{});
}

TEST_F(Store, TheLastThreeCopiesOfAnOutputStayBesideIt) {
    const std::string path = folder("output.mdb");
    // What looks like a copy and is none stays.
    writeFile(folder("output before noon.mdb"), "mine");
    writeFile(folder("other before 2026-11-25 20-41-07.mdb"), "mine");
    std::string last;
    for (int i = 1; i <= 5; ++i) {
        writeFile(path, "state " + std::to_string(i));
        last = KeepOutputCopy(path);
        EXPECT_EQ(files::read(last), "state " + std::to_string(i));
    }
    std::vector<std::string> kept;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        if (entry.path().filename().string().starts_with("output before 2"))
            kept.push_back(*files::read(entry.path().string()));
    std::sort(kept.begin(), kept.end());
    EXPECT_EQ(kept, (Strings{"state 3", "state 4", "state 5"}));
    EXPECT_TRUE(files::exists(folder("output before noon.mdb")));
    EXPECT_TRUE(files::exists(folder("other before 2026-11-25 20-41-07.mdb")));
    EXPECT_EQ(KeepOutputCopy("ODBC;DSN=office"), "");
    EXPECT_EQ(KeepOutputCopy(folder("not there.mdb")), "");
}

}  // namespace
