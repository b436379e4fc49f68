// A dialog that stands beside the picture in the program's window, until a person closes it.
//
// It is a model like any other dialog. Where the view has no window to put it into (a script, a program of
// its own), it is shown as a dialog that waits, with the same steps and the same rules.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/ui/dialog.h"

namespace ui {

// What has become different in the window since its panels were told last.
struct WindowChange {
    // Another drawing; or a command has ended, which may have changed entities, databases and settings.
    bool drawing = false;
    bool selection = false;
    bool view = false;  // the part of the drawing that is seen
};

class Panel;

// What the window does for the panels that stand in it.
class PanelPlace {
  public:
    virtual ~PanelPlace() = default;
    // Runs an action as a command of its own, once nothing else runs; not where the panel has ended by then.
    virtual void perform(Panel& panel, std::function<void()> action) = 0;
    // Work is there again, see Panel::work.
    virtual void wake(Panel& panel) = 0;
    // The panel comes into sight with the keyboard, or the keyboard goes back to the command line.
    virtual void enter(Panel& panel) = 0;
    virtual void leave(Panel& panel) = 0;
};

// The window calls it only while no command runs; meanwhile it shows the panel as it was, with a sign, and
// takes nothing for it.
class Panel : public Dialog {
  public:
    using Dialog::Dialog;

    // Told once when it is opened, with all of it, and then whenever something has changed and nothing runs.
    virtual void onWindowChange(const WindowChange&) {}
    // A command is about to begin, or the panel to be left alone for another reason: it finishes what it has
    // half done.
    virtual void onRest() {}
    // Goes on for about so long with what takes long, such as counting; false when nothing is left to do. It
    // is called in idle time, and to the end where a script runs, until it gives false; then not before
    // onWindowChange or wake().
    virtual bool work(std::chrono::milliseconds) { return false; }

    // Does what changes the drawing, asks for something in it, or takes commands: as a command of its own,
    // which one Undo takes back. At once where the panel is a dialog that waits, else soon.
    void perform(std::function<void()> action);
    // There is work again.
    void wake();
    // Comes into sight with the keyboard, where it stands in a window.
    void enter();
    // Escape, where no control has a use for it: back to the drawing.
    void onCancel() override;
    // Enter, where no control has a use for it.
    void onOk() override {}
    // Whether it can go, as far as it knows; it may ask the person. The window's own cross does so, and the
    // end of the program.
    virtual bool mayEnd() { return true; }
    void onClose() override;

    // Null where the panel is a dialog that waits.
    PanelPlace* place() const { return place_; }
    void setPlace(PanelPlace* place) { place_ = place; }

  private:
    PanelPlace* place_ = nullptr;
};

// Opens a panel. In a window it stays until it ends, and true is given at once. Elsewhere true is given when
// it has ended. False when nothing can show it.
bool showPanel(std::unique_ptr<Panel> panel);
// The panel of that number that stands in the window; null when there is none.
Panel* openPanel(int resource);
// Closes it without asking it; the module calls this before it is unloaded.
void closePanel(int resource);

}  // namespace ui
