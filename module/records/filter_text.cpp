#include "module/records/filter_text.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "module/conditions/offers.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kMostOffers = 12;

bool isNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || (c & 0x80);
}

// A text without what stands in quotes, which compares nothing.
std::string withoutQuoted(const std::string& text) {
    std::string bare;
    char quote = 0;
    for (char c : text) {
        if (quote)
            quote = c == quote ? 0 : quote;
        else if (c == '\'' || c == '"')
            quote = c;
        else
            bare += c;
    }
    return bare;
}

// The first two pieces of a text: names in brackets or plain, behind what may stand in front of them.
std::array<std::string, 2> firstWords(std::string_view text) {
    std::array<std::string, 2> words;
    size_t at = 0;
    for (size_t i = 0; i < words.size();) {
        while (at < text.size() && (text[at] == ' ' || text[at] == '(')) ++at;
        const size_t begin = at;
        if (at < text.size() && text[at] == '[') {
            at = std::min(text.find(']', at), text.size() - 1) + 1;
            words[i] = std::string(text.substr(begin + 1, at - begin - 2));
        } else {
            while (at < text.size() && isNameCharacter(text[at])) ++at;
            words[i] = std::string(text.substr(begin, at - begin));
        }
        if (i == 0 && text::equalNoCase(words[i], "NOT")) continue;
        ++i;
    }
    return words;
}

bool isMeantAsCondition(const std::string& text, const std::vector<CDaoFieldInfo>& fields) {
    if (withoutQuoted(text).find_first_of("=<>") != std::string::npos) return true;
    const auto [first, second] = firstWords(text);
    const bool isField = std::any_of(
        fields.begin(), fields.end(),
        [&name = first](const CDaoFieldInfo& field) { return text::equalNoCase(field.name, name); });
    if (!isField) return false;
    constexpr const char* kComparing[] = {"LIKE", "IN", "BETWEEN", "IS", "NOT"};
    return std::any_of(std::begin(kComparing), std::end(kComparing),
                       [&word = second](const char* known) { return text::equalNoCase(known, word); });
}

}  // namespace

FilterText ReadFilterText(const std::string& text, const std::vector<CDaoFieldInfo>& fields) {
    FilterText filter;
    const std::string typed(text::trim(text));
    if (typed.empty()) return filter;
    if (!isMeantAsCondition(typed, fields)) {
        filter.words = typed;
        return filter;
    }
    ConditionFault fault;
    if (std::optional<Condition> condition = Condition::read(text, fields, fault))
        filter.condition = std::make_shared<const Condition>(*std::move(condition));
    else
        filter.fault = std::move(fault);
    return filter;
}

std::string FaultSentence(const std::string& text, const ConditionFault& fault) {
    constexpr size_t kLongest = 30;  // bytes
    const size_t place = std::min(fault.place, text.size());
    const std::string wrong = text.substr(place, fault.length);
    if (text::trim(wrong).empty()) return fault.sentence + " (at the end)";
    const std::string_view shown = text::cutToBytes(wrong, kLongest);
    return fault.sentence + " (at \"" + std::string(shown) + (shown.size() < wrong.size() ? "..." : "") +
           "\")";
}

std::vector<std::string> FilterOffers(const std::string& text, const std::vector<CDaoFieldInfo>& fields,
                                      const FieldValues& valuesOf) {
    const Offers offers = OffersAt(text, text.size(), fields, OffersFor::kCondition);
    std::vector<std::string> goOn;
    if (offers.valuesOf)
        for (const dao::Variant& value : valuesOf(*offers.valuesOf, offers.typedValue))
            if (std::string literal = LiteralOf(value); !literal.empty()) goOn.push_back(std::move(literal));
    goOn.insert(goOn.end(), offers.texts.begin(), offers.texts.end());
    if (goOn.size() > kMostOffers) goOn.resize(kMostOffers);
    std::string before = text.substr(0, offers.begin);
    // What follows a piece that is whole stands apart from it.
    if (offers.begin == text.size() && !text.empty() &&
        std::string_view(" (,").find(text.back()) == std::string_view::npos)
        before += ' ';
    for (std::string& one : goOn) one = before + one;
    return goOn;
}

}  // namespace norvane
