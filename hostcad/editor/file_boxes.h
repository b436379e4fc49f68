// Boxes round files: drawings, and the databases that go with them.
#pragma once

#include <optional>
#include <string>

namespace hostcad {

class Host;

// The file to open or to save under; nothing when the user cancelled.
std::optional<std::string> chooseDrawing(bool isSaving);

// The database to work on; nothing when the user cancelled.
std::optional<std::string> chooseDatabase(const std::string& title);

// Asks what is to become of changes that are not saved, and saves them where that is wanted. False when the
// drawing must stay: the user has cancelled, or it could not be saved, which the command line tells.
bool settleChanges(Host& host);

}  // namespace hostcad
