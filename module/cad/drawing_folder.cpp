#include "module/cad/drawing_folder.h"

#include "module/cad/ads_owners.h"
#include "module/cad/lisp_symbols.h"
#include "platform/ads/editor.h"

namespace norvane {

namespace {

// A variable of the host that is a text; "" for any other.
std::string hostText(const char* variable) {
    resbuf value{};
    if (acedGetVar(variable, &value) != RTNORM || value.restype != RTSTR || !value.resval.rstring) return "";
    std::string text = value.resval.rstring;
    acad_free(value.resval.rstring);
    return text;
}

bool isSaved() {
    resbuf titled{};
    return acedGetVar("DWGTITLED", &titled) != RTNORM || titled.restype != RTSHORT || titled.resval.rint != 0;
}

}  // namespace

std::optional<std::string> SavedDrawingFolder() {
    std::string folder = isSaved() ? hostText("DWGPREFIX") : "";
    if (folder.empty()) return std::nullopt;
    return folder;
}

std::string DrawingFolder() {
    if (std::optional<std::string> folder = SavedDrawingFolder()) return *folder;
    std::string folder;
    GetLispValue(folder, "tmpdir$");
    return folder;
}

}  // namespace norvane
