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
