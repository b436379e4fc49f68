// The records of a table for which a condition holds, in one pass.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "platform/dao/dao.h"
#include "platform/dao/table_rows.h"

namespace norvane {

class Condition;

// Visits them in the order of the table, with the values of some of their fields (names in any case of
// letters); a null condition holds for all. goOn is asked every few thousand records and stops it by false,
// which is then the result. Throws what the engine says, and where a field is not there.
bool ForEachMatching(CDaoDatabase& database, const std::string& table, const Condition* condition,
                     const std::vector<std::string>& fields,
                     const std::function<void(std::span<const dao::Variant> values)>& visit,
                     const std::function<bool()>& goOn = {});

// The same in slices, for who cannot wait for the end. A server is given the condition, the records of a file
// are asked one by one.
class ConditionPass {
  public:
    // The records and the condition stay the caller's. fields: positions of those that are wanted.
    ConditionPass(dao::TableRows& rows, const CDaoDatabase& database, const Condition* condition,
                  std::span<const size_t> fields);

    // Looks at about so many more, and visits the matching ones. False: that was all.
    bool next(size_t count, const dao::TableRows::Visit& visit);
    // How many the engine has given until now.
    long lookedAt() const { return lookedAt_; }

  private:
    dao::TableRows& rows_;
    const Condition* condition_;  // null where the engine has looked after it
    size_t wanted_;
    std::vector<size_t> fields_;  // the wanted ones, and behind them those that the condition looks at
    dao::RowNumber last_ = dao::kBeforeAllRows;
    std::vector<dao::Variant> record_;
    long lookedAt_ = 0;
};

// The key of a record as the index of links has it: the value of its key field as text, in capitals and
// trimmed.
std::string RecordKeyOf(const dao::Variant& value);

}  // namespace norvane
