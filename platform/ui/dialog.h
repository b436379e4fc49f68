// A dialog as a model: its controls, its layout, and what it does when a person acts on it.
//
// A module's dialog derives from Dialog, adds its controls in the constructor, fills them in onOpen and
// reacts in the other on... functions. A backend shows the model and turns what a person does into calls of
// the user... functions, which hold the rules of focus, default buttons and keys in one place; so a script
// and a window cannot differ.
#pragma once

#include <cassert>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ui/control.h"
#include "platform/ui/grid.h"
#include "platform/ui/key.h"
#include "platform/ui/layout.h"
#include "platform/ui/list.h"

namespace ui {

// Ids of the standard buttons, and the results that they end a dialog with.
constexpr int kOk = 1;
constexpr int kCancel = 2;
constexpr int kYes = 6;
constexpr int kNo = 7;
constexpr int kNotCreated = -1;

// The picture of a dialog that a backend keeps in step with the model.
class DialogView {
  public:
    virtual ~DialogView() = default;
    virtual void controlChanged(Control& control) = 0;
    // One cell of a grid: its content or look, what is typed into it, that it is the active one or no longer
    // so.
    virtual void cellChanged(Grid& grid, CellPosition at) = 0;
    virtual void focusChanged(int id) = 0;
    virtual void titleChanged() = 0;
    virtual void ended() = 0;
};

class Dialog {
  public:
    Dialog(int resource, std::string title);
    virtual ~Dialog();
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    int resource() const { return resource_; }
    const std::string& title() const { return title_; }
    void setTitle(std::string title);

    // --- Making ---------------------------------------------------------------------------------------

    // Adds a control; the order is that of the Tab key. The dialog owns it.
    template <class C, class... Arguments>
    C& add(int id, Arguments&&... arguments) {
        auto control = std::make_unique<C>(id, std::forward<Arguments>(arguments)...);
        C& added = *control;
        own(std::move(control));
        return added;
    }
    const std::vector<std::unique_ptr<Control>>& controls() const { return controls_; }
    Control* find(int id) const;
    // A control that the dialog has, and of that class.
    template <class C>
    C& get(int id) const {
        Control* control = find(id);
        assert(dynamic_cast<C*>(control));
        return static_cast<C&>(*control);
    }
    // A control by its id in digits, or by its caption or the caption in front of it, with or without "&".
    Control* find(std::string_view idOrCaption) const;
    std::vector<RadioButton*> radioGroup(int group) const;

    const Layout& layout() const { return layout_; }
    void setLayout(Layout layout) { layout_ = std::move(layout); }
    // A dialog that is placed to the pixel has rectangles in place of a layout.
    const std::map<int, Rect>& rectangles() const { return rectangles_; }
    void setRectangle(int id, const Rect& rectangle);
    // Of all controls but grids; nothing leaves it to the view.
    const std::optional<Font>& font() const { return font_; }
    void setFont(const Font& font) { font_ = font; }
    Size size() const { return size_; }  // of the inside; zero leaves it to the view
    void setSize(Size size) { size_ = size; }
    // The smallest that a person can give it.
    Size minimumSize() const { return minimumSize_; }
    void setMinimumSize(Size size) { minimumSize_ = size; }

    // Files may be dropped onto it.
    bool takesFiles() const { return takesFiles_; }
    void setTakesFiles(bool on = true) { takesFiles_ = on; }

    // --- Running --------------------------------------------------------------------------------------

    // Shows the dialog until it ends. The result that end() was given; kNotCreated when no backend can
    // show it.
    int runModal();
    // For a caller with a loop of its own: open, wait for one event as long as running, close.
    bool open();
    void waitForEvent();
    // For work that goes on behind the dialog: what a person has done meanwhile, without waiting.
    void takeEvents();
    void close();
    bool running() const { return running_; }
    void end(int result);
    int result() const { return result_; }

    int focus() const { return focus_; }
    // Moves the focus without asking whether the control takes it.
    void setFocus(int id);
    // To the next control where Tab stops, or the one before; wraps.
    void focusNext(bool backwards = false);

    void setView(DialogView* view) { view_ = view; }
    void controlChanged(Control& control);
    void cellChanged(Grid& grid, CellPosition at);

    // --- What a person does -------------------------------------------------------------------------
    // Each gives "" when it was done, or else why it cannot be.

    std::string userFocus(Control& control);
    std::string userText(Control& control, std::string text);
    // An item of a list, drop-down, tabs or tree; add: to the selection of a multiple list.
    std::string userPick(Control& control, int index, bool add = false);
    std::string userCheck(Control& control, bool on);
    std::string userCheckNode(Tree& tree, int node, bool on);
    std::string userClick(Control& control);
    std::string userDoubleClick(Control& control, int index);
    std::string userMenu(Menu& menu, int command);
    std::string userKey(const Key& key);
    // The same for a key that onKey has let pass.
    std::string userUnclaimedKey(const Key& key);
    // The key is let go.
    void userKeyUp(const Key& key);
    // Makes a cell active, as a click into it does.
    std::string userActivate(Grid& grid, CellPosition at);
    // Takes the cells from the active one to this one together, as a click with Shift does.
    std::string userSelectTo(Grid& grid, CellPosition at);
    std::string userClickHeading(Grid& grid, int column);
    // Puts the cells that are taken into the clipboard, cells side by side with tabs between them, and fills
    // cells from it, from the first of those that are taken on. A text for a single cell fills all of them.
    // Nothing is put in where a cell does not take its text.
    std::string userCopy(Grid& grid);
    std::string userPaste(Grid& grid);
    // The second click into a cell that the first has made active.
    void userDoubleClickCell(Grid& grid, CellPosition at);
    // Moves the insertion point in the text that is edited, in characters.
    void userCaret(Grid& grid, int caret);
    // Types into the active cell from the beginning, without ending the editing. What the cell does not take
    // leaves it as it is, and is refused with a sign.
    std::string userEdit(Grid& grid, const std::string& text);
    // A whole entry: the cell made active, the text or choice put in (a check box takes "1" or "0"), the
    // editing ended.
    std::string userCell(Grid& grid, CellPosition at, const std::string& text);
    // Takes back the last that was typed into a cell, else the last change of the grid.
    std::string userUndo();
    // Lets files fall onto the dialog.
    std::string userDrop(const std::vector<std::string>& paths);
    std::string userClose();
    // Gives the inside of the window another size.
    void userResize(Size size);

    // --- What the dialog does about it ----------------------------------------------------------------

    // Fills the controls, before the dialog is seen.
    virtual void onOpen() {}
    // A button was pressed, a picture clicked, a check box, radio button or box of a tree changed, a menu
    // entry chosen.
    virtual void onCommand(int id);
    // A radio button that was on already was clicked.
    virtual void onClickAgain(RadioButton&) {}
    // Files were dropped onto the dialog.
    virtual void onDrop(const std::vector<std::string>& /*paths*/) {}
    virtual void onSelection(Control&) {}
    virtual void onTextChange(Control&) {}
    virtual void onDoubleClick(Control&) {}
    virtual void onFocus(Control&) {}
    // A cell got another content by the user: text, choice or check mark.
    virtual void onCellChange(Grid&, CellPosition) {}
    // The source of the grid has not taken what was typed into a cell.
    virtual void onCellRefused(Grid&, CellPosition, const std::string& /*typed*/) {}
    // A change of cells or rows was taken back.
    virtual void onUndo(Grid&) {}
    virtual void onCellClick(Grid&, CellPosition) {}
    // Another cell has become the active one, or other cells are taken together.
    virtual void onCellsTaken(Grid&) {}
    virtual void onHeadingClick(Grid&, int /*column*/) {}
    // True: it is dealt with; else the cell is edited.
    virtual bool onCellDoubleClick(Grid&, CellPosition) { return false; }
    // Another cell is about to become the active one.
    virtual void onCellLeave(Grid&, CellPosition) {}
    // Another size of the inside, of a dialog that is placed to the pixel.
    virtual void onResize(Size) {}
    // A key before the dialog sees it; true: it is dealt with.
    virtual bool onKey(const Key&) { return false; }
    // A key that is let go, and how many times in a row it has been: nothing else was pressed or clicked in
    // between, and no other control or cell has become the active one.
    virtual void onKeyUp(const Key&, int /*presses*/) {}
    virtual void onOk() { end(kOk); }
    virtual void onCancel() { end(kCancel); }
    // The frame's close button.
    virtual void onClose() { onCancel(); }

  private:
    // A key that was let go, where, and how many times in a row.
    struct LetGo {
        std::string key{};
        int control = 0;
        CellPosition cell{};
        int presses = 1;
    };

    void own(std::unique_ptr<Control> control);
    std::string cannotUse(const Control& control) const;
    std::string userMnemonic(char letter);
    std::optional<std::string> userShortcut(const Key& key);
    std::string userControlKey(Control& control, const Key& key);
    std::string userItemKey(ItemControl& items, const Key& key);
    std::string userTreeKey(Tree& tree, const Key& key);
    std::string userGridKey(Grid& grid, const Key& key);
    std::string userSelectKey(Grid& grid, const Key& key);
    std::string userListCellKey(Grid& grid, const std::string& key);
    std::string userItemTyping(Grid& grid, const std::string& typed);
    std::string userTypedKey(Grid& grid, const std::string& typed);
    bool userCaretKey(Grid& grid, const Key& key);
    void enterDefault();
    // What stands in the editor of a cell goes into the cell.
    void keepTyped();

    int resource_;
    std::string title_;
    std::vector<std::unique_ptr<Control>> controls_;
    Layout layout_;
    std::map<int, Rect> rectangles_;
    Size size_;
    Size minimumSize_;
    std::optional<Font> font_;
    DialogView* view_ = nullptr;
    bool takesFiles_ = false;
    bool running_ = false;
    int result_ = kNotCreated;
    int focus_ = 0;

    LetGo letGo_;
};

}  // namespace ui
