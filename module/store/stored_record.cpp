#include "module/store/stored_record.h"

#include <algorithm>
#include <optional>

#include "module/store/output_database.h"
#include "module/store/server_sign_in.h"
#include "module/store/statements.h"
#include "platform/dao/sql_tokens.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kPointId = "PT_ID";
constexpr const char* kGisKey = "GIS_KEY";

bool isPlain(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return c >= ' ' && c < 0x7F; });
}

bool canStandInStatement(const CDaoFieldInfo& field) {
    return field.name.find_first_of("[]") == std::string::npos;
}

bool hasText(const RecordValues& values, std::optional<size_t> place) {
    return place && values[*place].is<std::string>() && !values[*place].get<std::string>().empty();
}

// What a value is in a statement; "" for one that does not compare well there.
std::string literal(const dao::Variant& value) {
    if (value.is<std::string>()) {
        const std::string& text = value.get<std::string>();
        return text.find('\0') == std::string::npos ? dao::quotedText(text) : "";
    }
    const bool isWhole = value.is<uint8_t>() || value.is<int16_t>() || value.is<int32_t>();
    return isWhole ? dao::toText(value) : "";
}

}  // namespace

std::vector<CDaoFieldInfo> FieldsOfTable(CDaoDatabase& database, const std::string& table) {
    CDaoTableDef definition(&database);
    definition.Open(table);
    std::vector<CDaoFieldInfo> fields(static_cast<size_t>(definition.GetFieldCount()));
    for (size_t i = 0; i < fields.size(); ++i) definition.GetFieldInfo(static_cast<int>(i), fields[i]);
    return fields;
}

std::optional<size_t> PlaceOfField(const std::vector<CDaoFieldInfo>& fields, const std::string& name) {
    for (size_t i = 0; i < fields.size(); ++i)
        if (text::equalNoCase(fields[i].name, name)) return i;
    return std::nullopt;
}

StoredRecord::StoredRecord(CDaoDatabase& database, const std::string& table,
                           const std::vector<CDaoFieldInfo>& fields, const RecordValues& known)
    : database_(database),
      table_(table),
      fields_(fields),
      known_(known),
      onServer_(database.GetConnect().onServer()),
      pointId_(PlaceOfField(fields, kPointId)),
      gisKey_(PlaceOfField(fields, kGisKey)),
      records_(&database) {
    if (known_.size() != fields_.size())
        throw CDaoException("The columns of " + table + " have changed: open it anew.");
    if (onServer_) lock();
    find();
}

std::string StoredRecord::name() const {
    return hasText(known_, pointId_) ? "PT_ID " + known_[*pointId_].get<std::string>() : "The record";
}

// One field and its value; on a server texts that have capitals are looked for as the index there has them.
std::string StoredRecord::comparison(size_t place, bool inCapitals) const {
    const dao::Variant& value = known_[place];
    const std::string field =
        onServer_ ? StatementName(fields_[place].name) : BracketedName(fields_[place].name);
    if (value.isNull()) return field + " IS NULL";
    const std::string right = literal(value);
    if (!inCapitals) return right.empty() ? "" : field + " = " + right;
    return "UCASE(" + field + ") = " + literal(dao::Variant(text::upper(value.get<std::string>())));
}

// Finds the record and perhaps others, which their values tell apart.
std::string StoredRecord::condition() const {
    std::vector<std::string> parts;
    const auto add = [&](size_t place) {
        if (!canStandInStatement(fields_[place])) return;
        const bool isText = known_[place].is<std::string>();
        const bool inCapitals =
            hasText(known_, pointId_) && onServer_ && isText && isPlain(known_[place].get<std::string>());
        if (std::string part = comparison(place, inCapitals); !part.empty()) parts.push_back(std::move(part));
    };
    if (hasText(known_, pointId_)) {
        add(*pointId_);
        if (gisKey_) add(*gisKey_);
    } else {
        for (size_t i = 0; i < fields_.size(); ++i)
            if (fields_[i].type != dbBoolean && !(onServer_ && fields_[i].type == dbMemo)) add(i);
    }
    return parts.empty() ? "" : " WHERE " + text::join(parts, " AND ");
}

// Who saves the sheet of this record waits too, and finds what has been written; whoever else changes it by a
// program of his own waits for the change of nothing.
void StoredRecord::lock() {
    const std::string table = QualifiedTable(database_, table_);
    if (hasText(known_, pointId_) && hasText(known_, gisKey_)) {
        const RecordKey key{table, kPointId, known_[*pointId_].get<std::string>(),
                            known_[*gisKey_].get<std::string>()};
        CDaoRecordset others(&database_);
        others.Open(dbOpenDynaset, FindRecordStatement(Route::kOdbc, key, true, FindPurpose::kSave),
                    dbDenyWrite);
    }
    const std::string where = condition();
    if (where.empty()) return;
    const auto same = std::find_if(fields_.begin(), fields_.end(), [](const CDaoFieldInfo& field) {
        return canStandInStatement(field) && !(field.attributes & dbAutoIncrField);
    });
    if (same == fields_.end()) return;
    const std::string field = StatementName(same->name);
    database_.Execute("UPDATE " + table + " SET " + field + " = " + field + where);
}

RecordValues StoredRecord::read() {
    RecordValues values;
    for (size_t i = 0; i < fields_.size(); ++i) values.push_back(records_.GetFieldValue(static_cast<int>(i)));
    return values;
}

void StoredRecord::open() {
    const std::string from =
        onServer_ ? "SELECT * FROM " + QualifiedTable(database_, table_) : SelectTable(table_);
    records_.Open(dbOpenDynaset, from + condition());
    if (static_cast<size_t>(records_.GetFieldCount()) != fields_.size())
        throw CDaoException("The columns of " + table_ + " have changed: open it anew.");
}

void StoredRecord::find() {
    open();
    long position = 0, changed = -1;
    for (; !records_.IsEOF(); records_.MoveNext(), ++position) {
        RecordValues values = read();
        const bool isSame = values == known_;
        // Without a key the others are other records.
        if (!isSame && (changed >= 0 || !hasText(known_, pointId_))) continue;
        present_ = std::move(values);
        state_ = isSame ? State::kSame : State::kChanged;
        if (isSame) return;
        changed = position;
    }
    if (changed >= 0) records_.SetAbsolutePosition(changed);
}

void StoredRecord::write(const std::vector<std::pair<size_t, dao::Variant>>& values) {
    records_.Edit();
    for (const auto& [place, value] : values) records_.SetFieldValue(static_cast<int>(place), value);
    records_.Update();
    present_ = read();
    if (!onServer_ || !hasText(known_, pointId_)) return;
    // What the server has made of the values.
    open();
    if (records_.IsEOF()) return;
    RecordValues kept = read();
    records_.MoveNext();
    if (records_.IsEOF()) present_ = std::move(kept);
}

void StoredRecord::erase() {
    records_.Delete();
}

}  // namespace norvane
