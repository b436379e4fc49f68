#include "hostcad/window/panel_docks.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QMainWindow>
#include <QPainter>
#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

constexpr std::chrono::milliseconds kSlice{10};  // of idle time, short enough that a key does not wait
constexpr int kViewRests = 150;                  // milliseconds, so that panning is not held up

// Shows a panel as it was, with a sign, in front of it.
class Cover : public QWidget {
  public:
    using QWidget::QWidget;
    void showPicture(QPixmap picture) {
        picture_ = std::move(picture);
        show();
        raise();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QColor ground = palette().color(QPalette::Window);
        painter.fillRect(rect(), ground);
        painter.drawPixmap(0, 0, picture_);
        ground.setAlphaF(0.5F);
        painter.fillRect(rect(), ground);
        const QString sign = "A command is running.";
        const int margin = fontMetrics().height() / 2;
        QRect room = fontMetrics().boundingRect(sign).adjusted(-margin, -margin, margin, margin);
        room.moveCenter(rect().center());
        painter.setPen(palette().color(QPalette::Mid));
        painter.setBrush(palette().color(QPalette::Window));
        painter.drawRoundedRect(room, margin / 2.0, margin / 2.0);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(room, Qt::AlignCenter, sign);
    }

  private:
    QPixmap picture_;
};

// What stands in a dock: the view, and its cover while the panel rests.
class Ground : public QWidget {
  public:
    explicit Ground(ui::DialogWindow& view) : view_(view), wished_(view.size()), cover_(new Cover(this)) {
        view.setParent(this);
        view.setAttribute(Qt::WA_Moved);  // a dialog would look for the middle of the window
        cover_->hide();
        setMinimumSize(view.minimumSizeHint());
    }
    QSize sizeHint() const override { return wished_; }
    void rest() {
        cover_->setGeometry(rect());
        const bool isSeen = isVisible() && hasBeenLaidOut_;
        cover_->showPicture(isSeen ? view_.grab() : QPixmap());
        isResting_ = true;
        view_.setResting(true);
    }
    void goOn() {
        isResting_ = false;
        view_.setResting(false);
        cover_->hide();
        view_.setGeometry(rect());
        hasBeenLaidOut_ = true;
    }

  protected:
    // A view that rests is not laid out anew, which would ask its panel.
    void resizeEvent(QResizeEvent*) override {
        cover_->setGeometry(rect());
        if (isResting_) return;
        view_.setGeometry(rect());
        hasBeenLaidOut_ = true;
    }

  private:
    ui::DialogWindow& view_;
    QSize wished_;
    Cover* cover_;  // the widget's
    bool isResting_ = false;
    bool hasBeenLaidOut_ = false;
};

}  // namespace

// --- A dock ------------------------------------------------------------------------------------------------

// It stays when its panel has gone, hidden, and so keeps its place in the window for the next one.
class PanelDock : public QDockWidget {
  public:
    PanelDock(PanelDocks& docks, int resource) : QDockWidget(&docks.window_), docks_(docks) {
        setObjectName(nameOf(resource));
        toggleViewAction()->setVisible(false);
    }

    static QString nameOf(int resource) { return QString("panel-%1").arg(resource); }

    // Null when there is none.
    ui::Panel* panel() const { return panel_; }
    ui::DialogWindow& view() const { return *view_; }

    void take(ui::Panel& panel, ui::DialogWindow& view) {
        panel_ = &panel;
        view_ = &view;
        isNew_ = hasWork = true;
        setWindowTitle(view.windowTitle());
        connect(&view, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
        ground_ = new Ground(view);
        setWidget(ground_);
        toggleViewAction()->setVisible(true);
    }
    // The view is its backend's.
    void release() {
        hide();
        toggleViewAction()->setVisible(false);
        view_->hide();
        view_->setParent(nullptr);
        panel_ = nullptr;
        view_ = nullptr;
        delete std::exchange(ground_, nullptr);
    }

    void rest() {
        if (!ground_) return;
        if (!isNew_) panel_->onRest();
        ground_->rest();
    }
    void goOn() {
        if (!ground_) return;
        view_->show();
        ground_->goOn();
    }
    void tell(const ui::WindowChange& change) {
        const bool isNew = std::exchange(isNew_, false);
        panel_->onWindowChange(isNew ? ui::WindowChange{true, true, true} : change);
        hasWork = true;
    }
    // Whether there is more to do. A panel that has not been told of the window has not begun.
    bool work() {
        if (hasWork && !isNew_) hasWork = panel_->running() && panel_->work(kSlice);
        return hasWork && !isNew_;
    }

    bool hasWork = false;

  protected:
    void closeEvent(QCloseEvent* event) override {
        if (!panel_) return QDockWidget::closeEvent(event);
        if (docks_.isResting()) return event->ignore();
        if (panel_->running()) panel_->userClose();
        event->setAccepted(!panel_->running());
    }

  private:
    PanelDocks& docks_;
    ui::Panel* panel_ = nullptr;
    ui::DialogWindow* view_ = nullptr;
    Ground* ground_ = nullptr;  // the dock's
    bool isNew_ = false;
};

// --- All of them -------------------------------------------------------------------------------------------

PanelDocks::PanelDocks(QMainWindow& window, QDockWidget& commands)
    : QObject(&window), window_(window), commands_(commands) {
    for (QTimer* timer : {&telling_, &working_, &acting_}) timer->setSingleShot(true);
    connect(&telling_, &QTimer::timeout, this, [this] { tell(); });
    connect(&working_, &QTimer::timeout, this, [this] { work(); });
    connect(&acting_, &QTimer::timeout, this, [this] { act(); });
}

PanelDock* PanelDocks::dockOf(const ui::Panel& panel) const {
    auto found = std::find_if(docks_.begin(), docks_.end(),
                              [&](const PanelDock* dock) { return dock->panel() == &panel; });
    return found == docks_.end() ? nullptr : *found;
}

// The dock of a number, where it stood in an earlier run of the program; at first above the command line.
PanelDock& PanelDocks::dockFor(int resource) {
    for (PanelDock* dock : docks_)
        if (!dock->panel() && dock->objectName() == PanelDock::nameOf(resource)) return *dock;
    auto* made = new PanelDock(*this, resource);
    docks_.push_back(made);
    if (window_.restoreDockWidget(made)) return *made;
    window_.addDockWidget(Qt::BottomDockWidgetArea, made);
    if (!commands_.isFloating() && window_.dockWidgetArea(&commands_) == Qt::BottomDockWidgetArea)
        window_.splitDockWidget(made, &commands_, Qt::Vertical);
    hasNewDock_ = true;
    return *made;
}

// The height that a new panel wishes for, as long as the picture keeps the most of the window.
void PanelDocks::giveHeight(PanelDock& dock, int height) {
    const int room = window_.height() / 2, rest = room / 3;
    window_.resizeDocks({&dock, &commands_},
                        {std::min(height, room - rest), std::min(commands_.height(), rest)}, Qt::Vertical);
}

void PanelDocks::add(ui::Panel& panel, ui::DialogWindow& view) {
    PanelDock& dock = dockFor(panel.resource());
    const int wished = view.height();
    dock.take(panel, view);
    if (isResting()) dock.rest();
    dock.show();
    if (std::exchange(hasNewDock_, false)) giveHeight(dock, wished);
    if (!isResting()) dock.goOn();
    note({true, true, true});
}

void PanelDocks::remove(ui::Panel& panel) {
    std::erase_if(actions_, [&](const Action& action) { return action.panel == &panel; });
    if (entered_ == &panel) entered_ = nullptr;
    PanelDock* dock = dockOf(panel);
    if (!dock) return;
    const bool hadKeyboard = dock->view().hasKeyboard();
    dock->release();
    if (hadKeyboard && onLeave) onLeave();
}

// While they rest they have been asked to finish what they had half done.
bool PanelDocks::mayEnd() {
    return isResting() || std::all_of(docks_.begin(), docks_.end(), [](const PanelDock* dock) {
               return !dock->panel() || !dock->panel()->running() || dock->panel()->mayEnd();
           });
}

// --- Resting -----------------------------------------------------------------------------------------------

void PanelDocks::beginRest() {
    if (rests_++ > 0) return;
    for (PanelDock* dock : docks_) dock->rest();
}

void PanelDocks::endRest() {
    if (--rests_ > 0) return;
    for (PanelDock* dock : docks_) dock->goOn();
    note({.drawing = true});
    if (!actions_.empty()) acting_.start(0);
    if (const ui::Panel* panel = std::exchange(entered_, nullptr))
        if (PanelDock* dock = dockOf(*panel)) enter(*dock->panel());
}

// --- Telling and working -----------------------------------------------------------------------------------

void PanelDocks::note(const ui::WindowChange& change) {
    change_.drawing |= change.drawing;
    change_.selection |= change.selection;
    change_.view |= change.view;
    if (docks_.empty() || isResting()) return;
    const bool isUrgent = change_.drawing || change_.selection;
    telling_.start(isUrgent ? 0 : kViewRests);
}

void PanelDocks::tell() {
    if (isResting()) return;
    const ui::WindowChange change = std::exchange(change_, {});
    for (size_t i = 0; i < docks_.size(); ++i)
        if (docks_[i]->panel() && docks_[i]->panel()->running()) docks_[i]->tell(change);
    working_.start(0);
}

void PanelDocks::work() {
    if (isResting()) return;
    bool goesOn = false;
    for (size_t i = 0; i < docks_.size(); ++i)
        if (docks_[i]->panel()) goesOn |= docks_[i]->work();
    if (goesOn) working_.start(0);
}

void PanelDocks::wake(ui::Panel& panel) {
    if (PanelDock* dock = dockOf(panel)) dock->hasWork = true;
    if (!isResting() && !working_.isActive()) working_.start(0);
}

// --- Acting ------------------------------------------------------------------------------------------------

void PanelDocks::perform(ui::Panel& panel, std::function<void()> action) {
    actions_.push_back({&panel, std::move(action)});
    if (!isResting()) acting_.start(0);
}

void PanelDocks::act() {
    if (isResting() || actions_.empty() || !onAction) return;
    const Action next = std::move(actions_.front());
    actions_.pop_front();
    if (next.panel->running()) onAction(next.action);
    if (!actions_.empty()) acting_.start(0);
}

void PanelDocks::enter(ui::Panel& panel) {
    if (isResting()) {
        entered_ = &panel;
        return;
    }
    PanelDock* dock = dockOf(panel);
    if (!dock) return;
    dock->show();
    dock->raise();
    dock->activateWindow();
    dock->view().showFocus();
}

void PanelDocks::leave(ui::Panel&) {
    window_.activateWindow();
    if (onLeave) onLeave();
}

}  // namespace hostcad
