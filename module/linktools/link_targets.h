// Whether links lead somewhere: their two databases, the feature, and the table of its records.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace norvane {

// What a link needs of its template.
struct TemplateFeatures {
    std::vector<std::string> names;             // of all features, in capitals
    std::map<std::string, std::string> tables;  // of features that write to a table of another name

    bool has(const std::string& feature) const;
};
// Nothing to be found in a file that is no template, or none; what the engine refuses is shown in a box.
TemplateFeatures ReadTemplateFeatures(const std::string& path);

// The tables of an output that links can lead to, as it has them: those with a text PT_ID.
std::vector<std::string> ReadKeyTables(const std::string& path);
// Whether the records of a feature have a table among these.
bool HasTableOf(const std::vector<std::string>& keyTables, const TemplateFeatures& features,
                const std::string& feature);

enum class LinkTarget : int { kGood = 0, kNoTemplate = 1, kNoOutput = 2, kNoTable = 3, kNeither = 4 };

// Tells where links lead, and reads each database once for all of them.
class LinkTargets {
  public:
    LinkTarget check(const std::string& templatePath, const std::string& outputPath,
                     const std::string& feature);

  private:
    std::map<std::string, TemplateFeatures> templates_;
    std::map<std::string, std::vector<std::string>> outputs_;
};

}  // namespace norvane
