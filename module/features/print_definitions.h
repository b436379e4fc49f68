// Print/Preview GIS from MDB: the definitions of features on a sheet that is looked at, printed and saved.
#pragma once

#include <string>
#include <vector>

#include "module/features/print_definitions_rows.h"
#include "platform/ui/dialog.h"

namespace norvane {

// The sheet of the dialog: the features that were put on it, and the rows that they take.
class DefinitionSheet : public ui::GridSource {
  public:
    explicit DefinitionSheet(const TemplateDefinitions& definitions) : definitions_(definitions) {}

    const std::vector<DefinedFeature>& features() const { return features_; }
    const std::vector<DefinitionRow>& shown() const { return rows_; }
    DefinitionForm form() const { return form_; }
    void setForm(const DefinitionForm& form);
    void clear();
    // At the end, whether or not it is there already.
    void add(const DefinedFeature& feature);
    bool has(const std::string& name) const;
    // The feature that begins at a row; nothing is removed where none does.
    bool beginsFeature(int row) const;
    void removeFeature(int row);

    int rows() const override { return static_cast<int>(rows_.size()); }
    std::string text(int column, int row) const override;
    void setText(int, int, std::string) override {}  // the sheet is not typed into

  private:
    void addRows(const DefinedFeature& feature);

    const TemplateDefinitions& definitions_;
    DefinitionForm form_;
    std::vector<DefinedFeature> features_;
    std::vector<DefinitionRow> rows_;
};

class PrintDefinitionsDialog : public ui::Dialog {
  public:
    // What the template holds, and its path. The definitions stay the caller's.
    PrintDefinitionsDialog(const TemplateDefinitions& definitions, std::string templatePath);

  private:
    enum Id {
        kTree = 1001,
        kAppend,
        kAppendAll,
        kSheet,
        kRemove,
        kRemoveAll,
        kDetails,
        kPrint,
        kQuit,
        kTypes = 1901,
        kFoot,
        kSave,
    };
    // What stands at a node of the tree; a feature below 0 stands for the whole category.
    struct Place {
        size_t category;
        int feature;
    };

    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control&) override { enableButtons(); }
    void onDoubleClick(ui::Control& control) override;
    void onCellClick(ui::Grid&, ui::CellPosition) override { enableButtons(); }
    void onKeyUp(const ui::Key&, int) override { enableButtons(); }
    void onOk() override {}  // Enter closes nothing

    void fillTree();
    std::vector<DefinedFeature> selectedFeatures() const;
    void append();
    void appendAll();
    void remove();
    void setForm();
    void showSheet();
    void fitColumns();
    void enableButtons();
    void print();
    void save();

    const TemplateDefinitions& definitions_;
    std::string templatePath_;
    std::vector<DefinedCategory> categories_;
    std::vector<Place> places_;  // by node
    DefinitionSheet sheet_;
};

}  // namespace norvane
