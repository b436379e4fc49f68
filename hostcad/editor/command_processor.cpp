#include "hostcad/editor/command_processor.h"

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/editor/host.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

struct Alias {
    const char* typed;
    const char* name;
};

constexpr Alias kAliases[] = {
    {"C", "CIRCLE"},   {"DT", "TEXT"},  {"E", "ERASE"},   {"I", "INSERT"},
    {"L", "LINE"},     {"LA", "LAYER"}, {"LI", "LIST"},   {"LS", "LIST"},
    {"PL", "PLINE"},   {"PO", "POINT"}, {"RE", "REGEN"},  {"REGENALL", "REGEN"},
    {"DTEXT", "TEXT"}, {"Z", "ZOOM"},   {"EXIT", "QUIT"}, {"DDINSERT", "INSERT"},
};

// Marks in front of a command's name: the international name, the built-in command, no dialog, transparent.
constexpr std::string_view kMarks = "_.-'";

}  // namespace

CommandProcessor::CommandProcessor(Host& host) : host_(host) {
    defineFileCommands(*this);
    defineLayerCommand(*this);
    defineViewCommands(*this);
    defineInsertCommand(*this);
    defineDrawingCommands(*this);
    definePolylineCommand(*this);
    defineTextCommand(*this);
    defineEditCommands(*this);
}

CommandProcessor::~CommandProcessor() = default;

void CommandProcessor::define(const std::string& name, Factory factory) {
    factories_[name] = std::move(factory);
}

std::string CommandProcessor::resolve(std::string_view typed) const {
    typed = text::trim(typed);
    typed.remove_prefix(std::min(typed.find_first_not_of(kMarks), typed.size()));
    std::string name = text::upper(typed);
    for (const Alias& alias : kAliases)
        if (name == alias.typed) name = alias.name;
    return factories_.count(name) ? name : "";
}

bool CommandProcessor::isQuiet() const {
    return isScripted_ && host_.variables().integer("CMDECHO") == 0;
}

bool CommandProcessor::start(std::string_view typed) {
    std::string name = resolve(typed);
    if (name.empty()) {
        if (runLispCommand(text::upper(text::trim(typed)))) return true;
        host_.write("\nUnknown command \"" + text::upper(text::trim(typed)) + "\".\n");
        return false;
    }
    command_ = factories_[name](host_);
    activeName_ = name;
    if (command_->isUndoable()) currentDrawing().beginUndoGroup();
    changesBefore_ = currentDrawing().changes();
    command_->start();
    settle();
    takeSelection();
    return true;
}

// A function C:NAME is a command of the name. False when there is none; an error in it is thrown.
bool CommandProcessor::runLispCommand(const std::string& name) {
    lisp::Symbol* symbol = host_.lisp().find("C:" + name);
    if (!symbol || symbol->value.isNil()) return false;
    lisp::Value call = lisp::Value::list({lisp::Value::symbol(symbol)});
    host_.lisp().eval(call);
    return true;
}

CommandProcessor::Result CommandProcessor::feed(const Input& input) {
    if (!command_) {
        if (input.kind != Input::Kind::Text) return Result::Refused;
        if (text::trim(input.text).empty()) return Result::Taken;
        return start(input.text) ? Result::Taken : Result::Unknown;
    }
    std::string complaint;
    std::optional<Answer> answer = interpret(command_->prompt(), input, host_.conventions(), complaint);
    if (!answer) {
        host_.write("\n" + complaint + "\n");
        return Result::Refused;
    }
    if (answer->kind == Answer::Kind::Cancelled || answer->kind == Answer::Kind::NoInput) {
        cancel();
        return answer->kind == Answer::Kind::NoInput ? Result::Abandoned : Result::Cancelled;
    }
    if (answer->isValue() && command_->prompt().kind == Prompt::Kind::Point)
        host_.setLastPoint(answer->point);
    command_->answer(*answer);
    settle();
    return Result::Taken;
}

CommandProcessor::Result CommandProcessor::feedFromUser() {
    std::string asked = command_->prompt().text;
    host_.write(asked);
    Input input = host_.commandLine().nextInput(command_->prompt());
    if (input.kind == Input::Kind::End)
        host_.write("\nThe command " + activeName_ + " got no answer to \"" + std::string(text::trim(asked)) +
                    "\".\n");
    return feed(input);
}

CommandProcessor::Result CommandProcessor::finish() {
    while (isActive()) {
        Result result = feedFromUser();
        if (result == Result::Cancelled || result == Result::Abandoned) return result;
    }
    return Result::Taken;
}

void CommandProcessor::cancel() {
    if (!command_) return;
    command_->cancelled();
    end();
    host_.write("*Cancel*\n");
}

void CommandProcessor::settle() {
    if (command_ && command_->isDone()) end();
}

// A command that a program runs has its answers from the program, but for what that has selected for it.
void CommandProcessor::takeSelection() {
    if (!command_ || !isScripted_) return;
    for (const Input& input : host_.selection().takeForProgram(command_->prompt()))
        if (command_) feed(input);
}

void CommandProcessor::end() {
    // What a command was to work on is done with.
    const bool hasChanged = command_->isUndoable() && currentDrawing().changes() != changesBefore_;
    if (hasChanged && !host_.selection().isEmpty()) host_.select({});
    if (command_->isUndoable()) currentDrawing().endUndoGroup();
    command_.reset();
    activeName_.clear();
}

}  // namespace hostcad
