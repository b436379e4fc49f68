#include "module/transfer/note_records.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <unordered_map>

#include "module/store/name_rules.h"
#include "module/transfer/value_classifier.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kNotes = "NOTES";
constexpr const char* kHorizontal = "HRMS_CEP";
constexpr const char* kVertical = "VRMS_SEP";
constexpr const char* kCondition = "RTK_CONDITION";

// A line while rules are tried on it.
class Line {
  public:
    Line(std::string_view line, std::string_view id, std::vector<FieldValue>& fields)
        : line_(line), id_(id), fields_(fields) {}

    void classify() {
        const bool fits = quality("CEP:", "SEP:") || alone("CEP,", "SEP,", kHorizontal) ||
                          alone("SEP,", "CEP,", kVertical) || quality("HRMS:", "VRMS:") ||
                          alone("HRMS,", "VRMS,", kHorizontal) || alone("VRMS,", "HRMS,", kVertical) ||
                          begins("Status,", kCondition) || statePlane() ||
                          pair("LAT:", "LON:", "LATITUDE", "LONGITUDE") || rodHeight() ||
                          pair("DOP:", "SAT:", "PDOP", "SATELLITE") || alone("DOP,", "SAT,", "PDOP") ||
                          alone("SAT,", "DOP,", "SATELLITE") || begins("Date,", "DATE") ||
                          begins("Time,", "TIME") || pointData() || begins("LAT,", "LATITUDE") ||
                          begins("LON,", "LONGITUDE") || begins("Latitude,", "LATITUDE") ||
                          begins("Longitude,", "LONGITUDE") || dateAndTime() || pointLine() || namedValue();
        if (!fits) add(kNotes, line_);
    }

  private:
    void add(std::string_view name, std::string_view value) {
        fields_.push_back({std::string(name), std::string(text::trim(value))});
    }
    // What stands behind a beginning; nothing for a line that begins otherwise.
    std::optional<std::string_view> behind(std::string_view beginning) const {
        if (!text::startsWith(line_, beginning)) return std::nullopt;
        return line_.substr(beginning.size());
    }

    bool begins(std::string_view mark, std::string_view field) {
        const auto rest = behind(mark);
        if (rest) add(field, *rest);
        return rest.has_value();
    }
    bool alone(std::string_view mark, std::string_view other, std::string_view field) {
        return text::startsWith(line_, mark) && line_.find(other) == std::string_view::npos &&
               begins(mark, field);
    }
    bool pair(std::string_view first, std::string_view second, std::string_view firstField,
              std::string_view secondField) {
        const auto rest = behind(first);
        const size_t at = rest ? rest->find(second) : std::string_view::npos;
        if (at == std::string_view::npos) return false;
        add(firstField, rest->substr(0, at));
        add(secondField, rest->substr(at + second.size()));
        return true;
    }
    // A pair with the state of the receiver behind a blank.
    bool quality(std::string_view first, std::string_view second) {
        if (!pair(first, second, kHorizontal, kVertical)) return false;
        std::string& vertical = fields_.back().value;
        const size_t blank = vertical.find_first_of(" \t");
        if (blank == std::string::npos) return true;
        const std::string condition(text::trim(std::string_view(vertical).substr(blank)));
        vertical.resize(blank);
        if (!condition.empty()) add(kCondition, condition);
        return true;
    }
    bool statePlane() {
        const auto rest = behind("STATE PLANE:");
        if (!rest) return false;
        const std::string_view values = text::trim(*rest);
        size_t at = values.find(',');
        if (at == std::string_view::npos) at = values.find_first_of(" \t");
        add("STATE_PLANE_EAST", values.substr(0, at));
        add("STATE_PLANE_NORTH", at == std::string_view::npos ? "" : values.substr(at + 1));
        return true;
    }
    bool rodHeight() {
        const auto rest = behind("ROD HT");
        if (!rest) return false;
        std::string_view value = text::trim(*rest);
        if (!value.empty() && (value.front() == ':' || value.front() == ',')) value.remove_prefix(1);
        add("ROD_HEIGHT", value);
        return true;
    }
    bool pointData() {
        for (const char* mark : {"Pt Data,", "PT_DATA,"})
            if (const auto rest = behind(mark)) {
                coordinates(*rest);
                return true;
            }
        return false;
    }
    bool dateAndTime() {
        const auto marks =
            std::count_if(line_.begin(), line_.end(), [](char c) { return c == ':' || c == '/'; });
        if (marks != 4) return false;
        const size_t blank = line_.find_first_of(" \t");
        add("DATE", line_.substr(0, blank));
        if (blank != std::string_view::npos) add("TIME", line_.substr(blank));
        return true;
    }
    bool pointLine() {
        auto rest = behind(id_);
        if (id_.empty() || !rest || rest->empty()) return false;
        const bool isApart = rest->front() == ' ' || rest->front() == '\t' || rest->front() == ',';
        if (!isApart) return false;
        std::string_view values = text::trim(*rest);
        if (!values.empty() && values.front() == ',') values.remove_prefix(1);
        coordinates(values);
        return true;
    }
    void coordinates(std::string_view values) {
        auto next = [&values](bool isLast = false) {
            const size_t comma = isLast ? std::string_view::npos : values.find(',');
            const std::string_view value = values.substr(0, comma);
            values = comma == std::string_view::npos ? "" : values.substr(comma + 1);
            return value;
        };
        for (const char* field : {"NORTHING", "EASTING", "ELEVATION"}) add(field, next());
        if (const std::string_view description = text::trim(next(true)); !description.empty())
            add("DESCRIPTION", description);
    }
    bool namedValue() {
        const size_t comma = line_.find(',');
        if (comma == std::string_view::npos || line_.find(',', comma + 1) != std::string_view::npos)
            return false;
        const std::string name = text::upper(text::trim(line_.substr(0, comma)));
        if (!IsGoodName(name)) return false;
        add(name, line_.substr(comma + 1));
        return true;
    }

    std::string_view line_, id_;
    std::vector<FieldValue>& fields_;
};

bool isNumber(const std::string& id) {
    return !id.empty() && id.find_first_not_of("0123456789") == std::string::npos;
}

// One that is too large for 64 bits is the largest.
int64_t numberOf(const std::string& id) {
    int64_t number = 0;
    const auto result = std::from_chars(id.data(), id.data() + id.size(), number);
    return result.ec == std::errc() ? number : std::numeric_limits<int64_t>::max();
}

// "4-5,19" of ascending numbers, until the text is long.
std::string rangesOf(const std::vector<int64_t>& numbers) {
    constexpr size_t kLong = 1024;
    std::string ranges;
    for (size_t first = 0, behind = 0; first < numbers.size() && ranges.size() <= kLong; first = behind) {
        for (behind = first + 1; behind < numbers.size() && numbers[behind] - 1 == numbers[behind - 1];)
            ++behind;
        if (!ranges.empty()) ranges += ',';
        ranges += std::to_string(numbers[first]);
        if (behind - first > 1) ranges += '-' + std::to_string(numbers[behind - 1]);
    }
    return ranges;
}

// A field that is new holds whole numbers; the last value that is no such number decides otherwise.
void classify(ImportColumn& column, const std::string& value) {
    if (value.empty()) return;
    column.isEmpty = false;
    switch (ClassifyValue(value)) {
        case ValueClass::kInteger:
            // More digits than a long column holds stay as they are.
            if (!FitsLong(value)) column.type = ColumnClass::kText;
            break;
        case ValueClass::kReal:
            column.type = ColumnClass::kDouble;
            break;
        case ValueClass::kText:
            column.type = ColumnClass::kText;
            break;
    }
}

}  // namespace

void ClassifyNoteLine(std::string_view line, std::string_view id, std::vector<FieldValue>& fields) {
    Line(line, id, fields).classify();
}

std::optional<NoteRecordList> ReadNoteRecords(const std::string& path) {
    const std::optional<std::vector<NoteBlock>> blocks = ReadNoteBlocks(path);
    if (!blocks) return std::nullopt;
    NoteRecordList list;
    list.blocks = blocks->size();
    for (const NoteBlock& block : *blocks) {
        if (block.id.empty()) {
            ++list.withoutId;
            continue;
        }
        PointNote record;
        record.id = block.id;
        if (block.file)
            record.feature = FeatureOfNoteFile(*block.file);
        else
            list.withoutFeature.push_back(block.id);
        record.fields.reserve(block.lines.size());
        for (const std::string& line : block.lines) ClassifyNoteLine(line, block.id, record.fields);
        list.records.push_back(std::move(record));
    }
    return list;
}

std::vector<NoteFeature> FeaturesOf(const NoteRecordList& list) {
    std::vector<NoteFeature> features;
    std::unordered_map<std::string, size_t> known;
    for (const PointNote& record : list.records) {
        if (record.feature.empty()) continue;
        const auto [place, isNew] = known.try_emplace(record.feature, features.size());
        if (isNew) features.push_back({record.feature, {}});
        features[place->second].records.push_back(&record);
    }
    return features;
}

std::vector<NotePoint> PointsOf(const NoteFeature& feature) {
    std::vector<NotePoint> points;
    std::unordered_map<std::string, size_t> known;
    for (const PointNote* record : feature.records) {
        const auto [place, isNew] = known.try_emplace(record->id, points.size());
        if (isNew) points.push_back({record->id, {}});
        points[place->second].blocks.push_back(record);
    }
    return points;
}

std::string FeatureCaption(const NoteFeature& feature) {
    constexpr int64_t kFirstLine = 1000000000;  // ids from here on are those of lines
    const std::vector<NotePoint> points = PointsOf(feature);
    const std::string beginning = feature.name + ": " + std::to_string(points.size());
    std::vector<int64_t> numbers;
    for (const NotePoint& point : points) {
        if (!isNumber(point.id)) return beginning + " points >>...";
        numbers.push_back(numberOf(point.id));
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    const bool isLines = !numbers.empty() && numbers.back() >= kFirstLine;
    return beginning + (isLines ? " lines >> " : " points >> ") + rangesOf(numbers);
}

TableImport ImportOf(const NoteFeature& feature) {
    TableImport import;
    import.table = feature.name;
    std::unordered_map<std::string, size_t> columns;
    for (const PointNote* record : feature.records) {
        ImportRecord row{record->id, {}};
        row.values.reserve(record->fields.size());
        for (const FieldValue& field : record->fields) {
            if (field.name == "PT_ID" || field.name == "GIS_KEY") continue;
            const auto [place, isNew] = columns.try_emplace(field.name, import.columns.size());
            const size_t column = place->second;
            if (isNew) import.columns.push_back({field.name, ColumnClass::kLong, true});
            classify(import.columns[column], field.value);
            if (field.value.empty()) continue;
            auto known = std::find_if(row.values.begin(), row.values.end(),
                                      [&](const auto& value) { return value.first == column; });
            if (known == row.values.end())
                row.values.emplace_back(column, field.value);
            else if (field.name == kNotes)
                known->second += " " + field.value;
            else
                known->second = field.value;
        }
        import.records.push_back(std::move(row));
    }
    return import;
}

}  // namespace norvane
