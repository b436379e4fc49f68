// The user interface with real windows. One renderer shows every dialog; none has Qt code of its own.
#pragma once

#include <QObject>
#include <QSize>
#include <map>
#include <memory>

#include "platform/ui/backend.h"

class QSettings;
class QWidget;

namespace ui {

class DialogWindow;
class PanelArea;

class QtBackend : public Backend {
  public:
    // owner: the program's window, over which dialogs stand; it may be null. A QApplication must be there.
    explicit QtBackend(QWidget* owner = nullptr);
    ~QtBackend() override;

    // Where the sizes of dialogs are kept between runs; the caller's. Without, they are kept while it runs.
    void keepSizesIn(QSettings& settings) { settings_ = &settings; }

    // Where panels stand, the caller's; it outlives them. Without, they are dialogs that wait.
    void standPanelsIn(PanelArea& area) { area_ = &area; }

    bool open(Dialog& dialog) override;
    void waitForEvent(Dialog& dialog) override;
    void takeEvents(Dialog& dialog) override;
    std::optional<std::chrono::milliseconds> pictureInterval(int resource) override;
    void close(Dialog& dialog) override;
    bool showPanel(std::unique_ptr<Panel> panel) override;
    Panel* openPanel(int resource) override;
    void closePanel(int resource) override;
    void closePanels() override;
    int messageBox(const MessageBox& box) override;
    std::optional<std::string> fileBox(const FileBox& box) override;
    std::vector<std::string> severalFiles(const FileBox& box) override;
    bool showInViewer(const std::string& path) override;
    void information(const std::string& text, int milliseconds) override;
    bool print(const PrintJob& job) override;
    std::unique_ptr<FontMetrics> metrics(const Font& font) override;
    void refresh() override;
    std::string clipboard() override;
    void setClipboard(const std::string& text) override;

    // The window of an open dialog, for tests; null when it is not open.
    DialogWindow* window(const Dialog& dialog) const;

  private:
    // The innermost window that is open, else the owner.
    QWidget* front() const;
    void returnToFront() const;

    struct Standing {
        std::unique_ptr<Panel> panel;
        std::unique_ptr<DialogWindow> view;
    };
    Standing* find(const Dialog& panel);
    bool runPanel(Panel& panel);
    // Panels end within an event of their own, and go when it is over.
    void removeEndedPanels();

    void restoreSize(const Dialog& dialog, DialogWindow& window);
    void keepSize(const Dialog& dialog, const DialogWindow& window);

    QWidget* owner_;
    QSettings* settings_ = nullptr;
    std::map<int, QSize> opened_, sizes_;  // by resource: as a dialog was opened, and as it was left
    std::vector<std::pair<Dialog*, std::unique_ptr<DialogWindow>>> windows_;
    PanelArea* area_ = nullptr;
    std::vector<Standing> panels_;
    QObject soon_;  // while it lives, what is to be done soon is done
};

}  // namespace ui
