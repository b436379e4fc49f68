// A drawing with trees that are linked to the records of a table, and what the host is given to show of them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/ads/entities.h"
#include "platform/ads/overlay.h"
#include "tests/module/linktools/link_fixture.h"

class Annotation : public LinkTools {
  protected:
    // Points at 1,0 2,0 and so on: oaks with the keys 1 to 3, a fir, one whose record is empty, and one that
    // has none. An area and a line are lots of another table.
    void SetUp() override {
        LinkTools::SetUp();
        makeTrees("SPECIES TEXT(50)");
        sql("create table LOTS (PT_ID TEXT(255), GIS_KEY TEXT(255), OWNER TEXT(255));"
            "insert into LOTS values ('A','LOT','Smith'), ('B','LOT','Ford')");
        sqlite("template.mdb",
               "create table ZGEO_LINKS (GIS_NAME TEXT(255), TABLE_NAME TEXT(255)); insert into ZGEO_LINKS "
               "values ('LOT', 'LOTS')");
        lisp("(regapp \"ZGEO_GIS_2000\") (setq tmpl " + quoted("template.mdb") + " outp " +
             quoted("output.mdb") +
             ")"
             "(defun to (feature key) (list -3 (cons \"ZGEO_GIS_2000\" (mapcar '(lambda (s) (cons 1000 s)) "
             "(list tmpl outp feature \"PT_ID\" key)))))"
             "(defun tree (x key) (entmake (list '(0 . \"POINT\") (list 10 x 0.0 0.0) (to \"TREE\" key))))"
             "(defun at (x) (ssname (ssget \"X\" (list '(0 . \"POINT\") (list 10 x 0.0 0.0))) 0))"
             "(tree 1.0 \"1\") (tree 2.0 \"2\") (tree 3.0 \"3\") (tree 4.0 \"4\") (tree 5.0 \"5\") (tree 6.0 "
             "\"6\")");
        printed();
    }
    // The records, with another name or type for the field of species.
    void makeTrees(const std::string& species) {
        sql("create table TREE (PT_ID TEXT(255), GIS_KEY TEXT(255), " + species +
            ", AGE LONG, HEIGHT DOUBLE);"
            "insert into TREE values ('1','TREE','Oak',40,12.5), ('2','TREE','oak',7,3.25), "
            "('3','TREE','OAK',120,20), ('4','TREE','Fir',40,9), ('5','TREE',NULL,NULL,NULL), "
            "('99','TREE','Elm',1,1)");
    }
    // Does something as a step of undo.
    std::string step(const std::string& work) {
        lisp("(setvar \"CMDECHO\" 0) (command \"_.UNDO\" \"_BE\")");
        const std::string result = lisp(work);
        lisp("(command \"_.UNDO\" \"_E\")");
        return result;
    }
    void undo() { lisp("(command \"_.U\")"); }
    void makeLots() {
        lisp(
            "(entmake (list '(0 . \"LWPOLYLINE\") '(100 . \"AcDbEntity\") '(100 . \"AcDbPolyline\") '(90 . "
            "4) "
            "'(70 . 1) '(10 10.0 10.0) '(10 30.0 10.0) '(10 30.0 30.0) '(10 10.0 30.0) (to \"LOT\" \"A\")))"
            "(entmake (list '(0 . \"LINE\") '(10 0.0 50.0 0.0) '(11 10.0 60.0 0.0) (to \"LOT\" \"B\")))");
    }
    std::string refresh(const std::string& all = "") {
        printed();
        EXPECT_EQ(lisp("(gis:refresh-annotation " + all + ")"), "nil");
        return printed();
    }
    // The place of an entity in x, as a whole number.
    int placeOf(const overlay::EntityName& name) {
        ads_name entity = {name[0], name[1]};
        resbuf* groups = acdbEntGet(entity);
        int x = -1;
        for (const resbuf* item = groups; item; item = item->rbnext)
            if (item->restype == 10) {
                x = static_cast<int>(item->resval.rpoint[0]);
                break;
            }
        acutRelRb(groups);
        return x;
    }
    // "1=Oak;2=oak;": the labels that the host has, by the places of their entities.
    std::string labels(const std::string& feature = "TREE") {
        std::map<int, std::string> byPlace;
        if (const overlay::LabelSet* set = overlay::labels(feature))
            for (const overlay::Label& label : set->labels) byPlace[placeOf(label.entity)] += label.text;
        std::string all;
        for (const auto& [place, text] : byPlace) all += std::to_string(place) + "=" + text + ";";
        return all;
    }
    // "1=0;2=1;": the rows of the legend whose colours entities have; -1 for another colour.
    std::string colours(const std::string& feature = "TREE") {
        std::map<int, int> byPlace;
        const overlay::ColourSet* set = overlay::colours(feature);
        if (!set) return "";
        for (const overlay::EntityColour& one : set->colours) {
            int& row = byPlace[placeOf(one.entity)] = -1;
            for (size_t i = 0; i < set->legend.rows.size(); ++i)
                if (set->legend.rows[i].colour == one.colour) row = static_cast<int>(i);
        }
        std::string all;
        for (const auto& [place, row] : byPlace)
            all += std::to_string(place) + "=" + std::to_string(row) + ";";
        return all;
    }
    std::string legend(const std::string& feature = "TREE") {
        const overlay::ColourSet* set = overlay::colours(feature);
        if (!set) return "";
        std::string all = set->legend.title;
        for (const overlay::LegendRow& row : set->legend.rows)
            all += "|" + row.text + " " + std::to_string(row.count);
        return all;
    }
    // The drawing saved as a version and opened again.
    void saveAndOpen(const std::string& version = "_R2000") {
        lisp("(command \"_.SAVEAS\" \"" + version + "\" \"\" " + quoted("kept.dxf") + " \"_Y\")");
        openDrawing(path("kept.dxf"));
        printed();
    }
    static ui::Step type(std::string control, std::string text) {
        return {ui::Step::Kind::Text, std::move(control), std::move(text)};
    }
    static ui::Step check(std::string control, bool on = true) {
        return {ui::Step::Kind::Check, std::move(control), "", on};
    }
    // The last picture of a dialog in the log.
    std::string picture(int resource) const {
        const std::string begin = "[" + std::to_string(resource) + "]";
        for (size_t i = ui_.log().size(); i-- > 0;)
            if (ui_.log()[i].starts_with(begin)) return ui_.log()[i];
        return "";
    }
};
