#include "module/conditions/text_pattern.h"

#include "platform/text/text.h"

namespace norvane {
namespace {

constexpr size_t kLongestPattern = 1000;

bool isAsciiWord(char32_t c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ';
}

}  // namespace

std::optional<TextPattern> TextPattern::read(std::string_view pattern) {
    if (pattern.size() > kLongestPattern) return std::nullopt;
    const std::string upper = text::upper(pattern);
    TextPattern out;
    for (size_t at = 0; at < upper.size();) {
        const char32_t c = text::nextCodePoint(upper, at);
        if (c == '*') {
            out.elements_.push_back({Element::kRun});
        } else if (c == '?') {
            out.elements_.push_back({Element::kAny});
        } else if (c == '[') {
            if (at == upper.size()) return std::nullopt;
            out.elements_.push_back({Element::kCharacter, text::nextCodePoint(upper, at)});
            if (at == upper.size() || upper[at++] != ']') return std::nullopt;
        } else {
            out.elements_.push_back({Element::kCharacter, c});
        }
    }
    return out;
}

bool TextPattern::matches(std::string_view value) const {
    const std::string upper = text::upper(value);
    constexpr size_t kNone = static_cast<size_t>(-1);
    // One point of return is enough, since a later run may take over from an earlier one.
    size_t element = 0, at = 0, retryElement = kNone, retryAt = 0;
    while (at < upper.size() || element < elements_.size()) {
        if (element < elements_.size()) {
            const Element& e = elements_[element];
            if (e.kind == Element::kRun) {
                retryElement = ++element;
                retryAt = at;
                continue;
            }
            if (at < upper.size()) {
                size_t behind = at;
                const char32_t c = text::nextCodePoint(upper, behind);
                if (e.kind == Element::kAny || e.character == c) {
                    ++element;
                    at = behind;
                    continue;
                }
            }
        }
        if (retryElement == kNone || retryAt == upper.size()) return false;
        text::nextCodePoint(upper, retryAt);
        element = retryElement;
        at = retryAt;
    }
    return true;
}

template <typename Character>
std::string TextPattern::written(char run, char any, Character character) const {
    std::string out;
    for (const Element& e : elements_) {
        if (e.kind == Element::kRun)
            out += run;
        else if (e.kind == Element::kAny)
            out += any;
        else
            character(out, e.character);
    }
    return out;
}

std::string TextPattern::forGlob() const {
    return written('*', '?', [](std::string& out, char32_t c) {
        const bool isSpecial = c == '*' || c == '?' || c == '[';
        if (isSpecial) out += '[';
        text::appendUtf8(out, c);
        if (isSpecial) out += ']';
    });
}

std::string TextPattern::forLike() const {
    return written('%', '_', [](std::string& out, char32_t c) {
        if (c == '%' || c == '_' || c == '\\') out += '\\';
        text::appendUtf8(out, c);
    });
}

std::string TextPattern::forAnyLike() const {
    // One of our characters may be several of a server that has another code page.
    return written('%', '%',
                   [](std::string& out, char32_t c) { out += isAsciiWord(c) ? static_cast<char>(c) : '%'; });
}

std::string TextPattern::letters() const {
    std::string out;
    for (const Element& e : elements_)
        if (e.kind == Element::kCharacter) text::appendUtf8(out, e.character);
    return out;
}

}  // namespace norvane
