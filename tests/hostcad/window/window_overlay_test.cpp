// Labels, colours and legends that programs show with the drawing.
#include <QToolButton>
#include <cmath>
#include <map>
#include <random>

#include "hostcad/drawing/host_names.h"
#include "hostcad/geometry/crossing.h"
#include "platform/ads/overlay.h"
#include "tests/hostcad/window/drawn_window.h"

using hostcad::currentDrawing;
using hostcad::ObjectId;
using hostcad::PlacedLabel;
using hostcad::Point;

namespace {

constexpr uint32_t kLabel = 0x40E0D0;  // no entity of the tests has it

class WindowOverlay : public DrawnWindow {
  protected:
    ObjectId last() { return currentDrawing().lastEntity(); }
    ObjectId makeOne(const std::string& groups) {
        make(groups);
        return last();
    }
    ObjectId makePoint(double x, double y) {
        return makeOne("(0 . \"POINT\") (10 " + std::to_string(x) + " " + std::to_string(y) + " 0.0)");
    }
    ObjectId makeLine(double x1, double y1, double x2, double y2, const std::string& more = "") {
        return makeOne("(0 . \"LINE\") " + more + " (10 " + std::to_string(x1) + " " + std::to_string(y1) +
                       " 0.0) (11 " + std::to_string(x2) + " " + std::to_string(y2) + " 0.0)");
    }
    ObjectId makeSquare(double x, double y, double size, const std::string& more = "") {
        auto corner = [](double cx, double cy) {
            return " (10 " + std::to_string(cx) + " " + std::to_string(cy) + ")";
        };
        return makeOne("(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") " + more +
                       " (100 . \"AcDbPolyline\") (90 . 4) (70 . 1)" + corner(x, y) + corner(x + size, y) +
                       corner(x + size, y + size) + corner(x, y + size));
    }
    static overlay::EntityName name(ObjectId id) {
        overlay::EntityName made{};
        hostcad::nameOf(id, made.data());
        return made;
    }
    // The set has them in the opposite order of the drawing.
    void label(const std::map<ObjectId, std::string>& texts, overlay::LabelStyle style = {}) {
        overlay::LabelSet set;
        style.colour = kLabel;
        set.style = style;
        for (auto text = texts.rbegin(); text != texts.rend(); ++text)
            set.labels.push_back({name(text->first), text->second});
        overlay::setLabels("TEST", std::move(set));
    }
    const PlacedLabel* labelOf(ObjectId id) {
        for (const PlacedLabel& placed : window_.canvas().labels())
            if (placed.entity == id) return &placed;
        return nullptr;
    }
    // Pixels of a label's colour, or as good as that, in a box of the drawing.
    int labelPixels(const QImage& shown, double left, double bottom, double right, double top) {
        int count = 0;
        for (int x = std::max(0, int(left)); x <= std::min(shown.width() - 1, int(right)); ++x)
            for (int y = std::max(0, int(bottom)); y <= std::min(shown.height() - 1, int(top)); ++y) {
                const QColor c(shown.pixel(x, shown.height() - 1 - y));
                count += c.green() > 150 && c.blue() > 140 && c.red() < 110;
            }
        return count;
    }
    void setPlace(double x, double y, double unitsAPixel) {
        const QSize size = window_.canvas().size();
        window_.canvas().setView({{x, y, 0}, size.height() * unitsAPixel, size.width() * unitsAPixel});
    }
    // A drawing with points, lines in all directions and squares, each with a label.
    std::map<ObjectId, std::string> makeCrowd(int count) {
        std::mt19937 random(11);
        std::uniform_real_distribution<double> any(20, 700);
        std::map<ObjectId, std::string> texts;
        for (int i = 0; i < count; ++i) {
            const double x = any(random), y = any(random) * 0.6;
            const ObjectId id = i % 3 == 0   ? makePoint(x, y)
                                : i % 3 == 1 ? makeLine(x, y, any(random), any(random) * 0.6)
                                             : makeSquare(x, y, 60);
            texts[id] = "Label " + std::to_string(i) + (i % 4 == 0 ? "\nsecond" : "");
        }
        return texts;
    }
};

using Corners = std::array<Point, 4>;

Corners cornersOf(const PlacedLabel& label, double scale) {
    const double c = std::cos(label.angle), s = std::sin(label.angle);
    const double w = label.width / 2 / scale, h = label.height / 2 / scale;
    auto corner = [&](double x, double y) {
        return Point{label.at.x + x * c - y * s, label.at.y + x * s + y * c, 0};
    };
    return {corner(-w, -h), corner(w, -h), corner(w, h), corner(-w, h)};
}

// By an axis that divides them, as convex things that do not meet have one along a side.
bool overlap(const Corners& a, const Corners& b) {
    for (const Corners* sides : {&a, &b})
        for (size_t i = 0; i < 4; ++i) {
            const Point side = (*sides)[(i + 1) % 4] - (*sides)[i];
            auto range = [&](const Corners& of) {
                double low = INFINITY, high = -INFINITY;
                for (const Point& p : of) {
                    const double at = p.x * -side.y + p.y * side.x;
                    low = std::min(low, at), high = std::max(high, at);
                }
                return std::pair(low, high);
            };
            const auto [lowA, highA] = range(a);
            const auto [lowB, highB] = range(b);
            const double slack = 1e-3 * std::hypot(side.x, side.y);
            if (highA <= lowB + slack || highB <= lowA + slack) return false;
        }
    return true;
}

void expectNoOverlap(const std::vector<PlacedLabel>& labels, double scale) {
    for (size_t i = 0; i < labels.size(); ++i)
        for (size_t k = 0; k < i; ++k)
            ASSERT_FALSE(overlap(cornersOf(labels[i], scale), cornersOf(labels[k], scale)))
                << labels[i].label->text << " over " << labels[k].label->text;
}

}  // namespace

TEST_F(WindowOverlay, LabelsStandBesidePointsInsideAreasAndAlongLines) {
    const ObjectId point = makePoint(100, 100);
    const ObjectId square = makeSquare(200, 50, 100);
    const ObjectId up = makeLine(400, 50, 500, 150);
    const ObjectId back = makeLine(650, 150, 550, 250);  // from the right to the left
    label({{point, "Point"}, {square, "Square"}, {up, "Up"}, {back, "Back"}});
    const QImage shown = picture();
    EXPECT_GT(labelPixels(shown, 103, 92, 150, 108), 20);
    EXPECT_EQ(labelPixels(shown, 40, 85, 98, 115), 0);
    EXPECT_GT(labelPixels(shown, 225, 92, 275, 108), 20);
    EXPECT_NEAR(labelOf(square)->at.x, 250, 1);
    EXPECT_NEAR(labelOf(square)->at.y, 100, 1);
    // Above the line, and readable from below.
    EXPECT_NEAR(labelOf(up)->angle, M_PI / 4, 1e-3);
    EXPECT_GT(labelOf(up)->at.y - 100, labelOf(up)->at.x - 450 + 5);
    EXPECT_NEAR(labelOf(back)->angle, -M_PI / 4, 1e-3);
    EXPECT_GT(labelOf(back)->at.y - 200, -(labelOf(back)->at.x - 600) + 5);
    EXPECT_GT(labelPixels(shown, 430, 95, 455, 125), 10);
    // What is wished for in place of that.
    overlay::LabelStyle style;
    style.placement = overlay::Placement::Beside;
    label({{square, "Square"}, {up, "Up"}}, style);
    picture();
    EXPECT_GT(labelOf(square)->at.x - labelOf(square)->width / 2, 300);
    EXPECT_EQ(labelOf(up)->angle, 0);
    style.placement = overlay::Placement::Along;
    label({{square, "Square"}, {point, "Point"}}, style);
    picture();
    EXPECT_GT(std::abs(labelOf(square)->at.x - 250) + std::abs(labelOf(square)->at.y - 100), 50);
    EXPECT_GT(labelOf(point)->at.x, 103);
}

TEST_F(WindowOverlay, LinesOfTextStandBelowEachOtherAndTowardsTheirPoint) {
    const ObjectId first = makePoint(400, 300), second = makePoint(400, 300);
    const ObjectId square = makeSquare(100, 100, 120), same = makeSquare(100, 100, 120);
    makeLine(0, 160, 300, 160, "(62 . 1)");
    label({{first, "MMMMMM\nM"}, {second, "MMMMMM\nM"}, {square, "MM"}, {same, "MM"}});
    QImage shown = picture();
    // To the right of the point, and to the left: the short line is at the point's side.
    ASSERT_GT(labelOf(first)->at.x, 400);
    ASSERT_LT(labelOf(second)->at.x, 400);
    EXPECT_GT(labelPixels(shown, 404, 301, 490, 314), 60);
    EXPECT_GT(labelPixels(shown, 404, 284, 425, 298), 20);
    EXPECT_EQ(labelPixels(shown, 440, 284, 490, 298), 0);
    EXPECT_GT(labelPixels(shown, 375, 284, 396, 298), 20);
    EXPECT_EQ(labelPixels(shown, 300, 284, 360, 298), 0);
    // What is behind a label is veiled.
    ASSERT_NEAR(labelOf(square)->at.y, 160, 0.1);
    EXPECT_EQ(pixels(shown, 148, 157, 172, 163, kRed), 0);
    EXPECT_GT(pixels(shown, 102, 157, 125, 163, kRed), 20);
    // Where the middle of an area is taken, there is its upper half.
    ASSERT_NE(labelOf(same), nullptr);
    EXPECT_NEAR(labelOf(same)->at.x, 160, 0.1);
    EXPECT_NEAR(labelOf(same)->at.y, 190, 0.1);
    // Each set has its own looks.
    overlay::LabelSet other;
    other.style.colour = kRed;
    other.style.height = 20;
    other.labels = {{name(makePoint(600, 200)), "M"}};
    overlay::setLabels("ZZZ", other);
    shown = picture();
    EXPECT_GT(pixels(shown, 600, 180, 640, 220, kRed), 20);
    EXPECT_GT(pixels(shown, 600, 206, 640, 209, kRed), 2);  // near the top of 20 pixels
    EXPECT_GT(labelPixels(shown, 404, 301, 490, 314), 60);
}

TEST_F(WindowOverlay, WhatIsLargerThanTheViewIsLabelledInWhatIsSeenOfIt) {
    const ObjectId square = makeSquare(0, 0, 100000);
    const ObjectId line = makeLine(-90000, -90000, 190000, 190000);
    label({{square, "Square"}, {line, "Line"}});
    picture();
    const QSize size = window_.canvas().size();
    for (double x : {1000.0, 100.0, -300.0}) {
        setPlace(x, x, 1);
        auto isSeen = [&](const PlacedLabel* label) {
            return label && std::abs(label->at.x - x) < size.width() / 2.0 &&
                   std::abs(label->at.y - x) < size.height() / 2.0;
        };
        const bool hasInside = x + std::min(size.width(), size.height()) / 2.0 > 20;
        EXPECT_EQ(isSeen(labelOf(square)), hasInside) << x;
        if (hasInside) {
            EXPECT_GT(std::min(labelOf(square)->at.x, labelOf(square)->at.y), 0);
        }
        ASSERT_TRUE(isSeen(labelOf(line))) << x;
        EXPECT_NEAR(labelOf(line)->angle, M_PI / 4, 1e-3);
        EXPECT_NEAR(labelOf(line)->at.y - labelOf(line)->at.x, std::sqrt(2) * (labelOf(line)->height / 2 + 3),
                    1);
    }
    for (double x = 1000; x < 4000; x += 250) {
        setPlace(x, 1000, 1);
        ASSERT_NE(labelOf(square), nullptr) << x;
        EXPECT_LT(std::abs(labelOf(square)->at.x - x), size.width() / 2.0) << x;
    }
    // With all of it in view they stand in the middle.
    setPlace(50000, 50000, 500);
    EXPECT_NEAR(labelOf(square)->at.x, 50000, 1);
    // A line that comes into view twice has it where more is seen.
    const ObjectId twice = makeOne(
        "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 5) (70 . 0) (10 -9000.0 "
        "-1100.0) (10 9000.0 -1100.0) (10 9000.0 -9000.0) (10 1200.0 -9000.0) (10 1200.0 9000.0)");
    label({{twice, "Twice"}});
    setPlace(1000, -1100, 1);
    ASSERT_NE(labelOf(twice), nullptr);
    EXPECT_EQ(labelOf(twice)->angle, 0);
    EXPECT_NEAR(labelOf(twice)->at.x, 1000, 1);
    // Also where it turns round beyond the view.
    const ObjectId back = makeOne(
        "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 3) (70 . 0) (10 -9000.0 "
        "-1100.0) (10 9000.0 -1150.0) (10 -9000.0 -1200.0)");
    label({{back, "Back"}});
    ASSERT_NE(labelOf(back), nullptr);
    EXPECT_NEAR(labelOf(back)->at.x, 1000, 1);
}

TEST_F(WindowOverlay, OnlyWhatIsSeenIsCounted) {
    std::map<ObjectId, std::string> texts{{makeSquare(100, 100, 60), "seen"}};
    for (int i = 0; i < 5; ++i) texts[makeSquare(-100, 100, 60)] = "beyond";
    label(texts);
    picture();
    EXPECT_GT(window_.canvas().labels().size(), 1u);
    EXPECT_EQ(overlay::labelCounts().placed, 1u);
    EXPECT_EQ(overlay::labelCounts().leftOut, 0u);
    overlay::LabelStyle style;
    style.height = 1;
    label(texts, style);
    EXPECT_EQ(overlay::labelCounts().tooSmall, 1u);
}

TEST(TakenCells, ABoxThatIsTakenMeetsNoOtherAndIsRefusedOnlyNearOne) {
    std::mt19937 random(23);
    std::uniform_real_distribution<double> x(0, 600), y(0, 400), angle(-M_PI / 2, M_PI / 2), size(2, 16);
    const QRectF area(0, 0, 600, 400);
    hostcad::TakenCells cells;
    cells.reset(area);
    auto corners = [](const hostcad::LabelBox& box, double more) {
        PlacedLabel label;
        label.at = {box.x, -box.y};
        label.angle = static_cast<float>(std::atan2(box.alongY, box.alongX));
        label.width = static_cast<float>(2 * (box.halfWidth + more));
        label.height = static_cast<float>(2 * (box.halfHeight + more));
        return cornersOf(label, 1);
    };
    std::vector<hostcad::LabelBox> taken;
    size_t refused = 0;
    for (int i = 0; i < 30000; ++i) {
        const double turn = i % 3 == 0 ? 0 : angle(random);
        const hostcad::LabelBox box{x(random),        y(random),      size(random),
                                    size(random) / 4, std::cos(turn), std::sin(turn)};
        auto meetsAny = [&](double more) {
            return std::any_of(taken.begin(), taken.end(), [&](const hostcad::LabelBox& other) {
                return overlap(corners(box, more), corners(other, 0));
            });
        };
        if (cells.takeFree(box)) {
            ASSERT_FALSE(meetsAny(0));
            taken.push_back(box);
        } else if (++refused % 20 == 0) {
            ASSERT_TRUE(!area.contains(box.bounds()) || meetsAny(6));
        }
    }
    EXPECT_GT(taken.size(), 500u);
    EXPECT_GT(refused, 10000u);
}

TEST_F(WindowOverlay, NoLabelIsOverAnotherAndThoseWithoutRoomAreCounted) {
    const std::map<ObjectId, std::string> texts = makeCrowd(240);
    label(texts);
    picture();
    const std::vector<PlacedLabel> placed = window_.canvas().labels();
    EXPECT_GT(placed.size(), 60u);
    EXPECT_LT(placed.size(), 240u);
    expectNoOverlap(placed, 1);
    const overlay::LabelCounts counts = overlay::labelCounts();
    EXPECT_EQ(counts.placed, placed.size());
    EXPECT_GT(counts.leftOut, 0u);
    EXPECT_LE(counts.placed + counts.leftOut, 240u);
    EXPECT_GE(counts.placed + counts.leftOut, 230u);  // some would be over the edge
    // Nobody is left out who has room where the first of its places is: points, whose place is known.
    for (const auto& [id, text] : texts) {
        const hostcad::Group* at = hostcad::find(currentDrawing().groups(id), 10);
        if (currentDrawing().type(id) != "POINT" || labelOf(id)) continue;
        bool isMet = false;
        const Corners around{Point{at->x(), at->y() - 14, 0},
                             {at->x() + 100, at->y() - 14, 0},
                             {at->x() + 100, at->y() + 14, 0},
                             {at->x(), at->y() + 14, 0}};
        for (const PlacedLabel& other : placed) isMet = isMet || overlap(around, cornersOf(other, 1));
        EXPECT_TRUE(isMet) << text;
    }
    // The first of the drawing comes first, whatever the order in the set.
    for (size_t i = 1; i < placed.size(); ++i) EXPECT_LT(placed[i - 1].entity, placed[i].entity);
    // The same drawing gives the same places.
    window_.runLine("REGEN");
    const std::vector<PlacedLabel>& again = window_.canvas().labels();
    ASSERT_EQ(again.size(), placed.size());
    for (size_t i = 0; i < placed.size(); ++i) {
        EXPECT_EQ(again[i].entity, placed[i].entity);
        EXPECT_EQ(again[i].at.x, placed[i].at.x);
        EXPECT_EQ(again[i].at.y, placed[i].at.y);
    }
}

TEST_F(WindowOverlay, LabelsStayWhileTheViewMovesAndFindNewPlacesWhenItIsZoomed) {
    label(makeCrowd(240));
    picture();
    const QSize size = window_.canvas().size();
    double x = size.width() / 2.0, y = size.height() / 2.0;
    std::mt19937 random(5);
    for (int step = 0; step < 30; ++step) {
        const std::vector<PlacedLabel> before = window_.canvas().labels();
        x += double(random() % 300) - 150;
        y += double(random() % 200) - 100;
        setPlace(x, y, 1);
        expectNoOverlap(window_.canvas().labels(), 1);
        for (const PlacedLabel& label : before) {
            const bool isSeen = std::abs(label.at.x - x) < size.width() / 2.0 - label.width &&
                                std::abs(label.at.y - y) < size.height() / 2.0 - label.width;
            if (!isSeen) continue;
            const PlacedLabel* now = labelOf(label.entity);
            ASSERT_NE(now, nullptr) << label.label->text;
            EXPECT_EQ(now->at.x, label.at.x);
            EXPECT_EQ(now->at.y, label.at.y);
        }
    }
    // Twice as near, in several steps: more of what is seen has a label.
    setPlace(350, 200, 1);
    for (double scale : {0.9, 0.75, 0.5, 0.25}) {
        setPlace(350, 200, scale);
        expectNoOverlap(window_.canvas().labels(), 1 / scale);
        EXPECT_NEAR(window_.canvas().labels().front().capital, 10, 1e-6);
    }
    const overlay::LabelCounts near = overlay::labelCounts();
    setPlace(350, 200, 2);
    const overlay::LabelCounts far = overlay::labelCounts();
    EXPECT_LT(near.leftOut * (far.placed + far.leftOut), far.leftOut * (near.placed + near.leftOut));
}

TEST_F(WindowOverlay, LabelsFollowTheirEntities) {
    const ObjectId point = makePoint(100, 100);
    const ObjectId line = makeLine(300, 100, 400, 100, "(8 . \"PLAN\")");
    label({{point, "Point"}, {line, "Line"}});
    picture();
    const double x = labelOf(point)->at.x;
    window_.runLine(
        "(progn (setq e (entget (entlast))) (foreach c '(10 11) (setq p (cdr (assoc c e)) e (subst (list c "
        "(car p) 250.0 0.0) (assoc c e) e))) (entmod e))");
    EXPECT_NEAR(labelOf(line)->at.y, 250 + 3 + labelOf(line)->height / 2, 0.1);
    window_.runLine("U");
    EXPECT_NEAR(labelOf(line)->at.y, 100 + 3 + labelOf(line)->height / 2, 0.1);
    window_.runLine("(entdel (entnext))");
    EXPECT_EQ(labelOf(point), nullptr);
    EXPECT_EQ(labelPixels(picture(), 90, 80, 200, 120), 0);
    EXPECT_EQ(overlay::labelCounts().placed, 1u);
    window_.runLine("U");
    ASSERT_NE(labelOf(point), nullptr);
    EXPECT_EQ(labelOf(point)->at.x, x);
    for (const char* hidden : {"_OFF", "_F"}) {
        const std::string shown = hidden == std::string("_OFF") ? "_ON" : "_T";
        window_.runLine(std::string("(command \"_.LAYER\" \"") + hidden + "\" \"PLAN\" \"\")");
        EXPECT_EQ(labelOf(line), nullptr) << hidden;
        EXPECT_NE(labelOf(point), nullptr);
        window_.runLine("(command \"_.LAYER\" \"" + shown + "\" \"PLAN\" \"\")");
        EXPECT_NE(labelOf(line), nullptr) << hidden;
    }
    // A set that is taken away, and a drawing that is another.
    label({});
    EXPECT_TRUE(window_.canvas().labels().empty());
    label({{point, "Point"}});
    EXPECT_EQ(window_.canvas().labels().size(), 1u);
    currentDrawing().setModified(false);
    open("survey.dxf");
    EXPECT_TRUE(window_.canvas().labels().empty());
    EXPECT_TRUE(overlay::labelSets().empty());
    label({{point, "of a drawing that is closed"}});
    EXPECT_LE(window_.canvas().labels().size(), 1u);
}

// Labels follow every edit as if all had been placed anew.
TEST_F(WindowOverlay, PlacesAreInStepWithEdits) {
    currentDrawing().setModified(false);
    open("survey.dxf");
    hostcad::Drawing& drawing = currentDrawing();
    std::vector<ObjectId> all;
    std::map<ObjectId, std::string> texts;
    for (ObjectId id = drawing.firstEntity(); id; id = drawing.nextEntity(id)) {
        all.push_back(id);
        texts[id] = std::to_string(id);
    }
    label(texts);
    hostcad::Scene scene;
    scene.attach(&drawing);
    hostcad::LabelPlacer followed(scene);
    const hostcad::Point centre = scene.extents().centre();
    const hostcad::ViewPlace place{{centre.x, centre.y}, 0.9};
    const ObjectId layer = drawing.firstPart(drawing.table("LAYER"));
    std::mt19937 random(8);
    for (int round = 0; round < 30; ++round) {
        for (int i = 0; i < 8; ++i) {
            const ObjectId id = all[random() % all.size()];
            const hostcad::Groups old = drawing.groups(id);
            const hostcad::Group* at = hostcad::find(old, 10);
            if (!at || random() % 3 == 0) {
                drawing.setErased(id, drawing.exists(id));
                continue;
            }
            std::vector<hostcad::Group> groups(old.begin(), old.end());
            groups[static_cast<size_t>(at - old.data())] =
                drawing.arena().point(10, at->x() + double(random() % 200), at->y());
            drawing.setGroups(id, groups);
        }
        // A change of a layer makes the whole picture anew.
        if (round % 4 == 3) drawing.setGroups(layer, drawing.groups(layer));
        scene.update();
        hostcad::Scene freshScene;
        freshScene.attach(&drawing);
        hostcad::LabelPlacer fresh(freshScene);
        const std::vector<PlacedLabel>& a = followed.place(place, {1000, 800}, 100);
        const std::vector<PlacedLabel>& b = fresh.place(place, {1000, 800}, 100);
        ASSERT_GT(a.size(), 30u);
        ASSERT_EQ(a.size(), b.size()) << round;
        for (size_t i = 0; i < a.size(); ++i) {
            ASSERT_EQ(a[i].entity, b[i].entity) << round;
            ASSERT_EQ(a[i].at.x, b[i].at.x) << round;
            ASSERT_EQ(a[i].at.y, b[i].at.y) << round;
        }
    }
}

TEST_F(WindowOverlay, HeightsAreInPixelsOrInUnits) {
    const ObjectId point = makePoint(100, 100);
    overlay::LabelStyle style;
    style.height = 20;
    style.isInPixels = false;
    label({{point, "Units"}}, style);
    picture();
    ASSERT_NE(labelOf(point), nullptr);
    const float width = labelOf(point)->width;
    EXPECT_NEAR(labelOf(point)->capital, 20, 1e-4);
    setPlace(100, 100, 0.5);
    EXPECT_NEAR(labelOf(point)->capital, 40, 1e-4);
    EXPECT_NEAR(labelOf(point)->width, 2 * width, 1e-2);
    setPlace(100, 100, 10);  // two pixels
    EXPECT_EQ(labelOf(point), nullptr);
    const overlay::LabelCounts counts = overlay::labelCounts();
    EXPECT_EQ(counts.tooSmall, 1u);
    EXPECT_EQ(counts.placed + counts.leftOut, 0u);
    style.isInPixels = true;
    label({{point, "Pixels"}}, style);
    EXPECT_NEAR(labelOf(point)->capital, 20, 1e-4);
    // Heights that are none show nothing, and hurt nobody.
    for (double height : {0.0, -5.0, double(NAN), double(INFINITY), 1e300}) {
        style.height = height;
        label({{point, "None"}}, style);
        setPlace(100, 100, 1);
        window_.canvas().grab();
        EXPECT_TRUE(window_.canvas().labels().empty()) << height;
    }
}

TEST_F(WindowOverlay, LongTextsAreCut) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(hostcad::labelLines("one\ntwo\tthree\n\n"), (Lines{"one", "two three"}));
    EXPECT_EQ(hostcad::labelLines(""), Lines{});
    EXPECT_EQ(hostcad::labelLines("\n \n"), Lines{});
    EXPECT_EQ(hostcad::labelLines(std::string(100, 'x')), Lines{std::string(100, 'x')});
    EXPECT_EQ(hostcad::labelLines(std::string(101, 'x')), Lines{std::string(99, 'x') + "\u2026"});
    std::string umlauts, cut;
    for (int i = 0; i < 10000; ++i) umlauts += "\u00FC";
    for (int i = 0; i < 99; ++i) cut += "\u00FC";
    EXPECT_EQ(hostcad::labelLines(umlauts), Lines{cut + "\u2026"});
    EXPECT_EQ(hostcad::labelLines("1\n2\n3\n4\n5\n6\n7\n8\n"),
              (Lines{"1", "2", "3", "4", "5", "6", "7", "8"}));
    EXPECT_EQ(hostcad::labelLines("1\n2\n3\n4\n5\n6\n7\n8\n9"),
              (Lines{"1", "2", "3", "4", "5", "6", "7", "8\u2026"}));
    // Bytes that are no characters, and texts without end.
    const ObjectId point = makePoint(400, 300);
    for (const std::string& text : {std::string(10000, 'W'), std::string("\xFF\xC3\xC3\x80(\xF0"),
                                    std::string("a\0b", 3), std::string(10000, '\n') + "x"}) {
        label({{point, text}});
        picture();
        EXPECT_LE(window_.canvas().labels().size(), 1u);
    }
    label({{point, umlauts + "\n" + umlauts}});
    overlay::LabelStyle style;
    style.height = 5;
    label({{point, "W" + std::string(9999, 'i')}}, style);
    picture();
    ASSERT_NE(labelOf(point), nullptr);
    EXPECT_LT(labelOf(point)->width, 300);
}

TEST_F(WindowOverlay, ColoursStandInPlaceOfTheEntitysOwnAndMarksOverThem) {
    const ObjectId line = makeLine(100, 100, 300, 100, "(62 . 1)");
    const ObjectId other = makeLine(100, 150, 300, 150, "(62 . 1)");
    overlay::ColourSet set;
    set.colours = {{name(line), kGreen}};
    overlay::setColours("TEST", set);
    const uint64_t changes = currentDrawing().changes();
    QImage shown = picture();
    EXPECT_NEAR(pixels(shown, 90, 98, 310, 102, kGreen), 201, 2);
    EXPECT_EQ(pixels(shown, 90, 98, 310, 102, kRed), 0);
    EXPECT_NEAR(pixels(shown, 90, 148, 310, 152, kRed), 201, 2);
    EXPECT_EQ(currentDrawing().changes(), changes);
    EXPECT_EQ(lisp("(cdr (assoc 62 (entget (entnext))))"), "1");
    window_.canvas().setSelected({line});
    shown = picture();
    EXPECT_EQ(pixels(shown, 90, 98, 310, 102, kGreen), 0);
    EXPECT_GT(pixels(shown, 90, 98, 310, 102, hostcad::kMarkColour), 300);
    window_.canvas().setSelected({});
    // The colour goes with the entity, also when places in the picture have changed.
    makeSquare(500, 300, 40);
    window_.runLine("(entdel (entnext))");
    EXPECT_EQ(pixels(picture(), 90, 90, 310, 160, kGreen), 0);
    window_.runLine("U");
    EXPECT_NEAR(pixels(picture(), 90, 98, 310, 102, kGreen), 201, 2);
    // Of two colours the last holds, and places in the picture may become others, as one that begins anew has
    // them.
    const ObjectId third = makeLine(100, 200, 300, 200, "(62 . 1)");
    set.colours = {{name(third), kYellow}, {name(third), kGreen}};
    overlay::setColours("TEST", set);
    EXPECT_NEAR(pixels(picture(), 90, 198, 310, 202, kGreen), 201, 2);
    window_.runLine("(entdel (entnext))");
    window_.runLine("(command \"_.LAYER\" \"_N\" \"OTHER\" \"_C\" \"3\" \"OTHER\" \"\")");
    EXPECT_NEAR(pixels(picture(), 90, 198, 310, 202, kGreen), 201, 2);
    window_.runLine("U");
    window_.runLine("U");
    set.colours = {{name(other), kYellow}, {name(line), 0}};
    overlay::setColours("TEST", set);
    shown = picture();
    EXPECT_NEAR(pixels(shown, 90, 148, 310, 152, kYellow), 201, 2);
    // Black is a colour too, made readable.
    EXPECT_EQ(pixels(shown, 90, 98, 310, 102, kRed) + pixels(shown, 90, 98, 310, 102, kGreen), 0);
    EXPECT_EQ(pixels(shown, 90, 98, 310, 102, hostcad::kScreen.ground), 5 * 221 - 201);
    overlay::setColours("TEST", {});
    EXPECT_NEAR(pixels(picture(), 90, 98, 310, 102, kRed), 201, 2);
}

TEST_F(WindowOverlay, TheLegendShowsItselfAndCanBeHidden) {
    hostcad::LegendPanel& legend = window_.canvas().legend();
    menuEntry("Legend")->trigger();
    EXPECT_TRUE(says("There is no legend: nothing is coloured."));
    EXPECT_FALSE(legend.isVisible());
    overlay::ColourSet set;
    set.legend = {"Species", {{kRed, "Oak", 12}, {kGreen, "Beech\n& others", 345}}};
    overlay::setColours("TEST", set);
    ASSERT_TRUE(legend.isVisible());
    EXPECT_EQ(legend.accessibleDescription(), "Species\nOak: 12\nBeech & others: 345\n");
    QImage shown = legend.grab().toImage();
    auto count = [&](uint32_t colour) {
        int found = 0;
        for (int x = 0; x < shown.width(); ++x)
            for (int y = 0; y < shown.height(); ++y) found += (shown.pixel(x, y) & 0xFFFFFF) == colour;
        return found;
    };
    EXPECT_GT(count(kRed), 100);
    EXPECT_GT(count(kGreen), 100);
    EXPECT_GT(count(kWhite), 30);  // the texts
    // A click on it selects nothing of what is behind it.
    const QPoint corner = legend.geometry().center();
    const hostcad::ViewBox view = window_.canvas().view();
    const double unit = view.height / window_.canvas().height();
    const double x = view.centre.x + (corner.x() - window_.canvas().width() / 2.0) * unit;
    const double y = view.centre.y - (corner.y() - window_.canvas().height() / 2.0) * unit;
    makeLine(x - 100 * unit, y, x + 100 * unit, y);
    window_.runLine("REGEN");
    QTest::mouseClick(&legend, Qt::LeftButton, {}, legend.rect().center());
    EXPECT_TRUE(window_.canvas().selected().empty());
    EXPECT_EQ(legend.geometry().right() + 11, window_.canvas().width());
    window_.resize(900, 700);
    QTest::qWait(20);
    EXPECT_EQ(legend.geometry().right() + 11, window_.canvas().width());
    legend.findChild<QToolButton*>()->click();
    EXPECT_FALSE(legend.isVisible());
    overlay::setColours("OTHER", set);
    EXPECT_FALSE(legend.isVisible());
    menuEntry("Legend")->trigger();
    EXPECT_TRUE(legend.isVisible());
    overlay::setColours("OTHER", {});
    // More rows than there is room for.
    for (int i = 0; i < 100; ++i) set.legend.rows.push_back({kRed, std::string(300, 'x'), 1});
    overlay::setColours("TEST", set);
    EXPECT_LT(legend.height(), window_.canvas().height());
    EXPECT_LT(legend.width(), window_.canvas().width() / 2);
    const QStringList lines = legend.accessibleDescription().trimmed().split('\n');
    EXPECT_EQ(lines.back(), "and " + QString::number(102 - (lines.size() - 2)) + " more");
    EXPECT_TRUE(lines[3].endsWith("\u2026: 1"));
    overlay::setColours("TEST", {});
    EXPECT_FALSE(legend.isVisible());
    EXPECT_TRUE(legend.isEmpty());
}

TEST_F(WindowOverlay, LabelsColoursAndLegendAreOnPaper) {
    const ObjectId square = makeSquare(100, 100, 150, "(62 . 2)");
    const ObjectId edge = makePoint(2, 300);
    overlay::LabelSet labels;
    labels.style = {20, true, kRed, overlay::Placement::ByEntity};
    picture();
    const hostcad::ViewBox seen = window_.canvas().view();
    const ObjectId corner = makePoint(seen.width - 115, seen.height - 30);
    labels.labels = {{name(square), "MMM"}, {name(edge), "Edge"}, {name(corner), "Hid"}};
    overlay::setLabels("TEST", labels);
    labels.style.colour = kWhite;
    labels.labels = {{name(makePoint(300, 300)), "White"}};
    overlay::setLabels("WHITE", labels);
    overlay::ColourSet colours;
    colours.colours = {{name(square), 0x0000FF}};
    colours.legend = {"Use", {{0x0000FF, "Park", 1}}};
    overlay::setColours("TEST", colours);
    QImage screen = picture();
    const double width = screen.width(), height = screen.height();
    Page page;
    printPage(page);
    auto count = [&](double left, double bottom, double right, double top, uint32_t colour) {
        int found = 0;
        const double scale = page.picture.width() / width;
        for (int x = int(left * scale); x < int(right * scale); ++x)
            for (int y = int((height - top) * scale); y < int((height - bottom) * scale); ++y)
                found += (page.picture.pixel(x, y) & 0xFFFFFF) == colour;
        return found;
    };
    EXPECT_GT(count(98, 98, 252, 102, 0x0000FF), 200);
    EXPECT_GT(count(120, 150, 230, 200, kRed), 200);
    // In the corner: the swatch, and black texts.
    EXPECT_GT(count(width * 0.7, height * 0.85, width, height, 0x0000FF), 500);
    EXPECT_GT(count(width * 0.7, height * 0.85, width, height, 0), 50);
    EXPECT_GT(count(0, 280, 120, 320, kRed), 100);
    EXPECT_GT(count(303, 285, 360, 315, 0), 100);  // white is black on paper
    // To the right of its point a label would be under the legend, in part.
    EXPECT_EQ(count(width - 112, height - 50, width - 80, height - 10, kRed), 0);
    EXPECT_GT(count(width - 170, height - 50, width - 118, height - 10, kRed), 50);
    // Without the legend.
    window_.canvas().legend().setWanted(false);
    std::filesystem::remove(path("page.pdf"));
    printPage(page);
    EXPECT_EQ(count(width * 0.7, height * 0.85, width, height, 0x0000FF), 0);
    EXPECT_GT(count(120, 150, 230, 200, kRed), 200);
    EXPECT_GT(count(width - 112, height - 50, width - 80, height - 10, kRed), 50);
}
