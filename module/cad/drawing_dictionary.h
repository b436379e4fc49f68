// Texts with names that are kept in the drawing and travel with it.
//
// They stand as XRECORDs in the drawing's dictionaries: NORVANE_GIS, below it a dictionary for each kind, and
// in that an entry for each name. An entry begins with the version of whoever wrote it. What another version
// has written is left as it is and not read; so is what is damaged.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norvane {

struct DictionaryEntry {
    enum class State {
        kReadable,
        kOtherVersion,  // the text is empty
        kDamaged        // the same
    };
    std::string name;  // as it was given
    std::string text;  // any UTF-8 of any length
    int version = 0;
    State state = State::kReadable;
};

// What a user must know of an entry that is not read, a sentence; "" for a readable one.
std::string RemarkOn(const DictionaryEntry& entry);

class DrawingDictionary {
  public:
    // kind: "CONDITIONS", "LABELS" or the like, a name of capitals; version: the one that is written, and the
    // only one that is read. It is the current drawing's at each call.
    DrawingDictionary(std::string_view kind, int version);

    // All entries, in the order of their names.
    std::vector<DictionaryEntry> entries() const;
    // The entry of a name, without regard to case; false when there is none.
    bool find(std::string_view name, DictionaryEntry& entry) const;

    // Writes an entry, new or in the place of one of its name, as a step of undo. "" when done; else a
    // sentence that says why not: the name is none (IsEntryName), or has an entry of another version, which
    // is not overwritten. A damaged one is.
    std::string write(std::string_view name, std::string_view text) const;
    // Removes an entry in any state. False when there is none.
    bool remove(std::string_view name) const;

    // What a user must know of the entries that are not read, a sentence each; empty when all are readable.
    std::vector<std::string> remarks() const;

  private:
    std::string kind_;
    int version_;
};

// Whether a text may be the name of an entry: 1 to 255 characters that the names of symbols may have, without
// blanks round it.
bool IsEntryName(std::string_view name);

// Whether a byte of UTF-8 may stand in such a name, and in that of a layer.
bool IsNameByte(char byte);

// Whether the drawing has the dictionary of all this, which stays when the last entry goes.
bool HasDrawingDictionaries();

// Whether the file of the drawing has a place for dictionaries. Those of R12 have none: entries are lost with
// the session, and whoever writes one says so.
bool DrawingHoldsDictionaries();

}  // namespace norvane
