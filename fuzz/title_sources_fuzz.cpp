// The tables and settings of title blocks that are read by our own code, of any bytes: dBASE and FoxPro
// tables, delimited text, and the file of links, which keeps what it does not know.
#include "fuzz/fuzz_folder.h"
#include "module/titleblocks/link_file.h"
#include "module/titleblocks/record_source.h"
#include "platform/dao/dao.h"

using namespace norvane;

namespace {

void readAll(const std::string& file) {
    constexpr int kMostRecords = 500;
    try {
        const std::unique_ptr<RecordSource> source = OpenRecordSource(dao::DatabasePath(fuzzFile(file)));
        for (const std::string& table : source->tables()) {
            const std::vector<std::string> columns = source->columns(table);
            int records = 0;
            source->read(table, columns, [&](std::span<const std::string> values) {
                require(values.size() == columns.size(), "a record of another length");
                return ++records < kMostRecords;
            });
        }
    } catch (const CDaoException&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    putFuzzFile("t.dbf", bytes);
    readAll("t.dbf");
    putFuzzFile("t.csv", bytes);
    readAll("t.csv");
    putFuzzFile("links.ini", bytes);
    const std::vector<BlockLink> links = ReadBlockLinks(fuzzFile("links.ini"));
    require(fuzzFileContent("links.ini") == bytes, "reading has changed the file");
    // Saving the links of a block again keeps them, and a second time changes nothing.
    const std::string block = links.empty() ? "TITLE" : links.front().block;
    require(SaveBlockLinks(fuzzFile("links.ini"), block, links), "the file cannot be written");
    const std::string saved = fuzzFileContent("links.ini");
    require(SaveBlockLinks(fuzzFile("links.ini"), block, ReadBlockLinks(fuzzFile("links.ini"))),
            "not written again");
    require(fuzzFileContent("links.ini") == saved, "a second save has changed the file");
    return 0;
}
