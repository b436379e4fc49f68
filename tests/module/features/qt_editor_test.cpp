// The editor of the template in a real window, by keyboard alone: from nothing to a feature that the sheet
// uses. With NORVANE_PICTURES set to a folder, pictures of the windows are put there.
#include <QFileDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QTableView>
#include <QTreeWidget>

#include "platform/ui/qt/qt_backend.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/ui/qt_person.h"

class QtEditor : public ModuleTest, protected QtPerson {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        ui::setBackend(&qt_);
    }
    void TearDown() override {
        EXPECT_TRUE(finished()) << "not every action was reached";
        ModuleTest::TearDown();
    }

    static Action picture(const char* name) {
        return [=] {
            if (const char* folder = getenv("NORVANE_PICTURES"))
                window()->grab().save(QString("%1/%2.png").arg(folder).arg(name));
        };
    }
    static Action title(const char* shown) {
        return until([=] { return window() && window()->windowTitle() == shown; }, shown);
    }
    static Action inMenu(Qt::Key key) {
        return [=] {
            QWidget* popup = QApplication::activePopupWidget();
            ASSERT_NE(popup, nullptr);
            auto* list = popup->findChild<QAbstractItemView*>();  // of a drop-down
            QTest::keyClick(list ? list : popup, key);
        };
    }
    static Action atCell(int column, int row) {
        return see(
            [=] {
                QModelIndex cell = child<QTableView>(1008)->currentIndex();
                return cell.column() == column - 1 && cell.row() == row - 1;
            },
            "cell " + std::to_string(column) + ", " + std::to_string(row));
    }
    static std::vector<Action> joined(std::vector<std::vector<Action>> parts) {
        std::vector<Action> all;
        for (auto& part : parts) all.insert(all.end(), part.begin(), part.end());
        return all;
    }
    // The answer to a question by its letter.
    static Action yes() { return press(Qt::Key_Y, Qt::AltModifier); }

    std::vector<Action> newTemplateWithCategory() {
        return {press(Qt::Key_N, Qt::ControlModifier), title("Select New File"),
                press(Qt::Key_S, Qt::AltModifier), title("Save As"),
                // Typed, a path opens the list of a completer first.
                [this] {
                    window()
                        ->findChild<QLineEdit*>("fileNameEdit")
                        ->setText(QString::fromStdString(path("template.mdb")));
                },
                press(Qt::Key_Enter), title("Define Template Database"),
                see([this] { return child<QLineEdit>(1002)->text().toStdString() == path("template.mdb"); },
                    "path"),
                press(Qt::Key_C, Qt::AltModifier), inMenu(Qt::Key_N), type("plants"), press(Qt::Key_Enter),
                see([] { return child<QTreeWidget>(1003)->currentItem()->text(0) == "PLANTS"; }, "category")};
    }
    static std::vector<Action> leave() { return {press(Qt::Key_Escape), yes()}; }

    ui::QtBackend qt_;
};

TEST_F(QtEditor, DefinesAFeatureByKeyboardAlone) {
    const std::vector<Action> feature = {
        press(Qt::Key_N, Qt::AltModifier), type("tree"), press(Qt::Key_Enter), focusOn(1008), atCell(1, 1),
        // A list: each Enter in the values adds what was typed.
        type("species"), press(Qt::Key_Enter), type("Species"), press(Qt::Key_Enter), atCell(3, 1),
        type("OAK"), press(Qt::Key_Enter), type("ASH"), press(Qt::Key_Enter), atCell(3, 1),
        press(Qt::Key_Enter), type("y"), press(Qt::Key_Enter), atCell(5, 1), press(Qt::Key_Enter),
        atCell(1, 2),
        // A whole number.
        type("dbh"), press(Qt::Key_Enter), type("Diameter"), press(Qt::Key_Enter), press(Qt::Key_Enter),
        press(Qt::Key_Enter), atCell(5, 2), type("i"), press(Qt::Key_Enter), atCell(1, 3),
        // A name that brings its code with it.
        type("northing"), press(Qt::Key_Enter), atCell(2, 3), title("Define Template Database *"),
        press(Qt::Key_S, Qt::ControlModifier), title("Define Template Database"), picture("window-editor")};
    const std::vector<Action> lists = {press(Qt::Key_F4),  // nothing to the editor
                                       press(Qt::Key_Up),
                                       press(Qt::Key_Up),
                                       press(Qt::Key_Right),
                                       atCell(3, 1),
                                       press(Qt::Key_V, Qt::AltModifier),
                                       title("List Values"),
                                       press(Qt::Key_A, Qt::AltModifier),
                                       type("ELM"),
                                       press(Qt::Key_Enter),
                                       picture("window-list-values"),
                                       press(Qt::Key_S, Qt::AltModifier),
                                       title("Special codes"),
                                       press(Qt::Key_Down),
                                       press(Qt::Key_Down),
                                       picture("window-special-codes"),
                                       press(Qt::Key_Escape),
                                       press(Qt::Key_O, Qt::AltModifier),
                                       press(Qt::Key_S, Qt::ControlModifier),
                                       yes(),
                                       title("Define Template Database")};
    does(joined({newTemplateWithCategory(), feature, lists, leave()}));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
    EXPECT_EQ(sqlite("template.mdb",
                     "select FIELD_NAME, FIELD_PROMPT, DEFAULT_VALUE, LIST_VALUES from "
                     "ZGEO_SMART_PROMPTING order by NO_GIS"),
              "~SPECIES|Species|ASH|OAK,ASH,ELM\n.DBH|Diameter||\nNORTHING|Northing|$EQN=$NOR|$EQN=$NOR\n");

    // Function code 1 shows and saves it.
    makeEntity();
    does({press(Qt::Key_Down), type("14"), press(Qt::Key_Enter), [] { child<QPushButton>(1)->setFocus(); },
          press(Qt::Key_Enter)});
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 1 " + quoted("") + " " + quoted("template.mdb") + " " +
                   quoted("outemplate.mdb") + " \"PT_ID\" \"7\" 1.5 2.0 3.0 ent \"TREE\" 1)"),
              "1");
    EXPECT_EQ(sqlite("outemplate.mdb", "select PT_ID, SPECIES, DBH, NORTHING from TREE"), "7|ASH|14|1.5\n");
}

TEST_F(QtEditor, ListsOpenByKeyAndNewTextJoinsThem) {
    does(joined(
        {newTemplateWithCategory(),
         {press(Qt::Key_N, Qt::AltModifier), type("pole"), press(Qt::Key_Enter), type("lamp"),
          press(Qt::Key_Enter), type("Lamp"), press(Qt::Key_Enter), press(Qt::Key_Enter), atCell(4, 1),
          press(Qt::Key_Down, Qt::AltModifier),
          see([] { return QApplication::activePopupWidget() != nullptr; }, "list"), inMenu(Qt::Key_Down),
          inMenu(Qt::Key_Enter), atCell(4, 1), focusOn(1008), press(Qt::Key_Enter), atCell(5, 1),
          press(Qt::Key_S, Qt::ControlModifier), title("Define Template Database")},
         leave()}));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
    EXPECT_EQ(sqlite("template.mdb", "select FIELD_NAME from ZGEO_SMART_PROMPTING"), "~LAMP\n");
}

TEST_F(QtEditor, FeaturesAreCopiedMergedDeletedAndComeBackFromTheirFile) {
    auto choose = [](const char* heading, const char* entry) {
        return Action([=] {
            for (QAction* menu : window()->findChild<QMenuBar*>()->actions())
                if (menu->text().remove('&') == heading)
                    for (QAction* action : menu->menu()->actions())
                        if (action->text().remove('&') == entry) return action->trigger();
            FAIL() << entry;
        });
    };
    auto clickNode = [](const char* text, bool twice = false) {
        return Action([=] {
            auto* tree = child<QTreeWidget>(1003);
            QList<QTreeWidgetItem*> found = tree->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
            ASSERT_FALSE(found.isEmpty()) << text;
            tree->scrollToItem(found.front());
            QPoint at = tree->visualItemRect(found.front()).center();
            QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, at);
            if (twice) QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, at);
        });
    };
    auto fileNamed = [this](const char* name) {
        return Action([=, this] {
            window()->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(path(name)));
        });
    };
    // No other window stands before it, the short information box included.
    const Action back = until([] { return child<QTreeWidget>(1003) != nullptr; }, "editor");
    does(joined(
        {newTemplateWithCategory(),
         {choose("Category", "New"), type("water"), press(Qt::Key_Enter), press(Qt::Key_N, Qt::AltModifier),
          type("hydrant"), press(Qt::Key_Enter), focusOn(1008), type("depth"), press(Qt::Key_Enter),
          type("Depth"), press(Qt::Key_Enter), press(Qt::Key_Enter), type("y"), press(Qt::Key_Enter),
          type("r"), press(Qt::Key_Enter), press(Qt::Key_S, Qt::ControlModifier), back},
         // A copy in the other category, under another name.
         {choose("Feature", "Save As"), title("Save: HYDRANT As"), type("valve"), press(Qt::Key_Enter),
          title("Select Category"), press(Qt::Key_Up), press(Qt::Key_Enter), back,
          choose("Feature", "Rename"), title("Rename: VALVE to"), type("tap"), press(Qt::Key_Enter), back},
         // Both categories become one, and the copy goes.
         {choose("Category", "Rename"), title("Select Category to Rename"), press(Qt::Key_Enter),
          title("Rename: PLANTS to"), type("water"), press(Qt::Key_Enter), back, clickNode("TAP"),
          choose("Feature", "Delete"), title("Alert"), yes(), back},
         // Out to a file, deleted, and in again.
         {clickNode("HYDRANT", true),
          choose("GIS File", "Export"),
          title("Save As"),
          fileNamed("hydrant.gis"),
          press(Qt::Key_Enter),
          until([this] { return fs::exists(path("hydrant.gis")); }, "file"),
          back,

          choose("Feature", "Delete"),
          title("Alert"),
          yes(),
          back,
          choose("GIS File", "Import"),
          title("Open"),
          fileNamed("hydrant.gis"),
          press(Qt::Key_Enter),
          title("Details"),
          see([] { return qobject_cast<QMessageBox*>(window())->icon() == QMessageBox::Information; },
              "no warning"),
          press(Qt::Key_Enter),
          back,
          press(Qt::Key_S, Qt::ControlModifier),
          title("Select Category"),
          press(Qt::Key_Enter),
          back},
         leave()}));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
    EXPECT_EQ(read("hydrant.gis"), "|12|DEPTH,Depth, ,\n");
    EXPECT_EQ(sqlite("template.mdb", "select GIS_NAME, FIELD_NAME, FIELD_PROMPT from ZGEO_SMART_PROMPTING"),
              "HYDRANT|~..DEPTH|Depth\n");
    EXPECT_EQ(sqlite("template.mdb", "select distinct CAT_GIS_NAME from ZGEO_CAT"), "WATER\n");
}

TEST_F(QtEditor, ATemplateThatDisappearsLosesNothingOfTheSheet) {
    does(
        joined({newTemplateWithCategory(),
                {press(Qt::Key_N, Qt::AltModifier), type("pole"), press(Qt::Key_Enter), type("lamp"),
                 press(Qt::Key_Enter), type("Lamp"), press(Qt::Key_Enter),
                 [this] { fs::rename(path("template.mdb"), path("away.mdb")); },
                 press(Qt::Key_S, Qt::ControlModifier), title("Error"), press(Qt::Key_Enter),
                 title("Define Template Database *"),
                 see([] { return child<QTableView>(1008)->model()->index(0, 0).data().toString() == "LAMP"; },
                     "row"),
                 [this] { fs::rename(path("away.mdb"), path("template.mdb")); },
                 press(Qt::Key_S, Qt::ControlModifier), title("Define Template Database")},
                leave()}));
    EXPECT_EQ(lisp("(cf:gis_smart_prompting 15)"), "1");
    EXPECT_EQ(sqlite("template.mdb", "select FIELD_NAME from ZGEO_SMART_PROMPTING"), "LAMP\n");
}

TEST_F(QtEditor, DialogsFitASmallScreen) {
    does(joined(
        {newTemplateWithCategory(),
         {press(Qt::Key_N, Qt::AltModifier), fitsSmallScreen(), type("pole"), press(Qt::Key_Enter),
          type("lamp"), press(Qt::Key_Enter), type("Lamp"), press(Qt::Key_Enter), fitsSmallScreen(),
          press(Qt::Key_V, Qt::AltModifier), title("List Values"), fitsSmallScreen(),
          press(Qt::Key_S, Qt::AltModifier), title("Special codes"), fitsSmallScreen(), press(Qt::Key_Escape),
          press(Qt::Key_Escape), press(Qt::Key_S, Qt::ControlModifier), title("Define Template Database")},
         leave()}));
    lisp("(cf:gis_smart_prompting 15)");
}

int main(int argc, char** argv) {
    return runQtTests(argc, argv);
}
