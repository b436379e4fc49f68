// Import of delimited text: the fields of its lines, and the records that they become.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "module/exchange/delimited_text.h"
#include "module/transfer/import_notes.h"

namespace norvane {

// What the types of fields are called.
extern const char* const kRealType;  // "Real"
extern const char* const kIntType;   // "Int"
extern const char* const kCharType;  // "Char"
ColumnClass ClassOfTextType(std::string_view type);

// A field of the list.
struct AsciiField {
    std::string name;
    std::string value{};  // in the sample line
    std::string type = kCharType;
    bool isKey = false;
    std::string formerName{};  // of the key, which is called PT_ID
};

// The fields of a line, which has been trimmed: with the name that stands in front of an embedded delimiter,
// or FIELD and a number, and a type by the value. Values and names come without blanks at their ends. None
// for an empty line and one whose quote is not closed.
std::vector<AsciiField> ParseLine(std::string_view line, const TextFormat& format);

// Names for the pieces of a heading line: in capitals, with "_" for characters that a name cannot have; ""
// for a piece that gives none, and one that has come before.
std::vector<std::string> NamesOfHeadings(const std::vector<std::string>& pieces);

// Makes a field the key, called PT_ID; the one before it gets its name back. And that alone.
void SetKey(std::vector<AsciiField>& fields, size_t key);
void ResetKey(std::vector<AsciiField>& fields);
// The place of the key; nothing without one.
std::optional<size_t> KeyOf(const std::vector<AsciiField>& fields);

// Orders in which points are commonly written: "PNEZD" and so on, each with the names of its fields, the
// point's own as PT_ID.
struct PointOrder {
    const char* name;
    std::vector<const char*> fields;
};
const std::vector<PointOrder>& PointOrders();
// Gives the first fields the names and types of an order.
void ApplyOrder(std::vector<AsciiField>& fields, const PointOrder& order);

struct TextImport {
    std::string path;
    std::string table;
    TextFormat format;
    bool hasHeadings = false;  // the first line is none of the records
    std::vector<AsciiField> fields;
};

// A line that is not imported.
struct LeftOutLine {
    size_t number;  // from 1
    std::string reason;
};

struct TextRecords {
    size_t lines = 0;  // that were read
    std::vector<LeftOutLine> leftOut;
    size_t withoutId = 0;          // records that are given a number
    TableImport import;            // ids are "" where the line has none
    std::vector<size_t> columnOf;  // of each field; kNoColumn for the key and for GIS_KEY
    static constexpr size_t kNoColumn = static_cast<size_t>(-1);
};
// How much of a file has been read, of how many bytes; false ends the reading.
using ReadSteps = std::function<bool(size_t done, size_t total)>;

// Reads the records of a file. Nothing when it cannot be read or the person has ended it.
std::optional<TextRecords> ReadTextRecords(const TextImport& import, const ReadSteps& goOn);

// Gives records without an id numbers from the present time on, those left out that the records or the table
// have.
void NumberRecords(const std::string& database, TextRecords& records);

}  // namespace norvane
