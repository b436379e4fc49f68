// What a key does in a dialog that has not claimed it for itself.
#include <algorithm>
#include <cctype>

#include "platform/text/text.h"
#include "platform/ui/dialog.h"

namespace ui {

constexpr int kPage = 10;  // rows or items of PageUp and PageDown
// Handed on: the key means nothing to the control with the focus.
constexpr const char* kPass = "pass";

// Enter outside a button: the default button's work, with the focus left where it is.
void Dialog::enterDefault() {
    for (const auto& control : controls_)
        if (auto* button = dynamic_cast<Button*>(control.get()); button && button->isDefault()) {
            if (button->enabled() && button->visible()) onCommand(button->id());
            return;
        }
    onCommand(kOk);
}

std::string Dialog::userKey(const Key& key) {
    return onKey(key) ? std::string() : userUnclaimedKey(key);
}

void Dialog::userKeyUp(const Key& key) {
    const auto* grid = dynamic_cast<Grid*>(find(focus_));
    LetGo now{keyText(key), focus_, grid ? grid->active() : CellPosition{}};
    if (now.key == letGo_.key && now.control == letGo_.control && now.cell == letGo_.cell)
        now.presses = letGo_.presses + 1;
    letGo_ = now;
    onKeyUp(key, now.presses);
}

// Alt and a letter: the control whose caption has the mnemonic, or the one behind the label that has it.
std::string Dialog::userMnemonic(char letter) {
    for (size_t i = 0; i < controls_.size(); ++i) {
        Control& control = *controls_[i];
        const bool isTyped = control.kind() == ControlKind::Edit || control.kind() == ControlKind::DropDown;
        if (isTyped || mnemonicOf(control.text()) != letter) continue;
        if (control.takesFocus()) return userClick(control);
        if (control.kind() == ControlKind::Label && i + 1 < controls_.size() &&
            controls_[i + 1]->takesFocus())
            return userFocus(*controls_[i + 1]);
    }
    return "no control has this mnemonic";
}

// Nothing when no menu has the key as its shortcut.
std::optional<std::string> Dialog::userShortcut(const Key& key) {
    for (const auto& control : controls_)
        if (auto* menu = dynamic_cast<Menu*>(control.get()))
            for (const Menu::Entry& entry : menu->entries())
                if (!entry.shortcut.empty() && text::equalNoCase(entry.shortcut, keyText(key)))
                    return userMenu(*menu, entry.command);
    return std::nullopt;
}

std::string Dialog::userUnclaimedKey(const Key& key) {
    if (key.alt && key.name.size() == 1)
        return userMnemonic(static_cast<char>(std::toupper(static_cast<unsigned char>(key.name[0]))));
    if (std::optional<std::string> answer = userShortcut(key)) return *answer;
    Control* focused = find(focus_);
    const bool isText =
        focused && (focused->kind() == ControlKind::Edit || focused->kind() == ControlKind::DropDown);
    if (!isText && key.control && !key.alt && text::equalNoCase(key.name, "Z")) return userUndo();
    if (focused)
        if (std::string answer = userControlKey(*focused, key); answer != kPass) return answer;
    if (key.is("Tab"))
        focusNext(key.shift);
    else if (key.is("Enter") && key.repeated)
        return {};
    else if (key.is("Enter"))
        enterDefault();
    else if (key.is("Escape"))
        onCancel();
    else
        return "this key does nothing here";
    return {};
}

std::string Dialog::userControlKey(Control& control, const Key& key) {
    if (auto* grid = dynamic_cast<Grid*>(&control)) return userGridKey(*grid, key);
    if (auto* items = dynamic_cast<ItemControl*>(&control)) return userItemKey(*items, key);
    if (auto* tree = dynamic_cast<Tree*>(&control)) return userTreeKey(*tree, key);
    if (auto* tabs = dynamic_cast<Tabs*>(&control); tabs && (key.is("Left") || key.is("Right"))) {
        int page = tabs->page() + (key.is("Left") ? -1 : 1);
        return page >= 0 && page < tabs->pageCount() ? userPick(control, page) : std::string();
    }
    switch (control.kind()) {
        case ControlKind::Button:
        case ControlKind::Picture:
            // A key that is held down presses a button once, and none that the focus has come to meanwhile.
            if (!key.is("Enter") && !key.is("Space")) return kPass;
            return key.repeated ? std::string() : userClick(control);
        case ControlKind::CheckBox:
        case ControlKind::RadioButton:
            return key.is("Space") ? userClick(control) : kPass;
        case ControlKind::Edit:
            if (!key.control && !key.alt && (characterCount(key.name) == 1 || key.is("Space")))
                return userText(control, control.text() + (key.is("Space") ? " " : key.name));
            return kPass;
        default:
            return kPass;
    }
}

// Arrows pick the item above or below; in a list of several, Shift takes it too and the space bar takes or
// leaves the present one.
std::string Dialog::userItemKey(ItemControl& items, const Key& key) {
    auto* list = dynamic_cast<List*>(&items);
    const int last = items.count() - 1, present = items.selected();
    if (list && list->multiple() && key.is("Space"))
        return present >= 0 ? userPick(items, present, true) : std::string();
    const bool endKeys = items.kind() != ControlKind::DropDown;
    const std::optional<int> wanted = [&]() -> std::optional<int> {
        if (key.is("Down")) return present + 1;
        if (key.is("Up")) return present - 1;
        if (list && key.is("PageDown")) return present + kPage;
        if (list && key.is("PageUp")) return present - kPage;
        if (endKeys && key.is("Home")) return 0;
        if (endKeys && key.is("End")) return last;
        return std::nullopt;
    }();
    if (!wanted) return kPass;
    const int next = std::clamp(*wanted, 0, std::max(0, last));
    return last < 0 || next == present ? std::string() : userPick(items, next, key.shift);
}

// Arrows walk the nodes that are seen, and open and close those with others below them; the space bar checks.
std::string Dialog::userTreeKey(Tree& tree, const Key& key) {
    const std::vector<int> seen = tree.seenNodes();
    if (seen.empty()) return kPass;
    const int last = static_cast<int>(seen.size()) - 1;
    const int selected = tree.selected();
    const int at = static_cast<int>(std::find(seen.begin(), seen.end(), selected) - seen.begin());
    auto pick = [&](int place) {
        int node = seen[static_cast<size_t>(std::clamp(place, 0, last))];
        return node == selected ? std::string() : userPick(tree, node);
    };
    if (at > last)  // nothing that is seen is selected
        return key.is("Down") || key.is("Home") ? pick(0)
               : key.is("Up") || key.is("End")  ? pick(last)
                                                : kPass;
    const Tree::Node& node = tree.nodes()[static_cast<size_t>(selected)];
    if (key.is("Down")) return pick(at + 1);
    if (key.is("Up")) return pick(at - 1);
    if (key.is("PageDown")) return pick(at + kPage);
    if (key.is("PageUp")) return pick(at - kPage);
    if (key.is("Home")) return pick(0);
    if (key.is("End")) return pick(last);
    if (key.is("Space") && node.hasBox) return userCheckNode(tree, selected, !node.checked);
    if (key.is("Right")) {
        if (node.expanded || !tree.hasChildren(selected)) return pick(at + (node.expanded ? 1 : 0));
        tree.expand(selected);
        return {};
    }
    if (key.is("Left")) {
        if (!(node.expanded && tree.hasChildren(selected)))
            return node.parent >= 0 ? userPick(tree, node.parent) : std::string();
        tree.expand(selected, false);
        return {};
    }
    return kPass;
}

namespace {

// The item that what was typed begins, looked for behind the one that is shown; -1 for none. One letter over
// and over walks the items that it begins.
int typedItem(const std::vector<std::string>& items, const std::string& shown, const std::string& typed) {
    const int count = static_cast<int>(items.size());
    const int present = static_cast<int>(std::find(items.begin(), items.end(), shown) - items.begin());
    auto find = [&](int from, const std::string& beginning) {
        for (int step = 0; step < count; ++step) {
            const int index = (from + step) % count;
            if (text::startsWith(text::upper(items[static_cast<size_t>(index)]), text::upper(beginning)))
                return index;
        }
        return -1;
    };
    size_t letter = 0;
    text::nextCodePoint(typed, letter);
    if (letter == typed.size()) return find(present == count ? 0 : present + 1, typed);
    if (const int item = find(present, typed); item >= 0) return item;
    const std::string first = typed.substr(0, letter);
    const bool same = text::replaceAll(typed, first, "").empty();
    return same ? find(present + 1, first) : -1;
}

void removeLastCharacter(std::string& text) {
    while (!text.empty() && (text.back() & 0xC0) == 0x80) text.pop_back();
    if (!text.empty()) text.pop_back();
}

bool isListKey(const Key& key) {
    for (const char* name : {"Up", "Down", "Home", "End", "PageUp", "PageDown"})
        if (key.is(name)) return true;
    return false;
}

}  // namespace

// Letters pick the item that they begin as a whole. As long as no item begins so, the cell has what it had
// before them, so that a value meant for another cell changes nothing.
std::string Dialog::userItemTyping(Grid& grid, const std::string& typed) {
    if (!grid.editing()) grid.setEditing(true);
    if (grid.typedForItem_.empty()) grid.textBeforeTyping_ = grid.editText();
    const CellPosition at = grid.active();
    const std::vector<std::string>& items = grid.type(at.column, at.row).items;
    const int item = typed.empty() ? -1 : typedItem(items, grid.editText(), typed);
    std::string text = item < 0 ? grid.textBeforeTyping_ : items[static_cast<size_t>(item)];
    grid.typedForItem_ = typed;
    const int end = characterCount(text);
    grid.typeText(std::move(text), end);
    if (item >= 0 || typed.empty()) return {};
    std::string reason = "no item of the list begins with \"" + typed + "\"";
    grid.refuse(reason);
    return reason;
}

// In an open list: letters, Backspace for the last of them, and the keys that walk it.
std::string Dialog::userListCellKey(Grid& grid, const std::string& key) {
    if (characterCount(key) == 1) return userItemTyping(grid, grid.typedForItem() + key);
    if (key == "Backspace") {
        std::string typed = grid.typedForItem();
        removeLastCharacter(typed);
        return userItemTyping(grid, std::move(typed));
    }
    const CellPosition at = grid.active();
    const std::vector<std::string>& items = grid.type(at.column, at.row).items;
    if (items.empty()) return {};
    const int last = static_cast<int>(items.size()) - 1;
    const auto shown = std::find(items.begin(), items.end(), grid.editText());
    const int present = shown == items.end() ? -1 : static_cast<int>(shown - items.begin());
    if (present < 0 && (key == "Up" || key == "PageUp")) return {};
    const int next = key == "Down"       ? present + 1
                     : key == "Up"       ? present - 1
                     : key == "PageDown" ? present + kPage
                     : key == "PageUp"   ? present - kPage
                     : key == "Home"     ? 0
                                         : last;
    return userEdit(grid, items[static_cast<size_t>(std::clamp(next, 0, last))]);
}

// A character, Backspace or Delete in a cell that is edited, or that begins to be by it.
std::string Dialog::userTypedKey(Grid& grid, const std::string& typed) {
    if (typed == "Delete") return userEdit(grid, "");
    std::string before, behind;
    if (grid.editing()) {
        size_t caret = 0;
        for (int n = 0; n < grid.caret(); ++n) text::nextCodePoint(grid.editText(), caret);
        before = grid.editText().substr(0, caret);
        behind = grid.editText().substr(caret);
    }
    if (typed != "Backspace") {
        before += typed;
    } else {
        removeLastCharacter(before);
    }
    std::string problem = userEdit(grid, before + behind);
    if (problem.empty()) userCaret(grid, characterCount(before));
    return problem;
}

// False for a key that does not move the insertion point.
bool Dialog::userCaretKey(Grid& grid, const Key& key) {
    if (key.is("Left"))
        userCaret(grid, grid.caret() - 1);
    else if (key.is("Right"))
        userCaret(grid, grid.caret() + 1);
    else if (key.is("Home"))
        userCaret(grid, 0);
    else if (key.is("End"))
        userCaret(grid, characterCount(grid.editText()));
    else
        return false;
    return true;
}

// Shift and a key that moves: the cells up to there are taken too.
std::string Dialog::userSelectKey(Grid& grid, const Key& key) {
    const CellRange range = grid.selection();
    const CellPosition active = grid.active();
    // The corner that moves is the one that is not the active cell.
    CellPosition to{range.first.column == active.column ? range.last.column : range.first.column,
                    range.first.row == active.row ? range.last.row : range.first.row};
    if (key.name == "Left")
        --to.column;
    else if (key.name == "Right")
        ++to.column;
    else if (key.name == "Up")
        --to.row;
    else if (key.name == "Down")
        ++to.row;
    else if (key.name == "PageUp")
        to.row -= grid.pageRows();
    else if (key.name == "PageDown")
        to.row += grid.pageRows();
    else if (key.name == "Home")
        to.column = 1;
    else if (key.name == "End")
        to.column = grid.columns();
    else
        return kPass;
    grid.selectTo({std::clamp(to.column, 1, std::max(1, grid.columns())),
                   std::clamp(to.row, 1, std::max(1, grid.rows()))});
    onCellsTaken(grid);
    return {};
}

// Keys that every grid knows; kPass hands the key on to the dialog.
std::string Dialog::userGridKey(Grid& grid, const Key& key) {
    CellPosition at = grid.active();
    if (key.is("Escape")) {
        if (!grid.editing()) return kPass;
        grid.cancelEdit();
        return {};
    }
    if (key.is("Enter") || key.is("Tab")) return kPass;
    if (key.control && !key.alt && !grid.editing()) {
        if (text::equalNoCase(key.name, "C") || key.name == "Insert") return userCopy(grid);
        if (text::equalNoCase(key.name, "V")) return userPaste(grid);
    }
    if (key.shift && grid.selectsCells() && !grid.editing())
        if (std::string answer = userSelectKey(grid, key); answer != kPass) return answer;
    const CellType& type = grid.type(at.column, at.row);
    if (key.is("Space") && type.kind == CellKind::CheckBox) {
        return userCell(grid, at, grid.checked(at.column, at.row) ? "0" : "1");
    }
    if (key.is("Space") && type.kind == CellKind::Button) {
        onCellClick(grid, at);
        return {};
    }
    std::string typed = key.is("Space") ? " " : key.name;
    bool character = !key.control && !key.alt && characterCount(typed) == 1;
    bool closedList = type.kind == CellKind::DropDown && !type.editable;
    if (closedList && (character || (grid.editing() && (isListKey(key) || key.is("Backspace")))))
        return userListCellKey(grid, character ? typed : key.name);
    if (character || key.is("Backspace") || key.is("Delete")) {
        return userTypedKey(grid, character ? typed : key.name);
    }
    if (grid.editing() && userCaretKey(grid, key)) return {};
    if (key.is("Left"))
        --at.column;
    else if (key.is("Right"))
        ++at.column;
    else if (key.is("Up"))
        --at.row;
    else if (key.is("Down"))
        ++at.row;
    else if (key.is("PageUp"))
        at.row = std::max(1, at.row - grid.pageRows());
    else if (key.is("PageDown"))
        at.row = std::min(grid.rows(), at.row + grid.pageRows());
    else if (key.is("Home"))
        at.column = 1;
    else if (key.is("End"))
        at.column = grid.columns();
    else
        return kPass;
    grid.setActive(at.column, at.row);
    onCellsTaken(grid);
    return {};
}

}  // namespace ui
