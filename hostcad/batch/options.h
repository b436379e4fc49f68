// The command line of hostcad-batch.
#pragma once

#include <string>
#include <vector>

namespace hostcad {

struct Options {
    std::string drawing;
    std::string save;
    bool asks = false;
    bool loadsModule = true;
    bool wantsHelp = false;
    std::vector<std::string> scripts;
};

extern const char* const kHelp;

// False, with what is wrong, for a command line that makes no sense.
bool parseOptions(int count, char** words, Options& options, std::string& problem);

}  // namespace hostcad
