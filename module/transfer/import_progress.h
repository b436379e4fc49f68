// The progress of an import: lines on the command line, a window where somebody looks, and the way to stop
// it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "module/dialogs/progress_dialog.h"

namespace norvane {

class ImportProgress {
  public:
    // The records of the set, each of which is drawn and then written.
    explicit ImportProgress(size_t records);

    // The first or the second walk through the records, with the text in front of the number of those left; a
    // silent one shows none on the command line.
    void begin(const char* text, bool silent = false);
    // Before each record, of which so many are left. False once the user has stopped the work.
    bool goOn(size_t left);
    // A record cannot be read, so that the attributes of all later ones belong to others: at the first of
    // them the user is asked whether to go on. False to stop.
    bool goOnAfterUnreadable(int32_t record);
    bool stopped() const { return dialog_.cancelled() || refused_; }
    size_t unreadable() const { return unreadable_; }  // records
    // Clears the line of progress.
    void end();

  private:
    ProgressDialog dialog_;
    size_t records_;
    int walks_ = 0;
    std::string text_;
    bool silent_ = false;
    size_t steps_ = 0;
    bool shown_ = false;
    size_t unreadable_ = 0;
    bool refused_ = false;
};

}  // namespace norvane
