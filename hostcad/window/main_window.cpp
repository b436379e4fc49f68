#include "hostcad/window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>
#include <QTreeWidget>

#include "hostcad/ads/host_names.h"
#include "hostcad/window/command_panel.h"
#include "hostcad/window/icons.h"
#include "hostcad/window/menu_file.h"
#include "hostcad/window/properties.h"
#include "platform/ads/entities.h"

namespace hostcad {
namespace {

constexpr int kMostRecent = 8;

QString toQt(const std::string& text) {
    return QString::fromStdString(text);
}

Coordinates coordinatesOf(const Point& p) {
    return {p.x, p.y, 0};
}

}  // namespace

MainWindow::MainWindow() {
    setAcceptDrops(true);
    canvas_ = new Canvas(scene_, this);
    setCentralWidget(canvas_);
    makePanels();
    makeStatusBar();
    joinCanvas();
    resize(1280, 860);
}

MainWindow::~MainWindow() {
    scene_.attach(nullptr);
}

void MainWindow::start(Host& host, const std::string& menuFile) {
    host_ = &host;
    makeMenus(menuFile);
    makeToolBar();
    follow();
    panel_->clearPrompt();
    panel_->focusLine();
}

// --- Making
// ---------------------------------------------------------------------------------------------------

void MainWindow::makePanels() {
    panel_ = new CommandPanel(this);
    panel_->onLine = [this](const std::string& line) { lineTyped(line); };
    panel_->onEscape = [this] { escape(); };
    auto* commands = new QDockWidget("Command line", this);
    commands->setObjectName("commands");
    commands->setWidget(panel_);
    addDockWidget(Qt::BottomDockWidgetArea, commands);

    properties_ = new QTreeWidget(this);
    properties_->setColumnCount(2);
    properties_->setHeaderLabels({"Property", "Value"});
    properties_->setAlternatingRowColors(true);
    properties_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    properties_->setMinimumWidth(300);
    auto* details = new QDockWidget("Properties", this);
    details->setObjectName("properties");
    details->setWidget(properties_);
    addDockWidget(Qt::RightDockWidgetArea, details);
    resizeDocks({commands}, {190}, Qt::Vertical);
}

void MainWindow::makeStatusBar() {
    coordinates_ = new QLabel("0.0000, 0.0000");
    coordinates_->setMinimumWidth(240);
    layer_ = new QLabel;
    meterLabel_ = new QLabel;
    meter_ = new QProgressBar;
    meter_->setMaximumWidth(220);
    meterLabel_->hide();
    meter_->hide();
    statusBar()->addWidget(coordinates_);
    statusBar()->addWidget(layer_, 1);
    statusBar()->addPermanentWidget(meterLabel_);
    statusBar()->addPermanentWidget(meter_);
}

void MainWindow::makeMenus(const std::string& menuFile) {
    for (const MenuHeading& heading : readMenuFile(menuFile)) {
        QMenu* menu = menuBar()->addMenu(toQt(heading.caption));
        for (const MenuEntry& entry : heading.entries) {
            if (entry.command == "@recent") {
                recent_ = menu->addMenu(toQt(entry.caption));
                connect(recent_, &QMenu::aboutToShow, this, [this] { fillRecent(); });
                continue;
            }
            if (entry.caption.empty()) {
                menu->addSeparator();
                continue;
            }
            QAction* action = menu->addAction(toQt(entry.caption));
            action->setEnabled(entry.enabled);
            if (!entry.shortcut.empty()) action->setShortcut(QKeySequence(toQt(entry.shortcut)));
            connect(action, &QAction::triggered, this, [this, command = entry.command] { runLine(command); });
        }
    }
}

void MainWindow::makeToolBar() {
    QToolBar* bar = addToolBar("Drawing");
    bar->setObjectName("drawing");
    bar->setIconSize({22, 22});
    auto add = [&](Icon icon, const char* tip, std::function<void()> act) {
        QAction* action = bar->addAction(drawnIcon(icon, palette().color(QPalette::WindowText)), tip);
        connect(action, &QAction::triggered, this, std::move(act));
    };
    add(Icon::New, "New drawing", [this] { runLine("NEW"); });
    add(Icon::Open, "Open a drawing", [this] { runLine("OPEN"); });
    add(Icon::Save, "Save", [this] { runLine("QSAVE"); });
    bar->addSeparator();
    add(Icon::Undo, "Undo", [this] { runLine("U"); });
    add(Icon::Redo, "Redo", [this] { runLine("REDO"); });
    bar->addSeparator();
    add(Icon::ZoomExtents, "Zoom to everything", [this] { canvas_->zoomExtents(); });
    add(Icon::ZoomWindow, "Zoom to a window", [this] { canvas_->zoomToNextBox(); });
    add(Icon::ZoomPrevious, "Previous view", [this] { canvas_->zoomPrevious(); });
    bar->addSeparator();
    add(Icon::Prompting, "GIS smart prompting", [this] { runLine("GIS-PROMPT"); });
    add(Icon::Settings, "GIS settings", [this] { runLine("GIS-SETTINGS"); });
}

void MainWindow::fillRecent() {
    recent_->clear();
    for (const QString& path : QSettings().value("recent").toStringList())
        if (QFileInfo::exists(path))
            connect(recent_->addAction(path), &QAction::triggered, this,
                    [this, path] { openDrawing(path.toStdString()); });
    if (recent_->isEmpty()) recent_->addAction("None yet")->setEnabled(false);
}

void MainWindow::joinCanvas() {
    canvas_->onMove = [this](Point p) { coordinates_->setText(QString::asprintf("%.4f, %.4f", p.x, p.y)); };
    canvas_->onClick = [this](Point at, ObjectId hit, Qt::KeyboardModifiers m) { clicked(at, hit, m); };
    canvas_->onBox = [this](Point from, Point to, bool crossing) { boxDrawn(from, to, crossing); };
    canvas_->onRightClick = [this] {
        if (isWaiting()) supply(Input::enter());
    };
    canvas_->onViewChanged = [this] {
        if (host_ && !running_) host_->noteViewBox(canvas_->view());
    };
}

// --- Lines and answers
// ----------------------------------------------------------------------------------------

void MainWindow::write(std::string_view text) {
    panel_->write(text);
}

void MainWindow::runLine(const std::string& line) {
    // A command that is chosen from a menu ends the one that is waiting.
    if (isWaiting()) {
        afterwards_ = line;
        supply(Input::cancel());
        return;
    }
    if (running_ || !host_) return;
    if (line == "OPEN" || line == "NEW" || line == "QUIT") {
        if (!mayLoseWork()) return;
    }
    running_ = true;
    lastLine_ = line;
    panel_->write("\nCommand: " + line);
    host_->runLine(line);
    running_ = false;
    follow();
    panel_->clearPrompt();
    if (host_->wantsQuit()) close();
    if (std::string next = std::exchange(afterwards_, {}); !next.empty()) runLine(next);
}

void MainWindow::openDrawing(const std::string& path) {
    if (isWaiting() || running_ || !mayLoseWork()) return;
    std::string problem = host_->openDrawing(path);
    panel_->write("\n" + (problem.empty() ? "Opened " + path : problem) + "\n");
    follow();
}

void MainWindow::lineTyped(const std::string& line) {
    if (isWaiting()) {
        panel_->write(line);
        supply(Input::ofText(line));
    } else if (!line.empty() || !lastLine_.empty()) {
        runLine(line.empty() ? lastLine_ : line);  // Enter alone says it again
    }
}

void MainWindow::escape() {
    if (isWaiting())
        supply(Input::cancel());
    else if (running_)
        host_->cancel();
    else
        select({});
}

Input MainWindow::next(const Prompt& prompt) {
    follow();
    waitsFor_ = prompt.kind;
    answer_.reset();
    panel_->showPrompt(prompt.text);
    canvas_->setTakesBoxes(prompt.kind == Prompt::Kind::Objects);
    if (prompt.base) canvas_->setRubberBase(Point{(*prompt.base)[0], (*prompt.base)[1], 0});
    panel_->focusLine();
    QEventLoop loop;
    loop_ = &loop;
    loop.exec();
    loop_ = nullptr;
    canvas_->setTakesBoxes(true);
    canvas_->setRubberBase({});
    panel_->clearPrompt();
    return answer_.value_or(closing_ ? Input::end() : Input::cancel());
}

void MainWindow::supply(Input input) {
    if (!loop_ || answer_) return;
    answer_ = std::move(input);
    loop_->quit();
}

void MainWindow::clicked(Point at, ObjectId hit, Qt::KeyboardModifiers modifiers) {
    if (!isWaiting()) {
        std::set<ObjectId> ids = canvas_->selected();
        bool removes = modifiers & Qt::ShiftModifier;
        if (!removes && !(modifiers & Qt::ControlModifier)) ids.clear();
        if (hit && removes)
            ids.erase(hit);
        else if (hit)
            ids.insert(hit);
        return select(std::move(ids));
    }
    bool wantsEntity = waitsFor_ == Prompt::Kind::Entity || waitsFor_ == Prompt::Kind::Objects;
    if (wantsEntity && hit) {
        EntityName name{};
        nameOf(hit, name.data());
        supply(Input::ofEntity(name, coordinatesOf(at)));
    } else if (wantsEntity || waitsFor_ == Prompt::Kind::Point || waitsFor_ == Prompt::Kind::Distance ||
               waitsFor_ == Prompt::Kind::Angle) {
        supply(Input::ofPoint(coordinatesOf(at)));
    }
}

void MainWindow::boxDrawn(Point from, Point to, bool crossing) {
    ads_point a{from.x, from.y, 0}, b{to.x, to.y, 0};
    EntityName set{};
    if (acedSSGet(crossing ? "C" : "W", a, b, nullptr, set.data()) != RTNORM) {
        if (!isWaiting()) select({});
        return;
    }
    if (isWaiting()) return supply(Input::ofSet(set));
    std::set<ObjectId> ids = canvas_->selected();
    bool removes = QApplication::keyboardModifiers() & Qt::ShiftModifier;
    for (ObjectId id : selectionOf(set.data())->members())
        removes ? (void)ids.erase(id) : (void)ids.insert(id);
    acedSSFree(set.data());
    select(std::move(ids));
}

void MainWindow::select(std::set<ObjectId> ids) {
    canvas_->setSelected(std::move(ids));
    showProperties();
}

// --- Following the host
// -----------------------------------------------------------------------------------------

void MainWindow::follow() {
    Drawing& drawing = currentDrawing();
    if (drawing.serial() != shownDrawing_) {
        shownDrawing_ = drawing.serial();
        scene_.attach(&drawing);
        canvas_->setSelected({});
        canvas_->zoomExtents();
        if (scene_.leftOut() > 0)
            panel_->write("\n" + std::to_string(scene_.leftOut()) +
                          " entities are not shown: they are too far away or have no place.\n");
        if (!drawing.path().empty()) {
            QStringList recent = QSettings().value("recent").toStringList();
            recent.removeAll(toQt(drawing.path()));
            recent.prepend(toQt(drawing.path()));
            QSettings().setValue("recent", recent.mid(0, kMostRecent));
        }
    } else if (scene_.update()) {
        canvas_->refresh();
        std::set<ObjectId> ids = canvas_->selected();
        std::erase_if(ids, [&](ObjectId id) { return !drawing.exists(id); });
        canvas_->setSelected(std::move(ids));
    }
    showProperties();
    layer_->setText("Layer " + toQt(drawing.headerText("$CLAYER", "0")));
    QString name = drawing.path().empty() ? "Unnamed drawing" : QFileInfo(toQt(drawing.path())).fileName();
    setWindowTitle(name + "[*] - Norvane GIS");
    setWindowModified(drawing.modified());
}

void MainWindow::showProperties() {
    properties_->clear();
    for (const PropertyGroup& group : propertiesOf(currentDrawing(), canvas_->selected())) {
        auto* top = new QTreeWidgetItem(properties_, {toQt(group.caption)});
        top->setFirstColumnSpanned(true);
        for (const auto& [name, value] : group.values) {
            auto* item = new QTreeWidgetItem(top, {toQt(name), toQt(value)});
            item->setToolTip(1, toQt(value));
        }
        top->setExpanded(true);
    }
}

void MainWindow::show(const ViewBox& box) {
    canvas_->setView(box);
}

void MainWindow::redraw() {
    if (scene_.update()) canvas_->refresh();
    canvas_->refresh();
}

void MainWindow::redrawEntity(const EntityName&, bool) {
    canvas_->refresh();
}

void MainWindow::highlight(const EntityName& entity, bool on) {
    canvas_->setHighlighted(idOf(entity.data()), on);
}

void MainWindow::startMeter(const std::string& label, int from, int to) {
    meterLabel_->setText(toQt(label));
    meter_->setRange(from, to);
    meterLabel_->show();
    meter_->show();
    setMeter(from);
}

void MainWindow::setMeter(int position) {
    meter_->setValue(position);
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void MainWindow::endMeter() {
    meterLabel_->hide();
    meter_->hide();
}

// --- The frame
// --------------------------------------------------------------------------------------------------

bool MainWindow::mayLoseWork() {
    if (!currentDrawing().modified()) return true;
    auto answer = QMessageBox::question(this, "Norvane GIS",
                                        "The drawing has changes that are not saved. Save them first?",
                                        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    if (answer == QMessageBox::Save) {
        host_->runLine("QSAVE");
        follow();
        return !currentDrawing().modified();
    }
    return answer == QMessageBox::Discard;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!closing_ && (!host_ || host_->wantsQuit() || mayLoseWork())) closing_ = true;
    if (!closing_) return event->ignore();
    if (isWaiting()) supply(Input::cancel());
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile() && url.toLocalFile().endsWith(".dxf", Qt::CaseInsensitive))
            return openDrawing(url.toLocalFile().toStdString());
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        escape();
    else
        QMainWindow::keyPressEvent(event);
}

}  // namespace hostcad
