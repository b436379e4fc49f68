// The dialogs of the link tools in a real window. With NORVANE_PICTURES set to a folder, pictures of the
// windows are put there.
#include <QListWidget>
#include <QPushButton>

#include "tests/module/linktools/qt_link_fixture.h"

class QtLinks : public QtLinkTools {
  protected:
    QtLinks()
        : QtLinkTools(
              "create table POLES (PT_ID TEXT(255), GIS_KEY TEXT(255)); insert into POLES values "
              "('P001','POLE'), ('P002','POLE')") {}
};

TEST_F(QtLinks, BlocksAreLinkedByKeyboardAlone) {
    does({title("Create GIS Links"),
          focusOn(1001),
          press(Qt::Key_Down),
          press(Qt::Key_Down),
          press(Qt::Key_Tab),
          focusOn(1002),
          press(Qt::Key_Down),
          [] { savePicture(); },
          press(Qt::Key_Tab),
          press(Qt::Key_Tab),
          focusOn(1004),
          press(Qt::Key_Space),
          focusOn(1002),
          press(Qt::Key_Tab),
          focusOn(1003),
          press(Qt::Key_Down),
          press(Qt::Key_Tab),
          focusOn(1005),
          press(Qt::Key_Space),
          focusOn(1002),
          [] { savePicture(); },
          press(Qt::Key_Tab),
          press(Qt::Key_Tab),
          focusOn(1),
          press(Qt::Key_Enter)});
    const std::string said = runOnAll(4);
    EXPECT_NE(said.find("40 blocks: 2 linked, 0 already linked, 38 passed over"), std::string::npos) << said;
}

TEST_F(QtLinks, BrokenLinksAreShownByKeyboardAlone) {
    lisp(
        "(regapp \"ZGEO_GIS_2000\") (entmake (list '(0 . \"LINE\") '(10 1630500.0 480500.0 0.0) '(11 "
        "1630600.0 480600.0 0.0) "
        "(list -3 (list \"ZGEO_GIS_2000\" '(1000 . \"/jobs/maple/template.mdb\") '(1000 . "
        "\"/jobs/maple/output.mdb\") '(1000 . \"POLES\") '(1000 . \"PT_ID\") '(1000 . \"P001\")))))");
    does({title("Audit GIS Links from Current Drawing"), focusOn(1004),
          see([] { return !child<QPushButton>(1)->isEnabled(); }, "nothing to be fixed yet"),
          press(Qt::Key_S, Qt::AltModifier), [] { savePicture(); }, press(Qt::Key_E, Qt::AltModifier)});
    const std::string said = runOnAll(8);
    EXPECT_TRUE(said.ends_with("1 link to 1 table checked: 1 table broken, 0 links mended, 1 erased."))
        << said;
}

TEST_F(QtLinks, TheDialogsFitASmallScreen) {
    does({title("Create GIS Links"), fitsSmallScreen(), press(Qt::Key_Escape)});
    runOnAll(4);
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
