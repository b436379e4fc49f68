// Create New Feature Using Output Database Table: which table, and which of its fields.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "module/features/feature_from_table_rows.h"
#include "platform/ui/dialog.h"

namespace norvane {

class TableChooser : public ui::Dialog {
  public:
    // outputPath: the database that is shown at first, "" for none. objectTables: those of object data, which
    // are offered only where the host has such.
    TableChooser(std::string outputPath, bool offersObjectData,
                 const std::vector<ObjectDataTable>& objectTables);

    // The database that is shown.
    const std::string& outputPath() const { return path_; }
    bool isObjectData() const { return get<ui::CheckBox>(kObjectData).checked(); }
    // The table that is selected or typed; null when there is none of that name.
    const SourceTable* table() const;
    // Those of its attributes that are ticked.
    std::vector<FeatureFileRow> attributes() const;

    enum Id {
        kPathCaption = 1001,
        kPath,
        kTablesCaption,
        kTables,
        kSelectedCaption,
        kSelected,
        kOpenOther,
        kObjectData,
        kServer = 1901,
        kFieldsCaption,
        kFields,
        kNotice,
    };

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onTextChange(ui::Control& control) override;
    void onDoubleClick(ui::Control& control) override;
    bool onKey(const ui::Key& key) override;

    bool isGiven() const { return isObjectData() || !path_.empty(); }
    void openOther(const std::string& path);
    bool readTables(const std::string& path);
    void showTables();
    void showFields();

    std::string path_;
    std::vector<SourceTable> outputTables_, objectTables_;
    std::vector<FeatureFileRow> attributes_;  // of the selected table
};

}  // namespace norvane
