#include "hostcad/batch/batch_input.h"

#include <iostream>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/printer.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

constexpr const char* kEscape = "\x1b";

std::optional<std::string> readLine() {
    std::string line;
    if (!std::getline(std::cin, line)) return {};
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

// What stands in the record of the run for an answer from the queue.
std::string echoOf(const Input& input) {
    switch (input.kind) {
        case Input::Kind::Text:
            return input.text;
        case Input::Kind::Number:
            return text::fromReal(input.number);
        case Input::Kind::Point:
            return pointText(input.point);
        case Input::Kind::Entity:
            return "<entity>";
        case Input::Kind::Set:
            return "<selection set>";
        case Input::Kind::Cancel:
            return "*Cancel*";
        case Input::Kind::End:
            break;
    }
    return "";
}

}  // namespace

void BatchInput::add(const lisp::Value& value) {
    inputOf(value);
    queue_.push_back(value);
}

Input BatchInput::next(const Prompt&) {
    if (!queue_.empty()) {
        given_ = std::move(queue_.front());
        queue_.pop_front();
        Input input = inputOf(given_);
        output_.write(echoOf(input) + "\n");
        return input;
    }
    if (!asksKeyboard_) return Input::end();
    std::optional<std::string> line = readLine();
    if (!line) return Input::end();
    return *line == kEscape ? Input::cancel() : Input::ofText(*line);
}

std::optional<ui::Step> KeyboardAsker::step(const std::string& model) {
    output_.write("\n" + model + "\n");
    while (true) {
        output_.write("step (Enter cancels)> ");
        std::optional<std::string> line = readLine();
        if (!line || text::trim(*line).empty()) return {};
        std::string problem;
        std::optional<ui::Step> step = readStep_(*line, problem);
        if (step) return step;
        output_.write(problem + "\n");
    }
}

std::optional<std::string> KeyboardAsker::answer(const std::string& question) {
    output_.write("\n" + question + "\nanswer> ");
    return readLine();
}

Input inputOf(const lisp::Value& value) {
    lisp::Point point;
    switch (value.type()) {
        case lisp::Type::Nil:
            return Input::enter();
        case lisp::Type::String:
            return value.asString() == kEscape ? Input::cancel() : Input::ofText(value.asString());
        case lisp::Type::Symbol:
            return Input::ofText(value.asSymbol()->name);
        case lisp::Type::Integer:
        case lisp::Type::Real:
            return Input::ofNumber(value.asNumber());
        case lisp::Type::Entity:
            return Input::ofEntity({value.asName()[0], value.asName()[1]});
        case lisp::Type::SelectionSet:
            return Input::ofSet({value.asName()[0], value.asName()[1]});
        case lisp::Type::Pair:
            if (readPoint(value, point)) return Input::ofPoint({point.at[0], point.at[1], point.at[2]});
            if (value.car().type() == lisp::Type::Entity && readPoint(value.cdr().car(), point)) {
                const long* name = value.car().asName();
                return Input::ofEntity({name[0], name[1]}, {point.at[0], point.at[1], point.at[2]});
            }
            break;
        default:
            break;
    }
    throw lisp::Error("no answer to a prompt: " + lisp::toShortText(value));
}

}  // namespace hostcad
