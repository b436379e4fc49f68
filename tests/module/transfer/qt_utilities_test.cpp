// Database File Utilities in a real window. With NORVANE_PICTURES set to a folder, pictures of the windows
// are put there.
#include <QLineEdit>
#include <QTableView>
#include <QTreeWidget>

#include "platform/ui/qt/qt_backend.h"
#include "tests/module/transfer/utilities_fixture.h"
#include "tests/platform/ui/qt_person.h"

class QtUtilities : public UtilitiesTest, protected QtPerson {
  protected:
    void SetUp() override {
        UtilitiesTest::SetUp();
        std::string notes;
        for (int i = 4; i < 44; ++i)
            notes += "PT_ID:" + std::to_string(i) + "  GIS_FILE:" + (i % 3 ? "POLE" : "TREE") +
                     ".GIS\nPt Data,480354.5255,1630716.6981,561.761,POLE\nHRMS:0.010 VRMS:0.038 "
                     "FIXED\nOwner,CITY "
                     "OF MONROE\n";
        write("a.not", notes);
        write("p.txt",
              "1,480899.8034,1630627.4917,554.043,IP FND\n2,480611.1966,1630658.2629,556.678,EP\nbad,line\n");
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        UtilitiesTest::TearDown();
    }
    static Action title(const char* shown) {
        return until([=] { return window() && window()->windowTitle() == shown; }, shown);
    }
    std::vector<Action> choose(const std::string& file, const char* after) {
        return {
            title("Open"),
            [this, file] {
                window()->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(path(file)));
            },
            press(Qt::Key_Enter), title(after)};
    }
    static std::vector<Action> joined(std::vector<std::vector<Action>> parts) {
        std::vector<Action> all;
        for (auto& part : parts) all.insert(all.end(), part.begin(), part.end());
        return all;
    }
    static Action alt(Qt::Key key) { return press(key, Qt::AltModifier); }

    ui::QtBackend qt_;
};

TEST_F(QtUtilities, NotesAreImportedAndTakenBackByKeyboardAlone) {
    does(
        joined({{title("Database File Utilities"), alt(Qt::Key_N)},
                choose("a.not", "Import Note Data"),
                {focusOn(1021),
                 press(Qt::Key_Tab),
                 press(Qt::Key_Tab),
                 press(Qt::Key_Tab),
                 focusOn(1024),
                 press(Qt::Key_Down),
                 press(Qt::Key_Right),
                 press(Qt::Key_Down),
                 press(Qt::Key_Right),
                 [] { savePicture(); },
                 press(Qt::Key_End),
                 press(Qt::Key_Space),
                 see([] { return child<QTreeWidget>(1024)->topLevelItem(1)->checkState(0) == Qt::Unchecked; },
                     "the second feature is not checked"),
                 alt(Qt::Key_I),
                 title("Report of the Import"),
                 [] { savePicture(); },
                 press(Qt::Key_Escape),
                 title("Import Note Data"),
                 see([] { return child<QPushButton>(1906)->isEnabled(); }, "there is something to take back"),
                 alt(Qt::Key_X)}}));
    lisp("(cf:gis_smart_prompting 16)");
    EXPECT_EQ(output("select count(*) from POLE"), "27\n");
    EXPECT_EQ(outputOf("mdb-tables -1 " + path("output.mdb")), "POLE\n");
}

TEST_F(QtUtilities, ATextIsImported) {
    auto focusTable = [](int id) { return [=] { child<QTableView>(id)->setFocus(); }; };
    does(joined({{title("Database File Utilities"), [] { child<QPushButton>(1023)->setFocus(); },
                  focusOn(1023), press(Qt::Key_Space)},
                 choose("p.txt", "Import ASCII Data"),
                 {focusTable(1004), focusOn(1004), press(Qt::Key_Down), alt(Qt::Key_T), focusTable(1022),
                  focusOn(1022), alt(Qt::Key_K), [] { child<QLineEdit>(1046)->setFocus(); }, focusOn(1046),
                  type("shots"), [] { savePicture(); }, alt(Qt::Key_O), title("Report of the Import"),
                  press(Qt::Key_Escape), title("Database File Utilities"), press(Qt::Key_Escape)}}));
    lisp("(cf:gis_smart_prompting 16)");
    EXPECT_EQ(output("select PT_ID, FIELD5 from SHOTS"), "1|IP FND\n2|EP\n");
}

TEST_F(QtUtilities, TheDialogsFitASmallScreen) {
    does(joined(
        {{title("Database File Utilities"), fitsSmallScreen(), [] { child<QPushButton>(1023)->click(); }},
         choose("p.txt", "Import ASCII Data"),
         {fitsSmallScreen(), press(Qt::Key_Escape), title("Database File Utilities"),
          press(Qt::Key_Escape)}}));
    lisp("(cf:gis_smart_prompting 16)");
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
