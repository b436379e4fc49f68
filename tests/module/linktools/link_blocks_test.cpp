// Links from blocks, from the Lisp function to records that other programs find.
#include <regex>
#include <set>

#include "tests/module/linktools/link_fixture.h"

namespace {

class LinkBlocksTest : public LinkTools {
  protected:
    void SetUp() override {
        LinkTools::SetUp();
        ui_.allowClash(
            "Selected First &Key Value from Attributes List; Selected Second &Key Value from Attributes or "
            "Tables List; ");
    }

    // A block SIGN with attributes ID, KIND and ID2, and references with their values.
    void makeSigns(const std::vector<std::pair<std::string, std::string>>& signs) {
        lisp(
            "(entmake '((0 . \"BLOCK\") (2 . \"SIGN\") (70 . 2) (10 0.0 0.0 0.0)))"
            "(foreach tag '(\"id\" \"Kind\") (entmake (list '(0 . \"ATTDEF\") '(10 0.0 0.0 0.0) '(40 . 1.0) "
            "'(1 . \"\") '(3 . \"\") (cons 2 tag) '(70 . 0))))"
            "(entmake '((0 . \"ENDBLK\")))"
            "(defun sign (id kind)"
            " (entmake '((0 . \"INSERT\") (2 . \"SIGN\") (66 . 1) (10 0.0 0.0 0.0)))"
            " (foreach pair (list (cons \"id\" id) (cons \"Kind\" kind))"
            "  (entmake (list '(0 . \"ATTRIB\") '(10 0.0 0.0 0.0) '(40 . 1.0) (cons 1 (cdr pair)) (cons 2 "
            "(car pair)) "
            "'(70 . 0))))"
            " (entmake '((0 . \"SEQEND\"))))");
        for (const auto& [id, kind] : signs) lisp("(sign \"" + id + "\" \"" + kind + "\")");
    }
    // The lists of attributes, tables and blocks, and which buttons can be pressed, each time that the dialog
    // was shown.
    std::vector<std::string> pictures() const {
        std::vector<std::string> all;
        for (const std::string& picture : ui_.log()) {
            if (!picture.starts_with("[139]")) continue;
            std::map<std::string, std::string> lists;
            std::string at, buttons;
            for (const std::string& line : ::text::split(picture, '\n')) {
                const std::string id = line.size() > 6 ? line.substr(2, line.find(' ', 2) - 2) : "";
                if (line.starts_with("      ") || line.starts_with("    >"))
                    lists[at] += line.substr(6) + " ";
                else
                    at = id;
                for (const auto& [button, letter] :
                     {std::pair("1004", "1"), std::pair("1005", "2"), std::pair("1", "O")})
                    if (id == button) buttons += line.ends_with("(disabled)") ? "-" : letter;
            }
            all.push_back(lists["1002"] + "| " + lists["1003"] + "| " + buttons);
        }
        return all;
    }
    std::vector<ui::Step> byAttribute() const {
        return {pick("1001", "SIGN"), pick("1002", "ID"), click("1004"), pick("1002", "KIND"),
                click("1005"),        focus("OK"),        click("OK")};
    }
};

}  // namespace

TEST_F(LinkBlocksTest, ThePolesOfTheSampleLeadToTheirRecords) {
    openSample();
    sql("create table POLES (PT_ID TEXT(255), GIS_KEY TEXT(255), HEIGHT DOUBLE)");
    for (int i = 1; i <= 40; ++i)
        if (i != 7) sql(text::format("insert into POLES values ('P%03d', 'POLE', %d)", i, 20 + i));
    answer(139, {pick("1001", "POLE_SYM"), pick("1002", "POLE_ID"), click("1004"), pick("1003", "POLES"),
                 click("1005"), focus("OK"), click("OK")});
    const std::string said = runOnAll(4);
    EXPECT_TRUE(said.starts_with("\nPlease wait...\rProcess entity : 1\rProcess entity : 2\r")) << said;
    EXPECT_TRUE(
        said.ends_with("\rProcess entity : 40\rLinks created     : 39\nDone.\n40 blocks: 39 linked, 0 "
                       "already linked, 1 passed "
                       "over: 1 without a record (P007)."))
        << said;
    EXPECT_EQ(followed(), "followed 39, without a record 0\n");

    // Again, with what is remembered: nothing changes. Then one undo takes all of it back.
    answer(139, {focus("OK"), click("OK")});
    EXPECT_TRUE(
        runOnAll(4).ends_with("0 linked, 39 already linked, 1 passed over: 1 without a record (P007)."));
    lisp("(command \"_.U\")");
    EXPECT_EQ(followed(), "followed 0, without a record 0\n");
    EXPECT_EQ(sql("select count(*) from POLES"), "39\n") << "no record is made or changed";
}

TEST_F(LinkBlocksTest, OfTwoAttributesOfATagTheLastThatSaysSomethingCounts) {
    sql("create table STOP (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into STOP values "
        "('1','S'),('2','S')");
    makeSigns({});
    lisp(
        "(foreach ids '((\"1\" \"2\") (\"1\" \"\"))"
        " (entmake '((0 . \"INSERT\") (2 . \"SIGN\") (66 . 1) (10 0.0 0.0 0.0)))"
        " (foreach pair (list (cons \"ID\" (car ids)) (cons \"id\" (cadr ids)) '(\"Kind\" . \"STOP\"))"
        "  (entmake (list '(0 . \"ATTRIB\") '(10 0.0 0.0 0.0) '(40 . 1.0) (cons 1 (cdr pair)) (cons 2 (car "
        "pair)) '(70 . 0))))"
        " (entmake '((0 . \"SEQEND\"))))"
        "(entmake '((0 . \"INSERT\") (2 . \"SIGN\") (66 . 0) (10 0.0 0.0 0.0)))");
    answer(139, byAttribute());
    const std::string said = runOnAll(4);
    EXPECT_TRUE(said.ends_with("2 blocks: 2 linked, 0 already linked, 0 passed over.")) << said;
    const auto key = [&](int number) {
        return lisp(
            "(cdr (nth 5 (cdadr (assoc -3 (entget (ssname (ssget \"X\" '((0 . \"INSERT\") (66 . 1))) " +
            std::to_string(number) + ") '(\"ZGEO_GIS_2000\"))))))");
    };
    EXPECT_EQ((std::set<std::string>{key(0), key(1)}), (std::set<std::string>{"\"1\"", "\"2\""}));
}

TEST_F(LinkBlocksTest, EachBlockGoesToTheTableThatItNames) {
    sql("create table Yield (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into Yield values "
        "('1','Y'),('2','Y');"
        "create table STOP (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into STOP values ('1','S'),('a','S');"
        "create table OLD (PT_ID LONG); insert into OLD values (7); create table BARE (NAME TEXT(20));"
        "insert into BARE values ('1')");
    makeSigns({{"1", "YIELD"},
               {"1", "stop"},
               {"2", "YIELD"},
               {"A", "STOP"},
               {"7", "OLD"},
               {"1", "BARE"},
               {"1", "NONE"},
               {"", "STOP"},
               {"2", ""},
               {"9", "YIELD"}});
    answer(139, byAttribute());
    const std::string said = runOnAll(4);
    EXPECT_TRUE(std::regex_search(
        said,
        std::regex("Links created     : 4\nDone.\n10 blocks: 4 linked, 0 already linked, 6 passed over: "
                   "3 without a record \\(A, 1, 9\\), 1 whose table is not there \\(NONE\\), "
                   "1 without a key \\([0-9A-F]+\\), 1 without the name of a table \\(2\\)\\.$")))
        << said;
    EXPECT_EQ(lisp("(cdr (nth 3 (cdadr (assoc -3 (entget (ssname (ssget \"X\" '((0 . \"INSERT\"))) 9) "
                   "'(\"ZGEO_GIS_2000\"))))))"),
              "nil");
    EXPECT_EQ(followed(), "followed 4, without a record 0\n") << "the names are those that the database has";
    EXPECT_EQ(ui_.undone(), std::vector<std::string>{});
    EXPECT_FALSE(shown("box")) << "no table that is not there raises a box";
}

TEST_F(LinkBlocksTest, ListsGiveBackWhatIsReplaced) {
    sql("create table T1 (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into T1 values ('1','S');"
        "create table T2 (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into T2 values ('1','S');"
        "create table EMPTY (PT_ID TEXT(255), GIS_KEY TEXT(255)); create table LONGKEY (PT_ID LONG, GIS_KEY "
        "TEXT(255)); insert into LONGKEY values (1,'x'); create table NOKEY (PT_ID TEXT(255)); insert into "
        "NOKEY "
        "values ('1')");
    makeSigns({{"1", "T1"}});
    lisp(
        "(entmake '((0 . \"BLOCK\") (2 . \"OTHER\") (70 . 2) (10 0.0 0.0 0.0)))"
        "(entmake '((0 . \"ATTDEF\") (10 0.0 0.0 0.0) (40 . 1.0) (1 . \"\") (3 . \"\") (2 . \"N\") (70 . 0)))"
        "(entmake '((0 . \"ENDBLK\")))"
        "(entmake '((0 . \"INSERT\") (2 . \"OTHER\") (66 . 1) (10 0.0 0.0 0.0)))"
        "(entmake '((0 . \"ATTRIB\") (10 0.0 0.0 0.0) (40 . 1.0) (1 . \"1\") (2 . \"N\") (70 . 0)))"
        "(entmake '((0 . \"SEQEND\")))");
    answer(139, {show(),                                                                          //
                 pick("1001", "SIGN"), pick("1002", "ID"), show(),                                //
                 pick("1003", "T1"), show(), click("1005"), show(),                               //
                 pick("1003", "T2"), click("1005"), pick("1002", "KIND"), click("1005"), show(),  //
                 pick("1002", "ID"), click("1004"), show(),                                       //
                 pick("1001", "OTHER"), show(),                                                   //
                 click("Cancel")});
    runOnAll(4);
    // Of each picture: the attributes, the tables, whether first, second and OK can be pressed.
    EXPECT_EQ(pictures(), (std::vector<std::string>{"| T1 T2 | ---", "ID KIND | T1 T2 | 12-",
                                                    "ID KIND | T1 T2 | -2-", "ID KIND | T2 | ---",
                                                    "ID | T1 T2 | ---", "| T1 T2 | --O", "N | T1 T2 | ---"}));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 3 15)"), "0");
    EXPECT_EQ(lisp("ret_string"), "nil") << "nothing is remembered of a dialog that was cancelled";
}

TEST_F(LinkBlocksTest, WhatWasChosenLastIsChosenAgainAsFarAsItIsThere) {
    sql("create table T1 (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into T1 values ('1','S')");
    makeSigns({{"1", "T1"}});
    auto opened = [&](const std::string& remembered) {
        lisp("(cf:gis_smart_prompting 2 15 \"" + remembered + "\")");
        ui_.clearLog();
        answer(139, {show(), click("Cancel")});
        runOnAll(4);
        return pictures().at(0);
    };
    EXPECT_EQ(opened("SIGN|ID|1KIND"), "| T1 | --O");
    EXPECT_EQ(opened("SIGN|ID|2T1"), "KIND | | --O");
    EXPECT_EQ(opened("SIGN|GONE|2T1"), "ID KIND | | ---");
    EXPECT_EQ(opened("SIGN|ID|1ID"), "KIND | T1 | ---") << "a key is not taken twice";
    EXPECT_EQ(opened("SIGN|ID|2GONE"), "KIND | T1 | ---");
    EXPECT_EQ(opened("GONE|ID|2T1"), "| T1 | ---");
    EXPECT_EQ(opened("nonsense"), "| T1 | ---");
    EXPECT_EQ(opened("SIGN|ID|"), "KIND | T1 | ---") << "what breaks off is chosen as far as it goes";
    EXPECT_EQ(opened("SIGN||2T1"), "ID KIND | | ---");
}

TEST_F(LinkBlocksTest, SelectionsAndDatabasesThatAreNoneAreTold) {
    lisp("(entmake '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 1.0 0.0)))");
    EXPECT_EQ(runOnAll(4), "\nCannot find any blocks with attributes in this selection set!");
    inputs_ = {""};
    lisp("(cf:gis_smart_prompting 4)");
    EXPECT_TRUE(printed().ends_with("\nInvalid selection! Please try again!"));

    makeSigns({{"1", "T1"}});
    write("output.mdb", "this is no database");
    answer(139, {pick("1001", "SIGN"), pick("1002", "ID"), click("1004"), pick("1002", "KIND"), click("1005"),
                 key("Enter"), click("Cancel")});
    EXPECT_EQ(runOnAll(4), "");
    EXPECT_TRUE(shown("box [Error]"));

    // Enter in a list is not OK. A database that goes away in the middle ends the run with its reason.
    answer(139, {pick("1001", "SIGN"), pick("1002", "ID"), click("1004"), pick("1002", "KIND"), click("1005"),
                 focus("1001"), key("Enter"), focus("OK"), key("Enter")});
    const std::string said = runOnAll(4);
    EXPECT_TRUE(
        said.ends_with("\rLinks created     : 0\nDone.\n1 block: 0 linked, 0 already linked, 0 passed "
                       "over.\nThe work ended before its end: 1 block was not looked at."))
        << said;
}

TEST_F(LinkBlocksTest, LinksOfAnyShapeKeepItAndOtherDataStays) {
    sql("create table T1 (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into T1 values ('1','S')");
    makeSigns({{"1", "T1"}, {"1", "t1"}, {"1", "T1"}});
    lisp(
        "(regapp \"ZGEO_GIS_2000\") (regapp \"OTHER\")"
        "(setq signs (ssget \"X\" '((0 . \"INSERT\"))))"
        "(defun extend (i data) (entmod (append (entget (ssname signs i)) (list (cons -3 data)))))"
        "(extend 0 '((\"OTHER\" (1000 . \"stays\")) (\"ZGEO_GIS_2000\" (1002 . \"{\") (1000 . \"a\") (1000 . "
        "\"b\") (1000 . \"c\") (1000 . \"d\") (1000 . \"e\") (1000 . \"sixth\") (1002 . \"}\"))))"
        "(extend 1 '((\"ZGEO_GIS_2000\" (1000 . \"a\") (1000 . \"b\") (1000 . \"c\"))))");
    answer(139, byAttribute());
    runOnAll(4);
    auto data = [&](int i) {
        return lisp("(cdr (assoc -3 (entget (ssname (ssget \"X\" '((0 . \"INSERT\"))) " + std::to_string(i) +
                    ") '(\"*\"))))");
    };
    std::vector<std::string> all = {data(0), data(1), data(2)};
    std::sort(all.begin(), all.end());
    const std::string paths =
        "(1000 . \"" + path("template.mdb") + "\") (1000 . \"" + path("output.mdb") + "\") ";
    EXPECT_EQ(all[0],
              "((\"OTHER\" (1000 . \"stays\")) (\"ZGEO_GIS_2000\" (1002 . \"{\") " + paths +
                  "(1000 . \"T1\") (1000 . \"PT_ID\") (1000 . \"1\") (1000 . \"sixth\") (1002 . \"}\")))");
    EXPECT_EQ(all[1], "((\"ZGEO_GIS_2000\" (1000 . \"" + path("template.mdb") + "\") (1000 . \"" +
                          path("output.mdb") + "\") (1000 . \"T1\")))");
    EXPECT_EQ(all[2], "((\"ZGEO_GIS_2000\" (1002 . \"{\") " + paths +
                          "(1000 . \"T1\") (1000 . \"PT_ID\") (1000 . \"1\") (1002 . \"}\")))");
}

TEST_F(LinkBlocksTest, ATemplateIsNotAskedFor) {
    sql("create table T1 (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into T1 values ('1','S')");
    makeSigns({{"1", "T1"}});
    write("gps.ini", "is_database=\ngisoutfile=" + path("output.mdb") + "\n");
    write("featlink.ini", "");
    answer(139, byAttribute());
    EXPECT_TRUE(runOnAll(4).ends_with("1 block: 1 linked, 0 already linked, 0 passed over."));
    // Without an output nothing can be pressed but Cancel.
    write("gps.ini", "is_database=\n");
    write("featlink.ini", "");
    answer(139, {pick("1001", "SIGN"), pick("1002", "ID"), click("1004"), pick("1002", "KIND"), click("1005"),
                 show(), click("Cancel")});
    runOnAll(4);
    EXPECT_EQ(pictures().back(), "| | ---");
}

TEST_F(LinkBlocksTest, CancelEndsARunBetweenTwoBlocks) {
    sql("create table T1 (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into T1 values ('1','S')");
    makeSigns({{"1", "T1"}, {"1", "T1"}, {"1", "T1"}});
    answer(139, byAttribute());
    answer(1000, {show(), click("Cancel")});
    const std::string said = runOnAll(4);
    EXPECT_TRUE(said.ends_with(
        "\rProcess entity : 2\rLinks created     : 1\nDone.\n3 blocks: 1 linked, 0 already linked, 0 "
        "passed over.\nThe work ended before its end: 2 blocks were not looked at."))
        << said;
}
