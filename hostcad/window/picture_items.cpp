#include "hostcad/window/picture_items.h"

#include <QHeaderView>
#include <QIcon>
#include <QPixmap>
#include <QTreeWidget>

#include "platform/files/files.h"
#include "platform/images/decode.h"
#include "platform/ui/backend.h"
#include "platform/ui/qt/qt_image.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

constexpr images::Size kSize = {96, 72};
constexpr int kPath = Qt::UserRole;
// So many are shown; reading them takes its time while a person goes from entity to entity.
constexpr size_t kMost = 12;

}  // namespace

void preparePictures(QTreeWidget& tree) {
    tree.setIconSize({kSize.width, kSize.height});
    QObject::connect(&tree, &QTreeWidget::itemDoubleClicked, &tree, [](QTreeWidgetItem* item) {
        const std::string path = ui::fromQt(item->data(1, kPath).toString());
        if (!path.empty()) ui::showInViewer(path);
    });
}

void addPictures(QTreeWidgetItem& below, const std::vector<std::string>& paths) {
    const qreal ratio = below.treeWidget() ? below.treeWidget()->devicePixelRatioF() : 1;
    for (size_t i = 0; i < std::min(paths.size(), kMost); ++i) {
        const std::string& path = paths[i];
        auto* item = new QTreeWidgetItem(&below, {ui::toQt(files::nameOf(path))});
        const images::Image image = images::previewOfFile(
            path, {static_cast<int>(kSize.width * ratio), static_cast<int>(kSize.height * ratio)});
        if (!image.empty()) item->setIcon(1, QIcon(QPixmap::fromImage(ui::toQt(image, ratio))));
        item->setData(1, kPath, ui::toQt(path));
        item->setToolTip(0, ui::toQt(path));
        item->setToolTip(1, "Double-click to see the picture in full size");
    }
}

}  // namespace hostcad
