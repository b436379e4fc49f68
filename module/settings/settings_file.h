// The current databases: gps.ini in the per-user folder, which the host's own routines read and write too.
//
// Nothing is kept in memory: every reader goes to the file, and every writer keeps each line that it does not
// understand as it stands.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/dao/database_path.h"

namespace norvane {

// The lines that mean something, by the text in front of their value.
namespace settings {
constexpr const char* kAnchor = "is_database=";
constexpr const char* kOutput = "gisoutfile=";
constexpr const char* kTemplate = "gismdbfile=";
constexpr const char* kObjectData = "is_objdata=";
}  // namespace settings

// The text of the settings file, line by line.
class SettingsFile {
  public:
    // Nothing when the per-user folder is not known or the file cannot be read.
    static std::optional<SettingsFile> read();
    // Where the file stands; nothing when the per-user folder is not known.
    static std::optional<std::string> path();
    // Makes the file with its three empty lines where there is none.
    static void ensure();

    bool empty() const { return lines_.empty(); }
    // What follows the key in the first line that begins with it, trailing white space cut; nothing without
    // such a line.
    std::optional<std::string> value(const std::string& key) const;
    // Put a line in place of the old one, or behind the line that it belongs after. False, and nothing
    // changed, when the file has no is_database line.
    bool placeTemplate(const dao::DatabasePath& path);
    bool placeOutput(const dao::DatabasePath& path);
    // Replaces the is_objdata line, or adds it at the end.
    void placeObjectData(const std::string& value);
    // Rewrites the file; a file that cannot be written stays as it is.
    void write() const;

  private:
    int find(const std::string& key) const;
    bool place(const std::string& key, const std::string& value, int after);

    std::string path_;
    std::vector<std::string> lines_;  // each with its line end, if it has one
};

}  // namespace norvane
