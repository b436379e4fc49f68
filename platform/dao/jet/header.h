// The first page of a file: what the whole database has in common.
#pragma once

#include <string>

#include "platform/dao/jet/bytes.h"
#include "platform/dao/jet/format.h"

namespace jet {

constexpr int kGeneralOrder = 0x0409;  // the sort order "General"

struct Header {
    int codePage = 1252;
    int sortOrder = kGeneralOrder;  // of new text columns
    int sortVersion = 0;
    uint32_t encodingKey = 0;  // 0: the pages are as they are
    std::string password;      // "" for none
    double created = 0;        // a date; 0 in Access 97
};

// Applies or takes off the mask that lies on the bytes from 0x18 on.
void maskHeader(const Format& format, ByteSpan page);

Header readHeader(const Format& format, ByteView page);
// The header page of a new database without a password.
Bytes makeHeader(const Format& format, const Header& header);

}  // namespace jet
