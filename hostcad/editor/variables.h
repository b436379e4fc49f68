// System variables.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hostcad/editor/prompt.h"

namespace hostcad {

// A value of one of the types that variables have: RTSHORT, RTREAL, RTPOINT, RT3DPOINT, RTSTR.
struct VariableValue {
    short type = 0;
    long integer = 0;
    double real = 0;
    Point point{};
    std::string text;

    static VariableValue ofInteger(long n);
    static VariableValue ofReal(double r);
    static VariableValue ofPoint(const Point& p, bool isFlat = false);
    static VariableValue ofText(std::string s);
};

// Some variables live with the process, some in the header of the drawing, some are worked out.
class Variables {
  public:
    Variables();

    // Nothing for a name that is not known; names compare without case.
    std::optional<VariableValue> get(std::string_view name) const;
    // "" when it was set, else why not.
    std::string set(std::string_view name, const VariableValue& value);

    // Conveniences for variables that are known to exist.
    long integer(std::string_view name) const;
    double real(std::string_view name) const;
    std::string text(std::string_view name) const;
    Point point(std::string_view name) const;

    // Adds a variable that is worked out; without a setter it cannot be set.
    using Getter = std::function<VariableValue()>;
    using Setter = std::function<std::string(const VariableValue&)>;
    void define(const std::string& name, Getter get, Setter set = nullptr);

  private:
    struct Entry {
        VariableValue value;  // of the process, or what stands for one that the drawing's header lacks
        int headerCode = 0;   // group code in the header; 0: not there
        Getter get;
        Setter setter;
        bool isFixed = false;
    };
    VariableValue headerValue(const std::string& name, const Entry& entry) const;
    void setHeader(const std::string& name, const Entry& entry, const VariableValue& value);
    std::map<std::string, Entry> entries_;
};

}  // namespace hostcad
