#include "platform/plane/piece_cuts.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace plane {

namespace {

// Pairs whose boxes meet, those of them that are tried in full, and cuts cost about so much. The most that is
// done takes a few seconds, or some microseconds a piece, and no more memory than there is.
constexpr uint64_t kWorkOfPair = 1, kWorkOfTry = 64, kWorkOfCut = 16;
constexpr uint64_t kMostWork = 500'000'000, kMostWorkOfPiece = 2000;

// So many pieces in one place are a crowd.
constexpr size_t kCrowd = 1000;

double lengthInPlan(Point p) {
    return std::hypot(p.x, p.y);
}

// Whether a straight piece is beside the line of another one as a whole. Spares most pairs the full try.
bool isBeside(const Piece& a, const Piece& b, double tolerance) {
    if (a.arc() || b.arc()) return false;
    const Point along = a.to() - a.from(), from = b.from() - a.from(), to = b.to() - a.from();
    const double reach = tolerance * (std::abs(along.x) + std::abs(along.y));
    const double one = along.x * from.y - along.y * from.x, other = along.x * to.y - along.y * to.x;
    return (one > reach && other > reach) || (one < -reach && other < -reach);
}

}  // namespace

PieceCutter::PieceCutter(std::span<const Piece> pieces, std::span<const Box> boxes, double samePlace)
    : pieces_(pieces),
      boxes_(boxes),
      samePlace_(samePlace),
      sameCut_(samePlace / 16),
      cuts_(pieces.size()),
      bundleOf_(pieces.size(), 0),
      mostWork_(kMostWork + kMostWorkOfPiece * pieces.size()) {
    bundles_.push_back({{boxes.begin(), boxes.end()}, std::make_unique<BoxTree>(boxes)});
}

PieceCutter::Outcome PieceCutter::run(const IsCancelled& isCancelled) {
    constexpr uint32_t kAskEvery = 256;
    for (uint32_t i = 0; i < pieces_.size(); ++i) {
        if (i % kAskEvery == 0 && isCancelled && isCancelled()) return Outcome::kCancelled;
        if (boxes_[i].empty()) continue;
        meetOthers(i);
        if (isTooMuch()) return Outcome::kTooDense;
        if (places_.size() >= kCrowd && bundleOf_[i] == 0) bundleCrowd(pieces_[i]);
    }
    return Outcome::kDone;
}

void PieceCutter::meetOthers(uint32_t piece) {
    places_.clear();
    for (uint32_t bundle = 0; bundle < bundles_.size(); ++bundle)
        if (bundle == 0 || bundle != bundleOf_[piece])
            bundles_[bundle].tree->each(boxes_[piece], [&](uint32_t other) {
                if (other > piece && !isTooMuch()) meet(piece, other);
            });
}

void PieceCutter::meet(uint32_t piece, uint32_t other) {
    work_ += kWorkOfPair;
    if (const Point* known = placeOfMeeting(piece, other))
        places_.push_back(*known);
    else if (!isBeside(pieces_[piece], pieces_[other], samePlace_))
        tryPair(piece, other);
}

void PieceCutter::tryPair(uint32_t piece, uint32_t other) {
    work_ += kWorkOfTry;
    meetings_.clear();
    addMeetings(pieces_[piece], pieces_[other], samePlace_, meetings_);
    for (const Point& place : meetings_) {
        cut(piece, place);
        cut(other, place);
        places_.push_back(place);
    }
}

// Straight pieces that are cut in one place already, and whose ends are away from each other, do not meet
// again. Null for those that have to be tried; pieces with more cuts are rather tried too.
const Point* PieceCutter::placeOfMeeting(uint32_t piece, uint32_t other) const {
    constexpr size_t kFew = 2;
    const std::vector<Cut>&cutsOfA = cuts_[piece], &cutsOfB = cuts_[other];
    if (cutsOfA.empty() || cutsOfB.empty() || cutsOfA.size() > kFew || cutsOfB.size() > kFew) return nullptr;
    const Piece &a = pieces_[piece], &b = pieces_[other];
    if (a.arc() || b.arc()) return nullptr;
    for (const Cut& of : cutsOfA)
        for (const Cut& by : cutsOfB) {
            if (distance(of.place, by.place) > sameCut_) continue;
            const Point along = a.to() - a.from(), across = b.to() - b.from();
            const double sine =
                std::abs(along.x * across.y - along.y * across.x) / (length(along) * length(across));
            const double nearest = std::min({distance(of.place, a.from()), distance(of.place, a.to()),
                                             distance(of.place, b.from()), distance(of.place, b.to())});
            return sine * nearest > 2 * samePlace_ ? &of.place : nullptr;
        }
    return nullptr;
}

void PieceCutter::cut(uint32_t piece, const Point& place) {
    const Piece& whole = pieces_[piece];
    if (distance(place, whole.from()) <= samePlace_ || distance(place, whole.to()) <= samePlace_) return;
    // Where many pieces meet in one place, one cut is enough. More do no harm: who has many is cut by many.
    constexpr size_t kCompared = 8;
    for (size_t i = 0; i < std::min(cuts_[piece].size(), kCompared); ++i)
        if (distance(cuts_[piece][i].place, place) <= sameCut_) return;
    work_ += kWorkOfCut;
    cuts_[piece].push_back({whole.nearest(place).share, place});
}

// --- Crowds
// --------------------------------------------------------------------------------------------------

// Where one of the places in which the piece meets others is that of a crowd, all who go through it are taken
// out of the search by pairs.
void PieceCutter::bundleCrowd(const Piece& piece) {
    std::vector<std::pair<double, Point>> byShare;
    for (const Point& place : places_) byShare.emplace_back(piece.nearest(place).share, place);
    std::sort(byShare.begin(), byShare.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (size_t first = 0, i = 1; i <= byShare.size(); ++i) {
        if (i < byShare.size() && distance(byShare[i].second, byShare[first].second) <= sameCut_) continue;
        if (i - first >= kCrowd) bundleAt(byShare[first].second);
        first = i;
    }
}

void PieceCutter::bundleAt(const Point& place) {
    Box around;
    around.add(place.x - sameCut_, place.y - sameCut_), around.add(place.x + sameCut_, place.y + sameCut_);
    std::vector<uint32_t> members;
    bundles_.front().tree->each(around, [&](uint32_t piece) {
        if (!pieces_[piece].arc() && pieces_[piece].nearest(place).distance <= sameCut_)
            members.push_back(piece);
    });
    if (members.size() < kCrowd) return;
    Bundle bundle;
    bundle.boxes.resize(pieces_.size());
    for (uint32_t member : members) {
        cut(member, place);
        bundleOf_[member] = static_cast<uint32_t>(bundles_.size());
        std::swap(bundle.boxes[member], bundles_.front().boxes[member]);
    }
    bundle.tree = std::make_unique<BoxTree>(bundle.boxes);
    bundles_.push_back(std::move(bundle));
    bundles_.front().tree = std::make_unique<BoxTree>(bundles_.front().boxes);
    meetNearlyParallel(place, members);
}

// Two of them are apart from each other at all their ends, unless the angle between them is small for the
// shorter one.
void PieceCutter::meetNearlyParallel(const Point& place, std::span<const uint32_t> members) {
    constexpr double kHalfTurn = std::numbers::pi;
    struct Way {
        uint32_t piece;
        double angle;  // from 0 to half a turn
        double reach;  // to the nearer end that is not the place itself
    };
    std::vector<Way> ways;
    for (uint32_t member : members) {
        const Piece& piece = pieces_[member];
        const Point along = piece.to() - piece.from();
        double reach = lengthInPlan(along);
        if (reach <= samePlace_) continue;
        for (const Point& end : {piece.from(), piece.to()})
            if (const double way = distance(end, place); way > samePlace_) reach = std::min(reach, way);
        const double angle = std::atan2(along.y, along.x);
        ways.push_back({member, angle < 0 ? angle + kHalfTurn : angle, reach});
    }
    std::sort(ways.begin(), ways.end(), [](const Way& a, const Way& b) { return a.angle < b.angle; });
    const size_t count = ways.size();
    for (size_t i = 0; i < count; ++i) {
        const double window = std::asin(std::min(1.0, 2 * samePlace_ / ways[i].reach));
        for (const bool isForward : {true, false})
            for (size_t step = 1; step < count && !isTooMuch(); ++step) {
                const Way& other = ways[(isForward ? i + step : i + count - step) % count];
                double apart = isForward ? other.angle - ways[i].angle : ways[i].angle - other.angle;
                if (apart < 0) apart += kHalfTurn;
                if (apart > window) break;
                if (other.reach >= ways[i].reach) tryPair(ways[i].piece, other.piece);
            }
    }
}

}  // namespace plane
