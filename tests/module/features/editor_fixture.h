// The editor of the template by scripted dialogs, on a template of the test's own.
#pragma once

#include <string>
#include <vector>

#include "tests/module/module_fixture.h"

using ui::Step;

class Editor : public ModuleTest {
  protected:
    static constexpr int kEditor = 151, kName = 1511, kCategory = 1512, kNewFile = 1513, kValues = 1514,
                         kCodes = 1515;

    static Step menu(std::string entry) { return {Step::Kind::Menu, "", std::move(entry)}; }
    static Step at(int column, int row, std::string text) {
        return {Step::Kind::Cell, "", std::move(text), true, column, row};
    }
    static Step tree(std::string node) { return {Step::Kind::Pick, "1003", std::move(node)}; }
    static Step open(std::string node) { return {Step::Kind::DoubleClick, "1003", std::move(node)}; }
    static Step text(std::string control, std::string value) {
        return {Step::Kind::Text, std::move(control), std::move(value)};
    }
    void name(const std::string& given) { answer(kName, {text("1001", given), click("OK")}); }
    void category(const std::string& given) { answer(kCategory, {pick("1002", given), click("OK")}); }
    void box(const std::string& button) { ui_.answerBox(button); }

    // Runs the editor with these steps and leaves it without saving what is on the sheet.
    void edit(std::vector<Step> steps) {
        steps.push_back(menu("Exit"));
        answer(kEditor, std::move(steps));
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
        EXPECT_EQ(ui_.unused(), std::vector<std::string>{});
    }
    void newTemplate() {
        answer(kNewFile, {click("New Access 2000 Format")});
        ui_.answerFile(path("t.mdb"));
        box("Yes");
        edit({menu("Template Database/New")});
    }
    std::string stored(const std::string& sql) const { return sqlite("t.mdb", sql); }
    std::string features(const std::string& where = "1") const {
        return stored(
            "select GIS_NAME, FIELD_NAME, FIELD_PROMPT, DEFAULT_VALUE, LIST_VALUES from "
            "ZGEO_SMART_PROMPTING where " +
            where + " order by NO_GIS");
    }
    std::string categories() const {
        return stored("select INDEX_CAT_GIS, CAT_GIS_NAME, GIS_NAME from ZGEO_CAT order by rowid");
    }

    // A template of the categories PLANTS and UTILITIES, with the feature TREE saved in the first.
    void treeTemplate() {
        newTemplate();
        name("plants"), name("utilities"), name("tree");
        box("Yes"), category("PLANTS"), box("Yes");
        edit({menu("Category/New"), menu("Category/New"), tree("PLANTS"), click("New Feature"),
              at(1, 1, "species"), at(2, 1, "Species"), at(1, 2, "dbh"), at(2, 2, "Diameter"),
              at(4, 2, "Yes"), at(5, 2, "Int")});
        ui_.clearLog();
    }
};
