// Some records of a feature's entities, by which a dialog shows what a label would say.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/dao.h"

namespace norvane {

struct RecordSample {
    struct Table {
        std::string name;
        std::vector<CDaoFieldInfo> fields;
        std::vector<std::vector<dao::Variant>> records;  // values of all fields
    };
    std::vector<Table> tables;
    std::vector<std::string> problems;  // sentences
};

// The first records of each table that entities of the feature lead to, up to a number of them, as far as
// they stand among its first records.
RecordSample ReadRecordSample(std::string_view feature, size_t most);

}  // namespace norvane
