// One insert before it is written: its attributes and their new texts, which may be changed.
#pragma once

#include "module/titleblocks/fill_blocks.h"
#include "platform/ui/dialog.h"

namespace norvane {

class PreviewDialog : public ui::Dialog {
  public:
    // The insert stays the caller's; it gets the texts when the dialog ends with OK.
    explicit PreviewDialog(FilledInsert& insert, const std::string& block);

    PreviewAnswer answer() const { return answer_; }
    // Whether the following inserts are shown too.
    bool goesOn() const;

    static constexpr int kHandle = 1001;
    static constexpr int kBlock = 1002;
    static constexpr int kGrid = 1003;
    static constexpr int kGoesOn = 1004;
    static constexpr int kSkip = 1005;

  private:
    void onOpen() override;
    void onCommand(int id) override;
    void onOk() override;

    FilledInsert& insert_;
    PreviewAnswer answer_ = PreviewAnswer::kEnd;
};

// A text as one line, its line ends as arrows; and such a line as text again.
std::string TextAsLine(const std::string& text);
std::string LineAsText(const std::string& line);

}  // namespace norvane
