// POINT, LINE, CIRCLE.
#include <cmath>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/editor/command.h"
#include "hostcad/editor/command_processor.h"
#include "hostcad/editor/entity_making.h"
#include "hostcad/editor/host.h"
#include "platform/ads/entities.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

class PointCommand : public Command {
  public:
    using Command::Command;
    void start() override {
        ask(Prompt::Kind::Point, "\nSpecify a point: ", [this](const Answer& answer) {
            if (!answer.isValue()) return;
            GroupList groups;
            groups.text(0, "POINT").point(10, answer.point);
            makeEntity(host_, groups);
        });
    }
};

class LineCommand : public Command {
  public:
    using Command::Command;
    // Enter goes on from the last point.
    void start() override {
        ask(Prompt::Kind::Point, "\nSpecify first point: ", [this](const Answer& answer) {
            corners_.push_back(answer.isValue() ? answer.point : host_.variables().point("LASTPOINT"));
            askNext();
        });
    }

  private:
    void askNext() {
        std::string options = corners_.size() > 2 ? "[Close/Undo]" : "[Undo]";
        std::string prompt =
            corners_.size() > 1 ? "\nSpecify next point or " + options + ": " : "\nSpecify next point: ";
        askFrom(
            corners_.back(), Prompt::Kind::Point, prompt, [this](const Answer& answer) { take(answer); },
            corners_.size() > 2 ? "Close Undo" : "Undo");
    }

    void take(const Answer& answer) {
        if (answer.isKeyword("Undo")) {
            undo();
        } else if (answer.isKeyword("Close")) {
            draw(corners_.front());
            return;
        } else if (answer.isValue()) {
            draw(answer.point);
        } else {
            return;
        }
        askNext();
    }

    void draw(const Point& to) {
        GroupList groups;
        groups.text(0, "LINE").point(10, corners_.back()).point(11, to);
        makeEntity(host_, groups);
        Made made{};
        acdbEntLast(made.name);
        made_.push_back(made);
        corners_.push_back(to);
    }

    void undo() {
        if (made_.empty()) {
            say("\nAll segments already undone.");
            return;
        }
        acdbEntDel(made_.back().name);
        made_.pop_back();
        corners_.pop_back();
    }

    struct Made {
        ads_name name;
    };
    std::vector<Point> corners_;
    std::vector<Made> made_;
};

class CircleCommand : public Command {
  public:
    using Command::Command;
    void start() override {
        ask(Prompt::Kind::Point, "\nSpecify center point for circle: ", [this](const Answer& answer) {
            if (!answer.isValue()) return;
            centre_ = answer.point;
            askRadius();
        });
    }

  private:
    void askRadius() {
        double last = host_.variables().real("CIRCLERAD");
        std::string preset = last > 0 ? text::format(" <%.4f>", last) : "";
        askFrom(
            centre_, Prompt::Kind::Distance, "\nSpecify radius of circle or [Diameter]" + preset + ": ",
            [this, last](const Answer& answer) {
                if (answer.isKeyword("Diameter"))
                    askDiameter();
                else
                    draw(answer.isValue() ? answer.number : last);
            },
            "Diameter", kNoZero | kNoNegative);
    }

    void askDiameter() {
        askFrom(
            centre_, Prompt::Kind::Distance, "\nSpecify diameter of circle: ",
            [this](const Answer& answer) {
                if (answer.isValue()) draw(answer.number / 2);
            },
            "", kNoZero | kNoNegative);
    }

    void draw(double radius) {
        if (!(radius > 0)) return;
        host_.variables().set("CIRCLERAD", VariableValue::ofReal(radius));
        GroupList groups;
        groups.text(0, "CIRCLE").point(10, centre_).real(40, radius);
        makeEntity(host_, groups);
    }

    Point centre_{};
};

}  // namespace

void defineDrawingCommands(CommandProcessor& commands) {
    commands.define<PointCommand>("POINT");
    commands.define<LineCommand>("LINE");
    commands.define<CircleCommand>("CIRCLE");
}

}  // namespace hostcad
