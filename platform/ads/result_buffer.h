// Result buffers: the linked lists in which a module and the CAD host hand values to each other.
//
// The boundary is C: plain structures, integer status codes, memory from acad_malloc. Strings are UTF-8.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>

extern "C" {

typedef double ads_real;
typedef ads_real ads_point[3];
// An entity (or a selection set, or a symbol-table record): opaque to a module. Two zeros name nothing.
typedef long ads_name[2];

struct ads_binary {
    short clen;  // 0 to 127 in extended data
    char* buf;
};

union ads_u_val {
    ads_real rreal;
    ads_real rpoint[3];
    short rint;
    long rlong;
    char* rstring;  // owned by the buffer, from acad_malloc
    long rlname[2];
    ads_binary rbinary;
};

// One value of a list. `restype` is an RT... type (5000 and up), or a DXF group code.
struct resbuf {
    resbuf* rbnext;
    short restype;
    ads_u_val resval;
};
}

// Types of a value.
constexpr short RTNONE = 5000;
constexpr short RTREAL = 5001;
constexpr short RTPOINT = 5002;  // 2D point
constexpr short RTSHORT = 5003;
constexpr short RTANG = 5004;
constexpr short RTSTR = 5005;
constexpr short RTENAME = 5006;
constexpr short RTPICKS = 5007;
constexpr short RTORINT = 5008;
constexpr short RT3DPOINT = 5009;
constexpr short RTLONG = 5010;
constexpr short RTVOID = 5014;
constexpr short RTLB = 5016;    // list begin
constexpr short RTLE = 5017;    // list end
constexpr short RTDOTE = 5018;  // a dotted pair's second half follows
constexpr short RTNIL = 5019;
constexpr short RTDXF0 = 5020;  // group code 0, since a plain 0 ends the arguments of acutBuildList
constexpr short RTT = 5021;

// Status of a call.
constexpr int RTNORM = 5100;
constexpr int RTERROR = -5001;
constexpr int RTCAN = -5002;
constexpr int RTREJ = -5003;
constexpr int RTFAIL = -5004;
constexpr int RTKWORD = -5005;

// How a group code's value is held in a resbuf.
enum class GroupKind { None, Text, Real, Point, Short, Long, Name, Binary, Handle };

extern "C" {

// Memory that crosses the boundary. acad_free takes null.
void* acad_malloc(size_t bytes);
void* acad_realloc(void* block, size_t bytes);
void acad_free(void* block);

// A new buffer of the given type, with its value zeroed. Null when memory is out.
resbuf* acutNewRb(int type);

// Releases a whole list with its strings and binary chunks. Null is allowed. Returns RTNORM.
int acutRelRb(resbuf* list);

// A list from type/value pairs, ended by a type of 0 (RTNONE ends it too). The value's C type goes by the
// type: text for RTSTR and text group codes, double for RTREAL, int for RTSHORT, long for RTLONG, ads_point
// for points, ads_name for names, ads_binary* for binary chunks; RTLB, RTLE, RTDOTE, RTNIL and RTT take none.
// Strings are copied. The caller releases the list. Null when memory is out or a type is unknown.
resbuf* acutBuildList(int type, ...);

// Distance of two 3D points, in drawing units.
ads_real acutDistance(const ads_point from, const ads_point to);

// Whether text matches a wild-card pattern: # digit, @ letter, . other, * any run, ? any character,
// [..] one of, [~..] none of, ~ at the front not, ` next character as it stands, comma between patterns.
// RTNORM or RTERROR. Case counts.
int acutWcMatch(const char* text, const char* pattern);
}

// The kind of value that a group code (DXF or extended data) or an RT... type carries.
GroupKind groupKindOf(int type);

// A copy of text on the host's heap.
inline char* acad_strdup(const char* text) {
    size_t n = std::strlen(text) + 1;
    auto* copy = static_cast<char*>(acad_malloc(n));
    if (copy) std::memcpy(copy, text, n);
    return copy;
}

inline void ads_name_set(const ads_name from, ads_name to) {
    to[0] = from[0], to[1] = from[1];
}
inline void ads_name_clear(ads_name name) {
    name[0] = name[1] = 0;
}
inline bool ads_name_nil(const ads_name name) {
    return name[0] == 0 && name[1] == 0;
}
inline bool ads_name_equal(const ads_name a, const ads_name b) {
    return a[0] == b[0] && a[1] == b[1];
}
inline void ads_point_set(const ads_point from, ads_point to) {
    to[0] = from[0], to[1] = from[1], to[2] = from[2];
}
