// What is wrong between links and records, as a list, as a file, and mended.
#include <regex>

#include "tests/module/linktools/link_fixture.h"

namespace {

class LinkReportTest : public LinkTools {
  protected:
    void SetUp() override {
        LinkTools::SetUp();
        sql("create table TREE (PT_ID TEXT(255), GIS_KEY TEXT(255), NORTHING DOUBLE, EASTING TEXT(20), "
            "ELEVATION DOUBLE);"
            "insert into TREE values ('1','TREE',20,'10',5), ('2','TREE',20.004,'10',NULL), "
            "('3','TREE',25,'11',5), "
            "('1','OTHER',0,'0',0), ('9','TREE',0,'0',0);"
            "create table LOTS (PT_ID TEXT(255), GIS_KEY TEXT(255), AREA DOUBLE, LENGTH_DWG DOUBLE); insert "
            "into LOTS values "
            "('A','LOT',9999,400), ('B','LOT',10000,400), ('a,b','LOT',NULL,NULL)");
        sqlite("template.mdb",
               "create table ZGEO_LINKS (GIS_NAME TEXT(255), TABLE_NAME TEXT(255)); insert into ZGEO_LINKS "
               "values "
               "('LOT', 'LOTS')");
        lisp("(regapp \"ZGEO_GIS_2000\") (setq tmpl " + quoted("template.mdb") + " outp " +
             quoted("output.mdb") +
             ")"
             "(defun link (strings) (list -3 (cons \"ZGEO_GIS_2000\" (mapcar '(lambda (s) (cons 1000 s)) "
             "strings))))"
             "(defun to (feature key) (link (list tmpl outp feature \"PT_ID\" key)))"
             "(defun tree (x y z data) (entmake (list '(0 . \"POINT\") (list 10 x y z) '(8 . \"TREES\") "
             "data)))"
             "(defun square (side data) (entmake (list '(0 . \"LWPOLYLINE\") '(100 . \"AcDbEntity\") '(100 . "
             "\"AcDbPolyline\") "
             "'(90 . 4) '(70 . 1) '(10 1e6 1e6) (list 10 (+ 1e6 side) 1e6) (list 10 (+ 1e6 side) (+ 1e6 "
             "side)) (list 10 1e6 (+ 1e6 "
             "side)) data)))");
    }
    // The rows without their handles, a line each.
    std::string report(const std::string& arguments) {
        printed();
        return lisp("(setq text \"\") (foreach row (gis:link-report " + arguments +
                    ") (setq text (strcat text (nth 0 row) \"|\" (nth 2 row) \"|\" (nth 3 row) \"|\" (nth 4 "
                    "row) \"|\" (nth 5 "
                    "row) \"\n\"))) text");
    }
};

}  // namespace

TEST_F(LinkReportTest, NamesWhatIsWrong) {
    lisp(
        "(tree 10.0 20.0 5.0 (to \" tree\" \"1 \")) (tree 10.0 20.0 5.0 (to \"TREE\" \"2\")) (tree 10.0 20.0 "
        "5.0 (to \"TREE\" "
        "\"3\")) (tree 10.0 20.0 5.0 (to \"TREE\" \"1\")) (tree 10.0 20.0 5.0 (to \"TREE\" \"77\"))"
        "(tree 0.0 0.0 0.0 (link (list tmpl outp))) (tree 0.0 0.0 0.0 (to \"NOWHERE\" \"1\"))"
        "(tree 0.0 0.0 0.0 (link (list tmpl outp \"TREE\" \"LOT_NO\" \"1\")))"
        "(tree 0.0 0.0 0.0 (link (list tmpl \"gone.mdb\" \"TREE\" \"PT_ID\" \"1\")))"
        "(square 100.0 (to \"LOT\" \"A\")) (square 100.0 (to \"LOT\" \"b\"))");
    report("0.01 " + quoted("links.csv"));
    const std::string printedLine = printed();
    EXPECT_EQ(printedLine,
              "\n11 links and 8 records looked at: link broken off: 1, record missing: 4, record shared: 1, "
              "no entity: 3, "
              "values differ: 2.");
    // The same as the rows that Lisp gets; handles are left out here.
    const std::string file = std::regex_replace(read("links.csv"), std::regex("\\b1[0-9A-F]{2}\\b"), "#");
    EXPECT_EQ(
        file,
        "Problem,Handle,Layer,Feature,Key,Detail\r\n"
        "link broken off,#,TREES,,,\r\n"
        "values differ,#,TREES,TREE,3,\"NORTHING 25, in the drawing 20; EASTING 11, in the drawing 10\"\r\n"
        "record shared,#,TREES,TREE,1,with #\r\n"
        "record missing,#,TREES,TREE,77,in table TREE\r\n"
        "record missing,#,TREES,NOWHERE,1,there is no table of NOWHERE\r\n"
        "record missing,#,TREES,TREE,1,TREE has no field LOT_NO\r\n"
        "values differ,#,0,LOT,A,\"AREA 9999, in the drawing 10000\"\r\n"
        "no entity,,,LOT,\"A,B\",in table LOTS\r\n"
        "no entity,,,OTHER,1,in table TREE\r\n"
        "no entity,,,TREE,9,in table TREE\r\n"
        "record missing,#,TREES,TREE,1,gone.mdb is not there\r\n");
    const std::string rows = report("0.01");
    EXPECT_EQ(std::count(rows.begin(), rows.end(), '|'), 11 * 4);
    EXPECT_NE(rows.find("values differ|0|LOT|A|AREA 9999, in the drawing 10000"), std::string::npos) << rows;
}

TEST_F(LinkReportTest, RecordsAreBroughtUpToDate) {
    lisp("(tree 10.0 20.0 5.0 (to \"TREE\" \"3\")) (square 100.0 (to \"LOT\" \"A\"))");
    EXPECT_EQ(lisp("(gis:update-records 0.01)"), "0") << "nobody has agreed";
    EXPECT_EQ(sql("select NORTHING from TREE where PT_ID='3'"), "25.0\n");
    ui_.answerQuestion("Bring up to date", "Yes");
    EXPECT_EQ(lisp("(gis:update-records 0.01)"), "2");
    EXPECT_EQ(sql("select PT_ID, NORTHING, EASTING, ELEVATION from TREE where PT_ID='3'"), "3|20.0|10|5.0\n");
    EXPECT_EQ(sql("select AREA, LENGTH_DWG from LOTS where PT_ID='A'"), "10000.0|400.0\n");
    EXPECT_EQ(sql("select count(*) from TREE"), "5\n");
    EXPECT_EQ(lisp("(gis:update-records 0.01)"), "0");
    EXPECT_TRUE(printed().ends_with("\n2 records brought up to date.\nNo record differs from its entity."));
}

TEST_F(LinkReportTest, AnEntityWithoutAHeightTakesNoneFromItsRecord) {
    lisp("(tree 10.0 20.0 0.0 (to \"TREE\" \"1\"))");
    ui_.answerQuestion("Bring up to date", "Yes");
    EXPECT_EQ(lisp("(gis:update-records 0.01)"), "0");
    EXPECT_EQ(sql("select ELEVATION from TREE where PT_ID='1' and GIS_KEY='TREE'"), "5.0\n");
    ui_.expectUndone("box-for \"Bring up to date\" \"Yes\"");
}

TEST_F(LinkReportTest, ARecordThatIsFoundByAnotherFieldIsBroughtUpToDate) {
    sql("create table SIGNS (SIGN_NO LONG, NORTHING DOUBLE); insert into SIGNS values (4, 1), (5, 2)");
    lisp("(tree 10.0 20.0 5.0 (link (list tmpl outp \"SIGNS\" \"SIGN_NO\" \"5\")))");
    ui_.answerQuestion("Bring up to date", "Yes");
    EXPECT_EQ(lisp("(gis:update-records 0.01)"), "1");
    EXPECT_EQ(sql("select SIGN_NO, NORTHING from SIGNS"), "4|1.0\n5|20.0\n");
}

TEST_F(LinkReportTest, ManyRecordsAreChangedBehindACopy) {
    lisp("(setq i 0)");
    std::string rows;
    for (int i = 100; i < 201; ++i) rows += (i > 100 ? ", ('" : "('") + std::to_string(i) + "','TREE',0)";
    sql("insert into TREE (PT_ID, GIS_KEY, NORTHING) values " + rows);
    lisp("(setq i 100) (repeat 101 (tree 10.0 20.0 5.0 (to \"TREE\" (itoa i))) (setq i (1+ i)))");
    ui_.answerQuestion("Bring up to date", "Yes");
    EXPECT_EQ(lisp("(gis:update-records 0.01)"), "101");
    EXPECT_EQ(sql("select count(*) from TREE where NORTHING = 20"), "102\n");
    int copies = 0;
    for (const auto& entry : fs::directory_iterator(path("")))
        copies += entry.path().filename().string().starts_with("output before ") ? 1 : 0;
    EXPECT_EQ(copies, 1);
}

TEST_F(LinkReportTest, ADrawingInOrderSaysSo) {
    printed();
    EXPECT_EQ(lisp("(gis:link-report 0.01)"), "nil");
    EXPECT_EQ(printed(), "\n0 links and 0 records looked at: all is well.");
    sql("delete from LOTS; delete from TREE where PT_ID <> '3'");
    lisp("(tree 11.0 25.0 5.0 (to \"TREE\" \"3\"))");
    EXPECT_EQ(lisp("(gis:link-report 0.01)"), "nil");
}

TEST_F(LinkReportTest, TheCommandSavesTheReportAndAsks) {
    ASSERT_EQ(lisp("(load \"gis.lsp\")").find("error"), std::string::npos);
    lisp("(tree 10.0 20.0 5.0 (to \"TREE\" \"3\"))");
    inputs_ = {"10"};
    ui_.answerFile(path("far.csv"));
    lisp("(c:gis-report)");
    EXPECT_EQ(read("far.csv").find("values differ"), std::string::npos) << "within ten units all is well";
    inputs_ = {""};
    ui_.answerFile(path("near.csv"));
    ui_.answerQuestion("Bring up to date", "Yes");
    lisp("(c:gis-report)");
    EXPECT_NE(read("near.csv").find("values differ"), std::string::npos);
    EXPECT_EQ(sql("select NORTHING from TREE where PT_ID='3'"), "20.0\n");
}
