// The dialog of conditions in a real window. With NORVANE_PICTURES set to a folder, pictures of it are put
// there.
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>

#include "platform/ui/qt/qt_backend.h"
#include "tests/module/selection/select_fixture.h"
#include "tests/platform/ui/qt_person.h"

class QtSelect : public SelectTest, protected QtPerson {
  protected:
    void SetUp() override {
        SelectTest::SetUp();
        lisp(
            "(gis:keep-condition \"Small trees\" \"TREES\" \"DBH < 30\")"
            "(gis:keep-condition \"Stop signs\" \"SIGNS\" \"KIND = 'stop'\")");
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        SelectTest::TearDown();
    }
    static Action title(const char* shown) {
        return until([=] { return window() && window()->windowTitle() == shown; }, shown);
    }
    static Action says(const char* text) {
        return see([text] { return child<QLabel>(1008)->text() == text; }, text);
    }

    ui::QtBackend qt_;
};

TEST_F(QtSelect, AConditionIsTypedMendedKeptAndSelectedByKeyboardAlone) {
    does({title("Select by Condition"), focusOn(1006), type("DBH >> 30"), press(Qt::Key_S, Qt::AltModifier),
          focusOn(1006), [] { savePicture(); }, press(Qt::Key_A, Qt::ControlModifier), type("DBH > 30"),
          press(Qt::Key_O, Qt::AltModifier), says("3 records, 3 entities, 1 record without an entity."),
          press(Qt::Key_K, Qt::AltModifier), title("Keep the Condition"), type("Thick"), press(Qt::Key_Enter),
          title("Select by Condition"), says("Kept as \"Thick\"."), [] { savePicture(); },
          press(Qt::Key_S, Qt::AltModifier)});
    lisp("(gis:choose-condition)");
    EXPECT_EQ(selected(), "(1 3 6)");
    EXPECT_EQ(lisp("(cdr (assoc \"Thick\" (gis:conditions)))"), "(\"TREES\" \"DBH > 30\")");
}

TEST_F(QtSelect, AKeptConditionIsTakenUpByMouse) {
    lisp("(sssetfirst nil (gis:select \"TREES\" \"SPECIES = 'oak'\"))");
    does({title("Select by Condition"), [] { QTest::mouseClick(child<QRadioButton>(1018), Qt::LeftButton); },
          press(Qt::Key_Tab), press(Qt::Key_Tab), press(Qt::Key_Tab), press(Qt::Key_Tab),
          press(Qt::Key_T, Qt::AltModifier), focusOn(1004), press(Qt::Key_Tab), press(Qt::Key_Tab),
          focusOn(1010), press(Qt::Key_Down),
          see([] { return child<QLineEdit>(1006)->text() == "DBH < 30"; }, "the condition is shown"),
          see([] { return child<QComboBox>(1004)->currentText() == "TREES"; }, "with its table"),
          [] { QTest::mouseClick(child<QPushButton>(1), Qt::LeftButton); }});
    lisp("(gis:choose-condition)");
    EXPECT_EQ(selected(), "(1 6)");
}

TEST_F(QtSelect, TheDialogFitsASmallScreen) {
    does({title("Select by Condition"), fitsSmallScreen(), press(Qt::Key_Escape)});
    lisp("(gis:choose-condition)");
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
