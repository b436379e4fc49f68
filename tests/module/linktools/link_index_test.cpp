// The links of the drawing by record and by entity, while the drawing changes.
#include "tests/module/linktools/link_fixture.h"

namespace {

class LinkIndexTest : public LinkTools {
  protected:
    void SetUp() override {
        LinkTools::SetUp();
        sql("create table TREE (PT_ID TEXT(255)); create table SIGNS (PT_ID TEXT(255))");
        sqlite("template.mdb",
               "create table ZGEO_LINKS (GIS_NAME TEXT(255), TABLE_NAME TEXT(255)); insert into ZGEO_LINKS "
               "values "
               "('OAK', 'TREE'), ('SIGN', 'SIGNS'), ('TREE', 'GONE')");
        lisp("(regapp \"ZGEO_GIS_2000\") (setq tmpl " + quoted("template.mdb") + " outp " +
             quoted("output.mdb") +
             ")"
             "(defun data (strings) (list -3 (cons \"ZGEO_GIS_2000\" (mapcar '(lambda (s) (cons 1000 s)) "
             "strings))))"
             "(defun to (feature key) (data (list tmpl outp feature \"PT_ID\" key)))"
             "(defun point (x link) (entmake (list '(0 . \"POINT\") (list 10 x 0.0 0.0) link)))"
             // The places of the entities of a record: each point stands at its own.
             "(defun places (table key) (mapcar '(lambda (e) (fix (cadr (assoc 10 (entget e))))) "
             "(gis:linked-entities outp table key)))"
             "(defun at (x) (ssname (ssget \"X\" (list '(0 . \"POINT\") (list 10 x 0.0 0.0))) 0))"
             "(defun relink (x link) (entmod (append (entget (at x)) (list link))))");
    }
};

}  // namespace

TEST_F(LinkIndexTest, EntitiesAreFoundByTheTableOfTheirFeature) {
    lisp(
        "(point 1.0 (to \"TREE\" \"5\")) (point 2.0 (to \" oak\" \"5 \")) (point 3.0 (to \"SIGN\" \"5\"))"
        "(point 4.0 (to \"SIGNS\" \"5\")) (point 5.0 (to \"TREE\" \"6\")) (point 6.0 (data (list tmpl outp)))"
        "(point 7.0 (data (list tmpl (strcase outp) \"TREE\" \"PT_ID\" \"5\")))"
        "(point 8.0 (data (list \"gone.mdb\" outp \"TREE\" \"PT_ID\" \"5\")))"
        "(point 9.0 (data (list tmpl \"other.mdb\" \"TREE\" \"PT_ID\" \"5\")))"
        "(point 10.0 (data (list tmpl outp \"TREE\" \"TREE_NO\" \"5\")))"
        "(point 11.0 (data (list tmpl outp \"TREE\")))");
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "(1 2 7 8)");
    EXPECT_EQ(lisp("(places \"SIGNS\" \"5\")"), "(3 4)");
    EXPECT_EQ(lisp("(places \"tree\" \"6\")"), "(5)");
    EXPECT_EQ(lisp("(places \"TREE\" \"7\")"), "nil");
    EXPECT_EQ(
        lisp("(mapcar '(lambda (e) (cadr (assoc 10 (entget e)))) (gis:linked-entities outp \"TREE\" \"5\" "
             "\"TREE_NO\"))"),
        "(10.0)");
    EXPECT_TRUE(printed().find("corrupted") == std::string::npos) << "nothing is printed";
}

TEST_F(LinkIndexTest, ItFollowsTheDrawing) {
    lisp("(point 1.0 (to \"TREE\" \"5\")) (point 2.0 (to \"TREE\" \"6\"))");
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "(1)");
    lisp(
        "(command \"_.UNDO\" \"_BE\") (relink 2.0 (to \"TREE\" \"5\")) (point 3.0 (to \"TREE\" \"5\"))"
        "(relink 1.0 (to \"SIGNS\" \"5\")) (command \"_.UNDO\" \"_E\")");
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "(2 3)") << "linked anew, made, and led away";
    EXPECT_EQ(lisp("(places \"SIGNS\" \"5\")"), "(1)");
    lisp("(command \"_.U\")");
    EXPECT_EQ(lisp("(list (places \"TREE\" \"5\") (places \"TREE\" \"6\") (places \"SIGNS\" \"5\"))"),
              "((1) (2) nil)");
    lisp("(setq gone (at 1.0)) (entdel gone)");
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "nil");
    lisp("(entdel gone)");
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "(1)");
    lisp("(relink 1.0 (list -3 (list \"ZGEO_GIS_2000\")))");
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "nil") << "the link was taken off";
}

TEST_F(LinkIndexTest, LinksOfBlockDefinitionsAndOfAnotherDrawingAreNone) {
    lisp("(point 1.0 (to \"TREE\" \"5\"))");
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "(1)");
    lisp(
        "(entmake '((0 . \"BLOCK\") (2 . \"SHRUB\") (70 . 0) (10 0.0 0.0 0.0))) (point 2.0 (to \"TREE\" "
        "\"5\"))"
        "(entmake '((0 . \"ENDBLK\")))");
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "(1)");
    lisp("(command \"_.SAVEAS\" \"_R2000\" \"\" " + quoted("trees.dxf") + " \"_Y\")");
    openSample();
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "nil");
    lisp("(regapp \"ZGEO_GIS_2000\") (point 3.0 (to \"TREE\" \"5\"))");
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "(3)");
    openDrawing(path("trees.dxf"));
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "(1)");
}

TEST_F(LinkIndexTest, ASelectionBeforeStaysTheLast) {
    lisp("(point 1.0 (to \"TREE\" \"5\")) (point 2.0 (to \"TREE\" \"6\")) (ssget \"X\" '((10 2.0 0.0 0.0)))");
    EXPECT_EQ(lisp("(places \"TREE\" \"5\")"), "(1)");
    EXPECT_EQ(lisp("(sslength (ssget \"P\"))"), "1");
}
