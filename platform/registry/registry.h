// The few keys of the machine's registry that the module reads, kept in an ini file over built-in defaults.
//
// The file is named by the environment variable NORVANE_REGISTRY, else it is norvane/registry.ini in the
// user's configuration folder ($XDG_CONFIG_HOME, ~/.config). It is read at every question, so that a change
// counts at once:
//
//   [HKEY_CLASSES_ROOT\.mdb]
//   @=Access.Application.8
//   [-HKEY_CLASSES_ROOT\DAO.DBEngine.36]
//
// "@" is a key's default value; a section that begins with "-" takes a key with all below it out of the
// defaults. Keys and value names compare without regard to case. Lines that are neither are passed over.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace registry {

constexpr const char* kClassesRoot = "HKEY_CLASSES_ROOT";

// The text of a value, the key's default value with an empty name; nothing when there is none.
std::optional<std::string> readString(std::string_view root, std::string_view key,
                                      std::string_view valueName = "");

// Whether a key exists. A key exists as soon as it, or one below it, is in the file.
bool hasKey(std::string_view root, std::string_view key);

// Where the file is looked for.
std::string hivePath();

}  // namespace registry
