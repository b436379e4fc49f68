#include "hostcad/lisp/result_values.h"

#include <climits>
#include <cmath>

#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/printer.h"
#include "platform/text/text.h"

namespace hostcad::lisp {

namespace {

void setPoint(resbuf& item, const Point& p) {
    for (int i = 0; i < 3; ++i) item.resval.rpoint[i] = p.at[i];
}

enum class WholeNumbers { AreLists, ArePoints };

bool isPoint(const Value& v, Point& p, WholeNumbers rule) {
    if (!v.isPair() || !readPoint(v, p)) return false;
    if (rule == WholeNumbers::ArePoints) return true;
    for (Items items(v); !items.done(); items.next())
        if ((*items).isReal()) return true;
    return false;
}

void addAtom(ResultChain& chain, const Value& v) {
    switch (v.type()) {
        case Type::Nil:
            chain.add(RTNIL);
            break;
        case Type::Symbol:
            if (v.asSymbol() == Symbol::truth())
                chain.add(RTT);
            else
                chain.addText(RTSTR, v.asSymbol()->name);
            break;
        case Type::Integer: {
            std::int32_t n = v.asInteger();
            if (n >= SHRT_MIN && n <= SHRT_MAX)
                chain.add(RTSHORT).resval.rint = static_cast<short>(n);
            else
                chain.add(RTLONG).resval.rlong = n;
            break;
        }
        case Type::Real:
            chain.add(RTREAL).resval.rreal = v.asReal();
            break;
        case Type::String:
            chain.addText(RTSTR, v.asString());
            break;
        case Type::Entity:
            ads_name_set(v.asName(), chain.add(RTENAME).resval.rlname);
            break;
        case Type::SelectionSet:
            ads_name_set(v.asName(), chain.add(RTPICKS).resval.rlname);
            break;
        default:
            throw Error("bad argument type: cannot be passed to a module: " + toShortText(v));
    }
}

constexpr int kDeepest = 500;  // nesting of lists at the boundary

void addValue(ResultChain& chain, const Value& v, WholeNumbers rule, int depth = 0) {
    if (depth > kDeepest) throw Error("list is nested too deep to be passed to a module");
    Point p;
    if (isPoint(v, p, rule)) {
        setPoint(chain.add(p.dimensions == 3 ? RT3DPOINT : RTPOINT), p);
        return;
    }
    if (!v.isPair()) {
        addAtom(chain, v);
        return;
    }
    chain.add(RTLB);
    Items items(v);
    for (; !items.done(); items.next()) addValue(chain, *items, rule, depth + 1);
    if (!items.rest().isNil()) {
        chain.add(RTDOTE);
        addValue(chain, items.rest(), rule, depth + 1);
    }
    chain.add(RTLE);
}

Value integerOf(long n) {
    return Value::integer(static_cast<std::int32_t>(n));
}

std::string hexText(const ads_binary& bytes) {
    std::string s;
    for (short i = 0; i < bytes.clen; ++i)
        s += text::format("%02X", static_cast<unsigned char>(bytes.buf[i]));
    return s;
}

// What a group holds.
Value groupValue(const resbuf& item) {
    switch (groupKindOf(item.restype)) {
        case GroupKind::Text:
        case GroupKind::Handle:
            return Value::string(item.resval.rstring ? item.resval.rstring : "");
        case GroupKind::Real:
            return Value::real(item.resval.rreal);
        case GroupKind::Point:
            return Value::point(item.resval.rpoint);
        case GroupKind::Short:
            return Value::integer(item.resval.rint);
        case GroupKind::Long:
            return integerOf(item.resval.rlong);
        case GroupKind::Name:
            return Value::entity(item.resval.rlname);
        case GroupKind::Binary:
            return Value::string(hexText(item.resval.rbinary));
        case GroupKind::None:
            break;
    }
    return {};
}

Value takeList(const resbuf*& item, int depth);

Value takeNested(const resbuf*& item, int depth) {
    const resbuf& here = *item;
    if (here.restype == RTLB) return takeList(item, depth + 1);
    item = here.rbnext;
    switch (here.restype) {
        case RTREAL:
        case RTANG:
        case RTORINT:
            return Value::real(here.resval.rreal);
        case RTPOINT:
            return Value::point(here.resval.rpoint, 2);
        case RT3DPOINT:
            return Value::point(here.resval.rpoint);
        case RTSHORT:
            return Value::integer(here.resval.rint);
        case RTLONG:
            return integerOf(here.resval.rlong);
        case RTSTR:
            return Value::string(here.resval.rstring ? here.resval.rstring : "");
        case RTENAME:
            return Value::entity(here.resval.rlname);
        case RTPICKS:
            return Value::selectionSet(here.resval.rlname);
        case RTT:
            return Value::truth(true);
        default:
            break;
    }
    if (here.restype >= RTNONE) return {};
    return Value::pair(Value::integer(here.restype), groupValue(here));
}

// The list that begins at an RTLB; behind its RTLE, or at the end where that is missing.
Value takeList(const resbuf*& item, int depth) {
    item = item->rbnext;
    ListBuilder list;
    while (item && item->restype != RTLE) {
        if (depth > kDeepest) return {};
        if (item->restype == RTDOTE && item->rbnext) {
            item = item->rbnext;
            Value tail = takeNested(item, depth);
            while (item && item->restype != RTLE) item = item->rbnext;
            if (item) item = item->rbnext;
            return list.take(std::move(tail));
        }
        list.add(takeNested(item, depth));
    }
    if (item) item = item->rbnext;
    return list.take();
}

// --- Entity lists ------------------------------------------------------------------------------------

constexpr short kExtendedData = -3;
constexpr short kApplication = 1001;

[[noreturn]] void throwBadGroup(const Value& group) {
    throw Error("bad DXF group: " + toShortText(group));
}

std::string textOf(const Value& value, const Value& group) {
    if (!value.isString()) throwBadGroup(group);
    return value.asString();
}

std::string bytesOf(const std::string& hex, const Value& group) {
    std::string bytes;
    if (hex.size() % 2 || hex.size() > 254) throwBadGroup(group);
    for (size_t i = 0; i < hex.size(); i += 2) {
        if (!std::isxdigit(static_cast<unsigned char>(hex[i])) ||
            !std::isxdigit(static_cast<unsigned char>(hex[i + 1])))
            throwBadGroup(group);
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

long wholeNumberOf(const Value& value, const Value& group) {
    if (value.isInteger()) return value.asInteger();
    if (!value.isReal() || std::abs(value.asReal()) > INT_MAX) throwBadGroup(group);
    return static_cast<long>(value.asReal());
}

void addGroup(ResultChain& chain, const Value& group) {
    if (!group.isPair() || !group.car().isInteger()) throwBadGroup(group);
    std::int32_t code = group.car().asInteger();
    const Value& value = group.cdr();
    GroupKind kind = code > kApplication + 70 || code < -5 ? GroupKind::None : groupKindOf(code);
    switch (kind) {
        case GroupKind::Text:
        case GroupKind::Handle: {
            std::string s = textOf(value, group);
            chain.addText(code, s);
            break;
        }
        case GroupKind::Real:
            if (!value.isNumber()) throwBadGroup(group);
            chain.add(code).resval.rreal = value.asNumber();
            break;
        case GroupKind::Point: {
            Point p;
            if (!readPoint(value, p)) throwBadGroup(group);
            setPoint(chain.add(code), p);
            break;
        }
        case GroupKind::Short:
            chain.add(code).resval.rint = static_cast<short>(wholeNumberOf(value, group));
            break;
        case GroupKind::Long:
            chain.add(code).resval.rlong = wholeNumberOf(value, group);
            break;
        case GroupKind::Name:
            if (value.type() != Type::Entity) throwBadGroup(group);
            ads_name_set(value.asName(), chain.add(code).resval.rlname);
            break;
        case GroupKind::Binary: {
            std::string bytes = bytesOf(textOf(value, group), group);
            resbuf& item = chain.add(code);
            item.resval.rbinary.clen = static_cast<short>(bytes.size());
            item.resval.rbinary.buf = static_cast<char*>(acad_malloc(bytes.size()));
            std::memcpy(item.resval.rbinary.buf, bytes.data(), bytes.size());
            break;
        }
        case GroupKind::None:
            throwBadGroup(group);
    }
}

// (-3 ("APPLICATION" (1000 . "text") ...) ...)
void addExtendedData(ResultChain& chain, const Value& applications) {
    chain.add(kExtendedData);
    for (Items items(applications); !items.done(); items.next()) {
        const Value& application = *items;
        if (!application.isPair()) throwBadGroup(application);
        std::string name = textOf(application.car(), application);
        chain.addText(kApplication, name);
        for (Items groups(application.cdr()); !groups.done(); groups.next()) addGroup(chain, *groups);
    }
}

// From the item behind -3 to the end of the list.
Value toExtendedData(const resbuf* item) {
    ListBuilder applications;
    applications.add(Value::integer(kExtendedData));
    while (item) {
        ListBuilder application;
        application.add(groupValue(*item));
        for (item = item->rbnext; item && item->restype != kApplication; item = item->rbnext)
            application.add(Value::pair(Value::integer(item->restype), groupValue(*item)));
        applications.add(application.take());
    }
    return applications.take();
}

}  // namespace

ResultList copyOf(const resbuf* list) {
    ResultChain chain;
    for (; list; list = list->rbnext) {
        resbuf& item = chain.add(list->restype);
        GroupKind kind = groupKindOf(list->restype);
        if (kind == GroupKind::Text || kind == GroupKind::Handle) {
            item.resval.rstring = acad_strdup(list->resval.rstring ? list->resval.rstring : "");
        } else if (kind == GroupKind::Binary) {
            auto size = static_cast<size_t>(list->resval.rbinary.clen);
            item.resval.rbinary.clen = list->resval.rbinary.clen;
            item.resval.rbinary.buf = static_cast<char*>(acad_malloc(size));
            std::memcpy(item.resval.rbinary.buf, list->resval.rbinary.buf, size);
        } else {
            item.resval = list->resval;
        }
    }
    return ResultList(chain.take());
}

ResultList toResults(const Arguments& values) {
    ResultChain chain;
    for (const Value& value : values) addValue(chain, value, WholeNumbers::AreLists);
    return ResultList(chain.take());
}

ResultList toResults(const Value& value) {
    ResultChain chain;
    addValue(chain, value, WholeNumbers::AreLists);
    return ResultList(chain.take());
}

ResultList toAnswers(const Arguments& values) {
    ResultChain chain;
    for (const Value& value : values) addValue(chain, value, WholeNumbers::ArePoints);
    return ResultList(chain.take());
}

Value takeValue(const resbuf*& item) {
    return takeNested(item, 0);
}

Value toListValue(const resbuf* list) {
    ListBuilder values;
    while (list) values.add(takeValue(list));
    return values.take();
}

Value toValue(const resbuf* list) {
    if (!list) return {};
    const resbuf* rest = list;
    Value first = takeValue(rest);
    return rest ? toListValue(list) : first;
}

Value toEntityList(const resbuf* groups) {
    ListBuilder list;
    bool isFlat = false;  // the vertices of a light polyline have no heights
    for (const resbuf* item = groups; item; item = item->rbnext) {
        if (item->restype == kExtendedData) {
            list.add(toExtendedData(item->rbnext));
            break;
        }
        Value value = groupValue(*item);
        if (item->restype == 0) isFlat = value.asString() == "LWPOLYLINE";
        if (isFlat && item->restype == 10) value = Value::point(item->resval.rpoint, 2);
        list.add(Value::pair(Value::integer(item->restype), std::move(value)));
    }
    return list.take();
}

ResultList fromEntityList(const Value& list) {
    ResultChain chain;
    if (!list.isPair()) throwBadType("listp", list);
    for (Items items(list); !items.done(); items.next()) {
        const Value& group = *items;
        bool isExtended =
            group.isPair() && group.car().isInteger() && group.car().asInteger() == kExtendedData;
        if (isExtended)
            addExtendedData(chain, group.cdr());
        else
            addGroup(chain, group);
    }
    return ResultList(chain.take());
}

}  // namespace hostcad::lisp
