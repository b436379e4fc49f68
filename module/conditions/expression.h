// What a label says: an expression over the fields of a table, PT_ID & " " & ROUND(DBH, 1) & IIF(DEAD = YES,
// " dead", "").
//
// It is read by the same parser as conditions, and gives a text. An empty field (Null) is an empty text.
// docs/conditions.md tells the language.
#pragma once

#include "module/conditions/condition.h"

namespace norvane {

struct ExpressionNode;

class Expression {
  public:
    // As Condition::read.
    static std::optional<Expression> read(std::string_view text, const std::vector<CDaoFieldInfo>& fields,
                                          ConditionFault& fault);

    // As it was read.
    const std::string& text() const { return text_; }
    // The fields that it looks at: positions among those of the table, each once, ascending.
    const std::vector<size_t>& usedFields() const { return usedFields_; }
    // What it says of a record. values: as for Condition::holds.
    std::string textOf(const std::vector<dao::Variant>& values) const;

  private:
    std::string text_;
    std::vector<size_t> usedFields_;
    std::shared_ptr<const ExpressionNode> root_;
};

}  // namespace norvane
