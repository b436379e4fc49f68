// What may stand at a place of a condition or an expression that is being typed.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/dao.h"

namespace norvane {

enum class OffersFor { kCondition, kExpression };

struct Offers {
    // The part of the text, in bytes, whose place a choice takes: what of the word is typed already.
    size_t begin = 0;
    size_t length = 0;
    // As they are written: fields in brackets where they need them, then words (AND, LIKE) and functions
    // ("UPPER("). Only those that go on as the typed part begins.
    std::vector<std::string> texts;
    // The field whose values may stand here, a position in fields: the caller fetches some that begin with
    // typedValue and writes them with LiteralOf.
    std::optional<size_t> valuesOf;
    std::string typedValue;  // without quotes
};

// caret: in bytes; what stands behind it is not looked at.
Offers OffersAt(std::string_view text, size_t caret, const std::vector<CDaoFieldInfo>& fields,
                OffersFor what);

// A field as conditions name it: in brackets unless it is a plain word.
std::string FieldInCondition(const std::string& name);
// A value as conditions write it, so that the field = the literal finds it again: 'oak', 12.5, #2004-05-31#,
// YES.
// "" for a value that cannot be compared.
std::string LiteralOf(const dao::Variant& value);

}  // namespace norvane
