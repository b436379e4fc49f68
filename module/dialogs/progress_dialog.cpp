#include "module/dialogs/progress_dialog.h"

#include <utility>

#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

class ProgressDialog::Window : public ui::Dialog {
  public:
    Window(const std::string& title, bool lengthIsKnown) : ui::Dialog(kResource, title) {
        add<ui::Label>(kText);
        add<ui::Progress>(kBar).setRange(0, lengthIsKnown ? kParts : 0);
        add<ui::Button>(ui::kCancel, "&Cancel", true);
        using namespace ui;
        setLayout(column({item(kText), item(kBar), spring(), row({spring(), item(ui::kCancel)})}));
        setSize({420, 120});
    }

    static constexpr int kParts = 1000;  // of the bar
};

namespace {

// A line that fits the window: of a long path the beginning and, more of it, the end.
std::string fitted(const std::string& line) {
    constexpr int kMost = 64, kBeginning = 20;
    const int count = ui::characterCount(line);
    if (count <= kMost) return line;
    size_t beginning = 0, end = 0;
    for (int n = 0; n < kBeginning; ++n) text::nextCodePoint(line, beginning);
    for (int n = 0; n < count - (kMost - kBeginning - 3); ++n) text::nextCodePoint(line, end);
    return line.substr(0, beginning) + "..." + line.substr(end);
}

}  // namespace

ProgressDialog::ProgressDialog(std::string title, long total, Interrupted interrupted)
    : title_(std::move(title)), total_(total), interrupted_(std::move(interrupted)) {
    std::optional<std::chrono::milliseconds> interval;
    if (ui::backend()) interval = ui::backend()->pictureInterval(kResource);
    watched_ = interval.has_value();
    interval_ = interval.value_or(std::chrono::milliseconds(0));
    next_ = std::chrono::steady_clock::now() + interval_;
}

ProgressDialog::~ProgressDialog() {
    if (window_) window_->close();
}

bool ProgressDialog::step(long done, const std::string& text) {
    if (cancelled_) return false;
    if (watched_) {
        if (std::chrono::steady_clock::now() < next_) return true;
        showStep(done, text);
        // Drawing takes time too, and the work gets the rest.
        next_ = std::chrono::steady_clock::now() + interval_;
    }
    cancelled_ = cancelled_ || (interrupted_ && interrupted_());
    return !cancelled_;
}

void ProgressDialog::showStep(long done, const std::string& text) {
    if (!window_) {
        window_ = std::make_unique<Window>(title_, total_ > 0);
        watched_ = window_->open();
    }
    window_->get<ui::Label>(kText).setText(fitted(text));
    if (total_ > 0)
        window_->get<ui::Progress>(kBar).setPosition(
            static_cast<int>(static_cast<double>(done) / static_cast<double>(total_) * Window::kParts));
    window_->takeEvents();
    cancelled_ = watched_ && !window_->running();
}

}  // namespace norvane
