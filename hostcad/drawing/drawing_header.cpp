// Header variables of a drawing.
#include "hostcad/drawing/drawing.h"

namespace hostcad {

Groups Drawing::headerVariable(std::string_view name) const {
    auto found = headerVariables_.find(std::string(name));
    if (found == headerVariables_.end() || !exists(found->second)) return {};
    return groups(found->second).subspan(1);
}

void Drawing::setHeaderVariable(std::string_view name, Groups value) {
    std::vector<Group> all{arena_.text(9, name)};
    all.insert(all.end(), value.begin(), value.end());
    auto found = headerVariables_.find(std::string(name));
    if (found != headerVariables_.end()) {
        setGroups(found->second, all);
        setErased(found->second, false);
        return;
    }
    ObjectId id = add(ObjectKind::HeaderVariable, all);
    linkInto(section("HEADER"), id);
    headerVariables_.emplace(name, id);
    added(id);
}

std::string Drawing::headerText(std::string_view name, std::string_view absent) const {
    Groups value = headerVariable(name);
    return std::string(value.empty() || value[0].kind != ValueKind::Text ? absent : value[0].text());
}

double Drawing::headerReal(std::string_view name, double absent) const {
    Groups value = headerVariable(name);
    return value.empty() ? absent : value[0].asReal();
}

int64_t Drawing::headerInteger(std::string_view name, int64_t absent) const {
    Groups value = headerVariable(name);
    return value.empty() ? absent : value[0].asInteger();
}

void Drawing::setHeaderText(std::string_view name, int code, std::string_view value) {
    Group group = arena_.text(code, value);
    setHeaderVariable(name, {&group, 1});
}

void Drawing::setHeaderReal(std::string_view name, int code, double value) {
    Group group = realGroup(code, value);
    setHeaderVariable(name, {&group, 1});
}

void Drawing::setHeaderInteger(std::string_view name, int code, int64_t value) {
    Group group = integerGroup(code, value);
    setHeaderVariable(name, {&group, 1});
}

void Drawing::setHeaderPoint(std::string_view name, int code, double x, double y, double z) {
    Group group = arena_.point(code, x, y, z);
    setHeaderVariable(name, {&group, 1});
}

void Drawing::setFormat(const DxfFormat& format) {
    bool otherVersion = format.version != format_.version;
    format_ = format;
    if (otherVersion) setHeaderText("$ACADVER", 1, versionText(format.version));
}

int Drawing::codePage() const {
    return codePageOf(headerText("$DWGCODEPAGE"));
}

}  // namespace hostcad
