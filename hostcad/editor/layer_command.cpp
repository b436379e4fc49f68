// LAYER.
#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/entity_builder.h"
#include "hostcad/editor/command.h"
#include "hostcad/editor/command_processor.h"
#include "hostcad/editor/host.h"
#include "platform/ads/entities.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

constexpr int kFrozen = 1;
constexpr int kLocked = 4;

constexpr const char* kColourNames[] = {"", "red", "yellow", "green", "cyan", "blue", "magenta", "white"};

// A colour from 1 to 255 by number or name; 0 for none.
int colourOf(const std::string& typed) {
    for (int i = 1; i <= 7; ++i)
        if (text::equalNoCase(typed, kColourNames[i]) ||
            (typed.size() == 1 && text::equalNoCase(typed, std::string(1, kColourNames[i][0])) && i != 5))
            return i;
    long number = text::toLong(typed);
    return number >= 1 && number <= 255 ? static_cast<int>(number) : 0;
}

class LayerCommand : public Command {
  public:
    using Command::Command;
    void start() override {
        note("\nCurrent layer: \"" + currentLayer() + "\"");
        askOption();
    }

  private:
    std::string currentLayer() const { return host_.variables().text("CLAYER"); }

    void askOption() {
        ask(
            Prompt::Kind::Keyword,
            "\nEnter an option [?/Make/Set/New/ON/OFF/Color/Ltype/LWeight/Freeze/Thaw/LOck/Unlock]: ",
            [this](const Answer& answer) { takeOption(answer); },
            "? Make Set New ON OFF Color Ltype LWeight Freeze Thaw LOck Unlock");
    }

    void takeOption(const Answer& answer) {
        if (answer.kind == Answer::Kind::None) return;
        const std::string& option = answer.text;
        if (option == "?")
            askNames("\nEnter layer name(s) to list <*>: ", "*", [this](const std::string& s) { list(s); });
        else if (option == "Make")
            askNames("\nEnter name for new layer (becomes the current layer) <" + currentLayer() + ">: ",
                     currentLayer(), [this](const std::string& s) { makeCurrent(s, true); });
        else if (option == "Set")
            askNames("\nEnter layer name to make current <" + currentLayer() + ">: ", currentLayer(),
                     [this](const std::string& s) { makeCurrent(s, false); });
        else if (option == "New")
            askNames("\nEnter name list for new layer(s): ", "",
                     [this](const std::string& s) { makeNew(s); });
        else if (option == "Color")
            askColour();
        else if (option == "Ltype")
            askLineType();
        else if (option == "LWeight")
            askLineWeight();
        else
            askToSwitch(option);
    }

    // Asks for names, and does something with them before the next option.
    void askNames(const std::string& prompt, const std::string& preset,
                  const std::function<void(const std::string&)>& use) {
        ask(Prompt::Kind::Line, prompt, [this, preset, use](const Answer& answer) {
            std::string names(text::trim(answer.kind == Answer::Kind::None ? preset : answer.text));
            use(names);
            if (isDone()) askOption();
        });
    }

    // The layers that a list of names and patterns means; says so when there are none.
    std::vector<ObjectId> layersOf(const std::string& names) {
        Drawing& drawing = currentDrawing();
        std::vector<ObjectId> layers;
        std::string pattern = text::upper(names);
        ObjectId table = drawing.table("LAYER");
        for (ObjectId id = table ? drawing.firstPart(table) : 0; id; id = drawing.nextPart(id)) {
            std::string name = text::upper(drawing.symbol(id));
            if (acutWcMatch(name.c_str(), pattern.c_str()) == RTNORM) layers.push_back(id);
        }
        if (layers.empty()) say("\nCannot find layer \"" + names + "\".");
        return layers;
    }

    template <typename Edit>
    void change(ObjectId layer, Edit edit) {
        Groups old = currentDrawing().groups(layer);
        std::vector<Group> groups(old.begin(), old.end());
        edit(groups);
        currentDrawing().setGroups(layer, groups);
    }

    void setFlag(ObjectId layer, int flag, bool on) {
        change(layer, [&](std::vector<Group>& groups) {
            int64_t flags = integerOf(groups, 70);
            putGroup(groups, integerGroup(70, on ? flags | flag : flags & ~static_cast<int64_t>(flag)));
        });
    }

    // An off layer has a negative colour.
    void setColour(ObjectId layer, int64_t colour) {
        change(layer, [&](std::vector<Group>& groups) { putGroup(groups, integerGroup(62, colour)); });
    }

    int64_t colourOfLayer(ObjectId layer) const { return integerOf(currentDrawing().groups(layer), 62, 7); }

    bool isCurrent(ObjectId layer) const {
        return text::equalNoCase(currentDrawing().symbol(layer), currentLayer());
    }

    void makeCurrent(const std::string& name, bool isMade) {
        ObjectId layer = currentDrawing().record("LAYER", name);
        if (!layer && isMade) {
            if (!isValidName(name)) return;
            layer = ensureLayer(currentDrawing(), name);
        }
        if (!layer) {
            say("\nCannot find layer \"" + name + "\".");
            return;
        }
        if (isMade && colourOfLayer(layer) < 0) setColour(layer, -colourOfLayer(layer));
        if (integerOf(currentDrawing().groups(layer), 70) & kFrozen) {
            say("\nCannot make a frozen layer current.");
            return;
        }
        std::string problem = host_.variables().set("CLAYER", VariableValue::ofText(name));
        if (!problem.empty()) say("\n" + problem);
    }

    bool isValidName(const std::string& name) {
        if (acdbSNValid(name.c_str(), 0) == RTNORM) return true;
        say("\nThe name \"" + name + "\" is not valid.");
        return false;
    }

    void makeNew(const std::string& names) {
        for (const std::string& name : text::split(names, ',')) {
            std::string trimmed(text::trim(name));
            if (!trimmed.empty() && isValidName(trimmed)) ensureLayer(currentDrawing(), trimmed);
        }
    }

    void askToSwitch(const std::string& option) {
        static const std::pair<const char*, const char*> kWords[] = {
            {"ON", "turn on"}, {"OFF", "turn off"}, {"Freeze", "freeze"},
            {"Thaw", "thaw"},  {"LOck", "lock"},    {"Unlock", "unlock"}};
        std::string verb;
        for (const auto& [name, words] : kWords)
            if (option == name) verb = words;
        askNames("\nEnter name list of layer(s) to " + verb + ": ", "",
                 [this, option](const std::string& names) {
                     if (names.empty()) return;
                     for (ObjectId layer : layersOf(names)) switchLayer(layer, option);
                 });
    }

    void switchLayer(ObjectId layer, const std::string& option) {
        int64_t colour = colourOfLayer(layer);
        if (option == "ON" && colour < 0)
            setColour(layer, -colour);
        else if (option == "OFF" && isCurrent(layer))
            askToTurnOffCurrent(layer);
        else if (option == "OFF" && colour > 0)
            setColour(layer, -colour);
        else if (option == "Freeze" && isCurrent(layer))
            say("\nCannot freeze layer \"" + currentLayer() + "\". It is the current layer.");
        else if (option == "Freeze")
            setFlag(layer, kFrozen, true);
        else if (option == "Thaw")
            setFlag(layer, kFrozen, false);
        else if (option == "LOck")
            setFlag(layer, kLocked, true);
        else if (option == "Unlock")
            setFlag(layer, kLocked, false);
    }

    void askToTurnOffCurrent(ObjectId layer) {
        ask(
            Prompt::Kind::Keyword,
            "\nReally want layer \"" + currentLayer() + "\" (the current layer) off? [Yes/No] <No>: ",
            [this, layer](const Answer& answer) {
                int64_t colour = colourOfLayer(layer);
                if (answer.isKeyword("Yes") && colour > 0) setColour(layer, -colour);
                askOption();
            },
            "Yes No");
    }

    void askColour() {
        ask(Prompt::Kind::Text, "\nEnter color name or number (1-255): ", [this](const Answer& answer) {
            int colour = answer.isValue() ? colourOf(answer.text) : 0;
            if (!colour) {
                say("\nA color number or standard color name is needed.");
                askOption();
                return;
            }
            askNames(
                text::format("\nEnter name list of layer(s) for color %d <", colour) + currentLayer() + ">: ",
                currentLayer(), [this, colour](const std::string& names) {
                    for (ObjectId layer : layersOf(names))
                        setColour(layer, colourOfLayer(layer) < 0 ? -colour : colour);
                });
        });
    }

    void askLineType() {
        ask(Prompt::Kind::Line, "\nEnter loaded linetype name <Continuous>: ", [this](const Answer& answer) {
            std::string name = answer.isValue() ? answer.text : "Continuous";
            ObjectId lineType = currentDrawing().record("LTYPE", name);
            if (!lineType) {
                say("\nLinetype \"" + name + "\" is not loaded.");
                askOption();
                return;
            }
            askNames("\nEnter name list of layer(s) for linetype \"" + name + "\" <" + currentLayer() + ">: ",
                     currentLayer(), [this, lineType](const std::string& names) {
                         Group group = *find(currentDrawing().groups(lineType), 2);
                         group.code = 6;
                         for (ObjectId layer : layersOf(names))
                             change(layer, [&](std::vector<Group>& groups) { putGroup(groups, group); });
                     });
        });
    }

    // In hundredths of a millimetre in the file; -3 stands for the default.
    void askLineWeight() {
        ask(Prompt::Kind::Text,
            "\nEnter lineweight (0.0mm - 2.11mm) or Default: ", [this](const Answer& answer) {
                bool isDefault = !answer.isValue() || text::startsWith("DEFAULT", text::upper(answer.text));
                int64_t weight = isDefault ? -3 : static_cast<int64_t>(text::toReal(answer.text) * 100 + 0.5);
                askNames("\nEnter name list of layer(s) for this lineweight <" + currentLayer() + ">: ",
                         currentLayer(), [this, weight](const std::string& names) {
                             if (!hasSubclasses(currentDrawing().version())) return;
                             for (ObjectId layer : layersOf(names))
                                 change(layer, [&](std::vector<Group>& groups) {
                                     putGroup(groups, integerGroup(370, weight));
                                 });
                         });
            });
    }

    void list(const std::string& names) {
        say("\nLayer name       State     Color  Linetype\n");
        for (ObjectId layer : layersOf(names)) {
            Groups groups = currentDrawing().groups(layer);
            int64_t colour = integerOf(groups, 62, 7), flags = integerOf(groups, 70);
            std::string state = colour < 0 ? "off" : "on";
            if (flags & kFrozen) state += " frozen";
            if (flags & kLocked) state += " locked";
            say(text::format("%-16s %-9s %5d  ", std::string(textOf(groups, 2)).c_str(), state.c_str(),
                             static_cast<int>(std::abs(colour))));
            say(std::string(textOf(groups, 6)) + "\n");
        }
    }
};

}  // namespace

void defineLayerCommand(CommandProcessor& commands) {
    commands.define<LayerCommand>("LAYER");
}

}  // namespace hostcad
