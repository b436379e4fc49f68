#include "module/conditions/condition_parser.h"

#include <algorithm>
#include <array>

#include "platform/dao/names.h"
#include "platform/text/text.h"

namespace norvane {
namespace {

// Each becomes a parameter or two, of which engines take some tens of thousands.
constexpr size_t kMostValues = 5000;

bool isLanguageWord(const ConditionToken& token) {
    static constexpr std::array<std::string_view, 8> kWords = {"AND", "OR",      "NOT",  "IN",
                                                               "IS",  "BETWEEN", "LIKE", "NULL"};
    return std::any_of(kWords.begin(), kWords.end(), [&](std::string_view word) { return token.is(word); });
}

ConditionNode joined(ConditionNode::Kind kind, std::vector<ConditionNode> parts) {
    if (parts.size() == 1) return std::move(parts.front());
    ConditionNode node{kind};
    node.parts = std::move(parts);
    return node;
}

}  // namespace

ConditionNode ConditionParser::condition() {
    std::vector<ConditionNode> parts;
    do parts.push_back(conjunction());
    while (tokens_.takeWord("OR"));
    return joined(ConditionNode::Kind::kAny, std::move(parts));
}

ConditionNode ConditionParser::conjunction() {
    std::vector<ConditionNode> parts;
    do parts.push_back(negation());
    while (tokens_.takeWord("AND"));
    return joined(ConditionNode::Kind::kAll, std::move(parts));
}

ConditionNode ConditionParser::negation() {
    const ConditionToken begin = tokens_.peek();
    if (tokens_.takeWord("NOT")) {
        const ConditionTokens::Nesting nesting(tokens_, begin);
        return Negated(negation());
    }
    if (!tokens_.takeSign("(")) return test();
    const ConditionTokens::Nesting nesting(tokens_, begin);
    ConditionNode inner = condition();
    if (!tokens_.takeSign(")"))
        tokens_.fail(tokens_.peek(), tokens_.atEnd()
                                         ? "A closing parenthesis is missing."
                                         : "AND, OR or a closing parenthesis is expected in front of " +
                                               tokens_.peek().shown() + ".");
    return inner;
}

std::optional<size_t> ConditionParser::takeField() {
    const ConditionToken& next = tokens_.peek();
    if (!next.isName()) return std::nullopt;
    const int field = dao::findField(fields_, next.text);
    if (field >= 0) {
        // A word of the language is a field where it could be nothing else.
        tokens_.take();
        return static_cast<size_t>(field);
    }
    if (next.kind == ConditionToken::kWord && YesNoWord(next)) return std::nullopt;
    if (next.kind == ConditionToken::kWord && isLanguageWord(next))
        tokens_.fail(next, "A field or a value is expected in front of " + next.shown() + ".");
    tokens_.fail(next, "There is no field " + next.text + ".");
}

ConditionParser::Operand ConditionParser::operand(std::optional<size_t> comparedWith) {
    Operand out;
    out.token = tokens_.peek();
    if (tokens_.atEnd()) {
        wantedField_ = true;
        wantedValueOf_ = comparedWith;
        tokens_.fail(out.token, comparedWith ? "A value is missing." : "A field is missing.");
    }
    if (comparedWith && out.token.is("NULL")) tokens_.fail(out.token, "Nothing equals NULL; write IS NULL.");
    if (comparedWith) requireQuotes(out.token);
    // On the right, YES is a value, even where a field has this name.
    const bool isWord = out.token.kind == ConditionToken::kWord && YesNoWord(out.token);
    if (!(comparedWith && isWord)) out.field = takeField();
    if (!out.field) out.literal = TakeLiteral(tokens_);
    if (!out.field && !out.literal)
        tokens_.fail(out.token, "A field or a value is expected in front of " + out.token.shown() + ".");
    return out;
}

// What a person writes first: SPECIES = oak.
void ConditionParser::requireQuotes(const ConditionToken& token) const {
    if (token.kind != ConditionToken::kWord || YesNoWord(token) || isLanguageWord(token)) return;
    if (dao::findField(fields_, token.text) >= 0) return;
    tokens_.fail(
        token, "There is no field " + token.shown() + "; a text stands in quotes: '" + token.shown() + "'.");
}

std::optional<Comparison> ConditionParser::takeComparison() {
    for (Comparison one : {Comparison::kEqual, Comparison::kUnequal, Comparison::kLess, Comparison::kAtMost,
                           Comparison::kMore, Comparison::kAtLeast})
        if (tokens_.takeSign(SignOf(one))) return one;
    return std::nullopt;
}

ConditionNode ConditionParser::test() {
    const Operand left = operand(std::nullopt);
    if (tokens_.atEnd()) testedField_ = left.field;
    if (const std::optional<Comparison> sign = takeComparison())
        return comparison(left, *sign, operand(left.field));
    if (left.field) return fieldTest(*left.field, left.token);
    if (left.literal->kind == Literal::Kind::kNumber && tokens_.peek().isSymbol(","))
        tokens_.fail(left.token, "A number is written with a point: 12.5.");
    tokens_.fail(left.token, "A comparison is expected behind " + left.token.shown() + ".");
}

ConditionNode ConditionParser::comparison(const Operand& left, Comparison comparison, const Operand& right) {
    if (left.field && right.literal) return compared(*left.field, comparison, *right.literal);
    if (right.field && left.literal) return compared(*right.field, Turned(comparison), *left.literal);
    if (!left.field) tokens_.fail(left.token, "A comparison needs a field.");
    const ValueKind kind = ValueKindOf(info(*left.field).type), other = ValueKindOf(info(*right.field).type);
    if (kind != other)
        tokens_.fail(left.token, info(*left.field).name + " holds " + KindName(kind) + " and " +
                                     info(*right.field).name + " " + KindName(other) +
                                     ": they cannot be compared.");
    if (kind == ValueKind::kData || kind == ValueKind::kYesNo)
        tokens_.fail(left.token,
                     std::string("Fields of ") + KindName(kind) + " are not compared with each other.");
    ConditionNode node{ConditionNode::Kind::kFields};
    node.field = *left.field;
    node.other = *right.field;
    node.valueKind = kind;
    node.comparison = comparison;
    return node;
}

ConditionNode ConditionParser::compared(size_t field, Comparison comparison, const Literal& literal) {
    const bool ordered = comparison != Comparison::kEqual && comparison != Comparison::kUnequal;
    if (++values_ > kMostValues)
        tokens_.fail(literal.token, "There are more than " + std::to_string(kMostValues) + " values.");
    ConditionNode node{ConditionNode::Kind::kCompare};
    node.field = field;
    node.comparison = comparison;
    node.values.push_back(ValueFor(tokens_, info(field), literal, ordered));
    return node;
}

ConditionNode ConditionParser::fieldTest(size_t field, const ConditionToken& at) {
    if (tokens_.takeWord("IS")) return isNull(field);
    const bool isNegated = tokens_.takeWord("NOT");
    std::optional<ConditionNode> node;
    if (tokens_.takeWord("IN"))
        node = isOneOf(field);
    else if (tokens_.takeWord("BETWEEN"))
        node = isBetween(field);
    else if (tokens_.takeWord("LIKE"))
        node = isLike(field);
    else if (isNegated)
        tokens_.fail(tokens_.peek(), "IN, BETWEEN or LIKE is expected behind NOT.");
    else if (tokens_.peek().isSymbol("+") || tokens_.peek().isSymbol("-") || tokens_.peek().isSymbol("&"))
        tokens_.fail(tokens_.peek(), "Conditions do not calculate.");
    else
        tokens_.fail(at, "A comparison is expected behind " + at.shown() + ".");
    return isNegated ? Negated(std::move(*node)) : std::move(*node);
}

ConditionNode ConditionParser::isNull(size_t field) {
    ConditionNode node{ConditionNode::Kind::kIsNull};
    node.field = field;
    node.isNegated = tokens_.takeWord("NOT");
    if (!tokens_.takeWord("NULL")) tokens_.fail(tokens_.peek(), "NULL is expected behind IS.");
    return node;
}

Literal ConditionParser::literalFor(size_t field) {
    if (tokens_.atEnd()) wantedValueOf_ = field;
    const ConditionToken at = tokens_.peek();
    std::optional<Literal> literal = TakeLiteral(tokens_);
    if (literal) return *literal;
    if (at.is("NULL")) tokens_.fail(at, "Nothing equals NULL; write IS NULL.");
    requireQuotes(at);
    tokens_.fail(at,
                 at.isEnd ? "A value is missing." : "A value is expected in front of " + at.shown() + ".");
}

ConditionNode ConditionParser::isOneOf(size_t field) {
    if (!tokens_.takeSign("(")) tokens_.fail(tokens_.peek(), "A list in parentheses is expected behind IN.");
    std::vector<ConditionNode> parts;
    do parts.push_back(compared(field, Comparison::kEqual, literalFor(field)));
    while (tokens_.takeSign(","));
    if (!tokens_.takeSign(")")) tokens_.fail(tokens_.peek(), "A comma or a closing parenthesis is missing.");
    const ValueKind kind = ValueKindOf(info(field).type);
    if (kind != ValueKind::kNumber && kind != ValueKind::kText)
        return joined(ConditionNode::Kind::kAny, std::move(parts));
    ConditionNode node{ConditionNode::Kind::kIsOneOf};
    node.field = field;
    for (ConditionNode& part : parts) node.values.push_back(std::move(part.values.front()));
    std::sort(node.values.begin(), node.values.end());
    node.values.erase(std::unique(node.values.begin(), node.values.end()), node.values.end());
    return node;
}

ConditionNode ConditionParser::isBetween(size_t field) {
    std::vector<ConditionNode> parts;
    parts.push_back(compared(field, Comparison::kAtLeast, literalFor(field)));
    if (!tokens_.takeWord("AND"))
        tokens_.fail(tokens_.peek(), "BETWEEN needs two values with AND between them.");
    parts.push_back(compared(field, Comparison::kAtMost, literalFor(field)));
    return joined(ConditionNode::Kind::kAll, std::move(parts));
}

ConditionNode ConditionParser::isLike(size_t field) {
    const Literal literal = literalFor(field);
    const ValueKind kind = ValueKindOf(info(field).type);
    if (kind != ValueKind::kText)
        tokens_.fail(literal.token,
                     "LIKE compares text; the field " + info(field).name + " holds " + KindName(kind) + ".");
    if (literal.kind != Literal::Kind::kText)
        tokens_.fail(literal.token, "The pattern of LIKE stands in quotes: 'oak*'.");
    std::optional<TextPattern> pattern = TextPattern::read(literal.text);
    if (!pattern)
        tokens_.fail(literal.token,
                     "The pattern is longer than 1000 characters, or has a bracket that does not hold one "
                     "character: [*] stands for a star and [[] for a bracket.");
    ConditionNode node{ConditionNode::Kind::kIsLike};
    node.field = field;
    node.pattern = std::move(*pattern);
    return node;
}

}  // namespace norvane
