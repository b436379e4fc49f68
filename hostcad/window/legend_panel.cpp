#include "hostcad/window/legend_panel.h"

#include <QEvent>
#include <QPainter>
#include <QToolButton>

#include "hostcad/drawing/overlay_sets.h"

namespace hostcad {
namespace {

constexpr int kFromEdge = 10;
constexpr int kButton = 20;

}  // namespace

LegendPanel::LegendPanel(QWidget* canvas) : QWidget(canvas), close_(new QToolButton(this)) {
    setCursor(Qt::ArrowCursor);
    setAttribute(Qt::WA_NoMousePropagation);  // a click on it is none on the drawing behind it
    setAccessibleName("Legend");
    close_->setText("\u00D7");
    close_->setAccessibleName("Hide the legend");
    close_->setToolTip("Hide the legend; View, Legend brings it back");
    close_->resize(kButton, kButton);
    // It stands on the ground of the drawing, which is dark on any desktop.
    auto name = [](uint32_t colour) { return QColor::fromRgb(colour).name(); };
    const uint32_t faint = faintOn(kScreen, kScreen.ink);
    close_->setStyleSheet("QToolButton { color: " + name(kScreen.ink) +
                          "; background: " + name(kScreen.ground) +
                          "; border: 1px solid transparent; }"
                          "QToolButton:hover { border-color: " +
                          name(faint) +
                          "; }"
                          "QToolButton:focus { border-color: " +
                          name(kHoverColour) + "; }");
    connect(close_, &QToolButton::clicked, this, [this] { setWanted(false); });
    canvas->installEventFilter(this);
    hide();
}

void LegendPanel::follow() {
    if (overlaySets().revision() == revision_) return;
    revision_ = overlaySets().revision();
    lay();
}

void LegendPanel::setWanted(bool on) {
    isWanted_ = on;
    lay();
}

void LegendPanel::lay() {
    const QSize room = parentWidget()->size() - QSize(2 * kFromEdge, 2 * kFromEdge);
    picture_ = LegendPicture(room, kButton);
    setVisible(isWanted_ && !picture_.isEmpty());
    if (picture_.isEmpty()) return;
    resize(picture_.size());
    move(parentWidget()->width() - width() - kFromEdge, kFromEdge);
    close_->move(width() - kButton - 2, 2);
    setAccessibleDescription(picture_.text());
    update();
}

bool LegendPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) lay();
    return QWidget::eventFilter(watched, event);
}

void LegendPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    picture_.paint(painter, kScreen);
}

}  // namespace hostcad
