// Where the pieces of linework cut each other.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "platform/plane/box_tree.h"
#include "platform/plane/piece.h"

namespace plane {

// Asked now and then; work ends when it says true.
using IsCancelled = std::function<bool()>;

struct Cut {
    double share;  // of the piece
    Point place;
};

// Tries the pairs of pieces whose boxes meet. Where a crowd of straight pieces goes through one place, which
// would be as many pairs as the square of the crowd, only those of nearly the same direction are tried.
class PieceCutter {
  public:
    // The boxes are those of the pieces; what has an empty one is left out. All outlive the cutter. Places
    // nearer to each other than `samePlace` are one.
    PieceCutter(std::span<const Piece> pieces, std::span<const Box> boxes, double samePlace);

    enum class Outcome {
        kDone,
        kCancelled,
        kTooDense
    };  // too dense: more pairs than can be tried in seconds
    Outcome run(const IsCancelled& isCancelled);

    // The places within a piece that others meet, in no order; one may come several times.
    std::vector<Cut>& of(size_t piece) { return cuts_[piece]; }

  private:
    // Straight pieces that have one place in common. Those without are in the first one.
    struct Bundle {
        std::vector<Box> boxes;  // by piece, empty for others
        std::unique_ptr<BoxTree> tree;
    };

    bool isTooMuch() const { return work_ > mostWork_; }
    void meetOthers(uint32_t piece);
    void meet(uint32_t piece, uint32_t other);
    void tryPair(uint32_t piece, uint32_t other);
    const Point* placeOfMeeting(uint32_t piece, uint32_t other) const;
    void cut(uint32_t piece, const Point& place);
    void bundleCrowd(const Piece& piece);
    void bundleAt(const Point& place);
    void meetNearlyParallel(const Point& place, std::span<const uint32_t> members);

    std::span<const Piece> pieces_;
    std::span<const Box> boxes_;
    const double samePlace_, sameCut_;
    std::vector<std::vector<Cut>> cuts_;
    std::vector<Bundle> bundles_;
    std::vector<uint32_t> bundleOf_;  // by piece; 0 for none
    std::vector<Point> places_;       // where the present piece meets others
    std::vector<Point> meetings_;     // of one pair
    const uint64_t mostWork_;
    uint64_t work_ = 0;
};

}  // namespace plane
