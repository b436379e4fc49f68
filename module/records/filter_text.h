// What a person types to narrow records down: words, or a condition on the fields.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "module/conditions/condition.h"

namespace norvane {

struct FilterText {
    std::string words;                           // where it is no condition
    std::shared_ptr<const Condition> condition;  // null where it is none, or a wrong one
    std::optional<ConditionFault> fault;         // of a wrong one
};

// A text that compares something, by a sign or behind a field's name by a word, is meant as a condition.
FilterText ReadFilterText(const std::string& text, const std::vector<CDaoFieldInfo>& fields);

// The sentence of a fault, with what stands at its place.
std::string FaultSentence(const std::string& text, const ConditionFault& fault);

// The first values that the records of a table have in a field, of those whose shown text begins with a text.
using FieldValues = std::function<std::vector<dao::Variant>(size_t field, const std::string& beginning)>;

// What a text that is being typed may go on with, each as the whole text: fields, what compares, values of
// the field in question.
std::vector<std::string> FilterOffers(const std::string& text, const std::vector<CDaoFieldInfo>& fields,
                                      const FieldValues& valuesOf);

}  // namespace norvane
