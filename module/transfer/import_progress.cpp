#include "module/transfer/import_progress.h"

#include <algorithm>

#include "platform/ads/editor.h"
#include "platform/text/text.h"
#include "platform/ui/backend.h"

namespace norvane {

namespace {

constexpr size_t kWalks = 2;

}  // namespace

ImportProgress::ImportProgress(size_t records)
    : dialog_("Import SHP File", static_cast<long>(kWalks * records), [] { return acedUsrBrk() != 0; }),
      records_(records) {}

void ImportProgress::begin(const char* text, bool silent) {
    end();
    text_ = text;
    silent_ = silent;
    steps_ = 0;
    ++walks_;
}

bool ImportProgress::goOn(size_t left) {
    constexpr size_t kEvery = 50;
    if (stopped()) return false;
    if (steps_++ % kEvery != 0) return true;
    const std::string line = text_ + std::to_string(left);
    if (!silent_) {
        acutPrintf("\r%-40s", line.c_str());
        shown_ = true;
    }
    const size_t done = static_cast<size_t>(walks_) * records_ - std::min(left, records_);
    return dialog_.step(static_cast<long>(done), line);
}

bool ImportProgress::goOnAfterUnreadable(int32_t record) {
    if (++unreadable_ > 1) return true;
    ui::OwnQuestion question;
    question.title = "Import SHP File";
    question.text =
        text::format("Record %ld cannot be read: the attributes of all later ones would belong to others.",
                     static_cast<long>(record) + 1);
    question.yes = "&Go on";
    question.no = "&Stop";
    question.defaultAnswer = ui::kYes;
    refused_ = ui::ask(question) != ui::kYes;
    return !refused_;
}

void ImportProgress::end() {
    if (shown_) acutPrintf("\r%-40s\r", "");
    shown_ = false;
}

}  // namespace norvane
