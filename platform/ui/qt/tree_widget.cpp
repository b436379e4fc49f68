#include "platform/ui/qt/tree_widget.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>
#include <QTreeWidget>

#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/qt_text.h"

namespace ui {
namespace {

constexpr int kIconSize = 16;  // at 96 dpi
constexpr int kFolderImage = 0;

QIcon nodeIcon(int image, int size) {
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 16.0, size / 16.0);
    if (image == kFolderImage) {
        painter.setPen(QColor(0x8A, 0x6A, 0x1E));
        painter.setBrush(QColor(0xF2, 0xC9, 0x4C));
        painter.drawPolygon(
            QPolygonF({{1.5, 3.5}, {6, 3.5}, {7.5, 5.5}, {14.5, 5.5}, {14.5, 13.5}, {1.5, 13.5}}));
    } else {
        painter.setPen(QColor(0x2B, 0x5C, 0x8A));
        painter.setBrush(Qt::white);
        painter.drawRect(QRectF(2.5, 2.5, 11, 11));
        painter.drawLine(QPointF(2.5, 6.5), QPointF(13.5, 6.5));
        painter.drawLine(QPointF(2.5, 10), QPointF(13.5, 10));
        painter.drawLine(QPointF(7, 2.5), QPointF(7, 13.5));
    }
    return QIcon(picture);
}

bool sameNodes(const std::vector<Tree::Node>& a, const std::vector<Tree::Node>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Tree::Node& x, const Tree::Node& y) {
        return x.removed == y.removed && x.parent == y.parent && x.image == y.image && x.text == y.text;
    });
}

class TreeWidget : public ControlWidget {
  public:
    TreeWidget(Tree& tree, Dialog& dialog, DialogWindow& window)
        : tree_(tree), dialog_(dialog), q_(new QTreeWidget(&window)) {
        q_->setHeaderHidden(true);
        int size = window.scaled(kIconSize);
        q_->setIconSize({size, size});
        icons_ = {nodeIcon(kFolderImage, size), nodeIcon(kFolderImage + 1, size)};
        QObject::connect(q_, &QTreeWidget::itemClicked, q_,
                         [this](QTreeWidgetItem* item) { dialog_.userPick(tree_, nodeOf(item)); });
        QObject::connect(q_, &QTreeWidget::itemDoubleClicked, q_,
                         [this](QTreeWidgetItem* item) { dialog_.userDoubleClick(tree_, nodeOf(item)); });
        QObject::connect(q_, &QTreeWidget::itemExpanded, q_,
                         [this](QTreeWidgetItem* item) { tree_.expand(nodeOf(item), true); });
        QObject::connect(q_, &QTreeWidget::itemCollapsed, q_,
                         [this](QTreeWidgetItem* item) { tree_.expand(nodeOf(item), false); });
    }
    QWidget* widget() override { return q_; }

    void update() override {
        QSignalBlocker quiet(q_);
        q_->setEnabled(tree_.enabled());
        q_->setVisible(tree_.visible());
        // A selection alone must not cost a new tree.
        if (!sameNodes(shown_, tree_.nodes())) rebuild();
        for (size_t i = 0; i < items_.size(); ++i)
            if (items_[i] && items_[i]->isExpanded() != tree_.nodes()[i].expanded)
                items_[i]->setExpanded(tree_.nodes()[i].expanded);
        QTreeWidgetItem* selected =
            tree_.selected() >= 0 ? items_[static_cast<size_t>(tree_.selected())] : nullptr;
        q_->setCurrentItem(selected);
        if (selected) q_->scrollToItem(selected);
    }

  private:
    static int nodeOf(const QTreeWidgetItem* item) { return item->data(0, Qt::UserRole).toInt(); }

    void rebuild() {
        q_->clear();
        shown_ = tree_.nodes();
        items_.assign(shown_.size(), nullptr);
        const std::vector<std::vector<int>> children = tree_.children();
        QList<QTreeWidgetItem*> top;
        for (int node : children.back()) top << itemOf(node, children);
        q_->addTopLevelItems(top);
    }

    QTreeWidgetItem* itemOf(int node, const std::vector<std::vector<int>>& children) {
        const Tree::Node& data = shown_[static_cast<size_t>(node)];
        auto* item = new QTreeWidgetItem({toQt(data.text)});
        item->setData(0, Qt::UserRole, node);
        item->setIcon(0, icons_[data.image == kFolderImage ? 0 : 1]);
        items_[static_cast<size_t>(node)] = item;
        QList<QTreeWidgetItem*> below;
        for (int child : children[static_cast<size_t>(node)]) below << itemOf(child, children);
        item->addChildren(below);
        return item;
    }

    Tree& tree_;
    Dialog& dialog_;
    QTreeWidget* q_;  // the window's
    std::vector<QIcon> icons_;
    std::vector<Tree::Node> shown_;
    std::vector<QTreeWidgetItem*> items_;  // by node; null for a removed one
};

}  // namespace

std::unique_ptr<ControlWidget> makeTreeWidget(Tree& tree, Dialog& dialog, DialogWindow& window) {
    return std::make_unique<TreeWidget>(tree, dialog, window);
}

}  // namespace ui
