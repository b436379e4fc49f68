#include "module/annotation/label_lines.h"

#include <algorithm>
#include <utility>

#include "platform/text/text.h"

namespace norvane {

namespace {

// A fault with the place that it is at, where its sentence does not name that.
std::string sentenceOf(const ConditionFault& fault, std::string_view expression) {
    constexpr size_t kShown = 30;  // bytes
    if (fault.place >= expression.size()) return fault.sentence;
    const std::string_view place = text::cutToBytes(expression.substr(fault.place), kShown);
    if (fault.sentence.find(place) != std::string::npos) return fault.sentence;
    return fault.sentence + " (At \"" + std::string(place) + "\".)";
}

}  // namespace

std::optional<LabelLines> LabelLines::read(std::span<const std::string> expressions,
                                           const std::vector<CDaoFieldInfo>& fields, std::string& problem) {
    LabelLines lines;
    for (const std::string& text : expressions) {
        ConditionFault fault;
        std::optional<Expression> line = Expression::read(text, fields, fault);
        if (!line) {
            problem = sentenceOf(fault, text);
            return std::nullopt;
        }
        lines.used_.insert(lines.used_.end(), line->usedFields().begin(), line->usedFields().end());
        lines.lines_.push_back(std::move(*line));
    }
    std::sort(lines.used_.begin(), lines.used_.end());
    lines.used_.erase(std::unique(lines.used_.begin(), lines.used_.end()), lines.used_.end());
    return lines;
}

std::string LabelLines::textOf(const std::vector<dao::Variant>& values) const {
    std::string all;
    for (const Expression& expression : lines_)
        for (const std::string& line : text::split(expression.textOf(values), '\n')) {
            const std::string_view said = text::trim(line);
            if (said.empty()) continue;
            if (!all.empty()) all += '\n';
            all += said;
        }
    return all;
}

}  // namespace norvane
