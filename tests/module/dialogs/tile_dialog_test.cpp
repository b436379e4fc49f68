// A dialog built from tiles, run by a script with the measures of a fixed font.
#include "module/dialogs/tile_dialog.h"
#include "tests/platform/ui/checked_script.h"

#include <gtest/gtest.h>

using namespace norvane;

using ui::Step;

namespace {

class TileDialogTest : public testing::Test {
  protected:
    void SetUp() override { ui::setBackend(&backend_); }
    void TearDown() override { ui::setBackend(nullptr); }

    static Step click(std::string control) { return {Step::Kind::Click, std::move(control)}; }
    static Step focus(std::string control) { return {Step::Kind::Focus, std::move(control)}; }
    static Step key(std::string name) { return {Step::Kind::Key, "", std::move(name)}; }
    static Step type(std::string control, std::string text) {
        return {Step::Kind::Text, std::move(control), std::move(text)};
    }
    static Step pick(std::string control, std::string item) {
        return {Step::Kind::Pick, std::move(control), std::move(item)};
    }
    static Step check(std::string control, bool on) {
        return {Step::Kind::Check, std::move(control), "", on};
    }

    // Two lists, an edit with its switch, OK and Cancel: the id of each control is 2022 and its number.
    void build(TileDialog& d) {
        d.create("Choose", 30, 10, 10, false, TileDialog::kFitTiles);
        d.beginGroup("header1", "Tables");
        d.addList("list1", 20, 4, false);  // 2023
        d.endGroup();
        d.addList("list2", 0, 4, true);  // 2024
        d.newRow();
        d.addToggle("switch", 12, "&New ones");  // 2025
        d.addEdit("edit1", 10);                  // 2026
        d.newRow();
        d.addButton("ok", 8, "OK", [this](TileDialog& dialog, const std::string& name) {
            pressed_ += name + " ";
            dialog.getTile("edit1", text_);
            dialog.getTile("list2", selection_);
            dialog.finish(true);
        });
        d.addButton("cancel", 8, "Cancel", [this](TileDialog& dialog, const std::string& name) {
            pressed_ += name + " ";
            dialog.finish(false);
        });
        d.setAction(
            "switch",
            [this](TileDialog& dialog, const std::string&) {
                std::string on;
                dialog.getTile("switch", on);
                dialog.enableTile("edit1", on == "1");
                pressed_ += "switch=" + on + " ";
            },
            kOnAll);
        d.setAction(
            "list1",
            [this](TileDialog& dialog, const std::string&) {
                std::string index;
                dialog.getTile("list1", index);
                pressed_ += "list1=" + index + " ";
            },
            kOnSelection);
        for (const char* item : {"A", "B", "C"}) {
            d.listAdd("list1", item);
            d.listAdd("list2", item);
        }
    }

    void run(TileDialog& d, std::vector<Step> steps) {
        backend_.answer(TileDialog::kResource, std::move(steps));
        d.show();
        while (d.running()) d.pumpOnce();
    }

    CheckedScript backend_;
    std::string pressed_, text_, selection_;
};

}  // namespace

TEST_F(TileDialogTest, MeasuresItsFont) {
    TileDialog d;
    d.create("Choose", 30, 10, 10, false, 0);
    EXPECT_EQ(d.measures().charHeight, 10);
    EXPECT_EQ(d.measures().charWidth, 5);  // (52 * 5 / 26 + 1) / 2
    EXPECT_EQ(d.measures().spacing, 6);
    TileDialog compact;
    compact.create("Choose", 30, 10, 10, false, TileDialog::kCompact);
    EXPECT_EQ(compact.measures().spacing, 3);
    TileDialog bold;
    bold.create("Choose", 30, 10, 11, true, 0);
    EXPECT_EQ(bold.window()->font()->family, "Arial") << "small ones have Lucida Console";
    EXPECT_EQ(bold.window()->font()->weight, 984);
}

TEST_F(TileDialogTest, ActionsRunWhereTheirMaskAsksForThem) {
    TileDialog d;
    build(d);
    run(d, {pick("2023", "B"),
            key("Alt+n"),
            type("2026", "LOTS"),
            pick("2024", "C"),
            {Step::Kind::PickAlso, "2024", "A"},
            click("OK")});
    EXPECT_EQ(pressed_, "list1=1 switch=1 ok ");
    EXPECT_EQ(text_, "LOTS");
    EXPECT_EQ(selection_, "0 2");
    EXPECT_TRUE(d.accepted());
}

TEST_F(TileDialogTest, EnterRunsTheActionOfTheTileThatHasTheFocus) {
    TileDialog d;
    build(d);
    d.setAction(
        "edit1",
        [this](TileDialog& dialog, const std::string& name) {
            pressed_ += name + " ";
            dialog.focusTile("ok");
        },
        kOnEnter);
    run(d, {type("2026", "X"), key("Enter"), key("Enter")});
    EXPECT_EQ(pressed_, "edit1 ok ");
}

TEST_F(TileDialogTest, TabStopsAtTheKindsThatItKnows) {
    TileDialog d;
    build(d);
    // Lists are passed over: switch, edit, OK, Cancel and round again.
    run(d, {key("Tab"), key("Tab"), key("Tab"), key("Tab"), key("Space"), key("Shift+Tab"), key("Enter")});
    EXPECT_EQ(pressed_, "switch=1 cancel ");
    EXPECT_FALSE(d.accepted());
}

TEST_F(TileDialogTest, ClosingIsCancelling) {
    TileDialog d;
    build(d);
    run(d, {{Step::Kind::Close}});
    EXPECT_EQ(pressed_, "cancel ");
}

TEST_F(TileDialogTest, ValuesAreTextByExactName) {
    TileDialog d;
    build(d);
    std::string value;
    d.setTile("list1", "2");
    EXPECT_TRUE(d.getTile("list1", value));
    EXPECT_EQ(value, "2");
    d.setTile("list1", "-1");
    d.getTile("list1", value);
    EXPECT_EQ(value, "");
    d.setTile("switch", "yes");
    d.getTile("switch", value);
    EXPECT_EQ(value, "0");
    d.setTile("switch", "1");
    d.getTile("switch", value);
    EXPECT_EQ(value, "1");
    EXPECT_FALSE(d.getTile("LIST1", value));
    EXPECT_EQ(d.tileWindow("LIST1"), nullptr);
}

TEST_F(TileDialogTest, RadiosOfOneGroupExcludeEachOther) {
    TileDialog d;
    d.create("Choose", 30, 10, 10, false, 0);
    d.addRadioGroup("kind", "Kind");
    d.addRadio("text", 6, "Text");
    d.addRadio("handle", 6, "Handle");
    d.addRadioGroup("other", "");
    d.addRadio("alone", 6, "Alone");
    d.setTile("text", "1");
    d.setTile("alone", "1");
    d.setTile("handle", "1");
    std::string text, handle, alone;
    d.getTile("text", text), d.getTile("handle", handle), d.getTile("alone", alone);
    EXPECT_EQ(text + handle + alone, "011");
    d.enableTile("kind", false);
    EXPECT_FALSE(d.tileWindow("handle")->enabled());
    EXPECT_TRUE(d.tileWindow("alone")->enabled());
}

TEST_F(TileDialogTest, ControlsStandAtTheirRectangles) {
    TileDialog d;
    build(d);
    backend_.answer(TileDialog::kResource, {click("Cancel")});
    d.show();
    // The list of width 0 ends where the widest row does.
    const auto& rectangles = d.window()->rectangles();
    EXPECT_EQ(rectangles.at(2023).width, 20 * 5);
    EXPECT_EQ(rectangles.at(2027).top, rectangles.at(2028).top);
    EXPECT_GT(rectangles.at(2024).left, rectangles.at(2022).left + rectangles.at(2022).width);
    EXPECT_GT(d.window()->size().width, 0);
    while (d.running()) d.pumpOnce();
}

TEST_F(TileDialogTest, EveryKindOfTileHasItsValueAsText) {
    TileDialog d;
    d.create("Kinds", 30, 10, 10, false, 0);
    d.addPassword("password", 8);
    d.addReadOnly("path", 20, "/jobs");
    d.addColumnList("points", 20, 4, {"Number", "Name"}, false);
    d.addDropDown("layer", 10, true);
    d.addPicture("picture", 40, 30);
    d.addPointView("point", 40, 30);
    d.addWindowView("window", 40, 30);
    d.addProgress("bar", 100);
    d.addTabs("tabs", 0, {"One", "Two"});
    d.addSpreadsheet("sheet", 20, 3, 2);
    d.listAdd("points", "1\tOAK");
    d.setRange("bar", 10, 50);
    struct {
        const char* name;
        const char* given;
        const char* read;
    } cases[] = {
        {"password", "secret", "secret"},
        {"path", "/jobs/a.mdb", "/jobs/a.mdb"},
        {"points", "0", "0"},
        {"layer", "0", ""},
        {"picture", "oak.png", "oak.png"},
        {"point", "1 -2.25", "1.000000 -2.250000"},
        {"point", "7", "1.000000 -2.250000"},
        {"window", "0 0 10 20.5", "0.000000 0.000000 10.000000 20.500000"},
        {"window", "1 2", "0.000000 0.000000 10.000000 20.500000"},
        {"bar", "30", "30"},
        {"bar", "99", "50"},
        {"tabs", "1", "1"},
        {"tabs", "2", "1"},
    };
    for (const auto& c : cases) {
        std::string value;
        d.setTile(c.name, c.given);
        EXPECT_TRUE(d.getTile(c.name, value));
        EXPECT_EQ(value, c.read) << c.name << " given " << c.given;
    }
    EXPECT_TRUE(dynamic_cast<ui::Edit*>(d.tileWindow("password"))->secret());
    EXPECT_TRUE(dynamic_cast<ui::Edit*>(d.tileWindow("path"))->readOnly());
    EXPECT_EQ(dynamic_cast<ui::List*>(d.tileWindow("points"))->text(0, 1), "OAK");
    EXPECT_EQ(dynamic_cast<ui::Grid*>(d.tileWindow("sheet"))->columns(), 2);
}

TEST_F(TileDialogTest, PagesTurnAndOnlyTheirOwnTilesAreReached) {
    TileDialog d;
    d.create("Pages", 30, 10, 10, false, TileDialog::kFitTiles);
    d.addTabs("tabs", 0, {"Layers", "Fields"});  // 2022
    d.newRow();
    d.setPage(0);
    d.addEdit("layer", 10);  // 2023
    d.setPage(1);
    d.beginGroup("box", "Field");   // 2024
    d.addEdit("field", 10);         // 2025
    d.addToggle("all", 5, "&All");  // 2026
    d.endGroup();
    d.setPage(kAllPages);
    d.newRow();
    d.addButton("ok", 8, "OK", [this](TileDialog& dialog, const std::string&) {  // 2027
        dialog.getTile("field", text_);
        dialog.getTile("tabs", selection_);
        dialog.finish(true);
    });
    d.setAction(
        "tabs", [this](TileDialog&, const std::string& name) { pressed_ += name + " "; }, kOnSelection);
    d.setAction(
        "all", [this](TileDialog&, const std::string& name) { pressed_ += name + " "; }, kOnClick);
    // Tab from the edit of the first page leads to OK; the accelerator of a hidden tile does nothing.
    run(d, {key("Tab"),
            focus("2027"),
            {},
            key("Alt+a"),
            pick("2022", "Fields"),
            {},
            key("Ctrl+Tab"),
            key("Ctrl+Tab"),
            type("2025", "LOT"),
            key("Tab"),
            key("Space"),
            key("Tab"),
            {},
            key("Enter")});
    EXPECT_EQ(pressed_, "tabs tabs tabs all ");
    EXPECT_EQ(text_ + selection_, "LOT1");
    EXPECT_NE(backend_.log()[3].find("* 2027 button"), std::string::npos) << backend_.log()[3];
    EXPECT_EQ(backend_.log()[3].find("2025 edit"), std::string::npos);
    EXPECT_EQ(backend_.log()[6].find("2023 edit"), std::string::npos) << backend_.log()[6];
    EXPECT_NE(backend_.log()[6].find("2025 edit"), std::string::npos);
}

TEST_F(TileDialogTest, EntriesOfTheMenuRunTheirActions) {
    TileDialog d;
    d.create("Menu", 30, 10, 10, false, 0);
    auto note = [this](TileDialog&, const std::string& name) { pressed_ += name + " "; };
    d.addMenu("&File");
    d.addMenuEntry("save", "&Save", note, "Ctrl+S");
    d.addMenuEntry("close", "&Close", [](TileDialog& dialog, const std::string&) { dialog.finish(true); });
    d.addEdit("name", 10);
    d.enableTile("save", false);
    backend_.expectUndone("dialog 2022 refused (menu \"File/Save\"): \"Save\" is disabled");
    d.setAction(
        "name", [](TileDialog& dialog, const std::string&) { dialog.enableTile("save", true); }, kOnEnter);
    run(d, {{Step::Kind::Menu, "", "File/Save"},
            key("Enter"),
            {Step::Kind::Menu, "", "File/Save"},
            key("Ctrl+s"),
            {Step::Kind::Menu, "", "Close"}});
    EXPECT_EQ(pressed_, "save save ");
    EXPECT_TRUE(d.accepted());
}

TEST_F(TileDialogTest, TabStaysInASpreadsheetAndItsCellsAreAnswered) {
    TileDialog d;
    d.create("Sheet", 30, 10, 10, false, 0);
    d.addSpreadsheet("sheet", 20, 3, 2);  // 2022
    d.addButton("ok", 8, "OK", [](TileDialog& dialog, const std::string&) { dialog.finish(true); });
    dynamic_cast<ui::Grid*>(d.tileWindow("sheet"))->setRows(2);
    d.setAction(
        "sheet",
        [this](TileDialog& dialog, const std::string& name) {
            pressed_ += name + "=" + dynamic_cast<ui::Grid*>(dialog.tileWindow("sheet"))->text(2, 1) + " ";
        },
        kOnSelection);
    run(d, {{Step::Kind::Cell, "2022", "12", true, 2, 1},
            key("Tab"),
            {},
            key("Shift+Tab"),
            {},
            key("Ctrl+Tab"),
            {},
            key("Enter")});
    EXPECT_EQ(pressed_, "sheet=12 ");
    EXPECT_NE(backend_.log()[3].find("* 2022 grid 2 x 2, at (1, 2)"), std::string::npos) << backend_.log()[3];
    EXPECT_NE(backend_.log()[5].find("* 2022 grid 2 x 2, at (2, 1)"), std::string::npos) << backend_.log()[5];
    EXPECT_NE(backend_.log()[7].find("* 2023 button"), std::string::npos) << "Ctrl+Tab leads out of it";
}
