// The sentences that more than one engine says.
#pragma once

#include <string>

namespace dao {

// Each throws a CDaoException.
[[noreturn]] void noSuchTable(const std::string& name);
[[noreturn]] void tableExists(const std::string& name);
[[noreturn]] void noSuchField(const std::string& name);
[[noreturn]] void noCurrentRecord();
[[noreturn]] void recordDeleted();

}  // namespace dao
