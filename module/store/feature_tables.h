// The tables of an output in which features have their records.
#pragma once

#include <map>
#include <string>

#include "platform/dao/dao.h"

namespace norvane {

// Tells the tables of features, and reads each template once.
class FeatureTables {
  public:
    // The table that the template tells, where the output has it, else the one of the feature's own name, as
    // the output has its name; "" where it has neither. A template that is not there, or cannot be read,
    // tells nothing. feature: in capitals.
    std::string find(const CDaoDatabase& output, const std::string& templatePath, const std::string& feature);

  private:
    using Tables = std::map<std::string, std::string>;  // by feature

    static Tables readTemplate(const std::string& path);

    std::map<std::string, Tables> templates_;  // by path in capitals
};

}  // namespace norvane
