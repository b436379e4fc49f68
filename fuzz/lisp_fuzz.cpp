// Any text as a Lisp program: it ends, with a value or an error, within its steps and memory.
#include <cstddef>
#include <cstdint>

#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/printer.h"

using hostcad::lisp::Error;
using hostcad::lisp::Heap;
using hostcad::lisp::Interpreter;

namespace {

constexpr std::uint64_t kMostSteps = 20000;
constexpr size_t kMostMemory = size_t{32} << 20;

// What reaches beyond the program: files, modules, the environment.
constexpr const char* kForbidden[] = {
    "OPEN",     "LOAD",         "ARXLOAD",         "SETENV",       "VL-FILE-DELETE",     "VL-FILE-RENAME",
    "VL-MKDIR", "VL-FILE-COPY", "VL-FILE-SYSTIME", "VL-FILE-SIZE", "VL-DIRECTORY-FILES", "VL-FILENAME-MKTEMP",
    "GETFILED", "FINDFILE",
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    Heap::limit = Heap::used + kMostMemory;
    try {
        Interpreter lisp([](std::string_view) {});
        for (const char* name : kForbidden) lisp.intern(name)->value = {};
        lisp.limitSteps(kMostSteps);
        lisp.runText({reinterpret_cast<const char*>(data), size}, "fuzz.lsp");
    } catch (const Error& error) {
        if (error.fullText().empty()) __builtin_trap();
    }
    return 0;
}
