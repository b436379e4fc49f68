// Reads conditions out of the pieces of a text.
#pragma once

#include "module/conditions/condition_node.h"
#include "module/conditions/condition_tokens.h"
#include "module/conditions/literals.h"

namespace norvane {

class ConditionParser {
  public:
    // Both must outlive the parser.
    ConditionParser(ConditionTokens& tokens, const std::vector<CDaoFieldInfo>& fields)
        : tokens_(tokens), fields_(fields) {}

    // The condition that begins here, up to what cannot belong to it. Throws a FaultFound.
    ConditionNode condition();

    // The field whose name comes next; nothing where a literal or a function does. Throws a FaultFound for a
    // name that is none of a field.
    std::optional<size_t> takeField();

    // What could follow where the text ended: a field, a value of a field.
    bool wantedField() const { return wantedField_; }
    std::optional<size_t> wantedValueOf() const { return wantedValueOf_; }
    // The field whose comparison would have followed.
    std::optional<size_t> testedField() const { return testedField_; }

  private:
    struct Operand {
        std::optional<size_t> field;
        std::optional<Literal> literal;
        ConditionToken token;
    };

    ConditionNode conjunction();
    ConditionNode negation();
    ConditionNode test();
    Operand operand(std::optional<size_t> comparedWith);
    void requireQuotes(const ConditionToken& token) const;
    Literal literalFor(size_t field);
    std::optional<Comparison> takeComparison();
    ConditionNode comparison(const Operand& left, Comparison comparison, const Operand& right);
    ConditionNode fieldTest(size_t field, const ConditionToken& at);
    ConditionNode isNull(size_t field);
    ConditionNode isOneOf(size_t field);
    ConditionNode isBetween(size_t field);
    ConditionNode isLike(size_t field);
    ConditionNode compared(size_t field, Comparison comparison, const Literal& literal);
    const CDaoFieldInfo& info(size_t field) const { return fields_[field]; }

    ConditionTokens& tokens_;
    const std::vector<CDaoFieldInfo>& fields_;
    size_t values_ = 0;
    bool wantedField_ = false;
    std::optional<size_t> wantedValueOf_;
    std::optional<size_t> testedField_;
};

}  // namespace norvane
