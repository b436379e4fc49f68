// The sentences that more than one engine says.
#pragma once

#include <cstddef>
#include <string>

namespace dao {

// Each throws a CDaoException.
[[noreturn]] void noSuchTable(const std::string& name);
[[noreturn]] void tableExists(const std::string& name);
[[noreturn]] void noSuchField(const std::string& name);
[[noreturn]] void noCurrentRecord();
[[noreturn]] void recordDeleted();
// Throws unless a statement with so many parameters was given as many values.
void requireParameters(size_t parameters, size_t values);

}  // namespace dao
