// The choice of a database: one that is there, or a new one.
//
// There are two dialogs for it, which differ in their order and their words. The first makes the new database
// itself; the second only says which is wanted.
#pragma once

#include <optional>
#include <string>

#include "module/cad/call.h"
#include "module/store/new_database.h"
#include "platform/ui/dialog.h"

namespace norvane {

// --- New or Existing File ---------------------------------------------------------------------------------

class DatabaseChooser : public ui::Dialog {
  public:
    enum Mode { kOutput = 0, kTemplate = 1 };
    explicit DatabaseChooser(Mode mode);

    std::string folder;       // where the file boxes start; "" leaves it to the settings
    bool forceNew = false;    // no Existing button
    std::string newCaption;   // shown with forceNew
    std::string path;         // the choice; "" for none
    bool createdNew = false;  // a new template was made
    // The window was closed by its frame: what was chosen before does not count.
    bool aborted = false;

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onClose() override;
    void chooseExisting();
    void createNew(DatabaseVersion version);
    void signIn();

    Mode mode_;
};

// Shows the chooser; nothing when no file was chosen. folder: where the file boxes start; "" leaves it to the
// settings.
std::optional<std::string> ChooseDatabase(DatabaseChooser::Mode mode, const std::string& folder = "");

// Asks for a source on a server by the sign-in box of its engine. Its path, which is without the password; ""
// when the person cancelled.
std::string AskServer();

// Function code 14: an output database. Takes the folder where the boxes start; gives the path, or nil.
void ChooseFile(Call& call);

// --- Select New File --------------------------------------------------------------------------------------

struct NewFileChoice {
    std::string path;                                      // "" when the person cancelled
    bool existing = false;                                 // a database that is there
    DatabaseVersion version = DatabaseVersion::kAccess97;  // of a new one
};

// folder: where the file boxes start.
NewFileChoice SelectNewFile(const std::string& folder);

}  // namespace norvane
