#include "module/transfer/import_records.h"

#include "module/transfer/shape_set.h"

namespace norvane {

bool ForEachImported(ShapeHandle& shapes, DbfHandle& table, int heightField, ImportProgress& progress,
                     const std::function<bool(const ImportedRecord&)>& take) {
    const int idField = FindKeyFields(table).id;
    const auto cell = [&](int32_t record, int field) {
        return field < 0 ? std::string() : CellText(table, record, field);
    };
    for (int32_t record = 0; record < shapes.recordCount; ++record) {
        if (!progress.goOn(static_cast<size_t>(shapes.recordCount - record))) return false;
        const OwnedShape shape(ShapeReadObject(&shapes, record, 0));
        const bool goesOn = shape ? take({*shape, cell(record, idField), cell(record, heightField)})
                                  : progress.goOnAfterUnreadable(record);
        if (!goesOn) return false;
    }
    return true;
}

}  // namespace norvane
