// Imports of the shared files, checked by a program that reads both sides on its own.
#include "tests/module/transfer/utilities_fixture.h"

#include "tests/platform/dao/jet/readers.h"

namespace {

class UtilitiesData : public UtilitiesTest {
  protected:
    // What a Python reading of an input finds wrong with the tables that mdbtools reads; "" when nothing.
    std::string faults(const std::string& file, const std::string& database,
                       const std::string& table = "") const {
        return outputOf("/usr/bin/python3 " NORVANE_SOURCE_DIR "/tests/module/transfer/check_imports.py '" +
                        path(file) + "' '" + path(database) + "' " + table);
    }
};

}  // namespace

TEST_F(UtilitiesData, NoteFilesComeInTwiceWithoutDoubledRows) {
    for (const auto& [name, version] :
         {std::pair{"old.mdb", dbVersion30}, std::pair{"new.mdb", dbVersion40}}) {
        makeOutput(name, version);
        use(name);
        for (const char* file : {"survey.not", "collector.vtt", "notes_odd.not"}) {
            fs::remove(path(file));
            if (!takeShared(file)) GTEST_SKIP() << "the shared files are not here";
            importNotes(file);
            EXPECT_EQ(faults(file, name), "") << file;
            const std::string again = importNotes(file);
            EXPECT_FALSE(has(again, "rows added, 0 changed")) << again;
            EXPECT_EQ(faults(file, name), "") << file;
            EXPECT_EQ(jet::disagreement(path(name)), "");
            fs::remove(path(name));
            makeOutput(name, version);
        }
    }
}

TEST_F(UtilitiesData, TextsComeInTwiceWithoutDoubledRows) {
    if (!takeShared("points.txt") || !takeShared("points_tab.txt") || !takeShared("points_embedded.txt"))
        GTEST_SKIP() << "the shared files are not here";
    auto with = [](ui::Step first, const char* table) {
        std::vector<ui::Step> steps = keyed(table);
        steps.insert(steps.begin(), std::move(first));
        return steps;
    };
    std::string again;
    for (int round = 0; round < 2; ++round) {
        again = importText("points.txt", keyed("COMMA"));
        again += importText("points_tab.txt", with(pick("Delimiter:", "Tab"), "TABBED"));
        again += importText("points_embedded.txt", with(check("Embedded Field Name (delimiter):"), "NAMED"));
        EXPECT_EQ(faults("points.txt", "output.mdb", "COMMA"), "");
        EXPECT_EQ(faults("points_tab.txt", "output.mdb", "TABBED '\\t'"), "");
    }
    // Only lines without a key come again, with other numbers.
    for (const char* line : {"COMMA: 2 rows added, 294 changed", "TABBED: 1 row added, 297 changed",
                             "NAMED: 1 row added, 297 changed"})
        EXPECT_TRUE(has(again, line)) << line << again;
    EXPECT_EQ(output("select NORTH, DESC2, [LAST SEEN] from NAMED where PT_ID = '5'"),
              "480372.1602|POLE|12:04\n");
}

TEST_F(UtilitiesData, SettingsAndMarksOfTheSharedTextsAreTaken) {
    if (!takeShared("points.txt") || !takeShared("fields.fds") || !takeShared("points_semicolon.txt"))
        GTEST_SKIP() << "the shared files are not here";
    ui_.answerFile(path("points.txt"));
    ui_.answerFile(path("fields.fds"));
    answer(1612, {pick("1004", "1"), click("1015"), click("Load Fields Settings..."), text("1046", "SHOTS"),
                  click("1")});
    run({click("Import ASCII File")});
    EXPECT_EQ(output("select NORTHING, DESCRIPTION, SIZE, CONDITION from SHOTS where PT_ID = '4'"),
              "480354.5255|POLE|12|\n");
    // The mark of UTF-8 is none of the first piece; umlauts come as they are.
    importText("points_semicolon.txt",
               {pick("Delimiter:", "Semicolon"), check("First line has the names"), pick("1004", "2"),
                click("1015"), pick("1022", "0"), click("1028"), text("1046", "PUNKTE"), click("1")});
    EXPECT_EQ(output("select PT_ID, NORD, EIGENT_MER from PUNKTE where PT_ID = '3'"),
              "3|480423,163|Núñez, M.\n");
}

// Sixty points: one has a name over two lines, one a quote that is never closed, one five fields and one
// eight.
TEST_F(UtilitiesData, QuotedTextsKeepTheirCommas) {
    if (!takeShared("points_quoted.txt")) GTEST_SKIP() << "the shared files are not here";
    const std::string shown =
        importText("points_quoted.txt",
                   {check("Fields in quotes"), check("First line has the names"), pick("1004", "2"),
                    click("1015"), pick("1022", "0"), click("1028"), text("1046", "QUOTED"), click("1")});
    EXPECT_TRUE(has(shown, "QUOTED: 56 rows added, 0 changed")) << shown;
    EXPECT_TRUE(has(shown, "6 lines passed over:")) << shown;
    EXPECT_EQ(output("select OWNER, [CODE_ LONG] from QUOTED where PT_ID = '1'"), "SMITH, JOHN|IP FND\n");
}
