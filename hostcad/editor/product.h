// What a program on the host is called and what it brings along. The host by itself knows no product: each
// program is given its own.
#pragma once

#include <string>

namespace hostcad {

class Host;

struct Product {
    std::string name;          // behind the drawing's in the title of the window
    std::string organization;  // under whose name the desktop keeps the settings of the window
    std::string desktopFile;   // its entry in the menu of the desktop, without the ending
    std::string version;
    std::string about;        // a few sentences on what it is and whose
    std::string lispVersion;  // what (ver) gives
    // The folder of a person's settings: the one that this environment variable names, else one of this name
    // where the desktop keeps settings.
    std::string userFolderVariable;
    std::string userFolder;
    std::string module;    // a file beside the program
    std::string commands;  // a file of Lisp among the support files, run when the module is loaded
    std::string sample;    // a drawing among the support files, to look at
    std::string menus;     // a menu file among the support files, shown behind the host's own
};

// Tells a new host which product it serves: its folders, and the version of Lisp. The program stands in
// `programFolder`, with the support files in a folder of it; the folder of the person's settings is made when
// it is missing.
void introduceProduct(Host& host, const Product& product, const std::string& programFolder);

// Loads the module and runs the commands. False when the module cannot be loaded, which the command line has
// told; throws lisp::Error when the commands fail.
bool loadProduct(Host& host, const Product& product);

}  // namespace hostcad
