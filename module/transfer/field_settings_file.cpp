#include "module/transfer/field_settings_file.h"

#include <algorithm>

#include "module/exchange/text_lines.h"
#include "module/store/name_rules.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr const char* kYes = "Yes";
constexpr const char* kNo = "No";
constexpr const char* kId = "PT_ID";
constexpr char kBar = '|';

std::optional<FieldSetting> parseLine(std::string_view line) {
    const size_t first = line.find(kBar);
    if (first == std::string_view::npos) return std::nullopt;
    const size_t second = line.find(kBar, first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const std::string_view type = text::trim(line.substr(first + 1, second - first - 1));
    const std::string_view mark = text::trim(line.substr(second + 1));
    FieldSetting setting;
    setting.name = text::upper(text::trim(line.substr(0, first)));
    if (!IsGoodName(setting.name) || type.empty() || mark.empty()) return std::nullopt;
    setting.type = type == kRealType || type == kIntType ? type : kCharType;
    setting.isKey = mark == kYes;
    return setting;
}

}  // namespace

std::optional<std::vector<FieldSetting>> ReadFieldSettings(const std::string& path) {
    constexpr size_t kLongestLine = 4095;
    std::optional<TextLines> file = TextLines::open(path, kLongestLine);
    if (!file) return std::nullopt;
    std::vector<FieldSetting> settings;
    while (const std::optional<std::string> line = file->next())
        if (std::optional<FieldSetting> setting = parseLine(text::trim(*line)))
            settings.push_back(std::move(*setting));
    return settings;
}

bool WriteFieldSettings(const std::string& path, const std::vector<AsciiField>& fields) {
    std::string content;
    for (const AsciiField& field : fields)
        content += field.name + kBar + field.type + kBar + (field.isKey ? kYes : kNo) + "\n";
    return files::replace(path, content);
}

void ApplyFieldSettings(const std::vector<FieldSetting>& settings, const std::vector<NamedType>& tableFields,
                        std::vector<AsciiField>& fields) {
    const size_t count = std::min(settings.size(), fields.size());
    const auto reached = settings.begin() + static_cast<std::ptrdiff_t>(count);
    const auto key = std::find_if(settings.begin(), reached, [](const FieldSetting& s) { return s.isKey; });
    for (size_t i = 0; i < count; ++i) {
        AsciiField& field = fields[i];
        const FieldSetting& setting = settings[i];
        const std::string former = field.isKey ? field.formerName : field.name;
        field.isKey = false;
        field.formerName.clear();
        field.name = setting.name;
        field.type = setting.type;
        for (const NamedType& known : tableFields)
            if (text::equalNoCase(known.name, setting.name)) field.type = known.type;
        if (key == settings.begin() + static_cast<std::ptrdiff_t>(i)) {
            if (setting.name == kId) field.name = former;
            SetKey(fields, i);
        }
    }
}

}  // namespace norvane
