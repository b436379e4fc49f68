#include "module/linktools/audit_dialog.h"

#include <algorithm>
#include <utility>

#include "module/dialogs/file_boxes.h"
#include "module/linktools/link_targets.h"
#include "module/store/server_sign_in.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 145;
constexpr int kListRows = 10;
constexpr const char* kTemplateFound = "Template database:";
constexpr const char* kOutputFound = "Output database:";
constexpr const char* kTableFound = "Current Table:";

bool contains(const std::vector<std::string>& names, const std::string& upperName) {
    return std::find(names.begin(), names.end(), upperName) != names.end();
}

bool haveSameName(const std::string& one, const std::string& other) {
    return text::equalNoCase(files::nameOf(one), files::nameOf(other));
}

const char* tableCaption(bool inTemplate, bool inOutput) {
    if (inTemplate && inOutput) return kTableFound;
    if (inTemplate) return "Table not found in Output database:";
    if (inOutput) return "Table not found in Template database:";
    return "Table not found in Template and in Output database:";
}

}  // namespace

AuditDialog::AuditDialog(BrokenLinks links, AuditMemory& memory, std::function<void()> showEntities)
    : ui::Dialog(kResource, "Audit GIS Links from Current Drawing"),
      links_(std::move(links)),
      memory_(memory),
      showEntities_(std::move(showEntities)) {
    add<ui::Label>(kTemplateCaption, "Template database not found:");
    add<ui::Edit>(kTemplate, true);
    add<ui::Button>(kSelectTemplate, "Select New Template &MDB");
    add<ui::Label>(kOutputCaption, "Output database not found:");
    add<ui::Edit>(kOutput, true);
    add<ui::Button>(kSelectOutput, "Select New Output M&DB");
    add<ui::Label>(kTableCaption, kTableFound);
    add<ui::Edit>(kTable, true);
    add<ui::Label>(kListCaption, "Tables Used for Links:");
    add<ui::List>(kTables, false, kListRows);
    add<ui::Button>(kShow, "&Show Entities");
    add<ui::Button>(kOther, "Go to &Other Table");
    add<ui::Button>(kFix, "&Fix Links for Current Table");
    add<ui::Button>(kErase, "&Erase Links for Current Table");
    add<ui::Button>(kQuit, "&Quit");
    using namespace ui;
    std::vector<Layout> databases = {
        row({item(kTemplateCaption)}), row({item(kTemplate, 1), item(kSelectTemplate)}),
        row({item(kOutputCaption)}), row({item(kOutput, 1), item(kSelectOutput)})};
    setLayout(column({table(std::move(databases)), item(kTableCaption), item(kTable), item(kListCaption),
                      item(kTables, 1), row({item(kShow), spring(), item(kOther)}),
                      row({item(kFix), item(kErase), spring(), item(kQuit)})}));
}

void AuditDialog::onOpen() {
    const bool isFilled = fillFromMemory();
    find(kTemplate)->setText(links_.templatePath);
    find(kOutput)->setText(links_.outputPath);
    find(kTable)->setText(links_.table);
    if (links_.isTemplateOk || isFilled) find(kTemplateCaption)->setText(kTemplateFound);
    if (links_.isOutputOk || isFilled) find(kOutputCaption)->setText(kOutputFound);
    find(kFix)->enable(false);
    find(kListCaption)
        ->setText("Tables Used for Links " + std::to_string(links_.number) + " of " +
                  std::to_string(links_.total));
    readTableChoices();
    selectCurrentTable();
    setFocus(kSelectTemplate);
}

// Where both databases stand under their names in the place of the last Fix, they are proposed.
bool AuditDialog::fillFromMemory() {
    const bool isMoved = !memory_.newTemplate.empty() && !memory_.newOutput.empty() &&
                         !links_.templatePath.empty() && !links_.outputPath.empty() &&
                         !text::equalNoCase(memory_.newTemplate, links_.templatePath) &&
                         !text::equalNoCase(memory_.newOutput, links_.outputPath);
    if (!isMoved || !contains(memory_.tableList, links_.table) ||
        !haveSameName(memory_.newTemplate, links_.templatePath) ||
        !haveSameName(memory_.newOutput, links_.outputPath) || !files::exists(memory_.newTemplate) ||
        !IsOutputThere(memory_.newOutput))
        return false;
    links_.templatePath = memory_.newTemplate;
    links_.outputPath = memory_.newOutput;
    return true;
}

// Fills the list with what the two databases have in common, and tells where the current table is.
void AuditDialog::readTableChoices() {
    const std::string templatePath = find(kTemplate)->text(), outputPath = find(kOutput)->text();
    TemplateFeatures features;
    if (files::exists(templatePath)) {
        features = ReadTemplateFeatures(templatePath);
        memory_.tableList = features.names;
    }
    std::vector<std::string> keyTables;
    if (IsOutputThere(outputPath)) keyTables = ReadKeyTables(outputPath);

    auto& list = get<ui::List>(kTables);
    list.clearItems();
    auto offer = [&](const std::string& feature) {
        if (features.has(feature) && list.findExact(feature) < 0) list.addItem(feature);
    };
    for (const std::string& table : keyTables) {
        offer(text::upper(table));
        for (const auto& [feature, told] : features.tables)
            if (text::equalNoCase(told, table)) offer(feature);
    }
    const std::string table = find(kTable)->text();
    find(kTableCaption)->setText(tableCaption(features.has(table), HasTableOf(keyTables, features, table)));
}

void AuditDialog::selectCurrentTable() {
    auto& list = get<ui::List>(kTables);
    const int current = list.findExact(find(kTable)->text());
    if (current >= 0) {
        list.select(current);
        takeTable();
    }
    updateFix();
}

void AuditDialog::takeTable() {
    find(kTableCaption)->setText(kTableFound);
    find(kTable)->setText(get<ui::List>(kTables).selectedText());
    updateFix();
}

void AuditDialog::selectDatabase(int edit, int caption, const char* found) {
    find(kTableCaption)->setText(kTableFound);
    const std::optional<std::string> path = AskExistingDatabase(files::folderOf(find(edit)->text()));
    if (path) {
        find(edit)->setText(*path);
        find(caption)->setText(found);
        readTableChoices();
        selectCurrentTable();
    }
    updateFix();
}

void AuditDialog::updateFix() {
    bool isReady = find(kTemplateCaption)->text() == kTemplateFound &&
                   find(kOutputCaption)->text() == kOutputFound && find(kTableCaption)->text() == kTableFound;
    for (int edit : {kTemplate, kOutput, kTable}) isReady = isReady && !find(edit)->text().empty();
    find(kFix)->enable(isReady);
}

void AuditDialog::onSelection(ui::Control&) {
    if (get<ui::List>(kTables).selected() >= 0) takeTable();
}

void AuditDialog::onCommand(int id) {
    switch (id) {
        case kSelectTemplate:
            return selectDatabase(kTemplate, kTemplateCaption, kTemplateFound);
        case kSelectOutput:
            return selectDatabase(kOutput, kOutputCaption, kOutputFound);
        case kShow:
            return showEntities_();
        case kOther:
            return finish(Decision::kLeave);
        case kErase:
            return finish(Decision::kErase);
        default:
            Dialog::onCommand(id);
    }
}

void AuditDialog::onOk() {
    if (!find(kFix)->enabled()) return;
    links_.templatePath = memory_.newTemplate = find(kTemplate)->text();
    links_.outputPath = memory_.newOutput = find(kOutput)->text();
    links_.table = find(kTable)->text();
    finish(Decision::kFix);
}

void AuditDialog::finish(Decision decision) {
    decision_ = decision;
    end(ui::kOk);
}

void AuditDialog::onCancel() {
    const std::string question =
        text::format("There are still %d more tables used for links not fixed yet!\n",
                     links_.total - links_.number + 1) +
        "\n" + text::join(links_.stillBroken, ", ") + "\nAre you really sure you want to exit?";
    if (ui::messageBox("Alert", question, ui::kBoxAlert | ui::kBoxYesNo) == ui::kYes) end(ui::kCancel);
}

}  // namespace norvane
