// Insert Blocks Using GIS Data: which block, from the records of which table, at which points, and how it
// looks.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "module/linktools/insert_blocks_drawing.h"
#include "module/linktools/insert_blocks_input.h"
#include "module/linktools/insert_blocks_records.h"
#include "platform/ui/dialog.h"

namespace norvane {

class InsertBlocksDialog : public ui::Dialog {
  public:
    explicit InsertBlocksDialog(InsertBlocksInput input);

    // The dialog ends with ui::kOk to draw, or with this one to make the block of blockFile first.
    static constexpr int kMakeBlock = 1006;

    const InsertBlocksInput& input() const { return input_; }
    // Once it has ended to draw.
    const PlacementSource& source() const { return source_; }
    const BlockPlacements& placements() const { return placements_; }
    const BlockLook& look() const { return look_; }

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onTextChange(ui::Control& control) override;
    void onCellChange(ui::Grid& grid, ui::CellPosition at) override;
    void onUndo(ui::Grid& grid) override;
    void onOk() override;
    void onCancel() override;

    void addSources();
    void addLists();
    void addAttributes();
    void addButtons();

    void selectOutput();
    void selectPoints();
    void selectBlockFile();
    void readTables();
    void showBlocks();
    void showAttributes();
    void showPlaces();
    void keepField(int row);

    const PlacementTable* chosenTable() const;
    std::vector<AttributeField> chosenFields() const;
    double readNumber(int edit, double otherwise);
    void readInput();
    // Says what stands in the way, or may not be what is meant.
    void notify(const std::string& text = {});
    std::string concern() const;
    std::string whyNotDrawn() const;
    bool readRecords();
    bool goOn(long done, long total);
    // While records are read nothing can be used but the button that stops it.
    void beginWaiting();
    void endWaiting();

    InsertBlocksInput input_;
    std::vector<std::string> blocks_, layers_;
    std::vector<PlacementTable> tables_;
    PlacementSource source_;
    BlockPlacements placements_;
    BlockLook look_;
    bool isReading_ = false, isStopped_ = false;
    std::chrono::steady_clock::time_point nextPicture_;
    std::vector<int> waiting_;  // the controls that are disabled meanwhile
};

}  // namespace norvane
