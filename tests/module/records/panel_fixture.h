// A drawing with trees that are linked to records, and the panel of records over them.
#pragma once

#include <functional>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "platform/text/text.h"
#include "tests/module/linktools/link_fixture.h"

class RecordsPanelTest : public LinkTools {
  public:
    // Records T1 to T5 of trees, of which T1 and T2 have an entity each and T3 has two.
    void SetUp() override {
        LinkTools::SetUp();
        sql("create table TREE (PT_ID TEXT(255), GIS_KEY TEXT(255), SPECIES TEXT(60), DBH DOUBLE, NOTES "
            "TEXT(255)); "
            "insert into TREE values ('T1','TREE','Oak',30,'old'), ('T2','TREE','Maple',12.5,''), "
            "('T3','TREE','oak',41,'by the \"gate\", leaning'), ('T4','TREE','Ash',8,''), "
            "('T5','TREE','Elm',NULL,'')");
        for (const char* link : {"a T1 10 10", "b T2 20 20", "c T3 30 30", "d T3 90 90"}) {
            const std::vector<std::string> words = ::text::split(link, ' ');
            makePoint(words[0], words[2] + ".0 " + words[3] + ".0 0.0");
            linkTo(words[0], words[1]);
        }
        ui_.clearLog();
        printed();
    }
    using LinkTools::sql;
    // A point of the drawing, kept under a name.
    void makePoint(const std::string& name, const std::string& at) {
        lisp("(setq " + name + " (entmakex '((0 . \"POINT\") (10 " + at + "))))");
    }
    void linkTo(const std::string& name, const std::string& key) {
        lisp("(regapp \"ZGEO_GIS_2000\")");
        lisp("(entmod (append (entget " + name +
             ") (list (list -3 (list \"ZGEO_GIS_2000\" '(1002 . \"{\") (cons 1000 " + quoted("template.mdb") +
             ") (cons 1000 " + quoted("output.mdb") + ") '(1000 . \"TREE\") '(1000 . \"PT_ID\") '(1000 . \"" +
             key + "\") '(1002 . \"}\"))))))");
    }

    static ui::Step text(std::string control, std::string typed) {
        return {ui::Step::Kind::Text, std::move(control), std::move(typed)};
    }
    static ui::Step cellAt(int column, int row, std::string typed) {
        return {ui::Step::Kind::Cell, "", std::move(typed), true, column, row};
    }
    static ui::Step clickCell(int column, int row) {
        return {ui::Step::Kind::ClickCell, "", "", true, column, row};
    }
    static ui::Step close() { return {ui::Step::Kind::Close}; }

    // The panel with these steps; what it printed. The steps end with its closing.
    std::string panel(std::vector<ui::Step> steps, const std::string& arguments = "") {
        steps.push_back(close());
        ui_.clearLog();
        answer(1801, std::move(steps));
        printed();
        EXPECT_EQ(lisp("(gis:records-panel" + arguments + ")"), "nil");
        return printed();
    }
    // The panel with steps that are made when it waits for them: a moment in which somebody else may be at
    // work. The panel as each of them found it, and as it was closed.
    std::vector<std::string> panelBeside(std::vector<std::function<ui::Step()>> steps) {
        class Steps : public ui::Asker {
          public:
            explicit Steps(std::vector<std::function<ui::Step()>> steps) : steps_(std::move(steps)) {}
            std::optional<ui::Step> step(const std::string& model) override {
                if (seen.size() == steps_.size()) return {};
                seen.push_back(model);
                return steps_[seen.size() - 1]();
            }
            std::optional<std::string> answer(const std::string&) override { return {}; }
            std::vector<std::string> seen;

          private:
            std::vector<std::function<ui::Step()>> steps_;
        };
        steps.emplace_back([] { return close(); });
        Steps asker(std::move(steps));
        ui_.setAsker(&asker);
        lisp("(gis:records-panel)");
        ui_.setAsker(nullptr);
        return asker.seen;
    }
    // What each `show` saw.
    std::vector<std::string> pictures() const {
        std::vector<std::string> shown;
        for (const std::string& line : ui_.log())
            if (line.find("[1801]") != std::string::npos) shown.push_back(line);
        return shown;
    }
    // The keys of the rows of a picture, in their order: "T1 T2".
    static std::string keysIn(const std::string& picture) {
        static const std::regex kKey("^ *[0-9]* +'?(T[0-9])'? ");
        std::string keys;
        for (const std::string& line : ::text::split(picture, '\n')) {
            std::smatch found;
            if (std::regex_search(line, found, kKey)) keys += (keys.empty() ? "" : " ") + found[1].str();
        }
        return keys;
    }
    // The line of a picture that has a text.
    static std::string lineOf(const std::string& picture, const std::string& part) {
        for (const std::string& line : ::text::split(picture, '\n'))
            if (line.find(part) != std::string::npos) return line;
        return {};
    }
    // The names of the selected entities, "a c".
    std::string selected() {
        return lisp(
            "(progn (setq found \"\" set (cadr (ssgetfirst))) (foreach name '(a b c d) (if (and set (ssmemb "
            "(eval name) "
            "set)) (setq found (strcat found (strcase (vl-symbol-name name) t))))) found)");
    }
};
