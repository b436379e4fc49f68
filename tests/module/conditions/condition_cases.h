// Conditions on the trees of tree_records.h, each with what it means, said by the test itself.
#pragma once

#include <vector>

#include "tests/module/conditions/tree_records.h"

struct ConditionCase {
    const char* condition;
    bool (*holds)(const Tree& tree);
};

const std::vector<ConditionCase>& conditionCases();
