// All inserts of a block with the texts that they have and those that the database has, side by side; the
// same as a look at what a run would do and as an audit of what differs.
#pragma once

#include <string>
#include <vector>

#include "module/titleblocks/fill_blocks.h"
#include "platform/ui/dialog.h"
#include "platform/ui/grid_source.h"

namespace norvane {

// An attribute of an insert that has a link.
struct ComparedText {
    std::string handle;  // of the insert
    std::string key;
    std::string attribute;
    std::string before;
    std::string after;
    bool isFound = false;  // there is a record for it
    bool differs() const { return isFound && before != after; }
};
std::vector<ComparedText> CompareBlocks(const FillChoice& choice, const std::vector<BlockLink>& links,
                                        const ValueTables& tables);

class CompareDialog : public ui::Dialog {
  public:
    // It ends with OK when all of it is to be written.
    CompareDialog(const std::string& block, std::vector<ComparedText> texts);

    static constexpr int kGrid = 1001;
    static constexpr int kOnlyDifferent = 1002;
    static constexpr int kCount = 1003;

  private:
    class Rows : public ui::GridSource {
      public:
        int rows() const override { return static_cast<int>(shown.size()); }
        std::string text(int column, int row) const override;
        void setText(int, int, std::string) override {}
        std::vector<const ComparedText*> shown;
    };
    void onOpen() override;
    void onCommand(int id) override;
    void fill();

    std::vector<ComparedText> texts_;
    Rows rows_;
};

}  // namespace norvane
