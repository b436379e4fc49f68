#include "platform/dao/connect_string.h"

#include <algorithm>

#include "platform/text/text.h"

namespace dao {
namespace {

constexpr std::string_view kPrefix = "ODBC;";
// Both names are in use for the password.
constexpr std::string_view kPasswords[] = {"PWD", "PASSWORD"};

std::string_view nameOf(std::string_view setting) {
    return text::trim(setting.substr(0, setting.find('=')));
}

bool isNamed(std::string_view setting, std::string_view name) {
    return setting.find('=') != std::string_view::npos && text::equalNoCase(nameOf(setting), name);
}

// Settings end at a semicolon, unless it stands in braces that enclose a value. "}}" in them is a brace of
// the value.
std::vector<std::string> settingsOf(std::string_view text, bool bracesEnclose = true) {
    std::vector<std::string> settings(1);
    enum { kNone, kOpen, kClosed } braces = kNone;  // of the setting at hand
    for (char c : text) {
        std::string& setting = settings.back();
        if (c == ';' && braces != kOpen) {
            settings.emplace_back();
            braces = kNone;
            continue;
        }
        if (c == '{' && braces == kNone && !setting.empty() && setting.back() == '=' && bracesEnclose)
            braces = kOpen;
        else if (c == '}' && braces != kNone)
            // The second of two opens again what the first has closed.
            braces = braces == kOpen ? kClosed : setting.back() == '}' ? kOpen : kClosed;
        setting += c;
    }
    // A brace that is never closed must not hide what stands behind it.
    if (braces == kOpen) return settingsOf(text, false);
    return settings;
}

}  // namespace

bool isConnectString(std::string_view text) {
    return text::startsWith(text, kPrefix);
}

std::string_view sourceOf(std::string_view connect) {
    for (std::string_view prefix : {kPrefix, std::string_view("DSN=")})
        if (text::startsWith(connect, prefix)) connect.remove_prefix(prefix.size());
    return connect;
}

std::string withoutPassword(std::string_view connect) {
    ConnectString string(connect);
    for (std::string_view name : kPasswords) string.remove(name);
    return std::string(isConnectString(connect) ? kPrefix : "") + string.text();
}

ConnectString::ConnectString(std::string_view text)
    : settings_(settingsOf(isConnectString(text) ? text.substr(kPrefix.size()) : text)) {}

std::string ConnectString::value(std::string_view name) const {
    for (std::string_view setting : settings_) {
        if (!isNamed(setting, name)) continue;
        std::string_view value = text::trim(setting.substr(setting.find('=') + 1));
        if (value.size() < 2 || value.front() != '{' || value.back() != '}') return std::string(value);
        return text::replaceAll(value.substr(1, value.size() - 2), "}}", "}");
    }
    return "";
}

bool ConnectString::has(std::string_view name) const {
    return std::any_of(settings_.begin(), settings_.end(),
                       [name](const std::string& setting) { return isNamed(setting, name); });
}

std::string ConnectString::password() const {
    for (std::string_view name : kPasswords)
        if (has(name)) return value(name);
    return "";
}

void ConnectString::set(std::string_view name, std::string_view value) {
    std::string setting = std::string(name) + "=";
    bool plain = value.find_first_of(";{}") == std::string_view::npos && text::trim(value) == value;
    if (plain)
        setting += value;
    else
        setting += "{" + text::replaceAll(value, "}", "}}") + "}";
    for (std::string& present : settings_)
        if (isNamed(present, name)) {
            present = std::move(setting);
            return;
        }
    if (text::trim(settings_.back()).empty()) settings_.pop_back();
    settings_.push_back(std::move(setting));
}

void ConnectString::remove(std::string_view name) {
    std::erase_if(settings_, [name](const std::string& setting) { return isNamed(setting, name); });
    if (settings_.empty()) settings_.emplace_back();
}

std::string ConnectString::text() const {
    return text::join(settings_, ";");
}

}  // namespace dao
