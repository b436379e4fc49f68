// The records of a feature that are about to come in from a note file, each above what its table already
// holds.
#pragma once

#include <memory>
#include <span>
#include <unordered_map>

#include "module/transfer/table_dialog.h"
#include "module/transfer/table_sheet.h"
#include "module/transfer/table_sheet_records.h"

namespace norvane {

class NoteSheet : public TableSheet {
  public:
    // Opens the database, and keeps it open. Throws what the engine says.
    NoteSheet(const std::string& output, const std::string& feature, std::span<const NoteRecord> records);

    std::string title() const override;
    long records() const override { return static_cast<long>(notes_.size()); }
    int rowsPerRecord() const override { return 2; }
    int firstColumn() const override { return 3; }
    std::string readText(long record, size_t column) const override;
    dao::Variant readValue(long record, size_t column) const override;
    long saveSteps() const override { return records() + 2; }
    // Brings the table up to date and writes all records that are not locked, in a file as one transaction.
    Report save(OthersChanges others, const GoOn& goOn) override;
    void readAnew() override;

    std::string rowHeading(int row) const override { return row % 2 ? "-Note-" : "-Mdb-"; }
    const ui::CellType* type(int column, int row) const override;

  private:
    void takeColumns(std::span<const NoteRecord> records);
    void takeNotes(std::span<const NoteRecord> records);
    // Finds the table and which of its records belong to the notes.
    void openTable();
    std::string keyOf(long record) const;
    std::string otherText(long record, size_t column) const override;
    void makeTable();
    void saveRecord(long record, Report& report);
    long sizeOf(const SheetColumn& column) const;
    void keepChanges();

    CDaoDatabase database_;
    std::vector<std::vector<std::string>> notes_;  // the texts by record and column
    std::string storedTable_;                      // as it stands in the database; "" when there is none
    std::unique_ptr<StoredRecords> stored_;
    std::unordered_map<std::string, long> byKey_;  // the record of PT_ID and GIS_KEY
};

}  // namespace norvane
