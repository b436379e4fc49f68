// The side of the user interface that shows things, and the boxes that every part of the program may use.
#pragma once

#include <chrono>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui/dialog.h"
#include "platform/ui/font.h"
#include "platform/ui/print_job.h"

namespace ui {

// Flags of a message box: what buttons and icon it has. They add up.
constexpr unsigned kBoxOk = 0x0;
constexpr unsigned kBoxOkCancel = 0x1;
constexpr unsigned kBoxYesNoCancel = 0x3;
constexpr unsigned kBoxYesNo = 0x4;
constexpr unsigned kBoxExclamation = 0x30;
constexpr unsigned kBoxTopMost = 0x40000;
// What most messages of the module use: a top-most box with OK and the exclamation icon.
constexpr unsigned kBoxAlert = kBoxTopMost | kBoxExclamation;

struct MessageBox {
    std::string title;
    std::string text;
    unsigned flags = kBoxAlert;
    bool success = false;     // a view that has signs shows none of warning, whatever the flags say
    std::string yes{}, no{};  // what the two buttons say in place of that
    int enter = 0;  // the button that Enter presses: kOk, kCancel, kYes or kNo; 0 leaves it to the view
};

// A question that we have added to what a tool asks. Scripts that do not know it run as before: it is
// answered by name, and the answers for message boxes are not used up.
struct OwnQuestion {
    std::string title;
    std::string text;
    unsigned flags = kBoxAlert | kBoxYesNo;
    int defaultAnswer = kNo;  // where nobody answers: kOk, kCancel, kYes or kNo
    std::string yes{}, no{};  // what the two buttons say in place of that; a script may answer by it
    bool loses = false;       // what cannot be brought back: Enter then gives the default answer
};

struct FileBox {
    bool save = false;     // false: an existing file is to be opened
    bool folders = false;  // a folder that is there is to be chosen, whatever the rest says
    std::string title;
    std::string filter;            // "Text|*.txt|All|*.*||": pairs of a description and its patterns
    std::string pattern;           // shown first, "*.mdb"
    std::string folder;            // where it starts; "" leaves it to the view
    std::string defaultExtension;  // added to a name without one, without the "."
    bool mustExist = false;
    bool askOverwrite = false;
    bool several = false;  // existing files; see severalFiles
};

class Panel;

class Backend {
  public:
    virtual ~Backend() = default;
    // Shows a dialog; false when it cannot be made.
    virtual bool open(Dialog& dialog) = 0;
    // Lets a person act once, or a bounded time pass.
    virtual void waitForEvent(Dialog& dialog) = 0;
    // Lets a person act who has begun to, without waiting for it.
    virtual void takeEvents(Dialog&) {}
    // How often a dialog that shows the progress of work has a new picture; nothing where nobody looks at it.
    virtual std::optional<std::chrono::milliseconds> pictureInterval(int /*resource*/) {
        return std::nullopt;
    }
    virtual void close(Dialog& dialog) = 0;
    // Shows a panel until it ends; a view with a window for panels puts it there instead, and keeps it. False
    // when it cannot be made.
    virtual bool showPanel(std::unique_ptr<Panel> panel);
    // Those that stand in the window.
    virtual Panel* openPanel(int /*resource*/) { return nullptr; }
    virtual void closePanel(int /*resource*/) {}
    virtual void closePanels() {}
    // kOk, kCancel, kYes or kNo.
    virtual int messageBox(const MessageBox& box) = 0;
    // The same; a view that has answers for certain questions uses those.
    virtual int ask(const OwnQuestion& question) {
        return messageBox({question.title, question.text, question.flags, false, question.yes, question.no,
                           question.loses ? question.defaultAnswer : 0});
    }
    virtual std::optional<std::string> fileBox(const FileBox& box) = 0;
    // The text that programs exchange.
    virtual std::string clipboard() { return {}; }
    virtual void setClipboard(const std::string&) {}
    // All that were chosen; none when it was cancelled.
    virtual std::vector<std::string> severalFiles(const FileBox& box) {
        const std::optional<std::string> path = fileBox(box);
        return path ? std::vector<std::string>{*path} : std::vector<std::string>();
    }
    // Shows a file in the program that the system has for its kind; false when it has none.
    virtual bool showInViewer(const std::string& /*path*/) { return false; }
    // A text that goes away by itself after some milliseconds.
    virtual void information(const std::string& text, int milliseconds) = 0;
    // False when nothing was printed.
    virtual bool print(const PrintJob& job) = 0;
    virtual std::unique_ptr<FontMetrics> metrics(const Font& font) = 0;
    // Shows what has changed, in the middle of long work.
    virtual void refresh() {}
    // Seconds since 1970.
    virtual std::time_t now() const { return std::time(nullptr); }
};

// The present backend; null when there is none. A program sets it once, a test for a while. It stays the
// caller's. The panels of the one before are closed.
Backend* backend();
void setBackend(Backend* backend);

// A box with the given title and text. Without a backend the answer is that of a person who is not there:
// kOk where only OK is offered, else kCancel or kNo.
int messageBox(const std::string& title, const std::string& text, unsigned flags = kBoxAlert);
// The same for something that has been done as it was wanted.
void reportSuccess(const std::string& title, const std::string& text);
// The chosen path, with "/" between folders; nothing when the person cancelled.
std::optional<std::string> fileBox(const FileBox& box);
// The same for a box in which several existing files can be chosen; none when the person cancelled.
std::vector<std::string> severalFiles(FileBox box);
// Shows a file in the system's own program for it. False when that cannot be done.
bool showInViewer(const std::string& path);
void information(const std::string& text, int milliseconds);
// The button that was pressed; without a backend the default answer.
int ask(const OwnQuestion& question);
// Lets a person see what has changed, in the middle of long work.
void refresh();
// The time by the clock of the person at the screen, which a script may stop: seconds since 1970.
std::time_t now();
// Yes or No; No without a backend.
bool askYesNo(const std::string& title, const std::string& question);

}  // namespace ui
