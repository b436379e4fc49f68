// The rows of the table that goes out with shapes.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "module/exchange/dbf_file.h"
#include "module/transfer/export_columns.h"
#include "module/transfer/export_counts.h"
#include "module/transfer/export_options.h"
#include "module/transfer/export_outline.h"

namespace norvane {

class ExportRows {
  public:
    // All of them outlive the rows. The columns are in the table already, or will be before the first row.
    ExportRows(int32_t shapeType, const ExportOptions& options, DbfHandle& table,
               const ExportColumns& columns, ExportCounts& counts);

    // Writes the row of a shape: what the drawing says of it, and its record. area: of a polygon.
    void write(int32_t row, const ExportOutline& outline, double area);

  private:
    void putText(int column, const std::string& text);
    void putReal(const char* name, double value);
    void writeMeasures(const ExportOutline& outline, double area);
    void writeUnlinked(const ExportOutline& outline);
    void writeRecord(const ExportEntity& entity);
    void writeValue(int column, const std::string& value);
    const std::vector<int>& columnsOf(const LinkedTable& table);

    int32_t type_;
    const ExportOptions& options_;
    DbfHandle& table_;
    const ExportColumns& columns_;
    ExportCounts& counts_;
    int id_, feature_;  // columns
    std::unordered_map<const LinkedTable*, std::vector<int>> byTable_;
    int32_t row_ = 0;
    long unlinked_ = 0;
};

}  // namespace norvane
