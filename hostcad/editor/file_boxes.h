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

// Saves the drawing as Host::saveDrawing does, and says where. Where that fails, a box gives the reason and
// offers another name. False when the drawing was not saved.
bool saveWithBoxes(Host& host, const std::string& path, bool isCopy = false);

// A box and a line with the reason why something was not done with a drawing.
void showProblem(Host& host, const std::string& problem);

// Asks what is to become of changes that are not saved, and saves them where that is wanted. False when the
// drawing must stay: the user has cancelled, or it could not be saved, which a box has told.
bool settleChanges(Host& host);

}  // namespace hostcad
