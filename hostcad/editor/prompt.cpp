#include "hostcad/editor/prompt.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numbers>

#include "hostcad/lisp/units.h"
#include "platform/plane/angle.h"
#include "platform/text/text.h"

namespace hostcad {

namespace {

bool isUpper(char c) {
    return std::isupper(static_cast<unsigned char>(c)) || std::isdigit(static_cast<unsigned char>(c));
}
bool isLower(char c) {
    return std::islower(static_cast<unsigned char>(c));
}

}  // namespace

// --- Keywords ----------------------------------------------------------------------------------------

Keywords::Keywords(std::string_view list) {
    bool isGlobal = false;
    size_t local = 0, matched = 0;
    for (const std::string& item : text::split(list, ' ')) {
        std::string_view word = item;
        if (word.empty()) continue;
        if (word.front() == '_' && word.size() > 1 && !isGlobal) {
            isGlobal = true;
            local = words_.size();
            word.remove_prefix(1);
        }
        add(word, isGlobal);
        if (isGlobal && matched < local) words_[matched++].result = words_.back().result;
    }
}

void Keywords::add(std::string_view item, bool isGlobal) {
    size_t comma = item.find(',');
    std::string_view word = item.substr(0, comma);
    Word made{std::string(word), "", std::string(word), isGlobal};
    if (comma != std::string_view::npos) {
        made.shortest = item.substr(comma + 1);
    } else {
        bool isMixed =
            std::any_of(word.begin(), word.end(), isUpper) && std::any_of(word.begin(), word.end(), isLower);
        auto first = std::find_if(word.begin(), word.end(), isUpper);
        auto last = std::find_if_not(first, word.end(), isUpper);
        made.shortest = isMixed ? std::string(first, last) : std::string(word);
    }
    words_.push_back(std::move(made));
}

std::vector<std::string> Keywords::shown() const {
    std::vector<std::string> words;
    for (const Word& word : words_)
        if (!word.isGlobal) words.push_back(word.text);
    return words;
}

std::optional<std::string> Keywords::match(std::string_view typed) const {
    typed = text::trim(typed);
    bool onlyGlobal = !typed.empty() && typed.front() == '_';
    if (onlyGlobal) typed.remove_prefix(1);
    if (typed.empty()) return {};
    bool hasGlobal = std::any_of(words_.begin(), words_.end(), [](const Word& w) { return w.isGlobal; });
    for (const Word& word : words_) {
        if (hasGlobal && word.isGlobal != onlyGlobal) continue;
        bool isShort = text::equalNoCase(typed, word.shortest);
        bool isBeginning = typed.size() >= word.shortest.size() && typed.size() <= word.text.size() &&
                           text::equalNoCase(typed, std::string_view(word.text).substr(0, typed.size()));
        if (isShort || isBeginning) return word.result;
    }
    return {};
}

// --- Points ------------------------------------------------------------------------------------------

namespace {

double fromTypedAngle(double radians, const Conventions& conventions) {
    return conventions.angleBase + (conventions.isClockwise ? -radians : radians);
}

std::optional<double> parseTypedAngle(std::string_view s, const Conventions& conventions) {
    bool isBearing = !s.empty() && std::isalpha(static_cast<unsigned char>(s.front()));
    auto radians = lisp::parseAngle(s, static_cast<lisp::AngleFormat>(conventions.angleFormat));
    if (!radians || isBearing) return radians;
    return fromTypedAngle(*radians, conventions);
}

}  // namespace

std::optional<Point> parsePoint(std::string_view s, const Conventions& conventions) {
    s = text::trim(s);
    bool isRelative = false;
    Point from{};
    if (!s.empty() && s.front() == '*') s.remove_prefix(1);  // world coordinates, which all are
    if (!s.empty() && s.front() == '@') {
        isRelative = true;
        from = conventions.lastPoint;
        s = text::trim(s.substr(1));
        if (s.empty()) return from;
    }
    size_t polar = s.find('<');
    if (polar != std::string_view::npos) {
        auto length = lisp::parseLength(s.substr(0, polar));
        auto radians = parseTypedAngle(text::trim(s.substr(polar + 1)), conventions);
        if (!length || !radians) return {};
        double z = isRelative ? from.z : conventions.elevation;
        return plane::polar({from.x, from.y, z}, *radians, *length);
    }
    std::vector<std::string> parts = text::split(s, ',');
    if (parts.size() < 2 || parts.size() > 3) return {};
    double coordinates[] = {0, 0, isRelative ? 0 : conventions.elevation};
    for (size_t i = 0; i < parts.size(); ++i) {
        auto number = lisp::parseLength(parts[i]);
        if (!number) return {};
        coordinates[i] = *number;
    }
    return Point{coordinates[0], coordinates[1], coordinates[2]} + from;
}

std::string pointText(const Point& point) {
    return text::fromReal(point.x) + "," + text::fromReal(point.y) + "," + text::fromReal(point.z);
}

// --- Interpretation ----------------------------------------------------------------------------------

namespace {

class Interpreter {
  public:
    Interpreter(const Prompt& prompt, const Input& input, const Conventions& conventions,
                std::string& complaint)
        : prompt_(prompt), input_(input), conventions_(conventions), complaint_(complaint) {}

    std::optional<Answer> run() {
        if (input_.kind == Input::Kind::Cancel) return simple(Answer::Kind::Cancelled);
        if (input_.kind == Input::Kind::End) return simple(Answer::Kind::NoInput);
        if (auto answer = keywordOrEnter()) return answer;
        if (!complaint_.empty()) return {};
        if (auto answer = value()) return answer;
        if ((prompt_.bits & kAnyText) && input_.kind == Input::Kind::Text)
            return ofText(Answer::Kind::Keyword, input_.text);
        if (complaint_.empty()) complaint_ = expectation();
        return {};
    }

  private:
    static std::optional<Answer> simple(Answer::Kind kind) {
        Answer answer;
        answer.kind = kind;
        return answer;
    }

    static std::optional<Answer> ofText(Answer::Kind kind, std::string text) {
        Answer answer;
        answer.kind = kind;
        answer.text = std::move(text);
        return answer;
    }

    bool isTextual() const {
        return prompt_.kind == Prompt::Kind::Text || prompt_.kind == Prompt::Kind::Line;
    }

    std::optional<Answer> keywordOrEnter() {
        if (input_.kind != Input::Kind::Text) return {};
        bool isBlank =
            prompt_.kind == Prompt::Kind::Line ? input_.text.empty() : text::trim(input_.text).empty();
        if (isBlank) {
            if (!(prompt_.bits & kNoEnter)) return simple(Answer::Kind::None);
            complaint_ = expectation();
            return {};
        }
        if (isTextual()) return {};
        if (auto word = prompt_.keywords.match(input_.text)) return ofText(Answer::Kind::Keyword, *word);
        return {};
    }

    std::optional<Answer> value() {
        switch (prompt_.kind) {
            case Prompt::Kind::Command:
            case Prompt::Kind::Text:
            case Prompt::Kind::Line:
                return text();
            case Prompt::Kind::Keyword:
                return {};
            case Prompt::Kind::Integer:
                return integer();
            case Prompt::Kind::Real:
                return real();
            case Prompt::Kind::Distance:
                return distance();
            case Prompt::Kind::Angle:
                return angle();
            case Prompt::Kind::Point:
                return point();
            case Prompt::Kind::Entity:
            case Prompt::Kind::Objects:
                return entity();
        }
        return {};
    }

    std::optional<Answer> text() {
        switch (input_.kind) {
            case Input::Kind::Text:
                return ofText(Answer::Kind::Value, input_.text);
            case Input::Kind::Number:
                return ofText(Answer::Kind::Value, text::fromReal(input_.number));
            case Input::Kind::Point:
                return ofText(Answer::Kind::Value, pointText(input_.point));
            default:
                return {};
        }
    }

    std::optional<double> typedNumber() const {
        if (input_.kind == Input::Kind::Number) return input_.number;
        if (input_.kind == Input::Kind::Text) return lisp::parseLength(input_.text);
        return {};
    }

    std::optional<Answer> ofNumber(double number) {
        if ((prompt_.bits & kNoZero) && number == 0)
            complaint_ = "The value must not be zero.";
        else if ((prompt_.bits & kNoNegative) && number < 0)
            complaint_ = "The value must not be negative.";
        if (!complaint_.empty()) return {};
        Answer answer;
        answer.kind = Answer::Kind::Value;
        answer.number = number;
        return answer;
    }

    std::optional<Answer> integer() {
        std::optional<double> number = typedNumber();
        constexpr double kLimit = 2147483647;
        if (!number || std::trunc(*number) != *number || std::abs(*number) > kLimit) return {};
        return ofNumber(*number);
    }

    std::optional<Answer> real() {
        std::optional<double> number = typedNumber();
        if (!number) return {};
        return ofNumber(*number);
    }

    // A number, or a point that is so far from the base.
    std::optional<Answer> distance() {
        if (std::optional<double> number = typedNumber()) return ofNumber(*number);
        std::optional<Point> at = typedPoint();
        if (!at) return {};
        if (!prompt_.base) return ofPoint(*at);
        const Point& from = *prompt_.base;
        double dz = prompt_.bits & kFlatDistance ? 0 : at->z - from.z;
        return ofNumber(std::hypot(at->x - from.x, at->y - from.y, dz));
    }

    std::optional<Answer> angle() {
        if (input_.kind == Input::Kind::Number)
            return ofNumber(fromTypedAngle(input_.number * std::numbers::pi / 180, conventions_));
        if (input_.kind == Input::Kind::Text && input_.text.find(',') == std::string::npos)
            if (auto radians = parseTypedAngle(text::trim(input_.text), conventions_))
                return ofNumber(*radians);
        std::optional<Point> at = typedPoint();
        if (!at) return {};
        if (!prompt_.base) return ofPoint(*at);
        return ofNumber(plane::withinTurn(plane::direction(*prompt_.base, *at)));
    }

    std::optional<Point> typedPoint() const {
        if (input_.kind == Input::Kind::Point) return input_.point;
        if (input_.kind == Input::Kind::Text) return parsePoint(input_.text, conventions_);
        return {};
    }

    std::optional<Answer> ofPoint(const Point& at) {
        Answer answer;
        answer.kind = Answer::Kind::Value;
        answer.point = at;
        answer.isPoint = true;
        return answer;
    }

    std::optional<Answer> point() {
        std::optional<Point> at = typedPoint();
        if (!at) return {};
        return ofPoint(*at);
    }

    // An entity; at a prompt for objects also a set. A point is taken as it is: the host looks what is there.
    std::optional<Answer> entity() {
        bool isSet = input_.kind == Input::Kind::Set && prompt_.kind == Prompt::Kind::Objects;
        if (input_.kind == Input::Kind::Entity || isSet) {
            Answer answer;
            answer.kind = Answer::Kind::Value;
            answer.name = input_.name;
            answer.point = input_.point;
            answer.isSet = isSet;
            return answer;
        }
        return point();
    }

    std::string expectation() const {
        bool orWord = !prompt_.keywords.empty();
        switch (prompt_.kind) {
            case Prompt::Kind::Integer:
                return orWord ? "A whole number or an option is needed." : "A whole number is needed.";
            case Prompt::Kind::Real:
                return orWord ? "A number or an option is needed." : "A number is needed.";
            case Prompt::Kind::Distance:
                return orWord ? "A distance, a point or an option is needed."
                              : "A distance or two points are needed.";
            case Prompt::Kind::Angle:
                return orWord ? "An angle, a point or an option is needed."
                              : "An angle or a point is needed.";
            case Prompt::Kind::Point:
                return orWord ? "A point or an option is needed." : "A point is needed.";
            case Prompt::Kind::Keyword:
                return "That is not one of the options.";
            case Prompt::Kind::Entity:
            case Prompt::Kind::Objects:
                return "An object or a point on it is needed.";
            default:
                return "Something must be entered.";
        }
    }

    const Prompt& prompt_;
    const Input& input_;
    const Conventions& conventions_;
    std::string& complaint_;
};

}  // namespace

std::optional<Answer> interpret(const Prompt& prompt, const Input& input, const Conventions& conventions,
                                std::string& complaint) {
    complaint.clear();
    return Interpreter(prompt, input, conventions, complaint).run();
}

}  // namespace hostcad
