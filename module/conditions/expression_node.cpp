#include "module/conditions/expression_node.h"

#include <cmath>

#include "platform/text/text.h"

namespace norvane {
namespace {

// A number as a person reads it: one of a Single field has no more digits than it shows.
std::optional<double> readNumber(const dao::Variant& value) {
    if (value.is<bool>()) return std::nullopt;
    if (value.is<float>()) return text::wholeReal(dao::exactText(value.get<float>()));
    return ComparedNumber(value);
}

dao::Variant sumOf(const ExpressionNode& node, const std::vector<dao::Variant>& values) {
    dao::Variant sum = ValueOf(node.parts.front(), values);
    std::string joined;
    bool isText = false;
    for (size_t i = 1; i < node.parts.size(); ++i) {
        const dao::Variant next = ValueOf(node.parts[i], values);
        const std::optional<double> left = isText ? std::nullopt : readNumber(sum), right = readNumber(next);
        if (node.adds[i - 1] && left && right) {
            sum = dao::Variant(*left + *right);
            continue;
        }
        if (!isText) joined = LabelText(sum);
        isText = true;
        joined += LabelText(next);
    }
    return isText ? dao::Variant(std::move(joined)) : sum;
}

// A text that is a number is rounded as one; other values stay.
dao::Variant rounded(dao::Variant value, int decimals) {
    const std::string* text = ComparedText(value);
    const std::optional<double> number = text ? text::wholeReal(text::trim(*text)) : readNumber(value);
    if (!number) return value;
    return dao::Variant(text::toReal(RoundedText(*number, decimals)));
}

dao::Variant formatted(dao::Variant value, const ValueFormat& format) {
    if (value.is<dao::Date>()) return dao::Variant(format.dateText(value.get<dao::Date>()));
    const std::optional<double> number = readNumber(value);
    if (!number) return value;
    return dao::Variant(format.numberText(*number));
}

}  // namespace

std::string LabelText(const dao::Variant& value) {
    if (value.is<bool>()) return value.get<bool>() ? "Yes" : "No";
    if (value.is<double>() && !std::isfinite(value.get<double>())) return "";
    return dao::toText(value);
}

dao::Variant ValueOf(const ExpressionNode& node, const std::vector<dao::Variant>& values) {
    switch (node.kind) {
        case ExpressionNode::Kind::kLiteral:
            return node.literal;
        case ExpressionNode::Kind::kField:
            return values[node.field];
        case ExpressionNode::Kind::kSum:
            return sumOf(node, values);
        case ExpressionNode::Kind::kUpper:
            return dao::Variant(text::upper(LabelText(ValueOf(node.parts[0], values))));
        case ExpressionNode::Kind::kLower:
            return dao::Variant(text::lower(LabelText(ValueOf(node.parts[0], values))));
        case ExpressionNode::Kind::kRound:
            return rounded(ValueOf(node.parts[0], values), node.decimals);
        case ExpressionNode::Kind::kFormat:
            return formatted(ValueOf(node.parts[0], values), node.format);
        default:
            return ValueOf(node.parts[Holds(node.condition, values) ? 0 : 1], values);
    }
}

void AppendFields(const ExpressionNode& node, std::vector<size_t>& fields) {
    if (node.kind == ExpressionNode::Kind::kField) fields.push_back(node.field);
    if (node.kind == ExpressionNode::Kind::kChoice) AppendFields(node.condition, fields);
    for (const ExpressionNode& part : node.parts) AppendFields(part, fields);
}

}  // namespace norvane
