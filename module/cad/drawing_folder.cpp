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

std::string DrawingFolder() {
    std::string folder = isSaved() ? hostText("DWGPREFIX") : "";
    if (folder.empty()) GetLispValue(folder, "tmpdir$");
    return folder;
}

}  // namespace norvane
