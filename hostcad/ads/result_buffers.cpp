// Result buffers and the host's heap.
#include <array>
#include <cmath>

#include "platform/ads/result_buffer.h"
#include "platform/text/wild_cards.h"

namespace {

struct Range {
    short first, last;
    GroupKind kind;
};

// Group codes of drawings and of extended data, in ascending order.
constexpr Range kGroupRanges[] = {
    {-5, -5, GroupKind::Name},
    {-4, -4, GroupKind::Text},
    {-3, -3, GroupKind::None},
    {-2, -1, GroupKind::Name},
    {0, 4, GroupKind::Text},
    {5, 5, GroupKind::Handle},
    {6, 9, GroupKind::Text},
    {10, 18, GroupKind::Point},
    {19, 59, GroupKind::Real},
    {60, 79, GroupKind::Short},
    {90, 99, GroupKind::Long},
    {100, 102, GroupKind::Text},
    {105, 105, GroupKind::Handle},
    {110, 112, GroupKind::Point},
    {113, 149, GroupKind::Real},
    {160, 169, GroupKind::Long},
    {170, 179, GroupKind::Short},
    {210, 219, GroupKind::Point},
    {220, 239, GroupKind::Real},
    {270, 299, GroupKind::Short},
    {300, 309, GroupKind::Text},
    {310, 319, GroupKind::Binary},
    {320, 329, GroupKind::Handle},
    {330, 369, GroupKind::Name},
    {370, 389, GroupKind::Short},
    {390, 399, GroupKind::Name},
    {400, 409, GroupKind::Short},
    {410, 419, GroupKind::Text},
    {420, 429, GroupKind::Long},
    {430, 439, GroupKind::Text},
    {440, 459, GroupKind::Long},
    {460, 469, GroupKind::Real},
    {470, 479, GroupKind::Text},
    {480, 481, GroupKind::Name},
    {999, 1003, GroupKind::Text},
    {1004, 1004, GroupKind::Binary},
    {1005, 1005, GroupKind::Handle},
    {1006, 1009, GroupKind::Text},
    {1010, 1013, GroupKind::Point},
    {1014, 1059, GroupKind::Real},
    {1060, 1070, GroupKind::Short},
    {1071, 1071, GroupKind::Long},
    {RTNONE, RTNONE, GroupKind::None},
    {RTREAL, RTREAL, GroupKind::Real},
    {RTPOINT, RTPOINT, GroupKind::Point},
    {RTSHORT, RTSHORT, GroupKind::Short},
    {RTANG, RTANG, GroupKind::Real},
    {RTSTR, RTSTR, GroupKind::Text},
    {RTENAME, RTPICKS, GroupKind::Name},
    {RTORINT, RTORINT, GroupKind::Real},
    {RT3DPOINT, RT3DPOINT, GroupKind::Point},
    {RTLONG, RTLONG, GroupKind::Long},
    {RTVOID, RTVOID, GroupKind::None},
    {RTLB, RTNIL, GroupKind::None},
    {RTDXF0, RTDXF0, GroupKind::Text},
    {RTT, RTT, GroupKind::None},
};

constexpr int kFirstCode = -5;
constexpr int kLastCode = 1071;

GroupKind searchKindOf(int type) {
    for (const Range& range : kGroupRanges)
        if (type >= range.first && type <= range.last) return range.kind;
    // Codes of files that have no meaning are carried as texts.
    return type >= 0 && type <= kLastCode ? GroupKind::Text : GroupKind::None;
}

bool holdsText(GroupKind kind) {
    return kind == GroupKind::Text || kind == GroupKind::Handle;
}

// Takes the value of the given type from the argument list. False for a type that is unknown.
bool takeValue(resbuf& item, va_list& args) {
    switch (groupKindOf(item.restype)) {
        case GroupKind::Text:
        case GroupKind::Handle: {
            const char* text = va_arg(args, const char*);
            item.resval.rstring = acad_strdup(text ? text : "");
            break;
        }
        case GroupKind::Real:
            item.resval.rreal = va_arg(args, double);
            break;
        case GroupKind::Short:
            item.resval.rint = static_cast<short>(va_arg(args, int));
            break;
        case GroupKind::Long:
            item.resval.rlong = va_arg(args, long);
            break;
        case GroupKind::Point:
            ads_point_set(va_arg(args, const double*), item.resval.rpoint);
            break;
        case GroupKind::Name:
            ads_name_set(va_arg(args, const long*), item.resval.rlname);
            break;
        case GroupKind::Binary: {
            const auto* chunk = va_arg(args, const ads_binary*);
            item.resval.rbinary.clen = chunk->clen;
            item.resval.rbinary.buf = static_cast<char*>(acad_malloc(static_cast<size_t>(chunk->clen)));
            std::memcpy(item.resval.rbinary.buf, chunk->buf, static_cast<size_t>(chunk->clen));
            break;
        }
        case GroupKind::None:
            return item.restype == -3 || item.restype >= RTNONE;
    }
    return true;
}

}  // namespace

GroupKind groupKindOf(int type) {
    // Every value of every list asks this, so group codes are looked up in a table.
    static const auto kKinds = [] {
        std::array<GroupKind, kLastCode - kFirstCode + 1> kinds{};
        for (int code = kFirstCode; code <= kLastCode; ++code)
            kinds[static_cast<size_t>(code - kFirstCode)] = searchKindOf(code);
        return kinds;
    }();
    if (type >= kFirstCode && type <= kLastCode) return kKinds[static_cast<size_t>(type - kFirstCode)];
    return searchKindOf(type);
}

extern "C" {

void* acad_malloc(size_t bytes) {
    return std::malloc(bytes ? bytes : 1);
}
void* acad_realloc(void* block, size_t bytes) {
    return std::realloc(block, bytes ? bytes : 1);
}
void acad_free(void* block) {
    std::free(block);
}

resbuf* acutNewRb(int type) {
    auto* item = static_cast<resbuf*>(acad_malloc(sizeof(resbuf)));
    if (!item) return nullptr;
    std::memset(static_cast<void*>(item), 0, sizeof *item);
    item->restype = static_cast<short>(type);
    return item;
}

int acutRelRb(resbuf* list) {
    while (list) {
        resbuf* next = list->rbnext;
        GroupKind kind = groupKindOf(list->restype);
        if (holdsText(kind)) acad_free(list->resval.rstring);
        if (kind == GroupKind::Binary) acad_free(list->resval.rbinary.buf);
        acad_free(list);
        list = next;
    }
    return RTNORM;
}

resbuf* acutBuildList(int type, ...) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    va_list args;
    va_start(args, type);
    for (; type != 0 && type != RTNONE; type = va_arg(args, int)) {
        resbuf* item = acutNewRb(type == RTDXF0 ? 0 : type);
        bool taken = item && (item->restype == 0 || groupKindOf(item->restype) != GroupKind::None ||
                              item->restype == -3 || item->restype >= RTNONE);
        if (taken) taken = takeValue(*item, args);
        if (!taken) {
            acutRelRb(item);
            acutRelRb(head);
            head = nullptr;
            break;
        }
        *tail = item;
        tail = &item->rbnext;
    }
    va_end(args);
    return head;
}

ads_real acutDistance(const ads_point from, const ads_point to) {
    return std::hypot(to[0] - from[0], to[1] - from[1], to[2] - from[2]);
}

int acutWcMatch(const char* text, const char* pattern) {
    return text && pattern && text::matchesWildCards(text, pattern) ? RTNORM : RTERROR;
}
}
