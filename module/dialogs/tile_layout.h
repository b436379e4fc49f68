// The layout of tiles: reading order to a tree of columns, rows and tiles; then the spare width of each row
// to the tiles that asked for it. All lengths are pixels.
#pragma once

#include <vector>

#include "module/dialogs/tile.h"
#include "platform/ui/layout.h"

namespace norvane {

struct TileMeasures {
    int charHeight = 16;
    int charWidth = 8;
    int spacing = 10;
};

struct LayoutNode {
    enum class Type { kColumn, kRow, kTile };
    static constexpr int kNone = -1;

    Type type = Type::kTile;
    int parent = kNone;
    std::vector<int> children;
    int tile = kNone;  // index of the TileRecord of a tile node
    int box = kNone;   // index of the group's tile whose box is drawn round a column
    ui::Rect rectangle;
    bool resize = false;    // may take spare width
    bool resizeUp = false;  // is wider than its fair share already
    int extraSpace = 0;
    bool modified = false;  // the rectangle has to go to the window
};

class TileLayout {
  public:
    // The tiles stay the caller's, and get their rectangles by run().
    TileLayout(std::vector<TileRecord>& tiles, const TileMeasures& measures)
        : tiles_(tiles), measures_(measures) {}

    // Places the tiles of a page (kAllPages: of a dialog without pages). The size that they need, the spacing
    // round them included.
    ui::Size run(int page);
    // The tree of the last run, in the order in which it was made.
    const std::vector<LayoutNode>& nodes() const { return nodes_; }

  private:
    // First placement.
    struct Cursor;
    size_t layoutColumn(size_t start, ui::Rect& rectangle, int parent);
    void closeRow(Cursor& at);
    void startRow(Cursor& at);
    size_t placeGroup(size_t group, Cursor& at);
    size_t placeRadioGroup(size_t group, Cursor& at);
    void placeTile(size_t tile, Cursor& at);
    int addNode(LayoutNode::Type type, int parent, const ui::Rect& rectangle);
    int tileWidth(const TileRecord& tile) const;

    // Spare width.
    void distribute();
    void distributeColumn(int column);
    void distributeRow(int row);
    int fairShare(LayoutNode& row);
    void shift(int node, int distance);
    void applyRectangles();

    std::vector<TileRecord>& tiles_;
    TileMeasures measures_;
    std::vector<LayoutNode> nodes_;
    int page_ = kAllPages;
};

// Places the tiles of all pages. Those that stand on all of them, in front of the tiles of pages or behind
// them, keep clear of the largest page. The size that the largest needs.
ui::Size LayOutPages(std::vector<TileRecord>& tiles, const TileMeasures& measures);

// The rectangle of a tile after the window has grown by dx and dy.
ui::Rect AnchoredRectangle(const TileRecord& tile, int dx, int dy);
// The upper left corner of a window that is centred in an area, never left of or above its corner.
ui::Rect CentredIn(const ui::Size& area, const ui::Size& window);

}  // namespace norvane
