// Starts commands by name and feeds them with answers.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "hostcad/editor/command.h"
#include "platform/scope/temporary_value.h"

namespace hostcad {

class CommandProcessor {
  public:
    explicit CommandProcessor(Host& host);
    ~CommandProcessor();

    enum class Result {
        Taken,
        Refused,    // it does not fit what is asked; the user was told, and it is still asked
        Cancelled,  // by Escape; the command is over
        Abandoned,  // nobody is there to answer; the user was told, and the command is over
        Unknown     // no command has that name; the user was told
    };
    // One answer to the command in progress, or the name of a command where there is none. Throws lisp::Error
    // when that is a command written in Lisp and fails.
    Result feed(const Input& input);
    // The same with an answer of the user to what the command in progress asks.
    Result feedFromUser();
    // Asks the user for answers until the command in progress is over: Taken, Cancelled or Abandoned.
    Result finish();
    void cancel();
    bool isActive() const { return command_ != nullptr; }
    // Answers come from a program, so no command shows a box in place of a prompt.
    bool isScripted() const { return isScripted_; }
    // They do while this lives.
    [[nodiscard]] scope::TemporaryValue<bool> beginScripted() { return {isScripted_, true}; }
    // Such a program does not want to see prompts and notes either.
    bool isQuiet() const;
    // What the command in progress asks now.
    const Prompt& prompt() const { return command_->prompt(); }
    // The name of the command in progress, "" when there is none.
    const std::string& activeName() const { return activeName_; }
    // The whole name of a built-in command from what was typed: "_.L" gives LINE. "" for another name.
    std::string resolve(std::string_view typed) const;

    using Factory = std::function<std::unique_ptr<Command>(Host&)>;
    void define(const std::string& name, Factory factory);
    // A command of a class, made with the host and these arguments.
    template <class C, class... Arguments>
    void define(const std::string& name, Arguments... arguments) {
        define(name, [=](Host& host) { return std::make_unique<C>(host, arguments...); });
    }

  private:
    bool start(std::string_view typed);
    bool runLispCommand(const std::string& name);
    void takeSelection();
    void settle();
    void end();

    Host& host_;
    std::map<std::string, Factory> factories_;
    std::unique_ptr<Command> command_;
    std::string activeName_;
    uint64_t changesBefore_ = 0;  // of the drawing, when the command began
    bool isScripted_ = false;
};

// The commands that the host has, a file for each kind.
void defineFileCommands(CommandProcessor& commands);
void defineLayerCommand(CommandProcessor& commands);
void defineViewCommands(CommandProcessor& commands);
void defineInsertCommand(CommandProcessor& commands);
void defineDrawingCommands(CommandProcessor& commands);
void definePolylineCommand(CommandProcessor& commands);
void defineTextCommand(CommandProcessor& commands);
void defineEditCommands(CommandProcessor& commands);

}  // namespace hostcad
