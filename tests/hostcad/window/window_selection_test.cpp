// Selecting in the window: on the canvas, in the list of entities, and what the properties then say.
#include <QCheckBox>
#include <QTableView>

#include "hostcad/window/entity_list.h"
#include "platform/images/convert.h"
#include "tests/hostcad/window/window_fixture.h"

using hostcad::ObjectId;

namespace {

class WindowSelection : public Window {
  protected:
    hostcad::EntityList& list() { return window_.entityList(); }
    void filter(const char* words) {
        auto* edit = list().findChild<QLineEdit*>();
        edit->clear();
        QTest::keyClicks(edit, words);
        QTest::qWait(300);
    }
    int rows() { return list().table().rowCount(); }
    size_t selected() { return window_.canvas().selected().size(); }
    // Links an entity without the sheet.
    void link(const char* handle, const std::string& strings) {
        lisp("(regapp \"ZGEO_GIS_2000\")");
        lisp("(entmod (append (entget (handent \"" + std::string(handle) +
             "\")) (list (list -3 (list \"ZGEO_GIS_2000\" '(1002 . \"{\") " + strings +
             " '(1002 . \"}\"))))))");
        window_.runLine("REGEN");
        QTest::qWait(300);
    }
};

}  // namespace

TEST_F(WindowSelection, ShiftAddsAndTakesOut) {
    for (int i = 0; i < 8; ++i) window_.canvas().zoomBy(1.5, pixelOf("315"));
    QPoint tree = pixelOf("315"), other = pixelOf("31A");
    click(tree);
    EXPECT_EQ(selected(), 1u);
    click(other, Qt::ShiftModifier);
    EXPECT_EQ(selected(), 2u);
    click(tree, Qt::ShiftModifier);
    EXPECT_EQ(window_.canvas().selected(), std::vector<ObjectId>{byHandle("31A")});
    click(tree);
    EXPECT_EQ(window_.canvas().selected(), std::vector<ObjectId>{byHandle("315")});
    window_.canvas().zoomExtents();
    QSize size = window_.canvas().size();
    QPoint corner(size.width() - 3, size.height() - 3);
    drag({2, 2}, corner);
    size_t all = selected();
    drag({2, 2}, corner, Qt::ShiftModifier);  // all of it is selected already
    EXPECT_EQ(selected(), 0u);
    click(tree);
    drag({2, 2}, corner, Qt::ShiftModifier);
    EXPECT_EQ(selected(), all);
    press(Qt::Key_Escape);
    EXPECT_EQ(selected(), 0u);
}

TEST_F(WindowSelection, BoxesSelectWhatTheSameCornersSelectInAProgram) {
    QSize size = window_.canvas().size();
    hostcad::ViewBox view = window_.canvas().view();
    for (auto [left, right] : {std::pair(0.1, 0.5), {0.33, 0.61}, {0.4, 0.95}})
        for (bool crossing : {false, true}) {
            QPoint a(int(left * size.width()), int(0.2 * size.height()));
            QPoint b(int(right * size.width()), int(0.8 * size.height()));
            crossing ? drag(b, a) : drag(a, b);
            auto world = [&](QPoint p) {
                double scale = size.height() / view.height;
                return "'(" + std::to_string(view.centre.x + (p.x() - size.width() / 2.0) / scale) + " " +
                       std::to_string(view.centre.y - (p.y() - size.height() / 2.0) / scale) + ")";
            };
            std::string set =
                std::string("(ssget \"") + (crossing ? "C" : "W") + "\" " + world(a) + " " + world(b) + ")";
            EXPECT_GT(selected(), 10u);
            EXPECT_EQ(lisp("(sslength " + set + ")"), std::to_string(selected()));
        }
}

TEST_F(WindowSelection, TheListNarrowsAndSelectsBothWays) {
    EXPECT_EQ(rows(), 533);
    filter("insert points");
    int points = rows();
    EXPECT_GT(points, 100);
    EXPECT_LT(points, 533);
    filter("insert 315");
    ASSERT_EQ(rows(), 1);
    list().view().selectRow(0);
    EXPECT_EQ(window_.canvas().selected(), std::vector<ObjectId>{byHandle("315")});
    EXPECT_NE(propertyText().find("PT# = 74"), std::string::npos);
    // What is clicked in the drawing is marked in the list, also after another filter.
    filter("");
    for (int i = 0; i < 8; ++i) window_.canvas().zoomBy(1.5, pixelOf("31A"));
    click(pixelOf("31A"));
    QModelIndexList marked = list().view().selectionModel()->selectedRows(hostcad::EntityTable::kHandle);
    ASSERT_EQ(marked.size(), 1);
    EXPECT_EQ(marked[0].data().toString(), "31A");
    list().view().sortByColumn(hostcad::EntityTable::kHandle, Qt::DescendingOrder);
    marked = list().view().selectionModel()->selectedRows(hostcad::EntityTable::kHandle);
    ASSERT_EQ(marked.size(), 1);
    EXPECT_EQ(marked[0].data().toString(), "31A");
    // What is erased goes.
    window_.runLine("ERASE");
    QTest::qWait(300);
    EXPECT_EQ(rows(), 532);
    window_.runLine("U");
    QTest::qWait(300);
    EXPECT_TRUE(list().view().selectionModel()->selectedRows().empty()) << "what comes back is not selected";
    EXPECT_EQ(rows(), 533) << count() << window_.commandPanel().history().toStdString();
    // Words are found in any letters.
    lisp("(entmake '((0 . \"LINE\") (8 . \"Old Quarry\") (10 0.0 0.0 0.0) (11 3.0 4.0 12.0)))");
    filter("quarry line");
    ASSERT_EQ(rows(), 1);
    list().view().selectRow(0);
    EXPECT_NE(propertyText().find("Length = 13\n"), std::string::npos) << "in space: " << propertyText();
}

TEST_F(WindowSelection, SurveyPointsAreFoundByNumberAndDescriptionAndWorkedOnFromTheList) {
    using Table = hostcad::EntityTable;
    QTableView& view = list().view();
    // Where no attributes are told, there are no columns for them.
    lisp("(setq list-number-tags$ nil list-description-tags$ nil)");
    open("survey.dxf");
    EXPECT_TRUE(view.isColumnHidden(Table::kNumber));
    EXPECT_TRUE(view.isColumnHidden(Table::kDescription));
    filter("74 tree");
    EXPECT_EQ(rows(), 0);
    lisp("(setq list-number-tags$ '(\"NONE\" \"pt#\") list-description-tags$ '(\"DESC2\"))");
    open("survey.dxf");
    EXPECT_FALSE(view.isColumnHidden(Table::kNumber));
    filter("74 tree");
    ASSERT_EQ(rows(), 1);
    EXPECT_EQ(list().table().index(0, Table::kNumber).data().toString(), "74");
    EXPECT_EQ(list().table().index(0, Table::kDescription).data().toString(), "TREE");
    EXPECT_EQ(list().table().index(0, Table::kHandle).data().toString(), "315");

    // A double click brings the entity to the middle, large enough to be seen.
    const double whole = window_.canvas().view().height;
    QPoint row = view.visualRect(list().table().index(0, Table::kNumber)).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, row);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, row);
    EXPECT_LT(window_.canvas().view().height, whole / 10);
    EXPECT_TRUE(window_.canvas().rect().contains(pixelOf("315")));

    // The menu of the list: its own entries, and those of the menu file with what is selected.
    makeTemplate(*host_, folder_);
    auto menu = [&] {
        QContextMenuEvent event(QContextMenuEvent::Mouse, row, view.viewport()->mapToGlobal(row));
        QApplication::sendEvent(view.viewport(), &event);
    };
    auto letter = [](Qt::Key key) {
        return [key] { QTest::keyClick(QApplication::activePopupWidget(), key); };
    };
    window_.canvas().zoomExtents();
    person({menu, letter(Qt::Key_Z), [] {}});
    settle();
    EXPECT_LT(window_.canvas().view().height, whole / 10);
    person({menu, letter(Qt::Key_P), [] {}});
    settle();
    EXPECT_EQ(window_.focusWidget(), &window_.properties());
    person({menu, letter(Qt::Key_L), [] {}});
    settle();
    EXPECT_EQ(window_.focusWidget(), commandLine());
    QString title;
    person({menu, letter(Qt::Key_M), [&] { title = QApplication::activeModalWidget()->windowTitle(); },
            [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); }, [] {}});
    settle();
    EXPECT_EQ(title, "GIS Smart Prompting - Entity has no GIS Data");

    // Numbers stand in their order.
    filter("points");
    view.sortByColumn(Table::kNumber, Qt::AscendingOrder);
    double last = 0;
    int numbers = 0;
    bool isNumber = true;  // in front of names
    for (int i = 0; i < rows() && isNumber; ++i) {
        double number = list().table().index(i, Table::kNumber).data().toString().toDouble(&isNumber);
        if (!isNumber) break;
        ++numbers;
        EXPECT_GE(number, last);
        last = number;
    }
    EXPECT_GT(numbers, 100);
}

TEST_F(WindowSelection, LinkedEntitiesShowTheirPictures) {
    makeTemplate(*host_, folder_);
    images::Image image({40, 20});
    for (size_t i = 3; i < image.pixels.size(); i += images::kPixelBytes) image.pixels[i] = 255;
    ASSERT_TRUE(images::writeBmp(image, path("crown.bmp")));
    std::ofstream(path("text.jpg")) << "no picture";
    std::filesystem::remove(path("output.mdb"));
    const std::string database =
        "sqlite3 '" + path("output.mdb") +
        "' \"create table TREE (PT_ID TEXT, GIS_KEY TEXT, [IMAGE_ZGEO/2] TEXT, [IMAGE_ZGEO/1] TEXT, "
        "[IMAGE_ZGEO/3] "
        "TEXT, [IMAGE_ZGEO/4] TEXT); insert into TREE values ('74','TREE','C:\\photos\\crown.bmp','" +
        path("text.jpg") + "','No image!','/nowhere/gone.jpg')\"";
    ASSERT_EQ(std::system(database.c_str()), 0);
    link("315", "'(1000 . \"" + path("template.mdb") + "\") '(1000 . \"" + path("output.mdb") +
                    "\") '(1000 . \"TREE\") '(1000 . \"PT_ID\") '(1000 . \"74\")");
    list().findChild<QCheckBox*>()->setChecked(true);
    list().view().selectRow(0);
    const QList<QTreeWidgetItem*> found = window_.properties().findItems("crown.bmp", Qt::MatchRecursive);
    ASSERT_EQ(found.size(), 1) << propertyText();
    EXPECT_FALSE(found.front()->icon(1).isNull()) << "found beside the output";
    EXPECT_EQ(found.front()->icon(1).actualSize(QSize(500, 500)), QSize(96, 48));
    ASSERT_EQ(window_.properties().findItems("text.jpg", Qt::MatchRecursive).size(), 1);
    EXPECT_TRUE(window_.properties().findItems("text.jpg", Qt::MatchRecursive).front()->icon(1).isNull());
    EXPECT_TRUE(window_.properties().findItems("gone.jpg", Qt::MatchRecursive).isEmpty());
}

TEST_F(WindowSelection, LinkedEntitiesShowTheirFeatureAndWhyARecordIsNotThere) {
    makeTemplate(*host_, folder_);
    link("315", "'(1000 . \"" + path("template.mdb") + "\") '(1000 . \"" + path("output.mdb") +
                    "\") '(1000 . \"TREE\") '(1000 . \"PT_ID\") '(1000 . \"74\")");
    link("31A", "'(1000 . \"a\") '(1000 . \"b\")");
    list().findChild<QCheckBox*>()->setChecked(true);
    ASSERT_EQ(rows(), 1);  // the broken link has no feature
    EXPECT_EQ(list().table().index(0, hostcad::EntityTable::kFeature).data().toString(), "TREE");
    list().view().selectRow(0);
    EXPECT_NE(propertyText().find("Linked record\n  Not shown = "), std::string::npos) << propertyText();
    std::string database =
        "sqlite3 '" + path("output.mdb") +
        "' \"create table TREES (PT_ID TEXT, GIS_KEY TEXT COLLATE NOCASE, DBH INTEGER); insert into TREES "
        "values "
        "('74','POLE',1),('74','tree',12)\" && " NORVANE_BIN_DIR "/jet sql '" +
        path("template.mdb") +
        "' \"create table ZGEO_LINKS (GIS_NAME TEXT COLLATE NOCASE, TABLE_NAME TEXT); insert into "
        "ZGEO_LINKS values ('TREE','TREES')\"";
    std::filesystem::remove(path("output.mdb"));
    ASSERT_EQ(std::system(database.c_str()), 0);
    window_.runLine("REGEN");
    EXPECT_NE(propertyText().find("Linked record\n  PT_ID = 74\n  GIS_KEY = tree\n  DBH = 12"),
              std::string::npos)
        << propertyText();
    link("315", "'(1000 . \"" + path("template.mdb") + "\") '(1000 . \"" + path("output.mdb") +
                    "\") '(1000 . \"TREE\") '(1000 . \"PT_ID\") '(1000 . \"75\")");
    EXPECT_NE(propertyText().find("Linked record\n  Not shown = There is no such record."), std::string::npos)
        << propertyText();
}

TEST_F(WindowSelection, APickOfTheQueryShowsItsRecordWhileTheQueryGoesOn) {
    makeTemplate(*host_, folder_);
    const std::string table =
        NORVANE_BIN_DIR "/jet sql '" + path("output.mdb") +
        "' \"create table TREE (PT_ID TEXT(255), GIS_KEY TEXT(255), SPECIES TEXT(255)); "
        "insert into TREE values ('74','TREE','Oak'), ('75','TREE','Elm')\"";
    ASSERT_EQ(std::system(table.c_str()), 0);
    auto strings = [&](const std::string& key) {
        return "'(1000 . \"" + path("template.mdb") + "\") '(1000 . \"" + path("output.mdb") +
               "\") '(1000 . \"TREE\") '(1000 . \"PT_ID\") '(1000 . \"" + key + "\")";
    };
    link("315", strings("74")), link("31A", strings("75"));
    for (int i = 0; i < 8; ++i) window_.canvas().zoomBy(1.5, pixelOf("315"));
    std::string first, second;
    auto closeSheet = [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); };
    person({[&] { click(pixelOf("315")); }, closeSheet, [&] { first = propertyText(); },
            [&] { click(pixelOf("31A")); }, closeSheet, [&] { second = propertyText(); },
            [&] { press(Qt::Key_Escape); }});
    window_.runLine("GIS-QUERY");
    settle();
    EXPECT_NE(first.find("Linked record\n  PT_ID = 74\n  GIS_KEY = TREE\n  SPECIES = Oak"), std::string::npos)
        << first;
    EXPECT_NE(second.find("SPECIES = Elm"), std::string::npos) << second;
    EXPECT_EQ(window_.canvas().selected(), std::vector<ObjectId>{byHandle("31A")});
    EXPECT_NE(propertyText().find("SPECIES = Elm"), std::string::npos);
    // It is no answer to the next command, which the person has not selected it for.
    person({[&] { press(Qt::Key_Escape); }});
    window_.runLine("GIS-QUERY");
    settle();
}

TEST_F(WindowSelection, WhatIsSelectedIsThePickfirstSetOfProgramsToo) {
    const std::string members =
        "(progn (setq set (cadr (ssgetfirst)) i -1 all nil) (repeat (if set (sslength set) 0)"
        " (setq all (cons (cdr (assoc 5 (entget (ssname set (setq i (1+ i)))))) all))))";
    for (int i = 0; i < 8; ++i) window_.canvas().zoomBy(1.5, pixelOf("315"));
    click(pixelOf("315"));
    EXPECT_EQ(lisp("(progn " + members + " all)"), "(\"315\")");
    window_.runLine("(setq implied (ssget \"_I\"))");
    EXPECT_EQ(lisp("(sslength implied)"), "1");
    // What a program selects is shown, and the next command takes it.
    lisp("(setq both (ssadd (handent \"310\") (ssadd (handent \"31A\")))) (sssetfirst nil both)");
    EXPECT_EQ(window_.canvas().selected(), (std::vector<ObjectId>{byHandle("310"), byHandle("31A")}));
    const size_t before = count();
    window_.runLine("ERASE");
    EXPECT_EQ(count(), before - 2);
    EXPECT_EQ(selected(), 0u);
    window_.runLine("U");
    EXPECT_EQ(count(), before);
    // A command of the user that changes the drawing ends a selection, one that changes nothing does not.
    click(pixelOf("315"));
    window_.runLine("REGEN");
    EXPECT_EQ(selected(), 1u);
    window_.runLine("(command \"_.POINT\" '(1.0 2.0 0.0))");
    EXPECT_EQ(selected(), 0u);
    lisp("(sssetfirst nil both)");
    EXPECT_EQ(selected(), 2u);
    press(Qt::Key_Escape);
    EXPECT_EQ(lisp("(cadr (ssgetfirst))"), "nil");
    lisp("(sssetfirst nil both)");
    lisp("(sssetfirst nil nil)");
    EXPECT_EQ(selected(), 0u);
}
