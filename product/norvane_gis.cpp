#include "product/norvane_gis.h"

hostcad::Product norvaneGis() {
    return {
        .name = "Norvane GIS",
        .organization = "norvane",
        .lispVersion = "Norvane Lisp 1.0 (en)",
        .userFolderVariable = "NORVANE_USER_DIR",
        .userFolder = "norvane",
        .module = "norvane_gis.arx",
        .commands = "gis.lsp",
        .menus = "gis.mnu",
    };
}
