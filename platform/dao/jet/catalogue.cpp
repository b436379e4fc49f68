#include "platform/dao/jet/catalogue.h"

#include <algorithm>
#include <chrono>

#include "platform/text/text.h"

namespace jet {
namespace {

// The rights that everybody has on a new table.
constexpr int32_t kAllRights = 0xFFEFF;

int32_t longOf(const Value& value) {
    return value.is<int32_t>() ? value.get<int32_t>() : 0;
}
std::string textOf(const Value& value) {
    return value.is<std::string>() ? value.get<std::string>() : "";
}

Records systemTable(Store& store, uint32_t page) {
    return Records(store, std::make_shared<TableDefinition>(readDefinition(store, page)));
}

}  // namespace

Catalogue::Catalogue(Store& store)
    : store_(store), objects_(systemTable(store, kObjectsPage)), access_(systemTable(store, kAccessPage)) {
    load();
}

size_t Catalogue::column(const char* name) const {
    int position = objects_.definition().columnNamed(name);
    if (position < 0) damaged(std::string("the catalogue has no column ") + name);
    return static_cast<size_t>(position);
}

void Catalogue::load() {
    size_t id = column("Id"), parent = column("ParentId"), name = column("Name"), type = column("Type"),
           flags = column("Flags"), connect = column("Connect"), database = column("Database");
    Records::Place place;
    for (RowId row; objects_.next(row, place); row = row.following()) {
        RowView view = objects_.view(place);
        CatalogueEntry entry;
        entry.row = row;
        entry.id = longOf(objects_.value(view, id));
        entry.parent = longOf(objects_.value(view, parent));
        entry.name = textOf(objects_.value(view, name));
        Value kind = objects_.value(view, type);
        entry.type = kind.is<int16_t>() ? kind.get<int16_t>() : int16_t{0};
        entry.flags = longOf(objects_.value(view, flags));
        if (entry.isLinked()) {
            entry.connect = textOf(objects_.value(view, connect));
            entry.database = textOf(objects_.value(view, database));
        }
        entries_.push_back(std::move(entry));
    }
}

const CatalogueEntry* Catalogue::table(std::string_view name) const {
    for (const CatalogueEntry& entry : entries_)
        if ((entry.isTable() || entry.isLinked()) && text::equalNoCase(entry.name, name)) return &entry;
    return nullptr;
}

Bytes Catalogue::properties(const CatalogueEntry& entry) {
    Records::Place place;
    if (!objects_.find(entry.row, place)) return {};
    Value value = objects_.value(objects_.view(place), column("LvProp"));
    return value.is<dao::Binary>() ? value.get<dao::Binary>() : Bytes();
}

void Catalogue::setProperties(const CatalogueEntry& entry, const Bytes& stored) {
    std::vector<Value> values(objects_.definition().columns.size());
    std::vector<bool> touched(values.size(), false);
    values[column("LvProp")] = Value(stored);
    touched[column("LvProp")] = true;
    objects_.update(entry.row, values, touched);
}

// Those who may use the container of the tables may use each of them.
std::vector<dao::Binary> Catalogue::usersOfTables() {
    std::vector<dao::Binary> users;
    int object = access_.definition().columnNamed("ObjectId"), sid = access_.definition().columnNamed("SID");
    if (object < 0 || sid < 0) damaged("the table of access rights cannot be read");
    Records::Place place;
    for (RowId row; access_.next(row, place); row = row.following()) {
        RowView view = access_.view(place);
        if (longOf(access_.value(view, static_cast<size_t>(object))) != kTablesContainer) continue;
        Value user = access_.value(view, static_cast<size_t>(sid));
        if (!user.is<dao::Binary>()) continue;
        const auto& bytes = user.get<dao::Binary>();
        if (std::find(users.begin(), users.end(), bytes) == users.end()) users.push_back(bytes);
    }
    return users;
}

void Catalogue::addAccess(int32_t id, const dao::Binary& sid, int32_t rights) {
    const TableDefinition& definition = access_.definition();
    std::vector<Value> values(definition.columns.size());
    auto set = [&](const char* name, Value value) {
        int position = definition.columnNamed(name);
        if (position >= 0) values[static_cast<size_t>(position)] = std::move(value);
    };
    set("ObjectId", Value(id));
    set("SID", Value(sid));
    set("ACM", Value(rights));
    set("FInheritable", Value(false));
    access_.insert(values);
}

Value Catalogue::owner() {
    for (const CatalogueEntry& entry : entries_)
        if (entry.type == static_cast<int16_t>(ObjectType::kDatabase) && entry.name == "MSysDb")
            return objects_.read(entry.row)[column("Owner")];
    return {};
}

void Catalogue::addTable(const std::string& name, uint32_t page, const Bytes& properties) {
    addObject({{"Id", Value(static_cast<int32_t>(page))},
               {"ParentId", Value(kTablesContainer)},
               {"Name", Value(name)},
               {"Type", Value(static_cast<int16_t>(ObjectType::kTable))},
               {"DateCreate", Value(now())},
               {"DateUpdate", Value(now())},
               {"Flags", Value(int32_t{0})},
               {"LvProp", Value(properties)}});
}

void Catalogue::addObject(std::map<std::string, Value> entry) {
    entry["Owner"] = owner();
    std::vector<Value> values(objects_.definition().columns.size());
    for (auto& [name, value] : entry) values[column(name.c_str())] = std::move(value);
    int32_t id = longOf(values[column("Id")]);
    objects_.insert(values);
    for (const dao::Binary& user : usersOfTables()) addAccess(id, user, kAllRights);
}

void Catalogue::removeTable(const CatalogueEntry& entry) {
    objects_.erase(entry.row);
    int object = access_.definition().columnNamed("ObjectId");
    std::vector<RowId> rows;
    Records::Place place;
    for (RowId row; access_.next(row, place); row = row.following())
        if (longOf(access_.value(access_.view(place), static_cast<size_t>(object))) == entry.id)
            rows.push_back(row);
    for (RowId row : rows) access_.erase(row);
}

void Catalogue::rename(const CatalogueEntry& entry, const std::string& name) {
    std::vector<Value> values(objects_.definition().columns.size());
    std::vector<bool> touched(values.size(), false);
    values[column("Name")] = Value(name);
    values[column("DateUpdate")] = Value(now());
    touched[column("Name")] = touched[column("DateUpdate")] = true;
    objects_.update(entry.row, values, touched);
}

dao::Date now() {
    using namespace std::chrono;
    auto time = system_clock::to_time_t(system_clock::now());
    std::tm local{};
    localtime_r(&time, &local);
    dao::Date date;
    dao::dateFromCalendar(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                          std::min(local.tm_sec, 59), date);
    return date;
}

}  // namespace jet
