#include "hostcad/lisp/printer.h"

#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

void appendQuoted(std::string& out, const std::string& s) {
    out += '"';
    for (char c : s) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            case '\x1b':
                out += "\\e";
                break;
            default:
                if (static_cast<unsigned char>(c) < 0x20)
                    out += text::format("\\%03o", c);
                else
                    out += c;
        }
    }
    out += '"';
}

void appendAtom(std::string& out, const Value& v, Style style) {
    switch (v.type()) {
        case Type::Nil:
            out += "nil";
            break;
        case Type::Symbol:
            out += v.asSymbol()->name;
            break;
        case Type::Integer:
            out += std::to_string(v.asInteger());
            break;
        case Type::Real:
            out += realText(v.asReal());
            break;
        case Type::String:
            if (style == Style::Plain)
                out += v.asString();
            else
                appendQuoted(out, v.asString());
            break;
        case Type::Entity:
            out += text::format("<Entity name: %lx>", v.asName()[0]);
            break;
        case Type::SelectionSet:
            out += text::format("<Selection set: %lx>", v.asName()[0]);
            break;
        case Type::Builtin:
            out += "#<SUBR " + v.asBuiltin().name + ">";
            break;
        case Type::External:
            out += "#<EXRXSUBR " + v.asExternal().name + ">";
            break;
        case Type::Function: {
            const Symbol* name = v.asFunction().name;
            out += "#<USUBR " + (name ? name->name : std::string("-LAMBDA-")) + ">";
            break;
        }
        case Type::File:
            out += "#<file \"" + v.asFile().path + "\">";
            break;
        case Type::Caught:
            out += "#<%catch-all-apply-error%>";
            break;
        case Type::Pair:
            break;
    }
}

// What is still to be shown of a list that has been begun. The rest is kept alive by the whole value.
using OpenLists = std::vector<const Value*>;

// Lists are walked without recursion, since a program can nest them as deep as memory goes.
std::string print(const Value& value, Style style, size_t limit) {
    std::string out;
    if (!value.isPair()) {
        appendAtom(out, value, style);
        return out;
    }
    OpenLists open{&value};
    out += '(';
    bool first = true;
    while (!open.empty() && out.size() <= limit) {
        const Value& rest = *open.back();
        if (rest.isPair()) {
            if (!first) out += ' ';
            first = false;
            open.back() = &rest.asPair().cdr;
            const Value& item = rest.asPair().car;
            if (item.isPair()) {
                out += '(';
                open.push_back(&item);
                first = true;
            } else {
                appendAtom(out, item, style);
            }
        } else {
            if (!rest.isNil()) {
                out += " . ";
                appendAtom(out, rest, style);
            }
            out += ')';
            open.pop_back();
            first = false;
        }
    }
    return out;
}

}  // namespace

std::string realText(double number) {
    std::string s = text::format("%.6g", number);
    size_t exponent = s.find('e');
    bool hasPoint = s.find('.') != std::string::npos;
    bool isFinite = s.find_first_of("nN") == std::string::npos;
    if (!hasPoint && isFinite) s.insert(exponent == std::string::npos ? s.size() : exponent, ".0");
    return s;
}

std::string toText(const Value& value, Style style) {
    std::string s = print(value, style, Heap::limit);
    Heap::expect(s.size());  // lists that share their parts can print much larger than they are
    return s;
}

std::string toShortText(const Value& value) {
    constexpr size_t kLongest = 200;
    std::string s = print(value, Style::Quoted, kLongest);
    if (s.size() > kLongest) s = std::string(text::cutToBytes(s, kLongest)) + "...";
    return s;
}

}  // namespace hostcad::lisp
