#include "module/titleblocks/delimited_source.h"

#include <algorithm>
#include <optional>
#include <string_view>

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

class DelimitedSource : public RecordSource {
  public:
    explicit DelimitedSource(const std::string& path) : name_(text::upper(files::nameOf(FileStem(path)))) {
        std::optional<std::string> content = files::read(path);
        if (!content) throw CDaoException("The file \"" + path + "\" cannot be read.");
        constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
        if (text::startsWith(*content, kByteOrderMark)) content->erase(0, kByteOrderMark.size());
        content_ = text::isValidUtf8(*content) ? std::move(*content) : text::decode(*content);
        if (content_.find('\0') != std::string::npos)
            throw CDaoException("The file \"" + path + "\" is no text.");
    }

    std::vector<std::string> tables() override { return {name_}; }

    std::vector<std::string> columns(const std::string& table) override {
        std::vector<std::string> row;
        if (!text::equalNoCase(table, name_) || !DelimitedText(content_).next(row)) return {};
        return HeadingRow(row).names();
    }

    bool read(const std::string& table, const std::vector<std::string>& columns,
              const TakeRecord& take) override {
        DelimitedText lines(content_);
        std::vector<std::string> row, values(columns.size());
        if (!text::equalNoCase(table, name_) || !lines.next(row)) return true;
        for (const std::vector<size_t> places = HeadingRow(row).placesOf(columns); lines.next(row);)
            if (PickCells(row, places, values) && !take(values)) return false;
        return true;
    }

  private:
    std::string name_, content_;
};

}  // namespace

std::unique_ptr<RecordSource> OpenDelimitedSource(const std::string& path) {
    return std::make_unique<DelimitedSource>(path);
}

}  // namespace norvane
