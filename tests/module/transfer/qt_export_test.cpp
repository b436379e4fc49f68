// The dialog of the export in a real window, by keyboard and by mouse. With NORVANE_PICTURES set to a folder,
// pictures of it are put there.
#include <QCheckBox>
#include <QListWidget>

#include "platform/ui/qt/qt_backend.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/ui/qt_person.h"

class QtExport : public ModuleTest, protected QtPerson {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        ui::setBackend(&qt_);
        lisp("(setq tmpl$ \"\" outp$ " + quoted("output.mdb") +
             ") (load \"" NORVANE_SOURCE_DIR "/tests/module/transfer/shapes.lsp\")");
        lisp(
            "(foreach feature '(\"MONUMENT\" \"TREE\" \"MANHOLE\" \"HYDRANT\") (point '(0.0 0.0 0.0) nil "
            "(linked feature \"1\")))"
            "(foreach feature '(\"EDGE OF PAVEMENT\" \"FENCE\") (line '(0.0 0.0 0.0) '(1.0 0.0 0.0) (linked "
            "feature \"1\")))"
            "(polyline t 0.0 '((0.0 0.0) (4.0 0.0 0.5) (4.0 3.0)) (linked \"LOT\" \"1\"))");
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ModuleTest::TearDown();
    }
    void exportAll() {
        inputs_ = {"ALL", ""};
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 9 " + quoted("set.shp") + ")"), "0");
    }
    static Action picture(const char* name) {
        return [=] {
            if (const char* folder = getenv("NORVANE_PICTURES"))
                window()->grab().save(QString("%1/%2.png").arg(folder).arg(name));
        };
    }
    static Action selected(int list, int count) {
        return see([=] { return child<QListWidget>(list)->selectedItems().size() == count; },
                   std::to_string(count) + " selected in " + std::to_string(list));
    }
    static Action clickItem(int list, int row) {
        return [=] {
            auto* widget = child<QListWidget>(list);
            QTest::mouseClick(widget->viewport(), Qt::LeftButton, {},
                              widget->visualItemRect(widget->item(row)).center());
        };
    }

    ui::QtBackend qt_;
};

TEST_F(QtExport, IsDoneByKeyboardAlone) {
    does({focusOn(1004), press(Qt::Key_Space), selected(1001, 4), selected(1002, 2), selected(1003, 1),
          press(Qt::Key_Tab), focusOn(1001),
          see([] { return !child<QCheckBox>(1004)->isChecked(); }, "the mark is gone"), selected(1001, 4),
          press(Qt::Key_Z, Qt::AltModifier), press(Qt::Key_X, Qt::AltModifier),
          press(Qt::Key_D, Qt::AltModifier), press(Qt::Key_Tab), focusOn(1902), type("0.05"),
          picture("window-export"), press(Qt::Key_Enter)});
    exportAll();
    for (const char* set : {"set_11_MONUMENT", "set_11_TREE", "set_13_FENCE", "set_15_LOT"})
        EXPECT_TRUE(fs::exists(path(std::string(set) + ".shp"))) << set;
    // What was chosen is chosen again by a letter.
    does({press(Qt::Key_L, Qt::AltModifier), selected(1001, 4), selected(1003, 1),
          see([] { return child<QLineEdit>(1902)->text() == "0.05"; }, "the deviation"),
          press(Qt::Key_Escape)});
    exportAll();
}

TEST_F(QtExport, RowsAreChosenWithTheMouse) {
    does({clickItem(1001, 1), clickItem(1001, 3), selected(1001, 2), clickItem(1001, 1), selected(1001, 1),
          clickItem(1003, 0),
          [] {
              auto* list = child<QListWidget>(1003);
              QTest::mouseDClick(list->viewport(), Qt::LeftButton, {},
                                 list->visualItemRect(list->item(0)).center());
          },
          selected(1003, 0), selected(1001, 1),
          see([] { return child<QLineEdit>(1007)->toolTip().contains("0.316"); }, "the reason"),
          press(Qt::Key_Enter)});
    exportAll();
    EXPECT_TRUE(fs::exists(path("set.shp")));
}

TEST_F(QtExport, FitASmallScreen) {
    does({fitsSmallScreen(), press(Qt::Key_Escape)});
    exportAll();
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
