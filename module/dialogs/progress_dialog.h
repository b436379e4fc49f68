// The progress of long work: a bar, a line of text and Cancel.
//
//     ProgressDialog progress("Export to SHP", count, userBreak);
//     while (exportNext())
//         if (!progress.step(++done, "Writing entity " + std::to_string(done))) break;
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace norvane {

// Whether the person has asked the host to stop, as by Escape.
using Interrupted = std::function<bool()>;

class ProgressDialog {
  public:
    // total: the steps of the work; 0 where nobody knows. The window comes when the work has lasted a moment,
    // and never where nobody looks: in a batch run, or in a script without answers for it.
    ProgressDialog(std::string title, long total, Interrupted interrupted = {});
    ~ProgressDialog();
    ProgressDialog(const ProgressDialog&) = delete;
    ProgressDialog& operator=(const ProgressDialog&) = delete;

    // Shows that so many steps are done, and a line of text. False as soon as the person wants the work to
    // end, and from then on: by Cancel, the frame's close button, Escape, or through the host. Between two
    // pictures it looks at the clock and no more, so that it may be called for each record.
    bool step(long done, const std::string& text);
    bool cancelled() const { return cancelled_; }

    static constexpr int kResource = 1000;
    static constexpr int kText = 1001;
    static constexpr int kBar = 1002;

  private:
    class Window;

    void showStep(long done, const std::string& text);

    std::string title_;
    long total_;
    Interrupted interrupted_;
    bool watched_;
    std::chrono::milliseconds interval_{};  // between two pictures
    std::chrono::steady_clock::time_point next_;
    std::unique_ptr<Window> window_;  // once it is open
    bool cancelled_ = false;
};

}  // namespace norvane
