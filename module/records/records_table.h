// The records of a table beside the drawing: which of them are shown, how many entities lead to each, which
// are those of the selected entities, and the one that is being changed. It is what the panel of records
// shows in its grid: the first column counts entities, the others are the fields.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "module/records/filter_text.h"
#include "module/records/record_edits.h"
#include "module/records/record_view.h"
#include "module/records/table_links.h"
#include "platform/ui/grid_source.h"

namespace norvane {

// Which records are shown, by the entities that lead to them.
enum class RecordChoice { kAll, kSelected, kSeen, kLinked, kNotLinked };

class RecordsTable : public ui::GridSource {
  public:
    static constexpr int kFirstField = 2;  // the column of the first field

    // output: a file or a connect string, opened and kept open. table: as it stands there. Throws what the
    // engine says.
    RecordsTable(const std::string& output, const std::string& table, const std::string& templatePath);
    ~RecordsTable() override;

    CDaoDatabase& database() { return database_; }
    const std::string& output() const { return output_; }
    const std::string& table() const { return view_->table(); }
    const std::vector<CDaoFieldInfo>& fields() const { return view_->fields(); }
    int columns() const { return static_cast<int>(fields().size()) + 1; }
    // The name of the key field; "" for a table that nothing can be linked to.
    const std::string& keyField() const { return keyField_; }
    // Why records cannot be changed; "" where they can.
    const std::string& obstacle() const { return obstacle_; }
    RecordView& view() { return *view_; }

    // --- Which records
    // -------------------------------------------------------------------------------------

    void choose(RecordChoice choice);
    RecordChoice choice() const { return choice_; }
    void setFilter(const FilterText& filter);
    // Upwards, downwards, and the order of the table again. False for a column that gives no order.
    bool sortBy(int column);
    int orderColumn() const;  // 0 for none
    // Reads the table anew. False: its fields have become others, and it has to be opened anew.
    bool refresh();

    // --- The drawing
    // ---------------------------------------------------------------------------------------

    // Each takes over what has changed there; true where cells are to be shown anew. isOwn: the selection is
    // that of rows here, which stay the ones that are shown.
    bool followLinks();
    bool followSelection(const std::vector<EntityName>& selected, bool isOwn);
    bool followSeen(const std::vector<EntityName>& seen);

    // Of rows, the last one included; each entity once.
    std::vector<EntityName> entitiesOfRows(int first, int last) const;
    // Of all rows that are shown. isBreak stops it, with none. Throws what the engine says.
    std::vector<EntityName> entitiesShown(const std::function<bool()>& isBreak) const;
    // The row of the selected entity, where it is quickly found. Ask when nothing is at work.
    std::optional<int> markedRow() const;

    // --- Changes
    // -------------------------------------------------------------------------------------------

    // The row whose cells may be changed from now on; the one before is left, see leave().
    void enter(int row);
    // Writes what was typed into the row, and stays with it. False: it could not be written, and what was
    // typed is still there.
    bool leave();
    // Takes back the row that was written last. False: there is none.
    bool undo();
    bool isChanged() const { return edits_ && edits_->isChanged(); }
    // Gives up what was typed into the row.
    void drop();
    // What the person is to be told of the last of these, and of a text that a cell has not taken; "" for
    // nothing. It is told once.
    std::string takeMessage() { return std::exchange(message_, {}); }
    // Whether the record of a row is there and can be read.
    bool isThere(int row) const { return view_->isThere(row - 1); }
    // The values of rows, read now, for whoever erases them. Rows that are gone are left out. Throws what the
    // engine says.
    std::vector<RecordValues> valuesOfRows(int first, int last) const;

    // Values that the first records have in a field, for those who type a condition.
    std::vector<dao::Variant> someValues(size_t field, const std::string& beginning);

    // GridSource
    int rows() const override;
    std::string text(int column, int row) const override;
    void setText(int column, int row, std::string text) override;
    const ui::CellType* type(int column, int row) const override;
    ui::CellColours colours(int column, int row) const override;

  private:
    void applyFilter();
    bool isMarked(int row) const;
    bool isCurrent(int row) const;
    bool begin(int row);
    void takeTypes();
    std::string typedText() const;

    std::string output_, keyField_, obstacle_;
    CDaoDatabase database_;
    std::unique_ptr<RecordView> view_;
    std::unique_ptr<TableLinks> links_;
    std::unique_ptr<RecordEdits> edits_;
    std::unique_ptr<dao::TableRows> samples_;
    RecordChoice choice_ = RecordChoice::kAll;
    FilterText filter_;
    std::shared_ptr<const RecordKeys> selected_;  // of the selected entities
    std::shared_ptr<const RecordKeys> chosen_;    // the same, as the person has selected them in the drawing
    std::shared_ptr<const RecordKeys> seen_;

    std::optional<RecordId> current_;  // the record that is being changed
    std::vector<ui::CellType> types_;  // of its cells, by field
    std::vector<RecordId> written_;    // in the order in which undo goes back
    std::string message_;
};

}  // namespace norvane
