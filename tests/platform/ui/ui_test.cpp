// The rules of dialogs that every view obeys: focus, keys, the default button, the grid; driven by scripts.
#include <gtest/gtest.h>

#include "platform/ui/backend.h"
#include "tests/platform/ui/checked_script.h"

using ui::Step;

namespace {

Step click(std::string control) {
    return {Step::Kind::Click, std::move(control)};
}
Step key(std::string name) {
    return {Step::Kind::Key, "", std::move(name)};
}
Step type(std::string control, std::string text) {
    return {Step::Kind::Text, std::move(control), std::move(text)};
}
Step pick(std::string control, std::string item) {
    return {Step::Kind::Pick, std::move(control), std::move(item)};
}
Step cell(int column, int row, std::string text) {
    return {Step::Kind::Cell, "", std::move(text), true, column, row};
}
Step show() {
    return {Step::Kind::Show};
}

// A dialog that writes down what happens to it.
class Form : public ui::Dialog {
  public:
    Form() : ui::Dialog(900, "Form") {
        add<ui::Label>(10, "&Name:");
        add<ui::Edit>(11);
        add<ui::Edit>(12, true);
        add<ui::CheckBox>(13, "&Sure");
        add<ui::RadioButton>(14, "One", 1);
        add<ui::RadioButton>(15, "Two", 1);
        add<ui::DropDown>(16);
        add<ui::Grid>(17, 2, 3);
        add<ui::Button>(18, "&Apply");
        add<ui::Button>(ui::kOk, "OK", true);
        add<ui::Button>(ui::kCancel, "Cancel");
        for (const char* item : {"ASH", "OAK"}) get<ui::DropDown>(16).addItem(item);
        auto& grid = get<ui::Grid>(17);
        grid.setColumnType(1, ui::CellType::fixed());
        grid.setType(2, 2, ui::CellType::edit(ui::CharacterSet::Numeric, 4));
        grid.setType(2, 3, ui::CellType::dropDown("YES\tNO"));
    }
    std::string happened;

  private:
    void note(const std::string& what) { happened += what + ";"; }
    void onCommand(int id) override {
        if (id > ui::kCancel) note("command " + std::to_string(id));
        Dialog::onCommand(id);
    }
    void onTextChange(ui::Control& c) override { note("text " + c.text()); }
    void onSelection(ui::Control& c) override {
        note("selection " + static_cast<ui::ItemControl&>(c).selectedText());
    }
    void onCellChange(ui::Grid& g, ui::CellPosition at) override {
        note("cell " + std::to_string(at.column) + "," + std::to_string(at.row) + "=" +
             g.text(at.column, at.row));
    }
    void onOk() override {
        note("ok from " + std::to_string(focus()));
        if (focus() == ui::kOk) end(ui::kOk);
    }
};

class UiTest : public testing::Test {
  protected:
    void SetUp() override { ui::setBackend(&backend_); }
    void TearDown() override { ui::setBackend(nullptr); }
    int run(Form& form, std::vector<Step> steps) {
        backend_.answer(900, std::move(steps));
        return form.runModal();
    }
    bool logged(const std::string& part) const {
        for (const std::string& line : backend_.log())
            if (line.find(part) != std::string::npos) return true;
        return false;
    }
    CheckedScript backend_;
};

}  // namespace

TEST_F(UiTest, ControlsAreFoundByCaptionAndByTheLabelInFront) {
    Form form;
    EXPECT_EQ(form.find("Name:"), form.find(11));
    EXPECT_EQ(form.find("&Apply"), form.find(18));
    EXPECT_EQ(form.find("Apply"), form.find(18));
    EXPECT_EQ(form.find("16"), form.find(16));
    EXPECT_EQ(form.find("nothing"), nullptr);
}

TEST_F(UiTest, EnterPressesTheDefaultButtonWithTheFocusLeftWhereItIs) {
    Form form;
    EXPECT_EQ(run(form, {type("Name:", "A1"), key("Enter"), click("OK")}), ui::kOk);
    EXPECT_EQ(form.happened, "text A1;ok from 11;ok from 1;");
}

TEST(Tree, LosesWithANodeAllBelowIt) {
    ui::Tree tree(1);
    const int top = tree.addNode(-1, "PLANTS"), middle = tree.addNode(top, "TREES"),
              leaf = tree.addNode(middle, "OAK"), other = tree.addNode(-1, "UTILITIES");
    tree.select(top);
    tree.removeNode(top);
    EXPECT_EQ(tree.selected(), -1);
    for (int gone : {top, middle, leaf}) {
        tree.select(gone);
        EXPECT_EQ(tree.selected(), -1) << gone;
    }
    tree.select(other);
    EXPECT_EQ(tree.selected(), other);
    EXPECT_EQ(tree.seenNodes(), std::vector<int>{other});
}

TEST_F(UiTest, WhatCannotBeDoneIsRefusedAndToldInTheLog) {
    Form form;
    form.find(18)->enable(false);
    form.find(13)->show(false);
    run(form, {type("12", "x"), click("Apply"), click("Sure"), pick("16", "ELM"), click("none"),
               cell(1, 1, "x"), cell(2, 3, "MAYBE"), key("Nonsense"), click("Cancel")});
    for (const char* refused :
         {R"((text 12 "x"): this edit is read-only)", R"((click "Apply"): "Apply" is disabled)",
          R"((click "Sure"): "Sure" is not visible)", R"((pick 16 "ELM"): there is no such item)",
          R"((click "none"): there is no control "none")", R"((cell 1 1 "x"): this cell is not edited)",
          R"((cell 2 3 "MAYBE"): "MAYBE" is not in the list of this cell)",
          R"((key "Nonsense"): "Nonsense" is no key)"})
        backend_.expectUndone(std::string("dialog 900 refused ") + refused);
    EXPECT_EQ(form.happened, "");
    EXPECT_TRUE(logged("read-only") && logged("is disabled") && logged("is not visible") &&
                logged("no such item"));
    EXPECT_TRUE(logged("no control \"none\"") && logged("not edited") &&
                logged("\"MAYBE\" is not in the list"));
}

TEST_F(UiTest, RadiosExcludeEachOtherAndMnemonicsClick) {
    Form form;
    form.find(16)->setText("ASH &ADULT");  // what is typed has no mnemonic
    run(form,
        {{Step::Kind::Check, "One"}, {Step::Kind::Check, "Two"}, key("Alt+s"), key("Alt+A"), key("Escape")});
    EXPECT_EQ(form.happened, "command 14;command 15;command 13;command 18;");
    EXPECT_FALSE(form.get<ui::RadioButton>(14).checked());
    EXPECT_TRUE(form.get<ui::RadioButton>(15).checked());
    EXPECT_TRUE(form.get<ui::CheckBox>(13).checked());
    EXPECT_EQ(form.result(), ui::kCancel);
}

// A dialog that shows a picture and takes files.
class Album : public ui::Dialog {
  public:
    Album() : ui::Dialog(901, "Album") {
        add<ui::Picture>(20, 100, 50);
        add<ui::RadioButton>(21, "One", 1);
        add<ui::RadioButton>(22, "Two", 1);
    }
    std::string happened;

  private:
    void onCommand(int id) override {
        happened += "command " + std::to_string(id) + ";";
        Dialog::onCommand(id);
    }
    void onClickAgain(ui::RadioButton& radio) override {
        happened += "again " + std::to_string(radio.id()) + ";";
    }
    void onDrop(const std::vector<std::string>& paths) override {
        for (const std::string& path : paths) happened += "drop " + path + ";";
    }
};

TEST_F(UiTest, PicturesAreClickedWhereTheyShowSomething) {
    Album album;
    auto& picture = album.get<ui::Picture>(20);
    EXPECT_NE(album.userClick(picture), "") << "nobody has made it clickable";
    picture.setClickable();
    EXPECT_NE(album.userClick(picture), "") << "there is nothing to click";
    picture.setPath("a.jpg", {80, 50});
    EXPECT_EQ(album.userClick(picture), "");
    EXPECT_EQ(album.focus(), 20);
    EXPECT_EQ(album.userKey(*ui::parseKey("Space")), "");
    EXPECT_EQ(album.happened, "command 20;command 20;");
    const int changes = picture.changes();
    picture.setPath("a.jpg");
    EXPECT_NE(picture.changes(), changes) << "the file may be another one by now";
    EXPECT_EQ(picture.frame(), (images::Size{100, 50})) << "all of its room";
    picture.setImage(images::Image({10, 10}));
    EXPECT_EQ(picture.path(), "");
    EXPECT_EQ(picture.frame(), (images::Size{50, 50}));
    EXPECT_TRUE(picture.isClickable());
}

TEST_F(UiTest, FilesFallOntoDialogsThatTakeThem) {
    Album album;
    Step drop{Step::Kind::Drop};
    drop.files = {"a.jpg", "b c.jpg"};
    EXPECT_EQ(ui::stepText(drop), "(drop \"a.jpg\" \"b c.jpg\")");
    EXPECT_NE(album.userDrop(drop.files), "");
    album.setTakesFiles();
    backend_.answer(901, {drop,
                          {Step::Kind::Click, "Two"},
                          {Step::Kind::Click, "Two"},
                          {Step::Kind::Check, "Two"},
                          {Step::Kind::Close}});
    album.runModal();
    EXPECT_EQ(album.happened, "drop a.jpg;drop b c.jpg;command 22;again 22;");
}

TEST_F(UiTest, SeveralFilesOfABoxStandOnLines) {
    ui::FileBox box;
    backend_.answerFile("/a.jpg\n/b.jpg");
    backend_.answerFile("");
    EXPECT_EQ(ui::severalFiles(box), (std::vector<std::string>{"/a.jpg", "/b.jpg"}));
    EXPECT_TRUE(ui::severalFiles(box).empty());
}

TEST_F(UiTest, TheGridTakesWhatItsCellsAllow) {
    Form form;
    run(form,
        {cell(2, 1, "any text"), cell(2, 2, "12.5"), cell(2, 3, "NO"), cell(2, 3, "NO"), cell(2, 2, "1a2.5"),
         cell(2, 2, "-1e10"), cell(2, 1, std::string(256, 'x')), cell(2, 1, "two\tcells"), click("Cancel")});
    // What is not taken is refused whole; an entry that changes nothing is no change.
    EXPECT_EQ(form.happened, "cell 2,1=any text;cell 2,2=12.5;cell 2,3=NO;");
    for (const std::string& refused :
         {std::string(
              R"((cell 2 2 "1a2.5"): a number is made of digits, signs, point and exponent, without "a")"),
          std::string(R"((cell 2 2 "-1e10"): the cell holds 4 characters, and this text has 5)"),
          "(cell 2 1 \"" + std::string(256, 'x') +
              "\"): the cell holds 255 characters, and this text has 256",
          std::string("(cell 2 1 \"two\tcells\"): a cell holds one line of text, without tabs")})
        backend_.expectUndone("dialog 900 refused " + refused);
}

TEST_F(UiTest, NumbersHaveAPointACommaIsOneAndAnExponent) {
    Form form;
    form.get<ui::Grid>(17).setType(2, 2, ui::CellType::edit(ui::CharacterSet::Numeric));
    run(form, {cell(2, 2, "12,5"), cell(2, 2, "-1e3"), cell(2, 2, "2E-7\r\n"), key("x"), key("4"), key(","),
               key("x"), show(), key("5"), key("Up"), click("Cancel")});
    EXPECT_EQ(form.happened, "cell 2,2=12.5;cell 2,2=-1e3;cell 2,2=2E-7;cell 2,2=4.5;");
    EXPECT_TRUE(
        logged("editing \"4.\", refused: a number is made of digits, signs, point and exponent, without "
               "\"x\""));
    for (int i = 0; i < 2; ++i)
        backend_.expectUndone(
            R"(dialog 900 refused (key "x"): a number is made of digits, signs, point and exponent, without "x")");
}

TEST_F(UiTest, TypingEditsAndLeavingTheCellKeepsWhatWasTyped) {
    Form form;
    run(form, {{Step::Kind::Focus, "17"},
               key("Right"),
               key("a"),
               key("b"),
               key("Backspace"),
               key("c"),
               key("Down"),
               key("x"),
               key("7"),
               key("Escape"),
               key("Tab"),
               click("Cancel")});
    EXPECT_EQ(form.happened, "cell 2,1=ac;");
    backend_.expectUndone(
        R"(dialog 900 refused (key "x"): a number is made of digits, signs, point and exponent, without "x")");
    EXPECT_EQ(form.get<ui::Grid>(17).text(2, 2), "");
    EXPECT_EQ(form.get<ui::Grid>(17).active().row, 2);
}

TEST_F(UiTest, MovingTheFocusAwayEndsEditing) {
    Form form;
    run(form, {{Step::Kind::Focus, "17"}, key("Right"), key("z"), click("Apply"), click("Cancel")});
    EXPECT_EQ(form.happened, "cell 2,1=z;command 18;");
}

TEST_F(UiTest, ADialogWithoutStepsIsCancelledAndTold) {
    Form form;
    EXPECT_EQ(run(form, {type("11", "kept")}), ui::kCancel);
    EXPECT_TRUE(logged("has no steps left and is cancelled"));
    EXPECT_TRUE(logged("11 edit \"kept\""));
}

TEST_F(UiTest, TheModelIsPrintedAsAPersonWouldSeeIt) {
    Form form;
    run(form, {cell(2, 2, "12"), show(), click("Cancel")});
    EXPECT_TRUE(logged("[900] Form"));
    EXPECT_TRUE(logged("* 17 grid 2 x 3, at (2, 2)"));
    EXPECT_TRUE(logged("drop-down \"\" of {ASH|OAK}"));
    EXPECT_TRUE(logged("'12'"));
}

TEST_F(UiTest, WhatTheScriptWantedInVainIsKept) {
    Form form;
    backend_.answer(901, {click("OK")});
    backend_.answerBox("Yes");
    backend_.answerFile("plan.mdb");
    run(form, {click("Cancel"), click("Apply"), type("11", "x")});
    backend_.clearLog();
    for (const char* undone :
         {"dialog 900 left over (click \"Apply\")", "dialog 900 left over (text 11 \"x\")",
          "steps for dialog 901", "box \"Yes\"", "file \"plan.mdb\""})
        backend_.expectUndone(undone);
}

// A step of theirs that is refused is told there and then, and is no fault of the script.
TEST_F(UiTest, TheAskerIsAskedWhatTheScriptDoesNotAnswer) {
    struct : ui::Asker {
        std::optional<Step> step(const std::string&) override {
            return asked++ ? click("Cancel") : click("Nowhere");
        }
        std::optional<std::string> answer(const std::string&) override { return "Yes"; }
        int asked = 0;
    } asker;
    backend_.setAsker(&asker);
    Form form;
    EXPECT_EQ(run(form, {}), ui::kCancel);
    EXPECT_EQ(asker.asked, 2);
    EXPECT_EQ(ui::ask({"Compact", "Compact it?"}), ui::kYes);
    EXPECT_TRUE(logged("no control \"Nowhere\""));
}

TEST_F(UiTest, BoxesAreAnsweredInOrderAndDismissedWithoutAnAnswer) {
    backend_.answerBox("Yes");
    EXPECT_TRUE(ui::askYesNo("Please confirm", "Really?"));
    EXPECT_FALSE(ui::askYesNo("Please confirm", "Really?"));
    EXPECT_EQ(ui::messageBox("Error", "No!"), ui::kOk);
    backend_.answerFile("folder\\file.mdb");
    EXPECT_EQ(ui::fileBox({}), "folder/file.mdb");
    EXPECT_EQ(ui::fileBox({}), std::nullopt);
    EXPECT_TRUE(logged("box [Error] \"No!\" flags 0x40030 -> OK"));
}

TEST_F(UiTest, AQuestionOfOurOwnTakesNoAnswerOfOthers) {
    const ui::OwnQuestion compact{"Compact", "The file is half empty. Compact it?"};
    ui::OwnQuestion stop{"Import", "Stop at line 7?", ui::kBoxYesNoCancel, ui::kYes};
    backend_.answerBox("Yes");
    EXPECT_EQ(ui::ask(compact), ui::kNo);
    EXPECT_EQ(ui::ask(stop), ui::kYes);
    EXPECT_TRUE(
        logged("question [Compact] \"The file is half empty. Compact it?\" flags 0x40034 -> No by default"));
    // By the title or by the beginning of the text, each once, and in their order.
    backend_.answerQuestion("Stop at line", "No");
    backend_.answerQuestion("Compact", "Yes");
    backend_.answerQuestion("Import", "Cancel");
    EXPECT_EQ(ui::ask(compact), ui::kYes);
    EXPECT_EQ(ui::ask(compact), ui::kNo);
    EXPECT_EQ(ui::ask(stop), ui::kNo);
    EXPECT_EQ(ui::ask(stop), ui::kCancel);
    EXPECT_EQ(ui::ask(stop), ui::kYes);
    EXPECT_TRUE(ui::askYesNo("Please confirm", "Really?"))
        << "the answer for the system's question is still there";
    // A button that the question does not have, and a question that is not asked.
    backend_.answerQuestion("Compact", "Cancel");
    EXPECT_EQ(ui::ask(compact), ui::kNo);
    backend_.answerQuestion("Nothing", "Yes");
    backend_.expectUndone(
        "refused \"Cancel\" for the question [Compact] \"The file is half empty. Compact it?\" flags "
        "0x40034");
    backend_.expectUndone("box-for \"Nothing\" \"Yes\"");
}

TEST_F(UiTest, WithoutABackendNothingIsShown) {
    ui::setBackend(nullptr);
    Form form;
    EXPECT_EQ(form.runModal(), ui::kNotCreated);
    EXPECT_FALSE(ui::askYesNo("a", "b"));
    EXPECT_EQ(ui::ask({"a", "b", ui::kBoxYesNo, ui::kYes}), ui::kYes);
}

TEST(Key, IsReadFromText) {
    EXPECT_TRUE(ui::parseKey("shift+tab")->shift);
    EXPECT_EQ(ui::parseKey("f3")->name, "F3");
    EXPECT_EQ(ui::parseKey("+")->name, "+");
    EXPECT_EQ(ui::parseKey("\xC3\xA9")->name, "\xC3\xA9");
    EXPECT_FALSE(ui::parseKey("Hyper+x"));
    EXPECT_FALSE(ui::parseKey("Enterr"));
    EXPECT_EQ(ui::keyText(*ui::parseKey("Ctrl+Alt+x")), "Ctrl+Alt+x");
}

TEST_F(UiTest, AListCellIsPickedFromByItsLetters) {
    Form form;
    form.get<ui::Grid>(17).setType(2, 3, ui::CellType::dropDown("ASH\tOAK\tOLIVE"));
    run(form, {{Step::Kind::Focus, "17"},
               key("Right"),
               key("Down"),
               key("Down"),
               key("o"),
               key("o"),
               key("o"),
               key("x"),
               key("Down"),
               key("Up"),
               key("Up"),
               key("Up"),
               key("F2"),
               click("Apply"),
               click("Cancel")});
    EXPECT_EQ(form.happened, "cell 2,3=ASH;command 18;");
    backend_.expectUndone("dialog 900 refused (key \"x\"): no item of the list begins with \"ooox\"");
    backend_.expectUndone("dialog 900 refused (key \"F2\"): this key does nothing here");
}

// A value that was meant for the next row.
TEST_F(UiTest, TextThatNoItemBeginsWithLeavesAListCellAsItIs) {
    Form form;
    form.get<ui::Grid>(17).setType(2, 3, ui::CellType::dropDown("100\t150\t200\t205"));
    run(form, {cell(2, 3, "150"), key("1"), key("."), key("2"), show(), key("Enter"), key("Up"), key("Down"),
               key("2"), key("0"), key("5"), key("Backspace"), key("Backspace"), key("Up"), key("Home"),
               key("PageDown"), click("Apply"), click("Cancel")});
    EXPECT_EQ(form.happened, "cell 2,3=150;ok from 17;cell 2,3=205;command 18;");
    EXPECT_TRUE(logged("editing \"150\", refused: no item of the list begins with \"1.2\""));
    backend_.expectUndone("dialog 900 refused (key \".\"): no item of the list begins with \"1.\"");
    backend_.expectUndone("dialog 900 refused (key \"2\"): no item of the list begins with \"1.2\"");
}

TEST_F(UiTest, TabStopsWhereThereIsSomethingToDo) {
    Form form;
    run(form,
        {{Step::Kind::Focus, "11"}, key("Tab"), key("Space"), key("Shift+Tab"), key("z"), click("Cancel")});
    // Past the path that is only read, which can still be gone to.
    EXPECT_EQ(form.happened, "command 13;text z;");
    EXPECT_EQ(form.userFocus(*form.find(12)), "");
}

TEST_F(UiTest, AKeyThatIsHeldDownPressesNoButton) {
    Form form;
    form.setFocus(18);
    ui::Key held{"Enter"};
    EXPECT_EQ(form.userKey(held), "");
    held.repeated = true;
    EXPECT_EQ(form.userKey(held), "");
    held.name = "Space";
    EXPECT_EQ(form.userKey(held), "");
    form.setFocus(11);
    held.name = "Enter";
    EXPECT_EQ(form.userKey(held), "");
    EXPECT_EQ(form.happened, "command 18;");
}

TEST_F(UiTest, WhatWasTypedIsKeptWhenTheDialogIsClosedAndAMenuChosen) {
    Form form;
    form.add<ui::Menu>(20).entries() = {{21, "Print", 0, true, false, ""}};
    run(form, {{Step::Kind::Focus, "17"},
               key("Right"),
               key("a"),
               {Step::Kind::Menu, "", "Print"},
               key("b"),
               {Step::Kind::Close}});
    EXPECT_EQ(form.happened, "cell 2,1=a;command 21;cell 2,1=b;");
}

TEST_F(UiTest, CtrlZTakesBackTypingThenTheLastChanges) {
    Form form;
    run(form, {cell(2, 1, "first"),
               cell(2, 1, "second"),
               cell(2, 3, "NO"),
               // Letter by letter, then the editing.
               {Step::Kind::ClickCell, "", "", true, 2, 1},
               key("x"),
               key("y"),
               key("Ctrl+z"),
               show(),
               key("Ctrl+Z"),
               // The cells, the last first; also from a button.
               key("Ctrl+z"),
               {Step::Kind::Focus, "Apply"},
               key("Ctrl+z"),
               show(),
               key("Ctrl+z"),
               key("Ctrl+z"),
               click("Cancel")});
    EXPECT_TRUE(logged("at (2, 1), editing \"x\""));
    EXPECT_TRUE(logged("'first'"));
    EXPECT_EQ(form.get<ui::Grid>(17).text(2, 1), "");
    EXPECT_EQ(form.get<ui::Grid>(17).text(2, 3), "");
    backend_.expectUndone("dialog 900 refused (key \"Ctrl+z\"): there is nothing to take back");
}
