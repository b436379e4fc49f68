// A group: one value of an entity with its group code, the unit of which drawings are made.
//
// A group is 16 bytes. Texts, points and binary chunks lie in a GroupArena, and the group points at them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/plane/point.h"

namespace hostcad {

using plane::Point;

// How a group holds its value. Most codes have one kind always; a text may stand in place of a handle that
// is no hexadecimal number, so that it is carried unchanged.
enum class ValueKind : uint8_t { Text, Real, Point, Integer, Handle, Binary };

struct Group {
    int16_t code = 0;
    ValueKind kind = ValueKind::Integer;
    uint32_t size = 0;  // bytes of a text or chunk; coordinates of a point (2 or 3)
    union {
        int64_t integer = 0;
        double real;
        uint64_t handle;
        const char* bytes;
        const double* coordinates;
    };

    std::string_view text() const {
        return kind == ValueKind::Text ? std::string_view(bytes, size) : std::string_view();
    }
    std::string_view chunk() const {
        return kind == ValueKind::Binary ? std::string_view(bytes, size) : std::string_view();
    }
    double x() const { return kind == ValueKind::Point ? coordinates[0] : asReal(); }
    double y() const { return kind == ValueKind::Point ? coordinates[1] : 0; }
    double z() const { return kind == ValueKind::Point && size > 2 ? coordinates[2] : 0; }
    Point point() const { return {x(), y(), z()}; }
    // The number of a real or an integer; 0 for other kinds.
    double asReal() const {
        return kind == ValueKind::Real ? real : kind == ValueKind::Integer ? static_cast<double>(integer) : 0;
    }
    int64_t asInteger() const;
};
static_assert(sizeof(Group) == 16);

using Groups = std::span<const Group>;

constexpr int kLastGroupCode = 1071;
constexpr int kFirstXDataCode = 1000;
constexpr int kApplicationCode = 1001;

// The kind of the values of a code from 0 to 1071. The first coordinate of a point has the kind Point;
// codes that have no meaning are texts.
ValueKind kindOfCode(int code);
// The codes of the second and third coordinate that go with the first: 20 and 30 for 10.
inline int secondCoordinate(int code) {
    return code + 10;
}
inline int thirdCoordinate(int code) {
    return code + 20;
}

Group realGroup(int code, double value);
Group integerGroup(int code, int64_t value);
Group handleGroup(int code, uint64_t handle);

// A handle as files and users have it, hexadecimal in capitals; and back, nothing for a text that is none.
std::string handleText(uint64_t handle);
std::optional<uint64_t> readHandle(std::string_view text);

// The same code and value; points must have the same number of coordinates.
bool operator==(const Group& a, const Group& b);

// The first group of a code in front of the extended data, or null.
const Group* find(Groups groups, int code);
// The value of that group, or what stands for it when there is none.
std::string_view textOf(Groups groups, int code, std::string_view absent = {});
double realOf(Groups groups, int code, double absent = 0);
int64_t integerOf(Groups groups, int code, int64_t absent = 0);
uint64_t handleOf(Groups groups, int code, uint64_t absent = 0);
Point pointOf(Groups groups, int code, Point absent = {});

// The groups of the extended data of all applications, and of one of them from its 1001 on (names compare
// without case); empty when there are none. What follows the extended data (embedded objects) is not in it.
Groups xdataOf(Groups groups);
Groups xdataOf(Groups groups, std::string_view application);

}  // namespace hostcad
