#include "platform/ui/qt/picture_widget.h"

#include <QMouseEvent>
#include <QPainter>

#include "platform/images/decode.h"
#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_image.h"
#include "platform/ui/qt/qt_text.h"

namespace ui {
namespace {

class PictureView : public QWidget {
  public:
    PictureView(Picture& picture, Dialog& dialog, DialogWindow& window)
        : QWidget(&window), picture_(picture), dialog_(dialog), window_(window) {
        setFixedSize(window.scaled(picture.width()), window.scaled(picture.height()));
    }

    void refresh() {
        const bool clickable = picture_.isClickable();
        setFocusPolicy(clickable ? Qt::StrongFocus : Qt::NoFocus);
        setCursor(clickable ? Qt::PointingHandCursor : Qt::ArrowCursor);
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        const QRect frame = frameRect();
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Mid));
        painter.setBrush(palette().base());
        painter.drawRect(frame.adjusted(0, 0, -1, -1));
        prepare();
        // Cut to whole pixels, its ratio may differ from that of the inside by one.
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        if (!shown_.isNull()) painter.drawImage(frame.adjusted(1, 1, -1, -1), shown_);
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton && picture_.isClickable() && rect().contains(event->pos()))
            dialog_.userClick(picture_);
    }

  private:
    QRect frameRect() const {
        QRect frame(0, 0, window_.scaled(picture_.frame().width), window_.scaled(picture_.frame().height));
        frame.moveCenter(rect().center());
        return frame;
    }

    // The picture as many pixels large as the screen has for the inside of the frame.
    void prepare() {
        const qreal ratio = devicePixelRatioF();
        if (preparedFor_ == picture_.changes() && ratio == ratio_) return;
        preparedFor_ = picture_.changes();
        ratio_ = ratio;
        const QSize inside = (frameRect().size() - QSize(2, 2)) * ratio;
        const images::Size size{inside.width(), inside.height()};
        images::Image image;
        if (!picture_.image().empty())
            image = images::scaled(picture_.image(), images::fitted(picture_.image().size, size));
        else if (!picture_.path().empty())
            image = images::previewOfFile(picture_.path(), size);
        shown_ = toQt(image, ratio);
    }

    Picture& picture_;
    Dialog& dialog_;
    DialogWindow& window_;
    QImage shown_;
    qreal ratio_ = 0;
    int preparedFor_ = -1;
};

class PictureWidget : public ControlWidget {
  public:
    PictureWidget(Picture& picture, Dialog& dialog, DialogWindow& window)
        : picture_(picture), view_(new PictureView(picture, dialog, window)) {}
    QWidget* widget() override { return view_; }
    void update() override {
        view_->setEnabled(picture_.enabled());
        view_->setVisible(picture_.visible());
        view_->setToolTip(toQt(picture_.explanation()));
        view_->refresh();
    }

  private:
    Picture& picture_;
    PictureView* view_;  // the window's
};

}  // namespace

std::unique_ptr<ControlWidget> makePictureWidget(Picture& picture, Dialog& dialog, DialogWindow& window) {
    return std::make_unique<PictureWidget>(picture, dialog, window);
}

}  // namespace ui
