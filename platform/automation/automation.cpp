#include "platform/automation/automation.h"

#include <dlfcn.h>

#include <cstdlib>
#include <map>

#include "platform/files/files.h"
#include "platform/text/text.h"

namespace automation {
namespace {

std::map<ClassId, Factory>& classes() {
    static std::map<ClassId, Factory> map;
    return map;
}

}  // namespace

bool toText(const Value& value, std::string& out) {
    if (std::holds_alternative<std::monostate>(value))
        out.clear();
    else if (auto* s = std::get_if<std::string>(&value))
        out = *s;
    else if (auto* number = std::get_if<int32_t>(&value))
        out = std::to_string(*number);
    else if (auto* real = std::get_if<double>(&value))
        out = text::fromReal(*real);
    else
        return false;
    return true;
}

void registerClass(std::string_view programId, Factory factory) {
    classes()[text::upper(programId)] = std::move(factory);
}

void unregisterClass(std::string_view programId) {
    classes().erase(text::upper(programId));
}

bool initialize() {
    return std::getenv("NORVANE_NO_AUTOMATION") == nullptr;
}

std::optional<ClassId> classOf(std::string_view programId) {
    auto found = classes().find(text::upper(programId));
    if (found == classes().end()) return std::nullopt;
    return found->first;
}

ObjectPtr create(const ClassId& id) {
    auto found = classes().find(id);
    return found == classes().end() ? nullptr : found->second();
}

bool registerLibrary(const std::string& path) {
    std::string file = files::onDisk(path);
    // A bare name would be looked for in the system's folders.
    if (!files::exists(file)) return false;
    if (file.find('/') == std::string::npos) file = "./" + file;
    void* library = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) return false;
    auto registerServer = reinterpret_cast<int (*)()>(::dlsym(library, "DllRegisterServer"));
    return registerServer && registerServer() == 0;
}

}  // namespace automation
