// Names of tables and fields, and the size and attributes that a type brings with it.
#pragma once

#include "platform/dao/dao.h"

namespace dao {

// Throws for a name that is empty, longer than 64 characters, begins with a blank, or holds a control
// character or one of . ! [ ] `
void checkName(const std::string& name, const char* what);

// The field as a table will hold it: name checked, size and attributes completed. Throws for an unknown type.
CDaoFieldInfo completed(CDaoFieldInfo field);

// Position of a field by name, without regard to case; -1.
int findField(const std::vector<CDaoFieldInfo>& fields, const std::string& name);

// The positions of the fields that the columns of a plain SELECT name ("*" alone: all of them), in the order
// of the columns. Throws for a column that is none of them.
std::vector<size_t> selectedFields(const std::vector<CDaoFieldInfo>& fields,
                                   const std::vector<std::string>& columns);

}  // namespace dao
