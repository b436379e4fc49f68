#include "hostcad/ads/group_lists.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "hostcad/drawing/host_names.h"
#include "hostcad/dxf/text_codec.h"

namespace hostcad {
namespace {

char* copyText(std::string_view text) {
    char* copy = static_cast<char*>(acad_malloc(text.size() + 1));
    std::copy(text.begin(), text.end(), copy);
    copy[text.size()] = '\0';
    return copy;
}

// A reference to an object that the drawing does not have keeps its handle in the name's second number, so
// that it is not lost when the list comes back.
void nameOfHandle(const Drawing& drawing, const Group& group, ads_name name) {
    ads_name_clear(name);
    if (group.kind != ValueKind::Handle) return;
    if (ObjectId id = drawing.byHandle(group.handle))
        nameOf(id, name);
    else
        name[1] = static_cast<long>(group.handle);
}

uint64_t handleOfName(const Drawing& drawing, const ads_name name) {
    if (ObjectId id = idOf(name)) return drawing.object(id).handle;
    return name[0] == 0 ? static_cast<uint64_t>(name[1]) : 0;
}

// The noise of the conversion to radians is rounded away: 90 degrees come back as 90.
double degreesOf(double radians) {
    constexpr double kSteps = 1e11;
    double degrees = radians * 180 / std::numbers::pi;
    return std::abs(degrees) < 1e4 ? std::round(degrees * kSteps) / kSteps : degrees;
}

bool isXDataCode(int code) {
    constexpr int kCodes[] = {1000, 1002, 1003, 1004, 1005, 1010, 1011,
                              1012, 1013, 1040, 1041, 1042, 1070, 1071};
    return std::find(std::begin(kCodes), std::end(kCodes), code) != std::end(kCodes);
}

}  // namespace

// --- Lists for a caller -------------------------------------------------------------------------------

void addGroup(ResultChain& list, const Drawing& drawing, const Group& group) {
    ads_u_val& value = list.add(group.code).resval;
    switch (groupKindOf(group.code)) {
        case GroupKind::None:
        case GroupKind::Text:
            value.rstring = copyText(group.text());
            break;
        case GroupKind::Real:
            value.rreal = isAngleCode(group.code) ? radiansOf(group.asReal()) : group.asReal();
            break;
        case GroupKind::Point:
            value.rpoint[0] = group.x(), value.rpoint[1] = group.y(), value.rpoint[2] = group.z();
            break;
        case GroupKind::Short:
            value.rint = static_cast<short>(group.asInteger());
            break;
        case GroupKind::Long:
            value.rlong = group.asInteger();
            break;
        case GroupKind::Name:
            nameOfHandle(drawing, group, value.rlname);
            break;
        case GroupKind::Handle:
            value.rstring =
                copyText(group.kind == ValueKind::Handle ? handleText(group.handle) : group.text());
            break;
        case GroupKind::Binary: {
            std::string_view bytes = group.kind == ValueKind::Binary ? group.chunk() : group.text();
            bytes = bytes.substr(0, std::numeric_limits<short>::max());
            value.rbinary.clen = static_cast<short>(bytes.size());
            value.rbinary.buf = copyText(bytes);
            break;
        }
    }
}

void addName(ResultChain& list, int code, ObjectId id) {
    nameOf(id, list.add(code).resval.rlname);
}

// --- Lists from a caller ------------------------------------------------------------------------------

bool isAngleCode(int code) {
    return code >= 50 && code <= 58;
}

double radiansOf(double degrees) {
    return degrees * std::numbers::pi / 180;
}

Group groupOf(Drawing& drawing, const resbuf& item, const Group* like) {
    GroupArena& arena = drawing.arena();
    int code = item.restype;
    const ads_u_val& value = item.resval;
    auto text = [&] { return std::string_view(value.rstring ? value.rstring : ""); };
    switch (groupKindOf(code)) {
        case GroupKind::None:
        case GroupKind::Text:
            break;
        case GroupKind::Real:
            if (!isAngleCode(code)) return realGroup(code, value.rreal);
            if (like && radiansOf(like->asReal()) == value.rreal) return realGroup(code, like->asReal());
            return realGroup(code, degreesOf(value.rreal));
        case GroupKind::Point: {
            const double* p = value.rpoint;
            bool flat = like && like->kind == ValueKind::Point && like->size == 2;
            return flat ? arena.point(code, p[0], p[1]) : arena.point(code, p[0], p[1], p[2]);
        }
        case GroupKind::Short:
            return integerGroup(code, value.rint);
        case GroupKind::Long:
            return integerGroup(code, value.rlong);
        case GroupKind::Name:
            return handleGroup(code, handleOfName(drawing, value.rlname));
        case GroupKind::Handle:
            if (auto handle = readHandle(text())) return handleGroup(code, *handle);
            break;
        case GroupKind::Binary:
            return arena.binary(
                code, {value.rbinary.buf, static_cast<size_t>(std::max<short>(value.rbinary.clen, 0))});
    }
    return arena.text(code, text());
}

bool xdataFromList(Drawing& drawing, const resbuf* list, std::vector<Group>& groups) {
    TextCodec codec(drawing.format(), drawing.codePage());
    int depth = 0;
    for (; list; list = list->rbnext) {
        int code = list->restype;
        if (code == kApplicationCode) {
            if (depth != 0 || !list->resval.rstring || !drawing.record("APPID", list->resval.rstring))
                return false;
        } else if (groups.empty() || !isXDataCode(code)) {
            return false;
        }
        Group group = groupOf(drawing, *list);
        if (group.kind == ValueKind::Text && codec.encode(group.text()).size() > kLongestXDataText)
            return false;
        if (group.kind == ValueKind::Binary && group.size > 127) return false;
        if (code == 1002) {
            if (group.text() != "{" && group.text() != "}") return false;
            depth += group.text() == "{" ? 1 : -1;
            if (depth < 0) return false;
        }
        groups.push_back(group);
    }
    return depth == 0;
}

size_t xdataSize(Groups xdata) {
    size_t bytes = 0;
    for (const Group& group : xdata) {
        // One byte for the code, two for the length of what has one.
        switch (group.kind) {
            case ValueKind::Text:
            case ValueKind::Binary:
                bytes += 3 + group.size;
                break;
            case ValueKind::Point:
                bytes += 1 + 3 * sizeof(double);
                break;
            case ValueKind::Real:
            case ValueKind::Handle:
                bytes += 1 + sizeof(double);
                break;
            case ValueKind::Integer:
                bytes += group.code == 1071 ? 5 : 3;
                break;
        }
    }
    return bytes;
}

void mergeXData(std::vector<Group>& groups, Groups changes) {
    while (!changes.empty()) {
        auto next = std::find_if(changes.begin() + 1, changes.end(),
                                 [](const Group& group) { return group.code == kApplicationCode; });
        Groups change(changes.begin(), next);
        changes = Groups(next, changes.end());
        Groups all = groups;
        Groups old = xdataOf(all, change[0].text());
        Groups present = xdataOf(all);
        // In place of the old data, or behind that of the others; embedded objects stay behind all of it.
        auto position = old.empty() ? present.end() - all.begin() : old.begin() - all.begin();
        if (present.empty()) {
            auto embedded =
                std::find_if(all.begin(), all.end(), [](const Group& g) { return g.code == 101; });
            position = embedded - all.begin();
        }
        auto place = groups.erase(groups.begin() + position, groups.begin() + position + std::ssize(old));
        if (change.size() > 1) groups.insert(place, change.begin(), change.end());
    }
}

}  // namespace hostcad
