// The panel of records: a table of an output beside the drawing. Rows and entities are selected together,
// records are filtered, changed, erased and taken along.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "module/records/records_table.h"
#include "platform/ui/panel.h"

namespace norvane {

class RecordsPanel : public ui::Panel {
  public:
    static constexpr int kResource = 1801;
    static constexpr int kTable = 1002;
    static constexpr int kFilter = 1004;
    static constexpr int kChoice = 1006;
    static constexpr int kFault = 1007;
    static constexpr int kGrid = 1008;
    static constexpr int kCount = 1009;
    static constexpr int kState = 1010;
    static constexpr int kZoom = 1011;
    static constexpr int kMode = 1012;
    static constexpr int kSelectShown = 1013;
    static constexpr int kNew = 1014;
    static constexpr int kErase = 1015;
    static constexpr int kCopy = 1016;
    static constexpr int kSave = 1017;
    static constexpr int kEraseNew = 1018;

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
    void onClose() override;

    void addControls();
    void placeControls();
    void explainControls();

    // Opens the database, or says why it is not shown.
    void openOutput();
    std::string tableToShow(const std::vector<std::string>& tables);
    void openTable(const std::string& table);
    void closeTable(const std::string& why);
    void fillTables(const std::vector<std::string>& tables, const std::string& shown);
    void chooseDatabase();
    void prepareGrid();
    void refresh();

    void filter();
    void offer();
    void showFault();
    void followSelection(bool isForced);
    void followSeen();
    void askForIndex();
    // Shows how much there is, and what can be done.
    void show();
    void showRows();
    bool writeRow();
    bool onGridKey(const ui::Key& key);
    void undo();

    ui::Grid& grid() const { return get<ui::Grid>(kGrid); }
    ui::CellRange taken() const { return grid().selection(); }
    void selectRows();
    void selectShown();
    void zoom();
    void newRecord();
    void erase();
    void eraseNew();
    void copy();
    void save();
    void say(const std::string& text);

    std::string output_;       // that is shown
    bool followsCurrent_;      // output_ is the current output, whichever that is
    std::string wantedTable_;  // to be shown when it is there
    std::unique_ptr<RecordsTable> records_;
    std::vector<EntityName> selected_, own_;  // in the drawing; by rows of the panel
    bool isIndexSettled_ = false;
    std::chrono::steady_clock::time_point rowsShown_;
    std::string filterFault_;
    std::optional<ConditionFault> fault_;
};

// (gis:records-panel [database [table]]) opens the panel, or brings the one that is open to the front.
// Without a database it shows the current output.
void ShowRecordsPanel(Call& call);

}  // namespace norvane
