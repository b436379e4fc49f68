// Colours from records: by which field the entities of a feature are coloured, in which classes.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "module/annotation/annotation_sets.h"
#include "module/annotation/feature_values.h"
#include "module/annotation/record_sample.h"
#include "platform/ui/dialog.h"

namespace norvane {

class ColourDialog : public ui::Dialog {
  public:
    static constexpr int kResource = 1812;
    // The dialog ends with ui::kOk, or with this one where the legend of the feature is to be drawn, too.
    static constexpr int kDrawLegend = 1031;

    // features: with the count of their entities. chosen: the one that is shown first.
    ColourDialog(std::map<std::string, size_t> features, std::map<std::string, FeatureColours> kept,
                 const std::string& chosen);

    const std::string& feature() const { return feature_; }
    // What has become different, by feature; nothing for colours that are taken away.
    std::map<std::string, std::optional<FeatureColours>> changes() const;

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onTextChange(ui::Control& control) override;
    void onCellChange(ui::Grid& grid, ui::CellPosition at) override;
    void onUndo(ui::Grid& grid) override;
    bool onKey(const ui::Key& key) override;
    void onOk() override;

    void addControls();
    FeatureColours& draft() { return drafts_[feature_]; }
    void showFeature();
    void readValues();
    // Classes from the records, with colours of their own.
    void makeClasses();
    void showClasses();
    void takeColour(int row);
    std::string noticeNow() const;
    bool isReady();

    std::map<std::string, size_t> features_;
    std::map<std::string, FeatureColours> kept_;
    std::map<std::string, FeatureColours>
        drafts_;  // of the features that were looked at; without a field: none
    std::string feature_;
    FeatureValues values_;  // of the feature's field
    std::string problem_;   // which OK waits for
    std::string refused_;   // a colour that was typed and is none: OK tells it once
};

}  // namespace norvane
