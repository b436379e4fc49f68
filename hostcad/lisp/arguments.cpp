#include "hostcad/lisp/arguments.h"

#include "hostcad/lisp/printer.h"

namespace hostcad::lisp {

bool readPoint(const Value& value, Point& point) {
    int count = 0;
    Items items(value);
    for (; !items.done(); items.next()) {
        const Value& item = *items;
        if (count == 3 || !item.isNumber()) return false;
        point.at[count++] = item.asNumber();
    }
    if (count < 2 || !items.rest().isNil()) return false;
    point.dimensions = count;
    if (count == 2) point.at[2] = 0;
    return true;
}

void throwBadType(const char* expected, const Value& value) {
    throw Error(std::string("bad argument type: ") + expected + " " + toShortText(value));
}

const Value& Arguments::operator[](size_t i) const {
    static const Value nil;
    return i < values_.size() ? values_[i] : nil;
}

std::int32_t Arguments::integer(size_t i) const {
    const Value& v = (*this)[i];
    if (!v.isInteger()) throwBadType("fixnump:", v);
    return v.asInteger();
}

double Arguments::number(size_t i) const {
    const Value& v = (*this)[i];
    if (!v.isNumber()) throwBadType("numberp:", v);
    return v.asNumber();
}

const std::string& Arguments::string(size_t i) const {
    const Value& v = (*this)[i];
    if (!v.isString()) throwBadType("stringp", v);
    return v.asString();
}

Symbol* Arguments::symbol(size_t i) const {
    const Value& v = (*this)[i];
    if (!v.isSymbol()) throwBadType("symbolp", v);
    return v.asSymbol();
}

const Value& Arguments::list(size_t i) const {
    const Value& v = (*this)[i];
    if (!v.isList()) throwBadType("listp", v);
    return v;
}

const long* Arguments::entity(size_t i) const {
    const Value& v = (*this)[i];
    if (v.type() != Type::Entity) throwBadType("lentityp", v);
    return v.asName();
}

const long* Arguments::selectionSet(size_t i) const {
    const Value& v = (*this)[i];
    if (v.type() != Type::SelectionSet) throwBadType("lselsetp", v);
    return v.asName();
}

FileCell& Arguments::file(size_t i) const {
    const Value& v = (*this)[i];
    if (v.type() != Type::File) throwBadType("streamp", v);
    if (!v.asFile().stream) throw Error("file not open: " + v.asFile().path);
    return v.asFile();
}

Point Arguments::point(size_t i) const {
    const Value& v = (*this)[i];
    Point point;
    if (!readPoint(v, point)) throw Error("bad argument type: 2D/3D point: " + toShortText(v));
    return point;
}

void ArgumentBuffer::add(Value value) {
    if (more_.empty() && size_ < kInPlace) {
        inPlace_[size_++] = std::move(value);
        return;
    }
    if (more_.empty())
        for (Value& v : inPlace_) more_.push_back(std::move(v));
    more_.push_back(std::move(value));
    size_ = more_.size();
}

void ArgumentBuffer::resize(size_t size) {
    while (size_ < size) add({});
}

}  // namespace hostcad::lisp
