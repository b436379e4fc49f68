// The tree of a condition. NOT is not among its nodes: it is in its leaves, where each engine can answer it
// and where alone what is unknown makes a difference.
#pragma once

#include <vector>

#include "module/conditions/compared_value.h"
#include "module/conditions/text_pattern.h"

namespace norvane {

enum class Comparison { kEqual, kUnequal, kLess, kAtMost, kMore, kAtLeast };

// A < B is B > A.
Comparison Turned(Comparison comparison);
// What is true when the other is false.
Comparison Opposite(Comparison comparison);
// "=", "<>", ...
const char* SignOf(Comparison comparison);
// Whether it holds for two values of which the first is less (-1), equal (0) or more (1).
bool HoldsFor(Comparison comparison, int order);

struct ConditionNode {
    enum class Kind {
        kAll,      // of parts
        kAny,      // of parts
        kCompare,  // field, comparison, values[0]
        kFields,   // field, comparison, other, both of a kind
        kIsOneOf,  // field, values: numbers or texts, ascending
        kIsLike,   // field, pattern
        kIsNull,   // field
    };
    Kind kind = Kind::kAll;
    bool isNegated = false;  // of the last three
    std::vector<ConditionNode> parts{};
    size_t field = 0;  // positions among the fields of the table
    size_t other = 0;
    ValueKind valueKind = ValueKind::kNumber;
    Comparison comparison = Comparison::kEqual;
    std::vector<ComparedValue> values{};
    TextPattern pattern{};
};

// NOT of a condition. Of a record of which a comparison cannot be known, neither that nor its NOT is true.
ConditionNode Negated(ConditionNode node);

// values: of the fields of the table.
bool Holds(const ConditionNode& node, const std::vector<dao::Variant>& values);

// The positions of the fields that a condition looks at, with repetitions.
void AppendFields(const ConditionNode& node, std::vector<size_t>& fields);
// Each once, ascending.
void SortFields(std::vector<size_t>& fields);

}  // namespace norvane
