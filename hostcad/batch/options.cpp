#include "hostcad/batch/options.h"

#include <string_view>

namespace hostcad {

std::string helpText(const Product& product) {
    return R"(Usage: hostcad-batch [--drawing FILE] [--save FILE] [--ask] [--no-module] SCRIPT.lsp...

Runs Lisp scripts on a drawing without a window.

  --drawing FILE   opens a drawing (DXF) first; without it the scripts start with an empty one
  --save FILE      saves the drawing when all scripts have run without an error
  --ask            what the scripts do not answer is asked at the keyboard
  --no-module      does not load )" +
           product.module + " and " + product.commands + R"(
  --help           shows this

In a script, (host:input "..." ...) answers the prompts of the command line, (ui:answer ID STEP ...) the
next dialog with that number, (ui:box "Yes") and (ui:file "PATH") the next box of that kind; (ui:log)
gives what was shown. Files that scripts load are looked for beside the script as well.

The exit status is 0, or 1 after an error, which is told on the standard error output.
)";
}

bool parseOptions(int count, char** words, Options& options, std::string& problem) {
    for (int i = 1; i < count; ++i) {
        std::string_view word = words[i];
        if (word == "--drawing" || word == "--save") {
            if (i + 1 == count) {
                problem = std::string(word) + " needs the name of a file.";
                return false;
            }
            (word == "--drawing" ? options.drawing : options.save) = words[++i];
        } else if (word == "--ask") {
            options.asks = true;
        } else if (word == "--no-module") {
            options.loadsModule = false;
        } else if (word == "--help" || word == "-h") {
            options.wantsHelp = true;
        } else if (word.size() > 1 && word.front() == '-') {
            problem = "There is no option " + std::string(word) + ".";
            return false;
        } else {
            options.scripts.emplace_back(word);
        }
    }
    if (options.scripts.empty() && !options.wantsHelp) problem = "No script was given.";
    return problem.empty();
}

}  // namespace hostcad
