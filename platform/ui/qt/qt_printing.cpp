#include "platform/ui/qt/qt_printing.h"

#include <QDir>
#include <QFontMetrics>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <algorithm>
#include <numeric>
#include <vector>

#include "platform/ui/backend.h"
#include "platform/ui/qt/qt_text.h"

namespace ui {
namespace {

constexpr double kModelDpi = 96.0;  // of the widths and fonts of a grid
constexpr int kCellPadding = 4;     // on each side of a cell's text, at 96 dpi
constexpr int kFootRows = 2;        // what a foot takes of the page, in rows

// The widths of the columns in pixels at 96 dpi, so that no text is cut.
std::vector<int> columnWidths(const PrintJob& job, const QFontMetrics& metrics) {
    std::vector<int> widths;
    for (int column = 1; column <= job.table.columns(); ++column) {
        int width = job.table.columnWidth(column);
        for (const PrintedRows& page : job.pages)
            for (int row = page.first; row <= page.last; ++row)
                width = std::max(
                    width, metrics.horizontalAdvance(toQt(job.table.text(column, row))) + 2 * kCellPadding);
        widths.push_back(width);
    }
    return widths;
}

class PagePainter {
  public:
    PagePainter(const PrintJob& job, QPagedPaintDevice& device, QPainter& painter)
        : job_(job), painter_(painter), font_(toQt(job.table.font().family)) {
        font_.setPixelSize(std::max(1, job.table.font().height));
        QFontMetrics metrics(font_);
        rowHeight_ = metrics.height() + kCellPadding;
        widths_ = columnWidths(job, metrics);
        const int width = std::accumulate(widths_.begin(), widths_.end(), 0);
        int rows = job.foot.empty() ? 0 : kFootRows;
        for (const PrintedRows& page : job.pages)
            rows = std::max(rows, page.last - page.first + 1 + (job.foot.empty() ? 0 : kFootRows));
        const QRectF page = device.pageLayout().paintRect(QPageLayout::Inch);
        const QSizeF room(page.width() * kModelDpi, page.height() * kModelDpi);
        const double shrunk = std::min(
            {1.0, room.width() / std::max(1, width), room.height() / std::max(1, rows * rowHeight_)});
        scale_ = painter.device()->logicalDpiX() / kModelDpi * shrunk;
        paper_ = room / shrunk;
    }

    void paint(size_t page) {
        const PrintedRows rows = job_.pages[page];
        painter_.resetTransform();
        painter_.scale(scale_, scale_);
        painter_.setFont(font_);
        int top = 0;
        for (int row = rows.first; row <= rows.last; ++row, top += rowHeight_) {
            int left = 0;
            for (int column = 1; column <= job_.table.columns(); ++column) {
                int width = widths_[static_cast<size_t>(column - 1)];
                paintCell(job_.table.cell(column, row), QRect(left, top, width, rowHeight_));
                left += width;
            }
        }
        if (!job_.foot.empty()) paintFoot(toQt(pageText(job_, page)));
    }

  private:
    void paintFoot(const QString& number) {
        const QFontMetrics metrics(font_);
        const QRect place(0, static_cast<int>(paper_.height()) - rowHeight_, static_cast<int>(paper_.width()),
                          rowHeight_);
        painter_.setPen(Qt::black);
        painter_.drawText(place, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, number);
        const int room = place.width() - metrics.horizontalAdvance(number + "  ");
        painter_.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          metrics.elidedText(toQt(job_.foot), Qt::ElideMiddle, room));
    }

    void paintCell(const Cell& cell, const QRect& place) {
        if (cell.background != kOwnColour) painter_.fillRect(place, QColor(QRgb(cell.background)));
        painter_.setPen(cell.foreground != kOwnColour ? QColor(QRgb(cell.foreground)) : QColor(Qt::black));
        painter_.drawText(place.adjusted(kCellPadding, 0, -kCellPadding, 0),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, toQt(cell.text));
    }

    const PrintJob& job_;
    QPainter& painter_;
    QFont font_;
    std::vector<int> widths_;  // as rowHeight_, pixels at 96 dpi
    int rowHeight_ = 0;
    double scale_ = 1.0;  // to pixels of the device
    QSizeF paper_;        // what there is of it between the margins, in the same pixels
};

// Where a PDF file goes as long as the person says nothing else.
QString suggestedFile(const std::string& title) {
    QString name = toQt(title).remove(QRegularExpression("[\\\\/:*?\"<>|]|\\.+$"));
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(QDir(folder).exists() ? folder : QDir::homePath()).filePath(name + ".pdf");
}

}  // namespace

bool paintPages(const PrintJob& job, QPagedPaintDevice& device) {
    device.setPageMargins(QMarginsF(job.margins.left, job.margins.top, job.margins.right, job.margins.bottom),
                          QPageLayout::Inch);
    QPainter painter;
    if (!painter.begin(&device)) return false;
    PagePainter pages(job, device, painter);
    for (size_t page = 0; page < job.pages.size(); ++page) {
        if (job.onPage && !job.onPage(page)) break;
        if (page > 0 && !device.newPage()) return false;
        pages.paint(page);
    }
    return painter.end();
}

bool printWithDialog(const PrintJob& job, QWidget* owner) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(toQt(job.title));
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(suggestedFile(job.title));
    }
    QPrintDialog dialog(&printer, owner);
    dialog.setOptions(QAbstractPrintDialog::PrintToFile);  // there is no range of pages to choose
    if (dialog.exec() != QDialog::Accepted) return false;
    if (paintPages(job, printer)) return true;
    const QString file = printer.outputFileName();
    messageBox("Error", "\"" + fromQt(file.isEmpty() ? printer.printerName() : file) +
                            "\" does not take the pages; nothing was printed, or not all of it.");
    return false;
}

}  // namespace ui
