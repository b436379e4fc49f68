// A feature of the template that follows the fields of a table.
#pragma once

#include <string>
#include <vector>

#include "module/store/field_kind.h"
#include "platform/dao/dao.h"

namespace norvane {

struct TableField {
    std::string name;
    FieldKind kind = FieldKind::kChar;
};

// The fields of a table that may be attributes: numbers, texts and memos, but not its keys, pictures and
// labels.
std::vector<TableField> ReadAttributeFields(CDaoDatabase& output, const std::string& table);

// Makes sure that a template has a feature of a table's name with these fields as its attributes. Those that
// it has are given the kind of the field and stay required; others are added. A new feature goes into the
// category MISC. Exceptions pass through.
void SyncFeature(CDaoDatabase& database, const std::string& table, const std::vector<TableField>& fields);

}  // namespace norvane
