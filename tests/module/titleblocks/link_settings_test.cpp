// The settings of links: the dialog, its rules and the file.
#include <signal.h>
#include <sys/resource.h>

#include "tests/module/titleblocks/titles_fixture.h"

using namespace std::string_literals;

namespace {

class LinkSettingsTest : public Titles {
  protected:
    void SetUp() override {
        Titles::SetUp();
        // A block with four attributes, one of them twice, another block, and one without any.
        lisp(
            "(defun block (name flags tags)"
            " (entmake (list '(0 . \"BLOCK\") (cons 2 name) (cons 70 flags) '(10 0.0 0.0 0.0)))"
            " (foreach tag tags (entmake (list '(0 . \"ATTDEF\") '(10 0.0 0.0 0.0) '(40 . 1.0) '(1 . \"\") "
            "'(3 . \"\") (cons 2 tag) '(70 . 0))))"
            " (entmake '((0 . \"ENDBLK\"))))"
            "(block \"Title\" 2 '(\"A\" \"b\" \"C\" \"D\" \"a\"))"
            "(block \"OTHER\" 2 '(\"A\"))"
            "(block \"PLAIN\" 0 '())");
        write("jobs.csv", "Id,Name,Size,Note\n1,One,10,x\n2,Two,20,y\n");
        write("more.csv", "KEY;VALUE\n1;a\n");
    }

    std::vector<ui::Step> steps(std::initializer_list<std::vector<ui::Step>> parts) const {
        std::vector<ui::Step> all;
        for (const std::vector<ui::Step>& part : parts) all.insert(all.end(), part.begin(), part.end());
        return all;
    }
    // Attaches jobs.csv and chooses its table.
    std::vector<ui::Step> attached() {
        ui_.answerFile(path("jobs.csv"));
        return {click("Attach Database"), pick("1005", "JOBS")};
    }
    // A link of an attribute, with the key and the field that it has.
    static std::vector<ui::Step> linked(const std::string& block, const std::string& attribute,
                                        const std::string& key, const std::string& field) {
        return {pick("1011", block),    pick("1013", attribute), pick("1007", key),
                click("Set Key Field"), pick("1007", field),     click("Add Link")};
    }
    void confirm() { ui_.answerBox("Yes"); }
    std::string job(const std::string& attribute, const std::string& key, const std::string& field) const {
        return link("TITLE", attribute, key, "JOBS", field, "jobs.csv");
    }
};

}  // namespace

TEST_F(LinkSettingsTest, LinksAreMadeAndSaved) {
    confirm();
    edit(steps({attached(),
                {show()},
                linked("TITLE", "A", "ID", "NAME"),
                {pick("1013", "B"), pick("1007", "SIZE"), click("Add Link"), show(), click("Save"), show(),
                 click("Exit")}}));
    EXPECT_EQ(settings(), job("A", "ID", "NAME") + job("B", "ID", "SIZE"));
    EXPECT_TRUE(shown("[Please confirm] \"Update links settings for block: TITLE\""));
    EXPECT_EQ(shownIn(140, 1013).size(), 5u) << "a tag that a block has twice is offered once";
    EXPECT_EQ(shownIn(140, 1011).size(), 3u) << "blocks without attributes are not offered";
    EXPECT_TRUE(shown("Block Name      ")) << "headings have their margin";
    EXPECT_TRUE(shown("Saved Block Links Settings in Current Drawing:"));
    EXPECT_TRUE(shown("2 links of TITLE saved."));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 3 17)"), "0");
    EXPECT_EQ(lisp("ret_string"), "\"" + path("jobs.csv") + "\"");
}

TEST_F(LinkSettingsTest, AnIncompleteLinkIsNone) {
    for (const char* box : {"OK", "OK", "OK"}) ui_.answerBox(box);
    edit(steps({attached(),
                {pick("1007", "NAME"), click("Add Link"), pick("1011", "TITLE"), pick("1013", "A"),
                 click("Add Link"), click("Remove Link"), click("Set Key Field"), click("Add Link"),
                 click("Exit")}}));
    EXPECT_TRUE(shown("[Error] \"Invalid link!\""));
    EXPECT_TRUE(shown("[Error] \"Please select an item from settings list!\""));
}

// A, B and C of one key come out as A, C, B; a link whose field is the key of the new one draws that behind
// it.
TEST_F(LinkSettingsTest, LinksHaveTheirOrder) {
    confirm();
    edit(steps({attached(),
                linked("TITLE", "A", "ID", "NAME"),
                linked("TITLE", "B", "ID", "SIZE"),
                linked("TITLE", "C", "ID", "NOTE"),
                linked("TITLE", "D", "NAME", "NOTE"),
                {click("Save"), click("Exit")}}));
    EXPECT_EQ(settings(), job("A", "ID", "NAME") + job("D", "NAME", "NOTE") + job("C", "ID", "NOTE") +
                              job("B", "ID", "SIZE"));
    // By hand: the last up twice, then the first down. At the ends nothing moves.
    answer(1401, {pick("1001", "TITLE"), click("OK")});
    confirm();
    edit({click("Load"), pick("1015", "3"), click("Up"), click("Up"), pick("1015", "0"), click("Up"),
          click("Down"), pick("1015", "3"), click("Down"), click("Save"), click("Exit")});
    EXPECT_EQ(settings(), job("B", "ID", "SIZE") + job("A", "ID", "NAME") + job("D", "NAME", "NOTE") +
                              job("C", "ID", "NOTE"));
}

TEST_F(LinkSettingsTest, AnAttributeThatIsThereIsReplacedWhateverItsBlock) {
    confirm();
    edit(steps({attached(),
                linked("TITLE", "A", "ID", "NAME"),
                linked("TITLE", "B", "ID", "SIZE"),
                linked("OTHER", "A", "ID", "NOTE"),
                {pick("1011", "TITLE"), click("Save"), click("Exit")}}));
    EXPECT_EQ(settings(), job("B", "ID", "SIZE"));
}

TEST_F(LinkSettingsTest, RowsOfOtherBlocksAreNotSaved) {
    writeSettings(job("A", "ID", "NAME"));
    confirm();
    edit(steps({attached(),
                linked("OTHER", "A", "ID", "NOTE"),
                {pick("1011", "TITLE"), click("Save"), click("Exit")}}));
    EXPECT_EQ(settings(), "");
    EXPECT_TRUE(shown("[Please confirm] \"Update links settings for block: TITLE\""));
}

// A row that is taken for editing changes in place, also when its attribute gets another name.
TEST_F(LinkSettingsTest, ARowIsChangedInPlace) {
    writeSettings(job("A", "ID", "NAME") + job("B", "ID", "SIZE") + job("C", "ID", "NOTE"));
    const std::vector<ui::Step> load = {click("Load")};
    auto loaded = [&](std::vector<ui::Step> rest) {
        answer(1401, {doubleClick("1001", "TITLE")});
        confirm();
        edit(steps({load, std::move(rest), {click("Save"), click("Exit")}}));
    };
    loaded({doubleClick("1015", "1"), pick("1013", "D"), pick("1007", "NOTE")});
    EXPECT_EQ(settings(), job("A", "ID", "NAME") + job("D", "ID", "NOTE") + job("C", "ID", "NOTE"));
    // Another row has the attribute already: that one is replaced, and the edited one goes.
    loaded({doubleClick("1015", "2"), pick("1013", "A"), click("Add Link")});
    EXPECT_EQ(settings(), job("A", "ID", "NOTE") + job("D", "ID", "NOTE"));
    // A row that has moved meanwhile is still the one; one that was removed is none.
    loaded({doubleClick("1015", "0"), pick("1015", "0"), click("Down"), pick("1007", "SIZE")});
    EXPECT_EQ(settings(), job("D", "ID", "NOTE") + job("A", "ID", "SIZE"));
    loaded({doubleClick("1015", "0"), pick("1007", "SIZE"), pick("1015", "0"), click("Remove Link")});
    EXPECT_EQ(settings(), job("A", "ID", "SIZE"));
}

TEST_F(LinkSettingsTest, OtherLinesStayAsTheyAre) {
    writeSettings(
        "OTHER|A|K|T|F|x.mdb\r\nQUERY_ZGEO:one|two\n\ntitle|Z|K|T|F|y.mdb|with a bar\nTITLE\n TITLE|few\n"
        "no bars\nQUERY_ZGEO:\nquery_zgeo:TITLE|\n\xC9T\xC9|A|K|T|F|z.mdb\r");
    const std::string others =
        "OTHER|A|K|T|F|x.mdb\n TITLE|few\nno bars\nquery_zgeo:TITLE|\n\xC9T\xC9|A|K|T|F|z.mdb\n";
    const std::string queries = "QUERY_ZGEO:one|two\nQUERY_ZGEO:\n";
    confirm();
    edit(steps({attached(), linked("TITLE", "A", "ID", "NAME"), {click("Save"), click("Exit")}}));
    EXPECT_EQ(settings(), others + job("A", "ID", "NAME") + queries);
    // Without rows the links of the block are erased, and only those.
    confirm();
    edit({pick("1011", "TITLE"), click("Save"), show(), click("Exit")});
    EXPECT_EQ(settings(), others + queries);
    EXPECT_TRUE(shown("[Please confirm] \"Erase links settings for block: TITLE\""));
    // Who says no changes nothing, and without a block nothing is asked.
    ui_.answerBox("No");
    edit({click("Save"), pick("1011", "OTHER"), click("Save"), click("Exit")});
    EXPECT_EQ(settings(), others + queries);
}

TEST_F(LinkSettingsTest, WhatIsChosenEmptiesWhatHangsOnIt) {
    ui_.answerFile(path("jobs.csv"));
    ui_.answerFile(path("more.csv"));
    auto all = [&] {
        std::string texts;
        for (int id : {1002, 1006, 1008, 1010, 1012, 1014}) texts += shownIn(140, id).at(0).substr(7) + "|";
        return texts;
    };
    edit({click("Attach Database"), click("Attach Database"), pick("1001", path("jobs.csv")),
          pick("1005", "JOBS"), pick("1007", "NAME"), click("Set Key Field"), pick("1011", "TITLE"),
          pick("1013", "A"), pick("1001", path("more.csv")), pick("1011", "OTHER"), show(), click("Exit")});
    EXPECT_EQ(shownIn(140, 1001).size(), 3u);
    EXPECT_NE(all().find("more.csv"), std::string::npos) << all();
    for (int id : {1006, 1008, 1010, 1014})
        EXPECT_NE(shownIn(140, id).at(0).find("\"\""), std::string::npos) << shownIn(140, id).at(0);
}

TEST_F(LinkSettingsTest, AFileOfNoKnownKindIsToldSo) {
    ui_.answerFile(path("jobs.txt"));
    edit({click("Attach Database"), show(), click("Exit")});
    EXPECT_TRUE(shown("is not there, or of no kind that can be read."));
}

TEST_F(LinkSettingsTest, ADetachedDatabaseTakesItsLinksAlong) {
    ui_.answerFile(path("more.csv"));
    std::vector<ui::Step> detach = {click("Attach Database"),
                                    pick("1005", "MORE"),
                                    pick("1007", "KEY"),
                                    click("Set Key Field"),
                                    pick("1007", "VALUE"),
                                    pick("1011", "TITLE"),
                                    pick("1013", "B"),
                                    click("Add Link"),
                                    click("Dettach Database"),
                                    show(),
                                    click("Save"),
                                    click("Exit")};
    ui_.answerFile(path("jobs.csv"));
    confirm();
    edit(steps({std::vector<ui::Step>(detach.begin(), detach.begin() + 8),
                {click("Attach Database"), pick("1005", "JOBS")},
                linked("TITLE", "A", "ID", "NAME"),
                {pick("1001", path("more.csv"))},
                std::vector<ui::Step>(detach.begin() + 8, detach.end())}));
    EXPECT_EQ(settings(), job("A", "ID", "NAME"));
    for (int id : {1002, 1006, 1008, 1010})
        EXPECT_NE(shownIn(140, id).at(0).find("\"\""), std::string::npos) << shownIn(140, id).at(0);
    EXPECT_TRUE(shown("Do you want to go on?"));
}

TEST_F(LinkSettingsTest, LoadedLinksAreEmptiedWhereTheirTablesHaveChanged) {
    writeSettings(job("A", "ID", "NAME") + job("B", "GONE", "SIZE") + job("C", "id", "GONE") +
                  link("TITLE", "D", "ID", "NOTABLE", "NAME", "jobs.csv") + "title|a|ID|JOBS\n");
    answer(1401, {show(), pick("1001", "TITLE"), click("OK")});
    confirm();
    edit({click("Load"), show(), click("Save"), click("Exit")});
    const std::string file = path("jobs.csv");
    EXPECT_EQ(settings(), job("A", "ID", "NAME") + "TITLE|B||JOBS|SIZE|" + file + "\nTITLE|C|ID|JOBS||" +
                              file + "\nTITLE|D||||\n");
    EXPECT_EQ(shownIn(140, 1001).size(), 2u) << "the databases that were found are there";
    EXPECT_TRUE(shown("Current Block:"));
}

TEST_F(LinkSettingsTest, ADatabaseThatIsThereJoinsTheListWithoutItsTable) {
    writeSettings(job("A", "ID", "NAME") + link("TITLE", "B", "KEY", "GONE", "VALUE", "more.csv") +
                  link("TITLE", "C", "KEY", "GONE", "VALUE", "none.csv"));
    answer(1401, {pick("1001", "TITLE"), click("OK")});
    edit({click("Load"), show(), click("Exit")});
    const std::vector<std::string> databases = shownIn(140, 1001);
    ASSERT_EQ(databases.size(), 3u);
    EXPECT_NE(databases[1].find("jobs.csv"), std::string::npos);
    EXPECT_NE(databases[2].find("more.csv"), std::string::npos);
}

TEST_F(LinkSettingsTest, OnlyBlocksWhoseAttributesAreAllThereCanBeLoaded) {
    writeSettings(job("A", "ID", "NAME") + job("Z", "ID", "NAME") +
                  link("other", "a", "ID", "JOBS", "NAME", "jobs.csv") +
                  link("GONE", "A", "ID", "JOBS", "NAME", "jobs.csv"));
    answer(1401, {show(), click("Cancel")});
    edit({click("Load"), click("Exit")});
    EXPECT_EQ(shownIn(1401, 1001).size(), 2u);
    EXPECT_NE(shownIn(1401, 1001).at(1).find("OTHER"), std::string::npos);
}

TEST_F(LinkSettingsTest, AMissingDatabaseIsLookedForOnce) {
    writeSettings(link("TITLE", "A", "ID", "JOBS", "NAME", "old/jobs.csv") +
                  link("TITLE", "B", "ID", "JOBS", "SIZE", "old/jobs.csv"));
    // Nobody answers: the links are emptied.
    answer(1401, {pick("1001", "TITLE"), click("OK")});
    confirm();
    edit({click("Load"), click("Save"), click("Exit")});
    EXPECT_EQ(settings(), "TITLE|A||||\nTITLE|B||||\n");

    writeSettings(link("TITLE", "A", "ID", "JOBS", "NAME", "old/jobs.csv") +
                  link("TITLE", "B", "ID", "JOBS", "SIZE", "old/jobs.csv"));
    answer(1401, {pick("1001", "TITLE"), click("OK")});
    ui_.answerQuestion("Missing Database", "Yes");
    ui_.answerFile(path("jobs.csv"));
    confirm();
    edit({click("Load"), click("Save"), click("Exit")});
    EXPECT_EQ(settings(), job("A", "ID", "NAME") + job("B", "ID", "SIZE"));
}

TEST_F(LinkSettingsTest, AFormatIsKeptWithItsLink) {
    confirm();
    edit(steps({attached(),
                {pick("1011", "TITLE"), pick("1013", "A"), pick("1007", "ID"), click("Set Key Field"),
                 pick("1007", "SIZE"), pick("Format:", "2 decimals"), click("Add Link"), pick("1013", "B"),
                 pick("1007", "NAME"), click("Add Link"), click("Save"), click("Exit")}}));
    const std::string saved = job("A", "ID", "SIZE") + job("B", "ID", "NAME") + "FORMAT_ZGEO:N2;TITLE;A\n";
    EXPECT_EQ(settings(), saved);
    // Other blocks keep theirs, and so does a row that is taken for editing.
    writeSettings(saved + "FORMAT_ZGEO:D:YY/MM;OTHER;A\nFORMAT_ZGEO:D:D. M. YY;TITLE;B\n");
    answer(1401, {pick("1001", "TITLE"), click("OK")});
    confirm();
    edit({click("Load"), doubleClick("1015", "1"), click("Add Link"), click("Save"), click("Exit")});
    EXPECT_EQ(settings(), "FORMAT_ZGEO:D:YY/MM;OTHER;A\n" + job("A", "ID", "SIZE") + job("B", "ID", "NAME") +
                              "FORMAT_ZGEO:N2;TITLE;A\nFORMAT_ZGEO:D:D. M. YY;TITLE;B\n");
}

TEST_F(LinkSettingsTest, UnsavedLinksAreAskedForBeforeTheyGo) {
    ui_.answerQuestion("Links Not Saved", "No");
    edit(steps({attached(), linked("TITLE", "A", "ID", "NAME"), {click("Exit"), show(), click("Exit")}}));
    EXPECT_EQ(settings(), "") << "they reach the file by Save alone";
    EXPECT_EQ(shownIn(140, 1015).size(), 3u) << "No leaves the dialog as it is";
}

TEST_F(LinkSettingsTest, AFileThatCannotBeWrittenStaysAsItWas) {
    writeSettings("OTHER|A|K|T|F|x.mdb\n");
    fs::remove(path("zgeoblk.ini"));
    fs::create_directory(path("zgeoblk.ini"));
    confirm();
    edit(steps({attached(), linked("TITLE", "A", "ID", "NAME"), {click("Save"), show(), click("Exit")}}));
    EXPECT_TRUE(shown("cannot be written"));
    EXPECT_TRUE(fs::is_directory(path("zgeoblk.ini")));
    EXPECT_FALSE(shown("box [Error]"));
}

TEST_F(LinkSettingsTest, AFullDiskLeavesTheFileAsItWas) {
    writeSettings("OTHER|A|K|T|F|x.mdb\n");
    ui_.answerFile(path("jobs.csv"));
    confirm();
    // No file may grow any more.
    auto* const before = ::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    ::getrlimit(RLIMIT_FSIZE, &old);
    const rlimit none{0, old.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &none);
    edit(steps({{click("Attach Database"), pick("1005", "JOBS")},
                linked("TITLE", "A", "ID", "NAME"),
                {click("Save"), show(), click("Exit")}}));
    ::setrlimit(RLIMIT_FSIZE, &old);
    ::signal(SIGXFSZ, before);
    EXPECT_TRUE(shown("cannot be written"));
    EXPECT_EQ(settings(), "OTHER|A|K|T|F|x.mdb\n");
}

// An editor may put the mark of UTF-8 in front of the first line, whose link is one all the same.
TEST_F(LinkSettingsTest, AByteOrderMarkIsNoPartOfABlock) {
    writeSettings("\xEF\xBB\xBF" + job("A", "ID", "NAME") + "OTHER|A|K|T|F|x.mdb\n");
    answer(1401, {pick("1001", "TITLE"), click("OK")});
    confirm();
    edit({click("Load"), click("Save"), click("Exit")});
    EXPECT_EQ(settings(), "OTHER|A|K|T|F|x.mdb\n" + job("A", "ID", "NAME"));
}

TEST_F(LinkSettingsTest, AnyBytesStayInTheFile) {
    const std::string bytes = "\0\1|\xFF||\x80|\n\x1A no text \0|a|b|c|d|e\n"s;
    writeSettings(bytes);
    confirm();
    edit(steps({attached(), linked("TITLE", "A", "ID", "NAME"), {click("Save"), click("Exit")}}));
    EXPECT_EQ(settings(), bytes + job("A", "ID", "NAME"));
}

TEST_F(LinkSettingsTest, ThePathOfADatabaseMayHoldBars) {
    write("odd|name|.csv", "ID,NAME\n1,One\n");
    ui_.answerFile(path("odd|name|.csv"));
    edit(
        steps({{click("Attach Database"), pick("1005", "ODD|NAME|"), pick("1011", "TITLE"), pick("1013", "A"),
                pick("1007", "ID"), click("Set Key Field"), pick("1007", "NAME"), click("Add Link")},
               {click("Exit")}}));
    EXPECT_TRUE(shown("[Error] \"Invalid link!\"")) << "a table cannot have one";
    fs::copy_file(path("jobs.csv"), path("jobs|old.csv"));
    fs::create_directory(path("a|b"));
    fs::rename(path("jobs|old.csv"), path("a|b/jobs.csv"));
    ui_.answerFile(path("a|b/jobs.csv"));
    confirm();
    edit(steps({{click("Attach Database"), pick("1005", "JOBS")},
                linked("TITLE", "A", "ID", "NAME"),
                {click("Save"), click("Exit")}}));
    EXPECT_EQ(settings(), link("TITLE", "A", "ID", "JOBS", "NAME", "a|b/jobs.csv"));
    answer(1401, {pick("1001", "TITLE"), click("OK")});
    confirm();
    edit({click("Load"), click("Save"), click("Exit")});
    EXPECT_EQ(settings(), link("TITLE", "A", "ID", "JOBS", "NAME", "a|b/jobs.csv"));
}
