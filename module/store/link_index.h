// The links of the drawing, by entity and by record.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "module/cad/call.h"

namespace norvane {

struct LinkedEntity {
    EntityName entity;
    std::string handle, layer;
    std::string templatePath, outputPath;  // as they stand
    std::string feature;                   // in capitals and trimmed, as the two that follow
    std::string keyField, keyValue;
    bool isBrokenOff = false;  // before the third string
};

// Reads the drawing once and follows its changes from then on. Nothing is printed, whatever state links are
// in. What it gives lasts until the drawing changes.
class LinkIndex {
  public:
    // The one of the current drawing, as that is now.
    static const LinkIndex& OfDrawing();

    // Another number whenever links may have changed.
    unsigned long revision() const { return revision_; }
    // All of them, in the order in which the drawing got its entities.
    std::vector<const LinkedEntity*> all() const;
    // The link of an entity; null when it has none.
    const LinkedEntity* find(const ads_name entity) const;
    // Those that name this output (a path in any case of letters, or a connect string), field and key, in the
    // same order; of whatever feature.
    std::vector<const LinkedEntity*> find(const std::string& outputPath, const std::string& keyField,
                                          const std::string& keyValue) const;

  private:
    LinkIndex() = default;
    ~LinkIndex();
    LinkIndex(const LinkIndex&) = delete;
    LinkIndex& operator=(const LinkIndex&) = delete;

    void update();
    void forget(long id);
    void read(long id);

    unsigned long revision_ = 0;
    long drawing_ = 0;  // its serial
    int observer_ = 0;
    std::unordered_set<long> changed_;  // entities that have to be read anew
    std::map<long, LinkedEntity> links_;
    std::unordered_multimap<std::string, long> byRecord_;
};

// The table that the template of a link tells for its feature; "" for none.
std::string ToldTable(const LinkedEntity& link);

// The entities that lead to a record of a table, in the order in which the drawing got them. A feature leads
// to the table that its template tells, where the output has it, else to the one of its own name.
std::vector<EntityName> EntitiesOfRecord(const std::string& outputPath, const std::string& table,
                                         const std::string& keyField, const std::string& keyValue);

}  // namespace norvane
