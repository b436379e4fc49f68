// The panels that a module puts into the window: each in a dock, told what changes in the window, given idle
// time, and left alone while commands run.
#pragma once

#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>
#include <vector>

#include "platform/ui/qt/panel_area.h"

class QDockWidget;
class QMainWindow;

namespace hostcad {

class PanelDock;

class PanelDocks : public QObject, public ui::PanelArea {
  public:
    // A panel that has no place yet comes above that dock.
    PanelDocks(QMainWindow& window, QDockWidget& commands);

    // Runs an action of a panel as a command of its own, now.
    std::function<void(const std::function<void()>&)> onAction;
    std::function<void()> onLeave;

    // Something else is to be seen or has been selected: panels are told when nothing runs.
    void note(const ui::WindowChange& change);

    // The program is about to end. False: a person wants to go on with a panel first.
    bool mayEnd();

    // While one of these lives, panels rest: they show what they have shown, and none of their code is
    // called.
    class Rest {
      public:
        explicit Rest(PanelDocks& docks) : docks_(docks) { docks_.beginRest(); }
        ~Rest() { docks_.endRest(); }
        Rest(const Rest&) = delete;
        Rest& operator=(const Rest&) = delete;

      private:
        PanelDocks& docks_;
    };

    // PanelArea
    void add(ui::Panel& panel, ui::DialogWindow& view) override;
    void remove(ui::Panel& panel) override;
    void perform(ui::Panel& panel, std::function<void()> action) override;
    void wake(ui::Panel& panel) override;
    void enter(ui::Panel& panel) override;
    void leave(ui::Panel& panel) override;

  private:
    friend class PanelDock;
    struct Action {
        ui::Panel* panel;
        std::function<void()> action;
    };

    PanelDock* dockOf(const ui::Panel& panel) const;
    PanelDock& dockFor(int resource);
    void giveHeight(PanelDock& dock, int height);
    void beginRest();
    void endRest();
    void tell();
    void work();
    void act();
    bool isResting() const { return rests_ > 0; }

    QMainWindow& window_;
    QDockWidget& commands_;
    std::vector<PanelDock*> docks_;  // the window's
    bool hasNewDock_ = false;        // that has no height yet
    int rests_ = 0;
    ui::WindowChange change_;
    const ui::Panel* entered_ = nullptr;  // gets the keyboard when the command has ended
    std::deque<Action> actions_;
    QTimer telling_, working_, acting_;
};

}  // namespace hostcad
