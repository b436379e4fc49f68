// Adding entities to the drawing, as the drawing commands do it.
#pragma once

#include <vector>

#include "hostcad/editor/prompt.h"
#include "platform/ads/result_buffer.h"

namespace hostcad {

// A list of groups under construction; it belongs to this object.
class GroupList {
  public:
    GroupList() = default;
    ~GroupList() { acutRelRb(head_); }
    GroupList(const GroupList&) = delete;
    GroupList& operator=(const GroupList&) = delete;

    GroupList& text(int code, const std::string& value);
    GroupList& real(int code, double value);
    GroupList& integer(int code, int value);
    GroupList& point(int code, const Point& value);
    const resbuf* list() const { return head_; }

  private:
    resbuf& add(int code);
    resbuf* head_ = nullptr;
    resbuf** tail_ = &head_;
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
