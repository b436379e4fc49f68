// What goes wrong with an Access file.
#pragma once

#include <stdexcept>
#include <string>

namespace jet {

// The text is a sentence for the user.
class Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The file holds something that cannot be: an offset past its page, a page of the wrong kind, an endless
// chain.
class DamagedError : public Error {
  public:
    explicit DamagedError(const std::string& what) : Error("The database is damaged: " + what + ".") {}
};

[[noreturn]] inline void damaged(const std::string& what) {
    throw DamagedError(what);
}

}  // namespace jet
