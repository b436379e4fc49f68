#include "platform/ui/key.h"

#include <array>

#include "platform/text/text.h"
#include "platform/ui/font.h"

namespace ui {
namespace {

constexpr std::array kNames = {"Enter", "Escape", "Tab",    "Space",    "Backspace", "Delete", "Insert",
                               "Home",  "End",    "PageUp", "PageDown", "Left",      "Right",  "Up",
                               "Down",  "F1",     "F2",     "F3",       "F4",        "F5",     "F6",
                               "F7",    "F8",     "F9",     "F10",      "F11",       "F12"};

}  // namespace

std::optional<Key> parseKey(std::string_view whole) {
    Key key;
    for (;;) {
        size_t plus = whole.find('+');
        if (plus == std::string_view::npos || plus == 0) break;
        std::string_view modifier = whole.substr(0, plus);
        if (text::equalNoCase(modifier, "Shift"))
            key.shift = true;
        else if (text::equalNoCase(modifier, "Ctrl"))
            key.control = true;
        else if (text::equalNoCase(modifier, "Alt"))
            key.alt = true;
        else
            return std::nullopt;
        whole.remove_prefix(plus + 1);
    }
    for (const char* name : kNames)
        if (text::equalNoCase(whole, name)) key.name = name;
    if (key.name.empty() && characterCount(whole) == 1)
        key.name = whole == " " ? "Space" : std::string(whole);
    if (key.name.empty()) return std::nullopt;
    return key;
}

std::string keyText(const Key& key) {
    return std::string(key.control ? "Ctrl+" : "") + (key.alt ? "Alt+" : "") + (key.shift ? "Shift+" : "") +
           key.name;
}

}  // namespace ui
