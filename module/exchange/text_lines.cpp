#include "module/exchange/text_lines.h"

#include <algorithm>
#include <utility>

#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr size_t kBlock = 65536;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// The bytes of the first characters of a text.
size_t bytesOf(std::string_view line, size_t characters) {
    if (line.size() <= characters) return line.size();
    size_t end = 0;
    for (size_t n = 0; end < line.size() && n < characters; ++n) text::nextCodePoint(line, end);
    return end;
}

}  // namespace

std::optional<TextLines> TextLines::open(const std::string& path, size_t mostCharacters, size_t mostBytes) {
    const std::string name = files::onDisk(path);
    if (!files::exists(name) || files::isFolder(name)) return std::nullopt;
    TextLines lines;
    lines.mostCharacters_ = mostCharacters;
    lines.mostBytes_ = mostBytes;
    lines.file_.open(name, std::ios::binary | std::ios::ate);
    if (!lines.file_) return std::nullopt;
    lines.size_ = static_cast<size_t>(lines.file_.tellg());
    lines.file_.seekg(0);
    if (!lines.file_) return std::nullopt;
    lines.fill();
    lines.isUtf8_ = text::startsWith(lines.buffer_, kUtf8Mark);
    if (lines.isUtf8_) lines.at_ = lines.position_ = kUtf8Mark.size();
    return lines;
}

// Reads a block more. False at the end.
bool TextLines::fill() {
    size_t wanted = kBlock;
    if (mostBytes_ > 0) wanted = std::min(wanted, mostBytes_ - std::min(mostBytes_, read_));
    buffer_.erase(0, at_);
    at_ = 0;
    const size_t old = buffer_.size();
    buffer_.resize(old + wanted);
    file_.read(buffer_.data() + old, static_cast<std::streamsize>(wanted));
    const auto got = static_cast<size_t>(file_.gcount());
    buffer_.resize(old + got);
    read_ += got;
    return got > 0;
}

std::optional<std::string> TextLines::nextWhole() {
    size_t searched = 0, end = std::string::npos;
    while ((end = buffer_.find('\n', at_ + searched)) == std::string::npos) {
        searched = buffer_.size() - at_;
        if (!fill()) break;
    }
    if (end == std::string::npos && at_ == buffer_.size()) return std::nullopt;
    const size_t behind = end == std::string::npos ? buffer_.size() : end + 1;
    std::string line = buffer_.substr(at_, std::min(end, buffer_.size()) - at_);
    position_ += behind - at_;
    at_ = behind;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return decoded(std::move(line));
}

std::string TextLines::decoded(std::string bytes) const {
    std::replace(bytes.begin(), bytes.end(), '\0', ' ');
    const bool isRead = text::isAscii(bytes) || (isUtf8_ && text::isValidUtf8(bytes));
    return isRead ? bytes : text::decode(bytes);
}

std::optional<std::string> TextLines::next() {
    if (mostCharacters_ == 0) return nextWhole();
    if (given_ == long_.size()) {
        std::optional<std::string> line = nextWhole();
        if (!line || bytesOf(*line, mostCharacters_) == line->size()) return line;
        long_ = std::move(*line);
        given_ = 0;
    }
    const size_t size = bytesOf(std::string_view(long_).substr(given_), mostCharacters_);
    const size_t from = std::exchange(given_, given_ + size);
    return long_.substr(from, size);
}

std::optional<std::vector<std::string>> ReadFirstLines(const std::string& path, size_t count) {
    constexpr size_t kMostBytes = 4 * kBlock;
    std::optional<TextLines> file = TextLines::open(path, 0, kMostBytes);
    if (!file) return std::nullopt;
    std::vector<std::string> lines;
    while (lines.size() < count) {
        std::optional<std::string> line = file->next();
        if (!line) break;
        lines.push_back(std::move(*line));
    }
    if (file->cut() && lines.size() > 1 && lines.size() < count) lines.pop_back();
    return lines;
}

}  // namespace norvane
