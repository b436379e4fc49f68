// The panel of records: a table of an output beside the drawing. Rows and entities are selected together,
// records are filtered, changed, erased and taken along.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "module/records/records_form.h"
#include "module/records/records_table.h"

namespace norvane {

class RecordsPanel : public RecordsForm {
  public:
    // output: "" for the current one, which it then follows. table: "" for the one that was shown last.
    RecordsPanel(std::string output, std::string table);
    ~RecordsPanel() override;

    // Null while there is nothing to show.
    RecordsTable* records() { return records_.get(); }
    void showTable(const std::string& output, const std::string& table);

  private:
    void onOpen() override;
    void onWindowChange(const ui::WindowChange& change) override;
    void onRest() override;
    bool work(std::chrono::milliseconds most) override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onTextChange(ui::Control& control) override;
    void onFocus(ui::Control& control) override;
    void onCellsTaken(ui::Grid& grid) override;
    void onCellChange(ui::Grid& grid, ui::CellPosition at) override;
    void onCellRefused(ui::Grid& grid, ui::CellPosition at, const std::string& typed) override;
    bool onCellDoubleClick(ui::Grid& grid, ui::CellPosition at) override;
    void onHeadingClick(ui::Grid& grid, int column) override;
    bool onKey(const ui::Key& key) override;
    bool mayEnd() override;

    // Opens the database, or says why it is not shown.
    void openOutput();
    std::string tableToShow(const std::vector<std::string>& tables);
    void openTable(const std::string& table);
    void closeTable(const std::string& why);
    void listTables(const std::vector<std::string>& tables, const std::string& shown);
    void followTables();
    void chooseDatabase();
    void prepareGrid();
    void refresh();

    void filter();
    void offer();
    void showFault();
    void followSelection(bool isForced);
    void goToMarkedRow();
    void followNewRecords();
    void followSeen();
    void askForIndex();
    // Shows how much there is, and what can be done.
    void show();
    void showRows();
    bool writeRow();
    bool onGridKey(const ui::Key& key);
    void undo();

    ui::CellRange taken() const { return grid().selection(); }
    std::optional<std::vector<EntityName>> takenEntities();
    void selectRows();
    bool findAll();
    void selectShown();
    void zoom();
    void newRecord();
    void erase();
    void eraseNew();
    void copy();
    void save();

    std::string output_;               // that is shown
    bool followsCurrent_;              // output_ is the current output, whichever that is
    std::string wantedTable_;          // to be shown when it is there
    std::vector<std::string> tables_;  // in the list
    bool awaitsTable_ = false;         // the output is there and has none yet
    std::unique_ptr<RecordsTable> records_;
    std::vector<EntityName> selected_, own_;      // in the drawing; by rows of the panel
    std::optional<unsigned long> linksRevision_;  // for which the next is known
    bool hasUnlinkedNew_ = false;
    bool seeksMarkedRow_ = false;
    bool isIndexSettled_ = false;
    std::chrono::steady_clock::time_point rowsShown_;
    std::optional<ConditionFault> fault_;
};

// (gis:records-panel [database [table]]) opens the panel, or brings the one that is open to the front.
// Without a database it shows the current output.
void ShowRecordsPanel(Call& call);

}  // namespace norvane
