// Blocks from records, from the Lisp function to a drawing that another program reads.
#include <cmath>
#include <limits>

#include "tests/module/linktools/link_fixture.h"

namespace {

class InsertBlocksTest : public LinkTools {
  protected:
    // A block MARK based at 1,2: an attribute on its line, one in the middle of its place that is turned and
    // invisible, and a constant one.
    void makeMark() {
        lisp(
            "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") (100 . \"AcDbLayerTableRecord\") "
            "(2 . \"MARKS\") (70 . 0) (62 . 3)))"
            "(entmake '((0 . \"BLOCK\") (2 . \"MARK\") (70 . 2) (10 1.0 2.0 0.0)))"
            "(entmake '((0 . \"CIRCLE\") (10 1.0 2.0 0.0) (40 . 0.5)))"
            "(entmake '((0 . \"ATTDEF\") (8 . \"MARKS\") (10 3.0 2.0 0.0) (40 . 0.5) (1 . \"none\") (3 . "
            "\"\") "
            "(2 . \"Id\") (70 . 0) (41 . 0.8)))"
            "(entmake (list '(0 . \"ATTDEF\") '(10 4.0 4.0 0.0) '(11 4.0 5.0 0.0) '(40 . 0.25) '(1 . \"-\") "
            "'(3 "
            ". \"\") '(2 . \"NOTE\") '(70 . 1) '(72 . 1) '(74 . 2) (cons 50 (/ pi 6)) (cons 51 (/ pi 12))))"
            "(entmake '((0 . \"ATTDEF\") (10 0.0 0.0 0.0) (40 . 0.5) (1 . \"fixed\") (3 . \"\") (2 . "
            "\"KIND\") "
            "(70 . 2)))"
            "(entmake '((0 . \"ENDBLK\")))");
    }
    // A coordinate file of a form, 0 numbers or 1 names: name, northing and easting each.
    struct Point {
        std::string name;
        double northing, easting;
    };
    void makePoints(const std::string& file, int form, const std::vector<Point>& points) {
        lisp("(setq new_crdform " + std::to_string(form) + ")");
        for (const Point& point : points)
            ASSERT_NE(lisp("(gis:write-point " + quoted(file) + " \"" + point.name + "\" " +
                           ::text::format("%.9f %.9f", point.northing, point.easting) + " \"\" 7.0)"),
                      "nil");
    }
    void makeTrees() {
        sql("create table TREES (PT_ID TEXT(20), GIS_KEY TEXT(20), SPECIES TEXT(30), AGE LONG, REMARK "
            "TEXT(60));"
            "insert into TREES values ('1','TREES','OAK',40,'by the road');"
            "insert into TREES values ('2','TREES',NULL,NULL,'');"
            "insert into TREES values ('9','TREES','ELM',7,'gone');"
            "insert into TREES values (NULL,'TREES','ASH',7,'no id');"
            "create table BARE (PT_ID TEXT(20), NAME TEXT(20)); create table NUMBERS (PT_ID LONG, GIS_KEY "
            "LONG, "
            "NAME TEXT(20)); insert into NUMBERS values (2, 5, 'two')");
    }
    static ui::Step type(std::string control, std::string text) {
        return {ui::Step::Kind::Text, std::move(control), std::move(text)};
    }
    static ui::Step check(std::string control, bool on = true) {
        return {ui::Step::Kind::Check, std::move(control), "", on};
    }
    static std::vector<ui::Step> joined(std::vector<ui::Step> first, const std::vector<ui::Step>& then) {
        first.insert(first.end(), then.begin(), then.end());
        return first;
    }
    // The tool with one dialog, which ends by Draw behind the steps; what it printed.
    std::string draw(std::vector<ui::Step> steps) {
        answer(164, joined(std::move(steps), {focus("Draw"), click("Draw")}));
        return run();
    }
    std::string run() {
        printed();
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 17)"), "1");
        return printed();
    }
    std::vector<ui::Step> choose(const std::string& points, const std::string& table = "TREES") {
        if (!points.empty()) ui_.answerFile(path(points));
        std::vector<ui::Step> steps;
        if (!points.empty()) steps.push_back(click("Select CRD File"));
        return joined(std::move(steps), {pick("1001", "MARK"), pick("1002", table)});
    }
    // What is drawn, as another program reads it.
    std::string blocks(const std::string& block = "MARK") {
        lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("blocks.dxf") + " \"_Y\")");
        printed();
        return outputOf("/usr/bin/python3 '" NORVANE_SOURCE_DIR "/tests/module/linktools/read_blocks.py' '" +
                        path("blocks.dxf") + "' " + block + " 2>&1");
    }
    // A line of the picture that the log has of the dialog, the last but `before` of them: "text" of an id.
    std::string line(const std::string& id, size_t before = 0) const {
        for (size_t i = ui_.log().size(); i-- > 0;) {
            if (!ui_.log()[i].starts_with("[164]") || before-- > 0) continue;
            for (const std::string& one : ::text::split(ui_.log()[i], '\n'))
                if (one.size() > 2 && one.substr(2).starts_with(id + " ")) return one.substr(3 + id.size());
        }
        return "";
    }
    std::string picture() const {
        for (size_t i = ui_.log().size(); i-- > 0;)
            if (ui_.log()[i].starts_with("[164]")) return ui_.log()[i];
        return "";
    }
    std::string remembered(int index) {
        lisp("(setq ret_string nil)");
        lisp("(cf:gis_smart_prompting 3 " + std::to_string(index) + ")");
        return lisp("ret_string");
    }
};

}  // namespace

TEST_F(InsertBlocksTest, RecordsBecomeBlocksAtTheirPoints) {
    makeMark();
    makeTrees();
    makePoints("job.crd", 0, {{"1", 5000.125, 3000.25}, {"2", 5100, 3100}});
    lisp("(cf:gis_smart_prompting 2 28 \"GONE||REMARK\")");
    const std::string said =
        draw(joined(choose("job.crd"), {cell(1, "SPECIES"), cell(2, "REMARK"), pick("1003", "MARKS")}));
    EXPECT_EQ(
        said,
        "\rCreating block : 1\rCreating block : 2\n\n4 records: 2 blocks drawn, 2 passed over: 1 without a "
        "point (9), 1 without a PT_ID.");
    EXPECT_EQ(blocks(),
              "at 3000.25,5000.125,0 scale 1,1,1 turned 0 layer MARKS\n"
              "  Id=OAK at 3002.25,5000.125,0 height 0.5 turned 0 width 0.8 layer MARKS\n"
              "  NOTE=by the road at 3003.25,5002.125,0 height 0.25 turned 30 aligned 1/2 3003.25,5003.125,0 "
              "oblique 15 invisible\n"
              "at 3100,5100,0 scale 1,1,1 turned 0 layer MARKS\n"
              "  Id=none at 3102,5100,0 height 0.5 turned 0 width 0.8 layer MARKS\n"
              "  NOTE=- at 3103,5102,0 height 0.25 turned 30 aligned 1/2 3103,5103,0 oblique 15 invisible\n"
              "faults 0\n");
    EXPECT_TRUE(shown("box [Alert] \"You want to create GIS links for these new blocks?\""));
    EXPECT_EQ(remembered(28), "\"ID||SPECIES||NOTE||REMARK\"");
    EXPECT_EQ(remembered(21), "\"" + path("") + "\"");
    EXPECT_EQ(sql("select count(*) from TREES"), "4\n");

    // One undo takes all of it back.
    lisp("(command \"_.U\")");
    EXPECT_EQ(blocks(), "faults 0\n");
}

TEST_F(InsertBlocksTest, AttributesFollowTheirOwnFactorAndTheTurn) {
    makeMark();
    makeTrees();
    makePoints("job.crd", 0, {{"1", 5000, 3000}});
    draw(joined(choose("job.crd"), {type("1106", "3"), type("1107", " 2,0 "), type("1108", "90")}));
    // Twice 3,2 is 6,4, which is 5,2 from the base, and turned -2,5. The alignment point likewise: 7,8 and
    // -8,7.
    EXPECT_EQ(blocks(),
              "at 3000,5000,0 scale 3,3,1 turned 90 layer 0\n"
              "  Id=none at 2998,5005,0 height 1 turned 90 width 0.8 layer MARKS\n"
              "  NOTE=- at 2994,5007,0 height 0.5 turned 120 aligned 1/2 2992,5007,0 oblique 15 invisible\n"
              "faults 0\n");
}

TEST_F(InsertBlocksTest, NumbersThatAreNoneGetTheirDefaults) {
    makeMark();
    makeTrees();
    answer(164, {type("1106", "0"), type("1107", "big"), type("1108", ""), show(), focus("Draw"),
                 click("Draw"), show(), click("Exit")});
    EXPECT_EQ(run(), "") << "nothing is read without a block";
    EXPECT_EQ(line("1106"), "edit \"1.000\"");
    EXPECT_EQ(line("1107"), "edit \"1.000\"");
    EXPECT_EQ(line("1108"), "edit \"0.000\"");
    EXPECT_EQ(line("1902", 1), "label \"\"0\" is no factor; 1 is used in its place.\"");
    EXPECT_EQ(line("1902"), "label \"Please choose a block first.\"");
    answer(164, {pick("1001", "MARK"), type("1106", "1e9"), type("1108", "x"), show(), focus("Draw"),
                 click("Draw"), show(), click("Exit")});
    EXPECT_EQ(run(), "");
    EXPECT_EQ(line("1902", 1), "label \"\"x\" is no number; 0 is used in its place.\"");
    EXPECT_EQ(line("1106"), "edit \"1000000000.000\"");
    EXPECT_EQ(line("1902"), "label \"Please choose a table first.\"");
}

TEST_F(InsertBlocksTest, PointsAreFoundByNumberOrByName) {
    makeMark();
    makeTrees();
    sql("insert into TREES values ('a1','TREES','FIR',1,''), ('A-2','TREES','YEW',1,''), (' 1 "
        "','TREES','BOX',1,'')");
    makePoints("names.crd", 1, {{"A1", 1, 2}, {"A-2", 3, 4}, {"1", 5, 6}});
    EXPECT_TRUE(draw(joined(choose("names.crd"), {cell(1, "SPECIES")}))
                    .ends_with("\n7 records: 3 blocks drawn, 4 passed over: 3 without a point (2, 9, A-2), 1 "
                               "without a PT_ID."));
    const std::string drawn = blocks();
    for (const char* tree : {"at 2,1,0", "Id=FIR", "Id=BOX", "at 6,5,0"})
        EXPECT_NE(drawn.find(tree), std::string::npos) << tree;
    // Keys that are no text are looked up as one.
    lisp("(command \"_.ERASE\" \"_ALL\" \"\")");
    makePoints("numbers.crd", 0, {{"2", 7, 8}});
    EXPECT_TRUE(draw(joined(choose("numbers.crd", "NUMBERS"), {cell(1, "NAME")}))
                    .ends_with("\n1 record: 1 block drawn, 0 passed over."));
    EXPECT_NE(blocks().find("at 8,7,0 scale 1,1,1 turned 0 layer 0\n  Id=two"), std::string::npos);
}

TEST_F(InsertBlocksTest, WithoutAValidPointNothingIsDrawn) {
    makeMark();
    makeTrees();
    const std::string counted =
        "\n4 records: 0 blocks drawn, 4 passed over: 3 without a point (1, 2, 9), 1 without a PT_ID.";
    EXPECT_EQ(draw(joined(choose(""), {show()})),
              "\nCannot find any valid point in selected table!" + counted);
    EXPECT_EQ(line("1902"), "label \"Without a CRD file there is no point for any record.\"");
    makePoints("other.crd", 0, {{"5", 1, 1}});
    EXPECT_EQ(draw(choose("other.crd")), "\nCannot find any valid point in selected CRD file!" + counted);
    EXPECT_EQ(draw(choose("gone.crd")), "\nCannot find any valid point in selected CRD file!" + counted);
    EXPECT_FALSE(shown("box [Alert]"));
    // A file that goes by another name is none.
    answer(164, joined(choose("other.zgc"),
                       {pick("1002", "TREES"), click("Select CRD File"), show(), click("Exit")}));
    ui_.answerFile(path("survey.txt"));
    EXPECT_EQ(run(), "");
    EXPECT_EQ(line("1102"), "edit \"\" (read-only)");
    EXPECT_EQ(line("1902"), "label \"\"survey.txt\" is no coordinate file: its name does not end in .crd.\"");
    EXPECT_EQ(blocks(), "faults 0\n");
}

TEST_F(InsertBlocksTest, PointsOfNoPlaceAreLeftOut) {
    makeMark();
    makeTrees();
    makePoints("job.crd", 0, {{"1", 1e12, -1e12}, {"2", 1, 1}});
    std::string bytes = read("job.crd");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    bytes.replace(2 * 56, sizeof nan, std::string(reinterpret_cast<const char*>(&nan), sizeof nan));
    write("job.crd", bytes);
    EXPECT_TRUE(draw(choose("job.crd"))
                    .ends_with("1 block drawn, 3 passed over: 1 whose coordinates are no numbers "
                               "(2), 1 without a point (9), 1 without a PT_ID."));
    EXPECT_TRUE(blocks().starts_with("at -1000000000000,1000000000000,0 "));
}

TEST_F(InsertBlocksTest, PlacesMayStandInTheRecords) {
    makeMark();
    sql("create table WELLS (PT_ID TEXT(20), GIS_KEY TEXT(20), Northing DOUBLE, EASTING TEXT(20), ELEVATION "
        "DOUBLE);"
        "insert into WELLS values ('W1','WELLS',100.5,' 200.25 ',30.125);"
        "insert into WELLS values ('W2','WELLS',101.12345678949,'202',-99999999);"
        "insert into WELLS values ('W3','WELLS',NULL,'203',1);"
        "insert into WELLS values ('W4','WELLS',104,'far',1);"
        "insert into WELLS values ('W5','WELLS',105,'1e999',1);"
        "create table PLAIN (PT_ID TEXT(20), GIS_KEY TEXT(20), NORTHING DOUBLE); insert into PLAIN values "
        "('W1','x',1)");
    const std::string said = draw({pick("1001", "MARK"), pick("1002", "PLAIN"), show(), pick("1002", "WELLS"),
                                   check("1901"), show(), cell(1, "PT_ID")});
    EXPECT_TRUE(
        said.ends_with("\n5 records: 2 blocks drawn, 3 passed over: 3 without coordinates (W3, W4, W5)."))
        << said;
    EXPECT_TRUE(line("1901", 1).ends_with("(disabled)")) << line("1901", 1);
    EXPECT_TRUE(line("1005").ends_with("(disabled)")) << "the coordinate file does not count";
    const std::string drawn = blocks();
    EXPECT_TRUE(drawn.starts_with(
        "at 200.25,100.5,30.125 scale 1,1,1 turned 0 layer 0\n  Id=W1 at 202.25,100.5,30.125 "))
        << drawn;
    EXPECT_NE(drawn.find("at 202,101.123457,0 "), std::string::npos);
    EXPECT_EQ(lisp("(= (caddr (assoc 10 (entget (entlast)))) 101.123456789)"), "T") << "nine decimals";
    // What was checked counts for a table that has such fields, and for no other.
    makePoints("job.crd", 1, {{"W1", 1, 1}});
    EXPECT_TRUE(draw(joined(choose("job.crd", "WELLS"), {check("1901"), pick("1002", "PLAIN")}))
                    .ends_with("\n1 record: 1 block drawn, 0 passed over."));
}

TEST_F(InsertBlocksTest, TheDialogOffersWhatCanBeUsed) {
    openSample();
    makeTrees();
    sql("create table KEYLESS (GIS_KEY TEXT(20), NAME TEXT(20))");
    answer(164, {show(), pick("1001", "POLE_SYM"), pick("1002", "TREES"), show(), pick("1003", "LOTS"),
                 show(), pick("1003", "OLD-WORK"), show(), click("Exit")});
    run();
    const std::string shown = picture();
    EXPECT_NE(shown.find("SYMBOL"), std::string::npos) << "a constant attribute, which nothing fills";
    for (const char* block : {"SRVPNO1", "POLE_SYM", "TITLEBLK"})
        EXPECT_NE(shown.find(block), std::string::npos) << block;
    for (const char* none : {"NORTH_ARROW", "TREE_SYM", "*D1", "BARE", "KEYLESS"})
        EXPECT_EQ(shown.find(none), std::string::npos) << none;
    EXPECT_EQ(line("1105", 3), "edit \"0\"") << "the current layer";
    EXPECT_EQ(line("1105", 1), "edit \"LOTS\"");
    EXPECT_EQ(line("1902"), "label \"The layer \"OLD-WORK\" is hidden: its blocks will not be seen.\"");
    EXPECT_EQ(line("1103"), "edit \"POLE_SYM\" (read-only)");
    EXPECT_EQ(line("1101"), "edit \"" + path("output.mdb") + "\" (read-only)");
    EXPECT_NE(shown.find("POLE_ID"), std::string::npos);
    // An empty field first, then the texts in their order.
    answer(164, {pick("1001", "POLE_SYM"),
                 pick("1002", "TREES"),
                 cell(1, "PT_ID"),
                 cell(2, "REMARK"),
                 cell(1, ""),
                 {ui::Step::Kind::Cell, "", "AGE", true, 2, 3},
                 show(),
                 click("Exit")});
    run();
    ui_.expectUndone("dialog 164 refused (cell 2 3 \"AGE\"): \"AGE\" is not in the list of this cell");
}

TEST_F(InsertBlocksTest, FieldsAreRememberedByTheirAttributes) {
    makeMark();
    makeTrees();
    lisp("(cf:gis_smart_prompting 2 28 \"GONE||REMARK||ID||REMARK||NOTE||NAME\")");
    answer(164, {pick("1001", "MARK"), show(), pick("1002", "TREES"), show(), pick("1002", "NUMBERS"), show(),
                 cell(1, "NAME"), pick("1002", "TREES"), show(), click("Exit")});
    run();
    const auto fields = [&](size_t before) {
        std::string cells;
        size_t skip = before;
        for (size_t i = ui_.log().size(); i-- > 0;) {
            if (!ui_.log()[i].starts_with("[164]") || skip-- > 0) continue;
            for (const char* field : {"REMARK", "NAME"})
                if (ui_.log()[i].substr(ui_.log()[i].find(" 1010 ")).find(field) != std::string::npos)
                    cells += field;
            break;
        }
        return cells;
    };
    EXPECT_EQ(fields(3), "") << "no table, no fields";
    EXPECT_EQ(fields(2), "REMARK");
    EXPECT_EQ(fields(1), "NAME");
    EXPECT_EQ(remembered(28), "\"GONE||REMARK||ID||REMARK||NOTE||NAME\"") << "nothing is saved by Exit";
}

TEST_F(InsertBlocksTest, ValuesEndAtTheirMarkAndAreFoundByTheirTagAlone) {
    makeMark();
    sql("create table ODD (PT_ID TEXT(20), GIS_KEY TEXT(20), A TEXT(60), B TEXT(60))");
    ASSERT_EQ(lisp("(cf:gis_smart_prompting 19 " + quoted("output.mdb") +
                   " 0 \"ODD\" \"PT_ID\" \"1\" \"GIS_KEY\" \"ODD\" \"A\" \"x|NOTE|y\" \"B\" \"b``|ID|c\")"),
              "1.0");
    makePoints("job.crd", 0, {{"1", 1, 1}});
    draw(joined(choose("job.crd", "ODD"), {cell(1, "A"), cell(2, "B")}));
    const std::string drawn = blocks();
    EXPECT_NE(drawn.find("  Id=x|NOTE|y at"), std::string::npos) << drawn;
    EXPECT_NE(drawn.find("  NOTE=b at"), std::string::npos) << drawn;
}

TEST_F(InsertBlocksTest, ALayerThatIsNotThereIsToldAndNothingIsDrawn) {
    makeMark();
    makeTrees();
    makePoints("job.crd", 0, {{"1", 1, 1}});
    EXPECT_EQ(draw(joined(choose("job.crd"), {type("1105", "NOWHERE"), show()})),
              "\nCannot create entities in selected layer!");
    EXPECT_EQ(line("1902"), "label \"The drawing has no layer \"NOWHERE\".\"");
    EXPECT_EQ(blocks(), "faults 0\n");
    draw(joined(choose("job.crd"), {type("1105", " marks ")}));
    EXPECT_NE(blocks().find("layer marks\n"), std::string::npos);
}

TEST_F(InsertBlocksTest, TheOutputIsTheRememberedOneOrThatOfTheSettings) {
    makeMark();
    makeTrees();
    write("gps.ini", "is_database=\ngisoutfile=" + path("other.mdb") + "\n");
    answer(164, {show(), click("Exit")});
    run();
    EXPECT_EQ(line("1101"), "edit \"" + path("output.mdb") + "\" (read-only)");
    write("featlink.ini", "");
    write("gps.ini", "is_database=\ngisoutfile=" + path("output.mdb") + "\n");
    answer(164, {show(), click("Exit")});
    run();
    EXPECT_EQ(line("1101"), "edit \"" + path("output.mdb") + "\" (read-only)");
    EXPECT_EQ(read("featlink.ini").find("#2"), std::string::npos);
    // Links go to the output that was drawn from.
    makePoints("job.crd", 0, {{"1", 1, 1}});
    draw(choose("job.crd"));
    EXPECT_NE(read("featlink.ini").find("#2" + path("output.mdb")), std::string::npos);

    // One that is not there has no tables, and is remembered all the same.
    ui_.answerFile(path("gone.mdb"));
    answer(164, {pick("1002", "TREES"), click("Select MDB File"), show(), click("Exit")});
    run();
    EXPECT_EQ(line("1104"), "edit \"\" (read-only)");
    EXPECT_EQ(picture().find("TREES"), std::string::npos);
    EXPECT_NE(read("featlink.ini").find("#2" + path("gone.mdb")), std::string::npos);
    EXPECT_EQ(read("gps.ini"), "is_database=\ngisoutfile=" + path("output.mdb") + "\n");
    // Nor has one that is no database, which is told once.
    write("gone.mdb", "no database");
    ui_.clearLog();
    answer(164, {click("Exit")});
    run();
    EXPECT_TRUE(shown("box [Error]"));
}

TEST_F(InsertBlocksTest, OnlyTheButtonDraws) {
    makeMark();
    makeTrees();
    makePoints("job.crd", 0, {{"1", 1, 1}});
    answer(164,
           joined(choose("job.crd"), {key("Enter"), focus("1001"), key("Enter"), show(), key("Escape")}));
    EXPECT_EQ(run(), "");
    EXPECT_EQ(blocks(), "faults 0\n");
}

TEST_F(InsertBlocksTest, TheBlocksAreLinkedToTheirRecordsWhenOneWants) {
    openSample();
    sql("create table POLES (PT_ID TEXT(255), GIS_KEY TEXT(255), OWNER TEXT(40)); insert into POLES values "
        "('P101','POLE','CITY'), ('P102','POLE',''), ('P103','POLE','X')");
    makePoints("job.crd", 1, {{"P101", 480100, 1630100}, {"P102", 480200, 1630200}});
    ui_.answerFile(path("job.crd"));
    ui_.answerBox("Yes");
    ui_.allowClash(
        "Selected First &Key Value from Attributes List; Selected Second &Key Value from Attributes or "
        "Tables "
        "List; ");
    answer(139, {show(), pick("1001", "POLE_SYM"), pick("1002", "POLE_ID"), click("1004"),
                 pick("1003", "POLES"), click("1005"), focus("OK"), click("OK")});
    const std::string said = draw({click("Select CRD File"), pick("1001", "POLE_SYM"), pick("1002", "POLES"),
                                   cell(1, "PT_ID"), cell(2, "OWNER")});
    EXPECT_TRUE(said.ends_with("2 blocks: 2 linked, 0 already linked, 0 passed over.")) << said;
    EXPECT_NE(
        said.find("3 records: 2 blocks drawn, 1 passed over: 1 without a point (P103).\nPlease wait..."),
        std::string::npos)
        << said;
    EXPECT_EQ(followed(), "followed 2, without a record 0\n");
    const std::string drawn = blocks("POLE_SYM");
    EXPECT_NE(drawn.find("POLE_ID=P101"), std::string::npos);
    EXPECT_EQ(drawn.find("SYMBOL="), std::string::npos) << "constant attributes stay in the block";
    // Blocks and links go together.
    lisp("(command \"_.U\")");
    EXPECT_EQ(followed(), "followed 0, without a record 0\n");
    EXPECT_EQ(blocks("POLE_SYM").find("P101"), std::string::npos);
}

TEST_F(InsertBlocksTest, ADrawingOnDiskBecomesABlock) {
    makeMark();
    makeTrees();
    makePoints("job.crd", 0, {{"1", 10, 20}});
    lisp(
        "(entmake '((0 . \"ATTDEF\") (10 0.0 0.0 0.0) (40 . 1.0) (1 . \"\") (3 . \"\") (2 . \"Name\") (70 . "
        "0)))"
        "(command \"_.SAVEAS\" \"_R2000\" \"\" " +
        quoted("stone.dxf") + ") (command \"_.ERASE\" \"_ALL\" \"\")");
    lisp("(setvar \"ATTREQ\" 1)");
    ui_.answerFile(path("job.crd"));
    ui_.answerFile(path("stone.dxf"));
    answer(164, {click("Select CRD File"), pick("1002", "TREES"), type("1106", "2.5"),
                 click("Select Block File")});
    EXPECT_TRUE(draw({show(), cell(1, "SPECIES")})
                    .ends_with("1 block drawn, 3 passed over: 2 without a point (2, 9), 1 "
                               "without a PT_ID."));
    EXPECT_EQ(line("1103"), "edit \"stone\" (read-only)");
    EXPECT_EQ(line("1104"), "edit \"TREES\" (read-only)");
    EXPECT_EQ(line("1106"), "edit \"2.5\"");
    EXPECT_EQ(lisp("(getvar \"ATTREQ\")"), "1");
    EXPECT_EQ(lisp("(getvar \"CMDECHO\")"), "1");
    EXPECT_EQ(
        blocks("stone"),
        "at 20,10,0 scale 2.5,2.5,1 turned 0 layer 0\n  Name=OAK at 20,10,0 height 1 turned 0\nfaults 0\n");
    // The same name again is refused, in any case.
    ui_.answerFile(path("STONE.DXF"));
    ui_.clearLog();
    answer(164, {click("Select Block File"), click("Exit")});
    run();
    EXPECT_TRUE(shown("box [Error] \"This block already exist!\""));
    // One undo takes the block itself back, too.
    lisp("(command \"_.U\")");
    EXPECT_EQ(lisp("(tblsearch \"BLOCK\" \"stone\")"), "nil");
}

TEST_F(InsertBlocksTest, FilesThatAreNoDrawingAreToldInTheDialog) {
    makeMark();
    write("old.dwg", "AC1015 not to be read");
    write("broken.dxf", "no drawing");
    const std::string before = lisp("(entlast)"), active = lisp("(getvar \"CMDACTIVE\")");
    ui_.answerFile(path("old.dwg"));
    ui_.answerFile(path("broken.dxf"));
    answer(164, {click("Select Block File")});
    answer(164, {show(), click("Select Block File")});
    answer(164, {show(), pick("1001", "MARK"), show(), click("Exit")});
    run();
    EXPECT_EQ(line("1902", 2), "label \"\"old.dwg\" cannot be read as a drawing. Please save it as .dxf.\"");
    EXPECT_EQ(line("1902", 1), "label \"\"broken.dxf\" cannot be read as a drawing.\"");
    EXPECT_EQ(line("1902"), "label");
    EXPECT_EQ(lisp("(entlast)"), before);
    EXPECT_EQ(lisp("(getvar \"ATTREQ\")"), "1");
    EXPECT_EQ(lisp("(getvar \"CMDACTIVE\")"), active) << "no command waits for an answer";
}

TEST_F(InsertBlocksTest, ABlockWithoutAttributesMayBecomeTheFile) {
    makeTrees();
    lisp(
        "(entmake '((0 . \"BLOCK\") (2 . \"PLAIN\") (70 . 0) (10 0.0 0.0 0.0)))"
        "(entmake '((0 . \"CIRCLE\") (10 0.0 0.0 0.0) (40 . 0.5)))(entmake '((0 . \"ENDBLK\")))");
    makePoints("job.crd", 0, {{"1", 10, 20}});
    lisp(
        "(entmake '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)))(command \"_.SAVEAS\" \"_R2000\" "
        "\"\" " +
        quoted("plain.dxf") + ") (command \"_.ERASE\" \"_ALL\" \"\")");
    ui_.answerFile(path("plain.dxf"));
    ui_.answerQuestion("Select Block File", "No");
    answer(164, {click("Select Block File"), show(), click("Exit")});
    run();
    EXPECT_EQ(picture().find("PLAIN"), std::string::npos);
    EXPECT_EQ(lisp("(cdr (assoc 0 (entget (cdr (assoc -2 (tblsearch \"BLOCK\" \"PLAIN\"))))))"),
              "\"CIRCLE\"");
    // It joins the list though it has no attributes, and is drawn without any.
    ui_.answerFile(path("plain.dxf"));
    ui_.answerFile(path("job.crd"));
    answer(164, {click("Select Block File")});
    EXPECT_TRUE(draw({show(), click("Select CRD File"), pick("1002", "TREES")}).find("1 block drawn") !=
                std::string::npos);
    EXPECT_EQ(line("1103"), "edit \"plain\" (read-only)");
    EXPECT_EQ(blocks("PLAIN"), "at 20,10,0 scale 1,1,1 turned 0 layer 0\nfaults 0\n");
}

TEST_F(InsertBlocksTest, CancelEndsARunBetweenTwoBlocks) {
    makeMark();
    makeTrees();
    makePoints("job.crd", 0, {{"1", 1, 1}, {"2", 2, 2}, {"9", 3, 3}});
    answer(1000, {show(), click("Cancel")});
    const std::string said = draw(choose("job.crd"));
    EXPECT_EQ(
        said,
        "\rCreating block : 1\n\n4 records: 1 block drawn, 1 passed over: 1 without a PT_ID.\nThe work ended "
        "before its end: 2 blocks were not drawn.");
    EXPECT_FALSE(shown("box [Alert]")) << "who has ended it is not asked for links";

    // While records are read, Stop leads back to the dialog. The second answer lets the script see the
    // reading.
    answer(164, joined(choose("job.crd"),
                       {focus("Draw"), click("Draw"), show(), click("Stop"), show(), click("Exit")}));
    answer(164, {click("Exit")});
    EXPECT_EQ(run(), "");
    EXPECT_EQ(line("2", 1), "button \"Stop\"");
    EXPECT_TRUE(line("1004", 1).ends_with("(disabled)"));
    EXPECT_FALSE(line("1004").ends_with("(disabled)"));
    EXPECT_EQ(line("1902"), "label \"Stopped while records were read; nothing is drawn.\"");
    EXPECT_EQ(line("2"), "button \"Exit\"");
    run();
}

TEST_F(InsertBlocksTest, WhatADatabaseRefusesIsShownAndTheDialogStays) {
    makeMark();
    makePoints("job.crd", 0, {{"1", 1, 1}});
    // A name that no statement can have.
    sqlite("odd.sqlite",
           "create table 'A]B' (PT_ID TEXT, GIS_KEY TEXT); insert into 'A]B' values ('1', 'x')");
    lisp("(cf:gis_smart_prompting 2 2 " + quoted("odd.sqlite") + ")");
    answer(164, joined(choose("job.crd", "A]B"), {focus("Draw"), click("Draw"), show(), click("Exit")}));
    EXPECT_EQ(run(), "");
    EXPECT_TRUE(shown("box [Error]"));
    EXPECT_EQ(line("1104"), "edit \"A]B\" (read-only)");
    EXPECT_EQ(blocks(), "faults 0\n");
}

TEST_F(InsertBlocksTest, WithoutAnEngineThereAreNoTables) {
    makeMark();
    makeTrees();
    write("registry.ini", "[-HKEY_CLASSES_ROOT\\DAO.DBEngine.36]\n");
    answer(164, {show(), click("Exit")});
    EXPECT_EQ(run(), "\nPlease install DAO 3.6...");
    EXPECT_EQ(picture().find("TREES"), std::string::npos);
    EXPECT_NE(picture().find("MARK"), std::string::npos);
}
