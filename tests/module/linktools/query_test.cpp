// The query by script: prompts, modes, the sheets of entities with a link and without.
#include "tests/module/linktools/link_fixture.h"

namespace {

class QueryTest : public LinkTools {
  protected:
    void SetUp() override {
        LinkTools::SetUp();
        lisp(
            "(entmake '((0 . \"BLOCK\") (2 . \"SRVPNO1\") (70 . 2) (10 0.0 0.0 0.0)))"
            "(entmake '((0 . \"ATTDEF\") (10 0.0 0.0 0.0) (40 . 1.0) (1 . \"\") (3 . \"\") (2 . \"PT#\") (70 "
            ". 0)))"
            "(entmake '((0 . \"ENDBLK\")))"
            "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") (100 . \"AcDbLayerTableRecord\") "
            "(2 . "
            "\"FROZEN\") (70 . 5) (62 . 7) (6 . \"CONTINUOUS\")))"
            "(defun point (at number layer)"
            " (entmake (list '(0 . \"INSERT\") '(2 . \"SRVPNO1\") '(66 . 1) (cons 10 at) (cons 8 layer)))"
            " (entmake (list '(0 . \"ATTRIB\") (cons 10 at) '(40 . 1.5) (cons 1 number) '(2 . \"PT#\") '(70 "
            ". 0)))"
            " (entmake '((0 . \"SEQEND\"))))"
            "(point '(10.0 20.0 5.0) \"a1\" \"0\") (point '(30.0 40.0 6.0) \"A1\" \"0\") (point '(50.0 60.0 "
            "7.0) \"7\" "
            "\"FROZEN\")");
    }
    std::string query(std::vector<std::string> inputs) {
        printed();
        ui_.clearLog();
        inputs_ = std::move(inputs);
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 18)"), "0");
        return printed();
    }
    // The link of the entity that an expression gives.
    std::string linkOf(const std::string& entity) {
        return lisp("(setq data (cdadr (assoc -3 (entget " + entity +
                    " '(\"ZGEO_GIS_2000\"))))) (mapcar 'cdr (vl-remove '(1002 . "
                    "\"}\") (cdr data)))");
    }
};

constexpr const char* kSelect = "\nSelect object (Number/Pick/<Select>): ";
constexpr const char* kPick = "\nPick a point inside polygon (Select/Number/<Pick>): ";
constexpr const char* kNumber = "\nType point number (Pick/Select/<Number>): ";

}  // namespace

TEST_F(QueryTest, WordsSwitchItsModesAndEnterEndsIt) {
    EXPECT_EQ(
        query({"p", "s", "nonsense", "n", "N", "Pick", "Number", "Sel", ""}),
        std::string(kSelect) + kPick + kSelect + kSelect + kNumber + kNumber + kPick + kNumber + kSelect);
    EXPECT_EQ(query({"1000,1000"}), kSelect) << "a pick beside everything ends it";
    lisp("(setq query-goes-on$ \"1\")");
    EXPECT_EQ(query({"1000,1000", "N", ""}), std::string(kSelect) + kSelect + kNumber);
}

TEST_F(QueryTest, ANumberShowsTheFirstPointOfIt) {
    lisp("(cf:gis_smart_prompting 2 3 \"TREE\")");
    answer(134, {show(), cell(2, "14"), click("OK")});
    const std::string said = query({"Number", "a1", "7", "8", ""});
    EXPECT_EQ(said, std::string(kSelect) + kNumber + kNumber + "\nInvalid point number!" + kNumber +
                        "\nInvalid point number!" + kNumber);
    EXPECT_EQ(sql("select PT_ID, GIS_KEY, DBH, NORTHING, EASTING, ELEVATION from TREE"),
              "A1|TREE|14|20|10|5\n");
    EXPECT_NEAR(host_->viewBox().height, 15, 1e-9);
    EXPECT_NEAR(host_->viewBox().centre.x, 10, 1e-9);

    // The record is there when its entity is asked for, whatever is current meanwhile.
    makeOutput("other.mdb");
    lisp("(cf:gis_smart_prompting 2 2 " + quoted("other.mdb") + ")");
    answer(134, {show(), cell(2, "15"), click("OK")});
    query({"Number", "A1", ""});
    EXPECT_TRUE(shown("Entity has GIS Data"));
    EXPECT_EQ(sql("select PT_ID, GIS_KEY, DBH from TREE"), "A1|TREE|15\n");
}

TEST_F(QueryTest, PickedEntitiesGetGeneratedKeys) {
    lisp(
        "(cf:gis_smart_prompting 2 3 \"NO_SUCH_FEATURE\")"
        "(entmake '((0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 4) (70 . 1) "
        "(10 100.0 100.0) (10 "
        "200.0 100.0) (10 200.0 200.0) (10 100.0 200.0)))");
    answer(134, {pick("1106", "PARCEL"), cell(1, "12"), click("OK")});
    EXPECT_EQ(query({"Pick", "150,150", "300,300", ""}),
              std::string(kSelect) + kPick + kPick + "\nUsing this point cannot find any polygon!" + kPick);
    EXPECT_EQ(sql("select GIS_KEY, LOT, length(PT_ID) from PARCEL"), "PARCEL|12|10\n");
}

TEST_F(QueryTest, LinksThatLeadNowhereAreTold) {
    lisp(
        "(regapp \"ZGEO_GIS_2000\") (defun linked (strings) (entmakex (list '(0 . \"CIRCLE\") '(10 0.0 0.0 "
        "0.0) '(40 . 2.0) (list -3 "
        "(cons \"ZGEO_GIS_2000\" (mapcar '(lambda (s) (cons 1000 s)) strings))))))"
        "(setq e (linked (list \"a\" \"b\")))");
    auto query1 = [&](const std::string& strings) {
        lisp("(entdel e) (setq e (linked (list " + strings + ")))");
        return ::text::replaceAll(query({"2,0", ""}), kSelect, "");
    };
    EXPECT_EQ(query1("\"a\" \"b\""), "\nGIS Data corrupted! Please run Audit Links!");
    EXPECT_EQ(query1(quoted("gone.mdb") + quoted("output.mdb") + "\"TREE\" \"PT_ID\" \"1\""),
              "\nError: unable to read file " + path("gone.mdb"));
    EXPECT_EQ(query1(quoted("template.mdb") + quoted("gone.mdb") + "\"TREE\" \"PT_ID\" \"1\""),
              "\nError: unable to read file " + path("gone.mdb"));
    EXPECT_FALSE(fs::exists(path("gone.mdb"))) << "the output of a link is not made anew";
    EXPECT_EQ(query1(quoted("template.mdb") + quoted("output.mdb") + "\"NOWHERE\" \"PT_ID\" \"1\""),
              "\nCannot find the GIS definitions in Template MDB!");
    EXPECT_EQ(ui_.log(), std::vector<std::string>{});
    // Three strings are enough for the sheet; digits at the end of a feature may go.
    for (const char* rest : {"\"TREE\"", "\"TREE\" \"PT_ID\"", "\"tree12 \" \"pt_id\" \"5\""}) {
        answer(134, {show(), click("Cancel")});
        EXPECT_EQ(query1(quoted("template.mdb") + quoted("output.mdb") + rest), "") << rest;
        EXPECT_TRUE(shown("TREE")) << rest;
    }
}

TEST_F(QueryTest, SettingsAreAskedForOnceWhereNoDatabaseIsChosen) {
    write("gps.ini", "is_database=\n");
    write("featlink.ini", "");
    answer(146, {click("Exit")});
    EXPECT_EQ(query({"Number", "A1", ""}), std::string(kSelect) + kNumber + kNumber);
    EXPECT_TRUE(shown("[146]") || shown("dialog 146"));
}
