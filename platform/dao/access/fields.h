// Columns of an Access table as fields of the database interface, and back.
#pragma once

#include "platform/dao/dao.h"
#include "platform/dao/jet/database.h"

namespace dao::access {

CDaoFieldInfo fieldOf(const jet::Column& column);
jet::Column columnOf(const CDaoFieldInfo& field);

}  // namespace dao::access
