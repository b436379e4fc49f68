#include "module/conditions/literals.h"

#include "platform/text/text.h"

namespace norvane {
namespace {

double writtenNumber(const ConditionTokens& tokens, const ConditionToken& token) {
    const std::optional<double> number = text::wholeReal(token.whole);
    if (!number) tokens.fail(token, token.shown() + " is no number.");
    return *number;
}

// What a field holds, as the beginning of a sentence.
std::string holds(const CDaoFieldInfo& field) {
    return "The field " + field.name + " holds " + KindName(ValueKindOf(field.type)) + ": ";
}

double numberFor(const ConditionTokens& tokens, const CDaoFieldInfo& field, const Literal& literal) {
    double number = literal.number;
    if (literal.kind == Literal::Kind::kText) {
        const std::optional<double> whole = text::wholeReal(text::trim(literal.text));
        if (!whole) tokens.fail(literal.token, holds(field) + literal.token.shown() + " is none.");
        number = *whole;
    } else if (literal.kind != Literal::Kind::kNumber) {
        tokens.fail(literal.token, holds(field) + literal.token.shown() + " is none.");
    }
    return field.type == dbSingle ? static_cast<double>(static_cast<float>(number)) : number;
}

FoldedText textFor(const ConditionTokens& tokens, const CDaoFieldInfo& field, const Literal& literal,
                   bool ordered) {
    if (literal.kind == Literal::Kind::kDate)
        tokens.fail(literal.token, holds(field) + "write '" + literal.text + "'.");
    if (literal.kind == Literal::Kind::kNumber && ordered)
        tokens.fail(literal.token,
                    holds(field) + "write '" + literal.text +
                        "' to compare as text does, digit by digit ('20' comes behind '100').");
    return {text::upper(literal.text)};
}

Moments dateFor(const ConditionTokens& tokens, const CDaoFieldInfo& field, const Literal& literal) {
    const bool canBe = literal.kind == Literal::Kind::kDate || literal.kind == Literal::Kind::kText;
    const std::optional<Moments> moments = canBe ? MomentsOf(literal.text) : std::nullopt;
    if (!moments)
        tokens.fail(literal.token, holds(field) + "write one as #2004-05-31# or #2004-05-31 13:45#.");
    return *moments;
}

bool yesNoFor(const ConditionTokens& tokens, const CDaoFieldInfo& field, const Literal& literal,
              bool ordered) {
    if (ordered) tokens.fail(literal.token, holds(field) + "it can be = or <>, not more or less.");
    if (literal.kind == Literal::Kind::kYesNo) return literal.number != 0;
    const bool isTruth = literal.number == 0 || literal.number == 1 || literal.number == -1;
    if (literal.kind != Literal::Kind::kNumber || !isTruth)
        tokens.fail(literal.token, holds(field) + literal.token.shown() + " is neither.");
    return literal.number != 0;
}

}  // namespace

std::optional<bool> YesNoWord(const ConditionToken& token) {
    if (token.is("YES") || token.is("TRUE")) return true;
    if (token.is("NO") || token.is("FALSE")) return false;
    return std::nullopt;
}

std::optional<Literal> TakeLiteral(ConditionTokens& tokens) {
    const ConditionToken& next = tokens.peek();
    const bool isSigned =
        (next.isSymbol("-") || next.isSymbol("+")) && tokens.peek(1).kind == ConditionToken::kNumber;
    if (isSigned) {
        const ConditionToken sign = tokens.take(), number = tokens.take();
        const double value = writtenNumber(tokens, number);
        const std::string minus = sign.isSymbol("-") ? "-" : "";
        return Literal{Literal::Kind::kNumber, minus + number.text, minus.empty() ? value : -value, sign};
    }
    if (next.kind == ConditionToken::kNumber) {
        const double value = writtenNumber(tokens, next);
        return Literal{Literal::Kind::kNumber, next.text, value, tokens.take()};
    }
    if (next.kind == ConditionToken::kText) return Literal{Literal::Kind::kText, next.text, 0, tokens.take()};
    if (next.kind == ConditionToken::kDate) {
        if (!MomentsOf(next.text))
            tokens.fail(next, next.shown() + " is no date; one is written #2004-05-31#.");
        return Literal{Literal::Kind::kDate, next.text, 0, tokens.take()};
    }
    if (const std::optional<bool> yes = YesNoWord(next))
        return Literal{Literal::Kind::kYesNo, next.text, *yes ? -1.0 : 0.0, tokens.take()};
    return std::nullopt;
}

ComparedValue ValueFor(const ConditionTokens& tokens, const CDaoFieldInfo& field, const Literal& literal,
                       bool ordered) {
    switch (ValueKindOf(field.type)) {
        case ValueKind::kNumber:
            return numberFor(tokens, field, literal);
        case ValueKind::kText:
            return textFor(tokens, field, literal, ordered);
        case ValueKind::kDate:
            return dateFor(tokens, field, literal);
        case ValueKind::kYesNo:
            return yesNoFor(tokens, field, literal, ordered);
        default:
            tokens.fail(literal.token,
                        holds(field) + "it can only be asked for with IS NULL or IS NOT NULL.");
    }
}

}  // namespace norvane
