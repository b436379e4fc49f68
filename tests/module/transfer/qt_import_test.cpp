// The import of shape files in a real window. With NORVANE_PICTURES set to a folder, pictures of the windows
// are put there.
#include <QLineEdit>
#include <QMessageBox>

#include "platform/ui/qt/qt_backend.h"
#include "tests/module/transfer/import_fixture.h"
#include "tests/platform/ui/qt_person.h"

using namespace norvane;

class QtImport : public ImportTest, protected QtPerson {
  protected:
    void SetUp() override {
        ImportTest::SetUp();
        makeSet("plots", shape::kPolygon, {{"PT_ID"}, {"OWNER"}},
                {{{{0, 0, 0}, {0, 10, 0}, {10, 10, 0}, {0, 0, 0}}, {"A", "SMITH"}}});
        makeSet("shots", shape::kPoint, {{"PT_ID"}, {"HEIGHT", kDbfDouble, 10, 3}},
                {{{{5, 6, 0}}, {"A1", "7.5"}}});
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ImportTest::TearDown();
    }
    static Action title(const char* shown) {
        return until([=] { return window() && window()->windowTitle() == shown; }, shown);
    }
    std::vector<Action> choose(const std::string& set) {
        return {press(Qt::Key_S, Qt::AltModifier), title("Open"),
                [this, set] {
                    window()
                        ->findChild<QLineEdit*>("fileNameEdit")
                        ->setText(QString::fromStdString(path(set + ".shp")));
                },
                press(Qt::Key_Enter), title("Import SHP File")};
    }
    static std::vector<Action> joined(std::vector<std::vector<Action>> parts) {
        std::vector<Action> all;
        for (auto& part : parts) all.insert(all.end(), part.begin(), part.end());
        return all;
    }
    static Action yes() { return press(Qt::Key_Y, Qt::AltModifier); }

    ui::QtBackend qt_;
};

TEST_F(QtImport, AreasComeInByKeyboardAlone) {
    does(joined({{title("Import SHP File"),
                  see([] { return !child<QPushButton>(1)->isEnabled(); }, "nothing to be done yet")},
                 choose("plots"),
                 {press(Qt::Key_Y, Qt::AltModifier), focusOn(1015), type("lots"), [] { savePicture(); },
                  press(Qt::Key_P, Qt::AltModifier)}}));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 11)"), "nil");
    EXPECT_EQ(count("POLYLINE"), 1);
    EXPECT_EQ(output("select PT_ID, OWNER from PLOTS"), "A|SMITH\n");
}

TEST_F(QtImport, PointsComeInWithTheirHeightsFromAField) {
    does(joined(
        {{title("Import SHP File")},
         choose("shots"),
         {press(Qt::Key_U, Qt::AltModifier), press(Qt::Key_Tab), focusOn(1044), press(Qt::Key_Down),
          press(Qt::Key_Down), [] { savePicture(); },
          see([] { return child<QPushButton>(1)->text() == "&Import SHP into a CRD File"; }, "the button"),
          // The two boxes exclude each other.
          press(Qt::Key_W, Qt::AltModifier), press(Qt::Key_I, Qt::AltModifier), title("Alert"), yes()}}));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 11)"), "(\"A1\")");
    EXPECT_EQ(points("shots.crd"), (std::vector<std::string>{"A1 6.000 5.000 7.500 SHOTS"}));
    EXPECT_NE(read("featlink.ini").find("#G1\n"), std::string::npos) << read("featlink.ini");
}

TEST_F(QtImport, ARecordThatCannotBeReadIsAskedAbout) {
    fs::resize_file(path("plots.shp"), fs::file_size(path("plots.shp")) - 8);
    does(joined(
        {{title("Import SHP File")},
         choose("plots"),
         {press(Qt::Key_Y, Qt::AltModifier), focusOn(1015), type("lots"), press(Qt::Key_P, Qt::AltModifier),
          until([] { return qobject_cast<QMessageBox*>(window()) != nullptr; }, "a question"),
          see(
              [] {
                  auto* box = qobject_cast<QMessageBox*>(window());
                  return box && box->button(QMessageBox::Yes)->text() == "&Go on" &&
                         box->button(QMessageBox::No)->text() == "&Stop";
              },
              "its buttons"),
          press(Qt::Key_S, Qt::AltModifier)}}));
    lisp("(cf:gis_smart_prompting 11)");
    EXPECT_NE(printed().find("The import was stopped: nothing was changed."), std::string::npos);
}

TEST_F(QtImport, TheDialogFitsASmallScreen) {
    does(joined({{title("Import SHP File")}, choose("plots"), {fitsSmallScreen(), press(Qt::Key_Escape)}}));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 11)"), "nil");
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
