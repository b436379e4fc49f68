// Feature files (.gis): the attributes of one feature as lines of text. The name of the feature is that of
// the file.
//
//     |10|MATERIAL,Material,STEEL,STEEL,WOOD,CONCRETE
//      ||  field   prompt   default  values
//      |type: 0 Char, 1 Int, 2 Real
//      required: 1
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "module/features/feature_row.h"

namespace norvane {

struct FeatureFileContent {
    std::vector<FeatureFileRow> rows;
    int lines = 0;      // that were read, usable or not; a line of 4095 bytes and more counts as several
    int validRows = 0;  // that made an attribute
};

// No line is wrong: one that makes no attribute is only counted. Bytes that are no UTF-8 are taken as code
// page 1252; a byte order mark is passed over.
FeatureFileContent ParseFeatureFile(std::string_view content);

// The lines of a file.
std::string FeatureFileText(const std::vector<FeatureFileRow>& rows);

// The feature of a file: its name without the last four characters, in upper case.
std::string FeatureNameOfFile(std::string_view path);

}  // namespace norvane
