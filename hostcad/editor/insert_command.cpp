// INSERT: references to blocks of the drawing or of another file, with their attributes.
#include <cmath>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/dxf/dxf.h"
#include "hostcad/editor/block_import.h"
#include "hostcad/editor/command.h"
#include "hostcad/editor/command_processor.h"
#include "hostcad/editor/entity_making.h"
#include "hostcad/editor/host.h"
#include "platform/ads/entities.h"
#include "platform/files/files.h"
#include "platform/plane/angle.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

// Where a reference puts its block.
struct Placement {
    Point at{};
    double scale[3] = {1, 1, 1};
    double rotation = 0;
    Point base{};

    Point apply(const Point& p) const {
        double x = (p.x - base.x) * scale[0], y = (p.y - base.y) * scale[1];
        double c = std::cos(rotation), s = std::sin(rotation);
        return {at.x + x * c - y * s, at.y + x * s + y * c, at.z + (p.z - base.z) * scale[2]};
    }
};

// Flags of an attribute definition.
constexpr int64_t kConstant = 2;
constexpr int64_t kPreset = 8;

struct Attribute {
    ObjectId definition;
    std::string value;
};

class InsertCommand : public Command {
  public:
    using Command::Command;

    void start() override {
        std::string last = host_.variables().text("INSNAME");
        std::string preset = last.empty() ? "" : " <" + last + ">";
        ask(Prompt::Kind::Line, "\nEnter block name or [?]" + preset + ": ",
            [this, last](const Answer& answer) {
                std::string name(text::trim(answer.isValue() ? answer.text : last));
                if (name == "?")
                    listBlocks();
                else if (!name.empty())
                    takeName(name);
            });
    }

  private:
    // --- The block ---

    void listBlocks() {
        const Drawing& drawing = currentDrawing();
        say("\nDefined blocks.");
        for (ObjectId block = drawing.firstBlock(); block; block = drawing.nextBlock(block))
            if (!text::startsWith(drawing.symbol(block), "*"))
                say("\n  \"" + std::string(drawing.symbol(block)) + "\"");
        say("\n");
    }

    // A name of a block, of a file, or both as block=file, which defines the block anew.
    void takeName(const std::string& typed) {
        size_t equals = typed.find('=');
        std::string name = typed.substr(0, equals);
        bool isNew = equals != std::string::npos;
        std::string file = isNew ? typed.substr(equals + 1) : typed;
        if (file.empty()) file = name;
        if (!isNew && !currentDrawing().block(name)) {
            std::string bare = files::nameOf(files::native(typed));
            std::string extension = files::extensionOf(bare);
            name = extension.empty() ? bare : bare.substr(0, bare.size() - extension.size() - 1);
            isNew = !currentDrawing().block(name) || !files::folderOf(typed).empty();
        }
        if (isNew && !define(name, file)) return;
        block_ = currentDrawing().block(name);
        host_.variables().set("INSNAME", VariableValue::ofText(name));
        askPlace();
    }

    bool define(const std::string& name, const std::string& file) {
        std::string path = findDrawing(file);
        if (path.empty()) {
            say("\nThere is no block or drawing \"" + file + "\".\n");
            return false;
        }
        if (acdbSNValid(name.c_str(), 0) != RTNORM) {
            say("\n\"" + name + "\" cannot be the name of a block.\n");
            return false;
        }
        std::string error;
        std::unique_ptr<Drawing> source = readDxf(path, error);
        if (!source) {
            say("\nCannot insert " + error + "\n");
            return false;
        }
        int skipped = importAsBlock(currentDrawing(), *source, name);
        if (skipped)
            say(text::format("\n%d entities of the file do not fit this drawing's version and were left out.",
                             skipped));
        return true;
    }

    // Drawings of the block library are asked for by the name they had in their native form, too.
    std::string findDrawing(const std::string& file) const {
        std::string extension = files::extensionOf(file);
        std::string path = host_.findFile(file);
        if (path.empty() && extension.empty()) path = host_.findFile(file + ".dxf");
        if (path.empty() && text::equalNoCase(extension, "dwg"))
            path = host_.findFile(file.substr(0, file.size() - extension.size()) + "dxf");
        return path;
    }

    // --- Where it goes ---

    void askPlace() {
        ask(
            Prompt::Kind::Point, "\nSpecify insertion point or [Scale/X/Y/Z/Rotate]: ",
            [this](const Answer& answer) {
                if (answer.kind == Answer::Kind::Keyword)
                    askPreset(answer.text);
                else if (answer.isValue())
                    takePlace(answer.point);
            },
            "Scale X Y Z Rotate");
    }

    void askPreset(const std::string& option) {
        if (option == "Rotate") {
            ask(Prompt::Kind::Angle, "\nSpecify rotation angle: ", [this](const Answer& answer) {
                if (answer.isValue()) place_.rotation = answer.number, isTurned_ = true;
                askPlace();
            });
            return;
        }
        ask(
            Prompt::Kind::Real, "\nSpecify scale factor: ",
            [this, option](const Answer& answer) {
                for (int axis = 0; answer.isValue() && axis < 3; ++axis)
                    if (option == "Scale" || option[0] == "XYZ"[axis]) place_.scale[axis] = answer.number;
                isScaled_ = true;
                askPlace();
            },
            "", kNoZero);
    }

    void takePlace(const Point& at) {
        place_.at = at;
        if (isScaled_)
            askRotation();
        else
            askScale();
    }

    void askScale() {
        ask(
            Prompt::Kind::Distance, "\nEnter X scale factor, specify opposite corner, or [Corner/XYZ] <1>: ",
            [this](const Answer& answer) {
                if (answer.isKeyword("XYZ")) return askScaleOf(0);
                if (answer.isKeyword("Corner")) return askCorner();
                if (answer.isPoint) return takeCorner(answer.point);
                double x = answer.isValue() ? answer.number : 1;
                ask(
                    Prompt::Kind::Real, "\nEnter Y scale factor <use X scale factor>: ",
                    [this, x](const Answer& second) {
                        double y = second.isValue() ? second.number : x;
                        place_.scale[0] = place_.scale[2] = x;
                        place_.scale[1] = y;
                        askRotation();
                    },
                    "", kNoZero);
            },
            "Corner XYZ", kNoZero);
    }

    void askScaleOf(int axis) {
        static constexpr const char* kPrompts[] = {
            "\nEnter X scale factor <1>: ", "\nEnter Y scale factor <use X scale factor>: ",
            "\nEnter Z scale factor <use X scale factor>: "};
        ask(
            Prompt::Kind::Real, kPrompts[axis],
            [this, axis](const Answer& answer) {
                place_.scale[axis] = answer.isValue() ? answer.number : axis == 0 ? 1 : place_.scale[0];
                if (axis < 2)
                    askScaleOf(axis + 1);
                else
                    askRotation();
            },
            "", kNoZero);
    }

    void askCorner() {
        askFrom(place_.at, Prompt::Kind::Point, "\nSpecify opposite corner: ", [this](const Answer& answer) {
            if (answer.isValue())
                takeCorner(answer.point);
            else
                askRotation();
        });
    }

    void takeCorner(const Point& corner) {
        const Point size = corner - place_.at;
        if (size.x != 0) place_.scale[0] = size.x;
        if (size.y != 0) place_.scale[1] = size.y;
        place_.scale[2] = place_.scale[0];
        askRotation();
    }

    void askRotation() {
        if (isTurned_) return collectAttributes();
        askFrom(place_.at, Prompt::Kind::Angle,
                "\nSpecify rotation angle <0>: ", [this](const Answer& answer) {
                    if (answer.isValue()) place_.rotation = answer.number;
                    collectAttributes();
                });
    }

    // --- Attributes ---

    void collectAttributes() {
        const Drawing& drawing = currentDrawing();
        if (const Group* base = find(drawing.groups(block_), 10)) place_.base = base->point();
        for (ObjectId id = drawing.firstPart(block_); id; id = drawing.nextPart(id)) {
            if (drawing.type(id) != "ATTDEF" || (integerOf(drawing.groups(id), 70) & kConstant)) continue;
            attributes_.push_back({id, std::string(textOf(drawing.groups(id), 1))});
        }
        if (!attributes_.empty() && host_.variables().integer("ATTREQ")) {
            note("\nEnter attribute values");
            askAttribute(0);
        } else {
            draw();
        }
    }

    void askAttribute(size_t index) {
        const Drawing& drawing = currentDrawing();
        while (index < attributes_.size() &&
               (integerOf(drawing.groups(attributes_[index].definition), 70) & kPreset))
            ++index;
        if (index == attributes_.size()) {
            draw();
            return;
        }
        Groups definition = drawing.groups(attributes_[index].definition);
        std::string prompt(textOf(definition, 3));
        if (prompt.empty()) prompt = textOf(definition, 2);
        const std::string& preset = attributes_[index].value;
        if (!preset.empty()) prompt += " <" + preset + ">";
        ask(Prompt::Kind::Line, "\n" + prompt + ": ", [this, index](const Answer& answer) {
            if (answer.isValue()) attributes_[index].value = answer.text;
            askAttribute(index + 1);
        });
    }

    // --- Making it ---

    void draw() {
        GroupList insert;
        insert.text(0, "INSERT");
        if (!attributes_.empty()) insert.integer(66, 1);
        insert.text(2, std::string(currentDrawing().symbol(block_))).point(10, place_.at);
        for (int axis = 0; axis < 3; ++axis) insert.real(41 + axis, place_.scale[axis]);
        insert.real(50, place_.rotation);
        if (!makeEntity(host_, insert) || attributes_.empty()) return;
        for (const Attribute& attribute : attributes_) makeAttribute(attribute);
        GroupList end;
        end.text(0, "SEQEND");
        makeEntity(host_, end);
    }

    void makeAttribute(const Attribute& attribute) {
        Groups definition = currentDrawing().groups(attribute.definition);
        double own = realOf(definition, 50) * plane::kDegree;
        double widened = place_.scale[1] != 0 ? std::abs(place_.scale[0] / place_.scale[1]) : 1;
        int64_t horizontal = integerOf(definition, 72), vertical = integerOf(definition, 74);
        GroupList groups;
        groups.text(0, "ATTRIB").text(8, std::string(textOf(definition, 8, "0")));
        if (find(definition, 62)) groups.integer(62, static_cast<int>(integerOf(definition, 62)));
        groups.point(10, place_.apply(pointOf(definition, 10)))
            .real(40, realOf(definition, 40, 1) * std::abs(place_.scale[1]));
        groups.text(1, attribute.value).text(2, std::string(textOf(definition, 2)));
        groups.integer(70, static_cast<int>(integerOf(definition, 70)));
        groups.real(50, own + place_.rotation).real(41, realOf(definition, 41, 1) * widened);
        groups.real(51, realOf(definition, 51) * plane::kDegree)
            .text(7, std::string(textOf(definition, 7, "STANDARD")));
        groups.integer(72, static_cast<int>(horizontal)).integer(74, static_cast<int>(vertical));
        if (horizontal || vertical) groups.point(11, place_.apply(pointOf(definition, 11)));
        makeEntity(host_, groups);
    }

    ObjectId block_ = kNoObject;
    Placement place_;
    bool isScaled_ = false, isTurned_ = false;
    std::vector<Attribute> attributes_;
};

}  // namespace

void defineInsertCommand(CommandProcessor& commands) {
    commands.define<InsertCommand>("INSERT");
}

}  // namespace hostcad
