#include "module/dialogs/file_boxes.h"

#include "platform/ui/backend.h"

namespace norvane {

namespace {

ui::FileBox existing(const char* filter, const char* pattern, const std::string& folder) {
    ui::FileBox box;
    box.filter = filter;
    box.pattern = pattern;
    box.folder = folder;
    box.mustExist = true;
    return box;
}

ui::FileBox toSave(const char* filter, const char* pattern, const std::string& folder) {
    ui::FileBox box;
    box.save = true;
    box.filter = filter;
    box.pattern = pattern;
    box.folder = folder;
    // As it has always been, for feature files too: who leaves the ending out gets this one.
    box.defaultExtension = "mdb";
    box.askOverwrite = true;
    return box;
}

constexpr const char* kFeatureFiles = "Norvane GIS Files (*.gis)|*.gis||";

}  // namespace

std::optional<std::string> AskExistingDatabase(const std::string& folder) {
    return ui::fileBox(existing("Microsoft Access Databases (*.mdb)|*.mdb||", "*.mdb", folder));
}

std::optional<std::string> AskTemplateToOpen(const std::string& folder) {
    return ui::fileBox(existing("Microsoft Access Databases(*.mdb)|*.mdb||", "*.mdb", folder));
}

std::optional<std::string> AskNewDatabase(const std::string& folder) {
    return ui::fileBox(toSave("Access Databases Files (*.mdb)|*.mdb||", "*.mdb", folder));
}

std::optional<std::string> AskFeatureFileToImport(const std::string& folder) {
    ui::FileBox box = existing("Norvane GIS Files(*.gis)|*.gis||", "*.gis", folder);
    box.defaultExtension = "gis";
    return ui::fileBox(box);
}

std::optional<std::string> AskFeatureFileToExport(const std::string& folder) {
    return ui::fileBox(toSave(kFeatureFiles, "", folder));
}

std::optional<std::string> AskFeatureFileToDelete(const std::string& folder) {
    return ui::fileBox(existing(kFeatureFiles, "", folder));
}

}  // namespace norvane
