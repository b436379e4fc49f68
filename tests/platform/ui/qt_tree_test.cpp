// Trees with many nodes and boxes in a real window.
#include <QTreeWidget>

#include "platform/ui/backend.h"
#include "platform/ui/qt/qt_backend.h"
#include "tests/platform/ui/qt_person.h"

namespace {

constexpr int kTree = 10;

class Forest : public ui::Dialog {
  public:
    Forest() : ui::Dialog(903, "Forest") {
        add<ui::Tree>(kTree).setNodes(manyNodes());
        add<ui::Button>(ui::kCancel, "Cancel");
        setLayout(ui::column({ui::item(kTree, 1), ui::item(ui::kCancel)}));
        setSize({400, 300});
    }
    ui::Tree& tree() const { return get<ui::Tree>(kTree); }
    int commands = 0;

    // Two features with a box, 5 000 points and 40 000 leaves.
    static std::vector<ui::Tree::Node> manyNodes() {
        std::vector<ui::Tree::Node> nodes;
        auto add = [&](int parent, std::string text) {
            ui::Tree::Node node;
            node.text = std::move(text);
            node.parent = parent;
            node.hasBox = node.checked = parent < 0;
            nodes.push_back(std::move(node));
            return static_cast<int>(nodes.size()) - 1;
        };
        for (const char* feature : {"TREE", "POLE"}) {
            const int top = add(-1, feature);
            for (int i = 0; i < 2500; ++i) {
                const int point = add(top, std::to_string(i));
                for (int k = 0; k < 8; ++k) add(point, "FIELD: " + std::to_string(k));
            }
        }
        return nodes;
    }

  private:
    void onCommand(int id) override {
        commands += id == kTree;
        Dialog::onCommand(id);
    }
};

class QtTree : public testing::Test, protected QtPerson {
  protected:
    void SetUp() override { ui::setBackend(&backend_); }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ui::setBackend(nullptr);
    }
    static QTreeWidget* tree() { return child<QTreeWidget>(kTree); }
    static Qt::CheckState stateOf(int top) { return tree()->topLevelItem(top)->checkState(0); }
    ui::QtBackend backend_;
};

}  // namespace

TEST_F(QtTree, BoxesAreCheckedByMouseAndKeys) {
    Forest forest;
    does({see([] { return stateOf(0) == Qt::Checked && stateOf(1) == Qt::Checked; }, "both checked"),
          [] {
              // The box stands in front of the icon.
              const QRect place = tree()->visualItemRect(tree()->topLevelItem(1));
              QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {},
                                QPoint(place.left() + 10, place.center().y()));
          },
          see([&] { return stateOf(1) == Qt::Unchecked && forest.commands == 1; }, "the second cleared"),
          press(Qt::Key_Up), press(Qt::Key_Up), press(Qt::Key_Home), press(Qt::Key_Space),
          see([&] { return stateOf(0) == Qt::Unchecked && forest.commands == 2; }, "the first cleared"),
          [&] { forest.tree().check(1 + 2500 * 9, true); },
          see([] { return stateOf(1) == Qt::Checked; }, "shown again"), press(Qt::Key_Right),
          see([] { return tree()->topLevelItem(0)->isExpanded(); }, "open"),
          [&] { forest.tree().setNodes({}); }, see([] { return tree()->topLevelItemCount() == 0; }, "empty"),
          press(Qt::Key_Escape)});
    forest.runModal();
    EXPECT_FALSE(forest.tree().nodes().size());
}

TEST_F(QtTree, ASelectionMakesNoNewTree) {
    Forest forest;
    QTreeWidgetItem* first = nullptr;
    does({[&] { first = tree()->topLevelItem(0); }, [&] { forest.tree().select(5000); },
          see([&] { return tree()->topLevelItem(0) == first; }, "the same items"),
          see([] { return tree()->currentItem() && tree()->currentItem()->text(0) == "FIELD: 3"; },
              "the selected one"),
          press(Qt::Key_Escape)});
    forest.runModal();
}
