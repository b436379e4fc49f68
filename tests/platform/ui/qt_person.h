// A person at the screen: a list of actions, each done when the window before it has settled.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

class QtPerson {
  public:
    // What is done, and when: as soon as it is ready, or at last when patience ends.
    struct Action {
        std::function<void()> act;
        std::function<bool()> ready = nullptr;

        template <class Act>
        Action(Act what) : act(std::move(what)) {}
        Action(std::function<void()> what, std::function<bool()> when)
            : act(std::move(what)), ready(std::move(when)) {}
    };

    // Begins when the program next waits for an event.
    void does(std::vector<Action> actions) {
        actions_ = std::move(actions);
        next_ = 0;
        step();
    }
    bool finished() const { return next_ == actions_.size(); }

    static QWidget* window() { return QApplication::activeModalWidget(); }
    template <class W>
    static W* child(int id) {
        return window() ? window()->findChild<W*>(QString::number(id)) : nullptr;
    }
    // A window that has just been opened takes a moment until it has the keyboard. Off the screen no window
    // manager gives it back to a window when the one above it has gone.
    static bool keyboardIsTaken() {
        if (!QApplication::focusWidget() && window()) window()->activateWindow();
        return QApplication::focusWidget() != nullptr;
    }
    static Action press(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        return Action(
            [=] {
                QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : window();
                ASSERT_NE(target, nullptr);
                QTest::keyClick(target, key, with);
            },
            keyboardIsTaken);
    }
    static Action type(std::string text) {
        return Action(
            [=] {
                for (char c : text) {
                    ASSERT_NE(QApplication::focusWidget(), nullptr);
                    QTest::keyClick(QApplication::focusWidget(), c);
                }
            },
            keyboardIsTaken);
    }
    static Action clickButton(int id) {
        return [=] {
            ASSERT_NE(child<QPushButton>(id), nullptr);
            QTest::mouseClick(child<QPushButton>(id), Qt::LeftButton);
        };
    }
    static Action see(std::function<bool()> what, std::string name) {
        return [=] { EXPECT_TRUE(what()) << name; };
    }
    // Waits for what takes its time.
    static Action until(std::function<bool()> what, std::string name) {
        return Action([=] { EXPECT_TRUE(what()) << name; }, what);
    }
    // On a small screen what ends the dialog is in sight, and all of the rest can be scrolled to.
    static Action fitsSmallScreen() {
        auto small = [] { return QSize(800, 600) / window()->devicePixelRatioF(); };
        // It is small once the events of its resizing have passed.
        auto isSmall = [=] {
            if (!window()) return false;
            if (window()->size() == small()) return true;
            EXPECT_LE(window()->width(), QApplication::primaryScreen()->availableSize().width());
            window()->resize(small());
            return false;
        };
        return Action(
            [=] {
                EXPECT_EQ(window()->size(), small()) << window()->windowTitle().toStdString();
                for (int id : {1, 2})
                    if (auto* button = child<QPushButton>(id); button && button->isVisible()) {
                        const QRect place(button->mapTo(window(), QPoint(0, 0)), button->size());
                        EXPECT_TRUE(window()->rect().contains(place))
                            << window()->windowTitle().toStdString();
                    }
                savePicture();
            },
            isSmall);
    }
    // With NORVANE_PICTURES set to a folder, a picture of the window is put there.
    static void savePicture() {
        if (const char* folder = getenv("NORVANE_PICTURES"))
            window()->grab().save(QString("%1/%2.png").arg(folder, window()->windowTitle().remove('/')));
    }
    static Action focusOn(int id) {
        return until(
            [=] {
                return QApplication::focusWidget() &&
                       QApplication::focusWidget()->objectName() == QString::number(id);
            },
            "focus on " + std::to_string(id));
    }

  private:
    // The next one is set off before: an action may open a window with an event loop of its own. After it,
    // the pause begins again, so that an event loop that the action has ended is left first.
    void step() {
        waited_ = 0;
        timer_.setSingleShot(true);
        QObject::disconnect(&timer_, nullptr, nullptr, nullptr);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { act(); });
        timer_.start(kPause);
    }
    void act() {
        if (next_ >= actions_.size()) return;
        const Action& next = actions_[next_];
        if (next.ready && waited_ < kPatience && !next.ready()) {
            waited_ += kPause;
            return timer_.start(kPause);
        }
        std::function<void()> action = next.act;
        ++next_;
        waited_ = 0;
        timer_.start(kPause);
        action();
        timer_.start(kPause);
    }

    static constexpr int kPause = 20, kPatience = 10000;  // milliseconds
    std::vector<Action> actions_;
    size_t next_ = 0;
    int waited_ = 0;
    QTimer timer_;
};

// The main function of a test program with windows.
inline int runQtTests(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
