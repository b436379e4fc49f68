// The controls of a dialog as data: what they say, hold and allow. A view shows them and keeps in step.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/images/image.h"
#include "platform/ui/font.h"

namespace ui {

class Dialog;

enum class ControlKind {
    Label,
    Edit,
    Button,
    CheckBox,
    RadioButton,
    GroupBox,
    List,
    DropDown,
    Tree,
    Grid,
    Progress,
    Picture,
    Tabs,
    Menu
};

// A caption with its mnemonic mark removed: "&Save && go" gives "Save & go".
std::string plainCaption(std::string_view caption);
// The letter that Alt reaches the control with, upper case; 0 when the caption has none.
char mnemonicOf(std::string_view caption);

class Control {
  public:
    Control(ControlKind kind, int id, std::string text) : kind_(kind), id_(id), text_(std::move(text)) {}
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    ControlKind kind() const { return kind_; }
    int id() const { return id_; }

    // The caption of a label, button, check box, radio button or group; the content of an edit.
    const std::string& text() const { return text_; }
    void setText(std::string text);

    bool enabled() const { return enabled_; }
    void enable(bool on = true);
    bool visible() const { return visible_; }
    void show(bool on = true);
    // What a person is told who rests the pointer on it; "" leaves it to the view.
    const std::string& explanation() const { return explanation_; }
    void setExplanation(std::string text);

    // A visible, enabled control that a person can go to.
    virtual bool takesFocus() const;
    // Tab stops here: there is something to be done in it.
    virtual bool isTabStop() const { return takesFocus(); }

    // In place of the dialog's; given before the dialog is seen. A grid has one for its cells.
    const std::optional<Font>& ownFont() const { return ownFont_; }
    void setOwnFont(const Font& font) { ownFont_ = font; }

    Dialog* dialog() const { return dialog_; }

  protected:
    // Tells the view that the control has changed.
    void changed();

  private:
    friend class Dialog;
    ControlKind kind_;
    int id_;
    std::string text_;
    std::string explanation_;
    bool enabled_ = true;
    bool visible_ = true;
    std::optional<Font> ownFont_;
    Dialog* dialog_ = nullptr;
};

class Label : public Control {
  public:
    explicit Label(int id, std::string text = {}, int alignment = 0)
        : Control(ControlKind::Label, id, std::move(text)), alignment_(alignment) {}
    int alignment() const { return alignment_; }  // 0 left, 1 centre, 2 right

  private:
    int alignment_;
};

class GroupBox : public Control {
  public:
    explicit GroupBox(int id, std::string caption = {})
        : Control(ControlKind::GroupBox, id, std::move(caption)) {}
};

class Edit : public Control {
  public:
    explicit Edit(int id, bool readOnly = false) : Control(ControlKind::Edit, id, {}), readOnly_(readOnly) {}
    bool readOnly() const { return readOnly_; }
    bool isTabStop() const override { return takesFocus() && !readOnly_; }
    void setReadOnly(bool on);
    // Most characters that a user can type; 0 sets no limit.
    int maxLength() const { return maxLength_; }
    void setMaxLength(int characters) { maxLength_ = characters; }
    // A password: what is typed is neither shown nor put into any log.
    bool secret() const { return secret_; }
    void setSecret(bool on = true) { secret_ = on; }
    // The selected range, in characters: from, to; the whole text is 0, -1.
    void selectRange(int from, int to);
    int selectionFrom() const { return from_; }
    int selectionTo() const { return to_; }

  private:
    bool readOnly_;
    bool secret_ = false;
    int maxLength_ = 0;
    int from_ = 0, to_ = 0;
};

class Button : public Control {
  public:
    explicit Button(int id, std::string caption, bool isDefault = false)
        : Control(ControlKind::Button, id, std::move(caption)), isDefault_(isDefault) {}
    bool isDefault() const { return isDefault_; }

  private:
    bool isDefault_;
};

class CheckBox : public Control {
  public:
    explicit CheckBox(int id, std::string caption, bool checked = false)
        : Control(ControlKind::CheckBox, id, std::move(caption)), checked_(checked) {}
    bool checked() const { return checked_; }
    void check(bool on = true);

  private:
    bool checked_;
};

// Radio buttons of one group number exclude each other.
class RadioButton : public Control {
  public:
    RadioButton(int id, std::string caption, int group)
        : Control(ControlKind::RadioButton, id, std::move(caption)), group_(group) {}
    int group() const { return group_; }
    bool checked() const { return checked_; }
    // Checking one clears the others of its group.
    void check(bool on = true);

  private:
    int group_;
    bool checked_ = false;
};

// What list boxes and drop-downs share: items and the one selected, -1 for none.
class ItemControl : public Control {
  public:
    using Control::Control;
    virtual int count() const { return static_cast<int>(items_.size()); }
    // Those that the control keeps itself.
    const std::vector<std::string>& items() const { return items_; }
    // The text of an item; "" outside the range.
    virtual std::string item(int index) const;
    int addItem(std::string text);  // its index
    virtual void removeItem(int index);
    virtual void clearItems();
    // The first item at or behind an index that equals the text exactly; -1 for none.
    int findExact(std::string_view text, int from = 0) const;
    int selected() const { return selected_; }
    std::string selectedText() const { return item(selected_); }
    // -1 clears the selection; an index outside the range does so too.
    virtual void select(int index);

  protected:
    std::vector<std::string> items_;
    int selected_ = -1;
};

class DropDown : public ItemControl {
  public:
    explicit DropDown(int id, bool editable = false)
        : ItemControl(ControlKind::DropDown, id, {}), editable_(editable) {}
    bool editable() const { return editable_; }
    // The items are what the text may go on with: a view offers them while a person types.
    bool offersItems() const { return offersItems_; }
    void setOffersItems(bool on = true) { offersItems_ = on; }
    void select(int index) override;  // an editable one takes the item's text
    // Selects the whole text of an editable one. A view sees by the number that it was asked for again.
    void selectText();
    int textSelections() const { return textSelections_; }

  private:
    bool editable_;
    bool offersItems_ = false;
    int textSelections_ = 0;
};

class Tree : public Control {
  public:
    struct Node {
        std::string text;
        int parent = -1;  // index of the parent, -1 at the top
        int image = 0;    // 0 a folder, 1 a leaf
        bool expanded = false;
        bool removed = false;  // indices of the other nodes stay as they are
        bool hasBox = false;   // it can be checked
        bool checked = false;
    };
    // sorted: the nodes below a node are shown by their text, without regard to case; else in the order in
    // which they were added.
    explicit Tree(int id, bool sorted = false) : Control(ControlKind::Tree, id, {}), sorted_(sorted) {}
    const std::vector<Node>& nodes() const { return nodes_; }
    int addNode(int parent, std::string text, int image = 0);  // its index
    // Takes over all nodes at once, in place of those that there are: for a tree with many.
    void setNodes(std::vector<Node> nodes);
    void setNode(int index, std::string text, int image);
    void removeNode(int index);  // with all below it
    void expand(int index, bool on = true);
    // Of a node with a box; others stay unchecked.
    void check(int index, bool on = true);
    void clearNodes();
    // Another number whenever nodes have come, gone or got another text, so that a view sees whether what it
    // shows is still right.
    int filling() const { return filling_; }
    int selected() const { return selected_; }
    void select(int index);
    bool hasChildren(int index) const;
    // The nodes below each node as they are shown; those at the top stand behind the last.
    std::vector<std::vector<int>> children() const;
    // The nodes that no closed one above hides, from top to bottom.
    std::vector<int> seenNodes() const;
    // The node of that text below a parent; -1 for none.
    int find(std::string_view text, int parent = -1) const;

  private:
    bool isNode(int index) const;
    void refilled();
    bool sorted_;
    std::vector<Node> nodes_;
    int selected_ = -1;
    int filling_ = 0;
};

class Progress : public Control {
  public:
    explicit Progress(int id) : Control(ControlKind::Progress, id, {}) {}
    void setRange(int from, int to);
    void setPosition(int position);
    int from() const { return from_; }
    int to() const { return to_; }
    int position() const { return position_; }

  private:
    int from_ = 0, to_ = 100, position_ = 0;
};

// A frame that shows an image file, or a picture that the program has; without either it is empty.
class Picture : public Control {
  public:
    Picture(int id, int width, int height)
        : Control(ControlKind::Picture, id, {}), room_{width, height}, frame_(room_) {}
    int width() const { return room_.width; }  // of the room for it, in pixels at 96 dpi
    int height() const { return room_.height; }
    const std::string& path() const { return path_; }
    // The frame round the picture, within the room: all of it unless it is given.
    images::Size frame() const { return frame_; }
    void setPath(std::string path) { setPath(std::move(path), room_); }
    void setPath(std::string path, images::Size frame);
    const images::Image& image() const { return image_; }
    void setImage(images::Image image);
    // Another number whenever it has been given something to show, the same file again included.
    int changes() const { return changes_; }

    // A person may click what it shows, which is a command of the dialog.
    void setClickable(bool on = true);
    bool isClickable() const { return clickable_ && (!path_.empty() || !image_.empty()); }
    bool takesFocus() const override { return isClickable() && enabled() && visible(); }

  private:
    images::Size room_, frame_;
    std::string path_;
    images::Image image_;
    int changes_ = 0;
    bool clickable_ = false;
};

class Tabs : public Control {
  public:
    Tabs(int id, std::vector<std::string> pages)
        : Control(ControlKind::Tabs, id, {}), pages_(std::move(pages)) {}
    int pageCount() const { return static_cast<int>(pages_.size()); }
    const std::vector<std::string>& pages() const { return pages_; }
    int page() const { return page_; }
    void setPage(int page);

  private:
    std::vector<std::string> pages_;
    int page_ = 0;
};

// The menu bar of a dialog, as a flat list in reading order.
class Menu : public Control {
  public:
    struct Entry {
        int command = 0;  // 0: a heading that opens a menu, or a separator when the caption is empty
        std::string caption;
        int level = 0;  // 0 in the bar, 1 below it, and so on
        bool enabled = true;
        bool checked = false;
        std::string shortcut;  // "Ctrl+S", shown and obeyed
    };
    explicit Menu(int id) : Control(ControlKind::Menu, id, {}) {}
    std::vector<Entry>& entries() { return entries_; }
    const std::vector<Entry>& entries() const { return entries_; }
    Entry* find(int command);
    void enableEntry(int command, bool on);
    bool takesFocus() const override { return false; }

  private:
    std::vector<Entry> entries_;
};

}  // namespace ui
