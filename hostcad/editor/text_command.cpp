// TEXT: lines of text, with style and justification.
#include <cmath>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/editor/command.h"
#include "hostcad/editor/command_processor.h"
#include "hostcad/editor/entity_making.h"
#include "hostcad/editor/host.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

struct Justification {
    const char* word;
    int horizontal;
    int vertical;
};

// Aligned and fitted text stands between two points.
constexpr Justification kJustifications[] = {
    {"Left", 0, 0}, {"Center", 1, 0}, {"Right", 2, 0}, {"Align", 3, 0}, {"Middle", 4, 0},
    {"Fit", 5, 0},  {"TL", 0, 3},     {"TC", 1, 3},    {"TR", 2, 3},    {"ML", 0, 2},
    {"MC", 1, 2},   {"MR", 2, 2},     {"BL", 0, 1},    {"BC", 1, 1},    {"BR", 2, 1},
};
constexpr const char* kJustificationWords = "Left Align Fit Center Middle Right TL TC TR ML MC MR BL BC BR";

class TextCommand : public Command {
  public:
    using Command::Command;
    void start() override { askStart(); }

  private:
    std::string style() const { return host_.variables().text("TEXTSTYLE"); }

    void askStart() {
        ask(
            Prompt::Kind::Point, "\nSpecify start point of text or [Justify/Style]: ",
            [this](const Answer& answer) {
                if (answer.isKeyword("Justify"))
                    askJustification();
                else if (answer.isKeyword("Style"))
                    askStyle();
                else if (answer.kind == Answer::Kind::Keyword)
                    justify(answer.text);
                else if (answer.isValue())
                    takeFirstPoint(answer.point);
            },
            std::string("Justify Style ") + kJustificationWords);
    }

    void askJustification() {
        ask(
            Prompt::Kind::Keyword,
            "\nEnter an option [Left/Align/Fit/Center/Middle/Right/TL/TC/TR/ML/MC/MR/BL/BC/BR]: ",
            [this](const Answer& answer) {
                if (answer.kind == Answer::Kind::Keyword)
                    justify(answer.text);
                else
                    askStart();
            },
            kJustificationWords);
    }

    void justify(const std::string& word) {
        for (const Justification& j : kJustifications)
            if (word == j.word) justification_ = j;
        bool isBetween = word == "Align" || word == "Fit";
        ask(Prompt::Kind::Point,
            isBetween ? "\nSpecify first endpoint of text baseline: " : "\nSpecify text point: ",
            [this](const Answer& answer) {
                if (answer.isValue()) takeFirstPoint(answer.point);
            });
    }

    void askStyle() {
        ask(Prompt::Kind::Line, "\nEnter style name <" + style() + ">: ", [this](const Answer& answer) {
            if (answer.isValue()) {
                if (currentDrawing().record("STYLE", answer.text))
                    host_.variables().set("TEXTSTYLE", VariableValue::ofText(answer.text));
                else
                    say("\nThere is no style \"" + answer.text + "\".");
            }
            askStart();
        });
    }

    bool isBetween() const { return justification_.horizontal == 3 || justification_.horizontal == 5; }

    void takeFirstPoint(const Point& point) {
        at_ = point;
        if (!isBetween()) {
            askHeight();
            return;
        }
        askFrom(point, Prompt::Kind::Point,
                "\nSpecify second endpoint of text baseline: ", [this](const Answer& answer) {
                    if (!answer.isValue()) return;
                    second_ = answer.point;
                    rotation_ = plane::direction(at_, second_);
                    askHeight();
                });
    }

    // Not asked where the style fixes it, nor for aligned text, whose height follows from its length.
    void askHeight() {
        ObjectId record = currentDrawing().record("STYLE", style());
        double fixed = record ? realOf(currentDrawing().groups(record), 40) : 0;
        height_ = fixed > 0 ? fixed : host_.variables().real("TEXTSIZE");
        if (fixed > 0 || justification_.horizontal == 3) {
            askRotation();
            return;
        }
        askFrom(
            at_, Prompt::Kind::Distance, text::format("\nSpecify height <%.4f>: ", height_),
            [this](const Answer& answer) {
                if (answer.isValue()) height_ = answer.number;
                host_.variables().set("TEXTSIZE", VariableValue::ofReal(height_));
                askRotation();
            },
            "", kNoZero | kNoNegative);
    }

    void askRotation() {
        if (isBetween()) {
            askText();
            return;
        }
        askFrom(at_, Prompt::Kind::Angle,
                "\nSpecify rotation angle of text <0>: ", [this](const Answer& answer) {
                    rotation_ = answer.isValue() ? answer.number : 0;
                    askText();
                });
    }

    // From a program one line only: what follows in its answers is the next command. A person may go on.
    void askText() {
        ask(Prompt::Kind::Line, "\nEnter text: ", [this](const Answer& answer) {
            if (answer.kind == Answer::Kind::None) return;
            draw(answer.text);
            if (host_.commands().isScripted() || isBetween()) return;
            constexpr double kLineSpacing = 5.0 / 3;
            at_.x += kLineSpacing * height_ * std::sin(rotation_);
            at_.y -= kLineSpacing * height_ * std::cos(rotation_);
            askText();
        });
    }

    void draw(const std::string& content) {
        bool isPlain = justification_.horizontal == 0 && justification_.vertical == 0;
        GroupList groups;
        groups.text(0, "TEXT")
            .point(10, at_)
            .real(40, height_)
            .text(1, content)
            .real(50, rotation_)
            .text(7, style());
        groups.integer(72, justification_.horizontal).integer(73, justification_.vertical);
        if (!isPlain) groups.point(11, isBetween() ? second_ : at_);
        makeEntity(host_, groups);
    }

    Justification justification_ = kJustifications[0];
    Point at_{}, second_{};
    double height_ = 1, rotation_ = 0;
};

}  // namespace

void defineTextCommand(CommandProcessor& commands) {
    commands.define<TextCommand>("TEXT");
}

}  // namespace hostcad
