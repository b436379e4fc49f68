#include "module/prompting/open_prompt_sheet.h"

#include "module/dialogs/run_dialog.h"
#include "module/prompting/prompt_sheet.h"
#include "module/store/database.h"
#include "module/store/template_database.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

struct FoundNames {
    bool exact = false;
    bool base = false;
};

FoundNames findInTemplate(const std::string& path, const std::string& exactName,
                          const std::string& baseName) {
    FoundNames found;
    ShowDatabaseErrors([&] {
        CDaoDatabase database;
        OpenDatabase(database, path);
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

bool IsFeatureDefined(const std::string& templatePath, const std::string& feature) {
    if (feature.empty()) return true;
    const std::string exactName = text::upper(feature);
    const FoundNames found = findInTemplate(templatePath, exactName, withoutTrailingDigits(exactName));
    return found.exact || found.base;
}

std::optional<SavedRecord> OpenPromptSheet(PromptRequest request) {
    bool dao = CheckDao();
    if (request.featureLocked == 1 && !request.featureName.empty()) {
        std::string exactName = text::upper(request.featureName);
        std::string baseName = withoutTrailingDigits(exactName);
        FoundNames found = dao ? findInTemplate(request.templatePath, exactName, baseName) : FoundNames{};
        if (!found.exact && !found.base) return std::nullopt;
        // TREE wins over TREE12 when both exist.
        if (found.base && baseName.size() < request.featureName.size()) request.featureName = baseName;
    }
    PromptSheet sheet(std::move(request));
    RunDialog(sheet);
    return sheet.saved();
}

}  // namespace norvane
