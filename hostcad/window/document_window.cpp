#include "hostcad/window/document_window.h"

#include <QImage>
#include <QScreen>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

namespace hostcad {
namespace {

// Pictures that are wider than the page are shown smaller.
class Browser : public QTextBrowser {
  public:
    using QTextBrowser::QTextBrowser;

  protected:
    QVariant loadResource(int type, const QUrl& name) override {
        QVariant loaded = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource) return loaded;
        QImage picture = loaded.value<QImage>();
        if (picture.isNull()) picture.loadFromData(loaded.toByteArray());
        const int room = std::max(100, viewport()->width() - 40);
        if (picture.width() <= room) return picture;
        // With all colours, since a palette would make dots of those between.
        return picture.convertToFormat(QImage::Format_ARGB32).scaledToWidth(room, Qt::SmoothTransformation);
    }
};

}  // namespace

DocumentWindow::DocumentWindow(QWidget* parent) : QDialog(parent), browser_(new Browser(this)) {
    setWindowFlags(windowFlags() | Qt::WindowMaximizeButtonHint);
    resize(QSize(900, 700).boundedTo(screen()->availableSize()));
    browser_->setOpenExternalLinks(true);
    browser_->setAccessibleName("Document");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(browser_);
    connect(browser_, &QTextBrowser::sourceChanged, this,
            [this](const QUrl& source) { setWindowTitle(source.fileName()); });
}

void DocumentWindow::open(const QString& path) {
    show();
    raise();
    browser_->setSource(QUrl::fromLocalFile(path));
    browser_->setFocus();
}

}  // namespace hostcad
