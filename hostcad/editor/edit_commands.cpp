// ERASE, LIST, U, UNDO, REDO.
#include <cmath>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/command.h"
#include "hostcad/editor/command_processor.h"
#include "hostcad/editor/entity_listing.h"
#include "hostcad/editor/host.h"
#include "hostcad/editor/object_selection.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

// A command that does something to what the user selects.
class SelectionCommand : public Command {
  public:
    explicit SelectionCommand(Host& host) : Command(host), selection_(host) {}
    void start() override {
        ask(selection_.prompt(), [this](const Answer& answer) {
            if (!selection_.take(answer))
                start();
            else if (!selection_.isCancelled())
                apply(selection_.set().members());
        });
    }

  protected:
    virtual void apply(const std::vector<ObjectId>& entities) = 0;

  private:
    ObjectSelection selection_;
};

bool isOnLockedLayer(const Drawing& drawing, ObjectId entity) {
    constexpr int kLocked = 4;
    ObjectId layer = drawing.record("LAYER", textOf(drawing.groups(entity), 8));
    return layer && (integerOf(drawing.groups(layer), 70) & kLocked);
}

class EraseCommand : public SelectionCommand {
  public:
    using SelectionCommand::SelectionCommand;

  protected:
    void apply(const std::vector<ObjectId>& entities) override {
        int locked = 0;
        for (ObjectId entity : entities) {
            if (isOnLockedLayer(currentDrawing(), entity))
                ++locked;
            else
                currentDrawing().setErased(entity, true);
        }
        if (locked) say(text::format("\n%d were on a locked layer.\n", locked));
    }
};

class ListCommand : public SelectionCommand {
  public:
    using SelectionCommand::SelectionCommand;
    bool isUndoable() const override { return false; }

  protected:
    void apply(const std::vector<ObjectId>& entities) override {
        for (ObjectId entity : entities) say(listingOf(currentDrawing(), entity));
    }
};

// Undo of whole commands. Changes cannot be taken back while they are being made.
class UndoCommand : public Command {
  public:
    explicit UndoCommand(Host& host, bool asks) : Command(host), asks_(asks) {}
    bool isUndoable() const override { return false; }

    void start() override {
        if (!asks_) {
            undo(1);
            return;
        }
        ask(
            Prompt::Kind::Integer, "\nEnter the number of operations to undo or [BEgin/End] <1>: ",
            [this](const Answer& answer) {
                if (answer.isKeyword("BEgin"))
                    currentDrawing().beginUndoGroup();
                else if (answer.isKeyword("End"))
                    currentDrawing().endUndoGroup();
                else
                    undo(answer.isValue() ? static_cast<int>(answer.number) : 1);
            },
            "BEgin End", kNoZero | kNoNegative);
    }

  private:
    void undo(int count) {
        int done = 0;
        while (done < count && currentDrawing().undo()) ++done;
        if (done == 0)
            say("\nThere is nothing to undo.\n");
        else
            host_.view().redraw();
    }

    bool asks_;
};

class RedoCommand : public Command {
  public:
    using Command::Command;
    bool isUndoable() const override { return false; }
    void start() override {
        if (currentDrawing().redo())
            host_.view().redraw();
        else
            say("\nThere is nothing to redo.\n");
    }
};

}  // namespace

void defineEditCommands(CommandProcessor& commands) {
    commands.define<EraseCommand>("ERASE");
    commands.define<ListCommand>("LIST");
    commands.define<UndoCommand>("U", false);
    commands.define<UndoCommand>("UNDO", true);
    commands.define<RedoCommand>("REDO");
}

}  // namespace hostcad
