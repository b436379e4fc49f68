// The command line of hostcad-batch.
#pragma once

#include <string>
#include <vector>

#include "hostcad/editor/product.h"

namespace hostcad {

struct Options {
    std::string drawing;
    std::string save;
    bool asks = false;
    bool loadsModule = true;
    bool wantsHelp = false;
    std::vector<std::string> scripts;
};

std::string helpText(const Product& product);

// False, with what is wrong, for a command line that makes no sense.
bool parseOptions(int count, char** words, Options& options, std::string& problem);

}  // namespace hostcad
