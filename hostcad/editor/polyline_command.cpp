// PLINE: lines and arcs with widths.
#include <cmath>

#include "hostcad/editor/command.h"
#include "hostcad/editor/command_processor.h"
#include "hostcad/editor/entity_making.h"
#include "hostcad/editor/host.h"
#include "platform/plane/arc.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

using plane::bulgeOf;
using plane::direction;

// An angle from -pi up to pi.
double turned(double radians) {
    return std::remainder(radians, plane::kFullTurn);
}

// The bulge of the arc along a chord that leaves in a direction. Between chord and tangent is half the sweep.
double bulgeFrom(double tangent, const Point& from, const Point& to) {
    return bulgeOf(2 * turned(direction(from, to) - tangent));
}

// The bulge of the arc through three points; 0 when they lie on a line.
double bulgeThrough(const Point& start, const Point& middle, const Point& end) {
    // The angle at the middle point stands over the arc: half the rest of the turn lies on the other side.
    double atMiddle = turned(direction(middle, end) - direction(start, middle));
    double half = atMiddle / 2;
    return std::abs(std::cos(half)) < 1e-12 ? 0 : std::tan(half);
}

class PolylineCommand : public Command {
  public:
    using Command::Command;

    void start() override {
        startWidth_ = endWidth_ = host_.variables().real("PLINEWID");
        ask(Prompt::Kind::Point, "\nSpecify start point: ", [this](const Answer& answer) {
            if (answer.kind != Answer::Kind::Value && answer.kind != Answer::Kind::None) return;
            corners_.push_back({answer.isValue() ? answer.point : host_.variables().point("LASTPOINT")});
            note(text::format("\nCurrent line-width is %.4f", endWidth_));
            askNext();
        });
    }

    void cancelled() override { draw(false); }

  private:
    const Point& here() const { return corners_.back().at; }

    void askNext() {
        if (isArc_) {
            askFrom(
                here(), Prompt::Kind::Point,
                "\nSpecify endpoint of arc or [Angle/CEnter/CLose/Direction/Halfwidth/Line/Second "
                "pt/Undo/Width]: ",
                [this](const Answer& answer) { takeArc(answer); },
                "Angle CEnter CLose Direction Halfwidth Line Second Undo Width");
            return;
        }
        std::string close = corners_.size() > 1 ? "Close/" : "";
        askFrom(
            here(), Prompt::Kind::Point,
            "\nSpecify next point or [Arc/" + close + "Halfwidth/Length/Undo/Width]: ",
            [this](const Answer& answer) { takeLine(answer); }, "Arc Close Halfwidth Length Undo Width");
    }

    // --- Line segments ---

    void takeLine(const Answer& answer) {
        if (answer.isValue())
            addCorner(answer.point, 0);
        else if (answer.kind != Answer::Kind::Keyword)
            return draw(false);
        else if (answer.text == "Arc")
            isArc_ = true;
        else if (answer.text == "Close")
            return close(0);
        else if (answer.text == "Length")
            return askLength();
        else
            return takeCommonOption(answer.text);
        askNext();
    }

    void askLength() {
        askFrom(here(), Prompt::Kind::Distance, "\nSpecify length of line: ", [this](const Answer& answer) {
            if (answer.isValue()) {
                addCorner(plane::polar(here(), lastDirection(), answer.number), 0);
            }
            askNext();
        });
    }

    // --- Arc segments ---

    void takeArc(const Answer& answer) {
        if (answer.isValue())
            addArc(answer.point, lastDirection());
        else if (answer.kind != Answer::Kind::Keyword)
            return draw(false);
        else if (answer.text == "Line")
            isArc_ = false;
        else if (answer.text == "CLose")
            return close(bulgeFrom(lastDirection(), here(), corners_.front().at));
        else if (answer.text == "Second")
            return askSecondPoint();
        else if (answer.text == "Angle")
            return askIncludedAngle();
        else if (answer.text == "CEnter")
            return askArcCentre();
        else if (answer.text == "Direction")
            return askDirection();
        else
            return takeCommonOption(answer.text);
        askNext();
    }

    // The arc to a point that leaves in a direction.
    void addArc(const Point& to, double tangent) { addCorner(to, bulgeFrom(tangent, here(), to)); }

    void askSecondPoint() {
        askFrom(here(), Prompt::Kind::Point, "\nSpecify second point on arc: ", [this](const Answer& middle) {
            if (!middle.isValue()) return askNext();
            askArcEnd([this, middle](const Point& end) { return bulgeThrough(here(), middle.point, end); });
        });
    }

    void askIncludedAngle() {
        ask(Prompt::Kind::Angle, "\nSpecify included angle: ", [this](const Answer& angle) {
            if (!angle.isValue()) return askNext();
            askArcEnd([angle](const Point&) { return bulgeOf(angle.number); });
        });
    }

    // Counter-clockwise about a centre.
    void askArcCentre() {
        askFrom(here(), Prompt::Kind::Point, "\nSpecify center point of arc: ", [this](const Answer& centre) {
            if (!centre.isValue()) return askNext();
            Point c = centre.point;
            double radius = plane::distance(here(), c);
            askFrom(c, Prompt::Kind::Point,
                    "\nSpecify endpoint of arc: ", [this, c, radius](const Answer& end) {
                        if (end.isValue()) {
                            double from = direction(c, here()), to = direction(c, end.point);
                            addCorner(plane::polar(c, to, radius), bulgeOf(plane::sweepBetween(from, to)));
                        }
                        askNext();
                    });
        });
    }

    void askDirection() {
        askFrom(here(), Prompt::Kind::Angle, "\nSpecify the tangent direction for the start point of arc: ",
                [this](const Answer& direction) {
                    if (!direction.isValue()) return askNext();
                    askFrom(here(), Prompt::Kind::Point,
                            "\nSpecify endpoint of the arc: ", [this, direction](const Answer& end) {
                                if (end.isValue()) addArc(end.point, direction.number);
                                askNext();
                            });
                });
    }

    void askArcEnd(const std::function<double(const Point&)>& bulgeTo) {
        askFrom(here(), Prompt::Kind::Point,
                "\nSpecify endpoint of arc: ", [this, bulgeTo](const Answer& end) {
                    if (end.isValue()) addCorner(end.point, bulgeTo(end.point));
                    askNext();
                });
    }

    // --- Both ---

    void takeCommonOption(const std::string& option) {
        if (option == "Undo") {
            if (corners_.size() > 1)
                corners_.pop_back();
            else
                say("\nAll segments already undone.");
            askNext();
            return;
        }
        bool isHalf = option == "Halfwidth";
        std::string word = isHalf ? "half-width" : "width";
        double factor = isHalf ? 2 : 1;
        ask(
            Prompt::Kind::Distance,
            text::format("\nSpecify starting %s <%.4f>: ", word.c_str(), endWidth_ / factor),
            [this, word, factor](const Answer& first) {
                double startWidth = first.isValue() ? first.number * factor : endWidth_;
                ask(
                    Prompt::Kind::Distance,
                    text::format("\nSpecify ending %s <%.4f>: ", word.c_str(), startWidth / factor),
                    [this, startWidth, factor](const Answer& second) {
                        startWidth_ = startWidth;
                        endWidth_ = second.isValue() ? second.number * factor : startWidth;
                        host_.variables().set("PLINEWID", VariableValue::ofReal(endWidth_));
                        askNext();
                    },
                    "", kNoNegative);
            },
            "", kNoNegative);
    }

    void endSegment(double bulge) {
        PolylineCorner& from = corners_.back();
        from.startWidth = startWidth_;
        from.endWidth = endWidth_;
        from.bulge = bulge;
        startWidth_ = endWidth_;
    }

    void addCorner(const Point& to, double bulge) {
        endSegment(bulge);
        corners_.push_back({{to.x, to.y, corners_.front().at.z}});
    }

    // The direction in which the last segment ends: that of the chord, turned by half the arc's angle.
    double lastDirection() const {
        if (corners_.size() < 2) return 0;
        const PolylineCorner& from = corners_[corners_.size() - 2];
        return direction(from.at, here()) + plane::sweepOf(from.bulge) / 2;
    }

    void close(double bulge) {
        endSegment(bulge);
        draw(true);
    }

    void draw(bool isClosed) {
        if (corners_.size() < 2) return;
        corners_.back().startWidth = isClosed ? corners_.back().startWidth : endWidth_;
        corners_.back().endWidth = isClosed ? corners_.back().endWidth : endWidth_;
        makePolyline(host_, corners_, isClosed);
    }

    std::vector<PolylineCorner> corners_;
    double startWidth_ = 0, endWidth_ = 0;
    bool isArc_ = false;
};

}  // namespace

void definePolylineCommand(CommandProcessor& commands) {
    commands.define<PolylineCommand>("PLINE");
}

}  // namespace hostcad
