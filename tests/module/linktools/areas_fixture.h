// A drawing of areas with labels, and a table for them.
#pragma once

#include "platform/dao/dao.h"
#include "tests/module/module_fixture.h"

class Areas : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        makeTemplate();
        answer(146, {click("Select Output MDB File"), click("Exit")});
        answer(149, {click("New Access 2000 Format")});
        ui_.answerFile(path("output.mdb"));
        lisp("(cf:gis_smart_prompting 7)");
    }
    // Runs the tool over all there is, or what a filter lets through.
    std::string link(const std::string& mode, std::vector<ui::Step> steps) {
        answer(1390, std::move(steps));
        inputs_ = {mode, "ALL", ""};
        printed();
        const std::string result = lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " +
                                        quoted("template.mdb") + " " + quoted("output.mdb") + ")");
        EXPECT_EQ(result, "1");
        return printed();
    }
    void makeTable(const std::vector<std::pair<std::string, int>>& columns) {
        CDaoDatabase database;
        database.Open(path("output.mdb"));
        CDaoTableDef table(&database);
        table.Create("LOT");
        for (const auto& [name, type] : columns) {
            CDaoFieldInfo field;
            field.name = name;
            field.type = type;
            field.size = type == dbText ? 255 : type == dbDouble ? 8 : 4;
            field.attributes = dbUpdatableField | (type == dbText ? dbVariableField : 0);
            field.allowZeroLength = type == dbText;
            table.CreateField(field);
        }
        table.Append();
    }
    void sql(const std::string& statement) {
        CDaoDatabase database;
        database.Open(path("output.mdb"));
        database.Execute(statement);
    }
    std::vector<std::string> rows(const std::string& file, const std::string& statement) const {
        std::vector<std::string> found;
        CDaoDatabase database;
        database.Open(path(file));
        CDaoRecordset records(&database);
        for (records.Open(dbOpenDynaset, statement); !records.IsEOF(); records.MoveNext()) {
            std::string row;
            for (int i = 0; i < records.GetFieldCount(); ++i)
                row += (i ? "|" : "") + dao::toText(records.GetFieldValue(i));
            found.push_back(row);
        }
        return found;
    }
    void line(double x, double y, double u, double v) {
        lisp("(entmake (list '(0 . \"LINE\") (list 10 " + std::to_string(x) + " " + std::to_string(y) +
             " 0.0) (list 11 " + std::to_string(u) + " " + std::to_string(v) + " 0.0)))");
    }
    void square(double x, double y, double size) {
        lisp("(setq x " + std::to_string(x) + " y " + std::to_string(y) + " s " + std::to_string(size) +
             ") (entmake (list '(0 . \"LWPOLYLINE\") '(100 . \"AcDbEntity\") '(100 . \"AcDbPolyline\") '(90 "
             ". 4) "
             "'(70 . 1) (list 10 x y) (list 10 (+ x s) y) (list 10 (+ x s) (+ y s)) (list 10 x (+ y s))))");
    }
    void label(double x, double y, const std::string& text) {
        lisp("(entmake (list '(0 . \"TEXT\") (list 10 " + std::to_string(x) + " " + std::to_string(y) +
             " 0.0) '(40 . 1.0) '(1 . \"" + text + "\")))");
    }
    // Type, handle and key of each linked entity, in drawing order.
    std::string links() {
        return lisp(
            "(setq e (entnext) out \"\") (while e (if (setq x (cdr (assoc -3 (setq d (entget e "
            "'(\"ZGEO_GIS_2000\")))))) "
            "(setq out (strcat out (cdr (assoc 0 d)) \" \" (cdr (nth 6 (car x))) \"; \"))) (setq e (entnext "
            "e))) out");
    }
    std::string count(const std::string& type) {
        return lisp("(if (setq s (ssget \"X\" '((0 . \"" + type + "\")))) (sslength s) 0)");
    }
};
