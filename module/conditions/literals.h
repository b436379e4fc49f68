// Values as they are written in a condition, in the terms of the fields that they are compared with.
#pragma once

#include "module/conditions/compared_value.h"
#include "module/conditions/condition_tokens.h"

namespace norvane {

// A value as it stands there.
struct Literal {
    enum class Kind { kNumber, kText, kDate, kYesNo };
    Kind kind = Kind::kText;
    std::string text;   // of a text its content, else as it is written
    double number = 0;  // of a number; of Yes -1
    ConditionToken token;
};

// Takes the literal that comes next, if one does. Throws a FaultFound for one that is none.
std::optional<Literal> TakeLiteral(ConditionTokens& tokens);

// Whether a word stands for Yes or No, and for which.
std::optional<bool> YesNoWord(const ConditionToken& token);

// The value that a field is compared with. ordered: by less or more. Throws a FaultFound that says what the
// field holds for a literal that cannot be compared with it.
ComparedValue ValueFor(const ConditionTokens& tokens, const CDaoFieldInfo& field, const Literal& literal,
                       bool ordered);

}  // namespace norvane
