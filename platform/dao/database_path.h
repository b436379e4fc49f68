// What a database is opened by: the path of a file, or a connect string that begins "ODBC;".
//
// It has no password. What goes into drawings and settings takes this type and no other text, so that one
// with a password is refused by the compiler.
#pragma once

#include <string>

#include "platform/dao/connect_string.h"

namespace dao {

class DatabasePath {
  public:
    DatabasePath() = default;
    // A password in the text is left out.
    explicit DatabasePath(const std::string& text)
        : text_(isConnectString(text) ? ConnectString(text).text() : text) {}
    explicit DatabasePath(const ConnectString& connect) : text_(connect.text()) {}

    const std::string& text() const { return text_; }
    operator const std::string&() const { return text_; }
    bool empty() const { return text_.empty(); }
    bool operator==(const DatabasePath&) const = default;

  private:
    std::string text_;
};

}  // namespace dao
