#include <orcus/orcus_ods.hpp>
#include <orcus/spreadsheet/import_interface.hpp>

#include <deque>
#include <exception>
#include <optional>
#include <utility>

#include "platform/dao/variant.h"
#include "platform/files/files.h"
#include "platform/workbooks/kinds.h"
#include "platform/workbooks/text_workbook.h"

namespace workbooks {
namespace {

namespace model = orcus::spreadsheet;

// A sheet as the reader tells it, cell by cell.
class Sheet : public model::iface::import_sheet, private model::iface::import_formula {
  public:
    Sheet(SheetTexts& texts, const std::deque<std::string>& strings) : texts_(texts), strings_(strings) {}

  private:
    using Row = model::row_t;
    using Column = model::col_t;

    void set_auto(Row row, Column column, std::string_view s) override {
        texts_.put(row, column, std::string(s));
    }
    void set_string(Row row, Column column, model::string_id_t index) override {
        if (index < strings_.size()) texts_.put(row, column, strings_[index]);
    }
    void set_value(Row row, Column column, double value) override {
        texts_.put(row, column, dao::exactText(value));
    }
    void set_bool(Row row, Column column, bool value) override { texts_.put(row, column, value ? "1" : "0"); }
    void set_date_time(Row row, Column column, int year, int month, int day, int hour, int minute,
                       double second) override {
        dao::Date date;
        if (dao::dateFromCalendar(year, month, day, hour, minute, static_cast<int>(second), date))
            texts_.put(row, column, dao::toText(date));
    }
    void set_format(Row, Column, size_t) override {}
    void set_format(Row, Column, Row, Column, size_t) override {}
    void fill_down_cells(Row row, Column column, Row count) override {
        const std::string text = texts_.at(row, column);
        for (Row i = 1; i <= count && !text.empty(); ++i) texts_.put(row + i, column, text);
    }
    model::range_size_t get_sheet_size() const override { return {SheetTexts::kRows, SheetTexts::kColumns}; }
    model::iface::import_formula* get_formula() override { return this; }

    // Of a formula the value that was saved with it.
    void set_position(Row row, Column column) override { row_ = row, column_ = column; }
    void set_formula(model::formula_grammar_t, std::string_view) override {}
    void set_shared_formula_index(size_t) override {}
    void set_result_string(std::string_view value) override { texts_.put(row_, column_, std::string(value)); }
    void set_result_value(double value) override { texts_.put(row_, column_, dao::exactText(value)); }
    void set_result_bool(bool value) override { texts_.put(row_, column_, value ? "1" : "0"); }
    void set_result_empty() override {}
    void commit() override {}

    SheetTexts& texts_;
    const std::deque<std::string>& strings_;
    Row row_ = 0;
    Column column_ = 0;
};

class Sheets : public model::iface::import_factory,
               private model::iface::import_shared_strings,
               private model::iface::import_global_settings {
  public:
    explicit Sheets(TextWorkbook& book) : book_(book) {}

  private:
    using Element = model::color_elem_t;
    using Grammar = model::formula_grammar_t;

    model::iface::import_global_settings* get_global_settings() override { return this; }
    model::iface::import_shared_strings* get_shared_strings() override { return this; }
    model::iface::import_sheet* append_sheet(model::sheet_t, std::string_view name) override {
        return &sheets_.emplace_back(book_.add(std::string(name)), strings_);
    }
    model::iface::import_sheet* get_sheet(std::string_view name) override {
        for (size_t i = 0; i < sheets_.size(); ++i)
            if (book_.sheets()[i] == name) return &sheets_[i];
        return nullptr;
    }
    model::iface::import_sheet* get_sheet(model::sheet_t index) override {
        const auto place = static_cast<size_t>(index);
        return index >= 0 && place < sheets_.size() ? &sheets_[place] : nullptr;
    }
    void finalize() override {}

    size_t append(std::string_view s) override {
        strings_.emplace_back(s);
        return strings_.size() - 1;
    }
    size_t add(std::string_view s) override { return append(s); }
    void append_segment(std::string_view s) override { segments_ += s; }
    size_t commit_segments() override { return append(std::exchange(segments_, {})); }
    void set_segment_font(size_t) override {}
    void set_segment_bold(bool) override {}
    void set_segment_italic(bool) override {}
    void set_segment_font_name(std::string_view) override {}
    void set_segment_font_size(double) override {}
    void set_segment_font_color(Element, Element, Element, Element) override {}

    void set_origin_date(int, int, int) override {}
    void set_default_formula_grammar(Grammar grammar) override { grammar_ = grammar; }
    Grammar get_default_formula_grammar() const override { return grammar_; }
    void set_character_set(orcus::character_set_t) override {}

    TextWorkbook& book_;
    std::deque<Sheet> sheets_;
    std::deque<std::string> strings_;
    std::string segments_;
    Grammar grammar_ = Grammar::unknown;
};

}  // namespace

std::unique_ptr<Workbook> openOds(const std::string& path) {
    const std::optional<std::string> content = files::read(path);
    if (!content) throw Error("The workbook \"" + path + "\" cannot be opened.");
    auto book = std::make_unique<TextWorkbook>();
    try {
        Sheets sheets(*book);
        orcus::orcus_ods reader(&sheets);
        reader.read_stream(*content);
    } catch (const std::exception&) {
        book = std::make_unique<TextWorkbook>();
    }
    if (book->sheets().empty())
        throw Error("The workbook \"" + path + "\" is damaged, or no workbook that can be read.");
    return book;
}

}  // namespace workbooks
