#include "hostcad/editor/product.h"

#include <cstdlib>
#include <filesystem>

#include "hostcad/editor/host.h"
#include "platform/files/files.h"

namespace hostcad {
namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string userFolder(const Product& product) {
    std::filesystem::path folder = environment(product.userFolderVariable.c_str());
    if (folder.empty()) {
        std::filesystem::path settings = environment("XDG_CONFIG_HOME");
        if (settings.empty()) settings = environment("HOME") + "/.config";
        folder = settings / product.userFolder;
    }
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    return folder.string();
}

}  // namespace

void introduceProduct(Host& host, const Product& product, const std::string& programFolder) {
    host.setFolders({programFolder, files::join(programFolder, "support"), userFolder(product)});
    host.lisp().setVersion(product.lispVersion);
}

bool loadProduct(Host& host, const Product& product) {
    if (!host.modules().load(host.folders().program + product.module)) return false;
    host.runScript(host.folders().support + product.commands);
    return true;
}

}  // namespace hostcad
