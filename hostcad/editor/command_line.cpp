#include "hostcad/editor/command_line.h"

namespace hostcad {

void CommandLine::prepare(int bits, std::string_view keywords) {
    bits_ = bits;
    keywords_ = keywords;
}

Input CommandLine::nextInput(const Prompt& prompt) {
    for (Input& input : selection_.take(prompt)) ahead_.push_back(std::move(input));
    if (ahead_.empty()) return source_.next(prompt);
    Input input = std::move(ahead_.front());
    ahead_.pop_front();
    return input;
}

void CommandLine::offerSelection() {
    ahead_.clear();
    selection_.offer();
}

void CommandLine::withdrawSelection() {
    ahead_.clear();
    selection_.withdraw();
}

Answer CommandLine::ask(Prompt prompt, const Conventions& conventions) {
    prompt.bits |= bits_;
    if (!keywords_.empty()) prompt.keywords = Keywords(keywords_);
    prepare(0, "");
    while (true) {
        write(prompt.text);
        std::string complaint;
        std::optional<Answer> answer = interpret(prompt, nextInput(prompt), conventions, complaint);
        if (answer) {
            if (answer->kind == Answer::Kind::Keyword) lastWord_ = answer->text;
            return *answer;
        }
        write("\n" + complaint + "\n");
    }
}

}  // namespace hostcad
