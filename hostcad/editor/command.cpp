#include "hostcad/editor/command.h"

#include "hostcad/editor/host.h"

namespace hostcad {

void Command::ask(Prompt prompt, Handler handler) {
    prompt_ = std::move(prompt);
    handler_ = std::move(handler);
}

void Command::ask(Prompt::Kind kind, const std::string& text, Handler handler, const std::string& keywords,
                  int bits) {
    ask(Prompt{kind, text, bits, Keywords(keywords), {}}, std::move(handler));
}

void Command::askFrom(const Point& base, Prompt::Kind kind, const std::string& text, Handler handler,
                      const std::string& keywords, int bits) {
    ask(Prompt{kind, text, bits, Keywords(keywords), base}, std::move(handler));
}

void Command::askCorner(const Point& from, const std::string& text, Handler handler) {
    ask(Prompt{Prompt::Kind::Point, text, 0, {}, from, true}, std::move(handler));
}

void Command::answer(const Answer& answer) {
    Handler handler = std::move(handler_);
    handler_ = nullptr;
    if (handler) handler(answer);
}

void Command::say(const std::string& text) {
    host_.write(text);
}

void Command::note(const std::string& text) {
    if (!host_.commands().isQuiet()) host_.write(text);
}

}  // namespace hostcad
