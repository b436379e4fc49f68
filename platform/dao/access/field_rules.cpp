#include "platform/dao/access/field_rules.h"

#include <cmath>

#include "platform/dao/access_sql.h"
#include "platform/dao/convert.h"
#include "platform/dao/jet/catalogue.h"
#include "platform/dao/sql_tokens.h"
#include "platform/text/text.h"

namespace dao::access {
namespace {

// The defaults that depend on the moment.
bool isMoment(std::string_view expression, Variant& value) {
    std::string_view s = text::trim(expression);
    if (s.starts_with('=')) s = text::trim(s.substr(1));
    double now = jet::now().days, day = std::floor(now);
    if (text::equalNoCase(s, "Now()"))
        value = Variant(Date{now});
    else if (text::equalNoCase(s, "Date()"))
        value = Variant(Date{day});
    else if (text::equalNoCase(s, "Time()"))
        value = Variant(Date{now - day});
    else
        return false;
    return true;
}

}  // namespace

FieldRules::FieldRules(sqlite3* db, std::vector<CDaoFieldInfo> fields)
    : db_(db), fields_(std::move(fields)), defaults_(fields_.size()), rules_(fields_.size()) {}

Variant FieldRules::defaultOf(size_t field) {
    const CDaoFieldInfo& info = fields_[field];
    if (info.defaultValue.empty() || (info.attributes & dbAutoIncrField)) return {};
    Variant value;
    if (isMoment(info.defaultValue, value)) return convertTo(std::move(value), info);
    if (!defaults_[field])
        defaults_[field] = std::make_unique<sqlite::Statement>(
            db_, "SELECT " + translateDefault(info.defaultValue, isTextType(info.type)));
    sqlite::Statement& statement = *defaults_[field];
    sqlite::Resetting resetting(statement);
    statement.step();
    return convertTo(statement.value(0, 0), info);
}

Variant FieldRules::accepted(size_t field, Variant value) {
    const CDaoFieldInfo& info = fields_[field];
    Variant converted = convertTo(std::move(value), info);
    checkValue(converted, info);
    if (info.validationRule.empty() || converted.isNull()) return converted;
    if (!rules_[field])
        rules_[field] = std::make_unique<sqlite::Statement>(
            db_, "SELECT (" + translateRule(info.validationRule, info.name) +
                     ") FROM (SELECT ?1 COLLATE NOCASE AS " + quotedName(info.name) + ")");
    sqlite::Statement& statement = *rules_[field];
    sqlite::Resetting resetting(statement);
    statement.bind(1, converted);
    statement.step();
    // A rule that gives Null is kept.
    if (sqlite3_column_type(statement.handle(), 0) != SQLITE_NULL && statement.integer(0) == 0)
        throw CDaoException("The value breaks the validation rule " + info.validationRule + ".");
    return converted;
}

}  // namespace dao::access
