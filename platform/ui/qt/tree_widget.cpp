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
                         [this](QTreeWidgetItem* item) { opened(nodeOf(item), true); });
        QObject::connect(q_, &QTreeWidget::itemCollapsed, q_,
                         [this](QTreeWidgetItem* item) { opened(nodeOf(item), false); });
        // The box was clicked.
        QObject::connect(q_, &QTreeWidget::itemChanged, q_, [this](QTreeWidgetItem* item) {
            const bool on = item->checkState(0) == Qt::Checked;
            shown_[static_cast<size_t>(nodeOf(item))].checked = on;
            dialog_.userCheckNode(tree_, nodeOf(item), on);
        });
    }
    QWidget* widget() override { return q_; }

    void update() override {
        QSignalBlocker quiet(q_);
        q_->setEnabled(tree_.enabled());
        q_->setVisible(tree_.visible());
        // A selection alone must not cost a new tree.
        if (filling_ != tree_.filling()) rebuild();
        for (size_t i = 0; i < items_.size(); ++i)
            if (items_[i] && !shows(i)) show(i);
        QTreeWidgetItem* selected =
            tree_.selected() >= 0 ? items_[static_cast<size_t>(tree_.selected())] : nullptr;
        q_->setCurrentItem(selected);
        if (selected) q_->scrollToItem(selected);
    }

  private:
    // What is shown of the state of a node.
    struct Shown {
        bool expanded = false;
        bool checked = false;
    };

    static int nodeOf(const QTreeWidgetItem* item) { return item->data(0, Qt::UserRole).toInt(); }

    void opened(int node, bool on) {
        shown_[static_cast<size_t>(node)].expanded = on;
        tree_.expand(node, on);
    }
    bool shows(size_t node) const {
        const Tree::Node& data = tree_.nodes()[node];
        return shown_[node].expanded == data.expanded && shown_[node].checked == data.checked;
    }
    void show(size_t node) {
        const Tree::Node& data = tree_.nodes()[node];
        items_[node]->setExpanded(data.expanded);
        if (data.hasBox) items_[node]->setCheckState(0, data.checked ? Qt::Checked : Qt::Unchecked);
        shown_[node] = {data.expanded, data.checked};
    }

    void rebuild() {
        q_->clear();
        filling_ = tree_.filling();
        shown_.assign(tree_.nodes().size(), {});
        items_.assign(tree_.nodes().size(), nullptr);
        const std::vector<std::vector<int>> children = tree_.children();
        QList<QTreeWidgetItem*> top;
        for (int node : children.back()) top << itemOf(node, children);
        q_->addTopLevelItems(top);
    }

    QTreeWidgetItem* itemOf(int node, const std::vector<std::vector<int>>& children) {
        const Tree::Node& data = tree_.nodes()[static_cast<size_t>(node)];
        auto* item = new QTreeWidgetItem({toQt(data.text)});
        item->setData(0, Qt::UserRole, node);
        item->setIcon(0, icons_[data.image == kFolderImage ? 0 : 1]);
        if (data.hasBox) item->setCheckState(0, Qt::Unchecked);
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
    int filling_ = -1;                     // of the tree, when the items were made
    std::vector<Shown> shown_;             // by node, as the next
    std::vector<QTreeWidgetItem*> items_;  // null for a removed one
};

}  // namespace

std::unique_ptr<ControlWidget> makeTreeWidget(Tree& tree, Dialog& dialog, DialogWindow& window) {
    return std::make_unique<TreeWidget>(tree, dialog, window);
}

}  // namespace ui
