#include "module/titleblocks/delimited_source.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <string_view>
#include <utility>

#include "module/exchange/file_stem.h"
#include "module/titleblocks/heading_row.h"
#include "platform/dao/dao.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

// Reads text value by value.
class DelimitedText {
  public:
    explicit DelimitedText(std::string_view text) : rest_(text) {
        const std::string_view first = text.substr(0, text.find('\n'));
        for (char candidate : {',', ';', '\t'})
            if (std::count(first.begin(), first.end(), candidate) >
                std::count(first.begin(), first.end(), separator_))
                separator_ = candidate;
    }

    // The values of the next line; quotes may hold its end. False at the end of the text.
    bool next(std::vector<std::string>& row) {
        row.clear();
        if (rest_.empty()) return false;
        while (value(row.emplace_back())) {
        }
        return true;
    }

    bool isAtEnd() const { return rest_.empty(); }

  private:
    // False when the line ends behind the value.
    bool value(std::string& into) {
        for (bool quoted = false; !rest_.empty();) {
            const char c = rest_.front();
            rest_.remove_prefix(1);
            if (c == '"' && !quoted && into.empty()) {
                quoted = true;
            } else if (c == '"' && quoted) {
                quoted = !rest_.empty() && rest_.front() == '"';
                if (!quoted) {
                    // What stands behind the closing quote belongs to the value as it is.
                    into += plain();
                    return separated();
                }
                into += c;
                rest_.remove_prefix(1);
            } else if (!quoted && (c == separator_ || c == '\n')) {
                if (c == '\n' && !into.empty() && into.back() == '\r') into.pop_back();
                return c == separator_;
            } else {
                into += c;
            }
        }
        return false;
    }
    std::string plain() {
        const size_t end = std::min(rest_.find_first_of(std::string{separator_, '\n'}), rest_.size());
        std::string text(text::trimRight(rest_.substr(0, end)));
        rest_.remove_prefix(end);
        return text;
    }
    bool separated() {
        if (rest_.empty()) return false;
        const bool goesOn = rest_.front() == separator_;
        rest_.remove_prefix(1);
        return goesOn;
    }

    std::string_view rest_;
    char separator_ = ',';
};

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::optional<std::string> readBeginning(const std::string& path) {
    constexpr size_t kBeginning = size_t{1} << 16;
    std::ifstream file(files::onDisk(path), std::ios::binary);
    if (!file || files::isFolder(path)) return std::nullopt;
    std::string bytes(kBeginning, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<size_t>(file.gcount()));
    return bytes;
}

class DelimitedSource : public RecordSource {
  public:
    explicit DelimitedSource(const std::string& path)
        : path_(path), name_(text::upper(files::nameOf(FileStem(path)))) {
        beginning_ = textOf(readBeginning(path));
    }

    std::vector<std::string> tables() override { return {name_}; }

    std::vector<std::string> columns(const std::string& table) override {
        std::vector<std::string> row;
        if (!text::equalNoCase(table, name_)) return {};
        if (!readHeading(row) && !DelimitedText(content()).next(row)) return {};
        return HeadingRow(row).names();
    }

    bool read(const std::string& table, const std::vector<std::string>& columns,
              const TakeRecord& take) override {
        if (!text::equalNoCase(table, name_)) return true;
        DelimitedText lines(content());
        std::vector<std::string> row, values(columns.size());
        if (!lines.next(row)) return true;
        for (const std::vector<size_t> places = HeadingRow(row).placesOf(columns); lines.next(row);)
            if (PickCells(row, places, values) && !take(values)) return false;
        return true;
    }

  private:
    // Without the mark of UTF-8.
    std::string textOf(std::optional<std::string> bytes) const {
        if (!bytes) throw CDaoException("The file \"" + path_ + "\" cannot be read.");
        if (bytes->find('\0') != std::string::npos)
            throw CDaoException("The file \"" + path_ + "\" is no text.");
        if (text::startsWith(*bytes, kByteOrderMark)) bytes->erase(0, kByteOrderMark.size());
        return std::move(*bytes);
    }

    // The heading from the beginning of the file. False where that does not tell it: it may go on, and what
    // its letters are may hang on what is behind.
    bool readHeading(std::vector<std::string>& row) const {
        DelimitedText lines(beginning_);
        return lines.next(row) && !lines.isAtEnd() &&
               std::all_of(row.begin(), row.end(),
                           [](const std::string& cell) { return text::isAscii(cell); });
    }

    const std::string& content() {
        if (!content_) {
            std::string bytes = textOf(files::read(path_));
            content_ = text::isValidUtf8(bytes) ? std::move(bytes) : text::decode(bytes);
        }
        return *content_;
    }

    std::string path_, name_, beginning_;
    std::optional<std::string> content_;
};

}  // namespace

std::unique_ptr<RecordSource> OpenDelimitedSource(const std::string& path) {
    return std::make_unique<DelimitedSource>(path);
}

}  // namespace norvane
