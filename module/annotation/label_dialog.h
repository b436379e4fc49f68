// Labels from records: which features have labels, what they say, and how tall they are.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "module/annotation/annotation_sets.h"
#include "module/annotation/record_sample.h"
#include "platform/ui/dialog.h"

namespace norvane {

class LabelDialog : public ui::Dialog {
  public:
    static constexpr int kResource = 1811;
    // The dialog ends with ui::kOk, or with this one where texts are to be made of the feature's labels, too.
    static constexpr int kMakeTexts = 1031;

    // features: with the count of their entities. chosen: the one that is shown first.
    LabelDialog(std::map<std::string, size_t> features, std::map<std::string, FeatureLabels> kept,
                const std::string& chosen);

    const std::string& feature() const { return feature_; }
    // What has become different, by feature; nothing for labels that are taken away.
    std::map<std::string, std::optional<FeatureLabels>> changes() const;

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onDoubleClick(ui::Control& control) override;
    void onTextChange(ui::Control& control) override;
    void onFocus(ui::Control& control) override;
    void onOk() override;

    void addControls();
    void showFeature();
    void insertField();
    void clearLines();
    FeatureLabels readControls() const;
    // Takes over what was typed, and shows what it makes of the first records.
    void showPreview();
    // Why the labels of a feature cannot be as they are, and the control to blame; "" where they can.
    std::string problemOf(const std::string& feature, const FeatureLabels& labels, int& control) const;
    bool isReady();

    std::map<std::string, size_t> features_;
    std::map<std::string, FeatureLabels> kept_;
    std::map<std::string, FeatureLabels> drafts_;  // of the features that were looked at
    std::string feature_;
    RecordSample sample_;  // of that feature
    int line_ = 0;         // where a field goes, the control's id
};

}  // namespace norvane
