// A record of a table, found again by what was read of it.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/dao/dao.h"

namespace norvane {

// The values of all fields of a table, in the order of the table, as a record set gives them.
using RecordValues = std::vector<dao::Variant>;

// The fields of a table, in its order.
std::vector<CDaoFieldInfo> FieldsOfTable(CDaoDatabase& database, const std::string& table);
// The place of a field of that name, in any case of letters; nothing for none.
std::optional<size_t> PlaceOfField(const std::vector<CDaoFieldInfo>& fields, const std::string& name);

// Nobody else changes the record before the transaction of the caller's ends, which has to be under way: in a
// file that has one writer anyway, on a server by a lock of the record. The record is looked for by PT_ID and
// GIS_KEY or, where it has no PT_ID, by all its values. Exceptions of the engine pass through.
class StoredRecord {
  public:
    enum class State {
        kSame,     // as it was read
        kChanged,  // somebody has changed it since
        kGone,     // there is none; without a PT_ID a changed record is one that is gone
    };

    // known: what was read of the record. The database stays the caller's.
    StoredRecord(CDaoDatabase& database, const std::string& table, const std::vector<CDaoFieldInfo>& fields,
                 const RecordValues& known);

    State state() const { return state_; }
    // The values that it has now; none when it is gone.
    const RecordValues& present() const { return present_; }
    // What a record is called in a message: "PT_ID 1042", or "The record".
    std::string name() const;

    // Each needs a record that is not gone. Writes values into fields by their places, and reads the record
    // anew, since a database may keep a value in another form than it was given.
    void write(const std::vector<std::pair<size_t, dao::Variant>>& values);
    void erase();

  private:
    std::string comparison(size_t place, bool inCapitals) const;
    std::string condition() const;
    void lock();
    void open();
    void find();
    RecordValues read();

    CDaoDatabase& database_;
    std::string table_;
    const std::vector<CDaoFieldInfo>& fields_;
    const RecordValues& known_;
    const bool onServer_;
    const std::optional<size_t> pointId_, gisKey_;  // places
    State state_ = State::kGone;
    RecordValues present_;
    CDaoRecordset records_;
};

}  // namespace norvane
