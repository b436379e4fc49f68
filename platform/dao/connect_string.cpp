#include "platform/dao/connect_string.h"

#include <algorithm>

#include "platform/text/text.h"

namespace dao {
namespace {

constexpr std::string_view kPrefix = "ODBC;";
// Both names are in use for the password.
constexpr std::string_view kPasswords[] = {"PWD", "PASSWORD"};
constexpr std::string_view kSchema = "SCHEMA";

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

ConnectString::ConnectString(std::string_view text)
    : onServer_(isConnectString(text)),
      settings_(settingsOf(onServer_ ? text.substr(kPrefix.size()) : text)) {}

bool ConnectString::empty() const {
    return !onServer_ && settings_.size() == 1 && settings_.front().empty();
}

std::string ConnectString::text() const {
    ConnectString open = *this;
    for (std::string_view name : kPasswords) open.remove(name);
    return open.whole();
}

Secret ConnectString::withPassword() const {
    return Secret(whole());
}

Secret ConnectString::forDriver() const {
    ConnectString of = *this;
    of.onServer_ = false;
    of.remove(kSchema);
    return Secret(of.whole());
}

std::string ConnectString::whole() const {
    return std::string(onServer_ ? kPrefix : "") + text::join(settings_, ";");
}

std::string ConnectString::anyValue(std::string_view name) const {
    for (std::string_view setting : settings_) {
        if (!isNamed(setting, name)) continue;
        std::string_view value = text::trim(setting.substr(setting.find('=') + 1));
        if (value.size() < 2 || value.front() != '{' || value.back() != '}') return std::string(value);
        return text::replaceAll(value.substr(1, value.size() - 2), "}}", "}");
    }
    return "";
}

std::string ConnectString::value(std::string_view name) const {
    for (std::string_view secret : kPasswords)
        if (text::equalNoCase(name, secret)) return "";
    return anyValue(name);
}

bool ConnectString::has(std::string_view name) const {
    return std::any_of(settings_.begin(), settings_.end(),
                       [name](const std::string& setting) { return isNamed(setting, name); });
}

Secret ConnectString::password() const {
    for (std::string_view name : kPasswords)
        if (has(name)) return Secret(anyValue(name));
    return Secret("");
}

std::string ConnectString::tableOwner() const {
    std::string schema = value(kSchema);
    return schema.empty() ? value("UID") : schema;
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

}  // namespace dao
