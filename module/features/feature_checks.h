// What stands between the editor's sheet and a file or the template.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "module/features/feature_row.h"

namespace norvane {

struct RowFault {
    std::string message;
    int row = 0;  // the cell to go to, from 1; 0 when it is the feature's name that is wrong
    int column = 1;
};

// The checks in front of a feature file.
std::optional<RowFault> CheckForFile(const std::vector<FeatureFileRow>& rows);
// The checks in front of saving a feature to its category, its name included.
std::optional<RowFault> CheckForCategory(const std::string& feature, const std::vector<FeatureFileRow>& rows);

}  // namespace norvane
