// The values of dBASE tables as an import writes them into a table of texts.
#pragma once

#include <string>

#include "module/exchange/dbf_file.h"

namespace norvane {

// Numbers lose zeros that say nothing, dates get their slashes; other texts stay. "" where there is no value.
std::string TableText(DbfFieldClass type, const std::string& value);

// A number without its leading zeros and, behind a point, its trailing ones; the last digit stays.
std::string WithoutSpareZeros(const std::string& number);

// The digits of a date, eight or six, with slashes, as year, month and day or as month, day and year. What is
// no date stays as it stands; "" for one of zeros.
std::string DateText(const std::string& digits);

}  // namespace norvane
