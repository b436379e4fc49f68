// The dialogs of title blocks in a real window. With NORVANE_PICTURES set to a folder, pictures of the
// windows are put there.
#include <QListWidget>
#include <QPushButton>
#include <QTableView>

#include "platform/ui/qt/qt_backend.h"
#include "tests/module/titleblocks/titles_fixture.h"
#include "tests/platform/ui/qt_person.h"

class QtTitles : public Titles, protected QtPerson {
  protected:
    void SetUp() override {
        Titles::SetUp();
        if (!openTitles()) GTEST_SKIP() << "the shared drawing of title blocks is not there";
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        Titles::TearDown();
    }
    static Action title(const char* begins) {
        return until([=] { return window() && window()->windowTitle().startsWith(begins); }, begins);
    }
    static std::vector<Action> presses(Qt::Key key, int times) {
        return std::vector<Action>(static_cast<size_t>(times), press(key));
    }
    void doesAll(std::initializer_list<std::vector<Action>> parts) {
        std::vector<Action> all;
        for (const std::vector<Action>& part : parts) all.insert(all.end(), part.begin(), part.end());
        does(std::move(all));
    }
    static void picture() { savePicture(); }

    ui::QtBackend qt_;
};

TEST_F(QtTitles, ABlockIsFilledByKeyboardAlone) {
    writeSettings(titleLinks("OWNERS", "owners.dbf"));
    doesAll({{title("Insert/Update"), focusOn(1001), press(Qt::Key_Down), press(Qt::Key_Tab)},
             {focusOn(1003)},
             presses(Qt::Key_Down, 8),
             {[] { picture(); }, press(Qt::Key_D, Qt::AltModifier), press(Qt::Key_B, Qt::AltModifier),
              press(Qt::Key_C, Qt::AltModifier), title("Compare"), [] { picture(); }, press(Qt::Key_Escape),
              title("Insert/Update"), press(Qt::Key_P, Qt::AltModifier), press(Qt::Key_I, Qt::AltModifier),
              title("Preview"), focusOn(1003), [] { picture(); }, press(Qt::Key_P, Qt::AltModifier),
              press(Qt::Key_I, Qt::AltModifier)}});
    EXPECT_TRUE(run().starts_with("\nTITLE: 11 blocks, 7 updated"));
}

TEST_F(QtTitles, LinksAreMadeByKeyboardAlone) {
    // Paths count from where the program runs.
    const fs::path before = fs::current_path();
    fs::current_path(path(""));
    const std::string lines = ::text::replaceAll(titleLinks("JOBS", "jobs.mdb"), path(""), "");
    writeSettings(lines);
    doesAll({{title("Link Information"), press(Qt::Key_L, Qt::AltModifier), title("Saved Blocks"),
              focusOn(1001), press(Qt::Key_Down), [] { picture(); }, press(Qt::Key_O, Qt::AltModifier),
              title("Link Information"),
              [] {
                  QTest::mouseClick(window()->findChild<QTableView*>("1015")->viewport(), Qt::LeftButton,
                                    Qt::NoModifier, QPoint(20, 10));
              },
              [] {
                  auto* list = window()->findChild<QTableView*>("1015");
                  QTest::mouseDClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 10));
              },
              [] { picture(); }, press(Qt::Key_N, Qt::AltModifier), press(Qt::Key_X, Qt::AltModifier)},
             {[] {
                 // The link is in its place again; leaving asks, since it is not saved.
                 if (window())
                     for (QPushButton* button : window()->findChildren<QPushButton*>())
                         if (button->text().contains("Yes")) QTest::mouseClick(button, Qt::LeftButton);
             }}});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 5)"), "0");
    EXPECT_EQ(settings(), lines);
    fs::current_path(before);
}

TEST_F(QtTitles, AListOfManyKeysIsThereAtOnce) {
    constexpr int kKeys = 100000;
    std::string table = "JOBNO,PROJECT\n";
    for (int i = 0; i < kKeys; ++i) table += "K" + std::to_string(i) + ",P\n";
    write("many.csv", table);
    writeSettings(links("TITLE", "JOBNO", "MANY", "many.csv", {"JOBNO", "PROJECT"}));
    auto rows = [] { return window()->findChild<QTableView*>("1004")->model()->rowCount(); };
    does({title("Insert/Update"), focusOn(1001), press(Qt::Key_Down), press(Qt::Key_D, Qt::AltModifier),
          press(Qt::Key_Tab), see([=] { return rows() == kKeys; }, "all keys"),
          [] { window()->findChild<QLineEdit*>("1006")->setFocus(); }, type("999"),
          see([=] { return rows() > 0 && rows() < kKeys; }, "keys with the part that was typed"),
          press(Qt::Key_Escape)});
    run();
}

TEST_F(QtTitles, TheDialogsFitASmallScreen) {
    writeSettings(titleLinks("OWNERS", "owners.dbf"));
    does({title("Insert/Update"), fitsSmallScreen(), press(Qt::Key_Escape)});
    run();
    does({title("Link Information"), fitsSmallScreen(), press(Qt::Key_Escape)});
    lisp("(cf:gis_smart_prompting 5)");
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
