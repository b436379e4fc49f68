#include "hostcad/window/legend.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

#include "hostcad/window/overlay_colours.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

constexpr int kFontSize = 12;
constexpr int kRowHeight = 18;
constexpr int kEdge = 8;
constexpr int kSwatch = 14;
constexpr int kGap = 8;
constexpr int kWidestText = 240;
constexpr int kLeastRows = 3;

// The same on screens and paper, whatever the desktop has.
QFont legendFont(bool isBold) {
    QFont font("sans-serif");
    font.setPixelSize(kFontSize);
    font.setBold(isBold);
    font.setHintingPreference(QFont::PreferVerticalHinting);
    return font;
}

QString lineOf(std::string_view text) {
    return ui::toQt(text).simplified();
}

}  // namespace

LegendPicture::LegendPicture(QSize room, int corner) {
    for (const overlay::Legend* legend : shownLegends()) {
        rows_.push_back({{}, true, legend->title.empty() ? "Legend" : lineOf(legend->title), {}});
        for (const overlay::LegendRow& row : legend->rows)
            rows_.push_back({row.colour, false, lineOf(row.text), QString::number(row.count)});
    }
    if (rows_.empty()) return;
    const int most = std::max((room.height() - 2 * kEdge) / kRowHeight, kLeastRows);
    if (std::ssize(rows_) > most) {
        const auto isClass = [](const Row& row) { return row.colour.has_value(); };
        const auto first = rows_.begin() + (most - 1);
        const auto left = std::count_if(first, rows_.end(), isClass);
        rows_.erase(first, rows_.end());
        rows_.push_back({{}, false, "and " + QString::number(left) + " more", {}});
    }
    const QFontMetrics plain(legendFont(false)), bold(legendFont(true));
    const int widest = std::clamp(room.width() / 3, 2 * kSwatch, kWidestText);
    int text = 0, count = 0;
    for (Row& row : rows_) {
        const QFontMetrics& metrics = row.isTitle ? bold : plain;
        row.text = metrics.elidedText(row.text, Qt::ElideRight, widest);
        const int beside = row.colour ? kSwatch + kGap : &row == &rows_.front() ? corner : 0;
        text = std::max(text, beside + metrics.horizontalAdvance(row.text));
        if (!row.count.isEmpty()) count = std::max(count, kGap + metrics.horizontalAdvance(row.count));
    }
    size_ = {2 * kEdge + text + count, 2 * kEdge + kRowHeight * static_cast<int>(rows_.size())};
}

void LegendPicture::paint(QPainter& painter, const Surface& surface) const {
    const QColor ink = QColor::fromRgb(surface.ink);
    painter.save();
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setPen(QColor::fromRgb(faintOn(surface, surface.ink)));
    painter.setBrush(QColor::fromRgb(surface.ground));
    painter.drawRect(QRectF(0.5, 0.5, size_.width() - 1, size_.height() - 1));
    painter.setPen(ink);
    QRect line(kEdge, kEdge, size_.width() - 2 * kEdge, kRowHeight);
    for (const Row& row : rows_) {
        QRect text = line;
        if (row.colour) {
            const QRect swatch(line.left(), line.top() + (kRowHeight - kSwatch) / 2, kSwatch, kSwatch);
            painter.fillRect(swatch, QColor::fromRgb(readableOn(surface, *row.colour)));
            text.setLeft(line.left() + kSwatch + kGap);
        }
        painter.setFont(legendFont(row.isTitle));
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, row.text);
        painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, row.count);
        line.translate(0, kRowHeight);
    }
    painter.restore();
}

QString LegendPicture::text() const {
    QString all;
    for (const Row& row : rows_) all += row.text + (row.count.isEmpty() ? "" : ": " + row.count) + "\n";
    return all;
}

}  // namespace hostcad
