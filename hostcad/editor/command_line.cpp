#include "hostcad/editor/command_line.h"

namespace hostcad {

void CommandLine::prepare(int bits, std::string_view keywords) {
    bits_ = bits;
    keywords_ = keywords;
}

Input CommandLine::nextInput(const Prompt& prompt) {
    return source_.next(prompt);
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
