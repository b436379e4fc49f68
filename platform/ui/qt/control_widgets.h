// The widgets of the controls. Each shows its control and hands what a person does to the dialog's model.
#pragma once

#include <QWidget>
#include <memory>

#include "platform/ui/dialog.h"

namespace ui {

class DialogWindow;

class ControlWidget {
  public:
    virtual ~ControlWidget() = default;
    virtual QWidget* widget() = 0;
    // What stands in the layout: the widget, or a frame round it.
    virtual QWidget* placed() { return widget(); }
    // Takes over what has changed in the model.
    virtual void update() = 0;
    // The same for one cell of a grid.
    virtual void updateCell(CellPosition) { update(); }
    // A person types text into it, so that plain keys are its own.
    virtual bool takesText() const { return false; }
    virtual void takeFocus() { widget()->setFocus(Qt::OtherFocusReason); }
    // Of a label: the widget that its mnemonic leads to.
    virtual void setBuddy(QWidget*) {}
};

// The widget of a control; its parent is the window.
std::unique_ptr<ControlWidget> makeControlWidget(Control& control, Dialog& dialog, DialogWindow& window);

}  // namespace ui
