// hostcad-batch: runs Lisp scripts on a drawing without a window.
#include <csignal>
#include <cstdio>
#include <filesystem>

#include "hostcad/batch/batch_input.h"
#include "hostcad/batch/options.h"
#include "hostcad/batch/script_functions.h"
#include "hostcad/editor/host.h"
#include "platform/files/files.h"
#include "platform/ui/scripted/scripted_backend.h"

namespace {

using hostcad::Host;
using hostcad::Options;

class StandardOutput : public hostcad::Output {
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

// A script that ends by (quit) or (exit) has ended well.
bool runScript(Host& host, const std::string& path) {
    if (!files::exists(path)) {
        complain("There is no script " + path + ".");
        return false;
    }
    try {
        host.addSupportFolder(files::folderOf(std::filesystem::absolute(path).string()));
        host.runScript(path);
    } catch (const hostcad::lisp::Error& error) {
        if (error.kind == hostcad::lisp::Error::Kind::Quit) return true;
        complain("error: " + error.fullText());
        return false;
    }
    return true;
}

int run(const Options& options, const std::string& folder) {
    StandardOutput output;
    hostcad::BatchInput input(output, options.asks);
    hostcad::NoView view;
    ui::ScriptedBackend backend;
    ui::setBackend(&backend);
    Host host(output, input, view);
    hostcad::defineScriptFunctions(host, input, backend);
    hostcad::KeyboardAsker asker(output, [&host](const std::string& typed, std::string& problem) {
        return hostcad::readTypedStep(host.lisp(), typed, problem);
    });
    if (options.asks) backend.setAsker(&asker);
    std::string support = files::join(folder, "support");
    host.setFolders(folder, support);
    std::signal(SIGINT, cancelOnInterrupt);

    if (!options.drawing.empty()) {
        std::string problem = host.openDrawing(options.drawing);
        if (!problem.empty()) return complain(problem);
    }
    if (options.loadsModule) {
        if (!host.modules().load(files::join(folder, "norvane_gis.arx")))
            return complain("The module could not be loaded.");
        if (!runScript(host, files::join(support, "gis.lsp"))) return 1;
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

int main(int count, char** words) {
    Options options;
    std::string problem;
    if (!hostcad::parseOptions(count, words, options, problem))
        return complain(problem + "\n\n" + hostcad::kHelp);
    if (options.wantsHelp) {
        std::fputs(hostcad::kHelp, stdout);
        return 0;
    }
    hostcad::lisp::Interpreter::allowDeepRecursion();
    int status = run(options, programFolder(words[0]));
    ui::setBackend(nullptr);
    return status;
}
