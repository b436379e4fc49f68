// The command line: where all text goes out and all answers come in.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "hostcad/editor/implied_selection.h"
#include "hostcad/editor/prompt.h"

namespace hostcad {

// Takes the text of the command line as it comes, line feeds and carriage returns included.
class Output {
  public:
    virtual ~Output() = default;
    virtual void write(std::string_view text) = 0;
};

// Gives answers. A window runs its event loop until the user has acted; a queue gives the next item; a
// terminal reads a line. The prompt's text has been written to the output when this is called.
class InputSource {
  public:
    virtual ~InputSource() = default;
    virtual Input next(const Prompt& prompt) = 0;
    // Whether the next answer comes from a script and not from a person.
    virtual bool isScript() const { return false; }
};

class CommandLine {
  public:
    // Both stay the caller's.
    CommandLine(Output& output, InputSource& source) : output_(output), source_(source) {}

    void write(std::string_view text) { output_.write(text); }
    // Rules for the next prompt only.
    void prepare(int bits, std::string_view keywords);
    // Asks until an answer fits. The rules of prepare() are used up.
    Answer ask(Prompt prompt, const Conventions& conventions);
    // One input from the user, whatever it is: what is selected already, where the prompt may take that.
    Input nextInput(const Prompt& prompt);
    // What is selected may answer the first prompt from now on, or no longer.
    void offerSelection();
    void withdrawSelection();
    ImpliedSelection& selection() { return selection_; }
    bool isAnsweredByScript() const { return source_.isScript(); }
    // The keyword or other text that the last prompt got in place of a value.
    const std::string& lastWord() const { return lastWord_; }

  private:
    Output& output_;
    InputSource& source_;
    ImpliedSelection selection_;
    std::deque<Input> ahead_;  // of the selection, for the prompts to come
    int bits_ = 0;
    std::string keywords_;
    std::string lastWord_;
};

}  // namespace hostcad
