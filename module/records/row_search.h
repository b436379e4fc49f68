// How the records that a view shows are found: in slices, so that a window stays alive.
#pragma once

#include <memory>
#include <vector>

#include "module/records/record_view.h"
#include "platform/dao/table_rows.h"

namespace norvane {

class RowSearch {
  public:
    virtual ~RowSearch() = default;
    // Goes on a little. Throws what the engine says.
    void step() { isDone_ = !goOn(); }
    void stop() { isDone_ = true; }
    bool isDone() const { return isDone_; }
    // What has been found until now.
    const std::vector<dao::RowNumber>& rows() const { return rows_; }
    // Whether rows come in the order that they will have from the first one on.
    virtual bool isInOrder() const { return true; }
    virtual long lookedAt() const { return static_cast<long>(rows_.size()); }

  protected:
    virtual bool goOn() = 0;
    std::vector<dao::RowNumber> rows_;

  private:
    bool isDone_ = false;
};

// All records, in the order of the table. The source stays the caller's, as with the others.
std::unique_ptr<RowSearch> SearchAll(dao::TableRows& source);
// All of them in the order of an index; null where there is none.
std::unique_ptr<RowSearch> SearchAlongIndex(dao::TableRows& source, const RecordOrder& order);
// Those that a filter lets through, in an order.
std::unique_ptr<RowSearch> SearchMatching(CDaoDatabase& database, const std::string& table, int keyField,
                                          const RecordFilter& filter, const RecordOrder& order);

}  // namespace norvane
