// Adding entities to the drawing, as the drawing commands do it.
#pragma once

#include <vector>

#include "hostcad/editor/prompt.h"
#include "platform/ads/result_chain.h"

namespace hostcad {

// A list of groups under construction.
class GroupList {
  public:
    GroupList& text(int code, std::string_view value);
    GroupList& real(int code, double value);
    GroupList& integer(int code, int value);
    GroupList& point(int code, const Point& value);
    const resbuf* list() const { return chain_.get(); }

  private:
    ResultChain chain_;
};

// False, with a message, when the drawing does not take the entity.
class Host;
bool makeEntity(Host& host, const GroupList& groups);

struct PolylineCorner {
    Point at{};
    double startWidth = 0;
    double endWidth = 0;
    double bulge = 0;
};

// A light polyline, or one of vertices where the drawing's version or PLINETYPE wants that.
bool makePolyline(Host& host, const std::vector<PolylineCorner>& corners, bool isClosed);

}  // namespace hostcad
