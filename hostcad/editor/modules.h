// Modules: shared libraries that are loaded into the host, and the messages that they get.
//
// A module gets kInitAppMsg when it is loaded, kLoadDwgMsg for the open drawing and for each one opened
// later, kInvkSubrMsg when one of its functions is called, kUnloadDwgMsg for each drawing closed and before
// it goes, and kUnloadAppMsg at the end.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "hostcad/lisp/result_values.h"
#include "platform/ads/runtime.h"

namespace hostcad {

class Host;

class Modules {
  public:
    explicit Modules(Host& host);
    ~Modules();
    Modules(const Modules&) = delete;
    Modules& operator=(const Modules&) = delete;

    // Loads a file, found as the host finds support files, ".arx" added where there is no extension. False,
    // with a message on the command line, when it cannot be loaded; the host is then as it was.
    bool load(const std::string& name);
    // By file name. False, with a message, when it is not loaded, locked, or in the middle of a call.
    bool unload(const std::string& name);
    void unloadAll();
    // File names without folders, lower case, in the order of loading.
    std::vector<std::string> loaded() const;

    void drawingOpened();
    void drawingClosing();
    // A module is in the middle of a call.
    bool isBusy() const { return !calls_.empty(); }

    // --- What a module asks of the host while it handles a message ---
    bool defineFunction(const std::string& name, int code);
    bool undefineFunction(const std::string& name, int code);
    // The innermost call; null when there is none.
    struct Call {
        int code = 0;
        const resbuf* arguments = nullptr;
        lisp::ResultList result;
        bool isList = false;  // the result is a list of its items, even of one
    };
    Call* call() { return calls_.empty() ? nullptr : calls_.back(); }
    void unlock(void* packet);

    // Calls a function that some module has defined. `found` says whether there is one of that name;
    // false when the module answers with an error.
    bool invoke(const std::string& name, const resbuf* arguments, Call& call, bool& found);

  private:
    struct Module;
    struct Function {
        std::string name;
        int code;
    };
    Module* find(std::string_view fileName) const;
    AcRx::AppRetCode send(Module& module, AcRx::AppMsgCode message);
    bool run(Module& module, Call& call);
    void defineInLisp(Module& module, const Function& function);
    void removeFunctions(Module& module);
    bool isCalling(const Module& module) const;
    bool refuse(const std::string& path, const std::string& reason);

    Host& host_;
    std::vector<std::unique_ptr<Module>> modules_;
    std::vector<Module*> handling_;  // modules that are handling a message, the innermost last
    std::vector<Call*> calls_;
};

}  // namespace hostcad
