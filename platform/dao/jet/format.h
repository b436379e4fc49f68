// The two layouts of Access files: what differs is told here once, so that the rest of the code reads both.
#pragma once

#include <cstddef>
#include <cstdint>

namespace jet {

enum class Version { kAccess97 = 3, kAccess2000 = 4 };

struct Format {
    Version version;
    size_t pageSize;

    // Data pages: where the number of rows stands, where the table of their places begins.
    size_t rowCountAt;
    size_t rowTableAt;
    size_t longestRow;
    // A page with less free room than this is not looked at when a row wants a place.
    size_t leastRoom;

    // Usage maps.
    size_t usageMapRow;  // length of a new row

    // Table definitions: fields by their offset from the page's beginning.
    size_t definitionRowsAt;
    size_t definitionCounterAt;
    size_t definitionTypeAt;  // the other counts and pointers follow the type in both layouts alike
    size_t definitionEnd;     // of the fixed part
    size_t indexCountsSize;   // the counts of one index
    size_t columnSize;
    size_t indexSize;
    size_t indexNameSize;
    size_t blockStart;  // a constant stands before the fields of each block in Jet 4

    // Index pages.
    size_t indexPreviousAt, indexNextAt, indexTailAt, indexPrefixAt, indexLevelAt, indexBitmapAt,
        indexEntriesAt;

    // Long values.
    size_t longestInline;
    size_t longestPiece;  // of an own row, with its pointer in a chain

    bool unicode;  // text is UTF-16, perhaps compressed, and counts are of two bytes
};

inline constexpr Format kJet3 = {
    .version = Version::kAccess97,
    .pageSize = 2048,
    .rowCountAt = 8,
    .rowTableAt = 10,
    .longestRow = 2012,
    .leastRoom = 91,
    .usageMapRow = 133,
    .definitionRowsAt = 12,
    .definitionCounterAt = 16,
    .definitionTypeAt = 20,
    .definitionEnd = 43,
    .indexCountsSize = 8,
    .columnSize = 18,
    .indexSize = 39,
    .indexNameSize = 20,
    .blockStart = 0,
    .indexPreviousAt = 8,
    .indexNextAt = 12,
    .indexTailAt = 16,
    .indexPrefixAt = 20,
    .indexLevelAt = 21,
    .indexBitmapAt = 22,
    .indexEntriesAt = 248,
    .longestInline = 32,
    .longestPiece = 2036,
    .unicode = false,
};

inline constexpr Format kJet4 = {
    .version = Version::kAccess2000,
    .pageSize = 4096,
    .rowCountAt = 12,
    .rowTableAt = 14,
    .longestRow = 4060,
    .leastRoom = 372,
    .usageMapRow = 69,
    .definitionRowsAt = 16,
    .definitionCounterAt = 20,
    .definitionTypeAt = 40,
    .definitionEnd = 63,
    .indexCountsSize = 12,
    .columnSize = 25,
    .indexSize = 52,
    .indexNameSize = 28,
    .blockStart = 4,
    .indexPreviousAt = 12,
    .indexNextAt = 16,
    .indexTailAt = 20,
    .indexPrefixAt = 24,
    .indexLevelAt = 26,
    .indexBitmapAt = 27,
    .indexEntriesAt = 480,
    .longestInline = 64,
    .longestPiece = 4076,
    .unicode = true,
};

// The first byte of a page.
enum class PageType : uint8_t { kHeader = 0, kData = 1, kDefinition = 2, kNode = 3, kLeaf = 4, kBitmap = 5 };

// Places that are the same in every file.
inline constexpr uint32_t kGlobalMapPage = 1;
inline constexpr uint32_t kObjectsPage = 2;
inline constexpr uint32_t kAccessPage = 3;
inline constexpr uint32_t kQueriesPage = 4;
inline constexpr uint32_t kRelationsPage = 5;

}  // namespace jet
