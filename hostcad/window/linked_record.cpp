#include "hostcad/window/linked_record.h"

#include <algorithm>

#include "hostcad/lisp/error.h"
#include "hostcad/window/product_functions.h"

namespace hostcad {
namespace {

constexpr int kString = 1000;

lisp::Value valueOf(lisp::Interpreter& lisp, const char* name) {
    const lisp::Symbol* symbol = lisp.find(name);
    return symbol ? symbol->value : lisp::Value();
}

lisp::Value listOf(const std::vector<std::string>& strings) {
    std::vector<lisp::Value> items;
    for (const std::string& string : strings) items.push_back(lisp::Value::string(string));
    return lisp::Value::list(std::move(items));
}

std::string textOf(const lisp::Value& value) {
    return value.isString() ? value.asString() : std::string();
}

}  // namespace

LinkedRecords::LinkedRecords(lisp::Interpreter& lisp)
    : lisp_(lisp), application_(textOf(valueOf(lisp, "LINK-APPLICATION$"))) {
    lisp::Value names = valueOf(lisp, "LINK-STRINGS$");
    for (lisp::Items item(names); !item.done(); item.next()) names_.push_back(textOf(*item));
    featurePlace_ = static_cast<size_t>(std::find(names_.begin(), names_.end(), "Feature") - names_.begin());
}

std::string LinkedRecords::nameOf(size_t string) const {
    return string < names_.size() ? names_[string] : std::string();
}

std::optional<std::vector<std::string>> LinkedRecords::strings(Groups groups) const {
    if (application_.empty()) return {};
    Groups data = xdataOf(groups, application_);
    if (data.empty()) return {};
    std::vector<std::string> strings;
    for (const Group& group : data)
        if (group.code == kString) strings.emplace_back(group.text());
    return strings;
}

std::string_view LinkedRecords::feature(Groups groups) const {
    if (application_.empty()) return {};
    size_t place = 0;
    for (const Group& group : xdataOf(groups, application_))
        if (group.code == kString && place++ == featurePlace_) return group.text();
    return {};
}

std::vector<std::string> LinkedRecords::pictures(
    const std::vector<std::string>& strings,
    const std::vector<std::pair<std::string, std::string>>& fields) const {
    std::vector<std::string> paths;
    lisp::ListBuilder pairs;
    for (const auto& [name, value] : fields)
        pairs.add(lisp::Value::list({lisp::Value::string(name)}, lisp::Value::string(value)));
    try {
        const std::optional<lisp::Value> result =
            callProduct(lisp_, "LINK-PICTURES", {listOf(strings), pairs.take()});
        if (!result) return paths;
        for (lisp::Items item(*result); !item.done(); item.next()) paths.push_back(textOf(*item));
    } catch (const lisp::Error&) {
        // The record is shown without them.
    }
    return paths;
}

std::vector<std::pair<std::string, std::string>> LinkedRecords::record(
    const std::vector<std::string>& strings, std::string& problem) const {
    std::vector<std::pair<std::string, std::string>> fields;
    problem.clear();
    try {
        const std::optional<lisp::Value> result = callProduct(lisp_, "LINK-RECORD", {listOf(strings)});
        if (!result) return fields;
        if (result->isNil()) problem = "There is no such record.";
        if (result->isString()) problem = result->asString();
        fields = textPairs(*result);
    } catch (const lisp::Error& error) {
        problem = error.fullText();
    }
    return fields;
}

}  // namespace hostcad
