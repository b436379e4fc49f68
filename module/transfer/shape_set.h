// A set of shape files (.shp, .shx, .dbf) as an import sees it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "platform/plane/box.h"

namespace norvane {

// "POINT", "POINTZ", "ARC", "ARCZ", "POLYGON", "POLYGONZ"; "UNKNOWN" for all others.
const char* ShapeTypeName(int32_t type);
// Whether shapes of a type can be imported.
bool IsImported(int32_t type);

// The fields of a table that mean something: which is which, -1 for none.
struct KeyFields {
    int id = -1;       // PT_ID, text or whole numbers: the last of several
    int feature = -1;  // GIS_KEY, text
};
KeyFields FindKeyFields(const DbfHandle& table);

// The other fields, each with the name of the column that it goes to. Repeated names are passed over; a PT_ID
// or GIS_KEY of a kind that is no key goes to a column PT_ID1 or GIS_KEY1.
struct ImportedField {
    int index;
    std::string column;
};
std::vector<ImportedField> ImportedFields(const DbfHandle& table);

// The text of a cell; "" for a number that is all asterisks and a logical "?", which stand for no value.
std::string CellText(DbfHandle& table, int32_t record, int32_t field);

struct ShapeSet {
    std::string path;  // of the .shp as it stands on disk
    int32_t shapeType = 0;
    int32_t recordCount = 0;
    std::vector<std::string> fields;  // the names of all fields in their order
    // Some PT_ID is not all digits: points need a file of names.
    bool alphanumeric = false;
    // The first GIS_KEY that is not empty, in capitals, where it can name a table; "" otherwise.
    std::string feature;
    plane::Box extents;     // in the plan; empty without any shape
    std::string reference;  // the name of the coordinate reference system in the .prj; "" without one
};
// Reads what a path names, whatever the case of the letters of the three endings. Nothing when a file is
// missing or damaged, or the number of records differs from that of rows.
std::optional<ShapeSet> ReadShapeSet(const std::string& path);

// The name of the coordinate reference system in the .prj of a set; "" where there is none.
std::string ReferenceOf(const std::string& path);

// Whether the index alone is missing of the three files.
bool LacksOnlyIndex(const std::string& path);

// The file of a set with another ending ("dbf"), as it stands on disk.
std::string SetMember(const std::string& path, const char* ending);

}  // namespace norvane
