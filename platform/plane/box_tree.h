// Boxes in an order in which those that meet another one are found quickly.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/plane/box.h"

namespace plane {

// A tree over boxes that do not change. Empty ones are never found.
class BoxTree {
  public:
    explicit BoxTree(std::span<const Box> boxes);

    // Calls visit(index) for each box that meets the given one in the plan, edges included, in no order.
    template <class Visit>
    void each(const Box& box, Visit visit) const {
        if (!nodes_.empty()) each(0, box, visit);
    }

  private:
    struct Node {
        Box box;
        uint32_t first = 0, count = 0;  // of order_ in a leaf; elsewhere count is 0
        uint32_t second = 0;            // the second branch; the first stands behind the node
    };
    void build(std::span<const Box> boxes, uint32_t first, uint32_t end);

    template <class Visit>
    void each(uint32_t index, const Box& box, Visit& visit) const {
        const Node& node = nodes_[index];
        if (!meet(node.box, box)) return;
        if (node.count == 0) {
            each(index + 1, box, visit);
            each(node.second, box, visit);
            return;
        }
        for (uint32_t i = node.first; i < node.first + node.count; ++i)
            if (meet(boxes_[i], box)) visit(order_[i]);
    }

    std::vector<Node> nodes_;
    std::vector<uint32_t> order_;
    std::vector<Box> boxes_;  // in the order of order_
};

}  // namespace plane
