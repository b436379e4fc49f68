// Note files with any content at all. Captions tell as many points as there are, and what is imported is what
// the blocks say.
#include "fuzz/fuzz_folder.h"
#include "module/transfer/note_records.h"
#include "platform/text/text.h"

using namespace norvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    putFuzzFile("fuzz.not", {reinterpret_cast<const char*>(data), size});
    const std::optional<NoteRecordList> list = ReadNoteRecords(fuzzFile("fuzz.not"));
    require(list.has_value(), "the file cannot be read");
    require(list->blocks == list->records.size() + list->withoutId, "blocks were lost");
    size_t imported = list->withoutFeature.size();
    for (const NoteFeature& feature : FeaturesOf(*list)) {
        require(!FeatureCaption(feature).empty(), "a feature without a caption");
        const TableImport import = ImportOf(feature);
        imported += import.records.size();
        for (const ImportRecord& record : import.records) {
            require(!record.id.empty() && text::isValidUtf8(record.id), "a bad id");
            for (const auto& [column, value] : record.values)
                require(column < import.columns.size() && !value.empty() && text::isValidUtf8(value),
                        "a bad value");
        }
    }
    require(imported == list->records.size(), "records were lost");
    return 0;
}
