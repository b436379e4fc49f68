#include "module/linktools/record_table.h"

#include "module/store/output_database.h"
#include "module/store/statements.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

std::string comparable(const dao::Variant& value) {
    return std::string(text::trim(text::upper(dao::toText(value))));
}

}  // namespace

std::optional<double> NumberFrom(const dao::Variant& value) {
    if (value.isNull()) return std::nullopt;
    double number = 0;
    if (value.is<std::string>()) return text::wholeReal(text::trim(value.get<std::string>()));
    return dao::numberOf(value, number) ? std::optional(number) : std::nullopt;
}

std::string RecordTable::Statement(const CDaoDatabase& database, const std::string& table) {
    return database.GetConnect().onServer() ? "SELECT * FROM " + QualifiedTable(database, table)
                                            : SelectTable(table);
}

void RecordTable::read(CDaoDatabase& database) {
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, Statement(database, name_));
    CDaoFieldInfo info;
    for (int i = 0; i < records.GetFieldCount(); ++i) {
        records.GetFieldInfo(i, info);
        fields_.emplace(text::upper(info.name), i);
    }
    auto placeOf = [&](const std::string& name) {
        const auto field = fields_.find(name);
        return field == fields_.end() ? -1 : field->second;
    };
    const int id = placeOf("PT_ID"), feature = placeOf("GIS_KEY");
    std::array<int, kMeasureFieldCount> measures{};
    for (size_t i = 0; i < kMeasureFieldCount; ++i) measures[i] = placeOf(kMeasureFields[i].name);
    for (; !records.IsEOF(); records.MoveNext()) {
        Record& record = records_.emplace_back();
        if (id >= 0) record.key = comparable(records.GetFieldValue(id));
        if (feature >= 0) record.feature = comparable(records.GetFieldValue(feature));
        for (size_t i = 0; i < kMeasureFieldCount; ++i)
            if (measures[i] >= 0) record.measures[i] = NumberFrom(records.GetFieldValue(measures[i]));
        for (auto& [keyField, places] : byKey_)
            if (const int place = placeOf(keyField); place >= 0)
                places[place == id ? record.key : comparable(records.GetFieldValue(place))].push_back(
                    records_.size() - 1);
    }
}

std::optional<size_t> RecordTable::find(const std::string& keyField, const std::string& key,
                                        const std::string& feature) const {
    const auto places = byKey_.find(keyField);
    if (key.empty() || places == byKey_.end()) return std::nullopt;
    const auto found = places->second.find(key);
    if (found == places->second.end()) return std::nullopt;
    for (size_t record : found->second)
        if (records_[record].feature == feature) return record;
    return found->second.front();
}

}  // namespace norvane
