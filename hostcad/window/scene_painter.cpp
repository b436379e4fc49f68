#include "hostcad/window/scene_painter.h"

#include <QPainter>
#include <cmath>

#include "hostcad/window/drawn_text.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

// All in pixels of the desktop.
constexpr double kSmallestEntity = 1.5;  // smaller ones are dots
constexpr double kSmallestText = 5;      // high; smaller ones are lines
constexpr double kSmallestTextLine = 0.7;
constexpr double kLargestText = 3000;
constexpr double kFinestPattern = 4;  // long; finer ones are plain lines
constexpr double kPoint = 2;
constexpr size_t kTextsOfMovingPicture = 400;
constexpr int kMarkThickness = 2;
constexpr uint32_t kOpaque = 0xFF000000;

}  // namespace

ScenePainter::ScenePainter(const Scene& scene, const ViewPlace& place, double pixelRatio,
                           const Surface& surface)
    : scene_(scene),
      place_{place.centre, place.scale * pixelRatio},
      pixelRatio_(pixelRatio),
      surface_(surface) {
    colours_.fill({0, readableOn(surface, 0)});
}

uint32_t ScenePainter::shown(uint32_t colour) {
    constexpr uint32_t kMixing = 2654435769;  // spreads what differs in any bit
    ShownColour& known = colours_[colour * kMixing >> 26];
    if (known.colour != colour) known = {colour, readableOn(surface_, colour)};
    return known.shown;
}

void ScenePainter::begin(const QImage& picture) {
    halfWidth_ = picture.width() / 2.0;
    halfHeight_ = picture.height() / 2.0;
    area_ = {};
    area_.add(place_.centre.x - halfWidth_ / place_.scale, place_.centre.y - halfHeight_ / place_.scale);
    area_.add(place_.centre.x + halfWidth_ / place_.scale, place_.centre.y + halfHeight_ / place_.scale);
    texts_.clear();
}

void ScenePainter::paint(QImage& picture, const std::vector<bool>& marked, bool isMoving,
                         std::span<const uint32_t> colours) {
    begin(picture);
    picture.fill(surface_.ground);
    {
        LineRaster raster(picture);
        const int plain = std::max(1, static_cast<int>(std::lround(pixelRatio_)));
        std::span<const SceneEntity> entities = scene_.entities();
        const double smallest = kSmallestEntity * pixelRatio_ / place_.scale;
        scene_.visit(area_, [&](size_t place) {
            const SceneEntity& entity = entities[place];
            const bool isMarked = place < marked.size() && marked[place];
            const bool isColoured = place < colours.size() && colours[place] != 0;
            const uint32_t given = isColoured ? shown(colours[place] & ~kOpaque) : 0;
            const uint32_t* colour = isMarked ? &kMarkColour : isColoured ? &given : nullptr;
            if (!entity.endless && entity.box.width() < smallest && entity.box.height() < smallest)
                return paintDot(raster, entity, colour);
            raster.setThickness(isMarked ? kMarkThickness * plain : plain);
            paintEntity(raster, entity, colour);
        });
        if (isMoving && texts_.size() > kTextsOfMovingPicture) {
            for (const PendingText& text : texts_) paintTextLine(raster, *text.text, text.colour);
            texts_.clear();
        }
    }
    paintTexts(picture);
}

void ScenePainter::paintOver(QImage& picture, const std::vector<size_t>& places, uint32_t colour,
                             int thickness) {
    begin(picture);
    {
        LineRaster raster(picture);
        raster.setThickness(static_cast<int>(std::lround(thickness * pixelRatio_)));
        for (size_t place : places)
            if (const SceneEntity& entity = scene_.entities()[place]; entity.visible)
                paintEntity(raster, entity, &colour);
    }
    paintTexts(picture);
}

// The picture looks the same and costs a hundredth.
void ScenePainter::paintDot(LineRaster& raster, const SceneEntity& entity, const uint32_t* colour) {
    const Point centre = entity.box.centre();
    PlanePoint middle{centre.x, centre.y};
    if (entity.lineCount > 0)
        raster.dot(toPicture(middle), 1,
                   kOpaque | (colour ? *colour : shown(scene_.lines(entity).front().colour)));
    else if (entity.textCount > 0)
        raster.dot(
            toPicture(middle), 1,
            kOpaque | (colour ? *colour : faintOn(surface_, shown(scene_.texts(entity).front().colour))));
}

void ScenePainter::paintEntity(LineRaster& raster, const SceneEntity& entity, const uint32_t* colour) {
    std::span<const SceneLine> lines = scene_.lines(entity);
    for (size_t i = 0; i < lines.size();) {
        const uint32_t own = kOpaque | (colour ? *colour : shown(lines[i].colour));
        if (lines[i].fill == Fill::None)
            paintLine(raster, lines[i++], own);
        else
            i += paintArea(raster, lines.subspan(i), own);
    }
    for (const SceneText& text : scene_.texts(entity)) {
        const double height = std::hypot(text.upX, text.upY) * place_.scale / pixelRatio_;
        const uint32_t own = kOpaque | (colour ? *colour : shown(text.colour));
        if (height < kSmallestTextLine || height > kLargestText) continue;
        if (height < kSmallestText)
            paintTextLine(raster, text, own);
        else
            texts_.push_back({&text, own});
    }
}

void ScenePainter::paintLine(LineRaster& raster, const SceneLine& line, uint32_t colour) {
    std::span<const PlanePoint> points = scene_.vertices(line);
    if (points.size() == 1) {
        raster.dot(toPicture(points[0]), static_cast<int>(std::lround(kPoint * pixelRatio_)), colour);
    } else if (line.pattern && scene_.pattern(line).length * place_.scale >= kFinestPattern * pixelRatio_) {
        paintDashes(raster, line, colour);
    } else {
        QPointF from = toPicture(points[0]);
        for (const PlanePoint& p : points.subspan(1)) {
            QPointF to = toPicture(p);
            raster.line(from, to, colour);
            from = to;
        }
    }
}

// The area that the first of some lines begins; gives the number of its rings.
size_t ScenePainter::paintArea(LineRaster& raster, std::span<const SceneLine> lines, uint32_t colour) {
    std::vector<std::vector<QPointF>> rings;
    for (const SceneLine& line : lines) {
        if (!rings.empty() && line.fill != Fill::SameArea) break;
        for (rings.emplace_back(); const PlanePoint& p : scene_.vertices(line))
            rings.back().push_back(toPicture(p));
    }
    raster.area(rings, colour);
    return rings.size();
}

// The pattern runs on from one piece of a line to the next.
void ScenePainter::paintDashes(LineRaster& raster, const SceneLine& line, uint32_t colour) {
    const LinePattern& pattern = scene_.pattern(line);
    std::span<const PlanePoint> points = scene_.vertices(line);
    auto distance = [](QPointF a, QPointF b) { return std::hypot(b.x() - a.x(), b.y() - a.y()); };
    auto lengthOf = [&](size_t dash) { return std::abs(pattern.dashes[dash]) * place_.scale; };
    double begun = 0;  // length of the line so far, in pixels
    for (size_t i = 0; i + 1 < points.size(); ++i) {
        QPointF from = toPicture(points[i]), to = toPicture(points[i + 1]);
        const QPointF start = from;
        const double whole = distance(from, to);
        if (whole > 0 && raster.clip(from, to)) {
            const QPointF direction = (toPicture(points[i + 1]) - start) / whole;
            const double end = distance(start, to);
            double at = distance(start, from);
            // Where in the pattern the part that is seen begins.
            double phase = std::fmod(begun + at, pattern.length * place_.scale);
            size_t dash = 0;
            while (dash + 1 < pattern.dashes.size() && phase >= lengthOf(dash)) phase -= lengthOf(dash++);
            while (at < end) {
                const double stop = at + std::max(lengthOf(dash) - phase, 0.0);
                if (pattern.dashes[dash] >= 0)
                    raster.line(start + direction * at, start + direction * std::min(stop, end), colour);
                at = stop;
                phase = 0;
                dash = (dash + 1) % pattern.dashes.size();
            }
        }
        begun += whole;
    }
}

void ScenePainter::paintTextLine(LineRaster& raster, const SceneText& text, uint32_t colour) {
    raster.line(toPicture(text.corner(0, 0.5)), toPicture(text.corner(1, 0.5)),
                kOpaque | faintOn(surface_, colour));
}

void ScenePainter::paintTexts(QImage& picture) {
    if (texts_.empty()) return;
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(drawingFont());
    const double pixel = 1 / drawingFontCapital();
    for (const PendingText& pending : texts_) {
        const SceneText& text = *pending.text;
        Box box;
        for (double x : {0.0, 1.0})
            for (double y : {-0.3, 1.3}) {
                PlanePoint p = text.corner(x, y);
                box.add(p.x, p.y);
            }
        if (!meet(box, area_)) continue;
        QPointF at = toPicture(text.corner(0, 0));
        const double s = place_.scale * pixel;
        painter.setTransform(
            QTransform(text.alongX * s, -text.alongY * s, -text.upX * s, text.upY * s, at.x(), at.y()));
        painter.setPen(QColor::fromRgb(pending.colour));
        painter.drawText(QPointF(), ui::toQt(text.text));
    }
}

}  // namespace hostcad
