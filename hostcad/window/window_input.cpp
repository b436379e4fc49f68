// The side of the window that takes what a person does as commands, and as answers to prompts.
#include <QApplication>
#include <QKeyEvent>
#include <algorithm>

#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/file_boxes.h"
#include "hostcad/window/command_panel.h"
#include "hostcad/window/main_window.h"
#include "hostcad/window/panel_docks.h"
#include "hostcad/window/scene_picking.h"
#include "hostcad/window/start_page.h"
#include "platform/scope/temporary_value.h"
#include "platform/ui/backend.h"

namespace hostcad {
namespace {

constexpr qint64 kBreath = 150;  // milliseconds between two looks at what waits for the window

Input inputOf(const std::vector<ObjectId>& ids) {
    SelectionSet set;
    for (ObjectId id : ids) set.add(id);
    EntityName name{};
    nameSelection(std::move(set), name.data());
    return Input::ofSet(name);
}

bool isFromUser(QEvent::Type type) {
    switch (type) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
        case QEvent::ShortcutOverride:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::Drop:
        case QEvent::Close:
        case QEvent::ContextMenu:
            return true;
        default:
            return false;
    }
}

bool isTypedOrClicked(QEvent::Type type) {
    return type == QEvent::KeyPress || type == QEvent::KeyRelease || type == QEvent::MouseButtonPress ||
           type == QEvent::MouseButtonRelease;
}

}  // namespace

// --- While programs run ------------------------------------------------------------------------------------

bool MainWindow::isBusy() const {
    return running_ && !isWaiting() && !QApplication::activeModalWidget();
}

void MainWindow::breathe() {
    if (!isBusy() || (lastBreath_.isValid() && lastBreath_.elapsed() < kBreath)) return;
    QApplication::processEvents();
    lastBreath_.restart();
}

// Whoever is busy hears nothing but Escape. Who types or clicks ahead, so that the event comes in one go with
// the answer to a prompt, means the next prompt: it is sent again.
bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (!isFromUser(event->type()) || !isBusy()) return QMainWindow::eventFilter(watched, event);
    if (loop_ && isTypedOrClicked(event->type())) {
        QCoreApplication::postEvent(watched, event->clone());
        return true;
    }
    bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) host_->cancel();
    if (event->type() == QEvent::Close) event->ignore();
    return true;
}

void MainWindow::write(std::string_view text) {
    panel_->write(text);
    breathe();
}

// --- Lines -------------------------------------------------------------------------------------------------

void MainWindow::runLine(const std::string& line) {
    // A command that is chosen from a menu ends the one that is waiting.
    if (isWaiting()) {
        afterwards_ = line;
        supply(Input::cancel());
        return;
    }
    if (running_ || !host_) return;
    if (startPage_) startPage_->hide();
    lastLine_ = line;
    panel_->write("\nCommand: " + line);
    run([&] { host_->runLine(line); });
}

void MainWindow::runAction(const std::function<void()>& action) {
    run([&] { host_->perform(action); });
}

void MainWindow::run(const std::function<void()>& work) {
    lastBreath_.restart();
    queue_.clear();
    propertiesAreOld_ = !canvas_->selected().empty();  // a command may change the record that is shown
    {
        scope::TemporaryValue running(running_, true);
        const PanelDocks::Rest rest(*modulePanels_);
        work();
    }
    canvas_->clearHighlights();
    follow();
    if (propertiesAreOld_) showProperties();
    if (std::exchange(copyIsDue_, false)) keepCopy();
    panel_->clearPrompt();
    if (host_->wantsQuit()) close();
    if (std::string next = std::exchange(afterwards_, {}); !next.empty()) runLine(next);
}

void MainWindow::openDrawing(const std::string& path) {
    if (isWaiting() || running_ || !settleChanges(*host_)) return;
    const PanelDocks::Rest rest(*modulePanels_);
    std::string problem = host_->openDrawing(path);
    if (problem.empty())
        panel_->write("\nOpened " + path + "\n");
    else
        showProblem(*host_, problem);
    follow();
}

// --- The copy that a crash leaves
// ---------------------------------------------------------------------------

void MainWindow::keepCopy() {
    // In the middle of a program the drawing may be half changed; the end of it is near.
    if (isBusy()) {
        copyIsDue_ = true;
        return;
    }
    const Drawing& drawing = currentDrawing();
    const std::pair kept(drawing.serial(), drawing.changes());
    if (!drawing.modified() || kept == keptChanges_) return;
    std::string problem = host_->keptCopies().keep(drawing);
    if (problem.empty())
        keptChanges_ = kept;
    else
        panel_->write("\nNo copy of the drawing could be kept for a crash: " + problem + "\n");
}

bool MainWindow::offerKeptCopies() {
    for (const KeptCopies::LeftBehind& copy : host_->keptCopies().leftBehind()) {
        const bool hasName = !copy.drawing.empty();
        const std::string saved = hasName ? timeOfFile(copy.drawing) : "";
        std::string text = (hasName ? copy.drawing : "A drawing without a name") +
                           " had changes that were not saved when the program ended.\nA copy of " +
                           copy.time + " is there" +
                           (saved.empty() ? "" : "; the file itself was saved at " + saved) +
                           ".\n\nOpen the copy?\nNo removes it. Cancel leaves it and asks again later.";
        int answer = ui::ask({"Unsaved Work", text, ui::kBoxYesNoCancel | ui::kBoxExclamation, ui::kCancel});
        if (answer == ui::kNo) KeptCopies::remove(copy);
        if (answer != ui::kYes) continue;
        const PanelDocks::Rest rest(*modulePanels_);
        std::string problem = host_->recoverDrawing(copy);
        if (!problem.empty()) {
            showProblem(*host_, problem);
            continue;
        }
        panel_->write("\nOpened the copy of " + copy.time + ". It is not saved yet.\n");
        follow();
        return true;
    }
    return false;
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
    canvas_->zoomToNextBox(false);
    if (isWaiting())
        supply(Input::cancel());
    else if (!running_)
        select(std::vector<ObjectId>());
}

// --- Prompts -----------------------------------------------------------------------------------------------

Input MainWindow::next(const Prompt& prompt) {
    follow();
    if (std::optional<Input> input = queuedInput()) return *input;
    // The program stands still at a prompt, where it may have its selection shown.
    if (std::exchange(showsSelectionAtPrompt_, false)) fillProperties();
    waitsFor_ = prompt.kind;
    answer_.reset();
    panel_->showPrompt(prompt);
    canvas_->setTakesBoxes(prompt.kind == Prompt::Kind::Objects);
    if (prompt.base) canvas_->setRubberBand(*prompt.base, prompt.isCorner);
    panel_->focusLine();
    QEventLoop loop;
    loop_ = &loop;
    loop.exec();
    loop_ = nullptr;
    canvas_->setTakesBoxes(true);
    canvas_->setRubberBand({});
    panel_->clearPrompt();
    lastBreath_.restart();
    return answer_.value_or(closing_ ? Input::end() : Input::cancel());
}

std::optional<Input> MainWindow::queuedInput() {
    if (queue_.empty()) return {};
    Input input = std::move(queue_.front());
    queue_.pop_front();
    return input;
}

void MainWindow::supply(Input input) {
    if (!isWaiting()) return;
    if (input.kind == Input::Kind::Cancel) queue_.clear();
    answer_ = std::move(input);
    loop_->quit();
}

void MainWindow::supplyObjects(Input input, Qt::KeyboardModifiers modifiers) {
    bool removes = waitsFor_ == Prompt::Kind::Objects && (modifiers & Qt::ShiftModifier);
    if (!removes) return supply(std::move(input));
    queue_.push_back(std::move(input));
    queue_.push_back(Input::ofText("Add"));
    supply(Input::ofText("Remove"));
}

void MainWindow::clicked(Point at, ObjectId hit, Qt::KeyboardModifiers modifiers) {
    if (!isWaiting()) return selectPicked(hit ? std::vector{hit} : std::vector<ObjectId>{}, modifiers);
    bool wantsEntity = waitsFor_ == Prompt::Kind::Entity || waitsFor_ == Prompt::Kind::Objects;
    if (wantsEntity && hit) {
        EntityName name{};
        nameOf(hit, name.data());
        supplyObjects(Input::ofEntity(name, at), modifiers);
    } else if (wantsEntity || waitsFor_ == Prompt::Kind::Point || waitsFor_ == Prompt::Kind::Distance ||
               waitsFor_ == Prompt::Kind::Angle) {
        supply(Input::ofPoint(at));
    }
}

void MainWindow::boxDrawn(const Box& box, bool crossing, Qt::KeyboardModifiers modifiers) {
    std::vector<ObjectId> found = entitiesInBox(currentDrawing(), scene_, box, crossing);
    if (!isWaiting()) return selectPicked(std::move(found), modifiers);
    if (!found.empty()) supplyObjects(inputOf(found), modifiers);
}

void MainWindow::selectPicked(std::vector<ObjectId> picked, Qt::KeyboardModifiers modifiers) {
    if (!(modifiers & (Qt::ShiftModifier | Qt::ControlModifier))) return select(std::move(picked));
    std::sort(picked.begin(), picked.end());
    const std::vector<ObjectId>& old = canvas_->selected();
    std::vector<ObjectId> selected;
    if (std::includes(old.begin(), old.end(), picked.begin(), picked.end()))
        std::set_difference(old.begin(), old.end(), picked.begin(), picked.end(),
                            std::back_inserter(selected));
    else
        std::set_union(old.begin(), old.end(), picked.begin(), picked.end(), std::back_inserter(selected));
    select(std::move(selected));
}

}  // namespace hostcad
