// Workbooks of any bytes. Those of the older format are read as the product reads them, in a process of their
// own, since the library behind them does not stand up to all of them (ASAN_OPTIONS=log_path=/dev/null keeps
// its failures quiet); the others are read here. A reader may refuse a file, and must not take anything
// along.
#include "fuzz/fuzz_folder.h"
#include "platform/workbooks/kinds.h"

namespace {

using Reader = std::unique_ptr<workbooks::Workbook> (*)(const std::string&);

void readAll(Reader open, const std::string& path) {
    constexpr int kMostRows = 2000;
    try {
        const std::unique_ptr<workbooks::Workbook> book = open(path);
        for (size_t sheet = 0; sheet < book->sheets().size(); ++sheet) {
            int rows = 0;
            size_t columns = 0;
            book->read(sheet, [&](const std::vector<std::string>& row) {
                require(rows == 0 || row.size() == columns, "rows of different lengths");
                columns = row.size();
                return ++rows < kMostRows;
            });
        }
    } catch (const workbooks::Error&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const bool isZip = size > 2 && bytes.substr(0, 2) == "PK";
    putFuzzFile("book.xls", bytes);
    if (isZip) {
        readAll(workbooks::openXlsx, fuzzFile("book.xls"));
        readAll(workbooks::openOds, fuzzFile("book.xls"));
    } else {
        readAll(workbooks::open, fuzzFile("book.xls"));
    }
    return 0;
}
