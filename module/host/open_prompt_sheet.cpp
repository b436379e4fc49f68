#include "module/host/open_prompt_sheet.h"

#include <string>

#include "module/host/dialog_messages.h"
#include "module/host/gis_request.h"
#include "module/prompting/prompt_sheet.h"
#include "module/store/database.h"
#include "module/store/template_database.h"
#include "platform/text/text.h"

namespace {

struct FoundNames {
    bool exact = false;
    bool base = false;
};

FoundNames findInTemplate(const std::string& exactName, const std::string& baseName) {
    FoundNames found;
    ShowDatabaseErrors([&] {
        CDaoDatabase database;
        OpenDatabase(database, PromptRequest.templatePath);
        if (!HasPromptingTable(database)) return;
        found.exact = HasFeature(database, exactName);
        found.base = HasFeature(database, baseName);
    });
    return found;
}

std::string withoutTrailingDigits(std::string name) {
    name.erase(name.find_last_not_of("0123456789") + 1);
    return name;
}

}  // namespace

void OpenPromptSheet() {
    bool dao = CheckDao();
    if (PromptRequest.featureLocked == 1 && !PromptRequest.featureName.empty()) {
        std::string exactName = text::upper(PromptRequest.featureName);
        std::string baseName = withoutTrailingDigits(exactName);
        FoundNames found = dao ? findInTemplate(exactName, baseName) : FoundNames{};
        if (!found.exact && !found.base) {
            GisReturnStatus = 0;
            return;
        }
        // TREE wins over TREE12 when both exist.
        if (found.base && baseName.size() < PromptRequest.featureName.size())
            PromptRequest.featureName = baseName;
    }
    PromptSheet sheet;
    int result = sheet.runModal();
    if (result == ui::kNotCreated) PrintDialogNotCreated();
    if (result != ui::kOk) GisReturnStatus = 0;
}
