#include "module/setup/database_chooser.h"

#include "module/cad/drawing_folder.h"
#include "module/dialogs/file_boxes.h"
#include "module/dialogs/run_dialog.h"
#include "module/settings/current_databases.h"
#include "module/store/database.h"
#include "module/store/server_sign_in.h"
#include "module/store/template_database.h"
#include "platform/files/files.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr int kCaption = 1104;
constexpr const char* kCaptionText = "File type> .MDB";
constexpr int kNew2000 = 1004;
constexpr const char* kNew2000Text = "New Acces&s 2000 Format";
constexpr int kNew97 = 1005;
constexpr const char* kNew97Text = "New A&ccess '97 Format";

}  // namespace

// --- New or Existing File ---------------------------------------------------------------------------------

namespace {

constexpr int kChooserResource = 149;
constexpr int kExisting = 1;
constexpr int kServer = 1901;

}  // namespace

DatabaseChooser::DatabaseChooser(Mode mode)
    : ui::Dialog(kChooserResource, "New or Existing File"), mode_(mode) {
    add<ui::Label>(kCaption, kCaptionText);
    add<ui::Button>(kExisting, "&Existing", true);
    add<ui::Button>(kNew97, kNew97Text);
    add<ui::Button>(kNew2000, kNew2000Text);
    add<ui::Button>(kServer, "Ser&ver...").show(mode == kOutput);
    setLayout(ui::column(
        {ui::item(kCaption), ui::item(kExisting), ui::item(kNew97), ui::item(kNew2000), ui::item(kServer)}));
}

void DatabaseChooser::onOpen() {
    std::string current = mode_ == kTemplate ? CurrentTemplatePath() : CurrentOutputPath();
    if (!files::exists(current)) current.clear();
    if (folder.empty()) folder = files::folderOf(current);
    if (folder.empty()) folder = DrawingFolder();
    if (!forceNew) return;
    // Hidden, the button leaves its place to the two below it.
    find(kExisting)->show(false);
    find(kServer)->show(false);
    if (!newCaption.empty()) find(kCaption)->setText(newCaption);
}

void DatabaseChooser::onCommand(int id) {
    switch (id) {
        case kExisting:
            chooseExisting();
            break;
        case kNew97:
            createNew(DatabaseVersion::kAccess97);
            break;
        case kNew2000:
            createNew(DatabaseVersion::kAccess2000);
            break;
        case kServer:
            signIn();
            break;
        default:
            Dialog::onCommand(id);
    }
}

void DatabaseChooser::onClose() {
    aborted = true;
    end(ui::kCancel);
}

void DatabaseChooser::chooseExisting() {
    std::optional<std::string> chosen =
        mode_ == kTemplate ? AskExistingDatabase(folder) : AskExistingOutput(folder);
    if (!chosen) return;
    if (mode_ == kTemplate && !IsTemplateDatabase(*chosen)) {
        ui::messageBox("Error", *chosen + " is not a GIS template database!");
        return;
    }
    path = *chosen;
    end(ui::kOk);
}

std::string AskServer() {
    std::string path;
    WithDatabase("ODBC;DSN=", [&](CDaoDatabase& database) { path = database.GetConnect().text(); });
    return path;
}

void DatabaseChooser::signIn() {
    path = AskServer();
    if (!path.empty()) end(ui::kOk);
}

namespace {

// Clears the way for a new database. What the file box has asked about is the file of that name and no other.
bool mayReplace(const std::string& chosen, const std::string& made) {
    if (made.empty()) {
        ui::messageBox(
            "Error",
            "\"" + chosen + "\" cannot be made.\nA new database ends in .mdb, .sqlite, .db or .gpkg.");
        return false;
    }
    if (!CheckDao()) return false;
    if (!ProbeFolderWritable(made)) {
        ui::messageBox("Error", "\"" + made + "\" cannot be made: its folder cannot be written to.");
        return false;
    }
    if (!files::exists(made)) return true;
    ui::OwnQuestion question;
    question.title = "New Database";
    question.text = "\"" + made + "\" exists already.\nDo you want to replace it?";
    if (made != chosen && ui::ask(question) != ui::kYes) return false;
    if (files::remove(made)) return true;
    ui::messageBox("Error", "\"" + made + "\" cannot be deleted.");
    return false;
}

}  // namespace

void DatabaseChooser::createNew(DatabaseVersion version) {
    std::optional<std::string> chosen = mode_ == kTemplate ? AskNewDatabase(folder) : AskNewOutput(folder);
    if (!chosen) return;
    const std::string made = NewDatabasePath(*chosen);
    if (!mayReplace(*chosen, made)) return;
    bool created =
        mode_ == kTemplate ? CreateTemplateDatabase(made, version) : CreateOutputDatabase(made, version);
    if (created) {
        path = made;
        createdNew = mode_ == kTemplate;
        folder = files::folderOf(path);
    }
    end(ui::kCancel);
}

std::optional<std::string> ChooseDatabase(DatabaseChooser::Mode mode, const std::string& folder) {
    DatabaseChooser chooser(mode);
    chooser.folder = folder;
    RunDialog(chooser);
    if (chooser.aborted || chooser.path.empty()) return std::nullopt;
    return chooser.path;
}

void ChooseFile(Call& call) {
    std::string folder;
    call.arguments.text(folder);
    std::optional<std::string> chosen = ChooseDatabase(DatabaseChooser::kOutput, folder);
    if (chosen)
        call.result = *chosen;
    else
        call.result = Nil{};
}

// --- Select New File --------------------------------------------------------------------------------------

namespace {

class NewFileDialog : public ui::Dialog {
  public:
    explicit NewFileDialog(const std::string& folder)
        : ui::Dialog(kResource, "Select New File"), folder_(folder) {
        add<ui::Label>(kCaption, kCaptionText);
        add<ui::Button>(kExistingFile, "&Existing");
        add<ui::Button>(kNew2000, kNew2000Text);
        add<ui::Button>(kNew97, kNew97Text);
        setLayout(
            ui::column({ui::item(kCaption), ui::item(kExistingFile), ui::item(kNew2000), ui::item(kNew97)}));
    }
    NewFileChoice choice;

  private:
    static constexpr int kResource = 1513;
    static constexpr int kExistingFile = 1003;

    void onOk() override {}  // there is no default button
    void onCommand(int id) override {
        if (id != kExistingFile && id != kNew2000 && id != kNew97) return Dialog::onCommand(id);
        const bool existing = id == kExistingFile;
        std::optional<std::string> path = existing ? AskExistingDatabase(folder_) : AskNewDatabase(folder_);
        if (!path) return;
        choice = {*path, existing,
                  id == kNew2000 ? DatabaseVersion::kAccess2000 : DatabaseVersion::kAccess97};
        end(ui::kOk);
    }

    std::string folder_;
};

}  // namespace

NewFileChoice SelectNewFile(const std::string& folder) {
    NewFileDialog dialog(folder);
    RunDialog(dialog);
    return dialog.choice;
}

}  // namespace norvane
