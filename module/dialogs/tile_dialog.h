// A dialog that is a script of calls: tiles are added in reading order, groups are opened and closed, rows
// begun; the engine measures everything in units of the dialog font and places it. From then on tiles are
// addressed by name, with text for every value.
//
//     TileDialog dialog;
//     dialog.create("Title", 40, 10, 9, false, TileDialog::kFitTiles);
//     dialog.addText("header", 0, 0, "Tables:");
//     dialog.newRow();
//     dialog.addList("tables", 30, 8, false);
//     dialog.setAction("ok", accept, kOnAll);
//     dialog.show();
//     while (dialog.running()) dialog.pumpOnce();
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "module/dialogs/tile.h"
#include "module/dialogs/tile_layout.h"
#include "platform/ui/dialog.h"

namespace norvane {

class TileDialog {
  public:
    static constexpr size_t kCapacity = 300;  // tiles, rows and the ends of groups included
    // Style flags.
    static constexpr unsigned kFitTiles = 1;  // the window is as large as its tiles need
    static constexpr unsigned kCompact = 2;   // half the spacing
    static constexpr unsigned kSilent = 4;    // no word about tiles that are not found

    TileDialog();
    ~TileDialog();
    TileDialog(const TileDialog&) = delete;
    TileDialog& operator=(const TileDialog&) = delete;

    // Makes the window, of a smallest size in characters. resource: the number that scripts answer it by.
    void create(const std::string& title, int widthChars, int heightChars, int fontSize, bool bold,
                unsigned style, int resource = kResource);
    static constexpr int kResource = 2022;

    // --- Building, in reading order; width 0 asks for the room that is left -----------------------------

    void addButton(const std::string& name, int widthChars, const std::string& label, TileAction action = {});
    void addToggle(const std::string& name, int widthChars, const std::string& label);
    void addEdit(const std::string& name, int widthChars);
    // alignment: 0 left, 1 centre, 2 right.
    void addText(const std::string& name, int widthChars, int alignment, const std::string& initialText);
    // What is typed is not shown.
    void addPassword(const std::string& name, int widthChars);
    // A line that can be selected and not typed into.
    void addReadOnly(const std::string& name, int widthChars, const std::string& initialText);
    void addList(const std::string& name, int widthChars, int heightRows, bool multiSelect);
    // The texts of an item's columns are divided by tabs.
    void addColumnList(const std::string& name, int widthChars, int heightRows,
                       std::vector<std::string> headings, bool multiSelect);
    void addDropDown(const std::string& name, int widthChars, bool editable);
    // Without rows at first; what the grid needs is done to the control that tileWindow gives.
    void addSpreadsheet(const std::string& name, int widthChars, int heightRows, int columns);
    // A frame with the image file that setTile names.
    void addPicture(const std::string& name, int widthPixels, int heightPixels);
    // Frames that keep where they look: at a point, "%f %f", or at a window, "%f %f %f %f".
    void addPointView(const std::string& name, int widthPixels, int heightPixels);
    void addWindowView(const std::string& name, int widthPixels, int heightPixels);
    // A bar of 0 to 100, unless setRange gives it others.
    void addProgress(const std::string& name, int widthPixels);
    // The row of tabs that turns the pages of setPage. Ctrl+Tab and Ctrl+PageDown turn them as well, without
    // pages they lead to the next tile.
    void addTabs(const std::string& name, int widthChars, std::vector<std::string> pages);
    // A heading in the menu bar, and an entry of the last heading; shortcut: as "Ctrl+S".
    void addMenu(const std::string& label);
    void addMenuEntry(const std::string& name, const std::string& label, TileAction action,
                      const std::string& shortcut = {});
    // The radio buttons that follow belong to the group.
    void addRadioGroup(const std::string& name, const std::string& label);
    void addRadio(const std::string& name, int widthChars, const std::string& label);
    // With a name and a label the group has a box; with either empty it is a column of the layout only.
    void beginGroup(const std::string& name, const std::string& label);
    void endGroup();
    void newRow();
    // New tiles go to this page, from 0; kAllPages puts them on all. Those stand in front of the tiles of
    // pages or behind them.
    void setPage(int page) { currentPage_ = page; }
    void setAction(const std::string& name, TileAction action, unsigned mask);
    void setAnchors(const std::string& name, double x, double y, double width, double height);
    void setStretch(const std::string& name, bool stretch);
    // In place of the dialog's font, by which the tile is measured all the same.
    void setFont(const std::string& name, const ui::Font& font);
    // Whether a keyboard button goes in front of each edit.
    void setPenInput(bool on) { penInput_ = on; }

    // --- Running ----------------------------------------------------------------------------------------

    void show();
    // Waits for a message and runs the action that it has led to, if any. Actions run from here alone.
    void pumpOnce();
    bool running() const { return running_; }
    // What an OK or Cancel action does: the loop ends, accepted or not.
    void finish(bool accepted);
    bool accepted() const { return accepted_; }

    // --- By name. A name that is not found is told on the command line, and nothing is done. ------------

    // A list takes the index of its selection, a negative one clears it; a toggle or radio "1" or "0"; a bar
    // its position, tabs the index of a page, a view its numbers.
    void setTile(const std::string& name, const std::string& text);
    // False when there is no such tile. A list gives its selected index, or with several their indices with
    // blanks between them.
    bool getTile(const std::string& name, std::string& text);
    void enableTile(const std::string& name, bool on);
    void focusTile(const std::string& name);
    void setRange(const std::string& name, int from, int to);
    void listClear(const std::string& name);
    void listAdd(const std::string& name, const std::string& text);
    // The control of a tile; null when there is none.
    ui::Control* tileWindow(const std::string& name);

    const std::vector<TileRecord>& tiles() const { return tiles_; }
    const TileMeasures& measures() const { return measures_; }
    ui::Dialog* window();

  private:
    class Window;
    struct Accelerator {
        unsigned flags;
        char key;
        int tile;  // id
    };

    TileRecord& addRecord(TileType type, const std::string& name, int width);
    TileRecord& addEditRecord(TileType type, const std::string& name, int width);
    TileRecord& addListRecord(TileType type, const std::string& name, int width, int lines);
    // The new control of a tile; null, after the alert, when there is no window for it.
    template <class C, class... Arguments>
    C* addControl(TileRecord& tile, const char* alert, Arguments&&... arguments);
    template <class C, class... Arguments>
    void addPixels(TileType type, const std::string& name, int width, int height, Arguments&&... arguments);
    // The id of a new control, 0 when there is no window for it.
    int newControl(TileRecord& tile, const char* alert);
    void addAccelerator(const TileRecord& tile);
    int find(const std::string& name);  // index, -1 when not found
    int indexOfControl(int id) const;
    ui::Control* control(int index);
    void layout();
    void placeControls();
    // Shows the tiles of the page that the tabs are at, and hides those of the others.
    void showPage();
    void turnPage(bool backwards);
    ui::Tabs* tabs();

    // What the window reports.
    void acted(int id, unsigned reason, int pendingReason);
    bool keyPressed(const ui::Key& key);
    void pressAccelerator(const Accelerator& accelerator);
    void focusNextTile(bool backwards);
    static void activateNextCell(ui::Grid& grid, bool backwards);
    void closed();
    void resized(ui::Size size);

    std::unique_ptr<Window> window_;
    std::vector<TileRecord> tiles_;
    std::vector<Accelerator> accelerators_;
    TileMeasures measures_;
    ui::Size minimum_;
    ui::Size shownSize_;
    unsigned style_ = 0;
    int nextControlNumber_ = 0;
    int currentPage_ = kAllPages;
    std::vector<int> openGroups_;  // the page of each group that has not ended
    int radioGroup_ = 0;
    ui::Menu* menu_ = nullptr;  // the window's
    bool penInput_ = false;
    int pendingTile_ = -1;
    int pendingReason_ = 0;
    bool running_ = false;
    bool accepted_ = false;
};

}  // namespace norvane
