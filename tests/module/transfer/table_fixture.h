// Tables of an output database in the table dialog, through Lisp and scripted steps.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/dao/dao.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/dao/scratch.h"

// Answers dialogs while a test goes on: what is done before a step is taken may do anything.
class TableAsker : public ui::Asker {
  public:
    using Doing = std::function<std::optional<ui::Step>(const std::string& model)>;
    explicit TableAsker(Doing doing) : doing_(std::move(doing)) {}
    std::optional<ui::Step> step(const std::string& model) override { return doing_(model); }
    std::optional<std::string> answer(const std::string&) override { return std::nullopt; }

  private:
    Doing doing_;
};

class TableTest : public ModuleTest {
  protected:
    static constexpr int kTable = 162;

    // A table POLES of every type of field, with records P1 to P5, in a new database of the test's folder.
    // The ending of the name tells the kind of file; "97" in it the older version of Access.
    void makePoles(const std::string& file) const;
    // A table LIST of PT_ID, GIS_KEY and NAME with so many records.
    void makeList(const std::string& file, int records) const;

    // Opens a table in the dialog; what Lisp gets.
    std::string edit(const std::string& file, const std::string& table, std::vector<ui::Step> steps);
    // The same while somebody else does something after the first steps.
    std::string editWhile(const std::string& file, const std::string& table, std::vector<ui::Step> steps,
                          const std::function<void()>& meanwhile, std::vector<ui::Step> then);
    static ui::Step cellAt(int column, int row, std::string text) {
        return {ui::Step::Kind::Cell, "", std::move(text), true, column, row};
    }
    static ui::Step clickAt(int column, int row) {
        return {ui::Step::Kind::ClickCell, "", "", true, column, row};
    }
    static ui::Step typed(std::string control, std::string text) {
        return {ui::Step::Kind::Text, std::move(control), std::move(text)};
    }
    static std::vector<ui::Step> save() { return {focus("Save"), click("Save")}; }
    static std::vector<ui::Step> joined(std::vector<std::vector<ui::Step>> parts);

    // The pictures of the dialog that the script asked for.
    std::vector<std::string> pictures() const;
    // The active cell of each picture, "2,3".
    std::vector<std::string> activeCells() const;
    // The line of a picture about a row, by its first cell.
    static std::string lineOf(const std::string& picture, const std::string& begin);
    // A line with one blank between its words.
    static std::string words(const std::string& line);
    // The values of a record of POLES, in the order of its fields: HEIGHT, ID, PT_ID, LIT, FLOORS, NUMBER,
    // RATE, SEEN, DEED, CODE, GIS_KEY, SMALL, TAX, PLAN.
    std::vector<dao::Variant> record(const std::string& file, const std::string& id) const;
    // What the dialog says below its grid.
    static std::string stateOf(const std::string& picture);
    std::vector<std::string> boxes() const;
};
