#include "platform/ui/dialog.h"

#include <algorithm>
#include <cctype>

#include "platform/text/text.h"
#include "platform/ui/backend.h"
#include "platform/ui/cell_block.h"
#include "platform/ui/cell_entry.h"

namespace ui {

Dialog::Dialog(int resource, std::string title) : resource_(resource), title_(std::move(title)) {}
Dialog::~Dialog() = default;

void Dialog::setTitle(std::string title) {
    title_ = std::move(title);
    if (view_) view_->titleChanged();
}

void Dialog::own(std::unique_ptr<Control> control) {
    control->dialog_ = this;
    controls_.push_back(std::move(control));
}

Control* Dialog::find(int id) const {
    for (const auto& control : controls_)
        if (control->id() == id) return control.get();
    return nullptr;
}

Control* Dialog::find(std::string_view idOrCaption) const {
    if (!idOrCaption.empty() &&
        std::all_of(idOrCaption.begin(), idOrCaption.end(), [](unsigned char c) { return std::isdigit(c); }))
        if (Control* byId = find(static_cast<int>(text::toLong(idOrCaption)))) return byId;
    std::string wanted = plainCaption(text::trim(idOrCaption));
    Control* labelled = nullptr;
    for (size_t i = 0; i < controls_.size(); ++i) {
        Control& control = *controls_[i];
        if (control.kind() == ControlKind::Edit || plainCaption(text::trim(control.text())) != wanted)
            continue;
        if (control.kind() != ControlKind::Label) return &control;
        // A label names the control behind it.
        if (!labelled)
            labelled = i + 1 < controls_.size() && controls_[i + 1]->kind() != ControlKind::Label
                           ? controls_[i + 1].get()
                           : &control;
    }
    return labelled;
}

std::vector<RadioButton*> Dialog::radioGroup(int group) const {
    std::vector<RadioButton*> members;
    for (const auto& control : controls_)
        if (auto* radio = dynamic_cast<RadioButton*>(control.get()); radio && radio->group() == group)
            members.push_back(radio);
    return members;
}

void Dialog::setRectangle(int id, const Rect& rectangle) {
    rectangles_[id] = rectangle;
    if (Control* control = find(id)) controlChanged(*control);
}

void Dialog::controlChanged(Control& control) {
    if (view_) view_->controlChanged(control);
}

void Dialog::cellChanged(Grid& grid, CellPosition at) {
    if (view_) view_->cellChanged(grid, at);
}

bool Dialog::open() {
    if (!backend()) return false;
    running_ = true;
    result_ = kCancel;
    onOpen();
    if (!find(focus_)) focusNext();
    if (!running_) return true;
    if (!backend()->open(*this)) running_ = false;
    return running_;
}

void Dialog::waitForEvent() {
    if (running_) backend()->waitForEvent(*this);
}

void Dialog::takeEvents() {
    if (running_) backend()->takeEvents(*this);
}

void Dialog::close() {
    running_ = false;
    if (backend()) backend()->close(*this);
    view_ = nullptr;
}

int Dialog::runModal() {
    if (!open()) return kNotCreated;
    while (running_) waitForEvent();
    close();
    return result_;
}

void Dialog::end(int result) {
    result_ = result;
    running_ = false;
    if (view_) view_->ended();
}

void Dialog::setFocus(int id) {
    Control* control = find(id);
    if (!control || focus_ == id) return;
    keepTyped();
    focus_ = id;
    if (view_) view_->focusChanged(id);
    onFocus(*control);
}

void Dialog::focusNext(bool backwards) {
    size_t count = controls_.size();
    auto current =
        std::find_if(controls_.begin(), controls_.end(), [&](const auto& c) { return c->id() == focus_; });
    size_t at = current == controls_.end() ? (backwards ? 0 : count - 1)
                                           : static_cast<size_t>(current - controls_.begin());
    for (size_t step = 0; step < count; ++step) {
        at = backwards ? (at + count - 1) % count : (at + 1) % count;
        if (controls_[at]->isTabStop()) return setFocus(controls_[at]->id());
    }
}

// --- What a person does ---------------------------------------------------------------------------------

std::string Dialog::cannotUse(const Control& control) const {
    std::string name = control.text().empty() ? std::to_string(control.id()) : plainCaption(control.text());
    if (!control.visible()) return "\"" + name + "\" is not visible";
    if (!control.enabled()) return "\"" + name + "\" is disabled";
    return {};
}

std::string Dialog::userFocus(Control& control) {
    if (std::string problem = cannotUse(control); !problem.empty()) return problem;
    if (!control.takesFocus()) return "this control does not take the focus";
    setFocus(control.id());
    return {};
}

std::string Dialog::userText(Control& control, std::string text) {
    auto* edit = dynamic_cast<Edit*>(&control);
    auto* dropDown = dynamic_cast<DropDown*>(&control);
    if (!edit && !(dropDown && dropDown->editable())) return "text cannot be typed into this control";
    if (std::string problem = userFocus(control); !problem.empty()) return problem;
    if (edit && edit->readOnly()) return "this edit is read-only";
    if (edit && edit->maxLength() > 0) {
        size_t end = 0;
        for (int n = 0; end < text.size() && n < edit->maxLength(); ++n) text::nextCodePoint(text, end);
        text.resize(end);
    }
    if (text == control.text()) return {};
    control.setText(std::move(text));
    onTextChange(control);
    return {};
}

std::string Dialog::userPick(Control& control, int index, bool add) {
    if (std::string problem = userFocus(control); !problem.empty()) return problem;
    if (auto* list = dynamic_cast<List*>(&control)) {
        if (index < 0 || index >= list->count()) return "there is no such item";
        if (list->multiple() && add)
            list->selectItem(index, !list->isSelected(index));
        else
            list->select(index);
    } else if (auto* dropDown = dynamic_cast<DropDown*>(&control)) {
        if (index < 0 || index >= dropDown->count()) return "there is no such item";
        dropDown->select(index);
    } else if (auto* tabs = dynamic_cast<Tabs*>(&control)) {
        if (index < 0 || index >= tabs->pageCount()) return "there is no such page";
        tabs->setPage(index);
    } else if (auto* tree = dynamic_cast<Tree*>(&control)) {
        tree->select(index);
        if (tree->selected() < 0) return "there is no such node";
    } else {
        return "nothing can be picked in this control";
    }
    onSelection(control);
    return {};
}

std::string Dialog::userCheck(Control& control, bool on) {
    auto* box = dynamic_cast<CheckBox*>(&control);
    auto* radio = dynamic_cast<RadioButton*>(&control);
    if (!box && !radio) return "this control cannot be checked";
    if (std::string problem = userFocus(control); !problem.empty()) return problem;
    if (radio && !on) return "a radio button is cleared by another of its group";
    if ((box ? box->checked() : radio->checked()) == on) return {};
    if (box)
        box->check(on);
    else
        radio->check();
    onCommand(control.id());
    return {};
}

std::string Dialog::userCheckNode(Tree& tree, int node, bool on) {
    if (std::string problem = userFocus(tree); !problem.empty()) return problem;
    const bool isThere = node >= 0 && static_cast<size_t>(node) < tree.nodes().size();
    if (!isThere || !tree.nodes()[static_cast<size_t>(node)].hasBox) return "there is no box";
    if (tree.nodes()[static_cast<size_t>(node)].checked == on) return {};
    tree.check(node, on);
    onCommand(tree.id());
    return {};
}

std::string Dialog::userClick(Control& control) {
    if (auto* box = dynamic_cast<CheckBox*>(&control)) return userCheck(control, !box->checked());
    if (auto* radio = dynamic_cast<RadioButton*>(&control)) {
        if (!radio->checked()) return userCheck(control, true);
        if (std::string problem = userFocus(control); !problem.empty()) return problem;
        onClickAgain(*radio);
        return {};
    }
    if (control.kind() != ControlKind::Button && control.kind() != ControlKind::Picture)
        return userFocus(control);
    if (std::string problem = userFocus(control); !problem.empty()) return problem;
    onCommand(control.id());
    return {};
}

std::string Dialog::userDoubleClick(Control& control, int index) {
    if (std::string problem = userPick(control, index); !problem.empty()) return problem;
    if (running_) onDoubleClick(control);
    return {};
}

std::string Dialog::userMenu(Menu& menu, int command) {
    Menu::Entry* entry = menu.find(command);
    if (!entry) return "there is no such menu entry";
    if (!entry->enabled) return "\"" + plainCaption(entry->caption) + "\" is disabled";
    keepTyped();
    onCommand(command);
    return {};
}

void Dialog::onCommand(int id) {
    if (id == kOk)
        onOk();
    else if (id == kCancel)
        onCancel();
}

std::string Dialog::userActivate(Grid& grid, CellPosition at) {
    if (std::string problem = userFocus(grid); !problem.empty()) return problem;
    if (!grid.has(at.column, at.row)) return "there is no such cell";
    letGo_ = {};
    grid.setActive(at.column, at.row);
    onCellsTaken(grid);
    if (running_) onCellClick(grid, at);
    return {};
}

std::string Dialog::userSelectTo(Grid& grid, CellPosition at) {
    if (std::string problem = userFocus(grid); !problem.empty()) return problem;
    if (!grid.selectsCells()) return "cells of this grid are not taken together";
    if (!grid.has(at.column, at.row)) return "there is no such cell";
    letGo_ = {};
    grid.selectTo(at);
    onCellsTaken(grid);
    return {};
}

std::string Dialog::userClickHeading(Grid& grid, int column) {
    if (std::string problem = userFocus(grid); !problem.empty()) return problem;
    if (column < 1 || column > grid.columns()) return "there is no such heading";
    keepTyped();
    onHeadingClick(grid, column);
    return {};
}

std::string Dialog::userCopy(Grid& grid) {
    if (grid.rows() == 0) return "there are no cells to copy";
    backend()->setClipboard(cellsAsText(grid, grid.selection()));
    return {};
}

std::string Dialog::userPaste(Grid& grid) {
    if (grid.rows() == 0) return "there are no cells to paste into";
    CellPaste paste(grid, backend()->clipboard());
    if (!paste.refusal().empty()) {
        grid.refuse(paste.refusal());
        return paste.refusal();
    }
    grid.rememberForUndo();
    for (const CellPaste::Entry& entry : paste.entries()) {
        if (!running_ || grid.text(entry.at.column, entry.at.row) == entry.text) continue;
        grid.setText(entry.at.column, entry.at.row, entry.text);
        onCellChange(grid, entry.at);
    }
    return {};
}

void Dialog::userDoubleClickCell(Grid& grid, CellPosition at) {
    if (!onCellDoubleClick(grid, at) && running_ && grid.active() == at) grid.setEditing(true);
}

void Dialog::userCaret(Grid& grid, int caret) {
    grid.caret_ = std::clamp(caret, 0, characterCount(grid.editText_));
}

std::string Dialog::userEdit(Grid& grid, const std::string& text) {
    const CellPosition at = grid.active();
    if (!grid.has(at.column, at.row)) return "there is no such cell";
    CellEntry entry = entryOf(grid.type(at.column, at.row), text);
    if (!entry.refusal.empty()) {
        grid.refuse(entry.refusal);
        return entry.refusal;
    }
    grid.typedForItem_.clear();
    const int end = characterCount(entry.text);
    grid.typeText(std::move(entry.text), end);
    return {};
}

std::string Dialog::userCell(Grid& grid, CellPosition at, const std::string& text) {
    if (std::string problem = userActivate(grid, at); !problem.empty()) return problem;
    if (!running_ || !grid.has(at.column, at.row)) return {};
    const CellType type = grid.type(at.column, at.row);
    if (type.kind == CellKind::CheckBox) {
        bool on = text == "1";
        if (grid.checked(at.column, at.row) == on) return {};
        grid.rememberForUndo();
        grid.setChecked(at.column, at.row, on);
        onCellChange(grid, at);
        return {};
    }
    if (type.kind == CellKind::Button) {
        onCellClick(grid, at);
        return {};
    }
    if (std::string problem = userEdit(grid, text); !problem.empty()) return problem;
    grid.setEditing(false);
    return {};
}

void Dialog::keepTyped() {
    if (auto* grid = dynamic_cast<Grid*>(find(focus_)); grid && grid->editing()) grid->setEditing(false);
}

std::string Dialog::userUndo() {
    auto* grid = dynamic_cast<Grid*>(find(focus_));
    if (grid && grid->editing()) {
        grid->undoTyping();
        return {};
    }
    for (size_t i = 0; !grid && i < controls_.size(); ++i) grid = dynamic_cast<Grid*>(controls_[i].get());
    if (!grid || !grid->takesFocus() || !grid->undo()) return "there is nothing to take back";
    onUndo(*grid);
    return {};
}

std::string Dialog::userDrop(const std::vector<std::string>& paths) {
    if (!takesFiles_) return "files cannot be dropped here";
    keepTyped();
    onDrop(paths);
    return {};
}

std::string Dialog::userClose() {
    keepTyped();
    onClose();
    return {};
}

void Dialog::userResize(Size size) {
    size_ = size;
    onResize(size);
}

}  // namespace ui
