// The attributes that a feature gets from the fields of a table: a model without a dialog.
#pragma once

#include <string>
#include <vector>

#include "module/features/feature_row.h"
#include "module/prompting/object_data.h"
#include "platform/dao/dao.h"

namespace norvane {

struct TableColumn {
    std::string name;  // in upper case
    int type = dbText;
};

// A table that a feature may be made from.
struct SourceTable {
    std::string name;                  // in upper case, without its owner on a server
    std::vector<TableColumn> columns;  // all of them, in the order of the table

    bool hasColumn(const std::string& upperName) const;
};

// The tables of a database that have a field of text or number beside their keys, and whose keys are text
// where they have them. Exceptions pass through.
std::vector<SourceTable> ReadSourceTables(CDaoDatabase& database);

SourceTable SourceTableOf(const ObjectDataTable& table);

// Adds PT_ID and GIS_KEY to a table where it lacks them, without values; both or none. Exceptions pass
// through.
void AddKeyColumns(CDaoDatabase& database, const std::string& table);

// The attributes of a table's fields: those that the point gives first, in an order of their own, then the
// others as they stand in the table. Keys, pictures, labels, fields of other types and names that an
// attribute cannot have are left out.
std::vector<FeatureFileRow> AttributesOfTable(const std::vector<TableColumn>& columns);

}  // namespace norvane
