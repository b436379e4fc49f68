// ZOOM, REGEN, ERRORTRACE.
#include <algorithm>
#include <cmath>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/editor/command.h"
#include "hostcad/editor/command_processor.h"
#include "hostcad/editor/host.h"
#include "hostcad/geometry/extents.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

class ViewCommand : public Command {
  public:
    using Command::Command;
    // What is seen is no change of the drawing's content.
    bool isUndoable() const override { return false; }
};

class ZoomCommand : public ViewCommand {
  public:
    using ViewCommand::ViewCommand;
    void start() override {
        ask(
            Prompt::Kind::Point,
            "\nSpecify corner of window, enter a scale factor (nX), or "
            "[All/Center/Extents/Previous/Scale/Window]: ",
            [this](const Answer& answer) { takeOption(answer); }, "All Center Extents Previous Scale Window",
            kAnyText);
    }

  private:
    void takeOption(const Answer& answer) {
        if (answer.kind == Answer::Kind::None) return;
        if (answer.isValue()) {
            askSecondCorner(answer.point);
        } else if (answer.text == "All" || answer.text == "Extents") {
            showExtents(answer.text == "All");
        } else if (answer.text == "Center") {
            ask(Prompt::Kind::Point, "\nSpecify center point: ", [this](const Answer& a) {
                askHeight(a.isValue() ? a.point : host_.viewBox().centre);
            });
        } else if (answer.text == "Window") {
            ask(Prompt::Kind::Point, "\nSpecify first corner: ", [this](const Answer& a) {
                if (a.isValue()) askSecondCorner(a.point);
            });
        } else if (answer.text == "Scale") {
            ask(Prompt::Kind::Text,
                "\nEnter a scale factor (nX): ", [this](const Answer& a) { scale(a.text); });
        } else if (answer.text == "Previous") {
            host_.restoreViewBox();
        } else {
            scale(answer.text);
        }
    }

    void askSecondCorner(const Point& first) {
        askCorner(first, "\nSpecify opposite corner: ", [this, first](const Answer& answer) {
            if (answer.isValue()) showBox(first, answer.point);
        });
    }

    void askHeight(const Point& centre) {
        double height = host_.viewBox().height;
        ask(
            Prompt::Kind::Distance, text::format("\nEnter magnification (nX) or height <%.4f>: ", height),
            [this, centre, height](const Answer& answer) {
                double wanted = answer.isValue() ? answer.number : height;
                if (answer.kind == Answer::Kind::Keyword) wanted = height / factorOf(answer.text);
                if (wanted > 0 && std::isfinite(wanted)) host_.setViewBox(centre, wanted);
            },
            "", kAnyText);
    }

    // 2X doubles what is seen; a number alone counts from the view of the drawing's limits.
    void scale(const std::string& typed) {
        double factor = factorOf(typed);
        bool isRelative = text::endsWithNoCase(typed, "x");
        if (!(factor > 0)) {
            say("\nA scale factor above zero is needed.");
            return;
        }
        double whole = host_.viewBox().height;
        if (!isRelative) {
            Point low = host_.variables().point("LIMMIN"), high = host_.variables().point("LIMMAX");
            if (high.y > low.y) whole = high.y - low.y;
        }
        host_.setViewBox(host_.viewBox().centre, whole / factor);
    }

    static double factorOf(const std::string& typed) { return text::toReal(typed); }

    void showExtents(bool withLimits) {
        const Drawing& drawing = currentDrawing();
        Box box = extentsOfBlock(drawing, drawing.currentSpace(), true);
        if (withLimits || box.empty()) {
            Point low = host_.variables().point("LIMMIN"), high = host_.variables().point("LIMMAX");
            if (high.x > low.x && high.y > low.y) {
                box.add(low.x, low.y);
                box.add(high.x, high.y);
            }
        }
        if (!box.empty()) showBox({box.minX, box.minY, 0}, {box.maxX, box.maxY, 0});
    }

    // A box without size keeps the height of the view.
    void showBox(const Point& a, const Point& b) {
        Point centre{(a.x + b.x) / 2, (a.y + b.y) / 2, 0};
        const ViewBox& now = host_.viewBox();
        double aspect = now.width / now.height;
        double height = std::max(std::abs(b.y - a.y), std::abs(b.x - a.x) / aspect);
        host_.setViewBox(centre, height > 0 ? height : now.height);
    }
};

class RegenCommand : public ViewCommand {
  public:
    using ViewCommand::ViewCommand;
    void start() override {
        host_.view().redraw();
        note("\nRegenerating model.\n");
    }
};

// Of use to who writes programs only, so the command line does not show it unasked.
class ErrorTraceCommand : public ViewCommand {
  public:
    using ViewCommand::ViewCommand;
    void start() override {
        const std::string& trace = host_.lastTrace();
        note(trace.empty() ? "\nNo error has been told.\n" : trace + "\n");
    }
};

}  // namespace

void defineViewCommands(CommandProcessor& commands) {
    commands.define<ZoomCommand>("ZOOM");
    commands.define<RegenCommand>("REGEN");
    commands.define<ErrorTraceCommand>("ERRORTRACE");
}

}  // namespace hostcad
