// Small Access databases to begin with, made by our own code when a fuzz target starts, and changes that hit
// what matters in them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace jet_fuzz {

// Adds a folder with seeds to the arguments of the fuzzer. Each seed begins with `lead` bytes of zeros before
// the database.
void addSeeds(int* count, char*** arguments, size_t lead);

// Changes some bytes of a database in place: a few of one page, a number that may be that of a page, a whole
// page that becomes another one, the end of the file cut off. Gives the new size.
size_t mutate(uint8_t* data, size_t size, unsigned seed);

// Runs work; an error with a text is an answer. False: there was one.
bool attempt(const std::function<void()>& work);

}  // namespace jet_fuzz
