// The records that sheets and tools have made new for the current drawing, since this program was started.
//
// Undo takes back the link of such a record and leaves the record. Those that one step of undo has left
// without a link can be found here, and erased.
#pragma once

#include <vector>

#include "module/store/named_records.h"

namespace norvane {

// Notes that records have been made and linked, in the step of undo that is under way. They have all but
// their keys in common.
void NoteNewRecords(const RecordName& common, const std::vector<std::string>& keys);
// The records of the last step that has any which no entity leads to now; these, in the order in which they
// were made. Records of other drawings are forgotten.
std::vector<RecordName> UnlinkedNewRecords();
// They are erased, or a person has decided that they stay.
void ForgetNewRecords(const std::vector<RecordName>& records);

}  // namespace norvane
