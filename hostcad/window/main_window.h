// The window: the drawing, the command line, menus, the properties of what is selected, and the status bar.
// It is the host's output, its source of answers, and its view.
#pragma once

#include <QEventLoop>
#include <QMainWindow>
#include <memory>
#include <optional>
#include <vector>

#include "hostcad/editor/host.h"
#include "hostcad/window/canvas.h"
#include "hostcad/window/scene.h"

class QLabel;
class QProgressBar;
class QTreeWidget;

namespace hostcad {

class CommandPanel;

class MainWindow : public QMainWindow, public Output, public InputSource, public View {
  public:
    MainWindow();
    ~MainWindow() override;

    // Joins the window to its host. Menus come from a file of the support folder.
    void start(Host& host, const std::string& menuFile);
    // A line as if it had been typed.
    void runLine(const std::string& line);
    // Opens a drawing, after a question where unsaved work would be lost.
    void openDrawing(const std::string& path);

    Canvas& canvas() { return *canvas_; }
    CommandPanel& commandPanel() { return *panel_; }
    QTreeWidget& properties() { return *properties_; }

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
    void startMeter(const std::string& label, int from, int to) override;
    void setMeter(int position) override;
    void endMeter() override;
    using QMainWindow::show;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void makePanels();
    void makeStatusBar();
    void makeMenus(const std::string& menuFile);
    void makeToolBar();
    void fillRecent();
    void joinCanvas();

    void lineTyped(const std::string& line);
    void escape();
    // Gives the waiting prompt its answer.
    void supply(Input input);
    bool isWaiting() const { return loop_ != nullptr; }
    void clicked(Point at, ObjectId hit, Qt::KeyboardModifiers modifiers);
    void boxDrawn(Point from, Point to, bool crossing);
    void select(std::set<ObjectId> ids);

    // Takes over what a command has changed: another drawing, other entities, the title.
    void follow();
    void showProperties();
    bool mayLoseWork();

    Host* host_ = nullptr;
    Scene scene_;
    long shownDrawing_ = -1;
    Canvas* canvas_ = nullptr;
    CommandPanel* panel_ = nullptr;
    QTreeWidget* properties_ = nullptr;
    QLabel* coordinates_ = nullptr;
    QLabel* layer_ = nullptr;
    QLabel* meterLabel_ = nullptr;
    QProgressBar* meter_ = nullptr;
    QMenu* recent_ = nullptr;

    QEventLoop* loop_ = nullptr;  // of the prompt that waits
    Prompt::Kind waitsFor_ = Prompt::Kind::Command;
    std::optional<Input> answer_;
    bool running_ = false;
    bool closing_ = false;
    std::string lastLine_;
    std::string afterwards_;  // what was chosen while a prompt was waiting
};

}  // namespace hostcad
