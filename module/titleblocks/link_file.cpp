#include "module/titleblocks/link_file.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "module/cad/lisp_symbols.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr std::string_view kQuery = "QUERY_ZGEO:";
constexpr std::string_view kFormat = "FORMAT_ZGEO:";

std::string configurationFolder() {
    if (const char* folder = std::getenv("XDG_CONFIG_HOME"); folder && *folder) return folder;
    const char* home = std::getenv("HOME");
    return files::join(home ? home : "", ".config");
}

// A line as text: files of older systems are in their code page, and some editors put a mark of UTF-8 in
// front of the first line.
std::string textOf(std::string_view line) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text::startsWith(line, kByteOrderMark)) line.remove_prefix(kByteOrderMark.size());
    return text::isValidUtf8(line) ? std::string(line) : text::decode(line);
}

// The lines that hold something, without their ends.
std::vector<std::string> linesOf(const std::string& content) {
    std::vector<std::string> lines;
    for (std::string& line : text::split(content, '\n')) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) lines.push_back(std::move(line));
    }
    return lines;
}

bool isQuery(std::string_view line) {
    return text::startsWith(line, kQuery);
}

// The six parts of a link; nothing for a line of fewer bars.
std::optional<BlockLink> linkOf(const std::string& line) {
    constexpr size_t kBars = 5;
    std::array<std::string, kBars> parts;
    std::string_view rest = line;
    for (std::string& part : parts) {
        const size_t bar = rest.find('|');
        if (bar == std::string_view::npos) return std::nullopt;
        part = text::upper(rest.substr(0, bar));
        rest.remove_prefix(bar + 1);
    }
    return BlockLink{parts[0], parts[1], parts[2], parts[3], parts[4], dao::DatabasePath(std::string(rest)),
                     {}};
}

// Whose format a line tells, and which it is.
struct FormatLine {
    std::string block, attribute;
    LinkFormat format;
};
std::optional<FormatLine> formatOf(const std::string& line) {
    if (!text::startsWith(line, kFormat)) return std::nullopt;
    const size_t first = line.find(';'), second = line.find(';', first + 1);
    if (first == std::string::npos || second == std::string::npos) return std::nullopt;
    std::optional<LinkFormat> format =
        LinkFormat::FromCode(line.substr(kFormat.size(), first - kFormat.size()));
    if (!format) return std::nullopt;
    return FormatLine{text::upper(line.substr(first + 1, second - first - 1)),
                      text::upper(line.substr(second + 1)), std::move(*format)};
}

bool belongsTo(const std::string& line, const std::string& block) {
    if (const std::optional<FormatLine> format = formatOf(line))
        return text::equalNoCase(format->block, block);
    return text::equalNoCase(line.substr(0, line.find('|')), block);
}

std::string lineOf(const BlockLink& link) {
    return text::join({link.block, link.attribute, link.key, link.table, link.field, link.database.text()},
                      "|");
}

}  // namespace

std::string BlockLinkFile() {
    const std::string folder = UserDirectory().value_or("");
    return folder.empty() ? files::join(configurationFolder(), "norvane/zgeoblk.ini")
                          : folder + "zgeoblk.ini";
}

std::vector<BlockLink> ReadBlockLinks(const std::string& path) {
    if (!files::exists(path)) {
        std::error_code ignored;
        std::filesystem::create_directories(files::folderOf(path), ignored);
        files::replace(path, "");
        return {};
    }
    std::vector<BlockLink> links;
    std::map<std::pair<std::string, std::string>, LinkFormat> formats;
    for (const std::string& bytes : linesOf(files::read(path).value_or(""))) {
        if (isQuery(bytes)) continue;
        const std::string line = textOf(bytes);
        if (std::optional<FormatLine> format = formatOf(line))
            formats[{format->block, format->attribute}] = std::move(format->format);
        else if (std::optional<BlockLink> link = linkOf(line))
            links.push_back(std::move(*link));
    }
    for (BlockLink& link : links)
        if (const auto format = formats.find({link.block, link.attribute}); format != formats.end())
            link.format = format->second;
    return links;
}

bool SaveBlockLinks(const std::string& path, const std::string& block, const std::vector<BlockLink>& links) {
    std::vector<std::string> kept, queries;
    if (files::exists(path)) {
        const std::optional<std::string> content = files::read(path);
        if (!content) return false;  // what cannot be read must not be lost
        for (std::string& line : linesOf(*content)) {
            if (isQuery(line))
                queries.push_back(std::move(line));
            else if (!belongsTo(textOf(line), block))
                kept.push_back(std::move(line));
        }
    }
    std::vector<std::string> formats;
    for (const BlockLink& link : links) {
        if (!text::equalNoCase(link.block, block)) continue;
        kept.push_back(lineOf(link));
        if (const std::string code = link.format.code(); !code.empty())
            formats.push_back(std::string(kFormat) + code + ";" + link.block + ";" + link.attribute);
    }
    kept.insert(kept.end(), formats.begin(), formats.end());
    kept.insert(kept.end(), queries.begin(), queries.end());
    std::string content;
    for (const std::string& line : kept) content += line + "\n";
    std::error_code ignored;
    std::filesystem::create_directories(files::folderOf(path), ignored);
    return files::replace(path, content);
}

}  // namespace norvane
