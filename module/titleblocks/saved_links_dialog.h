// The choice of a block whose saved links are to be loaded.
#pragma once

#include <string>
#include <vector>

#include "platform/ui/dialog.h"

namespace norvane {

class SavedLinksDialog : public ui::Dialog {
  public:
    explicit SavedLinksDialog(std::vector<std::string> blocks);

    // What was chosen when the dialog ended with OK.
    const std::string& block() const { return find(kBlock)->text(); }

    static constexpr int kBlocks = 1001;
    static constexpr int kBlock = 1002;

  private:
    void onOpen() override;
    void onSelection(ui::Control& control) override;
    void onDoubleClick(ui::Control& control) override;
    void onOk() override;

    std::vector<std::string> blocks_;
};

}  // namespace norvane
