#include "hostcad/window/window_program.h"

#include <QApplication>
#include <QFileInfo>
#include <QSettings>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "hostcad/editor/host.h"
#include "hostcad/window/main_window.h"
#include "hostcad/window/panel_docks.h"
#include "platform/ui/qt/framed_marks.h"
#include "platform/ui/qt/qt_backend.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

constexpr const char* kHelp =
    "Usage: hostcad [FILE]\n\nOpens a window with a drawing (DXF), or with an empty one.\n";

constexpr const char* kNoDisplay =
    "hostcad: there is no display to open a window on. Start it on a desktop, or with xvfb-run; without a\n"
    "window, hostcad-batch does the work of a script.\n";

// The window opens without the product too, and tells why.
void tryToLoad(Host& host, const Product& product) {
    try {
        loadProduct(host, product);
    } catch (const lisp::Error& error) {
        host.tell(error);
    }
}

// Qt would end the program with a message about its plugins.
bool hasDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(name); value && *value) return true;
    return false;
}

}  // namespace

int runWindowProgram(int count, char** words, const Product& product) {
    for (int i = 1; i < count; ++i)
        if (std::string(words[i]) == "--help") return std::fputs(kHelp, stdout), 0;
    if (!hasDisplay()) {
        std::fputs(kNoDisplay, stderr);
        return 1;
    }
    QApplication application(count, words);
    QApplication::setStyle(new ui::FramedMarks);
    // Numbers are written with a point whatever the language of the desktop.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setOrganizationName(ui::toQt(product.organization));
    QApplication::setApplicationName("hostcad");
    QGuiApplication::setDesktopFileName(ui::toQt(product.desktopFile));

    MainWindow window;
    ui::QtBackend backend(&window);
    QSettings settings;
    backend.keepSizesIn(settings);
    backend.standPanelsIn(window.modulePanels());
    ui::setBackend(&backend);
    Host host(window, window, window);
    introduceProduct(host, product, QApplication::applicationDirPath().toStdString());
    tryToLoad(host, product);
    const std::string& support = host.folders().support;
    window.start(host, product, {support + "hostcad.mnu", support + product.menus});
    window.QMainWindow::show();
    const bool isRecovered = window.offerKeptCopies();
    if (const QStringList names = QApplication::arguments().mid(1); !names.isEmpty() && !isRecovered)
        window.openDrawing(QFileInfo(names.front()).absoluteFilePath().toStdString());
    int status = QApplication::exec();
    ui::setBackend(nullptr);
    return status;
}

}  // namespace hostcad
