// Records by their names: the output, the table and the key, as links and runs know them.
#pragma once

#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

#include "module/store/link_index.h"

namespace norvane {

struct RecordName {
    std::string output;  // a path or a connect string, as a link has it
    std::string table;   // as the output has it
    std::string keyField, key;
    std::string feature;  // of GIS_KEY; "" for a record that tells none
};
// Names of records, each once, in whatever case of letters.
class RecordNames {
  public:
    // False when it is there already.
    bool add(const RecordName& record);
    bool contains(const RecordName& record) const;

  private:
    std::unordered_set<std::string> names_;
};

// The records that links lead to, each once, whether they are there or not. Reads each template and output
// once; a link that is broken off, or whose output has no table for it, gives none and is counted.
std::vector<RecordName> RecordsOfLinks(const std::vector<const LinkedEntity*>& links,
                                       size_t* leadingNowhere = nullptr);
// The links that lead to any of the records, each once; good until the drawing changes.
std::vector<const LinkedEntity*> LinksToRecords(const std::vector<RecordName>& records);
// Whether there is such a record. What an engine refuses has been shown in a box, and counts as none.
bool IsRecordThere(const RecordName& record);
// The records to which no entity leads, in their order.
std::vector<RecordName> RecordsWithoutEntity(const std::vector<RecordName>& records);

struct ErasedRecords {
    size_t erased = 0;
    std::vector<std::string> missing;  // keys of records that were not there
    bool isStopped = false;            // those of the output at hand stay, and of the others behind it
};
// Erases records, all of an output or none of it; what an engine refuses has been shown in a box. goOn is
// asked before each record, and stops the work when it gives false.
ErasedRecords EraseRecords(const std::vector<RecordName>& records, const std::function<bool()>& goOn);

}  // namespace norvane
