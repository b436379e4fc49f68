// A user interface that is answered by a script: tests, batch runs, and a console's way to answer a dialog.
//
// Steps are queued for the next dialog with a resource id. A dialog for which no steps are left is shown to
// the asker, if there is one; otherwise it is cancelled, and the log says so with what it showed.
#pragma once

#include <ctime>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui/backend.h"

namespace ui {

// One thing that a person does to a dialog. A control is named by its id in digits or by its caption.
struct Step {
    enum class Kind {
        Text,             // control, text
        Pick,             // control, text: the item's text or that of its first column, or its index from 0
        PickAlso,         // the same, joined to a multiple selection
        DoubleClick,      // control, text: an item as for Pick
        Check,            // control, on; text: of a tree the node, as for Pick
        Cell,             // column, row, text; control names the grid where there are several
        ClickCell,        // column, row (0: the heading), and control in the same way
        DoubleClickCell,  // the same
        Focus,            // control
        Key,              // text: "Enter", "Shift+Tab", "x"; pressed and let go
        Click,            // control
        Drop,             // files: let fall onto the dialog
        Menu,             // text: the caption of the entry, or its path: "File/Open..."
        Show,             // prints the model to the log
        Close,            // the frame's close button
    };
    Kind kind = Kind::Show;
    std::string control{};
    std::string text{};
    bool on = true;
    int column = 0;
    int row = 0;
    std::vector<std::string> files{};
};

// The step as it is written: (cell 2 3 "OAK").
std::string stepText(const Step& step);

// A dialog as text: its title, then a line a control, the cells of its grids in a table.
std::string modelText(const Dialog& dialog);

// Someone at a console who answers what the script does not.
class Asker {
  public:
    virtual ~Asker() = default;
    // The next step for a dialog, which is shown as text first; nothing to cancel it.
    virtual std::optional<Step> step(const std::string& model) = 0;
    virtual std::optional<std::string> answer(const std::string& question) = 0;
};

class ScriptedBackend : public Backend {
  public:
    // --- The script -----------------------------------------------------------------------------------

    void answer(int resource, std::vector<Step> steps);
    // For the next message box: "OK", "Cancel", "Yes" or "No".
    void answerBox(std::string button) { boxes_.push_back(std::move(button)); }
    // For the next question of the program's own that has this title or whose text begins so.
    void answerQuestion(std::string named, std::string button) {
        questions_.push_back({std::move(named), std::move(button)});
    }
    // For the next file box; "" cancels. Of a box for several files each stands on a line of its own.
    void answerFile(std::string path) { files_.push_back(std::move(path)); }
    void setAsker(Asker* asker) { asker_ = asker; }
    // Lets the clock stand at a time; nothing lets it go again.
    void setClock(std::optional<std::time_t> time) { clock_ = time; }

    // What was shown and done, a line or a block of lines each.
    const std::vector<std::string>& log() const { return log_; }
    void clearLog() { log_.clear(); }
    // Answers that nothing has asked for yet, each as text.
    std::vector<std::string> unused() const;
    // What did not go as the script wanted: steps that were refused or were left over when their dialog
    // ended, and the unused answers. A test looks that there is nothing.
    std::vector<std::string> undone() const;

    // --- Backend --------------------------------------------------------------------------------------

    bool open(Dialog& dialog) override;
    void waitForEvent(Dialog& dialog) override;
    // One step, as long as there are steps.
    void takeEvents(Dialog& dialog) override;
    std::optional<std::chrono::milliseconds> pictureInterval(int resource) override;
    void close(Dialog& dialog) override;
    int messageBox(const MessageBox& box) override;
    int ask(const OwnQuestion& question) override;
    std::optional<std::string> fileBox(const FileBox& box) override;
    // One of its own, which a test may fill and look into.
    std::string clipboard() override { return clipboard_; }
    void setClipboard(const std::string& text) override { clipboard_ = text; }
    std::vector<std::string> severalFiles(const FileBox& box) override;
    // Logs the path.
    bool showInViewer(const std::string& path) override;
    void information(const std::string& text, int milliseconds) override;
    // Logs the pages as text.
    bool print(const PrintJob& job) override;
    std::time_t now() const override { return clock_.value_or(Backend::now()); }
    // The measures of a fixed font: as high as asked for, half as wide.
    std::unique_ptr<FontMetrics> metrics(const Font& font) override;

  private:
    std::optional<Step> nextStep(Dialog& dialog);
    void take(Dialog& dialog, const Step& step, bool isScripted);
    // "" when the step was done, else why not.
    std::string perform(Dialog& dialog, const Step& step);
    std::optional<std::string> nextAnswer(std::deque<std::string>& queue, const std::string& question);

    std::map<int, std::deque<std::vector<Step>>> scripts_;
    std::vector<std::pair<Dialog*, std::deque<Step>>> running_;  // the innermost dialog last
    std::deque<std::string> boxes_, files_;
    struct QuestionAnswer {
        std::string named;
        std::string button;
    };
    std::vector<QuestionAnswer> questions_;
    Asker* asker_ = nullptr;
    std::optional<std::time_t> clock_;
    std::string clipboard_;
    std::vector<std::string> log_;
    std::vector<std::string> failed_;  // steps refused and left over
};

}  // namespace ui
