// A copy of an output database before many of its records are changed.
#pragma once

#include <cstddef>
#include <string>

namespace norvane {

// A run that changes more records than this keeps a copy first.
constexpr size_t kMostChangedWithoutCopy = 100;

// Puts a copy beside the database, "output before 2026-11-25 20-41-07.mdb", and removes all but the last
// three of them. The path of the copy; "" for a database on a server, which is copied there, and where the
// copy could not be made. Nobody may be writing into the database meanwhile.
std::string KeepOutputCopy(const std::string& path);

}  // namespace norvane
