// The Lisp symbols of the host, through which its routines and the module share texts.
#pragma once

#include <optional>
#include <string>

namespace norvane {

// Reads a Lisp symbol as text: 1, or 0 with an empty buffer when the symbol is not set or has no text.
// "lspdir$" is also looked for as "cc_lspdir$".
int GetLispValue(std::string& buffer, const std::string& name);
// Sets a Lisp symbol to a text. Prints a message when that fails.
void SetLispString(const std::string& name, const std::string& value);

// The folder of a person's settings, the value of usrdir$; nothing when the symbol has no text.
std::optional<std::string> UserDirectory();
// The folder of the host's Lisp routines, the value of lspdir$; at most 1023 bytes.
std::string LispDirectory();

}  // namespace norvane
