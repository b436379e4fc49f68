// Where the panels of a program's window stand: what the window gives to the backend.
#pragma once

#include "platform/ui/panel.h"

class QWidget;

namespace ui {

class DialogWindow;

class PanelArea : public PanelPlace {
  public:
    // Gives the view of a panel a place in the window. Both stay the caller's.
    virtual void add(Panel& panel, DialogWindow& view) = 0;
    // The panel is about to go.
    virtual void remove(Panel& panel) = 0;
};

}  // namespace ui
