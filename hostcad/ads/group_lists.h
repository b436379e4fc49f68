// Group lists between the C interface (chains of resbufs) and the drawing (groups in the arena).
#pragma once

#include <vector>

#include "hostcad/drawing/drawing.h"
#include "platform/ads/result_chain.h"

namespace hostcad {

// Adds a group, or the name of an object, to a list for a caller.
void addGroup(ResultChain& list, const Drawing& drawing, const Group& group);
void addName(ResultChain& list, int code, ObjectId id);

// Angles are degrees in the drawing and radians in lists.
bool isAngleCode(int code);
double radiansOf(double degrees);

// One item as a group with its values in the drawing's arena. A name of an object becomes its handle. `like`
// is a group whose place it takes, or null: a point gets as many coordinates, and an angle that did not
// change keeps its exact value, which it would lose on the way to radians and back.
Group groupOf(Drawing& drawing, const resbuf& item, const Group* like = nullptr);

// Extended data given as a list that begins with 1001, cut into groups. False when an application is not
// registered, a code or brace is wrong, or a text is too long.
bool xdataFromList(Drawing& drawing, const resbuf* list, std::vector<Group>& groups);
// Bytes that the extended data takes of the kMostXDataBytes that an entity may have.
size_t xdataSize(Groups xdata);
constexpr size_t kMostXDataBytes = 16383;
constexpr size_t kLongestXDataText = 255;

// Puts the extended data of the applications in `changes` in the place of what they had; an application with
// nothing but its name loses its data.
void mergeXData(std::vector<Group>& groups, Groups changes);

}  // namespace hostcad
