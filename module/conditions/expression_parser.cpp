#include "module/conditions/expression_parser.h"

#include <algorithm>
#include <cmath>

#include "platform/text/text.h"

namespace norvane {
namespace {

constexpr int kMostDecimals = 15;

dao::Variant variantOf(const Literal& literal) {
    switch (literal.kind) {
        case Literal::Kind::kNumber:
            return dao::Variant(literal.number);
        case Literal::Kind::kYesNo:
            return dao::Variant(literal.number != 0);
        case Literal::Kind::kDate: {
            dao::Date date;
            dao::dateFromText(literal.text, date);
            return dao::Variant(date);
        }
        default:
            return dao::Variant(literal.text);
    }
}

}  // namespace

ExpressionNode ExpressionParser::sum() {
    ExpressionNode node{ExpressionNode::Kind::kSum};
    node.parts.push_back(term());
    for (;;) {
        const bool adds = tokens_.takeSign("+");
        if (!adds && !tokens_.takeSign("&")) break;
        node.adds.push_back(adds);
        node.parts.push_back(term());
    }
    if (node.parts.size() == 1) return std::move(node.parts.front());
    return node;
}

ExpressionNode ExpressionParser::term() {
    const ConditionToken at = tokens_.peek();
    if (at.isEnd) {
        wantedTerm_ = true;
        tokens_.fail(at, "A field, a text or a function is missing.");
    }
    if (at.kind == ConditionToken::kWord && tokens_.peek(1).isSymbol("(")) return function();
    if (tokens_.takeSign("(")) {
        const ConditionTokens::Nesting nesting(tokens_, at);
        ExpressionNode inner = sum();
        requireSign(")");
        return inner;
    }
    ExpressionNode node;
    if (const std::optional<size_t> field = conditions_.takeField()) {
        if (ValueKindOf(fields_[*field].type) == ValueKind::kData)
            tokens_.fail(at, "The field " + fields_[*field].name + " holds data, which cannot be written.");
        node.kind = ExpressionNode::Kind::kField;
        node.field = *field;
        return node;
    }
    const std::optional<Literal> literal = TakeLiteral(tokens_);
    if (!literal)
        tokens_.fail(at, "A field, a text or a function is expected in front of " + at.shown() + ".");
    node.literal = variantOf(*literal);
    return node;
}

void ExpressionParser::requireSign(const char* sign) {
    if (tokens_.takeSign(sign)) return;
    const std::string wanted = *sign == ','   ? "A comma"
                               : *sign == '(' ? "A parenthesis"
                                              : "A closing parenthesis";
    if (tokens_.peek().isSymbol("-"))
        tokens_.fail(tokens_.peek(), "Labels add (+) and join (&); they do not subtract.");
    tokens_.fail(tokens_.peek(),
                 wanted + (tokens_.atEnd() ? " is missing."
                                           : " is expected in front of " + tokens_.peek().shown() + "."));
}

ExpressionNode ExpressionParser::function() {
    using Kind = ExpressionNode::Kind;
    const ConditionToken name = tokens_.take();
    const auto* found = std::find_if(kExpressionFunctions.begin(), kExpressionFunctions.end(),
                                     [&](std::string_view one) { return name.is(one); });
    if (found == kExpressionFunctions.end())
        tokens_.fail(name, "There is no function " + name.shown() +
                               "; there are UPPER, LOWER, ROUND, FORMAT and IIF.");
    constexpr std::array kKinds = {Kind::kUpper, Kind::kLower, Kind::kRound, Kind::kFormat, Kind::kChoice};
    const ConditionTokens::Nesting nesting(tokens_, name);
    requireSign("(");
    ExpressionNode node{kKinds[static_cast<size_t>(found - kExpressionFunctions.begin())]};
    if (node.kind == Kind::kChoice) return choice();
    const ConditionToken argument = tokens_.peek();
    node.parts.push_back(sum());
    if (node.kind == Kind::kRound) {
        requireNumberOr(node.parts[0], false, argument, "ROUND rounds numbers");
        readDecimals(node);
    }
    if (node.kind == Kind::kFormat) {
        requireNumberOr(node.parts[0], true, argument, "FORMAT writes numbers and dates");
        readFormat(node);
    }
    requireSign(")");
    return node;
}

// What an argument is can be told here where it is a field alone.
void ExpressionParser::requireNumberOr(const ExpressionNode& node, bool dates, const ConditionToken& at,
                                       const char* what) {
    if (node.kind != ExpressionNode::Kind::kField) return;
    const ValueKind kind = ValueKindOf(fields_[node.field].type);
    if (kind == ValueKind::kNumber || (dates && kind == ValueKind::kDate)) return;
    if (kind == ValueKind::kText && !dates) return;
    tokens_.fail(
        at, std::string(what) + "; the field " + fields_[node.field].name + " holds " + KindName(kind) + ".");
}

void ExpressionParser::readDecimals(ExpressionNode& node) {
    requireSign(",");
    const ConditionToken at = tokens_.peek();
    const std::optional<Literal> decimals = TakeLiteral(tokens_);
    const bool isGood = decimals && decimals->kind == Literal::Kind::kNumber && decimals->number >= 0 &&
                        decimals->number <= kMostDecimals && decimals->number == std::floor(decimals->number);
    if (!isGood) tokens_.fail(at, "ROUND needs the number of decimals, from 0 to 15.");
    node.decimals = static_cast<int>(decimals->number);
}

void ExpressionParser::readFormat(ExpressionNode& node) {
    requireSign(",");
    const ConditionToken at = tokens_.peek();
    const std::optional<Literal> pattern = TakeLiteral(tokens_);
    std::optional<ValueFormat> format;
    if (pattern && pattern->kind == Literal::Kind::kText) format = ValueFormat::read(pattern->text);
    if (!format) tokens_.fail(at, "FORMAT needs a pattern as \"0.00\", \"#,##0.0\" or \"YYYY-MM-DD\".");
    node.format = std::move(*format);
}

ExpressionNode ExpressionParser::choice() {
    ExpressionNode node{ExpressionNode::Kind::kChoice};
    node.condition = conditions_.condition();
    for (int i = 0; i < 2; ++i) {
        requireSign(",");
        node.parts.push_back(sum());
    }
    requireSign(")");
    return node;
}

}  // namespace norvane
