#include "module/settings/current_databases.h"

#include "module/settings/dialog_state.h"
#include "module/settings/settings_file.h"

namespace norvane {

namespace {

std::string settingOrState(const char* key, int index) {
    std::optional<SettingsFile> file = SettingsFile::read();
    std::string value = file ? file->value(key).value_or("") : "";
    return value.empty() ? readState(index) : value;
}

}  // namespace

std::string CurrentTemplatePath() {
    return settingOrState(settings::kTemplate, state::kTemplatePath);
}
std::string CurrentOutputPath() {
    return settingOrState(settings::kOutput, state::kOutputPath);
}

void SetDialogValue(int slot, const dao::DatabasePath& value) {
    if (slot == state::kTemplatePath || slot == state::kOutputPath) {
        std::optional<SettingsFile> file = SettingsFile::read();
        bool placed = file && !file->empty() &&
                      (slot == state::kTemplatePath ? file->placeTemplate(value) : file->placeOutput(value));
        if (placed) file->write();
    }
    writeState(value, slot);
}

void GetDialogValue(int slot, std::string& buffer) {
    std::string value;
    if (slot == state::kTemplatePath || slot == state::kOutputPath) {
        // No fallback to the remembered value: a line that is missing means none.
        std::optional<SettingsFile> file = SettingsFile::read();
        std::optional<std::string> line =
            file ? file->value(slot == state::kTemplatePath ? settings::kTemplate : settings::kOutput)
                 : std::nullopt;
        if (!line) return;
        value = *line;
        // A password that someone has put into the settings by hand is not copied.
        writeState(dao::DatabasePath(value),
                   slot == state::kTemplatePath ? state::kTemplatePath : state::kOutputPath);
    } else {
        value = readState(slot);
    }
    if (!value.empty()) buffer = value;
}

}  // namespace norvane
