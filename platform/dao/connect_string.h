// Connect strings: "ODBC;DSN=office;UID=survey;PWD=secret" of a server database, ";PWD=secret" of a file;
// settings between semicolons.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace dao {

// Whether a text names a server database and not a file: it begins with "ODBC;".
bool isConnectString(std::string_view text);

// What names its source: the text behind "ODBC;DSN=" or, where a driver is named instead, behind "ODBC;".
// Those who keep something by a source keep it under this.
std::string_view sourceOf(std::string_view connect);

// The same text without the setting that holds the password. Everything else stays as it stands.
std::string withoutPassword(std::string_view connect);

class ConnectString {
  public:
    // With or without "ODBC;" in front.
    explicit ConnectString(std::string_view text);

    // The value of a setting, its name without regard to case, braces taken off; "" when there is none.
    std::string value(std::string_view name) const;
    bool has(std::string_view name) const;
    std::string password() const;
    // In the place of the setting that is there, or at the end. A value that holds a semicolon or a brace, or
    // begins or ends with a blank, is put into braces.
    void set(std::string_view name, std::string_view value);
    void remove(std::string_view name);

    // Without "ODBC;".
    std::string text() const;

  private:
    std::vector<std::string> settings_;  // as they stand
};

}  // namespace dao
