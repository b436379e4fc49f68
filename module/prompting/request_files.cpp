#include "module/prompting/request_files.h"

#include "module/store/new_database.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"

namespace norvane {

bool TemplateIsThere(const std::string& path) {
    if (files::exists(path)) return true;
    acutPrintf("\nError: unable to read file %s", path.c_str());
    return false;
}

bool CreateMissingOutput(const std::string& path) {
    if (CreateOutputDatabase(path, DatabaseVersion::kAccess97)) return true;
    acutPrintf("\nError: unable to write file %s", path.c_str());
    return false;
}

}  // namespace norvane
