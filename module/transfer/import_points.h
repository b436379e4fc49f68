// Points of a set of shape files as points of a coordinate file. The file is written beside and put in place
// at the end.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "module/cad/ads_owners.h"
#include "module/coords/point_record.h"
#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "module/transfer/id_counter.h"
#include "module/transfer/import_progress.h"
#include "module/transfer/import_report.h"

namespace norvane {

// Sets the Lisp symbol by which new coordinate files get their form, and gives it back what it had.
class FormOfNewFiles {
  public:
    explicit FormOfNewFiles(bool alphanumeric);
    ~FormOfNewFiles();
    FormOfNewFiles(const FormOfNewFiles&) = delete;
    FormOfNewFiles& operator=(const FormOfNewFiles&) = delete;

  private:
    ResultBuffers kept_;
};

class PointImport {
  public:
    // All of them belong to the caller and outlive the import.
    PointImport(const ImportShpSettings& settings, ShapeHandle& shapes, DbfHandle& table)
        : settings_(settings), shapes_(shapes), table_(table) {}
    ~PointImport();
    PointImport(const PointImport&) = delete;
    PointImport& operator=(const PointImport&) = delete;

    // Reads all records that can be read and writes their points beside the coordinate file; the ids of all
    // of them, in order, go behind `ids`. False when the file cannot be opened or made, the points cannot be
    // written, which has been told, or the user has stopped it.
    bool write(ImportProgress& progress, ImportReport& report, std::vector<std::string>& ids);
    // Puts what was written in place of the coordinate file. False when that cannot be done.
    bool putInPlace();

  private:
    bool open();
    bool readRecords(ImportProgress& progress, ImportReport& report, std::vector<std::string>& ids);
    std::string idForm(const std::string& text) const;
    std::string freeId(std::string id, IdCounter& counter);
    bool isTaken(const std::string& id) const;
    bool add(PointRecord point, ImportReport& report);

    const ImportShpSettings& settings_;
    ShapeHandle& shapes_;
    DbfHandle& table_;
    bool isKept_ = false;  // the file that is there gets more points; else a new one is made
    bool numeric_ = false;
    std::string temporary_;  // "" while there is none
    std::vector<PointRecord> points_;
    std::unordered_set<std::string> names_;
    std::unordered_map<std::string, std::string> continued_;  // how far the names behind a name are taken
};

}  // namespace norvane
