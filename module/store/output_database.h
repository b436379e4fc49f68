// The output database: one table for each output table name, and in it one record for each linked entity.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "module/store/field_kind.h"
#include "platform/ads/result_buffer.h"
#include "platform/dao/dao.h"

namespace norvane {

enum class Route { kAccess, kOdbc };
Route RouteOf(const std::string& path);

// One column of a record and its value as text. Attributes come first, then image columns ("IMAGE_ZGEO/1")
// and their labels ("LABEL/1"), both of the kind Char.
struct OutputField {
    std::string name;
    FieldKind kind = FieldKind::kChar;
    std::string value;  // "" is not written: clearing a cell keeps what is stored
    // "" is written too: as text of no length, or as no value where the column takes no such text.
    bool clears = false;
};

// Which record of which table.
struct RecordKey {
    std::string table;
    std::string keyField;
    std::string keyValue;
    std::string feature;
};

// The key value that asks for a generated key.
extern const char* const kAutomaticKey;
// "#AUTO#" gives the present time in seconds since 1970, or the next number where that one has been given
// already; any other text is itself.
std::string GeneratedKey(const std::string& keyValue);

// --- The two operations of the sheet, each with its own opening, checks and error box --------------------

struct LoadedRecord {
    bool found = false;
    // The columns of the table in their order, by upper-cased name; empty when there is no such table.
    std::vector<std::string> columns;
    // The values of the record by upper-cased column name, as text; Null is "". Empty when no record was
    // found.
    std::map<std::string, std::string> values;

    bool hasColumn(const std::string& name) const;
    std::string value(const std::string& name) const;  // "" when there is none
};
// Loads a record. A key column that is no text column is replaced by an empty text column. Result: nothing
// was found (also after an error, which has been shown), or the record.
LoadedRecord LoadRecord(const std::string& path, const RecordKey& key);

enum class SavedAs { kNewRecord, kPresentRecord };
// Opens or creates the output database, creates or extends the table, and writes the record. Nothing when
// that failed; the reason has been shown. All of it is kept, or nothing.
std::optional<SavedAs> SaveRecord(const std::string& path, const RecordKey& key,
                                  const std::vector<OutputField>& fields);

// --- Their steps, on an open database. Exceptions pass through to the caller. ----------------------------

struct TableState {
    std::string table;  // the name in statements
    bool created = false;
    bool gisKeyAdded = false;  // to a table that was there before
};
TableState EnsureOutputTable(CDaoDatabase& database, const RecordKey& key,
                             const std::vector<OutputField>& fields);
// Gives GIS_KEY, just added to a table, a value in all its records: the feature or, in an ODBC source, the
// name of the table.
void FillGisKey(CDaoDatabase& database, Route route, const RecordKey& key, const TableState& state);
SavedAs WriteRecord(CDaoDatabase& database, Route route, const RecordKey& key, const TableState& state,
                    const std::vector<OutputField>& fields);

// Adds a text column of 255 characters, or the column of an attribute's kind.
CDaoFieldInfo KeyColumn(const std::string& name);
CDaoFieldInfo AttributeColumn(const std::string& name, FieldKind kind);

// The statement that finds a record. On the ODBC route loading and saving differ by a blank.
enum class FindPurpose { kLoad, kSave };
std::string FindRecordStatement(Route route, const RecordKey& key, bool hasGisKey, FindPurpose purpose);
std::string SelectTable(const std::string& table);
std::string SelectKeys(const std::string& table);
std::string SelectByPointId(const std::string& table, const std::string& id);

// The values of PT_ID that are not empty, as text, in the order of the table. The table is the one that
// SameTable finds; none gives none, and neither does one without the field. Exceptions pass through.
std::vector<std::string> ListKeys(CDaoDatabase& database, const std::string& table);

}  // namespace norvane
