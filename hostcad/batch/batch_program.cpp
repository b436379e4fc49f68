#include "hostcad/batch/batch_program.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>

#include "hostcad/batch/batch_input.h"
#include "hostcad/batch/options.h"
#include "hostcad/batch/script_functions.h"
#include "hostcad/editor/host.h"
#include "platform/files/files.h"
#include "platform/ui/scripted/scripted_backend.h"

namespace hostcad {
namespace {

class StandardOutput : public Output {
  public:
    void write(std::string_view text) override {
        if (text.empty()) return;
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fflush(stdout);
        isAtLineStart_ = text.back() == '\n';
    }
    ~StandardOutput() override {
        if (!isAtLineStart_) std::fputc('\n', stdout);
    }

  private:
    bool isAtLineStart_ = true;
};

int complain(const std::string& problem) {
    std::fflush(stdout);
    std::fprintf(stderr, "hostcad-batch: %s\n", problem.c_str());
    return 1;
}

void cancelOnInterrupt(int) {
    if (Host::current()) Host::current()->cancel();
}

std::string programFolder(const char* name) {
    std::error_code error;
    std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) program = std::filesystem::absolute(name, error);
    return program.parent_path().string();
}

// Runs something that may end by an error of Lisp, which is told. What ends by (quit) or (exit) has ended
// well.
bool succeeds(const std::function<void()>& action) {
    try {
        action();
    } catch (const lisp::Error& error) {
        if (error.kind == lisp::Error::Kind::Quit) return true;
        complain("error: " + error.fullText());
        return false;
    }
    return true;
}

bool runScript(Host& host, const std::string& path) {
    if (!files::exists(path)) {
        complain("There is no script " + path + ".");
        return false;
    }
    return succeeds([&] {
        host.addSupportFolder(files::folderOf(std::filesystem::absolute(path).string()));
        host.runScript(path);
    });
}

int run(const Options& options, const Product& product, const std::string& folder) {
    StandardOutput output;
    BatchInput input(output, options.asks);
    NoView view;
    ui::ScriptedBackend backend;
    ui::setBackend(&backend);
    Host host(output, input, view);
    defineScriptFunctions(host, input, backend);
    KeyboardAsker asker(output, [&host](const std::string& typed, std::string& problem) {
        return readTypedStep(host.lisp(), typed, problem);
    });
    if (options.asks) backend.setAsker(&asker);
    introduceProduct(host, product, folder);
    std::signal(SIGINT, cancelOnInterrupt);

    if (!options.drawing.empty()) {
        std::string problem = host.openDrawing(options.drawing);
        if (!problem.empty()) return complain(problem);
    }
    if (options.loadsModule) {
        bool isLoaded = false;
        if (!succeeds([&] { isLoaded = loadProduct(host, product); })) return 1;
        if (!isLoaded) return complain("The module could not be loaded.");
    }
    for (const std::string& script : options.scripts) {
        if (!runScript(host, script)) return 1;
        if (host.wantsQuit()) break;
    }
    if (!options.save.empty()) {
        std::string problem = host.saveDrawing(options.save);
        if (!problem.empty()) return complain(problem);
    }
    if (input.leftOver() > 0)
        complain(std::to_string(input.leftOver()) + " answers of (host:input) were not asked for.");
    return 0;
}

}  // namespace

int runBatchProgram(int count, char** words, const Product& product) {
    Options options;
    std::string problem;
    if (!parseOptions(count, words, options, problem)) return complain(problem + "\n\n" + helpText(product));
    if (options.wantsHelp) {
        std::fputs(helpText(product).c_str(), stdout);
        return 0;
    }
    lisp::Interpreter::allowDeepRecursion();
    int status = run(options, product, programFolder(words[0]));
    ui::setBackend(nullptr);
    return status;
}

}  // namespace hostcad
