// dBASE III tables (.dbf), the attributes of a shape file: one row for each shape, in the same order.
//
// Texts and names of fields are UTF-8 here and code page 1252 in the file, or UTF-8 where a file of the same
// name with the extension .cpg says so. One record is in memory at a time. A failure is a null, a -1 or a 0,
// and nothing is printed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/random_file.h"

namespace norvane {

enum DbfFieldClass { kDbfString = 0, kDbfInteger = 1, kDbfDouble = 2, kDbfDate = 3, kDbfInvalid = 4 };

struct DbfHandle {
    std::unique_ptr<files::RandomFile> file;
    int codePage = 1252;
    int32_t recordCount = 0;
    int32_t recordLength = 1;   // bytes, with the deletion byte in front
    int32_t headerLength = 33;  // offset of the first record
    int32_t fieldCount = 0;
    std::vector<int32_t> fieldOffsets;  // within a record
    std::vector<int32_t> fieldSizes;
    std::vector<int32_t> fieldDecimals;
    std::vector<char> fieldTypes;
    std::string header;  // the descriptors of 32 bytes, in order
    int32_t currentRecord = -1;
    int32_t recordDirty = 0;
    std::string recordBuffer;
    int32_t noHeader = 0;       // the table is still being defined
    int32_t updated = 0;        // a record was changed
    std::string attributeText;  // what was read last
    double attributeNumber = 0;
};

// Modes "r", "r+", "rb", "rb+" and "r+b"; null for any other, and for what is no table. Of a table that is
// cut short the whole records count.
DbfHandle* DbfOpen(std::string_view path, std::string_view mode);
// A new table in place of one that is there. A .cpg that asks for UTF-8 is obeyed, one of another page goes.
// Fields are added before the first record is written.
DbfHandle* DbfCreate(std::string_view path);
int32_t DbfGetFieldCount(const DbfHandle* handle);
int32_t DbfGetRecordCount(const DbfHandle* handle);
// The index of the new field; -1 once there are records, and for a width or decimals that a table cannot
// hold. A name is cut to 10 bytes. Strings are texts; every other class is a number, and only kDbfDouble has
// decimals.
int32_t DbfAddField(DbfHandle* handle, std::string_view name, DbfFieldClass type, int32_t width,
                    int32_t decimals);
// A record as it is stored, its mark of deletion in front; valid until the next read of the table, or its
// close. Empty for a record that is not there.
std::string_view DbfReadRecord(DbfHandle* handle, int32_t record);
// Every out argument may be null.
DbfFieldClass DbfGetFieldInfo(const DbfHandle* handle, int32_t index, std::string* name, int32_t* width,
                              int32_t* decimals);
// The text of a field without blanks round it; valid until the next read of the table, or its close. Null for
// a record or a field that is not there.
const char* DbfReadStringAttribute(DbfHandle* handle, int32_t record, int32_t field);
// The same as a number, 0 for a text that is none.
const double* DbfReadDoubleAttribute(DbfHandle* handle, int32_t record, int32_t field);
// Write a field of a record, or of a new one when `record` is the number of records: 1, or 0 when there can
// be no such record or field. A text that is too long is cut; a number too wide loses its last digits.
int32_t DbfWriteDoubleAttribute(DbfHandle* handle, int32_t record, int32_t field, double value);
int32_t DbfWriteIntegerAttribute(DbfHandle* handle, int32_t record, int32_t field, int32_t value);
int32_t DbfWriteStringAttribute(DbfHandle* handle, int32_t record, int32_t field, std::string_view text);
// Writes what is not yet in the file, and closes. False when not all of it got there. Null is allowed.
bool DbfClose(DbfHandle* handle);

struct DbfCloser {
    void operator()(DbfHandle* handle) const { DbfClose(handle); }
};
using OpenDbfFile = std::unique_ptr<DbfHandle, DbfCloser>;

}  // namespace norvane
