// The records that the entities of a feature are linked to.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "module/store/link_index.h"
#include "platform/dao/dao.h"

namespace norvane {

// A table of an output that is open, as far as entities of one feature lead to it.
class LinkedRecordTable {
  public:
    // Entities of one record.
    using Entities = std::vector<const LinkedEntity*>;
    // Values in the order of the table's fields; those that were not asked for are Null. False ends the
    // reading.
    using Take = std::function<bool(const Entities&, const std::vector<dao::Variant>&)>;
    // Asked now and then; false ends the reading.
    using GoOn = std::function<bool()>;

    LinkedRecordTable(CDaoDatabase& database, std::string name);

    void add(const LinkedEntity& entity);

    const std::string& name() const { return name_; }
    // All of the table, in its order.
    const std::vector<CDaoFieldInfo>& fields() const { return fields_; }
    // The place of a field among them, without regard to case; nothing for none.
    std::optional<size_t> find(std::string_view field) const;
    size_t entities() const { return count_; }
    // The key fields that links name and the table does not have. Such links find no records.
    std::vector<std::string> missingKeyFields() const;

    // Reads the table once, and hands over each record that entities lead to. Where several records have one
    // key, that of the feature comes last, else the first of the table; what was handed over before for the
    // same entities then counts no more. fields: places in fields(). False when it was ended. Exceptions pass
    // through.
    bool read(std::span<const size_t> fields, const Take& take, const GoOn& goOn = {});
    // The records that have been read, linked or not.
    size_t recordsRead() const { return recordsRead_; }

  private:
    enum class Found { kNot, kOfAnotherFeature, kWhole };
    struct Group {
        Entities entities;
        Found found = Found::kNot;
    };

    CDaoDatabase& database_;
    std::string name_;
    std::vector<CDaoFieldInfo> fields_;
    std::map<std::string, std::unordered_map<std::string, Group>> groups_;  // by key field, by key
    size_t count_ = 0, recordsRead_ = 0;
};

// Does `work` on each table that links of a feature lead to, its output being open. An output that is not at
// its place is looked for beside the drawing. What cannot be read is passed over and told by the result, a
// sentence each; nothing is shown or printed but the sign-in to a server.
std::vector<std::string> ForEachTableOf(std::string_view feature,
                                        const std::function<void(LinkedRecordTable&)>& work);

// The file of a path, or the one of its name beside the drawing where the job's folder has been moved; a path
// of a server as it stands.
std::string PlaceOfDatabase(const std::string& path);

// The features that links of the drawing name, in capitals and sorted, with the count of their entities.
std::map<std::string, size_t> LinkedFeatures();

}  // namespace norvane
