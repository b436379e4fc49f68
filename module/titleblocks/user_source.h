// The two data sources of this user through which other programs read the table or workbook in hand.
#pragma once

#include <string>

namespace norvane {

// Points the source of a file's kind at the file: zgeo_connect_dbf at the folder of a .dbf, zgeo_connect_xls
// at an .xls. Nothing is written for other kinds, nor where the driver manager has no driver of the right
// name. Our own reading needs neither.
void PrepareUserSource(const std::string& path);

}  // namespace norvane
