#include "module/coords/note_file.h"

#include <algorithm>

#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// What stands in front of the line of the first block.
std::string prefaceOf(const std::string& content) {
    size_t at = 0;
    while (at < content.size()) {
        size_t end = std::min(content.find('\n', at), content.size());
        if (ParseNoteHeading(text::trim(std::string_view(content).substr(at, end - at)))) break;
        at = std::min(end + 1, content.size());
    }
    return content.substr(0, at);
}

}  // namespace

// A later block of the same id takes the place of the earlier one's lines.
void NoteFile::startBlock(const NoteHeading& heading) {
    Block block;
    block.id = heading.id;
    block.feature = heading.file.value_or("");
    auto [known, isNew] = byId_.try_emplace(block.id, nullptr);
    if (isNew) known->second = &blocks_.emplace_front();
    current_ = known->second;
    *current_ = std::move(block);
}

bool NoteFile::read() {
    std::optional<std::vector<std::string>> lines = files::readLines(path_, kLongestNoteLine);
    if (!lines) return false;
    preface_ = prefaceOf(files::read(path_).value_or(""));
    for (const std::string& line : *lines) {
        std::string_view trimmed = text::trim(line);
        if (const std::optional<NoteHeading> heading = ParseNoteHeading(trimmed))
            startBlock(*heading);
        else if (current_)
            current_->lines.emplace_back(trimmed);
    }
    return true;
}

bool NoteFile::removeIf(const std::function<bool(const std::string& id)>& gone) {
    return blocks_.remove_if([&](const Block& block) { return gone(block.id); }) > 0;
}

bool NoteFile::write() const {
    if (blocks_.empty() && preface_.empty()) return files::remove(path_);
    std::string out = preface_;
    if (!out.empty() && out.back() != '\n') out += '\n';
    for (const Block& block : blocks_) {
        out += "PT_ID:" + block.id;
        out += block.feature.empty() ? "\n" : "  GIS_FILE:" + block.feature + "\n";
        for (const std::string& line : block.lines) out += line + "\n";
    }
    return files::replace(path_, out);
}

}  // namespace norvane
