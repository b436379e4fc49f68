// Records changed in place: under which rules, beside others, and back again.
#include <sys/wait.h>

#include <thread>

#include "module/records/erase_records.h"
#include "module/store/database.h"
#include "tests/module/records/records_fixture.h"
#include "tests/platform/dao/lock_timeout.h"
#include "tests/platform/dao/odbc/postgres_server.h"

namespace {

using norvane::EditOutcome;
using norvane::RecordEdits;
using norvane::RecordValues;
using State = EditOutcome::State;

class EditsOfFile : public RecordsTest, public testing::WithParamInterface<const char*> {
  protected:
    void SetUp() override {
        RecordsTest::SetUp();
        makeRules();
        makeTrees(GetParam());
        database_.Open(path(GetParam()));
        edits_ = std::make_unique<RecordEdits>(database_, "TREES", path("rules.mdb"));
    }
    void TearDown() override {
        edits_.reset();
        database_.Close();
        EXPECT_EQ(faultsOf(path(GetParam())), "");
        RecordsTest::TearDown();
    }
    RecordValues tree(const std::string& key) {
        return readRecord(database_, "TREES", "PT_ID = '" + key + "'");
    }
    void begin(const std::string& key) { edits_->begin(tree(key)); }
    std::string type(const std::string& field, const std::string& text) {
        return RecordsTest::type(*edits_, field, text);
    }
    std::string stored(const std::string& key, const std::string& field) {
        return valueOf(*edits_, tree(key), field);
    }
    // Changes a field as somebody else would, who knows nothing of the edits.
    void others(const std::string& key, const std::string& field, const dao::Variant& value) {
        CDaoRecordset records(&database_);
        records.Open(dbOpenDynaset, "SELECT * FROM TREES WHERE PT_ID = '" + key + "'");
        records.Edit();
        records.SetFieldValue(field, value);
        records.Update();
    }

    CDaoDatabase database_;
    std::unique_ptr<RecordEdits> edits_;
};

TEST_P(EditsOfFile, TheTemplateRulesItsRecords) {
    using ui::CellKind;
    const auto cell = [&](const RecordValues& record, const char* field) {
        return edits_->rules().cell(record, static_cast<size_t>(edits_->fieldNamed(field)));
    };
    const RecordValues oak = tree("1"), bush = tree("4");
    EXPECT_EQ(cell(oak, "SPECIES").kind, CellKind::DropDown);
    EXPECT_EQ(cell(oak, "SPECIES").items, (std::vector<std::string>{"Oak", "Beech"}));
    EXPECT_EQ(cell(oak, "STATE").items, (std::vector<std::string>{"", "good", "poor"}))
        << "it may be emptied";
    EXPECT_EQ(cell(oak, "DESCRIPTION").kind, CellKind::Edit) << "a description is typed in the sheet too";
    for (const char* locked : {"PT_ID", "GIS_KEY", "VOLUME", "TWICE", "NORTHING", "NR"})
        EXPECT_EQ(cell(oak, locked).kind, CellKind::Static) << locked;
    EXPECT_EQ(cell(tree("2"), "DEED").kind, CellKind::Static) << "two lines";
    EXPECT_EQ(cell(oak, "DEED").kind, CellKind::Edit);
    EXPECT_EQ(cell(bush, "SPECIES").kind, CellKind::Edit) << "a feature that the template does not know";
    EXPECT_EQ(cell(bush, "VOLUME").kind, CellKind::Edit);
    EXPECT_EQ(cell(bush, "PT_ID").kind, CellKind::Static);
    const auto prompt = [&](const char* field) {
        return edits_->rules().prompt(oak, static_cast<size_t>(edits_->fieldNamed(field)));
    };
    EXPECT_EQ(prompt("HEIGHT"), "Height *");
    EXPECT_EQ(prompt("SEEN"), "SEEN");

    begin("1");
    EXPECT_EQ(type("SPECIES", ""), "Attribute SPECIES must be set!");
    EXPECT_EQ(type("SPECIES", "Ash"), "\"Ash\" is none of the values of SPECIES.");
    EXPECT_EQ(type("HEIGHT", "high"),
              "Attribute HEIGHT must be a real value!\n(From -1.7E+308 through 1.7E+308)");
    EXPECT_EQ(type("STEMS", "2.5"),
              "Attribute STEMS must be an integer value!\n(From -2 147 483 648 through 2 147 483 647)");
    EXPECT_EQ(type("STEMS", "3000000000"), "STEMS: \"3000000000\" is too large a number.");
    EXPECT_EQ(type("SEEN", "soon"), "SEEN: \"soon\" is no date.");
    EXPECT_EQ(type("NOTE", std::string(61, 'x')), "NOTE takes 60 characters at most.");
    EXPECT_EQ(type("PT_ID", "7"), "PT_ID cannot be changed here.");
    EXPECT_EQ(type("VOLUME", "7"), "VOLUME cannot be changed here.");
    EXPECT_FALSE(edits_->isChanged());
    EXPECT_EQ(edits_->write().state, State::kNothing);
}

TEST_P(EditsOfFile, WhatIsRequiredAndWasEmptyMayStaySo) {
    others("1", "SPECIES", dao::Variant());
    begin("1");
    EXPECT_EQ(type("SPECIES", ""), "");
    EXPECT_EQ(type("NOTE", "new"), "");
    EXPECT_TRUE(edits_->write().isWritten());
    EXPECT_EQ(type("SPECIES", "Oak"), "");
    EXPECT_TRUE(edits_->write().isWritten());
    EXPECT_EQ(type("SPECIES", ""), "Attribute SPECIES must be set!");
    EXPECT_EQ(stored("1", "SPECIES") + stored("1", "NOTE"), "Oaknew");
}

TEST_P(EditsOfFile, ARowIsWrittenWhenItIsLeftAndTakenBack) {
    const RecordValues before = tree("1"), second = tree("2");
    begin("1");
    EXPECT_EQ(type("SPECIES", "beech"), "");
    EXPECT_EQ(type("HEIGHT", "4,5"), "");
    EXPECT_EQ(type("NOTE", "it's [one]"), "");
    EXPECT_EQ(type("SEEN", "1/2/2003"), "");
    EXPECT_EQ(type("LIT", "No"), "");
    EXPECT_EQ(type("STATE", "good"), "");
    EXPECT_EQ(type("STATE", ""), "") << "as it was";
    EXPECT_EQ(stored("1", "SPECIES"), "Oak") << "nothing is written yet";
    EXPECT_EQ(edits_->text(static_cast<size_t>(edits_->fieldNamed("SPECIES"))), "Beech")
        << "as the list has it";
    EXPECT_FALSE(edits_->isChanged(static_cast<size_t>(edits_->fieldNamed("STATE"))));
    const EditOutcome written = edits_->write();
    ASSERT_EQ(written.state, State::kWritten) << written.message;
    EXPECT_EQ(written.now, tree("1"));
    EXPECT_EQ(written.before, before);
    EXPECT_EQ(stored("1", "SPECIES"), "Beech");
    EXPECT_EQ(stored("1", "HEIGHT"), "4.5");
    EXPECT_EQ(stored("1", "VOLUME"), "9") << "4.5 * 2 follows";
    EXPECT_EQ(stored("1", "TWICE"), "18") << "and what follows from it";
    EXPECT_EQ(stored("1", "NORTHING"), "1000.25") << "the point is not known here";
    EXPECT_EQ(stored("1", "NOTE"), "it's [one]");
    EXPECT_EQ(stored("1", "SEEN"), "01/02/2003");
    EXPECT_EQ(stored("1", "LIT"), "No");
    EXPECT_EQ(tree("2"), second);

    // The row goes on as it was written.
    EXPECT_EQ(type("STEMS", "3"), "");
    ASSERT_TRUE(edits_->write().isWritten());
    EXPECT_EQ(stored("1", "VOLUME"), "13.5");
    begin("2");
    EXPECT_EQ(type("HEIGHT", "1"), "");
    ASSERT_TRUE(edits_->write().isWritten());
    EXPECT_EQ(edits_->undoable(), 3U);
    // An equation whose attributes stay as they are says nothing.
    others("3", "VOLUME", 99.0);
    begin("3");
    EXPECT_EQ(type("NOTE", "third"), "");
    ASSERT_TRUE(edits_->write().isWritten());
    EXPECT_EQ(stored("3", "VOLUME"), "99");
    EXPECT_TRUE(edits_->undo().isWritten());
    EXPECT_TRUE(edits_->undo().isWritten());
    EXPECT_EQ(tree("2"), second);
    EXPECT_TRUE(edits_->undo().isWritten());
    EXPECT_EQ(stored("1", "VOLUME"), "9");
    const EditOutcome back = edits_->undo();
    EXPECT_TRUE(back.isWritten());
    EXPECT_EQ(back.now, before);
    EXPECT_EQ(tree("1"), before) << "to the last digit";
    EXPECT_EQ(edits_->undo().state, State::kNothing);
}

TEST_P(EditsOfFile, WhatOthersHaveChangedStays) {
    begin("1");
    EXPECT_EQ(type("NOTE", "mine"), "");
    others("1", "STEMS", 9);
    const EditOutcome refused = edits_->write();
    EXPECT_EQ(refused.state, State::kChangedByOther);
    EXPECT_EQ(refused.message, "PT_ID 1 has been changed by somebody else meanwhile, and stays so.");
    EXPECT_EQ(refused.now, tree("1"));
    EXPECT_EQ(stored("1", "NOTE"), "");
    EXPECT_TRUE(edits_->isChanged()) << "what was typed is not lost";
    EXPECT_EQ(edits_->undoable(), 0U);
    // Begun again on what the others have made of it, it is written.
    edits_->begin(refused.now);
    EXPECT_EQ(type("NOTE", "mine"), "");
    EXPECT_TRUE(edits_->write().isWritten());
    EXPECT_EQ(stored("1", "STEMS"), "9");

    // The same care for what is taken back.
    begin("2");
    EXPECT_EQ(type("NOTE", "second"), "");
    ASSERT_TRUE(edits_->write().isWritten());
    others("2", "NOTE", "theirs");
    EXPECT_EQ(edits_->undo().state, State::kChangedByOther);
    EXPECT_EQ(stored("2", "NOTE"), "theirs");
    EXPECT_TRUE(edits_->undo().isWritten()) << "the one before";
    EXPECT_EQ(stored("1", "NOTE"), "");

    begin("3");
    EXPECT_EQ(type("NOTE", "third"), "");
    database_.Execute("DELETE FROM TREES WHERE PT_ID = '3'");
    const EditOutcome gone = edits_->write();
    EXPECT_EQ(gone.state, State::kGone);
    EXPECT_EQ(gone.message, "PT_ID 3 is no longer there as it was read: somebody has changed or erased it.");
    EXPECT_TRUE(tree("3").empty()) << "and it is not made anew";
}

TEST_P(EditsOfFile, ARowThatIsShownOtherwiseIsNotBegun) {
    const RecordValues shown = tree("2");
    const auto cells = [&](size_t field) { return edits_->rules().text(shown, field); };
    EXPECT_TRUE(edits_->begin(tree("2"), cells));
    others("2", "NOTE", "theirs");
    EXPECT_FALSE(edits_->begin(tree("2"), cells));
    others("3", "DEED", std::string(300, 'x'));
    const RecordValues third = tree("3");
    EXPECT_TRUE(edits_->begin(tree("3"), [&](size_t field) {
        return edits_->rules().text(third, field).substr(0, 80);
    })) << "a cell may show the beginning of a long text";
}

TEST_P(EditsOfFile, WithoutAKeyTheValuesTellARecordFromOthers) {
    CDaoTableDef table(&database_);
    table.Create("LOOSE");
    table.CreateField("NAME", dbText, 40);
    table.CreateField("N", dbLong, 4);
    table.CreateField("X", dbDouble, 8);
    table.CreateField("LIT", dbBoolean, 1);
    table.Append();
    for (const char* row :
         {"'a', 1, 0.1, True", "'a', 1, 0.2, True", "'a', NULL, NULL, False", "'b', 1, 0.1, True"})
        database_.Execute(std::string("INSERT INTO LOOSE VALUES (") + row + ")");
    RecordEdits edits(database_, "LOOSE", "");
    edits.begin(readRecord(database_, "LOOSE", "X > 0.15"));
    EXPECT_EQ(edits.type(1, "5"), "");
    ASSERT_TRUE(edits.write().isWritten());
    edits.begin(readRecord(database_, "LOOSE", "N IS NULL"));
    EXPECT_EQ(edits.type(0, "c"), "");
    ASSERT_TRUE(edits.write().isWritten());
    const auto rows = [&] {
        std::string all;
        CDaoRecordset records(&database_);
        for (records.Open(dbOpenDynaset, "SELECT * FROM LOOSE"); !records.IsEOF(); records.MoveNext())
            for (int i = 0; i < 3; ++i) all += dao::toText(records.GetFieldValue(i)) + (i == 2 ? "; " : "|");
        return all;
    };
    EXPECT_EQ(rows(), "a|1|0.1; a|5|0.2; c||; b|1|0.1; ");
    EXPECT_TRUE(edits.undo().isWritten());
    EXPECT_TRUE(edits.undo().isWritten());
    EXPECT_EQ(rows(), "a|1|0.1; a|1|0.2; a||; b|1|0.1; ");
    edits.begin(readRecord(database_, "LOOSE", "NAME = 'b'"));
    EXPECT_EQ(edits.type(1, "6"), "");
    database_.Execute("UPDATE LOOSE SET X = 7 WHERE NAME = 'b'");
    const EditOutcome gone = edits.write();
    EXPECT_EQ(gone.state, State::kGone);
    EXPECT_TRUE(gone.message.starts_with("The record is no longer there as it was read")) << gone.message;
    EXPECT_EQ(rows(), "a|1|0.1; a|1|0.2; a||; b|1|7; ");
}

TEST_P(EditsOfFile, OfTwoRecordsOfOneKeyTheRightOneIsChanged) {
    database_.Execute("INSERT INTO TREES (PT_ID, GIS_KEY, NOTE) VALUES ('1', 'TREE', 'double')");
    database_.Execute("INSERT INTO TREES (PT_ID, GIS_KEY, NOTE) VALUES ('1', 'BUSH', 'bush')");
    edits_->begin(readRecord(database_, "TREES", "NOTE = 'double'"));
    EXPECT_EQ(type("STEMS", "8"), "");
    EXPECT_TRUE(edits_->write().isWritten());
    EXPECT_EQ(::answer(path(GetParam()), "SELECT STEMS FROM TREES WHERE PT_ID = '1'"), "2\n8\n\n");
}

TEST_P(EditsOfFile, WideTablesAndHostileTextsAreNoTrouble) {
    CDaoTableDef table(&database_);
    table.Create("WIDE");
    table.CreateField("PT_ID", dbText, 60);
    for (int i = 1; i < 254; ++i) table.CreateField("F" + std::to_string(i), dbText, 20);
    table.CreateField("PLAN", dbLongBinary, 0);
    table.Append();
    table.Close();
    const std::string id = "'; DELETE FROM WIDE --\"]";
    for (int i = 0; i < 2; ++i) {
        CDaoRecordset records(&database_);
        records.Open(dbOpenDynaset, "SELECT * FROM WIDE");
        records.AddNew();
        records.SetFieldValue("PT_ID", i == 0 ? id : "other");
        records.SetFieldValue("PLAN", dao::Binary(3000, 7));
        records.Update();
    }
    RecordEdits edits(database_, "WIDE", path("rules.mdb"));
    const auto read = [&] {
        CDaoRecordset records(&database_);
        records.Open(dbOpenDynaset, "SELECT * FROM WIDE");
        RecordValues values;
        for (int i = 0; i < records.GetFieldCount(); ++i) values.push_back(records.GetFieldValue(i));
        return values;
    };
    const RecordValues before = read();
    edits.begin(before);
    for (int i = 1; i < 254; ++i) EXPECT_EQ(RecordsTest::type(edits, "F" + std::to_string(i), "v'\"%"), "");
    EXPECT_TRUE(edits.write().isWritten());
    EXPECT_EQ(valueOf(edits, read(), "F253"), "v'\"%");
    EXPECT_TRUE(edits.undo().isWritten());
    EXPECT_EQ(read(), before);
    // A column that has come since.
    database_.DeleteTableDef("TREES");
    CDaoTableDef changed(&database_);
    changed.Open("WIDE");
    changed.DeleteField("F1");
    changed.Close();
    EXPECT_EQ(RecordsTest::type(edits, "F2", "x"), "");
    const EditOutcome failed = edits.write();
    EXPECT_EQ(failed.state, State::kFailed);
    EXPECT_NE(failed.message.find("The columns of WIDE have changed"), std::string::npos) << failed.message;
}

TEST_P(EditsOfFile, WhatTheDatabaseRefusesIsToldAndKept) {
    begin("1");
    EXPECT_EQ(type("NOTE", "mine"), "");
    database_.DeleteTableDef("TREES");
    const EditOutcome failed = edits_->write();
    EXPECT_EQ(failed.state, State::kFailed);
    EXPECT_NE(failed.message, "");
    EXPECT_TRUE(edits_->isChanged());
}

INSTANTIATE_TEST_SUITE_P(Files, EditsOfFile,
                         testing::Values("trees.mdb", "trees97.mdb", "trees.sqlite", "trees.gpkg"),
                         [](const auto& test) {
                             std::string name(test.param);
                             std::erase(name, '.');
                             return name;
                         });

// --- Two users --------------------------------------------------------------------------------------------

// What one user has come to: rounds in which the record was written, and those in which he was told that the
// other had changed it.
struct Rounds {
    int written = 0, told = 0, other = 0;
};

// Adds one to STEMS of record 1, again and again, from what was read a moment before.
Rounds countUp(RecordEdits& edits, const std::function<RecordValues()>& read, int rounds) {
    Rounds all;
    while (all.written < rounds && all.other == 0) {
        const RecordValues record = read();
        const auto stems = static_cast<size_t>(edits.fieldNamed("STEMS"));
        edits.begin(record);
        std::this_thread::sleep_for(std::chrono::milliseconds(all.written % 3));
        edits.type(stems, std::to_string(std::stoi(edits.rules().text(record, stems)) + 1));
        switch (edits.write().state) {
            case State::kWritten:
                ++all.written;
                break;
            case State::kChangedByOther:
                ++all.told;
                break;
            default:
                ++all.other;
        }
    }
    return all;
}

// Two processes that take turns: each waits until the other has done its part.
class Turns {
  public:
    Turns() { EXPECT_EQ(::pipe(toSecond_) + ::pipe(toFirst_), 0); }
    ~Turns() {
        for (int end : {toSecond_[0], toSecond_[1], toFirst_[0], toFirst_[1]}) ::close(end);
    }
    void give(bool isFirst) const { (void)!::write(isFirst ? toSecond_[1] : toFirst_[1], "x", 1); }
    void await(bool isFirst) const {
        char c = 0;
        (void)!::read(isFirst ? toFirst_[0] : toSecond_[0], &c, 1);
    }

  private:
    int toSecond_[2] = {}, toFirst_[2] = {};
};

class TwoUsers : public RecordsTest {
  protected:
    using Opener = std::function<void(CDaoDatabase&)>;

    static RecordValues first(CDaoDatabase& database, const std::string& table) {
        return readRecord(database, table, "PT_ID = '1'");
    }

    static constexpr int kRounds = 25;

    // Two processes edit record 1 of a table: in turn, so that each comes too late once, and then as fast as
    // they can, each so many rounds. Neither has a connection of this one.
    static void share(const Opener& open, const std::string& table) {
        const Turns turns;
        std::vector<pid_t> users;
        for (bool isFirst : {true, false}) {
            users.push_back(::fork());
            if (users.back() == 0) ::_exit(shareAs(isFirst, turns, open, table));
        }
        for (pid_t user : users) {
            int status = 0;
            ::waitpid(user, &status, 0);
            EXPECT_EQ(status, 0);
        }
    }
    // What is then stored: each of the steps of both is there.
    static std::string expected() { return std::to_string(2 + 2 * kRounds) + "|second\n"; }

  private:
    // 0: all went as it should. The other never waits in vain.
    static int shareAs(bool isFirst, const Turns& turns, const Opener& open, const std::string& table) {
        int faults = 1000;
        try {
            faults = edit(isFirst, turns, open, table);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s: %s\n", isFirst ? "first" : "second", error.what());
        }
        turns.give(isFirst), turns.give(isFirst);
        return faults;
    }
    static int edit(bool isFirst, const Turns& turns, const Opener& open, const std::string& table) {
        CDaoDatabase database;
        open(database);
        RecordEdits edits(database, table, "");
        edits.begin(first(database, table));
        turns.give(isFirst), turns.await(isFirst);
        int faults = 0;
        if (isFirst) {
            faults += !type(edits, "NOTE", "first").empty() || !edits.write().isWritten();
            turns.give(isFirst), turns.await(isFirst);
            // The other has written since.
            faults += !type(edits, "NOTE", "mine").empty() || edits.write().state != State::kChangedByOther;
        } else {
            turns.await(isFirst);
            faults += !type(edits, "NOTE", "late").empty();
            const EditOutcome late = edits.write();
            faults += late.state != State::kChangedByOther || valueOf(edits, late.now, "NOTE") != "first";
            edits.begin(late.now);
            faults += !type(edits, "NOTE", "second").empty() || !edits.write().isWritten();
            turns.give(isFirst);
        }
        const Rounds done = countUp(
            edits, [&] { return first(database, table); }, kRounds);
        return faults + done.other + (done.written == kRounds ? 0 : 100);
    }
};

TEST_F(TwoUsers, OnOneAccessFileLoseNothingAndAreTold) {
    makeTrees("trees.mdb");
    share([&](CDaoDatabase& database) { database.Open(path("trees.mdb")); }, "TREES");
    EXPECT_EQ(faultsOf(path("trees.mdb")), "");
    EXPECT_EQ(::answer(path("trees.mdb"), "SELECT STEMS, NOTE FROM TREES WHERE PT_ID = '1'"), expected());
}

TEST_F(TwoUsers, OnOneSqliteFileLoseNothingAndAreTold) {
    makeTrees("trees.sqlite");
    share([&](CDaoDatabase& database) { database.Open(path("trees.sqlite")); }, "TREES");
    EXPECT_EQ(::answer(path("trees.sqlite"), "SELECT STEMS, NOTE FROM TREES WHERE PT_ID = '1'"), expected());
}

TEST_F(TwoUsers, WhoWaitsTooLongIsToldAndWritesLater) {
    for (const char* file : {"trees.mdb", "trees.sqlite"}) {
        makeTrees(file);
        const Turns turns;
        const pid_t child = ::fork();
        if (child == 0) {
            CDaoDatabase database;
            database.Open(path(file));
            turns.await(false);
            database.BeginTrans();
            database.Execute("UPDATE TREES SET NOTE = 'theirs' WHERE PT_ID = '2'");
            turns.give(false), turns.await(false);
            database.CommitTrans();
            database.Close();
            ::_exit(0);
        }
        CDaoDatabase database;
        database.Open(path(file));
        RecordEdits edits(database, "TREES", "");
        edits.begin(first(database, "TREES"));
        EXPECT_EQ(type(edits, "NOTE", "mine"), "");
        turns.give(true), turns.await(true);
        {
            const ShortLockTimeout timeout;
            const EditOutcome failed = edits.write();
            EXPECT_EQ(failed.state, State::kFailed);
            EXPECT_NE(failed.message, "");
            EXPECT_EQ(edits.undo().state, State::kNothing);
        }
        turns.give(true);
        ::waitpid(child, nullptr, 0);
        EXPECT_TRUE(edits.write().isWritten());
        database.Close();
        EXPECT_EQ(::answer(path(file), "SELECT NOTE FROM TREES WHERE PT_ID < '3' ORDER BY PT_ID"),
                  "mine\ntheirs\n");
    }
}

class TwoUsersOfServer : public TwoUsers {
  protected:
    void SetUp() override {
        if (!server().missing().empty()) GTEST_SKIP() << server().missing();
        if (!server().runs()) server().start();
        TwoUsers::SetUp();
        ASSERT_EQ(
            server().answer("SET client_min_messages = warning; DROP SCHEMA IF EXISTS survey CASCADE; "
                            "CREATE SCHEMA survey; CREATE TABLE survey.trees (pt_id text, gis_key text, "
                            "species text, height numeric(8,2), stems integer, rate real, seen timestamp, "
                            "note text); INSERT INTO survey.trees SELECT i, 'TREE', 'Oak', i + 0.5, 2, 0.1, "
                            "'2004-05-31 13:45:10.25', '' FROM generate_series(1, 3) i; "
                            "CREATE TABLE survey.keyed (pt_id text PRIMARY KEY, gis_key text, stems integer, "
                            "note text); INSERT INTO survey.keyed VALUES ('1', 'TREE', 2, '')"),
            "");
    }
    void TearDown() override {
        if (host_) TwoUsers::TearDown();
    }
    static PostgresServer& server() { return PostgresServer::instance(); }
    static void open(CDaoDatabase& database) { norvane::OpenDatabase(database, server().connect()); }
};

TEST_F(TwoUsersOfServer, LoseNothingAndAreTold) {
    for (const std::string table : {"survey.keyed", "survey.trees"}) {
        share(open, table);
        EXPECT_EQ(server().answer("SELECT stems, note FROM " + table + " WHERE pt_id = '1'"), expected());
    }
}

TEST_F(TwoUsersOfServer, WhatTheServerMakesOfAValueIsNoChangeByOthers) {
    CDaoDatabase database;
    open(database);
    RecordEdits edits(database, "survey.trees", "");
    const RecordValues before = first(database, "survey.trees");
    edits.begin(before);
    EXPECT_EQ(type(edits, "HEIGHT", "2.129"), "");
    EXPECT_EQ(type(edits, "RATE", "0.3"), "");
    const EditOutcome written = edits.write();
    ASSERT_TRUE(written.isWritten()) << written.message;
    EXPECT_EQ(valueOf(edits, written.now, "HEIGHT"), "2.13") << "of two decimals";
    EXPECT_EQ(type(edits, "NOTE", "again"), "");
    ASSERT_TRUE(edits.write().isWritten());
    EXPECT_TRUE(edits.undo().isWritten());
    EXPECT_TRUE(edits.undo().isWritten());
    EXPECT_EQ(first(database, "survey.trees"), before);
    EXPECT_EQ(server().answer("SELECT seen FROM survey.trees WHERE pt_id = '1'"), "2004-05-31 13:45:10.25\n");
}

TEST_F(TwoUsersOfServer, AChangeThatIsUnderWayIsWaitedFor) {
    for (const std::string table : {"survey.keyed", "survey.trees"}) {
        CDaoDatabase database;
        open(database);
        RecordEdits edits(database, table, "");
        edits.begin(first(database, table));
        EXPECT_EQ(type(edits, "NOTE", "mine"), "");
        CDaoDatabase others;
        open(others);
        others.BeginTrans();
        others.Execute("UPDATE " + table + " SET stems = 77 WHERE pt_id = '1'");
        std::thread other([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            others.CommitTrans();
        });
        const EditOutcome refused = edits.write();
        other.join();
        EXPECT_EQ(refused.state, State::kChangedByOther) << table << ": " << refused.message;
        EXPECT_EQ(valueOf(edits, refused.now, "STEMS"), "77");
        EXPECT_EQ(server().answer("SELECT stems, note FROM " + table + " WHERE pt_id = '1'"), "77|\n");
    }
}

TEST_F(TwoUsersOfServer, RowsAreErasedUnlessOthersHaveChangedThem) {
    CDaoDatabase database;
    open(database);
    norvane::RowsToErase rows{server().connect(), "survey.trees", "PT_ID", {}};
    for (const char* key : {"1", "2", "3"})
        rows.rows.push_back(readRecord(database, "survey.trees", std::string("PT_ID = '") + key + "'"));
    server().answer("UPDATE survey.trees SET note = 'theirs' WHERE pt_id = '2'");
    ui_.answerQuestion("Erase records", "Yes");
    EXPECT_EQ(norvane::EraseRows(database, rows).message,
              "2 records erased. 1 record stays: somebody has changed or erased it meanwhile.");
    EXPECT_EQ(server().answer("SELECT pt_id, note FROM survey.trees"), "2|theirs\n");
    database.Close();
    // By their names.
    const auto goOn = [] { return true; };
    const norvane::ErasedRecords erased =
        norvane::EraseRecords({{server().connect(), "survey.trees", "PT_ID", "2", "TREE"},
                               {server().connect(), "survey.trees", "PT_ID", "3", "TREE"},
                               {server().connect(), "survey.keyed", "PT_ID", "1", "BUSH"}},
                              goOn);
    EXPECT_EQ(erased.erased, 1U);
    EXPECT_EQ(erased.missing, (std::vector<std::string>{"1", "3"}));
    EXPECT_EQ(server().answer("SELECT count(*) FROM survey.trees"), "0\n");
}

TEST_F(TwoUsersOfServer, WhatWasTypedOutlivesTheServer) {
    CDaoDatabase database;
    open(database);
    RecordEdits edits(database, "survey.keyed", "");
    edits.begin(first(database, "survey.keyed"));
    EXPECT_EQ(type(edits, "NOTE", "mine"), "");
    server().stop(SIGQUIT);
    const EditOutcome failed = edits.write();
    EXPECT_EQ(failed.state, State::kFailed);
    EXPECT_NE(failed.message, "");
    EXPECT_TRUE(edits.isChanged());
}

}  // namespace
