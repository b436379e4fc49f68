// Writing into damaged Access files. The first byte picks what is done, the second the table and the row.
//
// What is refused leaves the file as it was. What is done can be read again. Of a file that is compacted,
// whatever it was, nothing is left that the checker could find.
#include "fuzz/fuzz_folder.h"
#include "fuzz/jet_seeds.h"
#include "platform/dao/jet/check.h"
#include "platform/dao/jet/repair.h"

using jet_fuzz::attempt;

namespace {

constexpr size_t kLead = 2;

jet::Column memo() {
    jet::Column column;
    column.name = "FUZZ";
    column.type = jet::Type::kMemo;
    return column;
}

// One change of one table. Throws where it is refused.
void change(jet::Database& db, unsigned what, unsigned which) {
    std::vector<jet::TableInfo> tables = db.tables();
    if (tables.empty()) throw jet::Error("there is nothing to change");
    const std::string name = tables[which % tables.size()].name;
    switch (what % 7) {
        case 0:
            return db.addColumn(name, memo());
        case 1:
            return db.renameTable(name, "OTHER");
        case 2:
            return db.dropTable(name);
        case 3:
            return db.createTable("NEW", {memo()});
        default:
            break;
    }
    std::shared_ptr<jet::Records> records = db.records(name);
    jet::Walk walk(records);
    for (unsigned skipped = 0; walk.next() && skipped < which / 8; ++skipped) {
    }
    std::vector<jet::Value> values = records->read(walk.row());
    for (jet::Value& value : values)
        if (value.is<std::string>()) value = jet::Value(std::string(which, 'x'));
    if (what % 7 == 4) records->insert(values);
    if (what % 7 == 5) records->update(walk.row(), values, std::vector<bool>(values.size(), true));
    if (what % 7 == 6) records->erase(walk.row());
}

// Whether the file was compacted.
bool compact(const std::string& path) {
    std::string kept;
    if (!attempt([&] { kept = jet::compactAndRepair(path, {}).kept; })) return false;
    if (!kept.empty()) std::filesystem::remove(kept);
    jet::Database db(path, {});
    require(jet::check(db).empty(), "compaction leaves faults");
    return true;
}

// Whether something was changed. It can be read again then.
bool write(const std::string& path, unsigned what, unsigned which) {
    bool done = false;
    attempt([&] {
        jet::Database db(path, {});
        db.begin();
        done = attempt([&] { change(db, what, which); });
        db.commit();
    });
    attempt([&] {
        jet::Database db(path, {});
        jet::check(db);
    });
    return done;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    jet_fuzz::addSeeds(count, arguments, kLead);
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t, unsigned seed) {
    if (size < kLead) return size;
    if (seed % 2 == 0) {
        data[0] = static_cast<uint8_t>(seed >> 8);
        data[1] = static_cast<uint8_t>(seed >> 16);
    }
    return kLead + jet_fuzz::mutate(data + kLead, size - kLead, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < kLead) return 0;
    std::string_view file(reinterpret_cast<const char*>(data) + kLead, size - kLead);
    putFuzzFile("t.mdb", file);
    const std::string path = fuzzFile("t.mdb");
    bool changed = data[0] % 4 == 3 ? compact(path) : write(path, data[0] / 4, data[1]);
    require(changed || fuzzFileContent("t.mdb") == file, "what was refused has changed the file");
    return 0;
}
