#include "module/settings/dialog_state.h"

#include <array>
#include <filesystem>
#include <string_view>
#include <vector>

#include "module/cad/lisp_symbols.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kLongestLine = 4095;

// The mark in front of each value; index 0 has none.
constexpr std::array<std::string_view, 37> kTags = {
    "",   "#1", "#2", "#3", "&1", "&2", "&3", "&4", "&5", "&6", "&7", "#4", "#5",
    "#6", "#7", "#8", "#9", "#A", "#B", "#C", "#D", "#E", "#F", "#G", "#H", "#I",
    "#J", "#K", "#L", "#M", "#N", "@1", "@2", "@3", "@4", "@5", "@6"};

bool isIndex(int index) {
    return index >= 0 && static_cast<size_t>(index) < kTags.size();
}

std::string statePath() {
    std::string folder = UserDirectory().value_or("");
    if (folder.empty()) {
        std::error_code error;
        folder = std::filesystem::current_path(error).string() + "\\";
    }
    return folder + "featlink.ini";
}

bool belongsTo(std::string_view line, int index) {
    if (index == 0) return std::string_view("#&@").find(line.front()) == std::string_view::npos;
    return text::startsWith(line, kTags[static_cast<size_t>(index)]);
}

// The lines that hold something, trimmed. A file that cannot be read has none.
std::vector<std::string> readEntries(const std::string& path) {
    std::vector<std::string> entries;
    for (const std::string& line : files::readLines(path, kLongestLine).value_or(std::vector<std::string>{}))
        if (std::string_view entry = text::trim(line); !entry.empty()) entries.emplace_back(entry);
    return entries;
}

}  // namespace

std::string readState(int index) {
    std::string path = statePath();
    std::string value;
    if (!files::exists(path)) {
        files::replace(path, "");
        return value;
    }
    if (!isIndex(index)) return value;
    for (const std::string& entry : readEntries(path))
        if (belongsTo(entry, index)) value = entry.substr(kTags[static_cast<size_t>(index)].size());
    return text::isValidUtf8(value) ? value : text::decode(value);
}

void writeState(const std::string& value, int index) {
    if (!isIndex(index)) return;
    std::string path = statePath();
    if (files::exists(path) && !files::read(path)) return;  // what cannot be read must not be lost
    std::string line = std::string(kTags[static_cast<size_t>(index)]) + value;
    std::vector<std::string> entries = readEntries(path);
    bool replaced = false;
    for (std::string& entry : entries) {
        if (!belongsTo(entry, index)) continue;
        if (entry == line) return;  // nothing to write: a save of the sheet need not wait for the disk
        entry = line;
        replaced = true;
        break;
    }
    if (!replaced) entries.push_back(line);
    std::string content;
    for (const std::string& entry : entries)
        if (!entry.empty()) content += entry + "\n";
    files::replace(path, content);
}

void writeState(const dao::DatabasePath& path, state::DatabaseEntry entry) {
    writeState(path.text(), entry.index);
}

}  // namespace norvane
