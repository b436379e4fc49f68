// A table of an output database, whose cells are changed.
#pragma once

#include <map>
#include <memory>

#include "module/transfer/table_sheet.h"
#include "module/transfer/table_sheet_records.h"

namespace norvane {

class StoredTableSheet : public TableSheet {
  public:
    // Opens the database, and keeps it open. Throws what the engine says.
    StoredTableSheet(const std::string& output, const std::string& table);

    std::string title() const override;
    long records() const override { return opened_->records.count(); }
    std::string obstacle() const override;
    std::string readText(long record, size_t column) const override;
    dao::Variant readValue(long record, size_t column) const override;
    // GIS_KEY stays as it is, and PT_ID is never empty.
    std::string checkChange(long record, size_t column) override;
    long saveSteps() const override { return records(); }
    // Writes the cells that were changed, and no others. In a file all of it is one transaction.
    Report save(OthersChanges others, const GoOn& goOn) override;
    void readAnew() override;
    const ui::CellType* type(int column, int row) const override;

  private:
    void beginChange(long record) override;
    void saveRecord(long record, const Texts& texts, OthersChanges others, Report& report);
    std::string nameOf(long record) const;

    struct Opened {
        Opened(const std::string& output, const std::string& table);
        CDaoDatabase database;
        StoredRecords records;
    };

    std::unique_ptr<Opened> opened_;
    std::map<long, std::vector<dao::Variant>> before_;  // of the records that were changed
    std::vector<std::pair<long, size_t>> done_;         // cells that this save has dealt with
};

}  // namespace norvane
