#include "module/titleblocks/database_source.h"

#include <algorithm>

#include "module/store/database.h"
#include "module/store/output_database.h"
#include "module/store/statements.h"
#include "module/store/user_tables.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

bool hasText(const CDaoFieldInfo& field) {
    return field.type != dbBinary && field.type != dbLongBinary;
}

class DatabaseSource : public RecordSource {
  public:
    explicit DatabaseSource(const dao::DatabasePath& path) { OpenDatabase(database_, path); }

    std::vector<std::string> tables() override {
        std::vector<std::string> names = UserTables(database_);
        for (std::string& name : names) name = text::upper(name);
        return names;
    }

    std::vector<std::string> columns(const std::string& table) override {
        const std::string there = FindUserTable(database_, table);
        if (there.empty()) return {};
        CDaoTableDef definition(&database_);
        definition.Open(there);
        std::vector<std::string> names;
        CDaoFieldInfo field;
        for (int i = 0; i < definition.GetFieldCount(); ++i) {
            definition.GetFieldInfo(i, field);
            if (hasText(field)) names.push_back(text::upper(field.name));
        }
        return names;
    }

    bool read(const std::string& table, const std::vector<std::string>& columns,
              const TakeRecord& take) override {
        const std::string there = FindUserTable(database_, table);
        if (there.empty()) return true;
        CDaoRecordset records(&database_);
        records.Open(dbOpenDynaset, database_.GetConnect().onServer()
                                        ? "SELECT * FROM " + QualifiedTable(database_, there)
                                        : SelectTable(there));
        const std::vector<int> places = placesOf(columns, records);
        std::vector<std::string> values(columns.size());
        for (; !records.IsEOF(); records.MoveNext()) {
            for (size_t i = 0; i < places.size(); ++i)
                if (places[i] >= 0) values[i] = AttributeTextOf(records.GetFieldValue(places[i]));
            if (!take(values)) return false;
        }
        return true;
    }

  private:
    // Where each column stands in the records; -1 for one that is not there.
    static std::vector<int> placesOf(const std::vector<std::string>& columns, const CDaoRecordset& records) {
        std::vector<int> places(columns.size(), -1);
        CDaoFieldInfo field;
        for (int i = records.GetFieldCount() - 1; i >= 0; --i) {
            records.GetFieldInfo(i, field);
            for (size_t column = 0; column < columns.size(); ++column)
                if (text::equalNoCase(field.name, columns[column])) places[column] = i;
        }
        return places;
    }

    CDaoDatabase database_;
};

}  // namespace

std::unique_ptr<RecordSource> OpenDatabaseSource(const dao::DatabasePath& path) {
    return std::make_unique<DatabaseSource>(path);
}

std::string AttributeTextOf(const dao::Variant& value) {
    // The decimals are those that keys and attributes of drawings have had from the beginning.
    if (value.is<float>()) return text::format("%f", static_cast<double>(value.get<float>()));
    if (value.is<double>()) return text::format("%f", value.get<double>());
    if (value.is<dao::Currency>()) return text::stripZeros(dao::exactText(value.get<dao::Currency>()));
    return dao::toText(value);
}

}  // namespace norvane
