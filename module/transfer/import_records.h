// The walk through the records of a set that is imported.
#pragma once

#include <functional>
#include <string>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "module/transfer/import_progress.h"

namespace norvane {

struct ImportedRecord {
    const ShapeObject& shape;
    std::string id;      // its PT_ID; "" for none
    std::string height;  // what the field of heights says; "" for nothing
};

// Hands over each record that can be read, in order. heightField: -1 for none. False when the user has
// stopped it, or `take` has given false.
bool ForEachImported(ShapeHandle& shapes, DbfHandle& table, int heightField, ImportProgress& progress,
                     const std::function<bool(const ImportedRecord&)>& take);

}  // namespace norvane
