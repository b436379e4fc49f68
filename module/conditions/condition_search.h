// Conditions as each engine has to have them.
#pragma once

#include "module/conditions/condition.h"
#include "module/conditions/condition_node.h"

namespace norvane {

// fields: those of the table. Nothing but their names and signs of ours stands in the statement; all values
// are parameters.
ConditionSearch SearchFor(const ConditionNode& node, const std::vector<CDaoFieldInfo>& fields,
                          dao::EngineKind engine);

}  // namespace norvane
