#include "module/titleblocks/workbook_source.h"

#include <optional>

#include "module/titleblocks/heading_row.h"
#include "module/titleblocks/user_source.h"
#include "platform/dao/dao.h"
#include "platform/text/text.h"
#include "platform/workbooks/workbook.h"

namespace norvane {

namespace {

std::string tableName(std::string sheet) {
    if (!sheet.empty() && sheet.back() == '$') sheet.pop_back();
    return text::upper(sheet);
}

// What a workbook refuses, in the way in which all sources do.
template <class Work>
auto told(Work work) {
    try {
        return work();
    } catch (const workbooks::Error& error) {
        throw CDaoException(error.what());
    }
}

class WorkbookSource : public RecordSource {
  public:
    explicit WorkbookSource(const std::string& path) : book_(told([&] { return workbooks::open(path); })) {}

    std::vector<std::string> tables() override {
        std::vector<std::string> names;
        for (const std::string& sheet : book_->sheets()) names.push_back(tableName(sheet));
        return names;
    }

    std::vector<std::string> columns(const std::string& table) override {
        HeadingRow heading;
        readRows(table, [&](const std::vector<std::string>& row) {
            heading = HeadingRow(row);
            return false;
        });
        return heading.names();
    }

    bool read(const std::string& table, const std::vector<std::string>& columns,
              const TakeRecord& take) override {
        std::optional<std::vector<size_t>> places;
        std::vector<std::string> values(columns.size());
        bool goesOn = true;
        readRows(table, [&](const std::vector<std::string>& row) {
            if (!places)
                places = HeadingRow(row).placesOf(columns);
            else if (PickCells(row, *places, values))
                goesOn = take(values);
            return goesOn;
        });
        return goesOn;
    }

  private:
    void readRows(const std::string& table, const workbooks::TakeRow& take) const {
        const std::string wanted = tableName(table);
        for (size_t i = 0; i < book_->sheets().size(); ++i)
            if (tableName(book_->sheets()[i]) == wanted) return told([&] { book_->read(i, take); });
    }

    std::unique_ptr<workbooks::Workbook> book_;
};

}  // namespace

std::unique_ptr<RecordSource> OpenWorkbookSource(const std::string& path) {
    PrepareUserSource(path);
    return std::make_unique<WorkbookSource>(path);
}

}  // namespace norvane
