#include "module/transfer/id_counter.h"

#include "module/transfer/shape_set.h"

namespace norvane {

IdCounter::IdCounter(DbfHandle& table, int idField,
                     const std::function<std::string(const std::string&)>& form) {
    if (idField < 0) return;
    for (int32_t record = 0; record < DbfGetRecordCount(&table); ++record) {
        std::string id = CellText(table, record, idField);
        if (!id.empty()) taken_.insert(form ? form(id) : id);
    }
}

std::string IdCounter::next() {
    std::string id;
    do id = std::to_string(number_++);
    while (taken_.contains(id));
    return id;
}

}  // namespace norvane
