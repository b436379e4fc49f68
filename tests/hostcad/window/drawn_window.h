// The window with a drawing of a test's own, looked at on the screen and on paper.
#pragma once

#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QRegularExpression>
#include <string>

#include "tests/hostcad/window/window_fixture.h"

constexpr uint32_t kRed = 0xFF0000, kGreen = 0x00FF00, kYellow = 0xFFFF00, kWhite = 0xFFFFFF;

class DrawnWindow : public Window {
  protected:
    struct Page {
        double width = 0, height = 0;
        QImage picture;  // the one that is on it
    };

    void SetUp() override {
        Window::SetUp();
        ASSERT_EQ(host_->newDrawing(), "");
        window_.runLine("REGEN");
    }
    void make(const std::string& groups) { ASSERT_NE(lisp("(entmake '(" + groups + "))"), "nil") << groups; }
    // One unit a pixel, with 0, 0 in the lower left corner.
    QImage picture() {
        window_.runLine("REGEN");
        QSize size = window_.canvas().size();
        window_.canvas().setView(
            {{size.width() / 2.0, size.height() / 2.0, 0}, size.height() * 1.0, size.width() * 1.0});
        QTest::qWait(200);
        return window_.canvas().grab().toImage();
    }
    // Pixels of a colour within a box of the drawing.
    int pixels(const QImage& picture, int left, int bottom, int right, int top, uint32_t colour) {
        int count = 0;
        for (int x = left; x <= right; ++x)
            for (int y = bottom; y <= top; ++y)
                count += (picture.pixel(x, picture.height() - 1 - y) & 0xFFFFFF) == colour;
        return count;
    }
    // Saves what is seen as a PDF by the menu, and reads that.
    void printPage(Page& page) {
        person({[&] { menuEntry("Save as PDF...")->trigger(); },
                [&] {
                    auto* box = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
                    ASSERT_NE(box, nullptr);
                    box->findChild<QLineEdit*>()->setText(QString::fromStdString(path("page.pdf")));
                    QTest::keyClick(box->findChild<QLineEdit*>(), Qt::Key_Enter);
                },
                [] {}});
        settle();
        EXPECT_TRUE(says("Saved as " + QString::fromStdString(path("page.pdf"))));
        QFile file(QString::fromStdString(path("page.pdf")));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray pdf = file.readAll();
        ASSERT_TRUE(pdf.startsWith("%PDF-"));
        static const QRegularExpression kBox("/MediaBox \\[0 0 ([0-9.]+) ([0-9.]+)\\]");
        QRegularExpressionMatch media = kBox.match(QString::fromLatin1(pdf));
        ASSERT_TRUE(media.hasMatch());
        page.width = media.captured(1).toDouble(), page.height = media.captured(2).toDouble();
        // Its one picture, as it stands in the file: three bytes a pixel, packed.
        const qsizetype object = pdf.indexOf("/Subtype /Image");
        ASSERT_GE(object, 0);
        auto number = [&](const char* name) {
            const qsizetype at = pdf.indexOf(name, object) + qstrlen(name);
            return pdf.mid(at, pdf.indexOf('\n', at) - at).trimmed().toInt();
        };
        const int across = number("/Width"), down = number("/Height");
        const qsizetype data = pdf.indexOf("stream\n", object) + 7;
        QByteArray packed("\0\0\0\0", 4);  // a hint at the size, which is not known
        packed += pdf.mid(data, pdf.indexOf("endstream", data) - data);
        const QByteArray bytes = qUncompress(packed);
        ASSERT_EQ(bytes.size(), qsizetype(across) * down * 3);
        page.picture = QImage(reinterpret_cast<const uchar*>(bytes.constData()), across, down, across * 3,
                              QImage::Format_RGB888)
                           .convertToFormat(QImage::Format_RGB32);
    }
};
