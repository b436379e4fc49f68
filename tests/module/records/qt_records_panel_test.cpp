// The panel of records in the window, by mouse and by keyboard. With NORVANE_PICTURES set to a folder,
// pictures of the window are put there; NORVANE_DARK makes them on a dark ground.
#include <QComboBox>
#include <QCompleter>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QTableView>

#include "hostcad/window/panel_docks.h"
#include "platform/ui/panel.h"
#include "platform/ui/qt/dialog_window.h"
#include "tests/hostcad/window/window_fixture.h"

namespace {

// The numbers of the panel and its controls.
struct RecordsPanel {
    static constexpr int kResource = 1801, kFilter = 1004, kChoice = 1006, kFault = 1007, kGrid = 1008,
                         kCount = 1009, kState = 1010, kZoom = 1011, kNew = 1014, kErase = 1015,
                         kSaveAs = 1017;
};

// Handles of survey points of the sample, with the keys of their records.
const std::vector<std::pair<const char*, const char*>> kLinked = {
    {"315", "74"}, {"31A", "75"}, {"31F", "76"}, {"324", "77"}};

class RecordsInWindow : public Window {
  protected:
    void SetUp() override {
        Window::SetUp();
        if (std::getenv("NORVANE_DARK")) darken();
        backend_.standPanelsIn(window_.modulePanels());
        makeTemplate(*host_, folder_);
        sql("create table TREE (PT_ID TEXT(255), GIS_KEY TEXT(255), SPECIES TEXT(60), DBH INTEGER, NOTES "
            "TEXT(255)); "
            "insert into TREE values ('74','TREE','Oak',30,'leaning'), ('75','TREE','Maple',12,''), "
            "('76','TREE','Oak',41,'by the gate'), ('77','TREE','Ash',8,''), "
            "('900','TREE','Elm',55,'felled')");
        for (const auto& [handle, key] : kLinked) link(handle, key);
        window_.runLine("REGEN");
        QTest::qWait(50);
    }
    void darken() {
        QPalette dark;
        dark.setColor(QPalette::Window, QColor(45, 45, 48));
        dark.setColor(QPalette::WindowText, Qt::white);
        dark.setColor(QPalette::Base, QColor(30, 30, 30));
        dark.setColor(QPalette::AlternateBase, QColor(45, 45, 48));
        dark.setColor(QPalette::Text, Qt::white);
        dark.setColor(QPalette::Button, QColor(60, 60, 64));
        dark.setColor(QPalette::ButtonText, Qt::white);
        dark.setColor(QPalette::ToolTipBase, QColor(60, 60, 64));
        dark.setColor(QPalette::ToolTipText, Qt::white);
        dark.setColor(QPalette::Highlight, QColor(42, 130, 218));
        dark.setColor(QPalette::HighlightedText, Qt::white);
        QApplication::setPalette(dark);
    }
    void sql(const std::string& statements) {
        const std::string command = NORVANE_BIN_DIR "/jet sql '" + path("output.mdb") + "' \"" + statements +
                                    "\" > '" + path("answer") + "'";
        ASSERT_EQ(std::system(command.c_str()), 0) << statements;
    }
    std::string asked(const std::string& statement) {
        sql(statement);
        std::ifstream in(path("answer"));
        return {std::istreambuf_iterator<char>(in), {}};
    }
    void link(const char* handle, const char* key) {
        lisp("(regapp \"ZGEO_GIS_2000\")");
        lisp("(entmod (append (entget (handent \"" + std::string(handle) +
             "\")) (list (list -3 (list \"ZGEO_GIS_2000\" '(1002 . \"{\") '(1000 . \"" +
             path("template.mdb") + "\") '(1000 . \"" + path("output.mdb") +
             "\") '(1000 . \"TREE\") '(1000 . \"PT_ID\") '(1000 . \"" + key + "\") '(1002 . \"}\"))))))");
    }

    static ui::Panel* panel() { return ui::openPanel(RecordsPanel::kResource); }
    void openPanel() {
        window_.activateWindow();
        QTest::keyClick(commandLine(), Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
        rest();
        ASSERT_TRUE(panel());
    }
    static void rest() { QTest::qWait(120); }
    template <class W = QWidget>
    W& widget(int id) {
        return dynamic_cast<W&>(*backend_.window(*panel())->widgetOf(id));
    }
    QTableView& grid() { return widget<QTableView>(RecordsPanel::kGrid); }
    QLineEdit& filter() { return *widget<QComboBox>(RecordsPanel::kFilter).lineEdit(); }
    QString cell(int row, int column) { return grid().model()->index(row, column).data().toString(); }
    QString keys() {
        QStringList all;
        for (int row = 0; row < grid().model()->rowCount(); ++row) all << cell(row, 1);
        return all.join(' ');
    }
    QString textOf(int id) { return widget<QLabel>(id).text(); }
    void clickCell(int row, int column, Qt::KeyboardModifiers with = {}) {
        const QRect place = grid().visualRect(grid().model()->index(row, column));
        QTest::mouseClick(grid().viewport(), Qt::LeftButton, with, place.center());
        rest();
    }
    void press(QWidget& at, Qt::Key key, Qt::KeyboardModifiers with = {}) {
        QTest::keyClick(&at, key, with);
        rest();
    }
    void typeInto(QWidget& at, const char* text) {
        QTest::keyClicks(&at, text);
        rest();
    }
    std::string selected() {
        std::string keys;
        for (const auto& [handle, key] : kLinked)
            for (hostcad::ObjectId id : window_.canvas().selected())
                if (id == byHandle(handle)) keys += (keys.empty() ? "" : " ") + std::string(key);
        return keys;
    }
    // A picture of the window, and of the boxes and lists in front of it.
    void savePicture(const char* name) {
        const char* folder = std::getenv("NORVANE_PICTURES");
        if (!folder) return;
        QPixmap picture = window_.grab();
        for (QWidget* above : QApplication::topLevelWidgets())
            if (above != &window_ && above->isVisible()) {
                QPainter painter(&picture);
                painter.drawPixmap(window_.mapFromGlobal(above->mapToGlobal(QPoint(0, 0))), above->grab());
            }
        picture.save(QString(folder) + "/" + name + ".png");
    }
};

}  // namespace

TEST_F(RecordsInWindow, ByKeyboardAlone) {
    openPanel();
    EXPECT_TRUE(filter().hasFocus());
    EXPECT_EQ(keys(), "74 75 76 77 900");
    EXPECT_EQ(cell(0, 0), "1");
    EXPECT_EQ(cell(4, 0), "");
    EXPECT_EQ(textOf(RecordsPanel::kCount), "5 of 5");
    savePicture("open");

    // A condition, with what may stand in it offered while it is typed.
    typeInto(filter(), "dbh > 10 and sp");
    QCompleter* offers = widget<QComboBox>(RecordsPanel::kFilter).findChild<QCompleter*>();
    ASSERT_TRUE(offers);
    EXPECT_TRUE(offers->popup()->isVisible());
    EXPECT_TRUE(widget<QLabel>(RecordsPanel::kFault).isVisible());
    savePicture("offers");
    press(*offers->popup(), Qt::Key_Down);
    press(*offers->popup(), Qt::Key_Enter);
    EXPECT_EQ(filter().text(), "dbh > 10 and SPECIES");
    EXPECT_TRUE(filter().hasFocus());
    typeInto(filter(), " = 'oak'");
    EXPECT_FALSE(widget<QLabel>(RecordsPanel::kFault).isVisible());
    EXPECT_EQ(keys(), "74 76");
    // Enter leaves the list, where nothing is picked, and then the filter.
    press(*offers->popup(), Qt::Key_Enter);
    EXPECT_EQ(filter().text(), "dbh > 10 and SPECIES = 'oak'");
    press(filter(), Qt::Key_Enter);
    EXPECT_TRUE(grid().hasFocus()) << "Enter goes to the rows";

    // Rows select their entities.
    press(grid(), Qt::Key_Down);
    EXPECT_EQ(selected(), "76");
    EXPECT_TRUE(grid().hasFocus()) << "the keyboard stays";
    press(grid(), Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "74 76");
    savePicture("selected");
    press(grid(), Qt::Key_Z, Qt::AltModifier);
    savePicture("zoomed");
    press(*QApplication::focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_TRUE(grid().hasFocus());

    // A cell is changed, its row written by the key that leaves it, and taken back.
    press(grid(), Qt::Key_Home);
    for (int i = 0; i < 4; ++i) press(grid(), Qt::Key_Right);
    typeInto(grid(), "33");
    press(*QApplication::focusWidget(), Qt::Key_Enter);
    EXPECT_EQ(asked("select DBH from TREE where PT_ID = '76'"), "33\n");
    press(grid(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(asked("select DBH from TREE where PT_ID = '76'"), "41\n");

    press(grid(), Qt::Key_Escape);
    EXPECT_TRUE(commandLine()->hasFocus());
    EXPECT_TRUE(panel());
}

TEST_F(RecordsInWindow, ByMouseAndBothWays) {
    openPanel();
    // The drawing's selection marks rows, and goes to the one.
    for (int i = 0; i < 8; ++i) window_.canvas().zoomBy(1.5, pixelOf("31F"));
    click(pixelOf("31F"));
    rest();
    EXPECT_EQ(grid().currentIndex().row(), 2);
    const QVariant ground = grid().model()->index(2, 2).data(Qt::BackgroundRole);
    EXPECT_TRUE(ground.isValid());
    EXPECT_FALSE(grid().model()->index(1, 2).data(Qt::BackgroundRole).isValid());

    clickCell(0, 2);
    EXPECT_EQ(selected(), "74");
    clickCell(3, 2, Qt::ShiftModifier);
    EXPECT_EQ(selected(), "74 75 76 77");
    QTest::mouseClick(grid().horizontalHeader()->viewport(), Qt::LeftButton, {},
                      QPoint(grid().columnViewportPosition(4) + 5, 5));
    rest();
    EXPECT_EQ(keys(), "77 75 74 76 900");
    savePicture("ordered");

    // What a person does while the panel is at hand: a command, whose sign it shows, and an undo of a link.
    window_.runLine("(entmod (list (cons -1 (handent \"324\")) '(-3 (\"ZGEO_GIS_2000\"))))");
    rest();
    EXPECT_EQ(cell(0, 0), "") << "77 is not linked any more";
    window_.runLine("U");
    rest();
    EXPECT_EQ(cell(0, 0), "1");
    person({[&] { type("LINE"); },
            [&] {
                QTest::qWait(50);
                savePicture("resting");
                press(*commandLine(), Qt::Key_Escape);
            }});
    settle();

    // A row that is half typed is written before a command begins, and the command sees it.
    clickCell(2, 4);
    typeInto(grid(), "31");
    window_.runLine("REGEN");
    EXPECT_EQ(asked("select DBH from TREE where PT_ID = '74'"), "31\n");

    // A row is erased after a question.
    clickCell(4, 2);
    bool isAsked = false;
    QTimer looks;
    looks.callOnTimeout([&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || isAsked) return;
        isAsked = true;
        savePicture("question");
        QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
    });
    looks.start(20);
    QTest::mouseClick(&widget(RecordsPanel::kErase), Qt::LeftButton);
    for (int i = 0; i < 100 && !isAsked; ++i) QTest::qWait(20);
    EXPECT_TRUE(isAsked);
    rest();
    EXPECT_EQ(keys(), "77 75 74 76");
    EXPECT_TRUE(says("1 record"));
}

TEST_F(RecordsInWindow, AnotherDrawingAndATableThatGoes) {
    openPanel();
    hostcad::currentDrawing().setModified(false);  // nobody is asked about it
    open("survey.dxf");
    rest();
    EXPECT_EQ(cell(0, 0), "") << "this one has no links";
    sql("drop table TREE");
    press(grid(), Qt::Key_F5);
    ASSERT_TRUE(panel());
    EXPECT_EQ(grid().model()->rowCount(), 0);
    EXPECT_FALSE(textOf(RecordsPanel::kState).isEmpty());
    savePicture("gone");
    // The first table that comes is shown behind the next command.
    sql("create table BUSH (PT_ID TEXT(9)); insert into BUSH values ('B1')");
    window_.runLine("REGEN");
    rest();
    EXPECT_EQ(keys(), "B1");
    // Another output.
    std::filesystem::create_directory(path("elsewhere"));
    lisp("(cf:gis_smart_prompting 20 \"x\" \"none\" \"" + path("elsewhere/other.mdb") + "\")");
    const std::string command = NORVANE_BIN_DIR "/jet sql '" + path("elsewhere/other.mdb") +
                                "' \"create table POLE (PT_ID TEXT(9)); insert into POLE values ('P1')\"";
    ASSERT_EQ(std::system(command.c_str()), 0);
    window_.runLine("(cf:gis_smart_prompting 2 2 \"" + path("elsewhere/other.mdb") + "\")");
    rest();
    EXPECT_EQ(keys(), "P1");
}

TEST_F(RecordsInWindow, ItGoesWithTheModule) {
    openPanel();
    clickCell(0, 4);
    typeInto(grid(), "32");
    window_.runLine("(arxunload \"norvane_gis\")");
    EXPECT_FALSE(panel());
    rest();
    EXPECT_FALSE(window_.findChild<QDockWidget*>("panel-1801")->isVisible());
    EXPECT_EQ(asked("select DBH from TREE where PT_ID = '74'"), "32\n") << "what was half typed";
    window_.runLine("REGEN");
    rest();
}

TEST_F(RecordsInWindow, ItComesBackWhereItWasAndFitsASmallWindow) {
    window_.resize(800, 600);
    openPanel();
    auto* dock = window_.findChild<QDockWidget*>("panel-1801");
    ASSERT_TRUE(dock);
    const int width = widget(RecordsPanel::kGrid).width();
    EXPECT_GT(width, window_.width() * 3 / 4) << "all of the width is there for the fields";
    savePicture("small");
    // What has no room is scrolled to by who goes there.
    panel()->enter();
    panel()->setFocus(RecordsPanel::kSaveAs);
    rest();
    EXPECT_GT(widget(RecordsPanel::kSaveAs).visibleRegion().boundingRect().width(), 50);
    dock->setFloating(true);
    rest();
    savePicture("floating");
    EXPECT_TRUE(grid().isVisible());
    dock->close();
    rest();
    EXPECT_FALSE(panel());
    window_.runLine("GIS-RECORDS");
    rest();
    ASSERT_TRUE(panel());
    EXPECT_TRUE(dock->isFloating());
}

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setOrganizationName("norvane-test");
    return RUN_ALL_TESTS();
}
