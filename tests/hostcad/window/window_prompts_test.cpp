// Prompts in the window: answered on the canvas or on the command line, to the same effect.
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>

#include "platform/ads/editor.h"
#include "tests/hostcad/window/window_fixture.h"

namespace {

class WindowPrompts : public Window {
  protected:
    // The value of a Lisp expression that asks, while a person answers.
    std::string ask(const std::string& expression, std::vector<std::function<void()>> answers) {
        answers.insert(answers.begin(),
                       [this, expression] { type(("(setq r " + expression + ")").c_str()); });
        answers.push_back([] {});
        person(answers);
        settle();
        return lisp("r");
    }
    std::function<void()> typing(const char* line) {
        return [this, line] { type(line); };
    }
    std::function<void()> clicking(QPoint at, Qt::KeyboardModifiers with = {}) {
        return [this, at, with] { click(at, with); };
    }
    QLabel& promptLabel() {
        for (auto* label : window_.commandPanel().findChildren<QLabel*>())
            if (label->accessibleName() == "Prompt") return *label;
        throw std::logic_error("no prompt");
    }
    void clickKeyword(const QString& word) {
        ASSERT_TRUE(promptLabel().text().contains("<a href=\"" + word + "\">"))
            << promptLabel().text().toStdString();
        emit promptLabel().linkActivated(word);
    }
    // Shows one unit of the drawing as one pixel, with 0, 0 in the lower left corner.
    void showPixels() {
        QSize size = window_.canvas().size();
        window_.canvas().setView(
            {{size.width() / 2.0, size.height() / 2.0, 0}, size.height() * 1.0, size.width() * 1.0});
    }
};

}  // namespace

TEST_F(WindowPrompts, TakePointsDistancesAndAnglesFromTheCanvasAndTheCommandLineAlike) {
    ASSERT_EQ(host_->newDrawing(), "");
    window_.runLine("REGEN");
    showPixels();
    QPoint a = pixelOf(100, 100), b = pixelOf(400, 100), c = pixelOf(100, 300);
    EXPECT_EQ(ask("(getpoint \"p\")", {clicking(b)}), "(400.0 100.0 0.0)");
    EXPECT_EQ(ask("(getpoint \"p\")", {typing("400,100")}), "(400.0 100.0 0.0)");
    EXPECT_EQ(ask("(getcorner '(0 0) \"c\")", {clicking(b)}), "(400.0 100.0 0.0)");
    EXPECT_EQ(ask("(getcorner '(0 0) \"c\")", {typing("400,100")}), "(400.0 100.0 0.0)");
    EXPECT_EQ(ask("(getdist '(100 100) \"d\")", {clicking(b)}), "300.0");
    EXPECT_EQ(ask("(getdist \"d\")", {clicking(a), clicking(b)}), "300.0");
    EXPECT_EQ(ask("(getdist \"d\")", {typing("300")}), "300.0");
    EXPECT_EQ(ask("(angtos (getangle \"a\") 0 2)", {clicking(a), clicking(c)}), "\"90.00\"");
    EXPECT_EQ(ask("(angtos (getangle \"a\") 0 2)", {typing("90")}), "\"90.00\"");
    // A click is no answer where words or numbers are asked for.
    EXPECT_EQ(ask("(getint \"n\")", {clicking(b), typing("7")}), "7");
    EXPECT_EQ(ask("(getreal \"x\")", {clicking(b), typing("2.5")}), "2.5");
    EXPECT_EQ(ask("(getstring t \"s\")", {clicking(b), typing("two words")}), "\"two words\"");
    EXPECT_EQ(ask("(getpoint \"p\")", {[&] { press(Qt::Key_Enter); }}), "nil");
    EXPECT_EQ(ask("(vl-catch-all-error-p (vl-catch-all-apply 'getpoint '(\"p\")))",
                  {[&] { press(Qt::Key_Escape); }}),
              "T");
}

TEST_F(WindowPrompts, TakeEntitiesAndSelectionsFromTheCanvasAndTheCommandLineAlike) {
    ASSERT_EQ(host_->newDrawing(), "");
    lisp("(entmake '((0 . \"CIRCLE\") (10 200.0 200.0 0.0) (40 . 50.0)))");
    lisp("(setq c (entlast)) (entmake '((0 . \"CIRCLE\") (10 500.0 200.0 0.0) (40 . 50.0)))");
    lisp("(setq d (entlast))");
    window_.runLine("REGEN");
    showPixels();
    QPoint onC = pixelOf(250, 200), onD = pixelOf(450, 200), beside = pixelOf(350, 400);
    EXPECT_EQ(ask("(eq (car (entsel \"e\")) c)", {clicking(onC)}), "T");
    EXPECT_EQ(ask("(eq (car (entsel \"e\")) c)", {typing("250,200")}), "T");
    EXPECT_EQ(ask("(list (entsel \"e\") (getvar \"ERRNO\"))", {clicking(beside)}), "(nil 7)");
    auto enter = [&] { press(Qt::Key_Enter); };
    EXPECT_EQ(ask("(sslength (ssget))", {clicking(onC), clicking(onD), enter}), "2");
    EXPECT_EQ(
        ask("(sslength (ssget))", {clicking(onC), clicking(onD), clicking(onC, Qt::ShiftModifier), enter}),
        "1");
    // A box to the right encloses, one to the left touches.
    auto box = [&](QPoint from, QPoint to) { return [=, this] { drag(from, to); }; };
    EXPECT_EQ(ask("(sslength (ssget))", {box(pixelOf(100, 100), pixelOf(480, 300)), enter}), "1");
    EXPECT_EQ(ask("(sslength (ssget))", {box(pixelOf(480, 300), pixelOf(100, 100)), enter}), "2");
    EXPECT_EQ(ask("(sslength (ssget))", {typing("C"), typing("480,300"), typing("100,100"), enter}), "2");
    EXPECT_EQ(ask("(sslength (ssget))", {clicking(beside), clicking(pixelOf(100, 100)), enter}), "1");
    EXPECT_EQ(ask("(sslength (ssget))", {[&] { clickKeyword("ALL"); }, enter}), "2");
}

TEST_F(WindowPrompts, WhatIsTypedAndClickedAheadAnswersTheNextOnes) {
    ASSERT_EQ(host_->newDrawing(), "");
    window_.runLine("REGEN");
    showPixels();
    auto key = [this](Qt::Key code, const QString& text) {
        QCoreApplication::postEvent(commandLine(), new QKeyEvent(QEvent::KeyPress, code, {}, text));
    };
    auto button = [this](QEvent::Type type, QPointF at) {
        QCoreApplication::postEvent(&window_.canvas(),
                                    new QMouseEvent(type, at, at, Qt::LeftButton, Qt::LeftButton, {}));
    };
    // A slow machine hands over all of it in one go.
    auto ahead = [&] {
        key(Qt::Key_7, "7"), key(Qt::Key_Enter, "");
        for (QPointF at : {pixelOf(100, 100), pixelOf(400, 100)})
            button(QEvent::MouseButtonPress, at), button(QEvent::MouseButtonRelease, at);
        key(Qt::Key_A, "a"), key(Qt::Key_B, "b"), key(Qt::Key_Enter, "");
    };
    auto giveUp = [&] { press(Qt::Key_Escape); };
    EXPECT_EQ(ask("(progn (setq r nil) (list (getint \"n\") (getdist \"d\") (getstring \"s\")))",
                  {ahead, [] {}, giveUp, giveUp}),
              "(7 300.0 \"ab\")");
}

TEST_F(WindowPrompts, OfferTheirKeywordsToClick) {
    EXPECT_EQ(ask("(progn (initget \"Select Pick Number\") (getkword \"\\nWhat (Select/Number/<Pick>): \"))",
                  {[&] { clickKeyword("Number"); }}),
              "\"Number\"");
    // A word may have more behind it, and one that the text does not have is offered too.
    EXPECT_EQ(ask("(progn (initget \"Auto Other\") (getpoint \"\\nPoint or [Auto keys on]: \"))", {[&] {
                      EXPECT_TRUE(promptLabel().text().contains(">Auto keys on</a>]"));
                      clickKeyword("Other");
                  }}),
              "\"Other\"");
    EXPECT_EQ(
        ask("(getstring \"\\nText [<b>/c] & more: \")",
            {[&] { EXPECT_TRUE(promptLabel().text().contains("[&lt;b&gt;/c] &amp; more")); }, typing("x")}),
        "\"x\"");
}

TEST_F(WindowPrompts, EnterSaysTheLastCommandAgainAndDeleteErasesTheSelection) {
    size_t before = count();
    lisp("(defun c:hop () (entmake '((0 . \"POINT\") (10 1.0 2.0 0.0))) (princ))");
    person({typing("HOP"), [&] { press(Qt::Key_Enter); }, [&] { press(Qt::Key_Enter); }, [] {}});
    settle();
    EXPECT_EQ(count(), before + 3);
    window_.canvas().setSelected({byHandle("315"), byHandle("310")});
    person({[&] { press(Qt::Key_Delete); }, [] {}});
    settle();
    EXPECT_EQ(count(), before + 1);
    EXPECT_TRUE(window_.canvas().selected().empty());
    window_.runLine("U");
    EXPECT_EQ(count(), before + 3);
}

TEST_F(WindowPrompts, EscapeEndsAProgramThatRunsOn) {
    isImpatient_ = true;
    person({typing("(while t (setq i 1))"), [&] { press(Qt::Key_Escape); }, [] {}});
    settle();
    EXPECT_TRUE(says("Function cancelled"));
    // Other keys and clicks had no effect on it.
    person({typing("(progn (setq n 0) (while t (setq n (1+ n))))"),
            [&] {
                click({50, 50});
            },
            [&] { QTest::keyClicks(commandLine(), "abc"); }, [&] { press(Qt::Key_Escape); }, [] {}});
    settle();
    EXPECT_EQ(commandLine()->text(), "");
}

TEST_F(WindowPrompts, EscapeEndsWorkThatAsksForItAndNotItsCaller) {
    isImpatient_ = true;
    host_->lisp().define("WORK", 0, 0, [](hostcad::lisp::Interpreter&, const hostcad::lisp::Arguments&) {
        QElapsedTimer patience;
        for (patience.start(); patience.elapsed() < 10000;)
            if (acedUsrBrk()) return hostcad::lisp::Value::integer(1);
        return hostcad::lisp::Value();
    });
    person({typing("(setq r (list (work) \"and on\"))"), [&] { press(Qt::Key_Escape); }, [] {}});
    settle();
    EXPECT_EQ(lisp("r"), "(1 \"and on\")");
    EXPECT_EQ(acedUsrBrk(), 0);  // it is told once
}

TEST_F(WindowPrompts, ThePreviousViewComesBackAlsoFromTheWheelAndWithinAPrompt) {
    hostcad::ViewBox first = window_.canvas().view();
    window_.canvas().zoomBy(2, {300, 200});
    window_.canvas().zoomBy(2, {300, 200});  // one movement
    QTest::qWait(250);
    window_.canvas().zoomBy(3, {100, 200});
    QTest::qWait(250);
    EXPECT_EQ(ask("(getint \"n\")", {[&] { menuEntry("Zoom previous")->trigger(); }, typing("1")}), "1");
    EXPECT_NEAR(window_.canvas().view().height, first.height / 4, 1e-6);
    window_.runLine("(command \"_.ZOOM\" \"_P\")");
    EXPECT_NEAR(window_.canvas().view().height, first.height, 1e-6);
    EXPECT_NEAR(window_.canvas().view().centre.x, first.centre.x, 1e-6);
    EXPECT_FALSE(window_.isWindowModified());
}

TEST_F(WindowPrompts, UnsavedWorkIsAskedForOnceAndSavedOnYes) {
    lisp("(entmake '((0 . \"POINT\") (10 1.0 2.0 0.0)))");
    size_t changed = count();
    int boxes = 0;
    auto answer = [&](QMessageBox::StandardButton button) {
        return [&boxes, button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            ++boxes;
            QTest::mouseClick(box->button(button), Qt::LeftButton);
        };
    };
    auto leave = [] {
        auto* box = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        box->reject();
    };
    person({[&] { menuEntry("Open...")->trigger(); }, answer(QMessageBox::Cancel), [] {},
            [&] { menuEntry("Open...")->trigger(); }, answer(QMessageBox::Yes), leave, [] {}});
    settle();
    EXPECT_EQ(boxes, 2);
    EXPECT_FALSE(window_.isWindowModified());
    open("survey.dxf");
    EXPECT_EQ(count(), changed);
}

TEST_F(WindowPrompts, ADatabaseIsCompactedFromTheMenu) {
    makeTemplate(*host_, folder_);
    QString told;
    person({[&] { menuEntry("Compact and repair database...")->trigger(); },
            [&] {
                auto* box = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
                ASSERT_NE(box, nullptr);
                box->findChild<QLineEdit*>()->setText(QString::fromStdString(path("template.mdb")));
                QTest::keyClick(box->findChild<QLineEdit*>(), Qt::Key_Enter);
            },
            [&] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                ASSERT_NE(box, nullptr);
                told = box->text();
                EXPECT_EQ(box->icon(), QMessageBox::Information) << "a success has no warning sign";
                QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
            },
            [] {}});
    settle();
    EXPECT_TRUE(told.contains("template.mdb: ")) << told.toStdString();
    EXPECT_TRUE(told.contains(" bytes before, ")) << told.toStdString();
    EXPECT_TRUE(says("bytes now."));
}

TEST_F(WindowPrompts, ADroppedDrawingIsOpenedAndABrokenOneIsToldOnce) {
    std::filesystem::copy_file(path("survey.dxf"), path("other.dxf"));
    std::ofstream(path("broken.dxf")) << "0\nSECTION\n2\nENTITIES\n0\nLINE\nx\ny\n";
    auto drop = [&](const std::string& name) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path(name)))});
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window_, &enter);
        QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window_, &event);
    };
    drop("other.dxf");
    EXPECT_TRUE(window_.windowTitle().startsWith("other.dxf"));
    bool isTold = false;
    person({[&] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                ASSERT_NE(box, nullptr);
                isTold = box->text().contains("broken.dxf");
                QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
            },
            [] {}});
    drop("broken.dxf");
    settle();
    EXPECT_TRUE(isTold);
    EXPECT_TRUE(window_.windowTitle().startsWith("other.dxf"));
    QString last = window_.commandPanel().history().section("Cannot open", -1);
    EXPECT_EQ(last.count("broken.dxf"), 1) << last.toStdString();
}
