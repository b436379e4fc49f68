// Records by their names: the output, the table and the key, as links and runs know them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "module/store/link_index.h"

namespace norvane {

struct RecordName {
    std::string output;  // a path or a connect string, as a link has it
    std::string table;   // as the output has it
    std::string keyField, key;
    std::string feature;  // of GIS_KEY; "" for a record that tells none
};
// Whether two names are of one record, all in any case of letters.
bool IsSameRecord(const RecordName& one, const RecordName& other);

// The records that links lead to, each once, whether they are there or not. Reads each template and output
// once; a link that is broken off, or whose output has no table for it, gives none.
std::vector<RecordName> RecordsOfLinks(const std::vector<const LinkedEntity*>& links);
// The entities that lead to a record, in the order in which the drawing got them.
std::vector<EntityName> EntitiesOfRecord(const RecordName& record);

struct ErasedRecords {
    size_t erased = 0;
    std::vector<std::string> missing;  // keys of records that were not there
};
// Erases records, all of an output or none of it; what an engine refuses has been shown in a box.
ErasedRecords EraseRecords(const std::vector<RecordName>& records);

}  // namespace norvane
