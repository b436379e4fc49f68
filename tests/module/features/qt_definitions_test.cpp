// Print, upload and import of the editor in real windows. With NORVANE_PICTURES set to a folder, pictures of
// the windows and a page are put there.
#include <QListWidget>
#include <QTableView>
#include <QTreeWidget>

#include "platform/ui/qt/qt_backend.h"
#include "tests/module/features/many_features.h"
#include "tests/platform/dao/scratch.h"
#include "tests/platform/ui/qt_person.h"

class QtDefinitions : public ManyFeatures, protected QtPerson {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        qputenv("HOME", path("").c_str());
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ModuleTest::TearDown();
    }
    void runEditor(std::vector<Action> actions) {
        ui::setBackend(&qt_);
        std::vector<Action> all = {title("Define Template Database")};
        all.insert(all.end(), actions.begin(), actions.end());
        for (Action action : {press(Qt::Key_Escape), press(Qt::Key_Y, Qt::AltModifier)})
            all.push_back(action);
        does(all);
        EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
        ui::setBackend(&ui_);
    }
    static Action title(const std::string& shown) {
        return until([=] { return window() && window()->windowTitle().toStdString() == shown; }, shown);
    }
    static Action picture() {
        return [] { savePicture(); };
    }
    // An entry by the letters of its menu and its own.
    static std::vector<Action> entry(Qt::Key menu, Qt::Key item) {
        return {press(menu, Qt::AltModifier), [=] {
                    QWidget* popup = QApplication::activePopupWidget();
                    ASSERT_NE(popup, nullptr);
                    QTest::keyClick(popup, item);
                }};
    }
    static std::vector<Action> joined(std::vector<std::vector<Action>> parts) {
        std::vector<Action> all;
        for (auto& part : parts) all.insert(all.end(), part.begin(), part.end());
        return all;
    }
    std::string file() const { return path("Print GIS Definitions from Template MDB.pdf"); }
    std::string pageText(const std::string& options) const {
        return outputOf("pdftotext -layout " + options + " '" + file() + "' -");
    }

    ui::QtBackend qt_;
};

static const char* const kDialog = "Print/Preview GIS from MDB";

TEST_F(QtDefinitions, FiveHundredFeaturesBecomeAFileOfPages) {
    manyFeatures(500);
    runEditor({press(Qt::Key_P, Qt::ControlModifier), title(kDialog), focusOn(1001),
               press(Qt::Key_N, Qt::AltModifier), press(Qt::Key_S, Qt::AltModifier),
               press(Qt::Key_T, Qt::AltModifier), press(Qt::Key_F, Qt::AltModifier),
               see([] { return child<QTableView>(1004)->model()->rowCount() == 6000; }, "rows"),
               press(Qt::Key_P, Qt::AltModifier),
               until([] { return window() && !child<QTableView>(1004); }, "printer"), press(Qt::Key_Enter),
               title(kDialog), press(Qt::Key_Q, Qt::AltModifier), title("Define Template Database")});
    ASSERT_TRUE(fs::exists(file()));
    EXPECT_NE(printed().find("\n172 pages of 500 features printed."), std::string::npos);
    if (std::system("pdftotext -v >/dev/null 2>&1") != 0) GTEST_SKIP() << "pdftotext is not installed";
    const std::string all = pageText("");
    EXPECT_EQ(std::count(all.begin(), all.end(), '\f'), 172);
    const std::string second = pageText("-f 2 -l 2");
    EXPECT_NE(second.find(path("t.mdb").substr(0, 20)), std::string::npos) << second;
    EXPECT_NE(second.find("Page 2 of 172"), std::string::npos) << second;
    // 35 rows of which every one has a text, and the foot.
    size_t lines = 0;
    for (size_t at = 0; at < second.size(); at = second.find('\n', at) + 1) {
        if (second.find('\n', at) == std::string::npos) break;
        if (second[at] != '\n') ++lines;
    }
    EXPECT_EQ(lines, 36u) << second;
    for (const char* text : {"GIS NAME:", "F499", "CAT.-C9", "RED 499", "Real", "Char, required"})
        EXPECT_NE(all.find(text), std::string::npos) << text;
    if (const char* folder = getenv("NORVANE_PICTURES"))
        std::system(
            ("pdftoppm -png -r 60 -f 1 -l 1 '" + file() + "' '" + std::string(folder) + "/page'").c_str());
}

TEST_F(QtDefinitions, TheSheetIsFilledByKeyboardAlone) {
    smallTemplate();
    const auto rows = [](int count) {
        return see([=] { return child<QTableView>(1004)->model()->rowCount() == count; },
                   std::to_string(count) + " rows");
    };
    runEditor({press(Qt::Key_P, Qt::ControlModifier), title(kDialog), focusOn(1001),
               // The third category, and its first feature.
               press(Qt::Key_Down), press(Qt::Key_Down), press(Qt::Key_Down), press(Qt::Key_Right),
               press(Qt::Key_Down), press(Qt::Key_A, Qt::AltModifier), rows(1),
               press(Qt::Key_S, Qt::AltModifier), rows(3), press(Qt::Key_N, Qt::AltModifier), rows(21),
               press(Qt::Key_T, Qt::AltModifier), picture(),
               // Only where a feature begins it can be taken off.
               [] { child<QTableView>(1004)->setFocus(); }, focusOn(1004), press(Qt::Key_Down),
               see([] { return !child<QPushButton>(1005)->isEnabled(); }, "nothing to take off"),
               press(Qt::Key_Up), see([] { return child<QPushButton>(1005)->isEnabled(); }, "a feature"),
               press(Qt::Key_R, Qt::AltModifier), rows(17), press(Qt::Key_E, Qt::AltModifier), rows(0),
               press(Qt::Key_Q, Qt::AltModifier), title("Define Template Database")});
}

TEST_F(QtDefinitions, ATransferThatHangsIsCancelled) {
    smallTemplate();
    for (const char* folder : {"bin", "tmp"}) fs::create_directory(path(folder));
    lisp("(setq exedir$ " + quoted("bin") + " tmpdir$ " + quoted("tmp/") + ")");
    write("codes.fld", "TREE,Tree,X\n");
    write("bin/padlink.exe", "#!/bin/sh\nexec sleep 60\n");
    fs::permissions(path("bin/padlink.exe"), fs::perms::owner_all);
    runEditor(joined({entry(Qt::Key_G, Qt::Key_U),
                      {title("Open"),
                       [this] {
                           window()
                               ->findChild<QLineEdit*>("fileNameEdit")
                               ->setText(QString::fromStdString(path("codes.fld")));
                       },
                       press(Qt::Key_Enter), title("Upload Features"), picture(),
                       press(Qt::Key_C, Qt::AltModifier), title("Define Template Database")}}));
    EXPECT_TRUE(fs::is_empty(path("tmp")));
    EXPECT_NE(printed().find("\nThe transfer was cancelled"), std::string::npos);
}

TEST_F(QtDefinitions, ATableIsChosenByKeyboardAlone) {
    newTemplate();
    name("lights");
    box("Yes");
    edit({menu("Category/New")});
    CDaoDatabase database;
    database.Create(path("out.mdb"));
    database.Close();
    EXPECT_EQ(sqlite("out.mdb",
                     "CREATE TABLE HYDRANTS (PT_ID TEXT(20), GIS_KEY TEXT(20), MAKE TEXT(50)); CREATE TABLE "
                     "LAMPS (OWNER "
                     "TEXT(50), NORTHING DOUBLE, WATTS LONG, HEIGHT DOUBLE, SEEN DATETIME, NOTES MEMO)"),
              "");
    write("featlink.ini", "#1" + path("t.mdb") + "\n#2" + path("out.mdb") + "\n");
    const char* chooser = "Create New Feature Using Output Database Table";
    runEditor(joined({entry(Qt::Key_F, Qt::Key_I),
                      {title(chooser),
                       focusOn(1004),
                       press(Qt::Key_Down),
                       press(Qt::Key_Down),
                       see([] { return child<QTableView>(1903)->model()->rowCount() == 5; }, "fields"),
                       press(Qt::Key_Tab),
                       focusOn(1903),
                       press(Qt::Key_Down),
                       press(Qt::Key_Space),
                       picture(),
                       press(Qt::Key_O, Qt::AltModifier),
                       title("Details"),
                       press(Qt::Key_Enter),
                       title("Define Template Database *"),
                       press(Qt::Key_S, Qt::ControlModifier),
                       title("Feature Name"),
                       see([] { return child<QLineEdit>(1001)->text() == "LAMPS"; }, "the table's name"),
                       press(Qt::Key_Enter),
                       title("Select Category"),
                       press(Qt::Key_Enter),
                       title("Define Template Database"),
                       picture()}}));
    EXPECT_EQ(sqlite("t.mdb", "select FIELD_NAME from ZGEO_SMART_PROMPTING order by NO_GIS"),
              "NORTHING\n.WATTS\n..HEIGHT\nNOTES\n");
    EXPECT_EQ(sqlite("t.mdb", "select TABLE_NAME from ZGEO_LINKS where GIS_NAME = 'LAMPS'"), "LAMPS\n");
}

TEST_F(QtDefinitions, TheDialogsFitASmallScreen) {
    smallTemplate();
    runEditor(joined({{press(Qt::Key_P, Qt::ControlModifier), title(kDialog), fitsSmallScreen(),
                       press(Qt::Key_Q, Qt::AltModifier), title("Define Template Database")},
                      entry(Qt::Key_F, Qt::Key_I),
                      {title("Create New Feature Using Output Database Table"), fitsSmallScreen(),
                       press(Qt::Key_Escape), title("Define Template Database")}}));
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
