#include "platform/ui/qt/qt_backend.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QEventLoop>
#include <QFileDialog>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QSettings>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/files/files.h"
#include "platform/text/text.h"
#include "platform/ui/qt/dialog_window.h"
#include "platform/ui/qt/panel_area.h"
#include "platform/ui/qt/qt_printing.h"
#include "platform/ui/qt/qt_text.h"

namespace ui {
namespace {

class QtFontMetrics : public FontMetrics {
  public:
    explicit QtFontMetrics(const Font& font) : metrics_(qtFont(font)) {}
    int height() const override { return metrics_.height(); }
    int width(std::string_view text) const override { return metrics_.horizontalAdvance(toQt(text)); }

  private:
    QFontMetrics metrics_;
};

QMessageBox::StandardButtons buttonsOf(unsigned flags) {
    switch (flags & 0xF) {
        case kBoxOkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case kBoxYesNo:
            return QMessageBox::Yes | QMessageBox::No;
        case kBoxYesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        default:
            return QMessageBox::Ok;
    }
}

QMessageBox::StandardButton buttonOf(int answer) {
    switch (answer) {
        case kYes:
            return QMessageBox::Yes;
        case kNo:
            return QMessageBox::No;
        case kCancel:
            return QMessageBox::Cancel;
        default:
            return QMessageBox::Ok;
    }
}

// "Text (*.txt)|*.txt;*.asc||" in Qt's way of writing it.
QStringList nameFilters(const std::string& filter) {
    QStringList filters;
    std::vector<std::string> pieces = text::split(filter, '|');
    for (size_t i = 0; i + 1 < pieces.size() && !pieces[i].empty(); i += 2) {
        std::string description = pieces[i].substr(0, pieces[i].find('('));
        filters << toQt(std::string(text::trim(description)) + " (" +
                        text::replaceAll(pieces[i + 1], ";", " ") + ")");
    }
    return filters;
}

// What a file box shows first: the files of a pattern such as "*.mdb", or a name, which the first key
// replaces.
void showFirst(QFileDialog& box, const std::string& pattern) {
    if (pattern.empty()) return;
    const QString first = toQt(pattern);
    if (!first.contains('*') && !first.contains('?')) {
        box.selectFile(first);
        if (auto* name = box.findChild<QLineEdit*>("fileNameEdit")) name->selectAll();
        return;
    }
    for (const QString& filter : box.nameFilters()) {
        const QString patterns = filter.section('(', 1).section(')', 0, 0);
        if (patterns.split(' ').contains(first, Qt::CaseInsensitive)) return box.selectNameFilter(filter);
    }
}

QString sizeKey(const Dialog& dialog) {
    return QString("dialogs/%1").arg(dialog.resource());
}

}  // namespace

QtBackend::QtBackend(QWidget* owner) : owner_(owner) {}
QtBackend::~QtBackend() {
    closePanels();
}

QWidget* QtBackend::front() const {
    return windows_.empty() ? owner_ : windows_.back().second.get();
}

// A box that has gone leaves the keyboard to nobody on some platforms.
void QtBackend::returnToFront() const {
    if (QWidget* window = front()) window->activateWindow();
    if (!windows_.empty()) windows_.back().second->showFocus();
}

DialogWindow* QtBackend::window(const Dialog& dialog) const {
    for (const auto& [shown, window] : windows_)
        if (shown == &dialog) return window.get();
    for (const Standing& standing : panels_)
        if (standing.panel.get() == &dialog) return standing.view.get();
    return nullptr;
}

// A dialog that is placed to the pixel has the size that it has computed.
void QtBackend::restoreSize(const Dialog& dialog, DialogWindow& window) {
    if (!dialog.rectangles().empty()) return;
    QSize size = sizes_[dialog.resource()];
    if (!size.isValid() && settings_) size = settings_->value(sizeKey(dialog)).toSize();
    if (size.isValid()) window.resize(size.boundedTo(window.screen()->availableSize()));
    opened_[dialog.resource()] = window.size();
}

// Only a size that a person has chosen counts, so that others follow what a dialog shows.
void QtBackend::keepSize(const Dialog& dialog, const DialogWindow& window) {
    if (!dialog.rectangles().empty() || window.size() == opened_[dialog.resource()]) return;
    sizes_[dialog.resource()] = window.size();
    if (settings_) settings_->setValue(sizeKey(dialog), window.size());
}

bool QtBackend::open(Dialog& dialog) {
    if (Standing* standing = find(dialog)) {
        standing->view = std::make_unique<DialogWindow>(dialog, nullptr);
        standing->view->onEnded = [this] { QTimer::singleShot(0, &soon_, [this] { removeEndedPanels(); }); };
        area_->add(*standing->panel, *standing->view);
        return true;
    }
    auto window = std::make_unique<DialogWindow>(dialog, front());
    restoreSize(dialog, *window);
    window->show();
    windows_.emplace_back(&dialog, std::move(window));
    windows_.back().second->showFocus();
    return true;
}

void QtBackend::waitForEvent(Dialog&) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void QtBackend::takeEvents(Dialog&) {
    QCoreApplication::processEvents();
}

// Often enough for a bar that moves, and for a button that answers.
std::optional<std::chrono::milliseconds> QtBackend::pictureInterval(int) {
    return std::chrono::milliseconds(100);
}

// --- Panels ------------------------------------------------------------------------------------------------

QtBackend::Standing* QtBackend::find(const Dialog& panel) {
    auto found = std::find_if(panels_.begin(), panels_.end(),
                              [&](const Standing& standing) { return standing.panel.get() == &panel; });
    return found == panels_.end() ? nullptr : &*found;
}

// As a dialog that waits, with a person who may act while it is at work.
bool QtBackend::runPanel(Panel& panel) {
    constexpr std::chrono::milliseconds kSlice{20};
    const bool isOpen = panel.open();
    if (isOpen) panel.onWindowChange({true, true, true});
    while (panel.running()) {
        if (panel.work(kSlice))
            panel.takeEvents();
        else
            panel.waitForEvent();
        if (panel.running()) panel.onWindowChange({.selection = true});
    }
    if (isOpen) panel.close();
    return isOpen;
}

bool QtBackend::showPanel(std::unique_ptr<Panel> panel) {
    if (!area_) return runPanel(*panel);
    Panel& shown = *panel;
    shown.setPlace(area_);
    panels_.push_back({std::move(panel), nullptr});
    const bool isMade = shown.open();
    if (shown.running())
        shown.enter();
    else
        std::erase_if(panels_, [&](const Standing& standing) { return standing.panel.get() == &shown; });
    return isMade;
}

Panel* QtBackend::openPanel(int resource) {
    for (const Standing& standing : panels_)
        if (standing.panel->resource() == resource && standing.panel->running()) return standing.panel.get();
    return nullptr;
}

void QtBackend::closePanel(int resource) {
    if (Panel* panel = openPanel(resource)) panel->end(kCancel);
    removeEndedPanels();
}

void QtBackend::closePanels() {
    for (const Standing& standing : panels_) standing.panel->end(kCancel);
    removeEndedPanels();
}

void QtBackend::removeEndedPanels() {
    for (size_t i = panels_.size(); i-- > 0;) {
        if (panels_[i].panel->running()) continue;
        area_->remove(*panels_[i].panel);
        panels_[i].panel->close();
        panels_[i].view.reset();
        panels_.erase(panels_.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

void QtBackend::close(Dialog& dialog) {
    if (find(dialog)) return;  // it goes with its view
    if (const DialogWindow* closed = window(dialog)) keepSize(dialog, *closed);
    std::erase_if(windows_, [&](const auto& entry) { return entry.first == &dialog; });
    returnToFront();
}

int QtBackend::messageBox(const MessageBox& box) {
    const QMessageBox::Icon sign = box.success                   ? QMessageBox::Information
                                   : box.flags & kBoxExclamation ? QMessageBox::Warning
                                                                 : QMessageBox::NoIcon;
    QMessageBox qt(sign, toQt(box.title), toQt(box.text), buttonsOf(box.flags), front());
    qt.setTextFormat(Qt::PlainText);
    if (box.flags & kBoxTopMost) qt.setWindowFlag(Qt::WindowStaysOnTopHint);
    if (!box.yes.empty()) qt.button(QMessageBox::Yes)->setText(toQt(box.yes));
    if (!box.no.empty()) qt.button(QMessageBox::No)->setText(toQt(box.no));
    if (box.enter != 0) qt.setDefaultButton(buttonOf(box.enter));
    int answer = qt.exec();
    returnToFront();
    switch (answer) {
        case QMessageBox::Ok:
            return kOk;
        case QMessageBox::Yes:
            return kYes;
        case QMessageBox::No:
            return kNo;
        default:
            return (box.flags & 0xF) == kBoxOk ? kOk : (box.flags & 0xF) == kBoxYesNo ? kNo : kCancel;
    }
}

std::optional<std::string> QtBackend::fileBox(const FileBox& box) {
    const std::vector<std::string> paths = severalFiles(box);
    if (paths.empty()) return std::nullopt;
    return paths.front();
}

bool QtBackend::showInViewer(const std::string& path) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(toQt(path)));
}

std::vector<std::string> QtBackend::severalFiles(const FileBox& box) {
    QFileDialog qt(front(), toQt(box.title.empty() ? (box.save ? "Save As" : "Open") : box.title));
    qt.setAcceptMode(box.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    qt.setFileMode(box.save      ? QFileDialog::AnyFile
                   : box.several ? QFileDialog::ExistingFiles
                                 : QFileDialog::ExistingFile);
    if (box.folders) {
        qt.setFileMode(QFileDialog::Directory);
        qt.setOption(QFileDialog::ShowDirsOnly);
    } else {
        qt.setNameFilters(nameFilters(box.filter));
    }
    if (files::isFolder(box.folder)) qt.setDirectory(toQt(files::native(box.folder)));
    showFirst(qt, box.pattern);
    if (!box.defaultExtension.empty()) qt.setDefaultSuffix(toQt(box.defaultExtension));
    qt.setOption(QFileDialog::DontConfirmOverwrite, !box.askOverwrite);
    bool accepted = qt.exec() == QDialog::Accepted && !qt.selectedFiles().isEmpty();
    returnToFront();
    std::vector<std::string> paths;
    if (accepted)
        for (const QString& path : qt.selectedFiles()) paths.push_back(fromQt(path));
    return paths;
}

void QtBackend::information(const std::string& text, int milliseconds) {
    QDialog box(front());
    box.setWindowTitle(front() ? front()->windowTitle() : QString());
    auto* inside = new QVBoxLayout(&box);
    auto* label = new QLabel(toQt(text));
    label->setTextFormat(Qt::PlainText);
    label->setMargin(12);
    inside->addWidget(label);
    QTimer::singleShot(milliseconds, &box, &QDialog::accept);
    box.exec();
    returnToFront();
}

bool QtBackend::print(const PrintJob& job) {
    bool printed = printWithDialog(job, front());
    returnToFront();
    return printed;
}

std::unique_ptr<FontMetrics> QtBackend::metrics(const Font& font) {
    return std::make_unique<QtFontMetrics>(font);
}

std::string QtBackend::clipboard() {
    return fromQt(QGuiApplication::clipboard()->text());
}

void QtBackend::setClipboard(const std::string& text) {
    QGuiApplication::clipboard()->setText(toQt(text));
}

void QtBackend::refresh() {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace ui
