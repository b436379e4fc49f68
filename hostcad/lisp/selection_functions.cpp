// Selection sets.
#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/functions.h"
#include "hostcad/lisp/interpreter.h"
#include "hostcad/lisp/result_values.h"
#include "platform/ads/entities.h"
#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

Value setOrNil(int status, const ads_name set) {
    return status == RTNORM ? Value::selectionSet(set) : Value();
}

// The mode without the mark of the international name and without the modifiers behind ":" and "+", which
// only say how a window lets the user select.
std::string modeOf(const std::string& given) {
    std::string mode = text::upper(given);
    size_t modifier = mode.find_first_of(":+");
    if (modifier != std::string::npos) mode.erase(modifier);
    std::erase(mode, '_');
    std::erase(mode, '.');
    return mode;
}

bool isFilter(const Value& v) {
    return v.isPair() && v.car().isPair() && v.car().car().isInteger() && !v.car().cdr().isNil();
}

// A list of points, as result buffers.
ResultList pointsOf(const Value& list) {
    std::vector<Value> points;
    for (Items items(list); !items.done(); items.next()) {
        Point p;
        if (!readPoint(*items, p)) throw Error("bad argument type: 2D/3D point: list");
        points.push_back(Value::point(p.at));
    }
    return toResults(Arguments(points));
}

// (ssget [mode] [point [point]] or [list of points] [filter])
Value ssget(Interpreter&, const Arguments& a) {
    size_t i = 0;
    std::string mode;
    if (a.size() > i && a[i].isString()) mode = modeOf(a.string(i++));
    Point corners[2];
    const void* places[2] = {nullptr, nullptr};
    ResultList points;
    int count = 0;
    while (i < a.size() && count < 2 && readPoint(a[i], corners[count])) {
        places[count] = corners[count].at;
        ++count;
        ++i;
    }
    Point first;
    bool isPointList =
        count == 0 && i < a.size() && a[i].isPair() && readPoint(a[i].car(), first) && !isFilter(a[i]);
    if (isPointList) {
        points = pointsOf(a[i++]);
        places[0] = points.get();
    }
    ResultList filter;
    if (a.has(i)) filter = fromEntityList(a.list(i));
    // A point alone selects what is there: a crossing box without size.
    if (mode.empty() && count == 1) {
        mode += 'C';
        places[1] = places[0];
    }
    ads_name set;
    return setOrNil(acedSSGet(mode.empty() ? nullptr : mode.c_str(), places[0], places[1], filter.get(), set),
                    set);
}

// (ssadd), (ssadd entity), (ssadd entity set)
Value ssadd(Interpreter&, const Arguments& a) {
    ads_name set;
    int status = acedSSAdd(a.has(0) ? a.entity(0) : nullptr, a.has(1) ? a.selectionSet(1) : nullptr, set);
    return setOrNil(status, set);
}

Value ssdel(Interpreter&, const Arguments& a) {
    return acedSSDel(a.entity(0), a.selectionSet(1)) == RTNORM ? a[1] : Value();
}

Value sslength(Interpreter&, const Arguments& a) {
    long length = 0;
    acedSSLength(a.selectionSet(0), &length);
    return Value::integer(static_cast<std::int32_t>(length));
}

Value ssname(Interpreter&, const Arguments& a) {
    ads_name entity;
    long index = static_cast<long>(a.number(1));
    return acedSSName(a.selectionSet(0), index, entity) == RTNORM ? Value::entity(entity) : Value();
}

Value ssmemb(Interpreter&, const Arguments& a) {
    return acedSSMemb(a.entity(0), a.selectionSet(1)) == RTNORM ? a[0] : Value();
}

// (sssetfirst grips [set]): the window has no grips, so the first argument counts for nothing.
Value sssetfirst(Interpreter&, const Arguments& a) {
    if (acedSSSetFirst(a.has(1) ? a.selectionSet(1) : nullptr, nullptr) != RTNORM) return {};
    return Value::list({Value(), a[1]});
}

// (ssgetfirst) gives a list of nil, for the grips, and the set that is selected, or nil.
Value ssgetfirst(Interpreter&, const Arguments&) {
    resbuf* item = nullptr;
    if (acedSSGetFirst(nullptr, &item) != RTNORM) return {};
    ResultList selected(item);
    return Value::list(
        {Value(), selected->restype == RTPICKS ? Value::selectionSet(selected->resval.rlname) : Value()});
}

}  // namespace

void defineSelectionFunctions(Interpreter& lisp) {
    lisp.define("SSGET", 0, 4, ssget);
    lisp.define("SSADD", 0, 2, ssadd);
    lisp.define("SSDEL", 2, 2, ssdel);
    lisp.define("SSLENGTH", 1, 1, sslength);
    lisp.define("SSNAME", 2, 2, ssname);
    lisp.define("SSMEMB", 2, 2, ssmemb);
    lisp.define("SSSETFIRST", 1, 2, sssetfirst);
    lisp.define("SSGETFIRST", 0, 0, ssgetfirst);
}

}  // namespace hostcad::lisp
