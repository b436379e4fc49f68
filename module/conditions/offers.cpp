#include "module/conditions/offers.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "module/conditions/expression_parser.h"
#include "platform/dao/names.h"
#include "platform/dao/sql_tokens.h"
#include "platform/text/text.h"

namespace norvane {
namespace {

// The piece that is being typed: a word, a number, or what has been opened and not closed.
struct TypedPart {
    enum Kind { kNothing, kWord, kName, kValue };
    Kind kind = kNothing;
    size_t begin = 0;
    std::string text;  // without the bracket or quote
};

TypedPart typedPart(std::string_view text) {
    const std::vector<dao::SqlToken> pieces = dao::sqlTokens(text, {.dates = true});
    for (size_t i = 0; i < pieces.size(); ++i) {
        const dao::SqlToken& piece = pieces[i];
        const bool isLast = i + 1 == pieces.size();
        const auto begin = static_cast<size_t>(piece.whole.data() - text.data());
        // An open bracket or # is a sign, and what follows are pieces of their own.
        const bool isOpen = !piece.closed && piece.kind != dao::SqlToken::kText;
        if (isOpen) {
            const TypedPart::Kind kind = piece.whole == "[" ? TypedPart::kName : TypedPart::kValue;
            return {kind, begin, std::string(text.substr(begin + 1))};
        }
        if (!isLast) continue;
        if (piece.kind == dao::SqlToken::kText && !piece.closed)
            return {TypedPart::kValue, begin, piece.text};
        if (piece.kind == dao::SqlToken::kWord) return {TypedPart::kWord, begin, piece.text};
        if (piece.kind == dao::SqlToken::kNumber) return {TypedPart::kValue, begin, piece.text};
    }
    return {TypedPart::kNothing, text.size(), ""};
}

bool beginsNoCase(std::string_view text, std::string_view with) {
    return text::startsWith(text::upper(text), text::upper(with));
}

// What could follow a text that ends between two pieces.
struct Followers {
    std::vector<std::string> words;
    bool fields = false;
    bool functions = false;
    std::optional<size_t> testedField;  // whose comparison may follow
    std::optional<size_t> valueOf;
};

Followers followersOf(std::string_view text, const std::vector<CDaoFieldInfo>& fields, OffersFor what) {
    Followers out;
    try {
        ConditionTokens tokens(text);
        auto note = [&](const ConditionParser& conditions) {
            out.words = tokens.followers();
            out.fields = conditions.wantedField();
            out.valueOf = conditions.wantedValueOf();
            out.testedField = conditions.testedField();
        };
        if (what == OffersFor::kCondition) {
            ConditionParser parser(tokens, fields);
            try {
                parser.condition();
            } catch (const FaultFound&) {
                // The text is not complete: that is why something is offered.
            }
            note(parser);
        } else {
            ExpressionParser parser(tokens, fields);
            try {
                parser.sum();
            } catch (const FaultFound&) {
                // As above.
            }
            note(parser.conditions());
            out.functions = parser.wantedTerm();
            out.fields = out.fields || parser.wantedTerm();
        }
    } catch (const FaultFound&) {
        // Nothing can follow a piece that is none.
    }
    return out;
}

bool isSuited(const std::string& word, ValueKind kind) {
    if (word == "LIKE") return kind == ValueKind::kText;
    if (word == "<" || word == "<=" || word == ">" || word == ">=" || word == "BETWEEN")
        return kind != ValueKind::kYesNo && kind != ValueKind::kData;
    if (word == "=" || word == "<>" || word == "IN" || word == "NOT") return kind != ValueKind::kData;
    return true;
}

bool isLanguageWord(std::string_view name) {
    static constexpr std::array<std::string_view, 17> kWords = {
        "AND", "OR",   "NOT",   "IN",    "IS",    "BETWEEN", "LIKE",   "NULL", "YES",
        "NO",  "TRUE", "FALSE", "UPPER", "LOWER", "ROUND",   "FORMAT", "IIF"};
    return std::any_of(kWords.begin(), kWords.end(),
                       [&](std::string_view word) { return text::equalNoCase(word, name); });
}

}  // namespace

Offers OffersAt(std::string_view text, size_t caret, const std::vector<CDaoFieldInfo>& fields,
                OffersFor what) {
    const std::string_view before = text.substr(0, std::min(caret, text.size()));
    Offers offers;
    offers.begin = before.size();
    if (ConditionTokens::isTooLong(before)) return offers;
    const TypedPart typed = typedPart(before);
    offers.begin = typed.begin;
    offers.length = before.size() - typed.begin;
    Followers followers = followersOf(before.substr(0, typed.begin), fields, what);
    offers.valuesOf = typed.kind == TypedPart::kName ? std::nullopt : followers.valueOf;
    if (offers.valuesOf) offers.typedValue = typed.text;

    auto offer = [&](const std::string& written, const std::string& compared) {
        const bool isThere =
            std::find(offers.texts.begin(), offers.texts.end(), written) != offers.texts.end();
        if (!isThere && beginsNoCase(compared, typed.text)) offers.texts.push_back(written);
    };
    if (typed.kind == TypedPart::kValue) return offers;
    for (size_t i = 0; followers.fields && i < fields.size(); ++i) {
        const ValueKind kind = ValueKindOf(fields[i].type);
        // Behind a sign stands a field of the same kind.
        const bool fits = !followers.valueOf || (*followers.valueOf != i && kind != ValueKind::kYesNo &&
                                                 kind == ValueKindOf(fields[*followers.valueOf].type));
        if (fits) offer(FieldInCondition(fields[i].name), fields[i].name);
    }
    if (typed.kind == TypedPart::kName) return offers;
    if (followers.valueOf && ValueKindOf(fields[*followers.valueOf].type) == ValueKind::kYesNo) {
        offer("YES", "YES");
        offer("NO", "NO");
    }
    for (const std::string& word : followers.words)
        if (!followers.testedField || isSuited(word, ValueKindOf(fields[*followers.testedField].type)))
            offer(word, word);
    for (size_t i = 0; followers.functions && i < kExpressionFunctions.size(); ++i)
        offer(std::string(kExpressionFunctions[i]) + "(", std::string(kExpressionFunctions[i]));
    return offers;
}

std::string FieldInCondition(const std::string& name) {
    const std::vector<dao::SqlToken> pieces = dao::sqlTokens(name, {.dates = true});
    const bool isPlain =
        pieces.size() == 1 && pieces[0].kind == dao::SqlToken::kWord && !isLanguageWord(name);
    return isPlain ? name : "[" + name + "]";
}

std::string LiteralOf(const dao::Variant& value) {
    if (value.is<bool>()) return value.get<bool>() ? "YES" : "NO";
    if (value.is<std::string>()) return dao::quotedText(value.get<std::string>());
    if (value.is<float>()) return std::isfinite(value.get<float>()) ? dao::exactText(value.get<float>()) : "";
    if (value.is<double>())
        return std::isfinite(value.get<double>()) ? dao::exactText(value.get<double>()) : "";
    if (value.is<dao::Currency>()) return text::stripZeros(dao::exactText(value.get<dao::Currency>()));
    const std::string plain = dao::toText(value);
    return value.is<dao::Date>() ? "#" + plain + "#" : plain;
}

}  // namespace norvane
