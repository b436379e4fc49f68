// Linked points, the records that they lead to, and the functions of Lisp that look at them.
#pragma once

#include "platform/text/text.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/dao/scratch.h"

class SelectTest : public ModuleTest {
  protected:
    // Points 1 to 6 lead to the records of TREE: two of an oak, which stands in two places, the last of
    // another feature in the same table. Record 9 has no entity.
    void SetUp() override {
        ModuleTest::SetUp();
        makeTemplate();
        ASSERT_EQ(lisp("(cf:gis_smart_prompting 20 \"x\" \"none\" " + quoted("output.mdb") + ")"), "1");
        lisp("(cf:gis_smart_prompting 2 1 " + quoted("template.mdb") + ") (cf:gis_smart_prompting 2 2 " +
             quoted("output.mdb") + ")");
        sqlite(
            "output.mdb",
            "create table TREES (PT_ID TEXT(255), GIS_KEY TEXT(255), SPECIES TEXT(255), DBH LONG); "
            "insert into TREES values ('1','TREE','Oak',35), ('2','TREE','oak',20), ('3','TREE','Elm',50), "
            "('4','TREE',NULL,NULL), ('5','SHRUB','Oak',3), ('9','TREE','Oak',99); "
            "create table SIGNS (NO TEXT(50), KIND TEXT(50)); insert into SIGNS values ('1','stop')");
        sqlite("template.mdb",
               "create table ZGEO_LINKS (GIS_NAME TEXT(255), TABLE_NAME TEXT(255)); insert into ZGEO_LINKS "
               "values "
               "('TREE', 'TREES'), ('SHRUB', 'TREES'), ('SIGNS', 'GONE')");
        lisp("(regapp \"ZGEO_GIS_2000\") (setq tmpl " + quoted("template.mdb") + " outp " +
             quoted("output.mdb") +
             ")"
             "(defun point (x feature field key) (entmakex (list '(0 . \"POINT\") (list 10 x 0.0 0.0) (list "
             "-3 (cons "
             "\"ZGEO_GIS_2000\" (mapcar '(lambda (s) (cons 1000 s)) (list tmpl outp feature field key)))))))"
             "(defun places (set / all i) (setq i 0) (repeat (if set (sslength set) 0)"
             " (setq all (cons (fix (cadr (assoc 10 (entget (ssname set i))))) all) i (1+ i))) (reverse all))"
             "(defun found (table condition) (places (gis:select table condition)))"
             "(defun selected () (places (cadr (ssgetfirst))))"
             "(point 1.0 \"TREE\" \"PT_ID\" \"1\") (point 2.0 \"TREE\" \"PT_ID\" \" 2\") (point 3.0 \"Tree\" "
             "\"PT_ID\" "
             "\"3\") (point 4.0 \"TREE\" \"PT_ID\" \"4\") (point 5.0 \"SHRUB\" \"PT_ID\" \"5\") (point 6.0 "
             "\"TREE\" "
             "\"pt_id\" \"1\") (point 7.0 \"TREE\" \"PT_ID\" \"5\") (point 8.0 \"TREE\" \"PT_ID\" \"77\")"
             "(point 9.0 \"SIGNS\" \"NO\" \"1\")");
        printed();
    }

    std::string found(const std::string& table, const std::string& condition) {
        return lisp("(found \"" + table + "\" \"" + text::replaceAll(condition, "\"", "\\\"") + "\")");
    }
    std::string error() { return lisp("gis:error$"); }
    std::string selected() { return lisp("(selected)"); }
    // GIS-SELECT with these answers; what it printed last.
    std::string select(std::vector<std::string> inputs) {
        printed();
        inputs_ = std::move(inputs);
        EXPECT_EQ(lisp("(gis:select-by-condition)"), "nil");
        EXPECT_TRUE(inputs_.empty()) << inputs_.size() << " answers are left";
        said_ = printed();
        return said_.substr(said_.rfind('\n') + 1);
    }

    std::string said_;
};
