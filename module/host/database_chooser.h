// New or Existing File: the choice of a template or an output database.
#pragma once

#include <optional>
#include <string>

#include "platform/ui/dialog.h"

// The window was closed by its frame: what was chosen before does not count. Cleared when the dialog opens.
extern bool ChooserAborted;

class DatabaseChooser : public ui::Dialog {
  public:
    enum Mode { kOutput = 0, kTemplate = 1 };
    explicit DatabaseChooser(Mode mode);

    std::string folder;       // where the file boxes start; "" leaves it to the settings
    bool forceNew = false;    // no Existing button
    std::string newCaption;   // shown with forceNew
    std::string path;         // the choice; "" for none
    bool createdNew = false;  // a new template was made

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onClose() override;
    void chooseExisting();
    void createNew(char format);

    Mode mode_;
};

// Shows the chooser; nothing when no file was chosen. Function code 14's start folder is obeyed.
std::optional<std::string> ChooseDatabase(DatabaseChooser::Mode mode);
