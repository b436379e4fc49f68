// A key as dialogs see it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ui {

struct Key {
    // "Enter", "Escape", "Tab", "Space", "Backspace", "Delete", "Insert", "Home", "End", "PageUp",
    // "PageDown", "Left", "Right", "Up", "Down", "F1" to "F12", or the character that is typed.
    std::string name;
    bool shift = false;
    bool control = false;
    bool alt = false;
    bool repeated = false;  // sent again because the key is held down

    bool is(std::string_view plain) const { return name == plain && !control && !alt; }
};

// "Shift+Tab", "Ctrl+S", "Alt+o", "Enter", "x". Nothing when the text names no key.
std::optional<Key> parseKey(std::string_view text);
std::string keyText(const Key& key);

}  // namespace ui
