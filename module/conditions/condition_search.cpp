#include "module/conditions/condition_search.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/dao/sql_tokens.h"
#include "platform/text/text.h"

namespace norvane {
namespace {

using dao::EngineKind;

// What is true of every record, as far as the engine can tell.
constexpr const char* kAlways = "";

std::string bracketed(const CDaoFieldInfo& field) {
    return "[" + field.name + "]";
}

bool isAscii(std::string_view s) {
    return std::none_of(s.begin(), s.end(), [](char c) { return (c & 0x80) != 0; });
}

bool isWhole(int type) {
    return type == dbByte || type == dbInteger || type == dbLong;
}

// Whether a number can be a value of a field of whole numbers.
bool isOf(int type, double number) {
    const bool isLong = type == dbLong;
    const double least = isLong ? std::numeric_limits<int32_t>::min() : std::numeric_limits<int16_t>::min();
    const double most = isLong ? std::numeric_limits<int32_t>::max() : std::numeric_limits<int16_t>::max();
    return isWhole(type) && number >= least && number <= most && number == std::trunc(number);
}

// Parts in pairs of pairs: engines limit how deep an expression is, and a list of many is not to be deep.
std::string balanced(const std::vector<std::string>& parts, size_t begin, size_t end, const char* word) {
    if (end - begin == 1) return parts[begin];
    const size_t middle = begin + (end - begin) / 2;
    return "(" + balanced(parts, begin, middle, word) + word + balanced(parts, middle, end, word) + ")";
}

// The letters outside of the English alphabet that have two cases here: the small ones in the order of the
// large.
struct OtherLetters {
    std::string small, large;
};

void addLetter(OtherLetters& letters, std::string_view large) {
    const std::string small = text::lower(large);
    if (small == large || letters.large.find(large) != std::string::npos) return;
    letters.small += small;
    letters.large += large;
}

OtherLetters lettersIn(std::string_view upper) {
    OtherLetters letters;
    for (size_t at = 0; at < upper.size();) {
        const size_t begin = at;
        if (text::nextCodePoint(upper, at) >= 0x80) addLetter(letters, upper.substr(begin, at - begin));
    }
    return letters;
}

const OtherLetters& allLetters() {
    static const OtherLetters kLetters = [] {
        constexpr char32_t kEndOfLatin = 0x180;
        std::string all;
        for (char32_t c = 0xC0; c < kEndOfLatin; ++c) text::appendUtf8(all, c);
        return lettersIn(text::upper(all));
    }();
    return kLetters;
}

// Writes the tree. NOT is in its leaves, so that a leaf of which an engine knows too little may be left out:
// what is found is then more, and never less.
class SearchWriter {
  public:
    SearchWriter(const std::vector<CDaoFieldInfo>& fields, EngineKind engine)
        : fields_(fields), engine_(engine) {}

    ConditionSearch write(const ConditionNode& node) {
        out_.isExact = engine_ != EngineKind::kOtherServer;
        out_.where = written(node);
        if (out_.where == kAlways) out_.where = "1 = 1";
        return std::move(out_);
    }

  private:
    std::string written(const ConditionNode& node);
    std::string joined(const ConditionNode& node);
    std::string compared(const ConditionNode& node);
    std::string numberCompared(const CDaoFieldInfo& field, Comparison comparison, double number);
    std::string realNearby(const CDaoFieldInfo& field, Comparison comparison, double wanted);
    std::string textCompared(const CDaoFieldInfo& field, Comparison comparison, const std::string& upper);
    std::string indexed(const CDaoFieldInfo& field, const std::vector<std::string>& texts);
    std::string dateCompared(const CDaoFieldInfo& field, Comparison comparison, const Moments& moments);
    std::string fieldsCompared(const ConditionNode& node);
    std::string isOneOf(const ConditionNode& node);
    std::string isOneOfTexts(const ConditionNode& node, const CDaoFieldInfo& field);
    std::string isLike(const ConditionNode& node);

    std::string number(const CDaoFieldInfo& field) const;
    std::string isNumber(const CDaoFieldInfo& field, Comparison comparison) const;
    std::string date(const CDaoFieldInfo& field) const;
    std::string equated(const CDaoFieldInfo& field, const std::string& upper) const;
    std::string folded(const CDaoFieldInfo& field, const OtherLetters& letters) const;

    template <class Value>
    const char* parameter(Value&& value) {
        out_.parameters.emplace_back(std::forward<Value>(value));
        return "?";
    }
    const char* numberParameter(const CDaoFieldInfo& field, double number);
    bool isFile() const { return engine_ == EngineKind::kAccess || engine_ == EngineKind::kSqlite; }

    const std::vector<CDaoFieldInfo>& fields_;
    EngineKind engine_;
    ConditionSearch out_;
};

std::string SearchWriter::written(const ConditionNode& node) {
    const CDaoFieldInfo& field = fields_[node.field];
    switch (node.kind) {
        case ConditionNode::Kind::kAll:
        case ConditionNode::Kind::kAny:
            return joined(node);
        case ConditionNode::Kind::kCompare:
            return compared(node);
        case ConditionNode::Kind::kFields:
            return fieldsCompared(node);
        case ConditionNode::Kind::kIsOneOf:
            return isOneOf(node);
        case ConditionNode::Kind::kIsLike:
            return isLike(node);
        default:
            return bracketed(field) + (node.isNegated ? " IS NOT NULL" : " IS NULL");
    }
}

std::string SearchWriter::joined(const ConditionNode& node) {
    const bool isAll = node.kind == ConditionNode::Kind::kAll;
    const size_t parameters = out_.parameters.size();
    std::vector<std::string> parts;
    for (const ConditionNode& part : node.parts) {
        std::string one = written(part);
        if (one != kAlways) {
            parts.push_back(std::move(one));
        } else if (!isAll) {
            out_.parameters.resize(parameters);
            return kAlways;
        }
    }
    if (parts.empty()) return kAlways;
    return balanced(parts, 0, parts.size(), isAll ? " AND " : " OR ");
}

std::string SearchWriter::compared(const ConditionNode& node) {
    const CDaoFieldInfo& field = fields_[node.field];
    const ComparedValue& value = node.values.front();
    if (const double* number = std::get_if<double>(&value))
        return numberCompared(field, node.comparison, *number);
    if (const FoldedText* text = std::get_if<FoldedText>(&value))
        return textCompared(field, node.comparison, text->upper);
    if (const Moments* moments = std::get_if<Moments>(&value))
        return dateCompared(field, node.comparison, *moments);
    const bool wantsYes = std::get<bool>(value) == (node.comparison == Comparison::kEqual);
    // Only PostgreSQL has values of their own for Yes and No.
    return bracketed(field) + (wantsYes ? " <> " : " = ") +
           (engine_ == EngineKind::kPostgres ? "FALSE" : "0");
}

// --- Numbers -------------------------------------------------------------------------------------------

// A field as a number that compares as the one that is read.
std::string SearchWriter::number(const CDaoFieldInfo& field) const {
    // Other programs keep more digits there than the field has.
    if (engine_ == EngineKind::kSqlite && field.type == dbCurrency)
        return "ROUND(" + bracketed(field) + ", 4)";
    if (engine_ == EngineKind::kSqlite && field.type == dbSingle) return "CSNG(" + bracketed(field) + ")";
    return bracketed(field);
}

// What a comparison needs beside it, since there are values in such fields that are no numbers: SQLite has
// texts, which are more than any number, and PostgreSQL has NaN, which is.
std::string SearchWriter::isNumber(const CDaoFieldInfo& field, Comparison comparison) const {
    const bool isBelow = comparison == Comparison::kEqual || comparison == Comparison::kLess ||
                         comparison == Comparison::kAtMost;
    if (engine_ == EngineKind::kSqlite && !(isBelow && number(field) == bracketed(field)))
        return " AND TYPEOF(" + bracketed(field) + ") IN ('integer', 'real')";
    if (engine_ == EngineKind::kPostgres && !isBelow && !isWhole(field.type))
        return " AND CAST(" + bracketed(field) + " AS float8) <> 'NaN'";
    return "";
}

// PostgreSQL takes a parameter for a value of the column's type unless it is told another.
const char* SearchWriter::numberParameter(const CDaoFieldInfo& field, double number) {
    if (isOf(field.type, number)) return parameter(static_cast<int32_t>(number));
    parameter(number);
    return engine_ == EngineKind::kPostgres ? "CAST(? AS float8)" : "?";
}

std::string SearchWriter::numberCompared(const CDaoFieldInfo& field, Comparison comparison, double wanted) {
    if (engine_ == EngineKind::kOtherServer && !isWhole(field.type))
        return realNearby(field, comparison, wanted);
    const std::string guard = isNumber(field, comparison);
    std::string out = number(field) + " " + SignOf(comparison) + " " + numberParameter(field, wanted);
    return guard.empty() ? out : "(" + out + guard + ")";
}

// Servers and their drivers have reals of many precisions.
std::string SearchWriter::realNearby(const CDaoFieldInfo& field, Comparison comparison, double wanted) {
    const double near = std::max(std::fabs(wanted) * 1e-5, 1e-30);
    auto atLeast = [&] { return bracketed(field) + " >= " + parameter(wanted - near); };
    auto atMost = [&] { return bracketed(field) + " <= " + parameter(wanted + near); };
    switch (comparison) {
        case Comparison::kUnequal:
            return kAlways;
        case Comparison::kEqual: {
            std::string from = atLeast();
            return "(" + from + " AND " + atMost() + ")";
        }
        case Comparison::kLess:
        case Comparison::kAtMost:
            return atMost();
        default:
            return atLeast();
    }
}

// --- Text ----------------------------------------------------------------------------------------------

// A field in upper case, in the order of code points. letters: those beside the English alphabet that matter.
std::string SearchWriter::folded(const CDaoFieldInfo& field, const OtherLetters& letters) const {
    if (engine_ != EngineKind::kPostgres) return "UCASE(" + bracketed(field) + ")";
    // What the server itself makes of case depends on where it runs.
    const std::string text =
        field.type == dbGUID ? "CAST(" + bracketed(field) + " AS varchar)" : bracketed(field);
    std::string english = "upper(" + text + " COLLATE \"C\")";
    if (letters.large.empty()) return english;
    return "translate(" + english + ", " + dao::quotedText(letters.small) + ", " +
           dao::quotedText(letters.large) + ")";
}

// A field as it is found equal to a text of which this is the upper case.
std::string SearchWriter::equated(const CDaoFieldInfo& field, const std::string& upper) const {
    // SQLite knows the cases of the English alphabet, and has indexes for them. Columns without a type hold
    // numbers too, which this would not find.
    const bool hasTexts =
        engine_ == EngineKind::kAccess || (engine_ == EngineKind::kSqlite && field.type == dbText);
    if (hasTexts && isAscii(upper)) return bracketed(field) + " COLLATE NOCASE";
    return folded(field, lettersIn(upper));
}

std::string SearchWriter::textCompared(const CDaoFieldInfo& field, Comparison comparison,
                                       const std::string& upper) {
    const bool isEqual = comparison == Comparison::kEqual, isUnequal = comparison == Comparison::kUnequal;
    if (engine_ == EngineKind::kOtherServer && (!isEqual || !isAscii(upper))) return kAlways;
    if (!isEqual && !isUnequal)
        return folded(field, isAscii(upper) ? OtherLetters{} : allLetters()) + " " + SignOf(comparison) +
               " " + parameter(upper);
    const std::string quick = isEqual ? indexed(field, {upper}) : "";
    std::string exact = equated(field, upper) + " " + SignOf(comparison) + " " + parameter(upper);
    return quick.empty() ? exact : "(" + quick + " AND " + exact + ")";
}

// What is true of all records that have one of these texts, and lets PostgreSQL find them by the index that
// IndexForSearch makes; "" where it cannot.
std::string SearchWriter::indexed(const CDaoFieldInfo& field, const std::vector<std::string>& texts) {
    if (engine_ != EngineKind::kPostgres || field.type == dbGUID ||
        !std::all_of(texts.begin(), texts.end(), isAscii))
        return "";
    std::vector<std::string> list;
    for (const std::string& text : texts) list.push_back(std::string("upper(") + parameter(text) + ")");
    return "upper(" + bracketed(field) + ") IN (" + text::join(list, ", ") + ")";
}

std::string SearchWriter::isLike(const ConditionNode& node) {
    const CDaoFieldInfo& field = fields_[node.field];
    const std::string no = node.isNegated ? "NOT " : "";
    if (isFile()) return no + "GLOB(" + parameter(node.pattern.forGlob()) + ", " + folded(field, {}) + ")";
    if (engine_ == EngineKind::kPostgres)
        return folded(field, lettersIn(node.pattern.letters())) + " " + no + "LIKE " +
               parameter(node.pattern.forLike());
    if (node.isNegated) return kAlways;
    return folded(field, {}) + " LIKE " + parameter(node.pattern.forAnyLike());
}

// --- Dates ---------------------------------------------------------------------------------------------

// A field as it is read: to the second.
std::string SearchWriter::date(const CDaoFieldInfo& field) const {
    return engine_ == EngineKind::kSqlite ? "CDATE(" + bracketed(field) + ")" : bracketed(field);
}

std::string SearchWriter::dateCompared(const CDaoFieldInfo& field, Comparison comparison,
                                       const Moments& moments) {
    auto side = [&](const char* sign, int64_t second) {
        return date(field) + sign + parameter(DateOfSecond(second));
    };
    switch (comparison) {
        case Comparison::kEqual: {
            std::string from = side(" >= ", moments.begin);
            return "(" + from + " AND " + side(" < ", moments.end) + ")";
        }
        case Comparison::kUnequal: {
            std::string before = side(" < ", moments.begin);
            return "(" + before + " OR " + side(" >= ", moments.end) + ")";
        }
        case Comparison::kLess:
            return side(" < ", moments.begin);
        case Comparison::kAtMost:
            return side(" < ", moments.end);
        case Comparison::kMore:
            return side(" >= ", moments.end);
        default:
            return side(" >= ", moments.begin);
    }
}

// --- Several -------------------------------------------------------------------------------------------

std::string SearchWriter::fieldsCompared(const ConditionNode& node) {
    const CDaoFieldInfo &left = fields_[node.field], &right = fields_[node.other];
    const std::string sign = std::string(" ") + SignOf(node.comparison) + " ";
    switch (ValueKindOf(left.type)) {
        case ValueKind::kText:
            if (engine_ == EngineKind::kOtherServer) return kAlways;
            return folded(left, allLetters()) + sign + folded(right, allLetters());
        case ValueKind::kDate:
            if (engine_ == EngineKind::kPostgres)
                return "date_trunc('second', " + date(left) + ")" + sign + "date_trunc('second', " +
                       date(right) + ")";
            return date(left) + sign + date(right);
        default:
            if (engine_ == EngineKind::kOtherServer) return kAlways;
            // Each of them may be what is no number.
            return "(" + number(left) + sign + number(right) + isNumber(left, Comparison::kUnequal) +
                   isNumber(right, Comparison::kUnequal) + ")";
    }
}

std::string SearchWriter::isOneOf(const ConditionNode& node) {
    const CDaoFieldInfo& field = fields_[node.field];
    if (!std::holds_alternative<double>(node.values.front())) return isOneOfTexts(node, field);
    if (engine_ == EngineKind::kOtherServer && !isWhole(field.type)) return kAlways;
    std::vector<std::string> list;
    for (const ComparedValue& value : node.values)
        list.emplace_back(numberParameter(field, std::get<double>(value)));
    return "(" + number(field) + (node.isNegated ? " NOT IN (" : " IN (") + text::join(list, ", ") + ")" +
           isNumber(field, node.isNegated ? Comparison::kUnequal : Comparison::kEqual) + ")";
}

std::string SearchWriter::isOneOfTexts(const ConditionNode& node, const CDaoFieldInfo& field) {
    std::vector<std::string> texts, list;
    for (const ComparedValue& value : node.values) texts.push_back(std::get<FoldedText>(value).upper);
    const std::string all = text::join(texts, "");
    if (engine_ == EngineKind::kOtherServer && (node.isNegated || !isAscii(all))) return kAlways;
    const std::string quick = node.isNegated ? "" : indexed(field, texts);
    for (const std::string& one : texts) list.emplace_back(parameter(one));
    std::string exact =
        equated(field, all) + (node.isNegated ? " NOT IN (" : " IN (") + text::join(list, ", ") + ")";
    return quick.empty() ? exact : "(" + quick + " AND " + exact + ")";
}

}  // namespace

ConditionSearch SearchFor(const ConditionNode& node, const std::vector<CDaoFieldInfo>& fields,
                          dao::EngineKind engine) {
    return SearchWriter(fields, engine).write(node);
}

}  // namespace norvane
