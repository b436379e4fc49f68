// What links look up: the values of records, found by the text of a key. A table is read once for all of its
// links.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "module/titleblocks/block_link.h"
#include "module/titleblocks/keyed_texts.h"
#include "module/titleblocks/record_source.h"

namespace norvane {

// Asked at each record, of which so many have been read; false ends the reading.
using GoOnReading = std::function<bool(long records)>;

// One table. Of several records with a key the first counts. Names of fields are in capitals.
class ValueTable {
  public:
    // Before reading: records are to be found by this key, and to give this field.
    void want(const std::string& key, const std::string& field);
    // Where `only` is given, records with other keys are not kept. False when it was ended. Exceptions pass
    // through, and leave the table empty.
    bool read(RecordSource& source, const std::string& table, const GoOnReading& goOn,
              const TextSet* only = nullptr);

    // The value of a field in the record of a key, compared exactly; nothing when there is no such record or
    // field. Good until the table is read again.
    std::optional<std::string_view> find(const std::string& key, std::string_view keyValue,
                                         const std::string& field) const;
    // The values that a key has, each once, in the order of the records, without the empty one.
    std::vector<std::string_view> keyValues(const std::string& key) const;

  private:
    // A key, and the hash of its text in the record that came last; nothing for one without a text.
    struct Key {
        TextHash texts;
        std::optional<uint32_t> last;
    };
    void takeColumns(const std::vector<std::string>& there);
    bool hasOneOf(const TextSet& wanted, std::span<const std::string> record) const;
    void keep(std::span<const std::string> record);
    void settleLast();

    std::vector<std::string> wantedKeys_, columns_;
    std::map<std::string, Key> keys_;
    TextRows records_;
    bool isLastOpen_ = false;  // the last record is not yet among those of its keys
};

class ValueTables {
  public:
    using Tell = std::function<void(const std::string& words)>;
    // Reads the tables that links name, once each; those of the second list are tried again for what they
    // refuse. The words of a source that cannot be read go to `tell`, once a table, and its values stay out;
    // one that is missing stays out silently. Where `only` is given, those of its keys are read and no
    // others. False when it was ended: there are no values then.
    bool read(const std::vector<BlockLink>& links, const std::vector<BlockLink>& refused, const Tell& tell,
              const GoOnReading& goOn, const TextSet* only = nullptr);

    std::optional<std::string_view> find(const BlockLink& link, std::string_view keyValue) const;
    std::vector<std::string_view> keyValues(const BlockLink& link) const;

  private:
    using Name = std::pair<std::string, std::string>;  // database and table
    const ValueTable* tableOf(const BlockLink& link) const;

    std::map<Name, ValueTable> tables_;
};

}  // namespace norvane
