#include "module/conditions/condition_tokens.h"

#include <algorithm>

#include "platform/text/text.h"

namespace norvane {
namespace {

constexpr size_t kLongestText = 65536;
constexpr int kDeepest = 200;
constexpr dao::SqlDialect kLanguage = {.dates = true};
constexpr std::string_view kSigns = "()=<>,+-&";

// What is wrong with a piece; "" for a good one.
const char* faultOf(const ConditionToken& token) {
    if (token.kind == ConditionToken::kText && !token.closed) return "The text has no closing quote.";
    if (token.kind != ConditionToken::kSymbol) return "";
    switch (token.whole.front()) {
        case '[':
            return "The name has no closing bracket.";
        case '#':
            return "The date has no closing #.";
        case '!':
            return "Unequal is written <>.";
        case '%':
            return "In a pattern, * stands for any characters; % stands for itself, in a text in quotes.";
        case ';':
            return "A condition ends without a semicolon.";
        default:
            return kSigns.find(token.whole.front()) == std::string_view::npos
                       ? "This sign has no meaning here."
                       : "";
    }
}

}  // namespace

std::string ConditionToken::shown() const {
    constexpr size_t kLongest = 40;
    if (isEnd) return "the end";
    const std::string_view cut = text::cutToBytes(whole, kLongest);
    return std::string(cut) + (cut.size() < whole.size() ? "..." : "");
}

bool ConditionTokens::isTooLong(std::string_view text) {
    return text.size() > kLongestText;
}

ConditionTokens::ConditionTokens(std::string_view text) {
    if (isTooLong(text))
        throw FaultFound({0, 0, "The text is longer than " + std::to_string(kLongestText) + " characters."});
    if (size_t zero = text.find('\0'); zero != std::string_view::npos || !text::isValidUtf8(text))
        throw FaultFound(
            {zero == std::string_view::npos ? 0 : zero, 0, "The text has characters that are none."});
    for (dao::SqlToken& piece : dao::sqlTokens(text, kLanguage)) {
        if (piece.kind == dao::SqlToken::kBlank) continue;
        ConditionToken token{std::move(piece)};
        token.place = static_cast<size_t>(token.whole.data() - text.data());
        if (const char* fault = faultOf(token); *fault) fail(token, fault);
        tokens_.push_back(std::move(token));
    }
    ConditionToken end;
    end.place = text.size();
    end.isEnd = true;
    tokens_.push_back(std::move(end));
}

const ConditionToken& ConditionTokens::peek(size_t ahead) const {
    return tokens_[std::min(next_ + ahead, tokens_.size() - 1)];
}

ConditionToken ConditionTokens::take() {
    const ConditionToken& token = peek();
    if (!token.isEnd) ++next_;
    return token;
}

bool ConditionTokens::takeWord(std::string_view word) {
    if (atEnd()) followers_.emplace_back(word);
    if (!peek().is(word)) return false;
    ++next_;
    return true;
}

bool ConditionTokens::takeSign(std::string_view sign) {
    if (atEnd()) followers_.emplace_back(sign);
    if (!peek().isSymbol(sign)) return false;
    ++next_;
    return true;
}

void ConditionTokens::fail(const ConditionToken& at, const std::string& sentence) const {
    size_t end = at.place + at.whole.size();
    // What was taken since belongs to it.
    if (next_ > 0 && tokens_[next_ - 1].place > at.place)
        end = tokens_[next_ - 1].place + tokens_[next_ - 1].whole.size();
    throw FaultFound({at.place, end - at.place, sentence});
}

ConditionTokens::Nesting::Nesting(ConditionTokens& tokens, const ConditionToken& at) : tokens_(tokens) {
    if (tokens.depth_ == kDeepest)
        tokens.fail(at,
                    "More than " + std::to_string(kDeepest) + " parentheses and NOTs stand in each other.");
    ++tokens.depth_;
}

}  // namespace norvane
