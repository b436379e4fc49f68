// The ini files: gps.ini, featlink.ini and the registry, with any content at all.
//
// Beside crashes it looks for lost lines: what a writer does not understand must stand as it stood.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "hostcad/editor/host.h"
#include "module/cad/lisp_symbols.h"
#include "module/settings/current_databases.h"
#include "module/settings/dialog_state.h"
#include "module/settings/settings_file.h"
#include "platform/files/files.h"
#include "platform/registry/registry.h"

using namespace norvane;

namespace {

class Silence : public hostcad::Output, public hostcad::InputSource {
  public:
    void write(std::string_view) override {}
    hostcad::Input next(const hostcad::Prompt&) override { return hostcad::Input::end(); }
};

std::string userFolder() {
    static const std::string folder = [] {
        std::string pattern = (std::filesystem::temp_directory_path() / "norvane-fuzz-XXXXXX").string();
        std::string made = mkdtemp(pattern.data());
        static Silence silence;
        static hostcad::NoView view;
        static hostcad::Host host(silence, silence, view);
        setenv("NORVANE_REGISTRY", (made + "/registry.ini").c_str(), 1);
        SetLispString("usrdir$", made + "/");
        return made + "/";
    }();
    return folder;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string content(reinterpret_cast<const char*>(data), size);
    std::string folder = userFolder();
    files::replace(folder + "gps.ini", content);
    files::replace(folder + "featlink.ini", content);
    files::replace(folder + "registry.ini", content);

    SetDialogValue(1, dao::DatabasePath("template.mdb"));
    SetDialogValue(2, dao::DatabasePath("output.mdb"));
    std::string value;
    GetDialogValue(1, value);
    std::optional<SettingsFile> file = SettingsFile::read();
    if (file && file->value(settings::kAnchor) && value != "template.mdb") std::abort();

    writeState("five", 5);
    writeState("", 0);
    for (int index = -1; index < 40; ++index) readState(index);
    registry::readString(registry::kClassesRoot, "DAO.DBEngine.36\\CLSID");
    registry::hasKey(registry::kClassesRoot, ".mdb\\Access.Application.9");
    return 0;
}
