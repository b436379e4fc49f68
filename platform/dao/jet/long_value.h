// Values that may be too long for a row: memos and OLE data.
//
// The row has a head that tells the length and where the bytes are: behind it in the row, in one row of a
// page of long values, or in a chain of such rows.
#pragma once

#include "platform/dao/jet/row_space.h"

namespace jet {

class LongValues {
  public:
    // owned, room: the maps of the column's pages; a row on page 0 when the column has none.
    LongValues(Store& store, RowId owned, RowId room)
        : store_(store), hasMaps_(owned.page != 0), space_(store, kLongValueOwner, owned, room) {}

    // The value that a head tells of. bytes: the head, and what stands behind it in the row.
    static Bytes read(Store& store, ByteView bytes);
    // Appends the head of a value, and the value where it is short enough to stay in the row.
    void write(ByteView value, ByteWriter& row, bool inlineAllowed = true);
    // Gives back the pages of a value.
    void release(ByteView bytes);

    static bool isOutside(ByteView bytes);
    // The pieces of a value outside its row.
    static std::vector<RowId> pieces(Store& store, ByteView bytes);

  private:
    Store& store_;
    bool hasMaps_;
    RowSpace space_;
};

}  // namespace jet
