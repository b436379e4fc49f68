// Create GIS Links: which block, which of its attributes is the key, and which attribute or table tells the
// table.
#pragma once

#include <string>
#include <vector>

#include "module/linktools/link_blocks.h"
#include "platform/ui/dialog.h"

namespace norvane {

class LinkBlocksDialog : public ui::Dialog {
  public:
    explicit LinkBlocksDialog(const std::vector<BlockReference>& references);

    // What was chosen when the dialog ended with OK.
    const BlockLinkChoice& choice() const { return choice_; }

    static constexpr int kBlocks = 1001;
    static constexpr int kAttributes = 1002;
    static constexpr int kTables = 1003;
    static constexpr int kTakeFirst = 1004;
    static constexpr int kTakeSecond = 1005;
    static constexpr int kTemplate = 1104;
    static constexpr int kOutput = 1105;
    static constexpr int kBlock = 1106;
    static constexpr int kFirst = 1107;
    static constexpr int kSecond = 1108;

  private:
    void onOpen() override;
    void onSelection(ui::Control& control) override;
    void onCommand(int id) override;
    void onOk() override;

    void readTables();
    void replay();
    void chooseBlock();
    void selectAttribute();
    void selectTable();
    void takeFirst();
    void takeSecond();
    void taken();
    // What is taken stands in no list; the rest stands in its old order.
    void fillLists();
    void showChoice();

    std::vector<std::string> blocks_, attributes_, tables_;
    BlockLinkChoice choice_;
};

}  // namespace norvane
