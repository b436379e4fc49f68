#include "hostcad/window/start_page.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace hostcad {
namespace {

constexpr int kMostRecentShown = 5;
constexpr int kWidth = 420;

}  // namespace

StartPage::StartPage(const QString& title, const QStringList& recent, bool hasSample, QWidget* canvas)
    : QFrame(canvas) {
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    setAccessibleName("Start");
    auto* column = new QVBoxLayout(this);
    auto* heading = new QLabel(title);
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    heading->setFont(font);
    column->addWidget(heading);

    auto add = [&](const QString& caption, const QString& tip, const std::function<void()>& act) {
        auto* button = new QPushButton(
            fontMetrics().elidedText(caption, Qt::ElideMiddle, kWidth - 60, Qt::TextShowMnemonic));
        button->setToolTip(tip);
        connect(button, &QPushButton::clicked, this, act);
        column->addWidget(button);
    };
    // The page hides while what was chosen goes on, so nothing of it is used behind the call.
    add("&Open a drawing...", "", [this] { onOpen(); });
    if (hasSample) add("Look at the &sample", "", [this] { onSample(); });
    if (!recent.isEmpty()) column->addWidget(new QLabel("Recent drawings"));
    for (const QString& path : recent.mid(0, kMostRecentShown)) {
        const QFileInfo file(path);
        // An ampersand of a name is no mnemonic.
        QString caption = file.fileName() + " - " + file.dir().dirName();
        add(caption.replace('&', "&&"), path, [this, path] { onRecent(path); });
    }
    canvas->installEventFilter(this);
    place();
    show();
}

bool StartPage::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) place();
    return QFrame::eventFilter(watched, event);
}

void StartPage::place() {
    const QSize room = parentWidget()->size();
    resize(sizeHint().expandedTo({kWidth, 0}).boundedTo(room));
    move((room.width() - width()) / 2, (room.height() - height()) / 2);
}

}  // namespace hostcad
