// The thirteen attributes whose value is computed from the point: known by their name or by their special
// code.
#pragma once

#include <array>
#include <string>
#include <string_view>

struct KnownAttribute {
    const char* abbreviation;
    const char* fullName;
    const char* code;
    const char* word;  // as the list of special codes shows it
};

const std::array<KnownAttribute, 13>& KnownAttributes();
// Null when it is none of them. Case does not count.
const KnownAttribute* FindKnownAttribute(std::string_view abbreviation);
const KnownAttribute* FindKnownCode(std::string_view code);
