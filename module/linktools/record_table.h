// The records of a table that links lead to: their keys and what they say of their entities.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "module/linktools/entity_measures.h"
#include "platform/dao/dao.h"

namespace norvane {

// The number that a value is, or that all of a text says; nothing for none.
std::optional<double> NumberFrom(const dao::Variant& value);

class RecordTable {
  public:
    struct Record {
        std::string key, feature;  // of PT_ID and GIS_KEY, in capitals and trimmed
        std::array<std::optional<double>, kMeasureFieldCount> measures;
        std::string firstEntity;  // the handle of the first that leads here
    };

    explicit RecordTable(std::string name) : name_(std::move(name)) {}
    // Records are found by this field too. Before reading.
    void findBy(const std::string& keyField) { byKey_[keyField]; }
    // Exceptions pass through.
    void read(CDaoDatabase& database);

    const std::string& name() const { return name_; }
    std::vector<Record>& records() { return records_; }
    bool hasField(const std::string& name) const { return fields_.contains(name); }
    // The record of a key: that of the feature where there are several; nothing for none.
    std::optional<size_t> find(const std::string& keyField, const std::string& key,
                               const std::string& feature) const;

    // The statement by which all records are read, in their order.
    static std::string Statement(const CDaoDatabase& database, const std::string& table);

  private:
    std::string name_;
    std::map<std::string, int> fields_;  // places, by name in capitals
    std::map<std::string, std::unordered_map<std::string, std::vector<size_t>>> byKey_;
    std::vector<Record> records_;
};

}  // namespace norvane
