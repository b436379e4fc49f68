// Delimited lines with any content at all; the first two bytes choose how they are cut.
#include "fuzz/fuzz_folder.h"
#include "module/exchange/text_lines.h"
#include "module/transfer/import_text.h"
#include "module/transfer/text_preview.h"
#include "platform/text/text.h"

using namespace norvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    TextImport import;
    import.path = fuzzFile("fuzz.txt");
    import.table = "T";
    import.format.delimiter = DelimiterOf(DelimiterNames()[data[0] % 5]);
    if (data[0] & 0x10) import.format.embedded = DelimiterOf(DelimiterNames()[(data[0] >> 5) % 5]);
    import.format.quoted = data[1] & 1;
    import.hasHeadings = data[1] & 2;
    putFuzzFile("fuzz.txt", {reinterpret_cast<const char*>(data + 2), size - 2});
    const auto lines = ReadFirstLines(import.path, 200);
    require(lines.has_value(), "the file cannot be read");
    TextPreview preview(*lines);
    for (const std::string& line : *lines) {
        import.fields = ParseLine(TrimmedLine(line, import.format.delimiter), import.format);
        if (import.fields.empty()) continue;
        SetKey(import.fields, data[1] / 4 % import.fields.size());
        break;
    }
    preview.setFormat(import.format, import.hasHeadings, import.fields.size());
    const auto columns = static_cast<int>(preview.headings().size());
    for (int i = 0; i < preview.count(); ++i)
        for (int column = 0; column < columns; ++column) preview.text(i, column);
    if (import.fields.empty()) return 0;
    const auto records = ReadTextRecords(import, [](size_t, size_t) { return true; });
    require(records.has_value(), "the records cannot be read");
    require(records->import.records.size() + records->leftOut.size() == records->lines, "lines were lost");
    for (const ImportRecord& record : records->import.records)
        for (const auto& [column, value] : record.values)
            require(column < records->import.columns.size() && text::isValidUtf8(value), "a bad value");
    return 0;
}
