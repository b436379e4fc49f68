// A dialog of tiles in a real window: the rectangles that the engine computes from real font metrics, and the
// actions that keys and the mouse set off.
#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QTabBar>
#include <QThread>

#include "module/dialogs/progress_dialog.h"
#include "module/dialogs/tile_dialog.h"
#include "platform/ui/qt/qt_backend.h"
#include "platform/ui/qt/qt_text.h"
#include "tests/platform/ui/qt_person.h"

using namespace norvane;

namespace {

class QtTiles : public testing::Test, protected QtPerson {
  protected:
    void SetUp() override {
        ui::setBackend(&backend_);
        tiles_.create("Create GIS Links", 30, 8, 9, false, TileDialog::kFitTiles);
        tiles_.beginGroup("tables", "Tables");
        tiles_.addList("list", 20, 4, false);
        tiles_.endGroup();
        tiles_.newRow();
        tiles_.addToggle("new", 12, "&New ones");
        tiles_.addEdit("name", 0);
        tiles_.newRow();
        for (const char* name : {"ok", "cancel"})
            tiles_.addButton(name, 8, name, [this](TileDialog& dialog, const std::string& pressed) {
                dialog.getTile("list", list_), dialog.getTile("name", name_), dialog.getTile("new", new_);
                dialog.finish(pressed == "ok");
            });
        for (const char* item : {"LOTS", "TREE"}) tiles_.listAdd("list", item);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ui::setBackend(nullptr);
    }
    void run() {
        tiles_.show();
        while (tiles_.running()) tiles_.pumpOnce();
    }
    int id(const char* name) { return tiles_.tileWindow(name)->id(); }

    ui::QtBackend backend_;
    TileDialog tiles_;
    std::string list_, name_, new_;
};

}  // namespace

TEST_F(QtTiles, StandWhereTheEngineHasPutThem) {
    QFontMetrics metrics(ui::qtFont({"Lucida Console", 9, 0, 400}));
    EXPECT_EQ(tiles_.measures().charHeight, metrics.height());
    does({see(
              [this] {
                  for (const TileRecord& tile : tiles_.tiles()) {
                      QWidget* shown =
                          tile.id ? window()->findChild<QWidget*>(QString::number(tile.id)) : nullptr;
                      if (!shown) continue;
                      const ui::Rect& r = tile.rectangle;
                      if (shown->geometry() != QRect(r.left, r.top, r.width, r.height)) return false;
                      if (!window()->rect().contains(shown->geometry())) return false;
                  }
                  return true;
              },
              "geometry"),
          press(Qt::Key_Escape)});
    run();
    EXPECT_FALSE(tiles_.accepted());
}

TEST_F(QtTiles, AreWorkedByMouseAndKeys) {
    does({[this] {
              auto* list = child<QListWidget>(id("list"));
              QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                                list->visualItemRect(list->item(1)).center());
          },
          press(Qt::Key_N, Qt::AltModifier),
          see([this] { return child<QCheckBox>(id("new"))->isChecked(); }, "toggle"),
          [this] { child<QCheckBox>(id("new"))->setFocus(); }, press(Qt::Key_Tab), type("PARCELS"),
          press(Qt::Key_Tab), press(Qt::Key_Enter)});
    run();
    EXPECT_TRUE(tiles_.accepted());
    EXPECT_EQ(list_ + " " + name_ + " " + new_, "1 PARCELS 1");
}

TEST(QtTilePages, TurnUnderAMenu) {
    QtPerson person;
    ui::QtBackend backend;
    ui::setBackend(&backend);
    std::string pressed;
    {
        TileDialog tiles;
        tiles.create("Pages", 30, 8, 13, false, TileDialog::kFitTiles);
        tiles.addMenu("&File");
        tiles.addMenuEntry("leave", "&Leave", [&](TileDialog& dialog, const std::string& name) {
            pressed += name;
            dialog.finish(true);
        });
        tiles.addTabs("tabs", 0, {"Layers", "Fields"});
        tiles.newRow();
        tiles.setPage(0);
        tiles.beginGroup("layers", "Layers");
        tiles.addColumnList("list", 30, 4, {"Name", "Colour"}, false);
        tiles.newRow();
        tiles.addDropDown("layer", 0, true);
        tiles.endGroup();
        tiles.setPage(1);
        tiles.beginGroup("fields", "Fields");
        tiles.addSpreadsheet("sheet", 40, 3, 2);
        tiles.endGroup();
        tiles.addPicture("picture", 60, 40);
        tiles.setPage(kAllPages);
        tiles.newRow();
        tiles.addProgress("bar", 150);
        tiles.addButton("ok", 8, "OK");
        tiles.listAdd("list", "LOTS\t7");
        tiles.listAdd("layer", "LOTS");
        tiles.setTile("layer", "0");
        tiles.setTile("bar", "40");
        tiles.setFont("ok", {"Arial", 9, 0, 700});
        tiles.focusTile("layer");
        auto id = [&](const char* name) { return tiles.tileWindow(name)->id(); };
        // All that is seen lies inside the window, below the menu, and nothing on anything else but its
        // group.
        auto isInOrder = [&] {
            std::vector<QRect> seen;
            const auto* menu = QtPerson::window()->findChild<QMenuBar*>();
            for (const TileRecord& tile : tiles.tiles()) {
                QWidget* shown = tile.id ? QtPerson::child<QWidget>(tile.id) : nullptr;
                if (!shown || !shown->isVisible()) continue;
                const QRect place(shown->mapTo(QtPerson::window(), QPoint(0, 0)), shown->size());
                if (!QtPerson::window()->rect().contains(place) || place.top() < menu->height()) return false;
                if (tile.type == TileType::kBeginGroup) continue;
                for (const QRect& other : seen)
                    if (other.intersects(place)) return false;
                seen.push_back(place);
            }
            return seen.size() > 3;
        };
        person.does(
            {QtPerson::until([&] { return QtPerson::child<QWidget>(id("layer")) != nullptr; }, "window"),
             QtPerson::see(
                 [&] { return QtPerson::child<QComboBox>(id("layer"))->lineEdit()->hasSelectedText(); },
                 "the text of the drop-down is selected"),
             QtPerson::see([&] { return !QtPerson::child<QWidget>(id("sheet"))->isVisible(); }, "page 1"),
             QtPerson::see(isInOrder, "page 1 in order"), [] { QtPerson::savePicture(); },
             QtPerson::see(
                 [&] {
                     return QtPerson::child<QWidget>(id("ok"))->font() == ui::qtFont({"Arial", 9, 0, 700});
                 },
                 "a font of its own"),
             [] {
                 // No smaller than the dialog asks for: 30 by 8 characters.
                 const QSize before = QtPerson::window()->size();
                 QtPerson::window()->resize(10, 10);
                 EXPECT_GT(QtPerson::window()->width(), 150);
                 QtPerson::window()->resize(before);
             },
             [&] {
                 auto* bar = QtPerson::child<QTabBar>(id("tabs"));
                 QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(1).center());
             },
             QtPerson::see([&] { return QtPerson::child<QWidget>(id("sheet"))->isVisible(); }, "page 2"),
             QtPerson::see([&] { return !QtPerson::child<QWidget>(id("layer"))->isVisible(); }, "page 2"),
             QtPerson::see(isInOrder, "page 2 in order"),
             [] {
                 QtPerson::window()->setWindowTitle("Pages 2");
                 QtPerson::savePicture();
             },
             QtPerson::press(Qt::Key_Tab, Qt::ControlModifier),
             QtPerson::see([&] { return QtPerson::child<QWidget>(id("layer"))->isVisible(); },
                           "page 1 again"),
             [] {
                 QtPerson::window()
                     ->findChild<QMenuBar*>()
                     ->actions()
                     .front()
                     ->menu()
                     ->actions()
                     .front()
                     ->trigger();
             }});
        tiles.show();
        while (tiles.running()) tiles.pumpOnce();
    }
    EXPECT_TRUE(person.finished());
    EXPECT_EQ(pressed, "leave");
    ui::setBackend(nullptr);
}

class QtProgress : public testing::Test, protected QtPerson {
  protected:
    void SetUp() override { ui::setBackend(&backend_); }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ui::setBackend(nullptr);
    }

    ui::QtBackend backend_;
};

TEST_F(QtProgress, MovesAndIsEndedByTheButton) {
    constexpr long kMany = 2000;  // some ten seconds
    does({until(
              [] {
                  auto* bar = child<QProgressBar>(ProgressDialog::kBar);
                  return bar && bar->value() > bar->minimum() && bar->isVisible();
              },
              "bar"),
          see([] { return child<QLabel>(ProgressDialog::kText)->text().startsWith("Record "); }, "text"),
          [] { savePicture(); }, clickButton(ui::kCancel)});
    long done = 0;
    {
        ProgressDialog progress("Copy", kMany);
        while (done < kMany && progress.step(done, "Record " + std::to_string(done))) {
            QThread::msleep(5);
            ++done;
        }
        EXPECT_TRUE(progress.cancelled());
    }
    EXPECT_LT(done, kMany);
    EXPECT_EQ(window(), nullptr);
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
