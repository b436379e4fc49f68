// Which attribute of which block gets its text from which field of which table.
#pragma once

#include <string>
#include <vector>

#include "module/titleblocks/link_list.h"
#include "platform/ui/dialog.h"
#include "platform/ui/list_source.h"

namespace norvane {

class LinkSettingsDialog : public ui::Dialog {
  public:
    LinkSettingsDialog();

    static constexpr int kDatabases = 1001, kDatabase = 1002, kAttach = 1003, kDetach = 1004;
    static constexpr int kTables = 1005, kTable = 1006;
    static constexpr int kFields = 1007, kField = 1008, kSetKey = 1009, kKey = 1010;
    static constexpr int kBlocks = 1011, kBlock = 1012;
    static constexpr int kAttributes = 1013, kAttribute = 1014;
    static constexpr int kLinks = 1015;
    static constexpr int kAddLink = 1016, kRemoveLink = 1017, kUp = 1018, kDown = 1019, kSave = 1020,
                         kLoad = 1021;
    static constexpr int kServer = 1901, kFormat = 1902, kFormatCaption = 1903, kState = 1904;

  private:
    // The list of links as rows of six columns.
    class Rows : public ui::ListSource {
      public:
        explicit Rows(const LinkList& list) : list_(list) {}
        int count() const override { return static_cast<int>(list_.links().size()); }
        std::string text(int index, int column) const override;

      private:
        const LinkList& list_;
    };

    void addControls();
    void arrange();
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onDoubleClick(ui::Control& control) override;
    void onCancel() override;

    // Databases and their tables and fields.
    void attach();
    void attachServer();
    void detach();
    void join(const dao::DatabasePath& database);
    void useDatabase(const dao::DatabasePath& database);
    void useTable(const std::string& table);
    void clearTable();
    // Blocks and their attributes.
    void useBlock(const std::string& block);
    // The links.
    BlockLink current() const;
    void addLink();
    void removeLink();
    void moveLink(bool up);
    void editLink(size_t row);
    void save();
    void load();
    bool mayForgetChanges(const std::string& question);
    void showFormat(const LinkFormat& format);
    void linksChanged(int selected);
    void tell(const std::string& text) { find(kState)->setText(text); }

    LinkList list_;
    Rows rows_{list_};
    std::vector<LinkFormat> formats_;  // those to choose from
};

}  // namespace norvane
