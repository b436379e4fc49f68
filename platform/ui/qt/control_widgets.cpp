#include "platform/ui/qt/control_widgets.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QStringListModel>
#include <QStyle>
#include <QTabBar>
#include <QToolTip>
#include <algorithm>

#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/frame_overlay.h"
#include "platform/ui/qt/grid_view.h"
#include "platform/ui/qt/picture_widget.h"
#include "platform/ui/qt/qt_text.h"
#include "platform/ui/qt/record_list.h"
#include "platform/ui/qt/tree_widget.h"

namespace ui {
namespace {

// What all of them share: a widget of the kind Q for a control of the kind C.
template <class C, class Q>
class Shown : public ControlWidget {
  public:
    Shown(Control& control, Dialog& dialog, DialogWindow& window)
        : control_(static_cast<C&>(control)), dialog_(dialog), window_(window), q_(new Q(&window)) {}
    QWidget* widget() override { return q_; }
    void update() override {
        QSignalBlocker quiet(q_);
        q_->setEnabled(control_.enabled());
        q_->setVisible(control_.visible());
        show();
        if (control_.explanation().empty()) return;
        q_->setToolTip(toQt(control_.explanation()));
        q_->setAccessibleDescription(toQt(control_.explanation()));
    }

  protected:
    virtual void show() = 0;
    C& control_;
    Dialog& dialog_;
    DialogWindow& window_;
    Q* q_;  // the window's
};

// A line that ends with an ellipsis where it has too little room, and is whole under the mouse.
class ShortenedLabel : public QLabel {
  public:
    explicit ShortenedLabel(QWidget* parent) : QLabel(parent) {
        setTextFormat(Qt::PlainText);  // whatever records say
    }

  protected:
    void paintEvent(QPaintEvent* event) override {
        if (!isCut()) return QLabel::paintEvent(event);
        QPainter painter(this);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
        style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(),
                              shown, foregroundRole());
    }
    bool event(QEvent* event) override {
        if (event->type() != QEvent::ToolTip || !isCut()) return QLabel::event(event);
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tipOf(text()), this);
        return true;
    }

  private:
    bool isCut() const { return !buddy() && !text().contains('\n') && sizeHint().width() > width(); }
};

class LabelWidget : public Shown<Label, ShortenedLabel> {
  public:
    using Shown::Shown;
    void setBuddy(QWidget* buddy) override { q_->setBuddy(buddy); }

  private:
    void show() override {
        constexpr Qt::Alignment kAlignments[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
        q_->setAlignment(kAlignments[control_.alignment()] | Qt::AlignVCenter);
        const QString text = toQt(control_.text());
        // What changes is a message, and does not make its window wider.
        if (isShown_ && text != q_->text()) q_->setMinimumWidth(text.contains('\n') ? 0 : 1);
        isShown_ = true;
        q_->setText(text);
    }
    bool isShown_ = false;
};

// A group box whose caption interrupts its upper line, as dialogs that are placed to the pixel expect: what
// stands inside begins close below the caption.
class GroupFrame : public QGroupBox {
  public:
    using QGroupBox::QGroupBox;
    void setCaptionInLine() { captionInLine_ = true; }

  protected:
    void paintEvent(QPaintEvent* event) override {
        if (!captionInLine_) return QGroupBox::paintEvent(event);
        constexpr int kIndent = 8, kGap = 2;
        QPainter painter(this);
        const int height = fontMetrics().height();
        const int width = fontMetrics().horizontalAdvance(QString(title()).remove('&'));
        const QRect caption(kIndent, 0, std::min(width, this->width() - 2 * kIndent), height);
        painter.setClipRegion(QRegion(rect()) - caption.adjusted(-kGap, 0, kGap, 0));
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRoundedRect(rect().adjusted(0, height / 2, -1, -1), 2, 2);
        painter.setClipping(false);
        style()->drawItemText(&painter, caption, Qt::TextShowMnemonic | Qt::AlignLeft, palette(), isEnabled(),
                              title(), QPalette::WindowText);
    }

  private:
    bool captionInLine_ = false;
};

class GroupWidget : public Shown<GroupBox, GroupFrame> {
  public:
    GroupWidget(Control& control, Dialog& dialog, DialogWindow& window) : Shown(control, dialog, window) {
        if (!dialog.rectangles().empty()) q_->setCaptionInLine();
    }

  private:
    void show() override { q_->setTitle(toQt(control_.text())); }
};

// A line that wishes for the room of a path, and makes do with less.
class PathEdit : public QLineEdit {
  public:
    using QLineEdit::QLineEdit;
    void setWishedWidth(int pixels) { wishedWidth_ = pixels; }
    QSize sizeHint() const override {
        const QSize own = QLineEdit::sizeHint();
        return {std::max(own.width(), wishedWidth_), own.height()};
    }
    QSize minimumSizeHint() const override {
        const QSize own = QLineEdit::minimumSizeHint();
        return {std::max(own.width(), wishedWidth_ / 3), own.height()};
    }

  private:
    int wishedWidth_ = 0;
};

class EditWidget : public Shown<Edit, PathEdit> {
  public:
    EditWidget(Control& control, Dialog& dialog, DialogWindow& window) : Shown(control, dialog, window) {
        // Read-only ones show paths.
        constexpr int kPathWidth = 340;
        if (control_.readOnly()) q_->setWishedWidth(window_.scaled(kPathWidth));
        QObject::connect(q_, &QLineEdit::textEdited, q_, [this](const QString& text) {
            dialog_.userText(control_, fromQt(text));
            update();
            if (text.size() < q_->maxLength()) refusal_->hide();
        });
        refusal_->setObjectName("refusal");
        QObject::connect(q_, &QLineEdit::inputRejected, q_, [this] { showRefusal(); });
        QObject::connect(q_, &QLineEdit::editingFinished, q_, [this] { refusal_->hide(); });
    }
    bool takesText() const override { return true; }

  private:
    // More than it holds was typed, or cut off what was pasted.
    void showRefusal() {
        refusal_->showAt(q_->rect());
        QToolTip::showText(q_->mapToGlobal(q_->rect().bottomLeft()),
                           QString("This holds %1 characters and no more.").arg(q_->maxLength()), q_);
    }
    void show() override {
        q_->setReadOnly(control_.readOnly());
        q_->setEchoMode(control_.secret() ? QLineEdit::Password : QLineEdit::Normal);
        if (control_.maxLength() > 0) q_->setMaxLength(control_.maxLength());
        QString text = toQt(control_.text());
        if (q_->text() != text) {
            q_->setText(text);
            // A path is told apart by its end.
            if (control_.readOnly()) q_->setToolTip(tipOf(text));
        }
        if (control_.selectionTo() != from_ || control_.selectionFrom() != to_) {
            from_ = control_.selectionTo();
            to_ = control_.selectionFrom();
            if (from_ == -1)
                q_->selectAll();
            else
                q_->setSelection(to_, from_ - to_);
        }
    }
    int from_ = 0, to_ = 0;
    FrameOverlay* refusal_ = new FrameOverlay(q_, QColor(kRefusalColour), window_.scaled(2));  // the widget's
};

class ButtonWidget : public Shown<Button, QPushButton> {
  public:
    ButtonWidget(Control& control, Dialog& dialog, DialogWindow& window) : Shown(control, dialog, window) {
        q_->setAutoDefault(false);
        q_->setFocusPolicy(Qt::StrongFocus);
        QObject::connect(q_, &QPushButton::clicked, q_, [this] { dialog_.userClick(control_); });
    }

  private:
    void show() override {
        q_->setText(toQt(control_.text()));
        q_->setDefault(control_.isDefault());
    }
};

// Check boxes and radio buttons. The model knows the groups of the latter.
template <class C, class Q>
class MarkWidget : public Shown<C, Q> {
  public:
    MarkWidget(Control& control, Dialog& dialog, DialogWindow& window)
        : Shown<C, Q>(control, dialog, window) {
        this->q_->setAutoExclusive(false);
        QObject::connect(this->q_, &Q::clicked, this->q_, [this](bool on) {
            if (this->control_.kind() == ControlKind::RadioButton)
                this->dialog_.userClick(this->control_);
            else
                this->dialog_.userCheck(this->control_, on);
            this->update();
        });
    }

  private:
    void show() override {
        this->q_->setText(toQt(this->control_.text()));
        this->q_->setChecked(this->control_.checked());
    }
};

class ListWidget : public Shown<List, QListWidget> {
  public:
    ListWidget(Control& control, Dialog& dialog, DialogWindow& window) : Shown(control, dialog, window) {
        q_->setSelectionMode(control_.multiple() ? QAbstractItemView::MultiSelection
                                                 : QAbstractItemView::SingleSelection);
        QObject::connect(q_, &QListWidget::itemClicked, q_, [this](QListWidgetItem* item) {
            dialog_.userPick(control_, q_->row(item), control_.multiple());
            update();
        });
        QObject::connect(q_, &QListWidget::itemDoubleClicked, q_,
                         [this](QListWidgetItem* item) { dialog_.userDoubleClick(control_, q_->row(item)); });
    }

  private:
    void show() override {
        QStringList items;
        for (const std::string& item : control_.items()) items << toQt(item);
        if (items != shown_) {
            q_->clear();
            q_->addItems(items);
            shown_ = items;
        }
        for (int i = 0; i < q_->count(); ++i) q_->item(i)->setSelected(control_.isSelected(i));
        q_->setCurrentRow(control_.selected(), QItemSelectionModel::NoUpdate);
        if (QListWidgetItem* item = q_->item(control_.selected())) q_->scrollToItem(item);
    }
    QStringList shown_;
};

class DropDownWidget : public Shown<DropDown, QComboBox> {
  public:
    DropDownWidget(Control& control, Dialog& dialog, DialogWindow& window) : Shown(control, dialog, window) {
        q_->setEditable(control_.editable());
        // By that policy a box takes the size of its contents whatever room it was given.
        if (dialog.rectangles().empty()) q_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        QObject::connect(q_, QOverload<int>::of(&QComboBox::activated), q_, [this](int index) {
            dialog_.userPick(control_, index);
            if (dialog_.running()) update();
        });
        if (!control_.editable()) return;
        q_->setCompleter(nullptr);  // what is typed is what counts
        if (control_.offersItems()) offerItems();
        q_->lineEdit()->setObjectName(QString::number(control_.id()));
        q_->lineEdit()->installEventFilter(&window_);
        QObject::connect(q_->lineEdit(), &QLineEdit::textEdited, q_, [this](const QString& text) {
            dialog_.userText(control_, fromQt(text));
            if (control_.offersItems() && dialog_.running()) showOffers();
        });
    }
    bool takesText() const override { return control_.editable(); }

  private:
    // The items stand below the line while a person types. None of them is picked as long as nobody goes to
    // it, so that Enter is the dialog's.
    void offerItems() {
        q_->setInsertPolicy(QComboBox::NoInsert);
        q_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        offers_ = new QStringListModel(q_);
        auto* completer = new QCompleter(offers_, q_);
        completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
        completer->setWidget(q_->lineEdit());
        QObject::connect(completer, QOverload<const QModelIndex&>::of(&QCompleter::activated), q_,
                         [this](const QModelIndex& chosen) {
                             dialog_.userPick(control_, chosen.row());
                             if (dialog_.running()) update();
                             q_->lineEdit()->setFocus();
                         });
        completer_ = completer;
    }
    void showOffers() {
        QStringList items;
        for (const std::string& item : control_.items()) items << toQt(item);
        offers_->setStringList(items);
        if (items.isEmpty() || control_.text().empty())
            completer_->popup()->hide();
        else
            completer_->complete();
        completer_->popup()->setCurrentIndex({});
    }
    void show() override {
        QStringList items;
        for (const std::string& item : control_.items()) items << toQt(item);
        if (items != shown_) {
            q_->clear();
            q_->addItems(items);
            shown_ = items;
        }
        q_->setCurrentIndex(control_.selected());
        if (control_.editable() && q_->currentText() != toQt(control_.text()))
            q_->setEditText(toQt(control_.text()));
        if (control_.textSelections() == selections_) return;
        selections_ = control_.textSelections();
        q_->lineEdit()->selectAll();
    }
    QStringList shown_;
    int selections_ = 0;
    QStringListModel* offers_ = nullptr;  // the widget's, as the next
    QCompleter* completer_ = nullptr;
};

class ProgressWidget : public Shown<Progress, QProgressBar> {
  public:
    using Shown::Shown;

  private:
    void show() override {
        q_->setRange(control_.from(), control_.to());
        q_->setValue(control_.position());
    }
};

class TabsWidget : public Shown<Tabs, QTabBar> {
  public:
    TabsWidget(Control& control, Dialog& dialog, DialogWindow& window) : Shown(control, dialog, window) {
        for (const std::string& page : control_.pages()) q_->addTab(toQt(page));
        QObject::connect(q_, &QTabBar::tabBarClicked, q_,
                         [this](int page) { dialog_.userPick(control_, page); });
    }

  private:
    void show() override { q_->setCurrentIndex(control_.page()); }
};

class MenuWidget : public Shown<Menu, QMenuBar> {
  public:
    using Shown::Shown;

  private:
    void show() override {
        // The entry that has brought the change about may still be in its menu.
        for (QMenu* menu : q_->findChildren<QMenu*>(Qt::FindDirectChildrenOnly)) menu->deleteLater();
        q_->clear();
        std::vector<QMenu*> open;
        const auto& entries = control_.entries();
        for (size_t i = 0; i < entries.size(); ++i) {
            const Menu::Entry& entry = entries[i];
            size_t level = static_cast<size_t>(entry.level);
            open.resize(std::min(open.size(), level));
            bool heading = i + 1 < entries.size() && entries[i + 1].level > entry.level;
            QMenu* parent = open.empty() ? nullptr : open.back();
            if (heading) {
                open.push_back(parent ? parent->addMenu(toQt(entry.caption))
                                      : q_->addMenu(toQt(entry.caption)));
                continue;
            }
            if (entry.caption.empty()) {
                if (parent) parent->addSeparator();
                continue;
            }
            QAction* action =
                parent ? parent->addAction(toQt(entry.caption)) : q_->addAction(toQt(entry.caption));
            action->setEnabled(entry.enabled);
            action->setCheckable(entry.checked);
            action->setChecked(entry.checked);
            if (!entry.shortcut.empty()) action->setShortcut(QKeySequence(toQt(entry.shortcut)));
            int command = entry.command;
            QObject::connect(action, &QAction::triggered, q_,
                             [this, command] { dialog_.userMenu(control_, command); });
        }
    }
};

}  // namespace

std::unique_ptr<ControlWidget> makeControlWidget(Control& control, Dialog& dialog, DialogWindow& window) {
    switch (control.kind()) {
        case ControlKind::Label:
            return std::make_unique<LabelWidget>(control, dialog, window);
        case ControlKind::GroupBox:
            return std::make_unique<GroupWidget>(control, dialog, window);
        case ControlKind::Edit:
            return std::make_unique<EditWidget>(control, dialog, window);
        case ControlKind::Button:
            return std::make_unique<ButtonWidget>(control, dialog, window);
        case ControlKind::CheckBox:
            return std::make_unique<MarkWidget<CheckBox, QCheckBox>>(control, dialog, window);
        case ControlKind::RadioButton:
            return std::make_unique<MarkWidget<RadioButton, QRadioButton>>(control, dialog, window);
        case ControlKind::List: {
            auto& list = static_cast<List&>(control);
            if (list.hasSource() || !list.headings().empty()) return makeRecordList(list, dialog, window);
            return std::make_unique<ListWidget>(control, dialog, window);
        }
        case ControlKind::DropDown:
            return std::make_unique<DropDownWidget>(control, dialog, window);
        case ControlKind::Tree:
            return makeTreeWidget(static_cast<Tree&>(control), dialog, window);
        case ControlKind::Progress:
            return std::make_unique<ProgressWidget>(control, dialog, window);
        case ControlKind::Picture:
            return makePictureWidget(static_cast<Picture&>(control), dialog, window);
        case ControlKind::Tabs:
            return std::make_unique<TabsWidget>(control, dialog, window);
        case ControlKind::Menu:
            return std::make_unique<MenuWidget>(control, dialog, window);
        case ControlKind::Grid:
            return std::make_unique<GridWidget>(static_cast<Grid&>(control), dialog, window);
    }
    return nullptr;
}

}  // namespace ui
