// Databases as sources of records: Access, SQLite and GeoPackage files, and servers.
#pragma once

#include "module/titleblocks/record_source.h"
#include "platform/dao/variant.h"

namespace norvane {

std::unique_ptr<RecordSource> OpenDatabaseSource(const dao::DatabasePath& path);

// A value as it goes into attributes and keys: whole numbers in digits, other numbers with six decimals,
// money without zeros at its end, dates as 2004-05-31 with a time behind a blank, yes as -1 and no as 0; ""
// for Null and for binary data.
std::string AttributeTextOf(const dao::Variant& value);

}  // namespace norvane
