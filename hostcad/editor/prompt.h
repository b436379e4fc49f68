// What the host asks, what it is given, and what it makes of that.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/plane/point.h"

namespace hostcad {

using plane::Point;
using EntityName = std::array<long, 2>;

// The keywords of a prompt, from a text such as "Select Pick Number" or "LType,LT". The capitals of a word
// are the least that must be typed; behind a comma they stand on their own; a word without small letters or
// without capitals must be typed whole. "Ja Nein _Yes No" shows the first words and returns the second
// ones, which can be typed with "_" in front.
class Keywords {
  public:
    Keywords() = default;
    explicit Keywords(std::string_view list);
    // The word that the text stands for, as a program knows it.
    std::optional<std::string> match(std::string_view text) const;
    bool empty() const { return words_.empty(); }
    // The words as a user sees them.
    std::vector<std::string> shown() const;

  private:
    struct Word {
        std::string text;
        std::string shortest;
        std::string result;
        bool isGlobal;  // answers to "_"
    };
    void add(std::string_view item, bool isGlobal);
    std::vector<Word> words_;
};

// Bits of a prompt, with the values of acedInitGet.
constexpr int kNoEnter = 1;
constexpr int kNoZero = 2;
constexpr int kNoNegative = 4;
constexpr int kFlatDistance = 64;  // heights do not count
constexpr int kAnyText = 128;

struct Prompt {
    enum class Kind { Command, Text, Line, Keyword, Integer, Real, Distance, Angle, Point, Entity, Objects };
    Kind kind = Kind::Text;
    std::string text;  // as it is shown
    int bits = 0;
    Keywords keywords;
    std::optional<Point> base;  // what distances, angles and relative points count from
    bool isCorner = false;      // the point is the corner of a box that begins at the base
};

// One thing that a person or a script gives.
struct Input {
    enum class Kind { Text, Number, Point, Entity, Set, Cancel, End };
    Kind kind = Kind::Text;
    std::string text;
    double number = 0;
    Point point{};
    EntityName name{};  // of an entity or a selection set

    static Input ofText(std::string text) { return {Kind::Text, std::move(text), 0, {}, {}}; }
    static Input enter() { return ofText(""); }
    static Input ofNumber(double number) { return {Kind::Number, "", number, {}, {}}; }
    static Input ofPoint(const Point& point) { return {Kind::Point, "", 0, point, {}}; }
    static Input ofEntity(const EntityName& name, const Point& picked = {}) {
        return {Kind::Entity, "", 0, picked, name};
    }
    static Input ofSet(const EntityName& name) { return {Kind::Set, "", 0, {}, name}; }
    static Input cancel() { return {Kind::Cancel, "", 0, {}, {}}; }
    static Input end() { return {Kind::End, "", 0, {}, {}}; }
};

// What a prompt got.
struct Answer {
    enum class Kind {
        Value,
        None,       // Enter
        Keyword,    // or, with kAnyText, any other text
        Cancelled,  // Escape
        NoInput     // nobody is there to answer
    };
    Kind kind = Kind::None;
    std::string text;  // of a text or a keyword
    double number = 0;
    Point point{};
    EntityName name{};
    bool isSet = false;    // the name is that of a selection set
    bool isPoint = false;  // the value is a point, also where a number was asked for

    bool isValue() const { return kind == Kind::Value; }
    bool isKeyword(std::string_view word) const { return kind == Kind::Keyword && text == word; }
};

// What typed numbers and points depend on.
struct Conventions {
    Point lastPoint{};
    double elevation = 0;
    int angleFormat = 0;  // AUNITS
    double angleBase = 0;
    bool isClockwise = false;
};

// A typed point: "x,y", "x,y,z", "@dx,dy", "@distance<angle", "distance<angle", "@" for the last point.
std::optional<Point> parsePoint(std::string_view text, const Conventions& conventions);
// "1.5,2,0": as it would be typed.
std::string pointText(const Point& point);

// The answer that an input is; nothing, and why not, when it does not fit the prompt.
std::optional<Answer> interpret(const Prompt& prompt, const Input& input, const Conventions& conventions,
                                std::string& complaint);

}  // namespace hostcad
