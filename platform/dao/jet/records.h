// The records of one table: reading, adding, changing and deleting them, with everything that must be kept in
// step: long values, indexes, counts, the maps of pages.
#pragma once

#include <memory>
#include <optional>

#include "platform/dao/jet/index_key.h"
#include "platform/dao/jet/index_tree.h"
#include "platform/dao/jet/long_value.h"
#include "platform/dao/jet/row.h"
#include "platform/dao/jet/row_space.h"

namespace jet {

class Records {
  public:
    Records(Store& store, std::shared_ptr<TableDefinition> definition);

    const TableDefinition& definition() const { return *definition_; }
    // Why nothing can be written to the table; "" when it can.
    std::string obstacle() const;

    // The bytes of a record, wherever it has moved to. False: there is none, or it has been deleted.
    struct Place {
        PagePtr page;
        RowId body;
        ByteView bytes;
    };
    bool find(RowId row, Place& place);
    // The first record at or behind a position; false at the end.
    bool next(RowId& row, Place& place);
    // Appends the records from a position on, without looking into them, up to the end of the page with which
    // there are so many. False: there are no more.
    bool list(RowId from, std::vector<RowId>& rows, size_t count = SIZE_MAX);
    // A value of a record. column: its position in the definition.
    Value value(const RowView& row, size_t column) const;
    RowView view(const Place& place) const { return RowView(store_.format, *definition_, place.bytes); }
    std::vector<Value> read(RowId row);

    // values: in the order of the definition's columns; Null in an autonumber column lets it count. They hold
    // the numbers that were given afterwards.
    RowId insert(std::vector<Value>& values);
    // Changes the values that are marked.
    void update(RowId row, const std::vector<Value>& values, const std::vector<bool>& touched);
    void erase(RowId row);

    // Fills an index that has no entries yet.
    void buildIndex(size_t index);
    IndexTree tree(size_t index) const { return {store_, definition_->page, definition_->indexes[index]}; }
    const KeyMaker& keys(size_t index) const { return keys_[index]; }
    std::optional<KeyMaker::Key> keyOf(size_t index, const RowView& row) const;

  private:
    bool follow(RowId row, Place& place) const;
    // Finds a record and copies it, since its page may change while it is still looked at.
    Bytes copyOf(RowId row, Place& place);
    void requireWritable() const;
    void giveNumbers(std::vector<Value>& values);
    void checkUnique(size_t index, const std::optional<KeyMaker::Key>& key, RowId row) const;
    std::vector<std::optional<KeyMaker::Key>> keysOf(const std::vector<Value>& values) const;
    ByteView build(const std::vector<Value>& values, const std::vector<bool>* touched, const RowView* old);
    void put(size_t column, const Value& value, bool inlineAllowed);
    void putLong(size_t column, const Value& value, bool inlineAllowed);
    void putOld(size_t column, const RowView& row);
    void store(RowId row, const Place& place, ByteView bytes);
    void releaseLongValues(const RowView& row, const std::vector<bool>* only);
    LongValues& longValuesOf(size_t column);

    Store& store_;
    std::shared_ptr<TableDefinition> definition_;
    std::vector<KeyMaker> keys_;
    RowSpace space_;
    RowBuilder builder_;
    std::vector<std::unique_ptr<LongValues>> longValues_;
    std::vector<Bytes> outside_;  // heads of the long values that the row being built has outside of it
};

}  // namespace jet
