#include "hostcad/editor/modules.h"

#include <dlfcn.h>

#include <algorithm>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/editor/host.h"
#include "hostcad/lisp/arguments.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace hostcad {

struct Modules::Module {
    std::string path;
    std::string fileName;  // lower case, without folder
    void* handle = nullptr;
    AcRx::AppRetCode (*entryPoint)(AcRx::AppMsgCode, void*) = nullptr;
    bool isLocked = true;
    bool hasDrawing = false;
    std::vector<Function> functions;
};

Modules::Modules(Host& host) : host_(host) {}
Modules::~Modules() {
    unloadAll();
}

Modules::Module* Modules::find(std::string_view fileName) const {
    std::string wanted = text::lower(files::nameOf(fileName));
    if (files::extensionOf(wanted).empty()) wanted += ".arx";
    for (const auto& module : modules_)
        if (module->fileName == wanted) return module.get();
    return nullptr;
}

std::vector<std::string> Modules::loaded() const {
    std::vector<std::string> names;
    for (const auto& module : modules_) names.push_back(module->fileName);
    return names;
}

bool Modules::refuse(const std::string& path, const std::string& reason) {
    host_.write("\nCannot load " + path + ": " + reason + "\n");
    return false;
}

bool Modules::load(const std::string& name) {
    std::string withExtension = files::extensionOf(name).empty() ? name + ".arx" : name;
    std::string path = host_.findFile(withExtension);
    if (path.empty()) return refuse(withExtension, "there is no such file.");
    if (find(path)) return refuse(path, "a module of that name is loaded already.");
    if (path.find('/') == std::string::npos) path = "./" + path;  // not one of the system's libraries

    auto module = std::make_unique<Module>();
    module->path = path;
    module->fileName = text::lower(files::nameOf(path));
    module->handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module->handle) {
        const char* reason = dlerror();
        return refuse(path, reason ? reason : "it is no module.");
    }
    auto version = reinterpret_cast<int (*)()>(dlsym(module->handle, "acrxGetApiVersion"));
    module->entryPoint =
        reinterpret_cast<decltype(module->entryPoint)>(dlsym(module->handle, "acrxEntryPoint"));
    std::string reason;
    if (!version || !module->entryPoint)
        reason = "it is no module: acrxGetApiVersion or acrxEntryPoint is missing.";
    else if (version() != kApiVersion)
        reason = text::format("it is made for version %d of the host's interface, this is %d.", version(),
                              kApiVersion);
    if (!reason.empty()) {
        dlclose(module->handle);
        return refuse(path, reason);
    }
    Module& added = *module;
    modules_.push_back(std::move(module));
    if (send(added, AcRx::kInitAppMsg) == AcRx::kRetError) {
        removeFunctions(added);
        dlclose(added.handle);
        std::erase_if(modules_, [&](const auto& m) { return m.get() == &added; });
        return refuse(path, "it says that it cannot start.");
    }
    send(added, AcRx::kLoadDwgMsg);
    added.hasDrawing = true;
    return true;
}

bool Modules::unload(const std::string& name) {
    Module* module = find(name);
    std::string reason = !module              ? "it is not loaded."
                         : module->isLocked   ? "it is locked."
                         : isCalling(*module) ? "it is at work."
                                              : "";
    if (!reason.empty()) {
        host_.write("\nCannot unload " + name + ": " + reason + "\n");
        return false;
    }
    if (module->hasDrawing) send(*module, AcRx::kUnloadDwgMsg);
    send(*module, AcRx::kUnloadAppMsg);
    removeFunctions(*module);
    dlclose(module->handle);
    std::erase_if(modules_, [&](const auto& m) { return m.get() == module; });
    return true;
}

// The libraries stay in memory: the process is about to end, and something may still point into them.
void Modules::unloadAll() {
    for (size_t i = modules_.size(); i-- > 0;) {
        Module& module = *modules_[i];
        if (module.hasDrawing) send(module, AcRx::kUnloadDwgMsg);
        send(module, AcRx::kUnloadAppMsg);
        removeFunctions(module);
    }
    modules_.clear();
}

void Modules::drawingOpened() {
    for (const auto& module : modules_) {
        send(*module, AcRx::kLoadDwgMsg);
        module->hasDrawing = true;
    }
}

void Modules::drawingClosing() {
    for (const auto& module : modules_) {
        if (module->hasDrawing) send(*module, AcRx::kUnloadDwgMsg);
        module->hasDrawing = false;
    }
}

AcRx::AppRetCode Modules::send(Module& module, AcRx::AppMsgCode message) {
    handling_.push_back(&module);
    AcRx::AppRetCode answer = AcRx::kRetError;
    try {
        answer = module.entryPoint(message, &module);
    } catch (const std::exception& error) {
        host_.write("\nError in " + module.fileName + ": " + error.what() + "\n");
    }
    handling_.pop_back();
    return answer;
}

bool Modules::isCalling(const Module& module) const {
    return std::find(handling_.begin(), handling_.end(), &module) != handling_.end();
}

void Modules::unlock(void* packet) {
    for (const auto& module : modules_)
        if (module.get() == packet) module->isLocked = false;
}

// --- Functions ---------------------------------------------------------------------------------------

bool Modules::defineFunction(const std::string& name, int code) {
    if (handling_.empty() || name.empty()) return false;
    Module& module = *handling_.back();
    module.functions.push_back({text::upper(name), code});
    defineInLisp(module, module.functions.back());
    return true;
}

void Modules::defineInLisp(Module& module, const Function& function) {
    int code = function.code;
    Module* owner = &module;
    host_.lisp().defineExternal(function.name, [this, owner, code, name = function.name](
                                                   lisp::Interpreter&, const lisp::Arguments& arguments) {
        lisp::ResultList list = lisp::toResults(arguments);
        Call call;
        call.code = code;
        call.arguments = list.get();
        if (!run(*owner, call)) throw lisp::Error("the module's function " + name + " failed");
        return call.isList ? lisp::toListValue(call.result.get()) : lisp::toValue(call.result.get());
    });
}

bool Modules::undefineFunction(const std::string& name, int code) {
    if (handling_.empty()) return false;
    std::string upper = text::upper(name);
    auto& functions = handling_.back()->functions;
    auto found = std::find_if(functions.begin(), functions.end(),
                              [&](const Function& f) { return f.name == upper && f.code == code; });
    if (found == functions.end()) return false;
    functions.erase(found);
    host_.lisp().intern(upper)->value = {};
    return true;
}

void Modules::removeFunctions(Module& module) {
    for (const Function& function : module.functions) host_.lisp().intern(function.name)->value = {};
    module.functions.clear();
}

bool Modules::run(Module& module, Call& call) {
    calls_.push_back(&call);
    // The commands that a function uses are part of what it does, and one U takes it all back.
    Drawing& drawing = currentDrawing();
    const long serial = drawing.serial();
    drawing.holdUndoStep();
    AcRx::AppRetCode answer = send(module, AcRx::kInvkSubrMsg);
    if (currentDrawing().serial() == serial) drawing.releaseUndoStep();
    calls_.pop_back();
    return answer != AcRx::kRetError;
}

bool Modules::invoke(const std::string& name, const resbuf* arguments, Call& call, bool& found) {
    std::string upper = text::upper(name);
    found = false;
    for (const auto& module : modules_) {
        auto function = std::find_if(module->functions.begin(), module->functions.end(),
                                     [&](const Function& f) { return f.name == upper; });
        if (function == module->functions.end()) continue;
        found = true;
        call.code = function->code;
        call.arguments = arguments;
        return run(*module, call);
    }
    return false;
}

}  // namespace hostcad
