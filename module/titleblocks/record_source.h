// Tables of any kind of file as the links of title blocks need them: tables, columns, and records as text.
//
// What cannot be read throws a CDaoException with a sentence for the user, whatever the kind of file.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/dao/database_path.h"

namespace norvane {

// Takes the values of one record; false ends the reading.
using TakeRecord = std::function<bool(std::span<const std::string>)>;

class RecordSource {
  public:
    virtual ~RecordSource() = default;
    // Names of tables and columns are in capitals here, and are found without regard to case.
    virtual std::vector<std::string> tables() = 0;
    // The columns that have texts, in the order of the table. None for a table that is not there.
    virtual std::vector<std::string> columns(const std::string& table) = 0;
    // Reads all records of a table in their order, of each the values of the given columns; that of a column
    // that is not there is "". False when the taker has ended it.
    virtual bool read(const std::string& table, const std::vector<std::string>& columns,
                      const TakeRecord& take) = 0;
};

// The kinds, which go by what follows the last "." of a path.
enum class SourceKind { kNone, kDatabase, kServer, kTable, kWorkbook, kDelimitedText };
SourceKind KindOfSource(const std::string& path);
// Whether a source is there: a file of a kind that is known, or one on a server, which counts as there.
bool IsSourceThere(const std::string& path);

// Opens a source that is there. Null for one of no known kind, and for a database where there is no engine
// for it.
std::unique_ptr<RecordSource> OpenRecordSource(const dao::DatabasePath& path);

// The sources of one piece of work, each opened once, and closed with this object.
class RecordSources {
  public:
    // Null for a source that is not there or cannot be opened for want of its kind or engine. What a source
    // refuses throws, each time anew.
    RecordSource* find(const dao::DatabasePath& path);

  private:
    std::map<std::string, std::unique_ptr<RecordSource>> sources_;
};

}  // namespace norvane
