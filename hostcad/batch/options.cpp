#include "hostcad/batch/options.h"

#include <string_view>

namespace hostcad {

const char* const kHelp =
    "Usage: hostcad-batch [--drawing FILE] [--save FILE] [--ask] [--no-module] SCRIPT.lsp...\n"
    "\n"
    "Runs Lisp scripts on a drawing without a window.\n"
    "\n"
    "  --drawing FILE   opens a drawing (DXF) first; without it the scripts start with an empty one\n"
    "  --save FILE      saves the drawing when all scripts have run without an error\n"
    "  --ask            what the scripts do not answer is asked at the keyboard\n"
    "  --no-module      does not load norvane_gis.arx and gis.lsp\n"
    "  --help           shows this\n"
    "\n"
    "In a script, (host:input \"...\" ...) answers the prompts of the command line, (ui:answer ID STEP ...) "
    "the\n"
    "next dialog with that number, (ui:box \"Yes\"), (ui:file \"PATH\") and (ui:name \"TEXT\") the next box "
    "of that\n"
    "kind; (ui:log) gives what was shown. Files that scripts load are looked for beside the script as well.\n"
    "\n"
    "The exit status is 0, or 1 after an error, which is told on the standard error output.\n";

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
