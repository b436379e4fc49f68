// The layout of tiles, against rectangles that were worked out by hand for a font of 16 by 8 pixels, which
// has a spacing of 10.
#include "module/dialogs/tile_layout.h"

#include <gtest/gtest.h>

using namespace norvane;

namespace {

constexpr TileMeasures kFont{16, 8, 10};

TileRecord tile(TileType type, int width, bool stretch = false, int height = 16) {
    TileRecord t;
    t.type = type;
    t.width = width;
    t.stretch = stretch;
    t.height = height;
    return t;
}
TileRecord pixels(int width, bool stretch = false) {
    return tile(TileType::kPicture, width, stretch);
}
TileRecord row() {
    return tile(TileType::kNewRow, 0);
}
TileRecord end() {
    return tile(TileType::kEndGroup, 0);
}
TileRecord group(bool boxed) {
    TileRecord t = tile(TileType::kBeginGroup, 0);
    t.id = boxed ? 1 : 0;
    return t;
}

std::vector<ui::Rect> laidOut(std::vector<TileRecord> tiles, ui::Size* size = nullptr) {
    ui::Size needed = TileLayout(tiles, kFont).run(kAllPages);
    if (size) *size = needed;
    std::vector<ui::Rect> rectangles;
    for (const TileRecord& t : tiles) rectangles.push_back(t.rectangle);
    return rectangles;
}

}  // namespace

namespace ui {
void PrintTo(const Rect& r, std::ostream* out) {
    *out << "(" << r.left << "," << r.top << " " << r.width << "x" << r.height << ")";
}
}  // namespace ui

TEST(TileLayout, PlacesRowsInReadingOrder) {
    ui::Size size;
    auto r = laidOut(
        {tile(TileType::kText, 5), tile(TileType::kEdit, 10, false, 20), row(), tile(TileType::kToggle, 4)},
        &size);
    EXPECT_EQ(r[0], (ui::Rect{10, 10, 40, 16}));
    EXPECT_EQ(r[1], (ui::Rect{60, 10, 80, 20}));
    EXPECT_EQ(r[3], (ui::Rect{10, 40, 25 + 32, 16}));
    // One spacing behind the last tile and below the last row.
    EXPECT_EQ(size.width, 150);
    EXPECT_EQ(size.height, 40 + 16 + 10);
}

TEST(TileLayout, AnEditLowerThanItsRowGetsAPixelAboveAndBelow) {
    auto r = laidOut({tile(TileType::kList, 5, false, 100), tile(TileType::kEdit, 5, false, 20)});
    EXPECT_EQ(r[1], (ui::Rect{60, 9, 40, 22}));
}

TEST(TileLayout, AResizableTileGetsWhatItsRowIsShort) {
    auto r = laidOut({tile(TileType::kText, 10), row(), tile(TileType::kButton, 0)});
    EXPECT_EQ(r[2].width, 80);
    // Half a character or less is left: 81 against 80 pixels.
    r = laidOut({tile(TileType::kToggle, 7), row(), tile(TileType::kEdit, 10, true)});
    EXPECT_EQ(r[2].width, 80);
    // 84 pixels are 4 more: still half a character. 85 are not.
    EXPECT_EQ(laidOut({pixels(84), row(), pixels(80, true)})[2].width, 80);
    EXPECT_EQ(laidOut({pixels(85), row(), pixels(80, true)})[2].width, 85);
}

TEST(TileLayout, AWideTileIsSetAsideAndMayBeOverlapped) {
    auto r = laidOut({pixels(10, true), pixels(100, true), row(), pixels(150)});
    EXPECT_EQ(r[0], (ui::Rect{10, 10, 40, 16}));
    EXPECT_EQ(r[1], (ui::Rect{30, 10, 100, 16}));
}

TEST(TileLayout, SpareWidthIsSharedAndMovesWhatFollows) {
    // 60 spare pixels for two tiles of 20 around a fixed one of 30.
    auto r = laidOut({pixels(20, true), pixels(30), pixels(20, true), row(), pixels(150)});
    EXPECT_EQ(r[0], (ui::Rect{10, 10, 50, 16}));
    EXPECT_EQ(r[1], (ui::Rect{70, 10, 30, 16}));
    EXPECT_EQ(r[2], (ui::Rect{110, 10, 50, 16}));
}

TEST(TileLayout, ABoxGrowsWithItsColumn) {
    auto r = laidOut({group(true), tile(TileType::kText, 5, true), end(), row(), pixels(300)});
    EXPECT_EQ(r[0], (ui::Rect{10, 10, 300, 52}));  // from 66
    EXPECT_EQ(r[1], (ui::Rect{18, 26, 270, 16}));  // from 40
    EXPECT_EQ(r[4], (ui::Rect{10, 72, 300, 16}));
}

TEST(TileLayout, ABoxEnclosesItsTilesAndMovesWhatFollows) {
    auto r = laidOut({group(true), tile(TileType::kText, 5), end(), pixels(20), row(), pixels(30)});
    EXPECT_EQ(r[0], (ui::Rect{10, 10, 66, 52}));
    EXPECT_EQ(r[1], (ui::Rect{18, 26, 40, 16}));
    EXPECT_EQ(r[3], (ui::Rect{86, 10, 20, 16}));
    // The row is as high as what is in the box, its title and a spacing.
    EXPECT_EQ(r[5], (ui::Rect{10, 72, 30, 16}));
}

TEST(TileLayout, GroupsWithoutABoxAreColumnsSideBySide) {
    auto r = laidOut({group(false), pixels(50), row(), pixels(70), end(), group(false), pixels(30), row(),
                      pixels(30), end()});
    EXPECT_EQ(r[1], (ui::Rect{10, 10, 50, 16}));
    EXPECT_EQ(r[3], (ui::Rect{10, 36, 70, 16}));
    EXPECT_EQ(r[6], (ui::Rect{90, 10, 30, 16}));
    EXPECT_EQ(r[8], (ui::Rect{90, 36, 30, 16}));
}

TEST(TileLayout, RadiosStandInLinesOfTheirGroup) {
    TileRecord radios = tile(TileType::kRadioGroup, 0);
    auto r = laidOut({radios, tile(TileType::kRadio, 5), tile(TileType::kRadio, 5), row(),
                      tile(TileType::kRadio, 5), row(), pixels(20)});
    EXPECT_EQ(r[1], (ui::Rect{10, 10, 65, 16}));
    EXPECT_EQ(r[2], (ui::Rect{85, 10, 65, 16}));
    EXPECT_EQ(r[4], (ui::Rect{18, 36, 65, 16}));
    EXPECT_EQ(r[6], (ui::Rect{10, 62, 20, 16}));
}

TEST(TileLayout, OtherPagesAreLeftOut) {
    std::vector<TileRecord> tiles{pixels(20), pixels(30), pixels(40)};
    tiles[1].page = 0;
    tiles[2].page = 1;
    TileLayout(tiles, kFont).run(1);
    EXPECT_EQ(tiles[1].rectangle, (ui::Rect{}));
    EXPECT_EQ(tiles[2].rectangle, (ui::Rect{40, 10, 40, 16}));
}

TEST(TileLayout, AGroupOfAnotherPageEndsWithItAndNothingElse) {
    // A group on each page, in a group that stands on both; behind it a tile of all pages.
    std::vector<TileRecord> tiles{group(true), group(true), pixels(50), end(), group(true), pixels(70),
                                  row(),       pixels(70),  end(),      end(), row(),       pixels(30)};
    for (size_t i : {1u, 2u, 3u}) tiles[i].page = 0;
    for (size_t i : {4u, 5u, 6u, 7u, 8u}) tiles[i].page = 1;
    const ui::Size size = LayOutPages(tiles, kFont);
    // Each page begins at the same corner, inside both boxes.
    EXPECT_EQ(tiles[2].rectangle, (ui::Rect{26, 42, 50, 16}));
    EXPECT_EQ(tiles[5].rectangle, (ui::Rect{26, 42, 70, 16}));
    EXPECT_EQ(tiles[7].rectangle, (ui::Rect{26, 68, 70, 16}));
    // The boxes of the pages: 8 and 16 to the left and above, as far behind the last tile and its spacing.
    EXPECT_EQ(tiles[1].rectangle, (ui::Rect{18, 26, 76, 52}));
    EXPECT_EQ(tiles[4].rectangle, (ui::Rect{18, 26, 96, 78}));
    // The outer box goes round the larger page, and what stands behind it goes below that one.
    EXPECT_EQ(tiles[0].rectangle, (ui::Rect{10, 10, 122, 114}));
    EXPECT_EQ(tiles[11].rectangle, (ui::Rect{10, 134, 30, 16}));
    EXPECT_EQ(size.height, 134 + 16 + 10);
}

TEST(TileLayout, ABoxMovesWithTheTilesInIt) {
    // The first tile grows by 100 pixels, and pushes the box, which takes no spare width itself.
    auto r = laidOut({pixels(20, true), group(true), pixels(30), end(), row(), pixels(186)});
    EXPECT_EQ(r[0].width, 120);
    EXPECT_EQ(r[1], (ui::Rect{140, 10, 56, 52}));
    EXPECT_EQ(r[2], (ui::Rect{148, 26, 30, 16}));
}

TEST(TileLayout, EntriesOfAMenuTakeNoRoom) {
    auto r = laidOut({tile(TileType::kMenuEntry, 0), pixels(20)});
    EXPECT_EQ(r[1], (ui::Rect{10, 10, 20, 16}));
}

TEST(TileLayout, TheWidestAndTheHighestPageGiveTheSize) {
    std::vector<TileRecord> tiles{pixels(200), tile(TileType::kList, 5, false, 100), pixels(20)};
    for (int page = 0; page < 3; ++page) tiles[static_cast<size_t>(page)].page = page;
    const ui::Size size = LayOutPages(tiles, kFont);
    EXPECT_EQ(size.width, 10 + 200 + 10);
    EXPECT_EQ(size.height, 10 + 100 + 10);
}

TEST(TileLayout, AnchorsTakeTheirShareOfANewSize) {
    TileRecord t = pixels(20);
    t.rectangle = {10, 10, 20, 16};
    t.anchorX = 0.5;
    t.anchorWidth = 0.25;
    t.anchorHeight = 1.0;
    EXPECT_EQ(AnchoredRectangle(t, 31, -7), (ui::Rect{25, 10, 27, 9}));
    EXPECT_EQ(CentredIn({100, 50}, {40, 80}), (ui::Rect{30, 0, 40, 80}));
}

TEST(TileLayout, EndsWithoutABeginningDoNoHarm) {
    auto r = laidOut({end(), pixels(20), end(), end(), pixels(20)});
    EXPECT_EQ(r[1].width, 20);
    laidOut({group(true)});
    laidOut({});
}
