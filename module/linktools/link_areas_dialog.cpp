#include "module/linktools/link_areas_dialog.h"

#include "module/cad/layers.h"
#include "module/dialogs/tile_dialog.h"
#include "platform/ads/editor.h"
#include "platform/ads/entities.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

constexpr int kResource = 1390;
constexpr int kFontSize = 16;                                  // of the size of the other dialogs
constexpr int kListWidth = 34, kListRows = 8, kLayerRows = 6;  // characters and lines

std::vector<std::string> layerNames() {
    std::vector<std::string> names = LayerNames();
    for (std::string& name : names) name = text::upper(name);
    return names;
}

class AreaDialog {
  public:
    AreaDialog(AreaKey key, const std::vector<KeyTable>& tables)
        : isText_(key == AreaKey::kText), tables_(tables), layers_(layerNames()) {
        dialog_.create("Create GIS Links", 2 * kListWidth, 10, kFontSize, false, TileDialog::kFitTiles,
                       kResource);
        addTables();
        if (isText_) addLayers();
        addButtons();
        placeSpareRoom();
        fill();
    }

    std::optional<AreaChoice> run() {
        dialog_.focusTile("list1");
        dialog_.show();
        while (dialog_.running()) dialog_.pumpOnce();
        if (!dialog_.accepted()) return {};
        return std::move(choice_);
    }

  private:
    void addTables() {
        dialog_.beginGroup("", "");
        dialog_.addText("header1", kListWidth, 0, "Tables from Output MDB:");
        dialog_.newRow();
        dialog_.addList("list1", kListWidth, kListRows, false);
        dialog_.endGroup();
        dialog_.beginGroup("", "");
        dialog_.addText("header2", kListWidth, 0, "Fields from Selected Table:");
        dialog_.newRow();
        dialog_.addList("list2", kListWidth, kListRows, false);
        dialog_.endGroup();
        dialog_.newRow();
        dialog_.setAction(
            "list1", [this](TileDialog&, const std::string&) { showFields(); }, kOnSelection);
    }

    void addLayers() {
        dialog_.beginGroup("", "");
        dialog_.addText("header3", 0, 0, "Layer used to create new polylines:");
        dialog_.newRow();
        dialog_.addList("list3", 0, kLayerRows, false);
        dialog_.newRow();
        dialog_.addEdit("edit1", 0);
        dialog_.newRow();
        dialog_.addToggle("is_duplicate", 22, "Create New Entities");
        dialog_.endGroup();
        dialog_.newRow();
        dialog_.setAction(
            "list3", [this](TileDialog&, const std::string&) { takeLayer(); }, kOnSelection);
        dialog_.setAction(
            "is_duplicate", [this](TileDialog&, const std::string&) { turnLayers(); },
            kOnClick | kOnAccelerator);
    }

    void addButtons() {
        auto addSpacer = [&](const char* name) {
            if (!isText_) dialog_.addText(name, 0, 0, "");
        };
        addSpacer("spacer1");
        dialog_.addButton("ok", 12, "OK", [this](TileDialog&, const std::string&) { accept(); });
        addSpacer("spacer2");
        dialog_.addButton("cancel", 12, "Cancel",
                          [](TileDialog& dialog, const std::string&) { dialog.finish(false); });
        addSpacer("spacer3");
    }

    // A window that is made larger gives its room to the lists.
    void placeSpareRoom() {
        const double upper = isText_ ? 0.5 : 1;
        dialog_.setAnchors("list1", 0, 0, 0.5, upper);
        dialog_.setAnchors("header2", 0.5, 0, 0, 0);
        dialog_.setAnchors("list2", 0.5, 0, 0.5, upper);
        if (isText_) {
            dialog_.setAnchors("header3", 0, upper, 1, 0);
            dialog_.setAnchors("list3", 0, upper, 1, 0.5);
            dialog_.setAnchors("edit1", 0, 1, 1, 0);
            dialog_.setAnchors("is_duplicate", 0, 1, 0, 0);
        }
        for (const char* button : {"ok", "cancel"}) dialog_.setAnchors(button, 0, 1, 0, 0);
    }

    void fill() {
        for (const KeyTable& table : tables_) dialog_.listAdd("list1", table.name);
        dialog_.setTile("list1", "0");
        showFields();
        if (!isText_) return;
        for (const std::string& layer : layers_) dialog_.listAdd("list3", layer);
        dialog_.setTile("edit1", CurrentLayer());
        dialog_.setTile("is_duplicate", "0");
        enableLayers(false);
    }

    void showFields() {
        dialog_.listClear("list2");
        const int table = selected("list1");
        if (table < 0) return;
        for (const std::string& field : tables_[static_cast<size_t>(table)].fields)
            dialog_.listAdd("list2", field);
        dialog_.setTile("list2", "0");
    }

    void takeLayer() {
        const int layer = selected("list3");
        if (layer >= 0) dialog_.setTile("edit1", layers_[static_cast<size_t>(layer)]);
        dialog_.focusTile("edit1");
    }

    void turnLayers() {
        enableLayers(makesNew());
        dialog_.focusTile(makesNew() ? "edit1" : "list2");
    }

    void enableLayers(bool on) {
        for (const char* tile : {"header3", "list3", "edit1"}) dialog_.enableTile(tile, on);
    }

    void accept() {
        const int table = selected("list1"), field = selected("list2");
        if (table < 0) return refuse("Please select a table name from list!", "list1");
        if (field < 0) return refuse("Please select a field name from list!", "list2");
        const KeyTable& chosen = tables_[static_cast<size_t>(table)];
        choice_ = {chosen.name, chosen.fields[static_cast<size_t>(field)], makesNew(), value("edit1")};
        if (choice_.makesNew && acdbSNValid(choice_.layer.c_str(), 0) != RTNORM)
            return refuse("Invalid Layer Name - " + choice_.layer, "edit1");
        dialog_.finish(true);
    }

    void refuse(const std::string& why, const char* tile) {
        acedAlert(why.c_str());
        dialog_.focusTile(tile);
    }

    std::string value(const char* tile) {
        std::string text;
        if (isText_ || tile[0] == 'l') dialog_.getTile(tile, text);
        return text;
    }
    // -1 when nothing is selected.
    int selected(const char* list) {
        const std::string index = value(list);
        return index.empty() ? -1 : static_cast<int>(text::toLong(index));
    }
    bool makesNew() { return value("is_duplicate") == "1"; }

    const bool isText_;
    const std::vector<KeyTable>& tables_;
    const std::vector<std::string> layers_;
    TileDialog dialog_;
    AreaChoice choice_;
};

}  // namespace

std::optional<AreaChoice> AskAreaChoice(AreaKey key, const std::vector<KeyTable>& tables) {
    return AreaDialog(key, tables).run();
}

}  // namespace norvane
