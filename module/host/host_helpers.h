// Small services of the host that the whole module uses.
#pragma once

#include <string>

#include "platform/ads/result_buffer.h"

// The first item of a group at or behind the head of a list; null when there is none.
resbuf* FindResultBuffer(resbuf* list, int group);
const resbuf* FindResultBuffer(const resbuf* list, int group);
// The text of such an item; "" when there is none.
std::string GroupText(const resbuf* list, int group);

// acdbEntMod, with an update of the entity that a vertex or an attribute belongs to. Its result.
int ModifyEntity(const resbuf* list);

// Reads a Lisp symbol as text: 1, or 0 with an empty buffer when the symbol is not set or has no text.
// "lspdir$" is also looked for as "cc_lspdir$".
int GetLispValue(std::string& buffer, const std::string& name);
// Sets a Lisp symbol to a text. Prints a message when that fails.
void SetLispString(const std::string& name, const std::string& value);

// Whether a module is loaded, by its base name: 1 or 0.
int IsArxLoaded(const std::string& baseName);

// The progress meter of a walk over many entities. It is shown only for more than 150 of them, and moves
// after each 150. It ends with the block.
class ProgressMeter {
  public:
    ProgressMeter(const std::string& label, long total);
    ~ProgressMeter();
    ProgressMeter(const ProgressMeter&) = delete;
    ProgressMeter& operator=(const ProgressMeter&) = delete;

    // One more entity is done.
    void advance();

  private:
    long end_ = 0;  // of the meter's range; 0: it is not shown
    long done_ = 0;
};
