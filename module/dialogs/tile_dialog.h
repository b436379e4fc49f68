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
    void addList(const std::string& name, int widthChars, int heightRows, bool multiSelect);
    void addDropDown(const std::string& name, int widthChars, bool editable);
    // The radio buttons that follow belong to the group.
    void addRadioGroup(const std::string& name, const std::string& label);
    void addRadio(const std::string& name, int widthChars, const std::string& label);
    // With a name and a label the group has a box; with either empty it is a column of the layout only.
    void beginGroup(const std::string& name, const std::string& label);
    void endGroup();
    void newRow();
    // New tiles go to this page; kAllPages puts them on all.
    void setPage(int page) { currentPage_ = page; }
    void setAction(const std::string& name, TileAction action, unsigned mask);
    void setAnchors(const std::string& name, double x, double y, double width, double height);
    void setStretch(const std::string& name, bool stretch);
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

    // A list takes the index of its selection, a negative one clears it; a toggle or radio "1" or "0".
    void setTile(const std::string& name, const std::string& text);
    // False when there is no such tile. A list gives its selected index, or with several their indices with
    // blanks between them.
    bool getTile(const std::string& name, std::string& text);
    void enableTile(const std::string& name, bool on);
    void focusTile(const std::string& name);
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
    // The id of a new control, 0 when there is no window for it.
    int newControl(TileRecord& tile, const char* alert);
    void addAccelerator(const TileRecord& tile);
    int find(const std::string& name);  // index, -1 when not found
    int indexOfControl(int id) const;
    ui::Control* control(int index);
    void layout();
    void placeControls();

    // What the window reports.
    void acted(int id, unsigned reason, int pendingReason);
    bool keyPressed(const ui::Key& key);
    void pressAccelerator(const Accelerator& accelerator);
    void focusNextTile(bool backwards);
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
    int radioGroup_ = 0;
    bool penInput_ = false;
    int pendingTile_ = -1;
    int pendingReason_ = 0;
    bool running_ = false;
    bool accepted_ = false;
};

}  // namespace norvane
