// GIS Smart Prompting: the sheet on which the attributes of one entity are entered.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "module/images/image_panel.h"
#include "module/prompting/prompt_model.h"
#include "module/prompting/prompt_request.h"
#include "module/prompting/special_codes.h"
#include "module/store/output_database.h"
#include "platform/dao/dao.h"
#include "platform/ui/dialog.h"

namespace norvane {

class PromptSheet : public ui::Dialog, private ImagePanel::Owner {
  public:
    // Shows the feature and the record that a request names.
    explicit PromptSheet(PromptRequest request);

    // What was written when the sheet was left by OK; nothing before that, and when it was cancelled.
    const std::optional<SavedRecord>& saved() const { return saved_; }

  private:
    // The grid as the prompt model sees it.
    class Cells : public PromptCells {
      public:
        explicit Cells(ui::Grid& grid) : grid_(grid) {}
        int rowCount() const override { return grid_.rows(); }
        bool isCheckBox(int column, int row) const override;
        std::string cellText(int column, int row) const override { return grid_.text(column, row); }
        void setCellText(int column, int row, const std::string& text) override {
            grid_.setText(column, row, text);
        }

      private:
        ui::Grid& grid_;
    };

    void onOpen() override;
    void onCommand(int id) override;
    void onClickAgain(ui::RadioButton& button) override { images_->clickedAgain(button); }
    void onDrop(const std::vector<std::string>& paths) override { images_->drop(paths); }
    void onSelection(ui::Control& control) override;
    void onCellChange(ui::Grid& grid, ui::CellPosition at) override;
    void onUndo(ui::Grid& grid) override;
    bool onKey(const ui::Key& key) override;
    void onOk() override;
    void onCancel() override;

    // ImagePanel::Owner
    bool featureIsGood() override;
    int promptRows() const override { return static_cast<int>(rows_.size()); }
    void fitColumns() override { sizeColumns(); }
    ImagePlace imagePlace() const override;

    void showLinkState(bool hasRecord);

    // Opening and changing the feature.
    bool openTemplate();
    void fillFeatures();
    void selectFirstFeature();
    // Reads the rows of the selected feature and its record. A change from another feature enters each flag
    // twice.
    enum class FlagEntry { kOnce, kTwice };
    void loadFeature(FlagEntry flags);
    void readRows(FlagEntry flags);
    void showRow(int number);
    void setKey(const std::string& value);
    LoadedRecord loadRecord();
    void showRecord(const LoadedRecord& record);
    void fillTextCodes(const LoadedRecord& record);
    void refresh(RefreshReason reason);
    void sizeColumns();
    void clearRows();

    // Keys of the grid.
    void tabInGrid();
    void enterInGrid();

    // Leaving.
    bool showFault();
    std::string rowSeen(int number) const;
    std::vector<OutputField> outputFields() const;
    RecordKey recordKey() const;
    std::optional<SavedAs> save();

    // Forms of the output database.
    void fillForms();
    void restoreFormChoice();
    FormRequest rememberFormChoice();

    ui::Grid* grid_ = nullptr;
    ui::DropDown* features_ = nullptr;
    std::unique_ptr<Cells> cells_;
    std::unique_ptr<ImagePanel> images_;
    std::unique_ptr<CDaoDatabase> template_;
    bool templateTablesFound_ = false;
    PromptRequest request_;
    PointContext point_;
    std::optional<SavedRecord> saved_;

    std::string feature_;
    std::string table_;
    std::vector<PromptRow> rows_;
    FormEngine formEngine_ = FormEngine::kNone;
    bool keyIsGenerated_ = false;
    bool closing_ = false;
};

}  // namespace norvane
