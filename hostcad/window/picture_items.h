// Pictures among the properties: each as a small one with the name of its file.
#pragma once

#include <string>
#include <vector>

class QTreeWidget;
class QTreeWidgetItem;

namespace hostcad {

// Prepares a tree for pictures: their size, and a double click shows one in the system's own program.
void preparePictures(QTreeWidget& tree);
// Adds the pictures below an item. What is no picture has its name alone.
void addPictures(QTreeWidgetItem& below, const std::vector<std::string>& paths);

}  // namespace hostcad
