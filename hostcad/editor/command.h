// A command of the host. It asks one thing after another and says each time what is to be done with the
// answer; it is over when a handler asks nothing more. So a command can wait, between two answers, for as
// long as it takes: for a person, or for the next (command ...) of a Lisp program.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "hostcad/editor/prompt.h"

namespace hostcad {

class Host;

class Command {
  public:
    explicit Command(Host& host) : host_(host) {}
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    // Asks the first thing.
    virtual void start() = 0;
    // The user has ended the command by Escape; what it has made stays.
    virtual void cancelled() {}
    // Its changes are one step for UNDO.
    virtual bool isUndoable() const { return true; }

    bool isDone() const { return !handler_; }
    const Prompt& prompt() const { return prompt_; }
    void answer(const Answer& answer);

  protected:
    using Handler = std::function<void(const Answer&)>;
    void ask(Prompt prompt, Handler handler);
    void ask(Prompt::Kind kind, const std::string& text, Handler handler, const std::string& keywords = "",
             int bits = 0);
    void askFrom(const Point& base, Prompt::Kind kind, const std::string& text, Handler handler,
                 const std::string& keywords = "", int bits = 0);
    // The corner of a box that begins at a point.
    void askCorner(const Point& from, const std::string& text, Handler handler);
    // What the user must know.
    void say(const std::string& text);
    // What a person at the command line sees; a program that works quietly (CMDECHO 0) does without.
    void note(const std::string& text);

    Host& host_;

  private:
    Prompt prompt_;
    Handler handler_;
};

}  // namespace hostcad
