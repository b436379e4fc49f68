// Asking the user.
#include <functional>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/host_variables.h"
#include "hostcad/lisp/interpreter.h"
#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace hostcad::lisp {

namespace {

constexpr size_t kInputSize = 512;

// The optional arguments that most prompts have: a base point and a text, in any order.
struct PromptArguments {
    bool hasBase = false;
    Point base;
    std::string text;
    const double* basePoint() const { return hasBase ? base.at : nullptr; }
};

PromptArguments promptArguments(const Arguments& a) {
    PromptArguments prompt;
    for (const Value& v : a) {
        if (v.isString())
            prompt.text = v.asString();
        else if (readPoint(v, prompt.base))
            prompt.hasBase = true;
        else if (!v.isNil())
            throwBadType("stringp", v);
    }
    return prompt;
}

// The value of a prompt by the status of the call that asked; `value` makes it when there is one.
Value answer(int status, const std::string& prompt, const std::function<Value()>& value) {
    switch (status) {
        case RTNORM:
            return value();
        case RTNONE:
            return {};
        case RTKWORD: {
            char word[kInputSize];
            return acedGetInput(word) == RTNORM ? Value::string(word) : Value();
        }
        case RTCAN:
            throw Error("Function cancelled", Error::Kind::Cancel);
        default:
            throw Error("no input for the prompt \"" + std::string(text::trim(prompt)) + "\"");
    }
}

Value initget(Interpreter&, const Arguments& a) {
    int bits = 0;
    std::string keywords;
    for (const Value& v : a) {
        if (v.isInteger())
            bits = v.asInteger();
        else if (v.isString())
            keywords = v.asString();
        else if (!v.isNil())
            throwBadType("fixnump:", v);
    }
    acedInitGet(bits, keywords.empty() ? nullptr : keywords.c_str());
    return {};
}

Value getpoint(Interpreter&, const Arguments& a) {
    PromptArguments p = promptArguments(a);
    ads_point point;
    return answer(acedGetPoint(p.basePoint(), p.text.c_str(), point), p.text,
                  [&] { return Value::point(point); });
}

Value getcorner(Interpreter&, const Arguments& a) {
    PromptArguments p = promptArguments(a);
    if (!p.hasBase) throw Error("too few arguments");
    ads_point point;
    return answer(acedGetCorner(p.basePoint(), p.text.c_str(), point), p.text,
                  [&] { return Value::point(point); });
}

Value getdist(Interpreter&, const Arguments& a) {
    PromptArguments p = promptArguments(a);
    double length;
    return answer(acedGetDist(p.basePoint(), p.text.c_str(), &length), p.text,
                  [&] { return Value::real(length); });
}

Value getangle(Interpreter&, const Arguments& a) {
    PromptArguments p = promptArguments(a);
    double radians;
    return answer(acedGetAngle(p.basePoint(), p.text.c_str(), &radians), p.text,
                  [&] { return Value::real(radians); });
}

Value getreal(Interpreter&, const Arguments& a) {
    std::string prompt = a.has(0) ? a.string(0) : "";
    double number;
    return answer(acedGetReal(prompt.c_str(), &number), prompt, [&] { return Value::real(number); });
}

Value getint(Interpreter&, const Arguments& a) {
    std::string prompt = a.has(0) ? a.string(0) : "";
    int number;
    return answer(acedGetInt(prompt.c_str(), &number), prompt, [&] { return Value::integer(number); });
}

// (getstring [blanks-are-text] [prompt]); Enter gives "".
Value getstring(Interpreter&, const Arguments& a) {
    bool onlyText = a.size() == 1 && a[0].isString();
    std::string prompt = onlyText ? a.string(0) : a.has(1) ? a.string(1) : "";
    char typed[kInputSize] = "";
    int status = acedGetString(!onlyText && a.has(0), prompt.c_str(), typed);
    if (status == RTNONE) return Value::string("");
    return answer(status, prompt, [&] { return Value::string(typed); });
}

Value getkword(Interpreter&, const Arguments& a) {
    std::string prompt = a.has(0) ? a.string(0) : "";
    char word[kInputSize];
    return answer(acedGetKword(prompt.c_str(), word), prompt, [&] { return Value::string(word); });
}

// nil also when nothing is where the user pointed.
Value entsel(Interpreter&, const Arguments& a) {
    std::string prompt = a.has(0) ? a.string(0) : "\nSelect object: ";
    ads_name entity;
    ads_point picked;
    int status = acedEntSel(prompt.c_str(), entity, picked);
    constexpr int kNothingThere = 7;
    if (status == RTERROR && integerVariable("ERRNO", 0) == kNothingThere) return {};
    return answer(status, prompt, [&] { return Value::list({Value::entity(entity), Value::point(picked)}); });
}

// (getfiled title default extension flags): flag 1 asks for a file to be written.
Value getfiled(Interpreter&, const Arguments& a) {
    const std::string& preset = a.string(1);
    std::string extension = a.has(2) ? a.string(2) : "";
    constexpr int kNewFile = 1;
    ui::FileBox box;
    box.save = a.integerOr(3, 0) & kNewFile;
    box.title = a.string(0);
    if (!extension.empty()) {
        for (const std::string& one : text::split(extension, ';'))
            box.pattern += (box.pattern.empty() ? "*." : ";*.") + one;
        box.filter = box.pattern + "|" + box.pattern + "||";
        box.defaultExtension = text::split(extension, ';').front();
    }
    bool isFolder = !preset.empty() && (preset.back() == '/' || preset.back() == '\\');
    if (isFolder)
        box.folder = preset;
    else if (!preset.empty())
        box.pattern = preset;
    box.mustExist = !box.save;
    box.askOverwrite = box.save;
    std::optional<std::string> path = ui::fileBox(box);
    return path ? Value::string(*path) : Value();
}

Value alert(Interpreter&, const Arguments& a) {
    acedAlert(a.string(0).c_str());
    return {};
}

}  // namespace

void definePromptFunctions(Interpreter& lisp) {
    lisp.define("INITGET", 0, 2, initget);
    lisp.define("GETPOINT", 0, 2, getpoint);
    lisp.define("GETCORNER", 1, 2, getcorner);
    lisp.define("GETDIST", 0, 2, getdist);
    lisp.define("GETANGLE", 0, 2, getangle);
    lisp.define("GETORIENT", 0, 2, getangle);
    lisp.define("GETREAL", 0, 1, getreal);
    lisp.define("GETINT", 0, 1, getint);
    lisp.define("GETSTRING", 0, 2, getstring);
    lisp.define("GETKWORD", 0, 1, getkword);
    lisp.define("ENTSEL", 0, 1, entsel);
    lisp.define("NENTSEL", 0, 1, entsel);
    lisp.define("GETFILED", 4, 4, getfiled);
    lisp.define("ALERT", 1, 1, alert);
}

}  // namespace hostcad::lisp
