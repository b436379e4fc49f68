// Every kind of control, the boxes and print jobs in real windows on the offscreen platform, worked by key
// and mouse events: what a person does must reach the model, and what the model does must be seen.
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPdfWriter>
#include <QProgressBar>
#include <QSettings>
#include <QStyleOption>
#include <QTabBar>
#include <QTreeWidget>
#include <filesystem>
#include <fstream>

#include "platform/ui/backend.h"
#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/framed_marks.h"
#include "platform/ui/qt/qt_backend.h"
#include "platform/ui/qt/qt_printing.h"
#include "tests/platform/dao/scratch.h"
#include "tests/platform/ui/qt_person.h"

namespace fs = std::filesystem;

namespace {

enum Id {
    kMenu = 100,
    kName,
    kNameLabel,
    kTree,
    kList,
    kMany,
    kDrop,
    kTabs,
    kBar,
    kMark,
    kApply = 200,
    kSave
};

class Everything : public ui::Dialog {
  public:
    Everything() : ui::Dialog(900, "Everything") {
        auto& menu = add<ui::Menu>(kMenu);
        menu.entries() = {{0, "&File", 0, true, false, ""}, {kSave, "&Save", 1, true, false, "Ctrl+S"}};
        add<ui::Label>(kNameLabel, "&Name:");
        add<ui::Edit>(kName);
        auto& tree = add<ui::Tree>(kTree, true);
        int trees = tree.addNode(-1, "TREES"), poles = tree.addNode(-1, "POLES");
        tree.addNode(trees, "OAK", 1), tree.addNode(trees, "ASH", 1), tree.addNode(poles, "LAMP", 1);
        auto& list = add<ui::List>(kList);
        auto& many = add<ui::List>(kMany, true);
        auto& drop = add<ui::DropDown>(kDrop, true);
        for (const char* item : {"one", "two", "three"})
            list.addItem(item), many.addItem(item), drop.addItem(item);
        add<ui::Tabs>(kTabs, std::vector<std::string>{"First", "Second"});
        add<ui::Progress>(kBar).setRange(0, 4);
        add<ui::CheckBox>(kMark, "&Mark");
        add<ui::Button>(kApply, "&Apply");
        add<ui::Button>(ui::kOk, "OK", true);
        add<ui::Button>(ui::kCancel, "Cancel");
        using namespace ui;
        setLayout(
            column({row({item(kNameLabel), item(kName, 1)}), row({item(kTree), item(kList), item(kMany)}, 1),
                    item(kDrop), item(kTabs), item(kBar),
                    row({item(kMark), spring(), item(kApply), item(ui::kOk), item(ui::kCancel)})}));
    }

    std::string seen;
    int focusAtOk = 0;

  private:
    void onCommand(int id) override {
        if (id == kApply || id == kSave || id == kMark) seen += std::to_string(id) + " ";
        if (id == kApply) get<ui::Progress>(kBar).setPosition(3);
        Dialog::onCommand(id);
    }
    void onSelection(ui::Control& control) override {
        seen += std::to_string(control.id()) + ":";
        if (auto* tree = dynamic_cast<ui::Tree*>(&control))
            seen += tree->nodes()[static_cast<size_t>(tree->selected())].text + " ";
        else if (auto* items = dynamic_cast<ui::ItemControl*>(&control))
            seen += items->selectedText() + " ";
        else
            seen += std::to_string(static_cast<ui::Tabs&>(control).page()) + " ";
    }
    void onOk() override {
        focusAtOk = focus();
        end(ui::kOk);
    }
};

class QtUi : public testing::Test, protected QtPerson {
  protected:
    void SetUp() override {
        ui::setBackend(&backend_);
        std::string pattern = (fs::temp_directory_path() / "norvane-qt-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ui::setBackend(nullptr);
        fs::remove_all(folder_);
    }

    ui::QtBackend backend_;
    fs::path folder_;
};

void makeTable(ui::Grid& table) {
    table.setColumns(3);
    table.setRows(40);
    for (int row = 1; row <= 40; ++row) table.setText(1, row, "FIELD " + std::to_string(row));
    table.setColours(2, 2, 0x000000, 0xFFFFFF);
}

}  // namespace

TEST_F(QtUi, IsWorkedByKeyboardAlone) {
    Everything dialog;
    does({press(Qt::Key_N, Qt::AltModifier), focusOn(kName), type("MH 7"),  // the label's mnemonic
          press(Qt::Key_Tab), focusOn(kTree), press(Qt::Key_Down), press(Qt::Key_Right), press(Qt::Key_Right),
          press(Qt::Key_Left), press(Qt::Key_Left), press(Qt::Key_Down), press(Qt::Key_Right),
          press(Qt::Key_End), press(Qt::Key_Tab), focusOn(kList), press(Qt::Key_Down), press(Qt::Key_End),
          press(Qt::Key_Tab), focusOn(kMany), press(Qt::Key_Down), press(Qt::Key_Down, Qt::ShiftModifier),
          press(Qt::Key_Tab), type("o"), press(Qt::Key_Tab), focusOn(kTabs), press(Qt::Key_Right),
          press(Qt::Key_Tab), focusOn(kMark), press(Qt::Key_Space), press(Qt::Key_A, Qt::AltModifier),
          see([] { return child<QProgressBar>(kBar)->value() == 3; }, "progress"),
          press(Qt::Key_S, Qt::ControlModifier), press(Qt::Key_M, Qt::AltModifier),
          // Enter outside a button is the default button's, and leaves the focus where it is.
          press(Qt::Key_Enter)});
    EXPECT_EQ(dialog.runModal(), ui::kOk);
    EXPECT_EQ(dialog.find(kName)->text(), "MH 7");
    EXPECT_EQ(
        dialog.seen,
        "103:POLES 103:LAMP 103:POLES 103:TREES 103:OAK 104:one 104:three 105:one 105:two 107:1 109 200 "
        "201 109 ");
    EXPECT_EQ(dialog.get<ui::List>(kMany).selection(), (std::vector<int>{0, 1}));
    EXPECT_EQ(dialog.find(kDrop)->text(), "o");
    EXPECT_EQ(dialog.focusAtOk, kMark);
}

TEST_F(QtUi, ASecretIsTypedUnseen) {
    Everything dialog;
    dialog.get<ui::Edit>(kName).setSecret();
    does({press(Qt::Key_N, Qt::AltModifier), type("word"),
          see(
              [] {
                  return child<QLineEdit>(kName)->displayText() ==
                         QString(4, child<QLineEdit>(kName)->displayText()[0]);
              },
              "four signs"),
          see([] { return child<QLineEdit>(kName)->displayText()[0] != 'w'; }, "that are not the word's"),
          press(Qt::Key_Enter)});
    EXPECT_EQ(dialog.runModal(), ui::kOk);
    EXPECT_EQ(dialog.find(kName)->text(), "word");
}

TEST_F(QtUi, IsWorkedByMouse) {
    Everything dialog;
    auto clickIn = [](QWidget* view, const QRect& at) {
        QTest::mouseClick(view, Qt::LeftButton, {}, at.center());
    };
    does({[&] {
              auto* tree = child<QTreeWidget>(kTree);
              tree->topLevelItem(1)->setExpanded(true);
              clickIn(tree->viewport(), tree->visualItemRect(tree->topLevelItem(1)->child(0)));
          },
          [&] {
              auto* list = child<QListWidget>(kMany);
              clickIn(list->viewport(), list->visualItemRect(list->item(2)));
              clickIn(list->viewport(), list->visualItemRect(list->item(0)));
          },
          [&] { clickIn(child<QTabBar>(kTabs), child<QTabBar>(kTabs)->tabRect(1)); },
          [&] {
              auto* bar = window()->findChild<QMenuBar*>();
              bar->actions()[0]->menu()->actions()[0]->trigger();
          },
          [] { window()->close(); }});
    EXPECT_EQ(dialog.runModal(), ui::kCancel);
    EXPECT_EQ(dialog.seen, "103:ASH 105:three 105:one 107:1 201 ");
    EXPECT_EQ(dialog.get<ui::List>(kMany).selection(), (std::vector<int>{0, 2}));
}

TEST_F(QtUi, AMenuIsOpenedByItsLetter) {
    Everything dialog;
    does({press(Qt::Key_F, Qt::AltModifier),
          see([] { return QApplication::activePopupWidget() != nullptr; }, "menu"),
          [] { QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_S); }, press(Qt::Key_Escape)});
    EXPECT_EQ(dialog.runModal(), ui::kCancel);
    EXPECT_EQ(dialog.seen, "201 ");
}

TEST_F(QtUi, AButtonIsPressedOnceByAKeyThatIsHeldDown) {
    Everything dialog;
    auto hold = [](Qt::Key key) {
        return Action([=] {
            QWidget* target = QApplication::focusWidget();
            QKeyEvent first(QEvent::KeyPress, key, Qt::NoModifier, "", false);
            QKeyEvent again(QEvent::KeyPress, key, Qt::NoModifier, "", true);
            for (QKeyEvent* event : {&first, &again, &again}) QApplication::sendEvent(target, event);
            QTest::keyRelease(target, key);
        });
    };
    does({[] { child<QPushButton>(kApply)->setFocus(); }, focusOn(kApply), hold(Qt::Key_Return),
          hold(Qt::Key_Space), press(Qt::Key_Escape)});
    dialog.runModal();
    EXPECT_EQ(dialog.seen, "200 200 ");
}

TEST_F(QtUi, TheControlWithTheKeyboardIsMarked) {
    Everything dialog;
    auto marked = [](int id) {
        return until(
            [=] {
                auto* mark = window()->findChild<QWidget*>("focus");
                auto* widget = child<QWidget>(id);
                return mark->isVisible() && mark->parentWidget() == widget->parentWidget() &&
                       mark->geometry() == widget->geometry();
            },
            "mark on " + std::to_string(id));
    };
    std::vector<Action> actions;
    for (int id :
         std::vector<int>{kName, kTree, kList, kMany, kDrop, kTabs, kMark, kApply, ui::kOk, ui::kCancel}) {
        actions.push_back(marked(id));
        if (id == kName) actions.push_back([] { window()->resize(900, 640); }), actions.push_back(marked(id));
        actions.push_back(press(Qt::Key_Tab));
    }
    actions.push_back(press(Qt::Key_Escape));
    does(actions);
    dialog.runModal();
}

TEST_F(QtUi, DialogsOpenInTheSizeInWhichTheyWereLeft) {
    const QString file = QString::fromStdString((folder_ / "window.ini").string());
    auto leaveAt = [](QSize size) { return Action([=] { window()->resize(size), window()->close(); }); };
    auto opensAt = [](QSize size) { return see([=] { return window()->size() == size; }, "size"); };
    {
        QSettings settings(file, QSettings::IniFormat);
        backend_.keepSizesIn(settings);
        does({leaveAt({711, 533})});
        Everything().runModal();
        does({opensAt({711, 533}), press(Qt::Key_Escape)});
        Everything().runModal();
    }
    QSettings settings(file, QSettings::IniFormat);
    ui::QtBackend next;
    next.keepSizesIn(settings);
    ui::setBackend(&next);
    does({opensAt({711, 533}), press(Qt::Key_Escape)});
    Everything().runModal();
    ui::setBackend(&backend_);
}

TEST_F(QtUi, AnEditThatIsFullShowsThatItRefusesMore) {
    class Short : public ui::Dialog {
      public:
        Short() : Dialog(901, "Short") {
            add<ui::Edit>(kName).setMaxLength(4);
            add<ui::Button>(ui::kOk, "OK");
            setLayout(ui::column({ui::item(kName), ui::item(ui::kOk)}));
        }
    } dialog;
    auto refuses = [] {
        auto* mark = child<QLineEdit>(kName)->findChild<QWidget*>("refusal");
        return mark->isVisible();
    };
    auto takes = [=] { return !refuses(); };
    does({type("MH 7"), see(takes, "four"), type("5"), see(refuses, "five"), press(Qt::Key_Backspace),
          see(takes, "three"),
          [] {
              QApplication::clipboard()->setText("1234567");
              child<QLineEdit>(kName)->paste();
          },
          see(refuses, "pasted"), press(Qt::Key_Tab), see(takes, "left"), press(Qt::Key_Escape)});
    dialog.runModal();
    EXPECT_EQ(dialog.find(kName)->text(), "MH 1");
}

TEST_F(QtUi, AMessageIsShownAsItStands) {
    class Told : public ui::Dialog {
      public:
        Told() : Dialog(902, "Told") {
            add<ui::Label>(kNameLabel);
            add<ui::Edit>(kName);
            add<ui::Button>(ui::kOk, "OK");
            setLayout(ui::column({ui::item(kNameLabel), ui::item(kName), ui::item(ui::kOk)}));
            setSize({300, 120});
        }
    } dialog;
    const std::string told = "No field <b>x</b> &y " + std::string(200, 'z');
    auto label = [] { return child<QLabel>(kNameLabel); };
    does({[&] { dialog.find(kNameLabel)->setText(told); },
          see([&] { return label()->text().toStdString() == told; }, "text"),
          see([&] { return label()->textFormat() == Qt::PlainText; }, "no tags"),
          see([&] { return label()->width() <= window()->width(); }, "within its window"),
          see([&] { return !label()->buddy(); }, "no letter of another control"), press(Qt::Key_Escape)});
    dialog.runModal();
}

TEST_F(QtUi, BoxesAnswerWhatWasPressed) {
    auto box = [](QMessageBox::StandardButton button) {
        return [=] {
            auto* shown = qobject_cast<QMessageBox*>(window());
            ASSERT_NE(shown, nullptr);
            QTest::mouseClick(shown->button(button), Qt::LeftButton);
        };
    };
    does({box(QMessageBox::Yes), press(Qt::Key_Escape), box(QMessageBox::Cancel), press(Qt::Key_Enter),
          box(QMessageBox::No)});
    EXPECT_EQ(ui::messageBox("Please confirm", "<b>Go on?</b>", ui::kBoxAlert | ui::kBoxYesNo), ui::kYes);
    EXPECT_EQ(ui::messageBox("Alert", "Done"), ui::kOk);
    EXPECT_EQ(ui::messageBox("Alert", "Save?", ui::kBoxYesNoCancel), ui::kCancel);
    EXPECT_EQ(ui::messageBox("Error", "No"), ui::kOk);
    EXPECT_EQ(ui::ask({"Import", "Go on?", ui::kBoxYesNo, ui::kYes}), ui::kNo);
    ui::information("Process done...", 30);  // goes by itself
    EXPECT_EQ(window(), nullptr);
}

TEST_F(QtUi, FileBoxesStartInTheirFolderAndKnowTheirFilter) {
    std::ofstream(folder_ / "plan.mdb") << "x";
    std::ofstream(folder_ / "plan.txt") << "x";
    ui::FileBox open;
    open.filter = "Microsoft Access Databases (*.mdb)|*.mdb||";
    open.folder = folder_.string();
    open.mustExist = true;
    ui::FileBox save = open;
    save.save = true;
    save.defaultExtension = "mdb";
    save.askOverwrite = true;
    auto boxShows = [this] {
        auto* shown = qobject_cast<QFileDialog*>(window());
        return shown && shown->directory().absolutePath().toStdString() == folder_.string() &&
               shown->nameFilters() == QStringList{"Microsoft Access Databases (*.mdb)"};
    };
    auto boxAsks = [] { return qobject_cast<QMessageBox*>(window()) != nullptr; };
    does({see(boxShows, "open box"), type("plan.mdb"), press(Qt::Key_Enter), see(boxShows, "save box"),
          type("new"), press(Qt::Key_Enter), type("plan.mdb"), press(Qt::Key_Enter),
          see(boxAsks, "whether the file is to be replaced"), press(Qt::Key_Escape), press(Qt::Key_Escape),
          press(Qt::Key_Escape)});
    EXPECT_EQ(ui::fileBox(open), (folder_ / "plan.mdb").string());
    EXPECT_EQ(ui::fileBox(save), (folder_ / "new.mdb").string());
    EXPECT_EQ(ui::fileBox(save), std::nullopt) << "it was not to be";
    EXPECT_EQ(ui::fileBox(open), std::nullopt);
}

TEST_F(QtUi, FileBoxesShowTheirPatternFirst) {
    std::ofstream(folder_ / "plan.mdb") << "x";
    ui::FileBox save;
    save.save = true;
    save.filter = "Databases (*.mdb)|*.mdb|GeoPackages (*.gpkg)|*.gpkg||";
    save.folder = folder_.string();
    auto named = [](const char* name) {
        return [=] {
            auto* shown = qobject_cast<QFileDialog*>(window());
            return shown && shown->findChild<QLineEdit*>("fileNameEdit")->text() == name;
        };
    };
    auto filtered = [](const char* filter) {
        return [=] {
            auto* shown = qobject_cast<QFileDialog*>(window());
            return shown && shown->selectedNameFilter() == filter;
        };
    };
    // A name stands there to be taken, and to be typed over.
    save.pattern = "survey.mdb";
    does({see(named("survey.mdb"), "the name"), press(Qt::Key_Enter), type("other.mdb"),
          press(Qt::Key_Enter)});
    EXPECT_EQ(ui::fileBox(save), (folder_ / "survey.mdb").string());
    EXPECT_EQ(ui::fileBox(save), (folder_ / "other.mdb").string());
    save.pattern = "*.gpkg";
    does({see(filtered("GeoPackages (*.gpkg)"), "the filter"), press(Qt::Key_Escape)});
    EXPECT_EQ(ui::fileBox(save), std::nullopt);
    save.pattern = "*.mdb";
    does(
        {see(filtered("Databases (*.mdb)"), "the filter"), see(named(""), "no name"), press(Qt::Key_Escape)});
    EXPECT_EQ(ui::fileBox(save), std::nullopt);
}

TEST_F(QtUi, AFolderIsChosen) {
    fs::create_directory(folder_ / "card");
    std::ofstream(folder_ / "file.txt") << "no folder";
    ui::FileBox box;
    box.folders = true;
    box.title = "Folder for Feature Files";
    box.folder = folder_.string() + "/";
    auto named = [this](const char* name) {
        return Action([this, name] {
            EXPECT_EQ(window()->windowTitle(), "Folder for Feature Files");
            window()
                ->findChild<QLineEdit*>("fileNameEdit")
                ->setText(QString::fromStdString((folder_ / name).string()));
        });
    };
    does({named("card"), press(Qt::Key_Enter)});
    EXPECT_EQ(ui::fileBox(box), (folder_ / "card").string());
    does({press(Qt::Key_Escape)});
    EXPECT_EQ(ui::fileBox(box), std::nullopt);
}

TEST_F(QtUi, APrintJobBecomesAFileOfPages) {
    qputenv("HOME", folder_.string().c_str());
    ui::Grid table(1);
    makeTable(table);
    std::vector<size_t> told;
    ui::PrintJob job{"Definitions...", table, {{1, 35}, {36, 40}}, {}, [&](size_t page) {
                         told.push_back(page);
                         return true;
                     }};
    does({press(Qt::Key_Enter), press(Qt::Key_Escape)});
    EXPECT_TRUE(ui::print(job));
    EXPECT_EQ(told, (std::vector<size_t>{0, 1}));
    std::ifstream in(folder_ / "Definitions.pdf", std::ios::binary);
    std::string pdf{std::istreambuf_iterator<char>(in), {}};
    EXPECT_EQ(pdf.substr(0, 5), "%PDF-");
    EXPECT_NE(pdf.find("/Count 2"), std::string::npos);
    told.clear();
    EXPECT_FALSE(ui::print(job));  // cancelled
    EXPECT_TRUE(told.empty());
}

// Rows that have no room on the paper are printed smaller, and so is what stands below them.
TEST_F(QtUi, APageHasAllOfItsRowsWhateverThePaper) {
    if (std::system("pdftotext -v >/dev/null 2>&1") != 0) GTEST_SKIP() << "pdftotext is not installed";
    ui::Grid table(1);
    makeTable(table);
    const ui::PrintJob job{"Definitions...", table, {{1, 35}, {36, 40}}, {}, {}, "/a/template.mdb"};
    const fs::path file = folder_ / "small.pdf";
    for (QPageLayout::Orientation orientation : {QPageLayout::Portrait, QPageLayout::Landscape}) {
        QPdfWriter writer(QString::fromStdString(file.string()));
        writer.setPageSize(QPageSize(QPageSize::A6));
        writer.setPageOrientation(orientation);
        ASSERT_TRUE(ui::paintPages(job, writer));
        const std::string text = outputOf("pdftotext -layout -f 1 -l 1 '" + file.string() + "' -");
        for (int row = 1; row <= 35; ++row)
            EXPECT_NE(text.find("FIELD " + std::to_string(row) + "\n"), std::string::npos) << row << "\n"
                                                                                           << text;
        EXPECT_NE(text.find("/a/template.mdb"), std::string::npos) << text;
        EXPECT_NE(text.find("Page 1 of 2"), std::string::npos) << text;
        // The foot stands below the last row, and not on it.
        EXPECT_LT(text.find("FIELD 35"), text.find("/a/template.mdb"));
    }
}

TEST_F(QtUi, MarksThatAreOffAreSeenOnADarkGround) {
    ui::FramedMarks style;
    const QColor ground(42, 46, 50);
    QPalette dark(ground);
    dark.setColor(QPalette::Base, QColor(27, 30, 32));
    dark.setColor(QPalette::WindowText, Qt::white);
    for (QStyle::PrimitiveElement mark : {QStyle::PE_IndicatorCheckBox, QStyle::PE_IndicatorRadioButton}) {
        QImage picture(20, 20, QImage::Format_RGB32);
        picture.fill(ground);
        QStyleOptionButton option;
        option.rect = {2, 2, 16, 16};
        option.palette = dark;
        option.state = QStyle::State_Enabled | QStyle::State_Off;
        QPainter painter(&picture);
        style.drawPrimitive(mark, &option, &painter, nullptr);
        painter.end();
        int brightest = 0;
        for (int x = 0; x < 8; ++x) brightest = std::max(brightest, qGray(picture.pixel(x, 9)));
        EXPECT_GT(brightest, qGray(ground.rgb()) + 60) << mark;
    }
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
