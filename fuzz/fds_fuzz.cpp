// Fields Settings Files with any content at all. A list that was loaded, saved and loaded again is the same.
#include "fuzz/fuzz_folder.h"
#include "module/store/name_rules.h"
#include "module/transfer/field_settings_file.h"

using namespace norvane;

namespace {

bool isSame(const std::vector<AsciiField>& a, const std::vector<AsciiField>& b) {
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i].name != b[i].name || a[i].type != b[i].type || a[i].isKey != b[i].isKey) return false;
    return a.size() == b.size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    putFuzzFile("fuzz.fds", {reinterpret_cast<const char*>(data), size});
    const auto settings = ReadFieldSettings(fuzzFile("fuzz.fds"));
    require(settings.has_value(), "the file cannot be read");
    std::vector<AsciiField> fields(5);
    for (size_t i = 0; i < fields.size(); ++i) fields[i].name = "FIELD" + std::to_string(i + 1);
    SetKey(fields, size % fields.size());
    ApplyFieldSettings(*settings, {{"FIELD2", "Real"}}, fields);
    size_t keys = 0;
    for (const AsciiField& field : fields) {
        require(IsGoodName(field.name), "a bad name");
        keys += field.isKey;
    }
    require(keys <= 1, "more than one key");
    require(WriteFieldSettings(fuzzFile("saved.fds"), fields), "the file cannot be written");
    std::vector<AsciiField> again = fields;
    ApplyFieldSettings(*ReadFieldSettings(fuzzFile("saved.fds")), {}, again);
    require(isSame(fields, again), "another list was loaded than was saved");
    return 0;
}
