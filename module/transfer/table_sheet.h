// The records of the table dialog as rows of a grid: what has been typed into them and is not written yet,
// and which of them are seen in which order.
//
// Records and columns count from 0, rows and columns of the grid from 1. A record has one row or, in a
// preview of notes, two.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "module/store/cell_values.h"
#include "platform/ui/grid_source.h"

namespace norvane {

class TableSheet : public ui::GridSource {
  public:
    // Asked before each record of long work; false ends it.
    using GoOn = std::function<bool(long done)>;

    // What came of a save.
    struct Report {
        size_t records = 0, values = 0;    // written
        std::vector<std::string> leftOut;  // what was not written and why, a line each
        std::string failure;               // what the engine said first
        size_t failed = 0;                 // records that it refused; what was typed into them is still there
        std::vector<long> changedByOthers;
        bool isWhole = true;  // not ended before
    };
    enum class OthersChanges { kAsk, kOverwrite };

    virtual std::string title() const = 0;
    // The database and the table, for those who follow the links that lead there.
    const std::string& output() const { return output_; }
    const std::string& table() const { return table_; }
    const std::vector<SheetColumn>& columns() const { return columns_; }
    // The place of a column; nothing without one of that name.
    std::optional<size_t> columnNamed(std::string_view upperName) const;
    virtual long records() const = 0;
    virtual int rowsPerRecord() const { return 1; }
    // The first column of the grid that takes values.
    virtual int firstColumn() const { return 1; }
    // What cannot be changed at all, and why; "" when it can.
    virtual std::string obstacle() const { return {}; }

    // The text of a cell as it was read, and the value, which may throw a CDaoException.
    virtual std::string readText(long record, size_t column) const = 0;
    virtual dao::Variant readValue(long record, size_t column) const = 0;
    std::string shownText(long record, size_t column) const;

    // After somebody has changed a cell: puts right what is not taken, and gives the message about it.
    virtual std::string checkChange(long /*record*/, size_t /*column*/) { return {}; }
    void change(long record, size_t column, std::string text);
    bool isChanged(long record, size_t column) const;
    bool hasChanges() const { return !changes_.empty(); }
    // Changes of records that are not locked.
    bool hasChangesToSave() const;
    // What is changed from here on is taken back together.
    void beginStep() { ++step_; }
    // Takes back the last step. The cell of it that was changed first; nothing without a step.
    std::optional<std::pair<long, size_t>> undo();

    // How far goOn counts in a save.
    virtual long saveSteps() const = 0;
    // Writes what there is to be written. May throw a CDaoException, and then
    // nothing was written.
    virtual Report save(OthersChanges others, const GoOn& goOn) = 0;
    // Reads all anew that is seen from now on.
    virtual void readAnew() = 0;

    // --- Locks ------------------------------------------------------------------------------------------

    // A record that is not written.
    bool isLocked(long record) const { return locked_.contains(record); }
    void toggleLock(long record);

    // --- What is seen -----------------------------------------------------------------------------------

    long shownRecords() const;
    long recordOf(int row) const;
    // The first row of a record; 0 when it is not seen.
    int rowOf(long record) const;
    // Only records are seen in which each of the words stands somewhere, in any case of letters; all without
    // words. False: it was ended, and nothing is different.
    bool showWithWords(std::vector<std::string> words, const GoOn& goOn);
    struct Order {
        int column = -1;  // from 0; -1: the table's own
        bool descending = false;
        bool operator==(const Order&) const = default;
    };
    const Order& order() const { return sort_; }
    bool sortBy(Order order, const GoOn& goOn);
    // The next cell behind one, or before it in a second round, in which a text stands. None when there is
    // none, or when it was ended.
    std::optional<ui::CellPosition> find(const std::string& text, ui::CellPosition behind,
                                         const GoOn& goOn) const;

    // --- The grid's source ------------------------------------------------------------------------------

    int rows() const override;
    std::string text(int column, int row) const override;
    void setText(int column, int row, std::string text) override;
    ui::CellColours colours(int column, int row) const override;

  protected:
    using Texts = std::map<size_t, std::string>;  // by column

    TableSheet(std::string output, std::string table)
        : output_(std::move(output)), table_(std::move(table)) {}

    // Before the first change of a record.
    virtual void beginChange(long /*record*/) {}
    const std::map<long, Texts>& changes() const { return changes_; }
    void forgetChange(long record, size_t column);
    void forgetHistory() { history_.clear(); }
    // All records in the order of the table.
    void showAll();
    // The row of a record that takes values, from 0.
    virtual int valueRow() const { return 0; }
    // A cell of a row that takes none.
    virtual std::string otherText(long /*record*/, size_t /*column*/) const { return {}; }

    std::vector<SheetColumn> columns_;

  private:
    struct Step {
        uint64_t number;
        long record;
        size_t column;
        std::optional<std::string> before;  // nothing: it was as it was read
    };

    bool arrange(const std::vector<std::string>& words, Order order, const GoOn& goOn);
    bool hasWords(long record, const std::vector<std::string>& words) const;
    void sort(std::vector<int32_t>& records, Order order, const GoOn& goOn, bool& goesOn) const;

    std::string output_, table_;
    std::map<long, Texts> changes_;
    std::vector<Step> history_;
    uint64_t step_ = 0;
    std::set<long> locked_;
    std::vector<std::string> words_;
    Order sort_;
    std::optional<std::vector<int32_t>> shown_;  // nothing: all, in the table's order
    std::vector<int32_t> rowOf_;                 // of each record, from 0; -1: not seen
};

}  // namespace norvane
