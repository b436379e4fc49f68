#include <freexl.h>

#include <string_view>

#include "platform/dao/variant.h"
#include "platform/files/files.h"
#include "platform/text/code_page.h"
#include "platform/text/text.h"
#include "platform/workbooks/kinds.h"

namespace workbooks {
namespace {

struct Closer {
    void operator()(const void* handle) const { freexl_close(handle); }
};
using Handle = std::unique_ptr<const void, Closer>;

std::string named(const std::string& path) {
    return "The workbook \"" + path + "\" ";
}

std::string validText(const char* bytes) {
    if (!bytes) return "";
    return text::isValidUtf8(bytes) ? std::string(bytes) : text::decode(bytes);
}

std::string cellText(const FreeXL_CellValue& cell) {
    switch (cell.type) {
        case FREEXL_CELL_INT:
            return std::to_string(cell.value.int_value);
        case FREEXL_CELL_DOUBLE:
            return dao::exactText(cell.value.double_value);
        case FREEXL_CELL_TEXT:
        case FREEXL_CELL_SST_TEXT:
        case FREEXL_CELL_DATE:
        case FREEXL_CELL_TIME:
            return validText(cell.value.text_value);
        case FREEXL_CELL_DATETIME: {
            // Midnight is what a date without a time has.
            constexpr std::string_view kMidnight = " 00:00:00";
            std::string moment = validText(cell.value.text_value);
            if (text::endsWithNoCase(moment, kMidnight)) moment.resize(moment.size() - kMidnight.size());
            return moment;
        }
        default:
            return "";
    }
}

class XlsWorkbook : public Workbook {
  public:
    explicit XlsWorkbook(const std::string& path) : path_(path) {
        const void* handle = nullptr;
        const int status = freexl_open(path.c_str(), &handle);
        handle_.reset(handle);
        if (info(FREEXL_BIFF_PASSWORD) == FREEXL_BIFF_OBFUSCATED)
            throw Error(named(path) + "is protected by a password.");
        if (status != FREEXL_OK || !handle)
            throw Error(named(path) + (status == FREEXL_FILE_NOT_FOUND
                                           ? "cannot be opened."
                                           : "is damaged, or no workbook that can be read."));
        readNames();
    }

    const std::vector<std::string>& sheets() const override { return names_; }

    void read(size_t sheet, const TakeRow& take) const override {
        unsigned int rows = 0;
        unsigned short columns = 0;
        if (freexl_select_active_worksheet(handle_.get(), static_cast<unsigned short>(sheet)) != FREEXL_OK ||
            freexl_worksheet_dimensions(handle_.get(), &rows, &columns) != FREEXL_OK)
            throw Error(named(path_) + "has a sheet that cannot be read.");
        std::vector<std::string> cells(columns);
        FreeXL_CellValue cell;
        for (unsigned int row = 0; row < rows; ++row) {
            for (unsigned short column = 0; column < columns; ++column)
                cells[column] = freexl_get_cell_value(handle_.get(), row, column, &cell) == FREEXL_OK
                                    ? cellText(cell)
                                    : "";
            if (!take(cells)) return;
        }
    }

  private:
    unsigned int info(unsigned short what) const {
        unsigned int value = 0;
        return handle_ && freexl_get_info(handle_.get(), what, &value) == FREEXL_OK ? value : 0;
    }

    void readNames() {
        const unsigned int count = info(FREEXL_BIFF_SHEET_COUNT);
        for (unsigned int i = 0; i < count; ++i) {
            const char* name = nullptr;
            freexl_get_worksheet_name(handle_.get(), static_cast<unsigned short>(i), &name);
            names_.push_back(validText(name));
        }
    }

    std::string path_;
    Handle handle_;
    std::vector<std::string> names_;
};

}  // namespace

std::unique_ptr<Workbook> openXls(const std::string& path) {
    return std::make_unique<XlsWorkbook>(path);
}

}  // namespace workbooks
