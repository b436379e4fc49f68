#include "platform/text/wild_cards.h"

#include <cctype>

#include "platform/text/text.h"

namespace {

struct Element {
    enum Kind { kAnyRun, kOne, kSet } kind;
    std::string_view set;  // the characters between the brackets
    bool negated = false;
    char literal = 0;  // for kOne: 0 means a class in `set`
};

// Reads one element of a pattern that is not empty and moves the pattern behind it.
Element nextElement(std::string_view& pattern) {
    char c = pattern.front();
    pattern.remove_prefix(1);
    switch (c) {
        case '*':
            return {Element::kAnyRun, {}};
        case '?':
        case '#':
        case '@':
        case '.': {
            static constexpr std::string_view kClasses = "?#@.";
            return {Element::kOne, kClasses.substr(kClasses.find(c), 1)};
        }
        case '`':
            if (!pattern.empty()) {
                c = pattern.front();
                pattern.remove_prefix(1);
            }
            return {Element::kOne, {}, false, c};
        case '[': {
            bool negated = !pattern.empty() && pattern.front() == '~';
            std::string_view body = pattern.substr(negated ? 1 : 0);
            size_t close = body.find(']', 1);
            if (close == std::string_view::npos) return {Element::kOne, {}, false, '['};
            pattern = body.substr(close + 1);
            return {Element::kSet, body.substr(0, close), negated};
        }
        default:
            return {Element::kOne, {}, false, c};
    }
}

bool inSet(std::string_view set, char c) {
    for (size_t i = 0; i < set.size(); ++i) {
        if (i + 2 < set.size() && set[i + 1] == '-') {
            if (c >= set[i] && c <= set[i + 2]) return true;
            i += 2;
        } else if (set[i] == c) {
            return true;
        }
    }
    return false;
}

bool accepts(const Element& e, char c) {
    if (e.kind == Element::kSet) return inSet(e.set, c) != e.negated;
    if (e.set.empty()) return e.literal == c;
    unsigned char u = static_cast<unsigned char>(c);
    switch (e.set.front()) {
        case '#':
            return std::isdigit(u) != 0;
        case '@':
            return std::isalpha(u) != 0;
        case '.':
            return std::isalnum(u) == 0;
        default:
            return true;
    }
}

// Greedy matching with one point of return: enough, since a later run may take over from an earlier one.
bool matches(std::string_view text, std::string_view pattern) {
    std::string_view retryPattern;
    std::string_view retryText;
    bool canRetry = false;
    while (!text.empty() || !pattern.empty()) {
        if (!pattern.empty()) {
            std::string_view rest = pattern;
            Element e = nextElement(rest);
            if (e.kind == Element::kAnyRun) {
                pattern = rest;
                retryPattern = rest;
                retryText = text;
                canRetry = true;
                continue;
            }
            if (!text.empty() && accepts(e, text.front())) {
                pattern = rest;
                text.remove_prefix(1);
                continue;
            }
        }
        if (!canRetry || retryText.empty()) return false;
        retryText.remove_prefix(1);
        text = retryText;
        pattern = retryPattern;
    }
    return true;
}

// The pattern up to the next comma that is neither quoted nor in brackets; `all` moves behind it.
std::string_view nextAlternative(std::string_view& all, bool& last) {
    bool bracket = false;
    for (size_t i = 0; i < all.size(); ++i) {
        if (all[i] == '`')
            ++i;
        else if (all[i] == '[')
            bracket = true;
        else if (all[i] == ']')
            bracket = false;
        else if (all[i] == ',' && !bracket) {
            std::string_view one = all.substr(0, i);
            all.remove_prefix(i + 1);
            return one;
        }
    }
    last = true;
    return all;
}

}  // namespace

namespace text {

bool matchesWildCards(std::string_view text, std::string_view pattern) {
    for (bool last = false; !last;) {
        std::string_view one = nextAlternative(pattern, last);
        bool negated = !one.empty() && one.front() == '~';
        if (matches(text, one.substr(negated ? 1 : 0)) != negated) return true;
    }
    return false;
}

bool matchesNoCase(std::string_view text, std::string_view pattern) {
    // Most patterns are plain names.
    if (pattern.find_first_of("#@.*?~[`,") == std::string_view::npos) return equalNoCase(text, pattern);
    return matchesWildCards(upper(text), upper(pattern));
}

std::string literalPattern(std::string_view text) {
    constexpr std::string_view kSpecial = "#@.*?~[]-,`";
    std::string pattern;
    for (char c : text) {
        if (kSpecial.find(c) != std::string_view::npos) pattern += '`';
        pattern += c;
    }
    return pattern;
}

}  // namespace text
