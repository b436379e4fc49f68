// Insert and update title blocks: which block, where the key of its inserts comes from, and the run.
#pragma once

#include <string>
#include <vector>

#include "module/titleblocks/fill_blocks.h"
#include "module/titleblocks/link_sets.h"
#include "platform/ui/dialog.h"
#include "platform/ui/list_source.h"

namespace norvane {

class FillDialog : public ui::Dialog {
  public:
    explicit FillDialog(std::vector<FillableBlock> blocks);

    static constexpr int kBlocks = 1001;
    static constexpr int kBlock = 1002;
    static constexpr int kAttributes = 1003;
    static constexpr int kValues = 1004;
    static constexpr int kKeyAttribute = 1005;
    static constexpr int kKeyValue = 1006;
    static constexpr int kFromDrawing = 1007;
    static constexpr int kFromDatabase = 1008;
    static constexpr int kPreview = 1009;
    static constexpr int kText = 1010;
    static constexpr int kBar = 1011;
    static constexpr int kSource = 1101;
    static constexpr int kValuesOf = 1102;  // the attribute beside the caption of the values
    static constexpr int kCompare = 1901;

  private:
    // The key values, or those that hold what was typed.
    class KeyValues : public ui::ListSource {
      public:
        int count() const override { return static_cast<int>(shown.size()); }
        std::string text(int index, int) const override {
            return std::string(shown[static_cast<size_t>(index)]);
        }
        std::vector<std::string_view> shown;
    };

    void addControls();
    void arrange();
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onTextChange(ui::Control& control) override;
    bool onKey(const ui::Key& key) override;
    void onOk() override;

    void replay();
    void chooseBlock();
    bool readTables();
    void chooseKey(const std::string& attribute);
    void chooseFirstKey();
    void changeSource();
    void fillValues(const std::string& part);
    void showKey(const std::string& attribute);
    bool isFromDatabase() const;
    // What is chosen; nothing, and a box, when it will not do.
    std::optional<FillChoice> choice();
    void remember();
    void run(const FillChoice& choice);
    void compare();

    std::vector<FillableBlock> blocks_;
    const BlockLinkSet* set_ = nullptr;  // of the block that is chosen
    ValueTables tables_;
    KeyValues values_;
};

}  // namespace norvane
