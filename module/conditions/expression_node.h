// The tree of an expression.
#pragma once

#include "module/conditions/condition_node.h"
#include "module/conditions/value_format.h"

namespace norvane {

struct ExpressionNode {
    enum class Kind {
        kLiteral,  // literal
        kField,    // field
        kSum,      // of parts, from left to right
        kUpper,    // of parts[0], as all that follow
        kLower,
        kRound,   // to decimals
        kFormat,  // by format
        kChoice,  // parts[0] where the condition is true, else parts[1]
    };
    Kind kind = Kind::kLiteral;
    std::vector<ExpressionNode> parts{};
    std::vector<bool>
        adds{};  // of a sum: whether a part but the first is added (+) where numbers meet, or joined (&)
    dao::Variant literal{};
    size_t field = 0;
    int decimals = 0;
    ValueFormat format{};
    ConditionNode condition{};
};

// Its value of a record: a number, a text, a date, Yes or No, or Null.
dao::Variant ValueOf(const ExpressionNode& node, const std::vector<dao::Variant>& values);
// A value as labels write it.
std::string LabelText(const dao::Variant& value);

void AppendFields(const ExpressionNode& node, std::vector<size_t>& fields);

}  // namespace norvane
