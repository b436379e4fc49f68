#include "hostcad/window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>
#include <algorithm>
#include <chrono>

#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/file_boxes.h"
#include "hostcad/lisp/error.h"
#include "hostcad/window/command_panel.h"
#include "hostcad/window/entity_list.h"
#include "hostcad/window/icons.h"
#include "hostcad/window/panel_docks.h"
#include "hostcad/window/picture_items.h"
#include "hostcad/window/product_functions.h"
#include "hostcad/window/properties.h"
#include "hostcad/window/start_page.h"
#include "platform/scope/temporary_value.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

constexpr int kMostRecent = 8;
constexpr std::chrono::minutes kCopyEvery{5};

using ui::toQt;

}  // namespace

MainWindow::MainWindow() {
    setAcceptDrops(true);
    canvas_ = new Canvas(scene_, this);
    setCentralWidget(canvas_);
    setWindowIcon(applicationIcon());
    resize(QSize(1280, 860).boundedTo(screen()->availableSize()));
    makePanels();
    makeStatusBar();
    joinCanvas();
}

MainWindow::~MainWindow() {
    qApp->removeEventFilter(this);
    list_->clear();
    scene_.attach(nullptr);
}

void MainWindow::start(Host& host, const Product& product, const std::vector<std::string>& menuFiles) {
    host_ = &host;
    product_ = product;
    host.lisp().setPulse([this] { breathe(); });
    host.variables().set("FILEDIA", VariableValue::ofInteger(1));  // files are chosen in boxes
    host.setHoldsDrawings(true);
    auto* copies = new QTimer(this);
    copies->setObjectName("copies");
    connect(copies, &QTimer::timeout, this, [this] { keepCopy(); });
    copies->start(kCopyEvery);
    links_ = std::make_unique<LinkedRecords>(host.lisp());
    qApp->installEventFilter(this);
    for (const std::string& file : menuFiles)
        for (const MenuHeading& heading : readMenuFile(file)) addHeading(heading);
    restoreLayout();
    follow();
    showStartPage();
    panel_->clearPrompt();
    panel_->focusLine();
}

// --- Making ------------------------------------------------------------------------------------------------

void MainWindow::makePanels() {
    panel_ = new CommandPanel(this);
    panel_->onLine = [this](const std::string& line) { lineTyped(line); };
    panel_->onEscape = [this] { escape(); };
    panel_->onDelete = [this] {
        if (!canvas_->selected().empty() && !running_) runLine("ERASE");
    };
    list_ = new EntityList(this);
    list_->onSelected = [this](std::vector<ObjectId> ids) {
        canvas_->setSelected(std::move(ids));
        noteSelection();
        showProperties();
        modulePanels_->note({.selection = true});
    };
    list_->onChosen = [this] { zoomToSelected(); };
    list_->onMenu = [this](QPoint at) { showEntityMenu(at); };
    properties_ = new QTreeWidget(this);
    properties_->setColumnCount(2);
    properties_->setHeaderLabels({"Property", "Value"});
    properties_->setAlternatingRowColors(true);
    properties_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    properties_->setAccessibleName("Properties");
    // On a small screen it leaves room to a panel below.
    constexpr int kLeastLines = 3;
    properties_->setMinimumHeight(kLeastLines * properties_->fontMetrics().height());
    preparePictures(*properties_);

    auto dock = [this](const char* title, const char* name, QWidget* content, Qt::DockWidgetArea area) {
        auto* made = new QDockWidget(title, this);
        made->setObjectName(name);
        made->setWidget(content);
        addDockWidget(area, made);
        return made;
    };
    QDockWidget* commands = dock("Command line", "commands", panel_, Qt::BottomDockWidgetArea);
    QDockWidget* entities = dock("Entities", "entities", list_, Qt::RightDockWidgetArea);
    QDockWidget* details = propertiesPanel_ =
        dock("Properties", "properties", properties_, Qt::RightDockWidgetArea);
    // On a small screen the drawing keeps more than half of it.
    const int side = std::min(330, width() / 3);
    resizeDocks({commands}, {std::min(180, height() / 4)}, Qt::Vertical);
    resizeDocks({entities, details}, {260, 400}, Qt::Vertical);
    resizeDocks({entities, details}, {side, side}, Qt::Horizontal);
    modulePanels_ = new PanelDocks(*this, *commands);
    modulePanels_->onAction = [this](const std::function<void()>& action) { runAction(action); };
    modulePanels_->onLeave = [this] { panel_->focusLine(); };
}

void MainWindow::makeStatusBar() {
    coordinates_ = new QLabel("0.0000, 0.0000");
    coordinates_->setMinimumWidth(
        coordinates_->fontMetrics().horizontalAdvance("-0000000.0000, -0000000.0000"));
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
    productFields_ = std::make_unique<StatusFields>(*statusBar());
}

void MainWindow::rememberLayout() const {
    QSettings settings;
    settings.setValue("window/geometry", saveGeometry());
    settings.setValue("window/panels", saveState());
    settings.setValue("window/columns", list_->view().horizontalHeader()->saveState());
    settings.setValue("window/legend", canvas_->legend().isWanted());
}

// What is missing or does not fit stays as it is.
void MainWindow::restoreLayout() {
    const QSettings settings;
    restoreGeometry(settings.value("window/geometry").toByteArray());
    restoreState(settings.value("window/panels").toByteArray());
    list_->view().horizontalHeader()->restoreState(settings.value("window/columns").toByteArray());
    canvas_->legend().setWanted(settings.value("window/legend", true).toBool());
}

void MainWindow::joinCanvas() {
    canvas_->onMove = [this](Point p) { coordinates_->setText(QString::asprintf("%.4f, %.4f", p.x, p.y)); };
    canvas_->onClick = [this](Point at, ObjectId hit, Qt::KeyboardModifiers m) { clicked(at, hit, m); };
    canvas_->onBox = [this](const Box& box, bool crossing, Qt::KeyboardModifiers m) {
        boxDrawn(box, crossing, m);
    };
    canvas_->onSelected = [this] { noteSelection(); };
    canvas_->onRightClick = [this] {
        if (isWaiting()) supply(Input::enter());
    };
    canvas_->onViewMoved = [this](bool begins) {
        if (host_) host_->noteViewBox(canvas_->view(), begins);
        modulePanels_->note({.view = true});
    };
}

void MainWindow::zoomExtents() {
    if (!canvas_->zoomExtents()) panel_->write("\nThere is nothing to zoom to.\n");
}

void MainWindow::zoomToSelected() {
    if (!canvas_->zoomTo(canvas_->selected())) panel_->write("\nWhat is selected has no place to zoom to.\n");
}

void MainWindow::zoomToBox() {
    panel_->write("\nDraw a box round what is to be seen.\n");
    canvas_->zoomToNextBox(true);
}

void MainWindow::zoomPrevious() {
    if (!host_->showEarlierView()) panel_->write("\nThere is no earlier view.\n");
}

// --- Following the host ------------------------------------------------------------------------------------

void MainWindow::select(std::vector<ObjectId> ids) {
    showSelected(std::move(ids));
    noteSelection();
}

// The next command takes it.
void MainWindow::noteSelection() {
    if (host_) host_->selection().set(canvas_->selected(), false);
}

void MainWindow::showSelected(std::vector<ObjectId> ids) {
    canvas_->setSelected(std::move(ids));
    list_->select(canvas_->selected());
    showProperties();
    modulePanels_->note({.selection = true});
}

void MainWindow::select(const std::vector<EntityName>& entities) {
    if (currentDrawing().serial() != shownDrawing_) return;
    std::vector<ObjectId> ids;
    for (const EntityName& entity : entities) ids.push_back(idOf(entity.data()));
    showSelected(std::move(ids));
    showsSelectionAtPrompt_ = true;
}

void MainWindow::present(const std::vector<EntityName>& entities) {
    select(entities);
    host_->selection().clear();
}

// Another drawing: nothing that points into the old one may stay.
void MainWindow::takeDrawing() {
    Drawing& drawing = currentDrawing();
    shownDrawing_ = drawing.serial();
    list_->clear();
    if (startPage_) startPage_->hide();
    scene_.attach(&drawing);
    canvas_->setSelected({});
    canvas_->clearHighlights();
    modulePanels_->note({true, true, true});
}

void MainWindow::follow() {
    Drawing& drawing = currentDrawing();
    if (!host_) return;
    if (drawing.serial() != shownDrawing_) takeDrawing();
    scene_.update();
    if (drawing.serial() != listedDrawing_) {
        listedDrawing_ = drawing.serial();
        canvas_->zoomExtents();
        list_->setDrawing(drawing, *links_, ListedAttributes(host_->lisp()));
        for (const std::string& remark : scene_.remarks()) panel_->write("\n" + remark + "\n");
        if (!drawing.path().empty()) {
            QStringList recent = QSettings().value("recent").toStringList();
            recent.removeAll(toQt(drawing.path()));
            recent.prepend(toQt(drawing.path()));
            QSettings().setValue("recent", recent.mid(0, kMostRecent));
        }
        showProperties();
    } else if (scene_.revision() != listedRevision_) {
        canvas_->refresh();
        std::vector<ObjectId> ids = canvas_->selected();
        std::erase_if(ids, [&](ObjectId id) { return !drawing.exists(id); });
        if (ids.size() != canvas_->selected().size()) {
            canvas_->setSelected(std::move(ids));
            list_->select(canvas_->selected());
            modulePanels_->note({.selection = true});
        }
        list_->drawingChanged();
        showProperties();
    }
    listedRevision_ = scene_.revision();
    layer_->setText("Layer " + toQt(drawing.headerText("$CLAYER", "0")));
    QString name = drawing.path().empty() ? "Unnamed drawing" : QFileInfo(toQt(drawing.path())).fileName();
    if (!host_->holder().empty()) name += " (read-only)";
    setWindowTitle(name + "[*] - " + toQt(product_.name));
    setWindowModified(drawing.modified());
    showWhatCanBeUndone();
    if (running_) return;
    if (drawing.serial() != toldDrawing_) tellProductOfDrawing();
    productFields_->show(host_->lisp());
}

// The product may have a word to say about a drawing that comes from a file, and a question.
void MainWindow::tellProductOfDrawing() {
    toldDrawing_ = currentDrawing().serial();
    if (currentDrawing().path().empty()) return;
    scope::TemporaryValue running(running_, true);
    const PanelDocks::Rest rest(*modulePanels_);
    try {
        callProduct(host_->lisp(), "DRAWING-OPENED");
    } catch (const lisp::Error& error) {
        host_->tell(error);
    }
}

// Reading a record runs Lisp, which is left alone while it is at work.
void MainWindow::showProperties() {
    propertiesAreOld_ = running_;
    if (!running_ && links_) fillProperties();
}

void MainWindow::fillProperties() {
    properties_->clear();
    for (const PropertyGroup& group : propertiesOf(currentDrawing(), canvas_->selected(), *links_)) {
        auto* top = new QTreeWidgetItem(properties_, {toQt(group.caption)});
        top->setFirstColumnSpanned(true);
        for (const auto& [name, value] : group.values) {
            auto* item = new QTreeWidgetItem(top, {toQt(name), toQt(value)});
            item->setToolTip(1, ui::tipOf(toQt(value)));
        }
        addPictures(*top, group.pictures);
        top->setExpanded(true);
    }
}

void MainWindow::show(const ViewBox& box) {
    // The host shows a view of each drawing that it takes, before anything else is done with it.
    if (currentDrawing().serial() != shownDrawing_) takeDrawing();
    canvas_->setView(box);
    modulePanels_->note({.view = true});
}

void MainWindow::redraw() {
    if (currentDrawing().serial() == shownDrawing_) scene_.update();
    canvas_->refresh();
}

void MainWindow::redrawEntity(const EntityName&, bool) {
    redraw();
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
    breathe();
}

void MainWindow::endMeter() {
    meterLabel_->hide();
    meter_->hide();
}

// --- The frame ---------------------------------------------------------------------------------------------

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!closing_ && modulePanels_->mayEnd() && (!host_ || host_->wantsQuit() || settleChanges(*host_)))
        closing_ = true;
    if (!closing_) return event->ignore();
    if (isWaiting()) supply(Input::cancel());
    rememberLayout();
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

// Icons have the colour of the texts of the desktop's theme, which may change.
void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) drawIcons();
    // Another window of the program may have changed what the product shows.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && host_ && !running_)
        productFields_->show(host_->lisp());
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        escape();
    else
        QMainWindow::keyPressEvent(event);
}

}  // namespace hostcad
