#include "module/coords/point_range.h"

#include <algorithm>

#include "module/coords/point_names.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kLongestPart = 255;

// Takes the next token off a list: up to a comma, but not to one in the brackets of a group.
std::string_view takeToken(std::string_view& rest) {
    std::string_view start = text::trimLeft(rest);
    size_t from = 0;
    if (text::startsWith(start, "GROUP")) {
        size_t open = rest.find('['), comma = rest.find(',');
        if (open < comma) from = std::min(rest.find(']', open), rest.size());
    }
    size_t end = rest.find(',', from);
    std::string_view token = text::trim(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return token;
}

std::string partOf(std::string_view text, bool numeric) {
    text = text::cutToBytes(text::trim(text), kLongestPart);
    bool digits = !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    if (numeric && digits) return std::to_string(NumberOfName(text));
    return std::string(text);
}

PointRange::Token tokenOf(std::string_view text, bool numeric) {
    size_t dash = text::startsWith(text, "GROUP") ? std::string_view::npos : text.find('-');
    std::string start = partOf(text.substr(0, dash), numeric);
    std::string end = dash == std::string_view::npos ? start : partOf(text.substr(dash + 1), numeric);
    // A row without one of its ends is only the other.
    if (start.empty()) start = end;
    if (end.empty()) end = start;
    return {start, end};
}

}  // namespace

PointRange::PointRange(std::string_view text, bool numeric) {
    std::string upper = NormalizedName(text);
    all_ = upper == "ALL";
    if (all_) return;
    for (std::string_view rest = upper; !rest.empty();) {
        Token token = tokenOf(takeToken(rest), numeric);
        if (!token.start.empty()) tokens_.push_back(std::move(token));
    }
}

bool PointRange::contains(std::string_view name) const {
    auto within = [&](const Token& token) {
        bool down = CompareNames(token.end, token.start) < 0;
        return CompareNames(name, down ? token.end : token.start) >= 0 &&
               CompareNames(name, down ? token.start : token.end) <= 0;
    };
    return all_ || std::any_of(tokens_.begin(), tokens_.end(), within);
}

int FindNear(CoordinateFile& file, const std::string& name, PointRecord& point, int quiet, int direction) {
    if (direction < 0 && CompareNames(name, file.lowestName) < 0) return 0;
    if (direction > 0 && CompareNames(name, file.highestName) > 0) return 0;
    return file.Find(name, point, direction, quiet);
}

RangeWalk::RangeWalk(CoordinateFile& file, PointRange range) : file_(file), range_(std::move(range)) {
    if (range_.isAll()) file_.Rewind();
}

// One point further from the one handed out last, which is found again when something else was read or looked
// for since.
bool RangeWalk::step(PointRecord& point, int direction) {
    bool there = last_.empty() || (file_.lastName == last_ && file_.GetPosition() == position_);
    if (!there && !file_.Find(last_, point, 0, 1)) return false;
    return file_.Move(nullptr, point, direction) != 0;
}

bool RangeWalk::nextOfToken(PointRecord& point) {
    const PointRange::Token& token = range_.tokens()[token_];
    int direction = CompareNames(token.end, token.start);
    if (last_.empty()) {
        if (!FindNear(file_, token.start, point, 1, direction)) return false;
    } else if (direction == 0 || CompareNames(last_, token.end) == 0 || !step(point, direction)) {
        return false;
    }
    int fromStart = CompareNames(point.name, token.start), fromEnd = CompareNames(point.name, token.end);
    return fromStart * direction >= 0 && fromEnd * direction <= 0;
}

bool RangeWalk::handOut(const PointRecord& point) {
    last_ = point.name;
    position_ = file_.GetPosition();
    return true;
}

bool RangeWalk::next(PointRecord& point) {
    if (range_.isAll()) return step(point, 1) && handOut(point);
    for (; token_ < range_.tokens().size(); ++token_) {
        if (nextOfToken(point)) return handOut(point);
        last_.clear();
    }
    return false;
}

}  // namespace norvane
