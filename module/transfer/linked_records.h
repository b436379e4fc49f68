// The records that links of the drawing lead to. Each table is read once, in full, and its records are found
// by their keys at once.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "module/transfer/column_needs.h"
#include "module/transfer/export_entity.h"
#include "platform/dao/dao.h"

namespace norvane {

// False to end the work.
using GoOn = std::function<bool()>;

// The records of a table that somebody wants.
class LinkedTable {
  public:
    struct Field {
        std::string name;  // in capitals
        bool isText = false;
        ColumnNeeds needs;  // of the values of all records that have a key, wanted or not
    };

    void want(const std::string& key);
    // Reads all records. False when it was ended. Exceptions pass through.
    bool read(CDaoDatabase& database, const std::string& table, const GoOn& goOn);

    // All but PT_ID, pictures and their labels, and fields of other types than numbers and texts.
    const std::vector<Field>& fields() const { return fields_; }
    // The records of a key, which is looked for without regard to case: first those whose GIS_KEY is the
    // feature.
    std::vector<size_t> find(const std::string& key, const std::string& feature) const;
    // The first value that is not empty among records; "" for none.
    const std::string& value(std::span<const size_t> records, size_t field) const;

  private:
    void readFields(const CDaoRecordset& records);
    void readRecord(const CDaoRecordset& records);

    std::vector<Field> fields_;
    std::vector<int> places_;  // of the fields in the record set
    int keyPlace_ = -1;        // of PT_ID in the record set
    int featureField_ = -1;    // GIS_KEY
    // Of each key that is wanted, in capitals, in the order of the table.
    std::unordered_map<std::string, std::vector<size_t>> records_;
    std::vector<std::string> values_;  // of one record behind the other
};

class LinkedRecords {
  public:
    // Reads the tables of all entities that are linked, and gives each its table where there is one. False
    // when it was ended. What an engine refuses is shown in a box, and its tables are left out. A line says
    // so when there is no engine.
    bool read(std::span<ExportEntity* const> entities, const GoOn& goOn);

  private:
    using Entities = std::vector<ExportEntity*>;
    void readDatabase(const std::string& path, const Entities& entities, const GoOn& goOn);

    std::vector<std::unique_ptr<LinkedTable>> tables_;
    bool ended_ = false;
};

}  // namespace norvane
