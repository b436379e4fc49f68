// Audit GIS Links: one kind of links that lead nowhere, and where they are to lead instead.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/ui/dialog.h"

namespace norvane {

// What lasts from one audit to the next, until the host ends: when a folder has moved, one answer serves all
// of its tables.
struct AuditMemory {
    std::string newTemplate, newOutput;  // of the last Fix
    std::vector<std::string> tableList;  // the features of the template that was read last
};

// The links that are shown: all of those to one feature in a pair of databases.
struct BrokenLinks {
    std::string templatePath, outputPath, table;
    bool isTemplateOk = false, isOutputOk = false;
    int number = 0;  // among those that are broken, from 1
    int total = 0;
    std::vector<std::string> stillBroken;  // the tables of these and all later ones
};

class AuditDialog : public ui::Dialog {
  public:
    // showEntities: lights up the entities of the links. The memory belongs to the caller and outlives the
    // dialog.
    AuditDialog(BrokenLinks links, AuditMemory& memory, std::function<void()> showEntities);

    enum class Decision { kLeave, kFix, kErase };
    // What was decided when the dialog ended with OK.
    Decision decision() const { return decision_; }
    // Where the links are to lead.
    const BrokenLinks& links() const { return links_; }

    static constexpr int kFix = 1;
    static constexpr int kQuit = 2;
    static constexpr int kSelectTemplate = 1004;
    static constexpr int kErase = 1005;
    static constexpr int kOther = 1006;
    static constexpr int kSelectOutput = 1007;
    static constexpr int kTemplateCaption = 1058;
    static constexpr int kTableCaption = 1059;
    static constexpr int kListCaption = 1060;
    static constexpr int kOutputCaption = 1061;
    static constexpr int kTables = 1079;
    static constexpr int kTemplate = 1107;
    static constexpr int kTable = 1108;
    static constexpr int kOutput = 1110;
    static constexpr int kShow = 1901;

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onSelection(ui::Control& control) override;
    void onOk() override;
    void onCancel() override;

    bool fillFromMemory();
    void readTableChoices();
    void selectCurrentTable();
    void takeTable();
    void selectDatabase(int edit, int caption, const char* found);
    void updateFix();
    void finish(Decision decision);

    BrokenLinks links_;
    AuditMemory& memory_;
    std::function<void()> showEntities_;
    Decision decision_ = Decision::kLeave;
};

}  // namespace norvane
