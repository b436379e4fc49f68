#include "module/host/database_chooser.h"

#include "module/host/dialog_messages.h"
#include "module/host/gis_request.h"
#include "module/host/gis_settings.h"
#include "module/host/host_helpers.h"
#include "module/store/database.h"
#include "module/store/template_database.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"

bool ChooserAborted = false;

namespace {

constexpr int kResource = 149;
constexpr int kExisting = 1;
constexpr int kNew2000 = 1004;
constexpr int kNew97 = 1005;
constexpr int kCaption = 1104;

}  // namespace

DatabaseChooser::DatabaseChooser(Mode mode) : ui::Dialog(kResource, "New or Existing File"), mode_(mode) {
    add<ui::Label>(kCaption, "File type> .MDB");
    add<ui::Button>(kExisting, "&Existing", true);
    add<ui::Button>(kNew97, "New A&ccess '97 Format");
    add<ui::Button>(kNew2000, "New Acces&s 2000 Format");
    setLayout(ui::column({ui::item(kCaption), ui::item(kExisting), ui::item(kNew97), ui::item(kNew2000)}));
}

void DatabaseChooser::onOpen() {
    ChooserAborted = false;
    std::string current = mode_ == kTemplate ? CurrentTemplatePath() : CurrentOutputPath();
    if (!files::exists(current)) current.clear();
    if (folder.empty()) folder = files::folderOf(current);
    if (folder.empty()) GetLispValue(folder, "tmpdir$");
    if (!FileChooserFolder.empty()) folder = FileChooserFolder;
    if (!forceNew) return;
    // Hidden, the button leaves its place to the two below it.
    find(kExisting)->show(false);
    if (!newCaption.empty()) find(kCaption)->setText(newCaption);
}

void DatabaseChooser::onCommand(int id) {
    switch (id) {
        case kExisting:
            chooseExisting();
            break;
        case kNew97:
            createNew('0');
            break;
        case kNew2000:
            createNew('1');
            break;
        default:
            Dialog::onCommand(id);
    }
}

void DatabaseChooser::onClose() {
    ChooserAborted = true;
    end(ui::kCancel);
}

void DatabaseChooser::chooseExisting() {
    ui::FileBox box;
    box.filter = "Microsoft Access Databases (*.mdb)|*.mdb||";
    box.pattern = "*.mdb";
    box.folder = folder;
    box.mustExist = true;
    std::optional<std::string> chosen = ui::fileBox(box);
    if (!chosen) return;
    if (mode_ == kTemplate && !IsTemplateDatabase(*chosen)) {
        ui::messageBox("Error", *chosen + " is not a GIS template database!");
        return;
    }
    path = *chosen;
    end(ui::kOk);
}

void DatabaseChooser::createNew(char format) {
    ui::FileBox box;
    box.save = true;
    box.filter = "Access Databases Files (*.mdb)|*.mdb||";
    box.pattern = "*.mdb";
    box.folder = folder;
    box.defaultExtension = "mdb";
    box.askOverwrite = true;
    std::optional<std::string> chosen = ui::fileBox(box);
    if (!chosen) return;
    files::remove(*chosen);

    PromptRequest.outputPath = format + *chosen;
    // The name rule may change the ending: what was made is what counts.
    std::string made = ParseNewDatabaseName(PromptRequest.outputPath).path;
    bool created = mode_ == kTemplate ? CreateTemplateDatabase() : CreateOutputDatabase();
    PromptRequest.outputPath.clear();
    if (created) {
        path = made;
        createdNew = mode_ == kTemplate;
        folder = files::folderOf(path);
    }
    end(ui::kCancel);
}

std::optional<std::string> ChooseDatabase(DatabaseChooser::Mode mode) {
    DatabaseChooser chooser(mode);
    if (chooser.runModal() == ui::kNotCreated) PrintDialogNotCreated();
    if (ChooserAborted || chooser.path.empty()) return std::nullopt;
    return chooser.path;
}
