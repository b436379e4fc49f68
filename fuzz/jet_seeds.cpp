#include "fuzz/jet_seeds.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <vector>

#include "fuzz/fuzz_folder.h"
#include "platform/dao/jet/database.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace jet_fuzz {
namespace {

// A table with a column of every kind, indexes, memos in the row, in one piece and in a chain, and moved
// rows.
void makeSeed(const std::string& path, jet::Version version, int rows) {
    using jet::Type;
    jet::Database::create(path, version);
    jet::Database db(path, {});
    db.begin();
    std::vector<jet::Column> columns = {
        jet::Column{"ID", Type::kLong},     jet::Column{"NAME", Type::kText, 100},
        jet::Column{"YES", Type::kBoolean}, jet::Column{"D", Type::kDouble},
        jet::Column{"WHEN", Type::kDate},   jet::Column{"B", Type::kBinary, 20},
        jet::Column{"NOTE", Type::kMemo},   jet::Column{"G", Type::kGuid}};
    columns[0].autonumber = true;
    columns[1].defaultValue = "\"none\"";
    db.createTable("T", columns);
    db.createIndex("T", {.name = "PK", .columns = {{"ID"}}, .primary = true});
    db.createIndex("T", {.name = "NAMES", .columns = {{"NAME", false}, {"D"}}});
    std::shared_ptr<jet::Records> records = db.records("T");
    for (int i = 0; i < rows; ++i) {
        std::vector<jet::Value> values = {jet::Value(),
                                          jet::Value("Name é " + std::to_string(i * 7 % 50)),
                                          jet::Value(i % 2 > 0),
                                          jet::Value(i * 0.25),
                                          jet::Value(dao::Date{38000.0 + i}),
                                          jet::Value(dao::Binary{1, 2, 3}),
                                          jet::Value(std::string(static_cast<size_t>(i % 4) * 1500, 'm')),
                                          jet::Value("{00112233-4455-6677-8899-AABBCCDDEEFF}")};
        jet::RowId row = records->insert(values);
        if (i % 9 == 0) {
            std::vector<bool> touched(8, false);
            touched[1] = true;
            values[1] = jet::Value(std::string(100, 'y'));
            records->update(row, values, touched);
        }
        if (i % 11 == 10) records->erase(row);
    }
    db.createTable("EMPTY", {jet::Column{"A", Type::kLong}});
    db.commit();
}

}  // namespace

void addSeeds(int* count, char*** arguments, size_t lead) {
    static std::string seeds = fuzzFile("seeds");
    std::filesystem::create_directory(seeds);
    for (jet::Version version : {jet::Version::kAccess97, jet::Version::kAccess2000})
        for (int rows : {0, 40}) {
            makeSeed(fuzzFile("seed.mdb"), version, rows);
            std::string name =
                "seeds/" + std::to_string(static_cast<int>(version)) + "-" + std::to_string(rows);
            putFuzzFile(name, std::string(lead, '\0') + fuzzFileContent("seed.mdb"));
            std::filesystem::remove(fuzzFile("seed.mdb"));
        }
    static std::vector<char*> all(*arguments, *arguments + *count);
    all.push_back(seeds.data());
    all.push_back(nullptr);
    *arguments = all.data();
    ++*count;
}

size_t mutate(uint8_t* data, size_t size, unsigned seed) {
    std::minstd_rand random(seed);
    size_t pageSize = size > 0x14 && data[0x14] == 0 ? 2048 : 4096;
    size_t pages = size / pageSize;
    if (pages < 2) return size;
    uint8_t* page = data + random() % pages * pageSize;
    // Most of what a page says of itself stands at its beginning; rows stand at its end.
    size_t at = random() % 3 ? random() % 64 : random() % (pageSize - 64);
    switch (random() % 8) {
        case 0:
            return size - random() % (pageSize * 2);
        case 1:
            std::copy_n(data + random() % pages * pageSize, pageSize, page);
            return size;
        case 2:
        case 3: {
            uint32_t number =
                random() % 4 ? random() % static_cast<uint32_t>(pages) : 0xFFFFFFFF >> random() % 32;
            for (size_t i = 0; i < 4; ++i) page[at + i] = static_cast<uint8_t>(number >> (8 * i));
            return size;
        }
        default: {
            uint8_t window[64];
            std::copy_n(page + at, sizeof window, window);
            size_t changed = LLVMFuzzerMutate(window, 1 + random() % sizeof window, sizeof window);
            std::copy_n(window, changed, page + at);
            return size;
        }
    }
}

bool attempt(const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (const jet::Error&) {
        return false;
    }
}

}  // namespace jet_fuzz
