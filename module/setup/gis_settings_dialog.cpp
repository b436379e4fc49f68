#include "module/setup/gis_settings_dialog.h"

#include <string>

#include "module/cad/drawing_folder.h"
#include "module/dialogs/run_dialog.h"
#include "module/settings/current_databases.h"
#include "module/settings/dialog_state.h"
#include "module/settings/settings_file.h"
#include "module/setup/database_chooser.h"
#include "module/store/database.h"
#include "module/store/server_sign_in.h"
#include "platform/ads/editor.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kResource = 146;
constexpr int kSelectTemplate = 1004;
constexpr int kSelectSource = 1005;  // an ODBC source; wired, but not visible
constexpr int kSelectOutput = 1006;
constexpr int kLeave = 1901;  // without change
constexpr int kTemplateCaption = 1058;
constexpr int kOutputCaption = 1061;
constexpr int kTemplateEdit = 1104;
constexpr int kOutputEdit = 1105;
constexpr int kFormatGroup = 1109;
constexpr int kAccessFormat = 1181;
constexpr int kObjectFormat = 1182;

class SettingsDialog : public ui::Dialog {
  public:
    explicit SettingsDialog(int format);

    // -1: the choice of a format is hidden. On leaving: 0 database, 1 object data.
    int formatFlag;
    std::string templateResult;
    std::string outputResult;

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onOk() override;
    void showFormat();
    void enableOutput(bool on);
    void selectTemplate();
    void selectOutput();
    void selectSource();

    std::string templateFolder_;
    std::string outputFolder_;
};

SettingsDialog::SettingsDialog(int format) : ui::Dialog(kResource, "GIS Settings"), formatFlag(format) {
    add<ui::Label>(kTemplateCaption, "Template MDB File:");
    add<ui::Edit>(kTemplateEdit, true);
    add<ui::Button>(kSelectTemplate, "Select &Template MDB File");
    add<ui::GroupBox>(kFormatGroup, "Output Data Format:");
    add<ui::RadioButton>(kAccessFormat, "Microsoft Access &Database ", 1);
    add<ui::RadioButton>(kObjectFormat, "Map &Object Data", 1);
    add<ui::Label>(kOutputCaption, "Output Database File:");
    add<ui::Edit>(kOutputEdit, true);
    add<ui::Button>(kSelectOutput, "Select O&utput MDB File");
    add<ui::Button>(kSelectSource, "Select D&SN").show(false);
    add<ui::Button>(ui::kOk, "E&xit", true);
    add<ui::Button>(kLeave, "&Cancel");
    using namespace ui;
    Layout paths =
        table({row({item(kTemplateCaption), item(kTemplateEdit, 1), item(kSelectTemplate)}),
               row({item(kOutputCaption), item(kOutputEdit), item(kSelectOutput), item(kSelectSource)})});
    setLayout(column({paths, group(kFormatGroup, {row({item(kAccessFormat), item(kObjectFormat)})}), spring(),
                      row({spring(), item(kOk), item(kLeave)})}));
}

void SettingsDialog::onOpen() {
    showFormat();
    std::string templatePath = CurrentTemplatePath();
    if (!templatePath.empty() && !files::exists(templatePath)) templatePath.clear();
    templateFolder_ = files::folderOf(templatePath);
    find(kTemplateEdit)->setText(templatePath);

    std::string outputPath = CurrentOutputPath();
    if (!outputPath.empty() && !IsOdbcPath(outputPath)) {
        if (!files::exists(outputPath)) outputPath.clear();
        outputFolder_ = files::folderOf(outputPath);
    }
    // A password that someone has put into the settings by hand is not shown, and not written again.
    find(kOutputEdit)->setText(TakePassword(outputPath));

    if (templateFolder_.empty()) templateFolder_ = DrawingFolder();
    if (outputFolder_.empty()) outputFolder_ = DrawingFolder();
}

void SettingsDialog::showFormat() {
    if (formatFlag == -1) {
        for (int id : {kFormatGroup, kAccessFormat, kObjectFormat}) find(id)->show(false);
        return;
    }
    std::optional<SettingsFile> file = SettingsFile::read();
    bool objects = file && text::toLong(file->value(settings::kObjectData).value_or("")) != 0;
    get<ui::RadioButton>(objects ? kObjectFormat : kAccessFormat).check();
    formatFlag = objects ? 1 : 0;
    enableOutput(!objects);
}

void SettingsDialog::enableOutput(bool on) {
    for (int id : {kOutputCaption, kOutputEdit, kSelectOutput, kSelectSource}) find(id)->enable(on);
}

void SettingsDialog::onCommand(int id) {
    switch (id) {
        case kSelectTemplate:
            selectTemplate();
            break;
        case kSelectOutput:
            selectOutput();
            break;
        case kSelectSource:
            selectSource();
            break;
        case kLeave:
            onCancel();
            break;
        case kAccessFormat:
        case kObjectFormat:
            enableOutput(id == kAccessFormat);
            break;
        default:
            Dialog::onCommand(id);
    }
}

void SettingsDialog::selectTemplate() {
    DatabaseChooser chooser(DatabaseChooser::kTemplate);
    chooser.folder = templateFolder_;
    RunDialog(chooser);
    templateFolder_ = chooser.folder;
    if (!chooser.path.empty()) find(kTemplateEdit)->setText(chooser.path);
    if (chooser.createdNew)
        ui::reportSuccess("Alert",
                          "New template database is empty!\nPlease use <Define Template Database> command to "
                          "create GIS prompts!");
}

void SettingsDialog::selectOutput() {
    DatabaseChooser chooser(DatabaseChooser::kOutput);
    chooser.folder = outputFolder_;
    RunDialog(chooser);
    outputFolder_ = chooser.folder;
    if (!chooser.path.empty()) find(kOutputEdit)->setText(chooser.path);
}

void SettingsDialog::selectSource() {
    WithDatabase("ODBC;DSN=",
                 [&](CDaoDatabase& database) { find(kOutputEdit)->setText(database.GetConnect().text()); });
}

void SettingsDialog::onOk() {
    templateResult = find(kTemplateEdit)->text();
    outputResult = find(kOutputEdit)->text();
    if (!templateResult.empty()) writeState(dao::DatabasePath(templateResult), state::kTemplatePath);
    if (!outputResult.empty()) writeState(TakePassword(outputResult), state::kOutputPath);
    formatFlag = get<ui::RadioButton>(kObjectFormat).checked() ? 1 : 0;
    end(ui::kOk);
}

}  // namespace

void RunGisSettings() {
    std::optional<std::string> path = SettingsFile::path();
    if (!path) return;
    if (!files::exists(*path)) {
        acutPrintf("\nCannot find GIS settings file!");
        return;
    }
    SettingsDialog dialog(-1);
    if (RunDialog(dialog) != ui::kOk) return;

    std::optional<SettingsFile> file = SettingsFile::read();
    if (!file || file->empty()) return;
    // The value written is always 0; the flag only decides whether the line has to change.
    bool objectDataChanged =
        file->value(settings::kObjectData).value_or("") != (dialog.formatFlag == 0 ? "0" : "1");
    if (objectDataChanged) file->placeObjectData("0");
    bool templatePlaced = file->placeTemplate(dao::DatabasePath(dialog.templateResult));
    bool outputPlaced = file->placeOutput(dao::DatabasePath(dialog.outputResult));
    if (objectDataChanged || templatePlaced || outputPlaced) file->write();
}

void ShowGisSettings(Call&) {
    RunGisSettings();
}

}  // namespace norvane
