// Trees whose nodes can be checked, by scripts.
#include <gtest/gtest.h>

#include "platform/ui/backend.h"
#include "tests/platform/ui/checked_script.h"

using ui::Step;

namespace {

constexpr int kTree = 10;

ui::Tree::Node node(std::string text, int parent = -1, bool hasBox = false) {
    ui::Tree::Node made;
    made.text = std::move(text);
    made.parent = parent;
    made.hasBox = hasBox;
    return made;
}

class Checks : public ui::Dialog {
  public:
    explicit Checks(std::vector<ui::Tree::Node> nodes) : ui::Dialog(902, "Checks") {
        add<ui::Tree>(kTree).setNodes(std::move(nodes));
        add<ui::Button>(ui::kCancel, "Cancel");
    }
    ui::Tree& tree() const { return get<ui::Tree>(kTree); }
    std::string happened;

  private:
    void onCommand(int id) override {
        if (id == kTree) {
            for (const ui::Tree::Node& each : tree().nodes())
                if (each.hasBox) happened += each.checked ? 'x' : '-';
            happened += ' ';
        }
        Dialog::onCommand(id);
    }
};

class TreeTest : public testing::Test {
  protected:
    void SetUp() override { ui::setBackend(&backend_); }
    void TearDown() override { ui::setBackend(nullptr); }
    std::string run(Checks& dialog, std::vector<Step> steps) {
        steps.push_back({Step::Kind::Show});
        steps.push_back({Step::Kind::Click, "Cancel"});
        backend_.answer(902, std::move(steps));
        dialog.runModal();
        std::string all;
        for (const std::string& line : backend_.log()) all += line + "\n";
        return all;
    }
    static Step check(std::string node, bool on) { return {Step::Kind::Check, "10", std::move(node), on}; }
    static Step key(std::string name) { return {Step::Kind::Key, "", std::move(name)}; }
    CheckedScript backend_;
};

}  // namespace

TEST_F(TreeTest, BoxesAreCheckedByScriptsAndWithTheSpaceBar) {
    Checks dialog({node("TREE", -1, true), node("1", 0), node("SPECIES: OAK", 1), node("POLE", -1, true)});
    const std::string shown = run(dialog, {check("TREE", true),
                                           check("POLE", true),
                                           check("TREE", true),
                                           check("0", false),
                                           {Step::Kind::Pick, "10", "TREE"},
                                           key("Space"),
                                           key("Down"),
                                           key("Space")});
    EXPECT_EQ(dialog.happened, "x- xx -x xx x- ");
    EXPECT_NE(shown.find("    > [ ] POLE\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find("      [x] TREE\n        1\n          SPECIES: OAK\n"), std::string::npos) << shown;
}

TEST_F(TreeTest, ANodeWithoutABoxCannotBeChecked) {
    Checks dialog({node("TREE", -1, true), node("1", 0)});
    backend_.expectUndone("dialog 902 refused (check 10 \"TREE/1\" T): there is no box");
    backend_.expectUndone("dialog 902 refused (check 10 \"nothing\" T): there is no box");
    run(dialog, {check("TREE/1", true), check("nothing", true)});
    dialog.tree().check(1, true);
    EXPECT_FALSE(dialog.tree().nodes()[1].checked);
    EXPECT_EQ(dialog.happened, "");
}

TEST_F(TreeTest, AHundredThousandLeavesAreShownAsAnExcerpt) {
    std::vector<ui::Tree::Node> nodes = {node("TREE", -1, true)};
    for (int i = 1; i <= 10000; ++i) {
        nodes.push_back(node("id " + std::to_string(i), 0));
        const int point = static_cast<int>(nodes.size()) - 1;
        for (int k = 0; k < 10; ++k) nodes.push_back(node("FIELD: " + std::to_string(k), point));
    }
    Checks dialog(std::move(nodes));
    const int filling = dialog.tree().filling();
    const std::string shown = run(dialog, {key("End"), {Step::Kind::Pick, "10", "TREE/id 5000"}});
    EXPECT_NE(shown.find("... 4989 more before"), std::string::npos);
    EXPECT_NE(shown.find("> id 5000\n"), std::string::npos);
    EXPECT_NE(shown.find("... 4990 more behind"), std::string::npos);
    // A selection fills nothing anew.
    EXPECT_EQ(dialog.tree().filling(), filling);
    dialog.tree().setNode(0, "POLE", 0);
    EXPECT_NE(dialog.tree().filling(), filling);
}

TEST_F(TreeTest, TheClockOfAScriptStandsWhereItWasSet) {
    backend_.setClock(1132000000);
    EXPECT_EQ(ui::now(), 1132000000);
    backend_.setClock(std::nullopt);
    EXPECT_GT(ui::now(), 1132000000);
}
