// The dialog of blocks from records in a real window. With NORVANE_PICTURES set to a folder, pictures of it
// are put there.
#include <QApplication>
#include <QPushButton>

#include "tests/module/linktools/qt_link_fixture.h"

class QtInsertBlocks : public QtLinkTools {
  protected:
    QtInsertBlocks()
        : QtLinkTools(
              "create table POLES (PT_ID TEXT(20), GIS_KEY TEXT(20), OWNER TEXT(40), NORTHING DOUBLE, "
              "EASTING DOUBLE); insert into POLES values ('P101','POLE','CITY',480100,1630100), "
              "('P102','POLE',NULL,480200,1630200)") {}
};

TEST_F(QtInsertBlocks, RecordsAreDrawnByKeyboardAlone) {
    does({title("Insert Blocks Using GIS Data"),
          focusOn(1001),
          press(Qt::Key_Down),
          press(Qt::Key_Tab),
          press(Qt::Key_Tab),
          focusOn(1002),
          press(Qt::Key_Down),
          press(Qt::Key_R, Qt::AltModifier),
          focusOn(1901),
          press(Qt::Key_Tab),
          focusOn(1001),
          press(Qt::Key_Tab),
          press(Qt::Key_Tab),
          press(Qt::Key_Tab),
          focusOn(1003),
          press(Qt::Key_Tab),
          focusOn(1105),
          press(Qt::Key_Tab),
          focusOn(1010),
          type("P"),
          press(Qt::Key_Enter),
          [] { savePicture(); },
          press(Qt::Key_D, Qt::AltModifier),
          title("Alert"),
          press(Qt::Key_N, Qt::AltModifier)});
    printed();
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 17)"), "1");
    EXPECT_TRUE(printed().ends_with("\n2 records: 2 blocks drawn, 0 passed over."));
}

TEST_F(QtInsertBlocks, AllOfItCanFitASmallScreen) {
    does({title("Insert Blocks Using GIS Data"), fitsSmallScreen(), press(Qt::Key_Escape)});
    lisp("(cf:gis_smart_prompting 17)");
}
