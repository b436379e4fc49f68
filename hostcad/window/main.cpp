// hostcad: the CAD host with a window.
#include <QApplication>
#include <QFileInfo>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "hostcad/editor/host.h"
#include "hostcad/window/main_window.h"
#include "platform/files/files.h"
#include "platform/ui/qt/qt_backend.h"

namespace {

constexpr const char* kHelp =
    "Usage: hostcad [FILE]\n\nOpens a window with a drawing (DXF), or with an empty one.\n";

constexpr const char* kNoDisplay =
    "hostcad: there is no display to open a window on. Start it on a desktop, or with xvfb-run; without a\n"
    "window, hostcad-batch does the work of a script.\n";

void loadModule(hostcad::Host& host, const std::string& folder, const std::string& support) {
    if (!host.modules().load(files::join(folder, "norvane_gis.arx"))) return;
    try {
        host.runScript(files::join(support, "gis.lsp"));
    } catch (const hostcad::lisp::Error& error) {
        host.write("\n; error: " + error.fullText() + "\n");
    }
}

// Qt would end the program with a message about its plugins.
bool hasDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(name); value && *value) return true;
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::string(argv[i]) == "--help") return std::fputs(kHelp, stdout), 0;
    if (!hasDisplay()) {
        std::fputs(kNoDisplay, stderr);
        return 1;
    }
    QApplication application(argc, argv);
    // Numbers are written with a point whatever the language of the desktop.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setOrganizationName("norvane");
    QApplication::setApplicationName("hostcad");

    hostcad::MainWindow window;
    ui::QtBackend backend(&window);
    ui::setBackend(&backend);
    hostcad::Host host(window, window, window);
    std::string folder = QApplication::applicationDirPath().toStdString();
    std::string support = files::join(folder, "support");
    host.setFolders(folder, support);
    loadModule(host, folder, support);
    window.start(host, files::join(support, "hostcad.mnu"));
    window.QMainWindow::show();
    for (const QString& name : QApplication::arguments().mid(1)) {
        window.openDrawing(QFileInfo(name).absoluteFilePath().toStdString());
        break;
    }
    int status = QApplication::exec();
    ui::setBackend(nullptr);
    return status;
}
