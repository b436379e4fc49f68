// The records of areas.
#pragma once

#include <string>
#include <vector>

#include "module/linktools/area_labels.h"
#include "platform/dao/dao.h"

namespace norvane {

// A record and the handles of the entities that get a link to it.
struct RecordLinks {
    std::string id;
    std::vector<std::string> handles;
    bool isNew = false;  // the record
};

struct AreaRecords {
    bool isDone =
        false;  // false: the key field is of a wrong type, which has been told, or an exception came
    bool isStopped = false;  // by Escape: keys are left that have no record
    std::vector<RecordLinks> links;
    size_t changed = 0, added = 0;
};

// How many records of a table have a key of the map. Exceptions pass through.
size_t CountRecordsOfKeys(CDaoDatabase& database, const std::string& table, const std::string& keyField,
                          const KeyMap& keys);

// Those of PT_ID and GIS_KEY that hold values and are no texts, which writing makes them. Exceptions pass
// through.
std::vector<std::string> KeyColumnsToConvert(CDaoDatabase& database, const std::string& table);

// Finds the record of each key, or adds one, and sees to it that it has a PT_ID and its GIS_KEY. Makes the
// table and the columns that it lacks. Of two records of one key the first counts. Exceptions pass through;
// the result then tells how far it came.
void WriteAreaRecords(CDaoDatabase& database, const std::string& table, const std::string& keyField,
                      KeyMap keys, AreaRecords& result);

}  // namespace norvane
