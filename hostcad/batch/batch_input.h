// Answers to the prompts of a run without a window: from a queue, and from the keyboard where that is wished.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "hostcad/editor/command_line.h"
#include "hostcad/lisp/value.h"
#include "platform/ui/scripted/scripted_backend.h"

namespace hostcad {

class BatchInput : public InputSource {
  public:
    BatchInput(Output& output, bool asksKeyboard) : output_(output), asksKeyboard_(asksKeyboard) {}
    // Queues a value as an answer, and keeps it until it is used: it may be a selection set that nothing
    // else holds. Throws lisp::Error for what can be no answer.
    void add(const lisp::Value& value);
    // Answers that nothing has asked for.
    size_t leftOver() const { return queue_.size(); }
    Input next(const Prompt& prompt) override;
    bool isScript() const override { return !asksKeyboard_ || !queue_.empty(); }

  private:
    Output& output_;
    bool asksKeyboard_;
    std::deque<lisp::Value> queue_;
    lisp::Value given_;
};

// The keyboard as an answer to dialogs: each is shown as text, and steps are typed as in a script, the
// brackets round them left out or not: click "OK".
class KeyboardAsker : public ui::Asker {
  public:
    // readStep makes a step from its text, or says why it cannot.
    using StepReader = std::function<std::optional<ui::Step>(const std::string& typed, std::string& problem)>;
    KeyboardAsker(Output& output, StepReader readStep) : output_(output), readStep_(std::move(readStep)) {}
    std::optional<ui::Step> step(const std::string& model) override;
    std::optional<std::string> answer(const std::string& question) override;

  private:
    Output& output_;
    StepReader readStep_;
};

// A Lisp value as an answer: text, number, point, entity, selection set, (entity point). nil is Enter, and
// the string "\e" is Escape. Throws lisp::Error for what can be no answer.
Input inputOf(const lisp::Value& value);

}  // namespace hostcad
