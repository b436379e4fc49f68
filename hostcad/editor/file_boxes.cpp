#include "hostcad/editor/file_boxes.h"

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/editor/host.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"

namespace hostcad {

std::optional<std::string> chooseDrawing(bool isSaving) {
    const std::string& own = currentDrawing().path();
    ui::FileBox box;
    box.save = isSaving;
    box.title = isSaving ? "Save Drawing As" : "Select File";
    box.filter = "Drawing (*.dxf)|*.dxf||";
    box.pattern = isSaving ? files::nameOf(own) : "*.dxf";
    box.folder = files::folderOf(own);
    box.defaultExtension = "dxf";
    box.mustExist = !isSaving;
    box.askOverwrite = isSaving;
    return ui::fileBox(box);
}

std::optional<std::string> chooseDatabase(const std::string& title) {
    ui::FileBox box;
    box.title = title;
    box.filter = "Databases (*.mdb, *.gpkg, *.sqlite, *.db)|*.mdb;*.gpkg;*.sqlite;*.db|All files (*.*)|*.*||";
    box.pattern = "*.mdb";
    box.folder = files::folderOf(currentDrawing().path());
    box.mustExist = true;
    return ui::fileBox(box);
}

bool saveWithBoxes(Host& host, const std::string& path, bool isCopy) {
    for (std::string target = path;;) {
        std::string problem = host.saveDrawing(target, isCopy);
        if (problem.empty()) {
            host.write("\nSaved as " + host.lastSaved() + ".\n");
            return true;
        }
        host.write("\n" + problem + "\n");
        if (ui::ask({"Save Drawing", problem + "\n\nSave it under another name?",
                     ui::kBoxYesNo | ui::kBoxExclamation, ui::kNo}) != ui::kYes)
            return false;
        std::optional<std::string> chosen = chooseDrawing(true);
        if (!chosen) return false;
        target = *chosen;
    }
}

void showProblem(Host& host, const std::string& problem) {
    host.write("\n" + problem + "\n");
    ui::messageBox("Drawing", problem, ui::kBoxOk | ui::kBoxExclamation);
}

bool settleChanges(Host& host) {
    const Drawing& drawing = currentDrawing();
    if (!drawing.modified()) return true;
    std::string name = drawing.path().empty() ? "The drawing" : files::nameOf(drawing.path());
    int answer =
        ui::messageBox("Unsaved changes", name + " has changes that are not saved.\nSave them first?",
                       ui::kBoxYesNoCancel | ui::kBoxExclamation);
    if (answer != ui::kYes) return answer == ui::kNo;
    std::string path = drawing.path();
    if (path.empty()) {
        std::optional<std::string> chosen = chooseDrawing(true);
        if (!chosen) return false;
        path = *chosen;
    }
    return saveWithBoxes(host, path);
}

}  // namespace hostcad
