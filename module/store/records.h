// Reading and walking the records that a statement finds. Exceptions of the engine pass through.
#pragma once

#include <string>

#include "platform/dao/dao.h"

namespace norvane {

// The value of a field of the present record as text; Null is "".
inline std::string FieldText(const CDaoRecordset& records, const char* field) {
    return dao::toText(records.GetFieldValue(field));
}

// Does `work` on each record, which may change or delete it.
template <class Work>
void ForEachRecord(CDaoDatabase& database, const std::string& statement, Work work) {
    CDaoRecordset records(&database);
    for (records.Open(dbOpenDynaset, statement); !records.IsEOF(); records.MoveNext()) work(records);
}

// Whether a statement finds any record.
inline bool HasRecords(CDaoDatabase& database, const std::string& statement) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, statement);
    return !records.IsEOF();
}

}  // namespace norvane
