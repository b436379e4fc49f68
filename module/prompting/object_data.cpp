#include "module/prompting/object_data.h"

#include "module/settings/settings_file.h"
#include "platform/ads/editor.h"

namespace norvane {

int ProbeObjectData() {
    return 0;
}

bool ObjectDataMode() {
    std::optional<SettingsFile> file = SettingsFile::read();
    bool wanted = file && file->value(settings::kObjectData).value_or("") == "1";
    return wanted && ProbeObjectData() != 0;
}

bool ObjectDataUsable() {
    switch (ProbeObjectData()) {
        case 0:
            acutPrintf("\nError: not an AutoCAD Map engine...");
            return false;
        case 1:
            acutPrintf("\nError: invalid ADE version...");
            return false;
        default:
            return true;
    }
}

bool OffersObjectData() {
    constexpr int kUsable = 2;  // and above
    const int engine = ProbeObjectData();
    return engine < 0 || engine >= kUsable;
}

std::vector<ObjectDataTable> ObjectDataTables() {
    return {};
}

void RunObjectDataPrompt(const PromptRequest&) {}

}  // namespace norvane
