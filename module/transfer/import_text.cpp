#include "module/transfer/import_text.h"

#include <algorithm>
#include <unordered_set>

#include "module/exchange/text_lines.h"
#include "module/store/database.h"
#include "module/store/name_rules.h"
#include "module/store/output_database.h"
#include "module/transfer/value_classifier.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

const char* const kRealType = "Real";
const char* const kIntType = "Int";
const char* const kCharType = "Char";

namespace {

constexpr const char* kId = "PT_ID";
constexpr const char* kFeature = "GIS_KEY";

// A piece as a value, with the name in front of it where it has one.
struct Piece {
    std::string_view name;
    std::string_view value;
};

bool isFieldName(std::string_view name) {
    return IsGoodName(name) && !text::equalNoCase(name, kId) && !text::equalNoCase(name, kFeature);
}

Piece takeApart(std::string_view piece, const TextFormat& format) {
    const size_t at = format.embedded ? piece.find(*format.embedded) : std::string_view::npos;
    if (at != std::string_view::npos)
        if (const std::string_view name = text::trim(piece.substr(0, at)); isFieldName(name))
            return {name, text::trim(piece.substr(at + 1))};
    return {{}, text::trim(piece)};
}

const char* typeOf(std::string_view value) {
    switch (ClassifyValue(value)) {
        case ValueClass::kInteger:
            return FitsLong(value) ? kIntType : kCharType;
        case ValueClass::kReal:
            return kRealType;
        default:
            return kCharType;
    }
}

std::string pieceCount(size_t count) {
    return text::counted(static_cast<long>(count), "field", "fields");
}

// Why a line is no record; nothing for one that is.
std::optional<std::string> faultOf(const std::optional<std::vector<std::string>>& pieces, size_t wanted) {
    if (!pieces) return "a quote is not closed";
    if (pieces->empty()) return "empty";
    if (pieces->size() != wanted)
        return pieceCount(pieces->size()) + " in place of " + std::to_string(wanted);
    return std::nullopt;
}

// The fields become columns, but for the key and for the feature, which is always the table.
void addColumns(const TextImport& import, TextRecords& records) {
    for (const AsciiField& field : import.fields) {
        const bool isColumn = !field.isKey && !text::equalNoCase(field.name, kFeature);
        records.columnOf.push_back(isColumn ? records.import.columns.size() : TextRecords::kNoColumn);
        if (isColumn)
            records.import.columns.push_back({text::upper(field.name), ClassOfTextType(field.type), false});
    }
}

}  // namespace

ColumnClass ClassOfTextType(std::string_view type) {
    return type == kRealType  ? ColumnClass::kDouble
           : type == kIntType ? ColumnClass::kLong
                              : ColumnClass::kText;
}

std::vector<AsciiField> ParseLine(std::string_view line, const TextFormat& format) {
    std::vector<AsciiField> fields;
    const std::optional<std::vector<std::string>> pieces = SplitLine(line, format);
    if (!pieces) return fields;
    long number = 1;
    for (const std::string& text : *pieces) {
        const Piece piece = takeApart(text, format);
        AsciiField field;
        field.name = piece.name.empty() ? text::format("%s%ld", "FIELD", number++) : text::upper(piece.name);
        field.value = piece.value;
        field.type = typeOf(piece.value);
        fields.push_back(std::move(field));
    }
    return fields;
}

std::vector<std::string> NamesOfHeadings(const std::vector<std::string>& pieces) {
    constexpr size_t kLongest = 63;
    std::vector<std::string> names;
    for (const std::string& piece : pieces) {
        std::string name;
        const std::string heading = text::upper(text::trim(piece));
        for (size_t at = 0; at < heading.size() && name.size() < kLongest;) {
            const size_t from = at;
            text::nextCodePoint(heading, at);
            const std::string_view letter = std::string_view(heading).substr(from, at - from);
            name += letter == " " || IsGoodName(letter) ? letter : "_";
        }
        name = text::trimRight(name);
        const bool isKnown = std::find(names.begin(), names.end(), name) != names.end();
        names.push_back(isFieldName(name) && !isKnown ? name : "");
    }
    return names;
}

void ResetKey(std::vector<AsciiField>& fields) {
    for (AsciiField& field : fields) {
        if (!field.isKey) continue;
        field.isKey = false;
        field.name = std::exchange(field.formerName, "");
    }
}

void SetKey(std::vector<AsciiField>& fields, size_t key) {
    ResetKey(fields);
    AsciiField& field = fields[key];
    field.isKey = true;
    field.formerName = std::exchange(field.name, kId);
    field.type = kCharType;
}

std::optional<size_t> KeyOf(const std::vector<AsciiField>& fields) {
    for (size_t i = 0; i < fields.size(); ++i)
        if (fields[i].isKey) return i;
    return std::nullopt;
}

const std::vector<PointOrder>& PointOrders() {
    static const std::vector<PointOrder> orders = {
        {"PNEZD", {kId, "NORTHING", "EASTING", "ELEVATION", "DESCRIPTION"}},
        {"PENZD", {kId, "EASTING", "NORTHING", "ELEVATION", "DESCRIPTION"}},
        {"NEZ", {"NORTHING", "EASTING", "ELEVATION"}},
        {"ENZ", {"EASTING", "NORTHING", "ELEVATION"}},
    };
    return orders;
}

void ApplyOrder(std::vector<AsciiField>& fields, const PointOrder& order) {
    ResetKey(fields);
    for (size_t i = 0; i < order.fields.size() && i < fields.size(); ++i) {
        const std::string name = order.fields[i];
        if (name == kId) {
            SetKey(fields, i);
            continue;
        }
        fields[i].name = name;
        fields[i].type = name == "DESCRIPTION" ? kCharType : kRealType;
    }
}

std::optional<TextRecords> ReadTextRecords(const TextImport& import, const ReadSteps& goOn) {
    std::optional<TextLines> file = TextLines::open(import.path);
    if (!file) return std::nullopt;
    TextRecords records;
    records.import.table = import.table;
    addColumns(import, records);
    while (const std::optional<std::string> line = file->next()) {
        if (!goOn(file->position(), file->size())) return std::nullopt;
        ++records.lines;
        if (import.hasHeadings && records.lines == 1) {
            records.leftOut.push_back({1, "the headings"});
            continue;
        }
        const auto pieces = SplitLine(TrimmedLine(*line, import.format.delimiter), import.format);
        if (const std::optional<std::string> fault = faultOf(pieces, import.fields.size())) {
            records.leftOut.push_back({records.lines, *fault});
            continue;
        }
        ImportRecord record;
        for (size_t i = 0; i < pieces->size(); ++i) {
            const std::string_view value = takeApart((*pieces)[i], import.format).value;
            if (import.fields[i].isKey)
                record.id = value;
            else if (records.columnOf[i] != TextRecords::kNoColumn && !value.empty())
                record.values.emplace_back(records.columnOf[i], value);
        }
        if (record.id.empty()) ++records.withoutId;
        records.import.records.push_back(std::move(record));
    }
    return records;
}

void NumberRecords(const std::string& database, TextRecords& records) {
    if (records.withoutId == 0) return;
    std::unordered_set<std::string> taken;
    for (const ImportRecord& record : records.import.records) taken.insert(record.id);
    WithDatabase(database, [&](CDaoDatabase& open) {
        for (std::string& id : ListKeys(open, records.import.table)) taken.insert(std::move(id));
    });
    long number = static_cast<long>(ui::now());
    for (ImportRecord& record : records.import.records) {
        if (!record.id.empty()) continue;
        while (taken.contains(text::format("%ld", number))) ++number;
        record.id = text::format("%ld", number++);
    }
}

}  // namespace norvane
