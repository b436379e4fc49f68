// The dialog of links from areas in a real window. With NORVANE_PICTURES set to a folder, pictures of it are
// put there.
#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>

#include "platform/ui/qt/qt_backend.h"
#include "tests/module/linktools/areas_fixture.h"
#include "tests/platform/ui/qt_person.h"

class QtAreas : public Areas, protected QtPerson {
  protected:
    enum { kTables = 2023, kFields = 2025, kLayers = 2027, kLayer = 2028, kNew = 2029, kOk = 2030 };
    void SetUp() override {
        Areas::SetUp();
        makeTable({{"NUM", dbText}, {"OWNER", dbText}, {"ACRES", dbDouble}});
        square(0, 0, 100);
        label(50, 50, "A");
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        Areas::TearDown();
    }
    static Action title() {
        return until([] { return window() && window()->windowTitle() == "Create GIS Links"; }, "the dialog");
    }
    void run(const std::string& mode) {
        inputs_ = {mode, "ALL", ""};
        lisp("(cf:gis_smart_prompting 20 " + quoted("") + " " + quoted("template.mdb") + " " +
             quoted("output.mdb") + ")");
    }
    static bool isEnabled(int id) { return child<QWidget>(id) && child<QWidget>(id)->isEnabled(); }

    ui::QtBackend qt_;
};

TEST_F(QtAreas, ALayerIsNamedByKeyboardAlone) {
    does({title(), [] { savePicture(); },
          see([] { return !isEnabled(kLayers) && !isEnabled(kLayer); }, "no layer yet"),
          // From the list of tables Tab leads to the switch, and that to the edit.
          press(Qt::Key_Tab),
          see([] { return QApplication::focusWidget() == child<QCheckBox>(kNew); }, "the switch"),
          press(Qt::Key_Space), see([] { return isEnabled(kLayers) && isEnabled(kLayer); }, "a layer"),
          see([] { return QApplication::focusWidget() == child<QLineEdit>(kLayer); }, "the edit"),
          type("areas"), [] { window()->resize(window()->width() + 150, window()->height() + 120); },
          [] { savePicture(); },
          see(
              [] {
                  for (int id : {2023, 2025, 2027, 2028, 2030, 2031})
                      if (!window()->rect().contains(child<QWidget>(id)->geometry())) return false;
                  return !child<QWidget>(kTables)->geometry().intersects(
                             child<QWidget>(kLayers)->geometry()) &&
                         !child<QWidget>(kTables)->geometry().intersects(child<QWidget>(kFields)->geometry());
              },
              "all of it, side by side"),
          clickButton(kOk)});
    run("");
    EXPECT_EQ(lisp("(sslength (ssget \"X\" '((8 . \"AREAS\") (-3 (\"ZGEO_GIS_2000\")))))"), "1");
    EXPECT_EQ(rows("output.mdb", "SELECT NUM FROM LOT"), (std::vector<std::string>{"A"}));
}

TEST_F(QtAreas, FaultsAreNamedBeforeAnythingIsWritten) {
    square(200, 0, 50);
    line(50, 0, 50, 99.95);
    label(900, 900, "LOT 17");
    does({title(), clickButton(kOk),
          until([] { return window() && window()->windowTitle() == "Faults of areas"; }, "the question"),
          [] { savePicture(); }, press(Qt::Key_N, Qt::AltModifier)});
    run("");
    EXPECT_EQ(links(), "\"\"");
    EXPECT_TRUE(rows("output.mdb", "SELECT NUM FROM LOT").empty());
}

TEST_F(QtAreas, EscapeLeavesEverythingAsItWas) {
    does({title(), [] { savePicture(); }, press(Qt::Key_Escape)});
    run("Handle");
    EXPECT_EQ(links(), "\"\"");
    EXPECT_TRUE(rows("output.mdb", "SELECT NUM FROM LOT").empty());
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
