// Text as driver managers take it: UTF-16 in units of their own type.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>
#include <string_view>
#include <vector>

namespace dao::odbc {

// UTF-8 as UTF-16, without a zero behind it. Malformed bytes become U+FFFD.
std::vector<SQLWCHAR> toWide(std::string_view text);
// UTF-16 as UTF-8. Half of a pair becomes U+FFFD.
std::string fromWide(const SQLWCHAR* text, size_t units);

}  // namespace dao::odbc
