// Reads expressions out of the pieces of a text.
#pragma once

#include <array>

#include "module/conditions/condition_parser.h"
#include "module/conditions/expression_node.h"

namespace norvane {

constexpr std::array<std::string_view, 5> kExpressionFunctions = {"UPPER", "LOWER", "ROUND", "FORMAT", "IIF"};

class ExpressionParser {
  public:
    // Both must outlive the parser.
    ExpressionParser(ConditionTokens& tokens, const std::vector<CDaoFieldInfo>& fields)
        : tokens_(tokens), fields_(fields), conditions_(tokens, fields) {}

    // The expression that begins here, up to what cannot belong to it. Throws a FaultFound.
    ExpressionNode sum();

    // What could follow where the text ended.
    const ConditionParser& conditions() const { return conditions_; }
    bool wantedTerm() const { return wantedTerm_; }

  private:
    ExpressionNode term();
    ExpressionNode function();
    ExpressionNode choice();
    void readDecimals(ExpressionNode& node);
    void readFormat(ExpressionNode& node);
    void requireNumberOr(const ExpressionNode& node, bool dates, const ConditionToken& at, const char* what);
    void requireSign(const char* sign);

    ConditionTokens& tokens_;
    const std::vector<CDaoFieldInfo>& fields_;
    ConditionParser conditions_;
    bool wantedTerm_ = false;
};

}  // namespace norvane
