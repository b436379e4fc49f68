#include "platform/plane/box_tree.h"

namespace plane {

BoxTree::BoxTree(std::span<const Box> boxes) {
    order_.reserve(boxes.size());
    for (size_t i = 0; i < boxes.size(); ++i)
        if (!boxes[i].empty()) order_.push_back(static_cast<uint32_t>(i));
    if (!order_.empty()) build(boxes, 0, static_cast<uint32_t>(order_.size()));
    boxes_.reserve(order_.size());
    for (uint32_t i : order_) boxes_.push_back(boxes[i]);
}

// Halves the boxes across the longer side of all of them, by their middles.
void BoxTree::build(std::span<const Box> boxes, uint32_t first, uint32_t end) {
    constexpr uint32_t kLeaf = 8;
    const size_t own = nodes_.size();
    nodes_.emplace_back();
    Box all;
    for (uint32_t i = first; i < end; ++i) all.add(boxes[order_[i]]);
    nodes_[own].box = all;
    if (end - first <= kLeaf) {
        nodes_[own].first = first;
        nodes_[own].count = end - first;
        return;
    }
    const uint32_t middle = first + (end - first) / 2;
    const bool isWide = all.width() >= all.height();
    std::nth_element(order_.begin() + first, order_.begin() + middle, order_.begin() + end,
                     [&](uint32_t a, uint32_t b) {
                         return isWide ? boxes[a].minX + boxes[a].maxX < boxes[b].minX + boxes[b].maxX
                                       : boxes[a].minY + boxes[a].maxY < boxes[b].minY + boxes[b].maxY;
                     });
    build(boxes, first, middle);
    nodes_[own].second = static_cast<uint32_t>(nodes_.size());
    build(boxes, middle, end);
}

}  // namespace plane
