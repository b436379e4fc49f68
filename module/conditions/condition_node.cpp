#include "module/conditions/condition_node.h"

#include <algorithm>

#include "platform/text/text.h"

namespace norvane {
namespace {

template <typename Value>
int orderOf(const Value& a, const Value& b) {
    return a < b ? -1 : b < a ? 1 : 0;
}

int orderOf(const std::string& a, const std::string& b) {
    return orderOf(a.compare(b), 0);
}

// Where a second is: in front of the moments that a date stands for, in them, behind them.
int orderOf(int64_t second, const Moments& moments) {
    return second < moments.begin ? -1 : second < moments.end ? 0 : 1;
}

// The order of a record's value and one of the condition; nothing where it cannot be known.
struct Order {
    const dao::Variant& value;

    std::optional<int> operator()(double wanted) const {
        const std::optional<double> number = ComparedNumber(value);
        return number ? std::optional(orderOf(*number, wanted)) : std::nullopt;
    }
    std::optional<int> operator()(const FoldedText& wanted) const {
        const std::string* text = ComparedText(value);
        return text ? std::optional(orderOf(text::upper(*text), wanted.upper)) : std::nullopt;
    }
    std::optional<int> operator()(const Moments& wanted) const {
        const std::optional<int64_t> second = ComparedSecond(value);
        return second ? std::optional(orderOf(*second, wanted)) : std::nullopt;
    }
    std::optional<int> operator()(bool wanted) const {
        const std::optional<bool> yes = ComparedYesNo(value);
        return yes ? std::optional(orderOf(*yes, wanted)) : std::nullopt;
    }
};

// The order of two values of a record.
std::optional<int> orderOf(const dao::Variant& a, const dao::Variant& b, ValueKind kind) {
    if (kind == ValueKind::kText) {
        const std::string *left = ComparedText(a), *right = ComparedText(b);
        return left && right ? std::optional(orderOf(text::upper(*left), text::upper(*right))) : std::nullopt;
    }
    if (kind == ValueKind::kDate) {
        const std::optional<int64_t> left = ComparedSecond(a), right = ComparedSecond(b);
        return left && right ? std::optional(orderOf(*left, *right)) : std::nullopt;
    }
    const std::optional<double> left = ComparedNumber(a), right = ComparedNumber(b);
    return left && right ? std::optional(orderOf(*left, *right)) : std::nullopt;
}

// wanted: numbers or texts, ascending.
std::optional<bool> isOneOf(const dao::Variant& value, const std::vector<ComparedValue>& wanted) {
    ComparedValue folded;
    if (std::holds_alternative<double>(wanted.front())) {
        const std::optional<double> number = ComparedNumber(value);
        if (!number) return std::nullopt;
        folded = *number;
    } else {
        const std::string* text = ComparedText(value);
        if (!text) return std::nullopt;
        folded = FoldedText{text::upper(*text)};
    }
    return std::binary_search(wanted.begin(), wanted.end(), folded);
}

// What a leaf says of a record, without its NOT; nothing where that is unknown.
std::optional<bool> answerOf(const ConditionNode& leaf, const std::vector<dao::Variant>& values) {
    const dao::Variant& value = values[leaf.field];
    switch (leaf.kind) {
        case ConditionNode::Kind::kCompare:
        case ConditionNode::Kind::kFields: {
            const std::optional<int> order = leaf.kind == ConditionNode::Kind::kFields
                                                 ? orderOf(value, values[leaf.other], leaf.valueKind)
                                                 : std::visit(Order{value}, leaf.values.front());
            return order ? std::optional(HoldsFor(leaf.comparison, *order)) : std::nullopt;
        }
        case ConditionNode::Kind::kIsOneOf:
            return isOneOf(value, leaf.values);
        case ConditionNode::Kind::kIsLike: {
            const std::string* text = ComparedText(value);
            return text ? std::optional(leaf.pattern.matches(*text)) : std::nullopt;
        }
        default:
            return value.isNull();
    }
}

}  // namespace

Comparison Turned(Comparison comparison) {
    switch (comparison) {
        case Comparison::kLess:
            return Comparison::kMore;
        case Comparison::kMore:
            return Comparison::kLess;
        case Comparison::kAtMost:
            return Comparison::kAtLeast;
        case Comparison::kAtLeast:
            return Comparison::kAtMost;
        default:
            return comparison;
    }
}

Comparison Opposite(Comparison comparison) {
    switch (comparison) {
        case Comparison::kEqual:
            return Comparison::kUnequal;
        case Comparison::kUnequal:
            return Comparison::kEqual;
        case Comparison::kLess:
            return Comparison::kAtLeast;
        case Comparison::kAtLeast:
            return Comparison::kLess;
        case Comparison::kMore:
            return Comparison::kAtMost;
        default:
            return Comparison::kMore;
    }
}

const char* SignOf(Comparison comparison) {
    switch (comparison) {
        case Comparison::kEqual:
            return "=";
        case Comparison::kUnequal:
            return "<>";
        case Comparison::kLess:
            return "<";
        case Comparison::kAtMost:
            return "<=";
        case Comparison::kMore:
            return ">";
        default:
            return ">=";
    }
}

bool HoldsFor(Comparison comparison, int order) {
    switch (comparison) {
        case Comparison::kEqual:
            return order == 0;
        case Comparison::kUnequal:
            return order != 0;
        case Comparison::kLess:
            return order < 0;
        case Comparison::kAtMost:
            return order <= 0;
        case Comparison::kMore:
            return order > 0;
        default:
            return order >= 0;
    }
}

ConditionNode Negated(ConditionNode node) {
    switch (node.kind) {
        case ConditionNode::Kind::kAll:
        case ConditionNode::Kind::kAny:
            node.kind = node.kind == ConditionNode::Kind::kAll ? ConditionNode::Kind::kAny
                                                               : ConditionNode::Kind::kAll;
            for (ConditionNode& part : node.parts) part = Negated(std::move(part));
            break;
        case ConditionNode::Kind::kCompare:
        case ConditionNode::Kind::kFields:
            node.comparison = Opposite(node.comparison);
            break;
        default:
            node.isNegated = !node.isNegated;
    }
    return node;
}

bool Holds(const ConditionNode& node, const std::vector<dao::Variant>& values) {
    auto holds = [&](const ConditionNode& part) { return Holds(part, values); };
    if (node.kind == ConditionNode::Kind::kAll)
        return std::all_of(node.parts.begin(), node.parts.end(), holds);
    if (node.kind == ConditionNode::Kind::kAny)
        return std::any_of(node.parts.begin(), node.parts.end(), holds);
    const std::optional<bool> answer = answerOf(node, values);
    return answer && *answer != node.isNegated;
}

void AppendFields(const ConditionNode& node, std::vector<size_t>& fields) {
    for (const ConditionNode& part : node.parts) AppendFields(part, fields);
    if (node.kind == ConditionNode::Kind::kAll || node.kind == ConditionNode::Kind::kAny) return;
    fields.push_back(node.field);
    if (node.kind == ConditionNode::Kind::kFields) fields.push_back(node.other);
}

void SortFields(std::vector<size_t>& fields) {
    std::sort(fields.begin(), fields.end());
    fields.erase(std::unique(fields.begin(), fields.end()), fields.end());
}

}  // namespace norvane
