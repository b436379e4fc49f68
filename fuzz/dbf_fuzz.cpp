// dBASE tables of any bytes: reading changes nothing, and what is written reads back.
#include <algorithm>
#include <cstring>

#include "fuzz/fuzz_folder.h"
#include "module/exchange/dbf_file.h"

using namespace norvane;

namespace {

constexpr int32_t kMostRecords = 200, kMostFields = 100;

void readAll(DbfHandle* table) {
    int32_t fields = std::min(DbfGetFieldCount(table), kMostFields);
    for (int32_t f = -1; f <= fields; ++f) {
        std::string name;
        int32_t width = 0, decimals = 0;
        DbfGetFieldInfo(table, f, &name, &width, &decimals);
    }
    for (int32_t i = -1; i <= std::min(DbfGetRecordCount(table), kMostRecords); ++i)
        for (int32_t f = -1; f <= fields; ++f) {
            const char* text = DbfReadStringAttribute(table, i, f);
            bool there = i >= 0 && i < DbfGetRecordCount(table) && f >= 0 && f < DbfGetFieldCount(table);
            require((text != nullptr) == there, "a value that is not there, or one that is missing");
            DbfReadDoubleAttribute(table, i, f);
        }
}

void writeAll(const std::string& path) {
    OpenDbfFile table(DbfOpen(path, "r+b"));
    int32_t records = DbfGetRecordCount(table.get()),
            fields = std::min(DbfGetFieldCount(table.get()), kMostFields);
    for (int32_t f = 0; f < fields; ++f) {
        require(DbfWriteStringAttribute(table.get(), records, f, "12"), "a new record cannot be written");
        require(DbfWriteDoubleAttribute(table.get(), records / 2, f, 34.5), "a record cannot be written");
    }
    require(!DbfWriteIntegerAttribute(table.get(), records + 2, 0, 1), "a record behind the end was written");
    require(DbfClose(table.release()), "the table cannot be written");
    if (fields == 0) return;
    table.reset(DbfOpen(path, "rb"));
    require(table && DbfGetRecordCount(table.get()) == std::max(records + 1, 1),
            "the new record is not counted");
    readAll(table.get());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    putFuzzFile("table.dbf", bytes);
    OpenDbfFile table(DbfOpen(fuzzFile("table"), "r+b"));
    if (!table) return 0;
    readAll(table.get());
    require(DbfClose(table.release()), "closing has failed");
    require(fuzzFileContent("table.dbf") == bytes, "reading has changed the table");
    writeAll(fuzzFile("table"));
    return 0;
}
