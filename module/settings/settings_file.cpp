#include "module/settings/settings_file.h"

#include "module/cad/lisp_symbols.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

std::vector<std::string> linesWithEnds(std::string_view content) {
    std::vector<std::string> lines;
    while (!content.empty()) {
        size_t end = content.find('\n');
        size_t length = end == std::string_view::npos ? content.size() : end + 1;
        lines.emplace_back(content.substr(0, length));
        content.remove_prefix(length);
    }
    return lines;
}

}  // namespace

std::optional<std::string> SettingsFile::path() {
    std::optional<std::string> folder = UserDirectory();
    return folder ? std::optional(*folder + "gps.ini") : std::nullopt;
}

std::optional<SettingsFile> SettingsFile::read() {
    std::optional<std::string> path = SettingsFile::path();
    if (!path) return std::nullopt;
    std::optional<std::string> content = files::read(*path);
    if (!content) return std::nullopt;
    SettingsFile file;
    file.path_ = *path;
    file.lines_ = linesWithEnds(*content);
    return file;
}

void SettingsFile::ensure() {
    std::optional<std::string> path = SettingsFile::path();
    if (!path || files::exists(*path)) return;
    files::replace(
        *path, std::string(settings::kAnchor) + "\n" + settings::kOutput + "\n" + settings::kTemplate + "\n");
}

int SettingsFile::find(const std::string& key) const {
    for (size_t i = 0; i < lines_.size(); ++i)
        if (text::startsWith(lines_[i], key)) return static_cast<int>(i);
    return -1;
}

std::optional<std::string> SettingsFile::value(const std::string& key) const {
    int at = find(key);
    if (at < 0) return std::nullopt;
    std::string value(text::trimRight(std::string_view(lines_[static_cast<size_t>(at)]).substr(key.size())));
    return text::isValidUtf8(value) ? value : text::decode(value);
}

bool SettingsFile::place(const std::string& key, const std::string& value, int after) {
    if (find(settings::kAnchor) < 0) return false;
    if (int at = find(key); at >= 0)
        lines_[static_cast<size_t>(at)] = key + value;
    else
        lines_.insert(lines_.begin() + after + 1, key + value);
    return true;
}

bool SettingsFile::placeTemplate(const dao::DatabasePath& path) {
    return place(settings::kTemplate, path, find(settings::kAnchor));
}

bool SettingsFile::placeOutput(const dao::DatabasePath& path) {
    int templateLine = find(settings::kTemplate);
    return place(settings::kOutput, path, templateLine >= 0 ? templateLine : find(settings::kAnchor));
}

void SettingsFile::placeObjectData(const std::string& value) {
    if (int at = find(settings::kObjectData); at >= 0)
        lines_[static_cast<size_t>(at)] = settings::kObjectData + value;
    else
        lines_.push_back(settings::kObjectData + value);
}

void SettingsFile::write() const {
    std::string content;
    for (const std::string& line : lines_) {
        content += line;
        if (line.empty() || line.back() != '\n') content += '\n';
    }
    files::replace(path_, content);
}

}  // namespace norvane
