#include "hostcad/drawing/arena.h"

#include <algorithm>
#include <cstring>

namespace hostcad {
namespace {

constexpr size_t kFirstBlockBytes = size_t{1} << 16;
constexpr size_t kBlockBytes = size_t{1} << 21;
constexpr size_t kLongestShared = 64;

// The first and the last bytes of a text; of one with at most 16 bytes they are all of it.
struct Ends {
    uint64_t front = 0, back = 0;

    explicit Ends(std::string_view s) {
        const char* p = s.data();
        size_t n = s.size();
        if (n >= 8) {
            std::memcpy(&front, p, 8);
            std::memcpy(&back, p + n - 8, 8);
        } else if (n >= 4) {
            std::memcpy(&front, p, 4);
            std::memcpy(&back, p + n - 4, 4);
        } else if (n > 0) {
            front = static_cast<unsigned char>(p[0]);
            back = static_cast<unsigned char>(p[n / 2]) | uint64_t{static_cast<unsigned char>(p[n - 1])} << 8;
        }
    }

    bool operator==(const Ends& other) const { return front == other.front && back == other.back; }

    // Enough to tell the short texts of a drawing apart: layers, subclass markers, tags, field values.
    size_t hash(size_t size) const {
        uint64_t h =
            (front * 0x9E3779B97F4A7C15u) ^ (back * 0xC2B2AE3D27D4EB4Fu) ^ (size * 0x165667B19E3779F9u);
        return h ^ (h >> 32);
    }
};

}  // namespace

void* GroupArena::allocate(size_t bytes, size_t alignment) {
    auto misaligned = reinterpret_cast<uintptr_t>(free_) % alignment;
    size_t padding = misaligned ? alignment - misaligned : 0;
    if (bytes + padding > static_cast<size_t>(end_ - free_)) {
        // A list that is larger than a block gets a block of its own, and the present one goes on being
        // filled.
        size_t next = std::clamp(footprint_, kFirstBlockBytes, kBlockBytes);
        bool own = bytes > next / 4;
        size_t size = own ? bytes : next;
        blocks_.emplace_back(new char[size]);
        footprint_ += size;
        char* block = blocks_.back().get();
        if (own) return block;
        free_ = block;
        end_ = block + next;
        padding = 0;
    }
    char* place = free_ + padding;
    free_ = place + bytes;
    return place;
}

Group GroupArena::text(int code, std::string_view value) {
    Group group{static_cast<int16_t>(code), ValueKind::Text, static_cast<uint32_t>(value.size()), {}};
    group.bytes = "";
    if (value.empty()) return group;
    std::string_view* shared = nullptr;
    if (value.size() <= kLongestShared) {
        Ends ends(value);
        shared = &recent_[ends.hash(value.size()) % recent_.size()];
        if (shared->size() == value.size() && Ends(*shared) == ends &&
            (value.size() <= 16 || *shared == value)) {
            group.bytes = shared->data();
            return group;
        }
    }
    char* bytes = static_cast<char*>(allocate(value.size(), 1));
    std::memcpy(bytes, value.data(), value.size());
    if (shared) *shared = {bytes, value.size()};
    group.bytes = bytes;
    return group;
}

Group GroupArena::point(int code, double x, double y) {
    auto* coordinates = static_cast<double*>(allocate(2 * sizeof(double), alignof(double)));
    coordinates[0] = x, coordinates[1] = y;
    Group group{static_cast<int16_t>(code), ValueKind::Point, 2, {}};
    group.coordinates = coordinates;
    return group;
}

Group GroupArena::point(int code, double x, double y, double z) {
    auto* coordinates = static_cast<double*>(allocate(3 * sizeof(double), alignof(double)));
    coordinates[0] = x, coordinates[1] = y, coordinates[2] = z;
    Group group{static_cast<int16_t>(code), ValueKind::Point, 3, {}};
    group.coordinates = coordinates;
    return group;
}

Group GroupArena::binary(int code, std::string_view bytes) {
    Group group{static_cast<int16_t>(code), ValueKind::Binary, static_cast<uint32_t>(bytes.size()), {}};
    char* copy = static_cast<char*>(allocate(bytes.size(), 1));
    if (!bytes.empty()) std::memcpy(copy, bytes.data(), bytes.size());
    group.bytes = copy;
    return group;
}

Groups GroupArena::store(Groups groups) {
    if (groups.empty()) return {};
    auto* copy = static_cast<Group*>(allocate(groups.size_bytes(), alignof(Group)));
    std::memcpy(static_cast<void*>(copy), groups.data(), groups.size_bytes());
    return {copy, groups.size()};
}

}  // namespace hostcad
