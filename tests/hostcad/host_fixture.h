// A host with a blank drawing, a queue of answers and a record of what it said.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <string>

#include "hostcad/drawing/current_drawing.h"
#include "hostcad/editor/host.h"
#include "hostcad/lisp/printer.h"

namespace hostcad {

class HostTest : public testing::Test, public Output, public InputSource {
  public:
    void write(std::string_view text) override { output_ += text; }
    Input next(const Prompt&) override {
        if (inputs_.empty()) return Input::end();
        Input input = inputs_.front();
        inputs_.pop_front();
        return input;
    }

  protected:
    // The printed value of the last expression, or "error: ..." with the message.
    std::string run(const std::string& text) {
        try {
            return lisp::toText(host_.lisp().runText(text));
        } catch (const lisp::Error& error) {
            return std::string("error: ") + error.what();
        }
    }

    // What was said since the last call.
    std::string said() { return std::exchange(output_, ""); }
    void answer(const std::string& text) { inputs_.push_back(Input::ofText(text)); }
    void answer(Input input) { inputs_.push_back(std::move(input)); }

    // A group of the last entity.
    std::string last(int code) {
        return run("(cdr (assoc " + std::to_string(code) + " (entget (entlast))))");
    }

    std::deque<Input> inputs_;
    std::string output_;
    NoView view_;
    Host host_{*this, *this, view_};
};

}  // namespace hostcad
