#include "module/linktools/insert_blocks_input.h"

#include <algorithm>

#include "module/cad/layers.h"
#include "module/settings/dialog_state.h"
#include "module/settings/settings_file.h"
#include "module/store/server_sign_in.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// Between the names of attributes and fields: TAG||FIELD||TAG||FIELD.
constexpr const char* kBetweenNames = "||";
constexpr size_t kGap = 2;

std::map<std::string, std::string> rememberedFields() {
    const std::string remembered = readState(state::kInsertBlocksGrid);
    std::vector<std::string> names;
    for (size_t at = 0; at <= remembered.size();) {
        const size_t end = std::min(remembered.find(kBetweenNames, at), remembered.size());
        names.push_back(remembered.substr(at, end - at));
        at = end + kGap;
    }
    std::map<std::string, std::string> fields;
    for (size_t i = 0; i + 1 < names.size(); i += 2) fields[names[i]] = names[i + 1];
    return fields;
}

}  // namespace

InsertBlocksInput RememberedInsertInput() {
    InsertBlocksInput input;
    std::string output = readState(state::kOutputPath);
    if (output.empty())
        if (const std::optional<SettingsFile> settings = SettingsFile::read())
            output = settings->value(settings::kOutput).value_or("");
    input.output = TakePassword(output);
    input.fields = rememberedFields();
    input.layer = CurrentLayer();
    return input;
}

void RememberFields(const std::vector<AttributeField>& fields) {
    std::vector<std::string> pairs;
    for (const AttributeField& field : fields) pairs.push_back(field.tag + kBetweenNames + field.field);
    writeState(text::join(pairs, kBetweenNames), state::kInsertBlocksGrid);
}

std::string BlockNameOf(const std::string& path) {
    const std::string file = files::nameOf(files::native(path));
    return file.substr(0, file.rfind('.'));
}

}  // namespace norvane
