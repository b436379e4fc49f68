// Any text as a Lisp program with a host round it: entities, selection sets, prompts and commands. The
// answers to prompts are the lines of the text itself.
#include <cstddef>
#include <cstdint>

#include "hostcad/editor/host.h"
#include "hostcad/lisp/printer.h"
#include "platform/text/text.h"

using hostcad::Command;
using hostcad::Host;
using hostcad::Input;
using hostcad::lisp::Error;
using hostcad::lisp::Heap;

namespace {

constexpr std::uint64_t kMostSteps = 5000;
constexpr size_t kMostMemory = size_t{32} << 20;

// What reaches beyond the program: files, modules, the environment.
constexpr const char* kForbidden[] = {
    "OPEN",     "LOAD",         "ARXLOAD",         "SETENV",       "VL-FILE-DELETE",     "VL-FILE-RENAME",
    "VL-MKDIR", "VL-FILE-COPY", "VL-FILE-SYSTIME", "VL-FILE-SIZE", "VL-DIRECTORY-FILES", "VL-FILENAME-MKTEMP",
    "FINDFILE",
};
constexpr const char* kForbiddenCommands[] = {"OPEN", "NEW", "SAVE", "QSAVE", "SAVEAS"};

class NoCommand : public Command {
  public:
    using Command::Command;
    void start() override {}
};

class Lines : public hostcad::Output, public hostcad::InputSource {
  public:
    explicit Lines(std::string_view text) : lines_(text::split(text, '\n')) {}
    void write(std::string_view) override {}
    Input next(const hostcad::Prompt&) override {
        if (at_ == lines_.size()) return Input::end();
        return Input::ofText(lines_[at_++]);
    }

  private:
    std::vector<std::string> lines_;
    size_t at_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    std::string_view program(reinterpret_cast<const char*>(data), size);
    Lines lines(program);
    hostcad::NoView view;
    Host host(lines, lines, view);
    Heap::limit = Heap::used + kMostMemory;
    for (const char* name : kForbidden) host.lisp().intern(name)->value = {};
    for (const char* name : kForbiddenCommands) host.commands().define<NoCommand>(name);
    host.lisp().limitSteps(kMostSteps);
    try {
        host.lisp().runText(program, "fuzz.lsp");
    } catch (const Error& error) {
        if (error.fullText().empty()) __builtin_trap();
    }
    host.commands().finish();
    return 0;
}
