#include "module/store/matching_records.h"

#include "module/conditions/condition.h"
#include "platform/dao/errors.h"
#include "platform/dao/names.h"
#include "platform/dao/table_rows.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kRecordsInSlice = 4000;

size_t fieldNamed(const std::vector<CDaoFieldInfo>& fields, const std::string& name) {
    const int field = dao::findField(fields, name);
    if (field < 0) dao::noSuchField(name);
    return static_cast<size_t>(field);
}

}  // namespace

std::string RecordKeyOf(const dao::Variant& value) {
    if (value.is<std::string>()) return text::upper(text::trim(value.get<std::string>()));
    return text::upper(text::trim(dao::toText(value)));
}

ConditionPass::ConditionPass(dao::TableRows& rows, const CDaoDatabase& database, const Condition* condition,
                             std::span<const size_t> fields)
    : rows_(rows), condition_(condition), wanted_(fields.size()), fields_(fields.begin(), fields.end()) {
    if (!condition_) return;
    const ConditionSearch search = condition_->where(database);
    if (rows_.restrictTo(search.where, search.parameters) && search.isExact) {
        condition_ = nullptr;
        return;
    }
    record_.resize(rows_.fields().size());
    fields_.insert(fields_.end(), condition_->usedFields().begin(), condition_->usedFields().end());
}

bool ConditionPass::next(size_t count, const dao::TableRows::Visit& visit) {
    return rows_.walk(last_, count, fields_, [&](dao::RowNumber row, std::span<const dao::Variant> values) {
        ++lookedAt_;
        if (condition_) {
            for (size_t i = wanted_; i < fields_.size(); ++i) record_[fields_[i]] = values[i];
            if (!condition_->holds(record_)) return;
        }
        visit(row, values.first(wanted_));
    });
}

bool ForEachMatching(CDaoDatabase& database, const std::string& table, const Condition* condition,
                     const std::vector<std::string>& fields,
                     const std::function<void(std::span<const dao::Variant> values)>& visit,
                     const std::function<bool()>& goOn) {
    const std::unique_ptr<dao::TableRows> rows = dao::openTableRows(database, table);
    std::vector<size_t> places;
    for (const std::string& name : fields) places.push_back(fieldNamed(rows->fields(), name));
    ConditionPass pass(*rows, database, condition, places);
    while (pass.next(kRecordsInSlice,
                     [&](dao::RowNumber, std::span<const dao::Variant> values) { visit(values); }))
        if (goOn && !goOn()) return false;
    return true;
}

}  // namespace norvane
