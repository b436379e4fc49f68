// The user interface with real windows. One renderer shows every dialog; none has Qt code of its own.
#pragma once

#include <map>
#include <memory>

#include "platform/ui/backend.h"

class QWidget;

namespace ui {

class DialogWindow;

class QtBackend : public Backend {
  public:
    // owner: the program's window, over which dialogs stand; it may be null. A QApplication must be there.
    explicit QtBackend(QWidget* owner = nullptr);
    ~QtBackend() override;

    bool open(Dialog& dialog) override;
    void waitForEvent(Dialog& dialog) override;
    void close(Dialog& dialog) override;
    int messageBox(const MessageBox& box) override;
    std::optional<std::string> fileBox(const FileBox& box) override;
    void information(const std::string& text, int milliseconds) override;
    bool print(const PrintJob& job) override;
    std::unique_ptr<FontMetrics> metrics(const Font& font) override;
    void refresh() override;

    // The window of an open dialog, for tests; null when it is not open.
    DialogWindow* window(const Dialog& dialog) const;

  private:
    // The innermost window that is open, else the owner.
    QWidget* front() const;
    void returnToFront() const;

    QWidget* owner_;
    std::vector<std::pair<Dialog*, std::unique_ptr<DialogWindow>>> windows_;
};

}  // namespace ui
