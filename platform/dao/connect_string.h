// Connect strings: "ODBC;DSN=office;UID=survey;PWD=secret" of a server database, ";PWD=secret" of a file;
// settings between semicolons.
//
// A connect string turns into no text by itself, and its text() is without the password: that is what is
// shown, stored and told. Who signs in asks for the rest by name.
#pragma once

#include <compare>
#include <string>
#include <string_view>
#include <vector>

namespace dao {

// Whether a text names a server database and not a file: it begins with "ODBC;".
bool isConnectString(std::string_view text);

// What names its source: the text behind "ODBC;DSN=" or, where a driver is named instead, behind "ODBC;".
// Those who keep something by a source keep it under this.
std::string_view sourceOf(std::string_view connect);

// A text that stays in memory. No message, file or stream takes it; who needs the plain text reveals it.
class Secret {
  public:
    explicit Secret(std::string text) : text_(std::move(text)) {}

    bool empty() const { return text_.empty(); }
    const std::string& reveal() const { return text_; }

  private:
    std::string text_;
};

class ConnectString {
  public:
    // With or without "ODBC;" in front.
    explicit ConnectString(std::string_view text = "");

    bool empty() const;
    // Whether "ODBC;" stands in front.
    bool onServer() const { return onServer_; }
    // As it was given, without the setting that holds the password.
    std::string text() const;
    // As it was given.
    Secret withPassword() const;
    // What a driver gets: without "ODBC;", and without the settings that are ours.
    Secret forDriver() const;

    // The value of a setting, its name without regard to case, braces taken off; "" when there is none, and
    // for the password.
    std::string value(std::string_view name) const;
    bool has(std::string_view name) const;
    Secret password() const;
    // Whom the tables belong to that names mean: SCHEMA or, where there is none, the user.
    std::string tableOwner() const;
    // In the place of the setting that is there, or at the end. A value that holds a semicolon or a brace, or
    // begins or ends with a blank, is put into braces.
    void set(std::string_view name, std::string_view value);
    void remove(std::string_view name);

    auto operator<=>(const ConnectString&) const = default;

  private:
    std::string anyValue(std::string_view name) const;
    std::string whole() const;

    bool onServer_ = false;
    std::vector<std::string> settings_;  // as they stand
};

}  // namespace dao
