#include "module/titleblocks/dbf_source.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>

#include "module/exchange/dbf_file.h"
#include "module/exchange/file_stem.h"
#include "module/titleblocks/user_source.h"
#include "platform/dao/dao.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kUtf8 = 65001, kStandardPage = 1252;

struct Column {
    std::string name;
    char type = 'C';
    size_t offset = 0, width = 0;  // within a record
};

// The code page that a .cpg file names: "UTF-8", "1252", "ANSI 1251", "CP850".
std::optional<int> pageBeside(const std::string& stem) {
    const std::string said = text::upper(files::read(stem + ".cpg").value_or(""));
    if (said.find("UTF-8") != std::string::npos || said.find("UTF8") != std::string::npos) return kUtf8;
    const size_t digits = said.find_first_of("0123456789");
    if (digits == std::string::npos) return std::nullopt;
    const int page = static_cast<int>(text::toLong(said.substr(digits)));
    if (page == 8859) return kStandardPage;
    return page == kUtf8 || text::isKnownCodePage(page) ? std::optional(page) : std::nullopt;
}

// The page of the mark in byte 29 of a header.
std::optional<int> pageOfMark(unsigned char mark) {
    struct Known {
        unsigned char mark;
        int page;
    };
    constexpr Known kKnown[] = {
        {0x01, 437},  {0x02, 850},  {0x03, 1252}, {0x57, 1252}, {0x58, 1252}, {0x59, 1252}, {0xC8, 1250},
        {0xC9, 1251}, {0xCA, 1254}, {0xCB, 1253}, {0xCC, 1257}, {0x7D, 1255}, {0x7E, 1256}, {0x09, 437},
        {0x0A, 850},  {0x0B, 437},  {0x0D, 437},  {0x0E, 850},  {0x0F, 437},  {0x10, 850},  {0x11, 437},
        {0x12, 850},  {0x14, 850},  {0x15, 437},  {0x16, 850},  {0x18, 437},  {0x19, 437},  {0x1A, 850},
        {0x1B, 437},  {0x1D, 850},  {0x25, 850},  {0x37, 850},  {0x1F, 852},  {0x22, 852},  {0x23, 852},
        {0x40, 852},  {0x64, 852},  {0x87, 852},  {0x26, 866},  {0x65, 866}};
    for (const Known& known : kKnown)
        if (known.mark == mark) return known.page;
    return std::nullopt;
}

// "20040531" as 2004-05-31; "" for one that is not filled in, and other texts as they stand.
std::string dateText(std::string_view digits) {
    if (digits.size() != 8 || digits.find_first_not_of("0123456789") != std::string_view::npos)
        return std::string(digits);
    if (digits.find_first_not_of('0') == std::string_view::npos) return "";
    return std::string(digits.substr(0, 4)) + "-" + std::string(digits.substr(4, 2)) + "-" +
           std::string(digits.substr(6));
}

std::string logicalText(std::string_view mark) {
    if (mark.empty()) return "";
    if (std::string_view("TtYy").find(mark.front()) != std::string_view::npos) return "1";
    return std::string_view("FfNn").find(mark.front()) != std::string_view::npos ? "0" : "";
}

// A day by its Julian number and milliseconds.
std::string momentText(std::string_view bytes) {
    constexpr int32_t kJulianOfDayZero = 2415019;  // 30 December 1899
    constexpr double kMillisecondsOfDay = 86400000.0;
    const auto day = files::getLittle<int32_t>(bytes.data());
    const auto time = files::getLittle<int32_t>(bytes.data() + 4);
    if (day == 0) return "";
    return dao::toText(dao::Date{static_cast<double>(day - kJulianOfDayZero) + time / kMillisecondsOfDay});
}

double doubleOf(std::string_view bytes) {
    const auto bits = files::getLittle<uint64_t>(bytes.data());
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// Types whose values are bytes and no characters, as FoxPro has them, and how many of them.
size_t binaryWidth(char type) {
    switch (type) {
        case 'I':
            return 4;
        case 'B':
        case 'T':
        case 'Y':
            return 8;
        default:
            return 0;
    }
}

std::string binaryText(char type, std::string_view bytes) {
    switch (type) {
        case 'I':
            return std::to_string(files::getLittle<int32_t>(bytes.data()));
        case 'B':
            return dao::exactText(doubleOf(bytes));
        case 'T':
            return momentText(bytes);
        default:
            return text::stripZeros(dao::exactText(dao::Currency{files::getLittle<int64_t>(bytes.data())}));
    }
}

class DbfSource : public RecordSource {
  public:
    explicit DbfSource(const std::string& path) : name_(text::upper(files::nameOf(FileStem(path)))) {
        table_.reset(DbfOpen(path, "rb"));
        const char* head = table_ ? table_->file->view(0, kHeadSize) : nullptr;
        if (!head) throw CDaoException("The file \"" + path + "\" is no dBASE table.");
        constexpr char kLevel = 7, kLevelOfDbase7 = 4;
        version_ = head[0];
        if ((version_ & kLevel) == kLevelOfDbase7)
            throw CDaoException("The table \"" + path + "\" is of dBASE 7, which is not read.");
        if (head[kEncryptedAt] != 0 && !isFoxPro())
            throw CDaoException("The table \"" + path + "\" is encrypted.");
        page_ = pageBeside(FileStem(path))
                    .value_or(pageOfMark(static_cast<unsigned char>(head[kMarkAt])).value_or(kStandardPage));
        readColumns();
    }

    std::vector<std::string> tables() override { return {name_}; }

    std::vector<std::string> columns(const std::string& table) override {
        std::vector<std::string> names;
        if (!text::equalNoCase(table, name_)) return names;
        for (const Column& column : columns_) names.push_back(column.name);
        return names;
    }

    bool read(const std::string& table, const std::vector<std::string>& columns,
              const TakeRecord& take) override {
        constexpr char kDeleted = '*';
        if (!text::equalNoCase(table, name_)) return true;
        std::vector<const Column*> wanted;
        for (const std::string& name : columns) wanted.push_back(find(name));
        std::vector<std::string> values(columns.size());
        for (int32_t i = 0; i < DbfGetRecordCount(table_.get()); ++i) {
            const std::string_view record = DbfReadRecord(table_.get(), i);
            if (record.empty() || record.front() == kDeleted) continue;
            for (size_t c = 0; c < wanted.size(); ++c)
                if (wanted[c]) values[c] = valueOf(*wanted[c], record);
            if (!take(values)) return false;
        }
        return true;
    }

  private:
    static constexpr size_t kHeadSize = 32, kEncryptedAt = 15, kMarkAt = 29;

    bool isFoxPro() const {
        const auto version = static_cast<unsigned char>(version_);
        return version == 0x30 || version == 0x31 || version == 0x32 || version == 0xF5;
    }

    // Where the table's own layout counts only texts and numbers, those of FoxPro have widths of one byte
    // too.
    void readColumns() {
        constexpr size_t kDescriptorSize = 32, kNameSize = 11, kTypeAt = 11, kWidthAt = 16;
        size_t offset = 1;
        for (size_t at = 0; at + kDescriptorSize <= table_->header.size(); at += kDescriptorSize) {
            const std::string_view descriptor = std::string_view(table_->header).substr(at, kDescriptorSize);
            Column column;
            column.type = descriptor[kTypeAt];
            const std::string_view stored = descriptor.substr(0, kNameSize);
            column.name = text::upper(
                text::trim(decoded(stored.substr(0, std::min(stored.find('\0'), stored.size())))));
            column.width = column.type == 'C' ? files::getLittle<uint16_t>(descriptor.data() + kWidthAt)
                                              : static_cast<unsigned char>(descriptor[kWidthAt]);
            column.offset = offset;
            offset += column.width;
            if (hasText(column)) columns_.push_back(std::move(column));
        }
    }

    // Memos, pictures and general columns are kept in another file, and what FoxPro notes of Null is for
    // itself.
    bool hasText(const Column& column) const {
        if (column.name.empty() || column.width == 0) return false;
        switch (column.type) {
            case 'C':
            case 'N':
            case 'F':
            case 'D':
            case 'L':
                return true;
            case 'I':
            case 'B':
            case 'T':
            case 'Y':
                return isFoxPro() && column.width == binaryWidth(column.type);
            default:
                return false;
        }
    }

    const Column* find(const std::string& name) const {
        const auto found = std::find_if(columns_.begin(), columns_.end(), [&](const Column& column) {
            return text::equalNoCase(column.name, name);
        });
        return found == columns_.end() ? nullptr : &*found;
    }

    std::string decoded(std::string_view bytes) const {
        return page_ == kUtf8 || text::isAscii(bytes) ? std::string(bytes) : text::decode(bytes, page_);
    }

    std::string valueOf(const Column& column, std::string_view record) const {
        if (column.offset + column.width > record.size()) return "";
        const std::string_view bytes = record.substr(column.offset, column.width);
        if (binaryWidth(column.type) > 0) return binaryText(column.type, bytes);
        const std::string_view shown = trimmed(bytes.substr(0, std::min(bytes.find('\0'), bytes.size())));
        if (column.type == 'D') return dateText(shown);
        if (column.type == 'L') return logicalText(shown);
        return decoded(shown);
    }

    static std::string_view trimmed(std::string_view bytes) {
        const size_t first = bytes.find_first_not_of(' ');
        if (first == std::string_view::npos) return {};
        return bytes.substr(first, bytes.find_last_not_of(' ') - first + 1);
    }

    std::string name_;
    OpenDbfFile table_;
    char version_ = 0;
    int page_ = kStandardPage;
    std::vector<Column> columns_;
};

}  // namespace

std::unique_ptr<RecordSource> OpenDbfSource(const std::string& path) {
    PrepareUserSource(path);
    return std::make_unique<DbfSource>(path);
}

}  // namespace norvane
