// Features made from the tables of databases, through the menu of the editor.
#include <sys/stat.h>

#include "tests/module/features/many_features.h"

class FromTable : public ManyFeatures {
  protected:
    static constexpr int kChooser = 153;

    // A database of the test's own, made by statements; its path is what the dialog opens first.
    void output(const std::string& name, const std::string& statements) {
        lisp("(cf:gis_smart_prompting 2 2 " + quoted(name) + ")");
        CDaoDatabase database;
        database.Create(path(name));
        database.Close();
        EXPECT_EQ(sqlite(name, statements), "");
        remember(path(name));
    }
    void remember(const std::string& output) {
        write("featlink.ini", "#1" + path("t.mdb") + "\n#2" + output + "\n");
    }
    static Step table(std::string name) {
        return pick("Available Tables from Output Database:", std::move(name));
    }
    // Runs the entry with these steps for the dialog, then those for the editor.
    void import(std::vector<Step> chooser, std::vector<Step> then = {}) {
        answer(kChooser, std::move(chooser));
        then.insert(then.begin(), menu("Feature/Import"));
        edit(std::move(then));
    }
    // The columns of a table and their types, a line each.
    std::string columns(const std::string& file, const std::string& table) const {
        CDaoDatabase database;
        database.Open(path(file));
        CDaoTableDef definition(&database);
        definition.Open(table);
        std::string all;
        CDaoFieldInfo field;
        for (int i = 0; i < definition.GetFieldCount(); ++i) {
            definition.GetFieldInfo(i, field);
            all += field.name + " " + std::to_string(field.type) + " " + std::to_string(field.size) + "\n";
        }
        return all;
    }
    // The tables that the dialog has listed the last time it was shown.
    std::string listed() const {
        std::string names;
        for (const std::string& line : ui_.log()) {
            if (line.find("[153]") != 0) continue;
            names.clear();
            const size_t list = line.find("1004 list"), end = line.find("1902 label");
            for (size_t at = line.find('\n', list); at < end; at = line.find('\n', at + 1)) {
                std::string name = line.substr(at + 1, line.find('\n', at + 1) - at - 1);
                if (name.find("    ") == 0) names += name.substr(6) + " ";
            }
        }
        return names;
    }
};

TEST_F(FromTable, ATableBecomesAFeatureThatWritesToIt) {
    treeTemplate();
    output("out.mdb",
           "CREATE TABLE Poles (OWNER TEXT(50), HEIGHT DOUBLE, CIRCUITS LONG, NORTHING DOUBLE, NOTES MEMO, "
           "TAX CURRENCY);"
           "INSERT INTO Poles (OWNER, HEIGHT) VALUES ('CITY', 30)");
    answer(kName, {show(), click("OK")});
    category("UTILITIES");
    box("OK"), box("Yes");
    import({show(), table("POLES"), show(), click("OK")}, {show(), key("Ctrl+S"), show()});
    EXPECT_TRUE(shown("OK adds to the table what records are found by: PT_ID, GIS_KEY"));
    EXPECT_TRUE(
        shown("box [Details] \"Process done!\nNumber fields from    TABLE : 5\n"
              "Number fields  used in the new Feature : 5\""));
    // Unnamed at first, changed, and enabled; the table's name is proposed.
    EXPECT_TRUE(shown("1007 edit \"None\""));
    EXPECT_TRUE(shown("Define Template Database *"));
    EXPECT_TRUE(shown("edit \"POLES\""));
    EXPECT_FALSE(shown("Select From Object Data Tables")) << "the host has none";
    EXPECT_EQ(features("GIS_NAME = 'POLES'"),
              "POLES|NORTHING|Northing|$EQN=$NOR|$EQN=$NOR\nPOLES|OWNER|OWNER||\nPOLES|..HEIGHT|HEIGHT||\n"
              "POLES|.CIRCUITS|CIRCUITS||\nPOLES|NOTES|NOTES||\n");
    EXPECT_EQ(stored("select GIS_NAME, TABLE_NAME, IS_CURRENT from ZGEO_LINKS"), "POLES|POLES|NO\n");
    // The keys stand at the end and have no values.
    EXPECT_EQ(columns("out.mdb", "Poles"),
              "OWNER 10 50\nHEIGHT 7 8\nCIRCUITS 4 4\nNORTHING 7 8\nNOTES 12 0\nTAX 5 8\nPT_ID 10 "
              "255\nGIS_KEY 10 255\n");
    EXPECT_EQ(sqlite("out.mdb", "select OWNER, HEIGHT from Poles where PT_ID is null and GIS_KEY is null"),
              "CITY|30.0\n");
    const std::string said = printed();
    EXPECT_NE(said.find("\nPT_ID and GIS_KEY added to the table POLES."), std::string::npos) << said;
    EXPECT_NE(said.find("\n1 field left out: TAX."), std::string::npos) << said;

    // The sheet writes to the table at once.
    makeEntity();
    answer(134, {cell(2, "SMITH"), cell(3, "12.5"), click("OK")});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 " + quoted("") + " " + quoted("t.mdb") + " " +
                   quoted("out.mdb") + " \"PT_ID\" \"7\" 1.0 2.0 3.0 ent \"POLES\" 1)"),
              "1");
    EXPECT_EQ(
        sqlite("out.mdb", "select PT_ID, GIS_KEY, OWNER, HEIGHT, NORTHING from Poles where PT_ID = '7'"),
        "7|POLES|SMITH|12.5|1.0\n");
}

TEST_F(FromTable, TheFeatureMayHaveAnotherNameThanItsTable) {
    treeTemplate();
    output("out.mdb", "CREATE TABLE POLES (PT_ID TEXT(20), GIS_KEY TEXT(20), OWNER TEXT(50), HEIGHT DOUBLE)");
    // TREE is there already; replaced, it writes to the table.
    name("lamp"), category("PLANTS"), box("OK"), box("Yes");
    import({table("POLES"), click("OK")}, {key("Ctrl+S")});
    EXPECT_EQ(stored("select GIS_NAME, TABLE_NAME from ZGEO_LINKS"), "LAMP|POLES\n");
    name("tree"), box("OK"), box("Yes"), box("Yes");
    import({table("POLES"), click("OK")}, {key("Ctrl+S")});
    EXPECT_TRUE(shown("Feature already exist! Do you want to replace it?"));
    EXPECT_EQ(stored("select GIS_NAME, TABLE_NAME from ZGEO_LINKS order by GIS_NAME"),
              "LAMP|POLES\nTREE|POLES\n");
    EXPECT_EQ(features("GIS_NAME = 'TREE'"), "TREE|OWNER|OWNER||\nTREE|..HEIGHT|HEIGHT||\n");
    // A feature that has a link already gets this one in its place.
    output("other.mdb", "CREATE TABLE LIGHTS (OWNER TEXT(50))");
    name("lamp"), box("OK"), box("Yes"), box("Yes");
    import({table("LIGHTS"), click("OK")}, {key("Ctrl+S")});
    EXPECT_EQ(stored("select GIS_NAME, TABLE_NAME from ZGEO_LINKS order by GIS_NAME"),
              "LAMP|LIGHTS\nTREE|POLES\n");
    // Only the save that follows makes a link.
    box("Yes"), box("Yes");
    edit({open("TREE"), at(2, 1, "Who"), key("Ctrl+S")});
    EXPECT_EQ(stored("select GIS_NAME, TABLE_NAME from ZGEO_LINKS order by GIS_NAME"),
              "LAMP|LIGHTS\nTREE|POLES\n");
}

TEST_F(FromTable, TablesAreOfferedByTheirFields) {
    treeTemplate();
    output(
        "out.mdb",
        "CREATE TABLE good (A TEXT(9)); CREATE TABLE DATES (PT_ID TEXT(9), D DATETIME, Y YESNO, M CURRENCY);"
        "CREATE TABLE KEYS (PT_ID TEXT(9), GIS_KEY TEXT(9)); CREATE TABLE LONGKEY (PT_ID LONG, A TEXT(9));"
        "CREATE TABLE LONGGIS (GIS_KEY LONG, A TEXT(9)); CREATE TABLE MEMOKEY (PT_ID MEMO, A TEXT(9));"
        "CREATE TABLE PICTURES ([IMAGE_ZGEO/1] TEXT(255)); CREATE TABLE NUMBERS (PT_ID TEXT(9), I SHORT, S "
        "SINGLE)");
    box("OK"), box("No"), box("Yes");
    import({show(), table("PICTURES"), click("OK")}, {show()});
    EXPECT_EQ(listed(), "GOOD PICTURES NUMBERS ");
    // A table of nothing that makes an attribute gives an empty sheet, and its keys.
    EXPECT_TRUE(shown("Number fields from    TABLE : 0\nNumber fields  used in the new Feature : 0"));
    EXPECT_TRUE(shown("1008 grid 5 x 1"));
    EXPECT_EQ(columns("out.mdb", "PICTURES"), "IMAGE_ZGEO/1 10 255\nPT_ID 10 255\nGIS_KEY 10 255\n");
}

TEST_F(FromTable, FieldsAreTickedOff) {
    treeTemplate();
    output("out.mdb", "CREATE TABLE POLES (OWNER TEXT(50), HEIGHT DOUBLE, NOTES MEMO)");
    box("OK"), box("No"), box("Yes");
    import({table("POLES"),
            {Step::Kind::Cell, "1903", "0", true, 1, 2},
            {Step::Kind::ClickCell, "1903", "", true, 2, 3},
            key("Space"),
            show(),
            {Step::Kind::ClickCell, "1903", "", true, 2, 1},
            key("Space"),
            key("Space"),
            click("OK")},
           {show()});
    EXPECT_TRUE(shown("[x]  OWNER  Char\n    [ ]  HEIGHT Real\n    [ ]  NOTES  Char"));
    EXPECT_TRUE(shown("Number fields from    TABLE : 2\nNumber fields  used in the new Feature : 1"));
    EXPECT_TRUE(shown("1008 grid 5 x 2"));
    EXPECT_NE(printed().find("2 fields left out: HEIGHT, NOTES."), std::string::npos);
}

TEST_F(FromTable, WithoutATableNothingHappens) {
    treeTemplate();
    output("out.mdb", "CREATE TABLE POLES (OWNER TEXT(50))");
    const std::string before = columns("out.mdb", "POLES");
    for (const std::vector<Step>& steps : {std::vector<Step>{click("OK")},
                                           {text("Selected Table:", "POLE"), click("OK")},
                                           {table("POLES"), click("Cancel")}}) {
        ui_.clearLog();
        box("Yes");
        answer(kChooser, steps);
        edit({open("TREE"), menu("Feature/Import"), show()});
        EXPECT_TRUE(shown("1007 edit \"TREE\""));
        EXPECT_TRUE(shown("'SPECIES'"));
        EXPECT_FALSE(shown("box [Details]"));
    }
    EXPECT_EQ(columns("out.mdb", "POLES"), before);
    // A name that is typed counts whatever its letters.
    box("OK"), box("No"), box("Yes");
    import({text("Selected Table:", " poles "), click("OK")});
    EXPECT_TRUE(shown("box [Details]"));
    EXPECT_NE(columns("out.mdb", "POLES"), before);
}

TEST_F(FromTable, AnotherDatabaseIsOpenedAndRemembered) {
    treeTemplate();
    output("second.sqlite", "CREATE TABLE LAMPS (WATTS LONG)");
    output("first.mdb", "CREATE TABLE POLES (OWNER TEXT(50))");
    const std::string settings = read("gps.ini");
    write("damaged.mdb", "no database");
    ui_.answerFile(path("damaged.mdb"));
    ui_.answerFile("");
    ui_.answerFile(path("second.sqlite"));
    box("OK"), box("OK"), box("No"), box("Yes");
    import({click("Open Another Output Database"), show(), click("Open Another Output Database"),
            click("Open Another Output Database"), show(), table("LAMPS"), click("OK")});
    EXPECT_EQ(listed(), "LAMPS ");
    EXPECT_TRUE(shown("1002 edit \"" + path("first.mdb") + "\" (read-only)"));
    EXPECT_TRUE(shown("1002 edit \"" + path("second.sqlite") + "\" (read-only)"));
    EXPECT_TRUE(shown("open file box \"Microsoft Access Databases (*.mdb)|*.mdb|"));
    EXPECT_NE(read("featlink.ini").find("#2" + path("second.sqlite") + "\n"), std::string::npos);
    EXPECT_EQ(read("gps.ini"), settings);
    // One that has gone since is not shown.
    fs::remove(path("second.sqlite"));
    ui_.clearLog();
    box("Yes");
    import({show(), click("Cancel")});
    EXPECT_TRUE(shown("1002 edit \"\" (read-only)"));
}

TEST_F(FromTable, AFailureLeavesTheSheetAsItWas) {
    treeTemplate();
    output("out.mdb", "CREATE TABLE POLES (OWNER TEXT(50))");
    // The database goes as soon as the dialog is closed.
    struct Thief : CheckedScript {
        std::string victim;
        void close(ui::Dialog& dialog) override {
            CheckedScript::close(dialog);
            if (dialog.resource() == kChooser) fs::remove(victim);
        }
        bool told(const std::string& part) const {
            for (const std::string& line : log())
                if (line.find(part) != std::string::npos) return true;
            return false;
        }
    } thief;
    thief.victim = path("out.mdb");
    ui::setBackend(&thief);
    thief.answer(kChooser, {table("POLES"), click("OK")});
    thief.answer(kEditor, {open("TREE"), menu("Feature/Import"), show(), menu("Exit")});
    thief.answerBox("OK"), thief.answerBox("Yes");
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
    EXPECT_TRUE(thief.told("box [Error]"));
    EXPECT_TRUE(thief.told("1007 edit \"TREE\""));
    EXPECT_TRUE(thief.told("'SPECIES'"));
    EXPECT_FALSE(thief.told("Define Template Database *"));
    ui::setBackend(&ui_);
}

TEST_F(FromTable, ATableThatMayNotBeChangedIsTakenOnlyWithItsKeys) {
    treeTemplate();
    output("out.mdb",
           "CREATE TABLE POLES (PT_ID TEXT(20), OWNER TEXT(50));"
           "CREATE TABLE LAMPS (PT_ID TEXT(20), GIS_KEY TEXT(20), WATTS LONG)");
    fs::permissions(path("out.mdb"), fs::perms::owner_read);
    answer(kChooser, {table("POLES"), click("OK")});
    box("OK"), box("Yes");
    edit({open("TREE"), menu("Feature/Import"), show()});
    EXPECT_TRUE(shown("box [Error]"));
    EXPECT_TRUE(shown("1007 edit \"TREE\""));
    EXPECT_FALSE(shown("box [Details]"));
    EXPECT_EQ(columns("out.mdb", "POLES"), "PT_ID 10 20\nOWNER 10 50\n");
    ui_.clearLog();
    box("OK"), box("No"), box("Yes");
    import({table("LAMPS"), click("OK")});
    EXPECT_TRUE(shown("box [Details]"));
    EXPECT_FALSE(shown("box [Error]"));
}

TEST_F(FromTable, TheFeatureThatWasShownIsNotOverwritten) {
    treeTemplate();
    output("out.mdb", "CREATE TABLE POLES (OWNER TEXT(50))");
    const std::string before = features();
    // Unsaved changes are asked about; after No and Cancel they stay and are no changes any more.
    box("No"), box("Yes");
    answer(kChooser, {click("Cancel")});
    edit({open("TREE"), at(2, 1, "Kind"), menu("Feature/Import"), show()});
    EXPECT_TRUE(shown("'Kind'"));
    EXPECT_EQ(features(), before);
    // The name is asked for, and without one nothing is saved; the changes stay.
    answer(kName, {click("Cancel")});
    answer(kChooser, {table("POLES"), click("OK")});
    box("OK"), box("No"), box("Yes");
    ui_.clearLog();
    edit({open("TREE"), menu("Feature/Import"), key("Ctrl+S"), show()});
    EXPECT_TRUE(shown("Define Template Database *"));
    EXPECT_TRUE(shown("box [Alert] \"Save Changes?\""));
    EXPECT_EQ(features(), before);
    // By the question before the end.
    answer(kChooser, {table("POLES"), click("OK")});
    answer(kName, {click("OK")});
    category("PLANTS");
    box("OK"), box("Yes"), box("Yes");
    edit({open("TREE"), menu("Feature/Import")});
    EXPECT_EQ(features(), before + "POLES|OWNER|OWNER||\n");
    EXPECT_EQ(stored("select GIS_NAME, TABLE_NAME from ZGEO_LINKS"), "POLES|POLES\n");
}

// Every table of the databases that are kept beside a checkout.
TEST_F(FromTable, EachSharedTableIsUsedInTheSameSession) {
    struct Database {
        const char* file;
        std::vector<const char*> tables;
    };
    const Database databases[] = {
        {"mdb/output_2000.mdb", {"POLES", "LAMPS", "TREE", "PARCEL", "MONUMENT"}},
        {"mdb/output_97.mdb", {"POLES", "LAMPS", "TREE", "PARCEL", "MONUMENT"}},
        {"linked/output.mdb",
         {"LOT", "POLES", "MONUMENT", "TANK", "NOTES_LONG", "SIGN", "PIPE:8IN", "FENCE", "EDGE", "UNUSED"}},
    };
    if (!fs::exists(std::string(NORVANE_SHARED_DATA "/") + databases[0].file))
        GTEST_SKIP() << "the files are not there";
    newTemplate();
    name("all");
    box("Yes");
    edit({menu("Category/New")});
    for (const Database& database : databases) {
        fs::copy_file(std::string(NORVANE_SHARED_DATA "/") + database.file, path("out.mdb"),
                      fs::copy_options::overwrite_existing);
        fs::permissions(path("out.mdb"), fs::perms::owner_write, fs::perm_options::add);
        remember(path("out.mdb"));
        ui_.clearLog();
        box("Yes");
        import({show(), click("Cancel")});
        std::string offered = " " + listed();
        for (const char* table : database.tables) {
            const std::string spaced = " " + std::string(table) + " ";
            ASSERT_NE(offered.find(spaced), std::string::npos) << table << " among" << offered;
            answer(kChooser, {pick("Available Tables from Output Database:", table), click("OK")});
            answer(kName, {click("OK")});
            box("OK");
            const bool isThere =
                sqlite("t.mdb", "select 1 from ZGEO_CAT where GIS_NAME = '" + std::string(table) + "'") != "";
            if (isThere)
                box("Yes");
            else
                category("ALL");
            box("Yes");
            makeEntity();
            // The key is one that no record has.
            edit({menu("Feature/Import"), key("Ctrl+S")});
            answer(134, {click("OK")});
            EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 " + quoted("") + " " + quoted("t.mdb") + " " +
                           quoted("out.mdb") + " \"PT_ID\" \"new1\" 1.0 2.0 3.0 ent \"" + table + "\" 1)"),
                      "1")
                << database.file << " " << table;
            EXPECT_EQ(sqlite("out.mdb",
                             "select PT_ID, GIS_KEY from [" + std::string(table) + "] where PT_ID = 'new1'"),
                      "new1|" + std::string(table) + "\n")
                << database.file << " " << table;
            offered.erase(offered.find(spaced), spaced.size() - 1);
        }
        EXPECT_EQ(offered, " ") << "no other is offered from " << database.file;
    }
}
