#include "module/prompting/special_codes.h"

#include <algorithm>
#include <ctime>

#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kMarkLength = 5;  // "$EQN="
constexpr std::string_view kOperators = "/*-+";

std::string nineDecimals(double value) {
    return text::format("%.9lf", value);
}

// The number that a missing operand stands for beside an operator.
double neutralOf(char op) {
    return op == '/' || op == '*' ? 1.0 : 0.0;
}
std::string neutralTextOf(char op) {
    return op == '/' || op == '*' ? "1" : "0";
}

// Puts the present content of the rows in place of their names: the first occurrence of each, in row order.
// Names match anywhere, also inside longer words.
std::string withRowValues(std::string expression, const std::vector<PromptRow>& rows,
                          const PromptCells& cells) {
    std::string value;
    for (int row = 1; row <= cells.rowCount(); ++row) {
        size_t index = static_cast<size_t>(row) - 1;
        std::string name = index < rows.size() ? rows[index].name : text::upper(cells.cellText(1, row));
        size_t at = name.empty() ? std::string::npos : expression.find(name);
        if (at == std::string::npos) continue;
        // A check box has no number: the value that was read before it stays in force.
        if (!cells.isCheckBox(2, row)) value = cells.cellText(2, row);
        expression.replace(at, name.size(), value.empty() ? "0" : value);
    }
    return expression;
}

// Operands and operators in turn. A single token when there is no operator.
std::vector<std::string> tokensOf(std::string_view expression) {
    std::vector<std::string> tokens;
    std::string operand;
    char last = 0;
    for (char c : expression) {
        if (kOperators.find(c) == std::string_view::npos) {
            operand += c;
            continue;
        }
        tokens.push_back(operand.empty() ? neutralTextOf(c) : operand);
        tokens.emplace_back(1, c);
        operand.clear();
        last = c;
    }
    if (last)
        tokens.push_back(operand.empty() ? neutralTextOf(last) : operand);
    else if (!operand.empty())
        tokens.push_back(operand);
    return tokens;
}

double applied(char op, double left, double right) {
    switch (op) {
        case '/':
            return left == 0.0 || right == 0.0 ? 0.0 : left / right;
        case '*':
            return left * right;
        case '-':
            return left - right;
        default:
            return left + right;
    }
}

// Replaces every occurrence of one operator with its neighbours by their result, from left to right.
void sweep(std::vector<std::string>& tokens, char op) {
    const std::string mark(1, op);
    for (;;) {
        auto at = std::find(tokens.begin(), tokens.end(), mark);
        if (at == tokens.end()) return;
        bool hasLeft = at != tokens.begin();
        bool hasRight = at + 1 != tokens.end();
        double left = hasLeft ? text::toReal(*(at - 1)) : neutralOf(op);
        double right = hasRight ? text::toReal(*(at + 1)) : neutralOf(op);
        *at = nineDecimals(applied(op, left, right));
        if (hasRight) tokens.erase(at + 1);
        if (hasLeft) tokens.erase(at - 1);
    }
}

bool isTextCode(std::string_view code) {
    return !StoredColumnOf(code).empty();
}

double numberOf(const KnownAttribute& known, const PointContext& point) {
    return known.number ? point.*known.number : (point.*known.optional).value;
}

std::tm localNow() {
    std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    return parts;
}

}  // namespace

std::string EvaluateEquation(std::string_view code, const PointContext& point,
                             const std::vector<PromptRow>& rows, const PromptCells& cells) {
    std::string expression = text::upper(code.substr(std::min(code.size(), kMarkLength)));
    for (const KnownAttribute& known : KnownAttributes())
        if (!known.isText())
            expression =
                text::replaceAll(expression, known.code + kMarkLength, nineDecimals(numberOf(known, point)));
    std::vector<std::string> tokens = tokensOf(withRowValues(std::move(expression), rows, cells));
    // One round is enough: operands and operators alternate, so that each sweep takes its operator out whole.
    for (char op : kOperators) sweep(tokens, op);
    return text::fromReal(tokens.empty() ? 0.0 : text::toReal(tokens.front()));
}

void RefreshComputedRows(const std::vector<PromptRow>& rows, const PointContext& point, PromptCells& cells,
                         RefreshReason reason) {
    for (size_t i = 0; i < rows.size(); ++i) {
        const std::string& code = rows[i].defaultValue;
        if (!IsComputed(rows[i]) || isTextCode(code)) continue;
        const int row = static_cast<int>(i) + 1;
        // A code that is written with a bar is an equation while cells change.
        bool written = reason == RefreshReason::kCellChange && code.find('|') != std::string::npos;
        const KnownAttribute* known = written ? nullptr : FindKnownCode(code);
        if (known && known->optional && !(point.*known->optional).available()) continue;  // the cell stays
        if (known && known->number)
            cells.setCellText(2, row, text::fromReal(point.*known->number));
        else
            cells.setCellText(2, row, EvaluateEquation(code, point, rows, cells));
    }
}

std::string_view StoredColumnOf(std::string_view code) {
    for (const KnownAttribute& known : KnownAttributes())
        if (known.isText() && known.code == code) return known.abbreviation;
    return {};
}

bool TextCodeValue(std::string_view code, const std::string& stored, const PointContext& point,
                   std::string& value) {
    if (!isTextCode(code)) return false;
    if (!stored.empty()) {
        value = stored;
    } else if (code == kDescriptionCode) {
        value = point.description;
    } else if (code == kInstrumentCode) {
        if (point.instrument.empty()) return false;
        value = point.instrument;
    } else {
        std::tm now = localNow();
        value = code == kDateCode ? text::format("%d/%d/%d", now.tm_mon + 1, now.tm_mday, now.tm_year + 1900)
                                  : text::format("%d:%d:%d", now.tm_hour, now.tm_min, now.tm_sec);
    }
    return true;
}

}  // namespace norvane
