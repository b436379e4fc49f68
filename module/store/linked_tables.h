// Where links lead: the file of the output and the table in it.
#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "module/store/link_index.h"

namespace norvane {

// Looks at each database once for all links. What cannot be opened leads nowhere; nothing is shown of it.
class LinkedTables {
  public:
    // The output of a link, a path or a connect string: a file that is not at its path may stand beside the
    // drawing, since a job's folder may have been moved.
    const std::string& outputOf(const LinkedEntity& link);
    // The table as the output has it: that which the template tells for the feature, else the one of its own
    // name; "" when the output has neither.
    const std::string& tableOf(const LinkedEntity& link);

    // Those that lead to a table of an output, in the order in which the drawing got its entities.
    std::vector<const LinkedEntity*> linksTo(const std::string& outputPath, const std::string& table);

  private:
    const std::string& placeOf(const std::string& path);
    const std::vector<std::string>& tablesOf(const std::string& output);

    std::unordered_map<std::string, std::string> places_;
    std::map<std::string, std::vector<std::string>> tables_;                        // by output
    std::unordered_map<std::string, std::map<std::string, std::string>> features_;  // by template and output
};

// Whether two texts name one database: paths in any case of letters.
bool IsSameDatabase(const std::string& a, const std::string& b);

}  // namespace norvane
