#include "module/records/word_filter.h"

#include <algorithm>

#include "platform/text/text.h"

namespace norvane {

namespace {

// What the texts of numbers, dates, Yes and No are made of. To make them costs far more than to look at them.
constexpr std::string_view kLettersOfOthers = "0123456789+-.,/:EYESNOINFA";

bool isPlain(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return c & 0x80; });
}

char inCapitals(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

bool occurs(const std::string& word, std::string_view text) {
    if (!isPlain(text)) return text::upper(text).find(word) != std::string::npos;
    const auto isSame = [](char c, char letter) { return inCapitals(c) == letter; };
    return std::search(text.begin(), text.end(), word.begin(), word.end(), isSame) != text.end();
}

}  // namespace

WordFilter::WordFilter(std::string_view words) {
    for (const std::string& word : text::split(text::upper(words), ' '))
        if (!word.empty())
            words_.push_back({word, word.find_first_not_of(kLettersOfOthers) == std::string::npos});
}

void WordFilter::look(std::string_view text) {
    for (Word& word : words_) word.isMissing = word.isMissing && !occurs(word.letters, text);
}

bool WordFilter::anyMissing() const {
    return std::any_of(words_.begin(), words_.end(), [](const Word& word) { return word.isMissing; });
}

bool WordFilter::lets(std::span<const dao::Variant> values, std::span<const CellValue> kinds) {
    for (Word& word : words_) word.isMissing = true;
    for (size_t i = 0; i < kinds.size() && anyMissing(); ++i)
        if (values[i].is<std::string>()) look(values[i].get<std::string>());
    if (!anyMissing()) return true;
    if (std::any_of(words_.begin(), words_.end(),
                    [](const Word& word) { return word.isMissing && !word.canBeOther; }))
        return false;
    for (size_t i = 0; i < kinds.size() && anyMissing(); ++i)
        if (!values[i].is<std::string>()) look(ShownText(values[i], kinds[i]));
    return !anyMissing();
}

}  // namespace norvane
