// The lines of a text file, read one after the other, so that a file may be larger than the memory.
#pragma once

#include <cstddef>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace norvane {

// Files are of code page 1252 unless they begin with the mark of UTF-8; lines come as UTF-8 without their
// ends (LF or CR LF). A NUL counts as a blank.
class TextLines {
  public:
    // mostCharacters: what of a line is behind so many is the next line, as a reader with a fixed buffer sees
    // it. mostBytes: the file ends there. 0 sets no limit. Nothing when the file cannot be read.
    static std::optional<TextLines> open(const std::string& path, size_t mostCharacters = 0,
                                         size_t mostBytes = 0);

    // Nothing at the end.
    std::optional<std::string> next();
    // Bytes of the file that have been read, and that there are.
    size_t position() const { return position_; }
    size_t size() const { return size_; }
    // mostBytes have been read and there are more: the last line may be a part of one.
    bool cut() const { return mostBytes_ > 0 && read_ >= mostBytes_ && read_ < size_; }

  private:
    TextLines() = default;
    bool fill();
    std::optional<std::string> nextWhole();
    std::string decoded(std::string bytes) const;

    std::ifstream file_;
    std::string buffer_;
    size_t at_ = 0;
    size_t read_ = 0, position_ = 0, size_ = 0;
    size_t mostCharacters_ = 0, mostBytes_ = 0;
    bool isUtf8_ = false;
    std::string long_;  // a line that is handed out in parts
    size_t given_ = 0;  // bytes of it
};

// The first lines of a file, of which no more is read than they need; never a part of a line behind others.
// Nothing when the file cannot be read.
std::optional<std::vector<std::string>> ReadFirstLines(const std::string& path, size_t count);

}  // namespace norvane
