// Records of one table changed in place, a row at a time.
//
// What is typed into a row is kept until the row is left, and written then. A record that somebody else has
// changed meanwhile is told of and left as it is. What was written can be taken back, one row after the
// other.
//
//     edits.begin(values)          the row that is being changed, as it was read
//     edits.type(3, "Oak")         its cells
//     edits.write()                when it is left
//     edits.undo()
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "module/records/record_rules.h"

namespace norvane {

struct EditOutcome {
    enum class State {
        kNothing,         // there was nothing to write or to take back
        kWritten,         // or taken back
        kChangedByOther,  // not written: `now` is what the others have made of it
        kGone,            // not written: somebody has erased the record, or changed one that has no key
        kFailed,          // the database has refused it; what was typed is still there
    };
    State state = State::kNothing;
    std::string message;  // a sentence for the person; "" where nothing is to be said
    RecordValues before;  // the record as it was read (by undo: as it had been written)
    RecordValues now;     // as it is now, where that is known

    bool isWritten() const { return state == State::kWritten; }
};

class RecordEdits {
  public:
    // The database stays the caller's, and stays open; it may be one that is read through at the same time.
    // table: as it stands in the database. Throws what the engine says.
    RecordEdits(CDaoDatabase& database, const std::string& table, const std::string& templatePath,
                const std::vector<std::string>& keyFields = {});

    const std::vector<CDaoFieldInfo>& fields() const { return fields_; }
    const RecordRules& rules() const { return rules_; }
    // The place of a field among the fields; -1 when there is none of that name, in any case of letters.
    int fieldNamed(const std::string& name) const;

    // --- The row that is being changed --------------------------------------------------------------------

    // Begins with a row, as it was read: the values of all fields. The row before it has been written or
    // dropped; if not, it is dropped.
    void begin(RecordValues record);
    // The same with a record that has been read only now, behind what the person sees of it. False, and no
    // row is begun, where a field looks otherwise than it was shown: somebody has changed it. shown: the text
    // of a field's cell, which may be its beginning.
    bool begin(RecordValues record, const std::function<std::string(size_t field)>& shown);
    // Takes what was typed into a field of it. The sentence that tells why not; "" when it was taken.
    std::string type(size_t field, const std::string& text);
    // Whether there is something to write.
    bool isChanged() const { return !typed_.empty(); }
    bool isChanged(size_t field) const { return typed_.contains(field); }
    // The text of a field of the row, with what was typed.
    std::string text(size_t field) const;
    // The row as it was read, with what was typed.
    RecordValues values() const;
    void drop() { typed_.clear(); }
    // Writes the row. Afterwards it is the row as it was written; where somebody else has changed it, what
    // was typed is kept until the next begin() or drop().
    EditOutcome write();

    // --- Undo ---------------------------------------------------------------------------------------------

    size_t undoable() const { return done_.size(); }
    // Takes back the last row that was written, where nobody has changed it since. One that somebody has
    // changed is told of, and the next undo() goes on to the one before it.
    EditOutcome undo();

  private:
    struct Done {
        RecordValues before, after;
    };
    void changeWithin(const RecordValues& known, const std::vector<std::pair<size_t, dao::Variant>>& values,
                      EditOutcome& outcome);
    EditOutcome change(const RecordValues& known, const std::vector<std::pair<size_t, dao::Variant>>& values);

    CDaoDatabase& database_;
    std::string table_;
    std::vector<CDaoFieldInfo> fields_;
    RecordRules rules_;
    RecordValues record_;
    std::map<size_t, dao::Variant> typed_;
    std::vector<Done> done_;
};

}  // namespace norvane
