// The window: the drawing, the command line, menus, the list of entities, the properties of what is selected,
// and the status bar. It is the host's output, its source of answers, and its view.
#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QMainWindow>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "hostcad/editor/host.h"
#include "hostcad/editor/product.h"
#include "hostcad/window/canvas.h"
#include "hostcad/window/linked_record.h"
#include "hostcad/window/menu_file.h"
#include "hostcad/window/scene.h"
#include "hostcad/window/status_fields.h"

class QDockWidget;
class QLabel;
class QProgressBar;
class QToolBar;
class QTreeWidget;

namespace hostcad {

class CommandPanel;
class DocumentWindow;
class EntityList;
class PanelDocks;
class StartPage;

class MainWindow : public QMainWindow, public Output, public InputSource, public View {
  public:
    MainWindow();
    ~MainWindow() override;

    // Joins the window to its host, which has loaded its Lisp. The product's name stands behind that of the
    // drawing; the menus and buttons of the files follow each other.
    void start(Host& host, const Product& product, const std::vector<std::string>& menuFiles);
    // A line as if it had been typed. A prompt that waits is ended first.
    void runLine(const std::string& line);
    // Opens a drawing, after a question where unsaved work would be lost.
    void openDrawing(const std::string& path);

    // Asks about copies that a crash has left behind. True when one was opened.
    bool offerKeptCopies();

    // Programs run, and nothing is asked.
    bool isBusy() const;

    Canvas& canvas() { return *canvas_; }
    CommandPanel& commandPanel() { return *panel_; }
    EntityList& entityList() { return *list_; }
    QTreeWidget& properties() { return *properties_; }
    // Where panels of modules stand.
    PanelDocks& modulePanels() { return *modulePanels_; }

    // Output, InputSource
    void write(std::string_view text) override;
    Input next(const Prompt& prompt) override;

    // View
    int pixelWidth() const override { return canvas_->width(); }
    int pixelHeight() const override { return canvas_->height(); }
    void show(const ViewBox& box) override;
    void redraw() override;
    void redrawEntity(const EntityName& entity, bool isDrawn) override;
    void highlight(const EntityName& entity, bool on) override;
    void select(const std::vector<EntityName>& entities) override;
    overlay::LabelCounts labelCounts() override { return canvas_->labelCounts(); }
    void present(const std::vector<EntityName>& entities) override;
    void startMeter(const std::string& label, int from, int to) override;
    void setMeter(int position) override;
    void endMeter() override;
    using QMainWindow::show;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void makePanels();
    void makeStatusBar();
    // Size, place, panels and columns, from one run of the program to the next.
    void rememberLayout() const;
    void restoreLayout();
    void joinCanvas();
    void zoomExtents();
    void zoomToSelected();
    void zoomToBox();
    void zoomPrevious();

    // --- What is offered (window_menus.cpp) ---
    void addHeading(const MenuHeading& heading);
    void addMenu(const MenuHeading& heading);
    QMenu* menuOf(const std::string& caption);
    void addButtons(const MenuHeading& heading);
    void drawIcons();
    // What a menu or a button says: a line, or one of the window's own actions.
    void perform(const std::string& command);
    void fillRecent();
    void showEntityMenu(QPoint at);
    void showPropertiesPanel();
    // Offers a command of the menus and buttons only while it can be used.
    void offer(QAction* action, const std::string& command);
    void showWhatCanBeUndone();
    void showStartPage();
    std::string samplePath() const;
    void openSample();
    void showAbout();
    // A Markdown file among the documents of the product.
    void showDocument(const std::string& name);
    void showLegend();
    // What is on the screen, on a printer or into a file.
    void print();
    void savePdf();

    // --- Lines and answers (window_input.cpp) ---
    void lineTyped(const std::string& line);
    void escape();
    // Runs what a panel of a module does as a command.
    void runAction(const std::function<void()>& action);
    // A line or an action, and what the window takes over behind it.
    void run(const std::function<void()>& work);
    // Gives the waiting prompt its answer.
    void supply(Input input);
    bool isWaiting() const { return loop_ && !answer_; }
    // Lets the window live on while programs run: it is painted, and Escape ends them.
    void breathe();
    std::optional<Input> queuedInput();
    // A point, entity or set for a prompt for objects; with Shift it is taken out of the selection.
    void supplyObjects(Input input, Qt::KeyboardModifiers modifiers);
    void clicked(Point at, ObjectId hit, Qt::KeyboardModifiers modifiers);
    void boxDrawn(const Box& box, bool crossing, Qt::KeyboardModifiers modifiers);
    // Makes what was pointed at the selection; with Shift or Control adds it, or takes it out when all of it
    // is selected already.
    void selectPicked(std::vector<ObjectId> picked, Qt::KeyboardModifiers modifiers);

    // Keeps a copy of the drawing for a crash, where it has changed since the last one.
    void keepCopy();

    // --- Following the host ---
    void select(std::vector<ObjectId> ids);
    void showSelected(std::vector<ObjectId> ids);
    void noteSelection();
    // Takes over what a command has changed: another drawing, other entities, the title.
    void follow();
    void takeDrawing();
    void tellProductOfDrawing();
    void showProperties();
    void fillProperties();

    Host* host_ = nullptr;
    Product product_;
    Scene scene_;
    std::unique_ptr<LinkedRecords> links_;
    long shownDrawing_ = -1;  // in the picture
    long listedDrawing_ = -1;
    uint64_t listedRevision_ = 0;
    long toldDrawing_ = -1;  // to the product
    Canvas* canvas_ = nullptr;
    CommandPanel* panel_ = nullptr;
    EntityList* list_ = nullptr;
    QTreeWidget* properties_ = nullptr;
    QLabel* coordinates_ = nullptr;
    QLabel* layer_ = nullptr;
    QLabel* meterLabel_ = nullptr;
    QProgressBar* meter_ = nullptr;
    std::unique_ptr<StatusFields> productFields_;
    QMenu* recent_ = nullptr;
    std::vector<MenuEntry> entityEntries_;  // of the menu in the list of entities
    QDockWidget* propertiesPanel_ = nullptr;
    PanelDocks* modulePanels_ = nullptr;
    std::vector<std::pair<QAction*, std::string>> icons_;  // of the buttons, by name
    StartPage* startPage_ = nullptr;
    DocumentWindow* documents_ = nullptr;
    std::vector<QAction*> undoActions_;  // of the menus and buttons
    std::vector<QAction*> redoActions_;
    QToolBar* toolBar_ = nullptr;

    QEventLoop* loop_ = nullptr;  // of the prompt that waits
    Prompt::Kind waitsFor_ = Prompt::Kind::Command;
    std::optional<Input> answer_;
    std::deque<Input> queue_;  // answers to the prompts to come
    QElapsedTimer lastBreath_;
    bool running_ = false;
    bool closing_ = false;
    bool propertiesAreOld_ = false;
    bool showsSelectionAtPrompt_ = false;
    bool copyIsDue_ = false;                        // when the program that runs has ended
    std::pair<long, uint64_t> keptChanges_{-1, 0};  // the drawing and its changes in the copy
    std::string lastLine_;
    std::string afterwards_;  // what was chosen while a prompt was waiting
};

}  // namespace hostcad
