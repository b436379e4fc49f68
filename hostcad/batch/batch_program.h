// hostcad-batch: runs Lisp scripts on a drawing without a window.
#pragma once

#include "hostcad/editor/product.h"

namespace hostcad {

// Takes the words of the command line, the program's name first. Gives the exit status.
int runBatchProgram(int count, char** words, const Product& product);

}  // namespace hostcad
