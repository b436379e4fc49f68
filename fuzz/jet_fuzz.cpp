// Access files as they come: all of a file is read and checked.
//
// Whatever the file holds, the answer is a value or an error, and the file is the same afterwards.
#include "fuzz/fuzz_folder.h"
#include "fuzz/jet_seeds.h"
#include "platform/dao/jet/check.h"

using jet_fuzz::attempt;

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    jet_fuzz::addSeeds(count, arguments, 0);
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t, unsigned seed) {
    return jet_fuzz::mutate(data, size, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view file(reinterpret_cast<const char*>(data), size);
    putFuzzFile("t.mdb", file);
    attempt([&] {
        jet::Database db(fuzzFile("t.mdb"), {});
        jet::Database::Reading reading(db);
        for (const jet::TableInfo& table : db.tables())
            attempt([&] {
                db.columns(table.name);
                db.indexes(table.name);
                std::shared_ptr<jet::Records> records = db.records(table.name);
                size_t count = 0;
                for (jet::Walk walk(records); walk.next() && count < 1000; ++count)
                    for (size_t i = 0; i < records->definition().columns.size(); ++i)
                        attempt([&] { walk.value(i); });
            });
        jet::check(db);
    });
    require(fuzzFileContent("t.mdb") == file, "reading has changed the file");
    return 0;
}
