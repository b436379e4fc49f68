#include "module/dialogs/tile_layout.h"

#include <algorithm>

namespace norvane {

namespace {

constexpr int kCheckMark = 25;  // pixels of the box in front of a toggle's or radio's label

bool hasPixelWidth(TileType type) {
    switch (type) {
        case TileType::kPicture:
        case TileType::kPointView:
        case TileType::kWindowView:
        case TileType::kProgress:
            return true;
        default:
            return false;
    }
}

// Drawn a little larger than their text, so that they fill a row that is higher.
bool fillsRow(TileType type) {
    return type == TileType::kEdit || type == TileType::kDropDown || type == TileType::kEditableDropDown ||
           type == TileType::kList || type == TileType::kColumnList;
}

}  // namespace

// Where the next tile of a column goes.
struct TileLayout::Cursor {
    int column;  // node
    int row;     // node
    int left, top;
    int x, y;
    int rowHeight;
    int widest = 0;
};

int TileLayout::addNode(LayoutNode::Type type, int parent, const ui::Rect& rectangle) {
    LayoutNode node;
    node.type = type;
    node.parent = parent;
    node.rectangle = rectangle;
    int index = static_cast<int>(nodes_.size());
    nodes_.push_back(std::move(node));
    if (parent != LayoutNode::kNone) nodes_[static_cast<size_t>(parent)].children.push_back(index);
    return index;
}

int TileLayout::tileWidth(const TileRecord& tile) const {
    if (hasPixelWidth(tile.type)) return tile.width;
    bool marked = tile.type == TileType::kToggle || tile.type == TileType::kRadio;
    return (marked ? kCheckMark : 0) + tile.width * measures_.charWidth;
}

ui::Size TileLayout::run(int page) {
    page_ = page;
    nodes_.clear();
    ui::Size content;
    int left = measures_.spacing;
    // One run takes all rows; only the end of a group that was never begun starts another beside it.
    for (size_t i = 0; i < tiles_.size(); ++i) {
        ui::Rect rectangle{left, measures_.spacing, 0, 0};
        i = layoutColumn(i, rectangle, LayoutNode::kNone);
        left = rectangle.left + rectangle.width;
        content.width = std::max(content.width, left);
        content.height = std::max(content.height, rectangle.top + rectangle.height);
    }
    distribute();
    applyRectangles();
    return content;
}

// --- First placement --------------------------------------------------------------------------------------

void TileLayout::startRow(Cursor& at) {
    at.row = addNode(LayoutNode::Type::kRow, at.column, {at.left, at.y, 0, 0});
    at.x = at.left;
    at.rowHeight = measures_.charHeight;
}

void TileLayout::closeRow(Cursor& at) {
    ui::Rect& row = nodes_[static_cast<size_t>(at.row)].rectangle;
    row.height = at.rowHeight;
    row.width = at.x + measures_.spacing - at.left;
    at.widest = std::max(at.widest, row.width);
}

// Places tiles from `start` to the end of the group or of all tiles, whose index is given back. The rectangle
// comes with its corner and leaves with its size.
size_t TileLayout::layoutColumn(size_t start, ui::Rect& rectangle, int parent) {
    Cursor at{0, 0, rectangle.left, rectangle.top, rectangle.left, rectangle.top, measures_.charHeight};
    at.column = addNode(LayoutNode::Type::kColumn, parent, {at.left, at.top, 0, 0});
    startRow(at);
    size_t i = start;
    for (; i < tiles_.size(); ++i) {
        const TileRecord& tile = tiles_[i];
        // With a group its end is left out too, and does not close the column that the group stands in.
        if (tile.page != kAllPages && tile.page != page_) continue;
        if (tile.type == TileType::kEndGroup) break;
        switch (tile.type) {
            case TileType::kMenuEntry:
                break;
            case TileType::kBeginGroup:
                i = placeGroup(i, at);
                break;
            case TileType::kRadioGroup:
                i = placeRadioGroup(i, at);
                break;
            case TileType::kNewRow:
                closeRow(at);
                at.y += at.rowHeight + measures_.spacing;
                startRow(at);
                break;
            default:
                placeTile(i, at);
        }
    }
    closeRow(at);
    rectangle.width = at.widest;
    rectangle.height = at.y + at.rowHeight + measures_.spacing - at.top;
    nodes_[static_cast<size_t>(at.column)].rectangle = rectangle;
    rectangle.width -= measures_.spacing;  // what follows stands one spacing behind the last tile
    return i;
}

size_t TileLayout::placeGroup(size_t group, Cursor& at) {
    const bool boxed = tiles_[group].id != 0;
    const ui::Rect corner{at.x, at.y, 0, 0};
    ui::Rect inner{at.x, at.y, 0, 0};
    if (boxed) {
        inner.left += measures_.charWidth;
        inner.top += measures_.charHeight;
    }
    int column = static_cast<int>(nodes_.size());
    size_t end = layoutColumn(group + 1, inner, at.row);
    at.x = inner.left + inner.width;
    at.rowHeight = std::max(at.rowHeight, inner.height);
    if (boxed) {
        int right = at.x + measures_.charWidth;
        int bottom = inner.top + inner.height + measures_.spacing;
        at.rowHeight += measures_.charHeight + measures_.spacing;
        at.x = right + measures_.spacing;
        LayoutNode& node = nodes_[static_cast<size_t>(column)];
        node.box = static_cast<int>(group);
        node.rectangle = {corner.left, corner.top, right - corner.left, bottom - corner.top};
        tiles_[group].rectangle = node.rectangle;
    }
    return end;
}

size_t TileLayout::placeRadioGroup(size_t group, Cursor& at) {
    const bool labelled = !tiles_[group].label.empty();
    const int left = at.x;
    int column = addNode(LayoutNode::Type::kColumn, at.row, {at.x, at.y, 0, 0});
    int y = at.y;
    if (labelled) {
        at.x += measures_.charWidth;
        y += measures_.charHeight;
    }
    int right = at.x;
    size_t i = group + 1;
    auto isRadio = [&](size_t index) {
        return index < tiles_.size() && tiles_[index].type == TileType::kRadio;
    };
    for (;; ++i) {
        if (i < tiles_.size() && tiles_[i].type == TileType::kNewRow && isRadio(i + 1)) {
            y += measures_.charHeight + measures_.spacing;
            at.x = left + measures_.charWidth;
            continue;
        }
        if (!isRadio(i)) break;
        int node =
            addNode(LayoutNode::Type::kTile, column, {at.x, y, tileWidth(tiles_[i]), tiles_[i].height});
        nodes_[static_cast<size_t>(node)].tile = static_cast<int>(i);
        tiles_[i].rectangle = nodes_[static_cast<size_t>(node)].rectangle;
        at.x += tileWidth(tiles_[i]) + measures_.spacing;
        right = std::max(right, at.x);
    }
    int bottom = y + measures_.charHeight;
    if (labelled) {
        right += measures_.charWidth + measures_.spacing;
        bottom += measures_.spacing;
    }
    LayoutNode& node = nodes_[static_cast<size_t>(column)];
    node.rectangle.width = right - measures_.spacing - left;
    node.rectangle.height = bottom - at.y;
    if (labelled && tiles_[group].id != 0) {
        node.box = static_cast<int>(group);
        tiles_[group].rectangle = node.rectangle;
    }
    at.x = right;
    at.rowHeight = std::max(at.rowHeight, node.rectangle.height);
    return i - 1;
}

void TileLayout::placeTile(size_t index, Cursor& at) {
    TileRecord& tile = tiles_[index];
    ui::Rect rectangle{at.x, at.y, tileWidth(tile), tile.height};
    at.rowHeight = std::max(at.rowHeight, tile.height);
    at.x += rectangle.width + measures_.spacing;
    if (fillsRow(tile.type) && tile.height < at.rowHeight) {
        rectangle.top -= 1;
        rectangle.height += 2;
    }
    int node = addNode(LayoutNode::Type::kTile, at.row, rectangle);
    nodes_[static_cast<size_t>(node)].tile = static_cast<int>(index);
    nodes_[static_cast<size_t>(node)].resize = tile.width == 0 || tile.stretch;
    tile.rectangle = rectangle;
}

// --- Spare width ------------------------------------------------------------------------------------------

void TileLayout::distribute() {
    for (const LayoutNode& node : nodes_)
        if (node.resize)
            for (int up = node.parent; up != LayoutNode::kNone; up = nodes_[static_cast<size_t>(up)].parent)
                nodes_[static_cast<size_t>(up)].resize = true;
    // A parent is always made before its children, so that one sweep in order hands the width all the way
    // down.
    for (size_t i = 0; i < nodes_.size(); ++i) {
        if (!nodes_[i].resize) continue;
        if (nodes_[i].type == LayoutNode::Type::kColumn)
            distributeColumn(static_cast<int>(i));
        else if (nodes_[i].type == LayoutNode::Type::kRow)
            distributeRow(static_cast<int>(i));
    }
    for (LayoutNode& node : nodes_)
        if (node.box != LayoutNode::kNone && node.resize) node.modified = true;
}

// Brings the rows of a column to the same width.
void TileLayout::distributeColumn(int index) {
    const LayoutNode& column = nodes_[static_cast<size_t>(index)];
    int maxWidth = 0;
    if (column.extraSpace > 0) {
        maxWidth = column.extraSpace + column.rectangle.width;
        if (column.box != LayoutNode::kNone) maxWidth -= measures_.spacing;
    } else {
        for (int child : column.children)
            maxWidth = std::max(maxWidth, nodes_[static_cast<size_t>(child)].rectangle.width);
    }
    for (int child : column.children) {
        LayoutNode& row = nodes_[static_cast<size_t>(child)];
        int shortfall = maxWidth - row.rectangle.width;
        if (!row.resize || shortfall <= measures_.charWidth / 2) continue;
        row.extraSpace = shortfall;
    }
}

// The width that each resizable child of a row should have. Those that are wider already are set aside.
int TileLayout::fairShare(LayoutNode& row) {
    int sum = 0;
    int count = 0;
    for (int child : row.children)
        if (const LayoutNode& node = nodes_[static_cast<size_t>(child)]; node.resize) {
            sum += node.rectangle.width;
            ++count;
        }
    int fair = 0;
    bool restart = true;
    while (restart && count > 0) {
        fair = (sum + row.extraSpace) / count;
        if (sum < 1) break;
        restart = false;
        for (int child : row.children) {
            LayoutNode& node = nodes_[static_cast<size_t>(child)];
            if (!node.resize || node.resizeUp || node.rectangle.width <= fair) continue;
            node.resizeUp = true;
            sum -= node.rectangle.width;
            --count;
            restart = true;
            break;
        }
    }
    return fair;
}

void TileLayout::distributeRow(int index) {
    LayoutNode& row = nodes_[static_cast<size_t>(index)];
    const int fair = fairShare(row);
    int moved = 0;
    for (int child : row.children) {
        LayoutNode& node = nodes_[static_cast<size_t>(child)];
        // One that is set aside stays exactly where it is, even where a neighbour grows over it.
        if (node.resizeUp) continue;
        shift(child, moved);
        int delta = fair - node.rectangle.width;
        if (!node.resize || delta < 1) continue;
        if (node.type == LayoutNode::Type::kColumn) {
            node.extraSpace = delta;
        } else {
            node.rectangle.width += delta;
            node.modified = true;
        }
        moved += delta;
    }
}

void TileLayout::shift(int index, int distance) {
    if (distance == 0) return;
    LayoutNode& node = nodes_[static_cast<size_t>(index)];
    node.rectangle.left += distance;
    // A box goes with the tiles inside it.
    if (node.type == LayoutNode::Type::kTile || node.box != LayoutNode::kNone) node.modified = true;
    for (int child : node.children) shift(child, distance);
}

void TileLayout::applyRectangles() {
    for (const LayoutNode& node : nodes_) {
        if (!node.modified) continue;
        int index = node.tile != LayoutNode::kNone ? node.tile : node.box;
        if (index == LayoutNode::kNone) continue;
        TileRecord& tile = tiles_[static_cast<size_t>(index)];
        tile.rectangle = node.rectangle;
        if (node.tile == LayoutNode::kNone) tile.rectangle.width += node.extraSpace;
    }
}

// --- Pages ------------------------------------------------------------------------------------------------

ui::Size LayOutPages(std::vector<TileRecord>& tiles, const TileMeasures& measures) {
    int pages = 0;
    for (const TileRecord& tile : tiles) pages = std::max(pages, tile.page + 1);
    if (pages == 0) return TileLayout(tiles, measures).run(kAllPages);
    ui::Size content;
    std::vector<ui::Rect> shared(tiles.size());
    for (int page = 0; page < pages; ++page) {
        const ui::Size size = TileLayout(tiles, measures).run(page);
        content.width = std::max(content.width, size.width);
        content.height = std::max(content.height, size.height);
        for (size_t i = 0; i < tiles.size(); ++i) {
            const ui::Rect& here = tiles[i].rectangle;
            ui::Rect& r = shared[i];
            const int right = std::max(r.left + r.width, here.left + here.width);
            const int bottom = std::max(r.top + r.height, here.top + here.height);
            r.left = std::max(r.left, here.left);
            r.top = std::max(r.top, here.top);
            r.width = right - r.left;
            r.height = bottom - r.top;
        }
    }
    for (size_t i = 0; i < tiles.size(); ++i)
        if (tiles[i].page == kAllPages) tiles[i].rectangle = shared[i];
    return content;
}

// --- Sizes of the window ----------------------------------------------------------------------------------

ui::Rect AnchoredRectangle(const TileRecord& tile, int dx, int dy) {
    ui::Rect r = tile.rectangle;
    r.left += static_cast<int>(dx * tile.anchorX);
    r.top += static_cast<int>(dy * tile.anchorY);
    r.width += static_cast<int>(dx * tile.anchorWidth);
    r.height += static_cast<int>(dy * tile.anchorHeight);
    return r;
}

ui::Rect CentredIn(const ui::Size& area, const ui::Size& window) {
    return {std::max(0, (area.width - window.width) / 2), std::max(0, (area.height - window.height) / 2),
            window.width, window.height};
}

}  // namespace norvane
