// Variables and commands, for modules and Lisp.
#include <cstdarg>

#include "hostcad/drawing/host_names.h"
#include "hostcad/editor/host.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_chain.h"

using hostcad::CommandProcessor;
using hostcad::Host;
using hostcad::Input;
using hostcad::Point;
using hostcad::pointOf;
using hostcad::setPoint;
using hostcad::VariableValue;
namespace lisp = hostcad::lisp;

namespace {

// --- Command answers ---------------------------------------------------------------------------------

// What stands for an answer of the user.
constexpr std::string_view kPause = "\\";

// Of an item of either kind of point.
Point pointIn(const resbuf& item) {
    Point point = pointOf(item.resval.rpoint);
    if (item.restype == RTPOINT) point.z = 0;
    return point;
}

// An entity with the point where it was picked, as ENTSEL gives it.
Input takePickedEntity(const resbuf*& item) {
    Input input = Input::cancel();
    for (item = item->rbnext; item && item->restype != RTLE; item = item->rbnext) {
        if (item->restype == RTENAME)
            input = Input::ofEntity({item->resval.rlname[0], item->resval.rlname[1]}, input.point);
        if (item->restype == RT3DPOINT) input.point = pointIn(*item);
    }
    if (item) item = item->rbnext;
    return input;
}

Input takeInput(const resbuf*& item) {
    const resbuf& here = *item;
    if (here.restype == RTLB) return takePickedEntity(item);
    item = here.rbnext;
    switch (here.restype) {
        case RTSTR:
            return Input::ofText(here.resval.rstring ? here.resval.rstring : "");
        case RTREAL:
        case RTANG:
        case RTORINT:
            return Input::ofNumber(here.resval.rreal);
        case RTSHORT:
            return Input::ofNumber(here.resval.rint);
        case RTLONG:
            return Input::ofNumber(static_cast<double>(here.resval.rlong));
        case RTPOINT:
        case RT3DPOINT:
            return Input::ofPoint(pointIn(here));
        case RTENAME:
            return Input::ofEntity({here.resval.rlname[0], here.resval.rlname[1]});
        case RTPICKS:
            return Input::ofSet({here.resval.rlname[0], here.resval.rlname[1]});
        default:
            return Input::cancel();
    }
}

// An answer of the user, who is asked until one fits.
CommandProcessor::Result feedFromUser(CommandProcessor& commands) {
    CommandProcessor::Result result;
    do result = commands.feedFromUser();
    while (result == CommandProcessor::Result::Refused && commands.isActive());
    return result;
}

int runCommand(Host& host, const resbuf* answers) {
    CommandProcessor& commands = host.commands();
    auto scripted = commands.beginScripted();
    for (const resbuf* item = answers; item;) {
        Input input = takeInput(item);
        if (input.kind == Input::Kind::Cancel) {
            commands.cancel();
            continue;
        }
        bool isPause = commands.isActive() && input.kind == Input::Kind::Text && input.text == kPause;
        if (!isPause && commands.isActive() && host.variables().integer("CMDECHO"))
            host.write(commands.prompt().text);
        CommandProcessor::Result result = isPause ? feedFromUser(commands) : commands.feed(input);
        if (result == CommandProcessor::Result::Unknown) return RTREJ;
        if (result == CommandProcessor::Result::Cancelled) return RTCAN;
        if (result == CommandProcessor::Result::Abandoned) return RTERROR;
    }
    return RTNORM;
}

}  // namespace

extern "C" {

// --- Variables ---------------------------------------------------------------------------------------

int acedGetVar(const char* name, resbuf* value) {
    if (!Host::current() || !name || !value) return RTERROR;
    std::optional<VariableValue> got = Host::current()->variables().get(name);
    if (!got) return RTERROR;
    value->restype = got->type;
    switch (got->type) {
        case RTSHORT:
            value->resval.rint = static_cast<short>(got->integer);
            break;
        case RTREAL:
            value->resval.rreal = got->real;
            break;
        case RTSTR:
            value->resval.rstring = acad_strdup(got->text.c_str());
            break;
        default:
            setPoint(got->point, value->resval.rpoint);
    }
    return RTNORM;
}

int acedSetVar(const char* name, const resbuf* value) {
    if (!Host::current() || !name || !value) return RTERROR;
    VariableValue given;
    given.type = value->restype;
    switch (value->restype) {
        case RTSHORT:
            given.integer = value->resval.rint;
            break;
        case RTLONG:
            given.integer = value->resval.rlong;
            break;
        case RTREAL:
            given.real = value->resval.rreal;
            break;
        case RTSTR:
            given.text = value->resval.rstring ? value->resval.rstring : "";
            break;
        case RTPOINT:
        case RT3DPOINT:
            given.point = pointIn(*value);
            break;
        default:
            return RTERROR;
    }
    return Host::current()->variables().set(name, given).empty() ? RTNORM : RTERROR;
}

// --- Commands ----------------------------------------------------------------------------------------

int acedCmd(const resbuf* answers) {
    Host* host = Host::current();
    if (!host) return RTERROR;
    if (!answers) {
        host->commands().cancel();
        return RTNORM;
    }
    try {
        lisp::Interpreter::Guard guard(host->lisp());
        return runCommand(*host, answers);
    } catch (const lisp::Error& error) {
        host->commands().cancel();
        if (error.kind == lisp::Error::Kind::Cancel) return RTCAN;
        host->tell(error);
        return RTERROR;
    }
}

int acedCommand(int type, ...) {
    ResultChain answers;
    va_list args;
    va_start(args, type);
    bool isKnown = true;
    for (; isKnown && type != 0 && type != RTNONE; type = va_arg(args, int)) {
        resbuf& item = answers.add(type);
        switch (type) {
            case RTSTR: {
                const char* text = va_arg(args, const char*);
                item.resval.rstring = acad_strdup(text ? text : "");
                break;
            }
            case RTREAL:
                item.resval.rreal = va_arg(args, double);
                break;
            case RTSHORT:
                item.resval.rint = static_cast<short>(va_arg(args, int));
                break;
            case RTLONG:
                item.resval.rlong = va_arg(args, long);
                break;
            case RTPOINT: {
                const double* p = va_arg(args, const double*);
                item.resval.rpoint[0] = p[0], item.resval.rpoint[1] = p[1];
                break;
            }
            case RT3DPOINT:
                ads_point_set(va_arg(args, const double*), item.resval.rpoint);
                break;
            case RTENAME:
            case RTPICKS:
                ads_name_set(va_arg(args, const long*), item.resval.rlname);
                break;
            default:
                isKnown = false;
        }
    }
    va_end(args);
    return isKnown ? acedCmd(answers.get()) : RTERROR;
}
}
