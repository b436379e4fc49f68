// The window with a host, a drawing and databases of its own, worked with mouse and key events on the
// offscreen platform.
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/lisp/printer.h"
#include "hostcad/window/command_panel.h"
#include "hostcad/window/main_window.h"
#include "platform/ui/qt/qt_backend.h"
#include "product/norvane_gis.h"

class Window : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "norvane-window-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
        setenv("NORVANE_USER_DIR", folder_.c_str(), 1);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(folder_));
        std::filesystem::copy_file(NORVANE_SOURCE_DIR "/samples/survey.dxf", path("survey.dxf"));
        host_ = std::make_unique<hostcad::Host>(window_, window_, window_);
        hostcad::Product product = norvaneGis();
        introduceProduct(*host_, product, NORVANE_BIN_DIR);
        ASSERT_TRUE(loadProduct(*host_, product));
        ui::setBackend(&backend_);
        const std::string& support = host_->folders().support;
        window_.start(*host_, product, {support + "hostcad.mnu", support + product.menus});
        clock_.setSingleShot(true);
        clock_.callOnTimeout(&window_, [this] { act(); });
        window_.resize(1100, 800);
        window_.QMainWindow::show();
        open("survey.dxf");
    }
    void TearDown() override {
        ui::setBackend(nullptr);
        host_.reset();
        std::filesystem::remove_all(folder_);
    }

    void open(const std::string& name) {
        window_.openDrawing(path(name));
        QTest::qWait(20);
    }
    std::string path(const std::string& name) const { return folder_ + "/" + name; }

    // Things a person does, each when what came before has settled; they go on inside of prompts and dialogs.
    void person(std::vector<std::function<void()>> actions) {
        actions_ = std::move(actions);
        next_ = 0;
        clock_.start(kPace);
    }
    void act() {
        if (next_ >= actions_.size()) return;
        clock_.start(kPace);
        // A busy window paints itself, and so runs timers too: a person waits for it.
        if (window_.isBusy() && !isImpatient_) return;
        // A window that has just been opened takes a moment until it has the keyboard.
        if (QApplication::activeModalWidget() && !QApplication::focusWidget() && ++waits_ < kMostWaits)
            return;
        waits_ = 0;
        auto action = actions_[next_++];
        action();
    }
    void settle() {
        for (int i = 0; i < 2000 && next_ < actions_.size(); ++i) QTest::qWait(10);
        EXPECT_EQ(next_, actions_.size());
        QTest::qWait(60);
    }

    // The pixel of a world point.
    QPoint pixelOf(double x, double y) {
        hostcad::ViewBox view = window_.canvas().view();
        double scale = window_.canvas().height() / view.height;
        return QPoint(qRound(window_.canvas().width() / 2.0 + (x - view.centre.x) * scale),
                      qRound(window_.canvas().height() / 2.0 - (y - view.centre.y) * scale));
    }
    QPoint pixelOf(const char* handle) {
        const hostcad::Group* at = hostcad::find(hostcad::currentDrawing().groups(byHandle(handle)), 10);
        return pixelOf(at->x(), at->y());
    }
    void click(QPoint at, Qt::KeyboardModifiers with = {}) {
        QTest::mouseClick(&window_.canvas(), Qt::LeftButton, with, at);
    }
    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers with = {}) {
        QTest::mousePress(&window_.canvas(), Qt::LeftButton, with, from);
        for (int i = 1; i <= 4; ++i) {
            QPointF at = from + (to - from) * i / 4.0;
            QMouseEvent move(QEvent::MouseMove, at, window_.canvas().mapToGlobal(at), Qt::NoButton,
                             Qt::LeftButton, with);
            QApplication::sendEvent(&window_.canvas(), &move);
        }
        QTest::mouseRelease(&window_.canvas(), Qt::LeftButton, with, to);
    }
    QLineEdit* commandLine() { return window_.commandPanel().findChild<QLineEdit*>(); }
    void type(const char* line) {
        QTest::keyClicks(commandLine(), line);
        QTest::keyClick(commandLine(), Qt::Key_Enter);
    }
    void press(Qt::Key key) { QTest::keyClick(commandLine(), key); }
    // What a Lisp program prints of a value.
    std::string lisp(const std::string& program) {
        return hostcad::lisp::toText(host_->lisp().runText(program));
    }
    bool says(const QString& text) { return window_.commandPanel().history().contains(text); }
    // Entities of the drawing.
    size_t count() {
        hostcad::Drawing& drawing = hostcad::currentDrawing();
        size_t n = 0;
        for (hostcad::ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id)) ++n;
        return n;
    }
    hostcad::ObjectId byHandle(const char* handle) {
        return hostcad::currentDrawing().byHandle(std::stoul(handle, nullptr, 16));
    }
    QAction* menuEntry(const QString& caption) {
        for (QAction* heading : window_.menuBar()->actions())
            for (QAction* action : heading->menu()->actions())
                if (action->text().remove('&') == caption) return action;
        return nullptr;
    }
    std::string propertyText() {
        std::string all;
        QTreeWidget& tree = window_.properties();
        for (int i = 0; i < tree.topLevelItemCount(); ++i) {
            all += tree.topLevelItem(i)->text(0).toStdString() + "\n";
            for (int k = 0; k < tree.topLevelItem(i)->childCount(); ++k)
                all += "  " + tree.topLevelItem(i)->child(k)->text(0).toStdString() + " = " +
                       tree.topLevelItem(i)->child(k)->text(1).toStdString() + "\n";
        }
        return all;
    }

    bool isImpatient_ = false;  // acts while the window is busy
    std::string folder_;
    hostcad::MainWindow window_;
    ui::QtBackend backend_{&window_};
    std::unique_ptr<hostcad::Host> host_;

  private:
    static constexpr int kPace = 15;  // milliseconds
    static constexpr int kMostWaits = 100;

    std::vector<std::function<void()>> actions_;
    size_t next_ = 0;
    int waits_ = 0;
    // One for all acts: a timer that earlier ones had left behind would act as well, and too soon.
    QTimer clock_;
};

// A template with one feature, written with the host's own Lisp.
inline void makeTemplate(hostcad::Host& host, const std::string& folder) {
    std::ofstream(folder + "/gps.ini")
        << "is_database=\ngisoutfile=" << folder << "/output.mdb\ngismdbfile=" << folder << "/template.mdb\n";
    std::string file = "\"" + folder + "/template.mdb\"";
    host.lisp().runText("(cf:gis_smart_prompting 20 \"x\" \"none\" " + file + ")");
    std::string tables =
        NORVANE_BIN_DIR "/jet sql '" + folder +
        "/template.mdb' \"create table ZGEO_SMART_PROMPTING (NO_GIS INTEGER PRIMARY KEY AUTOINCREMENT, "
        "GIS_NAME TEXT(255), FIELD_NAME TEXT(255), FIELD_PROMPT TEXT(255), DEFAULT_VALUE TEXT(255), "
        "LIST_VALUES TEXT(255)); "
        "create table ZGEO_CAT "
        "(INDEX_CAT_GIS INTEGER, CAT_GIS_NAME TEXT(255), GIS_NAME TEXT(255)); insert into "
        "ZGEO_SMART_PROMPTING (GIS_NAME, FIELD_NAME, "
        "FIELD_PROMPT) values ('TREE','~.DBH','Diameter'), ('TREE','SPECIES','Species')\"";
    ASSERT_EQ(std::system(tables.c_str()), 0);
    host.lisp().runText("(cf:gis_smart_prompting 20 \"x\" \"none\" \"" + folder + "/output.mdb\")");
}
