// The side of the window that offers what can be done: menus, buttons, the page of an empty window, and what
// they lead to.
#include <QDockWidget>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QSettings>
#include <QToolBar>
#include <QTreeWidget>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/editor/file_boxes.h"
#include "hostcad/window/command_panel.h"
#include "hostcad/window/document_window.h"
#include "hostcad/window/icons.h"
#include "hostcad/window/main_window.h"
#include "hostcad/window/panel_docks.h"
#include "hostcad/window/start_page.h"
#include "hostcad/window/view_printing.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

using ui::toQt;

constexpr std::string_view kDocument = "@document ";

QStringList recentDrawings() {
    QStringList found;
    for (const QString& path : QSettings().value("recent").toStringList())
        if (QFileInfo::exists(path)) found << path;
    return found;
}

}  // namespace

void MainWindow::addHeading(const MenuHeading& heading) {
    if (heading.isToolBar)
        addButtons(heading);
    else if (heading.caption == "@entities")
        entityEntries_.insert(entityEntries_.end(), heading.entries.begin(), heading.entries.end());
    else
        addMenu(heading);
}

// The menu of a caption, made where there is none. Behind a "/" stands a menu within one.
QMenu* MainWindow::menuOf(const std::string& caption) {
    const size_t slash = caption.rfind('/');
    QMenu* parent = slash == std::string::npos ? nullptr : menuOf(caption.substr(0, slash));
    const QString own = toQt(slash == std::string::npos ? caption : caption.substr(slash + 1));
    for (QAction* action : parent ? parent->actions() : menuBar()->actions())
        if (action->menu() && action->text() == own) return action->menu();
    return parent ? parent->addMenu(own) : menuBar()->addMenu(own);
}

void MainWindow::addMenu(const MenuHeading& heading) {
    QMenu* menu = menuOf(heading.caption);
    for (const MenuEntry& entry : heading.entries) {
        if (!entry.enabled) continue;
        if (entry.command == "@recent") {
            recent_ = menu->addMenu(toQt(entry.caption));
            connect(recent_, &QMenu::aboutToShow, this, [this] { fillRecent(); });
        } else if (entry.command == "@panels") {
            for (auto* dock : findChildren<QDockWidget*>()) menu->addAction(dock->toggleViewAction());
        } else if (entry.caption.empty()) {
            menu->addSeparator();
        } else {
            QAction* action = menu->addAction(toQt(entry.caption));
            if (!entry.shortcut.empty()) action->setShortcut(QKeySequence(toQt(entry.shortcut)));
            offer(action, entry.command);
        }
    }
}

void MainWindow::offer(QAction* action, const std::string& command) {
    connect(action, &QAction::triggered, this, [this, command] { perform(command); });
    if (command == "U") undoActions_.push_back(action);
    if (command == "REDO") redoActions_.push_back(action);
}

void MainWindow::showWhatCanBeUndone() {
    for (QAction* action : undoActions_) action->setEnabled(currentDrawing().canUndo());
    for (QAction* action : redoActions_) action->setEnabled(currentDrawing().canRedo());
}

void MainWindow::addButtons(const MenuHeading& heading) {
    if (!toolBar_) {
        toolBar_ = addToolBar("Drawing");
        toolBar_->setObjectName("drawing");
        toolBar_->setIconSize({22, 22});
    } else {
        toolBar_->addSeparator();
    }
    for (const MenuEntry& entry : heading.entries) {
        if (entry.caption.empty()) {
            toolBar_->addSeparator();
            continue;
        }
        if (!entry.enabled) continue;
        QAction* action = toolBar_->addAction(toQt(entry.caption));
        icons_.emplace_back(action, entry.icon);
        offer(action, entry.command);
    }
    drawIcons();
}

void MainWindow::drawIcons() {
    for (const auto& [action, name] : icons_)
        action->setIcon(drawnIcon(name, palette().color(QPalette::WindowText)));
}

// The window's own actions go on while a prompt waits; a line ends it.
void MainWindow::perform(const std::string& command) {
    if (command == "@extents")
        zoomExtents();
    else if (command == "@window")
        zoomToBox();
    else if (command == "@previous")
        zoomPrevious();
    else if (command == "@legend")
        showLegend();
    else if (command == "@print")
        print();
    else if (command == "@pdf")
        savePdf();
    else if (command == "@about")
        showAbout();
    else if (std::string_view name = command; text::startsWith(name, kDocument))
        showDocument(std::string(text::trim(name.substr(kDocument.size()))));
    else
        runLine(command);
}

// Shows it, or hides it where it is seen.
void MainWindow::showLegend() {
    LegendPanel& legend = canvas_->legend();
    if (legend.isEmpty()) return panel_->write("\nThere is no legend: nothing is coloured.\n");
    legend.setWanted(!legend.isWanted());
    panel_->write(legend.isWanted() ? "\nThe legend is shown.\n" : "\nThe legend is hidden.\n");
}

void MainWindow::fillRecent() {
    recent_->clear();
    for (const QString& path : recentDrawings())
        connect(recent_->addAction(path), &QAction::triggered, this,
                [this, path] { openDrawing(path.toStdString()); });
    if (recent_->isEmpty()) recent_->addAction("None yet")->setEnabled(false);
}

void MainWindow::showEntityMenu(QPoint at) {
    QMenu menu(this);
    menu.addAction("&Zoom to it", this, [this] { zoomToSelected(); });
    menu.addAction("Se&lect in the drawing", this, [this] {
        select(canvas_->selected());
        panel_->focusLine();
    });
    menu.addAction("&Properties", this, [this] { showPropertiesPanel(); });
    std::string command;
    if (!entityEntries_.empty()) menu.addSeparator();
    for (const MenuEntry& entry : entityEntries_) {
        if (entry.caption.empty())
            menu.addSeparator();
        else if (entry.enabled)
            menu.addAction(toQt(entry.caption), this, [&command, &entry] { command = entry.command; });
    }
    menu.exec(at);
    if (!command.empty()) perform(command);  // once the menu is gone, as a command may take long
}

void MainWindow::showPropertiesPanel() {
    propertiesPanel_->show();
    propertiesPanel_->raise();
    properties_->setFocus();
}

// --- Beginning and help ------------------------------------------------------------------------------------

void MainWindow::showStartPage() {
    const Drawing& drawing = currentDrawing();
    if (!drawing.path().empty() || drawing.modified() || drawing.firstEntity()) return;
    const std::string sample = samplePath();
    startPage_ = new StartPage(toQt(product_.name), recentDrawings(), !sample.empty(), canvas_);
    startPage_->onOpen = [this] { runLine("OPEN"); };
    startPage_->onRecent = [this](const QString& path) { openDrawing(path.toStdString()); };
    startPage_->onSample = [this] { openSample(); };
}

std::string MainWindow::samplePath() const {
    const std::string path = host_->folders().support + product_.sample;
    return product_.sample.empty() || !files::exists(path) ? "" : path;
}

// As a drawing without a name, so that the sample stays what it is.
void MainWindow::openSample() {
    if (isWaiting() || isBusy() || !settleChanges(*host_)) return;
    const PanelDocks::Rest rest(*modulePanels_);
    std::string problem = host_->newDrawing(samplePath());
    if (problem.empty())
        panel_->write("\nThis is the sample. Saving asks for a name.\n");
    else
        showProblem(*host_, problem);
    follow();
}

void MainWindow::showAbout() {
    QMessageBox box(this);
    box.setWindowTitle("About " + toQt(product_.name));
    box.setIconPixmap(windowIcon().pixmap(64, 64));
    box.setText("<b>" + toQt(product_.name).toHtmlEscaped() + "</b> " +
                toQt(product_.version).toHtmlEscaped());
    box.setInformativeText(toQt(product_.about + "\n\nWith Qt " + qVersion() + "."));
    box.exec();
}

void MainWindow::showDocument(const std::string& name) {
    const std::string path = host_->folders().support + "documents/" + name;
    if (!files::exists(path)) return showProblem(*host_, "The document " + path + " is not installed.");
    if (!documents_) documents_ = new DocumentWindow(this);
    documents_->open(toQt(path));
}

// --- Printing ----------------------------------------------------------------------------------------------

void MainWindow::print() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(windowTitle().remove("[*]"));
    QPrintDialog box(&printer, this);
    if (box.exec() != QDialog::Accepted) return;
    if (!printView(scene_, canvas_->view(), canvas_->legend().isWanted(), printer))
        showProblem(*host_, "The page cannot be printed. The printer does not take it.");
}

void MainWindow::savePdf() {
    const std::string& own = currentDrawing().path();
    ui::FileBox box;
    box.save = true;
    box.title = "Save as PDF";
    box.filter = "PDF documents (*.pdf)|*.pdf||";
    box.pattern = own.empty() ? "drawing.pdf" : files::nameOf(own.substr(0, own.rfind('.'))) + ".pdf";
    box.folder = files::folderOf(own);
    box.defaultExtension = "pdf";
    box.askOverwrite = true;
    std::optional<std::string> path = ui::fileBox(box);
    if (!path) return;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(toQt(*path));
    printer.setDocName(windowTitle().remove("[*]"));
    if (printView(scene_, canvas_->view(), canvas_->legend().isWanted(), printer))
        panel_->write("\nSaved as " + *path + ".\n");
    else
        showProblem(*host_, "Cannot write " + *path + ".");
}

}  // namespace hostcad
