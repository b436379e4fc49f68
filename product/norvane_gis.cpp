#include "product/norvane_gis.h"

hostcad::Product norvaneGis() {
    return {
        .name = "Norvane GIS",
        .organization = "norvane",
        .desktopFile = "org.norvane.gis",
        .version = NORVANE_VERSION,
        .about =
            "Ties the entities of a drawing to the records of a database.\n"
            "Free software under the MIT License, by the Norvane GIS developers.",
        .lispVersion = "Norvane Lisp 1.0 (en)",
        .userFolderVariable = "NORVANE_USER_DIR",
        .userFolder = "norvane",
        .module = "norvane_gis.arx",
        .commands = "gis.lsp",
        .sample = "samples/survey.dxf",
        .menus = "gis.mnu",
    };
}
