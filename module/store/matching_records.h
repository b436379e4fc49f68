// All records of a table for which a condition holds, in one pass.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "platform/dao/dao.h"

namespace norvane {

class Condition;

// Visits them in the order of the table, with the values of some of their fields (names in any case of
// letters); a null condition holds for all. goOn is asked every few thousand records and stops it by false,
// which is then the result. Throws what the engine says, and where a field is not there.
bool ForEachMatching(CDaoDatabase& database, const std::string& table, const Condition* condition,
                     const std::vector<std::string>& fields,
                     const std::function<void(std::span<const dao::Variant> values)>& visit,
                     const std::function<bool()>& goOn = {});

// The key of a record as the index of links has it: the value of its key field as text, in capitals and
// trimmed.
std::string RecordKeyOf(const dao::Variant& value);

}  // namespace norvane
