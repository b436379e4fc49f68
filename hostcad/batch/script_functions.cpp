#include "hostcad/batch/script_functions.h"

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/printer.h"
#include "hostcad/lisp/reader.h"
#include "platform/text/text.h"

namespace hostcad {

using lisp::Arguments;
using lisp::Interpreter;
using lisp::Value;

namespace {

using Kind = ui::Step::Kind;

// What follows the name of a step: its control, and then an item, a text or a mark.
enum class Shape { Nothing, Text, Texts, Control, ControlAndText, ControlAndMark, Cell, CellAndText };

struct StepForm {
    const char* name;
    Kind kind;
    Shape shape;
};

constexpr StepForm kSteps[] = {
    {"TEXT", Kind::Text, Shape::ControlAndText},
    {"PICK", Kind::Pick, Shape::ControlAndText},
    {"PICK-ALSO", Kind::PickAlso, Shape::ControlAndText},
    {"DOUBLE-CLICK", Kind::DoubleClick, Shape::ControlAndText},
    {"CHECK", Kind::Check, Shape::ControlAndMark},
    {"CELL", Kind::Cell, Shape::CellAndText},
    {"CLICK-CELL", Kind::ClickCell, Shape::Cell},
    {"DOUBLE-CLICK-CELL", Kind::DoubleClickCell, Shape::Cell},
    {"FOCUS", Kind::Focus, Shape::Control},
    {"KEY", Kind::Key, Shape::Text},
    {"CLICK", Kind::Click, Shape::Control},
    {"DROP", Kind::Drop, Shape::Texts},
    {"MENU", Kind::Menu, Shape::Text},
    {"SHOW", Kind::Show, Shape::Nothing},
    {"CLOSE", Kind::Close, Shape::Nothing},
};

// An id, a caption, an item or a text: numbers as digits, strings as they are.
std::string wordOf(const Value& value) {
    return value.isNil() ? "" : lisp::toText(value, lisp::Style::Plain);
}

void fill(ui::Step& step, Shape shape, const Arguments& a) {
    size_t i = 0;
    switch (shape) {
        case Shape::Nothing:
            break;
        case Shape::Text:
            step.text = wordOf(a[i++]);
            break;
        case Shape::Texts:
            while (i < a.size()) step.files.push_back(wordOf(a[i++]));
            break;
        case Shape::Control:
            step.control = wordOf(a[i++]);
            break;
        case Shape::ControlAndText:
            step.control = wordOf(a[0]);
            step.text = wordOf(a[1]);
            i = 2;
            break;
        case Shape::ControlAndMark:
            step.control = wordOf(a[i++]);
            if (a.size() == 3) step.text = wordOf(a[i++]);
            step.on = a.size() <= i || a.has(i);
            ++i;
            break;
        case Shape::Cell:
        case Shape::CellAndText:
            if (a.size() == (shape == Shape::Cell ? 3u : 4u)) step.control = wordOf(a[i++]);
            step.column = a.integer(i++);
            step.row = a.integer(i++);
            if (shape == Shape::CellAndText) step.text = wordOf(a[i++]);
            break;
    }
    if (a.size() > i) throw lisp::Error("too many arguments");
    if (shape != Shape::Nothing && a.size() == 0) throw lisp::Error("too few arguments");
}

// Calls `use` with each argument as a string.
template <typename Use>
lisp::ExternalFunction forEachString(Use use) {
    return [use](Interpreter&, const Arguments& a) {
        for (size_t i = 0; i < a.size(); ++i) use(a.string(i));
        return Value();
    };
}

Value listOf(const std::vector<std::string>& strings) {
    lisp::ListBuilder list;
    for (const std::string& s : strings) list.add(Value::string(s));
    return list.take();
}

}  // namespace

ui::Step stepOf(const Value& list) {
    if (!list.isPair() || !list.car().isSymbol())
        throw lisp::Error("no step of a dialog: " + lisp::toShortText(list));
    std::string name = list.car().asSymbol()->name;
    std::vector<Value> rest;
    for (lisp::Items items(list.cdr()); !items.done(); items.next()) rest.push_back(*items);
    for (const StepForm& form : kSteps) {
        if (name != form.name) continue;
        ui::Step step;
        step.kind = form.kind;
        try {
            fill(step, form.shape, Arguments(rest));
        } catch (const lisp::Error& error) {
            throw lisp::Error("in the step " + lisp::toShortText(list) + ": " + error.what());
        }
        return step;
    }
    throw lisp::Error("no step of a dialog: " + lisp::toShortText(list));
}

std::optional<ui::Step> readTypedStep(Interpreter& interpreter, const std::string& typed,
                                      std::string& problem) {
    std::string_view trimmed = text::trim(typed);
    std::string list(trimmed);
    if (trimmed.empty() || trimmed.front() != '(') list = "(" + list + ")";
    try {
        Value value;
        lisp::Reader(interpreter, list).read(value);
        return stepOf(value);
    } catch (const lisp::Error& error) {
        problem = error.what();
        return {};
    }
}

void defineScriptFunctions(Host& host, BatchInput& input, ui::ScriptedBackend& backend) {
    Interpreter& lisp = host.lisp();
    lisp.defineExternal("host:input", [&input](Interpreter&, const Arguments& a) {
        for (const Value& value : a) input.add(value);
        return Value();
    });
    lisp.defineExternal("ui:answer", [&backend](Interpreter&, const Arguments& a) {
        std::vector<ui::Step> steps;
        for (size_t i = 1; i < a.size(); ++i) steps.push_back(stepOf(a[i]));
        backend.answer(a.integer(0), std::move(steps));
        return Value();
    });
    lisp.defineExternal("ui:box", forEachString([&backend](const std::string& s) { backend.answerBox(s); }));
    lisp.defineExternal("ui:box-for", [&backend](Interpreter&, const Arguments& a) {
        backend.answerQuestion(a.string(0), a.string(1));
        return Value();
    });
    lisp.defineExternal("ui:file",
                        forEachString([&backend](const std::string& s) { backend.answerFile(s); }));
    lisp.defineExternal("ui:log",
                        [&backend](Interpreter&, const Arguments&) { return listOf(backend.log()); });
    lisp.defineExternal("ui:unused",
                        [&backend](Interpreter&, const Arguments&) { return listOf(backend.undone()); });
    lisp.defineExternal("ui:clear-log", [&backend](Interpreter&, const Arguments&) {
        backend.clearLog();
        return Value();
    });
}

}  // namespace hostcad
