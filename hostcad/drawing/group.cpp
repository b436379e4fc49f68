#include "hostcad/drawing/group.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include "platform/ads/result_buffer.h"
#include "platform/text/text.h"

namespace hostcad {
namespace {

ValueKind valueKindOf(GroupKind kind) {
    switch (kind) {
        case GroupKind::Real:
            return ValueKind::Real;
        case GroupKind::Point:
            return ValueKind::Point;
        case GroupKind::Short:
        case GroupKind::Long:
            return ValueKind::Integer;
        case GroupKind::Name:
        case GroupKind::Handle:
            return ValueKind::Handle;
        case GroupKind::Binary:
            return ValueKind::Binary;
        case GroupKind::None:
        case GroupKind::Text:
            break;
    }
    return ValueKind::Text;
}

const auto kKinds = [] {
    std::array<ValueKind, kLastGroupCode + 1> kinds{};
    for (int code = 0; code <= kLastGroupCode; ++code)
        kinds[static_cast<size_t>(code)] = valueKindOf(groupKindOf(code));
    return kinds;
}();

}  // namespace

ValueKind kindOfCode(int code) {
    return code >= 0 && code <= kLastGroupCode ? kKinds[static_cast<size_t>(code)] : ValueKind::Text;
}

int64_t Group::asInteger() const {
    if (kind == ValueKind::Integer) return integer;
    if (kind == ValueKind::Real && std::abs(real) < 9e18) return static_cast<int64_t>(real);
    return 0;
}

Group realGroup(int code, double value) {
    Group group{static_cast<int16_t>(code), ValueKind::Real, 0, {}};
    group.real = value;
    return group;
}

Group integerGroup(int code, int64_t value) {
    Group group{static_cast<int16_t>(code), ValueKind::Integer, 0, {}};
    group.integer = value;
    return group;
}

Group handleGroup(int code, uint64_t handle) {
    Group group{static_cast<int16_t>(code), ValueKind::Handle, 0, {}};
    group.handle = handle;
    return group;
}

std::string handleText(uint64_t handle) {
    char digits[16];
    auto [end, error] = std::to_chars(digits, digits + sizeof digits, handle, 16);
    for (char* p = digits; p != end; ++p)
        if (*p >= 'a') *p = static_cast<char>(*p - 'a' + 'A');  // NOLINT: to_chars has written up to end
    return {digits, end};
}

std::optional<uint64_t> readHandle(std::string_view text) {
    uint64_t handle = 0;
    auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), handle, 16);
    if (error != std::errc() || stop != text.data() + text.size()) return {};
    return handle;
}

bool operator==(const Group& a, const Group& b) {
    if (a.code != b.code || a.kind != b.kind) return false;
    switch (a.kind) {
        case ValueKind::Text:
        case ValueKind::Binary:
            return std::string_view(a.bytes, a.size) == std::string_view(b.bytes, b.size);
        case ValueKind::Point:
            return a.size == b.size && std::equal(a.coordinates, a.coordinates + a.size, b.coordinates);
        case ValueKind::Real:
            return a.real == b.real;
        case ValueKind::Integer:
        case ValueKind::Handle:
            break;
    }
    return a.integer == b.integer;
}

const Group* find(Groups groups, int code) {
    for (const Group& group : groups) {
        if (group.code == code) return &group;
        if (group.code >= kFirstXDataCode) break;
    }
    return nullptr;
}

std::string_view textOf(Groups groups, int code, std::string_view absent) {
    const Group* group = find(groups, code);
    return group && group->kind == ValueKind::Text ? group->text() : absent;
}

double realOf(Groups groups, int code, double absent) {
    const Group* group = find(groups, code);
    return group ? group->asReal() : absent;
}

int64_t integerOf(Groups groups, int code, int64_t absent) {
    const Group* group = find(groups, code);
    return group ? group->asInteger() : absent;
}

uint64_t handleOf(Groups groups, int code, uint64_t absent) {
    const Group* group = find(groups, code);
    return group && group->kind == ValueKind::Handle ? group->handle : absent;
}

Point pointOf(Groups groups, int code, Point absent) {
    const Group* group = find(groups, code);
    return group ? group->point() : absent;
}

Groups xdataOf(Groups groups) {
    auto isXData = [](const Group& group) { return group.code >= kFirstXDataCode; };
    auto begin = std::find_if(groups.begin(), groups.end(), isXData);
    return {begin, std::find_if_not(begin, groups.end(), isXData)};
}

Groups xdataOf(Groups groups, std::string_view application) {
    auto names = [&](const Group& group) {
        return group.code == kApplicationCode && text::equalNoCase(group.text(), application);
    };
    Groups all = xdataOf(groups);
    auto begin = std::find_if(all.begin(), all.end(), names);
    if (begin == all.end()) return {};
    auto end =
        std::find_if(begin + 1, all.end(), [](const Group& group) { return group.code == kApplicationCode; });
    return {begin, end};
}

}  // namespace hostcad
