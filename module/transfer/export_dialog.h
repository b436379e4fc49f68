// The dialog that asks which features are exported, and how.
#pragma once

#include <string>
#include <vector>

#include "module/transfer/export_run.h"
#include "platform/ui/dialog.h"

namespace norvane {

class ExportDialog : public ui::Dialog {
  public:
    // The entities belong to the caller and outlive the dialog.
    explicit ExportDialog(const std::vector<ExportEntity>& entities);

    // What was chosen when the dialog ended with OK.
    const ExportChoice& choice() const { return choice_; }
    // The projection file; "" for none.
    std::string referenceFile() const;

    // Lists of the three categories, and what stands above and below each.
    static constexpr int kLists[kExportCategories] = {1001, 1002, 1003};
    static constexpr int kExportAll = 1004;
    static constexpr int kIncludeZ = 1005;
    static constexpr int kExtraFields = 1006;
    static constexpr int kOffsetCutoff = 1007;
    static constexpr int kHeadings[kExportCategories] = {1101, 1102, 1103};
    static constexpr int kCounts[kExportCategories] = {1104, 1105, 1106};
    static constexpr int kOffsetCutoffLabel = 1107;
    static constexpr int kUseDeviation = 1901;
    static constexpr int kDeviation = 1902;
    static constexpr int kHoles = 1903;
    static constexpr int kNoHeights = 1904;
    static constexpr int kReferenceLabel = 1905;
    static constexpr int kReference = 1906;
    static constexpr int kBrowse = 1907;
    static constexpr int kAsLastTime = 1908;

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onDoubleClick(ui::Control& control) override;
    void onFocus(ui::Control& control) override;
    void onOk() override;

    ui::Layout categoryColumn(int category) const;
    void selectAll(bool on);
    void takeLastTime();
    bool readDeviation();
    bool readReference();

    const std::vector<ExportEntity>& entities_;
    ExportChoice choice_;
};

}  // namespace norvane
