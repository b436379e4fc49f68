// The window of a dialog: widgets made from its model and kept in step with it, both ways. That of a panel
// stands inside of the program's.
#pragma once

#include <QDialog>
#include <functional>
#include <map>
#include <memory>

#include "platform/ui/dialog.h"

class QBoxLayout;
class QGridLayout;
class QScrollArea;

namespace ui {

class ControlWidget;
class FrameOverlay;
class Panel;

class DialogWindow : public QDialog, public DialogView {
  public:
    DialogWindow(Dialog& dialog, QWidget* parent);
    ~DialogWindow() override;

    // The widget of a control; null when there is none.
    QWidget* widgetOf(int id) const;
    // Gives the keyboard to the control that has the focus in the model.
    void showFocus();
    // Of a panel: it is not asked for what it shows, and takes no keys.
    void setResting(bool on);
    bool hasKeyboard() const;
    std::function<void()> onEnded;  // of a panel

    // Pixels of the model, at 96 dpi, as pixels of this screen.
    int scaled(int pixels) const;

    // Offers a key to the model in the order in which dialogs see keys. True when it has been dealt with and
    // the widget must not see it.
    bool offerKey(const QKeyEvent& event, bool isText);
    // The same when it is let go; nothing of what follows depends on it.
    void tellKeyUp(const QKeyEvent& event);

    // DialogView
    void controlChanged(Control& control) override;
    void cellChanged(Grid& grid, CellPosition at) override;
    void focusChanged(int id) override;
    void titleChanged() override;
    void ended() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void reject() override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void makeWidgets();
    void arrange();
    void showControls();
    // Ground that scrolls where the screen is small, for what stands above the buttons that end the dialog.
    QScrollArea* newGround(QWidget& inside);
    void place(QBoxLayout& into, const Layout& part);
    void placeTable(QGridLayout& into, const Layout& table);
    void placeRectangles(QBoxLayout& column);
    int menuHeight() const;
    bool openMenu(const QKeyEvent& key);
    bool leavesToProgram(const QKeyEvent& key) const;
    ControlWidget* find(int id) const;
    // What stands in the layout for a control; null when there is none.
    QWidget* placedOf(int id) const;

    Dialog& dialog_;
    Panel* panel_;  // the dialog, where it is one that stands in the program's window
    bool isResting_ = false;
    // Marks the control that has the keyboard.
    void markFocus(QWidget* widget);

    int pressed_ = 0;  // the key that has gone down in this window, Qt's number of it
    std::map<int, std::unique_ptr<ControlWidget>> widgets_;
    QScrollArea* ground_ = nullptr;
    FrameOverlay* focusMark_;
    QWidget* marked_ = nullptr;
};

}  // namespace ui
