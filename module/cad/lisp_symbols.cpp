#include "module/cad/lisp_symbols.h"

#include "module/cad/ads_owners.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kLongestDirectory = 1023;  // bytes

ResultBuffers symbolValue(const std::string& name) {
    ResultBuffers value;
    if (acedGetSym(name.c_str(), value.out()) != RTNORM || (value && value.get()->restype == RTNIL))
        value.reset();
    return value;
}

}  // namespace

int GetLispValue(std::string& buffer, const std::string& name) {
    buffer.clear();
    ResultBuffers value = symbolValue(name);
    if (!value && name == "lspdir$") value = symbolValue("cc_lspdir$");
    if (!value) return 0;
    const ads_u_val& v = value.get()->resval;
    switch (value.get()->restype) {
        case RTSTR:
            buffer = v.rstring ? v.rstring : "";
            return 1;
        case RTSHORT:
            buffer = text::format("%d", v.rint);
            return 1;
        case RTREAL:
            buffer = text::fromReal(v.rreal);
            return 1;
        case RTLONG:
            buffer = text::format("%ld", v.rlong);
            return 1;
        default:
            return 0;
    }
}

void SetLispString(const std::string& name, const std::string& value) {
    ResultBuffers list(acutBuildList(RTSTR, value.c_str(), 0));
    if (acedPutSym(name.c_str(), list.get()) != RTNORM) acutPrintf("Unable to set AutoLisp variable\n");
}

std::optional<std::string> UserDirectory() {
    ResultBuffers value = symbolValue("usrdir$");
    if (!value || value.get()->restype != RTSTR || !value.get()->resval.rstring) return std::nullopt;
    return value.get()->resval.rstring;
}

std::string LispDirectory() {
    std::string folder;
    GetLispValue(folder, "lspdir$");
    if (folder.size() > kLongestDirectory) folder.resize(kLongestDirectory);
    return folder;
}

}  // namespace norvane
