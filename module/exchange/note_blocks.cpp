#include "module/exchange/note_blocks.h"

#include "module/exchange/text_lines.h"
#include "platform/files/files.h"
#include "platform/text/text.h"

namespace norvane {

std::optional<NoteHeading> ParseNoteHeading(std::string_view line) {
    constexpr std::string_view kPoint = "PT_ID:", kFile = "GIS_FILE:";
    if (!text::startsWith(line, kPoint)) return std::nullopt;
    line.remove_prefix(kPoint.size());
    const size_t file = line.find(kFile);
    NoteHeading heading{text::trim(line.substr(0, file)), {}};
    if (file != std::string_view::npos) heading.file = text::trim(line.substr(file + kFile.size()));
    return heading;
}

std::string FeatureOfNoteFile(std::string_view file) {
    const std::string name = files::nameOf(file);
    const std::string feature = text::upper(text::trim(std::string_view(name).substr(0, name.find('.'))));
    return feature.empty() ? "UNKNOWN" : feature;
}

std::optional<std::vector<NoteBlock>> ReadNoteBlocks(const std::string& path) {
    std::optional<TextLines> file = TextLines::open(path, kLongestNoteLine);
    if (!file) return std::nullopt;
    std::vector<NoteBlock> blocks;
    while (std::optional<std::string> line = file->next()) {
        const std::string_view trimmed = text::trim(*line);
        if (trimmed.empty()) continue;
        if (const std::optional<NoteHeading> heading = ParseNoteHeading(trimmed))
            blocks.push_back({std::string(heading->id),
                              heading->file ? std::optional<std::string>(*heading->file) : std::nullopt,
                              {}});
        else if (!blocks.empty())
            blocks.back().lines.emplace_back(trimmed);
    }
    return blocks;
}

}  // namespace norvane
